#include "setup/ControlsDoView.h"

#include <gtest/gtest.h>

#include "base/Fault.h"
#include "setup/SetupLists.h"
#include "support/FakeOutside.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class ControlsDoView : public testing::Test {
 protected:
  ControlsDoView() {
    Link.AnalogChannelCount = 4;
    Controls.Do.cmbPO2SourceChannel = 2;
    Controls.Do.cmbPO2SourceUnits = 1;
    Controls.Do.chkEnableSalinityDisplay = true;
    Controls.Analog[2].cmbEU = u"mbar"_s;
    Controls.Analog[2].chkEnable = true;
  }
  LinkState Link;
  SetupControls Controls;
  DoSetupView View = ViewOfControls(Link, Controls);
};

TEST_F(ControlsDoView, ShowsWhatTheControlsHold) {
  EXPECT_EQ(View.ListIndex(u"cmbPO2SourceChannel"_s), 2);
  EXPECT_EQ(View.Text(u"cmbPO2SourceUnits"_s), u"mbar"_s);
  EXPECT_EQ(View.Text(u"cmbEU(2)"_s), u"mbar"_s);
  EXPECT_TRUE(View.IsChecked(u"chkEnableSalinityDisplay"_s));
  EXPECT_FALSE(View.IsChecked(u"chkConductivityManualEntry"_s));
  EXPECT_TRUE(View.IsChecked(u"chkEnable(2)"_s));
}

TEST_F(ControlsDoView, ShowsNothingBehindTheEndOfAList) {
  Controls.Do.cmbPO2SourceChannel = 4;
  Controls.Do.cmbAirPressureSourceUnits = 8;
  EXPECT_EQ(View.ListIndex(u"cmbPO2SourceChannel"_s), -1);
  EXPECT_EQ(View.Text(u"cmbAirPressureSourceUnits"_s), QString());
}

TEST_F(ControlsDoView, HasNoControlsOfChannelsThatTheLoggerLacks) {
  EXPECT_THROW(View.Text(u"cmbEU(4)"_s), RangeFault);
  EXPECT_THROW(View.IsChecked(u"chkEnable(4)"_s), RangeFault);
  EXPECT_THROW(View.IsChecked(u"chkEnable(-1)"_s), RangeFault);
  EXPECT_THROW(View.ListIndex(u"cmbNoSuch"_s), RangeFault);
}

TEST_F(ControlsDoView, HasEveryControlThatTheCheckReads) {
  Controls.Do.cmbWaterTempSourceChannel = 0;
  Controls.Do.cmbConductivitySourceChannel = 0;
  Controls.Do.cmbAirPressureSourceChannel = 0;
  Controls.Do.cmbSalinityDisplayChannel = 0;
  Controls.Do.cmbO2SaturationDisplayChannel = 0;
  Controls.Do.cmbO2ConcentrationDisplayChannel = 0;
  Controls.Analog[0].cmbEU = u"NTU"_s;
  Controls.Do.chkEnableO2SaturationDisplay = true;
  Controls.Do.chkEnableO2ConcentrationDisplay = true;
  FakeMessages messages;
  EXPECT_TRUE(CheckDoSetup(View, messages));
  // All 14 steps but the two that are right: units and Enable of the oxygen sensor.
  EXPECT_EQ(messages.All.size(), 12U);
}

}  // namespace
}  // namespace tessmar::test
