#pragma once

#include "mesh/database/ElementType.h"
#include "readers/MeshReader.h"

#include <cstdint>
#include <string>
#include <vector>

namespace readers {

/// Elements of one kind, one number of nodes and one owner, in file order.
struct ElementBatch {
  Tarn::ElementType type = Tarn::ElementType::None;
  std::uint32_t nodes_per_element = 0;
  std::uint32_t owner = 0;             ///< index into `MeshDraft::owners`
  bool from_side_set = false;          ///< faces of a side set or a boundary section
  std::vector<std::uint32_t> nodes;    ///< `nodes_per_element` node indices for each element, in canonical order
  std::vector<std::uint32_t> position; ///< running number of each element in the file, from 1
  std::vector<std::int64_t> numbers;   ///< the file's number of each element; empty when it has none

  std::size_t size() const { return position.size(); }
};

/// Nodes listed under a name, besides the owner that they have.
struct NodeSet {
  std::string name;
  std::vector<std::uint32_t> nodes;
};

/// A mesh as a file gave it, on its way into the database: plain arrays that can be checked, cut down and sent between
/// processes.
struct MeshDraft {
  std::vector<double> xyz;                ///< three for each node
  std::vector<std::int64_t> node_numbers; ///< the file's number of each node; empty when it has none
  std::vector<std::uint32_t> node_owner;  ///< index into `owners` for each node
  std::vector<std::string> owners;        ///< their names, in the order of the database
  std::vector<ElementBatch> batches;
  std::vector<NodeSet> node_sets;
  std::vector<LeftOut> left_out;
  std::vector<std::string> notices;
  std::uint32_t last_position = 0; ///< running number of the last element

  std::size_t node_count() const { return xyz.size() / 3; }
  std::size_t element_count() const;
  /// Adds to the count of what was left out for this reason.
  void leave_out(const std::string& reason, std::uint64_t count = 1);
};

/// Appends a draft with its own owners and nodes after those there are. Nodes keep the file's numbers where both drafts
/// have them.
void append_draft(MeshDraft& draft, MeshDraft&& more);

/// Empty when every index of the draft is within its bounds and its arrays fit each other, else what does not.
std::string find_inconsistency(const MeshDraft& draft);

/// Leaves out nodes whose coordinates are not finite in single precision, the elements on them and their places in node
/// sets.
void leave_out_bad_nodes(MeshDraft& draft);

} // namespace readers
