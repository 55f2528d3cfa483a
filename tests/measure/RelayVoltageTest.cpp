#include "measure/RelayVoltage.h"

#include <gtest/gtest.h>

#include "base/Fault.h"

namespace tessmar {
namespace {

using States = std::array<RelayState, kRelayCount>;

constexpr RelayState kOff = RelayState::Off;
constexpr RelayState kOn = RelayState::On;
constexpr RelayState kPulse = RelayState::Pulse;
constexpr States kAllUnknown{};

TEST(DecodeRelays, OneStepIsRelay0On) {
  EXPECT_EQ(DecodeRelays(0.075F), (States{kOn, kOff, kOff, kOff}));
}

TEST(DecodeRelays, TheFirstStepIsAllOff) {
  EXPECT_EQ(DecodeRelays(0.050F), (States{kOff, kOff, kOff, kOff}));
  EXPECT_EQ(DecodeRelays(0.074F), (States{kOff, kOff, kOff, kOff}));
}

TEST(DecodeRelays, TheHighestVoltageIsLimitedToAllPulse) {
  EXPECT_EQ(DecodeRelays(4.095F), (States{kPulse, kPulse, kPulse, kPulse}));
  EXPECT_EQ(DecodeRelays(4.050F), (States{kPulse, kPulse, kPulse, kPulse}));
}

TEST(DecodeRelays, CountsInBase3WithRelay0Lowest) {
  // 0.05 V and 1 + 2 * 3 + 0 * 9 + 1 * 27 = 34 steps.
  EXPECT_EQ(DecodeRelays(1.750F), (States{kOn, kPulse, kOff, kOn}));
}

TEST(DecodeRelays, KnowsNothingOutsideItsLimits) {
  EXPECT_EQ(DecodeRelays(0.025F), (States{kOff, kOff, kOff, kOff}));
  EXPECT_EQ(DecodeRelays(0.0249F), kAllUnknown);
  EXPECT_EQ(DecodeRelays(0), kAllUnknown);
  EXPECT_EQ(DecodeRelays(-1), kAllUnknown);
  EXPECT_EQ(DecodeRelays(4.096F), kAllUnknown);
  EXPECT_EQ(DecodeRelays(1e30F), kAllUnknown);
}

TEST(RelayCellText, NamesTheStateOfOneRelay) {
  EXPECT_EQ(RelayCellText(1.750, 0), "On");
  EXPECT_EQ(RelayCellText(1.750, 1), "Pulse");
  EXPECT_EQ(RelayCellText(1.750, 2), "Off");
  EXPECT_EQ(RelayCellText(1.750, 3), "On");
  EXPECT_EQ(RelayCellText(0.025, 0), "Off");
  EXPECT_EQ(RelayCellText(4.095, 3), "Pulse");
}

TEST(RelayCellText, IsDashesOutsideTheLimits) {
  EXPECT_EQ(RelayCellText(0.0249, 0), "---");
  EXPECT_EQ(RelayCellText(4.096, 3), "---");
}

TEST(RelayCellText, ThrowsForARelayAbove3) {
  EXPECT_THROW(RelayCellText(1, 4), RangeFault);
  EXPECT_THROW(RelayCellText(0, 4), RangeFault);
  EXPECT_THROW(RelayCellText(1, -1), RangeFault);
}

}  // namespace
}  // namespace tessmar
