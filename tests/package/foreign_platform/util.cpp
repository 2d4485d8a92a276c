#include "platform/util/TovanBox.h"
#include "platform/util/TovanColor.h"
#include "platform/util/TovanColorTable.h"
#include "platform/util/TovanString.h"
#include "platform/util/TovanVector.h"

#include <cmath>

TovanColor::TovanColor(std::uint32_t value)
    : r(value & 255), g(value >> 8 & 255), b(value >> 16 & 255), a(value >> 24 & 255) {}

TovanColor::TovanColor(unsigned char red, unsigned char green, unsigned char blue, unsigned char alpha)
    : r(red), g(green), b(blue), a(alpha) {}

std::uint32_t TovanColor::value() const { return r | g << 8 | b << 16 | std::uint32_t{a} << 24; }

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
bool operator!=(const TovanColor& left, const TovanColor& right) { return left.value() != right.value(); }

TovanString::TovanString(const char* text) : text_(text ? text : "") {}
const char* TovanString::c_str() const { return text_.c_str(); }

TovanVector::TovanVector(double x_in, double y_in, double z_in) : x(x_in), y(y_in), z(z_in) {}
TovanVector::TovanVector(const double* xyz) : TovanVector(xyz[0], xyz[1], xyz[2]) {}
double TovanVector::distance_between(const TovanVector& other) const {
  return std::hypot(x - other.x, y - other.y, z - other.z);
}

TovanBox::TovanBox() : minimum_{1, 1, 1}, maximum_{-1, -1, -1} {}
TovanBox::TovanBox(const double* minimum, const double* maximum) { reset(minimum, maximum); }
void TovanBox::reset(const double* minimum, const double* maximum) {
  for (int i = 0; i < 3; ++i) {
    minimum_[i] = minimum[i];
    maximum_[i] = maximum[i];
  }
}
// Nothing is ruled out: slow, and right.
bool TovanBox::intersect(const TovanVector&, const TovanVector&) const { return true; }
const double* TovanBox::minimum() const { return minimum_; }
const double* TovanBox::maximum() const { return maximum_; }

TovanColor TovanColorTable::get_highlight_color() { return {0, 255, 0}; }
