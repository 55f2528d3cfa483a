#include "proof/UploadRound.h"

#include <QSqlQuery>
#include <cmath>
#include <cstdio>
#include <map>
#include <random>

#include "archive/Store.h"
#include "proof/ProgramCore.h"
#include "sim/LoggerSetup.h"
#include "sim/SimulatedLogger.h"
#include "sim/SimulatedModem.h"
#include "support/SimulatedLine.h"

namespace tessmar::test {
namespace {

using sim::FailureMode;
using StoredRecord = sim::Bytes;

constexpr std::uint8_t kBlockRequest = 0x0D;

StoredRecord BytesOfSample(const LiveSample& record, int words) {
  StoredRecord bytes;
  sim::AppendNumber(bytes, record.PackedTime, 4);
  for (int word = 0; word < words; ++word)
    sim::AppendNumber(bytes,
                      static_cast<std::uint32_t>(record.Value[static_cast<std::size_t>(word)]), 2);
  return bytes;
}

/// @param whole  they should be all; otherwise a beginning of them.
Difference Compare(const std::vector<StoredRecord>& got, const std::vector<StoredRecord>& stored,
                   bool whole) {
  const auto key = [](const StoredRecord& record) {
    return std::string(record.begin(), record.end());
  };
  std::map<std::string, std::size_t> places;
  for (std::size_t i = 0; i < stored.size(); ++i) places.emplace(key(stored[i]), i);
  Difference difference;
  std::vector<int> seen(whole ? stored.size() : std::min(got.size(), stored.size()), 0);
  for (std::size_t i = 0; i < got.size(); ++i) {
    const auto found = places.find(key(got[i]));
    if (found == places.end() || found->second >= seen.size())
      ++difference.Wrong;
    else
      ++seen[found->second];
  }
  for (const int times : seen) {
    difference.Lost += times == 0 ? 1 : 0;
    difference.Twice += times > 1 ? times - 1 : 0;
  }
  // The order is right when nothing else is wrong and each stands at its place.
  if (difference.IsNone() && !std::equal(got.begin(), got.end(), stored.begin()))
    ++difference.Wrong;
  return difference;
}

/// One program with one logger, and what is done with them.
class Round {
 public:
  Round(const Plan& plan, const QString& archive)
      : plan_(plan), luck_(plan.Seed), archive_(archive), core_(archive), logger_(Options()) {
    stored_.reserve(static_cast<std::size_t>(logger_.Options().Records));
    for (int i = 0; i < logger_.Options().Records; ++i) {
      StoredRecord bytes;
      logger_.Records().AppendRecord(bytes, i);
      stored_.push_back(bytes);
    }
  }

  /// @return what went wrong, or an empty text.
  std::string Run(Tally& tally) {
    if (!PlugIn(plan_.How == BreakOff::Unplugged)) return "there was no connection";
    AddFaults();
    if (plan_.How != BreakOff::None) {
      const std::string wrong = RunBrokenOff(tally);
      if (!wrong.empty()) return wrong;
    }
    return RunToTheEnd(tally);
  }

 private:
  int Any(int end) { return static_cast<int>(luck_() % static_cast<std::uint32_t>(end)); }

  sim::LoggerOptions Options() {
    return {.AnalogChannels = plan_.Records.Analog,
            .PulseChannels = plan_.Records.Pulse,
            .Records = 150 + Any(250),
            .BaudRate = plan_.Coincidence
                            ? 9600
                            : std::array{0, 9600, 38400}[static_cast<std::size_t>(Any(3))],
            .Seed = plan_.Seed};
  }

  bool PlugIn(bool losesCarrier) {
    line_.reset();
    // What is under way outlives the line.
    core_.Loop.RunFor(20'000);
    logger_.ClearFaults();
    if (plan_.Modem) {
      modem_.emplace(logger_,
                     sim::ModemOptions{.Behaviour = losesCarrier ? sim::ModemBehaviour::CarrierLost
                                                                 : sim::ModemBehaviour::Connect});
      line_.emplace(core_.Port, core_.Loop, *modem_);
    } else {
      line_.emplace(core_.Port, core_.Loop, logger_);
    }
    if (core_.Connect(plan_.Modem)) return true;
    // A first call may meet what an earlier one has left in the logger; an operator tries again.
    if (modem_ && plan_.Modem) modem_->LineDropped();
    return core_.Connect(plan_.Modem);
  }

  void AddFaults() {
    const double share = 1.0 / std::max(1.0, static_cast<double>(plan_.Kinds.size()));
    for (const std::size_t kind : plan_.Kinds)
      logger_.AddFault({.Mode = kKinds[kind].Mode,
                        .Count = kKinds[kind].Count,
                        .Rate = kKinds[kind].Rate * share,
                        .Opcode = kBlockRequest});
  }

  std::vector<StoredRecord> Received() const {
    std::vector<StoredRecord> records;
    records.reserve(static_cast<std::size_t>(core_.History.Count()));
    for (int i = 0; i < core_.History.Count(); ++i)
      records.push_back(BytesOfSample(core_.History.Record(i), Words()));
    return records;
  }
  int Words() const { return plan_.Records.Analog + plan_.Records.Pulse; }

  void Count(Tally& tally) {
    ++tally.Uploads;
    if (!core_.Upload) return;
    tally.Failures += core_.Upload->TotalFailures();
    tally.BegunAnew += core_.Upload->TimesBegunAnew();
  }

  std::string RunBrokenOff(Tally& tally) {
    const int enough = 1 + Any(140);
    bool cut = false;
    const std::optional<UploadEnd> end = core_.UploadHistory([&] {
      if (core_.History.Count() < enough || cut) return !(cut && plan_.How == BreakOff::Stop);
      cut = true;
      if (plan_.How == BreakOff::Unplugged && !plan_.Modem) core_.Port.Unplug();
      if (plan_.How == BreakOff::Silence) logger_.AddFault({.Mode = FailureMode::Silent});
      return plan_.How != BreakOff::Stop;
    });
    Count(tally);
    ++tally.BrokenOff;
    if (!end) return "the upload did not begin";
    // A fast line is through before the carrier is lost.
    const bool through = plan_.How == BreakOff::Unplugged && plan_.Modem;
    if (*end == UploadEnd::Complete && !through) return "an upload without an end was complete";
    const Difference difference = Compare(Received(), stored_, false);
    tally.Whole += difference.IsNone() ? 1 : 0;
    if (!plan_.IsApart() && !difference.IsNone()) tally.Of += difference;
    const std::string wrong = CheckArchive(tally);
    if (!wrong.empty()) return wrong;
    // The next session: the operator ends this one and connects again.
    core_.Actions.DisconnectEntry();
    if (!PlugIn(false)) return "there was no second connection";
    AddFaults();
    return difference.IsNone() || plan_.IsApart() ? "" : "what was broken off is no beginning";
  }

  std::string RunToTheEnd(Tally& tally) {
    const std::optional<UploadEnd> end = core_.UploadHistory([this] {
      if (plan_.Coincidence) DoubleAndLose();
      return true;
    });
    Count(tally);
    if (!end) return "the upload did not begin";
    if (core_.Link.Busy) return "the link is still busy";
    Difference difference;
    if (*end == UploadEnd::Failed) {
      ++tally.Failed;
    } else if (core_.Upload->IsShort()) {
      ++tally.Short;
    } else {
      difference = CheckComplete(tally);
    }
    const std::string wrong = CheckArchive(tally);
    if (!wrong.empty()) return wrong;
    if (plan_.IsApart()) return {};
    if (!difference.IsNone()) return "the records are not those that the logger stored";
    return *end == UploadEnd::Failed || core_.Upload->IsShort() ? "the upload is not whole" : "";
  }

  Difference CheckComplete(Tally& tally) {
    const Difference difference = Compare(Received(), stored_, true);
    const bool isLong = core_.History.Count() > core_.Upload->TotalRecords();
    ++tally.Complete;
    tally.Long += isLong ? 1 : 0;
    tally.Hidden += !isLong && !difference.IsNone() ? 1 : 0;
    tally.Records += core_.History.Count();
    tally.Of += difference;
    return difference;
  }

  /// Asked after each block. The second block comes twice, and the request for the third is lost.
  void DoubleAndLose() {
    const int blocks = core_.History.Count() / sim::RecordsPerBlock(logger_.Options());
    if (blocks <= blocksSeen_) return;
    blocksSeen_ = blocks;
    if (blocks == 1) logger_.AddFault({.Mode = FailureMode::AnswerTwice, .Count = 1});
    if (blocks == 2) logger_.AddFault({.Mode = FailureMode::RequestLost, .Count = 1});
  }

  /// The upload as the archive has it, against what came.
  std::string CheckArchive(Tally& tally) {
    if (!core_.LetArchiveFinish()) return "the archive does not come to its end";
    Store store(archive_);
    store.Open(Store::Access::Read);
    const qint64 id = LastUploadOf(store);
    const std::vector<StoredRecord> received = Received();
    const std::vector<ChannelRow> channels = store.Channels(id);
    std::size_t number = 0;
    bool same = true;
    store.ForEachRecord(id, [&](const RecordRow& row) {
      same = same && number < received.size() && IsSame(row, received[number], channels);
      same = same && row.Number == static_cast<std::int32_t>(number) + 1;
      ++number;
      tally.Cells += 2 + Words();
    });
    same = same && number == received.size();
    tally.OtherInArchive += same ? 0 : 1;
    return same ? "" : "the archive does not hold what came";
  }

  static qint64 LastUploadOf(const Store& store) {
    QSqlQuery query = store.Run(QStringLiteral("SELECT max(id) FROM upload"));
    return query.next() ? query.value(0).toLongLong() : 0;
  }

  bool IsSame(const RecordRow& row, const StoredRecord& bytes,
              const std::vector<ChannelRow>& channels) const {
    std::uint32_t stamp = 0;
    for (std::size_t i = 0; i < 4; ++i) stamp |= std::uint32_t{bytes[i]} << (8 * i);
    const sim::Bytes raw(row.Raw.begin(), row.Raw.end());
    if (row.Stamp != stamp || !std::equal(raw.begin(), raw.end(), bytes.begin() + 4, bytes.end()))
      return false;
    if (row.LoggerTime != TimeText(stamp)) return false;
    return std::all_of(channels.begin(), channels.end(), [&](const ChannelRow& channel) {
      return IsValueRight(row, channel, bytes);
    });
  }

  static QString TimeText(std::uint32_t stamp) {
    const auto part = [stamp](unsigned shift, unsigned bits) {
      return stamp >> shift & ((1U << bits) - 1);
    };
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%04u-%02u-%02uT%02u:%02u:%02u",
                  2000 + part(22, 10) / 12, part(22, 10) % 12 + 1, part(17, 5), part(12, 5),
                  part(6, 6), part(0, 6));
    return QString::fromLatin1(text.data());
  }

  /// The reading of a channel with a sensor of its own, by the simulator's plan of it.
  bool IsValueRight(const RecordRow& row, const ChannelRow& channel,
                    const StoredRecord& bytes) const {
    const auto place = static_cast<std::size_t>(channel.Place);
    const std::optional<double>& value = row.Values[place];
    if (!value || channel.Place >= plan_.Records.Analog || !channel.Method.isEmpty())
      return value.has_value();
    const sim::ChannelPlan& plan = sim::PlanOf(channel.Place, plan_.Records.Analog);
    const int word = bytes[4 + 2 * place] + 256 * bytes[5 + 2 * place];
    const double expected = plan.Low + (plan.High - plan.Low) * word / plan.RawHigh;
    return std::abs(*value - expected) <= 0.501 * std::pow(10.0, -plan.Decimals);
  }

  Plan plan_;
  std::mt19937 luck_;
  QString archive_;
  ProgramCore core_;
  sim::SimulatedLogger logger_;
  std::optional<sim::SimulatedModem> modem_;
  std::optional<SimulatedLine> line_;
  std::vector<StoredRecord> stored_;
  int blocksSeen_ = 0;
};

}  // namespace

std::string RunPlan(const Plan& plan, const QString& archive, Tally& tally) {
  return Round(plan, archive).Run(tally);
}

}  // namespace tessmar::test
