// Setup files: the whole input is the file.

#include <array>

#include "Fuzz.h"
#include "base/Fault.h"
#include "settings/SetupFile.h"
#include "settings/config.h"
#include "support/Links.h"

namespace {

using namespace tessmar;
using fuzz::Hold;

QByteArray Written(const LoggerSettings& settings) {
  const SetupFileHead head{QStringLiteral("TessmarLogger"), QStringLiteral("2.1.9"),
                           QStringLiteral("12/27/2010"), QStringLiteral("3:05:12 PM")};
  return WriteSetupFile(head, test::LinkWith(8, 2), settings);
}

void Check(const QByteArray& file, const QLocale& locale) {
  LoggerSettings settings;
  LoadDefaultSettings(settings, 8);
  try {
    ReadSetupFile(file, locale, settings);
  } catch (const Fault&) {
    // What stands ahead of the mistake was taken over, and can be saved.
  }
  const QByteArray written = Written(settings);
  LoggerSettings again;
  LoadDefaultSettings(again, 8);
  Hold(ReadSetupFile(written, locale, again) > 0, "a file that was saved is known again");
  Hold(Written(again) == written, "a file that was saved, loaded and saved is the same");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::array locales{QLocale(QLocale::English, QLocale::UnitedStates),
                                  QLocale(QLocale::German, QLocale::Germany)};
  const QByteArray file = fuzz::FileOf(data, size);
  for (const QLocale& locale : locales) Check(file, locale);
  const SetupFileChannels channels = ChannelsOfSetupFile(file);
  Hold(channels.Analog.value_or(0) >= 0 && channels.Analog.value_or(0) <= 8, "0 to 8 channels");
  Hold(channels.Pulse.value_or(0) >= 0 && channels.Pulse.value_or(0) <= 2, "0 to 2 pulses");
  return 0;
}
