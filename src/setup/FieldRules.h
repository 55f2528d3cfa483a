#pragma once

#include <QLocale>
#include <QString>
#include <optional>
#include <span>

#include "base/Messages.h"
#include "base/TextTable.h"
#include "link/LinkState.h"

namespace tessmar {

/// How the text of a field is checked and what becomes of it.
enum class FieldKind {
  Text,          ///< Trimmed and cut to Highest characters; never refused.
  ListNumber,    ///< A whole number from Lowest, cut to Highest: the position in the list.
  RawCount,      ///< The same, as a text.
  Integer,       ///< A whole number from Lowest to Highest, refused with Message.
  Number,        ///< A number, shown as the logger will hold it; cut to +-999999.
  NumberOrZero,  ///< The same, but anything else becomes "0" and nothing is refused.
  AlarmTime,     ///< Hours, minutes and seconds; only the hours are required.
  NumberBetween  ///< As Number, but refused with Message unless above Lowest and below Highest.
};

/// One editable field of the setup screen or of the calibration wizard.
struct FieldRule {
  const char* Control;  ///< Name of the control, without the index of a control array.
  FieldKind Kind;
  int Lowest = 0;
  int Highest = 0;
  std::optional<TextId> Message = std::nullopt;  ///< Shown on a refusal; silent without it.
  TextId Title = TextId::FormatError;            ///< Title and style of every message of the field.
  int Buttons = kOkOnly + kCritical;
};

/// What a check depends on besides the text.
struct FieldContext {
  const LinkState& Link;  ///< TrapErrors only.
  const QLocale& Locale;  ///< What counts as a number.
  bool Use24HourClock;    ///< Alarm hours are 0 to 23, otherwise 1 to 12.
};

/// The outcome of leaving a field. A refusal keeps the focus and the text.
struct FieldVerdict {
  bool Accepted = false;
  QString Text;                   ///< What the field holds now; on a refusal as typed.
  std::optional<int> ListIndex;   ///< For a list: the entry to choose.
  std::optional<TextId> Message;  ///< To be shown with the rule's Title and Buttons.
  bool operator==(const FieldVerdict&) const = default;
};

/// All fields of the setup screen that are checked when they are left.
std::span<const FieldRule> FieldRules();

/// The rule of a control; null for one that is not checked.
/// @param control  its name without the index: "txtHighEU" for txtHighEU(3).
const FieldRule* FindFieldRule(const QString& control);

/// The rule of txtCalibrate on a page of the calibration wizard.
/// @param step  1 to 4; even pages take a raw count.
const FieldRule& CalibrationFieldRule(int step);

/// Checks the text of a field that is about to be left.
///
/// A fault inside (a number beyond a double or, in an alarm time, beyond 16 bits) ends the check
/// while TrapErrors is true: a field of kind Number or NumberOrZero is then accepted unchanged, an
/// alarm time is refused without a message. Otherwise the fault passes through.
FieldVerdict CheckField(const FieldRule& rule, const QString& text, const FieldContext& context);

}  // namespace tessmar
