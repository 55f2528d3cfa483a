#pragma once

#include <QDate>
#include <QLocale>
#include <QString>
#include <QTime>
#include <cstdint>

namespace tessmar {

/// The user's locale as the program sees it: language number, clock form, short date and time
/// texts, and what counts as a number. A value, made once at start-up and passed by reference.
///
/// A system without a locale of its own (C, POSIX, C.UTF-8) is taken as US English: language 9,
/// M/d/yyyy, 12-hour clock. Date and time follow LC_TIME, numbers LC_NUMERIC, as the system says.
class SystemLocale {
 public:
  explicit SystemLocale(const QLocale& locale = QLocale::system());

  /// The primary language number: 7 German, 9 English, 10 Spanish; other languages have other
  /// numbers, 9 where the number is not known.
  std::int16_t PrimaryLanguage() const;

  /// True when the locale writes times in the 24-hour form.
  bool Uses24HourClock() const { return uses24HourClock_; }

  /// The short date: the locale's order and separators with a four-digit year, such as 12/26/2010
  /// for en_US and 26.12.2010 for de_DE. Always ASCII digits, without blanks, words and marks of
  /// the writing direction.
  QString ShortDate(QDate date) const;

  /// The time of day: "h:mm:ss AP" or "HH:mm:ss" by the locale's clock form.
  QString ShortTime(QTime time) const;

  /// The short date as record stamps and the logger's clock show it: a date that ends in the
  /// four-digit year ends in two digits, so 12/26/2010 becomes 12/26/10.
  QString StampDate(QDate date) const;

  const QLocale& Locale() const { return locale_; }

 private:
  QLocale locale_;
  QString shortDateFormat_;
  bool uses24HourClock_ = false;
};

/// The calendar date of numbers that nobody has checked: a day or month that the calendar does not
/// have is carried over. Day 0 is the last day of the month before, 31 February is 3 March (2 March
/// in a leap year), month 13 is January of the next year.
QDate CarriedDate(int year, int month, int day);

}  // namespace tessmar
