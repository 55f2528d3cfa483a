#include "cli/JsonLine.h"

#include <QRegularExpression>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

QString Quoted(const QString& text) {
  constexpr char16_t kFirstPrintable = 0x20;
  constexpr char16_t kDelete = 0x7F;
  QString quoted = u"\""_s;
  for (const QChar c : text) {
    if (c == u'"' || c == u'\\') {
      quoted += u'\\';
      quoted += c;
    } else if (c.unicode() < kFirstPrintable || c.unicode() == kDelete || c.isSurrogate()) {
      // Half a character does not survive the way to UTF-8; whole ones do as two escapes.
      quoted += u"\\u%1"_s.arg(static_cast<int>(c.unicode()), 4, 16, QChar(u'0'));
    } else {
      quoted += c;
    }
  }
  return quoted + u'"';
}

}  // namespace

JsonLine& JsonLine::Text(const char* key, const QString& value) {
  return Add(key, Quoted(value));
}

JsonLine& JsonLine::Number(const char* key, qint64 value) {
  return Add(key, QString::number(value));
}

JsonLine& JsonLine::Written(const char* key, const QString& number) {
  // Not "$", which a line feed may stand behind.
  static const QRegularExpression form(u"^-?(0|[1-9][0-9]*)(\\.[0-9]+)?\\z"_s);
  bool isDouble = false;
  number.toDouble(&isDouble);
  return isDouble && form.match(number).hasMatch() ? Add(key, number) : Null(key);
}

JsonLine& JsonLine::Flag(const char* key, bool value) {
  return Add(key, value ? u"true"_s : u"false"_s);
}

JsonLine& JsonLine::Null(const char* key) {
  return Add(key, u"null"_s);
}

JsonLine& JsonLine::Add(const char* key, const QString& value) {
  if (!content_.isEmpty()) content_ += u',';
  content_ += u'"' + QLatin1StringView(key) + u"\":"_s + value;
  return *this;
}

}  // namespace tessmar
