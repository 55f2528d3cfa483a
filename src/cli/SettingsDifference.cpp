#include "cli/SettingsDifference.h"

#include "settings/config.h"

namespace tessmar {

std::optional<std::vector<SettingsChange>> CompareSettings(const LoggerSettings& before,
                                                           const LoggerSettings& after,
                                                           const ComparedParts& parts) {
  // What is left out is the same on both sides.
  LoggerSettings now = after;
  for (std::size_t i = static_cast<std::size_t>(parts.Analog); i < now.Analog.size(); ++i)
    now.Analog.at(i) = before.Analog.at(i);
  for (std::size_t i = static_cast<std::size_t>(parts.Pulse); i < now.Pulse.size(); ++i)
    now.Pulse.at(i) = before.Pulse.at(i);
  if (!parts.SampleOnDemand) now.EnableSOD = before.EnableSOD;
  if (!parts.Derived) now.Do = before.Do;
  // One logger for both, which has everything.
  LinkState link;
  link.TrapErrors = true;
  link.AnalogChannelCount = kAnalogChannels;
  link.PulseChannelCount = kPulseChannels;
  link.SampleOnDemandSupported = true;
  ConfigImage beforeImage;
  ConfigImage afterImage;
  if (!PackConfigImage(link, before, beforeImage) || !PackConfigImage(link, now, afterImage))
    return std::nullopt;
  return ChangesBetween(beforeImage, afterImage);
}

}  // namespace tessmar
