#include "history/HistoryBuffer.h"

#include <gtest/gtest.h>

#include "base/Fault.h"

namespace tessmar {
namespace {

LiveSample Numbered(std::uint32_t number) {
  LiveSample record;
  record.PackedTime = number;
  record.HasTime = true;
  return record;
}

TEST(HistoryBuffer, StartsEmpty) {
  const HistoryBuffer buffer;
  EXPECT_EQ(buffer.Count(), 0);
  EXPECT_FALSE(buffer.IsFull());
  EXPECT_THROW(buffer.Record(0), RangeFault);
}

TEST(HistoryBuffer, KeepsTheOrderOfArrival) {
  HistoryBuffer buffer;
  buffer.Append(Numbered(7));
  buffer.Append(Numbered(3));
  ASSERT_EQ(buffer.Count(), 2);
  EXPECT_EQ(buffer.Record(0).PackedTime, 7U);
  EXPECT_EQ(buffer.Record(1).PackedTime, 3U);
  EXPECT_THROW(buffer.Record(2), RangeFault);
  EXPECT_THROW(buffer.Record(-1), RangeFault);
}

TEST(HistoryBuffer, HoldsTwoHundredThousandRecordsAndNoMore) {
  HistoryBuffer buffer;
  for (std::uint32_t i = 0; i < 200000; ++i) {
    ASSERT_FALSE(buffer.IsFull());
    buffer.Append(Numbered(i));
  }
  EXPECT_TRUE(buffer.IsFull());
  EXPECT_THROW(buffer.Append(Numbered(0)), RangeFault);
  EXPECT_EQ(buffer.Count(), 200000);
  EXPECT_EQ(buffer.Record(199999).PackedTime, 199999U);
}

TEST(HistoryBuffer, NeverMovesItsRecords) {
  HistoryBuffer buffer;
  buffer.Append(Numbered(1));
  const LiveSample* const first = &buffer.Record(0);
  for (int i = 0; i < 100000; ++i) buffer.Append(Numbered(2));
  EXPECT_EQ(&buffer.Record(0), first);
  buffer.Clear();
  buffer.Append(Numbered(3));
  EXPECT_EQ(&buffer.Record(0), first);
}

TEST(HistoryBuffer, IsEmptyAgainAfterClear) {
  HistoryBuffer buffer;
  buffer.Append(Numbered(1));
  buffer.Clear();
  EXPECT_EQ(buffer.Count(), 0);
  EXPECT_THROW(buffer.Record(0), RangeFault);
}

}  // namespace
}  // namespace tessmar
