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

/// A control of the screen: its class, what it says in both languages, and its tip.
struct Named {
  const char* Name;
  const char* Class;
  const char16_t* English = u"";
  const char16_t* German = u"";
  const char16_t* Tip = u"";
};

constexpr const char* kCheckBox = "QCheckBox";
constexpr const char* kField = "QLineEdit";
constexpr const char* kFrame = "QFrame";
constexpr const char* kGroup = "QGroupBox";
constexpr const char* kLabel = "QLabel";
constexpr const char* kList = "QComboBox";
constexpr const char* kOption = "QRadioButton";
constexpr const char* kButton = "QPushButton";
constexpr const char* kPage = "QWidget";

// clang-format off
constexpr Named kOnTheScreen[] = {
    {"cmdOK", kButton, u"Program Settings", u"Logger programmieren", u"Write setup values to logger flash memory"},
    {"cmdCancel", kButton, u"Back to Main Window", u"Zurück zum Hauptfenster"},
    {"TabStrip", "QTabWidget"},
    {"Frames(0)", kPage}, {"Frames(1)", kPage}, {"Frames(2)", kPage}, {"Frames(3)", kPage},

    {"Label1", kLabel, u"Units", u"Einheiten"},
    {"Label2", kLabel, u"High - Engr. Units", u"Höchster ST"},
    {"Label3", kLabel, u"Low - Engr. Units", u"Niedrigster ST"},
    {"Label4", kLabel, u"High - Raw Value", u"Höchster Roh"},
    {"Label5", kLabel, u"Low - Raw Value", u"Niedrigster Roh"},
    {"Label10", kLabel, u"Display High Value", u"Höchste Anz"},
    {"Label11", kLabel, u"Display Low Value", u"Niedrigster Anz"},
    {"Label6", kLabel, u"Decimal Places", u"Nachkommastellen"},

    {"Label7", kLabel, u"Name", u"Name"},
    {"txtName", kField},
    {"Label8", kLabel, u"Sensor Warmup Time", u"Sensor-Aufwärmzeit"},
    {"cmbWarmup", kList},
    {"Label9", kLabel, u"seconds", u"Sekunden"},
    {"lblBaudRate", kLabel, u"Baud Rate", u"Baudrate"},
    {"cmbBaud", kList},
    {"Frame1", kFrame},
    {"optPeriodic", kOption, u"Sample periodically every", u"Aufzeichnungsintervall"},
    {"txtSampleInterval", kField},
    {"cmbSampleInterval", kList},
    {"optFastMode", kOption, u"Fast sampling mode (10 times per second)", u"Schnellmodus (10 Mal pro Sekunde)"},
    {"optLogarithmic", kOption, u"Logarithmic sampling", u"Logarithmischer Verlauf"},
    {"chkException", kCheckBox, u"Log only if channel 1 change exceeds +/-", u"Nur speichern, wenn Änderung an Kanal 1 +/-"},
    {"txtException", kField},
    {"lblExceptionUnits", kLabel, u"raw units", u"Roheinheiten überschreitet"},
    {"chkWrap", kCheckBox, u"Wrap records at end of storage", u"Älteste Werte überschreiben, wenn Speicher voll"},
    {"chkSOD", kCheckBox, u"Enable Sample-On-Demand", u"Aufzeichnen auf Anforderung"},
    {"chkAlarm(0)", kCheckBox, u"Use Alarm 1 To Specify Sample Start Time", u"Alarm 1 als Startzeit für Aufzeichnung verwenden"},
    {"lblAlarm(0)", kLabel, u"Alarm 1 Time (hh:mm:ss)", u"Alarm 1 Zeit (hh:mm:ss)"},
    {"txtAlarm(0)", kField},
    {"cmbAlarm(0)", kList},
    {"chkAlarm(1)", kCheckBox, u"Use Alarm 2 To Specify Sampling Stop Time", u"Alarm 2 als Stopzeit für Aufzeichnung verwenden"},
    {"lblAlarm(1)", kLabel, u"Alarm 2 Time (hh:mm:ss)", u"Alarm 2 Zeit (hh:mm:ss)"},
    {"txtAlarm(1)", kField},
    {"cmbAlarm(1)", kList},

    {"Frame2", kGroup, u"Inputs", u"Inputs"},
    {"Label17", kLabel, u"O2 Sensor Channel:", u"O2 Sensor Channel:"},
    {"cmbPO2SourceChannel", kList},
    {"Label18", kLabel, u"Units:", u"Units:"},
    {"cmbPO2SourceUnits", kList},
    {"Label20", kLabel, u"Water Temp Sensor Channel:", u"Water Temp Sensor Channel:"},
    {"cmbWaterTempSourceChannel", kList},
    {"Label19", kLabel, u"Units:", u"Units:"},
    {"cmbWaterTempSourceUnits", kList},
    {"label1000", kLabel, u"Conductivity Sensor Channel:", u"Conductivity Sensor Channel:"},
    {"cmbConductivitySourceChannel", kList},
    {"label1002", kLabel, u"Units:", u"Units:"},
    {"cmbConductivitySourceUnits", kList},
    {"Label13", kLabel, u"or Select Manual Entry:", u"or Select Manual Entry:"},
    {"chkConductivityManualEntry", kCheckBox},
    {"txtConductivityManualEntry", kField},
    {"lblConductivityManualEntryUnits", kLabel, u"Units:", u"Units:"},
    {"cmbConductivityManualEntryUnits", kList},
    {"label1001", kLabel, u"Air Pressure Sensor Channel:", u"Air Pressure Sensor Channel:"},
    {"cmbAirPressureSourceChannel", kList},
    {"label1003", kLabel, u"Units:", u"Units:"},
    {"cmbAirPressureSourceUnits", kList},
    {"Label16", kLabel, u"or Select Manual Entry:", u"or Select Manual Entry:"},
    {"chkAirPressureManualEntry", kCheckBox},
    {"txtAirPressureManualEntry", kField},
    {"lblAirPressureManualEntryUnits", kLabel, u"Units:", u"Units:"},
    {"cmbAirPressureManualEntryUnits", kList},

    {"Frame3", kGroup, u"Outputs", u"Outputs"},
    {"Label12", kLabel,
     u"Salinity  can be calculated from a conductivity sensor, and displayed in PSS units (Practical Salinity Scale).",
     u"Salinity  can be calculated from a conductivity sensor, and displayed in PSS units (Practical Salinity Scale)."},
    {"chkEnableSalinityDisplay", kCheckBox, u"Enable Salinity Display", u"Enable Salinity Display"},
    {"lblDisplayOnChannel(1)", kLabel, u"Display On Channel:", u"Display On Channel:"},
    {"cmbSalinityDisplayChannel", kList},
    {"lblDisplayUnits(1)", kLabel, u"Units: PSS", u"Units: PSS"},
    {"Label14", kLabel,
     u"O2 % Saturation can be calculated from O2 partial pressure, temperature, and air pressure.",
     u"O2 % Saturation can be calculated from O2 partial pressure, temperature, and air pressure."},
    {"chkEnableO2SaturationDisplay", kCheckBox, u"Enable O2 %Saturation Display", u"Enable O2 %Saturation Display"},
    {"lblDisplayOnChannel(2)", kLabel, u"Display On Channel:", u"Display On Channel:"},
    {"cmbO2SaturationDisplayChannel", kList},
    {"lblDisplayUnits(2)", kLabel, u"Units: %Sat", u"Units: %Sat"},
    {"Label15", kLabel,
     u"O2 Concentration in mg/L (equivalent to ppm) can be calculated from O2 partial pressure,  temperature, and conductivity.",
     u"O2 Concentration in mg/L (equivalent to ppm) can be calculated from O2 partial pressure,  temperature, and conductivity."},
    {"chkEnableO2ConcentrationDisplay", kCheckBox, u"Enable O2 Concentration Display", u"Enable O2 Concentration Display"},
    {"lblDisplayOnChannel(3)", kLabel, u"Display On Channel:", u"Display On Channel:"},
    {"cmbO2ConcentrationDisplayChannel", kList},
    {"lblDisplayUnits(3)", kLabel, u"Units: ", u"Units: "},
    {"cmbO2ConcentrationDisplayUnits", kList},
};

// One of each for every analog channel.
constexpr Named kInEveryColumn[] = {
    {"chkEnable", kCheckBox, u"Enable", u"Aktivieren", u"Selects if channel is included in display and history "},
    {"cmbEU", kList, u"", u"", u"Name of measurement engineering units (9 characters max)"},
    {"txtHighEU", kField, u"", u"", u"Floating point value of upper calibration point expressed in engineering units"},
    {"txtLowEU", kField, u"", u"", u"Floating point value of lower calibration point expressed in engineering units"},
    {"txtHighRaw", kField, u"", u"", u"Integer value of upper calibration point ( 0-65535)"},
    {"txtLowRaw", kField, u"", u"", u"Integer value of lower calibration point (0-65535)"},
    {"txtTop", kField, u"", u"", u"Floating point value of top of display meter"},
    {"txtBottom", kField, u"", u"", u"Floating point value of bottom of display meter"},
    {"cmbPrecision", kList, u"", u"", u"Number of digits to display after decimal point "},
    {"cmdCalibrate", kButton, u"Calibrate", u"Kalibrieren", u"Run dialog that assists setting calibration points"},
};

// One of each for every pulse channel.
constexpr Named kForEveryPulse[] = {
    {"chkPulseEnable", kCheckBox, u"Enable", u"Aktivieren", u"Selects if pulse channel is included in display and history data"},
    {"lblPulse1", kLabel, u"Sensor Name or Units", u"Sensorname oder Einheiten"},
    {"cmbPulseEU", kList, u"", u"", u"Name of measurement units (9 characters max)"},
    {"lblPulse2", kLabel, u"Value for Single Pulse", u"Wert für Einzelimpuls"},
    {"txtPulseUnit", kField, u"", u"", u"Floating point value for each pulse expressed in engineering units"},
    {"lblPulse3", kLabel, u"Decimal Places", u"Nachkommastellen"},
    {"cmbPulsePrecision", kList, u"", u"", u"Number of digits to display after decimal point "},
};

struct NamedEntry {
  const char* Name;
  const char16_t* English;
  const char16_t* German;
};
constexpr NamedEntry kMenus[] = {
    {"mnuFile", u"&File", u"&Datei"},
    {"mnuAction", u"&Action", u"&Aktion"},
    {"mnuHelp", u"&Help", u"&Hilfe"},
};
constexpr NamedEntry kEntries[] = {
    {"mnuSave", u"&Save Setup File", u"Setupdatei &speichern"},
    {"mnuLoad", u"&Load Setup File", u"Setupdatei &laden"},
    {"mnuSep1", u"", u""},
    {"mnuHist(0)", u"&1 ", u"&1 "},
    {"mnuHist(1)", u"&2 ", u"&2 "},
    {"mnuHist(2)", u"&3 ", u"&3 "},
    {"mnuHist(3)", u"&4 ", u"&4 "},
    {"mnuSep2", u"", u""},
    {"mnuExit", u"E&xit", u"&Beenden"},
    {"mnuDownload", u"&Program Settings", u"&Logger programmieren"},
    {"mnuInitialize", u"&Initialize to Default Values", u"Auf Werkseinstellungen &zurücksetzen"},
    {"mnuLaunchHelp", u"&Help", u"&Hilfe"},
    {"mnuLaunchDOHelp", u"&Dissolved Oxygen Sensor Help", u"&Dissolved Oxygen Sensor Help"},
    {"mnuAbout", u"&About", u"&Info"},
};
// clang-format on

/// The caption of a control; empty for one that shows a value and no caption.
QString CaptionOf(const QWidget& control) {
  if (const auto* label = qobject_cast<const QLabel*>(&control)) return label->text();
  if (const auto* button = qobject_cast<const QAbstractButton*>(&control)) return button->text();
  if (const auto* group = qobject_cast<const QGroupBox*>(&control)) return group->title();
  return {};
}

class SetupScreenControlsTest : public testing::TestWithParam<std::int16_t> {
 protected:
  SetupScreenControlsTest() {
    SetTextLanguage(GetParam());
    rig_.Open();
  }
  ~SetupScreenControlsTest() override { SetTextLanguage(kLanguageEnglish); }

  bool German() const { return GetParam() == kLanguageGerman; }

  void Expect(const Named& row, const QString& name) const {
    const QList<QWidget*> found = rig_.Form->findChildren<QWidget*>(name);
    ASSERT_EQ(found.size(), 1) << name.toStdString();
    const QWidget& control = *found.front();
    EXPECT_TRUE(control.inherits(row.Class)) << name.toStdString();
    EXPECT_EQ(CaptionOf(control), QString::fromUtf16(German() ? row.German : row.English))
        << name.toStdString();
    EXPECT_EQ(control.toolTip(), QString::fromUtf16(row.Tip)) << name.toStdString();
  }

  SetupScreenRig rig_;
};

TEST_P(SetupScreenControlsTest, EveryControlIsThereUnderItsNameWithItsCaptionAndTip) {
  for (const Named& row : kOnTheScreen) Expect(row, QLatin1StringView(row.Name));
}

TEST_P(SetupScreenControlsTest, EveryAnalogChannelHasItsColumn) {
  for (int channel = 0; channel < 8; ++channel) {
    const QString number = QString::number(channel + 1);
    const auto& frame =
        rig_.Get<QGroupBox>(ElementName("fraSetup", channel).toLatin1().constData());
    EXPECT_EQ(frame.title(), number);
    for (const Named& row : kInEveryColumn) {
      const QString name = ElementName(row.Name, channel);
      Expect(row, name);
      EXPECT_NE(frame.findChild<QWidget*>(name), nullptr) << name.toStdString();
    }
  }
}

TEST_P(SetupScreenControlsTest, BothPulseChannelsHaveTheirFrame) {
  for (int channel = 0; channel < 2; ++channel) {
    const auto& frame =
        rig_.Get<QGroupBox>(ElementName("fraPulse", channel).toLatin1().constData());
    EXPECT_EQ(frame.title(),
              (German() ? u"Impuls Kanal %1"_s : u"Pulse Channel %1"_s).arg(channel + 1));
    for (const Named& row : kForEveryPulse) {
      const QString name = ElementName(row.Name, channel);
      Expect(row, name);
      EXPECT_NE(frame.findChild<QWidget*>(name), nullptr) << name.toStdString();
    }
  }
}

TEST_P(SetupScreenControlsTest, EveryMenuEntryIsThereInItsPlace) {
  QStringList names;
  for (const NamedEntry& menu : kMenus) {
    const auto& shown = rig_.Get<QMenu>(menu.Name);
    EXPECT_EQ(shown.title(), QString::fromUtf16(German() ? menu.German : menu.English));
    for (const QAction* entry : shown.actions()) names.append(entry->objectName());
  }
  QStringList expected;
  for (const NamedEntry& row : kEntries) {
    expected.append(QLatin1StringView(row.Name));
    const auto& entry = rig_.Get<QAction>(row.Name);
    EXPECT_EQ(entry.text(), QString::fromUtf16(German() ? row.German : row.English)) << row.Name;
    EXPECT_EQ(entry.isSeparator(), expected.back().startsWith(u"mnuSep")) << row.Name;
    EXPECT_TRUE(entry.isVisible()) << row.Name;
  }
  EXPECT_EQ(names, expected);
}

TEST_P(SetupScreenControlsTest, TabsHaveTheirKeys) {
  const QTabBar* bar = rig_.Get<QTabWidget>("TabStrip").tabBar();
  const QStringList captions =
      German() ? QStringList{u"Analoge Kanäle"_s, u"Digitale Kanäle"_s, u"Allgemein"_s, u"DO"_s}
               : QStringList{u"Analog Channels"_s, u"Digital Channels"_s, u"General"_s, u"DO"_s};
  const QStringList keys{u"Analog"_s, u"Digital"_s, u"General"_s, u"DO"_s};
  ASSERT_EQ(bar->count(), 4);
  for (int tab = 0; tab < 4; ++tab) {
    EXPECT_EQ(bar->tabText(tab), captions[tab]);
    EXPECT_EQ(bar->tabData(tab).toString(), keys[tab]);
  }
}

INSTANTIATE_TEST_SUITE_P(BothLanguages, SetupScreenControlsTest,
                         testing::Values(kLanguageEnglish, kLanguageGerman));

/// Where a control stands on its page.
QPoint PlaceOnPage(const SetupScreenRig& rig, const char* name, const char* page) {
  return rig.Get(name).mapTo(&rig.Get(page), QPoint());
}

TEST(SetupScreenArrangement, PulseFramesStandSideBySideAtTheTopOfTheirPage) {
  SetupScreenRig rig;
  rig.Open();
  rig.ShowPage(1);
  QCoreApplication::processEvents();
  const QPoint first = PlaceOnPage(rig, "fraPulse(0)", "Frames(1)");
  const QPoint second = PlaceOnPage(rig, "fraPulse(1)", "Frames(1)");
  EXPECT_EQ(first.y(), 33);  // 500 twips.
  EXPECT_EQ(second.y(), 33);
  EXPECT_EQ(first.x(), 50);  // 750 twips.
  EXPECT_GT(second.x(), first.x() + rig.Get("fraPulse(0)").width());
}

}  // namespace
}  // namespace tessmar
