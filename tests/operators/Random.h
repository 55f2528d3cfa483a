#pragma once

#include <QtGlobal>
#include <initializer_list>
#include <random>
#include <vector>

namespace tessmar::test {

/// The luck of one step: the same for the same seed and number, whatever happened before.
class Random {
 public:
  Random(quint64 seed, int step) {
    std::seed_seq sequence{static_cast<quint32>(seed), static_cast<quint32>(seed >> 32),
                           static_cast<quint32>(step)};
    engine_.seed(sequence);
  }

  /// 0 to limit - 1; limit is at least 1.
  int Below(int limit) { return static_cast<int>(engine_() % static_cast<quint64>(limit)); }
  int Between(int least, int most) { return least + Below(most - least + 1); }
  bool OneIn(int chances) { return Below(chances) == 0; }

  /// One of them; there is at least one.
  template <typename Container>
  auto& OneOf(Container& all) {
    return *std::next(std::begin(all), Below(static_cast<int>(std::size(all))));
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace tessmar::test
