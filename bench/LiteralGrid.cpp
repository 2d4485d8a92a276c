#include "LiteralGrid.h"

#include "mesh/database/MeshData.h"

#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkGeometryFilter.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkSMPTools.h>
#include <vtkTypeUInt64Array.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace bench {
namespace {

using Node = Tarn::Handle<0>;

/// Point numbers by node id, in pages for the ids in use.
class PointOfId {
public:
  /// The place for the point number plus one of the node with this id; 0 at first.
  int& operator[](int id) {
    const auto bits = static_cast<std::uint32_t>(id);
    auto& directory = top_[bits >> 22];
    if (!directory) directory = std::make_unique<Directory>();
    auto& page = (*directory)[(bits >> 12) & 1023];
    if (!page) page = std::make_unique<Page>();
    return (*page)[bits & 4095];
  }

private:
  using Page = std::array<int, 4096>;
  using Directory = std::array<std::unique_ptr<Page>, 1024>;
  std::array<std::unique_ptr<Directory>, 1024> top_;
};

std::vector<Node> nodes_of(const std::vector<Side*>& sides) {
  std::vector<Node> nodes;
  nodes.reserve(sides.size() * 4);
  for (const Side* side : sides)
    nodes.insert(nodes.end(), side->nodes, side->nodes + side->kind);
  return nodes;
}

/// The points' nodes, in the order in which the faces meet them; `points` gets the point of each entry of `nodes`.
std::vector<Node> number_points(Tarn::MeshData& database, const std::vector<Node>& nodes,
                                std::vector<vtkIdType>& points) {
  std::vector<int> ids(nodes.size());
  database.get_node_ids(nodes.size(), nodes.data(), ids.data());
  PointOfId point_of_id;
  std::vector<Node> point_nodes;
  points.resize(nodes.size());
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    int& point = point_of_id[ids[i]];
    if (point == 0) {
      point_nodes.push_back(nodes[i]);
      point = static_cast<int>(point_nodes.size());
    }
    points[i] = point - 1;
  }
  return point_nodes;
}

vtkSmartPointer<vtkPoints> read_points(Tarn::MeshData& database, const std::vector<Node>& nodes) {
  constexpr std::size_t batch = 1000;
  auto points = vtkSmartPointer<vtkPoints>::New();
  points->SetNumberOfPoints(static_cast<vtkIdType>(nodes.size()));
  std::array<float, 3 * batch> xyz{};
  for (std::size_t first = 0; first < nodes.size(); first += batch) {
    const std::size_t count = std::min(batch, nodes.size() - first);
    database.get_float_coordinates(count, &nodes[first], xyz.data());
    for (std::size_t i = 0; i < count; ++i)
      points->SetPoint(static_cast<vtkIdType>(first + i), &xyz[3 * i]);
  }
  return points;
}

vtkSmartPointer<vtkTypeUInt64Array> make_ids(const char* name, std::size_t count) {
  auto ids = vtkSmartPointer<vtkTypeUInt64Array>::New();
  ids->SetName(name);
  ids->SetNumberOfTuples(static_cast<vtkIdType>(count));
  return ids;
}

} // namespace

vtkSmartPointer<vtkUnstructuredGrid> literal_grid(Tarn::MeshData& database, const std::vector<Side*>& sides) {
  std::vector<vtkIdType> points;
  const std::vector<Node> point_nodes = number_points(database, nodes_of(sides), points);

  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(read_points(database, point_nodes));
  grid->Allocate(static_cast<vtkIdType>(sides.size()), 1000);
  const auto node_ids = make_ids("NodeIds", point_nodes.size());
  for (std::size_t point = 0; point < point_nodes.size(); ++point)
    node_ids->SetValue(static_cast<vtkIdType>(point), point_nodes[point].value);
  const auto element_ids = make_ids("ElemIds", sides.size());
  const vtkIdType* corners = points.data();
  for (const Side* side : sides) {
    const vtkIdType cell = grid->InsertNextCell(side->kind == 3 ? VTK_TRIANGLE : VTK_QUAD, side->kind, corners);
    element_ids->SetValue(cell, side->element.value);
    corners += side->kind;
  }
  grid->GetPointData()->AddArray(node_ids);
  grid->GetCellData()->AddArray(element_ids);
  return grid;
}

vtkSmartPointer<vtkPolyData> literal_surface(vtkUnstructuredGrid* grid) {
  vtkNew<vtkGeometryFilter> filter;
  filter->SetInputData(grid);
  vtkSMPTools::LocalScope(vtkSMPTools::Config(1, "Sequential", false), [&filter] { filter->Update(); });
  return filter->GetOutput();
}

vtkSmartPointer<vtkPolyData> literal_nodes(vtkUnstructuredGrid* grid) {
  auto nodes = vtkSmartPointer<vtkPolyData>::New();
  nodes->SetPoints(grid->GetPoints());
  nodes->AllocateExact(grid->GetNumberOfPoints(), grid->GetNumberOfPoints());
  nodes->GetPointData()->PassData(grid->GetPointData());
  for (vtkIdType point = 0; point < grid->GetNumberOfPoints(); ++point)
    nodes->InsertNextCell(VTK_VERTEX, 1, &point);
  return nodes;
}

} // namespace bench
