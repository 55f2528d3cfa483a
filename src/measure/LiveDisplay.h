#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <functional>

#include "base/MainScreen.h"
#include "base/SystemLocale.h"
#include "link/LinkState.h"
#include "measure/DerivedChannels.h"
#include "measure/RelayVoltage.h"
#include "measure/Sample.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// What one analog channel shows, newest ring entry first.
struct ChannelView {
  bool Enabled = false;
  bool ShownEnabled = false;  ///< Enabled as the controls last showed it.
  double MeterBottom = 0;
  double MeterTop = 0;
  std::array<double, kRingSize> Shown{};  ///< Own reading or derived value.
  std::array<bool, kRingSize> ShownValid{};
  std::int32_t LastMeterY = 0;  ///< Top of the fill when last drawn; 0 forces a redraw.
  std::array<double, kRingSize> Reading{};
  std::array<bool, kRingSize> ReadingValid{};
};

/// From the live ring and the settings to the labels and meters of the main screen.
///
/// Runs in timer ticks and actions of the one thread. Nothing here shows a message: a value that
/// cannot be had shows as the no-sample text.
class LiveDisplay {
 public:
  /// Arithmetic of a meter column, in twips of the form's design. The offset, from the top of the
  /// form, is above 0, so that no column has its top at 0.
  static constexpr std::int32_t kMeterHeight = 2340;
  static constexpr std::int32_t kMeterTopOffset = 480;

  LiveDisplay(LinkState& link, const LoggerSettings& settings, LiveRing& ring, MainScreen& screen,
              const SystemLocale& locale);

  /// Puts a sample at the head of the ring and shows it.
  void PushLiveSample(const LiveSample& sample);
  /// Forgets all samples, as a connect or disconnect does, and shows that. The records stay where
  /// they are; only the count is 0.
  void EmptyRing();
  /// Sets the pulse values of the newest sample, if there is one, to zero and shows that.
  void ZeroPulseValues();

  /// From the ring to the channel, pulse and clock texts.
  void UpdateSampleDisplay();
  /// From the settings to interval, warm-up, alarms, limits and units.
  void RefreshMainScreen();
  /// One tick of the meters: paints what changed, nothing while nothing changes.
  void DrawMeters();
  /// Makes the next DrawMeters paint every column.
  void RedrawMeters();
  /// Marks all channels as not wanted, as a connect or disconnect does.
  void HideChannels();

  /// @param channel  0 to 7; throws RangeFault outside it.
  const ChannelView& View(int channel) const;
  LiveRing& Ring() { return ring_; }
  /// The newest value of a pulse channel, 0 or 1, without its unit; empty without a sample.
  QString PulseValueText(int channel) const;

  /// Called when a sample has been pushed and is shown; for who looks at samples as they come.
  std::function<void()> SamplePushed;

  /// Relay panel and relay columns; nothing in this edition switches them on.
  bool RelayDisplayEnabled = false;
  std::array<RelayState, kRelayCount> RelayStates{};
  /// From the voltage that lblValue(1) shows to RelayStates and the panel.
  void DecodeRelayVoltage();
  /// From RelayStates to the panel.
  void ShowRelayStates();

 private:
  int ChannelCount() const;
  void UpdateReadings();
  void UpdateShownValues();
  void UpdateShownValue(int channel, std::size_t entry);
  std::array<ChannelReading, kAnalogChannels> ReadingsOf(std::size_t entry) const;
  void ShowChannelTexts();
  void ShowPulseTexts();
  void RefreshLimits(int channel);
  QString ShownText(int channel, std::size_t entry) const;
  QString PulseText(int channel) const;
  QString AlarmText(const AlarmSettings& alarm) const;
  void DrawMeter(int channel);
  void ShowChannelEnabled(int channel);

  LinkState& link_;
  const LoggerSettings& settings_;
  LiveRing& ring_;
  MainScreen& screen_;
  const SystemLocale& locale_;
  std::array<ChannelView, kAnalogChannels> views_;
};

}  // namespace tessmar
