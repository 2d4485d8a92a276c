#pragma once

#include "mesh/MeshVector.h"

#include <vector>

namespace Tarn {
class MeshDatabase;
}

namespace viewer {

/// The highest topological dimension of the elements in `mesh`, 0 when it has nodes or one-node elements only.
int highest_dimension(const MeshVector& mesh);

/// Finds the owners that lie wholly on elements of a higher dimension than their own: side sets, boundary surfaces,
/// node sets on a mesh. `meshes` holds what each owner draws, all of the database together. A node or an element lies
/// on another element when that has all of its corners; an owner that draws nothing lies on nothing.
///
/// One flag per owner. The cost is one pass over the connectivity of the elements of higher dimension, and nothing
/// where all owners have the same dimension.
std::vector<bool> find_covered_owners(Tarn::MeshDatabase& database, const std::vector<MeshVector>& meshes);

} // namespace viewer
