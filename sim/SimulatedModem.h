#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "LineDevice.h"

namespace tessmar::sim {

/// What the simulated modem does with commands and calls.
enum class ModemBehaviour {
  Connect,           ///< "CONNECT" to every number.
  ConnectWithSpeed,  ///< "CONNECT 9600".
  Busy,              ///< The far end is busy.
  NoCarrier,         ///< The far end does not pick up.
  Silent,            ///< Says nothing at all, not even an echo.
  SilentDialling,    ///< Takes commands, but a call never ends.
  LowerCase,         ///< Answers in lower case.
  Error,             ///< Refuses every command.
  CarrierLost,       ///< Connects, and loses the carrier after ten seconds.
};

struct ModemBehaviourName {
  ModemBehaviour Behaviour;
  std::string_view Name;     ///< On the command line.
  std::string_view Meaning;  ///< For the help text.
};

/// All behaviours, in the order of the enum.
std::span<const ModemBehaviourName> ModemBehaviours();

struct ModemOptions {
  ModemBehaviour Behaviour = ModemBehaviour::Connect;
  bool Echo = true;            ///< After a reset.
  bool SplitReplies = false;   ///< Replies come in pieces of a few characters.
  Micros ReplyDelay{50'000};   ///< Between a command and its answer.
  Micros DialTime{2'000'000};  ///< Between a dial command and its answer.
};

/// A Hayes modem with another device at the far end of the telephone line. Understands the reset,
/// echo, form-of-answer, register and dial commands; accepts the other usual ones without effect.
class SimulatedModem final : public LineDevice {
 public:
  SimulatedModem(LineDevice& farEnd, const ModemOptions& options = {});

  void Receive(std::span<const std::uint8_t> bytes, Micros now) override;
  std::vector<Output> TakeOutput() override { return std::exchange(queue_, {}); }
  /// Hangs up and waits for commands.
  void LineDropped() override;

  /// True while the two ends are connected.
  bool HasCarrier(Micros now) const;
  /// The number dialled last.
  const std::string& Dialled() const { return dialled_; }
  /// Every command line that came, in order and as it came.
  const std::vector<std::string>& Commands() const { return commands_; }

 private:
  enum class Result { Ok = 0, Connect = 1, NoCarrier = 3, Error = 4, Busy = 7 };
  enum class Outcome { Done, Refused, Dialled };

  void TakeCommandByte(std::uint8_t byte, Micros now);
  void OnCommandLine(Micros now);
  Outcome RunCommands(std::string_view commands, Micros now);
  void Reset();
  void Dial(std::string_view number, Micros now);
  void Answer(Result result, Micros due);
  std::string ResultText(Result result) const;
  void Say(std::string_view text, Micros due);

  LineDevice& farEnd_;
  ModemOptions options_;
  std::vector<Output> queue_;
  std::string line_;
  std::vector<std::string> commands_;
  std::string dialled_;
  bool echo_ = true;
  bool verbose_ = true;
  bool quiet_ = false;
  bool calling_ = false;  ///< A call was placed that never ends, or ends in a connection.
  std::optional<Micros> connectedFrom_;
  std::optional<Micros> connectedUntil_;
};

}  // namespace tessmar::sim
