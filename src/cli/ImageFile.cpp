#include "cli/ImageFile.h"

#include "base/Fault.h"
#include "cli/InputFile.h"
#include "cli/Output.h"
#include "history/ImageImport.h"
#include "settings/config.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

CommandFailure NotRead(const QString& path, const TwoLanguages& reason) {
  return CommandFailure(path + u": "_s + reason.Text());
}

void TakeCounts(const CommandOptions& options, LinkState& link) {
  if (!options.Analog || !options.Pulse) {
    throw CommandFailure(
        TwoLanguages{u"an image file does not know its channels: give --analog N and --pulse N",
                     u"eine Abbilddatei kennt ihre Kanäle nicht: --analog N und --pulse N angeben"}
            .Text(),
        kCommandWrongUsage);
  }
  const QString refusal = ImportRefusal(*options.Analog, *options.Pulse);
  if (!refusal.isEmpty()) throw CommandFailure(refusal, kCommandWrongUsage);
  link.AnalogChannelCount = static_cast<std::int16_t>(*options.Analog);
  link.PulseChannelCount = static_cast<std::int16_t>(*options.Pulse);
}

}  // namespace

ImageFile::ImageFile(const QString& path, const CommandOptions& options, LinkState& link,
                     LoggerSettings& settings)
    : path_(path), file_(path), link_(link) {
  TakeCounts(options, link);
  CheckInput(path);
  if (!file_.open(QIODevice::ReadOnly))
    throw NotRead(path, {u"no permission to read it", u"keine Berechtigung zum Lesen"});
  try {
    // The image ends within the set-up of the derived channels, so this never succeeds as a whole.
    UnpackConfigImage(link, ReadImageConfiguration(file_), settings);
  } catch (const FileFault&) {
    throw NotRead(path, {u"too short for an image file", u"zu kurz für eine Abbilddatei"});
  }
}

void ImageFile::ReadRecords(HistoryBuffer& buffer, BlockSink& sink) {
  try {
    ReadImageRecords(file_, link_, buffer, sink);
  } catch (const FileFault&) {
    throw NotRead(path_, {u"cannot be read to its end; is the disk in order?",
                          u"ist nicht bis zum Ende lesbar; ist der Datenträger in Ordnung?"});
  }
}

}  // namespace tessmar
