// The words of a command line, one a line of the input, and what else is written for programs.

#include <QJsonDocument>
#include <QJsonObject>

#include "Fuzz.h"
#include "app/CommandLine.h"
#include "archive/ServerAddress.h"
#include "base/Fault.h"
#include "base/TextTable.h"
#include "cli/CommandOptions.h"
#include "cli/JsonLine.h"

namespace {

using namespace tessmar;
using fuzz::Hold;

void CheckCommand(const QStringList& words) {
  const ParsedCommand parsed = ParseCommand(words);
  Hold(int{parsed.Options.has_value()} + int{!parsed.Text.isEmpty()} +
               int{!parsed.Error.isEmpty()} ==
           1,
       "a command line is work, or a text, or a mistake");
  Hold(!parsed.Error.contains(u'\n'), "a mistake is told in one line");
  if (!parsed.Options) return;
  const CommandOptions& options = *parsed.Options;
  Hold(options.Count.value_or(1) >= 1 && options.Every.value_or(2) >= 2, "numbers in their range");
  Hold(options.Analog.value_or(0) >= 0 && options.Analog.value_or(0) <= 8, "0 to 8 channels");
  Hold(options.Pulse.value_or(0) >= 0 && options.Pulse.value_or(0) <= 2, "0 to 2 pulses");
  Hold(options.Baud >= 9600 && options.Baud <= 115200, "a speed of the list");
  for (const QString& operand : options.Operands) Hold(!operand.isEmpty(), "no empty operand");
}

void CheckSwitches(const QStringList& words) {
  const QLocale locale(QLocale::English, QLocale::UnitedStates);
  try {
    ParseCommandLine(CommandLineText(words), locale);
  } catch (const ConversionFault&) {
    return;
  }
}

void CheckAddress(const QString& text) {
  try {
    const ServerAddress address = ParseServerAddress(text);
    Hold(!address.Parameters.contains(QStringLiteral("password")), "no password in an address");
    address.Shown();
    address.ConnectOptions();
  } catch (const Fault&) {
    return;
  }
}

void CheckJson(const QString& text) {
  const QByteArray line = JsonLine().Text("text", text).Written("number", text).Line().toUtf8();
  Hold(!line.contains('\n'), "an object is one line");
  QJsonParseError error;
  const QJsonDocument document = QJsonDocument::fromJson(line, &error);
  Hold(error.error == QJsonParseError::NoError, "every program can read it");
  Hold(document.object().value(QStringLiteral("text")).toString() == text, "a text is itself");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QString text = QString::fromUtf8(fuzz::FileOf(data, size));
  const QStringList words = QStringList(QStringLiteral("tessmar")) + text.split(u'\n');
  for (const std::int16_t language : {kLanguageEnglish, kLanguageGerman}) {
    SetTextLanguage(language);
    CheckCommand(words);
  }
  CheckSwitches(words);
  CheckAddress(text);
  CheckJson(text);
  return 0;
}
