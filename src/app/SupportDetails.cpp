#include "app/SupportDetails.h"

#include <QDir>
#include <QGuiApplication>
#include <QStringList>
#include <QSysInfo>

#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kLogLines = 100;

QString ConnectionDetails(const LinkState& link, const SerialPort& port) {
  if (!link.Connected) return u"not connected"_s;
  return u"model %1, firmware %2, %3 analog and %4 pulse channels, on COM%5 at %6"_s
      .arg(link.LoggerModelCode)
      .arg(link.FirmwareVersion)
      .arg(link.AnalogChannelCount)
      .arg(link.PulseChannelCount)
      .arg(port.Number())
      .arg(port.Settings());
}

}  // namespace

QString SupportDetails(const QString& title, const SystemLocale& locale, const LinkState& link,
                       const SerialPort& port, const SupportLog& log) {
  QStringList lines{title,
                    u"System: %1, %2, Qt %3, %4"_s.arg(
                        QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture(),
                        QLatin1StringView(qVersion()), QGuiApplication::platformName()),
                    u"Locale: %1, texts %2"_s.arg(locale.Locale().name()).arg(TextLanguage()),
                    u"Logger: "_s + ConnectionDetails(link, port),
                    u"Log: "_s + QDir::toNativeSeparators(log.Path())};
  lines += log.Last(kLogLines);
  return lines.join(u'\n') + u'\n';
}

}  // namespace tessmar
