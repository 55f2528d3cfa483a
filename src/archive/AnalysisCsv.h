#pragma once

#include <QString>
#include <cstdint>
#include <optional>

#include "archive/ExportTable.h"

class QIODevice;

namespace tessmar {

/// Writes records as CSV for a program to read: UTF-8, one head row, lines that end with CR LF,
/// fields joined by commas and quoted where they have to be (RFC 4180), numbers with a point and
/// the channel's decimals, an empty field for no value.
///
/// The columns are logger_time (ISO 8601, bare, empty in a record that is cut off), corrected_time
/// (ISO 8601, UTC with "Z", empty where nothing is known of the clock), the channels, and
/// disagreement (1 where two uploads disagree, otherwise 0). Two channels of the same heading are
/// told apart by their places.
///
/// @return the number of records written, or nothing when the progress broke the export off. Throws
///     FileFault when the device does not take everything.
std::optional<std::int64_t> WriteAnalysisCsv(QIODevice& device, const ExportHead& head,
                                             const ExportRows& rows,
                                             const ExportProgress& progress);

}  // namespace tessmar
