#pragma once

#include <QLocale>
#include <QString>
#include <cstdint>

namespace tessmar {

/// The number that a text begins with, as far as it reaches; 0 when there is none.
///
/// Blanks of every kind, line ends and marks of the writing direction are skipped wherever they
/// stand. A number is an optional sign (a minus sign as typesetters set it is one too), digits with
/// at most one point among or beside them, and an optional exponent of "e" or "E", an optional
/// sign and digits. The point is the only decimal separator, whatever the locale. A number too
/// large for a double throws ConversionFault, one too small is 0.
double ParseLeadingNumber(const QString& text);

/// True when the whole text is a number by the locale's conventions: the same blanks at the ends,
/// one sign, digits with group separators in the whole part, one decimal separator; no exponent. A
/// point is a decimal separator in every locale that does not group with it.
bool IsNumeric(const QString& text, const QLocale& locale);

/// Reads a whole text as a number of the locale, rounded to a 32-bit integer, ties to even.
/// @param value  set to 0 first.
/// @return false for a text that is not numeric or a value outside 32 bits.
bool TryParseInteger(const QString& text, const QLocale& locale, std::int32_t& value);

/// A number in at most 15 significant digits, without exponent or trailing zeros, always with a
/// point. Never shows a negative zero.
QString FormatInvariantNumber(double value);

/// Replaces each "," in the caller's text by "." and gives its leading number; 0 on any fault.
double ParseInvariantNumber(QString& text);

/// Rounds to the nearest integer, ties to even. Throws ConversionFault when the result does not fit
/// 16 (32) bits or value is not a number.
std::int16_t RoundToInt16(double value);
std::int32_t RoundToInt32(double value);

/// Packed decimal: (value div 10) * 16 + (value mod 10), for 0 to 99. Does not test the value.
std::uint8_t ToBcd(int value);
/// High half-byte times ten plus low half-byte. Does not test the digits.
int FromBcd(std::uint8_t byte);
/// Two characters, each half-byte added to the code of "0"; a half-byte above 9 gives the ASCII
/// character that follows, so that 0x1A reads "1:".
QString BcdToText(std::uint8_t byte);

}  // namespace tessmar
