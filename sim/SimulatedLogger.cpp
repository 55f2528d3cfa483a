#include "SimulatedLogger.h"

#include <algorithm>
#include <utility>

#include "LoggerSetup.h"

namespace tessmar::sim {
namespace {

using namespace std::chrono_literals;

constexpr std::uint8_t kWrongAcknowledge = 0xFB;
constexpr Micros kLateBy = 1500ms;
constexpr Micros kDeadFor = 10s;
constexpr std::array<std::uint8_t, 5> kJunk = {0x00, 0x13, 0x55, 0xFF, 0xFA};
constexpr std::array<std::uint8_t, 2> kNoise = {0x55, 0xFF};
constexpr std::uint32_t kIntervalAddress = LoggerMemory::kFirstArea + 32;
constexpr CivilSeconds kPulseHistory{172800};  // two days

}  // namespace

const std::array<SimulatedLogger::Command, 13> SimulatedLogger::kCommands = {{
    {{0x00}, 1, 1, 1, &SimulatedLogger::GetClock},
    {{0x01}, 1, 8, 8, &SimulatedLogger::SetClock},
    {{0x04, 0xA4, 0x4A}, 3, 3, 3, &SimulatedLogger::ClearHistory},
    {{0x06, 0xA6, 0x6A, 0x00, 0x00, 0x00, 0x02}, 7, 7, 7, &SimulatedLogger::InitializeFlash},
    {{0x07, 0xA7, 0x7A}, 3, 8, kLongestPayload, &SimulatedLogger::WriteMemory},
    {{0x08}, 1, 5, 5, &SimulatedLogger::ReadMemory},
    {{0x09, 0x01}, 2, 2, 2, &SimulatedLogger::StartMeasurement},
    {{0x0A}, 1, 1, 1, &SimulatedLogger::GetSample},
    {{0x0B, 0xAB, 0xBA}, 3, 3, 3, &SimulatedLogger::Commit},
    {{0x0C}, 1, 1, 1, &SimulatedLogger::GetStatus},
    {{0x0D}, 1, 2, 2, &SimulatedLogger::GetBlock},
    {{0x0E, 0x03}, 2, 2, 2, &SimulatedLogger::ResetPulses},
    {{0x0F}, 1, 1, 1, &SimulatedLogger::GetVersion},
}};

SimulatedLogger::SimulatedLogger(const LoggerOptions& options)
    : options_(options),
      pond_(options.Seed),
      records_(options_, pond_),
      faults_(options.Seed),
      wire_(options.BaudRate),
      clockBase_(options.ClockAtStart),
      twelveHour_(options.TwelveHourClock),
      pulsesSince_(options.ClockAtStart - kPulseHistory),
      stuckAddress_(kIntervalAddress) {
  if (options_.BlankFlash) return;
  constexpr std::array<std::uint8_t, 8> kIdentifier = {'T', 'M', '2', ' ', '2', '1', '9', ' '};
  memory_.Write(LoggerMemory::kIdentifierAddress, kIdentifier);
  memory_.StoreConfiguration(ConfigurationImage(options_));
}

void SimulatedLogger::Receive(std::span<const std::uint8_t> bytes, Micros now) {
  for (const std::uint8_t byte : bytes) {
    const Micros arrival = wire_.Arrival(now);
    if (arrival < deafUntil_) continue;
    switch (receiver_.Take(byte, arrival)) {
      case FrameReceiver::Event::Nothing:
        break;
      case FrameReceiver::Event::BareByte:
        OnLetter(byte, arrival);
        break;
      case FrameReceiver::Event::Frame:
        OnRequest(receiver_.Payload(), arrival);
        break;
    }
  }
}

void SimulatedLogger::OnLetter(std::uint8_t letter, Micros now) {
  Bytes answer;
  if (letter == 'U') answer = {'T'};
  if (letter == 'T') answer = {'M'};
  if (letter == 'M') answer = {kCarriedOut};
  if (options_.PastHandshake || answer.empty()) return;

  for (const FailureMode mode :
       {FailureMode::RequestLost, FailureMode::Silent, FailureMode::RandomLoss})
    if (faults_.Strikes(mode, std::nullopt)) return;
  if (faults_.Strikes(FailureMode::LateAnswer, std::nullopt)) now += kLateBy;
  if (faults_.Strikes(FailureMode::AnswerTwice, std::nullopt)) answer.push_back(answer.front());
  wire_.Send(answer, now);
}

void SimulatedLogger::OnRequest(Request request, Micros now) {
  const std::uint8_t opcode = request.front();
  if (faults_.Strikes(FailureMode::RequestLost, opcode)) return;
  ++requests_[opcode];
  ReleaseHeld(now);
  if (options_.LiveRecords) records_.AdvanceTo(World(now));

  const auto command =
      std::ranges::find(kCommands, opcode, [](const Command& c) { return c.Start[0]; });
  if (command == kCommands.end()) return;
  if (request.size() < command->Least || request.size() > command->Most) return;
  if (!std::ranges::equal(request.first(command->StartLength),
                          std::span(command->Start).first(command->StartLength)))
    return;
  const int times = faults_.Strikes(FailureMode::RequestTwice, opcode) ? 2 : 1;
  for (int time = 0; time < times; ++time) {
    if (const std::optional<Answer> answer = (this->*command->Execute)(request, now))
      Reply(*answer, opcode, now);
  }
}

void SimulatedLogger::Reply(const Answer& answer, std::uint8_t opcode, Micros now) {
  if (faults_.Strikes(FailureMode::Silent, opcode)) return;
  if (faults_.Strikes(FailureMode::HangUp, opcode)) {
    deafUntil_ = std::max(deafUntil_, now + kDeadFor);
    return;
  }
  Bytes acknowledge = AcknowledgeBytes(opcode);
  Bytes rest = RestBytes(answer, opcode);

  if (faults_.Strikes(FailureMode::NoiseAhead, opcode))
    acknowledge.insert(acknowledge.begin(), kNoise.begin(), kNoise.end());
  if (faults_.Strikes(FailureMode::NoiseBehind, opcode))
    rest.insert(rest.end(), kNoise.begin(), kNoise.end());
  if (faults_.Strikes(FailureMode::AcknowledgeBehind, opcode)) std::swap(acknowledge, rest);
  if (faults_.Strikes(FailureMode::HeldAnswer, opcode)) {
    Hold(acknowledge, rest);
    return;
  }
  if (faults_.Strikes(FailureMode::LateAnswer, opcode)) now += kLateBy;
  const int times = faults_.Strikes(FailureMode::AnswerTwice, opcode) ? 2 : 1;
  const Micros restLate = faults_.Strikes(FailureMode::ReplyLate, opcode) ? kLateBy : 0ms;
  for (int time = 0; time < times; ++time) {
    wire_.Send(acknowledge, now);
    wire_.Send(rest, now + answer.WorkTime + restLate);
  }
  if (!faults_.Strikes(FailureMode::LateCopy, opcode)) return;
  wire_.Send(acknowledge, now + kLateBy);
  wire_.Send(rest, now + kLateBy + answer.WorkTime);
}

Bytes SimulatedLogger::AcknowledgeBytes(std::uint8_t opcode) {
  Bytes acknowledge = {kReceived};
  if (faults_.Strikes(FailureMode::WrongAcknowledge, opcode)) acknowledge = {kWrongAcknowledge};
  if (faults_.Strikes(FailureMode::AcknowledgeLost, opcode)) acknowledge.clear();
  if (faults_.Strikes(FailureMode::RandomLoss, opcode)) acknowledge.clear();
  if (faults_.Strikes(FailureMode::AcknowledgeTwice, opcode)) acknowledge.push_back(kReceived);
  return acknowledge;
}

/// What follows the acknowledge.
Bytes SimulatedLogger::RestBytes(const Answer& answer, std::uint8_t opcode) {
  Bytes rest = answer.Status;
  if (answer.Reply) {
    const Bytes reply = ReplyBytes(*answer.Reply, opcode);
    rest.insert(rest.end(), reply.begin(), reply.end());
  }
  if (!rest.empty() && faults_.Strikes(FailureMode::RandomLoss, opcode)) rest.clear();
  if (!rest.empty() && faults_.Strikes(FailureMode::ReplyLost, opcode)) rest.clear();
  return rest;
}

void SimulatedLogger::Hold(const Bytes& acknowledge, const Bytes& rest) {
  held_.insert(held_.end(), acknowledge.begin(), acknowledge.end());
  held_.insert(held_.end(), rest.begin(), rest.end());
}

void SimulatedLogger::ReleaseHeld(Micros now) {
  wire_.Send(std::exchange(held_, {}), now);
}

Bytes SimulatedLogger::ReplyBytes(const Bytes& payload, std::uint8_t opcode) {
  FrameDamage damage;
  damage.CorruptCheck = faults_.Strikes(FailureMode::CorruptCheck, opcode);
  damage.WrongLength = faults_.Strikes(FailureMode::WrongLength, opcode);
  damage.BadEscape = faults_.Strikes(FailureMode::BadEscape, opcode);
  Bytes frame = EncodeFrame(payload, damage);
  DamageFrame(frame, opcode);
  if (faults_.Strikes(FailureMode::StopsMidFrame, opcode)) frame.resize(frame.size() / 2);
  if (faults_.Strikes(FailureMode::JunkAhead, opcode))
    frame.insert(frame.begin(), kJunk.begin(), kJunk.end());
  return frame;
}

/// What a bad line makes of a frame, at any place of it.
void SimulatedLogger::DamageFrame(Bytes& frame, std::uint8_t opcode) {
  const auto any = [&] {
    return frame.begin() + static_cast<std::ptrdiff_t>(faults_.Any(frame.size()));
  };
  if (faults_.Strikes(FailureMode::FlippedBits, opcode)) {
    constexpr std::size_t kPatterns = 255;
    const auto place = any();
    *place = static_cast<std::uint8_t>(*place ^ (faults_.Any(kPatterns) + 1));
  }
  if (faults_.Strikes(FailureMode::MissingByte, opcode)) frame.erase(any());
  if (faults_.Strikes(FailureMode::DoubledByte, opcode)) {
    const auto place = any();
    frame.insert(place, *place);
  }
}

}  // namespace tessmar::sim
