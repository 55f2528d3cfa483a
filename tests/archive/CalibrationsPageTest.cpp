#include "archive/CalibrationsPage.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QFile>
#include <QHeaderView>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>

#include "archive/UploadsRig.h"
#include "base/TextTable.h"
#include "support/FakeOutside.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

/// The settings of UploadsRig, in % from 0 at 0, with another end of the scale.
QByteArray ImageUpTo(double upper) {
  LinkState link;
  link.AnalogChannelCount = 8;
  link.PulseChannelCount = 2;
  const QByteArray usual = ImageOf(u"Well 7"_s);
  LoggerSettings settings;
  UnpackConfigImage(link, ConfigImage(usual.begin(), usual.end()), settings);
  settings.Analog[0].UpperLimit = upper;
  ConfigImage image;
  EXPECT_TRUE(PackConfigImage(link, settings, image));
  return {reinterpret_cast<const char*>(image.data()), static_cast<qsizetype>(image.size())};
}

EventRow Calibrated(int hour, qint64 logger, double upper) {
  return {.LoggerId = logger,
          .At = Hour(hour),
          .Entry = {.Kind = EventKind::Calibrated,
                    .Text = u"Channel 1 (%): "_s,
                    .Before = ImageUpTo(100),
                    .After = ImageUpTo(upper)}};
}

class ACalibrationsPage : public testing::Test {
 protected:
  ACalibrationsPage() { qputenv("TZ", "UTC"); }
  void TearDown() override { SetTextLanguage(kLanguageEnglish); }

  void Show() {
    page_.Show({Calibrated(10, 1, 80), Calibrated(8, 2, 125), Calibrated(4, 1, 100)},
               {{1, u"Well 7"_s}, {2, u"Pond"_s}});
  }
  QStringList Rows() const {
    QStringList rows;
    const QAbstractItemModel& model = *page_.Table()->model();
    for (int row = 0; row < model.rowCount(); ++row) {
      QStringList cells;
      for (int column = 0; column < model.columnCount(); ++column)
        cells.append(model.index(row, column).data().toString());
      rows.append(cells.join(u'|'));
    }
    return rows;
  }
  QByteArray Content(const QString& path) const {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  QTemporaryDir folder_;
  FakeMessages messages_;
  FakeFileDialogs dialogs_;
  SystemLocale locale_{QLocale(QLocale::English, QLocale::UnitedStates)};
  QString saved_;
  CalibrationsPage page_{{.Locale = locale_,
                          .Dialogs = dialogs_,
                          .Message = messages_,
                          .AppPath = folder_.path(),
                          .Saved = [this](const QString& path) { saved_ = path; }}};
};

TEST_F(ACalibrationsPage, ShowsTheNewestFirst) {
  const QAbstractItemModelTester tester(page_.Table()->model());
  Show();
  EXPECT_EQ(
      Rows(),
      (QStringList{u"3/3/2026 10:00:00 AM|Well 7|1 (%)|0 at 0|0.0000|80 at 10000|+20.0000|0.2"_s,
                   u"3/3/2026 8:00:00 AM|Pond|1 (%)|0 at 0|0.0000|125 at 10000|-25.0000|"_s,
                   u"3/3/2026 4:00:00 AM|Well 7|1 (%)|0 at 0|0.0000|100 at 10000|0.0000|"_s}));
}

TEST_F(ACalibrationsPage, SortsByItsHeadingsAndByWhatNumbersAreWorth) {
  Show();
  const auto sort = [this](int column, Qt::SortOrder order) {
    page_.Table()->sortByColumn(column, order);
    return Rows();
  };
  const QStringList byTime = sort(CalibrationsModel::At, Qt::AscendingOrder);
  EXPECT_TRUE(byTime[0].startsWith(u"3/3/2026 4:"_s));
  EXPECT_TRUE(byTime[2].startsWith(u"3/3/2026 10:"_s));
  const QStringList byDrift = sort(CalibrationsModel::HighDrift, Qt::AscendingOrder);
  EXPECT_TRUE(byDrift[0].contains(u"-25.0000"_s));
  EXPECT_TRUE(byDrift[2].contains(u"+20.0000"_s));
  EXPECT_TRUE(sort(CalibrationsModel::HighPoint, Qt::DescendingOrder)[0].contains(u"125 at"_s));
  EXPECT_TRUE(sort(CalibrationsModel::LoggerName, Qt::AscendingOrder)[0].contains(u"Pond"_s));
  EXPECT_TRUE(sort(CalibrationsModel::DaysSince, Qt::DescendingOrder)[0].endsWith(u"|0.2"_s));
}

TEST_F(ACalibrationsPage, WritesWhatItShowsAsItIsSorted) {
  Show();
  page_.SetFilter(u"well"_s, {}, {});
  page_.Table()->sortByColumn(CalibrationsModel::At, Qt::AscendingOrder);
  const QString path = folder_.filePath(u"c.csv"_s);
  dialogs_.Answers = {path};
  page_.ExportButton()->click();
  EXPECT_EQ(Content(path),
            "time,logger,channel,unit,low_point,low_raw,low_before,low_drift,"
            "high_point,high_raw,high_before,high_drift,days_since\r\n"
            "2026-03-03T04:00:00Z,Well 7,1,%,0,0,0,0,100,10000,100,0,\r\n"
            "2026-03-03T10:00:00Z,Well 7,1,%,0,0,0,0,80,10000,100,20,0.25\r\n");
  EXPECT_EQ(saved_, path);
}

TEST_F(ACalibrationsPage, AFileThatCannotBeWrittenIsToldAndStaysAsItWas) {
  Show();
  const QString path = folder_.filePath(u"gone/c.csv"_s);
  dialogs_.Answers = {path};
  page_.ExportButton()->click();
  ASSERT_EQ(messages_.All.size(), 1U);
  EXPECT_TRUE(messages_.All[0].Prompt.contains(folder_.filePath(u"gone"_s)));
  EXPECT_EQ(saved_, QString());
  dialogs_.Answers = {std::nullopt};
  page_.ExportButton()->click();
  EXPECT_EQ(messages_.All.size(), 1U);
}

TEST_F(ACalibrationsPage, OffersNoFileOfNothing) {
  EXPECT_FALSE(page_.ExportButton()->isEnabled());
  Show();
  EXPECT_TRUE(page_.ExportButton()->isEnabled());
  page_.SetFilter(u"nowhere"_s, {}, {});
  EXPECT_FALSE(page_.ExportButton()->isEnabled());
  page_.SetFilter({}, QDate(2026, 3, 4), {});
  EXPECT_FALSE(page_.ExportButton()->isEnabled());
}

TEST_F(ACalibrationsPage, SpeaksGerman) {
  SetTextLanguage(kLanguageGerman);
  CalibrationsPage page({.Locale = locale_,
                         .Dialogs = dialogs_,
                         .Message = messages_,
                         .AppPath = {},
                         .Saved = [](const QString&) {}});
  page.Show({Calibrated(10, 1, 80)}, {{1, u"Well 7"_s}});
  const QAbstractItemModel& model = *page.Table()->model();
  EXPECT_EQ(model.headerData(CalibrationsModel::HighDrift, Qt::Horizontal).toString(),
            u"Drift dort"_s);
  EXPECT_EQ(model.index(0, CalibrationsModel::HighPoint).data().toString(), u"80 bei 10000"_s);
  EXPECT_EQ(page.Table()->accessibleName(), u"Kalibrierungen"_s);
  EXPECT_EQ(page.ExportButton()->text(), u"Kalibrierun&gen exportieren..."_s);
}

}  // namespace
}  // namespace tessmar::test
