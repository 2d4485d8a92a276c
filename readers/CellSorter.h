#pragma once

#include "readers/MeshDraft.h"

#include <cstdint>
#include <vector>

class vtkCellArray;

namespace readers {

constexpr std::uint32_t unowned = 0xffffffffu; ///< a node of a draft that has no owner yet

/// Cells of a VTK data set, not yet trusted. Cell ids run on from list to list.
struct CellList {
  vtkCellArray* cells = nullptr;
  /// One VTK type for each cell; null where the number of points tells: then the cell has the type `short_types[n]` for
  /// n points below 5, else `long_type`.
  const unsigned char* types = nullptr;
  int short_types[5] = {0, 0, 0, 0, 0};
  int long_type = 0;
};

/// What is known about the cells of a data set, all of it for the cell ids of its lists.
struct CellFacts {
  std::vector<std::uint32_t> label_of_cell;  ///< empty: label 0 for all
  std::vector<std::uint32_t> owner_of_label; ///< index of an owner of the draft
  std::vector<std::int64_t> numbers;         ///< the file's number of each cell; empty: none
  const unsigned char* ghosts = nullptr;     ///< VTK's ghost flags, or null
  bool from_side_set = false;
};

/// Where the points of a data set are among the nodes of the draft.
struct PointPlaces {
  std::uint64_t point_count = 0;
  std::uint32_t first_node = 0;                      ///< the node of point 0, the others follow
  const std::vector<std::uint32_t>* nodes = nullptr; ///< or one node for each point
};

/// Sorts cells into batches of the draft. Broken lists (offsets that fall, or that lie beyond the connectivity) throw
/// `Refusal`; a cell that cannot be drawn, that has the wrong number of points for its type or names points that do not
/// exist is left out and counted. The owner of a node becomes that of the first element that uses it.
void add_cells(MeshDraft& draft, const std::vector<CellList>& lists, const CellFacts& facts, const PointPlaces& places);

/// Gives the nodes from `first_node` on that have no owner the one given.
void own_the_rest(MeshDraft& draft, std::uint32_t first_node, std::uint32_t owner);

} // namespace readers
