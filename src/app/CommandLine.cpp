#include "app/CommandLine.h"

#include "base/Fault.h"
#include "base/Numbers.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

// The number that follows a switch to the end of the text; nothing without the switch.
std::optional<std::int16_t> ValueBehind(const QString& text, const QString& name,
                                        Qt::CaseSensitivity sensitivity, const QLocale& locale,
                                        const char* refusal) {
  const qsizetype place = text.indexOf(name, 0, sensitivity);
  if (place < 0) return std::nullopt;
  std::int32_t value = 0;
  if (!TryParseInteger(text.mid(place + name.size()), locale, value)) {
    throw ConversionFault(refusal);
  }
  if (value < INT16_MIN || value > INT16_MAX) throw ConversionFault(refusal);
  return static_cast<std::int16_t>(value);
}

}  // namespace

QString CommandLineText(const QStringList& arguments) {
  return arguments.mid(1).join(u' ');
}

CommandLine ParseCommandLine(const QString& text, const QLocale& locale) {
  CommandLine line;
  line.Language =
      ValueBehind(text, u"-l"_s, Qt::CaseSensitive, locale,
                  "-l needs a language number behind it, at the end of the command line");
  line.TrapErrors = !text.contains(u"-d"_s);
  line.ShowImageImport = text.contains(u"-i"_s);
  const std::optional<std::int16_t> ticks =
      ValueBehind(text, u"-w"_s, Qt::CaseInsensitive, locale,
                  "-w needs a number of tenths of a second behind it, at the end of the command "
                  "line");
  line.ModemTimeoutTicks = ticks.value_or(line.ModemTimeoutTicks);
  return line;
}

void ApplyCommandLine(const CommandLine& line, LinkState& link, MainScreen& screen) {
  link.TrapErrors = line.TrapErrors;
  screen.SetVisible(u"mnuLoadLoggerImageFile"_s, line.ShowImageImport);
  screen.SetVisible(u"imnuLoadLoggerImageFile"_s, line.ShowImageImport);
  link.ModemTimeoutTicks = line.ModemTimeoutTicks;
}

}  // namespace tessmar
