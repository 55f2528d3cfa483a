#include <gtest/gtest.h>

#include <QFile>
#include <QLabel>
#include <QProcess>
#include <QProgressBar>
#include <QTableView>

#include "e2e/Desk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

const QString kViewer = u"frmHistory"_s;

/// What the viewer shows.
struct ShownTable {
  QStringList Headings;
  QList<QStringList> Rows;
};

ShownTable ReadTable() {
  return Robot::InGui([] {
    ShownTable shown;
    const auto* view = qobject_cast<QTableView*>(Robot::Control(kViewer, u"lvwHistory"_s));
    const QAbstractItemModel& model = *view->model();
    for (int column = 0; column < model.columnCount(); ++column)
      shown.Headings.append(model.headerData(column, Qt::Horizontal).toString());
    for (int row = 0; row < model.rowCount(); ++row) {
      QStringList cells;
      for (int column = 0; column < model.columnCount(); ++column)
        cells.append(model.index(row, column).data().toString());
      shown.Rows.append(cells);
    }
    return shown;
  });
}

QByteArray BytesOf(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList LinesOf(const QString& path) {
  const QString text = QString::fromUtf8(BytesOf(path));
  QStringList lines = text.split(u"\r\n"_s);
  // The last line has an end as well.
  if (!lines.isEmpty() && lines.last().isEmpty()) lines.removeLast();
  return lines;
}

void Save(const QString& path) {
  Robot::Click(kViewer, u"cmdSave"_s);
  Robot::TakeFile(path);
  Robot::WaitForForm(kViewer);
  Robot::WaitFor(u"the file"_s, [&] {
    const auto* bar = qobject_cast<QWidget*>(Robot::Control(kViewer, u"ProgressBar"_s));
    return QFile::exists(path) && bar->isHidden();
  });
}

/// Compares a saved file with the table, line by line behind the first.
void ExpectSameAsTable(const QStringList& lines, const ShownTable& table, bool singleColumn) {
  const QString between = singleColumn ? u" "_s : u", "_s;
  ASSERT_EQ(lines.size(), table.Rows.size() + 2);
  EXPECT_TRUE(lines[0].startsWith(u"Mill Pond 3,"_s)) << lines[0].toStdString();
  EXPECT_EQ(lines[1], u"Date%1Time, "_s.arg(between) + table.Headings.mid(1).join(u", "_s));
  for (qsizetype row = 0; row < table.Rows.size(); ++row) {
    QStringList cells = table.Rows[row];
    const qsizetype blank = cells[0].indexOf(u' ');
    ASSERT_GT(blank, 0);
    cells[0].replace(blank, 1, between);
    EXPECT_EQ(lines[row + 2], cells.join(u", "_s));
  }
}

TEST(HistoryRoad, SavesWhatTheTableShows) {
  Desk desk({u"--records"_s, u"150"_s});
  const QString trouble = desk.Work([&] {
    desk.Connect();
    EXPECT_EQ(MainText(u"lblRecordings"_s), u"150"_s);
    desk.OpenViewer();
    EXPECT_EQ(Robot::Text(kViewer, u"lblNumRecords"_s), u"150"_s);
    EXPECT_EQ(Robot::Text(kViewer, u"lblLoggerName"_s), u"Mill Pond 3"_s);
    const ShownTable whole = ReadTable();
    ASSERT_EQ(whole.Rows.size(), 150);
    // Eight analog channels, two pulse channels, and the time.
    EXPECT_EQ(whole.Headings.size(), 11);

    Robot::Click(kViewer, u"cmdPack"_s);
    Robot::Answer(u"This operation will remove each record"_s);
    Robot::WaitForForm(kViewer);
    const ShownTable packed = ReadTable();
    EXPECT_LE(packed.Rows.size(), whole.Rows.size());
    EXPECT_EQ(Robot::Text(kViewer, u"lblNumRecords"_s), QString::number(packed.Rows.size()));
    for (qsizetype row = 1; row < packed.Rows.size(); ++row)
      EXPECT_NE(packed.Rows[row].mid(1), packed.Rows[row - 1].mid(1));

    Save(desk.Path(u"two.csv"_s));
    ExpectSameAsTable(LinesOf(desk.Path(u"two.csv"_s)), packed, false);

    Robot::Click(kViewer, u"cmdOptions"_s);
    Robot::WaitForForm(u"frmHistoryOptions"_s);
    Robot::Tick(u"frmHistoryOptions"_s, u"optNoComma"_s);
    Robot::Click(u"frmHistoryOptions"_s, u"cmdOK"_s);
    Robot::WaitForForm(kViewer);
    // Without an ending; it gets the usual one.
    Robot::Click(kViewer, u"cmdSave"_s);
    Robot::TakeFile(desk.Path(u"one"_s));
    Robot::WaitFor(u"the file"_s, [&] { return QFile::exists(desk.Path(u"one.csv"_s)); });
    ExpectSameAsTable(LinesOf(desk.Path(u"one.csv"_s)), packed, true);

    Robot::Click(kViewer, u"cmdOK"_s);
    Robot::WaitForNoForm(kViewer);
    desk.Disconnect();
    desk.CloseMainWindow();
  });
  EXPECT_EQ(trouble, QString());
  EXPECT_EQ(desk.StoredValue(u"CSVDateTimeSingleColumn"_s), u"Yes"_s);
}

/// What the command writes of the archive's first upload, as a shell would have it.
QByteArray ExportedByCommand(const Desk& desk) {
  const QString file = desk.Path(u"command.csv"_s);
  QProcess command;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
  environment.insert(u"XDG_CONFIG_HOME"_s, desk.Path(u"config"_s));
  command.setProcessEnvironment(environment);
  command.start(QStringLiteral(TESSMAR_COMMAND), {u"archive"_s, u"export"_s, u"1"_s, file,
                                                  u"--archive"_s, desk.Path(u"archive.sqlite"_s)});
  EXPECT_TRUE(command.waitForFinished());
  EXPECT_EQ(command.exitCode(), 0) << command.readAllStandardError().toStdString();
  return BytesOf(file);
}

// Archive and command write the file that the viewer saves; but for its first line, which has the
// time of saving.
TEST(HistoryRoad, TheArchiveAndTheCommandExportWhatTheViewerSaves) {
  const QString archive = u"frmArchive"_s;
  Desk desk({u"--records"_s, u"150"_s});
  const QString trouble = desk.Work([&] {
    desk.Connect();
    desk.OpenViewer();
    Save(desk.Path(u"viewer.csv"_s));
    Robot::Click(kViewer, u"cmdOK"_s);
    Robot::WaitForNoForm(kViewer);

    Robot::Trigger(u"frmMain"_s, u"mnuArchive"_s);
    Robot::WaitForForm(archive);
    Robot::Click(archive, u"cmdExport"_s);
    Robot::TakeFile(desk.Path(u"archive.csv"_s));
    Robot::WaitForText(archive, u"lblStatus"_s, u"150 records in "_s + desk.Path(u"archive.csv"_s));
    Robot::Click(archive, u"cmdClose"_s);
    Robot::WaitForNoForm(archive);
    desk.Disconnect();
    desk.CloseMainWindow();
  });
  EXPECT_EQ(trouble, QString());
  const auto behindFirstLine = [](const QByteArray& bytes) {
    EXPECT_TRUE(bytes.startsWith("Mill Pond 3,")) << bytes.left(80).toStdString();
    return bytes.mid(bytes.indexOf("\r\n"));
  };
  const QByteArray viewer = behindFirstLine(BytesOf(desk.Path(u"viewer.csv"_s)));
  EXPECT_EQ(viewer.count("\r\n"), 152);
  EXPECT_TRUE(behindFirstLine(BytesOf(desk.Path(u"archive.csv"_s))) == viewer);
  EXPECT_TRUE(behindFirstLine(ExportedByCommand(desk)) == viewer);
}

TEST(HistoryRoad, StoppedInTheMiddleShowsWhatArrived) {
  Desk desk({u"--records"_s, u"20000"_s, u"--baud"_s, u"115200"_s});
  const QString trouble = desk.Work([&] {
    desk.Connect();
    desk.StartUpload();
    Robot::Click(u"frmGetHistoryData"_s, u"cmdCancel"_s);
    Robot::WaitForForm(u"FMessage"_s);
    const QString message = Robot::Text(u"FMessage"_s, u"lblMessage"_s);
    Robot::Answer(u"Retrieve Cancelled by User.  Received "_s);
    Robot::WaitForForm(kViewer);
    const QString count = Robot::Text(kViewer, u"lblNumRecords"_s);
    EXPECT_EQ(message,
              u"Retrieve Cancelled by User.  Received %1 records of 20000 records."_s.arg(count));
    EXPECT_EQ(ReadTable().Rows.size(), count.toInt());
    Robot::Click(kViewer, u"cmdOK"_s);
    Robot::WaitForNoForm(kViewer);
  });
  EXPECT_EQ(trouble, QString());
}

TEST(HistoryRoad, AnEmptyLoggerIsSaidToBeEmpty) {
  Desk desk({u"--records"_s, u"0"_s});
  const QString trouble = desk.Work([&] {
    desk.Connect();
    Robot::Click(u"frmMain"_s, u"cmdGetHistoryData"_s);
    Robot::Answer(u"No history in memory!"_s);
    Robot::WaitForForm(u"frmMain"_s);
  });
  EXPECT_EQ(trouble, QString());
}

}  // namespace
}  // namespace tessmar::test
