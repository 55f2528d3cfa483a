#include "base/Fault.h"
#include "link/cmd.h"
#include "measure/LiveDisplayFixture.h"
#include "measure/SalinityConductivity.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class LiveDisplaySamples : public test::LiveDisplayTest {
 protected:
  // Oxygen on channel 0 in mbar, water temperature on 1 in degrees Celsius.
  void ShowSaturationOn(std::uint8_t channel) {
    settings_.Do = {};
    settings_.Do.WaterTempChannel = 1;
    settings_.Do.AirPressureManualEntry = 1;
    settings_.Do.AirPressureManual = 1013.25;
    settings_.Do.AirPressureManualEntryUnits = kMillibar;
    settings_.Do.EnableO2SaturationDisplay = 1;
    settings_.Do.O2SaturationDisplayChannel = channel;
  }
};

TEST_F(LiveDisplaySamples, AnEmptyRingShowsEmptyTexts) {
  Show();
  EXPECT_EQ(Value(0), "");
  EXPECT_EQ(History(0), "\r\n\r\n\r\n");
  EXPECT_EQ(screen_.Captions[u"lblPulseValue1"_s], "");
  EXPECT_EQ(screen_.Captions[u"lblPulseValue2"_s], "");
  EXPECT_EQ(link_.LoggerTimeText, "");
}

TEST_F(LiveDisplaySamples, TheNewestIsTheValueAndTheOlderFillTheHistoryFromTheTop) {
  Show();
  Push(7138);
  EXPECT_EQ(Value(3), "71.38");
  EXPECT_EQ(History(3), "\r\n\r\n\r\n");
  Push(7140);
  EXPECT_EQ(Value(3), "71.40");
  EXPECT_EQ(History(3), "71.38\r\n\r\n\r\n");
  for (const std::int32_t raw : {1, 2, 3, 4}) Push(raw);
  EXPECT_EQ(Value(3), "0.04");
  EXPECT_EQ(History(3), "0.03\r\n0.02\r\n0.01\r\n71.40");
}

TEST_F(LiveDisplaySamples, TheClockShowsTheNewestSamplesTime) {
  Show();
  Push(1);
  EXPECT_EQ(link_.LoggerTimeText, "12/26/10 15:47:29");
  display_.PushLiveSample(LiveSample::NoSample());
  EXPECT_EQ(link_.LoggerTimeText, "");
}

TEST_F(LiveDisplaySamples, TheClockIsTakenFromEntry0WhateverTheCountIs) {
  Show();
  Push(1);
  display_.EmptyRing();
  EXPECT_EQ(ring_.Count, 0);
  EXPECT_EQ(link_.LoggerTimeText, "12/26/10 15:47:29");
}

TEST_F(LiveDisplaySamples, EmptyingTheRingClearsTheTextsAndDropsTheMeterToTheLowerLimit) {
  settings_.Analog[0].LowerLimit = 20;
  Show();
  Push(10000);
  display_.EmptyRing();
  EXPECT_EQ(Value(0), "");
  EXPECT_EQ(History(0), "\r\n\r\n\r\n");
  EXPECT_EQ(display_.View(0).Shown[0], 20);
  display_.DrawMeters();
  EXPECT_FLOAT_EQ(screen_.Meters[0].Fraction, 0.2F);
}

TEST_F(LiveDisplaySamples, AReplyWithoutASampleShowsItsTextAndAddsAHistoryLine) {
  Show();
  Push(7138);
  display_.PushLiveSample(LiveSample::NoSample());
  EXPECT_EQ(Value(0), "no sample");
  EXPECT_EQ(History(0), "71.38\r\n\r\n\r\n");
  EXPECT_EQ(screen_.Captions[u"lblPulseValue1"_s], "no sample");
  EXPECT_EQ(screen_.Captions[u"lblPulseValue2"_s], "no sample");
  Push(7140);
  EXPECT_EQ(History(0), "no sample\r\n71.38\r\n\r\n");
}

TEST_F(LiveDisplaySamples, TheNoSampleTextIsLocalised) {
  SetTextLanguage(kLanguageGerman);
  Show();
  display_.PushLiveSample(LiveSample::NoSample());
  EXPECT_EQ(Value(0), "Keine Probe");
}

TEST_F(LiveDisplaySamples, WithoutASampleTheReadingIsThatOfTheLowerRawPoint) {
  settings_.Analog[2].RawScaleLower = 1000;
  settings_.Analog[2].LowerLimit = 5;
  Show();
  display_.PushLiveSample(LiveSample::NoSample());
  EXPECT_FALSE(display_.View(2).ReadingValid[0]);
  EXPECT_EQ(display_.View(2).Reading[0], 5);
  EXPECT_EQ(display_.View(2).Shown[0], 5);
}

TEST_F(LiveDisplaySamples, SixDecimalsOf1234Point5Are1234Point500000) {
  settings_.Analog[0].DecPlaces = 6;
  settings_.Analog[0].RawScaleUpper = 20000;
  settings_.Analog[0].UpperLimit = 2000;
  Show();
  Push(12345);
  EXPECT_EQ(Value(0), "1234.500000");
}

TEST_F(LiveDisplaySamples, ADisabledChannelIsNotWritten) {
  settings_.Analog[1].Enable = 0;
  Show();
  screen_.Written.clear();
  Push(7138);
  EXPECT_FALSE(screen_.Written.contains(u"lblValue(1)"_s));
  EXPECT_FALSE(screen_.Written.contains(u"lblHistory(1)"_s));
  EXPECT_FALSE(display_.View(1).ReadingValid[0]);
  EXPECT_TRUE(display_.View(2).ReadingValid[0]);
}

TEST_F(LiveDisplaySamples, ADerivedChannelShowsItsDerivation) {
  ShowSaturationOn(4);
  Show();
  LiveSample sample = Sample(0);
  sample.Value[0] = 21200;
  display_.PushLiveSample(sample);
  EXPECT_EQ(Value(4), "100.48");
  EXPECT_EQ(Value(0), "212.00");
  EXPECT_EQ(Value(5), "0.00");
}

TEST_F(LiveDisplaySamples, ADerivedChannelWithoutItsSourcesShowsNoSampleAndKeepsItsOldValue) {
  ShowSaturationOn(4);
  Show();
  LiveSample sample = Sample(0);
  sample.Value[0] = 10600;
  display_.PushLiveSample(sample);
  const double before = display_.View(4).Shown[0];
  EXPECT_NEAR(before, 50.238957335, 1e-9);
  settings_.Analog[1].Enable = 0;
  display_.RefreshMainScreen();
  display_.UpdateSampleDisplay();
  EXPECT_EQ(Value(4), "no sample");
  EXPECT_FALSE(display_.View(4).ShownValid[0]);
  EXPECT_EQ(display_.View(4).Shown[0], before);
}

TEST_F(LiveDisplaySamples, AReplyWithoutASampleLeavesADerivedMeterWhereItWas) {
  ShowSaturationOn(4);
  Show();
  LiveSample sample = Sample(0);
  sample.Value[0] = 10600;
  display_.PushLiveSample(sample);
  const double before = display_.View(4).Shown[0];
  display_.PushLiveSample(LiveSample::NoSample());
  EXPECT_EQ(Value(4), "no sample");
  EXPECT_EQ(display_.View(4).Shown[0], before);
}

TEST_F(LiveDisplaySamples, SalinityOfATypedInConductivityShowsEvenWithoutASample) {
  settings_.Do.ConductivityManualEntry = 1;
  settings_.Do.ConductivityManual = 53.087;
  settings_.Do.ConductivityManualEntryUnits = kMilliSiemensPerCm;
  settings_.Do.EnableSalinityDisplay = 1;
  settings_.Do.SalinityDisplayChannel = 6;
  Show();
  EXPECT_EQ(Value(6), "");
  display_.PushLiveSample(LiveSample::NoSample());
  EXPECT_EQ(Value(6), "35.00");
  EXPECT_EQ(Value(5), "no sample");
}

TEST_F(LiveDisplaySamples, AChannelThatTheLoggerLacksIsNoSource) {
  ShowSaturationOn(4);
  settings_.Do.WaterTempChannel = 6;
  Show();
  Push(0);
  EXPECT_EQ(Value(4), "0.00");
  link_.AnalogChannelCount = 6;
  Push(0);
  EXPECT_EQ(Value(4), "no sample");
}

TEST_F(LiveDisplaySamples, AnOverflowLeavesOneChannelWithoutAValueAndTheOthersAlone) {
  settings_.Do.ConductivityManualEntry = 1;
  settings_.Do.ConductivityManual = 1e300;
  settings_.Do.ConductivityManualEntryUnits = kMilliSiemensPerCm;
  settings_.Do.EnableSalinityDisplay = 1;
  settings_.Do.SalinityDisplayChannel = 6;
  Show();
  Push(7138);
  EXPECT_EQ(Value(6), "no sample");
  EXPECT_EQ(Value(5), "71.38");
  link_.TrapErrors = false;
  EXPECT_THROW(display_.UpdateSampleDisplay(), Fault);
}

TEST_F(LiveDisplaySamples, PulseTotalsAreScaledAndHaveTheirUnit) {
  settings_.Pulse[1].PulseUnit = 0.01;
  settings_.Pulse[1].DecPlaces = 2;
  settings_.Pulse[1].EngUnits = u"Kgal"_s;
  Show();
  Push(1234);
  EXPECT_EQ(screen_.Captions[u"lblPulseValue1"_s], "617.0 Liters");
  EXPECT_EQ(screen_.Captions[u"lblPulseValue2"_s], "12.34 Kgal");
}

TEST_F(LiveDisplaySamples, PulseTotalsComeFromTheLastTwoValuesWhateverTheCounts) {
  link_.AnalogChannelCount = 3;
  Show();
  LiveSample sample = Sample(0);
  sample.Value = {1, 2, 3, 4, 5, 6, 7, 8, 100, 200};
  display_.PushLiveSample(sample);
  EXPECT_EQ(screen_.Captions[u"lblPulseValue1"_s], "50.0 Liters");
  EXPECT_EQ(screen_.Captions[u"lblPulseValue2"_s], "100.0 Liters");
}

TEST_F(LiveDisplaySamples, ADisabledPulseChannelOfTwoIsEmpty) {
  settings_.Pulse[1].Enable = 0;
  Show();
  Push(100);
  EXPECT_EQ(screen_.Captions[u"lblPulseValue1"_s], "50.0 Liters");
  EXPECT_EQ(screen_.Captions[u"lblPulseValue2"_s], "");
}

TEST_F(LiveDisplaySamples, OnePulseChannelLeavesTheSecondEmpty) {
  link_.PulseChannelCount = 1;
  screen_.Captions[u"lblPulseValue2"_s] = u"old"_s;
  Show();
  Push(100);
  EXPECT_EQ(screen_.Captions[u"lblPulseValue1"_s], "50.0 Liters");
  EXPECT_EQ(screen_.Captions[u"lblPulseValue2"_s], "");
}

TEST_F(LiveDisplaySamples, WithoutPulseChannelsBothAreEmpty) {
  link_.PulseChannelCount = 0;
  screen_.Captions[u"lblPulseValue1"_s] = u"old"_s;
  screen_.Captions[u"lblPulseValue2"_s] = u"old"_s;
  Show();
  Push(100);
  EXPECT_EQ(screen_.Captions[u"lblPulseValue1"_s], "");
  EXPECT_EQ(screen_.Captions[u"lblPulseValue2"_s], "");
}

TEST_F(LiveDisplaySamples, ZeroingThePulsesTouchesTheNewestSampleOnly) {
  Show();
  Push(100);
  Push(200);
  display_.ZeroPulseValues();
  EXPECT_EQ(screen_.Captions[u"lblPulseValue1"_s], "0.0 Liters");
  EXPECT_EQ(screen_.Captions[u"lblPulseValue2"_s], "0.0 Liters");
  EXPECT_EQ(ring_.Samples[0].Value[7], 200);
  EXPECT_EQ(ring_.Samples[1].Value[8], 100);
}

TEST_F(LiveDisplaySamples, ZeroingThePulsesOfAnEmptyRingWritesNothing) {
  Show();
  ring_.Samples[0].Value.fill(9);
  screen_.Written.clear();
  display_.ZeroPulseValues();
  EXPECT_TRUE(screen_.Written.isEmpty());
  EXPECT_EQ(ring_.Samples[0].Value[8], 9);
}

class RelayPanel : public test::LiveDisplayTest {
 protected:
  RelayPanel() {
    link_.LoggerModelCode = 220;
    display_.RelayDisplayEnabled = true;
    settings_.Analog[1].DecPlaces = 3;
    settings_.Analog[1].RawScaleUpper = 10000;
    settings_.Analog[1].UpperLimit = 10;
    Show();
  }

  QStringList Captions() const {
    QStringList captions;
    for (int r = 0; r < kRelayCount; ++r) captions.append(Caption("lblRelayState", r));
    return captions;
  }
};

TEST_F(RelayPanel, At75MillivoltsShowsRelay0OnAndTheOthersOff) {
  Push(75);
  EXPECT_EQ(Captions(), (QStringList{"On", "Off", "Off", "Off"}));
}

TEST_F(RelayPanel, At50MillivoltsShowsAllOff) {
  Push(50);
  EXPECT_EQ(Captions(), (QStringList{"Off", "Off", "Off", "Off"}));
}

TEST_F(RelayPanel, At4095MillivoltsShowsAllPulse) {
  Push(4095);
  EXPECT_EQ(Captions(), (QStringList{"Pulse", "Pulse", "Pulse", "Pulse"}));
}

TEST_F(RelayPanel, At4096MillivoltsOrWithoutASampleShowsUnknown) {
  Push(4095);
  Push(4096);
  EXPECT_EQ(Captions(), (QStringList{"Unknown", "Unknown", "Unknown", "Unknown"}));
  Push(4095);
  display_.PushLiveSample(LiveSample::NoSample());
  EXPECT_EQ(Value(1), "no sample");
  EXPECT_EQ(Captions(), (QStringList{"Unknown", "Unknown", "Unknown", "Unknown"}));
}

TEST_F(RelayPanel, StaysEnglishInGerman) {
  SetTextLanguage(kLanguageGerman);
  Push(75);
  EXPECT_EQ(Captions(), (QStringList{"On", "Off", "Off", "Off"}));
}

TEST_F(RelayPanel, ColoursPictureNumberAndState) {
  display_.RelayStates = {RelayState::Off, RelayState::On, RelayState::Pulse, RelayState::Unknown};
  display_.ShowRelayStates();
  const std::array<std::optional<Rgb>, kRelayCount> colours{Rgb{255, 128, 128}, Rgb{128, 255, 128},
                                                            Rgb{255, 255, 128}, std::nullopt};
  for (int r = 0; r < kRelayCount; ++r) {
    for (const char* control : {"pctRelay", "lblRelayNumber", "lblRelayState"}) {
      ASSERT_TRUE(screen_.Backgrounds.contains(ElementName(control, r))) << control << r;
      EXPECT_EQ(screen_.Backgrounds[ElementName(control, r)], colours[static_cast<std::size_t>(r)]);
    }
  }
}

TEST_F(RelayPanel, IsLeftAloneForAnotherModelOrWhileSwitchedOff) {
  screen_.Written.clear();
  link_.LoggerModelCode = 221;
  Push(75);
  link_.LoggerModelCode = kRelayModelCode;
  display_.RelayDisplayEnabled = false;
  Push(75);
  EXPECT_FALSE(screen_.Written.contains(u"lblRelayState(0)"_s));
}

}  // namespace
}  // namespace tessmar
