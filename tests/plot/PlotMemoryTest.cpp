#include "plot/PlotMemory.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

const std::vector<Series> kChannels{{.Place = u"a1"_s, .Unit = u"mg/L"_s, .Values = {}},
                                    {.Place = u"p1"_s, .Unit = u"mm, total"_s, .Values = {}}};

class PlotMemoryTest : public testing::Test {
 protected:
  QTemporaryDir folder_;
  PlotMemory memory_{folder_.filePath(u"store.ini"_s)};

  void Write(const QByteArray& text) const {
    QFile file(folder_.filePath(u"store.ini"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
  }
};

TEST_F(PlotMemoryTest, ShowsEverythingAtFirst) {
  EXPECT_FALSE(memory_.Size().isValid());
  EXPECT_TRUE(memory_.IsShown(kChannels[0]));
}

TEST_F(PlotMemoryTest, KnowsSizeAndChannelsAgain) {
  memory_.Remember({900, 700}, kChannels, {false, false});
  EXPECT_EQ(memory_.Size(), QSize(900, 700));
  EXPECT_FALSE(memory_.IsShown(kChannels[0]));
  EXPECT_FALSE(memory_.IsShown(kChannels[1]));
  // Of another logger: the same place with another unit.
  EXPECT_TRUE(memory_.IsShown({.Place = u"a1"_s, .Unit = u"%"_s, .Values = {}}));
  memory_.Remember({900, 700}, {kChannels[1]}, {true});
  EXPECT_FALSE(memory_.IsShown(kChannels[0]));
  EXPECT_TRUE(memory_.IsShown(kChannels[1]));
}

TEST_F(PlotMemoryTest, LeavesTheOtherSettingsAlone) {
  Write("[Configuration]\nDirectPort=COM9\n");
  memory_.Remember({900, 700}, kChannels, {true, true});
  QFile file(folder_.filePath(u"store.ini"_s));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_TRUE(file.readAll().contains("DirectPort=COM9"));
}

TEST_F(PlotMemoryTest, StandsNonsense) {
  for (const char* size : {"abc", "12x", "5x5", "99999x700", "-900x700", "900x700x3", ""}) {
    Write(QByteArray("[Plot]\nSize=") + size + "\n");
    EXPECT_FALSE(memory_.Size().isValid()) << size;
  }
  // A file in place of the folder: a missing one would be made.
  const PlotMemory nowhere(folder_.filePath(u"store.ini/store.ini"_s));
  nowhere.Remember({900, 700}, kChannels, {false, true});
  EXPECT_TRUE(nowhere.IsShown(kChannels[1]));
}

}  // namespace
}  // namespace tessmar
