#include "sim/SimulatorOptions.h"

#include <gtest/gtest.h>

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;
using sim::SimulatorOptions;
using namespace std::chrono_literals;

const QDateTime kNow(QDate(2026, 11, 21), QTime(3, 4, 5));

SimulatorOptions Parse(QStringList arguments) {
  arguments.prepend(u"tessmar-sim"_s);
  const sim::ParsedOptions parsed = sim::ParseSimulatorOptions(arguments, kNow);
  EXPECT_EQ(parsed.Error, u""_s);
  return parsed.Options;
}

QString ErrorOf(QStringList arguments) {
  arguments.prepend(u"tessmar-sim"_s);
  return sim::ParseSimulatorOptions(arguments, kNow).Error;
}

TEST(SimulatorOptions, AreThoseOfThePondUnlessGiven) {
  const SimulatorOptions options = Parse({u"--link"_s, u"/tmp/here"_s});
  EXPECT_EQ(options.LinkPath, u"/tmp/here"_s);
  EXPECT_EQ(options.Logger.AnalogChannels, 8);
  EXPECT_EQ(options.Logger.PulseChannels, 2);
  EXPECT_EQ(options.Logger.Records, 960);
  EXPECT_EQ(options.Logger.ClockStopsAt, -1);
  EXPECT_EQ(options.Logger.Name, "Mill Pond 3");
  EXPECT_FALSE(options.Logger.SampleOnDemand);
  EXPECT_EQ(options.Logger.BaudRate, 0);
  EXPECT_EQ(options.Logger.ClockAtStart, sim::ToCivilSeconds({2026, 11, 21, 3, 4, 5}));
  EXPECT_FALSE(options.Modem);
  EXPECT_TRUE(options.Faults.empty());
}

TEST(SimulatorOptions, DescribeTheLogger) {
  const SimulatorOptions options = Parse({u"--link"_s,
                                          u"x"_s,
                                          u"--records"_s,
                                          u"7"_s,
                                          u"--analog"_s,
                                          u"3"_s,
                                          u"--pulse"_s,
                                          u"0"_s,
                                          u"--model"_s,
                                          u"220"_s,
                                          u"--firmware"_s,
                                          u"99"_s,
                                          u"--sample-on-demand"_s,
                                          u"--blank"_s,
                                          u"--baud"_s,
                                          u"9600"_s,
                                          u"--seed"_s,
                                          u"5"_s,
                                          u"--twelve-hour"_s,
                                          u"--past-handshake"_s,
                                          u"--live-records"_s,
                                          u"--clock-stops-at"_s,
                                          u"4"_s,
                                          u"--name"_s,
                                          u"Étang"_s,
                                          u"--clock"_s,
                                          u"2010-12-26 15:47:29"_s});
  EXPECT_EQ(options.Logger.Records, 7);
  EXPECT_EQ(options.Logger.AnalogChannels, 3);
  EXPECT_EQ(options.Logger.PulseChannels, 0);
  EXPECT_EQ(options.Logger.ModelCode, 220);
  EXPECT_EQ(options.Logger.Firmware, 99);
  EXPECT_TRUE(options.Logger.SampleOnDemand);
  EXPECT_TRUE(options.Logger.BlankFlash);
  EXPECT_EQ(options.Logger.BaudRate, 9600);
  EXPECT_EQ(options.Logger.Seed, 5U);
  EXPECT_TRUE(options.Logger.TwelveHourClock);
  EXPECT_TRUE(options.Logger.PastHandshake);
  EXPECT_TRUE(options.Logger.LiveRecords);
  EXPECT_EQ(options.Logger.ClockStopsAt, 4);
  EXPECT_EQ(options.Logger.Name, "\xC9tang");
  EXPECT_EQ(options.Logger.ClockAtStart, sim::ToCivilSeconds({2010, 12, 26, 15, 47, 29}));
}

TEST(SimulatorOptions, TakeSeveralFaults) {
  const SimulatorOptions options =
      Parse({u"--link"_s, u"x"_s, u"--fault"_s, u"silent:3"_s, u"--fault"_s, u"random-loss:0.1"_s,
             u"--stuck-address"_s, u"154"_s});
  ASSERT_EQ(options.Faults.size(), 2U);
  EXPECT_EQ(options.Faults[0], (sim::Fault{.Mode = sim::FailureMode::Silent, .Count = 3}));
  EXPECT_EQ(options.Faults[1], (sim::Fault{.Mode = sim::FailureMode::RandomLoss, .Rate = 0.1}));
  EXPECT_EQ(options.StuckAddress, 154U);
}

TEST(SimulatorOptions, DescribeTheModem) {
  const SimulatorOptions options =
      Parse({u"--link"_s, u"x"_s, u"--modem"_s, u"--modem-answer"_s, u"busy"_s, u"--modem-echo"_s,
             u"off"_s, u"--modem-delay"_s, u"250"_s, u"--modem-dial-time"_s, u"100"_s,
             u"--modem-split"_s});
  EXPECT_TRUE(options.Modem);
  EXPECT_EQ(options.ModemSetup.Behaviour, sim::ModemBehaviour::Busy);
  EXPECT_FALSE(options.ModemSetup.Echo);
  EXPECT_TRUE(options.ModemSetup.SplitReplies);
  EXPECT_EQ(options.ModemSetup.ReplyDelay, sim::Micros(250ms));
  EXPECT_EQ(options.ModemSetup.DialTime, sim::Micros(100ms));
}

TEST(SimulatorOptions, RefuseWrongValuesAndNameThem) {
  const auto with = [](const QString& option, const QString& value) {
    return ErrorOf({u"--link"_s, u"x"_s, option, value});
  };
  EXPECT_EQ(with(u"--analog"_s, u"9"_s), u"--analog: a number from 1 to 8 is wanted, not \"9\""_s);
  EXPECT_EQ(with(u"--analog"_s, u"0"_s), u"--analog: a number from 1 to 8 is wanted, not \"0\""_s);
  EXPECT_EQ(with(u"--pulse"_s, u"3"_s), u"--pulse: a number from 0 to 2 is wanted, not \"3\""_s);
  EXPECT_EQ(with(u"--records"_s, u"many"_s),
            u"--records: a number from 0 to 16777215 is wanted, not \"many\""_s);
  EXPECT_EQ(with(u"--baud"_s, u"1"_s),
            u"--baud: a number from 300 to 4000000 is wanted, not \"1\""_s);
  EXPECT_EQ(with(u"--fault"_s, u"lazy"_s), u"--fault: \"lazy\" is none; --help lists them"_s);
  EXPECT_EQ(with(u"--modem-answer"_s, u"hi"_s),
            u"--modem-answer: \"hi\" is none; --help lists them"_s);
  EXPECT_EQ(with(u"--modem-echo"_s, u"yes"_s), u"--modem-echo: on or off is wanted, not \"yes\""_s);
  EXPECT_EQ(with(u"--name"_s, QString(33, u'x')),
            u"--name: up to 32 Latin-1 characters are wanted"_s);
  EXPECT_EQ(with(u"--name"_s, u"池"_s), u"--name: up to 32 Latin-1 characters are wanted"_s);
  EXPECT_EQ(with(u"--clock"_s, u"1999-12-31 00:00:00"_s),
            u"--clock: a time from 2000 to 2099 is wanted, as 2026-06-15 14:30:00"_s);
}

TEST(SimulatorOptions, RefuseWhatMakesNoSense) {
  EXPECT_EQ(ErrorOf({}), u"either --link or --image is wanted"_s);
  EXPECT_EQ(ErrorOf({u"--link"_s, u"x"_s, u"--image"_s, u"y"_s}),
            u"either --link or --image is wanted"_s);
  EXPECT_EQ(ErrorOf({u"--link"_s, u"x"_s, u"extra"_s}), u"\"extra\" is no option"_s);
  EXPECT_NE(ErrorOf({u"--bogus"_s}), u""_s);
  EXPECT_NE(ErrorOf({u"--link"_s}), u""_s);
}

TEST(SimulatorOptions, HelpNamesEveryFaultAndEveryModemAnswer) {
  EXPECT_TRUE(Parse({u"--help"_s}).Help);
  const QString help = sim::SimulatorHelp();
  for (const sim::FailureModeName& mode : sim::FailureModes())
    EXPECT_TRUE(help.contains(QString::fromLatin1(mode.Name.data()))) << mode.Name;
  for (const sim::ModemBehaviourName& behaviour : sim::ModemBehaviours())
    EXPECT_TRUE(help.contains(QString::fromLatin1(behaviour.Name.data()))) << behaviour.Name;
}

}  // namespace
}  // namespace tessmar::test
