// The logger's configuration memory: the whole input is an image, behind three bytes that say what
// logger has it.

#include "Fuzz.h"
#include "base/Fault.h"
#include "measure/LoggerFacts.h"
#include "settings/IntervalText.h"
#include "settings/SetupFile.h"
#include "settings/config.h"
#include "setup/SettingsChanges.h"
#include "setup/SetupControls.h"
#include "support/Links.h"

namespace {

using namespace tessmar;
using fuzz::Bytes;
using fuzz::Hold;
using fuzz::Input;

/// True for an alarm time that packed decimals cannot hold, as erased memory has it.
bool HasImpossibleAlarm(const LoggerSettings& settings) {
  constexpr int kMost = 159;
  return std::ranges::any_of(settings.Alarm, [](const AlarmSettings& alarm) {
    return alarm.AlarmHour > kMost || alarm.AlarmMin > kMost || alarm.AlarmSec > kMost;
  });
}

/// @param read  from a whole image; others may enable channels that the logger lacks, which an
/// image
///   holds and nobody reads.
void CheckRoundTrip(const LinkState& link, const LoggerSettings& settings, bool read) {
  const bool possible = !HasImpossibleAlarm(settings);
  ConfigImage packed;
  const bool fits = PackConfigImage(link, settings, packed);
  Hold(fits == possible, "what an image held fits one");
  if (!fits) return;
  Hold(packed.size() == kConfigImageSize, "an image has 315 bytes");
  LoggerSettings again;
  LoadDefaultSettings(again, 8);
  Hold(UnpackConfigImage(link, packed, again), "what was packed can be unpacked");
  ConfigImage second;
  Hold(PackConfigImage(link, again, second), "what was packed can be packed again");
  Hold(!read || second == packed, "what was read and packed packs to the same");
  Hold(!read || ChangesBetween(packed, second).empty(), "an image does not differ from itself");
  LoggerSettings third;
  LoadDefaultSettings(third, 8);
  Hold(UnpackConfigImage(link, second, third) && third == again, "what was read reads the same");
}

/// A setup file has no blank ahead of a text, which a logger may.
bool BeginsWithBlank(const LoggerSettings& settings) {
  bool found = settings.LoggerName.startsWith(u' ');
  for (int entry = 0; entry < kAnalogChannels + kPulseChannels; ++entry)
    found = found || settings.EngUnits(entry).startsWith(u' ');
  return found;
}

/// What a logger holds, saved to a setup file and loaded from it, programs the same.
void CheckFile(const LinkState& link, const LoggerSettings& settings) {
  ConfigImage image;
  if (BeginsWithBlank(settings) || !PackConfigImage(link, settings, image)) return;
  LoggerSettings loaded;
  LoadDefaultSettings(loaded, 8);
  const QLocale locale(QLocale::German, QLocale::Germany);
  Hold(ReadSetupFile(WriteSetupFile({}, link, settings), locale, loaded) > 0, "a file is read");
  ConfigImage again;
  Hold(PackConfigImage(link, loaded, again), "what was loaded fits an image");
  Hold(again == image, "what was saved and loaded programs the same");
}

/// A screen does not show an hour that no clock has so that it can be read again.
bool HasImpossibleHour(const LoggerSettings& settings) {
  return std::ranges::any_of(settings.Alarm,
                             [](const AlarmSettings& alarm) { return alarm.AlarmHour > 23; });
}

void CheckControls(const LinkState& link, const LoggerSettings& settings, bool clock24) {
  if (HasImpossibleHour(settings)) return;
  SetupControls controls;
  SettingsToControls(link, clock24, settings, controls);
  const auto image = ImageOf(link, clock24, controls, settings);
  if (!image) return;
  LoggerSettings shown = settings;
  ControlsToSettings(link, clock24, controls, shown);
  SetupControls again;
  SettingsToControls(link, clock24, shown, again);
  Hold(ImageOf(link, clock24, again, shown) == image, "a screen that was read shows the same");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const int analog = input.Below(9);
  LinkState link = test::LinkWith(analog, input.Below(3));
  const int flags = input.Byte();
  link.SampleOnDemandSupported = (flags & 1) != 0;
  const Bytes image = input.Rest();

  LoggerSettings settings;
  LoadDefaultSettings(settings, 8);
  // Behind a region of the derived channels that was never stored nothing is read.
  const bool whole = image.size() >= kConfigImageSize || (image.size() > 290 && image[290] >= 7);
  Hold(UnpackConfigImage(link, image, settings) == whole, "a whole image can be unpacked");
  CheckRoundTrip(link, settings, whole);
  if (whole) CheckFile(link, settings);
  CheckControls(link, settings, (flags & 2) != 0);
  IntervalDisplayText(settings);
  return 0;
}
