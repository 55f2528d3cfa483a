// What the archive holds the window up with: the journal's turns in the message loop while the
// records of a full history go into the file, each of which a scrolling finger would feel.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <array>
#include <thread>

#include "archive/Journal.h"
#include "bench/Figures.h"

namespace tessmar::bench {
namespace {

using namespace Qt::StringLiterals;

constexpr int kChannels = 10;
constexpr int kRecordsABlock = 10;
constexpr int kBlocks = 20000;
constexpr int kBlockBytes = 241;
constexpr int kRounds = 5;
constexpr auto kBetweenTurns = std::chrono::milliseconds(15);

/// A block as it comes off the line: a count and so many records of a stamp and ten words.
std::array<std::uint8_t, kBlockBytes> BlockOf(int number) {
  std::array<std::uint8_t, kBlockBytes> block{kRecordsABlock};
  for (std::size_t i = 1; i < block.size(); ++i)
    block[i] = static_cast<std::uint8_t>((static_cast<std::size_t>(number) * 31 + i * 7) % 251);
  return block;
}

struct Turns {
  double Longest = 0;  ///< Milliseconds.
  double All = 0;      ///< Seconds, the pauses between them too.
};

Turns Fill(const QString& path) {
  LinkState link;
  link.AnalogChannelCount = kChannels - 2;
  link.PulseChannelCount = 2;
  LoggerSettings settings;
  LoadDefaultSettings(settings, link.AnalogChannelCount);
  const SystemClock clock;
  Journal journal(path, {.Link = link,
                         .Settings = settings,
                         .Time = clock,
                         .Source = [] { return u"COM9"_s; },
                         .Program = u"bench"_s});
  journal.Begin({.Promised = kBlocks * kRecordsABlock});
  for (int number = 0; number < kBlocks; ++number) journal.TakeBlock(BlockOf(number));
  journal.End(UploadEnd::Complete);
  Turns turns;
  QElapsedTimer all;
  all.start();
  while (!journal.IsIdle()) {
    QElapsedTimer turn;
    turn.start();
    journal.Tick();
    turns.Longest = std::max(turns.Longest, static_cast<double>(turn.nsecsElapsed()) * 1e-6);
    std::this_thread::sleep_for(kBetweenTurns);
  }
  turns.All = static_cast<double>(all.nsecsElapsed()) * 1e-9;
  return turns;
}

void Measure() {
  const QTemporaryDir folder;
  std::vector<double> longest;
  std::vector<double> all;
  for (int round = 0; round < kRounds; ++round) {
    const Turns turns = Fill(folder.filePath(u"archive%1.sqlite"_s.arg(round)));
    longest.push_back(turns.Longest);
    all.push_back(turns.All);
  }
  Print({u"records of a full history into the archive: longest turn"_s, Median(longest), u"ms"_s,
         Budget::AtMost, 50});
  PrintNote(u"all of them: %1 s, the window working in between"_s.arg(Median(all), 0, 'f', 1));
}

}  // namespace
}  // namespace tessmar::bench

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  tessmar::bench::Measure();
  return 0;
}
