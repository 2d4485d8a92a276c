#include "pick/PickInterface.h"

#include "mesh/database/MDBDefines.h"
#include "mesh/database/MeshData.h"
#include "platform/base/OBPickUtil.h"
#include "platform/util/TovanBox.h"
#include "platform/util/TovanVector.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

// The ray picks; those by region are in PickInterfaceBounds.cpp.

namespace {

using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;
using Count = Tarn::MeshData::Count;
using NodeResult = PickInterface::PickResult<Node>;
using ElementResult = PickInterface::PickResult<Elem>;

constexpr double largest = std::numeric_limits<double>::max();
// What the database does not answer for is nowhere, so that it is never hit.
constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();

constexpr double node_exactness = 0.1;
constexpr double element_exactness = 0.01;
constexpr Count edge_capacity = 24;
constexpr std::size_t edge_batch = 4096;

struct BoundingBox {
  double minimum[3] = {largest, largest, largest};
  double maximum[3] = {-largest, -largest, -largest};

  void add(const double* point) {
    for (int axis = 0; axis < 3; ++axis) {
      minimum[axis] = std::min(minimum[axis], point[axis]);
      maximum[axis] = std::max(maximum[axis], point[axis]);
    }
  }

  bool is_met_by(const double* ray, double tolerance) const {
    double low[3];
    double high[3];
    for (int axis = 0; axis < 3; ++axis) {
      low[axis] = minimum[axis] - tolerance;
      high[axis] = maximum[axis] + tolerance;
    }
    const TovanVector direction(ray[3] - ray[0], ray[4] - ray[1], ray[5] - ray[2]);
    return TovanBox(low, high).intersect(TovanVector(ray), direction);
  }
};

void read_coordinates(Tarn::MeshData& db, const Node* nodes, std::size_t count, double* xyz) {
  std::fill_n(xyz, 3 * count, nowhere);
  for (std::size_t i = 0; i < count; ++i)
    db.get_node_coordinates(nodes[i], &xyz[3 * i], &xyz[3 * i + 1], &xyz[3 * i + 2]);
}

BoundingBox bounds_of(const double* xyz, std::size_t count) {
  BoundingBox box;
  for (std::size_t i = 0; i < count; ++i)
    box.add(&xyz[3 * i]);
  return box;
}

void append_hit(Elem element, const double* point, bool is_exact, std::vector<ElementResult>& results) {
  results.push_back({element, {point[0], point[1], point[2]}, is_exact});
}

// Entities met more than once keep one record, the inexact one if there is any. Stable, so that of equal records the
// first stays.
template <class H> void sort_unique(std::vector<PickInterface::PickResult<H>>& results) {
  using Result = PickInterface::PickResult<H>;
  std::stable_sort(results.begin(), results.end(), [](const Result& left, const Result& right) {
    if (left.handle != right.handle) return left.handle < right.handle;
    return !left.is_exact && right.is_exact;
  });
  const auto same = [](const Result& left, const Result& right) { return left.handle == right.handle; };
  results.erase(std::unique(results.begin(), results.end(), same), results.end());
}

} // namespace

PickInterface::PickInterface(Tarn::MeshData* database) : database_(database) {}

void PickInterface::setTolerance(double tolerance) { tolerance_ = tolerance; }

void PickInterface::setTransform(vtkMatrix4x4* matrix, int* size, double* viewport) {
  transform_ = matrix;
  std::copy_n(size, 2, display_size_);
  std::copy_n(viewport, 4, viewport_);
}

void PickInterface::setPartialAccept(bool partial) { partial_accept_ = partial; }

bool PickInterface::pickEntities(const std::vector<Node>& nodes, double* ray, std::vector<NodeResult>& results) {
  if (nodes.empty()) return true;
  const double along[3] = {ray[3] - ray[0], ray[4] - ray[1], ray[5] - ray[2]};
  const double length2 = OBPickUtil::Dot(along, along);
  if (length2 == 0.0) return false;

  std::vector<double> x(nodes.size(), nowhere);
  std::vector<double> y(nodes.size(), nowhere);
  std::vector<double> z(nodes.size(), nowhere);
  database_->get_coordinate_arrays(nodes.size(), nodes.data(), x.data(), y.data(), z.data());

  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const double t = ((x[i] - ray[0]) * along[0] + (y[i] - ray[1]) * along[1] + (z[i] - ray[2]) * along[2]) / length2;
    if (!(t >= 0.0 && t <= 1.0)) continue;
    // Axis by axis rather than by distance: the first that is too far rejects the node.
    const double dx = std::abs(x[i] - (ray[0] + t * along[0]));
    if (!(dx <= tolerance_)) continue;
    const double dy = std::abs(y[i] - (ray[1] + t * along[1]));
    if (!(dy <= tolerance_)) continue;
    const double dz = std::abs(z[i] - (ray[2] + t * along[2]));
    if (!(dz <= tolerance_)) continue;
    const double exact = node_exactness * tolerance_;
    results.push_back({nodes[i], {x[i], y[i], z[i]}, dx <= exact && dy <= exact && dz <= exact});
  }
  return true;
}

bool PickInterface::pickEntities(const std::vector<Elem>& elements, double* ray, std::vector<ElementResult>& results) {
  if (elements.empty()) return true;
  std::vector<Tarn::ElementType> types(elements.size(), Tarn::None);
  database_->get_element_types(elements.size(), elements.data(), types.data());
  std::array<std::vector<Elem>, 10> of_type;
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (types[i] < of_type.size()) of_type[types[i]].push_back(elements[i]);
  }

  pickEdgeEntities(of_type[Tarn::Edge], ray, results);
  pickTriEntities(of_type[Tarn::Tri], ray, results);
  pickFaceEntities(of_type[Tarn::Quad], ray, results);
  for (const Tarn::ElementType type : {Tarn::Tet, Tarn::Hex, Tarn::Wedge, Tarn::Pyramid})
    pick3DEntities(of_type[type], ray, results);

  std::vector<Elem> one(1);
  std::vector<NodeResult> nodes;
  for (const Elem element : of_type[Tarn::Superelement]) {
    one[0] = element;
    nodes.clear();
    pickVerticesTemplate(one, ray, nodes);
    if (!nodes.empty()) append_hit(element, nodes.front().point, nodes.front().is_exact, results);
  }
  return true;
}

bool PickInterface::pickVertices(const std::vector<Elem>& elements, double* ray, std::vector<NodeResult>& results) {
  pickVerticesTemplate(elements, ray, results);
  return true;
}

bool PickInterface::pickEdges(const std::vector<Elem>& elements, double* ray, std::vector<ElementResult>& results) {
  pickEdgesTemplate(elements, ray, results);
  return true;
}

bool PickInterface::pickEdgeEntities(const std::vector<Elem>& elements, double* ray,
                                     std::vector<ElementResult>& results) {
  Node nodes[2];
  double xyz[6];
  for (const Elem element : elements) {
    Count count = 2;
    if (database_->get_element_connectivity(element, &count, nodes) != 0) continue;
    read_coordinates(*database_, nodes, 2, xyz);
    double t, point[3], u, distance;
    if (!OBPickUtil::IntersectLineWithLine(&ray[0], &ray[3], &xyz[0], &xyz[3], tolerance_, t, point, u, distance))
      continue;
    append_hit(element, point, element_exactness * tolerance_ >= distance, results);
  }
  return true;
}

bool PickInterface::pickTriEntities(const std::vector<Elem>& elements, double* ray,
                                    std::vector<ElementResult>& results) {
  Node nodes[3] = {};
  double xyz[9];
  for (const Elem element : elements) {
    Count count = 3;
    if (database_->get_element_connectivity(element, &count, nodes) != 0) continue;
    read_coordinates(*database_, nodes, 3, xyz);
    if (!bounds_of(xyz, 3).is_met_by(ray, tolerance_)) continue;
    double t, point[3], barycentric[3], distance;
    if (!OBPickUtil::IntersectTriangleWithLine(&xyz[0], &xyz[3], &xyz[6], &ray[0], &ray[3], tolerance_, t, point,
                                               barycentric, distance))
      continue;
    append_hit(element, point, element_exactness * tolerance_ >= distance, results);
  }
  return true;
}

bool PickInterface::pickFaceEntities(const std::vector<Elem>& elements, double* ray,
                                     std::vector<ElementResult>& results) {
  Node nodes[4] = {};
  double xyz[12];
  for (const Elem element : elements) {
    Count count = 4;
    // Unlike triangles, a quadrilateral is tested whatever the database says of its connectivity.
    database_->get_element_connectivity(element, &count, nodes);
    read_coordinates(*database_, nodes, 4, xyz);
    if (!bounds_of(xyz, 4).is_met_by(ray, tolerance_)) continue;
    double t, point[3], barycentric[3], distance;
    if (!OBPickUtil::IntersectQuadWithLine(&xyz[0], &xyz[3], &xyz[6], &xyz[9], &ray[0], &ray[3], tolerance_, t, point,
                                           barycentric, distance))
      continue;
    append_hit(element, point, element_exactness * tolerance_ >= distance, results);
  }
  return true;
}

bool PickInterface::pick3DEntities(const std::vector<Elem>& elements, double* ray,
                                   std::vector<ElementResult>& results) {
  std::vector<Node> nodes(8);
  std::vector<double> xyz;
  for (const Elem element : elements) {
    Tarn::ElementType tarn_type = Tarn::None;
    database_->get_element_type(element, &tarn_type);
    Count count = 8;
    database_->get_element_node_count(element, &count);
    nodes.assign(count, Node{});
    if (database_->get_element_connectivity(element, &count, nodes.data()) != 0) continue;
    xyz.resize(3 * nodes.size());
    read_coordinates(*database_, nodes.data(), nodes.size(), xyz.data());
    if (!bounds_of(xyz.data(), nodes.size()).is_met_by(ray, tolerance_)) continue;

    const MDBDefines::ElementType type = MDBDefines::ElementTypeFromTarnType(tarn_type);
    double best_distance = largest;
    double best_point[3] = {0, 0, 0};
    bool hit = false;
    bool is_exact = false;
    for (int side = 0; side < MDBDefines::NumSides(type); ++side) {
      const int corners = MDBDefines::NodesPerSide(type, side);
      if (corners != 3 && corners != 4) continue;
      const std::uint32_t* positions = MDBDefines::SidesetNodeIndices(type, side);
      const double* at[4];
      bool whole = true;
      for (int i = 0; i < corners; ++i) {
        whole = whole && positions[i] < nodes.size();
        at[i] = whole ? &xyz[3 * positions[i]] : nullptr;
      }
      // An element with fewer nodes than its kind has corners: its database is at fault, and that side is not there.
      if (!whole) continue;
      double t, point[3], barycentric[3], distance;
      const bool side_hit =
          corners == 3 ? OBPickUtil::IntersectTriangleWithLine(at[0], at[1], at[2], &ray[0], &ray[3], tolerance_, t,
                                                               point, barycentric, distance) != 0
                       : OBPickUtil::IntersectQuadWithLine(at[0], at[1], at[2], at[3], &ray[0], &ray[3], tolerance_, t,
                                                           point, barycentric, distance);
      if (!side_hit) continue;
      hit = true;
      const double from_eye = OBPickUtil::DistanceBetweenPoints(&ray[0], point);
      if (!(from_eye < best_distance)) continue;
      best_distance = from_eye;
      std::copy_n(point, 3, best_point);
      // Only ever raised: a nearer side that is merely grazed leaves it.
      if (element_exactness * tolerance_ >= distance) is_exact = true;
    }
    if (hit) append_hit(element, best_point, is_exact, results);
  }
  return true;
}

void PickInterface::pickVerticesTemplate(const std::vector<Elem>& elements, double* ray,
                                         std::vector<NodeResult>& results) {
  std::vector<Node> nodes;
  for (const Elem element : elements) {
    Count count = 0;
    database_->get_element_node_count(element, &count);
    nodes.assign(count, Node{});
    const Count capacity = count;
    if (database_->get_element_vertices(element, &count, capacity, nodes.data()) != 0) continue;
    nodes.resize(std::min(count, capacity));
    pickEntities(nodes, ray, results);
  }
  sort_unique(results);
}

void PickInterface::pickEdgesTemplate(const std::vector<Elem>& elements, double* ray,
                                      std::vector<ElementResult>& results) {
  std::vector<Elem> edges;
  std::vector<Elem> adjacent;
  const std::size_t batches = elements.size() / edge_batch + 1;
  for (std::size_t batch = 0; batch < batches; ++batch) {
    edges.clear();
    const std::size_t end = std::min(elements.size(), (batch + 1) * edge_batch);
    for (std::size_t i = batch * edge_batch; i < end; ++i) {
      adjacent.assign(edge_capacity, Elem{});
      Count count = edge_capacity;
      if (database_->get_adjacencies(elements[i], 1, 2, &count, adjacent.data()) != 0) continue;
      edges.insert(edges.end(), adjacent.begin(), adjacent.begin() + std::min(count, edge_capacity));
    }
    pickEdgeEntities(edges, ray, results);
  }
  sort_unique(results);
}
