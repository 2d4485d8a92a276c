#pragma once

#include "mesh/MeshVector.h"

#include <vtkSmartPointer.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

class vtkUnstructuredGrid;
struct EntityColors;
struct Side;
namespace Tarn {
class MeshData;
}

/// What an unshrunk grid is made from. Everything is borrowed for the call.
struct VolumeGridSource {
  Tarn::MeshData* database;
  const MeshVector& mesh;                          ///< the entities to draw
  const std::vector<int>* node_positions;          ///< where each node's colour stands; null is identity
  const std::vector<int> (*element_positions)[10]; ///< where each element's colour stands; null is identity
  const EntityColors& colors;
};

/// A grid with, in this order, a vertex on each node, a poly-line through the nodes of each edge, a vertex on each
/// one-node element, a poly-vertex on each superelement, and a triangle or quadrilateral, linear or quadratic, for each
/// face of the skin. Points are shared and numbered in the order in which cells meet them. "NodeIds" and "ElemIds" hold
/// the handles (0 for the vertices of nodes), "Color" the colours unless all have the same.
///
/// Entities without nodes, faces of unknown kinds and faces that lack a node are left out. The solids and shells of
/// `source.mesh` are not looked at: `skin` stands for them, and carries their positions.
///
/// Offsets and point ids are kept in 32 bits while cells use at most `narrow_uses` points in all, else in 64.
vtkSmartPointer<vtkUnstructuredGrid>
make_volume_grid(const VolumeGridSource& source, const std::vector<Side*>& skin,
                 std::size_t narrow_uses = std::numeric_limits<std::int32_t>::max());
