#include "settings/SetupFile.h"

#include <gtest/gtest.h>

#include <QFile>
#include <functional>
#include <vector>

#include "base/Fault.h"
#include "settings/ConfigImages.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::FullLogger;
using S = LoggerSettings;

const QLocale kUs(QLocale::English, QLocale::UnitedStates);
const QLocale kGerman(QLocale::German, QLocale::Germany);

QByteArray GoldenFile() {
  QFile file(QStringLiteral(TESSMAR_TEST_DATA "/well4.set"));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  return file.readAll();
}

/// The set-up that the golden file was saved from.
LoggerSettings WellFour() {
  LoggerSettings settings;
  LoadDefaultSettings(settings, 8);
  settings.LoggerName = u"Well 4"_s;
  settings.SampleInterval = u"15 minutes"_s;
  settings.LoggingStyle = 128;
  settings.Deadband = 25;
  settings.Analog[0].EngUnits = u"Feet"_s;
  settings.Analog[0].UpperLimit = 15;
  settings.Analog[0].DisplayTop = 15;
  settings.Pulse[1] = {0, u"Gallons"_s, 1, 0.25};
  settings.Alarm[0] = {1, 0, 30, 6};
  settings.Do.WaterTempChannel = 1;
  settings.Do.AirPressureManual = 500;
  return settings;
}

const SetupFileHead kHead{u"TessmarLogger"_s, u"2.1.9"_s, u"3/14/2006"_s, u"10:42:07 AM"_s};

LoggerSettings Defaults() {
  LoggerSettings settings;
  LoadDefaultSettings(settings, 8);
  return settings;
}

LoggerSettings Read(const QByteArray& file, const QLocale& locale = kUs) {
  LoggerSettings settings = Defaults();
  ReadSetupFile(file, locale, settings);
  return settings;
}

bool Fails(const QByteArray& file, const QLocale& locale = kUs) {
  try {
    Read(file, locale);
    return false;
  } catch (const Fault&) {
    return true;
  }
}

TEST(WriteSetupFile, WritesTheGoldenFile) {
  EXPECT_EQ(WriteSetupFile(kHead, FullLogger(), WellFour()), GoldenFile());
}

TEST(ReadSetupFile, ReadsTheGoldenFile) {
  EXPECT_EQ(Read(GoldenFile()), WellFour());
  LoggerSettings fromNothing;
  ReadSetupFile(GoldenFile(), kUs, fromNothing);
  EXPECT_EQ(fromNothing, WellFour()) << "the file names every field";
}

TEST(WriteSetupFile, KeepsChannelsThatTheLoggerLacks) {
  LinkState link = FullLogger();
  link.AnalogChannelCount = 3;
  link.PulseChannelCount = 0;
  QByteArray expected = GoldenFile();
  expected.replace("NumAnalogChannels=8", "NumAnalogChannels=3");
  expected.replace("NumDigitalChannels=2", "NumDigitalChannels=0");
  EXPECT_EQ(WriteSetupFile(kHead, link, WellFour()), expected);
  EXPECT_EQ(Read(expected), WellFour());
}

TEST(WriteSetupFile, WritesOneByteForEachCharacter) {
  LoggerSettings settings = Defaults();
  settings.LoggerName = u"M\u00FChle \u20AC"_s;
  const QByteArray file = WriteSetupFile(kHead, FullLogger(), settings);
  EXPECT_TRUE(file.contains("LoggerName=M\xFChle ?\r\n"));
  EXPECT_EQ(Read(file).LoggerName, u"M\u00FChle ?"_s);
}

TEST(WriteSetupFile, WritesNumbersWithAPointAndWithoutAnExponent) {
  LoggerSettings settings = Defaults();
  settings.Pulse[0].PulseUnit = 0.0000001;
  settings.Analog[0].LowerLimit = -3.5;
  settings.Analog[0].UpperLimit = -0.0;
  const QByteArray file = WriteSetupFile(kHead, FullLogger(), settings);
  EXPECT_TRUE(file.contains("PulseUnit=0.0000001\r\n"));
  EXPECT_TRUE(file.contains("LowerLimit=-3.5\r\nUpperLimit=0\r\n"));
}

struct KeyLine {
  const char* Lines;
  std::function<void(S&)> Set;
};

TEST(ReadSetupFile, TakesEachKeyToItsField) {
  const std::vector<KeyLine> rows{
      {"LoggerName=x", [](S& s) { s.LoggerName = u"x"_s; }},
      {"SampleInterval=5 hours", [](S& s) { s.SampleInterval = u"5 hours"_s; }},
      {"DataWrapAroundFlag=255", [](S& s) { s.DataWrapAroundFlag = 255; }},
      {"SensorWarmupTime=60", [](S& s) { s.SensorWarmupTime = 60; }},
      {"LoggingStyle=130", [](S& s) { s.LoggingStyle = 130; }},
      {"Deadband=-2147483648", [](S& s) { s.Deadband = -2147483647 - 1; }},
      {"EnableSOD=1", [](S& s) { s.EnableSOD = 1; }},
      {"FixedBaudRate=6", [](S& s) { s.FixedBaudRate = 6; }},
      {"[Analog Channel]\nChannel=7\nEnable=0", [](S& s) { s.Analog[7].Enable = 0; }},
      {"[Analog Channel]\nChannel=7\nEngUnits=mA", [](S& s) { s.Analog[7].EngUnits = u"mA"_s; }},
      {"[Analog Channel]\nChannel=7\nDecPlaces=9", [](S& s) { s.Analog[7].DecPlaces = 9; }},
      {"Channel=7\nRawScaleLower=5", [](S& s) { s.Analog[7].RawScaleLower = 5; }},
      {"Channel=7\nRawScaleUpper=70000", [](S& s) { s.Analog[7].RawScaleUpper = 70000; }},
      {"Channel=7\nLowerLimit=1.5", [](S& s) { s.Analog[7].LowerLimit = 1.5; }},
      {"Channel=7\nUpperLimit=-1.5", [](S& s) { s.Analog[7].UpperLimit = -1.5; }},
      {"Channel=7\nDisplayTop=2", [](S& s) { s.Analog[7].DisplayTop = 2; }},
      {"Channel=7\nDisplayBottom=3", [](S& s) { s.Analog[7].DisplayBottom = 3; }},
      {"[Digital Channel]\nChannel=1\nEnable=0", [](S& s) { s.Pulse[1].Enable = 0; }},
      {"[Digital Channel]\nChannel=1\nEngUnits=cm", [](S& s) { s.Pulse[1].EngUnits = u"cm"_s; }},
      {"[Digital Channel]\nChannel=1\nDecPlaces=3", [](S& s) { s.Pulse[1].DecPlaces = 3; }},
      {"Channel=1\nPulseUnit=0.25", [](S& s) { s.Pulse[1].PulseUnit = 0.25; }},
      {"[Alarm]\nChannel=1\nEnable=1", [](S& s) { s.Alarm[1].Enable = 1; }},
      {"Channel=1\nAlarmSec=59", [](S& s) { s.Alarm[1].AlarmSec = 59; }},
      {"Channel=1\nAlarmMin=-32768", [](S& s) { s.Alarm[1].AlarmMin = -32768; }},
      {"Channel=1\nAlarmHour=25", [](S& s) { s.Alarm[1].AlarmHour = 25; }},
      {"PO2Channel=6", [](S& s) { s.Do.PO2Channel = 6; }},
      {"PO2Units=1", [](S& s) { s.Do.PO2Units = 1; }},
      {"WaterTempChannel=6", [](S& s) { s.Do.WaterTempChannel = 6; }},
      {"WaterTempUnits=1", [](S& s) { s.Do.WaterTempUnits = 1; }},
      {"ConductivityManualEntry=0", [](S& s) { s.Do.ConductivityManualEntry = 0; }},
      {"ConductivityManual=1.25", [](S& s) { s.Do.ConductivityManual = 1.25; }},
      {"ConductivityManualEntryUnits=1", [](S& s) { s.Do.ConductivityManualEntryUnits = 1; }},
      {"ConductivityChannel=6", [](S& s) { s.Do.ConductivityChannel = 6; }},
      {"ConductivityUnits=1", [](S& s) { s.Do.ConductivityUnits = 1; }},
      {"AirPressureManualEntry=0", [](S& s) { s.Do.AirPressureManualEntry = 0; }},
      {"AirPressureManual=500", [](S& s) { s.Do.AirPressureManual = 500; }},
      {"AirPressureManualEntryUnits=7", [](S& s) { s.Do.AirPressureManualEntryUnits = 7; }},
      {"AirPressureChannel=6", [](S& s) { s.Do.AirPressureChannel = 6; }},
      {"AirPressureUnits=7", [](S& s) { s.Do.AirPressureUnits = 7; }},
      {"EnableSalinityDisplay=1", [](S& s) { s.Do.EnableSalinityDisplay = 1; }},
      {"SalinityDisplayChannel=6", [](S& s) { s.Do.SalinityDisplayChannel = 6; }},
      {"EnableO2SaturationDisplay=1", [](S& s) { s.Do.EnableO2SaturationDisplay = 1; }},
      {"O2SaturationDisplayChannel=6", [](S& s) { s.Do.O2SaturationDisplayChannel = 6; }},
      {"EnableO2ConcentrationDisplay=1", [](S& s) { s.Do.EnableO2ConcentrationDisplay = 1; }},
      {"O2ConcentrationDisplayChannel=6", [](S& s) { s.Do.O2ConcentrationDisplayChannel = 6; }},
      {"O2ConcentrationDisplayUnits=1", [](S& s) { s.Do.O2ConcentrationDisplayUnits = 1; }},
  };
  for (const KeyLine& row : rows) {
    LoggerSettings expected = Defaults();
    row.Set(expected);
    EXPECT_EQ(Read(row.Lines), expected) << row.Lines;
  }
}

TEST(ReadSetupFile, CountsTheLinesThatSetAField) {
  const auto count = [](const QByteArray& file) {
    LoggerSettings settings;
    return ReadSetupFile(file, kUs, settings);
  };
  EXPECT_EQ(count(""), 0);
  EXPECT_EQ(count("Program=x\r\nChannel=1\r\nhello\r\n[Analog Channel]\r\n"), 0);
  EXPECT_EQ(count("LoggerName=\r\n"), 1);
  EXPECT_EQ(count("EngUnits=hPa\r\n[Analog Channel]\r\nEngUnits=hPa\r\nDeadband=3\r\n"), 2);
}

TEST(ReadSetupFile, IgnoresWhatIsWrittenForPeople) {
  EXPECT_EQ(Read("Program=x\nVersion=y\nDate=z\nTime=\n"), Defaults());
}

TEST(ReadSetupFile, LeavesTheChannelCountsToTheLogger) {
  EXPECT_EQ(Read("NumAnalogChannels=3\nNumDigitalChannels=many"), Defaults());
}

TEST(ChannelsOfSetupFile, AreThoseOfTheLoggerAsFarAsTheFileSays) {
  const auto channels = [](const char* file) {
    const SetupFileChannels said = ChannelsOfSetupFile(file);
    return std::pair(said.Analog.value_or(-1), said.Pulse.value_or(-1));
  };
  EXPECT_EQ(channels("NumAnalogChannels=4\r\nNumDigitalChannels=0\r\n"), std::pair(4, 0));
  EXPECT_EQ(channels("LoggerName=A\nNumAnalogChannels= 0 \n"), std::pair(0, -1));
  EXPECT_EQ(channels("NumAnalogChannels=9\nNumDigitalChannels=3\n"), std::pair(-1, -1));
  EXPECT_EQ(channels("NumAnalogChannels=-1\nNumDigitalChannels=two\n"), std::pair(-1, -1));
  EXPECT_EQ(channels(""), std::pair(-1, -1));
  const SetupFileChannels golden = ChannelsOfSetupFile(GoldenFile());
  EXPECT_EQ(golden.Analog, 8);
  EXPECT_EQ(golden.Pulse, 2);
}

TEST(ReadSetupFile, TakesAFileOfNothingButAName) {
  LoggerSettings expected = Defaults();
  expected.LoggerName = u"x"_s;
  EXPECT_EQ(Read("LoggerName=x"), expected);
  EXPECT_EQ(Read(""), Defaults());
}

TEST(ReadSetupFile, KnowsKeysByTheirExactSpelling) {
  EXPECT_EQ(Read("loggername=x"), Defaults());
  EXPECT_EQ(Read("LOGGERNAME=x"), Defaults());
  EXPECT_EQ(Read("LoggerName =x"), Defaults());
  EXPECT_EQ(Read("LoggerNames=x"), Defaults());
}

TEST(ReadSetupFile, TakesABlankAheadOfAKeyAsPartOfIt) {
  EXPECT_EQ(Read("[Alarm]\n Enable=1"), Defaults());
  EXPECT_EQ(Read(" LoggerName=x"), Defaults());
}

TEST(ReadSetupFile, RemovesBlanksAroundAValue) {
  EXPECT_EQ(Read("LoggerName=  Well  4  ").LoggerName, u"Well  4"_s);
  EXPECT_EQ(Read("[Alarm]\nEnable= 1 ").Alarm[0].Enable, 1);
  EXPECT_EQ(Read("LoggerName=").LoggerName, u""_s);
  EXPECT_EQ(Read("LoggerName=a=b").LoggerName, u"a=b"_s);
}

TEST(ReadSetupFile, SkipsLinesWithoutAKey) {
  EXPECT_EQ(Read("X=1\n=1\nLoggerName\n\n \n=\n==\n;comment"), Defaults());
}

TEST(ReadSetupFile, TakesEveryKindOfLineEnd) {
  for (const char* lines : {"LoggerName=x\r\nDeadband=7\r\n", "LoggerName=x\nDeadband=7",
                            "LoggerName=x\rDeadband=7\r", "\n\nLoggerName=x\n\rDeadband=7"}) {
    LoggerSettings expected = Defaults();
    expected.LoggerName = u"x"_s;
    expected.Deadband = 7;
    EXPECT_EQ(Read(lines), expected);
  }
}

TEST(ReadSetupFile, KnowsASectionByItsFirstLetters) {
  EXPECT_EQ(Read("[Analogue\nEnable=0").Analog[0].Enable, 0);
  EXPECT_EQ(Read("[Digital Channel] and more\nEnable=0").Pulse[0].Enable, 0);
  EXPECT_EQ(Read("[Alarms]\nEnable=1").Alarm[0].Enable, 1);
  EXPECT_EQ(Read("[analog channel]\nEnable=0"), Defaults());
  EXPECT_EQ(Read("[ Analog]\nEnable=0"), Defaults());
  EXPECT_EQ(Read("[Analo\nEnable=0"), Defaults());
  EXPECT_EQ(Read("[\nEnable=0"), Defaults());
}

TEST(ReadSetupFile, DropsSharedKeysOutsideASection) {
  EXPECT_EQ(Read("Enable=0\nEngUnits=x\nDecPlaces=1"), Defaults());
  EXPECT_EQ(Read("[Analog Channel]\n[DO]\nEnable=0\nEngUnits=x\nDecPlaces=1"), Defaults());
  EXPECT_EQ(Read("[Alarm]\nEngUnits=x\nDecPlaces=1"), Defaults());
  EXPECT_EQ(Read("[DO]\nEnable=nonsense\nChannel=99"), Defaults());
}

TEST(ReadSetupFile, TakesOtherKeysInAnySection) {
  EXPECT_EQ(Read("[Analog Channel]\nChannel=1\nPulseUnit=5").Pulse[1].PulseUnit, 5);
  EXPECT_EQ(Read("[Alarm]\nRawScaleUpper=5").Analog[0].RawScaleUpper, 5);
  EXPECT_EQ(Read("[DO]\nLoggerName=x").LoggerName, u"x"_s);
  EXPECT_EQ(Read("PO2Channel=2").Do.PO2Channel, 2);
}

TEST(ReadSetupFile, KeepsTheChannelAcrossSections) {
  EXPECT_EQ(Read("[Analog Channel]\nChannel=1\n[Digital Channel]\nEnable=0").Pulse[1].Enable, 0);
}

TEST(ReadSetupFile, FailsOutsideTheChannelsOfAKey) {
  struct {
    const char* Section;
    std::vector<const char*> Lines;
    int First;
    int Last;
  } const rows[] = {
      {"Analog Channel",
       {"Enable=1", "RawScaleLower=5", "RawScaleUpper=5", "LowerLimit=5", "UpperLimit=5",
        "DisplayTop=5", "DisplayBottom=5"},
       0,
       7},
      {"Digital Channel",
       {"Enable=1", "PulseUnit=5", "AlarmSec=5", "AlarmMin=5", "AlarmHour=5"},
       0,
       1},
      {"Alarm", {"Enable=1"}, 0, 1},
      {"Analog Channel", {"EngUnits=x", "DecPlaces=5"}, 0, 9},
      {"Digital Channel", {"EngUnits=x", "DecPlaces=5"}, -8, 1},
  };
  for (const auto& row : rows) {
    for (const char* line : row.Lines) {
      for (const int channel : {-32768, -9, -8, -1, 0, 1, 2, 7, 8, 9, 10, 32767}) {
        const QByteArray file = "[" + QByteArray(row.Section) +
                                "]\nChannel=" + QByteArray::number(channel) + "\n" + line;
        const bool good = channel >= row.First && channel <= row.Last;
        EXPECT_EQ(Fails(file), !good) << file.toStdString();
      }
    }
  }
}

TEST(ReadSetupFile, FailsForTheRawScaleOfANinthChannel) {
  EXPECT_TRUE(Fails("Channel=8\nRawScaleLower=5"));
  EXPECT_FALSE(Fails("Channel=8\n"));
}

TEST(ReadSetupFile, ReachesTheOtherKindOfChannelWithUnitsAndPlaces) {
  EXPECT_EQ(Read("[Analog Channel]\nChannel=9\nEngUnits=cm").Pulse[1].EngUnits, u"cm"_s);
  EXPECT_EQ(Read("[Analog Channel]\nChannel=8\nDecPlaces=4").Pulse[0].DecPlaces, 4);
  EXPECT_EQ(Read("[Digital Channel]\nChannel=-8\nEngUnits=cm").Analog[0].EngUnits, u"cm"_s);
  EXPECT_EQ(Read("[Digital Channel]\nChannel=-1\nDecPlaces=4").Analog[7].DecPlaces, 4);
}

TEST(ReadSetupFile, FailsForAWholeNumberThatDoesNotFit) {
  for (const char* line : {"SensorWarmupTime=256", "SensorWarmupTime=-1", "SensorWarmupTime=255.5",
                           "LoggingStyle=", "LoggingStyle=x", "LoggingStyle=1e1", "EnableSOD=1 2",
                           "Deadband=2147483648", "Deadband=1-", "AlarmHour=32768",
                           "AlarmHour=-32769", "Channel=32768", "Channel=x", "PO2Channel=256"}) {
    EXPECT_TRUE(Fails(line)) << line;
  }
  EXPECT_EQ(Read("SensorWarmupTime=255.4").SensorWarmupTime, 255);
  EXPECT_EQ(Read("SensorWarmupTime=-0.5").SensorWarmupTime, 0);
  EXPECT_EQ(Read("SensorWarmupTime=2.5").SensorWarmupTime, 2);
}

TEST(ReadSetupFile, NeverFailsForARealNumber) {
  EXPECT_EQ(Read("LowerLimit=").Analog[0].LowerLimit, 0);
  EXPECT_EQ(Read("UpperLimit=12abc").Analog[0].UpperLimit, 12);
  EXPECT_EQ(Read("UpperLimit=x").Analog[0].UpperLimit, 0);
  EXPECT_EQ(Read("UpperLimit=1e999").Analog[0].UpperLimit, 0);
  EXPECT_EQ(Read("UpperLimit=1234567.5").Analog[0].UpperLimit, 1234567.5);
}

TEST(ReadSetupFile, TakesACommaForAPointInRealNumbers) {
  for (const QLocale& locale : {kUs, kGerman}) {
    EXPECT_EQ(Read("LowerLimit=1,5", locale).Analog[0].LowerLimit, 1.5);
    EXPECT_EQ(Read("LowerLimit=1.5", locale).Analog[0].LowerLimit, 1.5);
  }
}

TEST(ReadSetupFile, ReadsWholeNumbersByTheLocale) {
  EXPECT_EQ(Read("Deadband=1,5", kUs).Deadband, 15);
  EXPECT_EQ(Read("Deadband=1,5", kGerman).Deadband, 2);
  EXPECT_EQ(Read("Deadband=1.234", kGerman).Deadband, 1234);
}

TEST(ReadSetupFile, ReadsADeadbandThatTheImageCannotHold) {
  const LoggerSettings settings = Read("Deadband=70000");
  EXPECT_EQ(settings.Deadband, 70000);
  ConfigImage image;
  EXPECT_FALSE(PackConfigImage(FullLogger(), settings, image));
}

TEST(ReadSetupFile, KeepsAnIntervalInAnyUnit) {
  const LoggerSettings settings = Read("SampleInterval=7 fortnights");
  EXPECT_EQ(settings.SampleInterval, u"7 fortnights"_s);
  ConfigImage image;
  EXPECT_TRUE(PackConfigImage(FullLogger(), settings, image));
  EXPECT_EQ(image[32], 7);
  EXPECT_EQ(image[34], 0);
}

TEST(ReadSetupFile, KeepsTheLinesAheadOfAMistake) {
  LoggerSettings settings = Defaults();
  EXPECT_THROW(ReadSetupFile("LoggerName=x\nDeadband=y\nSampleInterval=1 hour", kUs, settings),
               ConversionFault);
  LoggerSettings expected = Defaults();
  expected.LoggerName = u"x"_s;
  EXPECT_EQ(settings, expected);
  EXPECT_THROW(ReadSetupFile("Channel=8\nLowerLimit=1", kUs, settings), RangeFault);
}

TEST(ReadSetupFile, TakesEveryByteValue) {
  QByteArray bytes;
  for (int code = 0; code < 256; ++code) bytes.append(static_cast<char>(code));
  EXPECT_EQ(Read(bytes), Defaults());

  for (int code = 0; code < 256; ++code) {
    if (code == '\r' || code == '\n') continue;
    const bool isControl = code < 32 || (code >= 127 && code < 160);
    const QString name = u'a' + QString(isControl ? QChar(u' ') : QChar(code)) + u'b';
    const QByteArray file = "LoggerName=a" + QByteArray(1, static_cast<char>(code)) + "b";
    EXPECT_EQ(Read(file).LoggerName, name) << code;
  }
}

TEST(ReadSetupFile, CutsTextsToTheLengthOfTheirField) {
  EXPECT_EQ(Read("LoggerName=" + QByteArray(32, 'n')).LoggerName, QString(32, u'n'));
  EXPECT_EQ(Read("LoggerName=" + QByteArray(33, 'n')).LoggerName, QString(32, u'n'));
  EXPECT_EQ(Read("LoggerName=   " + QByteArray(40, 'n')).LoggerName, QString(32, u'n'));
  EXPECT_EQ(Read("[Analog Channel]\nEngUnits=123456789").Analog[0].EngUnits, u"123456789"_s);
  EXPECT_EQ(Read("[Analog Channel]\nEngUnits=1234567890").Analog[0].EngUnits, u"123456789"_s);
  EXPECT_EQ(Read("[Digital Channel]\nChannel=1\nEngUnits=1234567890").Pulse[1].EngUnits,
            u"123456789"_s);
  EXPECT_EQ(Read("SampleInterval=7 fortnights and then some").SampleInterval,
            u"7 fortnights and then some"_s);
  EXPECT_EQ(Read("SampleInterval=" + QByteArray(5000, '9')).SampleInterval, QString(1000, u'9'));
}

// A unit with a blank behind it would be another one when its file is saved and loaded again.
TEST(ReadSetupFile, LeavesNoBlankAtTheEndsOfAText) {
  EXPECT_EQ(Read("[Analog Channel]\nEngUnits=12345678 0").Analog[0].EngUnits, u"12345678"_s);
  EXPECT_EQ(Read("[Analog Channel]\nEngUnits=%\x85").Analog[0].EngUnits, u"%"_s);
  EXPECT_EQ(Read("LoggerName=\tWell 4\t").LoggerName, u"Well 4"_s);
}

// Whatever the size of a text, what is kept of it and what is looked at on the screen is short.
TEST(ReadSetupFile, TakesTextsOfFiftyMegabytes) {
  constexpr qsizetype kHuge = qsizetype{50} * 1024 * 1024;
  LoggerSettings expected = Defaults();
  expected.LoggerName = QString(32, u'x');
  expected.SampleInterval = QString(1000, u'7');
  expected.Analog[0].EngUnits = QString(9, u'y');
  EXPECT_EQ(Read("LoggerName=" + QByteArray(kHuge, 'x') + "\nSampleInterval=" +
                 QByteArray(5000, '7') + "\n[Analog Channel]\nEngUnits=" + QByteArray(5000, 'y')),
            expected);
}

TEST(WriteSetupFile, WritesOneLineForATextWithLineEnds) {
  LoggerSettings settings = Defaults();
  settings.LoggerName = u"Well\r\nDeadband=7"_s;
  settings.Analog[0].EngUnits = u"m\nm"_s;
  const QByteArray file = WriteSetupFile(kHead, FullLogger(), settings);
  EXPECT_TRUE(file.contains("\r\nLoggerName=Well  Deadband=7\r\n"));
  EXPECT_TRUE(file.contains("\r\nEngUnits=m m\r\n"));
  EXPECT_EQ(file.count('\n'), WriteSetupFile(kHead, FullLogger(), Defaults()).count('\n'));
}

TEST(ReadSetupFile, TakesLinesOfAMegabyte) {
  constexpr qsizetype kMegabyte = 1024 * 1024;
  EXPECT_EQ(Read("LoggerName=" + QByteArray(kMegabyte, 'x')).LoggerName.size(), 32);
  EXPECT_EQ(Read(QByteArray(kMegabyte, 'x') + "=1"), Defaults());
  EXPECT_EQ(Read("LowerLimit=" + QByteArray(kMegabyte, '9')).Analog[0].LowerLimit, 0);
  EXPECT_TRUE(Fails("Deadband=" + QByteArray(kMegabyte, '9')));
  EXPECT_EQ(Read(QByteArray(kMegabyte, '[')), Defaults());
  EXPECT_EQ(Read(QByteArray(kMegabyte, '\r')), Defaults());
}

TEST(SetupFile, BringsEveryFieldBack) {
  LoggerSettings settings = WellFour();
  settings.Analog[3] = {0, u"a b"_s, 6, 1, 65534, -1.5, 0.0000123, 999999, -999999};
  settings.Alarm[1] = {1, 59, 58, 23};
  settings.Do = {1, 1, 2, 1, 0, 2.5, 1, 3, 1, 0, -4.25, 5, 4, 7, 1, 5, 1, 6, 1, 3, 1};
  for (const QLocale& locale : {kUs, kGerman}) {
    EXPECT_EQ(Read(WriteSetupFile(kHead, FullLogger(), settings), locale), settings);
  }
}

}  // namespace
}  // namespace tessmar
