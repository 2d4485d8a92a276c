#include "platform/util/TovanColor.h"

TovanColor::TovanColor(std::uint32_t value)
    : r(static_cast<unsigned char>(value & 0xffu)), g(static_cast<unsigned char>(value >> 8 & 0xffu)),
      b(static_cast<unsigned char>(value >> 16 & 0xffu)), a(static_cast<unsigned char>(value >> 24 & 0xffu)) {}

TovanColor::TovanColor(unsigned char red, unsigned char green, unsigned char blue, unsigned char alpha)
    : r(red), g(green), b(blue), a(alpha) {}

std::uint32_t TovanColor::value() const {
  return std::uint32_t(r) | std::uint32_t(g) << 8 | std::uint32_t(b) << 16 | std::uint32_t(a) << 24;
}

void TovanColor::to_rgb(double rgb[3]) const {
  rgb[0] = r / 255.0;
  rgb[1] = g / 255.0;
  rgb[2] = b / 255.0;
}

void TovanColor::to_rgba(unsigned char rgba[4]) const {
  rgba[0] = r;
  rgba[1] = g;
  rgba[2] = b;
  rgba[3] = a;
}

bool operator==(const TovanColor& left, const TovanColor& right) { return left.value() == right.value(); }

bool operator!=(const TovanColor& left, const TovanColor& right) { return !(left == right); }
