// A year of somebody's work with the program and a logger, in virtual time. tests/proof/year runs
// it.

#include <malloc.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "archive/SeriesSets.h"
#include "archive/Store.h"
#include "proof/AllocationCount.h"
#include "proof/YearOperator.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

/// What may be more at the end than after the days of settling. In the first weeks the pages that
/// SQLite keeps grow to 2 MB.
constexpr std::int64_t kHeapAllowed = 512 * 1024;
constexpr std::int64_t kHeapOfPages = 2048 * 1024;
constexpr int kDaysOfPages = 30;
constexpr std::int64_t kObjectsAllowed = 200;
/// Bytes of the archive for each record and sample in it, from the middle of the time to its end.
constexpr double kRowSizeGrowth = 1.1;
/// The longest that anything may hold the link, in ticks: an upload that fails for good.
constexpr int kLongestBusy = 10 * 60 * 15;

struct Order {
  int Days = 365;
  int Minutes = 0;  ///< Of real time, at most; 0 for no limit.
  std::uint32_t Seed = 1;
};

struct Look {
  std::int64_t Heap = 0;
  std::int64_t Objects = 0;
  int Descriptors = 0;
  std::int64_t ArchiveBytes = 0;
  std::int64_t ArchiveRows = 0;
};

class Year {
 public:
  explicit Year(const Order& order)
      : order_(order),
        archive_(folder_.filePath(u"archive.sqlite"_s)),
        operator_(archive_, order.Seed) {}

  int Run() {
    using std::chrono::minutes, std::chrono::steady_clock;
    const auto start = steady_clock::now();
    const int settled = std::max(2, order_.Days / 6);
    int days = 0;
    for (; days < order_.Days; ++days) {
      if (order_.Minutes > 0 && steady_clock::now() - start > minutes(order_.Minutes)) break;
      operator_.LiveThroughDay();
      if (days + 1 == settled) settled_ = LookAround();
      if (days + 1 == order_.Days / 2) middle_ = LookAround();
    }
    last_ = LookAround();
    operator_.UploadAtLast();
    PrintWork(days);
    if (days <= settled) return Say("too few days to say anything of growth", false);
    CheckGrowth(settled < kDaysOfPages ? kHeapAllowed + kHeapOfPages : kHeapAllowed);
    CheckRest();
    CheckRecords();
    return short_ ? EXIT_FAILURE : EXIT_SUCCESS;
  }

 private:
  int Say(const QString& what, bool kept) {
    std::printf("year: %s%s\n", qPrintable(what), kept ? "" : " FALLS SHORT");
    short_ = short_ || !kept;
    return short_ ? EXIT_FAILURE : EXIT_SUCCESS;
  }
  int Say(const char* what, bool kept) { return Say(QString::fromUtf8(what), kept); }

  Look LookAround() const {
    Look look;
    look.Heap = static_cast<std::int64_t>(mallinfo2().uordblks + mallinfo2().hblkhd);
    look.Objects = LiveObjects();
    for (const QString& side : {u""_s, u"-wal"_s, u"-shm"_s})
      look.ArchiveBytes += QFileInfo(archive_ + side).size();
    look.ArchiveRows = RowsInArchive();
    // SQLite keeps a descriptor of the file that was closed for the next who opens it.
    look.Descriptors = Descriptors();
    return look;
  }

  std::int64_t RowsInArchive() const {
    Store store(archive_);
    store.Open(Store::Access::Read);
    QSqlQuery rows = store.Run(u"SELECT count(*) FROM record"_s);
    return rows.next() ? rows.value(0).toLongLong() : 0;
  }

  // The least of some looks: the archive's checkpoint is at work beside the program.
  static int Descriptors() {
    qsizetype least = std::numeric_limits<qsizetype>::max();
    for (int look = 0; look < 10; ++look) {
      QThread::msleep(20);
      const QDir folder(u"/proc/self/fd"_s);
      least = std::min(
          least, folder.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size());
    }
    return static_cast<int>(least);
  }

  void PrintWork(int days) {
    const YearTally& tally = operator_.Tally();
    Say(u"seed %1: %2 days, %3 sessions, %4 attempts to connect failed, %5 plugs pulled out"_s
            .arg(order_.Seed)
            .arg(days)
            .arg(tally.Sessions)
            .arg(tally.Refused)
            .arg(tally.PulledOut),
        true);
    Say(u"%1 uploads, %2 complete, %3 short and said so, %4 broken off; %5 samples; %6 times "
        u"cleared,"
        " %7 programmed, %8 clock set; %9 rows in the archive"_s.arg(tally.Uploads)
            .arg(tally.Complete)
            .arg(tally.Short)
            .arg(tally.BrokenOff)
            .arg(tally.Samples)
            .arg(tally.Cleared)
            .arg(tally.Programmed)
            .arg(tally.ClockSet)
            .arg(last_.ArchiveRows),
        tally.Complete > 0 && tally.Samples > 0 && tally.Programmed > 0);
  }

  void CheckGrowth(std::int64_t heapAllowed) {
    const auto grown = [this](const char* what, std::int64_t first, std::int64_t last,
                              std::int64_t allowed) {
      Say(u"%1: %2 once settled, %3 at the end, %4 more allowed"_s.arg(QLatin1StringView(what))
              .arg(first)
              .arg(last)
              .arg(allowed),
          last - first <= allowed);
    };
    grown("bytes of heap in use", settled_.Heap, last_.Heap, heapAllowed);
    grown("live objects", settled_.Objects, last_.Objects, kObjectsAllowed);
    grown("descriptors", settled_.Descriptors, last_.Descriptors, 0);
    // A year that was cut short by minutes may not have come half-way.
    const Look& half = middle_.ArchiveRows > 0 ? middle_ : settled_;
    const auto size = [](const Look& look) {
      return static_cast<double>(look.ArchiveBytes) /
             static_cast<double>(std::max<std::int64_t>(look.ArchiveRows, 1));
    };
    Say(u"archive: %1 bytes a row half-way, %2 at the end, %3 times the first allowed"_s
            .arg(size(half), 0, 'f', 1)
            .arg(size(last_), 0, 'f', 1)
            .arg(kRowSizeGrowth),
        size(last_) <= kRowSizeGrowth * size(half));
  }

  void CheckRest() {
    const YearTally& tally = operator_.Tally();
    Say(u"actions that left the link busy or something on: %1, 0 expected"_s.arg(tally.LeftBusy),
        tally.LeftBusy == 0);
    Say(u"the link was held for %1 s at the longest, %2 s allowed"_s.arg(tally.LongestBusy / 10)
            .arg(kLongestBusy / 10),
        tally.LongestBusy <= kLongestBusy);
    Say(u"samples off their due time: %1 of %2, 0 expected"_s.arg(tally.SamplesOff)
            .arg(tally.Samples),
        tally.SamplesOff == 0);
  }

  void CheckRecords() {
    const YearTally& tally = operator_.Tally();
    Say(u"complete uploads: lost %1, twice %2, wrong %3, 0 expected"_s.arg(tally.Lost)
            .arg(tally.Twice)
            .arg(tally.Wrong),
        tally.Lost == 0 && tally.Twice == 0 && tally.Wrong == 0);
    Store store(archive_);
    store.Open(Store::Access::Read);
    CheckSamples(store);
    CheckSeries(store);
    const QStringList complaints = store.IntegrityComplaints();
    Say(u"complaints of the archive's integrity check: %1, 0 expected"_s.arg(complaints.size()),
        complaints.isEmpty());
  }

  void CheckSamples(const Store& store) {
    std::vector<std::uint32_t> kept;
    QSqlQuery query = store.Run(
        u"SELECT stamp FROM record JOIN upload ON upload.id = upload_id WHERE kind = 'live'"
        " ORDER BY upload_id, number"_s);
    while (query.next()) kept.push_back(query.value(0).toUInt());
    Say(u"samples in the archive: %1, %2 were shown, each in its order"_s.arg(kept.size())
            .arg(operator_.SampleTimes().size()),
        kept == operator_.SampleTimes());
  }

  // The joined uploads of the logger against what it stored in all its eras.
  void CheckSeries(const Store& store) {
    const std::vector<std::uint32_t>& stored = operator_.RecordTimes();
    std::size_t wrong = 0;
    std::size_t count = 0;
    std::size_t nameless = 0;
    for (const LoggerRow& logger : store.Loggers()) {
      if (logger.Name.isEmpty()) {
        nameless += store.Uploads(logger.Id).size();
        continue;
      }
      const SeriesSet set = SeriesSetOfLogger(store, logger.Id, operator_.Core().Locale);
      count += set.Times.size();
      for (std::size_t i = 0; i < std::min(count, stored.size()); ++i)
        wrong += set.Times[i] == SecondsOf(stored[i]) ? 0 : 1;
    }
    Say(u"uploads of a logger without a name: %1, 0 expected; its name was not read in %2 sessions"_s
            .arg(nameless)
            .arg(operator_.Tally().Nameless),
        nameless == 0);
    Say(u"series of the logger: %1 records, %2 were stored; %3 at another place, 0 expected"_s
            .arg(count)
            .arg(stored.size())
            .arg(wrong),
        count == stored.size() && wrong == 0);
  }

  static double SecondsOf(std::uint32_t stamp) {
    const auto part = [stamp](unsigned shift, unsigned bits) {
      return static_cast<int>(stamp >> shift & ((1U << bits) - 1));
    };
    const QDate date(2000 + part(22, 10) / 12, part(22, 10) % 12 + 1, part(17, 5));
    const QTime time(part(12, 5), part(6, 6), part(0, 6));
    const QDateTime start(QDate(2000, 1, 1), QTime(0, 0), Qt::UTC);
    return static_cast<double>(start.secsTo(QDateTime(date, time, Qt::UTC)));
  }

  Order order_;
  QTemporaryDir folder_;
  QString archive_;
  YearOperator operator_;
  Look settled_;
  Look middle_;
  Look last_;
  bool short_ = false;
};

}  // namespace
}  // namespace tessmar::test

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  tessmar::test::Order order;
  for (int i = 1; i + 1 < argc; i += 2) {
    const auto number = static_cast<int>(std::strtol(argv[i + 1], nullptr, 10));
    if (std::strcmp(argv[i], "--days") == 0) order.Days = number;
    if (std::strcmp(argv[i], "--minutes") == 0) order.Minutes = number;
    if (std::strcmp(argv[i], "--seed") == 0) order.Seed = static_cast<std::uint32_t>(number);
  }
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  return tessmar::test::Year(order).Run();
}
