#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

#include "app/AppRig.h"

// What the operator does to a logger stands in the logbook, with what was true then; what did not
// happen does not.

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class LogbookEventsTest : public AppRig {
 protected:
  static QDateTime Time(int hour, int minute) {
    return QDateTime(QDate(2027, 3, 3), QTime(hour, minute), Qt::UTC);
  }
  /// The image in an entry's JSON text.
  static QByteArray SettingsOf(const QByteArray& json) {
    return QByteArray::fromHex(
        QJsonDocument::fromJson(json).object().value("settings"_L1).toString().toLatin1());
  }
  static QByteArray WithoutSettings(const QByteArray& json) {
    QJsonObject object = QJsonDocument::fromJson(json).object();
    object.remove(u"settings"_s);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
  }
  /// The only entry since the last call.
  LogbookEntry Noted() {
    EXPECT_EQ(Book.Entries.size(), 1U);
    const LogbookEntry entry = Book.Entries.empty() ? LogbookEntry{} : Book.Entries.back();
    Book.Entries.clear();
    return entry;
  }
};

TEST_F(LogbookEventsTest, AConnectionSaysWhatItFound) {
  Logger.Clock = {0x02, 0x05, 0x15, 0x01, 0x27, 0x12, 0x10};
  Connect();
  const LogbookEntry entry = Noted();
  EXPECT_EQ(entry.Kind, EventKind::Connected);
  EXPECT_EQ(entry.Text, u"connected, 5 records"_s);
  EXPECT_EQ(entry.Before, QByteArray());
  EXPECT_EQ(WithoutSettings(entry.After),
            "{\"analog\":8,\"clock_offset_s\":-10,\"firmware\":3,\"model\":0,\"pulse\":2,"
            "\"records\":5,\"status\":128}");
  EXPECT_EQ(SettingsOf(entry.After).left(9), "Pond 7   ");
  EXPECT_EQ(SettingsOf(entry.After).size(), 315);
}

TEST_F(LogbookEventsTest, AConnectionThatFindsTheLoggerAsItWasLeftSaysNothingOfIt) {
  Connect();
  Book.Known = {{SettingsOf(Noted().After), EventKind::Connected, Time(12, 0)}};
  TheSession.Connect();
  Logger.Clock = {0x02, 0x05, 0x15, 0x01, 0x27, 0x12, 0x10};
  Logger.Status = {9, 0, 0, 0, 0};
  Connect();
  const LogbookEntry entry = Noted();
  EXPECT_EQ(entry.Text, u"connected, 9 records"_s);
  EXPECT_EQ(entry.Before, QByteArray());
}

TEST_F(LogbookEventsTest, AConnectionThatFindsOtherSettingsSaysWhichAndAsksNothing) {
  Connect();
  const QByteArray known = SettingsOf(Noted().After);
  Book.Known = {{known, EventKind::Programmed, Time(12, 0)}};
  TheSession.Connect();
  Logger.PutText(8 + 48 + 9, "NTU      ");
  Logger.Memory[8 + 39] = 0;
  Forget();
  Messages.All.clear();
  TheSession.Connect();
  const LogbookEntry entry = Noted();
  EXPECT_EQ(entry.Kind, EventKind::Connected);
  EXPECT_EQ(entry.Text,
            u"connected, 5 records\n"
            "2 settings differ from how it was left (programmed 2027-03-03T12:00:00Z)\n"
            "Channel 2: Units: NTU; before: %\n"
            "Wrap records at end of storage: No; before: Yes"_s);
  EXPECT_EQ(SettingsOf(entry.Before), known);
  EXPECT_EQ(WithoutSettings(entry.Before),
            "{\"at\":\"2027-03-03T12:00:00Z\",\"known\":\"programmed\"}");
  EXPECT_EQ(SettingsOf(entry.After).mid(57, 4), "NTU ");
  EXPECT_EQ(Port.Writes, wire::kNormalConnection);
  EXPECT_TRUE(Messages.All.empty());
}

TEST_F(LogbookEventsTest, SettingsThatWereNotReadWholeAreNotCompared) {
  Book.Known = {{QByteArray(315, ' '), EventKind::Uploaded, Time(12, 0)}};
  int reads = 0;
  Logger.OnCommand = [&](std::uint8_t opcode) {
    // The identifier, two blocks, and the third for good.
    if (opcode == 0x08 && ++reads == 4) Logger.Failing = {0x08};
  };
  Connect();
  const LogbookEntry entry = Noted();
  EXPECT_EQ(entry.Text, u"connected, 5 records"_s);
  EXPECT_EQ(entry.Before, QByteArray());
  EXPECT_EQ(SettingsOf(entry.After), QByteArray());
}

TEST_F(LogbookEventsTest, ADisconnectAndAFailedConnectSayNothing) {
  Connect();
  Book.Entries.clear();
  TheSession.Connect();
  Logger.Silent = true;
  TheSession.Connect();
  EXPECT_TRUE(Book.Entries.empty());
}

TEST_F(LogbookEventsTest, AnInitialisationIsNotedAheadOfTheConnection) {
  Logger.PutText(0, "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF");
  Messages.Answers = {kOk};
  Connect();
  ASSERT_EQ(Book.Entries.size(), 2U);
  EXPECT_EQ(Book.Entries[0].Kind, EventKind::Initialized);
  EXPECT_EQ(Book.Entries[1].Kind, EventKind::Connected);
}

TEST_F(LogbookEventsTest, AClearedHistorySaysHowManyRecordsThereWere) {
  Connect();
  Book.Entries.clear();
  Messages.Answers = {kYes};
  Actions.ClearHistory();
  const LogbookEntry entry = Noted();
  EXPECT_EQ(entry.Kind, EventKind::Cleared);
  EXPECT_EQ(entry.Before, "{\"records\":5}");

  Messages.Answers = {kNo};
  Actions.ClearHistory();
  Logger.Failing = {0x04};
  Messages.Answers = {kYes};
  Actions.ClearHistory();
  EXPECT_TRUE(Book.Entries.empty());
}

TEST_F(LogbookEventsTest, ASetClockSaysHowFarItWasOff) {
  Logger.Clock = {0x02, 0x05, 0x15, 0x01, 0x27, 0x12, 0x10};
  Connect();
  Book.Entries.clear();
  Logger.Clock = {0x12, 0x05, 0x15, 0x01, 0x27, 0x12, 0x10};
  Messages.Answers = {kYes};
  Actions.SynchronizeTime();
  const LogbookEntry entry = Noted();
  EXPECT_EQ(entry.Kind, EventKind::Synced);
  EXPECT_EQ(entry.Text, u"clock set, it was -10 s off"_s);
  EXPECT_EQ(entry.Before, "{\"clock_offset_s\":-10}");
  EXPECT_EQ(entry.After, "{\"clock_offset_s\":0}");

  Logger.Failing = {0x01};
  Messages.Answers = {kYes};
  Actions.SynchronizeTime();
  EXPECT_TRUE(Book.Entries.empty());
}

TEST_F(LogbookEventsTest, AResetOfThePulseTotalsIsNotedWhenTheLoggerDidIt) {
  Connect();
  Book.Entries.clear();
  Actions.ResetPulseAccumulators();
  EXPECT_EQ(Noted().Kind, EventKind::Reset);
  Logger.Failing = {0x0E};
  Actions.ResetPulseAccumulators();
  EXPECT_TRUE(Book.Entries.empty());
}

}  // namespace
}  // namespace tessmar::test
