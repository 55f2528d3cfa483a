#include "archive/ExportWork.h"

#include <gtest/gtest.h>

#include "archive/ArchiveRig.h"
#include "archive/UploadsRig.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

/// A well's logger with two uploads that share a record, one with a long upload, and one with none;
/// the first two with a run of live samples.
class ExportWork : public ArchiveFolder {
 protected:
  ExportWork() {
    qputenv("TZ", "UTC");
    Store store(Path());
    store.Open(Store::Access::Write);
    well_ = store.SeeLogger(u"Well 7"_s, 12, 3, Hour(1));
    first_ = AddUpload(store, well_, Hour(13), {10, 12});
    AddUpload(store, well_, Hour(14), {12, 14});
    empty_ = store.SeeLogger(u"Empty"_s, 12, 3, Hour(1));
    long_ = store.SeeLogger(u"Long"_s, 12, 3, Hour(1));
    for (const qint64 logger : {well_, long_}) {
      store.AddUpload({.Uuid = u"live %1"_s.arg(logger),
                       .LoggerId = logger,
                       .Kind = UploadKind::Live,
                       .Started = Hour(15),
                       .State = UploadState::Complete,
                       .Records = 500,
                       .Settings = ImageOf(u"Well 7"_s),
                       .Analog = 1});
    }
    std::vector<int> records;
    for (int i = 0; i < 10000; ++i) records.push_back(i % 3600);
    Transaction transaction(store);
    longUpload_ = AddUpload(store, long_, Hour(14), records);
    transaction.Commit();
  }

  QString File() const { return folder_.filePath(u"a.csv"_s); }
  ExportResult Run(qint64 upload, qint64 logger, ExportKind kind = ExportKind::AnalysisCsv) {
    return RunExport({.ArchivePath = Path(), .Upload = upload, .Logger = logger}, File(),
                     {.Kind = kind, .Locale = locale_, .Saved = Hour(20), .Program = u"test"_s},
                     state_);
  }

  ExportState state_;
  SystemLocale locale_{QLocale(QLocale::English, QLocale::UnitedStates)};
  qint64 well_ = 0, first_ = 0, empty_ = 0, long_ = 0, longUpload_ = 0;
};

TEST_F(ExportWork, AnUploadIsSavedAlone) {
  const ExportResult result = Run(first_, 0);
  EXPECT_FALSE(result.Stopped);
  EXPECT_EQ(result.Records, 2);
  EXPECT_TRUE(state_.Writes);
  EXPECT_EQ(state_.Total, 2);
  EXPECT_EQ(Content(File()),
            "logger_time,corrected_time,Channel 1 (%),disagreement\r\n"
            "2026-03-03T12:00:10,,0.10,0\r\n2026-03-03T12:00:12,,0.12,0\r\n");
}

TEST_F(ExportWork, ASeriesIsSavedWithEachRecordOnceAndWithoutLiveSamples) {
  const ExportResult result = Run(0, well_);
  EXPECT_EQ(result.Records, 3);
  EXPECT_EQ(result.Disagreements, 0);
  EXPECT_EQ(state_.Total, 3);
  EXPECT_EQ(Content(File()).count("\r\n"), 4);
}

TEST_F(ExportWork, NoRecordsAreNoFile) {
  const ExportResult result = Run(0, empty_);
  EXPECT_FALSE(result.Stopped);
  EXPECT_EQ(result.Records, 0);
  EXPECT_FALSE(state_.Writes);
  EXPECT_FALSE(QFile::exists(File()));
}

TEST_F(ExportWork, TellsHowFarItIs) {
  const ExportResult result = Run(longUpload_, 0);
  EXPECT_EQ(result.Records, 10000);
  EXPECT_EQ(state_.Total, 10000);
  EXPECT_GT(state_.Done, 0);
  EXPECT_LE(state_.Done, 10000);
}

TEST_F(ExportWork, StoppedInTheMiddleTheFileIsAsItWas) {
  for (const qint64 upload : {longUpload_, qint64{0}}) {
    for (const ExportKind kind :
         {ExportKind::ViewerCsv, ExportKind::AnalysisCsv, ExportKind::NetCdf}) {
      QFile old(File());
      ASSERT_TRUE(old.open(QIODevice::WriteOnly));
      old.write("yesterday's");
      old.close();
      state_.Stop = true;
      state_.Writes = false;
      EXPECT_TRUE(Run(upload, long_, kind).Stopped);
      EXPECT_EQ(Content(File()), "yesterday's");
      // The reading of a series is stopped, too.
      EXPECT_EQ(state_.Writes, upload != 0);
      EXPECT_EQ(state_.Total, 10000);
    }
  }
}

TEST_F(ExportWork, WithoutAnArchiveNothingIsSaved) {
  EXPECT_THROW(RunExport({.ArchivePath = folder_.filePath(u"none"_s), .Upload = 1}, File(),
                         {.Locale = locale_, .Saved = Hour(20), .Program = u"test"_s}, state_),
               ArchiveFault);
  EXPECT_FALSE(QFile::exists(File()));
}

}  // namespace
}  // namespace tessmar::test
