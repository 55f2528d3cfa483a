#include "archive/Checkpoint.h"

#include <QFileInfo>

#include "archive/ArchiveRig.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class ACheckpoint : public ArchiveFolder {
 protected:
  ACheckpoint() : store_(Path()) { store_.Open(Store::Access::Write); }

  /// So many pages of the file are written and committed.
  void CommitPages(int pages) {
    Transaction transaction(store_);
    store_.Run(u"CREATE TABLE IF NOT EXISTS ballast (bytes BLOB)"_s);
    for (int page = 0; page < pages; ++page)
      store_.Run(u"INSERT INTO ballast VALUES (zeroblob(4000))"_s);
    transaction.Commit();
  }
  /// What the file has without its side file, as a copy taken now would have it.
  QVariant InTheFileAlone(const QString& sql) {
    const QString copy = Path() + u".copy"_s;
    QFile::remove(copy);
    EXPECT_TRUE(QFile::copy(Path(), copy));
    return OtherProgram(copy).Get(sql);
  }
  QString SideFile() const { return Path() + u"-wal"_s; }

  Store store_;
  Checkpoint checkpoint_;
};

const QString kTables = u"SELECT count(*) FROM sqlite_master WHERE name = 'ballast'"_s;
const QString kRows = u"SELECT count(*) FROM ballast"_s;

TEST_F(ACheckpoint, IsNoneOfACommit) {
  CommitPages(2000);
  EXPECT_GT(QFileInfo(SideFile()).size(), 2000 * 4096);
  EXPECT_EQ(InTheFileAlone(kTables), 0);
}

TEST_F(ACheckpoint, BringsWhatWasCommittedIntoTheFile) {
  CommitPages(2000);
  checkpoint_.BeginIfWorth(Path());
  checkpoint_.Wait();
  EXPECT_EQ(InTheFileAlone(kRows), 2000);
  EXPECT_EQ(store_.IntegrityComplaints(), QStringList());
}

TEST_F(ACheckpoint, LeavesLittleForLater) {
  CommitPages(100);
  checkpoint_.BeginIfWorth(Path());
  checkpoint_.Wait();
  EXPECT_EQ(InTheFileAlone(kTables), 0);
}

TEST_F(ACheckpoint, GoesOnBesideAWriter) {
  CommitPages(2000);
  checkpoint_.BeginIfWorth(Path());
  for (int i = 0; i < 50; ++i) CommitPages(10);
  checkpoint_.Wait();
  checkpoint_.BeginIfWorth(Path());
  checkpoint_.Wait();
  EXPECT_EQ(OtherProgram(Path()).Get(kRows), 2500);
  EXPECT_EQ(store_.IntegrityComplaints(), QStringList());
}

TEST_F(ACheckpoint, OfAnOpenTransactionTakesNothing) {
  CommitPages(2000);
  {
    const Transaction transaction(store_);
    store_.Run(u"DELETE FROM ballast"_s);
    checkpoint_.BeginIfWorth(Path());
    checkpoint_.Wait();
    EXPECT_EQ(InTheFileAlone(kRows), 2000);
  }
  EXPECT_EQ(OtherProgram(Path()).Get(kRows), 2000);
}

TEST_F(ACheckpoint, MakesNoFile) {
  CommitPages(2000);
  ASSERT_TRUE(QFile::rename(Path(), Path() + u".away"_s));
  checkpoint_.BeginIfWorth(Path());
  checkpoint_.Wait();
  EXPECT_FALSE(QFileInfo::exists(Path()));
}

TEST_F(ACheckpoint, StartingToWriteOutChangesNothing) {
  CommitPages(2000);
  Checkpoint::StartWritingOut(Path());
  Checkpoint::StartWritingOut(u"/proc/no/such"_s);
  EXPECT_EQ(OtherProgram(Path()).Get(kRows), 2000);
  EXPECT_EQ(InTheFileAlone(kTables), 0);
}

}  // namespace
}  // namespace tessmar::test
