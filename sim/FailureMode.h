#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <span>
#include <string_view>
#include <vector>

namespace tessmar::sim {

/// Everything that the simulated logger can do wrong.
enum class FailureMode {
  Silent,                  ///< Carries out the request and says nothing.
  RequestLost,             ///< Never gets to see the request.
  AcknowledgeLost,         ///< The 0xFA is missing; the rest of the answer comes.
  WrongAcknowledge,        ///< 0xFB stands in place of 0xFA.
  CorruptCheck,            ///< One bit of a reply frame's check value is wrong.
  WrongLength,             ///< A reply frame's length byte is one too small.
  JunkAhead,               ///< Noise stands between acknowledge and reply frame.
  BadEscape,               ///< A reply frame holds an escape that stands for nothing.
  LateAnswer,              ///< The answer comes a second and a half late.
  AnswerTwice,             ///< The whole answer comes twice in a row.
  StopsMidFrame,           ///< A reply frame ends in its middle.
  StuckConfigurationByte,  ///< A write leaves one byte of memory as it was.
  CommitRefused,           ///< Commit is answered with 0xFD.
  IllegalVersion,          ///< The version reply claims nine analog channels.
  IllegalBlockCount,       ///< A block claims one record more than fit into it.
  MoreRecords,             ///< An upload delivers more records than the status promised.
  NoiseAhead,              ///< Noise stands ahead of the acknowledge.
  NoiseBehind,             ///< Noise follows the answer.
  HeldAnswer,              ///< The answer comes when the next request does, ahead of that one's.
  LateCopy,                ///< The whole answer comes once more, a second and a half later.
  RandomLoss,              ///< Acknowledges and replies are lost at a rate, each on its own.
  RequestTwice,            ///< The request arrives twice and is carried out twice.
  AcknowledgeTwice,        ///< The acknowledge comes twice in a row.
  AcknowledgeBehind,       ///< The acknowledge comes behind what should follow it.
  ReplyLost,               ///< The acknowledge comes, and nothing behind it.
  ReplyLate,               ///< What follows the acknowledge is a second and a half late.
  FlippedBits,             ///< One byte of a reply frame, anywhere in it, has other bits.
  MissingByte,             ///< One byte of a reply frame, anywhere in it, is missing.
  DoubledByte,             ///< One byte of a reply frame, anywhere in it, comes twice.
  HangUp,                  ///< The line is dead for ten seconds, both ways, from the answer on.
};

struct FailureModeName {
  FailureMode Mode;
  std::string_view Name;     ///< On the command line.
  std::string_view Meaning;  ///< For the help text.
};

/// All modes, in the order of the enum.
std::span<const FailureModeName> FailureModes();

/// A failure mode and when it strikes.
struct Fault {
  FailureMode Mode = FailureMode::Silent;
  /// The next so many requests that it can affect; without it, for good. For MoreRecords: how many
  /// records more.
  std::optional<int> Count = std::nullopt;
  /// Chance for each request, above 0 and up to 1; without it, every one.
  std::optional<double> Rate = std::nullopt;
  /// Only requests with this opcode, which leaves the letters alone.
  std::optional<std::uint8_t> Opcode = std::nullopt;
  bool operator==(const Fault&) const = default;
};

/// Reads "NAME", "NAME:COUNT", "NAME:0.RATE", with "@OPCODE" (decimal or 0x hexadecimal) behind the
/// name where wanted: "corrupt-check@0x0D:3". @return nothing for a text that is none of these.
std::optional<Fault> ParseFault(std::string_view text);

/// Decides, by seeded luck, which requests meet which fault.
class FaultPlan {
 public:
  explicit FaultPlan(std::uint32_t seed) : luck_(seed) {}

  void Add(const Fault& fault) { faults_.push_back(fault); }
  void Clear() { faults_.clear(); }

  /// Asked once per occasion for which the mode can matter; uses up a counted fault.
  /// @param opcode  of the request; nothing for a handshake letter.
  bool Strikes(FailureMode mode, std::optional<std::uint8_t> opcode);

  /// A number below the end, which is above 0, by the same luck.
  std::size_t Any(std::size_t end) { return luck_() % end; }

  /// How many records an upload delivers above the promised ones.
  int RecordsTooMany() const;

 private:
  bool Lucky(double rate);

  std::vector<Fault> faults_;
  std::mt19937 luck_;
};

}  // namespace tessmar::sim
