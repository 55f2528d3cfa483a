#include "archive/ServerRows.h"

#include <QDateTime>
#include <QLocale>
#include <QStringList>
#include <array>
#include <charconv>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

// True for a time that a day has, as nearly all are.
bool IsPlain(QStringView time) {
  constexpr qsizetype kLength = 19;
  return time.size() == kLength && time.mid(11, 2) < u"24" && time[14] < u'6' && time[17] < u'6';
}

}  // namespace

void ServerArray::Add(QStringView element) {
  if (count_ > 0) content_ += u',';
  content_ += element;
  ++count_;
}

void ServerArray::AddReal(double value) {
  Add(QString::number(value, 'g', QLocale::FloatingPointShortest));
}

void ServerArray::AddText(const QString& value) {
  if (value.isNull()) {
    AddNull();
    return;
  }
  QString text = value;
  text.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s);
  Add(u'"' + text + u'"');
}

void ServerArray::AddBytes(const QByteArray& value) {
  // The empty one needs quotes.
  Add(value.isEmpty() ? u"\"\""_s : QString::fromLatin1(value.toHex()));
}

void ServerArray::Clear() {
  content_.resize(0);
  count_ = 0;
}

void ServerRows::Add(const char* value, std::size_t size) {
  if (begun_) content_ += '\t';
  content_.append(value, static_cast<qsizetype>(size));
  begun_ = true;
}

void ServerRows::AddNumber(qint64 value) {
  std::array<char, 24> digits{};
  const auto end = std::to_chars(digits.begin(), digits.end(), value);
  Add(digits.data(), static_cast<std::size_t>(end.ptr - digits.data()));
}

void ServerRows::AddReal(double value) {
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.begin(), digits.end(), value);
  Add(digits.data(), static_cast<std::size_t>(end.ptr - digits.data()));
}

void ServerRows::AddPlain(const QString& value) {
  if (value.isNull()) {
    AddNull();
    return;
  }
  const QByteArray text = value.toLatin1();
  Add(text.constData(), static_cast<std::size_t>(text.size()));
}

void ServerRows::AddBytes(const QByteArray& value) {
  const QByteArray text = "\\\\x" + value.toHex();
  Add(text.constData(), static_cast<std::size_t>(text.size()));
}

void ServerRows::EndRow() {
  content_ += '\n';
  begun_ = false;
  ++count_;
}

void ServerRows::Clear() {
  content_.resize(0);
  count_ = 0;
}

QString ServerTime(const QString& loggerTime) {
  constexpr qint64 kSecondsAMinute = 60;
  constexpr qint64 kSecondsAnHour = 3600;
  if (IsPlain(loggerTime)) return loggerTime;
  const QDate date = QDate::fromString(loggerTime.left(10), Qt::ISODate);
  const QStringList parts = loggerTime.mid(11).split(u':');
  if (!date.isValid() || parts.size() != 3) return {};
  const qint64 seconds = parts[0].toLongLong() * kSecondsAnHour +
                         parts[1].toLongLong() * kSecondsAMinute + parts[2].toLongLong();
  return QDateTime(date, QTime(0, 0), Qt::UTC).addSecs(seconds).toString(u"yyyy-MM-ddTHH:mm:ss"_s);
}

}  // namespace tessmar
