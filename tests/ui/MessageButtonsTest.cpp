#include "ui/MessageButtons.h"

#include <gtest/gtest.h>

#include <QStringList>

#include "base/Messages.h"
#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class MessageButtons : public testing::Test {
 protected:
  ~MessageButtons() override { SetTextLanguage(kLanguageEnglish); }

  static QStringList Captions(int buttons) {
    QStringList captions;
    for (const MessageButton& button : MessageButtonsFor(buttons)) captions << button.Caption;
    return captions;
  }
  static std::vector<int> Results(int buttons) {
    std::vector<int> results;
    for (std::size_t i = 0; i < MessageButtonsFor(buttons).size(); ++i) {
      results.push_back(MessageResult(buttons, static_cast<int>(i)));
    }
    return results;
  }
};

using Ints = std::vector<int>;

TEST_F(MessageButtons, StandInTheirSets) {
  EXPECT_EQ(Captions(0), (QStringList{u"OK"_s}));
  EXPECT_EQ(Captions(1), (QStringList{u"OK"_s, u"Cancel"_s}));
  EXPECT_EQ(Captions(2), (QStringList{u"Abort"_s, u"Retry"_s, u"Ignore"_s}));
  EXPECT_EQ(Captions(3), (QStringList{u"Yes"_s, u"No"_s, u"Cancel"_s}));
  EXPECT_EQ(Captions(4), (QStringList{u"Yes"_s, u"No"_s}));
  EXPECT_EQ(Captions(5), (QStringList{u"Retry"_s, u"Cancel"_s}));
}

TEST_F(MessageButtons, GiveTheResultsOfTheirSets) {
  EXPECT_EQ(Results(0), (Ints{1}));
  EXPECT_EQ(Results(1), (Ints{1, 2}));
  EXPECT_EQ(Results(2), (Ints{3, 4, 5}));
  EXPECT_EQ(Results(3), (Ints{6, 7, 2}));
  EXPECT_EQ(Results(4), (Ints{6, 7}));
  EXPECT_EQ(Results(5), (Ints{4, 2}));
}

TEST_F(MessageButtons, OfSet6Or7AreThoseOfSet0) {
  for (const int set : {6, 7}) {
    EXPECT_EQ(Captions(set), (QStringList{u"OK"_s}));
    EXPECT_EQ(Results(set), (Ints{1}));
    EXPECT_EQ(Captions(set + 16), (QStringList{u"OK"_s}));
  }
}

TEST_F(MessageButtons, KeepSomeEnglishWordsInGerman) {
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(Captions(0), (QStringList{u"OK"_s}));
  EXPECT_EQ(Captions(1), (QStringList{u"OK"_s, u"Abbrechen"_s}));
  EXPECT_EQ(Captions(2), (QStringList{u"Abort"_s, u"Retry"_s, u"Ignore"_s}));
  EXPECT_EQ(Captions(3), (QStringList{u"Ja"_s, u"Nein"_s, u"Abbrechen"_s}));
  EXPECT_EQ(Captions(4 + 16384), (QStringList{u"Ja"_s, u"Nein"_s, u"Help"_s}));
  EXPECT_EQ(Captions(5), (QStringList{u"Retry"_s, u"Cancel"_s}));
}

TEST_F(MessageButtons, HaveHelpBehindTheOthersWhenAskedFor) {
  EXPECT_EQ(Captions(16384), (QStringList{u"OK"_s, u"Help"_s}));
  EXPECT_EQ(Captions(2 + 16384), (QStringList{u"Abort"_s, u"Retry"_s, u"Ignore"_s, u"Help"_s}));
  const std::vector<MessageButton> buttons = MessageButtonsFor(1 + 16384);
  ASSERT_EQ(buttons.size(), 3U);
  EXPECT_TRUE(buttons[0].Closes);
  EXPECT_TRUE(buttons[1].Closes);
  EXPECT_FALSE(buttons[2].Closes);
}

TEST_F(MessageButtons, WithoutAResultGiveTheFirstOnes) {
  EXPECT_EQ(MessageResult(16384, 1), 1);
  EXPECT_EQ(MessageResult(3 + 16384, 3), 6);
  EXPECT_EQ(MessageResult(2, -1), 3);
}

TEST_F(MessageButtons, AreReadFromTheirBitsAlone) {
  EXPECT_EQ(Captions(36), (QStringList{u"Yes"_s, u"No"_s}));
  EXPECT_EQ(Captions(67 + 512 + 65536 + 524288), (QStringList{u"Yes"_s, u"No"_s, u"Cancel"_s}));
}

TEST(MessageIconCode, IsOneOfFourOrNone) {
  EXPECT_EQ(MessageIconCode(16), 16);
  EXPECT_EQ(MessageIconCode(36), 32);
  EXPECT_EQ(MessageIconCode(49), 48);
  EXPECT_EQ(MessageIconCode(67 + 256), 64);
  for (const int none : {0, 4, 80, 96, 112}) EXPECT_EQ(MessageIconCode(none), 0) << none;
}

TEST(DefaultMessageButton, IsTheFirstUnlessSaid) {
  EXPECT_EQ(DefaultMessageButton(36), 0);
  EXPECT_EQ(DefaultMessageButton(36 + 256), 1);
  EXPECT_EQ(DefaultMessageButton(67 + 512), 2);
  EXPECT_EQ(DefaultMessageButton(2 + 768 + 16384), 3);
}

TEST(MessageSound, IsTheSameForEveryMessage) {
  for (const int buttons : {0, 16, 36, 48, 49, 64, 65, 67, 68}) {
    EXPECT_EQ(MessageSound(buttons), u"SystemHand"_s) << buttons;
  }
}

TEST(MessageWayOut, DeclinesWithEscapeAndNeverChoosesOnClosing) {
  using WayOut = MessageWayOut;
  EXPECT_EQ(MessageWayOutFor(MessageButtonsFor(0)), (WayOut{0, 0}));
  EXPECT_EQ(MessageWayOutFor(MessageButtonsFor(16384)), (WayOut{0, 0}));
  EXPECT_EQ(MessageWayOutFor(MessageButtonsFor(1)), (WayOut{1, std::nullopt}));
  EXPECT_EQ(MessageWayOutFor(MessageButtonsFor(2)), (WayOut{std::nullopt, std::nullopt}));
  EXPECT_EQ(MessageWayOutFor(MessageButtonsFor(3)), (WayOut{2, std::nullopt}));
  EXPECT_EQ(MessageWayOutFor(MessageButtonsFor(4)), (WayOut{1, std::nullopt}));
  EXPECT_EQ(MessageWayOutFor(MessageButtonsFor(5)), (WayOut{1, std::nullopt}));
}

}  // namespace
}  // namespace tessmar
