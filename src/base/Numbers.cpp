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

bool IsBlank(QChar c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}
bool IsDigit(QChar c) {
  return c >= u'0' && c <= u'9';
}
bool IsSign(QChar c) {
  return c == u'+' || c == u'-';
}

/// Walks through a text, leaving out its blanks, and collects the characters it takes.
class PrefixReader {
 public:
  explicit PrefixReader(const QString& text) : text_(text) { SkipBlanks(); }

  bool AtEnd() const { return place_ == text_.size(); }
  QChar Next() const { return AtEnd() ? QChar() : text_.at(place_); }
  void Take() {
    taken_.append(text_.at(place_).toLatin1());
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

/// True when the first digit of a number other than zero stands ahead of its point, after the point
/// was moved by its exponent.
bool IsAboveOne(const QByteArray& number) {
  constexpr qsizetype kLongExponent = 9;
  const QByteArray lower = number.toLower();
  const qsizetype mark = lower.indexOf('e');
  const QByteArray mantissa = mark < 0 ? lower : lower.left(mark);
  qlonglong exponent = 0;
  if (mark >= 0) {
    const QByteArray text = lower.mid(mark + 1);
    const bool tiny = text.startsWith('-');
    exponent = text.toLongLong();
    if (exponent == 0 && text.size() > kLongExponent) return !tiny;
  }
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

/// A text that is a number by the locale's conventions, written with ASCII digits and a point;
/// nothing when it is no such number.
std::optional<QString> PlainNumber(const QString& text, const QLocale& locale) {
  QString rest = text.trimmed();
  QString plain;
  if (TakeOneOf(rest, {u"-"_s, locale.negativeSign()})) {
    plain = u"-"_s;
  } else {
    TakeOneOf(rest, {u"+"_s, locale.positiveSign()});
  }
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
  if (value == 0 || !std::isfinite(value)) return u"0"_s;
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
