#include "sim/FrameCodec.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>

#include "HexBytes.h"

namespace tessmar::test {
namespace {

using sim::Bytes;
using sim::EncodeFrame;
using sim::FrameReceiver;

/// The payloads of the frames in a stream, each in hexadecimal text; bare bytes stand in brackets.
std::vector<std::string> Take(std::string_view stream) {
  FrameReceiver receiver;
  std::vector<std::string> taken;
  for (const std::uint8_t byte : Hex(stream)) {
    switch (receiver.Take(byte, std::chrono::seconds(1))) {
      case FrameReceiver::Event::Nothing:
        break;
      case FrameReceiver::Event::BareByte:
        taken.push_back("[" + Text({byte}) + "]");
        break;
      case FrameReceiver::Event::Frame:
        taken.push_back(Text(Bytes(receiver.Payload().begin(), receiver.Payload().end())));
        break;
    }
  }
  return taken;
}

using Taken = std::vector<std::string>;

TEST(CheckValue, OfTheNineDigitsIsTheWellKnownOne) {
  EXPECT_EQ(sim::CheckValue(Hex("31 32 33 34 35 36 37 38 39")), 0xBB3D);
}

TEST(CheckValue, OfNothingIsZero) {
  EXPECT_EQ(sim::CheckValue({}), 0);
}

TEST(EncodeFrame, EscapesOnlyTheSevenSpecialBytes) {
  EXPECT_EQ(Text(EncodeFrame(Hex("FF"))), "F8 03 FF 40 40 F9");
  EXPECT_EQ(Text(EncodeFrame(Hex("F8"))), "F8 03 FE 00 01 82 F9");
  EXPECT_EQ(Text(EncodeFrame(Hex("FE"))), "F8 03 FE 06 81 80 F9");
  EXPECT_EQ(Text(EncodeFrame(Hex("FD F7"))), "F8 04 FE 05 F7 01 16 F9");
}

TEST(EncodeFrame, EscapesCheckBytes) {
  EXPECT_EQ(Text(EncodeFrame(Hex("55 01"))), "F8 04 55 01 FE 06 90 F9");
}

TEST(EncodeFrame, LeavesALengthInTheEscapeRangeAlone) {
  const Bytes frame = EncodeFrame(Bytes(0xF8 - 2, 0));
  EXPECT_EQ(frame[1], 0xF8);
  EXPECT_EQ(frame.size(), 0xF8U + 3);
}

TEST(FrameReceiver, TakesFramesAndBareBytesApart) {
  EXPECT_EQ(Take("55 F8 03 0F 40 04 F9 54 F8 04 0D 01 C5 50 F9"),
            (Taken{"[55]", "0F", "[54]", "0D 01"}));
}

TEST(FrameReceiver, UndoesEscapesInPayloadAndCheck) {
  EXPECT_EQ(Take("F8 03 FE 06 81 80 F9"), Taken{"FE"});
  EXPECT_EQ(Take("F8 04 55 01 FE 06 90 F9"), Taken{"55 01"});
}

TEST(FrameReceiver, DropsAWrongCheck) {
  EXPECT_EQ(Take("F8 03 0F 41 04 F9"), Taken{});
}

TEST(FrameReceiver, DropsAWrongEnd) {
  EXPECT_EQ(Take("F8 03 0F 40 04 00"), Taken{});
}

TEST(FrameReceiver, DropsAnEscapeThatStandsForNothing) {
  EXPECT_EQ(Take("F8 03 FE 07 40 F8 03 0F 40 04 F9"), (Taken{"[40]", "0F"}));
}

TEST(FrameReceiver, DropsALengthWithoutRoomForAPayload) {
  EXPECT_EQ(Take("F8 02 F8 03 0F 40 04 F9"), Taken{"0F"});
}

TEST(FrameReceiver, DropsAFrameWithABareSpecialByteInside) {
  EXPECT_EQ(Take("F8 05 0B AB F9 F8 03 0F 40 04 F9"), Taken{"0F"});
}

TEST(FrameReceiver, StartsAnewAtABareStartInsideATornFrame) {
  EXPECT_EQ(Take("F8 05 0B F8 03 0F 40 04 F9"), Taken{"0F"});
  EXPECT_EQ(Take("F8 03 0F 40 04 F8 03 0F 40 04 F9"), Taken{"0F"});
}

TEST(FrameReceiver, ForgetsATornFrameAfterHalfASecond) {
  using namespace std::chrono_literals;
  FrameReceiver receiver;
  for (const std::uint8_t byte : Hex("F8 08 0B AB")) receiver.Take(byte, 1s);
  EXPECT_EQ(receiver.Take(0x55, 1400ms), FrameReceiver::Event::Nothing);
  EXPECT_EQ(receiver.Take(0x55, 1901ms), FrameReceiver::Event::BareByte);
}

}  // namespace
}  // namespace tessmar::test
