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

}  // namespace tessmar
