#include "archive/PushUpload.h"

#include "archive/ServerCopy.h"
#include "archive/ServerRows.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// Rows that go at once: enough that it costs nothing, few enough to be told of progress.
constexpr int kRowsAtOnce = 4000;

QVariant OrNull(const QString& text) {
  return text.isEmpty() ? QVariant() : QVariant(text);
}

QVariant OrNull(std::optional<std::int32_t> number) {
  return number ? QVariant(*number) : QVariant();
}

void AddBlock(ServerRows& rows, qint64 uploadId, qint64 number, const QByteArray& bytes) {
  rows.AddNumber(uploadId);
  rows.AddNumber(number);
  rows.AddBytes(bytes);
  rows.EndRow();
}

void AddRecord(ServerRows& rows, qint64 uploadId, const RecordRow& record) {
  rows.AddNumber(uploadId);
  rows.AddNumber(record.Number);
  if (record.Stamp) {
    rows.AddNumber(*record.Stamp);
    rows.AddPlain(ServerTime(record.LoggerTime));
  } else {
    rows.AddNull();
    rows.AddNull();
  }
  rows.AddBytes(record.Raw);
  for (const std::optional<double>& value : record.Values) {
    if (value) {
      rows.AddReal(*value);
    } else {
      rows.AddNull();
    }
  }
  rows.EndRow();
}

/// The rows of one upload, into its transaction.
class Rows {
 public:
  Rows(const Server& server, const PieceSent& sent, qint64 serverId)
      : server_(server), sent_(sent), id_(serverId) {}

  /// @param blocks, records  that are there already: the first ones, with these numbers.
  void Send(const Store& store, qint64 uploadId, qint64 blocks = 0, qint64 records = 0) {
    SendBlocks(store, uploadId, blocks);
    SendRecords(store, uploadId, records);
    SendChannels(store.Channels(uploadId));
  }

 private:
  void SendBlocks(const Store& store, qint64 uploadId, qint64 there) {
    ServerCopy copy(server_, u"block (upload_id, number, bytes)"_s);
    qint64 number = 0;
    store.ForEachBlock(uploadId, [&](std::span<const std::uint8_t> block) {
      // Numbered without a gap, as they are read.
      if (++number <= there) return;
      AddBlock(rows_, id_, number,
               QByteArray::fromRawData(reinterpret_cast<const char*>(block.data()),
                                       static_cast<qsizetype>(block.size())));
      if (rows_.Count() == kRowsAtOnce) SendPiece(copy, 0);
    });
    SendPiece(copy, 0);
    copy.Finish();
  }

  void SendRecords(const Store& store, qint64 uploadId, qint64 there) {
    ServerCopy copy(server_,
                    u"record (upload_id, number, stamp, logger_time, raw, a1, a2, a3, a4, a5, a6,"
                    " a7, a8, p1, p2)"_s);
    store.ForEachRecord(uploadId, [&](const RecordRow& record) {
      if (record.Number <= there) return;
      AddRecord(rows_, id_, record);
      if (rows_.Count() == kRowsAtOnce) SendPiece(copy, rows_.Count());
    });
    SendPiece(copy, rows_.Count());
    copy.Finish();
  }

  void SendPiece(ServerCopy& copy, int records) {
    copy.Send(rows_.Text());
    rows_.Clear();
    sent_(records);
  }

  void SendChannels(const std::vector<ChannelRow>& channels) {
    for (const ChannelRow& channel : channels) {
      server_.Run(
          u"INSERT INTO tessmar.channel (upload_id, place, name, unit, decimals, method)"
          " VALUES (?, ?, ?, ?, ?, ?) ON CONFLICT DO NOTHING"_s,
          {id_, PlaceName(channel.Place), channel.Name.isNull() ? u""_s : channel.Name,
           channel.Unit.isNull() ? u""_s : channel.Unit, channel.Decimals, OrNull(channel.Method)});
    }
  }

  const Server& server_;
  const PieceSent& sent_;
  qint64 id_;
  ServerRows rows_;
};

// How many rows of an upload are there; they are the first ones, for they came whole.
qint64 CountThere(const Server& server, const QString& table, qint64 serverId) {
  QSqlQuery query = server.Run(
      u"SELECT coalesce(max(number), 0) FROM tessmar.%1 WHERE upload_id = ?"_s.arg(table),
      {serverId});
  return query.next() ? query.value(0).toLongLong() : 0;
}

UploadRow Existing(const Store& store, qint64 id) {
  const std::optional<UploadRow> upload = store.Upload(id);
  // Somebody has emptied the bin in this moment.
  if (!upload) throw ArchiveFault(ArchiveTrouble::Busy, "an upload went away");
  return *upload;
}

}  // namespace

bool PushUpload(const Store& store, const Server& server, qint64 uploadId,
                const QString& loggerUuid, const PieceSent& sent) {
  const UploadRow upload = Existing(store, uploadId);
  ServerTransaction transaction(server);
  QSqlQuery made = server.Run(
      u"INSERT INTO tessmar.upload (uuid, logger_id, kind, started, ended, owner, state, promised,"
      " records, settings, analog, pulse, clock_offset_s, source, program)"
      " SELECT ?::uuid, logger.id, ?, ?::timestamptz, ?::timestamptz, ?, ?, ?, ?, decode(?, 'hex'),"
      " ?, ?, ?, ?, ? FROM tessmar.logger WHERE uuid = ?::uuid"
      " ON CONFLICT (uuid) DO NOTHING RETURNING id"_s,
      {upload.Uuid, NameOf(upload.Kind), UtcText(upload.Started), OrNull(UtcText(upload.Ended)),
       OrNull(upload.Owner), NameOf(upload.State), upload.Promised, upload.Records,
       upload.Settings.isNull() ? QVariant()
                                : QVariant(QString::fromLatin1(upload.Settings.toHex())),
       upload.Analog, upload.Pulse, OrNull(upload.ClockOffsetS), OrNull(upload.Source),
       OrNull(upload.Program), loggerUuid});
  if (!made.next()) {
    // There already, or not brought: never the one for the other.
    if (server.Run(u"SELECT FROM tessmar.upload WHERE uuid = ?::uuid"_s, {upload.Uuid}).size() == 1)
      return false;
    throw ServerFault(ServerTrouble::Refused, u"the logger of an upload is not there"_s);
  }
  Rows(server, sent, made.value(0).toLongLong()).Send(store, uploadId);
  transaction.Commit();
  return true;
}

bool PushChangedUpload(const Store& store, const Server& server, qint64 uploadId,
                       const PieceSent& sent) {
  const UploadRow upload = Existing(store, uploadId);
  ServerTransaction transaction(server);
  // The same order as in StateIsLater.
  QSqlQuery changed = server.Run(
      u"UPDATE tessmar.upload SET state = ?, ended = ?::timestamptz,"
      " records = greatest(records, ?) WHERE uuid = ?::uuid AND"
      " (coalesce(ended, '-infinity'), records) <"
      " (coalesce(?::timestamptz, '-infinity'), ?) RETURNING id"_s,
      {NameOf(upload.State), OrNull(UtcText(upload.Ended)), upload.Records, upload.Uuid,
       OrNull(UtcText(upload.Ended)), upload.Records});
  if (!changed.next()) return false;
  const qint64 id = changed.value(0).toLongLong();
  Rows(server, sent, id)
      .Send(store, uploadId, CountThere(server, u"block"_s, id),
            CountThere(server, u"record"_s, id));
  transaction.Commit();
  return true;
}

}  // namespace tessmar
