#include <QElapsedTimer>
#include <optional>

#include "archive/Journal.h"
#include "cli/ArchiveFile.h"
#include "cli/Commands.h"
#include "cli/HistoryFile.h"
#include "cli/LoggerLine.h"
#include "cli/OutputFile.h"
#include "history/PullHistory.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr qint64 kMsPerSecond = 1000;
constexpr qint64 kProgressMs = 200;

/// One upload: what came, and what is said of it.
class Upload {
 public:
  Upload(CommandEnvironment& environment, const CommandOptions& options)
      : environment_(environment), options_(options), out_(environment.Out) {}

  CommandStatus Run() {
    if (!options_.Csv.isEmpty()) OutputFile::Check(options_.Csv);
    if (options_.Csv.isEmpty() && options_.NoArchive)
      throw CommandFailure(TwoLanguages{u"nothing would be kept: say --csv FILE, or leave out "
                                        u"--no-archive",
                                        u"nichts würde aufgehoben: --csv DATEI dazu, oder ohne "
                                        u"--no-archive"}
                               .Text(),
                           kCommandWrongUsage);
    LoggerLine logger(environment_, options_.Operands[0], options_);
    logger_ = &logger;
    started_ = environment_.Time.Now();
    promised_ = logger.Link.RecordCount;
    if (promised_ == 0) return Empty();
    Pull();
    Keep();
    return IsWhole() ? Done() : BrokenOff();
  }

 private:
  void Pull();
  void Keep();
  bool IsArchived() const { return kept_.Id > 0 && kept_.NotKept == 0; }
  void ShowProgress(const HistoryUpload& upload);
  bool IsWhole() const { return end_ == UploadEnd::Complete && buffer_.Count() >= promised_; }
  const char* State() const;
  CommandStatus Empty();
  CommandStatus Done();
  CommandStatus BrokenOff();
  QString Reason() const;
  QString KeepPart();
  ExportSource Records() const;
  ExportKind Kind() const;
  void Save(const QString& file) const;
  void Report(const QString& file);

  CommandEnvironment& environment_;
  const CommandOptions& options_;
  Output& out_;
  LoggerLine* logger_ = nullptr;
  HistoryBuffer buffer_;
  JournalUpload kept_;  ///< In the archive.
  QDateTime started_;
  std::int32_t promised_ = 0;
  UploadEnd end_ = UploadEnd::Complete;
  QElapsedTimer shown_;
};

void Upload::Pull() {
  HistoryUpload upload(logger_->Link, buffer_, promised_);
  shown_.start();
  const UploadWatcher watcher{
      .Running = [this] { return !environment_.StopWanted() && !environment_.Loop.Ending(); },
      .Changed = [&] { ShowProgress(upload); }};
  end_ = PullHistory(upload, logger_->Commands, logger_->Line, logger_->Link, watcher,
                     logger_->Archive);
}

// What came is in the archive once this is over, or the operator is told that it is not.
void Upload::Keep() {
  if (options_.NoArchive) return;
  logger_->KeepAll();
  kept_ = logger_->Archive.LastUpload();
  const QString report = logger_->Archive.TakeReport();
  if (!report.isEmpty()) out_.Complaint(report);
}

void Upload::ShowProgress(const HistoryUpload& upload) {
  if (!out_.ShowsProgress() || shown_.elapsed() < kProgressMs) return;
  shown_.restart();
  const qint64 ms = std::max<qint64>(started_.msecsTo(environment_.Time.Now()), 1);
  const qint64 rate = upload.Count() * kMsPerSecond / ms;
  const qint64 left = rate > 0 ? std::max(promised_ - upload.Count(), 0) / rate : 0;
  out_.Progress(TwoLanguages{u"%1 of %2 records, %3 a second, %4 s left, %5 retries",
                             u"%1 von %2 Datensätzen, %3 je Sekunde, noch %4 s, %5 Wiederholungen"}
                    .Text()
                    .arg(upload.Count())
                    .arg(promised_)
                    .arg(rate)
                    .arg(left)
                    .arg(upload.TotalFailures()));
}

const char* Upload::State() const {
  switch (end_) {
    case UploadEnd::Complete:
      return "complete";
    case UploadEnd::BufferFull:
      return "full";
    case UploadEnd::Cancelled:
      return "cancelled";
    case UploadEnd::Failed:
      break;
  }
  return "failed";
}

CommandStatus Upload::Empty() {
  out_.Remark(logger_->PortName() +
              TwoLanguages{u": the logger has no records; nothing was written",
                           u": der Logger hat keine Datensätze; nichts wurde geschrieben"}
                  .Text());
  Report({});
  return kCommandDone;
}

CommandStatus Upload::Done() {
  if (!options_.Csv.isEmpty()) Save(options_.Csv);
  Report(options_.Csv);
  return options_.Csv.isEmpty() && !IsArchived() ? kCommandFailed : kCommandDone;
}

CommandStatus Upload::BrokenOff() {
  const QString reason = Reason();
  if (buffer_.Count() == 0) throw CommandFailure(reason);
  const QString part = KeepPart();
  Report(part);
  throw CommandFailure(reason,
                       IsArchived() || !part.isEmpty() ? kCommandBrokenOff : kCommandFailed);
}

QString Upload::Reason() const {
  const QString count = TwoLanguages{u"%1 of %2 records came", u"%1 von %2 Datensätzen kamen"}
                            .Text()
                            .arg(buffer_.Count())
                            .arg(promised_);
  const TwoLanguages words =
      end_ == UploadEnd::Complete ? TwoLanguages{u"the logger ended early; upload again",
                                                 u"der Logger hörte zu früh auf; noch einmal holen"}
      : end_ == UploadEnd::BufferFull
          ? TwoLanguages{u"there is no room for more than 200000 records",
                         u"für mehr als 200000 Datensätze ist kein Platz"}
          : TwoLanguages{u"the line is too bad; check the cable or lower the baud rate",
                         u"die Leitung ist zu schlecht; Kabel prüfen oder Baudrate senken"};
  return logger_->Failure(words).Text + u" ("_s + count + u')';
}

// The file that was asked for stays as it is: a part must not pass for the whole. It is in the
// archive, or else beside the file.
QString Upload::KeepPart() {
  if (options_.Csv.isEmpty() || IsArchived()) return {};
  const bool toStandardOutput = options_.Csv == kStandardOutput;
  QString part = toStandardOutput ? options_.Csv : options_.Csv + u".part"_s;
  Save(part);
  return part;
}

// What is known of the logger's clock is in the archive.
ExportSource Upload::Records() const {
  const ExportKind kind = Kind();
  if (IsArchived() && kind != ExportKind::ViewerCsv) {
    try {
      Store store(ArchivePathOf(options_));
      store.Open(Store::Access::Read);
      return SourceOfUpload(store, kept_.Id);
    } catch (const ArchiveFault& fault) {
      out_.Complaint(ArchiveRefusal(ArchivePathOf(options_), fault).Text +
                     TwoLanguages{u"; the file has no corrected times",
                                  u"; die Datei hat keine berichtigten Zeiten"}
                         .Text());
    }
  }
  ExportSource source = SourceOfBuffer(buffer_, logger_->Settings, logger_->Link.AnalogChannelCount,
                                       logger_->Link.PulseChannelCount);
  source.Head.LoggerModel = QString::number(logger_->Link.LoggerModelCode);
  source.Head.Firmware = QString::number(logger_->Link.FirmwareVersion);
  source.Head.Source = u"upload of %1 from %2"_s.arg(IsoUtc(started_), logger_->PortName());
  return source;
}

// Any other ending than .nc is as good as .csv here.
ExportKind Upload::Kind() const {
  if (ExportKindOf(options_.Csv) == ExportKind::NetCdf) return ExportKind::NetCdf;
  return options_.Analysis ? ExportKind::AnalysisCsv : ExportKind::ViewerCsv;
}

void Upload::Save(const QString& file) const {
  ExportSource records = Records();
  SaveRecords(environment_, file, Kind(), records, GoOn);
}

// What was kept, and where; not between the data on standard output.
void Upload::Report(const QString& file) {
  if (file == kStandardOutput) return;
  if (options_.Json) {
    JsonLine json;
    logger_->Describe(json);
    json.Text("kind", u"history"_s)
        .Text("started", IsoUtc(started_))
        .Text("ended", IsoUtc(environment_.Time.Now()))
        .Text("state", QString::fromLatin1(State()))
        .Number("promised", promised_)
        .Number("records", buffer_.Count());
    if (logger_->ClockOffset()) {
      json.Number("clock_offset_s", *logger_->ClockOffset());
    } else {
      json.Null("clock_offset_s");
    }
    if (file.isEmpty()) {
      json.Null("file");
    } else {
      json.Text("file", file);
    }
    if (IsArchived()) {
      json.Number("id", kept_.Id).Text("uuid", kept_.Uuid).Text("archive", ArchivePathOf(options_));
    } else {
      json.Null("id").Null("uuid").Null("archive");
    }
    out_.Data(json.Line());
    return;
  }
  QString line = TwoLanguages{u"%1: %2 records", u"%1: %2 Datensätze"}.Text().arg(
      logger_->Settings.LoggerName, QString::number(buffer_.Count()));
  if (!file.isEmpty()) line += TwoLanguages{u" in %1", u" in %1"}.Text().arg(file);
  if (IsArchived())
    line +=
        TwoLanguages{u", upload %1 in the archive", u", Abruf %1 im Archiv"}.Text().arg(kept_.Id);
  out_.Data(line);
}

}  // namespace

CommandStatus RunUpload(CommandEnvironment& environment, const CommandOptions& options) {
  return Upload(environment, options).Run();
}

}  // namespace tessmar
