#pragma once

#include "group/GMeshGroup.h"
#include "model/GMeshModel.h"
#include "platform/base/GDataGroup.h"
#include "tests/support/NamedMeshes.h"
#include "tests/support/RecordingMeshData.h"

#include <vtkType.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

class vtkDataArray;
class vtkDataSet;
class vtkDataSetAttributes;
class vtkPointSet;

namespace group_test {

using Color = std::array<int, 4>;
using Point = std::array<double, 3>;
using Ids = std::vector<vtkIdType>;

constexpr Color white = {255, 255, 255, 255};

/// The point ids of each cell.
std::vector<Ids> cell_points(vtkDataSet* data);
/// The VTK type of each cell.
std::vector<int> cell_types(vtkDataSet* data);
/// The values of a one-component array of handles; empty, with a failure, when there is no such array.
std::vector<std::uint64_t> handle_values(vtkDataSetAttributes* data, const char* name);
/// The active scalars, which must be a "Color" array; empty, with a failure, when they are not.
std::vector<Color> scalar_colors(vtkDataSetAttributes* data);
/// All points.
std::vector<Point> points_of(vtkPointSet* data);
/// The handle values of nodes.
std::vector<std::uint64_t> values_of(const std::vector<Tarn::Handle<0>>& handles);
/// The handle values of elements.
std::vector<std::uint64_t> values_of(const std::vector<Tarn::Handle<1>>& handles);
/// The four channels.
Color channels(const TovanColor& color);
/// Same type, shape, name and values.
bool same_array(vtkDataArray* left, vtkDataArray* right);
/// The first difference in points, cells or data; empty when there is none.
std::string difference(vtkPointSet* left, vtkPointSet* right);

/// A colour that tells which entity it was made for.
TovanColor color_number(int n);

/// A group whose protected operations can be called, and which counts what is asked of it.
class OpenGroup : public GMeshGroup {
public:
  using GMeshGroup::add_mesh_to_data_set;
  using GMeshGroup::add_shrink_mesh_to_data_set;
  using GMeshGroup::update_color_array;
  using GMeshGroup::update_mesh;

  int rebuilds = 0;
  int builds = 0;
  int shrunk_builds = 0;

protected:
  void rebuild_mesh() override;
  void add_mesh_to_data_set(const MeshVector& mesh, const std::vector<int>* node_positions,
                            const std::vector<int> (*element_positions)[10]) override;
  void add_shrink_mesh_to_data_set(const MeshVector& mesh, const std::vector<int>* node_positions,
                                   const std::vector<int> (*element_positions)[10]) override;
};

/// A data group that counts how often its members changed it.
class CountingDataGroup : public GDataGroup {
public:
  GDataGroup* new_instance() override { return new CountingDataGroup; }
  void do_update() override { ++updates; }
  /// Whether it was told of a change since this was last asked.
  bool told();

  int updates = 0;
};

} // namespace group_test
