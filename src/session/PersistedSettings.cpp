#include "session/PersistedSettings.h"

#include <QSettings>
#include <QStandardPaths>
#include <string>

#include "base/Fault.h"
#include "base/Numbers.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

const auto kSection = u"Configuration"_s;
const auto kDefaultPort = u"Com1"_s;
const auto kDefaultBaud = u"38400"_s;

QString Numbered(const QString& key, std::size_t index) {
  return key + QString::number(index);
}

QString ReadText(const QSettings& store, const QString& key, const QString& otherwise = u""_s) {
  const QVariant value = store.value(key, otherwise);
  // A value typed into the file by hand, with a comma and without quotes, reads as a list.
  if (value.typeId() == QMetaType::QStringList) return value.toStringList().join(u", "_s);
  return value.toString();
}

std::int16_t ReadNumber(const QSettings& store, const QString& key, std::int16_t otherwise,
                        const QLocale& locale) {
  const QString text = ReadText(store, key, QString::number(otherwise));
  std::int32_t value = 0;
  if (!TryParseInteger(text, locale, value) || value < INT16_MIN || value > INT16_MAX) {
    const QString refusal = u"%1 must be a number in %2, it is \"%3\""_s;
    throw ConversionFault(refusal.arg(key, store.fileName(), text).toStdString());
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
  QSettings store(path_, QSettings::IniFormat);
  store.beginGroup(kSection);
  return ReadNumber(store, u"Language"_s, systemLanguage, locale_);
}

bool PersistedSettings::Load(ConnectionSettings& connection, RecentFiles& files,
                             QString& csvDateTimeSingleColumn) const {
  QSettings store(path_, QSettings::IniFormat);
  store.beginGroup(kSection);
  connection.DirectPort = ReadText(store, u"DirectPort"_s, kDefaultPort);
  connection.DirectBaud = ReadText(store, u"DirectBaud"_s, kDefaultBaud);
  connection.ModemPort = ReadText(store, u"ModemPort"_s, kDefaultPort);
  connection.ModemBaud = ReadText(store, u"ModemBaud"_s, kDefaultBaud);
  for (std::size_t i = 0; i < connection.ModemNumbers.size(); ++i) {
    connection.ModemNumbers[i] = ReadText(store, Numbered(u"ModemNumber"_s, i));
  }
  connection.ModemInit = ReadText(store, u"ModemInit"_s);
  connection.UseModemInit = ReadNumber(store, u"UseModemInit"_s, 0, locale_);
  files.SetupFolder = ReadText(store, u"LastFilePath"_s);
  for (std::size_t i = 0; i < files.RecentSetupFiles.size(); ++i) {
    files.RecentSetupFiles[i] = ReadText(store, Numbered(u"LastFile"_s, i));
  }
  csvDateTimeSingleColumn = ReadText(store, u"CSVDateTimeSingleColumn"_s);

  connection.CurrentPhoneNumber = connection.ModemNumbers[0];
  return store.status() != QSettings::AccessError;
}

bool PersistedSettings::Save(const ConnectionSettings& connection, const RecentFiles& files,
                             const QString& csvDateTimeSingleColumn) const {
  QSettings store(path_, QSettings::IniFormat);
  store.beginGroup(kSection);
  store.setValue(u"DirectPort"_s, connection.DirectPort);
  store.setValue(u"DirectBaud"_s, connection.DirectBaud);
  store.setValue(u"ModemPort"_s, connection.ModemPort);
  store.setValue(u"ModemBaud"_s, connection.ModemBaud);
  for (std::size_t i = 0; i < connection.ModemNumbers.size(); ++i) {
    store.setValue(Numbered(u"ModemNumber"_s, i), connection.ModemNumbers[i]);
  }
  store.setValue(u"ModemInit"_s, connection.ModemInit);
  store.setValue(u"UseModemInit"_s, QString::number(connection.UseModemInit));
  store.setValue(u"LastFilePath"_s, files.SetupFolder);
  for (std::size_t i = 0; i < files.RecentSetupFiles.size(); ++i) {
    store.setValue(Numbered(u"LastFile"_s, i), files.RecentSetupFiles[i]);
  }
  store.setValue(u"CSVDateTimeSingleColumn"_s, csvDateTimeSingleColumn);
  store.endGroup();
  store.sync();
  return store.status() != QSettings::AccessError;
}

}  // namespace tessmar
