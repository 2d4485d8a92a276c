#include "readers/OwnerArrays.h"

#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkDataSet.h>

#include <algorithm>
#include <cctype>
#include <iterator>

namespace readers {

namespace {

constexpr std::size_t most_owners = 65536;

const char* const known_names[] = {
    "elementblockids",  "objectid",      "blockid",     "block_id", "block",     "geometryids", "cellentityids",
    "gmsh:geometrical", "gmsh:physical", "partid",      "part_id",  "part",      "parts",       "pid",
    "materialids",      "materialid",    "material_id", "mat_id",   "matid",     "material",    "mat",
    "groupids",         "group_id",      "group",       "regionid", "region_id", "region",      "zone"};

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

bool holds_integers(const vtkDataArray& array) {
  const int type = const_cast<vtkDataArray&>(array).GetDataType();
  return type != VTK_FLOAT && type != VTK_DOUBLE && type != VTK_BIT;
}

vtkDataArray* find_array(vtkDataSet& data) {
  vtkCellData& cell_data = *data.GetCellData();
  for (const char* known : known_names)
    for (int i = 0; i < cell_data.GetNumberOfArrays(); ++i) {
      vtkDataArray* array = cell_data.GetArray(i);
      if (array && array->GetName() && lower(array->GetName()) == known && holds_integers(*array) &&
          array->GetNumberOfComponents() == 1 && array->GetNumberOfTuples() == data.GetNumberOfCells())
        return array;
    }
  return nullptr;
}

// Values of any integer type; 64-bit ones do not survive the trip through double that a data array's own access makes.
std::vector<std::int64_t> values_of(vtkDataArray& array) {
  std::vector<std::int64_t> values;
  values.reserve(static_cast<std::size_t>(array.GetNumberOfTuples()));
  for (vtkIdType i = 0; i < array.GetNumberOfTuples(); ++i)
    values.push_back(array.GetVariantValue(i).ToTypeInt64());
  return values;
}

std::vector<std::int64_t> distinct(std::vector<std::int64_t> values) {
  // Runs of equal values are long: without them there is little left to sort.
  values.erase(std::unique(values.begin(), values.end()), values.end());
  std::sort(values.begin(), values.end());
  values.erase(std::unique(values.begin(), values.end()), values.end());
  return values;
}

} // namespace

bool is_owner_array(const std::string& name) {
  return std::find(std::begin(known_names), std::end(known_names), lower(name)) != std::end(known_names);
}

OwnerLabels find_owner_labels(vtkDataSet& data) {
  OwnerLabels labels;
  vtkDataArray* array = find_array(data);
  if (!array || data.GetNumberOfCells() == 0) return labels;
  const std::vector<std::int64_t> values = values_of(*array);
  labels.values = distinct(values);
  if (labels.values.size() > most_owners) {
    labels.notice = std::string("cell array ") + array->GetName() + " has more than 65536 values: not taken for owners";
    labels.values.clear();
    return labels;
  }
  labels.array_name = array->GetName();
  if (labels.values.size() < 2) return labels;
  labels.label_of_cell.reserve(values.size());
  std::size_t label = 0;
  for (std::int64_t value : values) {
    if (labels.values[label] != value)
      label = static_cast<std::size_t>(
          std::distance(labels.values.begin(), std::lower_bound(labels.values.begin(), labels.values.end(), value)));
    labels.label_of_cell.push_back(static_cast<std::uint32_t>(label));
  }
  return labels;
}

} // namespace readers
