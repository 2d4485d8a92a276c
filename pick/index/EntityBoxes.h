#pragma once

#include "mesh/database/ElementType.h"
#include "mesh/database/Handle.h"
#include "pick/index/BoxTree.h"

#include <vector>

namespace Tarn {
class MeshData;
}

/// The boxes of nodes, read from the database in bulk.
std::vector<BoxTree::Box> boxes_of(Tarn::MeshData& database, const std::vector<Tarn::Handle<0>>& nodes);

/// The boxes of elements of one kind, not superelements, with all their nodes, read from the database in bulk. False,
/// with `boxes` of no use, where the database does not give all corners of each, or single elements' nodes otherwise.
bool boxes_of(Tarn::MeshData& database, const std::vector<Tarn::Handle<1>>& elements, Tarn::ElementType kind,
              std::vector<BoxTree::Box>& boxes);
