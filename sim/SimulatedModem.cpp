#include "SimulatedModem.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

namespace tessmar::sim {
namespace {

using namespace std::chrono_literals;
using enum ModemBehaviour;

constexpr std::array<ModemBehaviourName, 9> kBehaviours = {{
    {Connect, "connect", "answers CONNECT"},
    {ConnectWithSpeed, "connect-speed", "answers CONNECT 9600"},
    {Busy, "busy", "answers BUSY"},
    {NoCarrier, "no-carrier", "answers NO CARRIER"},
    {Silent, "silent", "says nothing at all"},
    {SilentDialling, "silent-dialling", "takes commands, a call never ends"},
    {LowerCase, "lower-case", "answers in lower case"},
    {Error, "error", "refuses every command"},
    {CarrierLost, "carrier-lost", "loses the carrier after ten seconds"},
}};

constexpr char kEndOfCommand = '\r';
constexpr std::size_t kPiece = 3;
constexpr Micros kPieceTime = 40ms;
constexpr Micros kCarrierTime = 10s;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

std::string UpperCase(std::string text) {
  std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::toupper(c); });
  return text;
}

/// Takes the digits at the front of a text. @return their value, 0 without any.
int TakeNumber(std::string_view& text) {
  int value = 0;
  while (!text.empty() && IsDigit(text.front())) {
    value = std::min(value * 10 + (text.front() - '0'), 9999);
    text.remove_prefix(1);
  }
  return value;
}

}  // namespace

std::span<const ModemBehaviourName> ModemBehaviours() {
  return kBehaviours;
}

SimulatedModem::SimulatedModem(LineDevice& farEnd, const ModemOptions& options)
    : farEnd_(farEnd), options_(options) {
  Reset();
}

void SimulatedModem::Reset() {
  echo_ = options_.Echo;
  verbose_ = true;
  quiet_ = false;
}

void SimulatedModem::LineDropped() {
  calling_ = false;
  connectedFrom_.reset();
  connectedUntil_.reset();
  line_.clear();
  Reset();
}

bool SimulatedModem::HasCarrier(Micros now) const {
  return connectedFrom_ && now >= *connectedFrom_ && !(connectedUntil_ && now >= *connectedUntil_);
}

void SimulatedModem::Receive(std::span<const std::uint8_t> bytes, Micros now) {
  if (options_.Behaviour == Silent) return;
  if (HasCarrier(now)) {
    farEnd_.Receive(bytes, now);
    for (Output& output : farEnd_.TakeOutput()) queue_.push_back(std::move(output));
    return;
  }
  if (connectedUntil_ && now >= *connectedUntil_) LineDropped();
  if (calling_) return;
  for (const std::uint8_t byte : bytes) TakeCommandByte(byte, now);
}

void SimulatedModem::TakeCommandByte(std::uint8_t byte, Micros now) {
  const char character = static_cast<char>(byte);
  if (echo_) Say(std::string_view(&character, 1), now);
  if (character == kEndOfCommand) {
    OnCommandLine(now);
    line_.clear();
  } else if (character != '\n') {
    line_ += character;
  }
}

void SimulatedModem::OnCommandLine(Micros now) {
  const std::string line = UpperCase(line_);
  if (!line.starts_with("AT")) return;
  commands_.push_back(line_);
  const Micros due = now + options_.ReplyDelay;
  if (options_.Behaviour == Error) return Answer(Result::Error, due);
  switch (RunCommands(std::string_view(line).substr(2), now)) {
    case Outcome::Done:
      return Answer(Result::Ok, due);
    case Outcome::Refused:
      return Answer(Result::Error, due);
    case Outcome::Dialled:  // answers for itself
      return;
  }
}

SimulatedModem::Outcome SimulatedModem::RunCommands(std::string_view commands, Micros now) {
  constexpr std::string_view kWithoutEffect = "BCFHLMNOPTWXY";
  while (!commands.empty()) {
    const char command = commands.front();
    commands.remove_prefix(1);
    if (command == ' ') continue;
    if (command == 'D') {
      Dial(commands, now);
      return Outcome::Dialled;
    }
    if ((command == '&' || command == '%' || command == '\\') && !commands.empty())
      commands.remove_prefix(1);
    else if (command == 'Z')
      Reset();
    else if (std::string_view("EVQS").find(command) == std::string_view::npos &&
             kWithoutEffect.find(command) == std::string_view::npos)
      return Outcome::Refused;

    const int value = TakeNumber(commands);
    if (command == 'E') echo_ = value != 0;
    if (command == 'V') verbose_ = value != 0;
    if (command == 'Q') quiet_ = value != 0;
    if (command == 'S' && commands.starts_with('=')) {
      commands.remove_prefix(1);
      TakeNumber(commands);
    }
  }
  return Outcome::Done;
}

void SimulatedModem::Dial(std::string_view number, Micros now) {
  if (number.starts_with('T') || number.starts_with('P')) number.remove_prefix(1);
  dialled_ = number;
  calling_ = true;
  const Micros due = now + options_.DialTime;
  switch (options_.Behaviour) {
    case Busy:
    case NoCarrier:
      calling_ = false;
      Answer(options_.Behaviour == Busy ? Result::Busy : Result::NoCarrier, due);
      return;
    case SilentDialling:
      return;
    default:
      break;
  }
  Answer(Result::Connect, due);
  connectedFrom_ = due;
  if (options_.Behaviour != CarrierLost) return;
  connectedUntil_ = due + kCarrierTime;
  Answer(Result::NoCarrier, *connectedUntil_);
}

std::string SimulatedModem::ResultText(Result result) const {
  if (!verbose_) return std::to_string(static_cast<int>(result)) + "\r";
  std::string text;
  switch (result) {
    case Result::Ok:
      text = "OK";
      break;
    case Result::Connect:
      text = options_.Behaviour == ConnectWithSpeed ? "CONNECT 9600" : "CONNECT";
      break;
    case Result::NoCarrier:
      text = "NO CARRIER";
      break;
    case Result::Error:
      text = "ERROR";
      break;
    case Result::Busy:
      text = "BUSY";
      break;
  }
  if (options_.Behaviour == LowerCase)
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
  return "\r\n" + text + "\r\n";
}

void SimulatedModem::Answer(Result result, Micros due) {
  if (!quiet_) Say(ResultText(result), due);
}

void SimulatedModem::Say(std::string_view text, Micros due) {
  const std::size_t piece = options_.SplitReplies ? kPiece : text.size();
  for (std::size_t at = 0; at < text.size(); at += piece, due += kPieceTime) {
    const std::string_view part = text.substr(at, piece);
    queue_.push_back({due, Bytes(part.begin(), part.end())});
  }
}

}  // namespace tessmar::sim
