#include "mesh/database/MeshClipper.h"

#include "mesh/database/MDBDefines.h"
#include "mesh/database/MeshData.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;
using Count = Tarn::MeshData::Count;

constexpr std::size_t batch = 4096;
constexpr int most_nodes = 27;

struct Plane {
  double origin[3] = {0, 0, 0};
  double normal[3] = {0, 0, 0};
  bool is_set = false;

  bool is_usable() const {
    const double length = std::hypot(normal[0], normal[1], normal[2]);
    const bool origin_is_finite = std::isfinite(origin[0]) && std::isfinite(origin[1]) && std::isfinite(origin[2]);
    return is_set && origin_is_finite && length > 0.0 && std::isfinite(length);
  }

  // Not a number for a point that is not.
  double distance(double x, double y, double z) const {
    return (x - origin[0]) * normal[0] + (y - origin[1]) * normal[1] + (z - origin[2]) * normal[2];
  }
};

} // namespace

struct MeshClipper::Private {
  Tarn::MeshData* database;
  std::array<std::vector<Elem>, 10> elements;
  std::vector<Node> nodes;
  Plane plane;
  std::array<std::vector<bool>, 10> clipped;
  std::vector<bool> clipped_nodes;
  std::vector<double> x, y, z;

  void read_coordinates(const Node* list, std::size_t count);
  void clip_nodes();
  void clip_elements(Tarn::ElementType type);
  bool is_clipped(const Node* list, std::size_t first, std::size_t count) const;
};

void MeshClipper::Private::read_coordinates(const Node* list, std::size_t count) {
  constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();
  for (std::vector<double>* axis : {&x, &y, &z})
    axis->assign(count, nowhere);
  if (count) database->get_coordinate_arrays(count, list, x.data(), y.data(), z.data());
}

void MeshClipper::Private::clip_nodes() {
  for (std::size_t begin = 0; begin < nodes.size(); begin += batch) {
    const std::size_t count = std::min(batch, nodes.size() - begin);
    read_coordinates(&nodes[begin], count);
    for (std::size_t i = 0; i < count; ++i)
      clipped_nodes[begin + i] = plane.distance(x[i], y[i], z[i]) < 0.0;
  }
}

void MeshClipper::Private::clip_elements(Tarn::ElementType type) {
  const std::vector<Elem>& list = elements[type];
  const std::size_t stride =
      type == Tarn::Superelement ? std::size_t(std::max(1, MDBDefines::NodesPerElement(type))) : most_nodes;
  std::vector<Node> connectivity;
  for (std::size_t begin = 0; begin < list.size(); begin += batch) {
    const std::size_t count = std::min(batch, list.size() - begin);
    connectivity.assign(count * stride, Node{});
    Count length = connectivity.size();
    database->get_connectivity(count, &list[begin], &length, connectivity.data());
    read_coordinates(connectivity.data(), connectivity.size());
    for (std::size_t i = 0; i < count; ++i)
      clipped[type][begin + i] = is_clipped(connectivity.data(), i * stride, stride);
  }
}

bool MeshClipper::Private::is_clipped(const Node* list, std::size_t first, std::size_t count) const {
  bool any_readable = false;
  for (std::size_t i = first; i < first + count; ++i) {
    if (list[i] == Node{}) continue;
    const double distance = plane.distance(x[i], y[i], z[i]);
    if (distance >= 0.0) return false;
    any_readable = any_readable || distance < 0.0;
  }
  return any_readable;
}

MeshClipper::MeshClipper(Tarn::MeshData* database) : d(std::make_unique<Private>()) { d->database = database; }

MeshClipper::~MeshClipper() = default;

void MeshClipper::setMesh(Tarn::ElementType type, const std::vector<Elem>& elements) {
  if (type == Tarn::None || type > Tarn::Superelement) return;
  d->elements[type] = elements;
  d->clipped[type].assign(elements.size(), false);
}

void MeshClipper::setNodes(const std::vector<Node>& nodes) {
  d->nodes = nodes;
  d->clipped_nodes.assign(nodes.size(), false);
}

void MeshClipper::setPlane(const TovanVector& origin, const TovanVector& normal) {
  d->plane = {{origin.x, origin.y, origin.z}, {normal.x, normal.y, normal.z}, true};
}

bool MeshClipper::clipMesh() {
  for (std::size_t type = 1; type < d->elements.size(); ++type)
    d->clipped[type].assign(d->elements[type].size(), false);
  d->clipped_nodes.assign(d->nodes.size(), false);
  if (!d->plane.is_usable()) return false;
  d->clip_nodes();
  for (std::size_t type = 1; type < d->elements.size(); ++type)
    d->clip_elements(static_cast<Tarn::ElementType>(type));
  return true;
}

std::vector<bool> MeshClipper::getClippedFlag(Tarn::ElementType type) {
  return type <= Tarn::Superelement ? d->clipped[type] : std::vector<bool>();
}

std::vector<bool> MeshClipper::getClippedNodesFlag() { return d->clipped_nodes; }
