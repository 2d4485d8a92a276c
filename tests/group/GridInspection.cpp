#include "tests/group/GridInspection.h"

#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkDataSet.h>
#include <vtkIdList.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>
#include <vtkPoints.h>
#include <vtkTypeUInt64Array.h>
#include <vtkUnsignedCharArray.h>

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

namespace group_test {

std::vector<std::vector<vtkIdType>> cell_points(vtkDataSet* data) {
  std::vector<std::vector<vtkIdType>> result;
  vtkNew<vtkIdList> points;
  for (vtkIdType cell = 0; cell < data->GetNumberOfCells(); ++cell) {
    data->GetCellPoints(cell, points);
    result.emplace_back(points->begin(), points->end());
  }
  return result;
}

std::vector<int> cell_types(vtkDataSet* data) {
  std::vector<int> result;
  for (vtkIdType cell = 0; cell < data->GetNumberOfCells(); ++cell)
    result.push_back(data->GetCellType(cell));
  return result;
}

std::vector<std::uint64_t> handle_values(vtkDataSetAttributes* data, const char* name) {
  auto* array = vtkTypeUInt64Array::SafeDownCast(data->GetAbstractArray(name));
  EXPECT_NE(array, nullptr) << name;
  if (!array) return {};
  EXPECT_EQ(array->GetNumberOfComponents(), 1);
  return {array->GetPointer(0), array->GetPointer(0) + array->GetNumberOfTuples()};
}

std::vector<Color> scalar_colors(vtkDataSetAttributes* data) {
  auto* array = vtkUnsignedCharArray::SafeDownCast(data->GetScalars());
  EXPECT_NE(array, nullptr);
  if (!array) return {};
  EXPECT_STREQ(array->GetName(), "Color");
  EXPECT_EQ(array->GetNumberOfComponents(), 4);
  std::vector<Color> result;
  for (vtkIdType i = 0; i < array->GetNumberOfTuples(); ++i)
    result.push_back({array->GetTypedComponent(i, 0), array->GetTypedComponent(i, 1), array->GetTypedComponent(i, 2),
                      array->GetTypedComponent(i, 3)});
  return result;
}

std::vector<Point> points_of(vtkPointSet* data) {
  std::vector<Point> result;
  for (vtkIdType i = 0; i < data->GetNumberOfPoints(); ++i) {
    result.emplace_back();
    data->GetPoint(i, result.back().data());
  }
  return result;
}

template <class Handles> static std::vector<std::uint64_t> raw_values(const Handles& handles) {
  std::vector<std::uint64_t> result;
  for (const auto handle : handles)
    result.push_back(handle.value);
  return result;
}

std::vector<std::uint64_t> values_of(const std::vector<Tarn::Handle<0>>& handles) { return raw_values(handles); }
std::vector<std::uint64_t> values_of(const std::vector<Tarn::Handle<1>>& handles) { return raw_values(handles); }

Color channels(const TovanColor& color) { return {color.r, color.g, color.b, color.a}; }

bool same_array(vtkDataArray* left, vtkDataArray* right) {
  if (!left || !right) return left == right;
  const auto name = [](vtkDataArray* array) { return std::string(array->GetName() ? array->GetName() : ""); };
  if (left->GetDataType() != right->GetDataType() || left->GetNumberOfTuples() != right->GetNumberOfTuples() ||
      left->GetNumberOfComponents() != right->GetNumberOfComponents() || name(left) != name(right))
    return false;
  const auto size = static_cast<std::size_t>(left->GetNumberOfValues() * left->GetDataTypeSize());
  return size == 0 || std::memcmp(left->GetVoidPointer(0), right->GetVoidPointer(0), size) == 0;
}

static std::string difference(vtkDataSetAttributes* left, vtkDataSetAttributes* right) {
  if (left->GetNumberOfArrays() != right->GetNumberOfArrays()) return "number of arrays";
  for (int i = 0; i < left->GetNumberOfArrays(); ++i)
    if (!same_array(left->GetArray(i), right->GetArray(i))) return left->GetArrayName(i);
  for (int type = 0; type < vtkDataSetAttributes::NUM_ATTRIBUTES; ++type)
    if (!same_array(left->GetAttribute(type), right->GetAttribute(type))) return "active attributes";
  return "";
}

std::string difference(vtkPointSet* left, vtkPointSet* right) {
  if (left->GetNumberOfPoints() != right->GetNumberOfPoints()) return "number of points";
  if (left->GetNumberOfPoints() > 0 && !same_array(left->GetPoints()->GetData(), right->GetPoints()->GetData()))
    return "points";
  if (cell_types(left) != cell_types(right)) return "cell types";
  if (cell_points(left) != cell_points(right)) return "cells";
  const std::string point_data = difference(left->GetPointData(), right->GetPointData());
  if (!point_data.empty()) return "point data: " + point_data;
  const std::string cell_data = difference(left->GetCellData(), right->GetCellData());
  return cell_data.empty() ? "" : "cell data: " + cell_data;
}

TovanColor color_number(int n) {
  const auto byte = [](int value) { return static_cast<unsigned char>(value & 255); };
  return {byte(n), byte(n >> 8), byte(7 * n + 1), byte(200 + n % 50)};
}

void OpenGroup::rebuild_mesh() {
  ++rebuilds;
  GMeshGroup::rebuild_mesh();
}

void OpenGroup::add_mesh_to_data_set(const MeshVector& mesh, const std::vector<int>* node_positions,
                                     const std::vector<int> (*element_positions)[10]) {
  ++builds;
  GMeshGroup::add_mesh_to_data_set(mesh, node_positions, element_positions);
}

void OpenGroup::add_shrink_mesh_to_data_set(const MeshVector& mesh, const std::vector<int>* node_positions,
                                            const std::vector<int> (*element_positions)[10]) {
  ++shrunk_builds;
  GMeshGroup::add_shrink_mesh_to_data_set(mesh, node_positions, element_positions);
}

bool CountingDataGroup::told() {
  std::vector<GDataGroup*> updated;
  update_all(&updated);
  return !updated.empty();
}

} // namespace group_test
