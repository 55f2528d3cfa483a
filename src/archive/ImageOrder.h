#pragma once

#include <cstdint>
#include <span>

#include "archive/LoggerSeries.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// Whether a logger's memory may have begun to overwrite its oldest records: it is set to, and all
/// its data pages are full, or as many as an import takes.
/// @param recordSize  in bytes.
/// @param records     that the image has.
bool MayHaveWrapped(const LoggerSettings& settings, int recordSize, std::int32_t records);

/// Where the logger's oldest record stands in an image file. A file has the records in the order of
/// the memory's pages; in a memory that is full and overwrites its oldest records they begin
/// somewhere in the middle.
///
/// @param image  as the file has it.
/// @param wraps  see MayHaveWrapped.
/// @return the record's place in the file; 0 where the file's own order is the logger's, and where
///   nobody can tell: then the clock steps back more than once, or ends later than it begins.
std::int32_t OldestOfImage(const SeriesUpload& image, bool wraps);

}  // namespace tessmar
