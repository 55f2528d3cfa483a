// The disk of the archive fails at any of the calls that change it: what was not kept is written
// once it works again, each thing once.

#include <gtest/gtest.h>

#include <cerrno>

#include "archive/JournalRig.h"
#include "support/FaultyDisk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class JournalDisk : public JournalRig, public testing::WithParamInterface<int> {
 protected:
  ~JournalDisk() override { WatchDisk({}); }

  /// Six blocks, of which two come together, with an entry in the logbook in between.
  void UploadSlowly() {
    journal_->Begin({.Promised = 144});
    for (int i = 0; i < 4; ++i) {
      Take({24});
      Pass(100);
    }
    journal_->Note({.Kind = EventKind::Synced, .Text = u"set"_s});
    Take({24, 24});
    Pass(300);
    journal_->End(UploadEnd::Complete);
    Pass(300);
  }
  /// How many calls it takes on a disk that works.
  std::int64_t CallsOfAnUpload() {
    WatchDisk(QFile::encodeName(folder_.path()));
    UploadSlowly();
    journal_->Finish();
    const std::int64_t calls = DiskCalls();
    WatchDisk({});
    return calls;
  }
  void BeginAnew(const QString& name) {
    next_ = 1;
    journal_.emplace(folder_.filePath(name), Context());
  }
};

// A commit can fail and stand in the file nevertheless, when it is the sync behind it that fails.
TEST_P(JournalDisk, IsWrittenWholeAndOnceWhenItWorksAgain) {
  const std::int64_t calls = CallsOfAnUpload();
  ASSERT_GT(calls, 50);
  for (const bool stays : {false, true}) {
    for (std::int64_t call = 1; call <= calls; call += stays ? 1 : 3) {
      const QString name = u"archive%1%2.sqlite"_s.arg(call).arg(stays);
      BeginAnew(name);
      WatchDisk(QFile::encodeName(folder_.path()));
      SetDiskFault({.AtCall = call, .Error = GetParam(), .Stays = stays});
      UploadSlowly();
      WatchDisk({});
      Pass(6000);
      EXPECT_TRUE(journal_->IsIdle()) << call << stays;
      journal_->Finish();
      OtherProgram file(folder_.filePath(name));
      EXPECT_EQ(file.Rows(u"SELECT state, records FROM upload"_s), QStringList{u"complete|144"_s})
          << call << stays;
      EXPECT_EQ(file.Rows(u"SELECT count(*), sum(number) FROM block"_s), QStringList{u"6|21"_s});
      EXPECT_EQ(file.Rows(u"SELECT count(*), sum(stamp) FROM record"_s),
                QStringList{u"144|10440"_s});
      EXPECT_EQ(file.Rows(u"SELECT kind FROM event ORDER BY id"_s),
                QStringList({u"synced"_s, u"uploaded"_s}))
          << call << stays;
      if (HasFailure()) return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Errors, JournalDisk, testing::Values(ENOSPC, EIO));

}  // namespace
}  // namespace tessmar::test
