#include "base/SupportLog.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "base/LoggedMessages.h"
#include "support/FakeOutside.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class SupportLogTest : public testing::Test {
 protected:
  SupportLogTest() { Time.Present = QDateTime(QDate(2027, 3, 3), QTime(14, 30, 5, 7), Qt::UTC); }

  QByteArray Content(const QString& name) const {
    QFile file(Folder.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  QTemporaryDir Folder;
  test::FakeClock Time;
  QString Path = Folder.filePath(u"state/Tessmar/tessmar.log"_s);
  SupportLog Log{Path, Time};
};

TEST_F(SupportLogTest, AddsLinesWithTheirTimeAndMakesItsFolder) {
  Log.Write(u"one"_s);
  Log.Write(u"zwei ü"_s);
  EXPECT_EQ(Content(u"state/Tessmar/tessmar.log"_s),
            "2027-03-03T14:30:05.007Z one\n2027-03-03T14:30:05.007Z zwei \xC3\xBC\n");
}

TEST_F(SupportLogTest, KeepsEachEntryToOneLine) {
  Log.Write(u"a\r\nb\tc"_s);
  EXPECT_EQ(Content(u"state/Tessmar/tessmar.log"_s), "2027-03-03T14:30:05.007Z a  b c\n");
}

TEST_F(SupportLogTest, BeginsANewFileBeforeOneMegabyteIsPassed) {
  const QString line(1000, u'x');
  const qint64 size = 25 + 1000 + 1;
  const qint64 fitting = SupportLog::kLargest / size;
  for (qint64 i = 0; i < fitting; ++i) Log.Write(line);
  EXPECT_EQ(QFileInfo(Path).size(), fitting * size);
  EXPECT_FALSE(QFileInfo::exists(Path + u".1"_s));
  Log.Write(line);
  EXPECT_EQ(QFileInfo(Path).size(), size);
  EXPECT_EQ(QFileInfo(Path + u".1"_s).size(), fitting * size);
  for (qint64 i = 0; i < fitting; ++i) Log.Write(line);
  EXPECT_EQ(QFileInfo(Path).size(), size);
  EXPECT_EQ(QDir(QFileInfo(Path).path()).entryList(QDir::Files),
            (QStringList{u"tessmar.log"_s, u"tessmar.log.1"_s}));
}

TEST_F(SupportLogTest, GivesItsLastLines) {
  EXPECT_EQ(Log.Last(3), QStringList());
  for (const char* text : {"a", "b", "c", "d"}) Log.Write(QString::fromLatin1(text));
  EXPECT_EQ(Log.Last(2),
            (QStringList{u"2027-03-03T14:30:05.007Z c"_s, u"2027-03-03T14:30:05.007Z d"_s}));
  EXPECT_EQ(Log.Last(100).size(), 4);
}

TEST_F(SupportLogTest, IsSilentWhereItCannotWrite) {
  SupportLog(QString(), Time).Write(u"x"_s);
  const QString file = Folder.filePath(u"file"_s);
  ASSERT_TRUE(QFile(file).open(QIODevice::WriteOnly));
  SupportLog(file + u"/tessmar.log"_s, Time).Write(u"x"_s);
  SupportLog(Folder.path(), Time).Write(u"x"_s);
  // A pipe without a reader would wait for one.
  const QString pipe = Folder.filePath(u"pipe"_s);
  ASSERT_EQ(mkfifo(qPrintable(pipe), 0600), 0);
  const SupportLog log(pipe, Time);
  log.Write(u"x"_s);
  EXPECT_EQ(log.Last(1), QStringList());
}

TEST_F(SupportLogTest, StandsInTheUsersStateFolder) {
  const QByteArray before = qgetenv("XDG_STATE_HOME");
  qputenv("XDG_STATE_HOME", "/somewhere/state");
  EXPECT_EQ(SupportLog::DefaultPath(), u"/somewhere/state/Tessmar/tessmar.log"_s);
  for (const char* none : {"", "relative/state"}) {
    qputenv("XDG_STATE_HOME", none);
    EXPECT_EQ(SupportLog::DefaultPath(), QDir::homePath() + u"/.local/state/Tessmar/tessmar.log"_s);
  }
  qputenv("XDG_STATE_HOME", before);
}

TEST_F(SupportLogTest, MessagesAndTheirAnswersAreWritten) {
  test::FakeMessages messages;
  messages.Answers = {kNo};
  LoggedMessages logged(messages, Log);
  EXPECT_EQ(logged.MsgBox(u"Are you sure?\r\nReally?"_s, kYesNo, u"Clear History"_s), kNo);
  EXPECT_EQ(messages.All, (std::vector<test::FakeMessages::Asked>{
                              {u"Are you sure?\r\nReally?"_s, kYesNo, u"Clear History"_s}}));
  EXPECT_EQ(Log.Last(9), (QStringList{u"2027-03-03T14:30:05.007Z message \"Clear History\": Are "
                                      u"you sure?  Really?"_s,
                                      u"2027-03-03T14:30:05.007Z answer 7"_s}));
}

}  // namespace
}  // namespace tessmar
