#pragma once

#include <QString>
#include <vector>

#include "settings/config.h"

namespace tessmar {

/// A setting that differs, in the words of the setup screen.
struct SettingsChange {
  QString Field;   ///< "Channel 3: Units".
  QString Before;  ///< As the screen would show it.
  QString After;
  bool operator==(const SettingsChange&) const = default;
};

/// What differs between two configuration images, field by field, in the order of the pages and of
/// the controls on them. Never empty for images that differ.
///
/// Compared is what would be programmed: a number that the logger rounds to the same value, or a
/// text that it cuts to the same characters, is no change. All channels count, also those that the
/// logger lacks.
std::vector<SettingsChange> ChangesBetween(const ConfigImage& before, const ConfigImage& after);

/// What a logger that is met holds otherwise than it was known to: as ChangesBetween, but only what
/// the pages show of a logger with these channels and abilities. Empty when nothing of that
/// differs.
std::vector<SettingsChange> ChangesFound(const LinkState& link, const ConfigImage& known,
                                         const ConfigImage& found);

/// The changes as a table for the clipboard: a line for each, three columns divided by tabs, under
/// a line of headings.
QString ChangesAsText(const std::vector<SettingsChange>& changes);

/// "3 settings differ from the logger", in the language of the texts.
QString ChangesSummary(std::size_t count);

}  // namespace tessmar
