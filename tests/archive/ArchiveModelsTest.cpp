#include "archive/ArchiveModels.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QLocale>

#include "archive/CalibrationsModel.h"
#include "archive/UploadsRig.h"
#include "archive/WindowTexts.h"
#include "base/TextTable.h"
#include "support/ToolkitWarnings.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;
using Tester = QAbstractItemModelTester;

class ArchiveModels : public testing::Test {
 protected:
  ArchiveModels() {
    qputenv("TZ", "UTC");
    SetTextLanguage(kLanguageEnglish);
  }
  void TearDown() override { SetTextLanguage(kLanguageEnglish); }

  std::vector<UploadRow> Uploads() const {
    return {{.Id = 3,
             .LoggerId = 1,
             .Started = Hour(12),
             .State = UploadState::Complete,
             .Records = 900,
             .ClockOffsetS = 12},
            {.Id = 2,
             .LoggerId = 2,
             .Kind = UploadKind::Image,
             .Started = Hour(11),
             .State = UploadState::Interrupted,
             .Records = 1000,
             .Source = u"pond.bin"_s},
            {.Id = 1,
             .LoggerId = 1,
             .Kind = UploadKind::Live,
             .Started = Hour(10),
             .State = UploadState::Running,
             .Records = 20,
             .ClockOffsetS = -200}};
  }
  LoggerNames Names() const { return {{1, u"Well 7"_s}, {2, QString()}}; }

  static QStringList Row(const QAbstractItemModel& model, int row) {
    QStringList texts;
    for (int column = 0; column < model.columnCount(); ++column)
      texts.append(model.index(row, column).data().toString());
    return texts;
  }
  static QStringList Column(const QAbstractItemModel& model, int column) {
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
      texts.append(model.index(row, column).data().toString());
    return texts;
  }

  SystemLocale locale_{QLocale(QLocale::English, QLocale::UnitedStates)};
};

// The key for copying asks an empty list so.
TEST_F(ArchiveModels, HaveNothingForNoCellAndSayNothingOfIt) {
  const LoggersModel loggers;
  const UploadsModel uploads(locale_);
  const LogbookModel logbook(locale_);
  const CalibrationsModel calibrations(locale_);
  const ToolkitWarnings warnings;
  for (const QAbstractItemModel* model : std::initializer_list<const QAbstractItemModel*>{
           &loggers, &uploads, &logbook, &calibrations})
    EXPECT_FALSE(model->data(QModelIndex()).isValid());
  EXPECT_EQ(ToolkitWarnings::Said(), QStringList());
}

TEST_F(ArchiveModels, LoggersStandBetweenAllAndTheBin) {
  LoggersModel model;
  const Tester tester(&model, Tester::FailureReportingMode::Fatal);
  EXPECT_EQ(Column(model, 0), QStringList{u"All loggers"_s});
  model.Set({{.Id = 4, .Name = u"Well 7"_s}, {.Id = 5}}, 0);
  EXPECT_EQ(Column(model, 0), (QStringList{u"All loggers"_s, u"Well 7"_s, u"(without a name)"_s}));
  model.Set({{.Id = 4, .Name = u"Well 7"_s}}, 3);
  EXPECT_EQ(Column(model, 0), (QStringList{u"All loggers"_s, u"Well 7"_s, u"Bin (3)"_s}));
  EXPECT_EQ(model.KindOf(2), LoggersModel::Kind::Bin);
  EXPECT_EQ(model.Logger(1).Id, 4);
  EXPECT_EQ(model.RowOf(4), 1);
  EXPECT_EQ(model.RowOf(9), std::nullopt);
  EXPECT_THROW(model.Logger(2), RangeFault);
}

TEST_F(ArchiveModels, UploadsAreTold) {
  UploadsModel model(locale_);
  const Tester tester(&model, Tester::FailureReportingMode::Fatal);
  model.Set(Uploads(), Names());
  EXPECT_EQ(Row(model, 0), (QStringList{u"3/3/2026 12:00:00 PM"_s, u"Well 7"_s, u"history"_s,
                                        u"complete"_s, u"900"_s, u"12 s fast"_s, u""_s}));
  EXPECT_EQ(Row(model, 1),
            (QStringList{u"3/3/2026 11:00:00 AM"_s, u"(without a name)"_s, u"image file"_s,
                         u"interrupted"_s, u"1000"_s, u""_s, u"pond.bin"_s}));
  EXPECT_EQ(model.headerData(4, Qt::Horizontal, Qt::DisplayRole).toString(), u"Records"_s);
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(Row(model, 2).mid(2, 4),
            (QStringList{u"live"_s, u"läuft"_s, u"20"_s, u"3 min nach"_s}));
  model.Set({}, {});
  EXPECT_EQ(model.rowCount(), 0);
}

TEST_F(ArchiveModels, TheLogbookIsTold) {
  LogbookModel model(locale_);
  const Tester tester(&model, Tester::FailureReportingMode::Fatal);
  model.Set({{.Id = 1,
              .LoggerId = 1,
              .At = Hour(9),
              .Entry = {.Kind = EventKind::Synced, .Text = u"12 s fast"_s}}},
            Names());
  EXPECT_EQ(Row(model, 0),
            (QStringList{u"3/3/2026 9:00:00 AM"_s, u"Well 7"_s, u"clock set"_s, u"12 s fast"_s}));
  EXPECT_EQ(model.headerData(2, Qt::Horizontal, Qt::DisplayRole).toString(), u"Event"_s);

  SetTextLanguage(kLanguageGerman);
  model.Set({{.Id = 1,
              .LoggerId = 1,
              .At = Hour(9),
              .Entry = {.Kind = EventKind::Uploaded, .Text = u"7 records, failed"_s}}},
            Names());
  EXPECT_EQ(Row(model, 0).mid(2), (QStringList{u"abgerufen"_s, u"7 Datensätze, gescheitert"_s}));
}

TEST_F(ArchiveModels, EveryKindHasItsNameInBothLanguages) {
  for (const auto language : {kLanguageEnglish, kLanguageGerman}) {
    SetTextLanguage(language);
    QStringList names;
    for (int kind = 0; kind <= static_cast<int>(EventKind::Split); ++kind)
      names.append(ShownName(static_cast<EventKind>(kind)));
    for (int state = 0; state <= static_cast<int>(UploadState::Interrupted); ++state)
      names.append(ShownName(static_cast<UploadState>(state)));
    EXPECT_EQ(names.removeDuplicates(), 0);
    EXPECT_FALSE(names.contains(QString()));
  }
}

TEST_F(ArchiveModels, ClocksAreToldInWhatIsReadable) {
  EXPECT_EQ(ShownClockOffset(std::nullopt), u""_s);
  EXPECT_EQ(ShownClockOffset(0), u"right"_s);
  EXPECT_EQ(ShownClockOffset(119), u"119 s fast"_s);
  EXPECT_EQ(ShownClockOffset(-120), u"2 min slow"_s);
  EXPECT_EQ(ShownClockOffset(7200), u"2 h fast"_s);
  EXPECT_EQ(ShownClockOffset(-172800), u"2 days slow"_s);
}

TEST_F(ArchiveModels, SortByWhatTheCellsMean) {
  UploadsModel model(locale_);
  model.Set(Uploads(), Names());
  ArchiveFilter filter;
  const Tester tester(&filter, Tester::FailureReportingMode::Fatal);
  filter.setSourceModel(&model);
  filter.sort(UploadsModel::Records);
  EXPECT_EQ(Column(filter, UploadsModel::Records), (QStringList{u"20"_s, u"900"_s, u"1000"_s}));
  filter.sort(UploadsModel::Started);
  EXPECT_EQ(Column(filter, UploadsModel::Records), (QStringList{u"20"_s, u"1000"_s, u"900"_s}));
  filter.sort(UploadsModel::Clock, Qt::DescendingOrder);
  EXPECT_EQ(Column(filter, UploadsModel::Clock).first(), u"12 s fast"_s);
  filter.sort(-1);
  EXPECT_EQ(Column(filter, UploadsModel::Records), (QStringList{u"900"_s, u"1000"_s, u"20"_s}));
}

TEST_F(ArchiveModels, SortTextsAsTheyRead) {
  UploadsModel model(locale_);
  std::vector<UploadRow> uploads = Uploads();
  uploads[0].Source = u"b.bin"_s;
  uploads[1].Source = u"a.bin"_s;
  uploads[2].Source = u"c.bin"_s;
  model.Set(uploads, Names());
  ArchiveFilter filter;
  filter.setSourceModel(&model);
  filter.sort(UploadsModel::Source);
  EXPECT_EQ(Column(filter, UploadsModel::Source),
            (QStringList{u"a.bin"_s, u"b.bin"_s, u"c.bin"_s}));

  LogbookModel logbook(locale_);
  logbook.Set({{.LoggerId = 1, .At = Hour(9), .Entry = {.Text = u"b"_s}},
               {.LoggerId = 1, .At = Hour(11), .Entry = {.Text = u"a"_s}},
               {.LoggerId = 1, .At = Hour(10), .Entry = {.Text = u"c"_s}}},
              Names());
  filter.setSourceModel(&logbook);
  filter.sort(LogbookModel::Details);
  EXPECT_EQ(Column(filter, LogbookModel::Details), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
  filter.sort(LogbookModel::At);
  EXPECT_EQ(Column(filter, LogbookModel::Details), (QStringList{u"b"_s, u"c"_s, u"a"_s}));
}

TEST_F(ArchiveModels, NumbersStandAtTheRightAndCellsHaveTheirTextAsTip) {
  UploadsModel uploads(locale_);
  uploads.Set(Uploads(), Names());
  const auto at = [](const QAbstractItemModel& model, int column, int role) {
    return model.data(model.index(0, column), role);
  };
  EXPECT_EQ(at(uploads, UploadsModel::Records, Qt::TextAlignmentRole).toInt(), 0x82);
  EXPECT_FALSE(at(uploads, UploadsModel::State, Qt::TextAlignmentRole).isValid());
  EXPECT_EQ(at(uploads, UploadsModel::State, Qt::ToolTipRole).toString(), u"complete"_s);
  EXPECT_EQ(at(uploads, UploadsModel::State, kTimeRole).toDateTime(), Hour(12));
  LogbookModel logbook(locale_);
  logbook.Set({{.LoggerId = 3, .At = Hour(9), .Entry = {.Text = u"b"_s}}}, Names());
  EXPECT_EQ(at(logbook, LogbookModel::LoggerName, Qt::ToolTipRole).toString(),
            u"(without a name)"_s);
  EXPECT_EQ(at(logbook, LogbookModel::Details, kTimeRole).toDateTime(), Hour(9));
  EXPECT_FALSE(at(logbook, LogbookModel::Details, Qt::DecorationRole).isValid());
  LoggersModel loggers;
  loggers.Set({{.Id = 4, .Name = u"Well 7"_s}}, 0);
  EXPECT_EQ(loggers.data(loggers.index(1), Qt::ToolTipRole).toString(), u"Well 7"_s);
  EXPECT_FALSE(loggers.data(loggers.index(1), Qt::DecorationRole).isValid());
  EXPECT_EQ(loggers.KindOf(0), LoggersModel::Kind::All);
  EXPECT_EQ(loggers.KindOf(1), LoggersModel::Kind::Logger);
}

TEST_F(ArchiveModels, HaveHeadingsAcrossAndNowhereElse) {
  const UploadsModel uploads(locale_);
  const LogbookModel logbook(locale_);
  const auto heads = [](const QAbstractItemModel& model) {
    QStringList texts;
    for (int column = 0; column < model.columnCount(); ++column)
      texts.append(model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
    return texts.join(u'|');
  };
  EXPECT_EQ(heads(uploads), u"Begun|Logger|Kind|State|Records|Clock|From"_s);
  EXPECT_EQ(heads(logbook), u"Time|Logger|Event|Details"_s);
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(heads(uploads), u"Begonnen|Logger|Art|Zustand|Datensätze|Uhr|Aus"_s);
  EXPECT_EQ(heads(logbook), u"Zeit|Logger|Ereignis|Einzelheiten"_s);
  for (const int section : {-1, 7})
    EXPECT_FALSE(uploads.headerData(section, Qt::Horizontal, Qt::DisplayRole).isValid());
  EXPECT_FALSE(uploads.headerData(0, Qt::Vertical, Qt::DisplayRole).isValid());
  EXPECT_FALSE(uploads.headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
}

TEST_F(ArchiveModels, AMomentThatIsNotKnownHasNoText) {
  EXPECT_EQ(LocalTimeText(QDateTime(), locale_), QString());
}

TEST_F(ArchiveModels, FilterByWordsAndDays) {
  UploadsModel model(locale_);
  std::vector<UploadRow> uploads = Uploads();
  uploads[2].Started = uploads[2].Started.addDays(-2);
  model.Set(uploads, Names());
  ArchiveFilter filter;
  const Tester tester(&filter, Tester::FailureReportingMode::Fatal);
  filter.setSourceModel(&model);
  filter.Set(u"WELL complete"_s, {}, {});
  EXPECT_EQ(Column(filter, UploadsModel::Records), QStringList{u"900"_s});
  filter.Set(u"pond"_s, {}, {});
  EXPECT_EQ(Column(filter, UploadsModel::Records), QStringList{u"1000"_s});
  filter.Set(u"nowhere"_s, {}, {});
  EXPECT_EQ(filter.rowCount(), 0);
  filter.Set({}, QDate(2026, 3, 3), {});
  EXPECT_EQ(filter.rowCount(), 2);
  filter.Set({}, {}, QDate(2026, 3, 2));
  EXPECT_EQ(Column(filter, UploadsModel::Records), QStringList{u"20"_s});
  filter.Set({}, QDate(2026, 3, 1), QDate(2026, 3, 3));
  EXPECT_EQ(filter.rowCount(), 3);
}

TEST_F(ArchiveModels, TheFilterForgetsWhatTheRowsWere) {
  UploadsModel model(locale_);
  model.Set(Uploads(), Names());
  ArchiveFilter filter;
  filter.setSourceModel(&model);
  filter.Set(u"pond"_s, {}, {});
  EXPECT_EQ(filter.rowCount(), 1);
  std::vector<UploadRow> uploads = Uploads();
  for (UploadRow& upload : uploads) upload.Source = u"pond.bin"_s;
  model.Set(uploads, Names());
  EXPECT_EQ(filter.rowCount(), 3);
}

}  // namespace
}  // namespace tessmar::test
