#include "base/QtMessageLoop.h"

#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QTimer>

#include "link/Comm.h"
#include "support/FakeSerialPort.h"

namespace tessmar::test {
namespace {

TEST(QtMessageLoop, HandlesWhatIsThere) {
  QtMessageLoop loop;
  bool ran = false;
  QMetaObject::invokeMethod(
      &loop, [&] { ran = true; }, Qt::QueuedConnection);
  loop.RunOnce();
  EXPECT_TRUE(ran);
}

TEST(QtMessageLoop, SleepsUntilSomethingComes) {
  QtMessageLoop loop;
  loop.RunPending();
  bool ran = false;
  QTimer::singleShot(10, &loop, [&] { ran = true; });
  int turns = 0;
  for (; !ran && turns < 100; ++turns) loop.RunOnce();
  EXPECT_TRUE(ran);
  EXPECT_LE(turns, 5);
}

TEST(QtMessageLoop, ComesBackFromSleepWithoutAnyTimer) {
  QtMessageLoop loop;
  loop.RunPending();
  // Only the loop's own alarm can wake it here, and it does so by a tick of that timer.
  bool sleeps = false;
  bool woke = false;
  QObject witness;
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                   &witness, [&] { sleeps = true; });
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &witness,
                   [&] { woke = sleeps; });
  loop.RunOnce();
  EXPECT_TRUE(sleeps);
  EXPECT_TRUE(woke);
  EXPECT_FALSE(loop.IsRunningOnce());
}

/// Counts the ticks of all timers.
class TickCounter final : public QObject {
 public:
  TickCounter() { QCoreApplication::instance()->installEventFilter(this); }
  bool eventFilter(QObject*, QEvent* event) override {
    Ticks += event->type() == QEvent::Timer ? 1 : 0;
    return false;
  }
  int Ticks = 0;
};

TEST(QtMessageLoop, WakesNobodyWhenNothingWaits) {
  QtMessageLoop loop;
  loop.RunOnce();
  const TickCounter counter;
  QTimer end;
  end.setSingleShot(true);
  end.start(500);
  while (end.isActive()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  // The one that ends this, and at most one more, by which the loop's own alarm stops.
  EXPECT_LE(counter.Ticks, 2);
}

TEST(QtMessageLoop, LooksAtOnceForTheFirstTimeAndNotAgainEachTimeInAMoment) {
  QtMessageLoop loop;
  int looks = 0;
  int asked = 0;
  const auto look = [&] {
    bool ran = false;
    QMetaObject::invokeMethod(
        &loop, [&ran] { ran = true; }, Qt::QueuedConnection);
    loop.RunPendingIfDue();
    looks += ran ? 1 : 0;
    ++asked;
    if (!ran) QCoreApplication::removePostedEvents(&loop);
  };
  look();
  EXPECT_EQ(looks, 1);
  // However slow the machine is, some of so many follow each other within a moment; and after some
  // time it looks again.
  while (asked < 100'000) look();
  EXPECT_LT(looks, asked);
  while (looks < 3) look();
}

TEST(QtMessageLoop, KnowsThatItRuns) {
  QtMessageLoop loop;
  bool inside = false;
  QMetaObject::invokeMethod(
      &loop, [&] { inside = loop.IsRunningOnce(); }, Qt::QueuedConnection);
  EXPECT_FALSE(loop.IsRunningOnce());
  loop.RunOnce();
  EXPECT_TRUE(inside);
  EXPECT_FALSE(loop.IsRunningOnce());
}

TEST(QtMessageLoop, DoesNotSleepOnceTheProgramIsEnding) {
  QtMessageLoop loop;
  EXPECT_FALSE(loop.Ending());
  loop.End();
  EXPECT_TRUE(loop.Ending());
  for (int turn = 0; turn < 10'000; ++turn) loop.RunOnce();
}

TEST(QtMessageLoop, EndsAWaitWhenTheApplicationIsAskedToQuit) {
  QtMessageLoop loop;
  FakeSerialPort port;
  port.Open(3, QStringLiteral("38400,N,8,1"));
  LinkState link;
  Comm comm(port, loop, link);
  QTimer::singleShot(0, &loop, [&] {
    QTimer::singleShot(10, &loop, [] { QCoreApplication::quit(); });
    // No timer lowers the ticks here, so that only the end of the program can end the wait.
    comm.WaitForBytes(450, 0);
    EXPECT_TRUE(loop.Ending());
  });
  QCoreApplication::exec();
}

}  // namespace
}  // namespace tessmar::test
