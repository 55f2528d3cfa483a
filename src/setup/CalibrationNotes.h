#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "base/Logbook.h"
#include "settings/config.h"
#include "setup/Calibration.h"
#include "setup/SetupControls.h"

namespace tessmar {

/// What the logbook is to know once settings have been programmed: both images, and how many
/// settings differ.
LogbookEntry ProgrammedEntry(const ConfigImage& before, const ConfigImage& after);

/// Remembers what the calibration wizard found until it is programmed: only then has a logger been
/// calibrated.
class CalibrationNotes {
 public:
  void Add(int channel, const Calibration::Texts& points);

  /// What the logbook is to know once the settings have been programmed: both points of every
  /// channel that was calibrated and whose points were programmed as they were found, with the
  /// scale before. Nothing where there was none. Forgets what it gives.
  /// @param programmed  the controls as they were programmed.
  std::optional<LogbookEntry> Take(const SetupControls& programmed, const ConfigImage& before,
                                   const ConfigImage& after);

 private:
  struct Point {
    int Channel;
    Calibration::Texts Points;
  };
  std::vector<Point> points_;
};

}  // namespace tessmar
