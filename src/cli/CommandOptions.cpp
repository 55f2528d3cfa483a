#include "cli/CommandOptions.h"

#include <QCommandLineParser>
#include <algorithm>

#include "ProgramVersion.h"
#include "link/ConnectChoices.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// A wrong command line; the text is one line for the operator.
class WrongUsage {
 public:
  explicit WrongUsage(const QString& text) : Text(text) {}
  QString Text;
};

const OptionRow& RowOf(CommandOption option) {
  return *std::ranges::find(OptionRows(), option, &OptionRow::Option);
}

QString NameOf(CommandOption option) {
  return QString::fromUtf16(RowOf(option).Name);
}

/// The options of a command, read and checked.
class OptionReader {
 public:
  OptionReader(const CommandRow& row, const QStringList& arguments) {
    for (const OptionRow& option : OptionRows()) {
      if ((row.Options & option.Option) == 0) continue;
      parser_.addOption(QCommandLineOption(QString::fromUtf16(option.Name), QString(),
                                           QString::fromUtf16(option.ValueName)));
    }
    parser_.addOption(QCommandLineOption(QStringList{u"h"_s, u"help"_s}));
    if (!parser_.parse(arguments)) throw WrongUsage(Refusal(row));
  }

  bool WantsHelp() const { return parser_.isSet(u"help"_s); }
  QStringList Operands() const { return parser_.positionalArguments(); }
  // An option that the command does not take is not there.
  bool Has(CommandOption option) const { return parser_.optionNames().contains(NameOf(option)); }
  QString Text(CommandOption option) const {
    if (!Has(option)) return {};
    QString text = parser_.value(NameOf(option));
    // An option that lost its value takes the next one for it.
    if (text.isEmpty() || text.startsWith("--"_L1)) throw WrongUsage(ValueWanted(NameOf(option)));
    return text;
  }
  std::optional<int> Number(CommandOption option, int least, int most) const {
    if (!Has(option)) return std::nullopt;
    const QString text = parser_.value(NameOf(option));
    bool good = false;
    const qlonglong value = text.toLongLong(&good);
    if (!good || value < least || value > most)
      throw WrongUsage(
          TwoLanguages{u"--%1: a number from %2 to %3 is wanted, not \"%4\"",
                       u"--%1: eine Zahl von %2 bis %3 wird gebraucht, nicht \"%4\""}
              .Text()
              .arg(NameOf(option), QString::number(least), QString::number(most), text));
    return static_cast<int>(value);
  }
  bool IsAnalysis() const {
    const QString style = Text(kOptionStyle);
    if (style.isEmpty() || style == "viewer"_L1) return false;
    if (style == "analysis"_L1) return true;
    throw WrongUsage(TwoLanguages{
        u"--style: viewer or analysis is wanted, not \"%1\"; for NetCDF give a file "
        u"whose name ends in .nc, which standard output cannot be",
        u"--style: viewer oder analysis wird gebraucht, nicht \"%1\"; für NetCDF eine "
        u"Datei angeben, deren Name auf .nc endet; die Standardausgabe geht dafür nicht"}
                         .Text()
                         .arg(style));
  }
  int Baud() const {
    if (!Has(kOptionBaud)) return CommandOptions().Baud;
    const QString text = parser_.value(NameOf(kOptionBaud));
    if (!DirectBaudItems().contains(text))
      throw WrongUsage(TwoLanguages{u"--baud: one of %1 is wanted, not \"%2\"",
                                    u"--baud: eine von %1 wird gebraucht, nicht \"%2\""}
                           .Text()
                           .arg(DirectBaudItems().join(u", "_s), text));
    return text.toInt();
  }

 private:
  static QString ValueWanted(const QString& name) {
    return TwoLanguages{u"--%1: a value is wanted", u"--%1: ein Wert wird gebraucht"}.Text().arg(
        name);
  }
  /// Why the parser takes no such arguments, which it says in English only.
  QString Refusal(const CommandRow& row) const {
    const QStringList unknown = parser_.unknownOptionNames();
    if (!unknown.isEmpty()) {
      const QString& name = unknown.first();
      return TwoLanguages{
          u"%1 is no option of \"tessmar %2\"; \"tessmar %2 --help\" lists them",
          u"%1 ist keine Option von \"tessmar %2\"; \"tessmar %2 --help\" zeigt sie"}
          .Text()
          .arg((name.size() == 1 ? u"-"_s : u"--"_s) + name, QString::fromUtf16(row.Words));
    }
    // What is left is a value too few or one too many; the option stands between quotes.
    QString name = parser_.errorText().section(u'\'', 1, 1);
    while (name.startsWith(u'-')) name.remove(0, 1);
    const auto option = std::ranges::find_if(
        OptionRows(), [&](const OptionRow& o) { return name == QString::fromUtf16(o.Name); });
    if (option != OptionRows().end() && *option->ValueName != u'\0') return ValueWanted(name);
    return TwoLanguages{u"--%1 takes no value", u"--%1 nimmt keinen Wert"}.Text().arg(name);
  }

  QCommandLineParser parser_;
};

/// The command that the first words of the arguments name, and how many words that takes.
const CommandRow& FindCommand(const QStringList& arguments) {
  if (arguments.size() < 2) {
    throw WrongUsage(TwoLanguages{u"what is to be done? \"tessmar --help\" lists it",
                                  u"was soll getan werden? \"tessmar --help\" zeigt es"}
                         .Text());
  }
  const QString& one = arguments[1];
  const QString two = one + u' ' + arguments.value(2);
  for (const CommandRow& row : CommandRows()) {
    const QString words = QString::fromUtf16(row.Words);
    if (words == (words.contains(u' ') ? two : one) && !one.contains(u' ')) return row;
  }
  const bool isGroup = std::ranges::any_of(CommandRows(), [&](const CommandRow& row) {
    return QString::fromUtf16(row.Words).startsWith(one + u' ');
  });
  throw WrongUsage(TwoLanguages{u"\"%1\" is no command; \"tessmar --help\" lists them",
                                u"\"%1\" ist kein Befehl; \"tessmar --help\" zeigt sie"}
                       .Text()
                       .arg(isGroup ? two.trimmed() : one));
}

void CheckOperands(const CommandRow& row, const QStringList& operands, bool namesLogger) {
  const bool empty = std::ranges::any_of(operands, [](const QString& o) { return o.isEmpty(); });
  if (operands.size() == row.OperandCount - (namesLogger ? 1 : 0) && !empty) return;
  throw WrongUsage(TwoLanguages{u"usage: tessmar %1 %2", u"Aufruf: tessmar %1 %2"}
                       .Text()
                       .arg(QString::fromUtf16(row.Words), QString::fromUtf16(row.Operands))
                       .trimmed());
}

void CheckConsent(const CommandRow& row, const CommandOptions& options) {
  const bool needsConsent = (row.Options & kOptionYes) != 0;
  if (!needsConsent || options.Yes) return;
  throw WrongUsage(TwoLanguages{u"nothing was changed; to %1 a logger say --yes",
                                u"nichts wurde verändert; für %1 gehört --yes dazu"}
                       .Text()
                       .arg(QString::fromUtf16(row.Words)));
}

CommandOptions ReadOptions(const CommandRow& row, const OptionReader& reader) {
  CommandOptions options;
  options.Work = row.Work;
  options.Operands = reader.Operands();
  options.Logger = reader.Text(kOptionLogger);
  CheckOperands(row, options.Operands, !options.Logger.isEmpty());
  options.Analysis = reader.IsAnalysis();
  options.Baud = reader.Baud();
  options.Json = reader.Has(kOptionJson);
  options.Quiet = reader.Has(kOptionQuiet);
  options.ArchivePath = reader.Text(kOptionArchive);
  options.NoArchive = reader.Has(kOptionNoArchive);
  options.Every = reader.Number(kOptionEvery, 2, 86400);
  options.Count = reader.Number(kOptionCount, 1, 1'000'000'000);
  options.Csv = reader.Text(kOptionCsv);
  options.Sync = reader.Has(kOptionSync);
  options.Yes = reader.Has(kOptionYes);
  options.Force = reader.Has(kOptionForce);
  options.Analog = reader.Number(kOptionAnalog, 0, 8);
  options.Pulse = reader.Number(kOptionPulse, 0, 2);
  CheckConsent(row, options);
  return options;
}

ParsedCommand Parse(const QStringList& arguments) {
  const QString first = arguments.value(1);
  if (first == "--help"_L1 || first == "-h"_L1) return {{}, ProgramHelp(), {}};
  if (first == "--version"_L1) {
    return {{},
            u"tessmar %1.%2.%3\n"_s.arg(kVersionMajor).arg(kVersionMinor).arg(kVersionRevision),
            {}};
  }
  const CommandRow& row = FindCommand(arguments);
  const qsizetype words = QString::fromUtf16(row.Words).count(u' ') + 1;
  const OptionReader reader(row, arguments.mid(words));
  if (reader.WantsHelp()) return {{}, CommandHelp(row), {}};
  return {ReadOptions(row, reader), {}, {}};
}

}  // namespace

ParsedCommand ParseCommand(const QStringList& arguments) {
  try {
    return Parse(arguments);
  } catch (const WrongUsage& wrong) {
    return {{}, {}, wrong.Text};
  }
}

}  // namespace tessmar
