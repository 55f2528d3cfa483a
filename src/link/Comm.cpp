#include "link/Comm.h"

#include <algorithm>
#include <array>
#include <limits>

#include "base/Fault.h"

namespace tessmar {
namespace {

constexpr std::uint16_t kCrcPolynomial = 0xA001;

/// What the check value becomes by eight steps, for each low byte.
constexpr std::array<std::uint16_t, 256> kCrcSteps = [] {
  std::array<std::uint16_t, 256> steps{};
  for (std::size_t byte = 0; byte < steps.size(); ++byte) {
    auto check = static_cast<std::uint16_t>(byte);
    for (int bit = 0; bit < 8; ++bit) {
      const bool carry = (check & 1) != 0;
      check = static_cast<std::uint16_t>(check >> 1);
      if (carry) check ^= kCrcPolynomial;
    }
    steps[byte] = check;
  }
  return steps;
}();

/// Payload bytes and the two check bytes; what L counts must fit one byte.
constexpr std::size_t kMostPayload = 253;

/// Start byte, L, payload and check value all escaped, end byte.
constexpr std::size_t kSendBufferSize = 2 + 2 * (kMostPayload + 2) + 1;

constexpr int kLongestWait = std::numeric_limits<std::int16_t>::max();

/// The highest byte that may follow an escape.
constexpr std::uint8_t kLastEscaped = kEscape - kStartOfFrame;

constexpr bool NeedsEscape(std::uint8_t byte) {
  return byte >= kStartOfFrame && byte <= kEscape;
}

void AppendEscaped(std::vector<std::uint8_t>& frame, std::uint8_t byte) {
  if (NeedsEscape(byte)) {
    frame.push_back(kEscape);
    frame.push_back(static_cast<std::uint8_t>(byte - kStartOfFrame));
  } else {
    frame.push_back(byte);
  }
}

std::vector<std::uint8_t> BuildFrame(std::span<const std::uint8_t> payload) {
  if (payload.empty() || payload.size() > kMostPayload) {
    throw RangeFault("a frame carries 1 to 253 bytes");
  }
  const std::uint16_t check = Crc16(payload, 0, static_cast<int>(payload.size()) - 1);
  std::vector<std::uint8_t> frame;
  frame.reserve(kSendBufferSize);
  frame.push_back(kStartOfFrame);
  frame.push_back(static_cast<std::uint8_t>(payload.size() + 2));
  for (const std::uint8_t byte : payload) AppendEscaped(frame, byte);
  AppendEscaped(frame, static_cast<std::uint8_t>(check & 0xFF));
  AppendEscaped(frame, static_cast<std::uint8_t>(check >> 8));
  frame.push_back(kEndOfFrame);
  return frame;
}

}  // namespace

std::uint16_t Crc16(std::span<const std::uint8_t> buffer, int first, int last) {
  std::uint16_t check = 0;
  for (int i = first; i <= last; ++i) {
    const auto low = static_cast<std::uint8_t>(check ^ buffer[static_cast<std::size_t>(i)]);
    check = static_cast<std::uint16_t>(check >> 8 ^ kCrcSteps[low]);
  }
  return check;
}

Comm::Comm(SerialPort& port, MessageLoop& loop, LinkState& link)
    : port_(port), loop_(loop), link_(link) {}

bool Comm::OpenPort(std::int16_t number, const QString& settings) {
  return Trapped(link_, [&] {
    if (port_.IsOpen()) {
      if (port_.Settings() == settings && port_.Number() == number) {
        port_.DiscardInput();
        return true;
      }
      ClosePort();
    }
    port_.Open(number, settings);
    port_.SetDtr(true);
    port_.SetRts(true);
    const bool open = port_.IsOpen();
    port_.DiscardInput();
    return open;
  });
}

void Comm::ClosePort() {
  if (!port_.IsOpen()) return;
  try {
    port_.SetDtr(false);
  } catch (const Fault&) {
    // A device that is gone has no line to switch; it is closed all the same.
  }
  try {
    port_.Close();
  } catch (const Fault&) {
    return;
  }
}

void Comm::WaitForBytes(std::int16_t ticks, int count) {
  const auto isOver = [&] {
    return (count != 0 && port_.InputCount() >= count) || !port_.IsOpen() || loop_.Ending() ||
           !IsWanted();
  };
  link_.WaitTicks = ticks;
  if (isOver()) {
    loop_.RunPendingIfDue();
    return;
  }
  do {
    loop_.RunOnce();
  } while (link_.WaitTicks >= 1 && !isOver());
}

int Comm::ReadByte(std::int16_t ticks) {
  return Trapped(
      link_,
      [&] {
        if (port_.InputCount() == 0) WaitForBytes(ticks, 1);
        if (port_.InputCount() == 0) {
          RequireOpen();
          return -1;
        }
        return static_cast<int>(port_.ReadByte());
      },
      -1);
}

bool Comm::SendFrame(std::span<const std::uint8_t> payload, int& retries) {
  return Trapped(link_, [&] {
    const std::vector<std::uint8_t> frame = BuildFrame(payload);
    while (true) {
      if (SendFrameOnce(frame)) return true;
      if (retries == 0 || loop_.Ending() || !IsWanted()) return false;
      --retries;
    }
  });
}

bool Comm::SendFrameOnce(std::span<const std::uint8_t> frame) {
  // A device that is still talking gets time to finish.
  if (port_.InputCount() > 0) {
    port_.DiscardInput();
    WaitForBytes(2, 0);
  }
  if (port_.InputCount() > 0) {
    port_.ReadAll();
    port_.DiscardInput();
    WaitForBytes(4, 0);
  }
  if (!IsWanted()) return false;
  port_.DiscardInput();
  port_.Write(frame);
  WaitForBytes(link_.LinkTimeoutTicks, 1);
  RequireOpen();
  return port_.InputCount() > 0 && port_.ReadByte() == kAcknowledge;
}

bool Comm::ReceiveFrame(std::span<std::uint8_t> payload) {
  const bool received = Trapped(link_, [&] { return ReceiveFrameBody(payload); });
  if (received) return true;
  WaitForBytes(2, 0);
  if (port_.IsOpen()) port_.DiscardInput();
  return false;
}

/// The bytes of a frame behind its start byte. They are taken from the port in pieces, of which
/// none reaches beyond the frame: whatever follows it stays in the queue.
class Comm::FrameReader {
 public:
  explicit FrameReader(Comm& comm) : comm_(comm) {}

  /// Nothing when none arrives in time.
  /// @param certain  bytes that the frame still has at least, this one too.
  std::optional<std::uint8_t> Next(std::size_t certain) {
    if (taken_ == held_ && !Take(certain)) return std::nullopt;
    return piece_[taken_++];
  }

  /// The next bytes, without their escapes.
  /// @param behind  bytes that the frame still has behind these at least.
  /// @return false when one does not arrive in time, or cannot stand behind an escape.
  bool Unescape(std::span<std::uint8_t> bytes, std::size_t behind) {
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      const std::size_t certain = bytes.size() - i + behind;
      if (taken_ == held_ && !Take(certain)) return false;
      std::uint8_t byte = piece_[taken_++];
      if (byte == kEscape) {
        const std::optional<std::uint8_t> escaped = Next(certain);
        if (!escaped || *escaped > kLastEscaped) return false;
        byte = static_cast<std::uint8_t>(*escaped + kStartOfFrame);
      }
      bytes[i] = byte;
    }
    return true;
  }

 private:
  bool Take(std::size_t certain) {
    if (!comm_.WaitForNextByte()) return false;
    taken_ = 0;
    held_ = comm_.port_.Read(std::span(piece_).first(std::min(certain, piece_.size())));
    return held_ > 0;
  }

  Comm& comm_;
  std::array<std::uint8_t, kMostPayload + 3> piece_{};
  std::size_t held_ = 0;
  std::size_t taken_ = 0;
};

bool Comm::WaitForNextByte() {
  if (port_.InputCount() > 0) return true;
  WaitForBytes(link_.LinkTimeoutTicks, 1);
  if (port_.InputCount() > 0) return true;
  RequireOpen();
  return false;
}

bool Comm::ReceiveFrameBody(std::span<std::uint8_t> payload) {
  WaitForBytes(static_cast<std::int16_t>(std::min(link_.LinkTimeoutTicks + 3, kLongestWait)), 4);
  RequireOpen();
  do {
    if (port_.InputCount() == 0) return false;
  } while (port_.ReadByte() != kStartOfFrame);

  FrameReader frame(*this);
  const std::size_t size = payload.size();
  const std::optional<std::uint8_t> length = frame.Next(1);
  if (!length || *length != size + 2) return false;

  std::array<std::uint8_t, 2> checkBytes{};
  const std::size_t behindPayload = checkBytes.size() + 1;
  if (!frame.Unescape(payload, behindPayload) || !frame.Unescape(checkBytes, 1)) return false;
  if (frame.Next(1) != kEndOfFrame) return false;
  const int check = checkBytes[0] | checkBytes[1] << 8;
  return Crc16(payload, 0, static_cast<int>(size) - 1) == check;
}

void Comm::RequireOpen() const {
  if (!port_.IsOpen()) throw PortFault("the port is closed");
}

}  // namespace tessmar
