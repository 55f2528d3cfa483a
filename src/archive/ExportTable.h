#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <vector>

namespace tessmar {

/// A place of a record without a value.
inline constexpr double kNoExportValue = std::numeric_limits<double>::quiet_NaN();

/// One channel of an export.
struct ExportColumn {
  /// "a1" to "a8", "p1" or "p2"; unlike the name never twice in one export: what stood in a place
  /// later, under another name or unit, is "a1_2".
  QString Place;
  QString Name;    ///< What is measured, in the operator's words; may be empty.
  QString Unit;    ///< As the logger has it; may be empty.
  int Decimals;    ///< Of the values, 0 to 6.
  QString Method;  ///< How a derived value was made; empty for a reading.
};

/// What an export says beside its rows.
struct ExportHead {
  QString LoggerName = {};
  QString LoggerModel = {};
  QString LoggerUuid = {};
  QString Firmware = {};
  QString Source = {};   ///< Which uploads the rows come from, in words.
  QString Program = {};  ///< Name and version of the program that writes.
  QString Saved = {};    ///< When, ISO 8601 with "Z".
  std::vector<ExportColumn> Columns = {};
};

/// One record of an export.
struct ExportRow {
  /// The time as the logger's clock gave it, in seconds since 1970-01-01 00:00:00 of that clock;
  /// nothing for a record that is cut off.
  std::optional<std::int64_t> LoggerSeconds = {};
  /// The time corrected by what is known of the clock, in milliseconds since 1970-01-01T00:00:00Z;
  /// nothing where nothing is known.
  std::optional<std::int64_t> CorrectedMs = {};
  /// Two uploads have different records in this place, and this is one of them.
  bool Disagrees = false;
  /// The values of the columns in their order, as many as there are columns, rounded to their
  /// decimals; not a number for none.
  std::vector<double> Values = {};
};

/// Gives the next row, or false behind the last one. The row has room for its values.
using ExportRows = std::function<bool(ExportRow& row)>;

/// Told now and then how many rows are done. False breaks the export off.
using ExportProgress = std::function<bool(std::int64_t rows)>;

/// How many rows are written between two looks at the progress.
inline constexpr int kExportPiece = 4096;

/// The heading of a column: name and unit in brackets, or what there is of the two, or the place.
QString ExportHeading(const ExportColumn& column);

/// "2026-03-29T01:59:59", the logger's own time.
QString IsoLoggerTime(std::int64_t seconds);

/// "2026-03-29T01:59:59.250Z", without the fraction where it is zero.
QString IsoUtcTime(std::int64_t milliseconds);

}  // namespace tessmar
