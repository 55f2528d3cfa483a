// Uploads under each of 24 kinds of fault and under mixtures of them, direct and by modem, for
// records of three shapes, in virtual time; record by record against what the simulated logger
// stored. tests/proof/uploads runs it.

#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>

#include "proof/UploadRound.h"

namespace tessmar::test {
namespace {

/// In the short form of the rounds one plan in so many is run, which is each kind.
constexpr std::size_t kShortStep = 5;
constexpr int kRounds = 6;
constexpr int kMixtures = 192;
constexpr int kShortMixtures = 12;
constexpr int kCoincidences = 24;

/// All that is uploaded, by a seed: each kind alone on each line and for each shape, one of the
/// rounds broken off and begun again, then mixtures, and then what only the count can show.
std::vector<Plan> MakePlans(std::uint32_t seed, int rounds, int mixtures) {
  std::vector<Plan> plans;
  std::mt19937 luck(seed);
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t kind = 0; kind < kKinds.size(); ++kind) {
      for (const bool modem : {false, true}) {
        for (const Shape& shape : kShapes) {
          const bool last = round == rounds - 1;
          const auto how = static_cast<BreakOff>(1 + luck() % 3);
          plans.push_back({{kind}, modem, shape, last ? how : BreakOff::None, false, 0});
        }
      }
    }
  }
  for (int i = 0; i < mixtures; ++i) {
    Plan plan{{}, luck() % 2 == 0, kShapes[luck() % kShapes.size()], BreakOff::None, false, 0};
    const std::size_t count = 2 + luck() % 2;
    while (plan.Kinds.size() < count) plan.Kinds.push_back(luck() % kKinds.size());
    plans.push_back(plan);
  }
  for (int i = 0; i < kCoincidences; ++i) {
    const auto shape = static_cast<std::size_t>(i) % kShapes.size();
    plans.push_back({{}, i % 2 == 0, kShapes[shape], BreakOff::None, true, 0});
  }
  for (Plan& plan : plans) plan.Seed = luck();
  return plans;
}

std::string NameOf(const Plan& plan) {
  std::string name;
  for (const std::size_t kind : plan.Kinds) {
    const auto names = sim::FailureModes();
    const auto found = std::ranges::find(names, kKinds[kind].Mode, &sim::FailureModeName::Mode);
    if (!name.empty()) name += '+';
    name += found->Name;
  }
  return name;
}

std::string Describe(const Plan& plan) {
  constexpr std::array<const char*, 4> kHow{"", ", stopped", ", unplugged", ", gone silent"};
  const std::string name = plan.Coincidence ? "coincidence" : NameOf(plan);
  return name + (plan.Modem ? ", by modem, " : ", direct, ") + std::to_string(plan.Records.Analog) +
         "+" + std::to_string(plan.Records.Pulse) + " channels" +
         kHow[static_cast<std::size_t>(plan.How)];
}

struct Order {
  std::uint32_t Seed = 1;
  bool Short = false;
  std::optional<std::size_t> Only;
};

class Proof {
 public:
  explicit Proof(const Order& order) : order_(order) {}

  int Run() {
    const std::vector<Plan> plans = order_.Short ? MakePlans(order_.Seed, 2, kShortMixtures)
                                                 : MakePlans(order_.Seed, kRounds, kMixtures);
    for (std::size_t i = 0; i < plans.size(); ++i) {
      const bool alone = plans[i].Kinds.size() == 1;
      if (order_.Only ? *order_.Only == i : !order_.Short || !alone || i % kShortStep == 0)
        Run(plans[i], i);
    }
    if (!order_.Short) PrintKinds();
    PrintSums();
    return short_ ? EXIT_FAILURE : EXIT_SUCCESS;
  }

 private:
  void Run(const Plan& plan, std::size_t index) {
    const QTemporaryDir folder;
    Tally tally;
    const std::string wrong =
        RunPlan(plan, folder.filePath(QStringLiteral("archive.sqlite")), tally);
    Add(plan.Coincidence ? coincidences_ : plan.IsApart() ? apart_ : sum_, tally);
    (plan.Modem ? byModem_ : direct_) += tally.Uploads;
    if (plan.Kinds.size() == 1) Add(byKind_[plan.Kinds.front()], tally);
    if (wrong.empty()) return;
    short_ = true;
    std::printf("uploads: number %zu of seed %u (%s): %s FALLS SHORT\n", index, order_.Seed,
                Describe(plan).c_str(), wrong.c_str());
  }

  static void Add(Tally& sum, const Tally& part) {
    sum.Uploads += part.Uploads;
    sum.Complete += part.Complete;
    sum.Short += part.Short;
    sum.Long += part.Long;
    sum.Hidden += part.Hidden;
    sum.Failed += part.Failed;
    sum.BrokenOff += part.BrokenOff;
    sum.Whole += part.Whole;
    sum.Records += part.Records;
    sum.Failures += part.Failures;
    sum.BegunAnew += part.BegunAnew;
    sum.Of += part.Of;
    sum.Cells += part.Cells;
    sum.OtherInArchive += part.OtherInArchive;
  }

  void PrintKinds() const {
    for (const auto& [kind, tally] : byKind_) {
      std::printf(
          "uploads: %-18s %2d uploads, %4lld requests failed, %2lld begun anew, %d short and said "
          "so;"
          " lost %lld, twice %lld, wrong %lld\n",
          NameOf({{kind}}).c_str(), tally.Uploads, static_cast<long long>(tally.Failures),
          static_cast<long long>(tally.BegunAnew), tally.Short,
          static_cast<long long>(tally.Of.Lost), static_cast<long long>(tally.Of.Twice),
          static_cast<long long>(tally.Of.Wrong));
    }
  }

  void PrintSums() {
    std::printf("uploads: seed %u: %d uploads, %d direct and %d by modem, %zu kinds of fault\n",
                order_.Seed, direct_ + byModem_, direct_, byModem_, byKind_.size());
    PrintSum("", sum_);
    PrintSum("where only the count can show it: ", apart_);
    PrintSum("a doubled answer with a lost request behind it: ", coincidences_);
    const int hidden = apart_.Hidden;
    std::printf(
        "uploads: %d of those that only the count can show have faults that the count does not "
        "show, 0 expected%s\n",
        hidden, Mark(hidden == 0));
    const int other = sum_.OtherInArchive + apart_.OtherInArchive + coincidences_.OtherInArchive;
    std::printf(
        "uploads: %lld cells of the archive, %d uploads differ from what came, 0 expected%s\n",
        static_cast<long long>(sum_.Cells + apart_.Cells + coincidences_.Cells), other,
        Mark(other == 0));
    short_ = short_ || hidden != 0 || other != 0 || !sum_.Of.IsNone() || !coincidences_.Of.IsNone();
  }

  static const char* Mark(bool kept) { return kept ? "" : " FALLS SHORT"; }

  static void PrintSum(const char* which, const Tally& tally) {
    std::printf(
        "uploads: %s%d complete, %d of them with more records than promised, %d short and said so,"
        " %d failed, %d broken off and %d of them whole beginnings; of %lld records lost %lld,"
        " twice %lld, wrong %lld\n",
        which, tally.Complete, tally.Long, tally.Short, tally.Failed, tally.BrokenOff, tally.Whole,
        static_cast<long long>(tally.Records), static_cast<long long>(tally.Of.Lost),
        static_cast<long long>(tally.Of.Twice), static_cast<long long>(tally.Of.Wrong));
  }

  Order order_;
  Tally sum_;
  Tally apart_;
  Tally coincidences_;
  std::map<std::size_t, Tally> byKind_;
  int direct_ = 0;
  int byModem_ = 0;
  bool short_ = false;
};

}  // namespace
}  // namespace tessmar::test

int main(int argc, char** argv) {
  tessmar::test::Order order;
  for (int i = 1; i < argc; ++i) {
    const bool hasNumber = i + 1 < argc;
    if (std::strcmp(argv[i], "--short") == 0) {
      order.Short = true;
    } else if (std::strcmp(argv[i], "--seed") == 0 && hasNumber) {
      order.Seed = static_cast<std::uint32_t>(std::strtoul(argv[++i], nullptr, 10));
    } else if (std::strcmp(argv[i], "--only") == 0 && hasNumber) {
      order.Only = std::strtoul(argv[++i], nullptr, 10);
    } else {
      std::fprintf(stderr, "usage: proof-uploads [--short] [--seed N] [--only NUMBER]\n");
      return 2;
    }
  }
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  return tessmar::test::Proof(order).Run();
}
