#include "session/PersistedSettings.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <string>

#include "base/Fault.h"
#include "base/FileTrouble.h"
#include "base/Numbers.h"
#include "base/ReadFile.h"
#include "base/WholeFile.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

const QByteArray kSection("Configuration");
/// No store comes near this; what does is something else.
constexpr qint64 kLargestStore = qint64{1024} * 1024;
const auto kDefaultPort = u"Com1"_s;
const auto kDefaultBaud = u"38400"_s;

QString Numbered(const QString& key, std::size_t index) {
  return key + QString::number(index);
}

std::int16_t ReadNumber(const IniValues& store, const QString& key, std::int16_t otherwise,
                        const QLocale& locale, const QString& path) {
  const QString text = store.value(key, QString::number(otherwise));
  std::int32_t value = 0;
  if (!TryParseInteger(text, locale, value) || value < INT16_MIN || value > INT16_MAX) {
    const QString refusal = u"%1 must be a number in %2, it is \"%3\""_s;
    throw ConversionFault(refusal.arg(key, path, text).toStdString());
  }
  return static_cast<std::int16_t>(value);
}

}  // namespace

QString PersistedSettings::DefaultPath() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
         u"/Tessmar/Tessmar Logger.ini"_s;
}

PersistedSettings::PersistedSettings(const QString& path, const QLocale& locale)
    : path_(path), locale_(locale) {}

std::int16_t PersistedSettings::Language(std::int16_t systemLanguage) const {
  return ReadNumber(Values().value_or(IniValues()), u"Language"_s, systemLanguage, locale_, path_);
}

bool PersistedSettings::Load(ConnectionSettings& connection, RecentFiles& files,
                             QString& csvDateTimeSingleColumn) const {
  const std::optional<IniValues> read = Values();
  const IniValues store = read.value_or(IniValues());
  connection.DirectPort = store.value(u"DirectPort"_s, kDefaultPort);
  connection.DirectBaud = store.value(u"DirectBaud"_s, kDefaultBaud);
  connection.ModemPort = store.value(u"ModemPort"_s, kDefaultPort);
  connection.ModemBaud = store.value(u"ModemBaud"_s, kDefaultBaud);
  for (std::size_t i = 0; i < connection.ModemNumbers.size(); ++i) {
    connection.ModemNumbers[i] = store.value(Numbered(u"ModemNumber"_s, i), u""_s);
  }
  connection.ModemInit = store.value(u"ModemInit"_s, u""_s);
  connection.UseModemInit = ReadNumber(store, u"UseModemInit"_s, 0, locale_, path_);
  files.SetupFolder = store.value(u"LastFilePath"_s, u""_s);
  for (std::size_t i = 0; i < files.RecentSetupFiles.size(); ++i) {
    files.RecentSetupFiles[i] = store.value(Numbered(u"LastFile"_s, i), u""_s);
  }
  csvDateTimeSingleColumn = store.value(u"CSVDateTimeSingleColumn"_s, u""_s);

  connection.CurrentPhoneNumber = connection.ModemNumbers[0];
  return read.has_value();
}

QByteArray PersistedSettings::Bytes() const {
  try {
    return ReadWholeFile(path_, kLargestStore);
  } catch (const FileTrouble& trouble) {
    const bool missing =
        trouble.Cause() == FileCause::NotFound || trouble.Cause() == FileCause::NoFolder;
    if (!missing) throw;
    return {};
  }
}

std::optional<IniValues> PersistedSettings::Values() const {
  try {
    return ReadIniSection(Bytes(), kSection);
  } catch (const FileTrouble&) {
    return std::nullopt;
  }
}

bool PersistedSettings::Save(const ConnectionSettings& connection, const RecentFiles& files,
                             const QString& csvDateTimeSingleColumn) const {
  IniValues store;
  store[u"DirectPort"_s] = connection.DirectPort;
  store[u"DirectBaud"_s] = connection.DirectBaud;
  store[u"ModemPort"_s] = connection.ModemPort;
  store[u"ModemBaud"_s] = connection.ModemBaud;
  for (std::size_t i = 0; i < connection.ModemNumbers.size(); ++i) {
    store[Numbered(u"ModemNumber"_s, i)] = connection.ModemNumbers[i];
  }
  store[u"ModemInit"_s] = connection.ModemInit;
  store[u"UseModemInit"_s] = QString::number(connection.UseModemInit);
  store[u"LastFilePath"_s] = files.SetupFolder;
  for (std::size_t i = 0; i < files.RecentSetupFiles.size(); ++i) {
    store[Numbered(u"LastFile"_s, i)] = files.RecentSetupFiles[i];
  }
  store[u"CSVDateTimeSingleColumn"_s] = csvDateTimeSingleColumn;
  try {
    QDir().mkpath(QFileInfo(path_).path());
    WriteWholeFile(path_, WithIniSection(Bytes(), kSection, store));
    return true;
  } catch (const FileTrouble&) {
    return false;
  }
}

}  // namespace tessmar
