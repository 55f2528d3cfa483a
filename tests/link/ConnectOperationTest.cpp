#include "link/ConnectOperation.h"

#include <gmock/gmock.h>

#include "link/CommandsBench.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using Choice = ConnectOperation::Choice;

const QString kConnectError = u"Connect Error"_s;
const FakeMessages::Asked kCannotOpen{
    u"Error opening port.  If this port exists, it \r\nmay be in use by another application."_s, 48,
    kConnectError};
const FakeMessages::Asked kNoLogger{u"Error: unable to establish communication with logger."_s, 48,
                                    kConnectError};

struct ConnectBench : CommandsBench {
  ConnectBench() {
    Port.Close();
    Port.Log.clear();
    Port.Opened = 0;
    Link.ModemTimeoutTicks = 4;
    Link.LinkTimeoutTicks = 0;
  }

  /// Lets the logger answer its handshake and tell its version.
  void LetLoggerAnswer() {
    Port.OnWrite = [this](const Bytes& written) {
      if (written == Bytes{0x55}) Arrive({0x54}, 10);
      if (written == Bytes{0x54}) Arrive({0x4D}, 10);
      if (written == Bytes{0x4D}) Arrive({0xFC}, 10);
      if (written.size() > 1) Arrive(Bytes{0xFA} + FrameOf({0x21, 8, 2, 1, 0, 0, 0, 0}), 10);
    };
  }

  ConnectionSettings Settings;
  FakeMessages Messages;
  FakeMainScreen Screen;
  std::function<bool()> Modem = [] { return true; };
  ConnectOperation Operation{
      Channel, Commands, Link, Settings, Messages, Screen, [this] { return Modem(); }};
};

const Choice kDirect{false, u"com3 - USB Serial Port"_s, u"57600"_s};
const Choice kModem{true, u"COM4"_s, u"19200"_s};

TEST(ConnectOperation, ConnectsOnADirectLine) {
  ConnectBench bench;
  bench.LetLoggerAnswer();
  EXPECT_TRUE(bench.Operation.Run(kDirect));
  EXPECT_TRUE(bench.Link.Connected);
  EXPECT_TRUE(bench.Port.IsOpen());
  EXPECT_EQ(bench.Port.Number(), 3);
  EXPECT_EQ(bench.Port.Settings(), u"57600,N,8,1"_s);
  EXPECT_THAT(bench.Port.Log, ElementsAre("open", "dtr on", "rts on", "no handshaking"));
  EXPECT_THAT(bench.Messages.All, IsEmpty());
}

TEST(ConnectOperation, TellsApartWhyThereIsNoLogger) {
  struct Row {
    std::function<void(ConnectBench&, const Bytes&)> Answer;
    PortCause Cause;
  };
  const Row rows[] = {
      {[](ConnectBench&, const Bytes&) {}, PortCause::Silent},
      {[](ConnectBench& bench, const Bytes&) {
         bench.Arrive({0x41, 0x54}, 10);
       },
       PortCause::NotALogger},
      {[](ConnectBench& bench, const Bytes&) { bench.Port.Unplug(); }, PortCause::Gone},
  };
  for (const Row& row : rows) {
    ConnectBench bench;
    std::vector<PortCause> told;
    bench.Operation.NoContact = [&](PortCause cause) { told.push_back(cause); };
    bench.Port.OnWrite = [&](const Bytes& written) { row.Answer(bench, written); };
    bench.Operation.Run(kDirect);
    EXPECT_THAT(told, ElementsAre(row.Cause));
    EXPECT_THAT(bench.Messages.All, ElementsAre(kNoLogger));
  }
}

TEST(ConnectOperation, AHandshakeThatWasCancelledOrWentWellHasNoTrouble) {
  for (const bool cancelled : {true, false}) {
    ConnectBench bench;
    int told = 0;
    bench.Operation.NoContact = [&](PortCause) { ++told; };
    if (cancelled) {
      bench.Port.OnWrite = [&](const Bytes&) { bench.Operation.Cancel(); };
    } else {
      bench.LetLoggerAnswer();
    }
    bench.Operation.Run(kDirect);
    EXPECT_EQ(bench.Link.Connected, !cancelled);
    EXPECT_EQ(told, 0);
  }
}

TEST(ConnectOperation, RemembersTheDirectChoice) {
  ConnectBench bench;
  bench.Settings.ModemPort = u"COM1"_s;
  bench.Operation.Run(kDirect);
  EXPECT_EQ(bench.Settings.DirectPort, u"COM3"_s);
  EXPECT_EQ(bench.Settings.DirectBaud, u"57600"_s);
  EXPECT_EQ(bench.Settings.ModemPort, u"COM1"_s);
}

TEST(ConnectOperation, RemembersTheModemChoice) {
  ConnectBench bench;
  bench.Settings.DirectPort = u"COM1"_s;
  bench.Modem = [] { return false; };
  bench.Operation.Run(kModem);
  EXPECT_EQ(bench.Settings.ModemPort, u"COM4"_s);
  EXPECT_EQ(bench.Settings.ModemBaud, u"19200"_s);
  EXPECT_EQ(bench.Settings.DirectPort, u"COM1"_s);
}

TEST(ConnectOperation, SetsTheTimeoutOfADirectLineToTen) {
  ConnectBench bench;
  bench.Operation.Run(kDirect);
  EXPECT_EQ(bench.Link.LinkTimeoutTicks, 10);
}

TEST(ConnectOperation, SetsTheTimeoutOfAModemLineToFourUnlessTheSwitchSaysMore) {
  ConnectBench bench;
  bench.Operation.Run(kModem);
  EXPECT_EQ(bench.Link.LinkTimeoutTicks, 4);
  bench.Link.ModemTimeoutTicks = 8;
  bench.Operation.Run(kModem);
  EXPECT_EQ(bench.Link.LinkTimeoutTicks, 8);
}

TEST(ConnectOperation, SaysThatThePortDoesNotOpen) {
  ConnectBench bench;
  bench.Port.RefuseToOpen = true;
  EXPECT_TRUE(bench.Operation.Run(kDirect));
  EXPECT_FALSE(bench.Link.Connected);
  EXPECT_FALSE(bench.Port.IsOpen());
  EXPECT_THAT(bench.Messages.All, ElementsAre(kCannotOpen));
  EXPECT_EQ(bench.Settings.DirectPort, u"COM3"_s);
  EXPECT_FALSE(bench.Operation.IsConnecting());
}

TEST(ConnectOperation, TreatsAPortTextWithoutANumberAsAPortThatDoesNotOpen) {
  for (const QString& text : {u"COM"_s, QString(), u"Bluetooth"_s}) {
    ConnectBench bench;
    EXPECT_TRUE(bench.Operation.Run({false, text, u"38400"_s}));
    EXPECT_THAT(bench.Messages.All, ElementsAre(kCannotOpen));
    EXPECT_EQ(bench.Port.Opened, 0);
    EXPECT_FALSE(bench.Link.Connected);
  }
}

TEST(ConnectOperation, ClosesAnOpenPortForAPortTextWithoutANumber) {
  ConnectBench bench;
  bench.Port.Open(3, u"38400,N,8,1"_s);
  bench.Operation.Run({false, u"COM"_s, u"38400"_s});
  EXPECT_FALSE(bench.Port.IsOpen());
}

TEST(ConnectOperation, LetsTheConversionFaultThroughWhenFaultsAreNotTrapped) {
  ConnectBench bench;
  bench.Link.TrapErrors = false;
  EXPECT_THROW(bench.Operation.Run({false, u"COM"_s, u"38400"_s}), ConversionFault);
  EXPECT_FALSE(bench.Operation.IsConnecting());
}

TEST(ConnectOperation, SaysThatNoLoggerAnswersAndClosesThePort) {
  ConnectBench bench;
  EXPECT_TRUE(bench.Operation.Run(kDirect));
  EXPECT_FALSE(bench.Link.Connected);
  EXPECT_FALSE(bench.Port.IsOpen());
  EXPECT_THAT(bench.Messages.All, ElementsAre(kNoLogger));
}

TEST(ConnectOperation, ShowsTheWaitCursorForTheHandshakeOnly) {
  ConnectBench bench;
  int atMessage = -1;
  int atModem = -1;
  bench.Messages.OnMessage = [&] { atMessage = bench.Screen.WaitCursor; };
  bench.Modem = [&] {
    atModem = bench.Screen.WaitCursor;
    return true;
  };
  bench.Operation.Run(kModem);
  EXPECT_EQ(atModem, 0);
  EXPECT_EQ(atMessage, 0);
  EXPECT_EQ(bench.Screen.WaitCursorShown, 1);
  EXPECT_EQ(bench.Screen.WaitCursor, 0);
}

TEST(ConnectOperation, ShakesHandsBehindAModemConnection) {
  ConnectBench bench;
  bench.LetLoggerAnswer();
  bool wasOpen = false;
  bench.Modem = [&] {
    wasOpen = bench.Port.IsOpen();
    return true;
  };
  EXPECT_TRUE(bench.Operation.Run(kModem));
  EXPECT_TRUE(wasOpen);
  EXPECT_TRUE(bench.Link.Connected);
  EXPECT_EQ(bench.Port.Settings(), u"19200,N,8,1"_s);
  EXPECT_THAT(bench.Port.Log, ElementsAre("open", "dtr on", "rts on"));
}

TEST(ConnectOperation, ClosesThePortAndSaysNothingMoreWithoutAModemConnection) {
  ConnectBench bench;
  bench.Modem = [] { return false; };
  EXPECT_TRUE(bench.Operation.Run(kModem));
  EXPECT_FALSE(bench.Port.IsOpen());
  EXPECT_TRUE(bench.Port.Written.empty());
  EXPECT_THAT(bench.Messages.All, IsEmpty());
}

TEST(ConnectOperation, CancelledAheadOfTheHandshakeEndsWithoutAMessage) {
  ConnectBench bench;
  bench.Modem = [&] {
    bench.Operation.Cancel();
    return true;
  };
  EXPECT_TRUE(bench.Operation.Run(kModem));
  EXPECT_FALSE(bench.Link.Connected);
  EXPECT_FALSE(bench.Port.IsOpen());
  EXPECT_TRUE(bench.Port.Written.empty());
  EXPECT_THAT(bench.Messages.All, IsEmpty());
}

TEST(ConnectOperation, CancelledInTheHandshakeSaysThatNoLoggerAnswers) {
  ConnectBench bench;
  bench.Loop.After(1'500, [&] { bench.Operation.Cancel(); });
  EXPECT_TRUE(bench.Operation.Run(kDirect));
  EXPECT_THAT(bench.Messages.All, ElementsAre(kNoLogger));
  EXPECT_EQ(bench.Loop.NowMs(), 2'000);
  EXPECT_FALSE(bench.Port.IsOpen());
}

TEST(ConnectOperation, DoesNothingWhileItIsAtWork) {
  ConnectBench bench;
  bool again = true;
  bool wasConnecting = false;
  bench.Loop.After(500, [&] {
    wasConnecting = bench.Operation.IsConnecting();
    again = bench.Operation.Run(kModem);
  });
  EXPECT_TRUE(bench.Operation.Run(kDirect));
  EXPECT_TRUE(wasConnecting);
  EXPECT_FALSE(again);
  EXPECT_EQ(bench.Port.Opened, 1);
}

TEST(ConnectOperation, EndsWhenTheAdapterIsPulledOut) {
  ConnectBench bench;
  bench.Loop.After(700, [&] { bench.Port.Unplug(); });
  EXPECT_TRUE(bench.Operation.Run(kDirect));
  EXPECT_EQ(bench.Loop.NowMs(), 700);
  EXPECT_FALSE(bench.Link.Connected);
  EXPECT_THAT(bench.Messages.All, ElementsAre(kNoLogger));

  bench.LetLoggerAnswer();
  EXPECT_TRUE(bench.Operation.Run(kDirect));
  EXPECT_TRUE(bench.Link.Connected);
}

TEST(ConnectOperation, EndsWhenTheProgramEnds) {
  ConnectBench bench;
  bench.Loop.After(700, [&] {
    bench.Port.Close();
    bench.Loop.End();
  });
  EXPECT_TRUE(bench.Operation.Run(kDirect));
  EXPECT_EQ(bench.Loop.NowMs(), 700);
  EXPECT_FALSE(bench.Link.Connected);
}

}  // namespace
}  // namespace tessmar::test
