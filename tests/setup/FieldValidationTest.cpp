#include "setup/FieldValidation.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QTabBar>

#include "setup/SetupScreenRig.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::FakeMessages;
using test::SetupScreenRig;

const FakeMessages::Asked kIntervalRefused{u"Error: sample interval must be between 1 and 65535."_s,
                                           16, u"Format Error"_s};

class LeavingAField : public testing::Test {
 protected:
  LeavingAField() { rig_.Open(); }

  /// A field with a text that it refuses without a message.
  QLineEdit& BadNumber() {
    rig_.ShowPage(0);
    QLineEdit& field = rig_.Field("txtHighEU(0)");
    rig_.Type(field, u"abc"_s);
    return field;
  }
  /// A field with a text that it refuses with a message.
  QLineEdit& BadInterval() {
    QLineEdit& field = rig_.Field("txtSampleInterval");
    rig_.Type(field, u"0"_s);
    return field;
  }
  std::vector<FakeMessages::Asked>& Asked() { return rig_.Messages.All; }

  SetupScreenRig rig_;
};

TEST_F(LeavingAField, ARefusalBlocksTheProgramButton) {
  QLineEdit& field = BadNumber();
  rig_.Click(rig_.Button("cmdOK"));
  EXPECT_TRUE(field.hasFocus());
  EXPECT_EQ(field.text(), u"abc"_s);
  EXPECT_TRUE(Asked().empty());
}

TEST_F(LeavingAField, ARefusalBlocksTheWayBackToTheMainWindow) {
  QLineEdit& field = BadNumber();
  rig_.Click(rig_.Button("cmdCancel"));
  EXPECT_TRUE(field.hasFocus());
  EXPECT_TRUE(rig_.Form->isVisible());
  EXPECT_TRUE(Asked().empty());
}

TEST_F(LeavingAField, ARefusalBlocksTheTabs) {
  BadNumber();
  rig_.ClickTab(3);
  EXPECT_EQ(rig_.Page(), 0);
  QTest::keyClick(rig_.Form->focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(rig_.Page(), 0);
}

TEST_F(LeavingAField, TheWheelOverTheTabsDoesNotLeaveARefusedField) {
  QLineEdit& field = BadNumber();
  QTabBar* tabs = rig_.Get<QTabWidget>("TabStrip").tabBar();
  const QPointF centre = tabs->rect().center();
  QWheelEvent wheel(centre, tabs->mapToGlobal(centre), {}, QPoint(0, -120), Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(tabs, &wheel);
  QCoreApplication::processEvents();
  EXPECT_EQ(rig_.Page(), 0);
  EXPECT_TRUE(field.hasFocus());
}

TEST_F(LeavingAField, ARefusalBlocksOtherFieldsAndCheckBoxes) {
  QLineEdit& field = BadNumber();
  QCheckBox& enable = rig_.Check("chkEnable(1)");
  const bool enabled = enable.isChecked();
  rig_.Click(enable);
  EXPECT_EQ(enable.isChecked(), enabled);
  rig_.Click(rig_.Field("txtLowEU(0)"));
  EXPECT_TRUE(field.hasFocus());
  rig_.Click(rig_.List("cmbPrecision(2)"));
  EXPECT_TRUE(field.hasFocus());
}

TEST_F(LeavingAField, ARefusalBlocksTheCalibrateButton) {
  QLineEdit& field = BadNumber();
  bool started = false;
  QTimer::singleShot(0, [&started] {
    if (QWidget* wizard = QApplication::activeModalWidget()) {
      started = true;
      wizard->close();
    }
  });
  rig_.Click(rig_.Button("cmdCalibrate(0)"));
  EXPECT_FALSE(started);
  EXPECT_TRUE(field.hasFocus());
}

TEST_F(LeavingAField, ARefusalBlocksTheTabKeyBothWays) {
  QLineEdit& field = BadNumber();
  QTest::keyClick(&field, Qt::Key_Tab);
  EXPECT_TRUE(field.hasFocus());
  QTest::keyClick(&field, Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_TRUE(field.hasFocus());
}

TEST_F(LeavingAField, TheMessageOfARefusalAppearsOnceForAClick) {
  QLineEdit& field = BadInterval();
  rig_.Click(rig_.Button("cmdOK"));
  EXPECT_EQ(Asked(), std::vector{kIntervalRefused});
  EXPECT_TRUE(field.hasFocus());
  EXPECT_EQ(field.text(), u"0"_s);
}

TEST_F(LeavingAField, TheMessageOfARefusalAppearsOnceForTab) {
  QLineEdit& field = BadInterval();
  QTest::keyClick(&field, Qt::Key_Tab);
  QCoreApplication::processEvents();
  EXPECT_EQ(Asked(), std::vector{kIntervalRefused});
  EXPECT_TRUE(field.hasFocus());
}

TEST_F(LeavingAField, TheMessageOfARefusalAppearsOnceForAnAccessKey) {
  QPushButton& button = rig_.Button("cmdOK");
  button.setText(u"&Program"_s);
  QLineEdit& field = BadInterval();
  QTest::keyClick(rig_.Form.get(), Qt::Key_P, Qt::AltModifier);
  QCoreApplication::processEvents();
  EXPECT_EQ(Asked(), std::vector{kIntervalRefused});
  EXPECT_TRUE(field.hasFocus());
}

TEST_F(LeavingAField, TheMessageOfARefusalAppearsOnceForAMoveByCode) {
  QLineEdit& field = BadInterval();
  rig_.Button("cmdCancel").setFocus();
  QCoreApplication::processEvents();
  EXPECT_EQ(Asked(), std::vector{kIntervalRefused});
  EXPECT_TRUE(field.hasFocus());
}

TEST_F(LeavingAField, SwitchingToAnotherWindowChecksNothing) {
  QLineEdit& field = BadInterval();
  QWidget other;
  other.show();
  QApplication::setActiveWindow(&other);
  QCoreApplication::processEvents();
  EXPECT_FALSE(field.hasFocus());
  EXPECT_TRUE(Asked().empty());
  QApplication::setActiveWindow(rig_.Form.get());
  QCoreApplication::processEvents();
  EXPECT_TRUE(field.hasFocus());
  EXPECT_TRUE(Asked().empty());
}

TEST_F(LeavingAField, AFieldThatLosesTheFocusToItsOwnMessageIsNotCheckedAgain) {
  BadInterval();
  QWidget message;
  rig_.Messages.OnMessage = [&message] {
    message.show();
    QApplication::setActiveWindow(&message);
    QCoreApplication::processEvents();
  };
  rig_.Click(rig_.Field("txtException"));
  EXPECT_EQ(Asked(), std::vector{kIntervalRefused});
}

TEST_F(LeavingAField, MenuEntriesActOnWhateverTheFieldHolds) {
  QLineEdit& field = BadNumber();
  rig_.Messages.Default = kNo;
  rig_.Choose("mnuDownload");
  ASSERT_EQ(Asked().size(), 1U);
  EXPECT_EQ(Asked()[0].Title, u"Program Settings"_s);
  EXPECT_EQ(field.text(), u"abc"_s);
  EXPECT_TRUE(field.hasFocus());
}

TEST_F(LeavingAField, OpeningAMenuChecksNothing) {
  BadInterval();
  QTimer::singleShot(0, [] {
    if (QWidget* menu = QApplication::activePopupWidget()) menu->close();
  });
  QTest::keyClick(rig_.Form.get(), Qt::Key_A, Qt::AltModifier);
  QCoreApplication::processEvents();
  EXPECT_TRUE(Asked().empty());
}

TEST_F(LeavingAField, OpeningItsOwnListChecksNothing) {
  rig_.ShowPage(2);
  QComboBox& warmup = rig_.List("cmbWarmup");
  rig_.Type(warmup, u"x"_s);
  warmup.showPopup();
  QCoreApplication::processEvents();
  EXPECT_EQ(warmup.currentText(), u"x"_s);
  warmup.hidePopup();
}

TEST_F(LeavingAField, EnterInAFieldPressesNoButton) {
  QLineEdit& field = rig_.Field("txtSampleInterval");
  rig_.Type(field, u"12"_s);
  QTest::keyClick(&field, Qt::Key_Return);
  EXPECT_TRUE(Asked().empty());
  EXPECT_TRUE(field.hasFocus());
}

TEST_F(LeavingAField, EnterPressesTheButtonThatHasTheFocus) {
  rig_.Messages.Default = kNo;
  rig_.Button("cmdOK").setFocus();
  QTest::keyClick(&rig_.Button("cmdOK"), Qt::Key_Return);
  EXPECT_EQ(Asked().size(), 1U);
}

TEST_F(LeavingAField, AnAcceptedTextIsPutRightAndTheClickWorks) {
  rig_.Messages.Default = kNo;
  QLineEdit& field = rig_.Field("txtSampleInterval");
  rig_.Type(field, u" 2.5 "_s);
  rig_.Click(rig_.Button("cmdOK"));
  EXPECT_EQ(field.text(), u"2"_s);
  ASSERT_EQ(Asked().size(), 1U);
  EXPECT_EQ(Asked()[0].Title, u"Program Settings"_s);
}

TEST_F(LeavingAField, ListsOfNumbersTakeTypedNumbers) {
  rig_.ShowPage(2);
  QComboBox& warmup = rig_.List("cmbWarmup");
  rig_.Type(warmup, u"90"_s);
  QTest::keyClick(&warmup, Qt::Key_Tab);
  EXPECT_EQ(warmup.currentIndex(), 60);
  EXPECT_EQ(warmup.currentText(), u"60"_s);
  EXPECT_FALSE(warmup.hasFocus());

  rig_.Type(warmup, u"-1"_s);
  QTest::keyClick(&warmup, Qt::Key_Tab);
  EXPECT_TRUE(warmup.hasFocus());
  EXPECT_EQ(warmup.currentText(), u"-1"_s);
  EXPECT_TRUE(Asked().empty());
}

TEST_F(LeavingAField, UnitsAreTrimmedAndCutToNineCharacters) {
  rig_.ShowPage(0);
  QComboBox& units = rig_.List("cmbEU(0)");
  rig_.Type(units, u"  Gallons per day"_s);
  QTest::keyClick(&units, Qt::Key_Tab);
  EXPECT_EQ(units.currentText(), u"Gallons p"_s);
}

TEST_F(LeavingAField, TheArrowKeysGoOnFromTheUnitsShown) {
  rig_.ShowPage(0);
  QComboBox& units = rig_.List("cmbEU(1)");
  ASSERT_EQ(units.currentText(), u"Temp C"_s);
  units.setFocus();
  QTest::keyClick(&units, Qt::Key_Down);
  EXPECT_EQ(units.currentText(), u"degrees"_s);
  rig_.Type(units, u"Feet"_s);
  QTest::keyClick(&units, Qt::Key_Tab);
  units.setFocus();
  QTest::keyClick(&units, Qt::Key_Up);
  EXPECT_EQ(units.currentText(), u"Inches"_s);

  QComboBox& pulse = rig_.List("cmbPulseEU(0)");
  rig_.ShowPage(1);
  ASSERT_EQ(pulse.currentText(), u"Inches"_s);
  QTest::keyClick(&pulse, Qt::Key_Down);
  EXPECT_EQ(pulse.currentText(), u"cm"_s);
}

TEST_F(LeavingAField, TypedUnitsKeepTheirCase) {
  rig_.ShowPage(0);
  QComboBox& units = rig_.List("cmbEU(0)");
  rig_.Type(units, u"fee"_s);
  QTest::keyClick(&units, Qt::Key_Tab);
  EXPECT_EQ(units.currentText(), u"fee"_s);
}

TEST_F(LeavingAField, AnyAnalogColumnIsGuarded) {
  rig_.ShowPage(0);
  for (const char* name : {"txtHighEU(7)", "txtLowEU(7)", "txtHighRaw(7)", "txtLowRaw(7)",
                           "txtTop(7)", "txtBottom(7)", "cmbPrecision(7)"}) {
    auto& field = rig_.Get<QWidget>(name);
    rig_.Type(field, u"x"_s);
    rig_.Click(rig_.Button("cmdOK"));
    EXPECT_TRUE(field.hasFocus()) << name;
    rig_.Type(field, u"1"_s);
    QTest::keyClick(&field, Qt::Key_Tab);
    EXPECT_FALSE(field.hasFocus()) << name;
  }
  EXPECT_TRUE(Asked().empty());
}

TEST_F(LeavingAField, LettersInAManualEntryBecomeZeroAndLetTheFocusGo) {
  rig_.ShowPage(3);
  rig_.Check("chkConductivityManualEntry").click();
  QLineEdit& field = rig_.Field("txtConductivityManualEntry");
  if (!field.isEnabled()) rig_.Check("chkConductivityManualEntry").click();
  rig_.Type(field, u"letters"_s);
  QTest::keyClick(&field, Qt::Key_Tab);
  EXPECT_EQ(field.text(), u"0"_s);
  EXPECT_FALSE(field.hasFocus());
}

void Paste(QLineEdit& field, const QString& text) {
  QGuiApplication::clipboard()->setText(text);
  field.deselect();
  field.end(false);
  field.paste();
}

TEST_F(LeavingAField, ATypedNameStopsAt32Characters) {
  rig_.ShowPage(2);
  QLineEdit& name = rig_.Field("txtName");
  rig_.Type(name, QString(40, u'n'));
  EXPECT_EQ(name.text(), QString(32, u'n'));
}

TEST_F(LeavingAField, AFullNameRefusesTheKeyWhereverItIsTyped) {
  rig_.ShowPage(2);
  QLineEdit& name = rig_.Field("txtName");
  rig_.Type(name, QString(31, u'n') + u'z');
  name.setCursorPosition(0);
  QTest::keyClicks(&name, u"ab"_s);
  EXPECT_EQ(name.text(), QString(31, u'n') + u'z');
  name.setCursorPosition(16);
  QTest::keyClicks(&name, u"c"_s);
  EXPECT_EQ(name.text(), QString(31, u'n') + u'z');
  // A selection is replaced, as everywhere.
  name.setSelection(0, 2);
  QTest::keyClicks(&name, u"c"_s);
  EXPECT_EQ(name.text(), u'c' + QString(29, u'n') + u'z');
}

TEST_F(LeavingAField, APastedNameIsCutToWhatFits) {
  rig_.ShowPage(2);
  QLineEdit& name = rig_.Field("txtName");
  rig_.Type(name, u"Well"_s);
  Paste(name, QString(40, u'4'));
  EXPECT_EQ(name.text(), u"Well"_s + QString(28, u'4'));
}

TEST_F(LeavingAField, PastedControlCharactersBecomeBlanks) {
  rig_.ShowPage(2);
  QLineEdit& name = rig_.Field("txtName");
  rig_.Type(name, u"A"_s);
  Paste(name, u"Well\r\n4\tnorth\u2028\u0085x"_s);
  EXPECT_EQ(name.text(), u"AWell  4 north  x"_s);
  EXPECT_EQ(name.cursorPosition(), name.text().size());

  rig_.ShowPage(0);
  for (const char* list : {"cmbEU(0)", "cmbEU(7)"}) {
    rig_.Type(rig_.List(list), u"m"_s);
    Paste(*rig_.List(list).lineEdit(), u"\n3/s"_s);
    EXPECT_EQ(rig_.List(list).currentText(), u"m 3/s"_s) << list;
  }
  rig_.ShowPage(1);
  rig_.Type(rig_.List("cmbPulseEU(1)"), u"k"_s);
  Paste(*rig_.List("cmbPulseEU(1)").lineEdit(), u"\tWh"_s);
  EXPECT_EQ(rig_.List("cmbPulseEU(1)").currentText(), u"k Wh"_s);
}

TEST_F(LeavingAField, AnAlarmHourOf13IsRefusedInThe12HourForm) {
  rig_.ShowPage(2);
  rig_.Check("chkAlarm(0)").setChecked(true);
  rig_.Beat(*rig_.Form);
  QLineEdit& alarm = rig_.Field("txtAlarm(0)");
  rig_.Type(alarm, u"13:00:00"_s);
  QTest::keyClick(&alarm, Qt::Key_Tab);
  ASSERT_EQ(Asked().size(), 1U);
  EXPECT_EQ(Asked()[0].Prompt, u"Alarm hour must be between 1 and 12"_s);
  EXPECT_TRUE(alarm.hasFocus());
}

TEST(LeavingAFieldInGerman, AnUntouchedNumberWithAPointIsLetGo) {
  SetupScreenRig rig({}, QLocale(QLocale::German, QLocale::Germany));
  rig.Settings.Analog[0].UpperLimit = 12.5;
  rig.Open();
  rig.ShowPage(0);
  QLineEdit& field = rig.Field("txtHighEU(0)");
  field.setFocus();
  QTest::keyClick(&field, Qt::Key_Tab);
  EXPECT_FALSE(field.hasFocus());
  EXPECT_EQ(field.text(), u"12.5"_s);
}

}  // namespace
}  // namespace tessmar
