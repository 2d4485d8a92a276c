#include "viewer/HoverPace.h"

#include <algorithm>
#include <cmath>

namespace viewer {
namespace {

constexpr double least_rest = 0.03; // seconds: at once, for the eye
constexpr double most_rest = 1;
constexpr double rest_of_cost = 2;
constexpr double too_long = 2;

} // namespace

void HoverPace::moved(double now) {
  due_ = now + rest_;
  waiting_ = true;
}

void HoverPace::stop() { waiting_ = false; }

bool HoverPace::is_waiting() const { return waiting_; }

int HoverPace::wait_ms(double now) const { return std::max(0, static_cast<int>(std::ceil((due_ - now) * 1000))); }

void HoverPace::looked(double seconds) {
  waiting_ = false;
  rest_ = std::clamp(rest_of_cost * seconds, least_rest, most_rest);
}

bool HoverPace::is_too_long(double seconds) { return seconds > too_long; }

} // namespace viewer
