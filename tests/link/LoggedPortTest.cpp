#include "link/LoggedPort.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <iterator>
#include <random>

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

TEST_F(LoggedPortTest, TracesWhatIsTakenInPieces) {
  LoggedPort port(Port, Log, true);
  port.Open(9, u"38400,N,8,1"_s);
  Send(port, "\xF8\x03\x0F\x40\x04\xF9");
  Answer("\xFA\xF8\x0A");
  Bytes room(2);
  EXPECT_EQ(port.Read(room), 2U);
  EXPECT_EQ(room, (Bytes{0xFA, 0xF8}));
  EXPECT_EQ(port.Read(room), 1U);
  EXPECT_EQ(room[0], 0x0A);
  EXPECT_EQ(port.Read(room), 0U);
  port.Close();
  EXPECT_EQ(Lines(), (QStringList{u"port COM9 opened, 38400,N,8,1"_s, u"-> F8 03 0F 40 04 F9"_s,
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

// A modem tells who calls, at any time, and a line that breaks makes it the speaker again.
TEST_F(LoggedPortTest, NumbersThatComeBehindAModemAreHiddenAmongTheLoggersBytes) {
  LoggedPort port(Port, Log, true);
  port.Open(9, u"9600,N,8,1"_s);
  Send(port, "ATDT5550100\r");
  Send(port, "U");
  Answer("NMBR=555-0100 12\r");
  port.ReadAll();
  Send(port, "T");
  Answer(
      "\xF8"
      "123\xF9");
  port.ReadAll();
  port.Close();
  EXPECT_EQ(Lines().filter(u"<-"_s),
            (QStringList{u"<- 4E 4D 42 52 3D ** ** ** 2D ** ** ** ** 20 ** ** 0D"_s,
                         u"<- F8 31 32 33 F9"_s}));
}

TEST_F(LoggedPortTest, ADirectLineIsTracedWhole) {
  LoggedPort port(Port, Log, true);
  port.Open(9, u"9600,N,8,1"_s);
  Send(port, "U");
  Answer("5550100");
  port.ReadAll();
  port.Close();
  EXPECT_EQ(Lines().filter(u"<-"_s), QStringList{u"<- 35 35 35 30 31 30 30"_s});
}

/// A number as it may stand in the log: as it is, in hexadecimal with and without blanks.
bool Shows(const QString& log, const QByteArray& number) {
  return log.contains(QString::fromLatin1(number)) ||
         log.contains(QString::fromLatin1(number.toHex(' ').toUpper())) ||
         log.contains(QString::fromLatin1(number.toHex().toUpper()), Qt::CaseInsensitive);
}

// Calls at random: commands, replies, letters, frames, echoes, rings and hang-ups in any order,
// with the number in whatever is the modem's.
TEST_F(LoggedPortTest, NoCallLeavesItsNumberInTheLog) {
  constexpr int kCalls = 300;
  constexpr int kSteps = 30;
  const QByteArray number("0306425550100");
  std::mt19937 random(20270303);
  const auto upTo = [&random](int most) {
    return std::uniform_int_distribution<int>(0, most)(random);
  };
  const QByteArray said[] = {"AT&F S0=0 X" + number + "\r",
                             "ATDT" + number + "\r",
                             "+++",
                             "ATH\r",
                             "U",
                             "T",
                             "M",
                             QByteArray("\xF8\x03\x0C\x00\x05\xF9", 6)};
  const QByteArray heard[] = {"ATDT" + number + "\r\r\nCONNECT 9600/" + number + "\r\n",
                              "\r\nRING\r\nNMBR = " + number + "\r\n",
                              "\r\n+CLIP: \"" + number + "\",129\r\n",
                              "\r\nNO CARRIER\r\n",
                              "T",
                              QByteArray("\xFA\xF8\x07\x05\x00\x00\x80\x00\x12\x34\xF9", 11)};
  for (int call = 0; call < kCalls; ++call) {
    LoggedPort port(Port, Log, true);
    port.Open(9, u"9600,N,8,1"_s);
    Send(port, said[1]);
    for (int step = 0; step < kSteps; ++step) {
      if (upTo(1) == 0) {
        Send(port, said[upTo(std::size(said) - 1)]);
      } else {
        Answer(heard[upTo(std::size(heard) - 1)]);
        if (upTo(1) == 0 && port.InputCount() > 0) port.ReadByte();
        if (upTo(2) > 0) port.ReadAll();
      }
    }
    port.Close();
    const QString log = Log.Last(1000).join(u'\n');
    ASSERT_FALSE(Shows(log, number)) << "call " << call;
    // A piece of it is one too many.
    ASSERT_FALSE(Shows(log, number.right(7))) << "call " << call;
  }
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
