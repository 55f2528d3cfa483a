#include "link/PortTrouble.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include "base/TextTable.h"
#include "link/Pty.h"
#include "support/SmallDisk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class PortTroubleTest : public testing::Test {
 protected:
  PortTroubleTest() {
    SetTextLanguage(kLanguageEnglish);
    Places.Locks = Folder.path();
  }
  ~PortTroubleTest() override {
    Other.kill();
    Other.waitForFinished();
  }

  /// A process that lives beside this one.
  qint64 AnotherProcess() {
    Other.start(u"sleep"_s, {u"60"_s});
    EXPECT_TRUE(Other.waitForStarted());
    return Other.processId();
  }
  void Lock(const QString& name, const QByteArray& content) {
    QFile file(Folder.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
  }
  /// The name of a lock on /dev/null.
  static QString NullLock() { return u"LCK..null"_s; }

  QTemporaryDir Folder;
  PortPlaces Places;
  QProcess Other;
};

TEST_F(PortTroubleTest, NoSuchDevice) {
  const PortTrouble trouble = FindPortTrouble(u"/dev/ttyUSB77"_s, Places);
  EXPECT_EQ(trouble.Cause, PortCause::NoSuchDevice);
  EXPECT_EQ(PortTroubleText(trouble, u"COM5"_s),
            u"COM5: no such device; plug the adapter in, \"tessmar ports\" lists what is there"_s);
}

TEST_F(PortTroubleTest, NotAPort) {
  EXPECT_EQ(FindPortTrouble(u"/dev/null"_s, Places).Cause, PortCause::NotAPort);
  EXPECT_EQ(FindPortTrouble(Folder.path(), Places).Cause, PortCause::NotAPort);
}

TEST_F(PortTroubleTest, ALockOfALivingProcessNamesIt) {
  const qint64 process = AnotherProcess();
  // As most serial programs write it: ten characters and a line end.
  Lock(NullLock(), QByteArray::number(process).rightJustified(10) + '\n');
  const PortTrouble trouble = FindPortTrouble(u"/dev/null"_s, Places);
  EXPECT_EQ(trouble.Cause, PortCause::InUse);
  EXPECT_EQ(trouble.Holder, (ProcessName{process, u"sleep"_s}));
  EXPECT_EQ(PortTroubleText(trouble, u"COM5"_s),
            u"COM5: in use by sleep (process %1); end that program or wait for it"_s.arg(process));
}

TEST_F(PortTroubleTest, ALockOfADeadProcessIsTakenAway) {
  const qint64 process = AnotherProcess();
  Other.kill();
  Other.waitForFinished();
  Lock(NullLock(), QByteArray::number(process) + "\n");
  EXPECT_EQ(LockHolder(u"/dev/null"_s, Places), std::nullopt);
  EXPECT_FALSE(QFile::exists(Folder.filePath(NullLock())));
}

TEST_F(PortTroubleTest, ALockWhoseNumberAnotherProgramHasByNowIsTakenAway) {
  Lock(NullLock(), QByteArray::number(AnotherProcess()) + "\nreader\nhost\n");
  EXPECT_EQ(LockHolder(u"/dev/null"_s, Places), std::nullopt);
  EXPECT_FALSE(QFile::exists(Folder.filePath(NullLock())));
}

TEST_F(PortTroubleTest, ALockThatIsJustBeingWrittenStays) {
  Lock(NullLock(), "");
  EXPECT_EQ(LockHolder(u"/dev/null"_s, Places), std::nullopt);
  EXPECT_TRUE(QFile::exists(Folder.filePath(NullLock())));
}

TEST_F(PortTroubleTest, OnesOwnLockIsNoneAnothers) {
  Lock(NullLock(), QByteArray::number(QCoreApplication::applicationPid()) + "\n");
  EXPECT_EQ(LockHolder(u"/dev/null"_s, Places), std::nullopt);
  EXPECT_TRUE(QFile::exists(Folder.filePath(NullLock())));
}

TEST_F(PortTroubleTest, ALockStandsOnTheDeviceAndNotOnALinkToIt) {
  const qint64 process = AnotherProcess();
  Lock(NullLock(), QByteArray::number(process) + "\n");
  ASSERT_TRUE(QFile::link(u"/dev/null"_s, Folder.filePath(u"logger"_s)));
  EXPECT_EQ(LockHolder(Folder.filePath(u"logger"_s), Places).value_or(ProcessName()).Id, process);
}

TEST_F(PortTroubleTest, TheGroupThatMay) {
  EXPECT_EQ(GroupThatMay(S_IFCHR | 0660, u"dialout"_s), u"dialout"_s);
  EXPECT_EQ(GroupThatMay(S_IFCHR | 0640, u"dialout"_s), QString());
  EXPECT_EQ(GroupThatMay(S_IFCHR | 0600, u"tty"_s), QString());
  EXPECT_EQ(
      PortTroubleText({PortCause::NoPermission, u"dialout"_s, {}}, u"COM5"_s),
      u"COM5: no permission; members of the group dialout have it: sudo adduser NAME dialout, "
      u"then log in anew"_s);
}

TEST_F(PortTroubleTest, APortThatTheUserMayNotOpen) {
  const Pty pty;
  const QByteArray device = QFile::encodeName(pty.Device());
  ASSERT_EQ(::chmod(device.constData(), 0), 0);
  const OrdinaryUser user;
  const PortTrouble trouble = FindPortTrouble(pty.Device(), Places);
  EXPECT_EQ(trouble.Cause, PortCause::NoPermission);
  EXPECT_EQ(PortTroubleText(trouble, u"COM5"_s),
            u"COM5: no permission; only the owner of the device may use it"_s);
}

TEST_F(PortTroubleTest, APortThatAnotherProgramHasForItselfAlone) {
  const Pty pty;
  const QByteArray device = QFile::encodeName(pty.Device());
  ASSERT_EQ(::chmod(device.constData(), 0666), 0);
  const int held = ::open(device.constData(), O_RDWR | O_NOCTTY);
  ASSERT_GE(held, 0);
  ASSERT_EQ(::ioctl(held, TIOCEXCL), 0);
  // What the system tells of processes: this one, one that has something else open, and the other.
  QDir processes(Folder.path());
  ASSERT_EQ(::chmod(QFile::encodeName(Folder.path()).constData(), 0755), 0);
  const QString own = QString::number(QCoreApplication::applicationPid());
  for (const QString& process : {own, u"11"_s, u"12"_s, u"self"_s}) {
    ASSERT_TRUE(processes.mkpath(process + u"/fd"_s));
    const QString target = process == u"11"_s ? u"/dev/null"_s : pty.Device();
    ASSERT_TRUE(QFile::link(target, processes.filePath(process + u"/fd/3"_s)));
  }
  Places.Processes = Folder.path();
  const auto find = [&] {
    const OrdinaryUser user;
    return FindPortTrouble(pty.Device(), Places);
  };
  PortTrouble trouble = find();
  EXPECT_EQ(trouble.Cause, PortCause::InUse);
  EXPECT_EQ(PortTroubleText(trouble, u"COM5"_s),
            u"COM5: in use by process 12; end that program or wait for it"_s);
  Lock(u"12/comm"_s, "reader\n");
  EXPECT_EQ(PortTroubleText(find(), u"COM5"_s),
            u"COM5: in use by reader (process 12); end that program or wait for it"_s);
  ASSERT_TRUE(QFile::remove(processes.filePath(u"12/fd/3"_s)));
  EXPECT_EQ(find().Cause, PortCause::InUse);
  EXPECT_EQ(find().Holder, std::nullopt);
  ::close(held);
}

TEST_F(PortTroubleTest, SpeaksGerman) {
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(PortTroubleText({PortCause::Silent, {}, {}}, u"COM5"_s),
            u"COM5: nichts antwortet; Kabel, Batterie und Baudrate prüfen"_s);
  SetTextLanguage(kLanguageEnglish);
}

}  // namespace
}  // namespace tessmar::test
