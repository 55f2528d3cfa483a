#pragma once

#include <QString>

namespace tessmar {

/// The program's texts beside those of TextTable, whose numbers and words are fixed. A "%1" is a
/// place for what the caller fills in.
enum class AddedText {
  WaitingForLateAnswers,
  UploadBegunAnew,
  UploadShort,  ///< %1 records came, %2 were promised.
};

/// The text in the language that SetTextLanguage chose, which is English but for German.
QString GetText(AddedText id);

}  // namespace tessmar
