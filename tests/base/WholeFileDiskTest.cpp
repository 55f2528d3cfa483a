// Whole files on a disk that fails at any of the calls that change it.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cerrno>

#include "base/WholeFile.h"
#include "support/FaultyDisk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

const QByteArray kOld(3000, 'o');
const QByteArray kNew(7000, 'n');

/// A disk and a folder in it.
struct Kind {
  bool Simple = false;
  bool Locked = false;
};

class WholeFileDisk : public testing::TestWithParam<Kind> {
 protected:
  ~WholeFileDisk() override { WatchDisk({}); }

  void Watch(const DiskFault& fault, std::int64_t room = -1) const {
    WatchDisk(QFile::encodeName(folder_.path()));
    MakeDiskSimple(GetParam().Simple);
    LockFolder(GetParam().Locked);
    SetDiskFault(fault);
    SetDiskRoom(room);
  }
  /// Writes the new content. @return why that failed, if it did.
  std::optional<FileCause> Write() const {
    try {
      WriteWholeFile(path_, kNew);
      return std::nullopt;
    } catch (const FileTrouble& trouble) {
      return trouble.Cause();
    }
  }
  void PutOld() const {
    WatchDisk({});
    QFile file(path_);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(kOld), kOld.size());
  }
  QByteArray Content() const {
    QFile file(path_);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
  }
  QStringList Files() const { return QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden); }

  QTemporaryDir folder_;
  QString path_ = folder_.filePath(u"a"_s);
};

TEST_P(WholeFileDisk, IsOldOrNewWhicheverCallFails) {
  PutOld();
  Watch({});
  ASSERT_EQ(Write(), std::nullopt);
  const std::int64_t calls = DiskCalls();
  ASSERT_GE(calls, 3);
  int failures = 0;
  for (const bool halfway : {false, true}) {
    for (std::int64_t call = 1; call <= calls; ++call) {
      PutOld();
      Watch({.AtCall = call, .Halfway = halfway, .Error = EIO});
      const std::optional<FileCause> cause = Write();
      EXPECT_EQ(Content(), cause ? kOld : kNew) << call << halfway;
      EXPECT_EQ(Files(), QStringList{u"a"_s}) << call << halfway;
      EXPECT_EQ(cause.value_or(FileCause::Failed), FileCause::Failed) << call << halfway;
      failures += cause ? 1 : 0;
    }
  }
  EXPECT_GE(failures, 3);
}

TEST_P(WholeFileDisk, IsOldWhenTheDiskIsFull) {
  // In place the old content's room is taken over.
  const std::int64_t needed = kNew.size() - (GetParam().Locked ? kOld.size() : 0);
  for (const std::int64_t room : {std::int64_t{0}, std::int64_t{1}, needed - 1}) {
    PutOld();
    Watch({}, room);
    EXPECT_EQ(Write(), FileCause::DiskFull) << room;
    EXPECT_EQ(Content(), kOld) << room;
    EXPECT_EQ(Files(), QStringList{u"a"_s}) << room;
  }
  Watch({}, needed);
  EXPECT_EQ(Write(), std::nullopt);
  EXPECT_EQ(Content(), kNew);
}

INSTANTIATE_TEST_SUITE_P(Disks, WholeFileDisk,
                         testing::Values(Kind{}, Kind{.Simple = true}, Kind{.Locked = true},
                                         Kind{.Simple = true, .Locked = true}));

}  // namespace
}  // namespace tessmar::test
