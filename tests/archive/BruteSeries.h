#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

#include "SeriesRig.h"

namespace tessmar {

/// The rule of docs/series.md read once more, with no thought for the time that it takes: every
/// search tries everything. Shares nothing with the program but the form of its answer.
class BruteSeries {
 public:
  static std::vector<SeriesRecord> Join(const std::vector<PlainUpload>& uploads) {
    BruteSeries brute(uploads);
    for (int upload = 0; upload < static_cast<int>(uploads.size()); ++upload) brute.Take(upload);
    brute.MarkDisputes();
    std::vector<SeriesRecord> series;
    for (const Item& item : brute.items_) series.push_back(item.Record);
    return series;
  }

 private:
  struct Item {
    std::uint32_t Number;
    SeriesRecord Record;
    std::vector<std::pair<int, int>> In;  ///< Upload and record of each that is this one.
  };
  struct Run {
    int U, S, L;
  };

  explicit BruteSeries(const std::vector<PlainUpload>& uploads) : uploads_(uploads) {}

  bool Fits(int place) const {
    const int a = uploads_[static_cast<std::size_t>(items_[At(place)].Record.Upload)].Era;
    const int b = Mine().Era;
    return a == b || a < 0 || b < 0;
  }
  static std::size_t At(int place) { return static_cast<std::size_t>(place); }
  const PlainUpload& Mine() const { return uploads_[At(upload_)]; }
  int MyCount() const { return static_cast<int>(Mine().Records.size()); }
  int Size() const { return static_cast<int>(items_.size()); }
  bool Same(int mine, int place) const {
    return Mine().Records[At(mine)] == items_[At(place)].Number && Fits(place);
  }
  bool MayStart(int mine) const {
    int often = 0;
    for (const Item& item : items_) often += item.Number == Mine().Records[At(mine)] ? 1 : 0;
    return often <= 16;
  }

  std::vector<int> Continuations() const {
    std::vector<int> lengths;
    for (int length = std::min(MyCount(), Size()); length > 0; --length) {
      bool all = true;
      for (int i = 0; all && i < length; ++i) all = Same(i, Size() - length + i);
      if (all) lengths.push_back(length);
    }
    return lengths;
  }

  std::optional<Run> Longest(int ub, int ue, int sb, int se) const {
    std::optional<Run> best;
    for (int u = ub; u < ue; ++u) {
      for (int s = se - 1; s >= sb; --s) {
        int length = 0;
        bool starter = false;
        while (u + length < ue && s + length < se && Same(u + length, s + length)) {
          starter = starter || MayStart(u + length);
          ++length;
        }
        if (length > 0 && starter && (!best || length > best->L)) best = Run{u, s, length};
      }
    }
    return best;
  }

  void Divide(int ub, int ue, int sb, int se, std::vector<Run>& runs) const {
    const std::optional<Run> run = Longest(ub, ue, sb, se);
    if (!run) return;
    const int before = ub == 0 ? std::max(sb, run->S - 2 * run->U - 64) : sb;
    const int uEnd = run->U + run->L;
    const int sEnd = run->S + run->L;
    const int behind = ue == MyCount() ? std::min(se, sEnd + 2 * (ue - uEnd) + 64) : se;
    Divide(ub, run->U, before, run->S, runs);
    runs.push_back(*run);
    Divide(uEnd, ue, sEnd, behind, runs);
  }

  int PieceBefore(int place) const {
    int n = 0;
    while (n < place && !items_[At(place - n)].Record.AfterSeam) ++n;
    return n;
  }
  int PieceFrom(int place) const {
    int n = 0;
    while (place + n < Size() && !items_[At(place + n)].Record.AfterSeam) ++n;
    return n;
  }

  bool HalfAlike(const std::vector<Run>& runs) const {
    int common = 0;
    for (const Run& run : runs) common += run.L;
    const Run& a = runs.front();
    const Run& z = runs.back();
    const int inner = std::min(z.U + z.L - a.U, z.S + z.L - a.S);
    const int before = std::min(a.U, PieceBefore(a.S));
    const int behind = std::min(MyCount() - z.U - z.L, PieceFrom(z.S + z.L));
    return 2 * common >= inner + before + behind;
  }

  void Take(int upload) {
    upload_ = upload;
    if (MyCount() == 0) return;
    const std::vector<int> lengths = Continuations();
    std::vector<Run> runs;
    if (!lengths.empty()) runs = {{0, Size() - lengths.front(), lengths.front()}};
    std::vector<Run> other;
    if (lengths.empty() || 2 * lengths.front() < Known()) Divide(0, MyCount(), 0, Size(), other);
    int common = 0;
    for (const Run& run : other) common += run.L;
    bool unsure = lengths.size() > 1 || (lengths.size() == 1 && OneOfARepetition(lengths.front()));
    if (!other.empty() && HalfAlike(other) && (lengths.empty() || common > lengths.front()) &&
        (lengths.empty() || !Mine().Complete || other.back().S + other.back().L == Size())) {
      runs = other;
      unsure = false;
    }
    Merge(runs, unsure);
  }

  int Known() const {
    int known = 0;
    for (const std::uint32_t number : Mine().Records) {
      known += std::ranges::any_of(items_, [&](const Item& item) { return item.Number == number; });
    }
    return known;
  }

  bool OneOfARepetition(int overlap) const {
    bool repeats = false;
    for (int i = 1; i < MyCount(); ++i)
      repeats = repeats || Mine().Records[At(i)] == Mine().Records[At(i - 1)];
    for (int i = 1; i < overlap; ++i)
      if (Mine().Records[At(i)] != Mine().Records[0]) return false;
    return repeats;
  }

  void Merge(const std::vector<Run>& runs, bool unsure) {
    // Where each of my records goes: onto a place, or before one.
    std::vector<int> onto(At(MyCount()), -1);
    std::vector<int> before(At(MyCount()), -1);
    for (const Run& run : runs)
      for (int i = 0; i < run.L; ++i) onto[At(run.U + i)] = run.S + i;
    if (runs.empty()) {
      std::fill(before.begin(), before.end(), Stranger());
    } else {
      const Run& a = runs.front();
      const Run& z = runs.back();
      const int left = PieceBefore(a.S);
      const int rest = MyCount() - z.U - z.L;
      const int right = PieceFrom(z.S + z.L);
      for (int i = 0; i < MyCount(); ++i) {
        if (onto[At(i)] >= 0) continue;
        if (i < a.U) {
          before[At(i)] = left >= a.U ? a.S : a.S - left;
        } else if (i >= z.U + z.L) {
          before[At(i)] = right <= rest ? z.S + z.L + right : z.S + z.L;
        } else {
          int next = i;
          while (onto[At(next)] < 0) ++next;
          before[At(i)] = onto[At(next)];
        }
      }
    }
    std::vector<Item> merged;
    int lastNew = -1;
    for (int place = 0; place <= Size(); ++place) {
      for (int i = 0; i < MyCount(); ++i) {
        if (before[At(i)] != place) continue;
        const bool starts =
            i == 0 && (runs.empty() || (place < Size() && items_[At(place)].Record.AfterSeam));
        const bool mark = unsure && (i == 0 || onto[At(i - 1)] >= 0);
        lastNew = mark ? static_cast<int>(merged.size()) : lastNew;
        merged.push_back(
            {Mine().Records[At(i)], {upload_, i, false, starts, mark}, {{upload_, i}}});
      }
      if (place == Size()) break;
      merged.push_back(items_[At(place)]);
      for (int i = 0; i < MyCount(); ++i)
        if (onto[At(i)] == place) merged.back().In.emplace_back(upload_, i);
    }
    items_ = merged;
    int from = -1;
    int to = -1;
    for (int place = 0; place < Size(); ++place) {
      for (const auto& [upload, record] : items_[At(place)].In) {
        if (upload != upload_) continue;
        if (record == 0) from = place;
        if (record == MyCount() - 1) to = place;
      }
    }
    for (int place = from + 1; place <= to; ++place) items_[At(place)].Record.AfterSeam = false;
  }

  int Stranger() const {
    if (!Mine().Undated) return Size();
    for (int place = 0; place < Size(); ++place) {
      const Item& item = items_[At(place)];
      if (item.Record.AfterSeam && item.Number / 2 >= Mine().Records.back() / 2) return place;
    }
    return Size();
  }

  void MarkDisputes() {
    for (int upload = 0; upload < static_cast<int>(uploads_.size()); ++upload) {
      int last = -1;
      for (int place = 0; place < Size(); ++place) {
        const bool has = std::ranges::any_of(items_[At(place)].In,
                                             [&](const auto& in) { return in.first == upload; });
        if (!has) continue;
        for (int between = last + 1; last >= 0 && between < place; ++between)
          items_[At(between)].Record.Disputed = true;
        last = place;
      }
    }
  }

  const std::vector<PlainUpload>& uploads_;
  int upload_ = 0;
  std::vector<Item> items_;
};

}  // namespace tessmar
