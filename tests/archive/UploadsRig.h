#pragma once

#include <QUuid>
#include <vector>

#include "archive/Store.h"
#include "settings/config.h"

namespace tessmar::test {

/// An hour of 3 March 2026, UTC.
inline QDateTime Hour(int hour) {
  return {QDate(2026, 3, 3), QTime(hour, 0), Qt::UTC};
}

/// A packed time: so many seconds behind noon of 3 March 2026 by the logger, below 3600.
inline std::uint32_t StampOf(int second) {
  return static_cast<std::uint32_t>((26 * 12 + 2) << 22 | 3 << 17 | 12 << 12 | second / 60 << 6 |
                                    second % 60);
}

/// Settings of a logger with one analog channel in %, as an image.
inline QByteArray ImageOf(const QString& name) {
  LinkState link;
  link.AnalogChannelCount = 1;
  LoggerSettings settings;
  LoadDefaultSettings(settings, 1);
  settings.LoggerName = name;
  settings.SampleInterval = QStringLiteral("15 minutes");
  settings.Analog[0].Enable = 1;
  settings.Analog[0].EngUnits = QStringLiteral("%");
  settings.Analog[0].DecPlaces = 2;
  settings.Analog[0].RawScaleUpper = 10000;
  settings.Analog[0].LowerLimit = 0;
  settings.Analog[0].UpperLimit = 100;
  ConfigImage image;
  PackConfigImage(link, settings, image);
  return {reinterpret_cast<const char*>(image.data()), static_cast<qsizetype>(image.size())};
}

/// A complete upload of one analog channel: each record's seconds behind noon are also its word.
inline qint64 AddUpload(Store& store, qint64 logger, const QDateTime& started,
                        const std::vector<int>& records, const QString& source = {}) {
  const qint64 upload = store.AddUpload({.Uuid = QUuid::createUuid().toString(QUuid::WithoutBraces),
                                         .LoggerId = logger,
                                         .Started = started,
                                         .Ended = started.addSecs(60),
                                         .State = UploadState::Complete,
                                         .Promised = static_cast<std::int32_t>(records.size()),
                                         .Records = static_cast<std::int32_t>(records.size()),
                                         .Settings = ImageOf(store.Logger(logger)->Name),
                                         .Analog = 1,
                                         .Pulse = 0,
                                         .ClockOffsetS = 12,
                                         .Source = source,
                                         .Program = QStringLiteral("test")});
  int number = 0;
  for (const int record : records) {
    QByteArray word(2, '\0');
    word[0] = static_cast<char>(record);
    word[1] = static_cast<char>(record >> 8);
    store.Run(QStringLiteral("INSERT INTO record (upload_id, number, stamp, raw) VALUES (?,?,?,?)"),
              {upload, ++number, StampOf(record), word});
  }
  return upload;
}

}  // namespace tessmar::test
