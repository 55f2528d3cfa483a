// Uploads of many shapes from a logger with every failure that an upload can meet, alone and mixed.
// Whatever happens, the records that arrive are the stored ones in their order, or the upload says
// that it failed.

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <random>
#include <utility>

#include "history/UploadRig.h"

namespace tessmar {
namespace {

using sim::FailureMode;
using test::UploadRig;

struct Shape {
  int Analog;
  int Pulse;
};

// With nine channels a block cannot hold the records that its limit asks for.
constexpr std::array<Shape, 8> kShapes{
    {{8, 2}, {1, 0}, {3, 1}, {8, 0}, {2, 2}, {5, 0}, {1, 2}, {6, 1}}};

constexpr std::array<FailureMode, 15> kModes{
    FailureMode::RequestLost,      FailureMode::Silent,       FailureMode::AcknowledgeLost,
    FailureMode::WrongAcknowledge, FailureMode::CorruptCheck, FailureMode::WrongLength,
    FailureMode::JunkAhead,        FailureMode::BadEscape,    FailureMode::LateAnswer,
    FailureMode::StopsMidFrame,    FailureMode::NoiseAhead,   FailureMode::NoiseBehind,
    FailureMode::HeldAnswer,       FailureMode::LateCopy,     FailureMode::RandomLoss};

/// A logger behind a line that holds up each answer for a while of its own. Answers keep their
/// order.
class SlowLine final : public sim::LineDevice {
 public:
  using Delay = std::function<int()>;  ///< Milliseconds.

  SlowLine(sim::LineDevice& device, Delay delay) : device_(device), delay_(std::move(delay)) {}

  void Receive(std::span<const std::uint8_t> bytes, sim::Micros now) override {
    device_.Receive(bytes, now);
    const sim::Micros delay = std::chrono::milliseconds(delay_());
    for (sim::Output& output : device_.TakeOutput()) {
      output.Due = last_ = std::max(output.Due + delay, last_);
      waiting_.push_back(output);
    }
  }
  std::vector<sim::Output> TakeOutput() override { return std::exchange(waiting_, {}); }

 private:
  sim::LineDevice& device_;
  Delay delay_;
  sim::Micros last_{};
  std::vector<sim::Output> waiting_;
};

struct Tally {
  int Uploads = 0;
  int Complete = 0;
  int Failures = 0;
};

class UploadCampaign : public testing::Test {
 protected:
  void Run(const sim::LoggerOptions& options, const std::vector<sim::Fault>& faults) {
    UploadRig rig(options, buffer_);
    for (const sim::Fault& fault : faults) rig.Logger.AddFault(fault);
    const UploadEnd end = rig.Pull();
    ++tally_.Uploads;
    tally_.Failures += rig.Upload().TotalFailures();
    if (end == UploadEnd::Failed) return;
    ASSERT_EQ(end, UploadEnd::Complete);
    ++tally_.Complete;
    ASSERT_EQ(buffer_.Count(), options.Records);
    ASSERT_EQ(rig.Received(), rig.Stored(options.Records));
  }

  void Report(std::uint32_t seed) {
    RecordProperty("uploads", tally_.Uploads);
    std::printf("seed %u: %d uploads, %d complete, %d failed requests\n", seed, tally_.Uploads,
                tally_.Complete, tally_.Failures);
  }

  HistoryBuffer buffer_;
  Tally tally_;
};

sim::LoggerOptions OptionsFor(const Shape& shape, int records, int baud, std::uint32_t seed) {
  return {.AnalogChannels = shape.Analog,
          .PulseChannels = shape.Pulse,
          .Records = records,
          .BaudRate = baud,
          .Seed = seed};
}

TEST_F(UploadCampaign, EachFailureAlone) {
  constexpr std::uint32_t kSeed = 4711;
  for (const FailureMode mode : kModes) {
    for (const Shape& shape : kShapes) {
      for (const int baud : {0, 9600}) {
        SCOPED_TRACE(testing::Message()
                     << "mode " << static_cast<int>(mode) << ", channels " << shape.Analog << "+"
                     << shape.Pulse << ", baud " << baud << ", seed " << kSeed);
        const auto options = OptionsFor(shape, 333, baud, kSeed);
        Run(options, {{.Mode = mode, .Count = std::nullopt, .Rate = 0.2}});
        if (HasFatalFailure()) return;
      }
    }
  }
  Report(kSeed);
  EXPECT_EQ(tally_.Uploads, 240);
  EXPECT_EQ(tally_.Complete, 240);
  EXPECT_GT(tally_.Failures, 160);
}

TEST_F(UploadCampaign, AnswersThatComeTwice) {
  constexpr std::uint32_t kSeed = 815;
  for (const Shape& shape : kShapes) {
    for (const int baud : {0, 9600, 38400, 115200}) {
      SCOPED_TRACE(testing::Message() << "channels " << shape.Analog << "+" << shape.Pulse
                                      << ", baud " << baud << ", seed " << kSeed);
      Run(OptionsFor(shape, 333, baud, kSeed),
          {{.Mode = FailureMode::AnswerTwice, .Count = std::nullopt, .Rate = 0.2}});
      if (HasFatalFailure()) return;
    }
  }
  Report(kSeed);
  EXPECT_EQ(tally_.Complete, 32);
}

// The copy is taken for the answer that is missing, and nothing follows it.
TEST_F(UploadCampaign, ADoubledAnswerWithALostRequestBehindItShowsInTheCountAndIsBegunAnew) {
  UploadRig rig({.Records = 25, .BaudRate = 9600}, buffer_);
  int blocks = 0;
  const auto strike = [&] {
    ++blocks;
    if (blocks == 1) rig.Logger.AddFault({.Mode = FailureMode::AnswerTwice, .Count = 1});
    if (blocks == 2) rig.Logger.AddFault({.Mode = FailureMode::RequestLost, .Count = 1});
  };
  EXPECT_EQ(rig.Pull({[] { return true; }, strike}), UploadEnd::Complete);
  EXPECT_EQ(rig.Received(), rig.Stored(25));
  EXPECT_EQ(rig.Upload().TimesBegunAnew(), 1);
}

// A logger that says the same again is believed.
TEST_F(UploadCampaign, EqualBlocksWithMoreRecordsThanPromisedAreReadTwiceOnAGoodLine) {
  UploadRig rig({.Records = 25, .ClockStopsAt = 0}, buffer_);
  rig.Logger.AddFault({.Mode = FailureMode::MoreRecords, .Count = 14});
  EXPECT_EQ(rig.Pull(), UploadEnd::Complete);
  EXPECT_EQ(rig.Received(), rig.Stored(39));
  EXPECT_EQ(rig.Upload().TimesBegunAnew(), 1);
}

TEST_F(UploadCampaign, FailuresMixedAtRandom) {
  for (std::uint32_t seed = 1; seed <= 150; ++seed) {
    std::mt19937 luck(seed);
    const auto pick = [&luck](int count) {
      return static_cast<int>(luck() % static_cast<std::uint32_t>(count));
    };
    const Shape shape = kShapes[static_cast<std::size_t>(pick(8))];
    const int baud = std::array{0, 9600, 38400}[static_cast<std::size_t>(pick(3))];
    const auto options = OptionsFor(shape, pick(400), baud, seed);
    std::vector<sim::Fault> faults;
    for (int i = 0; i < 3; ++i) {
      const double rate = 0.02 + 0.01 * pick(15);
      faults.push_back({.Mode = kModes[static_cast<std::size_t>(pick(15))],
                        .Count = std::nullopt,
                        .Rate = rate});
    }
    SCOPED_TRACE(testing::Message()
                 << "seed " << seed << ": channels " << shape.Analog << "+" << shape.Pulse
                 << ", baud " << baud << ", records " << options.Records << ", modes "
                 << static_cast<int>(faults[0].Mode) << " " << static_cast<int>(faults[1].Mode)
                 << " " << static_cast<int>(faults[2].Mode));
    Run(options, faults);
    if (HasFatalFailure()) return;
  }
  Report(150);
  EXPECT_GT(tally_.Complete, 140);
}

// The logger's read pointer stands anywhere in an upload before this one.
TEST_F(UploadCampaign, AfterAnUploadThatWasBrokenOff) {
  for (std::uint32_t seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 luck(seed);
    const Shape shape = kShapes[luck() % kShapes.size()];
    const int records = 1 + static_cast<int>(luck() % 300);
    UploadRig rig(OptionsFor(shape, records, seed % 2 == 0 ? 9600 : 0, seed), buffer_);
    const auto enough = static_cast<std::int32_t>(luck() % 320);
    rig.Pull({[&] { return buffer_.Count() < enough; }, [] {}});
    rig.Logger.AddFault({.Mode = FailureMode::RequestLost, .Count = 1, .Opcode = 0x0D});
    rig.Logger.AddFault({.Mode = kModes[seed % kModes.size()], .Count = std::nullopt, .Rate = 0.1});
    const UploadEnd end = rig.Pull();
    ++tally_.Uploads;
    tally_.Failures += rig.Upload().TotalFailures();
    ASSERT_EQ(end, UploadEnd::Complete);
    ++tally_.Complete;
    ASSERT_EQ(rig.Received(), rig.Stored(records));
  }
  Report(60);
}

// A clock that stands still makes all blocks equal: the number of records is all there is to go by.
// What is not complete says so.
TEST_F(UploadCampaign, EqualBlocksAreCompleteOrSaidToBeShort) {
  int shortOnes = 0;
  for (std::uint32_t seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 luck(seed);
    sim::LoggerOptions options = OptionsFor(kShapes[luck() % kShapes.size()], 150, 0, seed);
    options.ClockStopsAt = static_cast<int>(luck() % 100);
    UploadRig rig(options, buffer_);
    rig.Logger.AddFault(
        {.Mode = kModes[seed % kModes.size()], .Count = std::nullopt, .Rate = 0.05});
    const UploadEnd end = rig.Pull();
    ++tally_.Uploads;
    tally_.Failures += rig.Upload().TotalFailures();
    ASSERT_EQ(end, UploadEnd::Complete);
    if (rig.Upload().IsShort()) {
      ++shortOnes;
      continue;
    }
    ++tally_.Complete;
    ASSERT_EQ(rig.Received(), rig.Stored(150));
  }
  Report(60);
  EXPECT_LE(shortOnes, 6);
}

TEST_F(UploadCampaign, AFailureForGoodEndsEveryUploadAsFailed) {
  for (const FailureMode mode :
       {FailureMode::Silent, FailureMode::RequestLost, FailureMode::AcknowledgeLost,
        FailureMode::WrongAcknowledge, FailureMode::CorruptCheck, FailureMode::WrongLength,
        FailureMode::BadEscape, FailureMode::StopsMidFrame, FailureMode::IllegalBlockCount}) {
    SCOPED_TRACE(static_cast<int>(mode));
    Run(OptionsFor({8, 2}, 25, 0, 1), {{.Mode = mode}});
  }
  EXPECT_EQ(tally_.Complete, 0);
}

TEST_F(UploadCampaign, ALoggerThatIsAlwaysLateIsReadCorrectly) {
  for (const Shape& shape : kShapes) {
    for (const int baud : {0, 9600}) {
      SCOPED_TRACE(testing::Message() << shape.Analog << "+" << shape.Pulse << " at " << baud);
      Run(OptionsFor(shape, 99, baud, 1), {{.Mode = FailureMode::LateAnswer}});
      if (HasFatalFailure()) return;
    }
  }
  Report(1);
  EXPECT_EQ(tally_.Uploads, 16);
}

class SlowLines : public UploadCampaign {
 protected:
  // Uploads 99 records over a line that delays each answer.
  void RunDelayed(const Shape& shape, const SlowLine::Delay& delay) {
    UploadRig rig(OptionsFor(shape, 99, 38400, 1), buffer_);
    SlowLine slow(rig.Logger, delay);
    const test::SimulatedLine line(rig.Port, rig.Loop, slow);
    const UploadEnd end = rig.Pull();
    ++tally_.Uploads;
    tally_.Failures += rig.Upload().TotalFailures();
    if (end == UploadEnd::Failed) return;
    ++tally_.Complete;
    ASSERT_EQ(rig.Received(), rig.Stored(99));
  }
};

TEST_F(SlowLines, EveryConstantDelayIsReadCorrectlyOrFails) {
  for (int delay = 0; delay <= 5500; delay += 50) {
    SCOPED_TRACE(delay);
    RunDelayed({8, 2}, [delay] { return delay; });
    if (HasFatalFailure()) return;
  }
  Report(0);
  EXPECT_EQ(tally_.Uploads, 111);
}

TEST_F(SlowLines, RareDelaysOfAnyLengthAreReadCorrectly) {
  for (std::uint32_t seed = 1; seed <= 100; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 luck(seed);
    RunDelayed({3, 1}, [&luck] { return luck() % 4 == 0 ? static_cast<int>(luck() % 5000) : 0; });
    if (HasFatalFailure()) return;
  }
  Report(100);
  EXPECT_EQ(tally_.Uploads, 100);
}

TEST_F(SlowLines, DelaysThatChangeFromAnswerToAnswerAreReadCorrectly) {
  for (std::uint32_t seed = 1; seed <= 100; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 luck(seed);
    RunDelayed({8, 2}, [&luck] { return static_cast<int>(luck() % 3000); });
    if (HasFatalFailure()) return;
  }
  Report(100);
  EXPECT_EQ(tally_.Uploads, 100);
}

}  // namespace
}  // namespace tessmar
