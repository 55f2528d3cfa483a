#pragma once

#include <QString>
#include <array>
#include <cstddef>

#include "base/TextTable.h"

namespace tessmar {

/// A text in both languages, as a row of a room's own table. The rows stand in the order of the
/// enumeration that numbers them; TextRowsStandInOrder is for a static_assert of that.
template <typename Id>
struct TextRow {
  Id Which;
  const char16_t* English;
  const char16_t* German;
};

template <typename Id, std::size_t kCount>
constexpr bool TextRowsStandInOrder(const std::array<TextRow<Id>, kCount>& rows) {
  for (std::size_t i = 0; i < kCount; ++i) {
    if (static_cast<std::size_t>(rows[i].Which) != i) return false;
  }
  return true;
}

/// The text of a row in the language that SetTextLanguage chose. Throws std::out_of_range when the
/// table has no such row.
template <typename Id, std::size_t kCount>
QString TextOf(const std::array<TextRow<Id>, kCount>& rows, Id id) {
  const TextRow<Id>& row = rows.at(static_cast<std::size_t>(id));
  return InLanguage(row.English, row.German);
}

}  // namespace tessmar
