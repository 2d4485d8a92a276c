#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class EntitySelection;
namespace Tarn {
class MeshDatabase;
struct SMeshOwnerType;
} // namespace Tarn

namespace viewer {

/// What is known about something that was picked.
struct PickRecord {
  bool is_node = false;
  std::string type; ///< "Node", "Hex" and so on
  int id = 0;
  std::optional<int> global_id; ///< of elements that have one
  std::uint64_t handle = 0;
  Tarn::SMeshOwnerType* owner = nullptr; ///< null for none
  std::string owner_name;
  float distance = 0;
  bool exact = false;
  std::optional<std::array<float, 3>> point; ///< none for what regions and ids picked
};

/// Whether the selection holds a node.
bool holds_node(const EntitySelection& selection);
/// The owners of what selections hold, in their order; null for none.
std::vector<Tarn::SMeshOwnerType*> owners_of(const std::vector<EntitySelection>& selections,
                                             Tarn::MeshDatabase& database);

/// The record of a selection that holds an entity.
PickRecord describe(const EntitySelection& selection, Tarn::MeshDatabase& database);
/// The records of selections, in their order.
std::vector<PickRecord> describe(const std::vector<EntitySelection>& selections, Tarn::MeshDatabase& database);

/// A list of objects, one a line, with a line end.
std::string to_json(const std::vector<PickRecord>& records);

/// Ids in the form that `--select` takes, kinds separated by blanks: "node:3 hex:1,5,9-12"; "" for no records.
std::string id_lists(const std::vector<PickRecord>& records);

} // namespace viewer
