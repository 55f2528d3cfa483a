// archive export.

#include "archive/ArchiveEdits.h"
#include "archive/ExportSource.h"
#include "cli/ArchiveFile.h"
#include "cli/Commands.h"
#include "cli/HistoryFile.h"
#include "cli/JsonLine.h"
#include "cli/OutputFile.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// Ends the reading of a series.
struct StopPressed {};

/// The logger of this name in the archive, or of this uuid.
LoggerRow LoggerNamed(Store& store, const QString& name) {
  std::vector<LoggerRow> found;
  for (const LoggerRow& logger : ShownLoggers(store)) {
    if (logger.Name == name || logger.Uuid == name) found.push_back(logger);
  }
  if (found.size() == 1) return found.front();
  if (found.empty())
    throw CommandFailure(
        TwoLanguages{u"there is no logger \"%1\" in the archive; \"tessmar archive "
                     u"list\" shows their names",
                     u"im Archiv ist kein Logger \"%1\"; \"tessmar archive list\" "
                     u"zeigt ihre Namen"}
            .Text()
            .arg(name));
  QStringList uuids;
  for (const LoggerRow& logger : found) uuids.append(logger.Uuid);
  throw CommandFailure(
      TwoLanguages{u"several loggers are called \"%1\"; say --logger with one of %2",
                   u"mehrere Logger heißen \"%1\"; --logger mit einem von %2 "
                   u"angeben"}
          .Text()
          .arg(name, uuids.join(u", "_s)));
}

/// What is written, and from where.
class Export {
 public:
  Export(CommandEnvironment& environment, const CommandOptions& options)
      : environment_(environment), options_(options), file_(options.Operands.last()) {}

  CommandStatus Run() {
    const ExportKind kind = KindOfFile(file_, options_);
    OutputFile::Check(file_);
    return OnArchive(options_, [&](Store& store) {
      ExportSource source = Open(store);
      if (source.Count > 0) Save(kind, source);
      Report(kind, source);
      return kCommandDone;
    });
  }

 private:
  ExportSource Open(Store& store) {
    if (options_.Logger.isEmpty()) {
      upload_ = UploadNamed(store, options_.Operands[0]).Id;
      return SourceOfUpload(store, *upload_);
    }
    try {
      return SourceOfSeries(store, LoggerNamed(store, options_.Logger).Id, [this](std::int64_t) {
        if (!Goes()) throw StopPressed();
      });
    } catch (const StopPressed&) {
      throw BrokenOff();
    }
  }

  void Save(ExportKind kind, ExportSource& source) {
    const ExportProgress progress = [&](std::int64_t records) {
      environment_.Out.Progress(
          TwoLanguages{u"%1 of %2 records", u"%1 von %2 Datensätzen"}.Text().arg(records).arg(
              source.Count));
      return Goes();
    };
    if (!SaveRecords(environment_, file_, kind, source, progress)) throw BrokenOff();
  }

  // The signal that ends the command comes by way of the message loop.
  bool Goes() const {
    environment_.Loop.RunPending();
    return !environment_.StopWanted();
  }

  CommandFailure BrokenOff() const {
    return CommandFailure(
        TwoLanguages{u"broken off; %1 is as it was", u"abgebrochen; %1 ist wie vorher"}.Text().arg(
            file_));
  }

  // Not between the data on standard output.
  void Report(ExportKind kind, const ExportSource& source) const {
    const bool any = source.Count > 0;
    if (file_ == kStandardOutput) {
      if (!any) environment_.Out.Remark(source.Head.LoggerName + u": "_s + Nothing());
      return;
    }
    if (options_.Json) {
      JsonLine json;
      if (upload_) {
        json.Number("id", *upload_);
      } else {
        json.Null("id");
      }
      json.Text("name", source.Head.LoggerName)
          .Number("records", source.Count)
          .Number("disagreements", source.Disagreements)
          .Text("style", NameOf(kind));
      if (any) {
        json.Text("file", file_);
      } else {
        json.Null("file");
      }
      environment_.Out.Data(json.Line());
      return;
    }
    environment_.Out.Data(source.Head.LoggerName + u": "_s + (any ? Written(source) : Nothing()));
  }

  static QString Nothing() {
    return TwoLanguages{u"no records; no file was written",
                        u"keine Datensätze; keine Datei geschrieben"}
        .Text();
  }

  QString Written(const ExportSource& source) const {
    QString line = TwoLanguages{u"%1 records in %2", u"%1 Datensätze in %2"}.Text().arg(
        QString::number(source.Count), file_);
    if (source.Disagreements == 0) return line;
    return line + TwoLanguages{u", %1 of them where uploads disagree",
                               u", davon %1, wo sich Abrufe widersprechen"}
                      .Text()
                      .arg(source.Disagreements);
  }

  CommandEnvironment& environment_;
  const CommandOptions& options_;
  QString file_;
  std::optional<qint64> upload_;
};

}  // namespace

CommandStatus RunArchiveExport(CommandEnvironment& environment, const CommandOptions& options) {
  return Export(environment, options).Run();
}

}  // namespace tessmar
