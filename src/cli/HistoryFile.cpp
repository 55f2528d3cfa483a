#include "cli/HistoryFile.h"

#include "ProgramVersion.h"
#include "archive/NetCdfLibrary.h"
#include "cli/OutputFile.h"
#include "link/ConnectionSettings.h"
#include "session/PersistedSettings.h"
#include "setup/RecentFiles.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

bool WantsSingleColumn(const CommandEnvironment& environment) {
  ConnectionSettings connection;
  RecentFiles files;
  QString singleColumn;
  PersistedSettings(environment.StorePath, environment.Locale.Locale())
      .Load(connection, files, singleColumn);
  return !singleColumn.isEmpty();
}

std::optional<std::int64_t> Written(OutputFile& file, ExportSource& source, const ExportForm& form,
                                    const ExportProgress& progress) {
  try {
    return WriteExport(file.Device(), source, form, progress);
  } catch (const NetCdfMissing&) {
    throw CommandFailure(TwoLanguages{u"NetCDF files need the package libnetcdf19; install it",
                                      u"für NetCDF-Dateien fehlt das Paket libnetcdf19"}
                             .Text());
  } catch (const MixedChannels&) {
    throw CommandFailure(
        TwoLanguages{u"the channels changed between the uploads, and the viewer's "
                     u"CSV has one row of headings; say --style analysis",
                     u"die Kanäle wechselten zwischen den Abrufen, und die CSV der "
                     u"Anzeige hat nur eine Kopfzeile; --style analysis angeben"}
            .Text());
  } catch (const FileFault&) {
    file.ThrowFailure();
    throw;
  }
}

}  // namespace

ExportKind KindOfFile(const QString& path, const CommandOptions& options) {
  const ExportKind csv = options.Analysis ? ExportKind::AnalysisCsv : ExportKind::ViewerCsv;
  if (path == kStandardOutput) return csv;
  const std::optional<ExportKind> kind = ExportKindOf(path);
  if (!kind)
    throw CommandFailure(
        TwoLanguages{u"%1: no known form; a file's name ends in .csv or .nc",
                     u"%1: keine bekannte Form; der Dateiname endet auf .csv oder .nc"}
            .Text()
            .arg(path),
        kCommandWrongUsage);
  return *kind == ExportKind::NetCdf ? *kind : csv;
}

QString NameOf(ExportKind kind) {
  switch (kind) {
    case ExportKind::ViewerCsv:
      return u"viewer"_s;
    case ExportKind::AnalysisCsv:
      return u"analysis"_s;
    case ExportKind::NetCdf:
      break;
  }
  return u"netcdf"_s;
}

std::optional<std::int64_t> SaveRecords(const CommandEnvironment& environment, const QString& path,
                                        ExportKind kind, ExportSource& source,
                                        const ExportProgress& progress) {
  OutputFile file(environment.Out, path);
  const std::optional<std::int64_t> records =
      Written(file, source,
              {.Kind = kind,
               .Locale = environment.Locale,
               .Saved = environment.Time.Now(),
               .Program = WrittenBy(),
               .SingleColumn = kind == ExportKind::ViewerCsv && WantsSingleColumn(environment)},
              progress);
  if (records) file.Commit();
  return records;
}

QString WrittenBy() {
  return u"tessmar %1.%2.%3"_s.arg(kVersionMajor).arg(kVersionMinor).arg(kVersionRevision);
}

}  // namespace tessmar
