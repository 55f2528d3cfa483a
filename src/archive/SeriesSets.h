#pragma once

#include "archive/ArchivedUpload.h"
#include "archive/Store.h"
#include "base/SystemLocale.h"
#include "measure/Series.h"

namespace tessmar {

/// The whole series of a logger for looking at: its uploads of history and images joined, the
/// values of each by its own settings, with corrected times, seams, disputes, and what happened to
/// the logger as marks.
///
/// A channel whose unit differs between uploads is as many channels as it has units, each without a
/// value where the others have theirs. Channels come by place, the older unit first.
///
/// Reads the archive; throws ArchiveFault.
SeriesSet SeriesSetOfLogger(const Store& store, qint64 logger, const SystemLocale& locale);

/// One upload in the same way, with the corrected times and the marks of its logger. A kept live
/// run has no intervals: what lies farther apart than most of it is a hole.
///
/// @param upload  as LoadUpload read it.
SeriesSet SeriesSetOfUpload(const Store& store, qint64 id, const ArchivedUpload& upload,
                            const SystemLocale& locale);

}  // namespace tessmar
