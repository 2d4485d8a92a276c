#include "ModelScene.h"

#include "tests/support/NamedMeshes.h"

#include <gtest/gtest.h>

namespace {

std::vector<Node> handles_from(Node first, std::size_t count) {
  std::vector<Node> nodes(count);
  for (std::size_t i = 0; i < count; ++i)
    nodes[i].value = first.value + i;
  return nodes;
}

std::vector<Elem> handles_from(Elem first, std::size_t count) {
  std::vector<Elem> elements(count);
  for (std::size_t i = 0; i < count; ++i)
    elements[i].value = first.value + i;
  return elements;
}

std::vector<Node> add_lattice(Tarn::MeshDatabase& db, Owner owner, std::array<int, 3> counts, Point origin,
                              double size) {
  std::vector<double> xyz;
  for (int k = 0; k < counts[2]; ++k)
    for (int j = 0; j < counts[1]; ++j)
      for (int i = 0; i < counts[0]; ++i)
        xyz.insert(xyz.end(), {origin[0] + i * size, origin[1] + j * size, origin[2] + k * size});
  const std::size_t count = xyz.size() / 3;
  return handles_from(db.add_nodes(count, xyz.data(), nullptr, owner), count);
}

Block add_cells(Tarn::MeshDatabase& db, Owner owner, Tarn::ElementType type, int nodes_per_element,
                const std::vector<Node>& nodes, const std::vector<Node>& connectivity) {
  const std::size_t count = connectivity.size() / static_cast<std::size_t>(nodes_per_element);
  const Elem first = db.add_elements(type, nodes_per_element, count, connectivity.data(), nullptr, owner);
  EXPECT_NE(first.value, 0u) << "the database refused the elements";
  return {nodes, handles_from(first, count)};
}

} // namespace

Block add_hexes(Tarn::MeshDatabase& db, Owner owner, std::array<int, 3> counts, Point origin, double size) {
  const int nx = counts[0] + 1;
  const int ny = counts[1] + 1;
  const auto nodes = add_lattice(db, owner, {nx, ny, counts[2] + 1}, origin, size);
  const auto at = [&](int i, int j, int k) { return nodes[static_cast<std::size_t>(i + nx * (j + ny * k))]; };
  std::vector<Node> connectivity;
  for (int k = 0; k < counts[2]; ++k)
    for (int j = 0; j < counts[1]; ++j)
      for (int i = 0; i < counts[0]; ++i)
        for (int level : {k, k + 1})
          connectivity.insert(connectivity.end(),
                              {at(i, j, level), at(i + 1, j, level), at(i + 1, j + 1, level), at(i, j + 1, level)});
  return add_cells(db, owner, Tarn::Hex, 8, nodes, connectivity);
}

Block add_quads(Tarn::MeshDatabase& db, Owner owner, std::array<int, 2> counts, Point origin, double size) {
  const int nx = counts[0] + 1;
  const auto nodes = add_lattice(db, owner, {nx, counts[1] + 1, 1}, origin, size);
  const auto at = [&](int i, int j) { return nodes[static_cast<std::size_t>(i + nx * j)]; };
  std::vector<Node> connectivity;
  for (int j = 0; j < counts[1]; ++j)
    for (int i = 0; i < counts[0]; ++i)
      connectivity.insert(connectivity.end(), {at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1)});
  return add_cells(db, owner, Tarn::Quad, 4, nodes, connectivity);
}

Block add_element(Tarn::MeshDatabase& db, Owner owner, Tarn::ElementType type, const std::vector<Point>& corners) {
  const auto nodes = handles_from(db.add_nodes(corners.size(), corners.front().data(), nullptr, owner), corners.size());
  return add_cells(db, owner, type, static_cast<int>(corners.size()), nodes, nodes);
}

QuadOwner add_quad_owner(Tarn::MeshDatabase& db, double x, double y) {
  QuadOwner quad;
  quad.owner = db.add_owner("quad", 2);
  quad.block = add_quads(db, quad.owner, {1, 1}, {x, y, 0.0});
  quad.mesh = mesh_of(Tarn::Quad, quad.block.elements);
  return quad;
}

std::vector<Point> element_points(Tarn::ElementType type, int node_count, Point at) {
  const test_support::NamedMesh shape = test_support::one_element(type, node_count);
  std::vector<Point> points(shape.nodes.size());
  shape.database->get_double_coordinates(points.size(), shape.nodes.data(), points[0].data());
  for (Point& point : points)
    for (std::size_t axis = 0; axis < 3; ++axis)
      point[axis] += at[axis];
  return points;
}

MeshVector mesh_of(Tarn::ElementType type, const std::vector<Elem>& elements) {
  MeshVector mesh;
  mesh.elements[type] = elements;
  return mesh;
}

void RecordingModel::add_part(vtkDataObject* data, PropFactory factory) {
  added.push_back({data, factory});
  GMeshModel::add_part(data, factory);
}

void RecordingModel::remove_part(vtkDataObject* data) {
  removed.push_back(data);
  GMeshModel::remove_part(data);
}

void RecordingModel::forget_calls() {
  added.clear();
  removed.clear();
}

std::array<vtkDataObject*, 3> RecordingModel::parts_of_add(std::size_t k) const {
  return {added.at(3 * k).data, added.at(3 * k + 1).data, added.at(3 * k + 2).data};
}

std::vector<vtkDataObject*> RecordingModel::added_data() const {
  std::vector<vtkDataObject*> data;
  for (const Added& part : added)
    data.push_back(part.data);
  return data;
}

vtkActor* RecordingModel::actor(GView& view, vtkDataObject* data) {
  const PropList& props = view_props_.at(&view).at(data);
  EXPECT_EQ(props.size(), 1u);
  return vtkActor::SafeDownCast(props.at(0));
}

vtkDataObject* block_of(vtkDataObject* part, unsigned int i) {
  auto* blocks = vtkMultiBlockDataSet::SafeDownCast(part);
  return blocks && i < blocks->GetNumberOfBlocks() ? blocks->GetBlock(i) : nullptr;
}

unsigned int block_count(vtkDataObject* part) { return vtkMultiBlockDataSet::SafeDownCast(part)->GetNumberOfBlocks(); }

ModificationLog::ModificationLog() {
  command_->SetClientData(this);
  command_->SetCallback([](vtkObject* caller, unsigned long, void* self, void*) {
    auto* log = static_cast<ModificationLog*>(self);
    for (const auto& [object, name] : log->watched_)
      if (object == caller) log->names.push_back(name);
  });
}

ModificationLog::~ModificationLog() {
  for (const auto& [object, name] : watched_)
    object->RemoveObserver(command_);
}

void ModificationLog::watch(vtkObject* object, std::string name) {
  object->AddObserver(vtkCommand::ModifiedEvent, command_);
  watched_.emplace_back(object, std::move(name));
}
