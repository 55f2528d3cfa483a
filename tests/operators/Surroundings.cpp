#include "operators/Surroundings.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QUuid>
#include <stdexcept>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

#include "archive/Store.h"
#include "settings/config.h"

namespace tessmar::test {

using namespace Qt::StringLiterals;

namespace {

/// So many that their export takes long enough for somebody to press something.
constexpr int kRecordsOfYears = 60000;

void WriteFile(const QString& path, const QByteArray& content) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
    throw std::runtime_error("no file at " + path.toStdString());
}

/// A record each quarter of an hour from 1 January 2024 on, of months of 28 days.
std::uint32_t StampOfRecord(int record) {
  const int day = record / 96;
  const int month = day / 28;
  return static_cast<std::uint32_t>((24 * 12 + month) << 22 | (day % 28 + 1) << 17 |
                                    record % 96 / 4 << 12 | record % 4 * 15 << 6);
}

QByteArray SettingsOfYears() {
  LinkState link;
  link.AnalogChannelCount = kAnalogChannels;
  link.PulseChannelCount = kPulseChannels;
  LoggerSettings settings;
  LoadDefaultSettings(settings, kAnalogChannels);
  settings.LoggerName = u"Weir of years"_s;
  for (AnalogChannelSettings& channel : settings.Analog) {
    channel.Enable = 1;
    channel.DecPlaces = 3;
    channel.RawScaleUpper = 65535;
    channel.UpperLimit = 100;
  }
  ConfigImage image;
  PackConfigImage(link, settings, image);
  return {reinterpret_cast<const char*>(image.data()), static_cast<qsizetype>(image.size())};
}

void AddUploadOfYears(Store& store, qint64 logger, const QByteArray& settings, int first,
                      Random& random) {
  constexpr int kWords = kAnalogChannels + kPulseChannels;
  const QDateTime started(QDate(2026, 1, first == 0 ? 1 : 2), QTime(12, 0), Qt::UTC);
  const qint64 upload = store.AddUpload({.Uuid = QUuid::createUuid().toString(QUuid::WithoutBraces),
                                         .LoggerId = logger,
                                         .Started = started,
                                         .Ended = started.addSecs(600),
                                         .State = UploadState::Complete,
                                         .Promised = kRecordsOfYears,
                                         .Records = kRecordsOfYears,
                                         .Settings = settings,
                                         .Analog = kAnalogChannels,
                                         .Pulse = kPulseChannels,
                                         .Program = u"operators"_s});
  QSqlQuery insert =
      store.Prepare(u"INSERT INTO record (upload_id, number, stamp, raw) VALUES (?, ?, ?, ?)"_s);
  insert.bindValue(0, upload);
  QByteArray words(qsizetype{2} * kWords, '\0');
  for (int i = 0; i < kRecordsOfYears; ++i) {
    // Of two uploads some of the records that both have disagree.
    for (char& byte : words) byte = static_cast<char>(i * 7);
    if (random.OneIn(1000)) words[0] = static_cast<char>(random.Below(256));
    insert.bindValue(1, i + 1);
    insert.bindValue(2, StampOfRecord(first + i));
    insert.bindValue(3, words);
    Store::Execute(insert);
  }
}

/// A logger of which an export takes its time, as an upload and as a series of two.
void FillArchive(const QString& path, Random& random) {
  Store store(path);
  store.Open(Store::Access::Write);
  Transaction transaction(store);
  const QDateTime seen(QDate(2026, 1, 1), QTime(12, 0), Qt::UTC);
  const qint64 logger = store.SeeLogger(u"Weir of years"_s, 12, 52, seen);
  const QByteArray settings = SettingsOfYears();
  for (const int first : {0, kRecordsOfYears / 6})
    AddUploadOfYears(store, logger, settings, first, random);
  transaction.Commit();
}

}  // namespace

QStringList LoggerOptions(Random& random) {
  QStringList options{u"--seed"_s, QString::number(random.Below(1000))};
  static constexpr int kRecords[] = {0, 1, 40, 200, 960, 3000};
  options << u"--records"_s << QString::number(random.OneOf(kRecords));
  if (random.OneIn(4)) options << u"--analog"_s << QString::number(random.Between(1, 8));
  if (random.OneIn(4)) options << u"--pulse"_s << QString::number(random.Below(3));
  if (random.OneIn(5)) options << u"--model"_s << u"220"_s;
  if (random.OneIn(4)) options << u"--sample-on-demand"_s;
  if (random.OneIn(6)) options << u"--baud"_s << u"115200"_s;
  if (random.OneIn(12)) options << u"--blank"_s;
  if (random.OneIn(6)) options << u"--modem"_s << u"--modem-dial-time"_s << u"300"_s;
  if (random.OneIn(4)) options << u"--name"_s << u"Weiher 'ä' %1"_s;
  static constexpr const char* kFaults[] = {"silent:0.1",           "request-lost:0.1",
                                            "acknowledge-lost:0.1", "wrong-acknowledge:0.1",
                                            "corrupt-check:0.1",    "wrong-length:0.1",
                                            "junk-ahead:0.2",       "bad-escape:0.1",
                                            "late-answer:0.05",     "answer-twice:0.1",
                                            "stops-mid-frame:0.1",  "stuck-byte",
                                            "commit-refused",       "illegal-version",
                                            "illegal-block-count",  "more-records",
                                            "noise-ahead:0.2",      "noise-behind:0.2",
                                            "held-answer:0.05",     "late-copy:0.05",
                                            "random-loss",          "silent"};
  if (random.OneIn(2)) options << u"--fault"_s << QString::fromLatin1(random.OneOf(kFaults));
  return options;
}

void FillDesk(const QString& folder, const QString& simulator, quint64 seed) {
  const auto path = [&](const QString& name) { return QDir(folder).filePath(name); };
  QDir(folder).mkpath(u"program/folder.csv"_s);
  QDir(folder).mkpath(u"program/folder"_s);
  QDir(folder).mkpath(u"program/help/en"_s);
  for (const char* page : {"TessmarLoggerII.chm", "TessmarDOHelp.chm", "help/en/index.html"})
    WriteFile(path(u"program/"_s + QString::fromLatin1(page)), "help");
  if (QProcess::execute(
          simulator, {u"--image"_s, path(u"program/flash.bin"_s), u"--records"_s, u"300"_s}) != 0)
    throw std::runtime_error("the simulated logger makes no image");
  QByteArray junk;
  Random random(seed, -1);
  for (int i = 0; i < 2000; ++i) junk.append(static_cast<char>(random.Below(256)));
  WriteFile(path(u"program/short.bin"_s), junk);
  WriteFile(path(u"program/junk.set"_s), junk);
  WriteFile(path(u"program/empty.csv"_s), {});
  WriteFile(path(u"program/modem.txt"_s), "ATZ\r\nATE1\r\n");
#ifdef Q_OS_UNIX
  ::mkfifo(QFile::encodeName(path(u"program/pipe.csv"_s)).constData(), 0600);
#endif
  QFile::link(path(u"program/nothing"_s), path(u"program/nowhere.csv"_s));
  QFile::link(path(u"program/circle.csv"_s), path(u"program/circle.csv"_s));
  FillArchive(path(u"archive.sqlite"_s), random);
  QSettings store(path(u"store.ini"_s), QSettings::IniFormat);
  store.setValue(u"Configuration/DirectPort"_s, u"COM9"_s);
  store.setValue(u"Configuration/DirectBaud"_s, u"115200"_s);
  store.sync();
}

}  // namespace tessmar::test
