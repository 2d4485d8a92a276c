#pragma once

#include <array>

namespace Tarn {
class MeshDatabase;
}

namespace viewer {

/// xmin, xmax, ymin ... of the nodes that elements of the database use; false, with `bounds` as it was, when no element
/// has a node.
bool mesh_bounds(Tarn::MeshDatabase& database, std::array<double, 6>& bounds);

} // namespace viewer
