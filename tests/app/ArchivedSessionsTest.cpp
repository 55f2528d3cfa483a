#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "app/AppRig.h"
#include "archive/ArchiveRig.h"
#include "archive/Journal.h"

// What is kept of a session belongs to the logger that it was with, whatever the screens hold:
// under its name, and with its settings or with none.

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

constexpr std::uint8_t kRead = 0x08;
/// With a connection the identifier is read, then the three areas of the configuration.
constexpr int kReadsOfAConnection = 4;

class ArchivedSessions : public AppRig {
 protected:
  ArchivedSessions() {
    Poll.KeepSamples(archive_);
    Loop.OnTick = [this] {
      Clock.Present = Clock.Present.addMSecs(100);
      Poll.Timer1Tick();
      Poll.Timer2Tick();
      archive_.Tick();
    };
    Store("Mill 3", "ppt");
  }

  /// A logger whose first two channels are on.
  void Store(const char* name, const char* unit) {
    StoreInLogger(name);
    Logger.Memory[8 + 37] = 3;
    Logger.Memory[8 + 38] = 0;
    Logger.PutText(8 + 48, std::string(unit) + std::string(9 - std::strlen(unit), ' '));
  }
  /// Another logger is plugged in; of its memory only so many reads are answered.
  void Meet(const char* name, const char* unit, int reads) {
    if (Link.Connected) TheSession.Connect();
    Store(name, unit);
    Logger.Failing.clear();
    Forget();
    Logger.OnCommand = [this, reads](std::uint8_t) {
      if (Logger.Count(kRead) > reads) Logger.Failing = {kRead};
    };
    TheSession.Connect();
    Logger.OnCommand = nullptr;
    ASSERT_TRUE(Link.Connected);
  }
  void SampleFor(int seconds) {
    StartSampling();
    Loop.RunFor(seconds * 1000);
    StopSampling();
    Loop.RunFor(1000);
  }
  void Upload() {
    archive_.Begin({.Promised = 1});
    std::vector<std::uint8_t> block(241, 0);
    block[0] = 1;
    for (std::size_t i = 0; i < 24; ++i) block[i + 1] = Logger.Sample[i];
    archive_.TakeBlock(block);
    archive_.End(UploadEnd::Complete);
    Loop.RunFor(1000);
  }
  /// What an image file leaves behind on the screens: its settings and the channels that were
  /// chosen.
  void ImportImage() {
    Settings.LoggerName = u"Image"_s;
    Settings.Analog[1].EngUnits = u"mS"_s;
    Settings.Analog[1].Enable = 0;
    Link.AnalogChannelCount = 3;
    Link.PulseChannelCount = 1;
  }

  QStringList Rows(const QString& sql) { return OtherProgram(archive_.Path()).Rows(sql); }
  /// Of the newest upload: its logger, its settings' name and length, the shape of its records.
  QString Newest() {
    return Rows(
               u"SELECT logger.name, rtrim(CAST(substr(settings, 1, 9) AS TEXT)), length(settings),"
               " analog, pulse FROM upload JOIN logger ON logger.id = logger_id"
               " ORDER BY upload.id DESC LIMIT 1"_s)
        .value(0);
  }
  QStringList NewestChannels() {
    return Rows(
        u"SELECT place, unit FROM channel WHERE upload_id = (SELECT max(id) FROM upload)"_s);
  }
  QStringList NewestRecords() {
    return Rows(
        u"SELECT DISTINCT hex(raw), a1, a2 FROM record WHERE upload_id ="
        " (SELECT max(id) FROM upload)"_s);
  }
  /// Of the pond's logger, with all ten words of a record and the two channels that are on.
  void ExpectThePondsOwnWords() {
    EXPECT_EQ(Newest(), u"Pond 7|Pond 7|315|8|2"_s);
    EXPECT_EQ(NewestChannels().size(), 2);
    EXPECT_EQ(NewestRecords().value(0).section(u'|', 0, 0),
              u"0100020003000400050006000700080009000A00"_s);
  }

  QTemporaryDir folder_;
  Journal archive_{folder_.filePath(u"archive.sqlite"_s),
                   {.Link = Link,
                    .Settings = Settings,
                    .Time = Clock,
                    .Source = [] { return u"COM1"_s; },
                    .Program = u"test"_s,
                    .AsRead = [this]() -> const LoggerAsRead& { return Configuration.AsRead(); }}};
};

TEST_F(ArchivedSessions, SamplesHaveTheNameAndTheSettingsOfTheirLogger) {
  Meet("Pond 7", "mg/L", kReadsOfAConnection);
  SampleFor(3);
  EXPECT_EQ(Newest(), u"Pond 7|Pond 7|315|8|2"_s);
  EXPECT_EQ(NewestChannels().size(), 2);
}

TEST_F(ArchivedSessions, SamplesOfALoggerThatToldNothingHaveNoOthersSettings) {
  Meet("Pond 7", "mg/L", kReadsOfAConnection);
  Meet("Mill 3", "NTU", 1);
  ASSERT_TRUE(Settings.Analog[0].Enable);  // Still the other one's.
  SampleFor(3);
  EXPECT_EQ(Newest(), u"|-|-|8|2"_s);
  EXPECT_EQ(NewestChannels(), QStringList());
  EXPECT_EQ(NewestRecords(), QStringList{u"0100020003000400050006000700080009000A00|-|-"_s});
}

TEST_F(ArchivedSessions, SamplesOfALoggerThatToldItsNameAloneHaveThat) {
  Meet("Pond 7", "mg/L", kReadsOfAConnection);
  Meet("Mill 3", "NTU", 3);
  SampleFor(3);
  EXPECT_EQ(Newest(), u"Mill 3|-|-|8|2"_s);
  EXPECT_EQ(NewestChannels(), QStringList());
}

TEST_F(ArchivedSessions, SamplesAfterALaterReadingHaveSettingsAgain) {
  Meet("Mill 3", "NTU", 1);
  Logger.Failing.clear();
  Actions.GetSample();
  SampleFor(3);
  EXPECT_EQ(Newest(), u"Mill 3|Mill 3|315|8|2"_s);
}

// The setup screen's fields are in the program's settings whether they were programmed or not.
TEST_F(ArchivedSessions, WhatTheSetupScreenLeftBehindIsNoLoggers) {
  Meet("Pond 7", "mg/L", kReadsOfAConnection);
  SetupScreen = [this] {
    Settings.LoggerName = u"Elsewhere"_s;
    Logger.Failing = {kRead};
  };
  Actions.Setup();
  SampleFor(3);
  EXPECT_EQ(Newest(), u"Pond 7|-|-|8|2"_s);
  archive_.Note({.Kind = EventKind::Cleared});
  Loop.RunFor(1000);
  EXPECT_EQ(Rows(u"SELECT name FROM event JOIN logger ON logger.id = logger_id"
                 " WHERE kind = 'cleared'"_s),
            QStringList{u"Pond 7"_s});
}

TEST_F(ArchivedSessions, AnImageLendsTheUploadThatFollowsNothing) {
  Meet("Pond 7", "mg/L", kReadsOfAConnection);
  ImportImage();
  Upload();
  ExpectThePondsOwnWords();
  EXPECT_EQ(Rows(u"SELECT name FROM event JOIN logger ON logger.id = logger_id"
                 " WHERE kind = 'uploaded'"_s),
            QStringList{u"Pond 7"_s});
}

TEST_F(ArchivedSessions, AnImageLendsSamplesNothing) {
  Meet("Pond 7", "mg/L", kReadsOfAConnection);
  ImportImage();
  SampleFor(3);
  ExpectThePondsOwnWords();
}

TEST_F(ArchivedSessions, AReadingAfterAnImageIsByTheLoggersOwnChannels) {
  Meet("Pond 7", "mg/L", kReadsOfAConnection);
  Logger.Memory[8 + 37] = 0x81;
  ImportImage();
  Actions.GetSample();
  Upload();
  EXPECT_EQ(Newest(), u"Pond 7|Pond 7|315|8|2"_s);
  EXPECT_EQ(NewestChannels().size(), 2);
  EXPECT_EQ(NewestChannels().value(1).section(u'|', 0, 0), u"a8"_s);
}

TEST_F(ArchivedSessions, HowManyRecordsAreThereNobodyKnowsOfALoggerThatToldNothing) {
  Meet("Pond 7", "mg/L", kReadsOfAConnection);
  EXPECT_EQ(archive_.RecordsNotArchived(), 5);
  Meet("Mill 3", "NTU", 1);
  EXPECT_EQ(archive_.RecordsNotArchived(), std::nullopt);
}

}  // namespace
}  // namespace tessmar::test
