#include "base/Numbers.h"

#include <QByteArray>
#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <optional>

#include "base/Fault.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kSignificantDigits = 15;

constexpr QChar kMinusSign(0x2212);

/// Marks of the writing direction, which some locales put around a sign.
bool IsDirectionMark(QChar c) {
  constexpr char16_t kLeftToRight = 0x200E;
  constexpr char16_t kRightToLeft = 0x200F;
  constexpr char16_t kArabicLetterMark = 0x061C;
  return c == kLeftToRight || c == kRightToLeft || c == kArabicLetterMark;
}

/// What stands in a pasted number without being seen. The test for a number and its reading skip
/// the same.
bool IsBlank(QChar c) {
  return c.isSpace() || IsDirectionMark(c);
}
bool IsDigit(QChar c) {
  return c >= u'0' && c <= u'9';
}
bool IsSign(QChar c) {
  return c == u'+' || c == u'-' || c == kMinusSign;
}

QString WithoutBlanks(const QString& text) {
  QString rest;
  for (const QChar c : text) {
    if (!IsBlank(c)) rest.append(c);
  }
  return rest;
}

QString WithoutBlanksAtTheEnds(const QString& text) {
  const auto first = std::find_if_not(text.begin(), text.end(), IsBlank);
  const auto last = std::find_if_not(text.rbegin(), text.rend(), IsBlank).base();
  return first < last ? QString(first, last - first) : QString();
}

/// Walks through a text, leaving out its blanks, and collects the characters it takes.
class PrefixReader {
 public:
  explicit PrefixReader(const QString& text) : text_(text) { SkipBlanks(); }

  bool AtEnd() const { return place_ == text_.size(); }
  QChar Next() const { return AtEnd() ? QChar() : text_.at(place_); }
  void Take() {
    const QChar c = text_.at(place_);
    taken_.append(c == kMinusSign ? '-' : c.toLatin1());
    ++place_;
    SkipBlanks();
  }
  /// Takes a run of digits and gives its length.
  qsizetype TakeDigits() {
    const qsizetype before = taken_.size();
    while (IsDigit(Next())) Take();
    return taken_.size() - before;
  }
  const QByteArray& Taken() const { return taken_; }
  void GoBackTo(qsizetype length) { taken_.truncate(length); }

 private:
  void SkipBlanks() {
    while (!AtEnd() && IsBlank(text_.at(place_))) ++place_;
  }

  const QString& text_;
  qsizetype place_ = 0;
  QByteArray taken_;
};

/// The value of an exponent's text, kept where no number of digits in a text comes near its ends.
qlonglong ExponentOf(const QByteArray& text) {
  constexpr qlonglong kBeyondAnyText = 1'000'000'000'000;
  const bool negative = text.startsWith('-');
  qlonglong exponent = 0;
  for (const char c : text) {
    if (IsDigit(QLatin1Char(c))) exponent = std::min(exponent * 10 + (c - '0'), kBeyondAnyText);
  }
  return negative ? -exponent : exponent;
}

/// True when the first digit of a number other than zero stands ahead of its point, after the point
/// was moved by its exponent.
bool IsAboveOne(const QByteArray& number) {
  const QByteArray lower = number.toLower();
  const qsizetype mark = lower.indexOf('e');
  const QByteArray mantissa = mark < 0 ? lower : lower.left(mark);
  const qlonglong exponent = mark < 0 ? 0 : ExponentOf(lower.mid(mark + 1));
  qsizetype point = mantissa.indexOf('.');
  if (point < 0) point = mantissa.size();
  const auto digit =
      std::find_if(mantissa.begin(), mantissa.end(), [](char c) { return c >= '1' && c <= '9'; });
  return point - (digit - mantissa.begin()) + exponent > 0;
}

/// The double of a plain number text, zero for one too small for a double.
double ToDouble(const QByteArray& number) {
  bool fits = false;
  const double value = number.toDouble(&fits);
  if (!fits && IsAboveOne(number)) throw ConversionFault("a number is too large");
  return !fits || value == 0 ? 0 : value;
}

/// Some locales group with a no-break space, which nobody types.
bool IsGroupSeparator(QChar c, const QString& separator) {
  if (separator.isEmpty()) return false;
  if (c == separator.front()) return true;
  return separator.front().isSpace() && c.isSpace();
}

/// The program itself writes a point in every locale, so the point is as good as the locale's own
/// decimal separator wherever it does not group.
bool IsDecimalSeparator(QChar c, const QLocale& locale) {
  if (QStringView(locale.decimalPoint()) == QStringView(&c, 1)) return true;
  return c == u'.' && !IsGroupSeparator(c, locale.groupSeparator());
}

/// Takes a sign off the front of a text. @return false when it begins with none of them.
bool TakeOneOf(QString& text, std::initializer_list<QString> signs) {
  for (const QString& sign : signs) {
    if (!sign.isEmpty() && text.startsWith(sign)) {
      text.remove(0, sign.size());
      return true;
    }
  }
  return false;
}

/// True for a sign at most and digits, which every locale reads alike.
bool IsPlainInteger(const QString& text) {
  const qsizetype first = text.startsWith(u'-') ? 1 : 0;
  return text.size() > first && std::all_of(text.begin() + first, text.end(), IsDigit);
}

/// A text that is a number by the locale's conventions, written with ASCII digits and a point;
/// nothing when it is no such number.
std::optional<QString> PlainNumber(const QString& text, const QLocale& locale) {
  // Asking the locale for its signs costs ten times as much, and a setup file has a hundred such.
  if (IsPlainInteger(text)) return text;
  QString rest = WithoutBlanksAtTheEnds(text);
  QString plain;
  if (TakeOneOf(rest, {u"-"_s, WithoutBlanks(locale.negativeSign())})) {
    plain = u"-"_s;
  } else {
    TakeOneOf(rest, {u"+"_s, WithoutBlanks(locale.positiveSign())});
  }
  while (!rest.isEmpty() && IsDirectionMark(rest.front())) rest.remove(0, 1);
  const QString group = locale.groupSeparator();
  int digits = 0;
  bool inFraction = false;
  bool behindDigit = false;
  for (const QChar c : rest) {
    if (IsDigit(c)) {
      plain.append(c);
      ++digits;
      behindDigit = true;
    } else if (!inFraction && IsDecimalSeparator(c, locale)) {
      plain.append(u'.');
      inFraction = true;
    } else if (!inFraction && behindDigit && IsGroupSeparator(c, group)) {
      behindDigit = false;
    } else {
      return std::nullopt;
    }
  }
  if (digits == 0) return std::nullopt;
  return plain;
}

template <typename Integer>
Integer Round(double value) {
  // Conversions run in the default rounding mode: nearest, ties to even.
  const double rounded = std::nearbyint(value);
  if (!(rounded >= std::numeric_limits<Integer>::min() &&
        rounded <= std::numeric_limits<Integer>::max())) {
    throw ConversionFault("a number does not fit an integer");
  }
  return static_cast<Integer>(rounded);
}

}  // namespace

double ParseLeadingNumber(const QString& text) {
  PrefixReader reader(text);
  if (IsSign(reader.Next())) reader.Take();
  qsizetype digits = reader.TakeDigits();
  if (reader.Next() == u'.') {
    reader.Take();
    digits += reader.TakeDigits();
  }
  if (digits == 0) return 0;
  if (reader.Next() == u'e' || reader.Next() == u'E') {
    const qsizetype mantissa = reader.Taken().size();
    reader.Take();
    if (IsSign(reader.Next())) reader.Take();
    if (reader.TakeDigits() == 0) reader.GoBackTo(mantissa);
  }
  return ToDouble(reader.Taken());
}

bool IsNumeric(const QString& text, const QLocale& locale) {
  return PlainNumber(text, locale).has_value();
}

bool TryParseInteger(const QString& text, const QLocale& locale, std::int32_t& value) {
  value = 0;
  const std::optional<QString> plain = PlainNumber(text, locale);
  if (!plain) return false;
  try {
    value = RoundToInt32(ParseLeadingNumber(*plain));
    return true;
  } catch (const ConversionFault&) {
    return false;
  }
}

QString FormatInvariantNumber(double value) {
  // The largest of so many digits: one more in the last would be no double.
  constexpr double kLargestWritten = 1.79769313486231e308;
  if (value == 0 || !std::isfinite(value)) return u"0"_s;
  value = std::clamp(value, -kLargestWritten, kLargestWritten);
  // "-d.dddddddddddddde+xx": the digits and the place of the point are read from here.
  const QByteArray scientific = QByteArray::number(std::abs(value), 'e', kSignificantDigits - 1);
  const qsizetype exponentMark = scientific.indexOf('e');
  QByteArray digits = scientific.left(exponentMark);
  digits.remove(1, 1);
  while (digits.size() > 1 && digits.endsWith('0')) digits.chop(1);
  const int wholeDigits = scientific.mid(exponentMark + 1).toInt() + 1;

  QByteArray text;
  if (wholeDigits <= 0) {
    text = "0." + QByteArray(-wholeDigits, '0') + digits;
  } else if (wholeDigits >= digits.size()) {
    text = digits + QByteArray(wholeDigits - digits.size(), '0');
  } else {
    text = digits.left(wholeDigits) + '.' + digits.mid(wholeDigits);
  }
  return QString::fromLatin1(value < 0 ? '-' + text : text);
}

double ParseInvariantNumber(QString& text) {
  text.replace(u',', u'.');
  try {
    return ParseLeadingNumber(text);
  } catch (const Fault&) {
    return 0;
  }
}

std::int16_t RoundToInt16(double value) {
  return Round<std::int16_t>(value);
}

std::int32_t RoundToInt32(double value) {
  return Round<std::int32_t>(value);
}

std::uint8_t ToBcd(int value) {
  return static_cast<std::uint8_t>(value / 10 * 16 + value % 10);
}

int FromBcd(std::uint8_t byte) {
  return (byte >> 4) * 10 + (byte & 0x0F);
}

QString BcdToText(std::uint8_t byte) {
  return QString(QChar(u'0' + (byte >> 4))) + QChar(u'0' + (byte & 0x0F));
}

}  // namespace tessmar
