#include "cli/SettingsSource.h"

#include <QFileInfo>
#include <algorithm>

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

SetupSource::SetupSource(const QString& path)
    : path_(path), bytes_(ReadInput(path, kLargestSetupFile)) {}

void SetupSource::Load(const SystemLocale& locale, int analogChannels,
                       LoggerSettings& settings) const {
  LoadDefaultSettings(settings, analogChannels);
  int known = 0;
  try {
    known = ReadSetupFile(bytes_, locale.Locale(), settings);
  } catch (const Fault&) {
    throw Refusal(path_, {u"a value in it is not one that its field takes",
                          u"ein Wert darin ist keiner, den sein Feld nimmt"});
  }
  if (known == 0)
    throw Refusal(path_, {u"not a setup file: there is not a single setting in it",
                          u"keine Setup-Datei: keine einzige Einstellung steht darin"});
}

ReadSettings ReadSource(CommandEnvironment& environment, const CommandOptions& options,
                        const QString& source) {
  ReadSettings read;
  const bool isSetup = source.endsWith(".set"_L1, Qt::CaseInsensitive);
  const bool isImage = source.endsWith(".bin"_L1, Qt::CaseInsensitive);
  if (!isSetup && !isImage && NamesAPort(source)) {
    const LoggerLine logger(environment, source, options);
    read.Settings = logger.Settings;
    read.Analog = logger.Link.AnalogChannelCount;
    read.Pulse = logger.Link.PulseChannelCount;
    read.HasSampleOnDemand = logger.Link.SampleOnDemandSupported;
    return read;
  }
  if (isImage) {
    LinkState link;
    link.TrapErrors = true;
    link.SampleOnDemandSupported = true;
    const ImageFile image(source, options, link, read.Settings);
    read.Analog = link.AnalogChannelCount;
    read.Pulse = link.PulseChannelCount;
    read.HasDerived = false;
    return read;
  }
  if (!isSetup && !QFileInfo(source).exists()) {
    throw Refusal(source,
                  {u"neither a port nor a setup file (.set) nor an image file (.bin)",
                   u"weder Anschluss noch Setup-Datei (.set) noch Abbilddatei (.bin)"},
                  kCommandWrongUsage);
  }
  read.Setup.emplace(source);
  const SetupFileChannels channels = ChannelsOfSetupFile(read.Setup->Bytes());
  read.Analog = channels.Analog;
  read.Pulse = channels.Pulse;
  return read;
}

ComparedParts PartsOf(const ReadSettings& one, const ReadSettings& other) {
  ComparedParts parts;
  const auto count = [&](std::optional<int> ReadSettings::*channels, int all) {
    if (one.Setup && !other.Setup) return (other.*channels).value_or(all);
    if (other.Setup && !one.Setup) return (one.*channels).value_or(all);
    return std::max((one.*channels).value_or(all), (other.*channels).value_or(all));
  };
  parts.Analog = count(&ReadSettings::Analog, kAnalogChannels);
  parts.Pulse = count(&ReadSettings::Pulse, kPulseChannels);
  parts.SampleOnDemand = one.HasSampleOnDemand && other.HasSampleOnDemand;
  parts.Derived = one.HasDerived && other.HasDerived;
  return parts;
}

}  // namespace tessmar
