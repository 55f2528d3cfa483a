#pragma once

#include <optional>
#include <vector>

#include "link/LinkState.h"
#include "settings/LoggerSettings.h"
#include "setup/SettingsChanges.h"

namespace tessmar {

/// What is compared of two settings.
struct ComparedParts {
  /// Channels beyond these counts are left out.
  int Analog = kAnalogChannels;
  int Pulse = kPulseChannels;
  /// False leaves out whether samples on demand are enabled, which not every logger knows.
  bool SampleOnDemand = true;
  /// False leaves out the set-up of salinity and oxygen, which an image file does not have.
  bool Derived = true;
};

/// What differs, as the setup screen says it of the logger: see ChangesBetween. Nothing at all when
/// one of the two has a value that no logger's memory takes.
std::optional<std::vector<SettingsChange>> CompareSettings(const LoggerSettings& before,
                                                           const LoggerSettings& after,
                                                           const ComparedParts& parts);

}  // namespace tessmar
