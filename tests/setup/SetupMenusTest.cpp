#include "setup/SetupMenus.h"

#include <gtest/gtest.h>

#include <utility>

#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class SetupMenus : public testing::Test {
 protected:
  void TearDown() override { SetTextLanguage(kLanguageEnglish); }
};

TEST_F(SetupMenus, HaveTheirCaptionsInBothLanguages) {
  const std::pair<QString, QString> rows[] = {
      {u"mnuFile"_s, u"&File|&Datei"_s},
      {u"mnuInitialize"_s, u"&Initialize to Default Values|Auf Werkseinstellungen &zurücksetzen"_s},
      {u"mnuLaunchDOHelp"_s, u"&Dissolved Oxygen Sensor Help|&Dissolved Oxygen Sensor Help"_s},
      {u"mnuAbout"_s, u"&About|&Info"_s}};
  for (const auto& [name, captions] : rows) {
    SetTextLanguage(kLanguageEnglish);
    const QString english = SetupMenuCaption(name);
    SetTextLanguage(kLanguageGerman);
    EXPECT_EQ(english + u'|' + SetupMenuCaption(name), captions) << name.toStdString();
  }
}

TEST_F(SetupMenus, SeparatorsAndRecentFilesHaveNone) {
  for (const QString& name : {u"mnuSep1"_s, u"mnuHist(0)"_s, u"mnufile"_s, QString()})
    EXPECT_EQ(SetupMenuCaption(name), QString()) << name.toStdString();
}

}  // namespace
}  // namespace tessmar
