// archive list, show and check.

#include <algorithm>
#include <cmath>
#include <map>

#include "archive/Store.h"
#include "cli/ArchiveFile.h"
#include "cli/Commands.h"
#include "cli/JsonLine.h"
#include "measure/Scaling.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

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
  return OnArchive(options, [&](Store& store) {
    const UploadRow upload = UploadNamed(store, options.Operands[0]);
    ShowUpload(environment.Out, options.Json, upload, LoggerOf(store, upload));
    std::vector<ChannelRow> channels = store.Channels(upload.Id);
    std::ranges::sort(channels, {}, &ChannelRow::Place);
    if (!options.Json) ShowChannels(environment.Out, channels);
    const Places places = PlacesOf(channels);
    store.ForEachRecord(upload.Id, [&](const RecordRow& record) {
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
