#include "measure/SalinityConductivity.h"

#include <gtest/gtest.h>

#include <limits>

namespace tessmar {
namespace {

constexpr double kTight = 1e-9;

TEST(SalinityFromConductivity, IsExactly0ForNoneAndForANegativeConductivity) {
  EXPECT_EQ(SalinityFromConductivity(0, kMilliSiemensPerCm), 0);
  EXPECT_EQ(SalinityFromConductivity(0, kMicroSiemensPerCm), 0);
  EXPECT_EQ(SalinityFromConductivity(-5, kMilliSiemensPerCm), 0);
}

TEST(SalinityFromConductivity, OfTheReferenceConductivityIsAbout35InBothUnits) {
  const double inMicroSiemens = SalinityFromConductivity(53087, kMicroSiemensPerCm);
  const double inMilliSiemens = SalinityFromConductivity(53.087, kMilliSiemensPerCm);
  EXPECT_EQ(inMicroSiemens, inMilliSiemens);
  EXPECT_NEAR(inMilliSiemens, 34.999695993708, kTight);
}

TEST(SalinityFromConductivity, LeavesASalinityUnchangedAndANegativeOneNegative) {
  EXPECT_EQ(SalinityFromConductivity(35, kAlreadySalinity), 35);
  EXPECT_EQ(SalinityFromConductivity(-3, kAlreadySalinity), -3);
}

TEST(SalinityFromConductivity, TreatsHigherUnitCodesAsMilliSiemens) {
  EXPECT_NEAR(SalinityFromConductivity(25, 3), 15.197477669680, kTight);
  EXPECT_NEAR(SalinityFromConductivity(25, 255), 15.197477669680, kTight);
}

TEST(SalinityFromConductivity, FollowsTheScale) {
  struct Row {
    double MilliSiemens;
    double Salinity;
  };
  for (const Row row : {Row{0.001, -0.000208781652}, Row{0.1, 0.045774583350},
                        Row{1, 0.491779661357}, Row{5, 2.678325611863}, Row{10, 5.624488417788},
                        Row{25, 15.197477669680}, Row{60, 40.187964847340}}) {
    EXPECT_NEAR(SalinityFromConductivity(row.MilliSiemens, kMilliSiemensPerCm), row.Salinity,
                kTight);
    EXPECT_NEAR(SalinityFromConductivity(row.MilliSiemens * 1000, kMicroSiemensPerCm), row.Salinity,
                kTight);
  }
}

TEST(SalinityFromConductivity, ThrowsWhenItOverflows) {
  EXPECT_THROW(SalinityFromConductivity(1e300, kMilliSiemensPerCm), CalculationFault);
  EXPECT_THROW(SalinityFromConductivity(std::numeric_limits<double>::quiet_NaN(), 1), Fault);
}

struct AltitudeRow {
  double Feet;
  double Mbar;
};

TEST(PressureFromAltitude, GivesEachRowOfTheTable) {
  constexpr AltitudeRow kRows[] = {
      {-2000, 1088.443354239}, {-1500, 1069.378263639}, {-1000, 1050.446495352},
      {-500, 1031.781371687},  {0, 1013.249570335},     {500, 995.251058231},
      {1000, 977.252546126},   {1500, 959.654000957},   {2000, 942.055455788},
      {2500, 925.123522178},   {3000, 908.191588569},   {3500, 891.659621895},
      {4000, 874.994332909},   {4500, 859.128977795},   {5000, 843.263622680},
      {5500, 827.664912190},   {6000, 812.066201699},   {6500, 796.867458144},
      {7000, 781.935359213},   {7500, 767.403227217},   {8000, 752.737772910},
      {8500, 738.605607850},   {9000, 724.340120478},   {9500, 710.474600042},
      {10000, 696.875724229},  {11000, 670.477906476},  {12000, 644.480055658},
      {13000, 619.682105647},  {14000, 595.284122572},  {15000, 571.952717992},
      {20000, 465.961480042},  {25000, 376.502208767},  {30000, 301.441747175},
  };
  for (const AltitudeRow& row : kRows)
    EXPECT_NEAR(PressureFromAltitude(row.Feet), row.Mbar, kTight) << row.Feet;
}

TEST(PressureFromAltitude, IsLinearBetweenRows) {
  EXPECT_NEAR(PressureFromAltitude(-1750), 1078.910808939, kTight);
  EXPECT_NEAR(PressureFromAltitude(17500), 518.957099017, kTight);
}

TEST(PressureFromAltitude, Takes40000FeetAs30000AndMinus3000AsMinus2000) {
  EXPECT_NEAR(PressureFromAltitude(40000), 301.441747175, kTight);
  EXPECT_NEAR(PressureFromAltitude(-3000), 1088.443354239, kTight);
}

TEST(PressureToMbar, ConvertsEachUnit) {
  EXPECT_EQ(PressureToMbar(987.6, kHectopascal), 987.6);
  EXPECT_EQ(PressureToMbar(987.6, kMillibar), 987.6);
  EXPECT_DOUBLE_EQ(PressureToMbar(98.76, kKilopascal), 987.6);
  EXPECT_NEAR(PressureToMbar(29.92, kInchesOfMercury), 1013.206908229, kTight);
  EXPECT_NEAR(PressureToMbar(750, kMillimetresOfMercury), 999.917339147, kTight);
  EXPECT_NEAR(PressureToMbar(14.7, kPoundsPerSquareInch), 1013.527489348, kTight);
  EXPECT_NEAR(PressureToMbar(5000, kAltitudeInFeet), 843.263622680, kTight);
  EXPECT_NEAR(PressureToMbar(1000, kAltitudeInMetres), 898.905916834, kTight);
  EXPECT_EQ(PressureToMbar(987.6, 8), 987.6);
  EXPECT_EQ(PressureToMbar(987.6, 255), 987.6);
}

TEST(PressureToMbar, BothAltitudesOfSeaLevelGive760MillimetresOfMercury) {
  EXPECT_NEAR(PressureToMbar(0, kAltitudeInFeet), 1013.249570335, kTight);
  EXPECT_NEAR(PressureToMbar(0, kAltitudeInMetres), 1013.249570335, kTight);
  EXPECT_NEAR(PressureToMbar(760, kMillimetresOfMercury), 1013.249570335, kTight);
}

TEST(PressureToMbar, A1000MetresLieBetweenTheRowsOf3000And3500Feet) {
  EXPECT_NEAR(PressureToMbar(1000, kAltitudeInMetres), PressureFromAltitude(3280.8399), kTight);
  EXPECT_LT(PressureToMbar(1000, kAltitudeInMetres), 908.191588569);
  EXPECT_GT(PressureToMbar(1000, kAltitudeInMetres), 891.659621895);
}

TEST(PressureToMbar, IsNeverNegative) {
  for (const std::int16_t unit : {0, 1, 2, 3, 4, 5, 8}) EXPECT_EQ(PressureToMbar(-1, unit), 0);
  EXPECT_GT(PressureToMbar(-1, kAltitudeInFeet), 1013);
}

TEST(PressureToMbar, ThrowsWhenItOverflows) {
  EXPECT_THROW(PressureToMbar(1e308, kKilopascal), CalculationFault);
}

TEST(OxygenSaturation, ComparesThePressureWithThatInAir) {
  EXPECT_NEAR(OxygenSaturation(1013.25, 1, 212, 1, 0, 0), 100.477914670, kTight);
  EXPECT_NEAR(OxygenSaturation(1000, 1, 150, 0, 25, 0), 73.941930060, kTight);
  EXPECT_NEAR(OxygenSaturation(980, 0, 100, 1, 10.5, 0), 49.344463812, kTight);
  EXPECT_NEAR(OxygenSaturation(101.325, 2, 209.5, 1, 20, 0), 101.024550582, kTight);
}

TEST(OxygenSaturation, TakesEveryUnitCodeBut0AsFahrenheit) {
  EXPECT_NEAR(OxygenSaturation(1013.25, 1, 212, 1, 77, 1), 103.093901828, kTight);
  EXPECT_NEAR(OxygenSaturation(1013.25, 1, 212, 1, 77, 200), 103.093901828, kTight);
}

TEST(OxygenSaturation, TakesWaterBelowFreezingAsFreezing) {
  EXPECT_NEAR(OxygenSaturation(1013.25, 1, 212, 1, -12, 0), 100.477914670, kTight);
  EXPECT_NEAR(OxygenSaturation(1013.25, 1, 212, 1, 10, 1), 100.477914670, kTight);
  EXPECT_NEAR(OxygenSaturation(1013.25, 1, 212, 1, 32, 1), 100.477914670, kTight);
}

TEST(OxygenSaturation, IsExactly100WhenTheAirPressureIs0OrBelowTheVapourPressure) {
  EXPECT_EQ(OxygenSaturation(0, 1, 212, 1, 20, 0), 100);
  EXPECT_EQ(OxygenSaturation(-1, 1, 212, 1, 20, 0), 100);
  EXPECT_EQ(OxygenSaturation(6.12, 1, 212, 1, 0, 0), 100);
  EXPECT_EQ(OxygenSaturation(6.13, 1, 0, 1, 0, 0), 100);
}

TEST(OxygenSaturation, Gives200WhereItWouldGive250AndNothingForNoOxygen) {
  // 250 % of the 0.2095 * (1006.13 - 6.13) mbar in air.
  EXPECT_EQ(OxygenSaturation(1006.13, 1, 523.75, 1, 0, 0), 200);
  EXPECT_EQ(OxygenSaturation(1006.13, 1, 0, 1, 0, 0), 0);
}

TEST(OxygenSaturation, RaisesANegativeReadingTo0) {
  EXPECT_EQ(OxygenSaturation(1013.25, 1, -4, 1, 20, 0), 0);
}

TEST(OxygenSaturation, ThrowsWhenItOverflows) {
  EXPECT_THROW(OxygenSaturation(1013, 1, 212, 1, 1e300, 0), CalculationFault);
  EXPECT_THROW(OxygenSaturation(1013, 1, 1e307, 1, 20, 0), CalculationFault);
}

TEST(OxygenConcentration, OfFreshWaterIsTheSolubilityTimesThePressure) {
  EXPECT_NEAR(OxygenConcentration(0, 1, 212, 1, 0, 0), 14.681, kTight);
  EXPECT_NEAR(OxygenConcentration(0, kAlreadySalinity, 200, 1, 20, 0), 8.767152, kTight);
}

TEST(OxygenConcentration, IsLessInSaltWater) {
  EXPECT_NEAR(OxygenConcentration(53.087, 1, 212, 1, 0, 0), 11.545713485, kTight);
  EXPECT_NEAR(OxygenConcentration(25000, 0, 180, 1, 15, 0), 7.930228672, kTight);
  EXPECT_NEAR(OxygenConcentration(35, kAlreadySalinity, 212, 1, 25, 0), 6.998228368, kTight);
}

TEST(OxygenConcentration, ConvertsAndLimitsTheTemperature) {
  EXPECT_NEAR(OxygenConcentration(0, 1, 200, 1, 68, 1), 8.767152, kTight);
  EXPECT_NEAR(OxygenConcentration(0, 1, 212, 1, -5, 0), 14.681, kTight);
  EXPECT_NEAR(OxygenConcentration(0, 1, 212, 1, 31, 1), 14.681, kTight);
}

TEST(OxygenConcentration, IsNeverNegative) {
  EXPECT_EQ(OxygenConcentration(0, 1, -4, 1, 20, 0), 0);
  // Far outside natural waters the correction exceeds the solubility.
  EXPECT_EQ(OxygenConcentration(170, kAlreadySalinity, 212, 1, 100, 0), 0);
}

TEST(OxygenConcentration, ThrowsWhenItOverflows) {
  EXPECT_THROW(OxygenConcentration(1e200, kAlreadySalinity, 212, 1, 0, 0), CalculationFault);
}

}  // namespace
}  // namespace tessmar
