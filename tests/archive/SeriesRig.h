#pragma once

#include <cstdint>
#include <vector>

#include "archive/LoggerSeries.h"

namespace tessmar {

/// An upload written as whole numbers: equal numbers are equal records, and a greater number has a
/// later stamp.
struct PlainUpload {
  std::vector<std::uint32_t> Records;
  bool Complete = true;
  std::int32_t Era = SeriesUpload::kAnyEra;
  bool Undated = false;
};

/// Keeps the bytes that uploads refer to.
class UploadBytes {
 public:
  explicit UploadBytes(const std::vector<PlainUpload>& uploads) {
    for (const PlainUpload& upload : uploads) {
      std::vector<std::uint8_t>& bytes = bytes_.emplace_back();
      for (const std::uint32_t number : upload.Records) {
        // Stamp, then one word: two numbers that differ in their lowest bit share the stamp.
        const std::uint32_t stamp = number / 2;
        for (int shift = 0; shift < 32; shift += 8)
          bytes.push_back(static_cast<std::uint8_t>(stamp >> shift));
        bytes.push_back(static_cast<std::uint8_t>(number % 2));
        bytes.push_back(7);
      }
    }
    for (std::size_t i = 0; i < uploads.size(); ++i) {
      uploads_.push_back({.Records = bytes_[i],
                          .RecordSize = 6,
                          .Complete = uploads[i].Complete,
                          .Era = uploads[i].Era,
                          .Undated = uploads[i].Undated});
    }
  }

  const std::vector<SeriesUpload>& Uploads() const { return uploads_; }

 private:
  std::vector<std::vector<std::uint8_t>> bytes_;
  std::vector<SeriesUpload> uploads_;
};

inline std::vector<SeriesRecord> Joined(const std::vector<PlainUpload>& uploads) {
  return JoinUploads(UploadBytes(uploads).Uploads()).Records;
}

/// The records of a series as the whole numbers that they were written as.
inline std::vector<std::uint32_t> Numbers(const std::vector<PlainUpload>& uploads,
                                          const std::vector<SeriesRecord>& series) {
  std::vector<std::uint32_t> numbers;
  for (const SeriesRecord& record : series) {
    numbers.push_back(uploads[static_cast<std::size_t>(record.Upload)]
                          .Records[static_cast<std::size_t>(record.Number)]);
  }
  return numbers;
}

}  // namespace tessmar
