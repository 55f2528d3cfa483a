// The series of random loggers: beside the truth, which the test knows, and beside a second, slow
// reading of the rule.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "BruteSeries.h"
#include "SeriesRig.h"

namespace tessmar {
namespace {

using Luck = std::mt19937;

int Pick(Luck& luck, int least, int most) {
  return std::uniform_int_distribution<int>(least, most)(luck);
}

/// A logger that logs, wraps, is cleared and has its clock set, and what was uploaded from it.
struct RandomLogger {
  enum class Kind { Periodic, Fast };

  RandomLogger(Luck& luck, Kind kind, bool eras) {
    const int memory = Pick(luck, 20, 120);
    std::vector<int> stored;  // Places in Stream, oldest first.
    int era = 0;
    int clock = 1000;
    for (int step = Pick(luck, 2, 12); step > 0; --step) {
      for (int more = Pick(luck, 0, 150); more > 0; --more) {
        // The lowest digits make each record its own, but for fast logging's ten in a second.
        if (kind == Kind::Fast ? more % 10 == 0 : true) ++clock;
        const int own = kind == Kind::Fast ? tenth_ / 10 : tenth_;
        ++tenth_;
        Stream.push_back(static_cast<std::uint32_t>(clock) * 100000U +
                         static_cast<std::uint32_t>(own % 100000));
        stored.push_back(static_cast<int>(Stream.size()) - 1);
        if (static_cast<int>(stored.size()) > memory) stored.erase(stored.begin());
      }
      switch (Pick(luck, 0, 9)) {
        case 0:
          stored.clear();
          ++era;
          continue;
        case 1:
          clock -= Pick(luck, 1, 60);
          break;
        case 2:
          clock += Pick(luck, 1, 60);
          break;
        default:
          break;
      }
      Upload(luck, stored, eras ? era : SeriesUpload::kAnyEra);
    }
  }

  void Upload(Luck& luck, std::vector<int> stored, int era) {
    PlainUpload upload;
    upload.Era = era;
    // Not less than a few: what a single record of fast logging overlaps with nobody can know.
    constexpr int kFew = 12;
    const auto all = static_cast<int>(stored.size());
    if (all > kFew && Pick(luck, 0, 3) == 0) {
      upload.Complete = false;
      stored.resize(static_cast<std::size_t>(Pick(luck, kFew, all)));
    }
    for (const int place : stored) {
      upload.Records.push_back(Stream[static_cast<std::size_t>(place)]);
      Uploaded.insert(place);
    }
    Uploads.push_back(upload);
  }

  /// What was uploaded, in the logger's order, each record once.
  std::vector<std::uint32_t> Truth() const {
    std::vector<std::uint32_t> truth;
    for (const int place : Uploaded) truth.push_back(Stream[static_cast<std::size_t>(place)]);
    return truth;
  }

  std::vector<std::uint32_t> Stream;
  std::set<int> Uploaded;
  std::vector<PlainUpload> Uploads;

 private:
  int tenth_ = 0;
};

bool IsContained(const std::vector<std::uint32_t>& part, const std::vector<std::uint32_t>& whole) {
  std::size_t found = 0;
  for (const std::uint32_t number : whole) {
    if (found < part.size() && part[found] == number) ++found;
  }
  return found == part.size();
}

TEST(LoggerSeriesTruth, NoRecordIsLostNoneStandsTwiceAndTheOrderIsKept) {
  for (unsigned seed = 0; seed < 1000; ++seed) {
    Luck luck(seed);
    const RandomLogger logger(luck, RandomLogger::Kind::Periodic, seed % 2 == 0);
    const std::vector<SeriesRecord> series = Joined(logger.Uploads);
    ASSERT_EQ(Numbers(logger.Uploads, series), logger.Truth()) << "seed " << seed;
    for (const SeriesRecord& record : series)
      ASSERT_FALSE(record.Disputed || record.OverlapUnsure) << "seed " << seed;
  }
}

TEST(LoggerSeriesTruth, FastLoggingComesOutWholeWhereItsOverlapsAreSure) {
  int sure = 0;
  for (unsigned seed = 0; seed < 1000; ++seed) {
    Luck luck(seed);
    const RandomLogger logger(luck, RandomLogger::Kind::Fast, seed % 2 == 0);
    const std::vector<SeriesRecord> series = Joined(logger.Uploads);
    const std::vector<std::uint32_t> numbers = Numbers(logger.Uploads, series);
    for (const PlainUpload& upload : logger.Uploads)
      ASSERT_TRUE(IsContained(upload.Records, numbers)) << "seed " << seed;
    if (std::ranges::any_of(series, &SeriesRecord::OverlapUnsure)) continue;
    ASSERT_EQ(numbers, logger.Truth()) << "seed " << seed;
    ++sure;
  }
  EXPECT_GT(sure, 700);
}

TEST(LoggerSeriesTruth, AWrongBlockInOneUploadIsMarkedAndLosesNothing) {
  for (unsigned seed = 0; seed < 200; ++seed) {
    Luck luck(seed);
    std::vector<std::uint32_t> stream;
    for (std::uint32_t i = 0; i < 400; ++i) stream.push_back(1000 + 2 * i);
    PlainUpload first{{stream.begin(), stream.begin() + 300}};
    PlainUpload second{{stream.begin() + 100, stream.end()}};
    const int at = Pick(luck, 120, 280);
    const int length = Pick(luck, 1, 10);
    for (int i = at; i < at + length; ++i) ++first.Records[static_cast<std::size_t>(i)];
    const std::vector<PlainUpload> uploads = {first, second};
    const std::vector<SeriesRecord> series = Joined(uploads);
    ASSERT_EQ(series.size(), 400U + static_cast<std::size_t>(length)) << "seed " << seed;
    const std::vector<std::uint32_t> numbers = Numbers(uploads, series);
    EXPECT_TRUE(IsContained(first.Records, numbers) && IsContained(second.Records, numbers));
    EXPECT_EQ(std::ranges::count_if(series, &SeriesRecord::Disputed), 2 * length);
  }
}

// Few different records, so that everything happens that the rule has a word for.
std::vector<PlainUpload> Muddle(Luck& luck) {
  const int alphabet = Pick(luck, 1, 40);
  std::vector<PlainUpload> uploads(static_cast<std::size_t>(Pick(luck, 1, 6)));
  std::vector<std::uint32_t> stream;
  for (int i = Pick(luck, 1, 140); i > 0; --i)
    stream.push_back(static_cast<std::uint32_t>(Pick(luck, 0, alphabet)));
  for (PlainUpload& upload : uploads) {
    const int begin = Pick(luck, 0, static_cast<int>(stream.size()));
    const int end = std::min(begin + Pick(luck, 0, 90), static_cast<int>(stream.size()));
    upload.Records.assign(stream.begin() + begin, stream.begin() + end);
    for (int wrong = Pick(luck, 0, 3); wrong > 0 && !upload.Records.empty(); --wrong) {
      const auto last = static_cast<int>(upload.Records.size()) - 1;
      const auto place = upload.Records.begin() + Pick(luck, 0, last);
      if (Pick(luck, 0, 1) == 0) {
        *place = static_cast<std::uint32_t>(Pick(luck, 0, 60));
      } else {
        upload.Records.erase(place);
      }
    }
    upload.Complete = Pick(luck, 0, 2) != 0;
    upload.Undated = Pick(luck, 0, 4) == 0;
    upload.Era = Pick(luck, -1, 1);
  }
  return uploads;
}

TEST(LoggerSeriesTruth, IsTheRuleReadWithBruteForce) {
  int disputed = 0;
  int unsure = 0;
  int seams = 0;
  for (unsigned seed = 0; seed < 2000; ++seed) {
    Luck luck(seed);
    const std::vector<PlainUpload> uploads = Muddle(luck);
    const std::vector<SeriesRecord> series = Joined(uploads);
    ASSERT_EQ(series, BruteSeries::Join(uploads)) << "seed " << seed;
    const std::vector<std::uint32_t> numbers = Numbers(uploads, series);
    for (const PlainUpload& upload : uploads)
      ASSERT_TRUE(IsContained(upload.Records, numbers)) << "seed " << seed;
    disputed += std::ranges::any_of(series, &SeriesRecord::Disputed) ? 1 : 0;
    unsure += std::ranges::any_of(series, &SeriesRecord::OverlapUnsure) ? 1 : 0;
    seams += std::ranges::count_if(series, &SeriesRecord::AfterSeam) > 1 ? 1 : 0;
  }
  // Each of the rule's words was needed often.
  EXPECT_GT(disputed, 100);
  EXPECT_GT(unsure, 20);
  EXPECT_GT(seams, 100);
}

}  // namespace
}  // namespace tessmar
