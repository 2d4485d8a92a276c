#include "tests/pick/GeometryDouble.h"

#include "platform/base/OBPickUtil.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>

namespace {

GeometryDouble* current = nullptr;

// The definition that ours hides.
template <class Function> Function real(const char* name) {
  void* found = dlsym(RTLD_NEXT, name);
  if (!found) std::abort();
  return reinterpret_cast<Function>(found);
}

std::vector<double> joined(std::initializer_list<const double*> points) {
  std::vector<double> all;
  for (const double* each : points)
    all.insert(all.end(), each, each + 3);
  return all;
}

// The script's answer; false when there is none to give.
bool answer(const GeometryDouble::Call& call, double* hit, double& distance, int& result) {
  if (!current) return false;
  current->calls.push_back(call);
  if (!current->script) return false;
  const GeometryDouble::Answer given = current->script(call);
  result = given.result;
  if (result == 0) return true;
  std::copy_n(given.point, 3, hit);
  distance = given.distance;
  return true;
}

} // namespace

GeometryDouble::GeometryDouble() { current = this; }

GeometryDouble::~GeometryDouble() { current = nullptr; }

std::vector<std::string> GeometryDouble::kinds() const {
  std::vector<std::string> kinds;
  for (const Call& call : calls)
    kinds.push_back(call.kind);
  return kinds;
}

namespace OBPickUtil {

int IntersectLineWithLine(const double* p1, const double* p2, const double* q1, const double* q2, double tolerance,
                          double& t, double* hit, double& u, double& distance) {
  int result = 0;
  if (answer({"line", joined({p1, p2, q1, q2}), tolerance}, hit, distance, result)) return result;
  static const auto next =
      real<decltype(&IntersectLineWithLine)>("_ZN10OBPickUtil21IntersectLineWithLineEPKdS1_S1_S1_dRdPdS2_S2_");
  return next(p1, p2, q1, q2, tolerance, t, hit, u, distance);
}

int IntersectTriangleWithLine(const double* a, const double* b, const double* c, const double* p1, const double* p2,
                              double tolerance, double& t, double* hit, double* barycentric, double& distance) {
  int result = 0;
  if (answer({"triangle", joined({a, b, c, p1, p2}), tolerance}, hit, distance, result)) return result;
  static const auto next = real<decltype(&IntersectTriangleWithLine)>(
      "_ZN10OBPickUtil25IntersectTriangleWithLineEPKdS1_S1_S1_S1_dRdPdS3_S2_");
  return next(a, b, c, p1, p2, tolerance, t, hit, barycentric, distance);
}

bool IntersectQuadWithLine(const double* a, const double* b, const double* c, const double* d, const double* p1,
                           const double* p2, double tolerance, double& t, double* hit, double* barycentric,
                           double& distance) {
  int result = 0;
  if (answer({"quad", joined({a, b, c, d, p1, p2}), tolerance}, hit, distance, result)) return result != 0;
  static const auto next =
      real<decltype(&IntersectQuadWithLine)>("_ZN10OBPickUtil21IntersectQuadWithLineEPKdS1_S1_S1_S1_S1_dRdPdS3_S2_");
  return next(a, b, c, d, p1, p2, tolerance, t, hit, barycentric, distance);
}

} // namespace OBPickUtil
