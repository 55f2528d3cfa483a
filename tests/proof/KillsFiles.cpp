#include "proof/KillsFiles.h"

#include "archive/SaveExport.h"
#include "base/FileTrouble.h"
#include "history/CsvExport.h"
#include "history/TableRig.h"
#include "session/PersistedSettings.h"
#include "setup/SetupFiles.h"
#include "support/FakeOutside.h"
#include "support/Links.h"

namespace tessmar::proof {
namespace {

using namespace Qt::StringLiterals;
using namespace test;

constexpr int kMoreRows = 7;

QString NameOf(int generation) {
  return u"Generation %1"_s.arg(generation);
}

class SetupWriter final : public FileWriter {
 public:
  std::optional<QString> Write(const QString& path, int generation) override {
    settings_ = LoggerSettings();
    LoadDefaultSettings(settings_, link_.AnalogChannelCount);
    settings_.LoggerName = NameOf(generation);
    for (AnalogChannelSettings& channel : settings_.Analog)
      channel.EngUnits = QString(generation % 3, u'µ') + u"S"_s;
    dialogs_.Answers = {path};
    asker_ = FakeMessages();
    asker_.Default = kYes;
    if (files_.SaveSetupFile()) return std::nullopt;
    return asker_.All.empty() ? QString() : asker_.All.back().Prompt;
  }

 private:
  LinkState link_ = LinkWith(8, 2);
  LoggerSettings settings_;
  RecentFiles recent_;
  ConfigImage baseline_;
  FakeMessages asker_;
  FakeFileDialogs dialogs_;
  FakeClock clock_;
  SystemLocale locale_ = American();
  SetupFiles files_{{.Link = link_,
                     .Settings = settings_,
                     .Recent = recent_,
                     .FileBaseline = baseline_,
                     .Asker = asker_,
                     .Dialogs = dialogs_,
                     .Time = clock_,
                     .Locale = locale_,
                     .AppPath = u"/nowhere"_s},
                    {.ControlsToSettings = [] {},
                     .SettingsToControls = [] {},
                     .OfferSaveIfChanged = [] { return false; }}};
};

class StoreWriter final : public FileWriter {
 public:
  std::optional<QString> Write(const QString& path, int generation) override {
    ConnectionSettings connection;
    connection.DirectPort = NameOf(generation);
    connection.ModemInit = QString(16 * generation, u'm');
    for (QString& number : connection.ModemNumbers) number = QString::number(5550000 + generation);
    RecentFiles files;
    files.SetupFolder = u"/home/ada/%1"_s.arg(generation);
    for (QString& file : files.RecentSetupFiles) file = files.SetupFolder + u"/pond.set"_s;
    const PersistedSettings store(path, QLocale::c());
    if (store.Save(connection, files, u"1"_s)) return std::nullopt;
    return QString();
  }
};

/// Records whose words follow from the generation.
class RecordsWriter final : public FileWriter {
 public:
  /// @param kind  nothing for the table's own road to a file.
  RecordsWriter(std::optional<ExportKind> kind, int rows) : kind_(kind), rows_(rows), rig_(2, 1) {
    rig_.EnableAnalog(0, u"%"_s);
    rig_.EnableAnalog(1, u"mg/L"_s);
    rig_.EnablePulse(0, u"mm"_s, 1, 0);
  }

  std::optional<QString> Write(const QString& path, int generation) override {
    if (generation != generation_) Make(generation);
    try {
      if (kind_) {
        ExportSource source = SourceOfBuffer(rig_.Buffer, rig_.Settings, 2, 1);
        SaveExport(path, source,
                   {.Kind = *kind_, .Locale = rig_.Locale, .Saved = Saved(), .Program = u"Proof"_s},
                   [](std::int64_t) { return true; });
      } else {
        SaveCsv(path, rig_.Table(), {.LoggerName = NameOf(generation), .Saved = Saved()},
                [](std::int32_t) {});
      }
      return std::nullopt;
    } catch (const FileTrouble& trouble) {
      return trouble.Text();
    }
  }

 private:
  static QDateTime Saved() { return {QDate(2010, 12, 27), QTime(15, 5, 12), Qt::UTC}; }

  void Make(int generation) {
    generation_ = generation;
    rig_.Settings.LoggerName = NameOf(generation);
    rig_.Buffer.Clear();
    const std::uint32_t first = kStamp + static_cast<std::uint32_t>(generation);
    // Each one is longer than the last.
    const int rows = rows_ + kMoreRows * (generation - 1);
    for (int i = 0; i < rows; ++i)
      rig_.Add(first + kMinute * static_cast<std::uint32_t>(i),
               {1000 * generation + i % 1000, i % 10000, generation});
  }

  std::optional<ExportKind> kind_;
  int rows_;
  TableRig rig_;
  int generation_ = 0;
};

}  // namespace

std::unique_ptr<FileWriter> MakeFileWriter(const QString& kind, int rows) {
  if (kind == u"setup"_s) return std::make_unique<SetupWriter>();
  if (kind == u"store"_s) return std::make_unique<StoreWriter>();
  if (kind == u"csv"_s) return std::make_unique<RecordsWriter>(std::nullopt, rows);
  if (kind == u"export"_s) return std::make_unique<RecordsWriter>(ExportKind::AnalysisCsv, rows);
  if (kind == u"netcdf"_s) return std::make_unique<RecordsWriter>(ExportKind::NetCdf, rows);
  return nullptr;
}

}  // namespace tessmar::proof
