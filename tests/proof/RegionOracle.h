#pragma once

#include "tests/proof/Scene.h"

#include <array>
#include <cstdint>
#include <set>
#include <utility>
#include <vector>

/// Region picks worked out by brute force, in extended precision and with formulas of their own.
namespace proof {

using Real = long double;
/// Display pixels, and depth from 0 to 1.
using Pixel = std::array<Real, 3>;

/// Projects world points as a camera in a viewport does.
class Projection {
public:
  Projection(vtkCamera* camera, const Scene& scene, const Look& look);
  Pixel operator()(const Point& point) const;

private:
  Real eye_[3], right_[3], up_[3], ahead_[3];
  Real half_width_, half_height_; // of the view, in perspective at distance 1
  Real near_, far_;
  bool parallel_;
  Real left_, bottom_, width_, height_; // of the viewport, pixels
};

/// A region of the screen; its border belongs to it.
struct Region {
  enum Kind { Box, Circle, Polygon } kind = Box;
  std::vector<std::array<double, 2>> corners; ///< of a box two opposite ones; of a circle its centre
  double radius = 0;

  bool touches(const Pixel& p) const;
  bool touches(const Pixel& a, const Pixel& b) const;
  bool touches(const Pixel& a, const Pixel& b, const Pixel& c) const;
};

/// What the pick filter admits, of what a region can pick.
struct Admitted {
  bool nodes = true;
  bool edges = true;
  std::set<Tarn::ElementType> kinds = {Tarn::Tri, Tarn::Quad, Tarn::Tet, Tarn::Hex, Tarn::Wedge, Tarn::Pyramid};
};

/// Entities by their place in the mesh; edges by their two corners, smaller first.
struct Entities {
  std::set<int> nodes;
  std::set<std::pair<int, int>> edges;
  std::set<int> elements;
};

inline bool operator==(const Entities& left, const Entities& right) {
  return left.nodes == right.nodes && left.edges == right.edges && left.elements == right.elements;
}

/// All entities of what is shown that touch the region, or lie in it as a whole.
Entities pick_through(const Mesh& mesh, const std::vector<char>& shown, const Projection& project, const Region& region,
                      const Admitted& admitted, bool whole);

/// A depth buffer: `width * height` values, rows from the bottom.
struct Depths {
  int width;
  int height;
  std::vector<float> values;
};

/// Those of the entities that show: nodes that do, elements of 2 nodes of which both do, of more nodes of which 3 do.
Entities visible_of(const Entities& entities, const Mesh& mesh, const Projection& project, const Depths& depths);

} // namespace proof
