// What it costs to join the uploads of years: five million records of one logger.

#include <algorithm>
#include <cstdint>
#include <functional>
#include <vector>

#include "archive/LoggerSeries.h"
#include "bench/Figures.h"

namespace tessmar::bench {
namespace {

using namespace Qt::StringLiterals;

constexpr int kRounds = 3;
constexpr int kWords = 10;
constexpr int kRecordSize = 4 + 2 * kWords;
constexpr std::uint32_t kSeries = 5000000;
constexpr std::uint32_t kMemory = 160000;  // What a logger holds, about.
constexpr std::uint32_t kNew = 100000;     // From one upload to the next.

/// Uploads with an overlap of 60000 records each, until the series has its five million.
class Years {
 public:
  using Value = std::function<std::uint32_t(std::uint32_t record)>;

  /// @param stamp, word  of a record.
  /// @param wrong  each upload has one block that differs from what the others have there.
  Years(const Value& stamp, const Value& word, bool wrong) {
    for (std::uint32_t end = kMemory; end <= kSeries; end += kNew) {
      std::vector<std::uint8_t>& bytes = bytes_.emplace_back();
      bytes.reserve(kMemory * kRecordSize);
      for (std::uint32_t record = end - kMemory; record < end; ++record) {
        const bool isWrong =
            wrong && record - (end - kMemory) >= 20000 && record - (end - kMemory) < 20010;
        AddRecord(bytes, stamp(record), word(record) + (isWrong ? 1 : 0));
      }
    }
    for (const std::vector<std::uint8_t>& bytes : bytes_)
      uploads_.push_back({.Records = bytes, .RecordSize = kRecordSize});
  }

  void Measure(const QString& what, double limit) const {
    std::vector<double> seconds;
    std::size_t records = 0;
    for (int round = 0; round < kRounds; ++round) {
      // One thread at work, nothing waits: the time on a quiet machine.
      const double before = ProcessorSeconds();
      records = JoinUploads(uploads_).Records.size();
      seconds.push_back(ProcessorSeconds() - before);
    }
    Print({.What = what, .Result = Median(seconds), .Unit = u"s"_s, .Limit = limit});
    PrintNote(u"%1 uploads of %2 records, %3 in the series"_s.arg(uploads_.size())
                  .arg(kMemory)
                  .arg(records));
  }

 private:
  static void AddRecord(std::vector<std::uint8_t>& bytes, std::uint32_t stamp, std::uint32_t word) {
    for (int shift = 0; shift < 32; shift += 8)
      bytes.push_back(static_cast<std::uint8_t>(stamp >> shift));
    for (int i = 0; i < kWords; ++i) {
      bytes.push_back(static_cast<std::uint8_t>(word));
      bytes.push_back(static_cast<std::uint8_t>(word >> 8));
    }
  }

  std::vector<std::vector<std::uint8_t>> bytes_;
  std::vector<SeriesUpload> uploads_;
};

void MeasureAll() {
  const auto same = [](std::uint32_t record) { return record; };
  const auto noise = [](std::uint32_t record) { return record * 2654435761U >> 16; };
  Years(same, noise, false).Measure(u"series of 5 million records"_s, 3);
  Years(same, noise, true).Measure(u"  with a wrong block in each upload"_s, 3);
  Years([](std::uint32_t record) { return record / 10; }, [](std::uint32_t) { return 5U; }, false)
      .Measure(u"  fast logging, ten equal ones a second"_s, 3);
  Years([](std::uint32_t) { return 1U; }, [](std::uint32_t) { return 5U; }, false)
      .Measure(u"  a dead clock, all records alike"_s, 3);
  Years([](std::uint32_t) { return 1U; }, noise, false)
      .Measure(u"  a dead clock, other values"_s, 3);
}

}  // namespace
}  // namespace tessmar::bench

int main() {
  tessmar::bench::MeasureAll();
}
