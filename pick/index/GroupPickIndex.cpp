#include "pick/index/GroupPickIndex.h"

#include "group/GMeshGroup.h"
#include "mesh/database/ElementType.h"
#include "model/GMeshModel.h"
#include "pick/index/EntityBoxes.h"

#include <limits>
#include <new>
#include <utility>
#include <vector>

namespace {

// A smaller group is picked before an index would be made.
constexpr std::size_t least_entities = 4096;
// Places in a list have 32 bits.
constexpr std::size_t most_entities = std::numeric_limits<std::uint32_t>::max();

std::size_t count_of(const MeshVector& mesh) {
  std::size_t count = mesh.nodes.size();
  for (std::size_t kind = 1; kind < mesh.elements.size(); ++kind)
    count += mesh.elements[kind].size();
  return count;
}

} // namespace

bool GroupPickIndex::is_used = true;

GroupPickIndex::GroupPickIndex(Tarn::MeshData& database, const MeshVector& mesh, vtkMTimeType filtered,
                               vtkMTimeType moved)
    : filtered_(filtered), moved_(moved) {
  if (mesh.nodes.size() <= most_entities) nodes_.emplace(boxes_of(database, mesh.nodes));
  std::vector<BoxTree::Box> boxes;
  for (std::size_t kind = 1; kind < mesh.elements.size(); ++kind) {
    const auto& elements = mesh.elements[kind];
    // Of superelements one may have more nodes than the rest of the mesh, and nobody tells in bulk how many.
    if (kind != Tarn::Superelement && elements.size() <= most_entities &&
        boxes_of(database, elements, static_cast<Tarn::ElementType>(kind), boxes))
      elements_[kind].emplace(boxes);
  }
}

const MeshVector& GroupPickIndex::filtered_mesh(GMeshGroup& group) { return group.get_filtered_mesh(); }

const GroupPickIndex* GroupPickIndex::of(GMeshGroup& group) {
  const MeshVector& mesh = group.get_filtered_mesh();
  // Who does not observe is not told when nodes move.
  if (!is_used || !group.observe_ || count_of(mesh) < least_entities) return nullptr;
  const vtkMTimeType filtered = group.filtered_time_.GetMTime();
  const vtkMTimeType moved = group.mesh_time_.GetMTime();
  const auto* index = static_cast<const GroupPickIndex*>(group.pick_cache_.get());
  if (!index || index->filtered_ != filtered || index->moved_ != moved) {
    group.pick_cache_.reset(); // two would take twice the memory
    try {
      group.pick_cache_.reset(new GroupPickIndex(*group.get_model()->database(), mesh, filtered, moved));
    } catch (const std::bad_alloc&) {
      return nullptr; // the plain pick needs none
    }
    index = static_cast<const GroupPickIndex*>(group.pick_cache_.get());
  }
  return index;
}
