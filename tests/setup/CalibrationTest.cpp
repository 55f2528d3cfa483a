#include "setup/Calibration.h"

#include <gtest/gtest.h>

#include "setup/SetupRig.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::SetupRig;
using Page = Calibration::Page;

constexpr std::uint8_t kStartOpcode = 0x09;
constexpr std::uint8_t kSampleOpcode = 0x0A;

class CalibrationTest : public testing::Test {
 protected:
  Calibration Wizard(std::int16_t channel = 1) {
    return {rig_.Commands, rig_.Link, channel, u"100"_s, u"-5"_s};
  }

  /// One tick, and time for the logger to measure until the next.
  std::optional<std::int32_t> Tick(Calibration& wizard) {
    const auto reading = wizard.Tick();
    rig_.Loop.RunFor(250);
    return reading;
  }

  /// Walks to a page with the texts that stand there.
  static void GoTo(Calibration& wizard, Page page) {
    while (wizard.CalibrationStep() != page) wizard.Next(wizard.StartText());
  }

  SetupRig rig_;
};

TEST_F(CalibrationTest, WalksHighPointFirst) {
  Calibration wizard = Wizard();
  struct Row {
    Page At;
    QString Label, Text, Next;
    bool Back, Live;
  };
  const Row rows[] = {{Page::HighValue, u"Enter the highest value in engineering units:"_s,
                       u"100"_s, u"Next >"_s, false, false},
                      {Page::HighReading, u"Press Next when the value is settled:"_s, u"65535"_s,
                       u"Next >"_s, true, true},
                      {Page::LowValue, u"Enter the lowest value in engineering units:"_s, u"-5"_s,
                       u"Next >"_s, true, false},
                      {Page::LowReading, u"Press Next when the value is settled:"_s, u"0"_s,
                       u"Finish"_s, true, true}};
  for (const Row& row : rows) {
    EXPECT_EQ(wizard.CalibrationStep(), row.At);
    EXPECT_EQ(GetText(wizard.View().Label), row.Label);
    EXPECT_EQ(wizard.StartText(), row.Text);
    EXPECT_EQ(GetText(wizard.View().NextCaption), row.Next);
    EXPECT_EQ(wizard.View().BackEnabled, row.Back);
    EXPECT_EQ(wizard.View().LiveReading, row.Live);
    EXPECT_EQ(wizard.Next(wizard.StartText()), row.At == Page::LowReading);
  }
}

TEST_F(CalibrationTest, TheTitleNamesChannelAndUnits) {
  EXPECT_EQ(Calibration::Title(1, u" Feet "_s), u"Calibrate Channel 2 (Feet)"_s);
}

TEST_F(CalibrationTest, FinishingUntouchedGivesTheEndsOfTheRawRange) {
  Calibration wizard = Wizard();
  GoTo(wizard, Page::LowReading);
  EXPECT_TRUE(wizard.Next(wizard.StartText()));
  EXPECT_EQ(wizard.Kept(), (Calibration::Texts{u"100"_s, u"65535"_s, u"-5"_s, u"0"_s}));
}

TEST_F(CalibrationTest, NextKeepsTheTextOfItsPage) {
  Calibration wizard = Wizard();
  for (const QString& text : {u"30"_s, u"41000"_s, u"2"_s, u"700"_s}) wizard.Next(text);
  EXPECT_EQ(wizard.Kept(), (Calibration::Texts{u"30"_s, u"41000"_s, u"2"_s, u"700"_s}));
}

TEST_F(CalibrationTest, BackDoesNotKeepTheTextOfItsPage) {
  Calibration wizard = Wizard();
  wizard.Next(u"30"_s);
  wizard.Next(u"41000"_s);
  wizard.Back();
  EXPECT_EQ(wizard.StartText(), u"41000"_s);
  // A value read now is not kept by going back.
  wizard.Back();
  EXPECT_EQ(wizard.CalibrationStep(), Page::HighValue);
  wizard.Next(u"30"_s);
  EXPECT_EQ(wizard.StartText(), u"41000"_s);
}

TEST_F(CalibrationTest, BackFromTheLastPageRestoresTheNextCaption) {
  Calibration wizard = Wizard();
  GoTo(wizard, Page::LowReading);
  EXPECT_EQ(GetText(wizard.View().NextCaption), u"Finish"_s);
  wizard.Back();
  EXPECT_EQ(wizard.CalibrationStep(), Page::LowValue);
  EXPECT_EQ(GetText(wizard.View().NextCaption), u"Next >"_s);
}

TEST_F(CalibrationTest, ACycleIsOneStartAndThreeFetches) {
  Calibration wizard = Wizard();
  GoTo(wizard, Page::HighReading);
  const int starts = rig_.Logger.Requests(kStartOpcode);
  const int samples = rig_.Logger.Requests(kSampleOpcode);
  for (int phase : {1, 2, 3, 0, 1, 2, 3, 0}) {
    Tick(wizard);
    EXPECT_EQ(wizard.MeasurementPhase(), phase);
  }
  EXPECT_EQ(rig_.Logger.Requests(kStartOpcode) - starts, 2);
  EXPECT_EQ(rig_.Logger.Requests(kSampleOpcode) - samples, 6);
}

TEST_F(CalibrationTest, ShowsTheRawCountOfItsChannel) {
  Calibration wizard = Wizard(1);
  GoTo(wizard, Page::HighReading);
  std::optional<std::int32_t> reading;
  for (int tick = 0; tick < 8 && !reading; ++tick) reading = Tick(wizard);
  ASSERT_TRUE(reading);

  // The same sample, asked for once more and taken from its bytes: the channels' words stand from
  // the fifth byte on, low byte first.
  std::array<std::uint8_t, kSampleReplySize> reply{};
  ASSERT_EQ(rig_.Commands.GetSample(reply), SampleAnswer::Sample);
  EXPECT_EQ(*reading, reply[6] + 256 * reply[7]);
}

TEST_F(CalibrationTest, NothingIsReadOnAPageWithoutALiveReading) {
  Calibration wizard = Wizard();
  EXPECT_FALSE(Tick(wizard));
  EXPECT_EQ(rig_.Logger.Requests(kStartOpcode), 0);
}

TEST_F(CalibrationTest, ThePhaseStartsAnewOnEachRawPage) {
  Calibration wizard = Wizard();
  GoTo(wizard, Page::HighReading);
  Tick(wizard);
  Tick(wizard);
  EXPECT_EQ(wizard.MeasurementPhase(), 2);
  wizard.Next(u"1"_s);
  EXPECT_EQ(wizard.MeasurementPhase(), 0);
  wizard.Next(u"1"_s);
  Tick(wizard);
  EXPECT_EQ(wizard.MeasurementPhase(), 1);
}

TEST_F(CalibrationTest, ALostConnectionStopsTheReadingSilently) {
  Calibration wizard = Wizard();
  GoTo(wizard, Page::HighReading);
  Tick(wizard);
  rig_.LoseAdapter();
  EXPECT_FALSE(Tick(wizard));
  EXPECT_EQ(wizard.MeasurementPhase(), 1);
  EXPECT_TRUE(rig_.Messages.All.empty());
}

TEST_F(CalibrationTest, AnAdapterLostInTheMiddleOfAReadingIsAbsorbed) {
  Calibration wizard = Wizard();
  GoTo(wizard, Page::HighReading);
  Tick(wizard);
  rig_.Logger.AddFault(sim::FailureMode::Silent);
  rig_.Loop.After(50, [this] { rig_.Port.Unplug(); });
  EXPECT_FALSE(Tick(wizard));
}

TEST_F(CalibrationTest, AFaultThatIsNotTrappedComesThroughAndTheNextTickReadsOn) {
  Calibration wizard = Wizard();
  GoTo(wizard, Page::HighReading);
  Tick(wizard);
  rig_.Link.TrapErrors = false;
  rig_.Port.OnWrite = [](const test::Bytes&) { throw PortFault("gone"); };
  EXPECT_THROW(wizard.Tick(), PortFault);
  const auto before = rig_.Port.Writes.size();
  EXPECT_THROW(wizard.Tick(), PortFault);
  EXPECT_GT(rig_.Port.Writes.size(), before);
}

TEST_F(CalibrationTest, EveryFailureOfTheLinkLeavesTheTextAlone) {
  using sim::FailureMode;
  for (const FailureMode mode :
       {FailureMode::Silent, FailureMode::RequestLost, FailureMode::AcknowledgeLost,
        FailureMode::WrongAcknowledge, FailureMode::CorruptCheck, FailureMode::WrongLength,
        FailureMode::BadEscape, FailureMode::StopsMidFrame}) {
    SetupRig rig;
    Calibration wizard(rig.Commands, rig.Link, 0, u"1"_s, u"0"_s);
    GoTo(wizard, Page::HighReading);
    rig.Logger.AddFault(mode);
    for (int tick = 0; tick < 4; ++tick) {
      EXPECT_FALSE(wizard.Tick()) << static_cast<int>(mode);
      rig.Loop.RunFor(250);
    }
    EXPECT_EQ(wizard.MeasurementPhase(), 0);
    EXPECT_EQ(wizard.StartText(), u"65535"_s);
  }
}

TEST_F(CalibrationTest, ATickThatComesWhileAnotherWaitsDoesNothing) {
  Calibration wizard = Wizard();
  GoTo(wizard, Page::HighReading);
  rig_.Logger.AddFault(sim::FailureMode::Silent);
  bool nested = false;
  rig_.Loop.After(50, [&] {
    nested = true;
    EXPECT_FALSE(wizard.Tick());
    EXPECT_EQ(wizard.MeasurementPhase(), 1);
  });
  wizard.Tick();
  EXPECT_TRUE(nested);
}

TEST_F(CalibrationTest, AReadingThatComesAfterItsPageWasLeftIsDropped) {
  Calibration wizard = Wizard();
  GoTo(wizard, Page::HighReading);
  for (int tick = 0; tick < 2; ++tick) Tick(wizard);
  // The answer comes late, and the operator goes on before it.
  rig_.Logger.ClearFaults();
  bool left = false;
  rig_.Port.OnWrite = [this, &wizard, &left, carry = rig_.Port.OnWrite](const test::Bytes& bytes) {
    carry(bytes);
    if (!left) wizard.Next(u"1234"_s);
    left = true;
  };
  EXPECT_FALSE(wizard.Tick());
  EXPECT_TRUE(left);
  EXPECT_EQ(wizard.CalibrationStep(), Page::LowValue);
  EXPECT_EQ(wizard.Kept().HighRaw, u"1234"_s);
  EXPECT_EQ(wizard.MeasurementPhase(), 0);
}

TEST_F(CalibrationTest, EndsAtOnceWhenTheProgramEnds) {
  Calibration wizard = Wizard();
  GoTo(wizard, Page::HighReading);
  rig_.Logger.AddFault(sim::FailureMode::Silent);
  rig_.Loop.End();
  const qint64 before = rig_.Loop.NowMs();
  EXPECT_FALSE(wizard.Tick());
  EXPECT_LE(rig_.Loop.NowMs() - before, 100);
}

}  // namespace
}  // namespace tessmar
