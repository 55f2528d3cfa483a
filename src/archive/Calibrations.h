#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "archive/ArchiveRows.h"

namespace tessmar {

/// One of the two points of a calibration.
struct CalibrationPoint {
  double Value = 0;                ///< In the channel's unit, at this raw count.
  std::int32_t Raw = 0;            ///< 0 to 65535.
  std::optional<double> OldScale;  ///< What the scale before shows at this raw count.
  /// OldScale minus Value, in the channel's unit: positive when the channel showed too much.
  std::optional<double> Drift;
};

/// A calibration of one analog channel.
struct CalibrationRow {
  QDateTime At;  ///< UTC.
  qint64 LoggerId = 0;
  int Channel = 0;  ///< 1 to 8.
  QString Unit;
  int Decimals = 0;  ///< That the channel shows, 0 to 6.
  CalibrationPoint Low;
  CalibrationPoint High;
  std::optional<double> DaysSince;  ///< The calibration of this channel before; nothing for the
                                    ///< first.
};

/// The calibrations among a logbook's events, the newest first and by channel.
///
/// The points are those of the scale that was programmed. The scale before, which was in force up
/// to then, is continued straight through its own two points,
///
///     low + (raw - raw low) * (high - low) / (raw high - raw low)
///
/// to the raw counts of the new ones: what it shows there minus what was put on the sensor is the
/// drift since it was made. There is none where the unit was changed with the points, or the scale
/// before had no two raw counts.
std::vector<CalibrationRow> CalibrationsIn(const std::vector<EventRow>& events);

/// A drift as the page shows it: with its sign and two decimals more than the channel's, 6 at most.
/// Empty for none.
QString DriftText(const std::optional<double>& drift, int decimals);

/// The calibrations as CSV for a program to read, in their order: UTF-8, one head row, lines that
/// end with CR LF, fields joined by commas and quoted where they have to be (RFC 4180), times in
/// UTC with "Z", numbers with a point and at most ten digits, an empty field for none.
/// @param nameOf  of a logger in the archive, by its number.
QByteArray CalibrationsCsv(const std::vector<CalibrationRow>& rows,
                           const std::function<QString(qint64 logger)>& nameOf);

}  // namespace tessmar
