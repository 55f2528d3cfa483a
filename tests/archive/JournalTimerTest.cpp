#include "archive/JournalTimer.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

#include "archive/JournalRig.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class AJournalTimer : public JournalRig {
 protected:
  /// Runs the message loop until something holds; false when it does not on the slowest machine.
  static bool Comes(const std::function<bool()>& it) {
    const QDeadlineTimer late(60000);
    while (!it() && !late.hasExpired())
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return it();
  }
};

TEST_F(AJournalTimer, TakesBlocksAndRecordsToTheFileByItself) {
  const JournalTimer timer(*journal_);
  journal_->Begin({.Promised = 24});
  Take({24});
  clock_.Present = clock_.Present.addSecs(1);
  EXPECT_TRUE(Comes([this] { return QFile::exists(Path()) && BlockCount() == 1; }));
  journal_->End(UploadEnd::Complete);
  clock_.Present = clock_.Present.addSecs(1);
  EXPECT_TRUE(Comes([this] { return States() == u"complete 24"_s; }));
  EXPECT_EQ(Rows(u"SELECT count(*) FROM record"_s), QStringList{u"24"_s});
}

TEST_F(AJournalTimer, StopsWithItsEnd) {
  { const JournalTimer timer(*journal_); }
  journal_->Begin({.Promised = 24});
  Take({24});
  clock_.Present = clock_.Present.addSecs(1);
  bool past = false;
  QTimer::singleShot(250, [&past] { past = true; });
  EXPECT_TRUE(Comes([&past] { return past; }));
  EXPECT_FALSE(QFile::exists(Path()));
}

}  // namespace
}  // namespace tessmar::test
