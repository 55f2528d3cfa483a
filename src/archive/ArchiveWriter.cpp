#include "archive/ArchiveWriter.h"

#include <QFileInfo>
#include <utility>
#include <vector>

#include "archive/ProcessOwner.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

const auto kInsertRecord =
    u"INSERT INTO record (upload_id, number, stamp, logger_time, raw, a1, a2, a3, a4, a5, a6, a7,"
    " a8, p1, p2) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"_s;

void BindRecord(QSqlQuery& query, const RecordRow& record) {
  query.bindValue(1, record.Number);
  query.bindValue(2, record.Stamp ? QVariant(static_cast<qint64>(*record.Stamp)) : QVariant());
  query.bindValue(3, record.Stamp ? QVariant(record.LoggerTime) : QVariant());
  query.bindValue(4, record.Raw);
  for (int place = 0; place < kPlaces; ++place) {
    const std::optional<double> value = record.Values[static_cast<std::size_t>(place)];
    query.bindValue(5 + place, value ? QVariant(*value) : QVariant());
  }
}

// True for an upload that its process has left running.
bool IsLeft(const Store& store, qint64 id) {
  QSqlQuery query = store.Run(u"SELECT state FROM upload WHERE id = ?"_s, {id});
  return query.next() && UploadStateOf(query.value(0).toString()) == UploadState::Running;
}

}  // namespace

struct ArchiveWriter::Filling {
  Filling(Store& store, const KeptUpload& upload)
      : Changes(store),
        Maker(upload.Settings, upload.Row.Analog, upload.Row.Pulse),
        Insert(store.Prepare(kInsertRecord)),
        UploadId(upload.Row.Id) {
    Insert.bindValue(0, UploadId);
  }

  Transaction Changes;
  RecordMaker Maker;
  QSqlQuery Insert;
  qint64 UploadId;
  RecordRow Record;
  std::size_t Block = 0;
};

ArchiveWriter::ArchiveWriter(const QString& storePath, JournalQueue& queue)
    : store_(storePath), queue_(queue) {}

ArchiveWriter::~ArchiveWriter() = default;

void ArchiveWriter::StopFilling() {
  filling_.reset();
}

void ArchiveWriter::Open() {
  if (store_.IsOpen()) {
    if (store_.FileIsThere()) return;
    Close();
    queue_.ForgetWritten();
  }
  store_.Open(Store::Access::Write);
  Recover();
}

void ArchiveWriter::Close() {
  filling_.reset();
  // SQLite removes a side file by its name: it may not come to that when the name is another's.
  checkpoint_.Wait();
  store_.Close();
}

void ArchiveWriter::Recover() {
  std::vector<qint64> left;
  QSqlQuery running = store_.Run(u"SELECT id, owner FROM upload WHERE state = 'running'"_s);
  while (running.next()) {
    if (OwnerHasEnded(running.value(1).toString())) left.push_back(running.value(0).toLongLong());
  }
  std::erase_if(queue_.Uploads, [](const KeptUpload& upload) { return upload.Recovered; });
  for (const qint64 id : left) {
    const std::optional<UploadRow> row = store_.Upload(id);
    if (!row) continue;
    KeptUpload upload{.Row = *row,
                      .Logger = {},
                      .Settings = SettingsOfImage(row->Settings, row->Analog, row->Pulse),
                      .End = UploadState::Interrupted,
                      .Recovered = true};
    store_.ForEachBlock(id, [&upload](std::span<const std::uint8_t> block) {
      upload.Blocks.emplace_back(reinterpret_cast<const char*>(block.data()),
                                 static_cast<qsizetype>(block.size()));
    });
    upload.Written = upload.Blocks.size();
    queue_.Uploads.push_front(std::move(upload));
  }
}

void ArchiveWriter::Write() {
  filling_.reset();
  std::vector<qint64> ids;
  {
    Transaction transaction(store_);
    for (KeptUpload& upload : queue_.Uploads) ids.push_back(WriteUpload(upload));
    for (const KeptEvent& event : queue_.Events) {
      EventRow row = event.Row;
      row.LoggerId = store_.SeeLogger(event.Logger.Name, event.Logger.Model, event.Logger.Firmware,
                                      event.Row.At);
      store_.AddEvent(row);
    }
    transaction.Commit();
  }
  checkpoint_.BeginIfWorth(store_.Path());
  queue_.Events.clear();
  for (std::size_t i = 0; i < ids.size(); ++i) {
    KeptUpload& upload = queue_.Uploads[i];
    upload.Row.Id = ids[i];
    upload.Written = upload.Blocks.size();
  }
}

// Gives the upload's id; it is the caller's to note it once all is committed.
qint64 ArchiveWriter::WriteUpload(KeptUpload& upload) {
  if (upload.IsWritten()) return upload.Row.Id;
  qint64 id = upload.Row.Id;
  if (id == 0) {
    // It is there already when a file has come back that was taken away.
    store_.Run(u"DELETE FROM upload WHERE uuid = ?"_s, {upload.Row.Uuid});
    UploadRow row = upload.Row;
    row.LoggerId = store_.SeeLogger(upload.Logger.Name, upload.Logger.Model, upload.Logger.Firmware,
                                    row.Started);
    id = store_.AddUpload(row);
  }
  WriteBlocks(upload, id);
  return id;
}

// A commit that failed may stand in the file nevertheless: whatever was not known to be there is
// written so that it is there once.
void ArchiveWriter::WriteBlocks(const KeptUpload& upload, qint64 id) {
  QSqlQuery insert = store_.Prepare(
      u"INSERT INTO block (upload_id, number, bytes) VALUES (?, ?, ?)"
      " ON CONFLICT (upload_id, number) DO UPDATE SET bytes = excluded.bytes"_s);
  insert.bindValue(0, id);
  for (std::size_t i = upload.Written; i < upload.Blocks.size(); ++i) {
    insert.bindValue(1, static_cast<qint64>(i) + 1);
    insert.bindValue(2, upload.Blocks[i]);
    Store::Execute(insert);
  }
}

bool ArchiveWriter::Fill(const std::function<bool()>& goOn) {
  KeptUpload* upload = queue_.NextToFill();
  if (upload == nullptr) return false;
  if (!filling_ || filling_->UploadId != upload->Row.Id) {
    BeginFilling(*upload);
    if (!filling_) return queue_.NextToFill() != nullptr;
  }
  Filling& filling = *filling_;
  for (; filling.Block < upload->Blocks.size(); ++filling.Block) {
    if (filling.Block > 0 && !goOn()) {
      Checkpoint::StartWritingOut(store_.Path());
      return true;
    }
    const std::span<const std::uint8_t> block = BytesOf(upload->Blocks[filling.Block]);
    for (int k = 0; k < filling.Maker.CountOf(block); ++k) {
      filling.Maker.Make(block, k, filling.Record);
      ++filling.Record.Number;
      BindRecord(filling.Insert, filling.Record);
      Store::Execute(filling.Insert);
    }
  }
  EndFilling();
  return queue_.NextToFill() != nullptr;
}

void ArchiveWriter::BeginFilling(KeptUpload& upload) {
  filling_.reset();
  auto filling = std::make_unique<Filling>(store_, upload);
  if (upload.Recovered && !IsLeft(store_, upload.Row.Id)) {
    // Another program was quicker.
    Forget(upload.Row.Id);
    return;
  }
  store_.Run(u"DELETE FROM record WHERE upload_id = ?"_s, {upload.Row.Id});
  store_.Run(u"DELETE FROM channel WHERE upload_id = ?"_s, {upload.Row.Id});
  for (const ChannelRow& channel : filling->Maker.Channels()) {
    store_.Run(
        u"INSERT INTO channel (upload_id, place, name, unit, decimals, method)"
        " VALUES (?, ?, ?, ?, ?, ?)"_s,
        {upload.Row.Id, PlaceName(channel.Place), channel.Name,
         channel.Unit.isNull() ? u""_s : channel.Unit, channel.Decimals,
         channel.Method.isEmpty() ? QVariant() : QVariant(channel.Method)});
  }
  filling_ = std::move(filling);
}

void ArchiveWriter::EndFilling() {
  KeptUpload& upload = *queue_.NextToFill();
  const QString ended = UtcText(upload.Row.Ended);
  store_.Run(u"UPDATE upload SET state = ?, ended = ?, records = ? WHERE id = ?"_s,
             {NameOf(*upload.End), ended.isEmpty() ? QVariant() : QVariant(ended),
              filling_->Record.Number, upload.Row.Id});
  filling_->Insert.finish();
  filling_->Changes.Commit();
  filling_.reset();
  checkpoint_.BeginIfWorth(store_.Path());
  Forget(upload.Row.Id);
}

void ArchiveWriter::Forget(qint64 id) {
  std::erase_if(queue_.Uploads, [id](const KeptUpload& upload) { return upload.Row.Id == id; });
}

std::optional<QString> ArchiveWriter::MoveAside(const QDateTime& now) {
  Close();
  const QString aside = store_.MoveAside(now);
  if (aside.isEmpty()) return std::nullopt;
  queue_.ForgetWritten();
  return aside;
}

}  // namespace tessmar
