#pragma once

#include <QString>
#include <cstdint>
#include <span>

namespace tessmar {

/// What the command can be asked to do.
enum class CommandWork {
  Ports,
  Status,
  Sample,
  Upload,
  Clock,
  Clear,
  SettingsGet,
  SettingsPut,
  SettingsDiff,
  Convert,
  ArchiveList,
  ArchiveShow,
  ArchivePush,
  ArchiveExport,
  ArchiveCheck,
};

/// The options, one bit each; the row of a command says which it takes.
enum CommandOption : std::uint32_t {
  kOptionBaud = 1U << 0,
  kOptionJson = 1U << 1,
  kOptionQuiet = 1U << 2,
  kOptionArchive = 1U << 3,
  kOptionNoArchive = 1U << 4,
  kOptionEvery = 1U << 5,
  kOptionCount = 1U << 6,
  kOptionCsv = 1U << 7,
  kOptionSync = 1U << 8,
  kOptionYes = 1U << 9,
  kOptionForce = 1U << 10,
  kOptionAnalog = 1U << 11,
  kOptionPulse = 1U << 12,
  kOptionStyle = 1U << 13,
  kOptionLogger = 1U << 14,
};

/// A text in both languages of the program.
struct TwoLanguages {
  const char16_t* English;
  const char16_t* German;

  /// In the language of the texts.
  QString Text() const;
};

struct CommandRow {
  CommandWork Work;
  const char16_t* Words;     ///< "settings get"
  const char16_t* Operands;  ///< "PORT FILE.set"
  int OperandCount;          ///< One less with --logger, which stands for the first.
  std::uint32_t Options;     ///< A sum of CommandOption values.
  TwoLanguages Meaning;
  const char16_t* Example;
};

struct OptionRow {
  CommandOption Option;
  const char16_t* Name;       ///< Without its dashes.
  const char16_t* ValueName;  ///< Empty for an option without a value.
  TwoLanguages Meaning;
};

/// All commands and all options, in the order of the help.
std::span<const CommandRow> CommandRows();
std::span<const OptionRow> OptionRows();

/// The text of --help: of the program, or of one command.
QString ProgramHelp();
QString CommandHelp(const CommandRow& row);

}  // namespace tessmar
