// The archive's window over ten thousand uploads, from its making to its first paint, and what a
// word typed into its filter and a sorting cost.

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTableView>
#include <QTemporaryDir>
#include <QUuid>
#include <cstdio>
#include <memory>

#include "archive/frmArchive.h"
#include "bench/Figures.h"
#include "support/FakeOutside.h"

namespace tessmar::bench {
namespace {

using namespace Qt::StringLiterals;

constexpr int kUploads = 10000;
constexpr int kEvents = 2000;
constexpr int kLoggers = 40;
constexpr int kRounds = 9;

void Fill(const QString& path) {
  Store store(path);
  store.Open(Store::Access::Write);
  Transaction transaction(store);
  const QDateTime first(QDate(2020, 1, 1), QTime(0, 0), Qt::UTC);
  const auto uuid = [] { return QUuid::createUuid().toString(QUuid::WithoutBraces); };
  std::vector<qint64> loggers;
  for (int i = 0; i < kLoggers; ++i)
    loggers.push_back(store.SeeLogger(u"Well %1"_s.arg(i), 12, 3, first));
  for (int i = 0; i < kUploads; ++i) {
    store.AddUpload({.Uuid = uuid(),
                     .LoggerId = loggers[static_cast<std::size_t>(i % kLoggers)],
                     .Started = first.addSecs(i * 18000),
                     .Ended = first.addSecs(i * 18000 + 60),
                     .State = UploadState::Complete,
                     .Promised = 900,
                     .Records = 900 + i,
                     .Settings = QByteArray(315, 's'),
                     .Analog = 8,
                     .Pulse = 2,
                     .ClockOffsetS = i % 100,
                     .Program = u"bench"_s});
  }
  for (int i = 0; i < kEvents; ++i) {
    store.AddEvent({.Uuid = uuid(),
                    .LoggerId = loggers[static_cast<std::size_t>(i % kLoggers)],
                    .At = first.addSecs(i * 90000),
                    .Entry = {.Kind = EventKind::Connected}});
  }
  transaction.Commit();
}

class Rig {
 public:
  explicit Rig(const QString& path) : path_(path) {}

  // Seconds until the window has painted itself.
  double Open() {
    QElapsedTimer timer;
    timer.start();
    window_ = std::make_unique<frmArchive>(ArchiveParts{.Path = path_,
                                                        .Screen = screen_,
                                                        .Message = messages_,
                                                        .Dialogs = dialogs_,
                                                        .Time = clock_,
                                                        .Locale = locale_,
                                                        .CsvDateTimeSingleColumn = option_,
                                                        .AppPath = u"/"_s,
                                                        .Program = {},
                                                        .Ending = [] { return false; },
                                                        .AskText = {},
                                                        .AskChoice = {},
                                                        .ShowViewer = {}});
    window_->show();
    QApplication::processEvents();
    window_->repaint();
    return static_cast<double>(timer.nsecsElapsed()) * 1e-9;
  }
  double Find(const QString& text) {
    QElapsedTimer timer;
    timer.start();
    window_->findChild<QLineEdit*>(u"txtFilter"_s)->setText(text);
    window_->repaint();
    return static_cast<double>(timer.nsecsElapsed()) * 1e-9;
  }
  double Sort(int column) {
    QElapsedTimer timer;
    timer.start();
    window_->findChild<QTableView*>(u"tblUploads"_s)->sortByColumn(column, Qt::AscendingOrder);
    window_->repaint();
    return static_cast<double>(timer.nsecsElapsed()) * 1e-9;
  }

 private:
  QString path_;
  test::FakeMainScreen screen_;
  test::FakeMessages messages_;
  test::FakeFileDialogs dialogs_;
  test::FakeClock clock_;
  SystemLocale locale_;
  QString option_;
  std::unique_ptr<frmArchive> window_;
};

void MeasureAll() {
  const QTemporaryDir folder;
  const QString path = folder.filePath(u"archive.sqlite"_s);
  Fill(path);
  Rig rig(path);
  std::vector<double> open;
  std::vector<double> find;
  std::vector<double> sort;
  for (int round = 0; round < kRounds; ++round) {
    open.push_back(rig.Open());
    find.push_back(rig.Find(u"well 17"_s));
    rig.Find({});
    sort.push_back(rig.Sort(UploadsModel::LoggerName));
  }
  Print({.What = u"archive of 10000 uploads, open its window"_s,
         .Result = Median(open),
         .Unit = u"s"_s,
         .Limit = 0.2});
  Print({.What = u"  find a word in it"_s, .Result = Median(find), .Unit = u"s"_s, .Limit = 0.2});
  Print({.What = u"  sort it by logger"_s, .Result = Median(sort), .Unit = u"s"_s, .Limit = 0.2});
}

}  // namespace
}  // namespace tessmar::bench

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  tessmar::bench::MeasureAll();
}
