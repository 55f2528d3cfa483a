#include "archive/JournalTimer.h"

namespace tessmar {
namespace {

constexpr int kTickMs = 100;
constexpr int kSoonMs = 15;

}  // namespace

JournalTimer::JournalTimer(Journal& journal) {
  timer_.setTimerType(Qt::PreciseTimer);
  timer_.callOnTimeout(
      [this, &journal] { timer_.setInterval(journal.Tick() ? kSoonMs : kTickMs); });
  timer_.start(kTickMs);
}

}  // namespace tessmar
