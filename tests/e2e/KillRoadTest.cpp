#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTableView>
#include <algorithm>
#include <csignal>

#include "archive/Store.h"
#include "e2e/Desk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

constexpr int kPatience = 20000;
constexpr int kBlocksBeforeTheKill = 25;
const QString kArchive = u"frmArchive"_s;
const QString kViewer = u"frmHistory"_s;

/// The program in a process of its own, worked by the keyboard.
class Killed {
 public:
  explicit Killed(const Desk& desk) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* folder : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
      environment.insert(QString::fromLatin1(folder), desk.Path(u"home"_s));
    environment.insert(u"TESSMAR_PORTS"_s, u"COM9=%1,Logger"_s.arg(desk.Path(u"logger"_s)));
    environment.insert(u"TESSMAR_ARCHIVE"_s, desk.Path(u"archive.sqlite"_s));
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    QDir().mkpath(desk.Path(u"home/Tessmar"_s));
    QFile store(desk.Path(u"home/Tessmar/Tessmar Logger.ini"_s));
    if (store.open(QIODevice::WriteOnly))
      store.write("[Configuration]\nDirectPort=COM9\nDirectBaud=115200\n");
    process_.setProcessEnvironment(environment);
    process_.start(QStringLiteral(TESSMAR_LOGGER), QStringList());
  }
  ~Killed() { Kill(); }

  void Press(const QString& key) {
    QProcess::execute(u"xdotool"_s, {u"key"_s, key});
    process_.waitForFinished(400);
  }
  void Kill() {
    if (process_.state() == QProcess::Running)
      ::kill(static_cast<pid_t>(process_.processId()), SIGKILL);
    process_.waitForFinished(kPatience);
  }

 private:
  QProcess process_;
};

// How many blocks the archive holds; 0 while there is none.
int BlocksIn(const QString& path) {
  try {
    Store store(path);
    store.Open(Store::Access::Read);
    QSqlQuery count = store.Run(u"SELECT count(*) FROM block"_s);
    return count.next() ? count.value(0).toInt() : 0;
  } catch (const ArchiveFault&) {
    return 0;
  }
}

bool IsWindowThere(const QString& title) {
  QProcess list;
  list.start(u"wmctrl"_s, {u"-l"_s});
  list.waitForFinished(kPatience);
  const QStringList lines = QString::fromLocal8Bit(list.readAllStandardOutput()).split(u'\n');
  // Number, desktop, machine, title.
  return std::ranges::any_of(
      lines, [&](const QString& line) { return line.simplified().section(u' ', 3) == title; });
}

void UploadUntilKilled(const Desk& desk) {
  Killed program(desk);
  QElapsedTimer patience;
  patience.start();
  const QString path = desk.Path(u"archive.sqlite"_s);
  // Enter connects in the dialog that opens by itself; Ctrl+H uploads, once that is possible.
  while (!IsWindowThere(u"Connect"_s) && patience.elapsed() < kPatience)
    program.Press(u"Shift_L"_s);
  program.Press(u"Return"_s);
  while (BlocksIn(path) == 0 && patience.elapsed() < kPatience) program.Press(u"ctrl+h"_s);
  while (BlocksIn(path) < kBlocksBeforeTheKill && patience.elapsed() < kPatience)
    program.Press(u"Shift_L"_s);
}

// Every cell that the viewer shows, row by row.
QList<QStringList> ShownRows() {
  return Robot::InGui([] {
    const auto* view = qobject_cast<QTableView*>(Robot::Control(kViewer, u"lvwHistory"_s));
    QList<QStringList> rows;
    for (int row = 0; row < view->model()->rowCount(); ++row) {
      QStringList cells;
      for (int column = 0; column < view->model()->columnCount(); ++column)
        cells.append(view->model()->index(row, column).data().toString());
      rows.append(cells);
    }
    return rows;
  });
}

QList<QStringList> RowsOfTheInterruptedUpload() {
  Robot::Trigger(u"frmMain"_s, u"mnuArchive"_s);
  Robot::WaitForForm(kArchive);
  const QString state = Robot::InGui([] {
    const auto* uploads =
        qobject_cast<QAbstractItemView*>(Robot::Control(kArchive, u"tblUploads"_s));
    return uploads->model()->index(0, 3).data().toString();
  });
  EXPECT_EQ(state, u"interrupted"_s);
  Robot::Click(kArchive, u"cmdOpen"_s);
  Robot::WaitForForm(kViewer);
  const QList<QStringList> rows = ShownRows();
  Robot::Click(kViewer, u"cmdOK"_s);
  Robot::WaitForForm(kArchive);
  Robot::Click(kArchive, u"cmdClose"_s);
  Robot::WaitForNoForm(kArchive);
  return rows;
}

// The program is killed in mid-upload. Its next start has the interrupted upload, whose rows are
// those that the logger gives when it is asked for all.
TEST(KillRoad, WhatCameBeforeTheKillIsThereAfterTheNextStart) {
  const QStringList logger{u"--records"_s, u"2000"_s, u"--clock"_s, u"2026-06-01 12:00:00"_s};
  Desk desk(logger + QStringList{u"--baud"_s, u"38400"_s});
  UploadUntilKilled(desk);
  const int kept = BlocksIn(desk.Path(u"archive.sqlite"_s));
  ASSERT_GE(kept, kBlocksBeforeTheKill);
  ASSERT_LT(kept, 200) << "the upload was over before the kill";
  desk.StartLogger(logger);
  const QString trouble = desk.Work([&] {
    desk.Connect();
    const QList<QStringList> interrupted = RowsOfTheInterruptedUpload();
    // Ten records a block.
    ASSERT_EQ(interrupted.size(), kept * 10);
    desk.OpenViewer();
    const QList<QStringList> all = ShownRows();
    ASSERT_EQ(all.size(), 2000);
    EXPECT_EQ(interrupted, all.mid(0, interrupted.size()));
    Robot::Click(kViewer, u"cmdOK"_s);
    Robot::WaitForNoForm(kViewer);
    desk.Disconnect();
    desk.CloseMainWindow();
  });
  EXPECT_EQ(trouble, QString());
}

}  // namespace
}  // namespace tessmar::test
