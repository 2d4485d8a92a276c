#include "viewer/MeshBounds.h"

#include "mesh/database/MDBDefines.h"
#include "reference/tarn/MeshDatabase.h"

#include <vtkBoundingBox.h>

#include <algorithm>

namespace viewer {
namespace {

using Node = Tarn::MeshData::Node;

constexpr std::size_t batch = 65536;

// Nodes of the largest form of each kind.
std::size_t most_nodes(Tarn::ElementType type) {
  constexpr std::size_t most[] = {0, 1, 3, 7, 9, 10, 27, 18, 14};
  return type < std::size(most) ? most[type] : MDBDefines::NodesPerElement(type);
}

void add_bounds(Tarn::MeshDatabase& database, Tarn::ElementType type, vtkBoundingBox& box) {
  const auto elements = database.elements(type);
  std::vector<Node> nodes;
  std::vector<double> xyz;
  for (std::size_t begin = 0; begin < elements.size(); begin += batch) {
    const std::size_t count = std::min(batch, elements.size() - begin);
    nodes.assign(count * most_nodes(type), Node());
    Tarn::MeshData::Count length = nodes.size();
    database.get_connectivity(count, &elements[begin], &length, nodes.data());
    nodes.erase(std::remove(nodes.begin(), nodes.end(), Node()), nodes.end());
    xyz.resize(3 * nodes.size());
    database.get_double_coordinates(nodes.size(), nodes.data(), xyz.data());
    for (std::size_t i = 0; i < nodes.size(); ++i)
      box.AddPoint(&xyz[3 * i]);
  }
}

} // namespace

bool mesh_bounds(Tarn::MeshDatabase& database, std::array<double, 6>& bounds) {
  vtkBoundingBox box;
  for (std::uint32_t kind = Tarn::OneNode; kind <= Tarn::Superelement; ++kind)
    add_bounds(database, static_cast<Tarn::ElementType>(kind), box);
  if (!box.IsValid()) return false;
  box.GetBounds(bounds.data());
  return true;
}

} // namespace viewer
