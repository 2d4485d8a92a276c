#include "Contest.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int least_rounds = 5;
constexpr int most_rounds = 25;
constexpr std::chrono::seconds long_enough(3);

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  if (values.size() % 2 == 1) return *middle;
  return (*middle + *std::max_element(values.begin(), middle)) / 2;
}

double mean_log(const std::vector<double>& values) {
  return std::accumulate(values.begin(), values.end(), 0.0, [](double sum, double v) { return sum + std::log(v); }) /
         static_cast<double>(values.size());
}

} // namespace

double time_once(const Contender& contender) {
  contender.prepare();
  const auto start = Clock::now();
  contender.run();
  const std::chrono::duration<double, std::milli> elapsed = Clock::now() - start;
  contender.release();
  return elapsed.count();
}

std::vector<double> hold_contest(const std::vector<Contender>& contenders) {
  for (const Contender& contender : contenders)
    time_once(contender);
  std::vector<std::vector<double>> times(contenders.size());
  const auto start = Clock::now();
  for (int round = 0; round < least_rounds || (round < most_rounds && Clock::now() - start < long_enough); ++round)
    for (std::size_t i = 0; i < contenders.size(); ++i)
      times[i].push_back(time_once(contenders[i]));
  std::vector<double> medians(contenders.size());
  std::transform(times.begin(), times.end(), medians.begin(), median);
  return medians;
}

double fitted_exponent(const std::vector<double>& x, const std::vector<double>& y) {
  const double x_mean = mean_log(x);
  const double y_mean = mean_log(y);
  double xy = 0;
  double xx = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const double dx = std::log(x[i]) - x_mean;
    xy += dx * (std::log(y[i]) - y_mean);
    xx += dx * dx;
  }
  return xy / xx;
}

} // namespace bench
