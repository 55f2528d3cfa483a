#include "app/ActivityLog.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "base/TextTable.h"
#include "support/FakeOutside.h"
#include "support/FakeSerialPort.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class ActivityLogTest : public testing::Test {
 protected:
  ActivityLogTest() {
    SetTextLanguage(kLanguageEnglish);
    Port.Open(5, u"38400,N,8,1"_s);
  }
  /// The lines since the last call, without their times.
  QStringList Lines() {
    QStringList lines = Log.Last(100).mid(Told);
    Told += lines.size();
    for (QString& line : lines) line = line.section(u' ', 1);
    return lines;
  }
  void Ticks() {
    for (int i = 0; i < 3; ++i) Activity.Tick();
  }

  QTemporaryDir Folder;
  FakeClock Clock;
  SupportLog Log{Folder.filePath(u"tessmar.log"_s), Clock};
  LinkState Link;
  FakeSerialPort Port;
  ActivityLog Activity{Log, Link, Port};
  qsizetype Told = 0;
};

TEST_F(ActivityLogTest, TellsOnceThatTheDeviceOfASessionIsGone) {
  Link.Connected = true;
  Ticks();
  EXPECT_EQ(Lines().size(), 1);
  Port.Unplug();
  Ticks();
  EXPECT_EQ(Lines(), QStringList{u"port COM5: the device is gone; plug it in again"_s});
  Link.Connected = false;
  Ticks();
  EXPECT_EQ(Lines(), QStringList{u"disconnected"_s});
}

TEST_F(ActivityLogTest, ADisconnectIsNoLoss) {
  Link.Connected = true;
  Ticks();
  Link.Connected = false;
  Port.Close();
  Ticks();
  EXPECT_EQ(Lines().last(), u"disconnected"_s);
  EXPECT_EQ(Log.Last(100).size(), 2);
}

TEST_F(ActivityLogTest, TellsApartWhatTheScreenDoesNot) {
  Activity.Trouble(PortCause::Silent);
  Activity.Trouble(PortCause::NotALogger);
  EXPECT_EQ(Lines(),
            (QStringList{u"port COM5: nothing answers; check cable, battery and baud rate"_s,
                         u"port COM5: what answers is not a logger; check port and baud rate"_s}));
}

}  // namespace
}  // namespace tessmar::test
