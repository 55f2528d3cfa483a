#pragma once

#include <QString>

namespace tessmar {

/// A text without the blanks at both its ends. Other white space stays: it is part of the text.
inline QString TrimBlanks(const QString& text) {
  qsizetype first = 0;
  qsizetype end = text.size();
  while (first < end && text[first] == u' ') ++first;
  while (end > first && text[end - 1] == u' ') --end;
  return text.mid(first, end - first);
}

/// A text with a blank for each control character and line separator in it. A line feed in a name
/// or a unit would break the line of a file, and what the logger stores is read by eye.
inline QString ControlsToBlanks(QString text) {
  for (QChar& c : text) {
    if (c.category() == QChar::Other_Control || c.category() == QChar::Separator_Line ||
        c.category() == QChar::Separator_Paragraph) {
      c = u' ';
    }
  }
  return text;
}

}  // namespace tessmar
