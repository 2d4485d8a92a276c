#include "mesh/database/MeshClipper.h"

#include "mesh/database/MDBDefines.h"
#include "mesh/database/MeshData.h"
#include "reference/tarn/ElementShape.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;
using Count = Tarn::MeshData::Count;

constexpr std::size_t nodes_at_once = 8192; // few enough for what is known of them to stay in the cache

/// How many nodes to ask for per element: at first its corners and one more, which tells whether there are others, and
/// again more of those that have them.
struct Strides {
  std::size_t first;
  std::size_t last;
  std::size_t after(std::size_t stride) const { return std::min(8 * stride, last); }
};

Strides strides_of(Tarn::ElementType type) {
  constexpr std::size_t few = 8; // of superelements, which may have any number
  const bool is_any = type == Tarn::Superelement;
  const std::size_t last =
      is_any ? static_cast<std::size_t>(std::max(1, MDBDefines::NodesPerElement(type))) : Tarn::most_nodes(type);
  return {std::min(last, 1 + (is_any ? few : Tarn::element_shape(type).corner_count)), last};
}

enum class Place { Kept, Clipped, Unknown };

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
  std::vector<std::size_t> clip_by_first_nodes(Tarn::ElementType type, const std::vector<Elem>& list,
                                               const std::vector<std::size_t>* positions, std::size_t stride);
  Place place_of(std::size_t first, std::size_t end) const;
};

void MeshClipper::Private::read_coordinates(const Node* list, std::size_t count) {
  constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();
  for (std::vector<double>* axis : {&x, &y, &z})
    axis->assign(count, nowhere);
  if (count) database->get_coordinate_arrays(count, list, x.data(), y.data(), z.data());
}

void MeshClipper::Private::clip_nodes() {
  for (std::size_t begin = 0; begin < nodes.size(); begin += nodes_at_once) {
    const std::size_t count = std::min(nodes_at_once, nodes.size() - begin);
    read_coordinates(&nodes[begin], count);
    for (std::size_t i = 0; i < count; ++i)
      clipped_nodes[begin + i] = plane.distance(x[i], y[i], z[i]) < 0.0;
  }
}

void MeshClipper::Private::clip_elements(Tarn::ElementType type) {
  const Strides strides = strides_of(type);
  std::vector<std::size_t> left = clip_by_first_nodes(type, elements[type], nullptr, strides.first);
  for (std::size_t stride = strides.first; stride < strides.last && !left.empty();) {
    stride = strides.after(stride);
    std::vector<Elem> list;
    list.reserve(left.size());
    for (const std::size_t position : left)
      list.push_back(elements[type][position]);
    left = clip_by_first_nodes(type, list, &left, stride);
  }
}

// Sets the flags at the list's positions, null for all in order; gives the positions of those that have more nodes, all
// being clipped so far.
std::vector<std::size_t> MeshClipper::Private::clip_by_first_nodes(Tarn::ElementType type,
                                                                   const std::vector<Elem>& list,
                                                                   const std::vector<std::size_t>* positions,
                                                                   std::size_t stride) {
  const std::size_t batch = std::max<std::size_t>(1, nodes_at_once / stride);
  std::vector<std::size_t> left;
  std::vector<Node> connectivity;
  std::vector<std::size_t> ends; // of each element's known nodes
  std::vector<char> has_more;
  for (std::size_t begin = 0; begin < list.size(); begin += batch) {
    const std::size_t count = std::min(batch, list.size() - begin);
    connectivity.assign(count * stride, Node{});
    Count length = connectivity.size();
    database->get_connectivity(count, &list[begin], &length, connectivity.data());
    // Null nodes have no coordinates, and most linear elements have one.
    ends.clear();
    has_more.clear();
    std::size_t known = 0;
    for (std::size_t first = 0; first < connectivity.size(); first += stride) {
      has_more.push_back(connectivity[first + stride - 1] != Node{});
      for (std::size_t k = first; k < first + stride; ++k)
        if (connectivity[k] != Node{}) connectivity[known++] = connectivity[k];
      ends.push_back(known);
    }
    read_coordinates(connectivity.data(), known);
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t position = positions ? (*positions)[begin + i] : begin + i;
      const Place place = place_of(i == 0 ? 0 : ends[i - 1], ends[i]);
      clipped[type][position] = place == Place::Clipped;
      if (place != Place::Kept && has_more[i]) left.push_back(position);
    }
  }
  return left;
}

// Of an element by the nodes that were read last.
Place MeshClipper::Private::place_of(std::size_t first, std::size_t end) const {
  Place place = Place::Unknown;
  for (std::size_t i = first; i < end; ++i) {
    const double distance = plane.distance(x[i], y[i], z[i]);
    if (distance >= 0.0) return Place::Kept;
    if (distance < 0.0) place = Place::Clipped;
  }
  return place;
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
