#include <gtest/gtest.h>

#include "app/AppRig.h"

// What the operator does to a logger stands in the logbook, with what was true then; what did not
// happen does not.

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class LogbookEventsTest : public AppRig {
 protected:
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
  EXPECT_EQ(entry.After,
            "{\"analog\":8,\"clock_offset_s\":-10,\"firmware\":3,\"model\":0,\"pulse\":2,"
            "\"records\":5,\"status\":128}");
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
