#include "measure/DerivedChannels.h"

#include <gtest/gtest.h>

#include <array>

#include "measure/SalinityConductivity.h"

namespace tessmar {
namespace {

constexpr double kTight = 1e-9;

// Channel 0 oxygen, 1 temperature, 2 conductivity, 3 air pressure; 4 to 7 are free.
class DerivedChannels : public testing::Test {
 protected:
  DerivedChannels() {
    settings_.PO2Channel = 0;
    settings_.PO2Units = kMillibar;
    settings_.WaterTempChannel = 1;
    settings_.WaterTempUnits = kCelsius;
    settings_.ConductivityChannel = 2;
    settings_.ConductivityUnits = kMilliSiemensPerCm;
    settings_.AirPressureChannel = 3;
    settings_.AirPressureUnits = kMillibar;
    settings_.ConductivityManual = 25000;
    settings_.ConductivityManualEntryUnits = kMicroSiemensPerCm;
    settings_.AirPressureManual = 101.325;
    settings_.AirPressureManualEntryUnits = kKilopascal;
    readings_ = {{{212, true},
                  {0, true},
                  {53.087, true},
                  {1013.25, true},
                  {4.5, true},
                  {5.5, true},
                  {6.5, true},
                  {7.5, true}}};
  }

  ChannelReading Shown(int channel) const { return ShownReading(settings_, channel, readings_); }

  void ShowSalinityOn(std::uint8_t channel) {
    settings_.EnableSalinityDisplay = 1;
    settings_.SalinityDisplayChannel = channel;
  }
  void ShowSaturationOn(std::uint8_t channel) {
    settings_.EnableO2SaturationDisplay = 1;
    settings_.O2SaturationDisplayChannel = channel;
  }
  void ShowConcentrationOn(std::uint8_t channel) {
    settings_.EnableO2ConcentrationDisplay = 1;
    settings_.O2ConcentrationDisplayChannel = channel;
  }

  DoSettings settings_;
  std::array<ChannelReading, kAnalogChannels> readings_;
};

TEST_F(DerivedChannels, ShowTheirOwnReadingUnlessChosen) {
  settings_.SalinityDisplayChannel = 4;
  settings_.O2SaturationDisplayChannel = 4;
  settings_.O2ConcentrationDisplayChannel = 4;
  EXPECT_EQ(QuantityShown(settings_, 4), ShownQuantity::OwnReading);
  EXPECT_EQ(Shown(4).Value, 4.5);
  EXPECT_TRUE(Shown(4).Available);
  readings_[4] = {4.5, false};
  EXPECT_EQ(Shown(4).Value, 4.5);
  EXPECT_FALSE(Shown(4).Available);
}

TEST_F(DerivedChannels, SalinityWinsOverSaturationAndSaturationOverConcentration) {
  ShowConcentrationOn(4);
  EXPECT_EQ(QuantityShown(settings_, 4), ShownQuantity::Concentration);
  ShowSaturationOn(4);
  EXPECT_EQ(QuantityShown(settings_, 4), ShownQuantity::Saturation);
  ShowSalinityOn(4);
  EXPECT_EQ(QuantityShown(settings_, 4), ShownQuantity::Salinity);
  EXPECT_EQ(QuantityShown(settings_, 5), ShownQuantity::OwnReading);
}

TEST_F(DerivedChannels, SalinityComesFromTheConductivityChannel) {
  ShowSalinityOn(4);
  EXPECT_TRUE(Shown(4).Available);
  EXPECT_NEAR(Shown(4).Value, 34.999695993708, kTight);
  readings_[2].Available = false;
  EXPECT_FALSE(Shown(4).Available);
}

TEST_F(DerivedChannels, SalinityOfATypedInConductivityIsAlwaysAvailable) {
  ShowSalinityOn(4);
  settings_.ConductivityManualEntry = 1;
  for (ChannelReading& reading : readings_) reading.Available = false;
  EXPECT_TRUE(Shown(4).Available);
  EXPECT_NEAR(Shown(4).Value, 15.197477669680, kTight);
}

TEST_F(DerivedChannels, SaturationNeedsOxygenTemperatureAndAirPressure) {
  ShowSaturationOn(5);
  EXPECT_NEAR(Shown(5).Value, 100.477914670, kTight);
  for (const std::size_t source : {0U, 1U, 3U}) {
    readings_[source].Available = false;
    EXPECT_FALSE(Shown(5).Available) << source;
    EXPECT_EQ(Shown(5).Value, 0) << source;
    readings_[source].Available = true;
    EXPECT_TRUE(Shown(5).Available) << source;
  }
  readings_[2].Available = false;
  readings_[5].Available = false;
  EXPECT_TRUE(Shown(5).Available);
}

TEST_F(DerivedChannels, SaturationWithATypedInAirPressureNeedsNoAirPressureChannel) {
  ShowSaturationOn(5);
  settings_.AirPressureManualEntry = 1;
  readings_[3].Available = false;
  EXPECT_TRUE(Shown(5).Available);
  EXPECT_NEAR(Shown(5).Value, 100.477914670, kTight);
}

TEST_F(DerivedChannels, ConcentrationNeedsOxygenTemperatureAndConductivity) {
  ShowConcentrationOn(6);
  EXPECT_NEAR(Shown(6).Value, 11.545713485, kTight);
  for (const std::size_t source : {0U, 1U, 2U}) {
    readings_[source].Available = false;
    EXPECT_FALSE(Shown(6).Available) << source;
    readings_[source].Available = true;
    EXPECT_TRUE(Shown(6).Available) << source;
  }
  readings_[3].Available = false;
  EXPECT_TRUE(Shown(6).Available);
}

TEST_F(DerivedChannels, ConcentrationTakesATypedInConductivity) {
  ShowConcentrationOn(6);
  settings_.ConductivityManualEntry = 1;
  readings_[0].Value = 180;
  readings_[1].Value = 15;
  readings_[2].Available = false;
  EXPECT_TRUE(Shown(6).Available);
  EXPECT_NEAR(Shown(6).Value, 7.930228672, kTight);
}

TEST_F(DerivedChannels, ConcentrationOfFreshWaterDoesNotDependOnAirPressure) {
  ShowConcentrationOn(6);
  readings_[2].Value = 0;
  for (const double airPressure : {0.0, 500.0, 1013.25, 2000.0}) {
    readings_[3].Value = airPressure;
    EXPECT_NEAR(Shown(6).Value, 14.681, kTight) << airPressure;
  }
}

TEST_F(DerivedChannels, ANegativeOxygenReadingGivesNoSaturationAndNoConcentration) {
  ShowSaturationOn(5);
  ShowConcentrationOn(6);
  readings_[0].Value = -3;
  EXPECT_EQ(Shown(5).Value, 0);
  EXPECT_EQ(Shown(6).Value, 0);
}

TEST_F(DerivedChannels, TheUnitOfConcentrationIsALabelOnly) {
  ShowConcentrationOn(6);
  settings_.O2ConcentrationDisplayUnits = 0;
  const double inMgPerL = Shown(6).Value;
  settings_.O2ConcentrationDisplayUnits = 1;
  EXPECT_EQ(Shown(6).Value, inMgPerL);
}

TEST_F(DerivedChannels, ADerivedValueNeverFeedsAnother) {
  // The conductivity channel shows salinity itself; concentration still takes its conductivity.
  ShowSalinityOn(2);
  ShowConcentrationOn(6);
  EXPECT_NEAR(Shown(2).Value, 34.999695993708, kTight);
  EXPECT_NEAR(Shown(6).Value, 11.545713485, kTight);
}

TEST_F(DerivedChannels, ASourceChannelThatDoesNotExistIsMissing) {
  ShowSalinityOn(4);
  settings_.ConductivityChannel = 8;
  EXPECT_FALSE(Shown(4).Available);
  settings_.ConductivityChannel = 255;
  EXPECT_FALSE(Shown(4).Available);
}

TEST_F(DerivedChannels, LetAnOverflowThroughAsAFault) {
  ShowSalinityOn(4);
  readings_[2].Value = 1e300;
  EXPECT_THROW(Shown(4), CalculationFault);
}

}  // namespace
}  // namespace tessmar
