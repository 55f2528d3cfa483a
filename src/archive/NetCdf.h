#pragma once

#include <QByteArray>
#include <optional>

#include "archive/ExportTable.h"

namespace tessmar {

/// Makes a NetCDF-4 file of records, by the CF conventions 1.8: one station with a series of
/// records in the contiguous ragged array representation, so that times that were set back stay in
/// the logger's order.
///
/// Dimensions: station (1), obs (the records), name_length. Variables: station_name, lat and lon
/// (unknown, to be filled in), row_size, time (the logger's clock), time_corrected (UTC, the fill
/// value where nothing is known), a variable for each channel named by its place, and disagreement
/// (1 where two uploads disagree). A channel's long_name is the logger's own text, units the
/// spelling of UDUNITS where the unit is known, comment the method of a derived value.
///
/// The file is made in memory, so that a full disk cannot harm one that stands there already.
///
/// @return the bytes of the file, or nothing when the progress broke the export off. Throws
///     FileFault when the library cannot make the file.
std::optional<QByteArray> MakeNetCdf(const ExportHead& head, const ExportRows& rows,
                                     const ExportProgress& progress);

}  // namespace tessmar
