#pragma once

#include <QString>
#include <array>
#include <cstdint>

#include "link/LinkState.h"
#include "measure/Sample.h"
#include "settings/LoggerSettings.h"
#include "ui/MainScreen.h"
#include "ui/SystemLocale.h"

namespace tessmar {

/// What one analog channel shows, newest ring entry first.
struct ChannelView {
  bool Enabled = false;
  bool ShownEnabled = false;  ///< Enabled as the controls last showed it.
  double MeterBottom = 0;
  double MeterTop = 0;
  std::array<double, 5> Shown{};  ///< Own reading or derived value.
  std::array<bool, 5> ShownValid{};
  std::int32_t LastMeterY = 0;  ///< Top of the fill when last drawn; 0 forces a redraw.
  std::array<double, 5> Reading{};
  std::array<bool, 5> ReadingValid{};
};

/// State of one relay, as decoded from the voltage of analog channel 1.
enum class RelayState : std::int16_t { Unknown = 0, Off = 1, On = 2, Pulse = 3 };

/// The state of one relay in a history cell: "Off", "On", "Pulse", or "---" for a voltage outside
/// 0.025 to 4.095. Throws RangeFault for a relay above 3.
QString RelayCellText(double volts, std::int16_t relay);

/// From the live ring and the settings to the labels and meters of the main screen.
class LiveDisplay {
 public:
  /// Arithmetic of a meter column, in twips of the form's design.
  static constexpr std::int32_t kMeterHeight = 2340;
  static constexpr std::int32_t kMeterTopOffset = 480;

  LiveDisplay(LinkState& link, const LoggerSettings& settings, LiveRing& ring, MainScreen& screen,
              const SystemLocale& locale);

  /// Puts a sample at the head of the ring and shows it.
  void PushLiveSample(const LiveSample& sample);
  /// Forgets all samples, as a connect or disconnect does, and shows that.
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

  const ChannelView& View(int channel) const;
  LiveRing& Ring() { return ring_; }

  /// Relay panel and relay columns; nothing in this edition switches them on.
  bool RelayDisplayEnabled = false;
  std::array<RelayState, 4> RelayStates{};
  void DecodeRelayVoltage();
  void ShowRelayStates();

 private:
  void UpdateReadings();
  void UpdateShownValues();
  void ShowChannelTexts();
  void ShowPulseTexts();
  QString PulseText(int channel) const;
  QString AlarmText(const AlarmSettings& alarm) const;

  LinkState& link_;
  const LoggerSettings& settings_;
  LiveRing& ring_;
  MainScreen& screen_;
  const SystemLocale& locale_;
  std::array<ChannelView, kAnalogChannels> views_;
};

}  // namespace tessmar
