#pragma once

#include <QString>
#include <functional>

#include "base/Messages.h"

namespace tessmar {

/// True when two unit texts are the same but for the case of ASCII letters. Blanks count.
bool UnitsEqual(const QString& a, const QString& b);

/// What the check reads of the setup screen, by the names of its controls. A control that does not
/// exist throws RangeFault.
struct DoSetupView {
  std::function<int(const QString& combo)> ListIndex;  ///< Chosen entry, 0 first; -1 for none.
  std::function<QString(const QString& combo)> Text;   ///< Text of a combo box.
  std::function<bool(const QString& box)> IsChecked;
};

/// Looks for contradictions between the DO page and the Analog Channels page, and warns of each.
///
/// The comparisons of units skip what they cannot read, such as the column of a channel that the
/// logger lacks; the tests of Enable boxes let that fault through.
///
/// @return false when a warning was answered with Cancel: the settings are not to be programmed.
bool CheckDoSetup(const DoSetupView& view, Messages& messages);

}  // namespace tessmar
