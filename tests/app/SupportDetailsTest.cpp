#include "app/SupportDetails.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QPushButton>
#include <QTemporaryDir>

#include "app/frmAbout.h"
#include "base/LoggedMessages.h"
#include "base/TextTable.h"
#include "link/LoggedPort.h"
#include "link/ModemConnection.h"
#include "support/FakeMessageLoop.h"
#include "support/FakeOutside.h"
#include "support/FakeSerialPort.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

constexpr const char* kNumber = "0306425550100";
constexpr const char* kPassword = "SWORDFISH";

class SupportDetailsTest : public testing::Test {
 protected:
  SupportDetailsTest() {
    Time.Present = QDateTime(QDate(2027, 3, 3), QTime(14, 30, 5, 7), Qt::UTC);
    Link.TrapErrors = true;
  }
  void TearDown() override { SetTextLanguage(kLanguageEnglish); }

  void ConnectLogger() {
    Port.Open(9, u"38400,N,8,1"_s);
    Link.Connected = true;
    Link.LoggerModelCode = 220;
    Link.FirmwareVersion = 21;
    Link.AnalogChannelCount = 8;
    Link.PulseChannelCount = 2;
  }
  QStringList Lines() {
    return SupportDetails(u"Tessmar DO Monitor v2.1.9"_s, Locale, Link, Port, Log).split(u'\n');
  }

  QTemporaryDir Folder;
  FakeClock Time;
  SupportLog Log{Folder.filePath(u"tessmar.log"_s), Time};
  LinkState Link;
  FakeSerialPort Wire;
  LoggedPort Port{Wire, Log, true};
  SystemLocale Locale{QLocale(QLocale::German, QLocale::Germany)};
};

TEST_F(SupportDetailsTest, SayWhatWhoeverHelpsWantsToKnowFirst) {
  Log.Write(u"command: setup"_s);
  const QStringList lines = Lines();
  ASSERT_EQ(lines.size(), 7);
  EXPECT_EQ(lines[0], u"Tessmar DO Monitor v2.1.9"_s);
  EXPECT_TRUE(lines[1].startsWith(u"System: "_s));
  EXPECT_TRUE(lines[1].contains(u", Qt "_s + QString::fromLatin1(qVersion()) + u", offscreen"_s));
  EXPECT_EQ(lines[2], u"Locale: de_DE, texts %1"_s.arg(TextLanguage()));
  EXPECT_EQ(lines[3], u"Logger: not connected"_s);
  EXPECT_EQ(lines[4], u"Log: "_s + Log.Path());
  EXPECT_EQ(lines[5], u"2027-03-03T14:30:05.007Z command: setup"_s);
  EXPECT_EQ(lines[6], QString()) << "the text ends its last line";
}

TEST_F(SupportDetailsTest, DescribeTheLoggerWithoutItsName) {
  ConnectLogger();
  EXPECT_EQ(Lines()[3],
            u"Logger: model 220, firmware 21, 8 analog and 2 pulse channels, on COM9 at"
            " 38400,N,8,1"_s);
}

TEST_F(SupportDetailsTest, EndWithTheLastHundredLinesOfTheLog) {
  for (int i = 1; i <= 250; ++i) Log.Write(u"line %1"_s.arg(i));
  const QStringList lines = Lines();
  ASSERT_EQ(lines.size(), 5 + 100 + 1);
  EXPECT_TRUE(lines[5].endsWith(u" line 151"_s));
  EXPECT_TRUE(lines[104].endsWith(u" line 250"_s));
}

// The same in both languages: whoever helps reads English.
TEST_F(SupportDetailsTest, AreInEnglish) {
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(Lines()[3], u"Logger: not connected"_s);
}

// A call that goes wrong, with all that is traced and told of it.
TEST_F(SupportDetailsTest, HoldNoPhoneNumberAndNoPassword) {
  FakeMessageLoop loop(Link);
  Comm channel(Port, loop, Link);
  ConnectionSettings settings;
  FakeMessages operators;
  LoggedMessages messages(operators, Log);
  const QString number = QString::fromLatin1(kNumber);
  ASSERT_TRUE(channel.OpenPort(9, u"38400,N,8,1"_s));
  const auto talk = [&](const QStringList&, const QString& dialled) {
    for (const QByteArray& said :
         {QByteArray("AT+PASSWORD=") + kPassword + '\r', "ATDT" + dialled.toLatin1() + '\r'}) {
      channel.Write(Bytes(said.begin(), said.end()));
      Wire.Arrive(Bytes(said.begin(), said.end()));
      channel.ReadAll();
    }
    throw PortFault("gone");
    return ModemResult::Error;
  };
  for (const QString& dialled : {number, QString()}) {
    EXPECT_FALSE(ConnectModem({.Number = dialled}, channel, Link, settings, messages, talk));
  }
  EXPECT_FALSE(ConnectModem({number, true, Folder.filePath(u"none.txt"_s)}, channel, Link, settings,
                            messages, talk));
  EXPECT_EQ(operators.All.size(), 3U);
  const QString text = Lines().join(u'\n');
  EXPECT_TRUE(text.contains(u"bytes of a modem"_s));
  for (const QByteArray& secret : {QByteArray(kNumber), QByteArray(kPassword)}) {
    EXPECT_FALSE(text.contains(QString::fromLatin1(secret), Qt::CaseInsensitive));
    EXPECT_FALSE(text.contains(QString::fromLatin1(secret.toHex(' ').toUpper())));
  }
}

TEST_F(SupportDetailsTest, GoToTheClipboardAtAPress) {
  frmAbout form(u"Tessmar DO Monitor v2.1.9"_s, nullptr, [this] { return Lines().join(u'\n'); });
  auto* button = form.findChild<QPushButton*>(u"cmdCopyDetails"_s);
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(button->text(), u"Copy details for support"_s);
  QGuiApplication::clipboard()->clear();
  button->click();
  EXPECT_EQ(QGuiApplication::clipboard()->text(), Lines().join(u'\n'));
  EXPECT_EQ(button->text(), u"Copied"_s);
}

}  // namespace
}  // namespace tessmar::test
