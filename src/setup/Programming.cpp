#include "setup/Programming.h"

#include <array>
#include <utility>

#include "base/Fault.h"

namespace tessmar {
namespace {

/// A piece of the image and where it lies in the logger's memory.
struct MemoryBlock {
  int ImageOffset;
  int Size;
  std::uint32_t Address;
};

/// No write carries more than 128 bytes.
constexpr std::array<MemoryBlock, 4> kWriteBlocks{{
    {0, 128, 8},
    {128, 114, 136},
    {242, 48, 256},
    {290, 25, 768},
}};
constexpr std::array<MemoryBlock, 3> kReadBlocks{{
    {0, 242, 8},
    {242, 48, 256},
    {290, 25, 768},
}};

constexpr std::uint32_t kIdentifierAddress = 0;
constexpr int kIdentifierLength = 8;

bool ReadBlock(LoggerCommands& commands, ConfigImage& image, const MemoryBlock& block) {
  return commands.ReadMemoryBlock(image, block.ImageOffset, block.Size, block.Address);
}

bool WriteBlock(LoggerCommands& commands, const ConfigImage& image, const MemoryBlock& block) {
  std::uint32_t address = block.Address;
  return commands.WriteMemoryBlock(image, block.ImageOffset, block.Size, address);
}

}  // namespace

Programming::Programming(LoggerCommands& commands, LinkState& link, LoggerSettings& settings,
                         LiveDisplay& display)
    : commands_(commands), link_(link), settings_(settings), display_(display) {}

void Programming::BeginSession() {
  hasReadAll_ = false;
  asRead_ = {};
  asRead_.Analog = link_.AnalogChannelCount;
  asRead_.Pulse = link_.PulseChannelCount;
}

bool Programming::ProgramConfiguration() {
  const ProgrammingScope whole(*this);
  return Trapped(link_, [this] {
    ConfigImage written;
    // The result does not count: a record that does not fit goes out with zeros behind its field.
    PackConfigImage(link_, settings_, written);
    return ProgramImage(written);
  });
}

bool Programming::ProgramImage(const ConfigImage& image) {
  return Trapped(link_, [&] {
    asRead_.Settings.reset();
    for (const MemoryBlock& block : kWriteBlocks) {
      if (!WriteBlock(commands_, image, block)) return false;
    }
    if (ReadImage() != image) return false;
    asRead_.Name = OwnSettings(image).LoggerName;
    return true;
  });
}

std::optional<ConfigImage> Programming::ReadImage() {
  ConfigImage image;
  for (const MemoryBlock& block : kReadBlocks) {
    if (!ReadBlock(commands_, image, block)) return std::nullopt;
  }
  return image;
}

void Programming::RefreshFromLogger() {
  ConfigImage image;
  hasReadAll_ = false;
  asRead_.Settings.reset();
  if (ReadBlock(commands_, image, kReadBlocks[0]) && ReadBlock(commands_, image, kReadBlocks[1])) {
    if (ReadBlock(commands_, image, kReadBlocks[2])) {
      hasReadAll_ = true;
      UnpackConfigImage(link_, image, settings_);
      display_.RefreshMainScreen();
    }
    // Also after a failed third read, which leaves zeros in the image: the first two blocks count.
    UnpackConfigImage(link_, image, settings_);
    TakeAsRead(image);
    display_.RefreshMainScreen();
  }
  commands_.GetLoggerStatus();
  display_.UpdateSampleDisplay();
  link_.LoggerTimeText = commands_.GetLoggerTime();
}

// The name is in the first block.
void Programming::TakeAsRead(const ConfigImage& image) {
  LoggerSettings read = OwnSettings(image);
  asRead_.Name = read.LoggerName;
  if (hasReadAll_) asRead_.Settings = std::move(read);
}

// An image file may have left other channels in LinkState.
LoggerSettings Programming::OwnSettings(const ConfigImage& image) const {
  LoggerSettings read;
  UnpackConfigImage(WithOwnChannels(link_, asRead_), image, read);
  return read;
}

QString Programming::ReadIdentifier() {
  constexpr std::uint8_t kFirstCharacter = 32;
  constexpr std::uint8_t kBehindAscii = 128;
  std::vector<std::uint8_t> bytes;
  if (!commands_.ReadMemoryBlock(bytes, 0, kIdentifierLength, kIdentifierAddress)) return {};
  QString text;
  for (const std::uint8_t byte : bytes) {
    const bool isCharacter = byte >= kFirstCharacter && byte < kBehindAscii;
    text.append(isCharacter ? QChar(byte) : QChar(u' '));
  }
  return text;
}

bool Programming::WriteIdentifier(const QString& text) {
  std::vector<std::uint8_t> bytes(kIdentifierLength);
  PutFixedText(text, bytes, 0, kIdentifierLength);
  std::uint32_t address = kIdentifierAddress;
  return commands_.WriteMemoryBlock(bytes, 0, kIdentifierLength, address);
}

}  // namespace tessmar
