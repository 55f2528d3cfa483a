// status, sample, clock and clear.

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include "cli/CommandRig.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class LoggerCommandsTest : public CommandRig {
 protected:
  QJsonObject Json() const {
    return QJsonDocument::fromJson(Out().section(u'\n', 0, 0).toUtf8()).object();
  }
};

TEST_F(LoggerCommandsTest, StatusTellsOfTheLogger) {
  Clock.Present = QDateTime(QDate(2026, 6, 15), QTime(14, 30, 0));
  ASSERT_EQ(Run({u"status"_s, u"COM9"_s}), 0) << Words().toStdString();
  EXPECT_EQ(Out(),
            u"Name:            Mill Pond 3\n"
            u"Model:           208\n"
            u"Firmware:        21\n"
            u"Channels:        8 analog, 2 pulse\n"
            u"Records:         960\n"
            u"State:           Logging\n"
            u"Interval:        15 minutes\n"
            u"Clock:           2026-06-15T14:30:00 (right)\n"_s);
  EXPECT_EQ(Words(), QString());
  EXPECT_FALSE(Port.IsOpen());
}

TEST_F(LoggerCommandsTest, StatusAsJson) {
  Clock.Present = QDateTime(QDate(2026, 6, 15), QTime(14, 30, 12));
  ASSERT_EQ(Run({u"status"_s, u"COM9"_s, u"--json"_s}), 0);
  EXPECT_EQ(
      Out(),
      u"{\"port\":\"COM9\",\"name\":\"Mill Pond 3\",\"model\":208,\"firmware\":21,\"analog\":8,"
      u"\"pulse\":2,\"records\":960,\"logging\":true,\"status\":128,"
      u"\"logger_time\":\"2026-06-15T14:30:00\",\"clock_offset_s\":-12,"
      u"\"interval\":\"15 minutes\"}\n"_s);
}

TEST_F(LoggerCommandsTest, StatusChangesNothing) {
  ASSERT_EQ(Run({u"status"_s, u"COM9"_s}), 0);
  for (const int opcode : {0x01, 0x04, 0x06, 0x07, 0x0B, 0x0D, 0x0E})
    EXPECT_EQ(Logger->Requests(static_cast<std::uint8_t>(opcode)), 0) << opcode;
}

TEST_F(LoggerCommandsTest, TellsSilentFromForeign) {
  Wire->SetPlugged(false);
  EXPECT_EQ(Run({u"status"_s, u"COM9"_s}), 1);
  EXPECT_EQ(Words(), u"tessmar: COM9: nothing answers; check cable, battery and baud rate\n"_s);
  Wire.reset();
  Port.OnWrite = [this](const Bytes&) { Port.Arrive({0x41, 0x54}); };
  EXPECT_EQ(Run({u"status"_s, u"COM9"_s}), 1);
  EXPECT_EQ(Words(), u"tessmar: COM9: what answers is not a logger; check port and baud rate\n"_s);
  EXPECT_FALSE(Port.IsOpen());
}

TEST_F(LoggerCommandsTest, TellsThatTheDeviceIsGone) {
  int ticks = 0;
  Logger->AddFault(sim::FailureMode::Silent);
  AtEachTick = [&] {
    if (++ticks == 15) Port.Unplug();
  };
  EXPECT_EQ(Run({u"status"_s, u"COM9"_s}), 1);
  EXPECT_EQ(Words(), u"tessmar: COM9: the device is gone; plug it in again\n"_s);
}

TEST_F(LoggerCommandsTest, NeverOffersToEraseALoggerWithoutIdentifier) {
  Use({.BlankFlash = true});
  EXPECT_EQ(Run({u"status"_s, u"COM9"_s}), 1);
  EXPECT_EQ(Words(),
            u"tessmar: COM9: this logger was never initialized; connect to it with Tessmar Logger "
            u"once\n"_s);
  EXPECT_EQ(Logger->Requests(0x06), 0);
}

TEST_F(LoggerCommandsTest, RefusesWhatIsNoPort) {
  EXPECT_EQ(Run({u"status"_s, u"COM"_s}), 2);
  EXPECT_EQ(Run({u"status"_s, File("")}), 2) << "a folder";
  EXPECT_EQ(Port.Opened, 0);
}

TEST_F(LoggerCommandsTest, CtrlCEndsTheHandshake) {
  Wire->SetPlugged(false);
  AtEachTick = [this] { StopWanted = true; };
  EXPECT_EQ(Run({u"status"_s, u"COM9"_s}), 1);
  EXPECT_EQ(Words(), u"tessmar: COM9: broken off\n"_s);
  EXPECT_LT(Loop.Ticks(), 25);
}

TEST_F(LoggerCommandsTest, OneSample) {
  ASSERT_EQ(Run({u"sample"_s, u"COM9"_s, u"--json"_s}), 0) << Words().toStdString();
  EXPECT_EQ(Out().count(u'\n'), 1);
  const QJsonObject sample = Json();
  EXPECT_EQ(sample.value(u"name"_s).toString(), u"Mill Pond 3"_s);
  EXPECT_TRUE(sample.value(u"at"_s).toString().endsWith(u'Z'));
  EXPECT_TRUE(sample.value(u"a1"_s).isDouble());
  EXPECT_TRUE(sample.value(u"a8"_s).isDouble());
  EXPECT_TRUE(sample.value(u"p2"_s).isDouble());
  EXPECT_EQ(Logger->Requests(0x0A), 1);
}

TEST_F(LoggerCommandsTest, SamplesKeepTheirDecimals) {
  ASSERT_EQ(Run({u"sample"_s, u"COM9"_s}), 0);
  const QString json = [&] {
    Run({u"sample"_s, u"COM9"_s, u"--json"_s});
    return Out();
  }();
  // The temperature has two decimals, the pressure one.
  EXPECT_TRUE(json.contains(QRegularExpression(u"\"a2\":[0-9]+\\.[0-9]{2},"_s)))
      << json.toStdString();
  EXPECT_TRUE(json.contains(QRegularExpression(u"\"a4\":[0-9]+\\.[0-9],"_s))) << json.toStdString();
}

TEST_F(LoggerCommandsTest, NoSampleIsNull) {
  // Until a measurement is done the logger has none: the starts get lost here.
  Logger->AddFault({.Mode = sim::FailureMode::RequestLost, .Opcode = 0x09});
  ASSERT_EQ(Run({u"sample"_s, u"COM9"_s, u"--json"_s}), 0) << Words().toStdString();
  EXPECT_TRUE(Json().contains(u"a1"_s));
  EXPECT_TRUE(Json().value(u"a1"_s).isNull());
  EXPECT_TRUE(Json().value(u"p1"_s).isNull());
}

TEST_F(LoggerCommandsTest, CountsSamples) {
  Clock.Present = QDateTime(QDate(2026, 6, 15), QTime(14, 30, 0));
  AtEachTick = [this] { Clock.Present = Clock.Present.addMSecs(100); };
  ASSERT_EQ(Run({u"sample"_s, u"COM9"_s, u"--every"_s, u"60"_s, u"--count"_s, u"3"_s}), 0);
  EXPECT_EQ(Out().count(u'\n'), 3);
  EXPECT_NEAR(Loop.NowMs(), 120'000, 5'000);
}

TEST_F(LoggerCommandsTest, CtrlCIsTheEndOfSamplingWithoutACount) {
  AtEachTick = [this] {
    Clock.Present = Clock.Present.addMSecs(100);
    if (Loop.Ticks() > 100) StopWanted = true;
  };
  EXPECT_EQ(Run({u"sample"_s, u"COM9"_s, u"--every"_s, u"2"_s}), 0);
  EXPECT_GE(Out().count(u'\n'), 4);
}

TEST_F(LoggerCommandsTest, ClockIsShownAndSet) {
  Clock.Present = QDateTime(QDate(2026, 6, 15), QTime(15, 0, 0));
  ASSERT_EQ(Run({u"clock"_s, u"COM9"_s}), 0);
  EXPECT_EQ(Out(), u"2026-06-15T14:30:00 (1800 s slow)\n"_s);
  EXPECT_EQ(Logger->Requests(0x01), 0);
  ASSERT_EQ(Run({u"clock"_s, u"COM9"_s, u"--sync"_s}), 0) << Words().toStdString();
  EXPECT_EQ(Out(), u"2026-06-15T15:00:00 (right)\n"_s);
  EXPECT_EQ(Logger->Requests(0x01), 1);
}

TEST_F(LoggerCommandsTest, ClockThatIsNotSetIsAFailure) {
  Clock.Present = QDateTime(QDate(2026, 6, 15), QTime(15, 0, 0));
  Logger->AddFault({.Mode = sim::FailureMode::RequestLost, .Opcode = 0x01});
  EXPECT_EQ(Run({u"clock"_s, u"COM9"_s, u"--sync"_s}), 1);
  EXPECT_EQ(Words(),
            u"tessmar: COM9: the clock was not set, or it cannot be proved; try again\n"_s);
  EXPECT_EQ(Out(), QString());
}

TEST_F(LoggerCommandsTest, ClearErasesAndProvesIt) {
  ASSERT_EQ(Run({u"clear"_s, u"COM9"_s, u"--yes"_s, u"--json"_s}), 0) << Words().toStdString();
  EXPECT_EQ(Out(),
            u"{\"port\":\"COM9\",\"name\":\"Mill Pond 3\",\"cleared\":960,\"records\":0}\n"_s);
}

TEST_F(LoggerCommandsTest, ClearWhoseAnswerIsLostIsProvedByTheStatus) {
  Logger->AddFault({.Mode = sim::FailureMode::Silent, .Opcode = 0x04});
  EXPECT_EQ(Run({u"clear"_s, u"COM9"_s, u"--yes"_s}), 0) << Words().toStdString();
  EXPECT_EQ(Out(), u"960 records erased\n"_s);
}

TEST_F(LoggerCommandsTest, ClearThatDidNotHappenIsAFailure) {
  Logger->AddFault({.Mode = sim::FailureMode::RequestLost, .Opcode = 0x04});
  EXPECT_EQ(Run({u"clear"_s, u"COM9"_s, u"--yes"_s}), 1);
  EXPECT_EQ(Words(),
            u"tessmar: COM9: the records were not erased, or it cannot be proved; look at the "
            u"status\n"_s);
}

}  // namespace
}  // namespace tessmar::test
