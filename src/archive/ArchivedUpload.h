#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <vector>

#include "archive/ClockCorrection.h"
#include "archive/LoggerSeries.h"
#include "archive/Store.h"
#include "history/HistoryBuffer.h"
#include "link/LinkState.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// An upload as the viewer needs it: its records, with the settings that it was made with.
struct ArchivedUpload {
  QString LoggerName;  ///< As the logger called itself then.
  LoggerSettings Settings;
  LinkState Link;  ///< Has the channel counts of its records, and is not connected.
  std::unique_ptr<HistoryBuffer> Records;
  bool SettingsKnown = true;  ///< Otherwise no channel is on.
  bool Cut = false;           ///< The upload has more records than the viewer holds.
};

/// Reads an upload; one that is not ended has the records of its blocks. Throws ArchiveFault, and
/// RangeFault when there is none of this number.
ArchivedUpload LoadUpload(const Store& store, qint64 upload);

/// The series of a logger as it stands in the archive.
struct ArchivedSeries {
  std::vector<UploadRow> Rows;  ///< Its uploads of history and images with records, oldest first.
  /// Of each, its stored records; those of an image file in the logger's order, see OldestOfImage.
  std::vector<std::vector<std::uint8_t>> Bytes;
  std::vector<SeriesUpload> Uploads;  ///< The same for the series; refers to Bytes.
  LoggerSeries Series;
  std::vector<ClockReading> Readings;   ///< What is known of the logger's clock.
  std::vector<std::int64_t> Corrected;  ///< By record of the series, see CorrectedTimes.
};

/// Told now and then how many records have been read. May throw, which ends the reading.
using LoadProgress = std::function<void(std::int64_t records)>;

/// Reads and joins the uploads of a logger, without what lies in the bin and without live samples.
/// Throws ArchiveFault.
ArchivedSeries LoadSeries(const Store& store, qint64 logger, const LoadProgress& progress = {});

/// Hands over the records of an upload in their order; of one that is not ended, those of its
/// blocks. Throws ArchiveFault.
void ForEachSample(const Store& store, const UploadRow& upload,
                   const std::function<void(const LiveSample&)>& take);

}  // namespace tessmar
