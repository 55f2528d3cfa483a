#include <gtest/gtest.h>

#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QRadioButton>

#include "base/TextTable.h"
#include "setup/SetupScreenRig.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::SetupScreenRig;

class SetupScreenTest : public testing::Test {
 protected:
  ~SetupScreenTest() override { SetTextLanguage(kLanguageEnglish); }

  SetupScreenRig rig_;
};

TEST_F(SetupScreenTest, OpensOnTheGeneralPageUnderItsOwnTitle) {
  rig_.Open();
  EXPECT_EQ(rig_.Form->objectName(), u"frmSetup"_s);
  EXPECT_EQ(rig_.Form->windowTitle(), u"Tessmar DO Monitor Setup"_s);
  EXPECT_EQ(rig_.Page(), 2);
  EXPECT_TRUE(rig_.Get("Frames(2)").isVisible());
  EXPECT_FALSE(rig_.Get("Frames(0)").isVisible());
  EXPECT_TRUE(rig_.Button("cmdOK").hasFocus());
  EXPECT_FALSE(rig_.Link.Busy);
}

TEST_F(SetupScreenTest, TabsShowTheirPages) {
  rig_.Open();
  const QStringList captions{u"Analog Channels"_s, u"Digital Channels"_s, u"General"_s, u"DO"_s};
  auto& strip = rig_.Get<QTabWidget>("TabStrip");
  for (int page : {0, 1, 3, 2}) {
    rig_.ClickTab(page);
    EXPECT_EQ(strip.tabText(page), captions[page]);
    for (int other = 0; other < 4; ++other) {
      EXPECT_EQ(rig_.Get(ElementName("Frames", other).toLatin1().constData()).isVisible(),
                other == page);
    }
  }
}

TEST_F(SetupScreenTest, ShowsWhatTheLoggerHolds) {
  rig_.Open();
  EXPECT_EQ(rig_.Field("txtName").text(), u"Mill Pond 3"_s);
  EXPECT_EQ(rig_.Field("txtSampleInterval").text(), u"15"_s);
  EXPECT_EQ(rig_.List("cmbSampleInterval").currentText(), u"minutes"_s);
  EXPECT_EQ(rig_.List("cmbEU(7)").currentText(), u"Volts"_s);
  EXPECT_EQ(rig_.Field("txtHighRaw(7)").text(), u"62384"_s);
  EXPECT_EQ(rig_.List("cmbPulseEU(1)").currentText(), u"Liters"_s);
  EXPECT_TRUE(rig_.Get<QRadioButton>("optPeriodic").isChecked());
}

TEST_F(SetupScreenTest, ListsHoldTheirItems) {
  rig_.Open();
  const std::pair<const char*, int> counts[] = {{"cmbEU(0)", 23},
                                                {"cmbEU(7)", 23},
                                                {"cmbPulseEU(0)", 7},
                                                {"cmbPulseEU(1)", 7},
                                                {"cmbWarmup", 61},
                                                {"cmbPrecision(0)", 7},
                                                {"cmbPrecision(7)", 7},
                                                {"cmbPulsePrecision(1)", 7},
                                                {"cmbSampleInterval", 4},
                                                {"cmbBaud", 7},
                                                {"cmbAlarm(0)", 2},
                                                {"cmbAlarm(1)", 2},
                                                {"cmbPO2SourceUnits", 2},
                                                {"cmbWaterTempSourceUnits", 2},
                                                {"cmbConductivitySourceUnits", 2},
                                                {"cmbConductivityManualEntryUnits", 2},
                                                {"cmbAirPressureSourceUnits", 8},
                                                {"cmbAirPressureManualEntryUnits", 8},
                                                {"cmbO2ConcentrationDisplayUnits", 2}};
  for (const auto& [name, count] : counts) EXPECT_EQ(rig_.List(name).count(), count) << name;
  EXPECT_EQ(rig_.List("cmbAlarm(0)").itemText(1), u"P.M."_s);
  EXPECT_TRUE(rig_.List("cmbEU(3)").isEditable());
  EXPECT_FALSE(rig_.List("cmbAirPressureSourceUnits").isEditable());
}

TEST_F(SetupScreenTest, NoDoChannelListOffersEight) {
  rig_.Open();
  for (const char* name :
       {"cmbPO2SourceChannel", "cmbWaterTempSourceChannel", "cmbConductivitySourceChannel",
        "cmbAirPressureSourceChannel", "cmbSalinityDisplayChannel", "cmbO2SaturationDisplayChannel",
        "cmbO2ConcentrationDisplayChannel"}) {
    EXPECT_EQ(rig_.List(name).count(), 7) << name;
    EXPECT_EQ(rig_.List(name).findText(u"8"_s), -1) << name;
  }
}

TEST_F(SetupScreenTest, ToolTipsSayWhatTheControlsAre) {
  rig_.Open();
  EXPECT_EQ(rig_.Button("cmdOK").toolTip(), u"Write setup values to logger flash memory"_s);
  EXPECT_EQ(rig_.Check("chkEnable(5)").toolTip(),
            u"Selects if channel is included in display and history "_s);
  EXPECT_EQ(rig_.Field("txtHighRaw(1)").toolTip(),
            u"Integer value of upper calibration point ( 0-65535)"_s);
  EXPECT_EQ(rig_.List("cmbPulsePrecision(0)").toolTip(),
            u"Number of digits to display after decimal point "_s);
}

TEST_F(SetupScreenTest, GermanCaptionsAndMenus) {
  SetTextLanguage(kLanguageGerman);
  rig_.Open();
  EXPECT_EQ(rig_.Button("cmdOK").text(), u"Logger programmieren"_s);
  EXPECT_EQ(rig_.Button("cmdCancel").text(), u"Zurück zum Hauptfenster"_s);
  EXPECT_EQ(rig_.Button("cmdCalibrate(7)").text(), u"Kalibrieren"_s);
  EXPECT_EQ(rig_.Get<QGroupBox>("fraPulse(1)").title(), u"Impuls Kanal 2"_s);
  EXPECT_EQ(rig_.Get<QTabWidget>("TabStrip").tabText(0), u"Analoge Kanäle"_s);
  EXPECT_EQ(rig_.Get<QTabWidget>("TabStrip").tabText(3), u"DO"_s);
  EXPECT_EQ(rig_.Check("chkException").text(), u"Nur speichern, wenn Änderung an Kanal 1 +/-"_s);
  EXPECT_EQ(rig_.Get<QLabel>("lblExceptionUnits").text(), u"Roheinheiten überschreitet"_s);
  EXPECT_EQ(rig_.Check("chkEnableSalinityDisplay").text(), u"Enable Salinity Display"_s);
  EXPECT_EQ(rig_.Get<QMenu>("mnuFile").title(), u"&Datei"_s);
  EXPECT_EQ(rig_.Get<QAction>("mnuSave").text(), u"Setupdatei &speichern"_s);
  EXPECT_EQ(rig_.Get<QAction>("mnuInitialize").text(), u"Auf Werkseinstellungen &zurücksetzen"_s);
  EXPECT_EQ(rig_.Get<QAction>("mnuLaunchDOHelp").text(), u"&Dissolved Oxygen Sensor Help"_s);
  EXPECT_EQ(rig_.Form->windowTitle(), u"Tessmar DO Monitor Setup"_s);
}

TEST_F(SetupScreenTest, EnglishCaptionsAndMenus) {
  rig_.Open();
  EXPECT_EQ(rig_.Get<QLabel>("Label10").text(), u"Display High Value"_s);
  EXPECT_EQ(rig_.Get<QLabel>("lblPulse2(1)").text(), u"Value for Single Pulse"_s);
  EXPECT_EQ(rig_.Get<QGroupBox>("fraPulse(0)").title(), u"Pulse Channel 1"_s);
  EXPECT_EQ(rig_.Get<QLabel>("lblAlarm(1)").text(), u"Alarm 2 Time (hh:mm:ss)"_s);
  EXPECT_EQ(rig_.Get<QLabel>("lblDisplayUnits(3)").text(), u"Units: "_s);
  EXPECT_EQ(rig_.Get<QLabel>("Label12").text(),
            u"Salinity  can be calculated from a conductivity sensor, and displayed in PSS units "
            "(Practical Salinity Scale)."_s);
  EXPECT_EQ(rig_.Get<QMenu>("mnuAction").title(), u"&Action"_s);
  EXPECT_EQ(rig_.Get<QAction>("mnuDownload").text(), u"&Program Settings"_s);
  EXPECT_EQ(rig_.Get<QAction>("mnuExit").text(), u"E&xit"_s);
}

TEST_F(SetupScreenTest, NothingIsCutOffInEitherLanguageAndClockForm) {
  for (const std::int16_t language : {kLanguageEnglish, kLanguageGerman}) {
    SetTextLanguage(language);
    const QLocale::Language spoken =
        language == kLanguageGerman ? QLocale::German : QLocale::English;
    SetupScreenRig rig({}, QLocale(spoken));
    rig.Open();
    for (int page = 0; page < 4; ++page) {
      rig.ShowPage(page);
      QCoreApplication::processEvents();
      for (const QWidget* control : rig.Form->findChildren<QWidget*>()) {
        const bool shows = qobject_cast<const QLabel*>(control) != nullptr ||
                           qobject_cast<const QAbstractButton*>(control) != nullptr;
        if (!shows || !control->isVisible() || control->objectName().isEmpty()) continue;
        EXPECT_GE(control->width(), control->minimumSizeHint().width())
            << control->objectName().toStdString();
        EXPECT_GE(control->height(), control->minimumSizeHint().height())
            << control->objectName().toStdString();
      }
    }
  }
}

TEST_F(SetupScreenTest, ASmallWindowScrollsItsPagesAndKeepsItsButtons) {
  rig_.Open();
  rig_.Form->resize(400, 300);
  for (int page = 0; page < 4; ++page) {
    rig_.ShowPage(page);
    QCoreApplication::processEvents();
    for (const char* name : {"cmdOK", "cmdCancel"}) {
      const QPushButton& button = rig_.Button(name);
      const QRect place(button.mapTo(rig_.Form.get(), QPoint()), button.size());
      EXPECT_TRUE(rig_.Form->rect().contains(place)) << name;
    }
  }
  rig_.ShowPage(0);
  QWidget& last = rig_.Get("cmdCalibrate(7)");
  EXPECT_TRUE(last.visibleRegion().isEmpty());
  rig_.Button("cmdOK").setFocus();
  rig_.Get("cmbPrecision(7)").setFocus();
  QTest::keyClick(rig_.Form->focusWidget(), Qt::Key_Tab);
  EXPECT_TRUE(last.hasFocus());
  EXPECT_FALSE(last.visibleRegion().isEmpty());
}

TEST_F(SetupScreenTest, EveryControlHasAnAccessibleName) {
  rig_.Open();
  for (QWidget* control : rig_.Form->findChildren<QWidget*>()) {
    const bool own = !control->objectName().isEmpty() && !control->objectName().startsWith(u"qt_");
    const bool input = qobject_cast<QLineEdit*>(control) || qobject_cast<QComboBox*>(control) ||
                       qobject_cast<QAbstractButton*>(control);
    if (own && input) {
      EXPECT_FALSE(control->accessibleName().isEmpty()) << control->objectName().toStdString();
    }
  }
}

TEST_F(SetupScreenTest, TheTabKeyGoesThroughThePageInOrder) {
  rig_.Open();
  rig_.ShowPage(0);
  rig_.Button("cmdOK").setFocus();
  QStringList visited;
  for (int step = 0; step < 15; ++step) {
    visited.append(rig_.Form->focusWidget()->objectName());
    QTest::keyClick(rig_.Form->focusWidget(), Qt::Key_Tab);
  }
  EXPECT_EQ(visited,
            (QStringList{u"cmdOK"_s, u"cmdCancel"_s, u"qt_tabwidget_tabbar"_s, u"chkEnable(0)"_s,
                         u"cmbEU(0)"_s, u"txtHighEU(0)"_s, u"txtLowEU(0)"_s, u"txtHighRaw(0)"_s,
                         u"txtLowRaw(0)"_s, u"txtTop(0)"_s, u"txtBottom(0)"_s, u"cmbPrecision(0)"_s,
                         u"cmdCalibrate(0)"_s, u"chkEnable(1)"_s, u"cmbEU(1)"_s}));
}

TEST_F(SetupScreenTest, ChannelsThatTheLoggerLacksAreEmptyFramesWithTheirNumbers) {
  SetupScreenRig rig({.AnalogChannels = 3, .PulseChannels = 1});
  rig.Open();
  for (int channel = 0; channel < 8; ++channel) {
    auto& frame = rig.Get<QGroupBox>(ElementName("fraSetup", channel).toLatin1().constData());
    EXPECT_EQ(frame.title(), QString::number(channel + 1));
    EXPECT_EQ(frame.isEnabled(), channel < 3);
    EXPECT_EQ(frame.findChildren<QWidget*>().isEmpty(), channel >= 3);
  }
  for (const char* array : {"fraPulse", "chkPulseEnable", "cmbPulseEU", "txtPulseUnit",
                            "cmbPulsePrecision", "lblPulse1", "lblPulse2", "lblPulse3"}) {
    EXPECT_TRUE(rig.Get(ElementName(array, 0).toLatin1().constData()).isEnabled()) << array;
    EXPECT_FALSE(rig.Get(ElementName(array, 1).toLatin1().constData()).isEnabled()) << array;
  }
  EXPECT_EQ(rig.List("cmbPulseEU(1)").currentText(), QString());
  EXPECT_EQ(rig.Field("txtPulseUnit(1)").text(), QString());
  EXPECT_EQ(rig.List("cmbPO2SourceChannel").count(), 3);
}

TEST_F(SetupScreenTest, ALoggerOfOneChannelKeepsTheRestOfItsRecord) {
  SetupScreenRig rig({.AnalogChannels = 1, .PulseChannels = 0});
  rig.Settings.Analog[1].EngUnits = u"kept"_s;
  rig.Settings.Pulse[0].PulseUnit = 0.25;
  rig.Open();
  EXPECT_FALSE(rig.Get("fraPulse(0)").isEnabled());
  EXPECT_FALSE(rig.Get("fraPulse(1)").isEnabled());
  for (const char* name : {"cmbPO2SourceChannel", "cmbO2ConcentrationDisplayChannel"}) {
    EXPECT_EQ(rig.List(name).count(), 1) << name;
    EXPECT_EQ(rig.List(name).currentText(), u"1"_s) << name;
  }
  rig.Field("txtHighEU(0)").setText(u"250"_s);
  rig.Messages.Default = kNo;
  rig.Click(rig.Button("cmdCancel"));
  EXPECT_FALSE(rig.Form->isVisible());
  EXPECT_EQ(rig.Settings.Analog[0].UpperLimit, 250);
  EXPECT_EQ(rig.Settings.Analog[1].EngUnits, u"kept"_s);
  EXPECT_EQ(rig.Settings.Pulse[0].PulseUnit, 0.25);
}

TEST_F(SetupScreenTest, AlarmFieldsFollowTheirCheckBoxWithTheTimer) {
  rig_.Open();
  EXPECT_EQ(rig_.Get<QTimer>("Timer1").interval(), 250);
  EXPECT_TRUE(rig_.Get<QTimer>("Timer1").isActive());
  rig_.Check("chkAlarm(1)").setChecked(true);
  rig_.Beat(*rig_.Form);
  for (const char* name : {"txtAlarm(1)", "lblAlarm(1)", "cmbAlarm(1)"})
    EXPECT_TRUE(rig_.Get(name).isEnabled()) << name;
  for (const char* name : {"txtAlarm(0)", "lblAlarm(0)", "cmbAlarm(0)"})
    EXPECT_FALSE(rig_.Get(name).isEnabled()) << name;
}

TEST_F(SetupScreenTest, InThe24HourFormTheHalfDayListsAreHiddenAndStillFollow) {
  SetupScreenRig rig({}, QLocale(QLocale::German, QLocale::Germany));
  rig.Open();
  EXPECT_TRUE(rig.List("cmbAlarm(0)").isHidden());
  EXPECT_TRUE(rig.List("cmbAlarm(1)").isHidden());
  rig.Check("chkAlarm(0)").setChecked(true);
  rig.Beat(*rig.Form);
  EXPECT_TRUE(rig.List("cmbAlarm(0)").isEnabled());
  EXPECT_FALSE(rig.List("cmbAlarm(1)").isEnabled());
  EXPECT_TRUE(rig.List("cmbAlarm(0)").isHidden());
}

TEST_F(SetupScreenTest, ADisabledSampleOnDemandBoxKeepsItsValueAndIsRead) {
  rig_.Settings.EnableSOD = 1;
  rig_.Open();
  EXPECT_FALSE(rig_.Check("chkSOD").isEnabled());
  EXPECT_TRUE(rig_.Check("chkSOD").isChecked());
  rig_.Settings.EnableSOD = 0;
  rig_.Messages.Default = kNo;
  rig_.Click(rig_.Button("cmdCancel"));
  EXPECT_EQ(rig_.Settings.EnableSOD, 1);
}

TEST_F(SetupScreenTest, SampleOnDemandCanBeChosenWhereTheLoggerHasIt) {
  SetupScreenRig rig({.SampleOnDemand = true});
  rig.Open();
  EXPECT_TRUE(rig.Check("chkSOD").isEnabled());
}

TEST_F(SetupScreenTest, TheDoPageFollowsItsCheckBoxes) {
  rig_.Open();
  rig_.ShowPage(3);
  const std::pair<const char*, std::vector<const char*>> rows[] = {
      {"chkConductivityManualEntry",
       {"txtConductivityManualEntry", "lblConductivityManualEntryUnits",
        "cmbConductivityManualEntryUnits"}},
      {"chkAirPressureManualEntry",
       {"txtAirPressureManualEntry", "lblAirPressureManualEntryUnits",
        "cmbAirPressureManualEntryUnits"}},
      {"chkEnableSalinityDisplay",
       {"lblDisplayOnChannel(1)", "cmbSalinityDisplayChannel", "lblDisplayUnits(1)"}},
      {"chkEnableO2SaturationDisplay",
       {"lblDisplayOnChannel(2)", "cmbO2SaturationDisplayChannel", "lblDisplayUnits(2)"}},
      {"chkEnableO2ConcentrationDisplay",
       {"lblDisplayOnChannel(3)", "cmbO2ConcentrationDisplayChannel", "lblDisplayUnits(3)",
        "cmbO2ConcentrationDisplayUnits"}}};
  for (const auto& [check, followers] : rows) {
    for (int click = 0; click < 2; ++click) {
      rig_.Check(check).click();
      for (const char* follower : followers)
        EXPECT_EQ(rig_.Get(follower).isEnabled(), rig_.Check(check).isChecked()) << follower;
    }
  }
  EXPECT_TRUE(rig_.List("cmbConductivitySourceChannel").isEnabled());
  EXPECT_TRUE(rig_.List("cmbAirPressureSourceUnits").isEnabled());
}

TEST_F(SetupScreenTest, NothingDependsOnTheLoggingMode) {
  rig_.Open();
  for (const char* option : {"optFastMode", "optLogarithmic", "optPeriodic"}) {
    rig_.Get<QRadioButton>(option).click();
    for (const char* name :
         {"txtSampleInterval", "cmbSampleInterval", "chkException", "txtException"})
      EXPECT_TRUE(rig_.Get(name).isEnabled()) << name;
  }
}

}  // namespace
}  // namespace tessmar
