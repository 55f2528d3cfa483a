#include "app/CommandLine.h"

#include <gtest/gtest.h>

#include "base/Fault.h"
#include "support/FakeOutside.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

CommandLine Parse(const QString& text) {
  return ParseCommandLine(text, QLocale(QLocale::English, QLocale::UnitedStates));
}

std::string RefusalOf(const QString& text) {
  try {
    Parse(text);
  } catch (const ConversionFault& fault) {
    return fault.what();
  }
  return "accepted";
}

const char* const kLanguageRefusal =
    "-l needs a language number behind it, at the end of the command line";
const char* const kTicksRefusal =
    "-w needs a number of tenths of a second behind it, at the end of the command line";

TEST(CommandLineText, JoinsTheArgumentsBehindTheProgramsNameByOneBlank) {
  EXPECT_EQ(CommandLineText({u"/usr/bin/x-d"_s, u"-d"_s, u"-i"_s, u"-w8"_s}), u"-d -i -w8"_s);
  EXPECT_EQ(CommandLineText({u"program"_s}), u""_s);
  EXPECT_EQ(CommandLineText({}), u""_s);
}

TEST(ParseCommandLine, LeavesTheDefaultsWithoutSwitches) {
  const CommandLine line = Parse(u""_s);
  EXPECT_EQ(line.Language, std::nullopt);
  EXPECT_TRUE(line.TrapErrors);
  EXPECT_FALSE(line.ShowImageImport);
  EXPECT_EQ(line.ModemTimeoutTicks, 4);
}

TEST(ParseCommandLine, TakesTheLanguageNumber) {
  EXPECT_EQ(Parse(u"-l7"_s).Language, 7);
  EXPECT_EQ(Parse(u"-d -i -l10"_s).Language, 10);
  EXPECT_EQ(Parse(u"-l -3"_s).Language, -3);
}

TEST(ParseCommandLine, TakesSwitchesAheadOfTheTicks) {
  const CommandLine line = Parse(u"-d -i -w8"_s);
  EXPECT_FALSE(line.TrapErrors);
  EXPECT_TRUE(line.ShowImageImport);
  EXPECT_EQ(line.ModemTimeoutTicks, 8);
}

TEST(ParseCommandLine, FindsTheTicksInEitherCaseButNotTheLanguage) {
  EXPECT_EQ(Parse(u"-W9"_s).ModemTimeoutTicks, 9);
  EXPECT_EQ(Parse(u"-w9"_s).ModemTimeoutTicks, 9);
  EXPECT_EQ(Parse(u"-L7"_s).Language, std::nullopt);
}

TEST(ParseCommandLine, FindsTheImageImportAnywhereButOnlyInLowerCase) {
  EXPECT_TRUE(Parse(u"-i"_s).ShowImageImport);
  EXPECT_TRUE(Parse(u"some-in-between"_s).ShowImageImport);
  EXPECT_FALSE(Parse(u"-I"_s).ShowImageImport);
}

TEST(ParseCommandLine, TurnsTrappingOffForTheSmallLetterOnly) {
  EXPECT_FALSE(Parse(u"read-data"_s).TrapErrors);
  EXPECT_TRUE(Parse(u"-D"_s).TrapErrors);
}

TEST(ParseCommandLine, AllowsBlanksAtTheEndsOfAValue) {
  EXPECT_EQ(Parse(u"-l  7 "_s).Language, 7);
  EXPECT_EQ(Parse(u"-w 12 "_s).ModemTimeoutTicks, 12);
}

TEST(ParseCommandLine, RoundsAValueWithTiesToEven) {
  EXPECT_EQ(Parse(u"-l6.5"_s).Language, 6);
  EXPECT_EQ(Parse(u"-l7.5"_s).Language, 8);
  EXPECT_EQ(Parse(u"-w3.51"_s).ModemTimeoutTicks, 4);
}

TEST(ParseCommandLine, ReadsNumbersByTheLocale) {
  const QLocale german(QLocale::German, QLocale::Germany);
  EXPECT_EQ(ParseCommandLine(u"-l6,7"_s, german).Language, 7);
  EXPECT_EQ(ParseCommandLine(u"-w1.000"_s, german).ModemTimeoutTicks, 1000);
}

TEST(ParseCommandLine, HoldsSixteenBits) {
  EXPECT_EQ(Parse(u"-w32767"_s).ModemTimeoutTicks, 32767);
  EXPECT_EQ(Parse(u"-w-32768"_s).ModemTimeoutTicks, -32768);
  EXPECT_EQ(RefusalOf(u"-w32768"_s), kTicksRefusal);
  EXPECT_EQ(RefusalOf(u"-w-32769"_s), kTicksRefusal);
  EXPECT_EQ(RefusalOf(u"-l99999999999999"_s), kLanguageRefusal);
}

TEST(ParseCommandLine, RefusesAnythingBehindAValue) {
  EXPECT_EQ(RefusalOf(u"-l7 -d"_s), kLanguageRefusal);
  EXPECT_EQ(RefusalOf(u"-w8 -i"_s), kTicksRefusal);
}

TEST(ParseCommandLine, RefusesASecondValue) {
  EXPECT_EQ(RefusalOf(u"-l7 -w8"_s), kLanguageRefusal);
  EXPECT_EQ(RefusalOf(u"-w8 -l7"_s), kTicksRefusal);
}

TEST(ParseCommandLine, RefusesALoneSwitch) {
  EXPECT_EQ(RefusalOf(u"-l"_s), kLanguageRefusal);
  EXPECT_EQ(RefusalOf(u"-d -l"_s), kLanguageRefusal);
  EXPECT_EQ(RefusalOf(u"-w"_s), kTicksRefusal);
  EXPECT_EQ(RefusalOf(u"-W "_s), kTicksRefusal);
}

TEST(ParseCommandLine, RefusesWordsAndExponents) {
  EXPECT_EQ(RefusalOf(u"-lgerman"_s), kLanguageRefusal);
  EXPECT_EQ(RefusalOf(u"-l1e1"_s), kLanguageRefusal);
}

TEST(ApplyCommandLine, ShowsOrHidesBothImageEntries) {
  LinkState link;
  FakeMainScreen screen;
  ApplyCommandLine(Parse(u"x -i"_s), link, screen);
  EXPECT_EQ(screen.Visible, (QHash<QString, bool>{{u"mnuLoadLoggerImageFile"_s, true},
                                                  {u"imnuLoadLoggerImageFile"_s, true}}));
  ApplyCommandLine(Parse(u"-I"_s), link, screen);
  EXPECT_EQ(screen.Visible, (QHash<QString, bool>{{u"mnuLoadLoggerImageFile"_s, false},
                                                  {u"imnuLoadLoggerImageFile"_s, false}}));
}

TEST(ApplyCommandLine, SetsTrappingAndTheModemsTimeOut) {
  LinkState link;
  FakeMainScreen screen;
  ApplyCommandLine(Parse(u""_s), link, screen);
  EXPECT_TRUE(link.TrapErrors);
  EXPECT_EQ(link.ModemTimeoutTicks, 4);
  ApplyCommandLine(Parse(u"-d -W9"_s), link, screen);
  EXPECT_FALSE(link.TrapErrors);
  EXPECT_EQ(link.ModemTimeoutTicks, 9);
}

}  // namespace
}  // namespace tessmar::test
