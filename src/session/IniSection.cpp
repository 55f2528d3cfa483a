#include "session/IniSection.h"

#include <QStringDecoder>
#include <QStringEncoder>
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr std::array<std::pair<char, char>, 9> kEscapes{{{'a', '\a'},
                                                         {'b', '\b'},
                                                         {'f', '\f'},
                                                         {'n', '\n'},
                                                         {'r', '\r'},
                                                         {'t', '\t'},
                                                         {'v', '\v'},
                                                         {'"', '"'},
                                                         {'\\', '\\'}}};

bool IsLineEnd(char character) {
  return character == '\n' || character == '\r';
}

bool IsHexDigit(int character) {
  return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f') ||
         (character >= 'A' && character <= 'F');
}

/// A line and its place in the file. Quotes and a backslash carry it over the end of a row.
struct Line {
  qsizetype Begin = 0;
  qsizetype End = 0;
  qsizetype Equals = -1;  ///< Place of the sign that ends the key.
};

/// The end of the line that begins here; notes the sign that ends its key.
qsizetype EndOfLine(const QByteArray& bytes, Line& line) {
  bool quoted = false;
  for (qsizetype i = line.Begin; i < bytes.size(); ++i) {
    const char character = bytes[i];
    if (character == '"') quoted = !quoted;
    if (character == '\\') {
      ++i;
      const bool pair = i + 1 < bytes.size() && IsLineEnd(bytes[i]) && IsLineEnd(bytes[i + 1]) &&
                        bytes[i] != bytes[i + 1];
      if (pair) ++i;
    } else if (!quoted) {
      if (character == '=' && line.Equals < 0) line.Equals = i;
      if (IsLineEnd(character) || character == ';') return i;
    }
  }
  return bytes.size();
}

std::vector<Line> LinesOf(const QByteArray& bytes) {
  std::vector<Line> lines;
  qsizetype place = bytes.startsWith("\xEF\xBB\xBF") ? 3 : 0;
  while (place < bytes.size()) {
    const char character = bytes[place];
    if (IsLineEnd(character) || character == ' ' || character == '\t') {
      ++place;
    } else if (character == ';') {
      while (place < bytes.size() && !IsLineEnd(bytes[place])) ++place;
    } else {
      Line line{.Begin = place};
      line.End = EndOfLine(bytes, line);
      lines.push_back(line);
      place = line.End;
    }
  }
  return lines;
}

/// Reads the text of a value, as it stands behind the sign.
class ValueReader {
 public:
  explicit ValueReader(const QByteArray& bytes) : bytes_(bytes) {}

  QString Text() {
    SkipBlanks();
    while (place_ < bytes_.size()) TakeOne();
    EndElement();
    return elements_.join(u", "_s);
  }

 private:
  void SkipBlanks() {
    while (place_ < bytes_.size() && (bytes_[place_] == ' ' || bytes_[place_] == '\t')) ++place_;
  }

  void TakeOne() {
    const char character = bytes_[place_];
    if (character == '\\') {
      ++place_;
      TakeEscape();
      kept_ = element_.size();
    } else if (character == '"') {
      ++place_;
      quoted_ = !quoted_;
      wasQuoted_ = true;
      if (!quoted_) SkipBlanks();
      kept_ = element_.size();
    } else if (character == ',' && !quoted_) {
      ++place_;
      EndElement();
      SkipBlanks();
    } else {
      TakePlain();
    }
  }

  void TakePlain() {
    const qsizetype begin = place_++;
    while (place_ < bytes_.size() && bytes_[place_] != '\\' && bytes_[place_] != '"' &&
           bytes_[place_] != ',')
      ++place_;
    // A byte-order mark in a text is a character like any other.
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    const QString plain = utf8(QByteArrayView(bytes_).sliced(begin, place_ - begin));
    element_ += plain;
  }

  void TakeEscape() {
    if (place_ >= bytes_.size()) return;
    const char code = bytes_[place_++];
    for (const auto& [name, character] : kEscapes) {
      if (name != code) continue;
      element_ += QLatin1Char(character);
      return;
    }
    // The value goes on behind a line's end, of which two different characters are one.
    if (IsLineEnd(code)) {
      if (place_ < bytes_.size() && IsLineEnd(bytes_[place_]) && bytes_[place_] != code) ++place_;
      return;
    }
    constexpr int kHex = 16;
    constexpr int kOctal = 8;
    if (code == 'x') TakeNumber(kHex);
    if (code >= '0' && code <= '7') {
      --place_;
      TakeNumber(kOctal);
    }
  }

  void TakeNumber(int base) {
    const qsizetype begin = place_;
    uint value = 0;
    while (place_ < bytes_.size()) {
      const char digit = bytes_[place_];
      if (!IsHexDigit(digit) || (base == 8 && digit > '7')) break;
      value = value * static_cast<uint>(base) +
              static_cast<uint>(QByteArray(1, digit).toInt(nullptr, base));
      ++place_;
    }
    if (place_ > begin) element_ += QChar(static_cast<char16_t>(value));
  }

  void EndElement() {
    while (!wasQuoted_ && element_.size() > kept_ &&
           (element_.endsWith(u' ') || element_.endsWith(u'\t')))
      element_.chop(1);
    elements_ += Meaning(element_);
    element_.clear();
    kept_ = 0;
    wasQuoted_ = false;
  }

  // "@" in front tells a type; "@@" is a text with one.
  static QString Meaning(const QString& text) {
    if (text.startsWith("@@"_L1)) return text.sliced(1);
    if (text == "@Invalid()"_L1) return u""_s;
    for (const auto type : {"@String("_L1, "@ByteArray("_L1})
      if (text.startsWith(type) && text.endsWith(u')')) return text.sliced(type.size()).chopped(1);
    return text;
  }

  const QByteArray bytes_;
  qsizetype place_ = 0;
  QStringList elements_;
  QString element_;
  qsizetype kept_ = 0;  ///< So many characters are no blanks at the end, whatever they are.
  bool quoted_ = false;
  bool wasQuoted_ = false;
};

QByteArray Escaped(const QString& value) {
  QString text = value;
  if (text.contains(QChar::Null)) {
    text = u"@String("_s + text + u')';
  } else if (text.startsWith(u'@')) {
    text.prepend(u'@');
  }
  QByteArray result;
  QStringEncoder utf8(QStringEncoder::Utf8);
  bool needsQuotes = text.startsWith(u' ') || text.endsWith(u' ');
  bool afterNumber = false;
  for (const QChar character : std::as_const(text)) {
    const char16_t code = character.unicode();
    needsQuotes = needsQuotes || code == u';' || code == u',' || code == u'=';
    const auto* escape = std::find_if(kEscapes.begin(), kEscapes.end(), [&](const auto& one) {
      return static_cast<char16_t>(static_cast<unsigned char>(one.second)) == code;
    });
    constexpr char16_t kFirstPlain = 0x20;
    const bool number =
        (code < kFirstPlain && escape == kEscapes.end()) || (afterNumber && IsHexDigit(code));
    if (number) {
      result += code == 0 ? QByteArrayLiteral("\\0") : "\\x" + QByteArray::number(code, 16);
    } else if (escape != kEscapes.end()) {
      result += '\\';
      result += escape->first;
    } else {
      result += QByteArray(utf8(character));
    }
    afterNumber = number;
  }
  return needsQuotes ? '"' + result + '"' : result;
}

/// The section of a line in brackets; nothing for any other line.
bool IsSection(const QByteArray& line, QByteArray& name) {
  if (!line.startsWith('[')) return false;
  const qsizetype end = line.indexOf(']');
  name = (end < 0 ? line.sliced(1) : line.first(end).sliced(1)).trimmed();
  return true;
}

QByteArray LineOf(const QString& key, const QString& value) {
  return key.toUtf8() + '=' + Escaped(value);
}

/// A file without the room behind its last line. What else counts as white space belongs to a line.
QByteArray WithoutRoomAtEnd(const QByteArray& bytes) {
  constexpr QByteArrayView kRoom(" \t\r\n");
  qsizetype end = bytes.size();
  while (end > 0 && kRoom.contains(bytes[end - 1])) --end;
  return bytes.first(end);
}

/// Puts the values into a file that has the form.
QByteArray Merged(const QByteArray& bytes, const QByteArray& section, const IniValues& values) {
  QByteArray result;
  IniValues missing = values;
  QByteArray current;
  qsizetype copied = 0;
  qsizetype sectionEnd = -1;  // In the result.
  for (const Line& line : LinesOf(bytes)) {
    const QByteArray text = bytes.sliced(line.Begin, line.End - line.Begin);
    result += bytes.sliced(copied, line.Begin - copied);
    copied = line.End;
    const bool isSection = IsSection(text, current);
    const QString key = !isSection && line.Equals >= 0 && current == section
                            ? QString::fromUtf8(text.first(line.Equals - line.Begin).trimmed())
                            : QString();
    const auto known = values.constFind(key);
    result += known == values.constEnd() ? text : LineOf(key, *known);
    missing.remove(key);
    if (current == section) sectionEnd = result.size();
  }
  result += bytes.sliced(copied);
  QByteArray added;
  for (auto value = missing.cbegin(); value != missing.cend(); ++value)
    added += '\n' + LineOf(value.key(), *value);
  if (sectionEnd >= 0) {
    // Behind a note at the end of the row.
    while (sectionEnd < result.size() && !IsLineEnd(result[sectionEnd])) ++sectionEnd;
    return result.insert(sectionEnd, added);
  }
  const QByteArray others = WithoutRoomAtEnd(result);
  return (others.isEmpty() ? others : others + "\n\n") + '[' + section + ']' + added + '\n';
}

}  // namespace

IniValues ReadIniSection(const QByteArray& bytes, const QByteArray& section) {
  IniValues values;
  QByteArray current;
  for (const Line& line : LinesOf(bytes)) {
    const QByteArray text = bytes.sliced(line.Begin, line.End - line.Begin);
    if (IsSection(text, current) || line.Equals < 0 || current != section) continue;
    const qsizetype equals = line.Equals - line.Begin;
    values[QString::fromUtf8(text.first(equals).trimmed())] =
        ValueReader(text.sliced(equals + 1)).Text();
  }
  return values;
}

QByteArray WithIniSection(const QByteArray& bytes, const QByteArray& section,
                          const IniValues& values) {
  QByteArray merged = Merged(bytes, section, values);
  const IniValues read = ReadIniSection(merged, section);
  for (auto value = values.cbegin(); value != values.cend(); ++value)
    if (!read.contains(value.key()) || read[value.key()] != *value)
      return Merged({}, section, values);
  return merged;
}

}  // namespace tessmar
