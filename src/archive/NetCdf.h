#pragma once

#include <QByteArrayView>
#include <cstdlib>
#include <memory>
#include <optional>

#include "archive/ExportTable.h"

namespace tessmar {

/// The bytes of a NetCDF file.
class NetCdfBytes {
 public:
  /// Takes memory of malloc.
  NetCdfBytes(void* memory, qsizetype size) : memory_(memory, &std::free), size_(size) {}

  QByteArrayView View() const { return {static_cast<const char*>(memory_.get()), size_}; }

 private:
  std::unique_ptr<void, decltype(&std::free)> memory_;
  qsizetype size_;
};

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
/// The file is made in memory, 8 bytes for each value and each of the two times: the library ends
/// the whole process when a disk is full.
///
/// @return nothing when the progress broke the export off. Throws FileFault when the library cannot
///     make the file, NetCdfMissing when it is not installed.
std::optional<NetCdfBytes> MakeNetCdf(const ExportHead& head, const ExportRows& rows,
                                      const ExportProgress& progress);

}  // namespace tessmar
