#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace tessmar {

/// One column of many rows on its way to a server: a PostgreSQL array as text.
class ServerArray {
 public:
  void AddNull() { Add(u"NULL"); }
  void AddNumber(qint64 value) { Add(QString::number(value)); }
  /// Exact: the shortest text that reads as the same number.
  void AddReal(double value);
  /// NULL for a null text; "" is a text.
  void AddText(const QString& value);
  /// As hexadecimal digits, for decode(…, 'hex').
  void AddBytes(const QByteArray& value);

  int Count() const { return count_; }
  QString Text() const { return u'{' + content_ + u'}'; }
  void Clear();

 private:
  void Add(QStringView element);

  QString content_;
  int count_ = 0;
};

/// Rows on their way to a server by COPY, as text.
class ServerRows {
 public:
  void AddNull() { Add("\\N"); }
  void AddNumber(qint64 value);
  /// Exact, as with ServerArray.
  void AddReal(double value);
  /// A text without control characters and backslashes, such as a time; NULL for a null one.
  void AddPlain(const QString& value);
  void AddBytes(const QByteArray& value);
  void EndRow();

  int Count() const { return count_; }
  const QByteArray& Text() const { return content_; }
  void Clear();

 private:
  void Add(const char* value) { Add(value, qstrlen(value)); }
  void Add(const char* value, std::size_t size);

  QByteArray content_;
  bool begun_ = false;  ///< The row has a column.
  int count_ = 0;
};

/// A logger's own time as a timestamp: hours, minutes and seconds beyond a day's are carried over,
/// as the archive does with days. "2026-03-03T24:01:63" gives "2026-03-04T00:02:03". Null for what
/// is no time.
QString ServerTime(const QString& loggerTime);

}  // namespace tessmar
