#include "sim/FlashImage.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <algorithm>
#include <fstream>
#include <iterator>

#include "HexBytes.h"

namespace tessmar::test {
namespace {

using sim::Bytes;
using sim::SimulatedLogger;

std::string Part(const Bytes& image, std::size_t offset, std::size_t count) {
  const auto begin = image.begin() + static_cast<std::ptrdiff_t>(offset);
  return Text(Bytes(begin, begin + static_cast<std::ptrdiff_t>(count)));
}

bool IsErased(const Bytes& image, std::size_t from, std::size_t to) {
  return std::all_of(image.begin() + static_cast<std::ptrdiff_t>(from),
                     image.begin() + static_cast<std::ptrdiff_t>(to),
                     [](std::uint8_t byte) { return byte == 0xFF; });
}

TEST(FlashImage, HasIdentifierAndConfigurationInTheFirstTwoPages) {
  SimulatedLogger logger({.Records = 0});
  const Bytes image = sim::FlashImage(logger);
  ASSERT_EQ(image.size(), 4096U * 264);
  EXPECT_EQ(Part(image, 0, 8), "54 4D 32 20 32 31 39 20");
  EXPECT_EQ(Part(image, 8, 11), "4D 69 6C 6C 20 50 6F 6E 64 20 33");
  // Image offsets 239 to 241 end the first stretch, 242 to 244 begin the second.
  EXPECT_EQ(Part(image, 8 + 239, 3), "80 A9 43");
  EXPECT_TRUE(IsErased(image, 250, 264));
  EXPECT_EQ(Part(image, 264, 3), "00 00 00");
  EXPECT_EQ(Part(image, 264 + 45, 3), "F0 49 42");
  EXPECT_TRUE(IsErased(image, 264 + 48, image.size()));
}

TEST(FlashImage, HasRecordsInPagesOf240Bytes) {
  SimulatedLogger logger({.Records = 11});
  const Bytes image = sim::FlashImage(logger);
  // 12:00 on 15 June 2026, and ten quarters of an hour later.
  EXPECT_EQ(Part(image, 2112, 4), "00 C0 5E 4F");
  EXPECT_TRUE(IsErased(image, 2112 + 240, 2112 + 264));
  EXPECT_EQ(Part(image, 2112 + 264, 4), "80 E7 5E 4F");
  EXPECT_TRUE(IsErased(image, 2112 + 264 + 24, image.size()));
}

TEST(FlashImage, FullMemoryEndsWithTheLatestRecord) {
  SimulatedLogger logger({.Records = 50'000});
  const Bytes image = sim::FlashImage(logger);
  ASSERT_EQ(image.size(), 4096U * 264);
  EXPECT_EQ(Part(image, 4095 * 264 + 9 * 24, 4), "80 E7 5E 4F");
}

TEST(FlashImage, OfABlankLoggerIsErased) {
  SimulatedLogger logger({.BlankFlash = true});
  const Bytes image = sim::FlashImage(logger);
  EXPECT_TRUE(IsErased(image, 0, image.size()));
}

TEST(WriteFile, WritesBytesAndNamesTheCauseOfAFailure) {
  const QTemporaryDir folder;
  const std::string path = folder.filePath("image.bin").toStdString();
  EXPECT_EQ(sim::WriteFile(path, Hex("00 FF 0A")), "");
  std::ifstream file(path, std::ios::binary);
  const std::string content{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(content, std::string("\x00\xFF\x0A", 3));
  const std::string nowhere = folder.filePath("missing/image.bin").toStdString();
  EXPECT_EQ(sim::WriteFile(nowhere, {}), nowhere + ": No such file or directory");
}

}  // namespace
}  // namespace tessmar::test
