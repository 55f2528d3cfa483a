#include "base/AddedTexts.h"

#include <array>

#include "base/TextTable.h"

namespace tessmar {
namespace {

struct TextRow {
  AddedText Id;
  const char16_t* English;
  const char16_t* German;
};

// clang-format off
constexpr std::array kTexts{
    TextRow{AddedText::WaitingForLateAnswers,
            u"waiting for late answers",
            u"warte auf verspätete Antworten"},
    TextRow{AddedText::UploadBegunAnew,
            u"begun anew",
            u"von vorn begonnen"},
    TextRow{AddedText::UploadShort,
            u"only %1 of %2 records received",
            u"nur %1 von %2 Datensätzen erhalten"},
};
// clang-format on

constexpr bool RowsStandInOrder() {
  for (std::size_t i = 0; i < kTexts.size(); ++i) {
    if (static_cast<std::size_t>(kTexts[i].Id) != i) return false;
  }
  return true;
}
static_assert(RowsStandInOrder(), "a text's row is its number");

}  // namespace

QString GetText(AddedText id) {
  const TextRow& row = kTexts[static_cast<std::size_t>(id)];
  return QString::fromUtf16(TextLanguage() == kLanguageGerman ? row.German : row.English);
}

}  // namespace tessmar
