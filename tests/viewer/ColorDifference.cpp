#include "ColorDifference.h"

#include <algorithm>
#include <cmath>

namespace colors {
namespace {

constexpr double pi = 3.14159265358979323846;
constexpr double machado[4][3][3] = {
    {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
    {{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}},
    {{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}},
    {{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}}};

double linear(unsigned char channel) {
  const double c = channel / 255.0;
  return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

double lab_curve(double t) { return t > 216.0 / 24389 ? std::cbrt(t) : (24389.0 / 27 * t + 16) / 116; }

Lab lab_of_linear(const std::array<double, 3>& rgb) {
  const double x = lab_curve((0.4124564 * rgb[0] + 0.3575761 * rgb[1] + 0.1804375 * rgb[2]) / 0.95047);
  const double y = lab_curve(0.2126729 * rgb[0] + 0.7151522 * rgb[1] + 0.0721750 * rgb[2]);
  const double z = lab_curve((0.0193339 * rgb[0] + 0.1191920 * rgb[1] + 0.9503041 * rgb[2]) / 1.08883);
  return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

double radians(double degrees) { return degrees * pi / 180; }

double hue(double a, double b) {
  const double degrees = a == 0 && b == 0 ? 0 : std::atan2(b, a) * 180 / pi;
  return degrees < 0 ? degrees + 360 : degrees;
}

double mean_hue(double h1, double h2, bool grey) {
  if (grey) return h1 + h2;
  if (std::abs(h1 - h2) <= 180) return (h1 + h2) / 2;
  return h1 + h2 < 360 ? (h1 + h2 + 360) / 2 : (h1 + h2 - 360) / 2;
}

double hue_step(double h1, double h2, bool grey) {
  const double step = h2 - h1;
  return grey ? 0 : step > 180 ? step - 360 : step < -180 ? step + 360 : step;
}

} // namespace

Lab seen(TovanColor color, Vision vision) {
  const std::array<double, 3> rgb = {linear(color.r), linear(color.g), linear(color.b)};
  std::array<double, 3> simulated{};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column)
      simulated[row] += machado[static_cast<int>(vision)][row][column] * rgb[column];
    simulated[row] = std::clamp(simulated[row], 0.0, 1.0);
  }
  return lab_of_linear(simulated);
}

double difference(const Lab& first, const Lab& second) {
  const double mean_chroma = (std::hypot(first[1], first[2]) + std::hypot(second[1], second[2])) / 2;
  const double seventh = std::pow(mean_chroma, 7);
  const double g = 0.5 * (1 - std::sqrt(seventh / (seventh + std::pow(25.0, 7))));
  const double a1 = first[1] * (1 + g), a2 = second[1] * (1 + g);
  const double c1 = std::hypot(a1, first[2]), c2 = std::hypot(a2, second[2]);
  const bool grey = c1 * c2 == 0;
  const double h1 = hue(a1, first[2]), h2 = hue(a2, second[2]);
  const double step_l = second[0] - first[0], step_c = c2 - c1;
  const double step_h = 2 * std::sqrt(c1 * c2) * std::sin(radians(hue_step(h1, h2, grey) / 2));
  const double l = (first[0] + second[0]) / 2 - 50, c = (c1 + c2) / 2, h = mean_hue(h1, h2, grey);
  const double t = 1 - 0.17 * std::cos(radians(h - 30)) + 0.24 * std::cos(radians(2 * h)) +
                   0.32 * std::cos(radians(3 * h + 6)) - 0.20 * std::cos(radians(4 * h - 63));
  const double turn = 30 * std::exp(-std::pow((h - 275) / 25, 2));
  const double rotation = 2 * std::sqrt(std::pow(c, 7) / (std::pow(c, 7) + std::pow(25.0, 7)));
  const double in_l = step_l / (1 + 0.015 * l * l / std::sqrt(20 + l * l));
  const double in_c = step_c / (1 + 0.045 * c);
  const double in_h = step_h / (1 + 0.015 * c * t);
  return std::sqrt(in_l * in_l + in_c * in_c + in_h * in_h - std::sin(radians(2 * turn)) * rotation * in_c * in_h);
}

} // namespace colors
