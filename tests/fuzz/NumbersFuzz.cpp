// The number family: the whole input is a text, and its first bytes are a double and a packed one.

#include <array>
#include <cmath>
#include <cstring>
#include <optional>

#include "Fuzz.h"
#include "base/Fault.h"
#include "base/Numbers.h"
#include "measure/Scaling.h"
#include "settings/ImageFields.h"
#include "settings/config.h"

namespace {

using namespace tessmar;
using fuzz::Hold;

std::optional<double> LeadingNumber(const QString& text) {
  try {
    return ParseLeadingNumber(text);
  } catch (const ConversionFault&) {
    return std::nullopt;
  }
}

void CheckDecimal24(std::uint32_t code) {
  const std::uint32_t once = EncodeDecimal24(DecodeDecimal24(code));
  Hold(once <= 0xFFFFFF, "24 bits");
  Hold(EncodeDecimal24(DecodeDecimal24(once)) == once, "stable after the first trip");
}

void CheckShown(double value) {
  for (const int decimals : {-1, 0, 1, 2, 3, 6, 7, 255}) {
    std::array<char, kFormattedValueSize> buffer;
    const int length = FormatValueTo(buffer.data(), value, decimals);
    Hold(length > 0 && length <= kFormattedValueSize, "a value has room");
    const QString text = QString::fromLatin1(buffer.data(), length);
    Hold(text == FormatValue(value, decimals), "a value has one text");
    if (!std::isfinite(value)) {
      Hold(text == QStringLiteral("---"), "what is no number shows as none");
      continue;
    }
    Hold(text != QStringLiteral("-0"), "zero has no sign");
    const std::optional<double> back = LeadingNumber(text);
    Hold(back.has_value(), "a value that is shown is a number");
    Hold(FormatValue(*back, decimals) == text, "a value that is shown shows so again");
    Hold(ShownNumber(value, decimals) == back, "the number that is shown is the one of its text");
  }
}

void CheckDouble(double value) {
  CheckShown(value);
  if (std::isnan(value)) return;
  const std::uint32_t code = EncodeDecimal24(value);
  CheckDecimal24(code);
  // What is too small for seven decimals keeps its exponent in the code, and reads as 0.
  const double stored = DecodeDecimal24(code);
  Hold(stored == 0 || EncodeDecimal24(stored) == code, "a number is stored as it was stored");
  if (!std::isfinite(value)) return;
  const QString text = FormatInvariantNumber(value);
  const std::optional<double> back = LeadingNumber(text);
  Hold(back.has_value(), "a number that was written can be read");
  Hold(FormatInvariantNumber(*back) == text, "a number that was read is written the same");
}

void CheckInteger(const QString& text, const QLocale& locale) {
  std::int32_t value = 0;
  if (!TryParseInteger(text, locale, value)) {
    Hold(value == 0, "no number is 0");
    return;
  }
  Hold(IsNumeric(text, locale), "a whole number is a number");
  std::int32_t again = 0;
  Hold(TryParseInteger(QString::number(value), locale, again) && again == value,
       "a whole number that was written is read as itself");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::array locales{
      QLocale(QLocale::English, QLocale::UnitedStates), QLocale(QLocale::German, QLocale::Germany),
      QLocale(QLocale::Swedish, QLocale::Sweden),       QLocale(QLocale::Arabic, QLocale::Egypt),
      QLocale(QLocale::French, QLocale::France),        QLocale(QLocale::Hindi, QLocale::India)};
  const QByteArray file = fuzz::FileOf(data, size);
  QString text = QString::fromUtf8(file);
  for (const QLocale& locale : locales) CheckInteger(text, locale);
  if (const std::optional<double> value = LeadingNumber(text)) {
    Hold(std::isfinite(*value), "a text gives no infinite number");
    CheckDouble(*value);
  }
  Hold(std::isfinite(ParseInvariantNumber(text)), "and none without a fault");

  double value = 0;
  if (size >= sizeof value) {
    std::memcpy(&value, data, sizeof value);
    CheckDouble(value);
  }
  if (size >= 3) CheckDecimal24(data[0] | data[1] << 8 | data[2] << 16);
  return 0;
}
