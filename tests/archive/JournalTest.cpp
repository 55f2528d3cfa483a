#include "archive/Journal.h"

#include <gtest/gtest.h>

#include <QFileInfo>

#include "archive/JournalRig.h"
#include "history/TableRig.h"
#include "settings/config.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

class AJournal : public JournalRig {};

TEST_F(AJournal, BlocksAreInTheFileBeforeHalfASecondHasPassed) {
  journal_->Begin({.Promised = 60});
  Take({24});
  Pass(300);
  EXPECT_EQ(Rows(u"SELECT number, hex(substr(bytes, 1, 5)), length(bytes) FROM block"_s),
            QStringList{u"1|1801000000|241"_s});
  EXPECT_EQ(States(), u"running 0"_s);
  Take({24, 12});
  Pass(300);
  EXPECT_EQ(BlockCount(), 3);
}

TEST_F(AJournal, WithoutATickABlockTakesItselfToTheFile) {
  journal_->Begin({});
  Take({24});
  clock_.Present = clock_.Present.addMSecs(450);
  Take({24});
  EXPECT_EQ(BlockCount(), 2);
}

TEST_F(AJournal, AStartMakesNoFile) {
  Pass(1000);
  EXPECT_FALSE(QFileInfo::exists(Path()));
}

TEST_F(AJournal, WithoutAPathNothingIsKeptOrSaid) {
  journal_.emplace(QString(), Context());
  Upload({24, 1});
  journal_->Note({.Kind = EventKind::Cleared});
  Pass(3000);
  EXPECT_TRUE(journal_->WriteAll());
  EXPECT_EQ(journal_->TakeReport(), QString());
  EXPECT_EQ(journal_->RecordsNotArchived(), std::nullopt);
}

TEST_F(AJournal, AnUploadIsKeptWithAllThatBelongsToIt) {
  clock_.Present = QDateTime(QDate(2026, 3, 3), QTime(12, 0), Qt::UTC);
  journal_->Begin({.Promised = 60});
  Take({24, 24, 12});
  clock_.Present = clock_.Present.addSecs(9);
  journal_->End(UploadEnd::Complete);
  Pass(300);
  EXPECT_EQ(Rows(u"SELECT uuid, name, model, firmware, first_seen, last_seen FROM logger"_s),
            QStringList{u"%1|Pond 7|220|5|2026-03-03T12:00:00Z|2026-03-03T12:00:09Z"_s.arg(
                LoggerUuid(u"Pond 7"_s, 220))});
  EXPECT_EQ(Rows(u"SELECT kind, started, ended, state, promised, records, length(settings), analog,"
                 " pulse, clock_offset_s, source, program FROM upload"_s),
            QStringList{u"history|2026-03-03T12:00:00Z|2026-03-03T12:00:09Z|complete|60|60|315|2|1|"
                        "-12|COM3|2.1.9"_s});
  EXPECT_TRUE(Rows(u"SELECT owner FROM upload"_s).at(0).startsWith(u"pid="_s));
  EXPECT_EQ(BlockCount(), 3);
}

TEST_F(AJournal, RecordsHoldStampTimeWordsAndValues) {
  settings_.Analog[0] = {.Enable = 1,
                         .EngUnits = u"hPa"_s,
                         .DecPlaces = 1,
                         .RawScaleLower = 0,
                         .RawScaleUpper = 1000,
                         .LowerLimit = 0,
                         .UpperLimit = 10};
  settings_.Analog[1].Enable = 0;
  settings_.Pulse[0] = {.Enable = 1, .EngUnits = u"mm"_s, .DecPlaces = 2, .PulseUnit = 0.125};
  journal_->Begin({});
  HistoryUpload::Reply block = Block(1, kWords, 0);
  const std::array<std::uint8_t, 10> record{0xDD, 0xFB, 0xF4, 0x20, 0x2D, 0x01, 0x34, 0x12, 3, 0};
  std::copy(record.begin(), record.end(), block.begin() + 1);
  journal_->TakeBlock(block);
  journal_->End(UploadEnd::Complete);
  Pass(300);
  EXPECT_EQ(Rows(u"SELECT upload_id, number, stamp, logger_time, hex(raw), a1, a2, a3, p1, p2"
                 " FROM record"_s),
            QStringList{u"1|1|552926173|2010-12-26T15:47:29|2D0134120300|3|-|-|0.38|-"_s});
  EXPECT_EQ(Rows(u"SELECT place, name, unit, decimals, method FROM channel"_s),
            (QStringList{u"a1|Channel 1|hPa|1|-"_s, u"p1|Pulse 1|mm|2|-"_s}));
}

TEST_F(AJournal, AStampThatTheCalendarLacksIsCarriedAsTheTableCarriesIt) {
  journal_->Begin({});
  HistoryUpload::Reply block = Block(1, kWords, 0xFFFFFFFF);
  journal_->TakeBlock(block);
  journal_->End(UploadEnd::Complete);
  Pass(300);
  EXPECT_EQ(Rows(u"SELECT stamp, logger_time FROM record"_s),
            QStringList{u"4294967295|2085-05-01T31:63:63"_s});
}

TEST_F(AJournal, ValuesAreThoseOfTheViewersCells) {
  link_.AnalogChannelCount = 8;
  link_.PulseChannelCount = 2;
  LoadDefaultSettings(settings_, 8);
  for (std::size_t i = 0; i < 8; ++i) {
    settings_.Analog[i].DecPlaces = static_cast<std::uint8_t>(i % 7);
    settings_.Analog[i].LowerLimit = -20;
    settings_.Analog[i].UpperLimit = 30;
  }
  settings_.Analog[5].Enable = 0;
  settings_.Do.WaterTempChannel = 1;
  settings_.Do.ConductivityChannel = 5;
  settings_.Do.ConductivityManualEntry = 0;
  settings_.Do.EnableSalinityDisplay = 1;
  settings_.Do.SalinityDisplayChannel = 3;
  settings_.Do.EnableO2SaturationDisplay = 1;
  settings_.Do.O2SaturationDisplayChannel = 2;
  HistoryBuffer buffer;
  journal_->Begin({});
  for (std::uint32_t first = 0; first < 60000; first += 6007) {
    const HistoryUpload::Reply block = Block(10, 10, first);
    journal_->TakeBlock(block);
    for (int k = 0; k < 10; ++k) {
      LiveSample record;
      DecodeRecord(link_, block, 24 * k + 1, 10, record);
      buffer.Append(record);
    }
  }
  journal_->End(UploadEnd::Complete);
  Pass(300);
  const SystemLocale locale = American();
  const HistoryTable table(buffer, settings_, link_, false, locale);
  Store store(Path());
  store.Open(Store::Access::Read);
  int rows = 0;
  int missing = 0;
  store.ForEachRecord(1, [&](const RecordRow& record) {
    for (int i = 1; i < table.ColumnCount(); ++i) {
      const HistoryColumn& column = table.Column(i);
      const int place =
          column.Content == HistoryColumn::Kind::Pulse ? 8 + column.Channel : column.Channel;
      const std::optional<double> value = record.Values[static_cast<std::size_t>(place)];
      const QString text = table.CellText(rows, i);
      if (!value) ++missing;
      ASSERT_EQ(value ? FormatValue(*value, column.Decimals) : u"---"_s, text) << rows << " " << i;
    }
    ++rows;
  });
  EXPECT_EQ(rows, 100);
  // Salinity and what follows from it lack their conductivity.
  EXPECT_GT(missing, 0);
}

TEST_F(AJournal, EveryEndHasItsState) {
  Upload({24, 3});
  Upload({24}, UploadEnd::Cancelled);
  Upload({24, 24}, UploadEnd::BufferFull);
  Upload({}, UploadEnd::Failed);
  EXPECT_EQ(States(), u"complete 27, cancelled 24, full 48, failed 0"_s);
}

TEST_F(AJournal, AnEmptyLastBlockAndAnImpossibleOneAreKeptAndHaveNoRecords) {
  journal_->Begin({});
  Take({24, 0});
  journal_->TakeBlock(Block(25, kWords, 0));
  journal_->End(UploadEnd::Failed);
  Pass(300);
  EXPECT_EQ(States(), u"failed 24"_s);
  EXPECT_EQ(BlockCount(), 3);
}

TEST_F(AJournal, ARecordThatTheBlockCutsOffHasNoTime) {
  link_.AnalogChannelCount = 8;
  link_.PulseChannelCount = 1;
  journal_->Begin({});
  journal_->TakeBlock(Block(11, 9, 1));
  journal_->End(UploadEnd::Complete);
  Pass(300);
  EXPECT_EQ(Rows(u"SELECT stamp, logger_time FROM record WHERE number >= 10"_s),
            (QStringList{u"10|2000-01-00T00:00:10"_s.replace(u"2000-01-00"_s, u"1999-12-31"_s),
                         u"-|-"_s}));
}

TEST_F(AJournal, AnUploadAskedForAnewLeavesWhatCameBefore) {
  journal_->Begin({.Promised = 60});
  journal_->BeginAnew();
  Take({24, 24});
  journal_->BeginAnew();
  next_ = 1;
  Take({24, 24, 12});
  journal_->End(UploadEnd::Complete);
  Pass(300);
  EXPECT_EQ(States(), u"failed 48, complete 60"_s);
  EXPECT_EQ(Rows(u"SELECT promised FROM upload"_s), (QStringList{u"60"_s, u"60"_s}));
}

TEST_F(AJournal, ABeginningWithoutAnEndIsAFailure) {
  journal_->Begin({});
  Take({24});
  Upload({24, 1});
  EXPECT_EQ(States(), u"failed 24, complete 25"_s);
}

TEST_F(AJournal, AnImageGoesToTheLoggerOfItsName) {
  Upload({24, 1});
  journal_->Begin({.Kind = UploadKind::Image, .Source = u"/data/pond.bin"_s});
  Take({20});
  journal_->End(UploadEnd::Complete);
  Pass(300);
  EXPECT_EQ(Rows(u"SELECT kind, logger_id, source, clock_offset_s FROM upload"_s),
            (QStringList{u"history|1|COM3|-12"_s, u"image|1|/data/pond.bin|-"_s}));
}

TEST_F(AJournal, AnImageWithoutRecordsIsNoUpload) {
  journal_->Begin({.Kind = UploadKind::Image, .Source = u"/data/pond.bin"_s});
  journal_->End(UploadEnd::Failed);
  Pass(300);
  EXPECT_FALSE(QFileInfo::exists(Path()));
}

TEST_F(AJournal, LiveSamplesAreBlocksOfOne) {
  journal_->Begin({.Kind = UploadKind::Live});
  for (std::uint8_t i = 1; i <= 3; ++i)
    journal_->TakeBlock(std::array<std::uint8_t, 11>{1, 1, 0, 2, 0, i, 0, 2, 0, 3, 0});
  journal_->End(UploadEnd::Complete);
  Pass(300);
  EXPECT_EQ(States(), u"complete 3"_s);
  EXPECT_EQ(Rows(u"SELECT hex(raw) FROM record"_s),
            (QStringList{u"010002000300"_s, u"020002000300"_s, u"030002000300"_s}));
}

TEST_F(AJournal, ALongRunOfSamplingIsCutIntoDays) {
  journal_->Begin({.Kind = UploadKind::Live});
  for (int i = 0; i < 86401; ++i)
    journal_->TakeBlock(std::array<std::uint8_t, 11>{1, 1, 0, 2, 0, 1, 0, 2, 0, 3, 0});
  journal_->End(UploadEnd::Complete);
  EXPECT_TRUE(journal_->WriteAll());
  EXPECT_EQ(States(), u"complete 86400, complete 1"_s);
}

TEST_F(AJournal, AnUploadIsNotedInTheLogbook) {
  Upload({24, 1});
  Upload({});
  const QStringList events = Rows(u"SELECT kind, text, after FROM event"_s);
  ASSERT_EQ(events.size(), 1);
  EXPECT_TRUE(events[0].startsWith(u"uploaded|25 records, complete|{\"records\":25,"_s));
}

TEST_F(AJournal, WhatIsNotedIsInTheFileWithTimeAndLogger) {
  clock_.Present = QDateTime(QDate(2026, 3, 3), QTime(12, 0), Qt::UTC);
  journal_->Note({.Kind = EventKind::Cleared, .Text = u"1240 records"_s, .After = "{}"});
  Pass(300);
  EXPECT_EQ(Rows(u"SELECT at, kind, event.text, before, after, logger.name FROM event JOIN logger"
                 " ON logger.id = logger_id"_s),
            QStringList{u"2026-03-03T12:00:00Z|cleared|1240 records|-|{}|Pond 7"_s});
}

TEST_F(AJournal, FinishEndsWhatRunsAndWritesEverything) {
  journal_->Begin({});
  Take({24});
  journal_->Finish();
  EXPECT_EQ(States(), u"cancelled 24"_s);
  EXPECT_EQ(Rows(u"SELECT count(*) FROM record"_s), QStringList{u"24"_s});
}

TEST_F(AJournal, TheNextStartFillsTheRecordsOfAKilledUpload) {
  journal_->Begin({.Promised = 60});
  Take({24, 24});
  Pass(300);
  KillAndStart();
  Pass(300);
  EXPECT_EQ(States(), u"interrupted 48"_s);
  EXPECT_EQ(Rows(u"SELECT count(*), min(number), max(number) FROM record"_s),
            QStringList{u"48|1|48"_s});
  EXPECT_EQ(Rows(u"SELECT count(*) FROM channel"_s), QStringList{u"3"_s});
  EXPECT_EQ(Rows(u"SELECT ended FROM upload"_s), QStringList{u"-"_s});
}

// It has been found here, and waits for the end of the upload that runs.
TEST_F(AJournal, AKilledUploadThatAnotherProgramHasLookedAfterIsNotFilledAgain) {
  journal_->Begin({.Promised = 60});
  Take({24, 24});
  Pass(300);
  KillAndStart();
  journal_->Begin({});
  Pass(100);
  {
    Journal other(Path(), Context());
    clock_.Present = clock_.Present.addSecs(1);
    while (other.Tick()) continue;
  }
  EXPECT_EQ(States(), u"interrupted 48"_s);
  OtherProgram file(Path());
  ASSERT_TRUE(file.Do(u"DELETE FROM record WHERE number > 40"_s));
  Take({7});
  journal_->End(UploadEnd::Complete);
  Pass(600);
  EXPECT_EQ(States(), u"interrupted 48, complete 7"_s);
  EXPECT_EQ(Rows(u"SELECT count(*) FROM record GROUP BY upload_id"_s),
            (QStringList{u"40"_s, u"7"_s}));
}

TEST_F(AJournal, AnUploadOfAnotherRunningProcessIsLeftAlone) {
  journal_->Begin({});
  Take({24});
  Pass(300);
  Journal other(Path(), Context());
  clock_.Present = clock_.Present.addSecs(1);
  while (other.Tick()) continue;
  EXPECT_EQ(States(), u"running 0"_s);
  Take({1});
  journal_->End(UploadEnd::Complete);
  Pass(300);
  EXPECT_EQ(States(), u"complete 25"_s);
}

TEST_F(AJournal, TwoProgramsUploadSideBySide) {
  Journal other(Path(), Context());
  journal_->Begin({});
  other.Begin({});
  Take({24});
  other.TakeBlock(Block(24, kWords, 1));
  Pass(200);
  other.Tick();
  journal_->End(UploadEnd::Complete);
  other.End(UploadEnd::Cancelled);
  Pass(300);
  other.Finish();
  EXPECT_EQ(States(), u"complete 24, cancelled 24"_s);
}

TEST_F(AJournal, ANewUploadWaitsForNoRecordsOfTheOneBefore) {
  journal_->Begin({});
  Take({24, 24});
  journal_->End(UploadEnd::Complete);
  journal_->Begin({});
  Take({24});
  Pass(300);
  EXPECT_EQ(BlockCount(), 3);
  EXPECT_EQ(States(), u"running 0, running 0"_s);
  journal_->End(UploadEnd::Complete);
  Pass(300);
  EXPECT_EQ(States(), u"complete 48, complete 24"_s);
}

TEST_F(AJournal, TellsWhereTheLastUploadIs) {
  journal_->Begin({});
  Take({24, 3});
  EXPECT_EQ(TheJournal().LastUpload().NotKept, 27);
  journal_->End(UploadEnd::Complete);
  Pass(300);
  const JournalUpload last = journal_->LastUpload();
  EXPECT_EQ(last.Id, 1);
  EXPECT_EQ(Rows(u"SELECT uuid FROM upload"_s), QStringList{last.Uuid});
  EXPECT_EQ(last.Records, 27);
  EXPECT_EQ(last.NotKept, 0);
}

TEST_F(AJournal, KnowsHowManyRecordsAreNotInTheArchive) {
  link_.RecordCount = 60;
  EXPECT_EQ(journal_->RecordsNotArchived(), 60);
  Upload({24, 24, 12});
  EXPECT_EQ(journal_->RecordsNotArchived(), 0);
  link_.RecordCount = 100;
  EXPECT_EQ(journal_->RecordsNotArchived(), 40);
  // A shorter upload takes nothing back; fewer records than that are others.
  Upload({24}, UploadEnd::Cancelled);
  EXPECT_EQ(journal_->RecordsNotArchived(), 40);
  link_.RecordCount = 5;
  EXPECT_EQ(journal_->RecordsNotArchived(), 5);
}

TEST_F(AJournal, ACancelledUploadCountsAsFarAsItCame) {
  link_.RecordCount = 60;
  journal_->Begin({});
  Take({24});
  Pass(400);
  EXPECT_EQ(journal_->RecordsNotArchived(), 36);
}

TEST_F(AJournal, NothingIsArchivedOfAMemoryThatWasClearedSince) {
  link_.RecordCount = 60;
  Upload({24, 24, 12});
  clock_.Present = clock_.Present.addSecs(60);
  journal_->Note({.Kind = EventKind::Cleared});
  Pass(300);
  link_.RecordCount = 61;
  EXPECT_EQ(journal_->RecordsNotArchived(), 61);
}

TEST_F(AJournal, OfAnOverwrittenMemoryNobodyKnows) {
  settings_.DataWrapAroundFlag = 1;
  link_.RecordCount = 4088 * 24;
  EXPECT_EQ(journal_->RecordsNotArchived(), std::nullopt);
  link_.RecordCount = 4088 * 24 - 1;
  EXPECT_EQ(journal_->RecordsNotArchived(), 4088 * 24 - 1);
}

}  // namespace
}  // namespace tessmar::test
