// archive list, show and check.

#include <QFileInfo>
#include <algorithm>
#include <cmath>
#include <map>

#include "archive/Store.h"
#include "cli/Commands.h"
#include "cli/JsonLine.h"
#include "measure/Scaling.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// What the archive's file refuses, in one line.
CommandFailure Refusal(const QString& path, const ArchiveFault& fault) {
  const auto words = [&]() -> TwoLanguages {
    switch (fault.Trouble()) {
      case ArchiveTrouble::Busy:
        return {u"another program holds it just now; try again",
                u"ein anderes Programm hält es gerade; noch einmal versuchen"};
      case ArchiveTrouble::Full:
        return {u"there is no room on the disk", u"auf dem Datenträger ist kein Platz"};
      case ArchiveTrouble::Damaged:
        return {u"it is damaged; Tessmar Logger moves it aside and begins a new one",
                u"es ist beschädigt; Tessmar Logger stellt es beiseite und beginnt ein neues"};
      case ArchiveTrouble::Foreign:
        return {u"it is another program's database",
                u"es ist die Datenbank eines anderen Programms"};
      case ArchiveTrouble::Newer:
        return {u"a later version of this program wrote it; that one reads it",
                u"eine spätere Fassung dieses Programms schrieb es; die liest es"};
      case ArchiveTrouble::NotAFile:
        return {u"it is not a file", u"es ist keine Datei"};
      case ArchiveTrouble::NoDriver:
        return {u"install the package libqt6sql6-sqlite", u"das Paket libqt6sql6-sqlite fehlt"};
      case ArchiveTrouble::Unwritable:
        break;
    }
    return {u"it cannot be opened; check permissions and disk",
            u"es lässt sich nicht öffnen; Rechte und Datenträger prüfen"};
  };
  return CommandFailure(
      TwoLanguages{u"archive %1: %2", u"Archiv %1: %2"}.Text().arg(path, words().Text()));
}

/// Runs work on the archive, opened for reading.
CommandStatus OnArchive(const CommandOptions& options,
                        const std::function<CommandStatus(Store&)>& work) {
  const QString path = options.ArchivePath.isEmpty() ? Store::DefaultPath() : options.ArchivePath;
  if (!QFileInfo::exists(path)) {
    throw CommandFailure(
        TwoLanguages{u"there is no archive at %1", u"es gibt kein Archiv unter %1"}.Text().arg(
            path),
        options.ArchivePath.isEmpty() ? kCommandFailed : kCommandWrongUsage);
  }
  Store store(path);
  try {
    store.Open(Store::Access::Read);
    return work(store);
  } catch (const ArchiveFault& fault) {
    throw Refusal(path, fault);
  }
}

void AddTime(JsonLine& json, const char* key, const QDateTime& time) {
  if (time.isValid()) {
    json.Text(key, UtcText(time));
  } else {
    json.Null(key);
  }
}

void ShowUpload(Output& out, bool asJson, const UploadRow& upload, const LoggerRow& logger) {
  if (!asJson) {
    out.Data(u"%1  %2  %3  %4  %5  %6"_s.arg(upload.Id, 5)
                 .arg(UtcText(upload.Started), NameOf(upload.Kind).leftJustified(7),
                      NameOf(upload.State).leftJustified(11))
                 .arg(upload.Records, 7)
                 .arg(logger.Name));
    return;
  }
  JsonLine json;
  json.Number("id", upload.Id).Text("uuid", upload.Uuid).Text("name", logger.Name);
  if (logger.Model) {
    json.Number("model", *logger.Model);
  } else {
    json.Null("model");
  }
  json.Text("kind", NameOf(upload.Kind));
  AddTime(json, "started", upload.Started);
  AddTime(json, "ended", upload.Ended);
  json.Text("state", NameOf(upload.State))
      .Number("promised", upload.Promised)
      .Number("records", upload.Records)
      .Number("analog", upload.Analog)
      .Number("pulse", upload.Pulse);
  if (upload.ClockOffsetS) {
    json.Number("clock_offset_s", *upload.ClockOffsetS);
  } else {
    json.Null("clock_offset_s");
  }
  json.Text("source", upload.Source).Text("program", upload.Program);
  out.Data(json.Line());
}

LoggerRow LoggerOf(const Store& store, const UploadRow& upload) {
  return store.Logger(upload.LoggerId).value_or(LoggerRow());
}

/// Decimals of each place that the upload has a channel for; nothing for the others.
using Places = std::array<std::optional<int>, kPlaces>;

Places PlacesOf(const std::vector<ChannelRow>& channels) {
  Places places;
  for (const ChannelRow& channel : channels)
    places.at(static_cast<std::size_t>(channel.Place)) = channel.Decimals;
  return places;
}

QString ValueText(const RecordRow& record, std::size_t place, int decimals) {
  const std::optional<double>& value = record.Values[place];
  return value ? FormatValue(*value, decimals) : QString();
}

void ShowRecord(Output& out, bool asJson, const RecordRow& record, const Places& places) {
  JsonLine json;
  json.Number("number", record.Number);
  if (record.LoggerTime.isEmpty()) {
    json.Null("logger_time");
  } else {
    json.Text("logger_time", record.LoggerTime);
  }
  QString line = QString::number(record.Number) + u'\t' + record.LoggerTime;
  for (std::size_t place = 0; place < places.size(); ++place) {
    if (!places[place]) continue;
    const QString value = ValueText(record, place, *places[place]);
    json.Written(PlaceName(static_cast<int>(place)).toLatin1().constData(), value);
    line += u'\t' + value;
  }
  out.Data(asJson ? json.Line() : line);
}

void ShowChannels(Output& out, const std::vector<ChannelRow>& channels) {
  QString head = u"number\tlogger_time"_s;
  for (const ChannelRow& channel : channels)
    head += u'\t' + PlaceName(channel.Place) + u' ' + channel.Name + u' ' + channel.Unit;
  out.Data(head);
}

}  // namespace

CommandStatus RunArchiveList(CommandEnvironment& environment, const CommandOptions& options) {
  return OnArchive(options, [&](Store& store) {
    std::map<qint64, LoggerRow> loggers;
    for (LoggerRow& logger : store.Loggers()) loggers[logger.Id] = logger;
    for (const UploadRow& upload : store.Uploads())
      ShowUpload(environment.Out, options.Json, upload, loggers[upload.LoggerId]);
    return kCommandDone;
  });
}

CommandStatus RunArchiveShow(CommandEnvironment& environment, const CommandOptions& options) {
  bool isNumber = false;
  const qint64 id = options.Operands[0].toLongLong(&isNumber);
  if (!isNumber || id < 1)
    throw CommandFailure(
        TwoLanguages{u"\"%1\" is no number of an upload", u"\"%1\" ist keine Nummer eines Abrufs"}
            .Text()
            .arg(options.Operands[0]),
        kCommandWrongUsage);
  return OnArchive(options, [&](Store& store) {
    const std::optional<UploadRow> upload = store.Upload(id);
    if (!upload)
      throw CommandFailure(
          TwoLanguages{u"there is no upload %1; \"tessmar archive list\" lists them",
                       u"es gibt keinen Abruf %1; \"tessmar archive list\" zeigt "
                       u"sie"}
              .Text()
              .arg(id));
    ShowUpload(environment.Out, options.Json, *upload, LoggerOf(store, *upload));
    std::vector<ChannelRow> channels = store.Channels(id);
    std::ranges::sort(channels, {}, &ChannelRow::Place);
    if (!options.Json) ShowChannels(environment.Out, channels);
    const Places places = PlacesOf(channels);
    store.ForEachRecord(id, [&](const RecordRow& record) {
      ShowRecord(environment.Out, options.Json, record, places);
    });
    return kCommandDone;
  });
}

CommandStatus RunArchiveCheck(CommandEnvironment& environment, const CommandOptions& options) {
  return OnArchive(options, [&](Store& store) {
    QStringList complaints = store.IntegrityComplaints();
    // An upload that has ended has as many records as it says.
    QSqlQuery query = store.Run(
        u"SELECT u.id, u.records, count(r.number) FROM upload u "
        u"LEFT JOIN record r ON r.upload_id = u.id WHERE u.state <> 'running' "
        u"GROUP BY u.id HAVING u.records <> count(r.number) ORDER BY u.id"_s);
    while (query.next()) {
      complaints.append(TwoLanguages{u"upload %1 has %3 records and not %2",
                                     u"Abruf %1 hat %3 Datensätze und nicht %2"}
                            .Text()
                            .arg(query.value(0).toString(), query.value(1).toString(),
                                 query.value(2).toString()));
    }
    for (const QString& complaint : complaints) {
      JsonLine json;
      json.Text("complaint", complaint);
      environment.Out.Data(options.Json ? json.Line() : complaint);
    }
    if (complaints.isEmpty())
      environment.Out.Remark(
          TwoLanguages{u"the archive is in order", u"das Archiv ist in Ordnung"}.Text());
    return complaints.isEmpty() ? kCommandDone : kCommandFailed;
  });
}

}  // namespace tessmar
