#include "cli/StopRequest.h"

#include <gtest/gtest.h>

#include "support/FakeOutside.h"

namespace tessmar::test {
namespace {

class StopRequestTest : public testing::Test {
 protected:
  StopRequestTest() {
    Stop.IsUncut = [this] { return Uncut; };
  }
  /// Ticks on for a time.
  void RunFor(int ms) {
    for (int i = 0; i < ms / 100; ++i) {
      Clock.Present = Clock.Present.addMSecs(100);
      Stop.Tick();
    }
  }
  FakeClock Clock;
  int Ended = 0;
  bool Uncut = false;
  StopRequest Stop{Clock, [this] { ++Ended; }};
};

TEST_F(StopRequestTest, TheFirstAsksAndTheSecondEnds) {
  EXPECT_FALSE(Stop.Wanted());
  Stop.Press();
  EXPECT_TRUE(Stop.Wanted());
  RunFor(10'000);
  EXPECT_EQ(Ended, 0);
  Stop.Press();
  EXPECT_EQ(Ended, 1);
}

TEST_F(StopRequestTest, NeitherCutsWhatMayNotBeCut) {
  Uncut = true;
  Stop.Press();
  Stop.Press();
  Stop.Press();
  RunFor(2900);
  EXPECT_TRUE(Stop.Wanted());
  EXPECT_EQ(Ended, 0);
  Uncut = false;
  RunFor(10'000);
  EXPECT_EQ(Ended, 0) << "what was not cut is over, and so is the command";
}

TEST_F(StopRequestTest, ThreeSecondsAreTheEndOfAllPatience) {
  Uncut = true;
  Stop.Press();
  RunFor(1500);
  Stop.Press();
  RunFor(1400);
  EXPECT_EQ(Ended, 0);
  RunFor(100);
  EXPECT_EQ(Ended, 1) << "from the first wish on, not from the last";
}

TEST_F(StopRequestTest, AWishFromBeforeDoesNotBeginTheTime) {
  Stop.Press();
  RunFor(5000);
  Uncut = true;
  RunFor(5000);
  EXPECT_EQ(Ended, 0);
  Stop.Press();
  RunFor(2900);
  EXPECT_EQ(Ended, 0);
  RunFor(100);
  EXPECT_EQ(Ended, 1);
}

}  // namespace
}  // namespace tessmar::test
