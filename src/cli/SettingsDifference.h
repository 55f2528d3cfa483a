#pragma once

#include <QString>
#include <vector>

#include "link/LinkState.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// A field in which two settings differ.
struct SettingsDifference {
  QString Field;  ///< The setup file's key, with its section ahead: "Analog Channel 1 EngUnits".
  QString Old;
  QString New;
  bool operator==(const SettingsDifference&) const = default;
};

/// What differs, in the order of the setup file. Compared is what a logger would hold: texts cut
/// and numbers rounded to what its memory takes. Channels that the logger does not have are left
/// out.
/// @param withDerived  false leaves out the set-up of salinity and oxygen, which an image file does
///   not have.
std::vector<SettingsDifference> CompareSettings(const LinkState& link, const LoggerSettings& before,
                                                const LoggerSettings& after, bool withDerived);

}  // namespace tessmar
