#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>

#include "base/TextTable.h"
#include "history/frmHistoryOptions.h"
#include "history/frmImportSetup.h"
#include "support/FakeOutside.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

template <typename Control>
Control* Find(const QDialog& dialog, const QString& name) {
  Control* const control = dialog.findChild<Control*>(name);
  EXPECT_NE(control, nullptr) << name.toStdString();
  return control;
}

TEST(HistoryOptions, ShowsItsTextsInBothLanguages) {
  QString option;
  const frmHistoryOptions english(option);
  EXPECT_EQ(english.windowTitle(), u"History File Options"_s);
  EXPECT_EQ(Find<QGroupBox>(english, u"Frame1"_s)->title(), u"Date/Time Format"_s);
  EXPECT_EQ(Find<QRadioButton>(english, u"optComma"_s)->text(),
            u"Date and Time are in separate columns in CSV output files."_s);
  EXPECT_EQ(Find<QPushButton>(english, u"cmdOK"_s)->text(), u"Close"_s);

  SetTextLanguage(kLanguageGerman);
  const frmHistoryOptions german(option);
  SetTextLanguage(kLanguageEnglish);
  EXPECT_EQ(german.windowTitle(), u"Speicherdaten-Optionen"_s);
  EXPECT_EQ(Find<QRadioButton>(german, u"optNoComma"_s)->text(),
            u"Datum und Zeit sind in der *.CSV-Datei in einer Spalte kombiniert"_s);
  EXPECT_EQ(Find<QPushButton>(german, u"cmdCancel"_s)->text(), u"Abbrechen"_s);
}

TEST(HistoryOptions, SelectsByWhetherTheTextIsEmpty) {
  for (const auto& [text, single] :
       {std::pair(u""_s, false), std::pair(u"Yes"_s, true), std::pair(u"No"_s, true)}) {
    QString option = text;
    const frmHistoryOptions dialog(option);
    EXPECT_EQ(Find<QRadioButton>(dialog, u"optNoComma"_s)->isChecked(), single);
    EXPECT_EQ(Find<QRadioButton>(dialog, u"optComma"_s)->isChecked(), !single);
  }
}

TEST(HistoryOptions, CloseTakesTheChoiceOver) {
  QString option;
  frmHistoryOptions dialog(option);
  Find<QRadioButton>(dialog, u"optNoComma"_s)->click();
  EXPECT_EQ(option, u""_s);
  Find<QPushButton>(dialog, u"cmdOK"_s)->click();
  EXPECT_EQ(option, u"Yes"_s);
  Find<QRadioButton>(dialog, u"optComma"_s)->click();
  Find<QPushButton>(dialog, u"cmdOK"_s)->click();
  EXPECT_EQ(option, u""_s);
}

TEST(HistoryOptions, CancelOnlyHides) {
  QString option = u"something"_s;
  frmHistoryOptions dialog(option);
  dialog.show();
  Find<QRadioButton>(dialog, u"optComma"_s)->click();
  Find<QPushButton>(dialog, u"cmdCancel"_s)->click();
  EXPECT_EQ(option, u"something"_s);
  EXPECT_FALSE(dialog.isVisible());
}

class ImportSetup : public testing::Test {
 protected:
  void Choose(int analog, int digital) {
    Find<QComboBox>(dialog_, u"cmbNumAnalogChannels"_s)->setCurrentIndex(analog);
    Find<QComboBox>(dialog_, u"cmbNumDigitalChannels"_s)->setCurrentIndex(digital);
  }
  void Click(const QString& button) { Find<QPushButton>(dialog_, button)->click(); }

  test::FakeMessages messages_;
  frmImportSetup dialog_{messages_};
};

TEST_F(ImportSetup, StartsWithThreeAnalogAndOneDigitalChannelAndBothTicks) {
  EXPECT_EQ(dialog_.windowTitle(), u"Import Logger Data File"_s);
  const auto* const analog = Find<QComboBox>(dialog_, u"cmbNumAnalogChannels"_s);
  const auto* const digital = Find<QComboBox>(dialog_, u"cmbNumDigitalChannels"_s);
  EXPECT_EQ(analog->count(), 9);
  EXPECT_EQ(analog->itemText(8), u"8"_s);
  EXPECT_EQ(analog->currentIndex(), 3);
  EXPECT_EQ(digital->count(), 3);
  EXPECT_EQ(digital->currentIndex(), 1);
  EXPECT_EQ(Find<QCheckBox>(dialog_, u"chkLaunchSetup"_s)->text(),
            u"Launch Setup Screen before History Screen"_s);
  EXPECT_EQ(Find<QCheckBox>(dialog_, u"chkLaunchHistory"_s)->text(), u"Launch History Viewer"_s);
  const ImportChoice choice = dialog_.Choice();
  EXPECT_EQ(choice.AnalogChannels, 3);
  EXPECT_EQ(choice.PulseChannels, 1);
  EXPECT_TRUE(choice.LaunchSetup);
  EXPECT_TRUE(choice.LaunchHistory);
}

TEST_F(ImportSetup, OkWithALegalSizeEndsIt) {
  dialog_.show();
  Choose(8, 2);
  Find<QCheckBox>(dialog_, u"chkLaunchSetup"_s)->setChecked(false);
  Click(u"cmdOK"_s);
  EXPECT_EQ(dialog_.Result(), u"OK"_s);
  EXPECT_FALSE(dialog_.isVisible());
  EXPECT_EQ(dialog_.Choice().AnalogChannels, 8);
  EXPECT_FALSE(dialog_.Choice().LaunchSetup);
  EXPECT_TRUE(messages_.All.empty());
}

TEST_F(ImportSetup, AnIllegalSizeIsSaidAndTheDialogStays) {
  dialog_.show();
  Choose(5, 0);
  Click(u"cmdOK"_s);
  EXPECT_TRUE(dialog_.isVisible());
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_EQ(messages_.All[0].Prompt,
            u"Error: the selected values for number of analog channels and number of digital "
            u"channels\r\nrequires 14 bytes for each record which is not a legal record size"_s);
  EXPECT_EQ(messages_.All[0].Buttons, 48);
  Choose(0, 0);
  Click(u"cmdOK"_s);
  EXPECT_EQ(messages_.All[1].Prompt,
            u"Error: you cannot have zero for both analog and digital channels"_s);
  EXPECT_TRUE(dialog_.isVisible());
}

TEST_F(ImportSetup, CancelAndTheFrameGiveCancel) {
  dialog_.show();
  Click(u"cmdCancel"_s);
  EXPECT_EQ(dialog_.Result(), u"CANCEL"_s);
  EXPECT_FALSE(dialog_.isVisible());

  frmImportSetup another(messages_);
  another.show();
  another.close();
  EXPECT_EQ(another.Result(), u"CANCEL"_s);
}

}  // namespace
}  // namespace tessmar
