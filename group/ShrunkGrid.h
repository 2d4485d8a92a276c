#pragma once

#include "mesh/MeshVector.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

class vtkUnstructuredGrid;
struct EntityColors;
namespace Tarn {
class MeshData;
}

/// What a shrunk grid is made from. Everything is borrowed for the call.
struct ShrunkGridSource {
  Tarn::MeshData* database;
  const MeshVector& mesh;                          ///< the elements to draw; nodes are not
  const std::vector<int> (*element_positions)[10]; ///< where each element's colour stands; null is identity
  const EntityColors& colors;
  double factor; ///< what is left of each distance from the element's centre
};

/// Empties the grid and fills it with each element on its own, on points of its own that are pulled to the mean of its
/// corner nodes: a vertex, line, triangle or quadrilateral, a polygon per side of a solid, a poly-vertex for a
/// superelement. Elements that lack a corner node are left out. There are no arrays but "Color", and that only unless
/// everything has the same colour.
///
/// The grid gets arrays of its own: those that it held are left as they are, since other data sets may share them.
///
/// Offsets and point ids are kept in 32 bits while cells use at most `narrow_uses` points in all, else in 64.
void fill_shrunk_grid(const ShrunkGridSource& source, vtkUnstructuredGrid* grid,
                      std::size_t narrow_uses = std::numeric_limits<std::int32_t>::max());
