#include "link/ModemDialogue.h"

#include <gmock/gmock.h>

#include <string>

#include "link/CommandsBench.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

const Rgb kRed{255, 0, 0};
const Rgb kGreen{0, 140, 0};

Bytes Text(const std::string& text) {
  return {text.begin(), text.end()};
}

/// A dialogue whose timer fires with every tick of the loop, against a scripted modem.
struct DialogueBench : CommandsBench {
  explicit DialogueBench(QStringList commands = {u"ATZ"_s, u"ATE1V1Q0"_s})
      : Dialogue(Channel, Link, std::move(commands), u"555-0100"_s,
                 {.Append = [this](const QString& text) { Shown += text; },
                  .SetTextColour = [this](Rgb colour) { Colours.push_back(colour); },
                  .Hide = [this] { Hidden = true; }}) {
    Port.Log.clear();
    Loop.OnTick = [this] {
      if (Link.WaitTicks > 0) --Link.WaitTicks;
      Dialogue.Tick();
    };
    Dialogue.Start();
  }

  /// Runs the timer until the window hides, at most for a time.
  bool RunUntilHidden(qint64 ms) {
    const qint64 end = Loop.NowMs() + ms;
    while (!Hidden && Loop.NowMs() < end) Loop.RunOnce();
    return Hidden;
  }

  void CancelAt(qint64 ms) {
    Loop.At(ms, [this] { Dialogue.Cancel(); });
  }

  std::vector<std::string> Lines() const {
    std::vector<std::string> lines;
    for (const Bytes& written : Port.Writes) lines.emplace_back(written.begin(), written.end());
    return lines;
  }

  DialogueBench& Modem(const std::string& reply, qint64 delayMs = 20) {
    Answering(Text(reply), delayMs);
    return *this;
  }

  QString Shown;
  std::vector<Rgb> Colours;
  bool Hidden = false;
  ModemDialogue Dialogue;
};

TEST(ModemDialogue, PreparesLineAndWindow) {
  DialogueBench bench;
  EXPECT_THAT(bench.Port.Log, ElementsAre("rts/cts", "rts on"));
  EXPECT_THAT(bench.Colours, ElementsAre(kRed));
  EXPECT_EQ(bench.Shown, u"Sending Reset Command to Modem...\r\n"_s);
  EXPECT_EQ(bench.Dialogue.Result(), ModemResult::Error);
  EXPECT_TRUE(bench.Port.Written.empty());
}

TEST(ModemDialogue, SendsTheListDialsAndSettles) {
  DialogueBench bench;
  bench.Modem("OK\r\n").Modem("OK\r\n").Modem("CONNECT\r\n");
  ASSERT_TRUE(bench.RunUntilHidden(60'000));
  EXPECT_EQ(bench.Dialogue.Result(), ModemResult::Connect);
  EXPECT_THAT(bench.Lines(), ElementsAre("ATZ\r", "ATE1V1Q0\r", "ATDT555-0100\r"));
  EXPECT_THAT(bench.Colours, ElementsAre(kRed, kGreen));
  EXPECT_EQ(bench.Shown, u"Sending Reset Command to Modem...\r\nOK\r\nOK\r\nCONNECT\r\n"_s);
}

TEST(ModemDialogue, TakesItsTimes) {
  DialogueBench bench;
  bench.Modem("OK\r\n").Modem("OK\r\n").Modem("CONNECT\r\n");
  std::vector<qint64> times;
  const auto answer = bench.Port.OnWrite;
  bench.Port.OnWrite = [&](const Bytes& written) {
    times.push_back(bench.Loop.NowMs());
    answer(written);
  };
  ASSERT_TRUE(bench.RunUntilHidden(60'000));
  // The first tick, ten ticks for the reset, then a tick for each line; two seconds to settle.
  EXPECT_THAT(times, ElementsAre(1'100, 1'200, 1'300));
  EXPECT_EQ(bench.Loop.NowMs(), 3'300);
}

TEST(ModemDialogue, HearsTheAnswerBehindTheEcho) {
  DialogueBench bench;
  bench.Modem("ATZ\r\r\nOK\r\n");
  bench.Modem("ATE1V1Q0\r\n");
  bench.Loop.After(1'800, [&] { bench.Port.Arrive(Text("OK\r\n")); });
  bench.Modem("ATDT555-0100\r\r\n\r\nCONNECT 9600\r\n");
  ASSERT_TRUE(bench.RunUntilHidden(60'000));
  EXPECT_EQ(bench.Dialogue.Result(), ModemResult::Connect);
  EXPECT_THAT(bench.Lines(), ElementsAre("ATZ\r", "ATE1V1Q0\r", "ATDT555-0100\r"));
}

TEST(ModemDialogue, HearsAnAnswerInPieces) {
  DialogueBench bench({u"ATZ"_s});
  bench.Modem("O");
  bench.Loop.At(1'900, [&] { bench.Port.Arrive(Text("K")); });
  bench.Loop.At(3'500, [&] { bench.Port.Arrive(Text("\r\n")); });
  bench.Modem("CONN");
  bench.Loop.At(4'500, [&] { bench.Port.Arrive(Text("ECT 19200\r\n")); });
  ASSERT_TRUE(bench.RunUntilHidden(60'000));
  EXPECT_THAT(bench.Lines(), ElementsAre("ATZ\r", "ATDT555-0100\r"));
  EXPECT_EQ(bench.Dialogue.Result(), ModemResult::Connect);
}

TEST(ModemDialogue, TakesAnAnswerWithoutALineFeedWhenItsTimeIsOver) {
  DialogueBench bench({u"ATZ"_s});
  bench.Modem("OK").Modem("CONNECT\r\n");
  ASSERT_TRUE(bench.RunUntilHidden(60'000));
  EXPECT_EQ(bench.Dialogue.Result(), ModemResult::Connect);
}

TEST(ModemDialogue, DoesNotAcceptAnOkInLowerCase) {
  DialogueBench bench;
  bench.Modem("ok\r\n").Modem("ok\r\n").Modem("ok\r\n");
  EXPECT_FALSE(bench.RunUntilHidden(15'000));
  for (const std::string& line : bench.Lines()) EXPECT_EQ(line, "ATZ\r");
  EXPECT_GE(bench.Lines().size(), 3u);
}

TEST(ModemDialogue, SendsACommandWithoutAnOkAgain) {
  DialogueBench bench;
  bench.Modem("ERROR\r\n").Modem("OK\r\n").Modem("").Modem("OK\r\n").Modem("CONNECT\r\n");
  ASSERT_TRUE(bench.RunUntilHidden(60'000));
  EXPECT_THAT(bench.Lines(),
              ElementsAre("ATZ\r", "ATZ\r", "ATE1V1Q0\r", "ATE1V1Q0\r", "ATDT555-0100\r"));
}

TEST(ModemDialogue, GivesEachOfTwoRepliesThreeSeconds) {
  DialogueBench bench({u"ATZ"_s});
  bench.Loop.At(1'100 + 5'900, [&] { bench.Port.Arrive(Text("OK\r\n")); });
  bench.CancelAt(9'000);
  EXPECT_TRUE(bench.RunUntilHidden(10'000));
  EXPECT_THAT(bench.Lines(), ElementsAre("ATZ\r", "ATDT555-0100\r"));
}

TEST(ModemDialogue, KeepsTryingASilentModemUntilCancel) {
  DialogueBench bench;
  EXPECT_FALSE(bench.RunUntilHidden(600'000));
  EXPECT_GT(bench.Lines().size(), 80u);
  bench.Dialogue.Cancel();
  EXPECT_TRUE(bench.RunUntilHidden(200));
  EXPECT_EQ(bench.Dialogue.Result(), ModemResult::Cancel);
}

TEST(ModemDialogue, DropsALateAnswerAheadOfEachCommand) {
  DialogueBench bench;
  bench.Modem("OK\r\nOK\r\n");
  EXPECT_FALSE(bench.RunUntilHidden(4'000));
  EXPECT_THAT(bench.Lines(), ElementsAre("ATZ\r", "ATE1V1Q0\r"));

  DialogueBench late;
  late.Port.Arrive(Text("OK\r\n"));
  EXPECT_FALSE(late.RunUntilHidden(4'000));
  EXPECT_THAT(late.Lines(), ElementsAre("ATZ\r"));
}

TEST(ModemDialogue, ListensOnAfterBusyAndNoCarrier) {
  for (const char* answer : {"BUSY\r\n", "NO CARRIER\r\n", "NO DIALTONE\r\n", "RINGING\r\n", ""}) {
    DialogueBench bench({u"ATZ"_s});
    bench.Modem("OK\r\n").Modem(answer);
    bench.Loop.At(3'600'000, [&] { bench.Port.Arrive(Text("CONNECT 1200\r\n")); });
    EXPECT_TRUE(bench.RunUntilHidden(3'700'000));
    EXPECT_GE(bench.Loop.NowMs(), 3'600'000);
    EXPECT_THAT(bench.Lines(), ElementsAre("ATZ\r", "ATDT555-0100\r"));
    EXPECT_EQ(bench.Dialogue.Result(), ModemResult::Connect);
  }
}

TEST(ModemDialogue, DoesNotTakeALowerCaseConnect) {
  DialogueBench bench({u"ATZ"_s});
  bench.Modem("OK\r\n").Modem("connect\r\n");
  bench.CancelAt(30'000);
  EXPECT_TRUE(bench.RunUntilHidden(40'000));
  EXPECT_EQ(bench.Loop.NowMs(), 30'000);
  EXPECT_EQ(bench.Dialogue.Result(), ModemResult::Cancel);
}

TEST(ModemDialogue, EndsByCancelAtEveryStage) {
  // In the pause ahead of the reset, waiting for its answer, for the next one's, for the carrier,
  // and while the line settles.
  for (qint64 when = 50; when < 7'000; when += 100) {
    SCOPED_TRACE(when);
    DialogueBench bench;
    bench.Modem("OK\r\n", 700).Modem("OK\r\n", 1'500).Modem("CONNECT\r\n", 1'800);
    bench.Loop.At(when, [&] { bench.Dialogue.Cancel(); });
    ASSERT_TRUE(bench.RunUntilHidden(60'000));
    EXPECT_EQ(bench.Dialogue.Result(), ModemResult::Cancel);
    EXPECT_LE(bench.Loop.NowMs(), when + 100);
    const std::size_t lines = bench.Lines().size();
    bench.Loop.RunFor(10'000);
    EXPECT_EQ(bench.Lines().size(), lines);
  }
}

TEST(ModemDialogue, CancelInThePauseStillSendsTheReset) {
  DialogueBench bench;
  bench.Loop.At(500, [&] { bench.Dialogue.Cancel(); });
  ASSERT_TRUE(bench.RunUntilHidden(60'000));
  EXPECT_THAT(bench.Lines(), ElementsAre("ATZ\r"));
}

TEST(ModemDialogue, CancelAheadOfTheFirstTickSendsNothing) {
  DialogueBench bench;
  bench.Dialogue.Cancel();
  ASSERT_TRUE(bench.RunUntilHidden(200));
  EXPECT_THAT(bench.Lines(), IsEmpty());
}

TEST(ModemDialogue, EndsAtOnceWhenTheProgramEndsAndMakesNoErrorOfIt) {
  for (const qint64 when : {500, 1'500, 3'000, 30'000}) {
    DialogueBench bench;
    bench.Modem("OK\r\n", 700).Modem("OK\r\n", 1'500);
    bench.Loop.At(when, [&] {
      bench.Port.Close();
      bench.Loop.End();
    });
    ASSERT_TRUE(bench.RunUntilHidden(60'000));
    EXPECT_LE(bench.Loop.NowMs(), when + 100);
    EXPECT_NE(bench.Dialogue.Result(), ModemResult::Connect);
  }
}

TEST(ModemDialogue, EndsWithAnErrorWhenTheAdapterIsGoneAtTheNextCommand) {
  DialogueBench bench;
  bench.Loop.At(1'500, [&] { bench.Port.Unplug(); });
  ASSERT_TRUE(bench.RunUntilHidden(60'000));
  EXPECT_EQ(bench.Dialogue.Result(), ModemResult::Error);
  // Both replies have their time before the next command is sent.
  EXPECT_EQ(bench.Loop.NowMs(), 1'100 + 6'000 + 100);
}

TEST(ModemDialogue, ListensOnWithoutTheAdapterUntilCancel) {
  DialogueBench bench({u"ATZ"_s});
  bench.Modem("OK\r\n");
  bench.Loop.At(3'000, [&] { bench.Port.Unplug(); });
  bench.CancelAt(60'000);
  EXPECT_TRUE(bench.RunUntilHidden(100'000));
  EXPECT_EQ(bench.Loop.NowMs(), 60'000);
  EXPECT_EQ(bench.Dialogue.Result(), ModemResult::Cancel);
}

TEST(ModemDialogue, LetsFaultsThroughWhenTheyAreNotTrapped) {
  DialogueBench bench;
  bench.Link.TrapErrors = false;
  bench.Port.Unplug();
  EXPECT_THROW(bench.Dialogue.Tick(), PortFault);
}

TEST(ModemDialogue, ShowsEachByteAsOneCharacter) {
  DialogueBench bench;
  bench.Modem(std::string("\xE4\xFF\r\n", 4));
  bench.RunUntilHidden(1'500);
  EXPECT_TRUE(bench.Shown.endsWith(u"\u00E4\u00FF\r\n"_s));
}

}  // namespace
}  // namespace tessmar::test
