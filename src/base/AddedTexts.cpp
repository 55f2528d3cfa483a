#include "base/AddedTexts.h"

#include <array>

#include "base/TextRows.h"

namespace tessmar {
namespace {

using Row = TextRow<AddedText>;

// clang-format off
constexpr std::array kTexts{
    Row{AddedText::WaitingForLateAnswers,
            u"waiting for late answers",
            u"warte auf verspätete Antworten"},
    Row{AddedText::UploadBegunAnew,
            u"begun anew",
            u"von vorn begonnen"},
    Row{AddedText::UploadShort,
            u"only %1 of %2 records received",
            u"nur %1 von %2 Datensätzen erhalten"},
};
// clang-format on

static_assert(TextRowsStandInOrder(kTexts), "a text's row is its number");

}  // namespace

QString GetText(AddedText id) {
  return TextOf(kTexts, id);
}

}  // namespace tessmar
