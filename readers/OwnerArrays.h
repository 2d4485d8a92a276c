#pragma once

#include <cstdint>
#include <string>
#include <vector>

class vtkDataSet;

namespace readers {

/// What an integer array of the cells says about their owners: one label for each distinct value, in rising order.
struct OwnerLabels {
  std::string array_name;                   ///< empty when no array speaks of owners
  std::vector<std::int64_t> values;         ///< of each label
  std::vector<std::uint32_t> label_of_cell; ///< one for each cell; empty when there is one label only
  std::string notice;                       ///< why an array was passed over, or nothing
};

/// Whether cell arrays of this name speak of owners.
bool is_owner_array(const std::string& name);

/// The labels of the first of the known arrays that the data set has. Known names, in this order and in any case:
/// ElementBlockIds, ObjectId, BlockId, block_id, block, GeometryIds, CellEntityIds, gmsh:geometrical, gmsh:physical,
/// PartId, part_id, part, parts, PID, MaterialIds, MaterialId, material_id, mat_id, matid, material, mat, GroupIds,
/// group_id, group, RegionId, region_id, region, zone. An array counts when its values are integers, one for each cell,
/// at most 65,536 of them distinct.
OwnerLabels find_owner_labels(vtkDataSet& data);

} // namespace readers
