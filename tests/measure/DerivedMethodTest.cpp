#include "measure/DerivedMethod.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "measure/SalinityConductivity.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class DerivedMethod : public testing::Test {
 protected:
  DerivedMethod() {
    for (AnalogChannelSettings& channel : settings_.Analog) channel.Enable = 1;
    settings_.Do.PO2Channel = 0;
    settings_.Do.PO2Units = kHectopascal;
    settings_.Do.WaterTempChannel = 1;
    settings_.Do.ConductivityChannel = 3;
    settings_.Do.ConductivityUnits = kMicroSiemensPerCm;
    settings_.Do.AirPressureChannel = 4;
    settings_.Do.AirPressureUnits = kMillibar;
    settings_.Do.EnableSalinityDisplay = 1;
    settings_.Do.SalinityDisplayChannel = 5;
    settings_.Do.EnableO2SaturationDisplay = 1;
    settings_.Do.O2SaturationDisplayChannel = 6;
    settings_.Do.EnableO2ConcentrationDisplay = 1;
    settings_.Do.O2ConcentrationDisplayChannel = 7;
  }

  LoggerSettings settings_;
};

TEST_F(DerivedMethod, IsEmptyForAChannelsOwnReading) {
  for (int channel = 0; channel < 5; ++channel) EXPECT_EQ(MethodText(settings_, channel), u""_s);
  EXPECT_EQ(MethodText(settings_, -1), u""_s);
  EXPECT_EQ(MethodText(settings_, 8), u""_s);
}

TEST_F(DerivedMethod, OfSalinity) {
  EXPECT_EQ(
      MethodText(settings_, 5),
      u"practical salinity scale 1978 with its coefficients at 25 °C, extended to low "
      "salinities after Hill, Dauphinee and Woods (1986); from conductivity at 25 °C channel 4 "
      "in uS/cm; largest deviation from the full scale 0.0006 for water at 25 °C up to a "
      "salinity of 42"_s);
}

TEST_F(DerivedMethod, OfSaturation) {
  EXPECT_EQ(
      MethodText(settings_, 6),
      u"oxygen saturation 100 O / ((P - W) 0.2095) with the pressure of water vapour W a "
      "polynomial in t; from partial pressure of oxygen O channel 1 in hPa, water temperature "
      "t channel 2 in °C, air pressure P channel 5 in mbar; largest deviation of W from Wexler "
      "(1976) 0.6 % from 0 to 50 °C, which moves the saturation at sea level by less than "
      "0.02 % of its value"_s);
}

TEST_F(DerivedMethod, OfConcentration) {
  EXPECT_EQ(MethodText(settings_, 7),
            u"oxygen solubility for each mbar of O as a polynomial in t, less a correction for "
            "salinity; from partial pressure of oxygen O channel 1 in hPa, water temperature t "
            "channel 2 in °C, conductivity at 25 °C channel 4 in uS/cm; largest deviation from "
            "Benson and Krause (1984) 0.02 mg/L or 0.2 % in fresh water from 0 to 30 °C, 0.07 mg/L "
            "or 0.7 % at salinities to 40 from 0 to 30 °C, 0.08 mg/L or 1.4 % at salinities to 40 "
            "from 0 to 40 °C; from Weiss (1970) 0.04 mg/L or 0.5 % in fresh water, 0.07 mg/L or "
            "1.3 % at salinities to 40 from 0 to 40 °C"_s);
}

TEST_F(DerivedMethod, NamesWhatWasTypedIn) {
  settings_.Do.ConductivityManualEntry = 1;
  settings_.Do.ConductivityManual = 1.25;
  settings_.Do.ConductivityManualEntryUnits = kMilliSiemensPerCm;
  settings_.Do.AirPressureManualEntry = 1;
  settings_.Do.AirPressureManual = 350;
  settings_.Do.AirPressureManualEntryUnits = kAltitudeInFeet;
  EXPECT_TRUE(MethodText(settings_, 5)
                  .contains(u"; from conductivity at 25 °C 1.25 mS/cm as typed in; "_s));
  EXPECT_TRUE(
      MethodText(settings_, 6)
          .contains(
              u", air pressure P of the standard atmosphere at the altitude 350 feet as typed in; "_s));
}

TEST_F(DerivedMethod, NamesEachUnitAsItCounts) {
  const char* pressures[] = {"hPa", "mbar", "kPa", "inHg", "mmHg", "PSI", "feet", "meters", "mbar"};
  for (std::uint8_t unit = 0; unit < 9; ++unit) {
    settings_.Do.PO2Units = unit;
    EXPECT_TRUE(MethodText(settings_, 7)
                    .contains(u"O channel 1 in %1, "_s.arg(QString::fromLatin1(pressures[unit]))));
  }
  settings_.Do.WaterTempUnits = 9;
  EXPECT_TRUE(MethodText(settings_, 7).contains(u"t channel 2 in °F, "_s));
  settings_.Do.ConductivityUnits = kAlreadySalinity;
  EXPECT_TRUE(MethodText(settings_, 7).contains(u", salinity channel 4 in PSU; "_s));
  settings_.Do.ConductivityUnits = 7;
  EXPECT_TRUE(MethodText(settings_, 7).contains(u"25 °C channel 4 in mS/cm; "_s));
}

TEST_F(DerivedMethod, SaysWhenASourceIsMissing) {
  settings_.Analog[1].Enable = 0;
  settings_.Do.PO2Channel = 12;
  EXPECT_TRUE(MethodText(settings_, 7)
                  .contains(u"O channel 13, which does not exist, so that there is no value, "_s));
  EXPECT_TRUE(
      MethodText(settings_, 7).contains(u"t channel 2, which is off, so that there is no value"_s));
}

TEST_F(DerivedMethod, SalinityWinsOnASharedChannel) {
  settings_.Do.O2SaturationDisplayChannel = 5;
  EXPECT_TRUE(MethodText(settings_, 5).startsWith(u"practical salinity"_s));
}

// The deviations that the texts promise, worked out once more.

// Solubility in mg/L at 1013.25 mbar of moist air; Benson and Krause (1984) in the form of the
// standard methods for water.
double BensonAndKrause(double celsius, double salinity) {
  const double kelvin = celsius + 273.15;
  const double fresh = -139.34411 + 1.575701e5 / kelvin - 6.642308e7 / std::pow(kelvin, 2) +
                       1.243800e10 / std::pow(kelvin, 3) - 8.621949e11 / std::pow(kelvin, 4);
  return std::exp(fresh - salinity * (0.017674 - 10.754 / kelvin + 2140.7 / std::pow(kelvin, 2)));
}

struct Deviation {
  double MgPerL = 0;
  double Percent = 0;
};

Deviation OfConcentration(double warmest, double saltiest) {
  Deviation worst;
  for (double t = 0; t <= warmest; t += 0.5) {
    // The partial pressure of oxygen at which the water is in balance with the air.
    const double unit = OxygenSaturation(1013.25, kMillibar, 1, kMillibar, t, kCelsius);
    for (double salinity = 0; salinity <= saltiest; salinity += 1) {
      const double ours =
          OxygenConcentration(salinity, kAlreadySalinity, 100 / unit, kMillibar, t, kCelsius);
      const double theirs = BensonAndKrause(t, salinity);
      worst.MgPerL = std::max(worst.MgPerL, std::abs(ours - theirs));
      worst.Percent = std::max(worst.Percent, 100 * std::abs(ours / theirs - 1));
    }
  }
  return worst;
}

// The texts round up, and by no more than a third.
void ExpectPromised(double found, double promised) {
  EXPECT_LE(found, promised);
  EXPECT_GE(found, promised * 2 / 3);
}

TEST(DerivedMethodNumbers, OfConcentrationAreTrue) {
  const Deviation fresh = OfConcentration(30, 0);
  ExpectPromised(fresh.MgPerL, 0.02);
  ExpectPromised(fresh.Percent, 0.2);
  const Deviation salty = OfConcentration(30, 40);
  ExpectPromised(salty.MgPerL, 0.07);
  ExpectPromised(salty.Percent, 0.7);
  const Deviation warm = OfConcentration(40, 40);
  ExpectPromised(warm.MgPerL, 0.08);
  ExpectPromised(warm.Percent, 1.4);
}

}  // namespace
}  // namespace tessmar
