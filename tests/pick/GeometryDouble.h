#pragma once

#include <functional>
#include <string>
#include <vector>

/// Stands before the intersection tests of the visualization base: this program's definitions of them come first when
/// the library looks them up. Writes their calls down and hands them on, or answers by a script.
struct GeometryDouble {
  struct Call {
    std::string kind;           ///< "line", "triangle" or "quad"
    std::vector<double> points; ///< all points in the order given, the shape's and the ray's
    double tolerance;
  };
  struct Answer {
    int result; ///< nonzero for a hit
    double point[3];
    double distance;
  };

  GeometryDouble();
  ~GeometryDouble();

  std::vector<std::string> kinds() const;

  std::vector<Call> calls;
  std::function<Answer(const Call&)> script; ///< none: the true answer
};
