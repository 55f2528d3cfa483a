#include "archive/Journal.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>
#include <utility>

#include "archive/ArchiveTexts.h"
#include "archive/LastSettings.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// After a failure that will not go away by itself.
constexpr qint64 kRetryMs = 2000;
/// For a live run at its end: what another program locks for a moment is not worth a message.
constexpr qint64 kPatienceMs = 2000;
/// Without a tick for so long a block takes itself to the file.
constexpr qint64 kLongestWaitMs = 400;
/// A run of sampling is cut into uploads of a day at the usual pace.
constexpr std::size_t kMostLiveBlocks = 86400;
/// So many blocks are kept for an archive that cannot be had: the longest upload five times.
constexpr std::size_t kMostBlocksKept = 100000;
/// Pages of a logger's memory that take records.
constexpr std::int32_t kDataPages = 4088;

QString NewUuid() {
  return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

UploadState StateOf(UploadEnd end) {
  switch (end) {
    case UploadEnd::Complete:
      return UploadState::Complete;
    case UploadEnd::BufferFull:
      return UploadState::Full;
    case UploadEnd::Cancelled:
      return UploadState::Cancelled;
    case UploadEnd::Failed:
      break;
  }
  return UploadState::Failed;
}

}  // namespace

Journal::Journal(const QString& path, JournalContext context)
    : context_(std::move(context)), writer_(path, queue_) {}

KeptUpload* Journal::Running() {
  return start_ && !queue_.Uploads.empty() ? &queue_.Uploads.back() : nullptr;
}

void Journal::Begin(const UploadStart& start) {
  if (Path().isEmpty()) return;
  if (start_) End(UploadEnd::Failed);
  KeptUpload upload = BeginningUpload(context_, start);
  last_ = {.Uuid = upload.Row.Uuid};
  told_ = false;
  queue_.Uploads.push_back(std::move(upload));
  start_ = start;
  if (waitsSince_ < 0) waitsSince_ = context_.Time.SteadyMs();
  DropOldest();
}

void Journal::TakeBlock(std::span<const std::uint8_t> block) {
  KeptUpload* upload = Running();
  if (upload == nullptr) return;
  if (upload->Row.Kind == UploadKind::Live && upload->Blocks.size() >= kMostLiveBlocks) {
    const UploadStart start = *start_;
    End(UploadEnd::Complete);
    Begin(start);
    upload = Running();
  }
  upload->Blocks.emplace_back(reinterpret_cast<const char*>(block.data()),
                              static_cast<qsizetype>(block.size()));
  const qint64 now = context_.Time.SteadyMs();
  if (waitsSince_ < 0) waitsSince_ = now;
  if (now - waitsSince_ >= kLongestWaitMs && now >= retryAt_) WriteWaiting();
}

void Journal::BeginAnew() {
  const KeptUpload* const upload = Running();
  if (upload == nullptr || upload->Blocks.empty()) return;
  const UploadStart start = *start_;
  End(UploadEnd::Failed);
  Begin(start);
}

void Journal::End(UploadEnd end) {
  KeptUpload* const upload = Running();
  if (upload == nullptr) return;
  if (upload->Row.Kind == UploadKind::Image && upload->Blocks.empty()) {
    // A file without records is no upload.
    start_.reset();
    queue_.Uploads.pop_back();
    return;
  }
  upload->End = StateOf(end);
  upload->Row.Ended = context_.Time.Now().toUTC();
  if (upload->Row.Kind == UploadKind::History && !upload->Blocks.empty()) NoteUploaded(*upload);
  if (upload->Row.Kind == UploadKind::Live) liveEndedAt_ = context_.Time.SteadyMs();
  start_.reset();
  last_ = LastUpload();
  WriteWaiting();
}

void Journal::NoteUploaded(const KeptUpload& upload) {
  const QString state = NameOf(*upload.End);
  const std::int32_t records = upload.Records();
  const QJsonObject after{
      {u"upload"_s, upload.Row.Uuid}, {u"records"_s, records}, {u"state"_s, state}};
  queue_.Events.push_back(
      {.Row = {.Uuid = NewUuid(),
               .At = upload.Row.Ended,
               .Entry = {.Kind = EventKind::Uploaded,
                         .Text = u"%1 records, %2"_s.arg(records).arg(state),
                         .After = QJsonDocument(after).toJson(QJsonDocument::Compact)}},
       .Logger = upload.Logger});
}

void Journal::Note(const LogbookEntry& entry) {
  if (Path().isEmpty()) return;
  queue_.Events.push_back(
      {.Row = {.Uuid = NewUuid(), .At = context_.Time.Now().toUTC(), .Entry = entry},
       .Logger = ConnectedLogger(context_)});
  if (waitsSince_ < 0) waitsSince_ = context_.Time.SteadyMs();
}

std::optional<KnownSettings> Journal::LastSettings() {
  if (Path().isEmpty()) return std::nullopt;
  std::optional<KnownSettings> known;
  Try([&] {
    const bool isThere = writer_.IsOpen() || QFileInfo::exists(writer_.Path());
    if (isThere) writer_.Open();
    known =
        FindLastSettings(isThere ? &writer_.Reader() : nullptr, queue_, ConnectedLogger(context_));
  });
  return known;
}

bool Journal::Tick() {
  const qint64 now = context_.Time.SteadyMs();
  if (!LookAtCheck() || now < retryAt_) return false;
  if (waitsSince_ >= 0 && now - waitsSince_ >= kWaitMs) WriteWaiting();
  if (!lookedForLeft_) {
    // A start makes no archive; the first upload does.
    lookedForLeft_ = true;
    if (QFileInfo::exists(writer_.Path())) Try([this] { writer_.Open(); });
  }
  if (start_ || waitsSince_ >= 0) return false;
  return FillFor(kSliceMs);
}

void Journal::Finish() {
  End(UploadEnd::Cancelled);
  if (check_) Settle(check_->Wait());
  WriteAll();
  writer_.Close();
}

bool Journal::WriteAll() {
  if (WriteWaiting()) {
    while (queue_.NextToFill() != nullptr && FillFor(INT64_MAX)) continue;
  }
  return queue_.Uploads.empty() && queue_.Events.empty();
}

// Gives true when nothing is left that is not in the file.
bool Journal::WriteWaiting() {
  if (!queue_.IsUnwritten()) {
    waitsSince_ = -1;
    return true;
  }
  const auto write = [this] {
    writer_.Open();
    writer_.Write();
  };
  // A damaged file that was moved aside makes room for a new one at once.
  const QString before = movedTo_;
  if (!Try(write) && (movedTo_ == before || !Try(write))) return false;
  lookedForLeft_ = true;
  waitsSince_ = -1;
  last_ = LastUpload();
  return true;
}

// Gives true when there is more to do.
bool Journal::FillFor(qint64 ms) {
  if (queue_.NextToFill() == nullptr) return false;
  bool more = false;
  const qint64 start = context_.Time.SteadyMs();
  const bool done = Try([&] {
    writer_.Open();
    more = writer_.Fill([&] { return context_.Time.SteadyMs() - start < ms; });
  });
  if (queue_.IsUnwritten() && waitsSince_ < 0) waitsSince_ = start;
  return done && more;
}

bool Journal::Try(const std::function<void()>& work) {
  if (!LookAtCheck()) return false;
  try {
    work();
    trouble_.reset();
    retryAt_ = 0;
    return true;
  } catch (const ArchiveFault& fault) {
    Suffer(fault.Trouble());
    return false;
  }
}

void Journal::Suffer(ArchiveTrouble trouble) {
  trouble_ = trouble;
  writer_.StopFilling();
  if (trouble == ArchiveTrouble::Busy) return;
  writer_.Close();
  retryAt_ = context_.Time.SteadyMs() + kRetryMs;
  if (trouble != ArchiveTrouble::Damaged) return;
  // SQLite has found one page wrong; whether the file is damaged the whole of it says.
  check_.emplace(Path());
  if (QFileInfo(Path()).size() <= context_.MostToCheckAtOnce) return Settle(check_->Wait());
  trouble_ = ArchiveTrouble::UnderCheck;
}

// Gives true when no check of the file is under way.
bool Journal::LookAtCheck() {
  if (!check_) return true;
  if (check_->Found() == IntegrityCheck::Result::Running) return false;
  Settle(check_->Found());
  return true;
}

void Journal::Settle(IntegrityCheck::Result found) {
  check_.reset();
  const bool damaged = found == IntegrityCheck::Result::Damaged;
  trouble_ = damaged ? ArchiveTrouble::Damaged : ArchiveTrouble::Unwritable;
  if (!damaged) return;
  const std::optional<QString> aside = writer_.MoveAside(context_.Time.Now());
  if (!aside) return;
  movedTo_ = *aside;
  retryAt_ = 0;
}

// Of uploads for an archive that cannot be had for long, the oldest are given up; by then it has
// been said that they were not kept.
void Journal::DropOldest() {
  std::size_t blocks = 0;
  for (const KeptUpload& upload : queue_.Uploads) blocks += upload.Blocks.size();
  while (blocks > kMostBlocksKept && queue_.Uploads.size() > 1) {
    const KeptUpload& oldest = queue_.Uploads.front();
    blocks -= oldest.Blocks.size();
    if (oldest.Row.Kind == UploadKind::Live && !oldest.Told)
      liveGivenUp_ += oldest.RecordsOf(oldest.Written, oldest.Blocks.size());
    writer_.StopFilling();
    queue_.Uploads.pop_front();
  }
}

JournalUpload Journal::LastUpload() const {
  JournalUpload upload = last_;
  for (const KeptUpload& kept : queue_.Uploads) {
    if (kept.Row.Uuid != last_.Uuid) continue;
    upload.Id = kept.Row.Id;
    upload.Records = kept.Records();
    upload.NotKept = kept.RecordsOf(kept.Written, kept.Blocks.size());
  }
  return upload;
}

std::optional<std::int32_t> Journal::RecordsNotArchived() {
  const LoggerSettings* settings = KnownSettingsOf(context_);
  if (Path().isEmpty() || settings == nullptr) return std::nullopt;
  const LinkState link = OwnShape(context_);
  const int size = RecordSize(link.AnalogChannelCount, link.PulseChannelCount);
  if (settings->DataWrapAroundFlag != 0 && link.RecordCount >= kDataPages * RecordsPerArea(size))
    return std::nullopt;
  std::optional<std::int32_t> archived;
  if (!writer_.IsOpen() && !QFileInfo::exists(writer_.Path())) {
    archived = 0;
  } else {
    Try([&] {
      writer_.Open();
      archived = RecordsArchived();
    });
  }
  if (!archived) return std::nullopt;
  return link.RecordCount >= *archived ? link.RecordCount - *archived : link.RecordCount;
}

std::int32_t Journal::RecordsArchived() {
  const LoggerName name = ConnectedLogger(context_);
  const std::optional<LoggerRow> logger = writer_.Reader().LoggerFor(name.Name, name.Model);
  if (!logger) return 0;
  QSqlQuery longest = writer_.Reader().Run(
      u"SELECT max(records) FROM upload WHERE logger_id = ? AND kind = 'history'"
      " AND settings IS NOT NULL AND started > coalesce((SELECT max(at) FROM event WHERE logger_id "
      "= ?"
      " AND kind IN ('cleared', 'initialized')), '')"_s,
      {logger->Id, logger->Id});
  std::int32_t records = longest.next() ? longest.value(0).toInt() : 0;
  // Uploads whose records are still on their way into the file.
  for (const KeptUpload& kept : queue_.Uploads) {
    if (kept.Row.Kind == UploadKind::History && !kept.Row.Settings.isEmpty() &&
        kept.Logger.Name == name.Name && kept.Logger.Model == name.Model && kept.Row.Id != 0)
      records = std::max(records, kept.RecordsOf(0, kept.Written));
  }
  return records;
}

QString Journal::TakeReport() {
  QStringList report;
  const JournalUpload upload = LastUpload();
  if (upload.NotKept > 0 && !std::exchange(told_, true)) {
    report.append(NotKeptText(upload.NotKept, upload.Records,
                              trouble_.value_or(ArchiveTrouble::Unwritable), writer_.Path()));
  }
  if (!movedTo_.isEmpty()) report.append(MovedAsideText(std::exchange(movedTo_, QString())));
  return report.join(u"\r\n\r\n"_s);
}

QString Journal::TakeLiveReport(bool atEnd) {
  // A run that is cut goes on at once: it has not ended.
  const bool running = start_ && start_->Kind == UploadKind::Live;
  if (liveEndedAt_ < 0 || running) return {};
  if (!atEnd && context_.Time.SteadyMs() - liveEndedAt_ < kPatienceMs) return {};
  liveEndedAt_ = -1;
  std::int32_t notKept = std::exchange(liveGivenUp_, 0);
  std::int32_t samples = notKept;
  for (KeptUpload& upload : queue_.Uploads) {
    if (upload.Row.Kind != UploadKind::Live || upload.Recovered || upload.Told) continue;
    const std::int32_t missing = upload.RecordsOf(upload.Written, upload.Blocks.size());
    if (missing == 0 && upload.Row.Id != 0) continue;
    upload.Told = true;
    notKept += missing;
    samples += upload.Records();
  }
  QStringList report;
  if (notKept > 0)
    report.append(LiveNotKeptText(notKept, samples, trouble_.value_or(ArchiveTrouble::Unwritable),
                                  Path(), atEnd));
  if (!movedTo_.isEmpty()) report.append(MovedAsideText(std::exchange(movedTo_, QString())));
  return report.join(u"\r\n\r\n"_s);
}

}  // namespace tessmar
