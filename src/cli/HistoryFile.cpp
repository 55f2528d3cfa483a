#include "cli/HistoryFile.h"

#include "cli/OutputFile.h"
#include "history/CsvExport.h"
#include "link/ConnectionSettings.h"
#include "session/PersistedSettings.h"
#include "setup/RecentFiles.h"

namespace tessmar {
namespace {

bool WantsSingleColumn(const CommandEnvironment& environment) {
  ConnectionSettings connection;
  RecentFiles files;
  QString singleColumn;
  PersistedSettings(environment.StorePath, environment.Locale.Locale())
      .Load(connection, files, singleColumn);
  return !singleColumn.isEmpty();
}

}  // namespace

void SaveHistory(CommandEnvironment& environment, const QString& path, const HistoryBuffer& buffer,
                 const LoggerSettings& settings, const LinkState& link) {
  const HistoryTable table(buffer, settings, link, false, environment.Locale);
  OutputFile file(environment.Out, path);
  WriteCsv(file.Device(), table,
           {.LoggerName = settings.LoggerName,
            .Saved = environment.Time.Now(),
            .SingleColumn = WantsSingleColumn(environment)},
           [](std::int32_t) {});
  file.Commit();
}

}  // namespace tessmar
