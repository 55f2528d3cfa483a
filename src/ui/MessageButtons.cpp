#include "ui/MessageButtons.h"

#include "base/Messages.h"
#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kSetBits = 7;
constexpr int kIconBits = 112;
constexpr int kDefaultButtonBits = 768;
constexpr int kDefaultButtonStep = 256;

MessageButton Button(TextId caption, int result) {
  return {GetText(caption), true, result};
}
MessageButton Button(const QString& caption, int result) {
  return {caption, true, result};
}

std::vector<MessageButton> ButtonSet(int set) {
  switch (set) {
    case kOkCancel:
      return {Button(TextId::OK, kOk), Button(TextId::Cancel, kCancel)};
    case kAbortRetryIgnore:
      return {Button(u"Abort"_s, kAbort), Button(u"Retry"_s, kRetry), Button(u"Ignore"_s, kIgnore)};
    case kYesNoCancel:
      return {Button(TextId::Yes, kYes), Button(TextId::No, kNo), Button(TextId::Cancel, kCancel)};
    case kYesNo:
      return {Button(TextId::Yes, kYes), Button(TextId::No, kNo)};
    case kRetryCancel:
      return {Button(u"Retry"_s, kRetry), Button(u"Cancel"_s, kCancel)};
    default:
      return {Button(TextId::OK, kOk)};
  }
}

}  // namespace

std::vector<MessageButton> MessageButtonsFor(int buttons) {
  std::vector<MessageButton> result = ButtonSet(buttons & kSetBits);
  if ((buttons & kHelpButton) != 0) result.push_back({u"Help"_s, false, 0});
  return result;
}

int MessageResult(int buttons, int selectedButton) {
  const std::vector<MessageButton> set = ButtonSet(buttons & kSetBits);
  const auto index = static_cast<std::size_t>(selectedButton);
  return selectedButton >= 0 && index < set.size() ? set[index].Result : set.front().Result;
}

int MessageIconCode(int buttons) {
  const int icon = buttons & kIconBits;
  const bool known =
      icon == kCritical || icon == kQuestion || icon == kExclamation || icon == kInformation;
  return known ? icon : 0;
}

int DefaultMessageButton(int buttons) {
  return (buttons & kDefaultButtonBits) / kDefaultButtonStep;
}

MessageWayOut MessageWayOutFor(const std::vector<MessageButton>& buttons) {
  std::optional<int> cancel;
  std::optional<int> no;
  std::optional<int> only;
  int closing = 0;
  for (int i = 0; i < static_cast<int>(buttons.size()); ++i) {
    const MessageButton& button = buttons[static_cast<std::size_t>(i)];
    if (!button.Closes) continue;
    ++closing;
    only = i;
    if (button.Result == kCancel) cancel = i;
    if (button.Result == kNo) no = i;
  }
  if (closing > 1) only = std::nullopt;
  return {.Escape = cancel ? cancel : (no ? no : only), .Close = only};
}

QString MessageSound(int /*buttons*/) {
  // One sound for every message, whatever its icon: operators know it as the program's own.
  return u"SystemHand"_s;
}

}  // namespace tessmar
