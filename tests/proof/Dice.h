#pragma once

#include <random>

namespace proof {

/// Random numbers that are the same everywhere.
class Dice {
public:
  explicit Dice(unsigned seed) : random_(seed) {}
  double between(double low, double high) { return low + (high - low) * (random_() / 4294967296.0); }
  int below(int count) { return static_cast<int>(random_() % unsigned(count)); }
  bool toss() { return below(2) == 1; }

private:
  std::mt19937 random_;
};

} // namespace proof
