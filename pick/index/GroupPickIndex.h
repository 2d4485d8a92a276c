#pragma once

#include "group/GroupCache.h"
#include "mesh/MeshVector.h"
#include "pick/index/BoxTree.h"

#include <vtkType.h>

#include <array>
#include <optional>

class GMeshGroup;
namespace Tarn {
class MeshData;
}

/// Where the entities of a group lie, so that a pick looks at few of them: what is left out, the plain pick would not
/// take. Made at the first pick of a large group and kept with it until its entities change or move.
class GroupPickIndex : public GroupCache {
public:
  /// Whether picks of this process use indices at all; true at first. Set on the thread that picks.
  static bool is_used;

  /// The entities of the group that a pick has to look at, in their order: those in boxes that `admit` admits, written
  /// to `storage`; or all of them, where an index would not pay or cannot be made.
  template <class Admit> static const MeshVector& reduce(GMeshGroup& group, const Admit& admit, MeshVector& storage) {
    const GroupPickIndex* const index = of(group);
    const MeshVector& mesh = filtered_mesh(group);
    if (!index) return mesh;
    reduce(mesh.nodes, index->nodes_, admit, storage.nodes);
    for (std::size_t kind = 1; kind < mesh.elements.size(); ++kind)
      reduce(mesh.elements[kind], index->elements_[kind], admit, storage.elements[kind]);
    return storage;
  }

private:
  /// Null where the database does not tell enough, and for superelements: the list is looked at as it is.
  using Table = std::optional<BoxTree>;

  GroupPickIndex(Tarn::MeshData& database, const MeshVector& mesh, vtkMTimeType filtered, vtkMTimeType moved);

  static const GroupPickIndex* of(GMeshGroup& group);
  static const MeshVector& filtered_mesh(GMeshGroup& group);

  template <class H, class Admit>
  static void reduce(const std::vector<H>& list, const Table& table, const Admit& admit, std::vector<H>& reduced) {
    if (!table) {
      reduced = list;
      return;
    }
    reduced.clear();
    for (const std::uint32_t place : table->find(admit))
      reduced.push_back(list[place]);
    // A list that is not empty makes the plain pick sort what it found before; so it stays one, by what is not hit.
    if (reduced.empty() && !list.empty()) reduced.push_back(list.front());
  }

  Table nodes_;
  std::array<Table, 10> elements_; ///< by kind
  vtkMTimeType filtered_;          ///< when the entities that it was made of were last chosen
  vtkMTimeType moved_;             ///< and when they last changed or moved
};
