#include "archive/PushUpload.h"

#include <array>

#include "archive/ServerRows.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// Rows that go at once: enough that the journey costs nothing, few enough to be told of progress.
constexpr int kRecordsAtOnce = 4000;
constexpr int kBlocksAtOnce = 2000;

QVariant OrNull(const QString& text) {
  return text.isEmpty() ? QVariant() : QVariant(text);
}

QVariant OrNull(std::optional<std::int32_t> number) {
  return number ? QVariant(*number) : QVariant();
}

/// The rows of one upload, into its transaction.
class Rows {
 public:
  /// @param again  some of the rows may be there already; they stay.
  Rows(const Server& server, const PieceSent& sent, qint64 serverId, bool again)
      : server_(server),
        sent_(sent),
        id_(serverId),
        ending_(again ? u" ON CONFLICT DO NOTHING"_s : QString()) {}

  void Send(const Store& store, qint64 uploadId) {
    store.ForEachBlock(uploadId, [this](std::span<const std::uint8_t> block) { Add(block); });
    SendBlocks();
    store.ForEachRecord(uploadId, [this](const RecordRow& record) { Add(record); });
    SendRecords();
    SendChannels(store.Channels(uploadId));
  }

 private:
  void Add(std::span<const std::uint8_t> block) {
    // Numbered without a gap, as they are read.
    bytes_.AddBytes(QByteArray::fromRawData(reinterpret_cast<const char*>(block.data()),
                                            static_cast<qsizetype>(block.size())));
    if (bytes_.Count() == kBlocksAtOnce) SendBlocks();
  }

  void SendBlocks() {
    if (bytes_.Count() == 0) return;
    server_.Run(
        u"INSERT INTO tessmar.block (upload_id, number, bytes)"
        " SELECT ?, ? + number, decode(bytes, 'hex')"
        " FROM unnest(?::text[]) WITH ORDINALITY AS rows (bytes, number)"_s +
            ending_,
        {id_, blocks_, bytes_.Text()});
    blocks_ += bytes_.Count();
    bytes_.Clear();
    sent_(0);
  }

  void Add(const RecordRow& record) {
    numbers_.AddNumber(record.Number);
    if (record.Stamp) {
      stamps_.AddNumber(*record.Stamp);
      times_.AddText(ServerTime(record.LoggerTime));
    } else {
      stamps_.AddNull();
      times_.AddNull();
    }
    raw_.AddBytes(record.Raw);
    for (std::size_t place = 0; place < values_.size(); ++place) {
      const std::optional<double>& value = record.Values.at(place);
      if (value) {
        values_.at(place).AddReal(*value);
        used_.at(place) = true;
      } else {
        values_.at(place).AddNull();
      }
    }
    if (numbers_.Count() == kRecordsAtOnce) SendRecords();
  }

  void SendRecords() {
    if (numbers_.Count() == 0) return;
    QString columns = u"number, stamp, logger_time, raw"_s;
    QString from = u"?::integer[], ?::bigint[], ?::timestamp[], ?::text[]"_s;
    QVariantList values{id_, numbers_.Text(), stamps_.Text(), times_.Text(), raw_.Text()};
    for (std::size_t place = 0; place < values_.size(); ++place) {
      // A channel that is off is NULL anyway.
      if (!used_.at(place)) continue;
      columns += u", "_s + PlaceName(static_cast<int>(place));
      from += u", ?::float8[]"_s;
      values.append(values_.at(place).Text());
    }
    QString chosen = columns;
    chosen.replace(u" raw"_s, u" decode(raw, 'hex')"_s);
    server_.Run(
        u"INSERT INTO tessmar.record (upload_id, %1) SELECT ?, %2 FROM unnest(%3)"
        " AS rows (%1)"_s.arg(columns, chosen, from) +
            ending_,
        values);
    sent_(numbers_.Count());
    ClearRecords();
  }

  void ClearRecords() {
    for (ServerArray* column : {&numbers_, &stamps_, &times_, &raw_}) column->Clear();
    for (ServerArray& column : values_) column.Clear();
    used_ = {};
  }

  void SendChannels(const std::vector<ChannelRow>& channels) {
    for (const ChannelRow& channel : channels) {
      server_.Run(
          u"INSERT INTO tessmar.channel (upload_id, place, name, unit, decimals, method)"
          " VALUES (?, ?, ?, ?, ?, ?)"_s +
              ending_,
          {id_, PlaceName(channel.Place), channel.Name.isNull() ? u""_s : channel.Name,
           channel.Unit.isNull() ? u""_s : channel.Unit, channel.Decimals, OrNull(channel.Method)});
    }
  }

  const Server& server_;
  const PieceSent& sent_;
  qint64 id_;
  QString ending_;
  ServerArray bytes_;
  int blocks_ = 0;  ///< Sent so far.
  ServerArray numbers_;
  ServerArray stamps_;
  ServerArray times_;
  ServerArray raw_;
  std::array<ServerArray, kPlaces> values_;
  std::array<bool, kPlaces> used_ = {};
};

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
  Rows(server, sent, made.value(0).toLongLong(), false).Send(store, uploadId);
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
  Rows(server, sent, changed.value(0).toLongLong(), true).Send(store, uploadId);
  transaction.Commit();
  return true;
}

}  // namespace tessmar
