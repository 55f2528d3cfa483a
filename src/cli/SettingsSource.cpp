#include "cli/SettingsSource.h"

#include <QFileInfo>

#include "base/Fault.h"
#include "cli/ImageFile.h"
#include "cli/InputFile.h"
#include "cli/LoggerLine.h"
#include "settings/SetupFile.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// No setup file comes near this; what does was chosen by mistake.
constexpr qint64 kLargestSetupFile = 64LL * 1024 * 1024;

CommandFailure Refusal(const QString& path, const TwoLanguages& reason,
                       CommandStatus status = kCommandFailed) {
  return CommandFailure(path + u": "_s + reason.Text(), status);
}

}  // namespace

void ReadSetup(const QString& path, const SystemLocale& locale, int analogChannels,
               LoggerSettings& settings) {
  const QByteArray bytes = ReadInput(path, kLargestSetupFile);
  LoadDefaultSettings(settings, analogChannels);
  int known = 0;
  try {
    known = ReadSetupFile(bytes, locale.Locale(), settings);
  } catch (const Fault&) {
    throw Refusal(path, {u"a value in it is not one that its field takes",
                         u"ein Wert darin ist keiner, den sein Feld nimmt"});
  }
  if (known == 0)
    throw Refusal(path, {u"not a setup file: there is not a single setting in it",
                         u"keine Setup-Datei: keine einzige Einstellung steht darin"});
}

ReadSettings ReadSource(CommandEnvironment& environment, const CommandOptions& options,
                        const QString& source, const LinkState& channels) {
  ReadSettings read;
  read.Link = channels;
  const bool isSetup = source.endsWith(".set"_L1, Qt::CaseInsensitive);
  const bool isImage = source.endsWith(".bin"_L1, Qt::CaseInsensitive);
  if (!isSetup && !isImage && NamesAPort(source)) {
    const LoggerLine logger(environment, source, options.Baud);
    read.Link = logger.Link;
    read.Settings = logger.Settings;
    read.KnowsChannels = true;
    return read;
  }
  if (isImage) {
    const ImageFile image(source, options, read.Link, read.Settings);
    read.KnowsChannels = true;
    read.HasDerived = false;
    return read;
  }
  if (!isSetup && !QFileInfo(source).exists()) {
    throw Refusal(source,
                  {u"neither a port nor a setup file (.set) nor an image file (.bin)",
                   u"weder Anschluss noch Setup-Datei (.set) noch Abbilddatei (.bin)"},
                  kCommandWrongUsage);
  }
  ReadSetup(source, environment.Locale, channels.AnalogChannelCount, read.Settings);
  return read;
}

}  // namespace tessmar
