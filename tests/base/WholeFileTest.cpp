#include "base/WholeFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "support/SmallDisk.h"

namespace {
int renameError = 0;       // What the system's rename is refused with; 0 while it is not.
bool anotherUser = false;  // Whether the process passes for somebody else's.
}  // namespace

// The linker puts these in front of the system's functions, see the CMake list.
extern "C" uid_t __real_geteuid();
extern "C" uid_t __wrap_geteuid() {
  return __real_geteuid() + (anotherUser ? 1 : 0);
}
extern "C" int __real_rename(const char* from, const char* to);
extern "C" int __wrap_rename(const char* from, const char* to) {
  if (renameError == 0) return __real_rename(from, to);
  errno = renameError;
  return -1;
}

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// While it lives, the system refuses to give a file another name.
class RefusedRename {
 public:
  explicit RefusedRename(int error) { renameError = error; }
  RefusedRename(const RefusedRename&) = delete;
  RefusedRename& operator=(const RefusedRename&) = delete;
  ~RefusedRename() { renameError = 0; }
};

/// While it lives, the process passes for that of a user who owns nothing here.
class SomebodyElse {
 public:
  SomebodyElse() { anotherUser = true; }
  SomebodyElse(const SomebodyElse&) = delete;
  SomebodyElse& operator=(const SomebodyElse&) = delete;
  ~SomebodyElse() { anotherUser = false; }
};

/// Whether files without a name can be made here, and named later.
bool TakesNamelessFiles(const QString& folder) {
  const int file = ::open(QFile::encodeName(folder).constData(), O_TMPFILE | O_WRONLY, 0600);
  if (file >= 0) ::close(file);
  return file >= 0 && ::access("/proc/self/fd", X_OK) == 0;
}

QByteArray Content(const QString& path) {
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
  return file.readAll();
}

void Put(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_EQ(file.write(bytes), bytes.size());
}

/// Why these bytes were not written; nothing when they were.
std::optional<FileCause> Failure(const QString& path, const QByteArray& bytes) {
  try {
    WriteWholeFile(path, bytes);
    return std::nullopt;
  } catch (const FileTrouble& trouble) {
    return trouble.Cause();
  }
}

class WholeFileTest : public testing::Test {
 protected:
  ~WholeFileTest() override {
    QFile::setPermissions(folder_.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }
  QString Path(const QString& name) const { return folder_.filePath(name); }
  QStringList Files() const {
    return QDir(folder_.path())
        .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
  }
  void LockFolder() const {
    ASSERT_TRUE(QFile::setPermissions(folder_.path(), QFile::ReadOwner | QFile::ExeOwner));
  }

  test::OrdinaryUser user_;
  QTemporaryDir folder_;
};

TEST_F(WholeFileTest, MakesANewFileOfPieces) {
  WholeFile file(Path(u"a.csv"_s));
  file.Write("one, ");
  file.Write("two");
  EXPECT_FALSE(QFile::exists(Path(u"a.csv"_s))) << "nothing stands there before the end";
  file.Commit();
  EXPECT_EQ(Content(Path(u"a.csv"_s)), "one, two");
  EXPECT_EQ(Files(), QStringList{u"a.csv"_s});
}

TEST_F(WholeFileTest, ReplacesALongerFile) {
  Put(Path(u"a"_s), "a long old text");
  WriteWholeFile(Path(u"a"_s), "new");
  EXPECT_EQ(Content(Path(u"a"_s)), "new");
  WriteWholeFile(Path(u"a"_s), "");
  EXPECT_EQ(Content(Path(u"a"_s)), "");
  EXPECT_EQ(Files(), QStringList{u"a"_s});
}

TEST_F(WholeFileTest, LeavesTheOldFileWithoutACommit) {
  Put(Path(u"a"_s), "old");
  {
    WholeFile file(Path(u"a"_s));
    file.Write("new");
  }
  EXPECT_EQ(Content(Path(u"a"_s)), "old");
  EXPECT_EQ(Files(), QStringList{u"a"_s});
}

TEST_F(WholeFileTest, TakesWhatIsWrittenToItsDevice) {
  WholeFile file(Path(u"a"_s));
  EXPECT_EQ(file.Device().write("one "), 4);
  file.Write("two");
  EXPECT_EQ(file.Device().write(" three"), 6);
  file.Commit();
  EXPECT_EQ(Content(Path(u"a"_s)), "one two three");
}

TEST_F(WholeFileTest, KeepsTheRightsOfTheOldFile) {
  Put(Path(u"a"_s), "old");
  ASSERT_EQ(::chmod(QFile::encodeName(Path(u"a"_s)).constData(), 0640), 0);
  WriteWholeFile(Path(u"a"_s), "new");
  struct stat status {};
  ASSERT_EQ(::stat(QFile::encodeName(Path(u"a"_s)).constData(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

TEST_F(WholeFileTest, ReplacesTheFileThatALinkLeadsTo) {
  QDir(folder_.path()).mkdir(u"inner"_s);
  Put(Path(u"inner/real"_s), "old");
  ASSERT_TRUE(QFile::link(u"inner/real"_s, Path(u"link"_s)));
  ASSERT_TRUE(QFile::link(u"link"_s, Path(u"second"_s)));
  ASSERT_TRUE(QFile::link(u"inner/fresh"_s, Path(u"dangling"_s)));
  WriteWholeFile(Path(u"second"_s), "new");
  WriteWholeFile(Path(u"dangling"_s), "made");
  EXPECT_EQ(Content(Path(u"inner/real"_s)), "new");
  EXPECT_EQ(Content(Path(u"inner/fresh"_s)), "made");
  EXPECT_TRUE(QFileInfo(Path(u"second"_s)).isSymLink());
  EXPECT_TRUE(QFileInfo(Path(u"link"_s)).isSymLink());
  ASSERT_TRUE(QFile::link(u"circle"_s, Path(u"circle"_s)));
  EXPECT_EQ(Failure(Path(u"circle"_s), "x"), FileCause::Failed);
}

TEST_F(WholeFileTest, TakesTheLongestNameThatADiskKnows) {
  const QString name(255, u'n');
  EXPECT_EQ(Failure(Path(name), "x"), std::nullopt);
  EXPECT_EQ(Files(), QStringList{name});
  EXPECT_EQ(Failure(Path(name + u'n'), "x"), FileCause::Failed);
}

TEST_F(WholeFileTest, RefusesWhatIsNoRegularFileWithoutOpeningIt) {
  ASSERT_EQ(::mkfifo(QFile::encodeName(Path(u"pipe"_s)).constData(), 0600), 0);
  for (const QString& path : {Path(u"pipe"_s), folder_.path(), u"/dev/full"_s, u"/dev/null"_s}) {
    EXPECT_EQ(Failure(path, "x"), FileCause::NotAFile) << path.toStdString();
    EXPECT_EQ(WriteTrouble(path)->Cause(), FileCause::NotAFile);
  }
  EXPECT_EQ(Files(), QStringList{u"pipe"_s});
}

TEST_F(WholeFileTest, SaysThatTheFolderIsMissing) {
  Put(Path(u"a"_s), "");
  EXPECT_EQ(Failure(Path(u"gone/a"_s), "x"), FileCause::NoFolder);
  EXPECT_EQ(Failure(Path(u"a/b"_s), "x"), FileCause::NoFolder);
  EXPECT_EQ(WriteTrouble(Path(u"gone/a"_s))->File(), Path(u"gone"_s));
  EXPECT_EQ(WriteTrouble({})->Cause(), FileCause::NotFound);
  EXPECT_EQ(WriteTrouble(Path(u"new"_s)), std::nullopt);
}

TEST_F(WholeFileTest, RefusesAFileAndAFolderThatTheUserMayNotWrite) {
  Put(Path(u"a"_s), "old");
  ASSERT_TRUE(QFile::setPermissions(Path(u"a"_s), QFile::ReadOwner));
  EXPECT_EQ(Failure(Path(u"a"_s), "x"), FileCause::NoPermission);
  EXPECT_EQ(WriteTrouble(Path(u"a"_s))->Cause(), FileCause::NoPermission);
  EXPECT_EQ(Content(Path(u"a"_s)), "old");
  LockFolder();
  EXPECT_EQ(Failure(Path(u"new"_s), "x"), FileCause::NoPermission);
  EXPECT_EQ(WriteTrouble(Path(u"new"_s))->Cause(), FileCause::NoPermission);
  EXPECT_FALSE(TakesNewFiles(folder_.path()));
}

TEST_F(WholeFileTest, WritesDirectlyWhereTheFolderTakesNoNewFiles) {
  Put(Path(u"a"_s), "a long old text");
  LockFolder();
  EXPECT_EQ(WriteTrouble(Path(u"a"_s)), std::nullopt);
  WholeFile file(Path(u"a"_s));
  file.Write("new ");
  EXPECT_EQ(Content(Path(u"a"_s)), "a long old text") << "untouched until all is there";
  file.Device().write("text");
  file.Commit();
  EXPECT_EQ(Content(Path(u"a"_s)), "new text");
}

TEST_F(WholeFileTest, WritesDirectlyIntoAFileThatMayOnlyBeWritten) {
  Put(Path(u"a"_s), "old");
  ASSERT_TRUE(QFile::setPermissions(Path(u"a"_s), QFile::WriteOwner));
  LockFolder();
  EXPECT_EQ(Failure(Path(u"a"_s), "new"), std::nullopt);
  ASSERT_TRUE(QFile::setPermissions(Path(u"a"_s), QFile::ReadOwner));
  EXPECT_EQ(Content(Path(u"a"_s)), "new");
}

TEST_F(WholeFileTest, KnowsAFolderThatTakesNewFiles) {
  EXPECT_TRUE(TakesNewFiles(folder_.path()));
  EXPECT_FALSE(TakesNewFiles(Path(u"gone"_s)));
  Put(Path(u"a"_s), "");
  EXPECT_FALSE(TakesNewFiles(Path(u"a"_s)));
}

TEST_F(WholeFileTest, IsWrittenDirectlyWhereItMayNotBeReplaced) {
  for (const int error : {EPERM, EACCES, EBUSY}) {
    Put(Path(u"a"_s), "a long old text");
    const RefusedRename refused(error);
    EXPECT_EQ(Failure(Path(u"a"_s), "new text"), std::nullopt) << error;
    EXPECT_EQ(Content(Path(u"a"_s)), "new text") << error;
    EXPECT_EQ(Files(), QStringList{u"a"_s}) << error;
  }
}

TEST_F(WholeFileTest, StaysAsItWasWhenReplacingFails) {
  Put(Path(u"a"_s), "old");
  {
    const RefusedRename refused(EIO);
    EXPECT_TRUE(Failure(Path(u"a"_s), "new text"));
  }
  EXPECT_EQ(Content(Path(u"a"_s)), "old");
  EXPECT_EQ(Files(), QStringList{u"a"_s});
}

// No moment at which a kill leaves a file under another name; on a disk that cannot do without one,
// what cannot take its own is nowhere.
TEST_F(WholeFileTest, ANewFileHasItsOwnNameFromTheFirst) {
  const bool nameless = TakesNamelessFiles(folder_.path());
  const RefusedRename refused(EIO);
  EXPECT_EQ(!Failure(Path(u"a"_s), "new"), nameless);
  EXPECT_EQ(Files(), nameless ? QStringList{u"a"_s} : QStringList());
  if (nameless) {
    EXPECT_EQ(Content(Path(u"a"_s)), "new");
  }
}

TEST_F(WholeFileTest, TakesTheNameAlsoWhenSomebodyElseWasQuicker) {
  WholeFile file(Path(u"a"_s));
  file.Write("new");
  Put(Path(u"a"_s), "somebody else's");
  file.Commit();
  EXPECT_EQ(Content(Path(u"a"_s)), "new");
  EXPECT_EQ(Files(), QStringList{u"a"_s});
}

TEST_F(WholeFileTest, TakesAwayWhatAKilledProcessHasLeftADayAgo) {
  const QDateTime now = QDateTime::currentDateTime();
  const auto put = [&](const QString& name, qint64 ageS) {
    QFile file(Path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.setFileTime(now.addSecs(-ageS), QFile::FileModificationTime));
  };
  put(u".tessmar-1y2p0ij32e8e7"_s, 86500);
  put(u".tessmar-0000000000000"_s, 90000000);
  put(u".tessmar-inthemaking00"_s, 86000);
  put(u".tessmar-"_s, 86500);
  put(u".tessmar-backup"_s, 86500);
  put(u".tessmar-Theirs"_s, 86500);
  put(u".tessmar-their.s"_s, 86500);
  put(u"tessmar-1y2p0ij32e8e7"_s, 86500);
  ASSERT_TRUE(QFile::link(u"a"_s, Path(u".tessmar-link"_s)));
  ASSERT_TRUE(QDir(folder_.path()).mkdir(u".tessmar-folder"_s));
  WriteWholeFile(Path(u"a"_s), "new");
  QStringList files = Files();
  files.sort();
  EXPECT_EQ(files,
            QStringList({u".tessmar-"_s, u".tessmar-Theirs"_s, u".tessmar-backup"_s,
                         u".tessmar-folder"_s, u".tessmar-inthemaking00"_s, u".tessmar-link"_s,
                         u".tessmar-their.s"_s, u"a"_s, u"tessmar-1y2p0ij32e8e7"_s}));
}

TEST_F(WholeFileTest, LeavesWhatAnotherUserLeft) {
  const QString left = Path(u".tessmar-0000000000000"_s);
  {
    QFile file(left);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const QDateTime before = QDateTime::currentDateTime().addDays(-2);
    ASSERT_TRUE(file.setFileTime(before, QFile::FileModificationTime));
  }
  {
    const SomebodyElse other;
    WriteWholeFile(Path(u"a"_s), "new");
  }
  EXPECT_TRUE(QFile::exists(left));
  WriteWholeFile(Path(u"a"_s), "newer");
  EXPECT_FALSE(QFile::exists(left));
}

// As in the system's folder for everyone's files: who may write another's file may not replace it.
// For root the system itself refuses; who cannot make another's file has it refused.
TEST(WholeFileOfAnother, IsWrittenDirectlyInAFolderOfEveryone) {
  const RefusedRename refused(::geteuid() == 0 ? 0 : EPERM);
  const QTemporaryDir folder;
  const QString path = folder.filePath(u"a"_s);
  Put(path, "a long old text");
  ASSERT_EQ(::chmod(QFile::encodeName(folder.path()).constData(), 01777), 0);
  ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), 0666), 0);
  {
    const test::OrdinaryUser user;
    EXPECT_EQ(WriteTrouble(path), std::nullopt);
    EXPECT_EQ(Failure(path, "new text"), std::nullopt);
  }
  EXPECT_EQ(Content(path), "new text");
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"a"_s});
}

class WholeFileOnAFullDisk : public testing::Test {
 protected:
  bool IsFull(const std::optional<FileCause>& cause) const {
    return cause == FileCause::DiskFull || cause == FileCause::TooLarge;
  }
  test::SmallDisk disk_;
};

TEST_F(WholeFileOnAFullDisk, KeepsTheOldFileAndLeavesNothing) {
  Put(disk_.Path(u"a"_s), "old");
  for (const qint64 room : {0, 4096, 8192}) {
    disk_.Fill(room);
    const auto cause = Failure(disk_.Path(u"a"_s), QByteArray(20000, 'n'));
    disk_.Empty();
    EXPECT_TRUE(IsFull(cause)) << room;
    EXPECT_EQ(Content(disk_.Path(u"a"_s)), "old");
    EXPECT_EQ(disk_.Files(), QStringList{u"a"_s});
  }
}

TEST_F(WholeFileOnAFullDisk, MakesNoNewFile) {
  disk_.Fill(4096);
  EXPECT_TRUE(IsFull(Failure(disk_.Path(u"new"_s), QByteArray(5000, 'n'))));
  disk_.Empty();
  EXPECT_EQ(disk_.Files(), QStringList{});
}

TEST_F(WholeFileOnAFullDisk, TellsAFailureThatTheWriterDidNotLookAt) {
  Put(disk_.Path(u"a"_s), "old");
  WholeFile file(disk_.Path(u"a"_s));
  disk_.Fill(4096);
  EXPECT_EQ(file.Device().write(QByteArray(5000, 'n')), -1);
  EXPECT_FALSE(file.Device().errorString().isEmpty());
  disk_.Empty();
  EXPECT_THROW(file.Write("more"), FileTrouble);
  EXPECT_THROW(file.Commit(), FileTrouble);
  EXPECT_EQ(Content(disk_.Path(u"a"_s)), "old");
}

TEST_F(WholeFileOnAFullDisk, ChecksTheRoomBeforeItWritesDirectly) {
  Put(disk_.Path(u"a"_s), "old");
  ASSERT_EQ(::chmod(QFile::encodeName(disk_.Path({})).constData(), 0555), 0);
  ASSERT_EQ(::chmod(QFile::encodeName(disk_.Path(u"a"_s)).constData(), 0666), 0);
  disk_.Fill(4096);
  std::optional<FileCause> full;
  std::optional<FileCause> fits;
  {
    const test::OrdinaryUser user;
    full = Failure(disk_.Path(u"a"_s), QByteArray(20000, 'n'));
    EXPECT_EQ(Content(disk_.Path(u"a"_s)), "old");
    fits = Failure(disk_.Path(u"a"_s), QByteArray(4000, 'n'));
  }
  disk_.Empty();
  ASSERT_EQ(::chmod(QFile::encodeName(disk_.Path({})).constData(), 0755), 0);
  EXPECT_TRUE(IsFull(full));
  EXPECT_EQ(fits, std::nullopt);
  EXPECT_EQ(Content(disk_.Path(u"a"_s)), QByteArray(4000, 'n'));
}

}  // namespace
}  // namespace tessmar
