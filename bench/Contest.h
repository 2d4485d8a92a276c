#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// One of those whose times are compared. Only `run` is timed; `prepare` makes what it starts from, `release` frees
/// what it made.
struct Contender {
  std::function<void()> run;             ///< timed
  std::function<void()> release = [] {}; ///< untimed, after each run
  std::function<void()> prepare = [] {}; ///< untimed, before each run
};

/// Prepares, runs and releases once; gives the milliseconds of the run.
double time_once(const Contender& contender);

/// Runs the contenders in turn, all of them in each round, after one untimed round to warm up. There are at least 5
/// rounds, and more, up to 25, as long as all of them together take less than 3 seconds. Gives the median of each one's
/// times in milliseconds.
std::vector<double> hold_contest(const std::vector<Contender>& contenders);

/// The slope of the least-squares line through the logarithms of `y` over those of `x`.
double fitted_exponent(const std::vector<double>& x, const std::vector<double>& y);

} // namespace bench
