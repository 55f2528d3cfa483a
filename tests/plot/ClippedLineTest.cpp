#include "plot/ClippedLine.h"

#include <gtest/gtest.h>

namespace tessmar::test {
namespace {

constexpr QRectF kRoom(10, 20, 100, 50);

TEST(ClippedLine, LeavesWhatLiesInside) {
  EXPECT_EQ(ClippedLine({10, 20, 110, 70}, kRoom), QLineF(10, 20, 110, 70));
  EXPECT_EQ(ClippedLine({50, 30, 50, 30}, kRoom), QLineF(50, 30, 50, 30));
}

TEST(ClippedLine, EndsAtTheEdges) {
  EXPECT_EQ(ClippedLine({0, 30, 200, 30}, kRoom), QLineF(10, 30, 110, 30));
  EXPECT_EQ(ClippedLine({200, 30, 0, 30}, kRoom), QLineF(110, 30, 10, 30));
  EXPECT_EQ(ClippedLine({60, 0, 60, 1000}, kRoom), QLineF(60, 20, 60, 70));
  EXPECT_EQ(ClippedLine({0, 0, 60, 60}, kRoom), QLineF(20, 20, 60, 60));
}

TEST(ClippedLine, IsNothingOutside) {
  EXPECT_FALSE(ClippedLine({0, 10, 200, 10}, kRoom));
  EXPECT_FALSE(ClippedLine({0, 0, 9, 100}, kRoom));
  EXPECT_FALSE(ClippedLine({5, 60, 20, 100}, kRoom));
  EXPECT_FALSE(ClippedLine({0, 0, 0, 0}, kRoom));
}

// Where the line to a neighbour months away crosses the view is where it would without an edge.
TEST(ClippedLine, KeepsTheSlopeOfFarNeighbours) {
  EXPECT_EQ(ClippedLine({60, 45, 1000060, 250045}, kRoom), QLineF(60, 45, 110, 57.5));
}

}  // namespace
}  // namespace tessmar::test
