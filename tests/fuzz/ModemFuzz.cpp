// The modem's command file, which is the whole input, and a modem that answers with it.

#include <QBuffer>

#include "Fuzz.h"
#include "link/LinkBench.h"
#include "link/ModemDialogue.h"

namespace {

using namespace tessmar;
using fuzz::Bytes;
using fuzz::Hold;

constexpr int kMostWrites = 40;

QStringList CommandsOf(QByteArray file) {
  QBuffer device(&file);
  device.open(QIODevice::ReadOnly);
  return ReadModemCommands(device);
}

void CheckCommands(const QStringList& commands) {
  Hold(commands.size() <= 256, "256 commands at most");
  for (const QString& command : commands) {
    Hold(!command.isEmpty(), "no command is empty");
    for (const QChar c : command)
      Hold(c > u' ' && c != u';' && (c.toUpper() == c || c.toUpper() > QChar(u'\xFF')),
           "a command is one word in capitals");
  }
  Hold(CommandsOf(commands.join(QStringLiteral("\r\n")).toLatin1()) == commands,
       "commands written down are the same");
}

/// A modem that answers each line with the next piece of the input.
void CheckDialogue(const QByteArray& input, const QStringList& commands) {
  test::LinkBench bench;
  qsizetype place = 0;
  QString shown;
  bool hidden = false;
  ModemDialogue dialogue(bench.Channel, bench.Link, commands, QStringLiteral("5551234"),
                         {.Append = [&](const QString& text) { shown += text; },
                          .SetTextColour = [](Rgb) {},
                          .Hide = [&] { hidden = true; }});
  int writes = 0;
  bench.Port.OnWrite = [&](const Bytes& line) {
    Hold(!line.empty() && line.back() == '\r', "a modem is told lines");
    if (++writes > kMostWrites) dialogue.Cancel();
    const QByteArray piece = input.mid(place, 16);
    place += piece.size();
    bench.Arrive({piece.begin(), piece.end()}, 50);
    bench.Loop.After(20'000, [&] { dialogue.Cancel(); });
  };
  dialogue.Start();
  for (int tick = 0; tick < 2 * kMostWrites && !hidden; ++tick) dialogue.Tick();
  Hold(hidden, "a dialogue ends");
  Hold(dialogue.Result() != ModemResult::Error, "with a carrier, or by the operator");
  Hold(bench.Port.Writes.empty() || dialogue.Result() != ModemResult::Connect ||
           input.contains("CONNECT"),
       "a carrier was told");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArray file = fuzz::FileOf(data, size);
  const QStringList commands = CommandsOf(file);
  CheckCommands(commands);
  CheckDialogue(file, QStringList(QStringLiteral("ATZ")) + commands);
  return 0;
}
