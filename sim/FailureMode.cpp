#include "FailureMode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace tessmar::sim {
namespace {

using enum FailureMode;

constexpr std::array<FailureModeName, 30> kModes = {{
    {Silent, "silent", "carries out the request and says nothing"},
    {RequestLost, "request-lost", "never sees the request"},
    {AcknowledgeLost, "acknowledge-lost", "leaves out the 0xFA, sends the rest"},
    {WrongAcknowledge, "wrong-acknowledge", "sends 0xFB for 0xFA"},
    {CorruptCheck, "corrupt-check", "sends a wrong check value"},
    {WrongLength, "wrong-length", "sends a length that is one too small"},
    {JunkAhead, "junk-ahead", "sends noise ahead of the reply frame"},
    {BadEscape, "bad-escape", "sends an escape that stands for nothing"},
    {LateAnswer, "late-answer", "answers a second and a half late"},
    {AnswerTwice, "answer-twice", "sends the whole answer twice"},
    {StopsMidFrame, "stops-mid-frame", "stops in the middle of the reply frame"},
    {StuckConfigurationByte, "stuck-byte", "keeps one byte of memory as it was"},
    {CommitRefused, "commit-refused", "answers commit with 0xFD"},
    {IllegalVersion, "illegal-version", "claims nine analog channels"},
    {IllegalBlockCount, "illegal-block-count", "claims a record more than fit into a block"},
    {MoreRecords, "more-records", "delivers 25 (or COUNT) records more than promised"},
    {NoiseAhead, "noise-ahead", "sends noise ahead of the acknowledge"},
    {NoiseBehind, "noise-behind", "sends noise behind the answer"},
    {HeldAnswer, "held-answer", "keeps the answer back until the next request"},
    {LateCopy, "late-copy", "sends the answer again a second and a half later"},
    {RandomLoss, "random-loss", "loses acknowledges and replies at a rate (0.1)"},
    {RequestTwice, "request-twice", "gets the request twice, and does it twice"},
    {AcknowledgeTwice, "acknowledge-twice", "sends the 0xFA twice"},
    {AcknowledgeBehind, "acknowledge-behind", "sends the 0xFA behind the rest"},
    {ReplyLost, "reply-lost", "sends the 0xFA, leaves out the rest"},
    {ReplyLate, "reply-late", "sends the rest a second and a half late"},
    {FlippedBits, "flipped-bits", "damages any byte of the reply frame"},
    {MissingByte, "missing-byte", "leaves out any byte of the reply frame"},
    {DoubledByte, "doubled-byte", "sends any byte of the reply frame twice"},
    {HangUp, "hang-up", "is cut off for ten seconds, this answer too"},
}};

constexpr double kUsualLoss = 0.1;
constexpr int kUsualRecordsTooMany = 25;

template <typename Number>
bool ReadWhole(std::string_view text, Number& value, int base = 10) {
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value, base);
  return !text.empty() && result.ec == std::errc{} && result.ptr == end;
}

std::optional<std::uint8_t> ReadOpcode(std::string_view text) {
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  unsigned value = 0;
  const bool good = hexadecimal ? ReadWhole(text.substr(2), value, 16) : ReadWhole(text, value);
  if (!good || value > 0xFF) return std::nullopt;
  return static_cast<std::uint8_t>(value);
}

bool ReadCountOrRate(std::string_view text, Fault& fault) {
  if (text.find('.') == std::string_view::npos) {
    int count = 0;
    if (!ReadWhole(text, count) || count < 1 || fault.Mode == RandomLoss) return false;
    fault.Count = count;
    return true;
  }
  const char* end = text.data() + text.size();
  double rate = 0;
  const auto result = std::from_chars(text.data(), end, rate, std::chars_format::fixed);
  if (result.ec != std::errc{} || result.ptr != end) return false;
  if (!(rate > 0 && rate <= 1) || fault.Mode == MoreRecords) return false;
  fault.Rate = rate;
  return true;
}

}  // namespace

std::span<const FailureModeName> FailureModes() {
  return kModes;
}

std::optional<Fault> ParseFault(std::string_view text) {
  const std::size_t colon = text.find(':');
  std::string_view name = text.substr(0, colon);
  Fault fault;
  if (const std::size_t at = name.find('@'); at != std::string_view::npos) {
    fault.Opcode = ReadOpcode(name.substr(at + 1));
    if (!fault.Opcode) return std::nullopt;
    name = name.substr(0, at);
  }
  const auto mode = std::ranges::find(kModes, name, &FailureModeName::Name);
  if (mode == kModes.end()) return std::nullopt;
  fault.Mode = mode->Mode;
  if (colon != std::string_view::npos && !ReadCountOrRate(text.substr(colon + 1), fault))
    return std::nullopt;
  return fault;
}

bool FaultPlan::Strikes(FailureMode mode, std::optional<std::uint8_t> opcode) {
  for (Fault& fault : faults_) {
    if (fault.Mode != mode) continue;
    if (fault.Opcode && fault.Opcode != opcode) continue;
    if (fault.Count && *fault.Count == 0) continue;
    const double rate = fault.Rate.value_or(mode == RandomLoss ? kUsualLoss : 1.0);
    if (rate < 1.0 && !Lucky(rate)) continue;
    if (fault.Count) --*fault.Count;
    return true;
  }
  return false;
}

int FaultPlan::RecordsTooMany() const {
  const auto fault = std::ranges::find(faults_, MoreRecords, &Fault::Mode);
  return fault == faults_.end() ? 0 : fault->Count.value_or(kUsualRecordsTooMany);
}

bool FaultPlan::Lucky(double rate) {
  // Standard distributions differ between libraries; this one is the same everywhere.
  return luck_() < std::ldexp(rate, 32);
}

}  // namespace tessmar::sim
