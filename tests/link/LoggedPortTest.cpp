#include "link/LoggedPort.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "base/Fault.h"
#include "support/FakeOutside.h"
#include "support/FakeSerialPort.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class LoggedPortTest : public testing::Test {
 protected:
  /// The lines of the log without their times.
  QStringList Lines() const {
    QStringList lines = Log.Last(1000);
    for (QString& line : lines) line = line.section(u' ', 1);
    return lines;
  }
  void Send(LoggedPort& port, const QByteArray& bytes) const {
    port.Write({reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                static_cast<std::size_t>(bytes.size())});
  }
  void Answer(const QByteArray& bytes) { Port.Arrive(Bytes(bytes.begin(), bytes.end())); }

  QTemporaryDir Folder;
  FakeClock Time;
  SupportLog Log{Folder.filePath(u"tessmar.log"_s), Time};
  FakeSerialPort Port;
};

TEST_F(LoggedPortTest, SaysWhenThePortIsOpenedAndClosed) {
  LoggedPort port(Port, Log, false);
  port.Open(9, u"38400,N,8,1"_s);
  Send(port, "\xF8\x03\x0F\x40\x04\xF9");
  port.Close();
  port.Close();
  EXPECT_EQ(Lines(), (QStringList{u"port COM9 opened, 38400,N,8,1"_s, u"port COM9 closed"_s}));
}

TEST_F(LoggedPortTest, TracesLettersAndFramesInHexadecimal) {
  LoggedPort port(Port, Log, true);
  port.Open(9, u"38400,N,8,1"_s);
  Send(port, "U");
  Answer("T");
  EXPECT_EQ(port.ReadByte(), 'T');
  Send(port, "T");
  Answer("M");
  port.ReadAll();
  Send(port, "\xF8\x03\x0F\x40\x04\xF9");
  Answer("\xFA\xF8\x0A");
  port.ReadByte();
  port.ReadByte();
  port.ReadByte();
  port.Close();
  EXPECT_EQ(Lines(), (QStringList{u"port COM9 opened, 38400,N,8,1"_s, u"-> 55"_s, u"<- 54"_s,
                                  u"-> 54"_s, u"<- 4D"_s, u"-> F8 03 0F 40 04 F9"_s,
                                  u"<- FA F8 0A"_s, u"port COM9 closed"_s}));
}

TEST_F(LoggedPortTest, NeverSaysWhatIsSaidToAModem) {
  LoggedPort port(Port, Log, true);
  port.Open(9, u"9600,N,8,1"_s);
  Send(port, "AT&F PASSWORD=swordfish\r");
  Answer("AT&F PASSWORD=swordfish\r\r\nOK\r\n");
  port.ReadAll();
  Send(port, "ATDT5550100\r");
  Answer("ATDT5550100\r\r\nCONNECT 9600\r\n");
  port.ReadAll();
  // One byte at a time is no letter of the handshake.
  Send(port, "5");
  Send(port, "T");
  Send(port, "U");
  Answer("T");
  port.ReadByte();
  port.Close();
  EXPECT_EQ(Lines(), (QStringList{u"port COM9 opened, 9600,N,8,1"_s, u"-> 24 bytes of a modem"_s,
                                  u"<- 30 bytes of a modem"_s, u"-> 12 bytes of a modem"_s,
                                  u"<- 28 bytes of a modem"_s, u"-> 1 bytes of a modem"_s,
                                  u"-> 1 bytes of a modem"_s, u"-> 55"_s, u"<- 54"_s,
                                  u"port COM9 closed"_s}));
}

TEST_F(LoggedPortTest, ASecondCallIsHiddenLikeTheFirst) {
  LoggedPort port(Port, Log, true);
  port.Open(9, u"9600,N,8,1"_s);
  Send(port, "U");
  port.Close();
  port.Open(9, u"9600,N,8,1"_s);
  Answer("RING 5550100\r\n");
  port.ReadAll();
  Send(port, "ATDT5550100\r");
  port.Close();
  for (const QString& line : Lines())
    EXPECT_FALSE(line.contains(u"35 35 35"_s)) << qPrintable(line);
  EXPECT_EQ(Lines().filter(u"of a modem"_s).size(), 2);
}

TEST_F(LoggedPortTest, SaysWhyThePortCouldNotBeOpened) {
  Port.RefuseToOpen = true;
  LoggedPort port(Port, Log, false);
  EXPECT_THROW(port.Open(3, u"38400,N,8,1"_s), Fault);
  EXPECT_EQ(Lines(), QStringList{u"port COM3 not opened: refused"_s});
}

TEST_F(LoggedPortTest, LongInputIsCutIntoLines) {
  LoggedPort port(Port, Log, true);
  port.Open(9, u"9600,N,8,1"_s);
  Send(port, "U");
  Answer(QByteArray(600, 'x'));
  for (int i = 0; i < 600; ++i) port.ReadByte();
  port.Close();
  const QStringList received = Lines().filter(u"<- "_s);
  ASSERT_EQ(received.size(), 2);
  EXPECT_EQ(received[0].size(), 3 + 512 * 3 - 1);
  EXPECT_EQ(received[1].size(), 3 + 88 * 3 - 1);
}

}  // namespace
}  // namespace tessmar::test
