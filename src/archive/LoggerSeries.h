#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tessmar {

/// An upload as the series of a logger sees it.
struct SeriesUpload {
  /// The era of an upload of which it is not known between which clearings it was taken.
  static constexpr std::int32_t kAnyEra = -1;

  /// The records one behind the other as the logger stores them: four bytes of time stamp, then the
  /// words, low byte first. Bytes of a part of a record at the end are left out.
  std::span<const std::uint8_t> Records;
  int RecordSize = 0;    ///< In bytes, see RecordSize() in measure/Sample.h.
  bool Complete = true;  ///< Ends with the newest record that the logger had.
  /// How often the logger was cleared before, as far as it is known. Uploads of two eras have no
  /// record in common, however alike these are.
  std::int32_t Era = kAnyEra;
  /// An image file: nobody knows when its records were read from the logger.
  bool Undated = false;

  std::int32_t Count() const {
    return RecordSize < 4 ? 0 : static_cast<std::int32_t>(Records.size() / RecordSizeAsSize());
  }
  /// The bytes of record 0 to Count() - 1.
  std::span<const std::uint8_t> Record(std::int32_t number) const {
    return Records.subspan(static_cast<std::size_t>(number) * RecordSizeAsSize(),
                           RecordSizeAsSize());
  }
  /// The packed time stamp of record 0 to Count() - 1.
  std::uint32_t Stamp(std::int32_t number) const;

 private:
  std::size_t RecordSizeAsSize() const { return static_cast<std::size_t>(RecordSize); }
};

/// One record of a series, by the upload that had it first.
struct SeriesRecord {
  std::int32_t Upload = 0;  ///< From 0, as they were given.
  std::int32_t Number = 0;  ///< Of the record in this upload, from 0.
  /// Another upload has the records before and behind it, but not this one between them.
  bool Disputed = false;
  /// No upload reaches across the place before it: records may be missing there. True for the
  /// first of all.
  bool AfterSeam = false;
  /// The overlap that ends before it could as well be shorter, so that some records before it may
  /// stand for more equal ones.
  bool OverlapUnsure = false;
  bool operator==(const SeriesRecord&) const = default;
};

/// The joined uploads of a logger.
struct LoggerSeries {
  std::vector<SeriesRecord> Records;
  /// By upload: the place behind its last record, or -1 for an upload without records.
  std::vector<std::int32_t> UploadEnds;
};

/// Joins the uploads of one logger: each record once, in the logger's order. docs/series.md tells
/// the rule. Every upload is contained in the result, with all its records in its own order.
///
/// @param uploads  in the order in which they were taken. Five million records take some seconds.
LoggerSeries JoinUploads(std::span<const SeriesUpload> uploads);

}  // namespace tessmar
