#include <algorithm>

#include "cli/CommandTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr TwoLanguages kPurpose{
    u"Work with a Tessmar data logger on a serial line.",
    u"Mit einem Tessmar-Datenlogger an einer seriellen Leitung arbeiten."};
constexpr TwoLanguages kUsage{u"Usage: ", u"Aufruf: "};
constexpr TwoLanguages kCommandsHead{u"Commands:", u"Befehle:"};
constexpr TwoLanguages kOptionsHead{u"Options:", u"Optionen:"};
constexpr TwoLanguages kExampleHead{u"Example:", u"Beispiel:"};
constexpr TwoLanguages kHelpMeaning{u"Show this text.", u"Diesen Text zeigen."};
constexpr TwoLanguages kFoot{
    u"\"tessmar COMMAND --help\" tells more. PORT is a COM name (COM5) or a device "
    u"(/dev/ttyUSB0).\n"
    u"Data goes to standard output, words to standard error. Exit status: 0 done, 1 failed,\n"
    u"2 wrong usage, 3 broken off with a part kept.\n",
    u"\"tessmar BEFEHL --help\" sagt mehr. PORT ist ein COM-Name (COM5) oder ein Gerät "
    u"(/dev/ttyUSB0).\n"
    u"Daten gehen auf die Standardausgabe, Worte auf die Fehlerausgabe. Rückgabewert: 0 getan,\n"
    u"1 gescheitert, 2 falscher Aufruf, 3 abgebrochen und ein Teil aufgehoben.\n"};

QString Line(const QString& left, const QString& right, qsizetype width) {
  return u"  "_s + left.leftJustified(width) + u"  "_s + right + u'\n';
}

QString WordsOf(const CommandRow& row) {
  QString text = QString::fromUtf16(row.Words);
  const QString operands = QString::fromUtf16(row.Operands);
  return operands.isEmpty() ? text : text + u' ' + operands;
}

QString NameOf(const OptionRow& row) {
  QString text = u"--"_s + QString::fromUtf16(row.Name);
  const QString value = QString::fromUtf16(row.ValueName);
  return value.isEmpty() ? text : text + u' ' + value;
}

}  // namespace

QString ProgramHelp() {
  QString text = kPurpose.Text() + u"\n\n"_s + kCommandsHead.Text() + u'\n';
  qsizetype width = 0;
  for (const CommandRow& row : CommandRows()) width = std::max(width, WordsOf(row).size());
  for (const CommandRow& row : CommandRows()) text += Line(WordsOf(row), row.Meaning.Text(), width);
  text += u'\n' + kOptionsHead.Text() + u'\n';
  text += Line(u"--help"_s, kHelpMeaning.Text(), width);
  text += Line(u"--version"_s, TwoLanguages{u"Show the version.", u"Die Version zeigen."}.Text(),
               width);
  return text + u'\n' + kFoot.Text();
}

QString CommandHelp(const CommandRow& row) {
  QString text =
      kUsage.Text() + u"tessmar "_s + WordsOf(row) + u" [--OPTION ...]\n\n"_s + row.Meaning.Text();
  text += u"\n\n"_s + kOptionsHead.Text() + u'\n';
  qsizetype width = QString(u"--help"_s).size();
  for (const OptionRow& option : OptionRows()) {
    if ((row.Options & option.Option) != 0) width = std::max(width, NameOf(option).size());
  }
  for (const OptionRow& option : OptionRows()) {
    if ((row.Options & option.Option) != 0)
      text += Line(NameOf(option), option.Meaning.Text(), width);
  }
  text += Line(u"--help"_s, kHelpMeaning.Text(), width);
  return text + u'\n' + kExampleHead.Text() + u"\n  "_s + QString::fromUtf16(row.Example) + u'\n';
}

}  // namespace tessmar
