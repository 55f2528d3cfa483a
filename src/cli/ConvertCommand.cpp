#include "base/Fault.h"
#include "cli/Commands.h"
#include "cli/HistoryFile.h"
#include "cli/ImageFile.h"
#include "cli/JsonLine.h"
#include "cli/OutputFile.h"
#include "history/ImageImport.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

void Report(CommandEnvironment& environment, const CommandOptions& options, const QString& name,
            std::int32_t records, bool written) {
  const QString& source = options.Operands[0];
  const QString& file = options.Operands[1];
  // The data themselves are on standard output then.
  if (written && file == kStandardOutput) return;
  if (options.Json) {
    JsonLine json;
    json.Text("source", source).Text("name", name).Number("records", records);
    if (written) {
      json.Text("file", file);
    } else {
      json.Null("file");
    }
    environment.Out.Data(json.Line());
    return;
  }
  environment.Out.Data(
      written ? TwoLanguages{u"%1: %2 records in %3", u"%1: %2 Datensätze in %3"}.Text().arg(
                    source, QString::number(records), file)
              : TwoLanguages{u"%1: no records; no file was written",
                             u"%1: keine Datensätze; keine Datei geschrieben"}
                    .Text()
                    .arg(source));
}

}  // namespace

CommandStatus RunConvert(CommandEnvironment& environment, const CommandOptions& options) {
  const QString& source = options.Operands[0];
  const QString& file = options.Operands[1];
  const ExportKind kind = KindOfFile(file, options);
  LinkState link;
  link.TrapErrors = true;
  LoggerSettings settings;
  ImageFile image(source, options, link, settings);
  OutputFile::Check(file);
  HistoryBuffer buffer;
  NoBlockSink sink;
  image.ReadRecords(buffer, sink);
  const bool any = buffer.Count() > 0;
  if (any) {
    ExportSource records =
        SourceOfBuffer(buffer, settings, link.AnalogChannelCount, link.PulseChannelCount);
    records.Head.Source = u"image file "_s + source;
    SaveRecords(environment, file, kind, records, GoOn);
  }
  Report(environment, options, settings.LoggerName, buffer.Count(), any);
  return kCommandDone;
}

}  // namespace tessmar
