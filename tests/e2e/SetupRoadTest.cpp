#include <gtest/gtest.h>

#include <QFile>
#include <QLineEdit>

#include "e2e/Desk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

const QString kMain = u"frmMain"_s;
const QString kSetup = u"frmSetup"_s;
const QString kWizard = u"frmCalibrate"_s;

enum Page { kAnalog, kDigital, kGeneral, kOxygen };
enum Button { kYes, kNo, kCancel };
/// Of the warnings about the oxygen set-up.
enum WarningButton { kGoOn, kStop };

void Turn(Page page) {
  Robot::TurnTo(kSetup, u"TabStrip"_s, page);
}

void Type(const QString& field, const QString& text) {
  Robot::Type(kSetup, field, text);
}

void WaitForProgrammed() {
  Robot::WaitForForm(kSetup);
  // The way back is closed while the logger is programmed, and gets the focus afterwards.
  Robot::WaitFor(u"the end of programming"_s, [] {
    const auto* back = qobject_cast<QWidget*>(Robot::Control(kSetup, u"cmdCancel"_s));
    return back->isEnabled() && back->hasFocus();
  });
}

void ChangeEveryKindOfField() {
  Type(u"txtName"_s, u"North Basin"_s);
  Type(u"txtSampleInterval"_s, u"30"_s);
  Robot::Choose(kSetup, u"cmbSampleInterval"_s, u"seconds"_s);
  Robot::Tick(kSetup, u"chkAlarm(0)"_s);
  Robot::WaitFor(u"the alarm's time"_s, [] {
    return qobject_cast<QWidget*>(Robot::Control(kSetup, u"txtAlarm(0)"_s))->isEnabled();
  });
  Type(u"txtAlarm(0)"_s, u"7:5"_s);
  Robot::Choose(kSetup, u"cmbAlarm(0)"_s, u"P.M."_s);
  EXPECT_EQ(Robot::Text(kSetup, u"txtAlarm(0)"_s), u"7:05:00"_s);

  Turn(kAnalog);
  Type(u"cmbEU(1)"_s, u"Degrees"_s);
  Type(u"txtHighEU(3)"_s, u"1150.25"_s);
  Type(u"txtTop(3)"_s, u"1120"_s);
  Type(u"cmbPrecision(7)"_s, u"1"_s);

  Turn(kDigital);
  Type(u"cmbPulseEU(0)"_s, u"Buckets"_s);
  Type(u"txtPulseUnit(0)"_s, u"2.5"_s);

  Turn(kOxygen);
  Robot::Tick(kSetup, u"chkAirPressureManualEntry"_s);
  Type(u"txtAirPressureManualEntry"_s, u"1013"_s);
  Robot::Choose(kSetup, u"cmbAirPressureManualEntryUnits"_s, u"hPa"_s);
}

void ExpectChangedFields() {
  EXPECT_EQ(Robot::Text(kSetup, u"txtName"_s), u"North Basin"_s);
  EXPECT_EQ(Robot::Text(kSetup, u"txtSampleInterval"_s), u"30"_s);
  EXPECT_EQ(Robot::Text(kSetup, u"cmbSampleInterval"_s), u"seconds"_s);
  EXPECT_EQ(Robot::Text(kSetup, u"txtAlarm(0)"_s), u"7:05:00"_s);
  EXPECT_EQ(Robot::Text(kSetup, u"cmbAlarm(0)"_s), u"P.M."_s);
  EXPECT_EQ(Robot::Text(kSetup, u"cmbEU(1)"_s), u"Degrees"_s);
  EXPECT_EQ(Robot::Text(kSetup, u"txtHighEU(3)"_s), u"1150.25"_s);
  EXPECT_EQ(Robot::Text(kSetup, u"txtTop(3)"_s), u"1120"_s);
  EXPECT_EQ(Robot::Text(kSetup, u"cmbPrecision(7)"_s), u"1"_s);
  EXPECT_EQ(Robot::Text(kSetup, u"cmbPulseEU(0)"_s), u"Buckets"_s);
  EXPECT_EQ(Robot::Text(kSetup, u"txtPulseUnit(0)"_s), u"2.5"_s);
  EXPECT_EQ(Robot::Text(kSetup, u"txtAirPressureManualEntry"_s), u"1013"_s);
  EXPECT_EQ(Robot::Text(kSetup, u"cmbAirPressureManualEntryUnits"_s), u"hPa"_s);
}

void ExpectChangedMainScreen(Desk& desk) {
  Robot::WaitFor(u"the logger to be read again"_s, [&] { return !desk.TheProgram().Link().Busy; });
  Robot::WaitForText(kMain, u"lblLoggerName"_s, u"North Basin"_s);
  EXPECT_EQ(MainText(u"lblSampleInterval"_s), u"30 seconds"_s);
  EXPECT_EQ(MainText(u"lblUnits(1)"_s), u"Degrees"_s);
  EXPECT_EQ(MainText(u"lblMax(3)"_s), u"1120.0"_s);
  EXPECT_FALSE(MainText(u"lblAlarm(0)"_s).isEmpty());
}

/// Programs against the warning that the new unit of the temperature's channel calls for.
void Program(WarningButton answer) {
  Robot::Click(kSetup, u"cmdOK"_s);
  Robot::Answer(u"Are you sure you want to program settings into logger memory?"_s, kYes);
  Robot::Answer(u"Warning: units for Water Temp Sensor Channel #2 as configured on DO tab:"_s,
                answer);
}

void LeaveUnasked() {
  Robot::ClickUntilGone(kSetup, u"cmdCancel"_s);
  EXPECT_FALSE(Robot::IsShown(u"FMessage"_s));
}

// One logger is set up, the file of it sets up the next.
TEST(SetupRoad, AWholeWorkingDay) {
  Desk desk({u"--name"_s, u"Alpha Pond"_s});
  const QString file = desk.Path(u"basin.set"_s);
  const QString trouble = desk.Work([&] {
    desk.Connect();
    EXPECT_EQ(MainText(u"lblLoggerName"_s), u"Alpha Pond"_s);
    desk.OpenSetup();
    ChangeEveryKindOfField();
    Program(kStop);
    Robot::WaitFor(u"the warning to have ended it"_s, [&] {
      return Robot::Form(u"FMessage"_s) == nullptr && !desk.TheProgram().Link().Busy;
    });
    Program(kGoOn);
    WaitForProgrammed();
    Robot::Trigger(kSetup, u"mnuSave"_s);
    Robot::TakeFile(file);
    Robot::WaitFor(u"the setup file"_s, [&] { return QFile::exists(file); });
    Robot::WaitForForm(kSetup);
    LeaveUnasked();
    ExpectChangedMainScreen(desk);

    desk.PlugInAndConnect({u"--name"_s, u"Beta Pond"_s});
    EXPECT_EQ(MainText(u"lblLoggerName"_s), u"Beta Pond"_s);
    desk.OpenSetup();
    Robot::Trigger(kSetup, u"mnuLoad"_s);
    Robot::TakeFile(file);
    Robot::WaitForText(kSetup, u"txtName"_s, u"North Basin"_s);
    ExpectChangedFields();
    Program(kGoOn);
    WaitForProgrammed();
    LeaveUnasked();
    ExpectChangedMainScreen(desk);
    desk.CloseMainWindow();
  });
  EXPECT_EQ(trouble, QString());
  EXPECT_EQ(desk.StoredValue(u"LastFile0"_s), file);
}

TEST(SetupRoad, AsksNothingWhenNothingChanged) {
  Desk desk;
  const QString trouble = desk.Work([&] {
    desk.Connect();
    desk.OpenSetup();
    for (const Page page : {kAnalog, kDigital, kOxygen, kGeneral}) Turn(page);
    LeaveUnasked();
  });
  EXPECT_EQ(trouble, QString());
}

TEST(SetupRoad, ARefusedFieldKeepsTheFocusAndCancelsTheClick) {
  Desk desk;
  const QString trouble = desk.Work([&] {
    desk.Connect();
    desk.OpenSetup();
    for (const QString& button : {u"cmdOK"_s, u"cmdCancel"_s}) {
      Type(u"txtSampleInterval"_s, u"0"_s);
      Robot::Click(kSetup, button);
      Robot::Answer(u"Error: sample interval must be between 1 and 65535."_s);
      Robot::WaitForForm(kSetup);
      Robot::Pause(200);
      EXPECT_FALSE(Robot::IsShown(u"FMessage"_s)) << "the click was not cancelled";
      EXPECT_TRUE(Robot::HasFocus(kSetup, u"txtSampleInterval"_s));
      EXPECT_EQ(Robot::Text(kSetup, u"txtSampleInterval"_s), u"0"_s);
    }
    Type(u"txtSampleInterval"_s, u"20"_s);
    Robot::Click(kSetup, u"cmdCancel"_s);
    Robot::Answer(u"The settings information has changed without being saved"_s, kNo);
    Robot::Answer(u"The settings information has changed without being programmed"_s, kCancel);
    Robot::WaitForForm(kSetup);
    Robot::Click(kSetup, u"cmdCancel"_s);
    Robot::Answer(u"The settings information has changed without being saved"_s, kNo);
    Robot::Answer(u"The settings information has changed without being programmed"_s, kNo);
    Robot::WaitForNoForm(kSetup);
    // What was not programmed does not survive.
    Robot::WaitForText(kMain, u"lblSampleInterval"_s, u"15 minutes"_s);
  });
  EXPECT_EQ(trouble, QString());
}

// A logger that keeps a byte of its own never passes the proof by reading back.
TEST(SetupRoad, ALoggerThatKeepsAByteIsNotProgrammed) {
  Desk desk({u"--fault"_s, u"stuck-byte"_s});
  const QString trouble = desk.Work([&] {
    desk.Connect();
    desk.OpenSetup();
    Type(u"txtSampleInterval"_s, u"20"_s);
    Robot::Click(kSetup, u"cmdOK"_s);
    Robot::Answer(u"Are you sure you want to program settings into logger memory?"_s, kYes);
    Robot::Answer(u"Error: programming not completed successfully."_s);
    Robot::WaitForForm(kSetup);
    EXPECT_TRUE(Robot::IsEnabled(kSetup, u"cmdCancel"_s));
  });
  EXPECT_EQ(trouble, QString());
}

void WaitForReadingOtherThan(const QString& text) {
  Robot::WaitFor(u"a live reading"_s, [&] {
    const auto* field = qobject_cast<QLineEdit*>(Robot::Control(kWizard, u"txtCalibrate"_s));
    return field != nullptr && field->text() != text;
  });
}

TEST(SetupRoad, CalibratesAChannelFromLiveReadings) {
  Desk desk;
  const QString trouble = desk.Work([&] {
    desk.Connect();
    desk.OpenSetup();
    Turn(kAnalog);
    Robot::Click(kSetup, u"cmdCalibrate(0)"_s);
    Robot::WaitForForm(kWizard);
    Robot::Type(kWizard, u"txtCalibrate"_s, u"380"_s);
    Robot::Click(kWizard, u"cmdNext"_s);
    Robot::WaitForText(kWizard, u"lblCalibrate"_s, u"Press Next when the value is settled:"_s);
    WaitForReadingOtherThan(u"65535"_s);
    Robot::Click(kWizard, u"cmdNext"_s);
    Robot::WaitForText(kWizard, u"lblCalibrate"_s,
                       u"Enter the lowest value in engineering units:"_s);
    Robot::Type(kWizard, u"txtCalibrate"_s, u"10.5"_s);
    Robot::Click(kWizard, u"cmdNext"_s);
    Robot::WaitForText(kWizard, u"cmdNext"_s, u"Finish"_s);
    WaitForReadingOtherThan(u"0"_s);
    Robot::Click(kWizard, u"cmdNext"_s);
    Robot::WaitForNoForm(kWizard);
    EXPECT_EQ(Robot::Text(kSetup, u"txtHighEU(0)"_s), u"380"_s);
    EXPECT_EQ(Robot::Text(kSetup, u"txtLowEU(0)"_s), u"10.5"_s);
    for (const QString& field : {u"txtHighRaw(0)"_s, u"txtLowRaw(0)"_s}) {
      const int reading = Robot::Text(kSetup, field).toInt();
      EXPECT_GT(reading, 1000) << field.toStdString();
      EXPECT_LT(reading, 65535) << field.toStdString();
    }
  });
  EXPECT_EQ(trouble, QString());
}

}  // namespace
}  // namespace tessmar::test
