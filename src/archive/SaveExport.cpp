#include "archive/SaveExport.h"

#include "archive/AnalysisCsv.h"
#include "archive/NetCdf.h"
#include "base/WholeFile.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

std::optional<std::int64_t> SaveNetCdf(WholeFile& file, const ExportHead& head,
                                       const ExportRows& rows, const ExportProgress& progress) {
  std::int64_t count = 0;
  const auto counted = [&](ExportRow& row) { return rows(row) && ++count > 0; };
  const std::optional<QByteArray> bytes = MakeNetCdf(head, counted, progress);
  if (!bytes) return std::nullopt;
  file.Write(*bytes);
  return count;
}

}  // namespace

std::optional<ExportKind> ExportKindOf(const QString& path) {
  if (path.endsWith(u".csv"_s, Qt::CaseInsensitive)) return ExportKind::AnalysisCsv;
  if (path.endsWith(u".nc"_s, Qt::CaseInsensitive)) return ExportKind::NetCdf;
  return std::nullopt;
}

std::optional<std::int64_t> SaveExport(const QString& path, ExportKind kind, const ExportHead& head,
                                       const ExportRows& rows, const ExportProgress& progress) {
  WholeFile file(path);
  const std::optional<std::int64_t> count =
      kind == ExportKind::NetCdf ? SaveNetCdf(file, head, rows, progress)
                                 : WriteAnalysisCsv(file.Device(), head, rows, progress);
  if (count) file.Commit();
  return count;
}

}  // namespace tessmar
