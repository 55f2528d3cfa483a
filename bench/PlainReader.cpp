#include "bench/PlainReader.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <QFile>
#include <array>
#include <stdexcept>

#include "link/Comm.h"
#include "link/cmd.h"

namespace tessmar::bench {
namespace {

constexpr int kPatienceMs = 10000;
constexpr int kReadSize = 4096;

}  // namespace

PlainReader::PlainReader(const QString& device)
    : descriptor_(open(QFile::encodeName(device).constData(), O_RDWR | O_NOCTTY)) {
  if (descriptor_ < 0) throw std::runtime_error("the plain reader cannot open the device");
  termios raw{};
  tcgetattr(descriptor_, &raw);
  cfmakeraw(&raw);
  tcsetattr(descriptor_, TCSANOW, &raw);
  tcflush(descriptor_, TCIFLUSH);
}

PlainReader::~PlainReader() {
  close(descriptor_);
}

int PlainReader::ReadAllBlocks(int full) {
  int blocks = 0;
  int records = 0;
  do {
    records = ReadBlock(blocks == 0);
    ++blocks;
  } while (records >= full);
  return blocks;
}

// Gives the number of records in the block.
int PlainReader::ReadBlock(bool first) {
  const std::array<std::uint8_t, 2> payload{
      static_cast<std::uint8_t>(Opcode::GetHistoryBlock),
      static_cast<std::uint8_t>(first ? HistoryBlock::First : HistoryBlock::Next)};
  const std::uint16_t check = Crc16(payload, 0, 1);
  // Neither check value has a byte that would have to be escaped.
  const std::array<std::uint8_t, 7> request{kStartOfFrame,
                                            payload.size() + 2,
                                            payload[0],
                                            payload[1],
                                            static_cast<std::uint8_t>(check & 0xFF),
                                            static_cast<std::uint8_t>(check >> 8),
                                            kEndOfFrame};
  if (write(descriptor_, request.data(), request.size()) != static_cast<ssize_t>(request.size()))
    throw std::runtime_error("the plain reader cannot write");
  bytes_ += static_cast<qint64>(request.size());

  if (NextByte() != kAcknowledge || NextByte() != kStartOfFrame)
    throw std::runtime_error("the plain reader was not understood");
  const int length = NextByte();
  const int records = NextUnescapedByte();
  for (int i = 1; i < length; ++i) NextUnescapedByte();
  if (NextByte() != kEndOfFrame) throw std::runtime_error("the plain reader got a torn frame");
  return records;
}

std::uint8_t PlainReader::NextByte() {
  if (taken_ == input_.size()) {
    pollfd wait{descriptor_, POLLIN, 0};
    if (poll(&wait, 1, kPatienceMs) != 1) throw std::runtime_error("the logger is silent");
    input_.resize(kReadSize);
    const ssize_t count = read(descriptor_, input_.data(), input_.size());
    if (count <= 0) throw std::runtime_error("the plain reader cannot read");
    input_.resize(static_cast<std::size_t>(count));
    taken_ = 0;
  }
  ++bytes_;
  return input_[taken_++];
}

std::uint8_t PlainReader::NextUnescapedByte() {
  const std::uint8_t byte = NextByte();
  return byte == kEscape ? static_cast<std::uint8_t>(NextByte() + kStartOfFrame) : byte;
}

}  // namespace tessmar::bench
