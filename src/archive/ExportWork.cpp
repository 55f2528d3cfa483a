#include "archive/ExportWork.h"

#include "archive/Store.h"

namespace tessmar {
namespace {

/// Ends the reading of a series.
struct Stopped {};

ExportSource SourceOf(const Store& store, const ExportWish& wish, ExportState& state) {
  if (wish.Upload != 0) return SourceOfUpload(store, wish.Upload);
  std::int64_t total = 0;
  for (const UploadRow& upload : store.Uploads(wish.Logger)) {
    if (upload.Kind != UploadKind::Live) total += upload.Records;
  }
  state.Total = total;
  return SourceOfSeries(store, wish.Logger, [&](std::int64_t records) {
    state.Done = records;
    if (state.Stop) throw Stopped();
  });
}

}  // namespace

ExportResult RunExport(const ExportWish& wish, const QString& path, const ExportForm& form,
                       ExportState& state) {
  try {
    Store store(wish.ArchivePath);
    store.Open(Store::Access::Read);
    ExportSource source = SourceOf(store, wish, state);
    ExportResult result{.Records = source.Count, .Disagreements = source.Disagreements};
    if (source.Count == 0) return result;
    state.Done = 0;
    state.Total = source.Count;
    state.Writes = true;
    const std::optional<std::int64_t> saved =
        SaveExport(path, source, form, [&](std::int64_t records) {
          state.Done = records;
          return !state.Stop;
        });
    result.Stopped = !saved;
    return result;
  } catch (const Stopped&) {
    return {.Stopped = true};
  }
}

}  // namespace tessmar
