#include "archive/LastSettings.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "settings/config.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// What an event tells of the settings after it.
struct Told {
  bool Anything = false;
  KnownSettings Settings;  ///< With an empty image after an initialisation.
};

Told ToldBy(const LogbookEntry& entry, const QDateTime& at) {
  Told told{.Settings = {.From = entry.Kind, .At = at}};
  if (entry.Kind == EventKind::Initialized) {
    told.Anything = true;
  } else if (entry.Kind == EventKind::Programmed) {
    told.Settings.Image = entry.After;
  } else if (entry.Kind == EventKind::Connected) {
    const QJsonObject state = QJsonDocument::fromJson(entry.After).object();
    told.Settings.Image = QByteArray::fromHex(state.value("settings"_L1).toString().toLatin1());
  }
  if (told.Settings.Image.size() == kConfigImageSize) told.Anything = true;
  return told;
}

/// Keeps the newer one; of two of the same second, the one that is told last.
void Take(Told& newest, const Told& other) {
  if (other.Anything && (!newest.Anything || other.Settings.At >= newest.Settings.At))
    newest = other;
}

Told ToldByUpload(const QByteArray& image, const QDateTime& at) {
  return {.Anything = image.size() == kConfigImageSize,
          .Settings = {.Image = image, .From = EventKind::Uploaded, .At = at}};
}

Told ToldByUploads(const Store& store, qint64 loggerId) {
  QSqlQuery upload = store.Run(
      u"SELECT settings, started FROM upload WHERE logger_id = ? AND kind IN ('history', 'live')"
      " AND length(settings) = ? ORDER BY started DESC, id DESC LIMIT 1"_s,
      {loggerId, kConfigImageSize});
  if (!upload.next()) return {};
  return ToldByUpload(upload.value(0).toByteArray(), UtcTime(upload.value(1).toString()));
}

Told ToldByEvents(const Store& store, qint64 loggerId) {
  QSqlQuery events = store.Run(
      u"SELECT kind, at, after FROM event WHERE logger_id = ? AND kind IN ('programmed',"
      " 'connected', 'initialized') ORDER BY at DESC, id DESC"_s,
      {loggerId});
  while (events.next()) {
    const std::optional<EventKind> kind = EventKindOf(events.value(0).toString());
    if (!kind) continue;
    Told told = ToldBy({.Kind = *kind, .After = events.value(2).toByteArray()},
                       UtcTime(events.value(1).toString()));
    if (told.Anything) return told;
  }
  return {};
}

}  // namespace

std::optional<KnownSettings> FindLastSettings(const Store* store, const JournalQueue& queue,
                                              const LoggerName& logger) {
  Told newest;
  if (store != nullptr) {
    if (const std::optional<LoggerRow> row = store->LoggerFor(logger.Name, logger.Model)) {
      newest = ToldByUploads(*store, row->Id);
      Take(newest, ToldByEvents(*store, row->Id));
    }
  }
  const auto isOurs = [&](const LoggerName& other) {
    return other.Name == logger.Name && other.Model == logger.Model;
  };
  for (const KeptUpload& upload : queue.Uploads) {
    if (isOurs(upload.Logger) && upload.Row.Kind != UploadKind::Image)
      Take(newest, ToldByUpload(upload.Row.Settings, upload.Row.Started));
  }
  for (const KeptEvent& event : queue.Events) {
    if (isOurs(event.Logger)) Take(newest, ToldBy(event.Row.Entry, event.Row.At));
  }
  if (newest.Settings.Image.isEmpty()) return std::nullopt;
  return newest.Settings;
}

}  // namespace tessmar
