#include "base/SystemLocale.h"

#include <array>
#include <utility>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

struct LanguageNumber {
  QLocale::Language Language;
  std::int16_t Number;
};

constexpr std::int16_t kEnglish = 9;

constexpr std::array<LanguageNumber, 26> kLanguageNumbers{{
    {QLocale::Arabic, 1},         {QLocale::Bulgarian, 2},
    {QLocale::Catalan, 3},        {QLocale::Chinese, 4},
    {QLocale::Czech, 5},          {QLocale::Danish, 6},
    {QLocale::German, 7},         {QLocale::Greek, 8},
    {QLocale::English, kEnglish}, {QLocale::Spanish, 10},
    {QLocale::Finnish, 11},       {QLocale::French, 12},
    {QLocale::Hebrew, 13},        {QLocale::Hungarian, 14},
    {QLocale::Icelandic, 15},     {QLocale::Italian, 16},
    {QLocale::Japanese, 17},      {QLocale::Korean, 18},
    {QLocale::Dutch, 19},         {QLocale::NorwegianBokmal, 20},
    {QLocale::Polish, 21},        {QLocale::Portuguese, 22},
    {QLocale::Romanian, 24},      {QLocale::Russian, 25},
    {QLocale::Swedish, 29},       {QLocale::Turkish, 31},
}};

/// Calls use(character) for every character of a format that is not a quoted literal, and keep for
/// every other one, its quotes included.
template <typename Use, typename Keep>
void WalkFormat(const QString& format, Use&& use, Keep&& keep) {
  bool quoted = false;
  for (const QChar character : format) {
    const bool isQuote = character == u'\'';
    if (isQuote) quoted = !quoted;
    if (quoted || isQuote) {
      keep(character);
    } else {
      use(character);
    }
  }
}

/// Makes of a locale's date format one with a four-digit year and nothing but numbers and what
/// stands between them: words, blanks and marks of the writing direction do not belong into a
/// column of a table.
class NumbersOnly {
 public:
  explicit NumbersOnly(const QString& format) {
    WalkFormat(
        format, [this](QChar character) { Take(character); },
        [this](QChar) { behindWord_ = true; });
  }
  const QString& Format() const { return result_; }

 private:
  void Take(QChar character) {
    const bool behindWord = std::exchange(behindWord_, false);
    if (character.isLetter()) {
      TakeLetter(character);
    } else if (!behindWord && character.isPunct()) {  // Behind a word it belongs to that.
      separator_ = character;
      result_ += character;
    }
    last_ = character;
  }

  void TakeLetter(QChar letter) {
    if (letter == last_ && letter == u'y') return;
    // Where nothing but a blank divides two numbers.
    if (letter != last_ && !result_.isEmpty() && result_.back().isLetter()) result_ += separator_;
    result_ += letter == u'y' ? u"yyyy"_s : QString(letter);
  }

  QString result_;
  QChar separator_ = u'-';
  QChar last_;
  bool behindWord_ = false;
};

/// True for a time format without an AM/PM mark.
bool Is24HourFormat(const QString& format) {
  bool hasMark = false;
  WalkFormat(
      format, [&](QChar character) { hasMark |= character == u'a' || character == u'A'; },
      [](QChar) {});
  return !hasMark;
}

/// True when the locale writes date and time as the C locale does, which is nobody's custom.
bool HasNoFormsOfItsOwn(const QLocale& locale) {
  const QLocale c = QLocale::c();
  return locale.dateFormat(QLocale::ShortFormat) == c.dateFormat(QLocale::ShortFormat) &&
         locale.timeFormat(QLocale::ShortFormat) == c.timeFormat(QLocale::ShortFormat);
}

}  // namespace

SystemLocale::SystemLocale(const QLocale& locale) : locale_(locale) {
  if (HasNoFormsOfItsOwn(locale)) {
    shortDateFormat_ = u"M/d/yyyy"_s;
    uses24HourClock_ = false;
    return;
  }
  shortDateFormat_ = NumbersOnly(locale.dateFormat(QLocale::ShortFormat)).Format();
  uses24HourClock_ = Is24HourFormat(locale.timeFormat(QLocale::ShortFormat));
}

std::int16_t SystemLocale::PrimaryLanguage() const {
  for (const LanguageNumber& entry : kLanguageNumbers) {
    if (entry.Language == locale_.language()) return entry.Number;
  }
  return kEnglish;
}

QString SystemLocale::ShortDate(QDate date) const {
  // The locale's own digits would stand beside times of ours.
  return QLocale::c().toString(date, shortDateFormat_);
}

QString SystemLocale::ShortTime(QTime time) const {
  // QTime's own toString writes AM and PM in every locale.
  return time.toString(uses24HourClock_ ? u"HH:mm:ss"_s : u"h:mm:ss AP"_s);
}

QString SystemLocale::StampDate(QDate date) const {
  constexpr int kYearDigits = 4;
  QString text = ShortDate(date);
  const QString year = QString::number(date.year());
  if (year.size() == kYearDigits && text.endsWith(year)) text.remove(text.size() - kYearDigits, 2);
  return text;
}

QDate CarriedDate(int year, int month, int day) {
  return QDate(year, 1, 1).addMonths(month - 1).addDays(day - 1);
}

}  // namespace tessmar
