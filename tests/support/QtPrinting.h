#pragma once

#include <QString>
#include <ostream>

/// What a failing test shows of a text. To be included by every file of a test program, or by none.
inline void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}
