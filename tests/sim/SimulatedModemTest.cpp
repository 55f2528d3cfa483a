#include "sim/SimulatedModem.h"

#include <gtest/gtest.h>

#include <string>

#include "HexBytes.h"
#include "sim/SimulatedLogger.h"

namespace tessmar::test {
namespace {

using sim::Micros;
using sim::ModemBehaviour;
using sim::ModemOptions;
using namespace std::chrono_literals;

/// A modem with a logger behind it, spoken to in text.
class Station {
 public:
  explicit Station(const ModemOptions& options = {}) : Modem(Logger, options) {}

  std::string Say(std::string_view text, Micros now = 0ms) {
    Modem.Receive(sim::Bytes(text.begin(), text.end()), now);
    const sim::Bytes answer = AllOutput(Modem);
    return {answer.begin(), answer.end()};
  }

  sim::SimulatedLogger Logger;
  sim::SimulatedModem Modem;
};

TEST(SimulatedModem, EchoesAndAnswersOk) {
  Station station;
  EXPECT_EQ(station.Say("ATZ\r"), "ATZ\r\r\nOK\r\n");
  EXPECT_EQ(station.Say("ATE1V1Q0\r"), "ATE1V1Q0\r\r\nOK\r\n");
  EXPECT_EQ(station.Modem.Commands(), (std::vector<std::string>{"ATZ", "ATE1V1Q0"}));
}

TEST(SimulatedModem, TakesCommandsInPiecesAndInLowerCase) {
  Station station;
  EXPECT_EQ(station.Say("at"), "at");
  EXPECT_EQ(station.Say("z"), "z");
  EXPECT_EQ(station.Say("\r"), "\r\r\nOK\r\n");
}

TEST(SimulatedModem, EchoCanBeSwitched) {
  Station station;
  EXPECT_EQ(station.Say("ATE0\r"), "ATE0\r\r\nOK\r\n");
  EXPECT_EQ(station.Say("AT\r"), "\r\nOK\r\n");
  EXPECT_EQ(station.Say("ATE1\r"), "\r\nOK\r\n");
  EXPECT_EQ(station.Say("AT\r"), "AT\r\r\nOK\r\n");
}

TEST(SimulatedModem, ResetRestoresTheEchoItStartedWith) {
  Station station({.Echo = false});
  EXPECT_EQ(station.Say("ATE1\r"), "\r\nOK\r\n");
  EXPECT_EQ(station.Say("ATZ\r"), "ATZ\r\r\nOK\r\n");
  EXPECT_EQ(station.Say("ATZ\r"), "\r\nOK\r\n");
}

TEST(SimulatedModem, AnswersInDigitsOrNotAtAllWhenToldSo) {
  Station station({.Echo = false});
  EXPECT_EQ(station.Say("ATV0\r"), "0\r");
  EXPECT_EQ(station.Say("AT~\r"), "4\r");
  EXPECT_EQ(station.Say("ATV1Q1\r"), "");
  EXPECT_EQ(station.Say("AT\r"), "");
  EXPECT_EQ(station.Say("ATQ0\r"), "\r\nOK\r\n");
}

TEST(SimulatedModem, AcceptsRegistersAndUsualCommands) {
  Station station({.Echo = false});
  EXPECT_EQ(station.Say("ATS0=0\r"), "\r\nOK\r\n");
  EXPECT_EQ(station.Say("ATS0=1S7=60X4&K3M1L2\r"), "\r\nOK\r\n");
  EXPECT_EQ(station.Say("AT=\r"), "\r\nERROR\r\n");
}

TEST(SimulatedModem, IgnoresLinesThatAreNoCommands) {
  Station station({.Echo = false});
  EXPECT_EQ(station.Say("hello\r\n\r"), "");
}

TEST(SimulatedModem, AnswersAfterItsDelay) {
  Station station({.Echo = false, .ReplyDelay = 700ms});
  station.Modem.Receive(Hex("41 54 0D"), 1000ms);
  EXPECT_EQ(station.Modem.TakeOutput().at(0).Due, Micros(1700ms));
}

TEST(SimulatedModem, SplitsItsReplies) {
  Station station({.Echo = false, .SplitReplies = true, .ReplyDelay = 0ms});
  station.Modem.Receive(Hex("41 54 0D"), 1000ms);
  const std::vector<sim::Output> outputs = station.Modem.TakeOutput();
  ASSERT_EQ(outputs.size(), 2U);
  EXPECT_EQ(outputs[0], (sim::Output{1000ms, Hex("0D 0A 4F")}));
  EXPECT_EQ(outputs[1], (sim::Output{1040ms, Hex("4B 0D 0A")}));
}

TEST(SimulatedModem, DialsAndThenPassesBytesOn) {
  Station station({.Echo = false, .DialTime = 3s});
  station.Modem.Receive(sim::Bytes{'A', 'T', 'D', 'T', '5', '5', '-', '1', '\r'}, 1s);
  const std::vector<sim::Output> outputs = station.Modem.TakeOutput();
  ASSERT_EQ(outputs.size(), 1U);
  EXPECT_EQ(outputs[0], (sim::Output{4s, Hex("0D 0A 43 4F 4E 4E 45 43 54 0D 0A")}));
  EXPECT_EQ(station.Modem.Dialled(), "55-1");
  EXPECT_FALSE(station.Modem.HasCarrier(3999ms));
  EXPECT_EQ(station.Say("U", 3999ms), "");
  EXPECT_TRUE(station.Modem.HasCarrier(4s));
  EXPECT_EQ(station.Say("U", 4s), "T");
  EXPECT_EQ(Ask(station.Modem, kAskCommit, 5000), "FA FC");
}

TEST(SimulatedModem, SaysTheSpeedBehindConnect) {
  Station station({.Behaviour = ModemBehaviour::ConnectWithSpeed, .Echo = false});
  EXPECT_EQ(station.Say("ATDT1\r"), "\r\nCONNECT 9600\r\n");
}

TEST(SimulatedModem, ReportsBusyAndNoCarrierAndTakesCommandsAgain) {
  Station busy({.Behaviour = ModemBehaviour::Busy, .Echo = false});
  EXPECT_EQ(busy.Say("ATDT1\r"), "\r\nBUSY\r\n");
  EXPECT_EQ(busy.Say("AT\r", 3s), "\r\nOK\r\n");
  Station nobody({.Behaviour = ModemBehaviour::NoCarrier, .Echo = false});
  EXPECT_EQ(nobody.Say("ATDT1\r"), "\r\nNO CARRIER\r\n");
  EXPECT_FALSE(nobody.Modem.HasCarrier(10s));
}

TEST(SimulatedModem, CanBeSilent) {
  Station station({.Behaviour = ModemBehaviour::Silent});
  EXPECT_EQ(station.Say("ATZ\rATDT1\r"), "");
}

TEST(SimulatedModem, CanDialForEver) {
  Station station({.Behaviour = ModemBehaviour::SilentDialling, .Echo = false});
  EXPECT_EQ(station.Say("ATZ\r"), "\r\nOK\r\n");
  EXPECT_EQ(station.Say("ATDT1\r"), "");
  EXPECT_FALSE(station.Modem.HasCarrier(1h));
}

TEST(SimulatedModem, CanAnswerInLowerCase) {
  Station station({.Behaviour = ModemBehaviour::LowerCase, .Echo = false});
  EXPECT_EQ(station.Say("ATZ\r"), "\r\nok\r\n");
  EXPECT_EQ(station.Say("ATDT1\r"), "\r\nconnect\r\n");
}

TEST(SimulatedModem, CanRefuseEveryCommand) {
  Station station({.Behaviour = ModemBehaviour::Error, .Echo = false});
  EXPECT_EQ(station.Say("ATZ\r"), "\r\nERROR\r\n");
  EXPECT_EQ(station.Say("ATDT1\r"), "\r\nERROR\r\n");
}

TEST(SimulatedModem, CanLoseTheCarrier) {
  Station station({.Behaviour = ModemBehaviour::CarrierLost, .Echo = false, .DialTime = 1s});
  EXPECT_EQ(station.Say("ATDT1\r", 0s), "\r\nCONNECT\r\n\r\nNO CARRIER\r\n");
  EXPECT_EQ(station.Say("U", 10'999ms), "T");
  EXPECT_EQ(station.Say("U", 11s), "");
  EXPECT_EQ(station.Say("\rAT\r", 11s), "\r\nOK\r\n");
}

TEST(SimulatedModem, HangsUpWhenTheHostClosesItsPort) {
  Station station({.Echo = false});
  station.Say("ATDT1\r", 0s);
  EXPECT_EQ(station.Say("U", 5s), "T");
  station.Modem.LineDropped();
  EXPECT_FALSE(station.Modem.HasCarrier(6s));
  EXPECT_EQ(station.Say("ATZ\r", 6s), "\r\nOK\r\n");
}

TEST(ModemBehaviours, HaveNamesInTheOrderOfTheEnum) {
  int expected = 0;
  for (const sim::ModemBehaviourName& behaviour : sim::ModemBehaviours())
    EXPECT_EQ(static_cast<int>(behaviour.Behaviour), expected++);
  EXPECT_EQ(expected, static_cast<int>(ModemBehaviour::CarrierLost) + 1);
}

}  // namespace
}  // namespace tessmar::test
