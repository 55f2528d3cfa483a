#pragma once

#include <deque>
#include <optional>
#include <span>
#include <vector>

#include "archive/ArchiveRows.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// What the archive knows a logger by.
struct LoggerName {
  QString Name;
  std::optional<int> Model;
  std::optional<int> Firmware;
};

/// An upload that the archive does not have whole yet. All its blocks stay here until its records
/// are written, so that a file that is taken away in the middle costs nothing.
struct KeptUpload {
  UploadRow Row;  ///< Id 0 until it is in the file.
  LoggerName Logger;
  LoggerSettings Settings = {};
  std::vector<QByteArray> Blocks = {};
  std::size_t Written = 0;  ///< Blocks that are in the file.
  /// How it ended; nothing while it goes on.
  std::optional<UploadState> End = {};
  /// Read from the file, where another process has left it.
  bool Recovered = false;
  /// It has been said that it was not kept.
  bool Told = false;

  std::int32_t RecordsOf(std::size_t first, std::size_t last) const;
  std::int32_t Records() const { return RecordsOf(0, Blocks.size()); }
  bool IsWritten() const { return Row.Id != 0 && Written == Blocks.size(); }
};

struct KeptEvent {
  EventRow Row;
  LoggerName Logger;
};

/// What waits for the archive, the oldest first.
struct JournalQueue {
  std::deque<KeptUpload> Uploads;
  std::deque<KeptEvent> Events;

  /// True while a block, an event or an upload's beginning is not in the file.
  bool IsUnwritten() const;
  /// The first upload that has ended and is in the file but for its records.
  KeptUpload* NextToFill();
  /// Begins anew with another file: nothing of it is written. What was read from the old file is
  /// not brought over.
  void ForgetWritten();
};

inline std::span<const std::uint8_t> BytesOf(const QByteArray& bytes) {
  return {reinterpret_cast<const std::uint8_t*>(bytes.constData()),
          static_cast<std::size_t>(bytes.size())};
}

}  // namespace tessmar
