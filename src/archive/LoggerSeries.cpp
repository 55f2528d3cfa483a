#include "archive/LoggerSeries.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <utility>

#include "archive/CommonRuns.h"
#include "archive/RecordClasses.h"

namespace tessmar {
namespace {

constexpr std::int32_t kNone = -1;

std::size_t Index(std::int32_t place) {
  return static_cast<std::size_t>(place);
}

/// Records of the upload from From to To (excluded), to be put before a place of the series.
struct Insertion {
  std::int32_t Place = 0;
  std::int32_t From = 0;
  std::int32_t To = 0;
};

/// The series as far as it has grown. Its records are nodes, numbered as they came; their order is
/// a list of nodes.
class GrowingSeries {
 public:
  explicit GrowingSeries(std::span<const SeriesUpload> uploads);

  void Take(std::int32_t upload);
  LoggerSeries Result() const;

 private:
  struct Node {
    std::int32_t Number = 0;  ///< Of the record, see RecordClasses.
    std::int32_t Upload = 0;
    std::int32_t Record = 0;
    std::int32_t NextAlike = kNone;
    bool StartsPiece = false;  ///< No upload reaches across the place before it.
    bool OverlapUnsure = false;
  };

  std::int32_t Size() const { return static_cast<std::int32_t>(order_.size()); }
  Node& NodeAt(std::int32_t place) { return nodes_[Index(order_[Index(place)])]; }
  const Node& NodeAt(std::int32_t place) const { return nodes_[Index(order_[Index(place)])]; }
  bool MayShare(std::int32_t other) const;
  bool IsAllowed(std::int32_t place) const { return MayShare(NodeAt(place).Upload); }
  bool CouldBeOthers(std::int32_t overlap) const;
  void MakeRoom();
  std::span<const std::int32_t> PlacesOf(std::int32_t number);
  std::int32_t KnownRecords() const;
  ContinuationLength Continuation() const;
  std::vector<CommonRun> ChooseRuns();
  std::vector<CommonRun> FindRuns();
  bool IsPlausible(const std::vector<CommonRun>& runs) const;
  std::int32_t LeftInPieceBefore(std::int32_t place, std::int32_t most) const;
  std::int32_t LeftInPieceFrom(std::int32_t place, std::int32_t most) const;
  std::int32_t PlaceForStranger() const;
  std::vector<Insertion> InsertionsAround(const std::vector<CommonRun>& runs) const;
  void Lay(const std::vector<CommonRun>& runs, const std::vector<Insertion>& insertions);
  std::int32_t AddNode(std::int32_t record);
  void Renumber(std::int32_t from);
  void MarkDisputes(std::vector<SeriesRecord>& records) const;

  std::span<const SeriesUpload> uploads_;
  RecordClasses classes_;
  std::vector<Node> nodes_;
  std::vector<std::int32_t> order_;    ///< Node at each place.
  std::vector<std::int32_t> numbers_;  ///< Number of the record at each place.
  std::vector<std::int32_t> places_;   ///< Place of each node.
  std::vector<std::int32_t> firstOf_;  ///< By number of the record: one node of those alike.
  std::vector<std::int32_t> countOf_;  ///< By number of the record: how many nodes are alike.
  std::vector<std::vector<std::int32_t>> nodesOf_;  ///< By upload and record: its node.

  std::int32_t taken_ = 0;                ///< The upload at work.
  bool overlapUnsure_ = false;            ///< It could overlap with less.
  std::vector<std::int32_t> upload_;      ///< Its records' numbers.
  std::vector<std::int32_t> candidates_;  ///< What PlacesOf gives.
};

std::size_t RecordsOf(std::span<const SeriesUpload> uploads) {
  std::size_t records = 0;
  for (const SeriesUpload& upload : uploads) records += Index(upload.Count());
  return records;
}

GrowingSeries::GrowingSeries(std::span<const SeriesUpload> uploads)
    : uploads_(uploads), classes_(RecordsOf(uploads)), nodesOf_(uploads.size()) {}

void GrowingSeries::Take(std::int32_t upload) {
  taken_ = upload;
  const SeriesUpload& source = uploads_[Index(upload)];
  upload_.clear();
  for (std::int32_t record = 0; record < source.Count(); ++record)
    upload_.push_back(classes_.Number(source.Record(record)));
  if (upload_.empty()) return;
  MakeRoom();

  const std::vector<CommonRun> runs = ChooseRuns();
  const auto length = static_cast<std::int32_t>(upload_.size());
  Lay(runs, runs.empty() ? std::vector<Insertion>{{PlaceForStranger(), 0, length}}
                         : InsertionsAround(runs));
}

std::vector<CommonRun> GrowingSeries::ChooseRuns() {
  overlapUnsure_ = false;
  const std::int32_t known = KnownRecords();
  if (known == 0) return {};
  const ContinuationLength continuation = Continuation();
  // Most of what could be in common at all.
  if (2 * continuation.Longest < known) {
    std::vector<CommonRun> runs = FindRuns();
    std::int32_t common = 0;
    for (const CommonRun& run : runs) common += run.Length;
    const bool reachesFar = continuation.Longest == 0 || !uploads_[Index(taken_)].Complete ||
                            (!runs.empty() && runs.back().SeriesEnd() == Size());
    if (common > continuation.Longest && reachesFar && IsPlausible(runs)) return runs;
  }
  if (continuation.Longest == 0) return {};
  overlapUnsure_ = continuation.Next > 0 || CouldBeOthers(continuation.Longest);
  return {{0, Size() - continuation.Longest, continuation.Longest}};
}

// Where records repeat, an overlap of nothing but equal ones could be none at all.
bool GrowingSeries::CouldBeOthers(std::int32_t overlap) const {
  return std::adjacent_find(upload_.begin(), upload_.begin() + overlap, std::not_equal_to<>()) ==
             upload_.begin() + overlap &&
         std::adjacent_find(upload_.begin(), upload_.end()) != upload_.end();
}

void GrowingSeries::MakeRoom() {
  firstOf_.resize(Index(classes_.Count()), kNone);
  countOf_.resize(Index(classes_.Count()), 0);
}

bool GrowingSeries::MayShare(std::int32_t other) const {
  const std::int32_t era = uploads_[Index(taken_)].Era;
  const std::int32_t otherEra = uploads_[Index(other)].Era;
  return era == otherEra || era == SeriesUpload::kAnyEra || otherEra == SeriesUpload::kAnyEra;
}

std::int32_t GrowingSeries::KnownRecords() const {
  return static_cast<std::int32_t>(
      std::count_if(upload_.begin(), upload_.end(),
                    [this](std::int32_t number) { return countOf_[Index(number)] > 0; }));
}

std::span<const std::int32_t> GrowingSeries::PlacesOf(std::int32_t number) {
  candidates_.clear();
  if (countOf_[Index(number)] > kMostOccurrences) return candidates_;
  for (std::int32_t node = firstOf_[Index(number)]; node != kNone;
       node = nodes_[Index(node)].NextAlike) {
    if (MayShare(nodes_[Index(node)].Upload)) candidates_.push_back(places_[Index(node)]);
  }
  return candidates_;
}

ContinuationLength GrowingSeries::Continuation() const {
  std::int32_t tail = 0;
  const auto most = static_cast<std::int32_t>(std::min(upload_.size(), order_.size()));
  while (tail < most && IsAllowed(Size() - 1 - tail)) ++tail;
  return FindContinuation(std::span(numbers_).last(Index(tail)), upload_);
}

std::vector<CommonRun> GrowingSeries::FindRuns() {
  return FindCommonRuns({.Upload = upload_,
                         .Series = numbers_,
                         .Places = [this](std::int32_t number) { return PlacesOf(number); },
                         .Allowed = [this](std::int32_t place) { return IsAllowed(place); }});
}

// At most so many records that lie before a place in its piece of the series.
std::int32_t GrowingSeries::LeftInPieceBefore(std::int32_t place, std::int32_t most) const {
  std::int32_t left = 0;
  while (left < most && left < place && !NodeAt(place - left).StartsPiece) ++left;
  return left;
}

// At most so many records that lie from a place on in the piece of the record before it.
std::int32_t GrowingSeries::LeftInPieceFrom(std::int32_t place, std::int32_t most) const {
  std::int32_t left = 0;
  while (left < most && place + left < Size() && !NodeAt(place + left).StartsPiece) ++left;
  return left;
}

// Whether at least half of what lies side by side is alike.
bool GrowingSeries::IsPlausible(const std::vector<CommonRun>& runs) const {
  const CommonRun& first = runs.front();
  const CommonRun& last = runs.back();
  const auto length = static_cast<std::int32_t>(upload_.size());
  std::int64_t common = 0;
  for (const CommonRun& run : runs) common += run.Length;
  const std::int64_t beside =
      std::min(last.UploadEnd() - first.Upload, last.SeriesEnd() - first.Series) +
      LeftInPieceBefore(first.Series, first.Upload) +
      LeftInPieceFrom(last.SeriesEnd(), length - last.UploadEnd());
  return 2 * common >= beside;
}

// The end; an image goes before the first piece that begins no earlier than the image ends.
std::int32_t GrowingSeries::PlaceForStranger() const {
  const SeriesUpload& upload = uploads_[Index(taken_)];
  if (!upload.Undated) return Size();
  const std::uint32_t last = upload.Stamp(upload.Count() - 1);
  for (std::int32_t place = 0; place < Size(); ++place) {
    const Node& node = NodeAt(place);
    if (node.StartsPiece && uploads_[Index(node.Upload)].Stamp(node.Record) >= last) return place;
  }
  return Size();
}

std::vector<Insertion> GrowingSeries::InsertionsAround(const std::vector<CommonRun>& runs) const {
  std::vector<Insertion> insertions;
  const CommonRun& first = runs.front();
  if (first.Upload > 0) {
    // The shorter rest lies next to the run, so that the longer one stays the way on.
    const std::int32_t left = LeftInPieceBefore(first.Series, first.Upload);
    insertions.push_back(
        {left >= first.Upload ? first.Series : first.Series - left, 0, first.Upload});
  }
  for (std::size_t i = 1; i < runs.size(); ++i) {
    if (runs[i].Upload > runs[i - 1].UploadEnd())
      insertions.push_back({runs[i].Series, runs[i - 1].UploadEnd(), runs[i].Upload});
  }
  const CommonRun& last = runs.back();
  const auto length = static_cast<std::int32_t>(upload_.size());
  const std::int32_t rest = length - last.UploadEnd();
  if (rest > 0) {
    const std::int32_t left = LeftInPieceFrom(last.SeriesEnd(), rest + 1);
    insertions.push_back(
        {left <= rest ? last.SeriesEnd() + left : last.SeriesEnd(), last.UploadEnd(), length});
  }
  return insertions;
}

std::int32_t GrowingSeries::AddNode(std::int32_t record) {
  const auto node = static_cast<std::int32_t>(nodes_.size());
  const std::int32_t number = upload_[Index(record)];
  nodes_.push_back(
      {.Number = number, .Upload = taken_, .Record = record, .NextAlike = firstOf_[Index(number)]});
  firstOf_[Index(number)] = node;
  ++countOf_[Index(number)];
  return node;
}

void GrowingSeries::Lay(const std::vector<CommonRun>& runs,
                        const std::vector<Insertion>& insertions) {
  std::vector<std::int32_t>& mine = nodesOf_[Index(taken_)];
  mine.resize(upload_.size());
  for (const CommonRun& run : runs) {
    std::copy_n(order_.begin() + run.Series, run.Length, mine.begin() + run.Upload);
  }
  if (!insertions.empty()) {
    const std::int32_t from = insertions.front().Place;
    const std::vector<std::int32_t> tail(order_.begin() + from, order_.end());
    order_.resize(Index(from));
    std::int32_t done = from;
    const auto copyTo = [&](std::int32_t place) {
      order_.insert(order_.end(), tail.begin() + (done - from), tail.begin() + (place - from));
      done = place;
    };
    for (const Insertion& insertion : insertions) {
      copyTo(insertion.Place);
      for (std::int32_t record = insertion.From; record < insertion.To; ++record) {
        mine[Index(record)] = AddNode(record);
        order_.push_back(mine[Index(record)]);
      }
    }
    const bool startsPiece = runs.empty() || (insertions.front().From == 0 && !tail.empty() &&
                                              nodes_[Index(tail.front())].StartsPiece);
    if (insertions.front().From == 0) nodes_[Index(mine.front())].StartsPiece = startsPiece;
    nodes_[Index(mine[Index(insertions.back().From)])].OverlapUnsure = overlapUnsure_;
    copyTo(from + static_cast<std::int32_t>(tail.size()));
    Renumber(from);
  }
  const std::int32_t first = places_[Index(mine.front())];
  const std::int32_t last = places_[Index(mine.back())];
  for (std::int32_t place = first + 1; place <= last; ++place) NodeAt(place).StartsPiece = false;
}

void GrowingSeries::Renumber(std::int32_t from) {
  places_.resize(nodes_.size());
  numbers_.resize(order_.size());
  for (std::int32_t place = from; place < Size(); ++place) {
    places_[Index(order_[Index(place)])] = place;
    numbers_[Index(place)] = NodeAt(place).Number;
  }
}

LoggerSeries GrowingSeries::Result() const {
  LoggerSeries series;
  std::vector<SeriesRecord>& records = series.Records;
  records.reserve(order_.size());
  for (const std::int32_t place : order_) {
    const Node& node = nodes_[Index(place)];
    records.push_back({.Upload = node.Upload,
                       .Number = node.Record,
                       .AfterSeam = node.StartsPiece,
                       .OverlapUnsure = node.OverlapUnsure});
  }
  MarkDisputes(records);
  for (const std::vector<std::int32_t>& nodes : nodesOf_)
    series.UploadEnds.push_back(nodes.empty() ? kNone : places_[Index(nodes.back())] + 1);
  return series;
}

// What lies between two neighbours of an upload is not in this upload.
void GrowingSeries::MarkDisputes(std::vector<SeriesRecord>& records) const {
  std::vector<std::int32_t> begins(records.size() + 1, 0);  // Disputes that begin less that end.
  for (const std::vector<std::int32_t>& nodes : nodesOf_) {
    for (std::size_t i = 1; i < nodes.size(); ++i) {
      const std::int32_t before = places_[Index(nodes[i - 1])];
      const std::int32_t behind = places_[Index(nodes[i])];
      if (behind == before + 1) continue;
      ++begins[Index(before) + 1];
      --begins[Index(behind)];
    }
  }
  std::int32_t disputes = 0;
  for (std::size_t place = 0; place < records.size(); ++place) {
    disputes += begins[place];
    records[place].Disputed = disputes > 0;
  }
}

}  // namespace

std::uint32_t SeriesUpload::Stamp(std::int32_t number) const {
  const std::span<const std::uint8_t> record = Record(number);
  return record[0] | static_cast<std::uint32_t>(record[1]) << 8 |
         static_cast<std::uint32_t>(record[2]) << 16 | static_cast<std::uint32_t>(record[3]) << 24;
}

LoggerSeries JoinUploads(std::span<const SeriesUpload> uploads) {
  GrowingSeries series(uploads);
  for (std::size_t upload = 0; upload < uploads.size(); ++upload)
    series.Take(static_cast<std::int32_t>(upload));
  return series.Result();
}

}  // namespace tessmar
