#pragma once

#include "mesh/database/ElementType.h"

#include <string>
#include <vector>

namespace Tarn {
class MeshDatabase;
}

namespace viewer {

/// What can be picked, as the keys of the window group it.
struct PickKind {
  char key;
  const char* name;
  std::vector<std::string> filter; ///< names of the pick filter
};

/// Nodes, edges, faces and solids.
const std::vector<PickKind>& pick_kinds();
/// The names of all four.
std::vector<std::string> all_kinds_filter();

/// The names of the kinds of element that the mesh has; "Edge" only where it has edge elements.
std::vector<std::string> filter_of_mesh(const Tarn::MeshDatabase& database);

/// A filter in words: "nodes, faces", "all"; the filter's own names where the four do not make it up.
std::string describe_filter(const std::vector<std::string>& filter);
/// Whether the filter admits any of the kind.
bool admits(const std::vector<std::string>& filter, const PickKind& kind);
/// The types of element that the filter admits, in increasing order.
std::vector<Tarn::ElementType> admitted_types(const std::vector<std::string>& filter);
/// Adds the kind to the filter, or takes it out when it is there.
std::vector<std::string> toggled(const std::vector<std::string>& filter, const PickKind& kind);

} // namespace viewer
