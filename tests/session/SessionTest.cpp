#include "session/Session.h"

#include <gtest/gtest.h>

#include "app/AppRig.h"
#include "base/Fault.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

const FakeMessages::Asked kAskInitialize{
    u"Warning: the flash memory has not been programmed.\r\n"
    u"You need to initialize the flash memory before proceeding.\r\n"
    u"This may take up to 45 seconds."_s,
    49, u"Initialization Required"_s};
const FakeMessages::Asked kInitializationFailed{
    u"Initialization Error: unable to correctly initialize the flash memory."_s, 16,
    u"Initialization Error"_s};

class SessionTest : public AppRig {
 protected:
  void BlankLogger() { std::fill(Logger.Memory.begin(), Logger.Memory.end(), 0xFF); }

  void ExpectDisconnected() {
    EXPECT_FALSE(Link.Connected);
    EXPECT_FALSE(Link.Busy);
    EXPECT_FALSE(Port.IsOpen());
    EXPECT_EQ(Screen.WaitCursor, 0);
  }
};

TEST_F(SessionTest, AFreshLoggersIdentifierHoldsTheProgramsVersion) {
  EXPECT_EQ(NewIdentifier(), u"TM2 219 "_s);
}

TEST_F(SessionTest, ANormalConnectionAsItStandsOnTheWire) {
  TheSession.Connect();
  EXPECT_EQ(Port.Writes, wire::kNormalConnection);
  EXPECT_EQ(Port.Log.front(), "open");
  EXPECT_TRUE(Messages.All.empty());
}

TEST_F(SessionTest, AConnectionShowsTheLogger) {
  TheSession.Connect();
  EXPECT_TRUE(Link.Connected);
  EXPECT_FALSE(Link.Busy);
  EXPECT_TRUE(Port.IsOpen());
  EXPECT_EQ(Settings.LoggerName, u"Pond 7"_s);
  EXPECT_EQ(Link.RecordCount, 5);
  EXPECT_EQ(Link.LoggingStateText, u"Logging"_s);
  EXPECT_EQ(Link.LoggerTimeText, u"12/27/10 15:05:20"_s) << "of the first sample";
  EXPECT_EQ(Link.FirmwareVersion, 3);
  EXPECT_EQ(Ring.Count, 1);
  EXPECT_EQ(Screen.WaitCursor, 0);
}

TEST_F(SessionTest, ButtonsPressedDuringAConnectionDoNothing) {
  int pressed = 0;
  Logger.OnCommand = [&](std::uint8_t) {
    ++pressed;
    PressEverything();
  };
  for (int ms = 10; ms < 1500; ms += 90) Loop.After(ms, [this] { PressEverything(); });
  TheSession.Connect();
  EXPECT_EQ(Port.Writes, wire::kNormalConnection);
  EXPECT_EQ(pressed, 10);
  EXPECT_TRUE(Messages.All.empty());
  EXPECT_EQ(HistoryShown + SetupShown, 0);
  EXPECT_TRUE(Link.Connected);
}

TEST_F(SessionTest, APressForgetsTheLastLoggerAheadOfTheDialog) {
  Link.RecordCount = 12;
  Settings.LoggerName = u"old"_s;
  Display.PushLiveSample(LiveSample::NoSample());
  const QStringList labels{u"lblSampleInterval"_s, u"lblWarmup"_s, u"lblLoggingState"_s,
                           u"lblAlarm(0)"_s, u"lblAlarm(1)"_s};
  for (const QString& label : labels) Screen.Captions[label] = u"old"_s;
  bool seen = false;
  Dialog = [&] {
    seen = true;
    EXPECT_TRUE(Link.Busy);
    EXPECT_EQ(Link.RecordCount, 0);
    EXPECT_EQ(Settings.LoggerName, QString());
    EXPECT_EQ(Ring.Count, 0);
    for (const QString& label : labels) {
      EXPECT_EQ(Screen.Caption(label), QString()) << label.toStdString();
    }
  };
  TheSession.Connect();
  EXPECT_TRUE(seen);
}

TEST_F(SessionTest, ASecondPressDisconnectsWithoutACommand) {
  Connect();
  TheSession.Connect();
  ExpectDisconnected();
  EXPECT_TRUE(Port.Writes.empty());
  EXPECT_EQ(Port.Log, (std::vector<std::string>{"dtr off", "close"}));
  EXPECT_EQ(Ring.Count, 0);
  EXPECT_EQ(Link.RecordCount, 0);
  for (int channel = 0; channel < 8; ++channel) EXPECT_FALSE(Display.View(channel).Enabled);
  Loop.RunFor(200);
  EXPECT_EQ(Screen.Caption(u"lblLoggerName"_s), QString());
  EXPECT_EQ(Screen.Caption(u"lblDateTime"_s), QString());
  EXPECT_EQ(Screen.Caption(u"lblRecordings"_s), QString());
}

TEST_F(SessionTest, APressDuringContinuousSamplingIsIgnored) {
  Connect();
  StartSampling();
  Forget();
  TheSession.Connect();
  EXPECT_TRUE(Link.Connected);
  EXPECT_TRUE(Port.IsOpen());
  EXPECT_EQ(Ring.Count, 1);
  EXPECT_EQ(Link.RecordCount, 5);
  EXPECT_TRUE(Port.Writes.empty());
}

TEST_F(SessionTest, APressWhileBusyIsIgnored) {
  bool shown = false;
  Dialog = [&] { shown = true; };
  Link.Busy = true;
  TheSession.Connect();
  EXPECT_FALSE(shown);
  EXPECT_TRUE(Link.Busy);
}

TEST_F(SessionTest, ACancelledDialogLeavesEverythingClosed) {
  Dialog = [] {};
  TheSession.Connect();
  ExpectDisconnected();
  EXPECT_TRUE(Messages.All.empty());
  EXPECT_EQ(Port.Opened, 0);
}

TEST_F(SessionTest, AFailedDialogsPortIsClosed) {
  Dialog = [this] { Line.OpenPort(1, u"38400,N,8,1"_s); };
  TheSession.Connect();
  ExpectDisconnected();
  EXPECT_EQ(Port.Opened, 1);
}

TEST_F(SessionTest, AnIdentifierPassesWhateverFollowsItsMark) {
  for (const char* identifier : {"TM2 219 ", "TM2     ", "TM2\x01\xFF!xy", "TM2TM2TM"}) {
    Logger.PutText(0, identifier);
    TheSession.Connect();
    EXPECT_TRUE(Link.Connected) << identifier;
    EXPECT_TRUE(Messages.All.empty()) << identifier;
    TheSession.Connect();
  }
}

TEST_F(SessionTest, AnyOtherIdentifierLeadsToTheQuestion) {
  for (const char* identifier : {"tm2 219 ", "Tm2 219 ", " TM2 219", "TM3 219 ", "TM 2219 "}) {
    Logger.PutText(0, identifier);
    Messages.All.clear();
    Messages.Answers = {kCancel};
    TheSession.Connect();
    EXPECT_EQ(Messages.All, std::vector<FakeMessages::Asked>{kAskInitialize}) << identifier;
    ExpectDisconnected();
  }
}

TEST_F(SessionTest, AnUnreadableIdentifierLeadsToTheQuestionAndNotToAnError) {
  Logger.Deaf = {0x08};
  Messages.Answers = {kCancel};
  TheSession.Connect();
  EXPECT_EQ(Messages.All, std::vector<FakeMessages::Asked>{kAskInitialize});
  ExpectDisconnected();
}

TEST_F(SessionTest, ARefusedInitializationLeavesTheLoggerAlone) {
  BlankLogger();
  Messages.Answers = {kCancel};
  Messages.OnMessage = [this] {
    EXPECT_TRUE(Link.Busy);
    EXPECT_EQ(Screen.WaitCursor, 0);
  };
  TheSession.Connect();
  EXPECT_EQ(Logger.Opcodes, (Bytes{0x0F, 0x08}));
  ExpectDisconnected();
}

TEST_F(SessionTest, InitializesABlankLogger) {
  BlankLogger();
  Messages.Answers = {kOk};
  TheSession.Connect();
  EXPECT_EQ(Messages.All, std::vector<FakeMessages::Asked>{kAskInitialize});
  EXPECT_TRUE(Link.Connected);
  EXPECT_FALSE(Link.Busy);
  EXPECT_EQ(Screen.WaitCursor, 0);
  EXPECT_EQ(Logger.Opcodes, (Bytes{0x0F, 0x08,                    // Version, no identifier.
                                   0x06,                          // Erase.
                                   0x07, 0x07, 0x07, 0x07,        // Defaults,
                                   0x08, 0x08, 0x08,              // read back.
                                   0x07, 0x08,                    // Identifier, read back.
                                   0x01,                          // Clock.
                                   0x08, 0x08, 0x08, 0x0C, 0x00,  // Get Sample.
                                   0x09, 0x09, 0x0A}));
  ASSERT_EQ(Port.Writes.size(), 24u);
  EXPECT_EQ(Port.Writes[5], wire::kInitializeFlash);
  EXPECT_EQ(Port.Writes[13], wire::kWriteIdentifier);
  EXPECT_EQ(Port.Writes[14], wire::kReadIdentifier);
  EXPECT_EQ(Port.Writes[15], wire::kSetTime);
  EXPECT_EQ(std::string(Logger.Memory.begin(), Logger.Memory.begin() + 8), "TM2 219 ");
}

TEST_F(SessionTest, AnInitializedLoggerHasTheDefaults) {
  BlankLogger();
  TheSession.Connect();
  LoggerSettings defaults;
  LoadDefaultSettings(defaults, 8);
  EXPECT_EQ(Settings.SampleInterval, defaults.SampleInterval);
  EXPECT_EQ(Settings.Analog[0].EngUnits, defaults.Analog[0].EngUnits);
  TheSession.Connect();
  Messages.All.clear();
  TheSession.Connect();
  EXPECT_TRUE(Messages.All.empty()) << "no second question";
  EXPECT_TRUE(Link.Connected);
}

TEST_F(SessionTest, WaitsFortyFourSecondsForTheErasedFlash) {
  BlankLogger();
  Logger.Failing = {0x06};
  Logger.OnCommand = [this](std::uint8_t opcode) {
    if (opcode == 0x06) Loop.After(44000, [this] { Port.Arrive({0xFC}); });
  };
  TheSession.Connect();
  EXPECT_TRUE(Link.Connected);
  EXPECT_EQ(Messages.All.size(), 1u);
}

TEST_F(SessionTest, ARefusedClockDoesNotSpoilTheInitialization) {
  BlankLogger();
  Logger.Deaf = {0x01};
  TheSession.Connect();
  EXPECT_TRUE(Link.Connected);
  EXPECT_EQ(Messages.All.size(), 1u);
}

TEST_F(SessionTest, EveryWayToFailAnInitializationIsReportedAndClosesThePort) {
  struct Case {
    const char* Name;
    std::function<void()> Arrange;
    int Commands;  ///< Opcodes 6 and 7 that are sent nevertheless, resends included.
  };
  const std::vector<Case> cases{
      {"flash not acknowledged", [this] { Logger.Deaf = {0x06}; }, 3},
      {"flash not done", [this] { Logger.Failing = {0x06}; }, 1},
      {"write not acknowledged", [this] { Logger.Deaf = {0x07}; }, 4},
      {"configuration byte not stored", [this] { Logger.StuckBytes = {8 + 7}; }, 5},
      {"last configuration byte not stored", [this] { Logger.StuckBytes = {768 + 2}; }, 5},
      {"identifier not stored", [this] { Logger.StuckBytes = {1}; }, 6},
      {"last digit of the identifier not stored", [this] { Logger.StuckBytes = {6}; }, 6},
      {"configuration not readable",
       [this] {
         Logger.OnCommand = [this](std::uint8_t opcode) {
           if (opcode == 0x07) Logger.Failing = {0x08};
         };
       },
       5},
  };
  for (const Case& one : cases) {
    SCOPED_TRACE(one.Name);
    BlankLogger();
    Forget();
    Logger.Deaf.clear();
    Logger.Failing.clear();
    Logger.StuckBytes.clear();
    Logger.OnCommand = {};
    one.Arrange();
    Messages.OnMessage = [this] {
      if (Messages.All.size() != 2) return;
      EXPECT_FALSE(Link.Busy);
      EXPECT_EQ(Screen.WaitCursor, 0);
    };
    TheSession.Connect();
    EXPECT_EQ(Messages.All,
              (std::vector<FakeMessages::Asked>{kAskInitialize, kInitializationFailed}));
    ExpectDisconnected();
    EXPECT_EQ(Logger.Count(0x06) + Logger.Count(0x07), one.Commands);
    EXPECT_EQ(Logger.Count(0x01), 0) << "the clock is not set";
  }
}

TEST_F(SessionTest, AHalfInitializedLoggerIsOfferedInitializationAgain) {
  BlankLogger();
  Logger.StuckBytes = {8 + 7};
  TheSession.Connect();
  ASSERT_FALSE(Link.Connected);
  Logger.StuckBytes.clear();
  Messages.All.clear();
  TheSession.Connect();
  EXPECT_EQ(Messages.All, std::vector<FakeMessages::Asked>{kAskInitialize});
  EXPECT_TRUE(Link.Connected);
}

TEST_F(SessionTest, TheLineLostAnywhereLeavesAFreeLink) {
  for (std::size_t last = 1; last <= wire::kNormalConnection.size(); ++last) {
    SCOPED_TRACE(last);
    Forget();
    const auto answer = Port.OnWrite;
    Port.OnWrite = [&, last](const Bytes& bytes) {
      if (Port.Writes.size() == last) {
        Port.Unplug();
      } else {
        answer(bytes);
      }
    };
    Messages.Answers = {kCancel};
    TheSession.Connect();
    EXPECT_FALSE(Link.Busy);
    EXPECT_FALSE(Port.IsOpen());
    EXPECT_EQ(Screen.WaitCursor, 0);
    Port.OnWrite = answer;
    Link.Connected = false;
  }
}

TEST_F(SessionTest, TheProgramEndingAnywhereEndsAnInitializationQuietly) {
  // Once without an end to see how many writes there are, then an end at each of them.
  BlankLogger();
  TheSession.Connect();
  const std::size_t writes = Port.Writes.size();
  ASSERT_EQ(writes, 24u);

  for (std::size_t last = 1; last <= writes; ++last) {
    SCOPED_TRACE(last);
    AppParts parts;
    parts.Logger.Memory.fill(0xFF);
    const auto answer = parts.Port.OnWrite;
    qint64 endedAt = -1;
    parts.Port.OnWrite = [&](const Bytes& bytes) {
      if (parts.Port.Writes.size() == last) {
        endedAt = parts.Loop.NowMs();
        parts.Port.Close();
        parts.Loop.End();
      } else {
        answer(bytes);
      }
    };
    parts.TheSession.Connect();
    ASSERT_GE(endedAt, 0);
    EXPECT_EQ(parts.Port.Writes.size(), last);
    EXPECT_LE(parts.Loop.NowMs() - endedAt, 100);
    EXPECT_FALSE(parts.Link.Busy);
    EXPECT_EQ(parts.Screen.WaitCursor, 0);
    EXPECT_EQ(parts.Messages.All.size(), last > 5 ? 1u : 0u) << "the question and nothing else";
  }
}

TEST_F(SessionTest, TheProgramEndingAtTheQuestionErasesNothing) {
  BlankLogger();
  Messages.Default = kOk;
  Messages.OnMessage = [this] { Loop.End(); };
  TheSession.Connect();
  EXPECT_EQ(Logger.Count(0x06), 0);
  EXPECT_EQ(Messages.All.size(), 1u);
  ExpectDisconnected();
}

TEST_F(SessionTest, AFaultThatLeavesTheActionFreesTheLink) {
  Link.TrapErrors = false;
  Dialog = [] { throw ConversionFault("no number"); };
  EXPECT_THROW(TheSession.Connect(), ConversionFault);
  EXPECT_FALSE(Link.Busy);

  Dialog = [this] { ConnectDirectly(); };
  Logger.OnCommand = [this](std::uint8_t opcode) {
    if (opcode == 0x08) Port.Unplug();
  };
  EXPECT_THROW(TheSession.Connect(), PortFault);
  EXPECT_FALSE(Link.Busy);
  EXPECT_EQ(Screen.WaitCursor, 0);
}

}  // namespace
}  // namespace tessmar::test
