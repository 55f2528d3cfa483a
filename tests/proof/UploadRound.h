#pragma once

#include <QString>
#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sim/FailureMode.h"

namespace tessmar::test {

/// A kind of fault, and how often a request for a block meets it.
struct Kind {
  sim::FailureMode Mode;
  double Rate;
  std::optional<int> Count = std::nullopt;
};

/// By what they strike: the request, the acknowledge, the reply, the whole answer, and noise.
inline constexpr std::array<Kind, 24> kKinds{{
    {sim::FailureMode::RequestLost, 0.2},      {sim::FailureMode::RequestTwice, 0.2, 2},
    {sim::FailureMode::AcknowledgeLost, 0.2},  {sim::FailureMode::WrongAcknowledge, 0.2},
    {sim::FailureMode::AcknowledgeTwice, 0.2}, {sim::FailureMode::AcknowledgeBehind, 0.2},
    {sim::FailureMode::ReplyLost, 0.2},        {sim::FailureMode::ReplyLate, 0.2},
    {sim::FailureMode::StopsMidFrame, 0.2},    {sim::FailureMode::CorruptCheck, 0.2},
    {sim::FailureMode::WrongLength, 0.2},      {sim::FailureMode::BadEscape, 0.2},
    {sim::FailureMode::FlippedBits, 0.2},      {sim::FailureMode::MissingByte, 0.2},
    {sim::FailureMode::DoubledByte, 0.2},      {sim::FailureMode::Silent, 0.2},
    {sim::FailureMode::LateAnswer, 0.2},       {sim::FailureMode::AnswerTwice, 0.2},
    {sim::FailureMode::LateCopy, 0.2},         {sim::FailureMode::HeldAnswer, 0.2},
    {sim::FailureMode::NoiseAhead, 0.2},       {sim::FailureMode::JunkAhead, 0.2},
    {sim::FailureMode::NoiseBehind, 0.2},      {sim::FailureMode::HangUp, 0.05},
}};

struct Shape {
  int Analog;
  int Pulse;
};
/// Few channels; all ten with three derived ones; an area that its records do not fill.
inline constexpr std::array<Shape, 3> kShapes{{{1, 0}, {8, 2}, {6, 1}}};

/// Faults that make the logger go on without a sign: the count of records shows it at the end.
inline bool SkipsABlock(sim::FailureMode mode) {
  return mode == sim::FailureMode::RequestTwice;
}
/// Faults by which one block can come as two answers.
inline bool Doubles(sim::FailureMode mode) {
  return mode == sim::FailureMode::AnswerTwice || mode == sim::FailureMode::LateCopy;
}
/// Faults by which a request is not carried out.
inline bool LosesRequests(sim::FailureMode mode) {
  return mode == sim::FailureMode::RequestLost || mode == sim::FailureMode::HangUp;
}

enum class BreakOff { None, Stop, Unplugged, Silence };

struct Plan {
  std::vector<std::size_t> Kinds;  ///< Of kKinds.
  bool Modem = false;
  Shape Records{};
  BreakOff How = BreakOff::None;
  /// One answer comes twice and the request behind it is lost, on a line that is good otherwise.
  bool Coincidence = false;
  std::uint32_t Seed = 0;

  template <typename Test>
  bool Has(Test test) const {
    return std::any_of(Kinds.begin(), Kinds.end(),
                       [&](std::size_t k) { return test(kKinds[k].Mode); });
  }
  /// What only the count of records can show, and two faults that make up for one another hide.
  bool IsApart() const { return Has(SkipsABlock) || (Has(Doubles) && Has(LosesRequests)); }
};

/// What came of a table of records, against what is stored.
struct Difference {
  std::int64_t Lost = 0;
  std::int64_t Twice = 0;
  std::int64_t Wrong = 0;
  Difference& operator+=(const Difference& other) {
    Lost += other.Lost;
    Twice += other.Twice;
    Wrong += other.Wrong;
    return *this;
  }
  bool IsNone() const { return Lost == 0 && Twice == 0 && Wrong == 0; }
};

struct Tally {
  int Uploads = 0;
  int Complete = 0;
  int Short = 0;   ///< Complete, and said to have fewer records than promised.
  int Long = 0;    ///< Complete, with more records than promised.
  int Hidden = 0;  ///< Complete, with as many as promised, and not the stored ones.
  int Failed = 0;  ///< By itself.
  int BrokenOff = 0;
  int Whole = 0;  ///< Of those broken off: a prefix of what is stored.
  std::int64_t Records = 0;
  std::int64_t Failures = 0;
  std::int64_t BegunAnew = 0;
  Difference Of;
  std::int64_t Cells = 0;
  int OtherInArchive = 0;  ///< Uploads that the archive has otherwise than they came.
};

/// Uploads as the plan says, into an archive of its own, and looks at what has come.
/// @param archive  the path of a file that is not there yet.
/// @return what went wrong, or an empty text.
std::string RunPlan(const Plan& plan, const QString& archive, Tally& tally);

}  // namespace tessmar::test
