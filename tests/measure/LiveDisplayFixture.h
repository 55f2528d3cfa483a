#pragma once

#include <gtest/gtest.h>

#include "base/TextTable.h"
#include "measure/LiveDisplay.h"
#include "support/FakeOutside.h"

namespace tessmar::test {

/// A main screen with eight analog and two pulse channels. Channel ch reads raw / 100, on a meter
/// from 0 to 100, with two decimals; nothing is enabled before Show().
class LiveDisplayTest : public testing::Test {
 protected:
  LiveDisplayTest() {
    SetTextLanguage(kLanguageEnglish);
    link_.TrapErrors = true;
    link_.AnalogChannelCount = kAnalogChannels;
    link_.PulseChannelCount = kPulseChannels;
    for (AnalogChannelSettings& analog : settings_.Analog) {
      analog.Enable = 1;
      analog.DecPlaces = 2;
      analog.EngUnits = QStringLiteral("%");
      analog.RawScaleLower = 0;
      analog.RawScaleUpper = 10000;
      analog.LowerLimit = 0;
      analog.UpperLimit = 100;
      analog.DisplayBottom = 0;
      analog.DisplayTop = 100;
    }
    for (PulseChannelSettings& pulse : settings_.Pulse) {
      pulse.Enable = 1;
      pulse.DecPlaces = 1;
      pulse.EngUnits = QStringLiteral("Liters");
      pulse.PulseUnit = 0.5;
    }
  }

  ~LiveDisplayTest() override { SetTextLanguage(kLanguageEnglish); }

  /// Takes the settings over and draws once, as a connect and a tick do.
  void Show() {
    display_.RefreshMainScreen();
    display_.UpdateSampleDisplay();
    display_.DrawMeters();
  }

  /// A sample at 15:47:29 on 26 December 2010 whose ten values are all raw.
  static LiveSample Sample(std::int32_t raw) {
    LiveSample sample;
    sample.PackedTime = 0x20F4FBDD;
    sample.HasTime = true;
    sample.Value.fill(raw);
    return sample;
  }

  void Push(std::int32_t raw) { display_.PushLiveSample(Sample(raw)); }

  QString Caption(const char* array, int index) const {
    return screen_.Caption(ElementName(array, index));
  }
  QString Value(int channel) const { return Caption("lblValue", channel); }
  QString History(int channel) const { return Caption("lblHistory", channel); }

  LinkState link_;
  LoggerSettings settings_;
  LiveRing ring_;
  FakeMainScreen screen_;
  SystemLocale locale_{QLocale(QLocale::English, QLocale::UnitedStates)};
  LiveDisplay display_{link_, settings_, ring_, screen_, locale_};
};

}  // namespace tessmar::test
