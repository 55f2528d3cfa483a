#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

namespace tessmar {

/// Keys of one section with their values, all of them texts.
using IniValues = QMap<QString, QString>;

/// Reads one section out of the bytes of an INI file in the form that QSettings gives it: UTF-8,
/// quotes and backslash escapes, "@@" for a text that begins with "@". A list, which is a value
/// with a comma and without quotes, is one text again. What is no line of that form is passed over.
/// @param section  without its brackets.
IniValues ReadIniSection(const QByteArray& bytes, const QByteArray& section);

/// The bytes with these values put into a section; every other line stays as it is. A file that is
/// no INI file, so that the values could not be read from it again, is given up for the section
/// alone.
QByteArray WithIniSection(const QByteArray& bytes, const QByteArray& section,
                          const IniValues& values);

}  // namespace tessmar
