#pragma once

#include <QLocale>
#include <QString>
#include <cstdint>

namespace tessmar {

/// The longest numeric prefix of a text: blanks skipped, a sign, digits, a point as the only decimal
/// separator whatever the locale. 0 when there is none. A prefix too large for a double throws
/// ConversionFault.
double ParseLeadingNumber(const QString& text);

/// True when the whole text is a number by the locale's conventions: blanks at the ends, one sign,
/// digits with group separators in the whole part, one decimal separator; no exponent.
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

}  // namespace tessmar
