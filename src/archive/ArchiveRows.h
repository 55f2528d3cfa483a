#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <array>
#include <cstdint>
#include <optional>

#include "base/Logbook.h"
#include "history/BlockSink.h"
#include "measure/Sample.h"

namespace tessmar {

/// The rows of the archive's tables, as docs/file-formats.md describes them. An Id is the row's
/// number in this file, 0 while it has none; a Uuid is the same in every archive.

/// How far an upload has come, or how it ended.
enum class UploadState { Running, Complete, Full, Cancelled, Failed, Interrupted };

struct LoggerRow {
  qint64 Id = 0;
  QString Uuid = {};  ///< Of the logger's own name and model, see LoggerUuid.
  QString Name = {};  ///< The logger's own until somebody renames it in the archive.
  std::optional<int> Model = {};
  std::optional<int> Firmware = {};
  QDateTime FirstSeen = {};  ///< UTC.
  QDateTime LastSeen = {};   ///< UTC.
};

struct UploadRow {
  qint64 Id = 0;
  QString Uuid = {};
  qint64 LoggerId = 0;
  UploadKind Kind = UploadKind::History;
  QDateTime Started = {};  ///< UTC.
  QDateTime Ended = {};    ///< UTC; invalid while it runs and where nobody knows.
  QString Owner = {};      ///< The process that writes it, see ProcessOwner.
  UploadState State = UploadState::Running;
  std::int32_t Promised = 0;
  std::int32_t Records = 0;                       ///< 0 while it runs.
  QByteArray Settings = {};                       ///< The configuration image, 315 bytes.
  int Analog = 0;                                 ///< Channels of its records, 0 to 8.
  int Pulse = 0;                                  ///< 0 to 2.
  std::optional<std::int32_t> ClockOffsetS = {};  ///< Logger minus computer.
  QString Source = {};
  QString Program = {};
};

/// Places of a record's values: a1 to a8 are 0 to 7, p1 and p2 are 8 and 9.
inline constexpr int kPlaces = kSampleValues;

struct RecordRow {
  std::int32_t Number = 0;                  ///< From 1.
  std::optional<std::uint32_t> Stamp = {};  ///< The packed time as stored; none in a cut record.
  QString LoggerTime = {};                  ///< "2026-03-03T12:00:00", or empty without a stamp.
  QByteArray Raw = {};                      ///< The words, low byte first.
  std::array<std::optional<double>, kPlaces> Values = {};
};

struct ChannelRow {
  int Place = 0;        ///< 0 to 9.
  QString Name = {};    ///< "Channel 3", "Pulse 1", or the derived quantity.
  QString Unit = {};    ///< The text that the logger has for it.
  int Decimals = 0;     ///< 0 to 6.
  QString Method = {};  ///< How a derived value was made; empty for a channel's own reading.
};

struct EventRow {
  qint64 Id = 0;
  QString Uuid = {};
  qint64 LoggerId = 0;
  QDateTime At = {};  ///< UTC.
  LogbookEntry Entry = {};
};

/// "a1" to "a8", "p1", "p2". Throws RangeFault outside 0 to 9.
QString PlaceName(int place);

/// The words of the tables for kinds and states, both ways. What a table does not know reads as
/// nothing.
QString NameOf(UploadKind kind);
QString NameOf(UploadState state);
QString NameOf(EventKind kind);
std::optional<UploadKind> UploadKindOf(const QString& name);
std::optional<UploadState> UploadStateOf(const QString& name);
std::optional<EventKind> EventKindOf(const QString& name);

/// Times of the computer's clock as the archive writes them, "2026-03-03T12:00:00Z"; empty and
/// invalid stand for each other.
QString UtcText(const QDateTime& time);
QDateTime UtcTime(const QString& text);

/// The uuid of a logger, the same on every computer: version 5, of the name space
/// 6f1d1a52-2a1c-5c0e-9d43-7d0c6b0e5a11 and the text "model/name" in UTF-8, with nothing ahead of
/// the stroke where the model is not known.
QString LoggerUuid(const QString& name, std::optional<int> model);

}  // namespace tessmar
