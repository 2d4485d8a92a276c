#include "platform/util/TovanVector.h"

#include <cmath>

TovanVector::TovanVector(double px, double py, double pz) : x(px), y(py), z(pz) {}

TovanVector::TovanVector(const double* xyz) : x(xyz[0]), y(xyz[1]), z(xyz[2]) {}

double TovanVector::distance_between(const TovanVector& other) const {
  return std::hypot(x - other.x, y - other.y, z - other.z);
}
