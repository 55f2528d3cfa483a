#include "cli/CommandOptions.h"

#include <gtest/gtest.h>

#include "base/TextTable.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class CommandOptionsTest : public testing::Test {
 protected:
  CommandOptionsTest() { SetTextLanguage(kLanguageEnglish); }
  static ParsedCommand Parse(const char* line) {
    return ParseCommand(QString::fromUtf8(line).split(u' '));
  }
  static CommandOptions Good(const char* line) {
    const ParsedCommand parsed = Parse(line);
    EXPECT_EQ(parsed.Error, QString()) << line;
    return parsed.Options.value_or(CommandOptions());
  }
};

TEST_F(CommandOptionsTest, ReadsEveryCommand) {
  EXPECT_EQ(Good("tessmar ports").Work, CommandWork::Ports);
  EXPECT_EQ(Good("tessmar status COM5").Work, CommandWork::Status);
  EXPECT_EQ(Good("tessmar sample COM5").Work, CommandWork::Sample);
  EXPECT_EQ(Good("tessmar upload COM5").Work, CommandWork::Upload);
  EXPECT_EQ(Good("tessmar clock COM5").Work, CommandWork::Clock);
  EXPECT_EQ(Good("tessmar clear COM5 --yes").Work, CommandWork::Clear);
  EXPECT_EQ(Good("tessmar settings get COM5 a.set").Work, CommandWork::SettingsGet);
  EXPECT_EQ(Good("tessmar settings put COM5 a.set --yes").Work, CommandWork::SettingsPut);
  EXPECT_EQ(Good("tessmar settings diff a.set b.set").Work, CommandWork::SettingsDiff);
  EXPECT_EQ(Good("tessmar convert a.bin a.csv --analog 8 --pulse 2").Work, CommandWork::Convert);
}

TEST_F(CommandOptionsTest, ReadsOptionsBehindAndBetweenOperands) {
  const CommandOptions options =
      Good("tessmar sample --every 60 COM5 --count=10 --json --quiet --baud 9600");
  EXPECT_EQ(options.Operands, QStringList{u"COM5"_s});
  EXPECT_EQ(options.Every, 60);
  EXPECT_EQ(options.Count, 10);
  EXPECT_TRUE(options.Json);
  EXPECT_TRUE(options.Quiet);
  EXPECT_EQ(options.Baud, 9600);
}

TEST_F(CommandOptionsTest, TakesADashForStandardOutput) {
  EXPECT_EQ(Good("tessmar upload COM5 --csv -").Csv, u"-"_s);
  EXPECT_EQ(Good("tessmar settings get COM5 -").Operands, (QStringList{u"COM5"_s, u"-"_s}));
}

TEST_F(CommandOptionsTest, ReadsWhatIsExported) {
  CommandOptions options = Good("tessmar archive export 12 a.csv");
  EXPECT_EQ(options.Operands, (QStringList{u"12"_s, u"a.csv"_s}));
  EXPECT_FALSE(options.Analysis);
  EXPECT_FALSE(Good("tessmar archive export 12 a.csv --style viewer").Analysis);
  EXPECT_TRUE(Good("tessmar upload COM5 --csv a.csv --style analysis").Analysis);
  options = Good("tessmar archive export --logger Weir a.nc --style=analysis");
  EXPECT_EQ(options.Logger, u"Weir"_s);
  EXPECT_EQ(options.Operands, QStringList{u"a.nc"_s});
  EXPECT_TRUE(options.Analysis);
}

TEST_F(CommandOptionsTest, UsesTheUsualSpeed) {
  EXPECT_EQ(Good("tessmar status COM5").Baud, 38400);
}

TEST_F(CommandOptionsTest, RefusesWhatCannotBe) {
  const auto error = [](const char* line) { return Parse(line).Error; };
  EXPECT_EQ(error("tessmar"), u"what is to be done? \"tessmar --help\" lists it"_s);
  EXPECT_EQ(error("tessmar frobnicate"),
            u"\"frobnicate\" is no command; \"tessmar --help\" lists them"_s);
  EXPECT_EQ(error("tessmar settings steal"),
            u"\"settings steal\" is no command; \"tessmar --help\" lists them"_s);
  EXPECT_EQ(error("tessmar status"), u"usage: tessmar status PORT"_s);
  EXPECT_EQ(error("tessmar ports COM5"), u"usage: tessmar ports"_s);
  EXPECT_EQ(error("tessmar status COM5 COM6"), u"usage: tessmar status PORT"_s);
  EXPECT_EQ(error("tessmar status COM5 --every 5"),
            u"--every is no option of \"tessmar status\"; \"tessmar status --help\" lists them"_s);
  EXPECT_EQ(error("tessmar sample COM5 --every 1"),
            u"--every: a number from 2 to 86400 is wanted, not \"1\""_s);
  EXPECT_EQ(error("tessmar sample COM5 --count 0"),
            u"--count: a number from 1 to 1000000000 is wanted, not \"0\""_s);
  EXPECT_EQ(error("tessmar status COM5 --baud 1200"),
            u"--baud: one of 9600, 19200, 28800, 38400, 57600, 115200 is wanted, not \"1200\""_s);
  EXPECT_EQ(error("tessmar convert a.bin a.csv --analog 9 --pulse 0"),
            u"--analog: a number from 0 to 8 is wanted, not \"9\""_s);
  EXPECT_EQ(error("tessmar upload COM5 --csv="), u"--csv: a value is wanted"_s);
  EXPECT_EQ(error("tessmar archive export 12"),
            u"usage: tessmar archive export N|--logger NAME FILE"_s);
  EXPECT_EQ(error("tessmar archive export 12 a.nc --logger Weir"),
            u"usage: tessmar archive export N|--logger NAME FILE"_s);
  EXPECT_EQ(error("tessmar archive export --logger= a.nc"), u"--logger: a value is wanted"_s);
  EXPECT_EQ(error("tessmar archive export 12 - --style netcdf"),
            u"--style: viewer or analysis is wanted, not \"netcdf\"; for NetCDF give a file whose "
            u"name ends in .nc, which standard output cannot be"_s);
}

TEST_F(CommandOptionsTest, WantsConsentToWhatChangesALogger) {
  EXPECT_EQ(Parse("tessmar clear COM5").Error,
            u"nothing was changed; to clear a logger say --yes"_s);
  EXPECT_FALSE(Parse("tessmar settings put COM5 a.set").Options);
  EXPECT_EQ(Good("tessmar clock COM5 --sync").Sync, true);
}

TEST_F(CommandOptionsTest, HasHelpWithAnExampleForEveryCommand) {
  for (const CommandRow& row : CommandRows()) {
    const QString words = QString::fromUtf16(row.Words);
    const ParsedCommand parsed = ParseCommand((u"tessmar "_s + words + u" --help"_s).split(u' '));
    EXPECT_TRUE(parsed.Error.isEmpty()) << parsed.Error.toStdString();
    EXPECT_TRUE(parsed.Text.contains(u"Example:\n  tessmar "_s + words)) << words.toStdString();
    const QStringList example = QString::fromUtf16(row.Example).split(u' ');
    EXPECT_EQ(ParseCommand(example).Error, QString()) << "the example itself is wrong";
    EXPECT_TRUE(ProgramHelp().contains(words));
  }
}

TEST_F(CommandOptionsTest, SpeaksGerman) {
  SetTextLanguage(kLanguageGerman);
  EXPECT_TRUE(Parse("tessmar --help").Text.contains(u"Befehle:"_s));
  EXPECT_EQ(Parse("tessmar status").Error, u"Aufruf: tessmar status PORT"_s);
  SetTextLanguage(kLanguageEnglish);
}

TEST_F(CommandOptionsTest, TellsTheVersion) {
  EXPECT_EQ(Parse("tessmar --version").Text, u"tessmar 2.1.9\n"_s);
}

}  // namespace
}  // namespace tessmar::test
