#include "link/ModemConnection.h"

#include <QBuffer>
#include <QFileInfo>
#include <algorithm>

#include "base/Blanks.h"
#include "base/Fault.h"
#include "base/ReadFile.h"
#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kMostFileCommands = 256;
/// No command file comes near this; what does was chosen by mistake.
constexpr qint64 kLargestFile = qint64{1024} * 1024;

/// A letter's capital, or itself where that is none of Latin-1's, which the modem is told.
QChar Capital(QChar letter) {
  constexpr char16_t kLastLatin1 = 0xFF;
  const QChar capital = letter.toUpper();
  return capital.unicode() <= kLastLatin1 ? capital : letter;
}

/// The first word of a line, in capitals; empty for a line without one.
QString Command(const QString& line) {
  const QString text = TrimBlanks(line);
  const auto end = std::find_if(text.begin(), text.end(), [](QChar character) {
    return character <= u' ' || character == u';';
  });
  QString command = text.left(end - text.begin());
  for (QChar& letter : command) letter = Capital(letter);
  return command;
}

QStringList CommandsOf(const ModemRequest& request) {
  if (!request.UseCommandFile || request.CommandFile.isEmpty()) return {u"ATE1V1Q0"_s};
  QByteArray bytes = ReadWholeFile(request.CommandFile, kLargestFile);
  QBuffer file(&bytes);
  file.open(QIODevice::ReadOnly);
  return ReadModemCommands(file);
}

bool IsFileMissing(const ModemRequest& request) {
  if (!request.UseCommandFile || request.CommandFile.isEmpty()) return false;
  const QFileInfo info(request.CommandFile);
  return !info.isFile() || info.size() > kLargestFile;
}

}  // namespace

QStringList ReadModemCommands(QIODevice& file) {
  QStringList commands;
  while (commands.size() < kMostFileCommands) {
    const QByteArray read = file.readLine();
    if (read.isEmpty()) break;
    // A line ends in a line feed, a carriage return or both.
    for (const QString& line : QString::fromLatin1(read).split(u'\r')) {
      const QString command = Command(line);
      if (!command.isEmpty() && commands.size() < kMostFileCommands) commands.append(command);
    }
  }
  return commands;
}

void RememberNumber(std::array<QString, 4>& numbers, const QString& number) {
  const auto last = numbers.end() - 1;
  const auto place = std::find(numbers.begin(), last, number);
  *place = number;
  std::rotate(numbers.begin(), place, place + 1);
}

bool ConnectModem(const ModemRequest& request, Comm& comm, const LinkState& link,
                  ConnectionSettings& settings, Messages& messages,
                  const ModemDialogueShow& showDialogue) {
  if (request.Number.isEmpty()) {
    messages.MsgBox(GetText(TextId::NoPhoneNumber), kCritical, GetText(TextId::ModemConnect));
    return false;
  }
  RememberNumber(settings.ModemNumbers, request.Number);
  if (IsFileMissing(request)) {
    messages.MsgBox(GetText(TextId::CannotOpenModemFile), kCritical,
                    GetText(TextId::ModemInitialize));
    comm.ClosePort();
    return false;
  }
  const ModemResult result = Trapped(
      link,
      [&] {
        return showDialogue(QStringList{u"ATZ"_s} + CommandsOf(request), settings.ModemNumbers[0]);
      },
      ModemResult::Error);
  if (result == ModemResult::Connect) return true;
  comm.ClosePort();
  if (result == ModemResult::Error) {
    messages.MsgBox(GetText(TextId::NoModem), kCritical, GetText(TextId::ModemInitialize));
  }
  return false;
}

}  // namespace tessmar
