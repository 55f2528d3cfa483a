#pragma once

#include <QString>

namespace tessmar {

/// One JSON object as one line. Numbers stand as they are written, so that a channel keeps its
/// decimals; keys come in the order of the calls.
class JsonLine {
 public:
  JsonLine& Text(const char* key, const QString& value);
  JsonLine& Number(const char* key, qint64 value);
  /// A number that is written already, such as "12.50". A text that is none of JSON's gives null,
  /// and so does a number beyond the largest double.
  JsonLine& Written(const char* key, const QString& number);
  JsonLine& Flag(const char* key, bool value);
  JsonLine& Null(const char* key);

  /// "{...}" without a line end.
  QString Line() const { return u'{' + content_ + u'}'; }

 private:
  JsonLine& Add(const char* key, const QString& value);

  QString content_;
};

}  // namespace tessmar
