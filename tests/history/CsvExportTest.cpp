#include "history/CsvExport.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <array>
#include <cmath>
#include <csignal>
#include <optional>
#include <random>

#include "base/FileTrouble.h"
#include "base/TextTable.h"
#include "history/TableRig.h"
#include "support/SmallDisk.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::kMinute;
using test::kStamp;
using test::TableRig;

const QDateTime kSaved(QDate(2010, 12, 27), QTime(15, 5, 12));

QByteArray Golden(const QString& name) {
  QFile file(QStringLiteral(TESSMAR_TEST_DATA) + u'/' + name);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
  return file.readAll();
}

QByteArray Written(const HistoryTable& table, const QString& name, bool singleColumn) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  WriteCsv(buffer, table, {name, kSaved, singleColumn}, [](std::int32_t) {});
  return buffer.data();
}

/// Two analog channels and a pulse channel.
TableRig Well(int records) {
  TableRig rig(2, 1);
  rig.EnableAnalog(0, u"%"_s);
  rig.EnableAnalog(1, u"Volts"_s);
  rig.EnablePulse(0, u"Pulses"_s, 1, 0);
  const std::array<std::array<int, 3>, 5> words{{{4120, 1285, 103},
                                                 {4135, 1285, 104},
                                                 {4135, 1285, 104},
                                                 {4135, 1285, 104},
                                                 {4120, 1285, 104}}};
  for (std::size_t i = 0; i < static_cast<std::size_t>(records); ++i)
    rig.Add(kStamp + static_cast<std::uint32_t>(i) * kMinute,
            {words[i][0], words[i][1], words[i][2]});
  return rig;
}

struct Language {
  const char* Name;
  std::int16_t Number;
  SystemLocale Locale;
};

std::vector<Language> Languages() {
  return {{"en", kLanguageEnglish, test::American()}, {"de", kLanguageGerman, test::German()}};
}

class CsvGolden : public testing::Test {
 protected:
  void TearDown() override { SetTextLanguage(kLanguageEnglish); }

  void Compare(int records, bool pack, const QString& suffix) {
    for (const Language& language : Languages()) {
      SetTextLanguage(language.Number);
      TableRig rig = Well(records);
      rig.Locale = language.Locale;
      const HistoryTable table = pack ? rig.PackedTable() : rig.Table();
      for (const bool single : {false, true}) {
        const QString file = QLatin1StringView(language.Name) +
                             (single ? u"-one-column"_s : u"-two-columns"_s) + suffix + u".csv"_s;
        EXPECT_EQ(Written(table, u"Well 7"_s, single), Golden(file)) << file.toStdString();
      }
    }
  }
};

TEST_F(CsvGolden, ManyRows) {
  Compare(5, false, u""_s);
}
TEST_F(CsvGolden, ManyRowsPacked) {
  Compare(5, true, u"-packed"_s);
}
TEST_F(CsvGolden, OneRow) {
  Compare(1, false, u"-one-row"_s);
}
TEST_F(CsvGolden, OneRowPacked) {
  Compare(1, true, u"-one-row"_s);
}
TEST_F(CsvGolden, NoRowsStillGiveTheFirstTwoLines) {
  Compare(0, false, u"-no-rows"_s);
}

TEST_F(CsvGolden, ACommaInTheLoggerNameIsNotProtected) {
  const TableRig rig = Well(1);
  EXPECT_EQ(Written(rig.Table(), u"Well 7, North"_s, false), Golden(u"comma-in-name.csv"_s));
}

TEST_F(CsvGolden, AnEmptyLoggerNameMakesTheFileBeginWithAComma) {
  const TableRig rig = Well(1);
  EXPECT_EQ(Written(rig.Table(), u""_s, false), Golden(u"empty-name.csv"_s));
}

TEST_F(CsvGolden, WithoutDataColumnsOnlyDateAndTimeAreWritten) {
  TableRig rig(2, 0);
  rig.Add(kStamp, {1, 2});
  EXPECT_EQ(Written(rig.Table(), u"Well 7"_s, false), Golden(u"no-data-columns.csv"_s));
}

TEST_F(CsvGolden, NamesAndUnitsAreInUtf8AndCommasInHeadingsStay) {
  SetTextLanguage(kLanguageGerman);
  TableRig rig(2, 0);
  rig.Locale = test::German();
  rig.EnableAnalog(0, u"°C"_s);
  rig.EnableAnalog(1, u"a,b"_s);
  rig.Settings.Do.EnableSalinityDisplay = 1;
  rig.Settings.Do.SalinityDisplayChannel = 1;
  rig.Settings.Do.ConductivityChannel = 7;
  rig.Add(kStamp, {1250, 0});
  EXPECT_EQ(Written(rig.Table(), u"Mühlteich"_s, false), Golden(u"units-beyond-ascii.csv"_s));
}

// Only an image or an older program can bring them.
TEST(WriteCsv, LineEndsInNamesAndUnitsDoNotEndALine) {
  TableRig rig(1, 1);
  rig.EnableAnalog(0, u"m\nm"_s);
  rig.EnablePulse(0, u"k\r\nWh"_s, 1, 0);
  const QList<QByteArray> lines = Written(rig.Table(), u"Well\n7"_s, false).split('\n');
  ASSERT_EQ(lines.size(), 3);
  EXPECT_TRUE(lines[0].startsWith("Well 7,"));
  EXPECT_EQ(lines[1], "Date, Time, m m, k  Wh\r");
}

// Croatian, Hungarian and others write their dates with blanks, and Arabic with its own digits.
TEST(WriteCsv, TheDateIsOneColumnInEveryLocale) {
  const auto locales =
      QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory);
  ASSERT_GT(locales.size(), 400);
  static const QRegularExpression row(u"^[-0-9./]+, 15:47:29, [0-9.]+\r$"_s);
  static const QRegularExpression head(u"^Well 7,[-0-9./]+,[0-9]+:05:12( PM)?\r$"_s);
  for (const QLocale& locale : locales) {
    TableRig rig(1, 0);
    rig.EnableAnalog(0, u"m"_s);
    rig.Locale = SystemLocale(locale);
    rig.Add(kStamp, {1});
    const QList<QByteArray> lines = Written(rig.Table(), u"Well 7"_s, false).split('\n');
    EXPECT_TRUE(head.match(QString::fromUtf8(lines.at(0))).hasMatch()) << lines.at(0).toStdString();
    EXPECT_TRUE(row.match(QString::fromUtf8(lines.at(2))).hasMatch()) << lines.at(2).toStdString();
  }
}

TEST(WriteCsv, ChangingTheOptionBetweenTwoSavesChangesOnlyTheDateAndTimeColumns) {
  const TableRig rig = Well(5);
  const HistoryTable table = rig.Table();
  const QByteArray two = Written(table, u"Well 7"_s, false);
  QByteArray one = Written(table, u"Well 7"_s, true);
  EXPECT_NE(one, two);
  one.replace("Date Time", "Date, Time");
  one.replace("12/26/10 ", "12/26/10, ");
  EXPECT_EQ(one, two);
}

TEST(WriteCsv, ARecordWithoutATimeHasAnEmptyOne) {
  TableRig rig = Well(0);
  LiveSample record;
  record.Value = {100, 200, 3};
  rig.Buffer.Append(record);
  EXPECT_TRUE(Written(rig.Table(), u"n"_s, false).endsWith("\r\n, , 1.00, 2.00, 3\r\n"));
  EXPECT_TRUE(Written(rig.Table(), u"n"_s, true).endsWith("\r\n, 1.00, 2.00, 3\r\n"));
}

// Into the next day and back, as where a clock was set back, and to the same day of the next month.
TEST(WriteCsv, TheDateFollowsTheRecordsForwardsAndBack) {
  constexpr std::uint32_t kDay = 1U << 17;
  constexpr std::uint32_t kMonth = 1U << 22;
  TableRig rig(1, 0);
  rig.EnableAnalog(0, u"%"_s);
  for (const std::uint32_t stamp :
       {kStamp, kStamp + kDay, kStamp + kDay + kMinute, kStamp, kStamp + kMonth})
    rig.Add(stamp, {100});
  EXPECT_TRUE(Written(rig.Table(), u"n"_s, false)
                  .endsWith("Date, Time, %\r\n"
                            "12/26/10, 15:47:29, 1.00\r\n"
                            "12/27/10, 15:47:29, 1.00\r\n"
                            "12/27/10, 15:48:29, 1.00\r\n"
                            "12/26/10, 15:47:29, 1.00\r\n"
                            "1/26/11, 15:47:29, 1.00\r\n"));
}

// More than is written to the file in one go, and values that stand still across the seams.
TEST(WriteCsv, KeepsValuesThatStandStillThroughALongFile) {
  TableRig rig(2, 0);
  rig.EnableAnalog(0, u"%"_s);
  rig.EnableAnalog(1, u"Volts"_s);
  for (int i = 0; i < 40000; ++i) rig.Add(kStamp, {i / 15000, i % 2});
  QByteArray expected("Pond,12/27/2010,3:05:12 PM\r\nDate, Time, %, Volts\r\n");
  for (int i = 0; i < 40000; ++i) {
    expected += "12/26/10, 15:47:29, ";
    expected += i < 15000 ? "0.00" : i < 30000 ? "0.01" : "0.02";
    expected += i % 2 == 0 ? ", 0.00\r\n" : ", 0.01\r\n";
  }
  EXPECT_EQ(Written(rig.Table(), u"Pond"_s, false), expected);
}

TEST(WriteCsv, KeepsAValueThatStandsStillInTheShortestRows) {
  TableRig rig(1, 0);
  rig.EnableAnalog(0, u"%"_s, 0);
  LiveSample record;
  record.Value[0] = 700;
  for (int i = 0; i < 4; ++i) rig.Buffer.Append(record);
  EXPECT_EQ(Written(rig.Table(), u"Pond"_s, true),
            "Pond,12/27/2010,3:05:12 PM\r\nDate Time, %\r\n, 7\r\n, 7\r\n, 7\r\n, 7\r\n");
}

TEST(WriteCsv, KeepsAValueOfManyDigitsThatStandsStillWhole) {
  TableRig rig(0, 1);
  rig.EnablePulse(0, u"Pulses"_s, 999999, 6);
  for (int i = 0; i < 3; ++i) rig.Add(kStamp, {65535});
  const QByteArray row = "12/26/10, 15:47:29, 65534934465.000000\r\n";
  EXPECT_TRUE(Written(rig.Table(), u"n"_s, false).endsWith("Pulses\r\n" + row + row + row));
}

TEST(WriteCsv, TellsTheRowsAsItGoes) {
  TableRig rig = Well(0);
  for (int i = 0; i < 10000; ++i) rig.Add(kStamp, {i, 0, 0});
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  std::vector<std::int32_t> rows;
  WriteCsv(buffer, rig.Table(), {u"n"_s, kSaved, false},
           [&](std::int32_t row) { rows.push_back(row); });
  EXPECT_EQ(rows.front(), 1);
  EXPECT_EQ(rows.back(), 10000);
  EXPECT_TRUE(std::is_sorted(rows.begin(), rows.end()));
  EXPECT_LT(rows.size(), 10U);
}

/// What an independent reader makes of a file: one line for each row, its fields joined by tabs.
QStringList ReadBack(const QString& path) {
  const QString script =
      u"import csv, sys\n"
      u"rows = csv.reader(open(sys.argv[1], newline='', encoding='utf-8'), skipinitialspace=True)\n"
      u"sys.stdout.write('\\n'.join('\\t'.join(row) for row in rows))\n"_s;
  QProcess reader;
  reader.start(u"python3"_s, {u"-c"_s, script, path});
  EXPECT_TRUE(reader.waitForFinished(60000));
  EXPECT_EQ(reader.exitCode(), 0) << reader.readAllStandardError().toStdString();
  return QString::fromUtf8(reader.readAllStandardOutput()).split(u'\n');
}

class SaveCsvFile : public testing::Test {
 protected:
  QString Path() const { return folder_.filePath(u"history.csv"_s); }
  void Save(const HistoryTable& table, bool singleColumn = false) {
    SaveCsv(Path(), table, {u"Well 7"_s, kSaved, singleColumn}, [](std::int32_t) {});
  }
  QTemporaryDir folder_;
};

QByteArray Bytes(const QString& path) {
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
  return file.readAll();
}

/// Why the table was not saved; nothing when it was.
std::optional<FileCause> CauseOf(const QString& path, const HistoryTable& table) {
  try {
    SaveCsv(path, table, {u"Well 7"_s, kSaved, false}, [](std::int32_t) {});
    return std::nullopt;
  } catch (const FileTrouble& trouble) {
    EXPECT_EQ(trouble.File(), path);
    return trouble.Cause();
  }
}

/// So many records of three channels.
TableRig Long(int records) {
  TableRig rig = Well(0);
  for (int i = 0; i < records; ++i) rig.Add(kStamp, {i, 0, 0});
  return rig;
}

TEST_F(SaveCsvFile, IsReadByAnIndependentReaderWithTheSameNumbers) {
  TableRig rig(8, 2);
  for (std::size_t channel = 0; channel < 8; ++channel) {
    rig.EnableAnalog(channel, u"u%1"_s.arg(channel), static_cast<int>(channel) % 7);
    rig.Settings.Analog[channel].LowerLimit = -50;
  }
  rig.EnablePulse(0, u"Inches"_s, 0.01, 2);
  rig.EnablePulse(1, u"Gallons"_s, 2.5, 1);
  std::mt19937 luck(20101226);
  constexpr int kRecords = 3000;
  for (std::uint32_t i = 0; i < kRecords; ++i) {
    LiveSample record;
    record.PackedTime = kStamp + (i % 10) * kMinute;
    record.HasTime = true;
    for (std::int32_t& word : record.Value) word = static_cast<std::int32_t>(luck() % 65536);
    rig.Buffer.Append(record);
  }
  Save(rig.Table());

  const QStringList lines = ReadBack(Path());
  ASSERT_EQ(lines.size(), kRecords + 2);
  EXPECT_EQ(lines[0], u"Well 7\t12/27/2010\t3:05:12 PM"_s);
  for (int i = 0; i < kRecords; ++i) {
    const QStringList fields = lines[i + 2].split(u'\t');
    ASSERT_EQ(fields.size(), 12);
    EXPECT_EQ(fields[0], u"12/26/10"_s);
    const auto& words = rig.Buffer.Record(i).Value;
    for (std::size_t channel = 0; channel < 8; ++channel) {
      const double expected = -50 + 150.0 * words[channel] / 10000;
      const double tolerance = 0.5000001 * std::pow(10.0, -(static_cast<int>(channel) % 7));
      ASSERT_NEAR(fields[static_cast<int>(channel) + 2].toDouble(), expected, tolerance);
    }
    ASSERT_NEAR(fields[10].toDouble(), words[8] * 0.01, 0.0050001);
    ASSERT_NEAR(fields[11].toDouble(), words[9] * 2.5, 0.0500001);
  }
}

TEST_F(SaveCsvFile, GoldenFilesAreReadByAnIndependentReader) {
  const QStringList lines =
      ReadBack(QStringLiteral(TESSMAR_TEST_DATA) + u"/de-two-columns-packed.csv"_s);
  EXPECT_EQ(lines,
            (QStringList{u"Well 7\t27.12.2010\t15:05:12"_s, u"Datum\tZeit\t%\tVolts\tPulses"_s,
                         u"26.12.10\t15:47:29\t41.20\t12.85\t103"_s,
                         u"26.12.10\t15:48:29\t41.35\t12.85\t104"_s,
                         u"26.12.10\t15:51:29\t41.20\t12.85\t104"_s}));
}

TEST_F(SaveCsvFile, SavingTwiceReplacesALongerFile) {
  Save(Well(5).Table());
  Save(Well(1).Table());
  EXPECT_EQ(Bytes(Path()), Golden(u"en-two-columns-one-row.csv"_s));
}

TEST_F(SaveCsvFile, AFolderThatIsNotThereIsNamed) {
  try {
    SaveCsv(folder_.filePath(u"gone/h.csv"_s), Well(1).Table(), {u"n"_s, kSaved, false},
            [](std::int32_t) {});
    FAIL();
  } catch (const FileTrouble& trouble) {
    EXPECT_EQ(trouble.Cause(), FileCause::NoFolder);
    EXPECT_EQ(trouble.File(), folder_.filePath(u"gone"_s));
  }
}

TEST_F(SaveCsvFile, AFolderInPlaceOfAFileIsRefused) {
  EXPECT_EQ(CauseOf(folder_.path(), Well(1).Table()), FileCause::NotAFile);
}

TEST(WriteCsv, ADeviceThatTakesNotEverythingIsAFault) {
  /// Takes one big piece and then nothing more.
  class SmallDevice : public QIODevice {
   public:
    qint64 Taken = 0;

   protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64 size) override {
      if (Taken > 0) return -1;
      return Taken = size;
    }
  } device;
  device.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
  EXPECT_THROW(WriteCsv(device, Long(50000).Table(), {u"n"_s, kSaved, false}, [](std::int32_t) {}),
               FileFault);
  EXPECT_GT(device.Taken, 100000);
}

TEST_F(SaveCsvFile, AFullDeviceIsRefused) {
  EXPECT_EQ(CauseOf(u"/dev/full"_s, Well(1).Table()), FileCause::NotAFile);
}

TEST_F(SaveCsvFile, APipeIsRefusedAndNotWaitedFor) {
  ASSERT_EQ(::mkfifo(QFile::encodeName(Path()).constData(), 0600), 0);
  EXPECT_EQ(CauseOf(Path(), Well(1).Table()), FileCause::NotAFile);
}

TEST_F(SaveCsvFile, AFullDiskKeepsTheOldFile) {
  const TableRig rig = Long(20000);
  test::SmallDisk disk;
  const QString path = disk.Path(u"history.csv"_s);
  SaveCsv(path, Well(5).Table(), {u"Well 7"_s, kSaved, false}, [](std::int32_t) {});
  disk.Fill(8192);
  const std::optional<FileCause> cause = CauseOf(path, rig.Table());
  disk.Empty();
  EXPECT_TRUE(cause == FileCause::DiskFull || cause == FileCause::TooLarge);
  EXPECT_EQ(Bytes(path), Golden(u"en-two-columns.csv"_s));
  EXPECT_EQ(disk.Files(), QStringList{u"history.csv"_s});
}

class SaveCsvAsOrdinaryUser : public testing::Test {
 protected:
  ~SaveCsvAsOrdinaryUser() override {
    QFile::setPermissions(folder_.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }
  test::OrdinaryUser user_;
  QTemporaryDir folder_;
};

TEST_F(SaveCsvAsOrdinaryUser, AFolderThatTakesNoNewFilesIsNamed) {
  const QString path = folder_.filePath(u"history.csv"_s);
  ASSERT_TRUE(QFile::setPermissions(folder_.path(), QFile::ReadOwner | QFile::ExeOwner));
  EXPECT_EQ(CauseOf(path, Well(1).Table()), FileCause::NoPermission);
}

TEST_F(SaveCsvAsOrdinaryUser, AFileInAFolderThatTakesNoNewOnesIsWrittenDirectly) {
  const QString path = folder_.filePath(u"history.csv"_s);
  SaveCsv(path, Well(5).Table(), {u"Well 7"_s, kSaved, false}, [](std::int32_t) {});
  ASSERT_TRUE(QFile::setPermissions(folder_.path(), QFile::ReadOwner | QFile::ExeOwner));
  EXPECT_EQ(CauseOf(path, Well(1).Table()), std::nullopt);
  EXPECT_EQ(Bytes(path), Golden(u"en-two-columns-one-row.csv"_s));
}

/// Ends this process as kill -9 does.
void Kill() {
  ::raise(SIGKILL);
}

/// What ends the saving process: it kills itself at a row, or is killed by the one that waits as
/// soon as it has come to a row, while it goes on.
enum class Killer { Itself, Another };

void SaveUntilKilled(const QString& path, const HistoryTable& table, std::int32_t row,
                     Killer killer) {
  std::array<int, 2> pipe{};
  ASSERT_EQ(::pipe(pipe.data()), 0);
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    SaveCsv(path, table, {u"Well 7"_s, kSaved, false}, [&](std::int32_t now) {
      if (now < row) return;
      if (killer == Killer::Itself) Kill();
      [[maybe_unused]] const ssize_t told = ::write(pipe[1], "x", 1);
    });
    ::_exit(0);
  }
  ::close(pipe[1]);
  char byte = 0;
  [[maybe_unused]] const ssize_t told = ::read(pipe[0], &byte, 1);
  ::close(pipe[0]);
  if (killer == Killer::Another) ::kill(child, SIGKILL);
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
}

TEST_F(SaveCsvFile, IsTheOldOneOrTheNewOneWheneverTheProcessIsKilled) {
  constexpr std::int32_t kRows = 40000;
  const TableRig rig = Long(kRows);
  const HistoryTable table = rig.Table();
  const QByteArray old = Golden(u"en-two-columns.csv"_s);
  Save(table);
  const QByteArray fresh = Bytes(Path());
  int kept = 0;
  for (std::int32_t attempt = 0; attempt < 100; ++attempt) {
    Save(Well(5).Table());
    ASSERT_EQ(Bytes(Path()), old);
    const Killer killer = attempt % 2 == 0 ? Killer::Itself : Killer::Another;
    // The last ten come while the file takes its place, as far as the machine lets them.
    const std::int32_t row = attempt < 90 ? 1 + attempt * kRows / 90 : kRows;
    ASSERT_NO_FATAL_FAILURE(SaveUntilKilled(Path(), table, row, killer));
    const QByteArray now = Bytes(Path());
    ASSERT_TRUE(now == old || now == fresh) << "attempt " << attempt << ", " << now.size();
    if (killer == Killer::Itself) {
      EXPECT_EQ(now, old);
    }
    if (now == old) ++kept;
  }
  EXPECT_GE(kept, 50);
}

}  // namespace
}  // namespace tessmar
