#pragma once

#include "mesh/MeshVector.h"
#include "viewer/EntityKinds.h"

#include <string>
#include <vector>

namespace Tarn {
class MeshDatabase;
}

namespace viewer {

/// Ids from `first` to `last`, both included.
struct IdRange {
  int first;
  int last;
};

/// Entities by their ids: "hex:1,5,9-12", "element@global:7".
struct IdSelection {
  EntityKind kind = EntityKind::Element;
  bool global = false; ///< by global id; never for nodes, which have none
  std::vector<IdRange> ranges;
};

/// Appends the entities to `found`, every one that has the id. Each range must meet at least one: else nothing is
/// appended, and the answer is one line that says which range met nothing; "" when all went well.
std::string find_entities(Tarn::MeshDatabase& database, const IdSelection& selection, MeshVector& found);

/// Ids in the form that `--select` takes: sorted, runs of three and more as a range. "" for none.
std::string id_list(EntityKind kind, std::vector<int> ids);

} // namespace viewer
