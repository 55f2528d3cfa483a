#include "base/ReadFile.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <QFile>
#include <QTemporaryDir>
#include <cstdlib>

#include "base/FileTrouble.h"
#include "support/SmallDisk.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class ReadFileTest : public testing::Test {
 protected:
  QString Path(const QString& name) const { return folder_.filePath(name); }
  void Put(const QString& name, const QByteArray& bytes) const {
    QFile file(Path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
  }
  static std::optional<FileCause> CauseOf(const QString& path, qint64 limit = 1000) {
    try {
      ReadWholeFile(path, limit);
      return std::nullopt;
    } catch (const FileTrouble& trouble) {
      EXPECT_EQ(trouble.File(), path);
      return trouble.Cause();
    }
  }

  test::OrdinaryUser user_;
  QTemporaryDir folder_;
};

TEST_F(ReadFileTest, GivesTheBytesUpToTheLimit) {
  const QByteArray bytes("\0one\xFF\r\n", 7);
  Put(u"a"_s, bytes);
  EXPECT_EQ(ReadWholeFile(Path(u"a"_s), 7), bytes);
  EXPECT_EQ(CauseOf(Path(u"a"_s), 6), FileCause::TooLarge);
  EXPECT_EQ(ReadFileStart(Path(u"a"_s), 4), QByteArray("\0one", 4));
  Put(u"empty"_s, "");
  EXPECT_EQ(ReadWholeFile(Path(u"empty"_s), 7), "");
}

TEST_F(ReadFileTest, ReadsALargeFileWhole) {
  QByteArray bytes;
  for (int i = 0; i < 700000; ++i) bytes += QByteArray::number(i);
  Put(u"large"_s, bytes);
  EXPECT_EQ(ReadWholeFile(Path(u"large"_s), bytes.size()), bytes);
}

TEST_F(ReadFileTest, FollowsALink) {
  Put(u"a"_s, "text");
  ASSERT_TRUE(QFile::link(Path(u"a"_s), Path(u"link"_s)));
  EXPECT_EQ(ReadWholeFile(Path(u"link"_s), 10), "text");
}

TEST_F(ReadFileTest, RefusesWhatIsNoRegularFile) {
  ASSERT_EQ(::mkfifo(QFile::encodeName(Path(u"pipe"_s)).constData(), 0600), 0);
  ASSERT_TRUE(QFile::link(Path(u"pipe"_s), Path(u"link"_s)));
  const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_GE(terminal, 0);
  ASSERT_EQ(::grantpt(terminal), 0);
  ASSERT_EQ(::unlockpt(terminal), 0);
  for (const QString& path : {Path(u"pipe"_s), Path(u"link"_s), u"/dev/zero"_s, u"/dev/null"_s,
                              folder_.path(), QString::fromLocal8Bit(::ptsname(terminal))}) {
    EXPECT_EQ(CauseOf(path), FileCause::NotAFile) << path.toStdString();
  }
  ::close(terminal);
}

TEST_F(ReadFileTest, SaysThatAFileIsMissingOrMayNotBeRead) {
  EXPECT_EQ(CauseOf(Path(u"gone"_s)), FileCause::NotFound);
  EXPECT_EQ(CauseOf({}), FileCause::NotFound);
  Put(u"a"_s, "text");
  EXPECT_EQ(CauseOf(Path(u"a/below"_s)), FileCause::NoFolder);
  ASSERT_TRUE(QFile::setPermissions(Path(u"a"_s), QFile::WriteOwner));
  EXPECT_EQ(CauseOf(Path(u"a"_s)), FileCause::NoPermission);
}

}  // namespace
}  // namespace tessmar
