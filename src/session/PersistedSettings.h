#pragma once

#include <QLocale>
#include <QString>
#include <cstdint>
#include <optional>

#include "link/ConnectionSettings.h"
#include "session/IniSection.h"
#include "setup/RecentFiles.h"

namespace tessmar {

/// The per-user store of what is kept between runs: an INI file with one section, [Configuration].
///
/// The file is replaced whole or not at all. A store that is there and cannot be read, because it
/// is a pipe for instance, gives the defaults and is not written.
///
/// All values are texts. A key that is missing gives its default; a store that is missing gives
/// them all. Settings changed during a run live in memory until Save.
class PersistedSettings {
 public:
  /// The user's own store, "Tessmar/Tessmar Logger.ini" in the folder for configuration files.
  static QString DefaultPath();

  /// @param path    the INI file; neither it nor its folder needs to exist.
  /// @param locale  says what counts as a number.
  PersistedSettings(const QString& path, const QLocale& locale);

  /// The language number, or systemLanguage when none is stored. It is never written.
  /// Throws ConversionFault, with a text fit for the operator, when the value is not a number of
  /// 16 bits.
  std::int16_t Language(std::int16_t systemLanguage) const;

  /// Reads everything else. The phone number offered first is the latest one dialled.
  /// @param csvDateTimeSingleColumn  empty for date and time in separate CSV columns.
  /// @return false when there is a store that could not be read: it must not be written then.
  /// Throws ConversionFault, with a text fit for the operator, when UseModemInit is not a number.
  bool Load(ConnectionSettings& connection, RecentFiles& files,
            QString& csvDateTimeSingleColumn) const;

  /// Writes what Load reads. @return false when the store could not be written.
  bool Save(const ConnectionSettings& connection, const RecentFiles& files,
            const QString& csvDateTimeSingleColumn) const;

 private:
  /// The file, empty when there is none. Throws FileTrouble when it cannot be read.
  QByteArray Bytes() const;
  /// What the section holds; nothing when the file cannot be read.
  std::optional<IniValues> Values() const;

  QString path_;
  QLocale locale_;
};

}  // namespace tessmar
