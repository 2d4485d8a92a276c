#include "pick/PickInterface.h"

#include "mesh/database/MDBDefines.h"
#include "mesh/database/MeshData.h"
#include "platform/base/OBPickUtil.h"
#include "platform/base/PickBounds.h"
#include "platform/util/TovanBox.h"

#include <vtkMatrix4x4.h>

#include <algorithm>
#include <limits>

// The picks by region; those by ray are in PickInterface.cpp.

namespace {

using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;
using Count = Tarn::MeshData::Count;

// What the database does not answer for is nowhere, which no region holds.
constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();

constexpr std::size_t node_batch = 1024;
constexpr Count element_capacity = 8;
constexpr std::size_t vertex_batch = 256;
constexpr std::size_t nodes_per_element = 27;
constexpr std::size_t edge_batch = 1365;
constexpr Count edge_capacity = 24;

template <class H> void sort_unique(std::vector<H>& handles) {
  std::sort(handles.begin(), handles.end());
  handles.erase(std::unique(handles.begin(), handles.end()), handles.end());
}

bool touches(PickBounds& bounds, const double* point) {
  double distance = 0.0;
  return bounds.test(point, distance).touches;
}

bool touches(PickBounds& bounds, const double* a, const double* b) {
  double distance = 0.0;
  return bounds.test(a, b, distance).touches;
}

bool touches(PickBounds& bounds, const double* a, const double* b, const double* c) {
  double distance = 0.0;
  return bounds.test(a, b, c, distance).touches;
}

bool quad_touches(PickBounds& bounds, const double* a, const double* b, const double* c, const double* d) {
  return touches(bounds, a, b, c) || touches(bounds, a, c, d);
}

// The box of the points' x and y.
TovanBox flat_box(const std::vector<double>& display) {
  constexpr double largest = std::numeric_limits<double>::max();
  double minimum[3] = {largest, largest, 0.0};
  double maximum[3] = {-largest, -largest, 0.0};
  for (std::size_t i = 0; i + 2 < display.size(); i += 3) {
    for (int axis = 0; axis < 2; ++axis) {
      minimum[axis] = std::min(minimum[axis], display[i + axis]);
      maximum[axis] = std::max(maximum[axis], display[i + axis]);
    }
  }
  TovanBox box;
  box.reset(minimum, maximum);
  return box;
}

bool side_touches(MDBDefines::ElementType type, int side, const std::vector<double>& display, PickBounds& bounds) {
  const MDBDefines::ElementType shape = MDBDefines::SideBaseElementType(type, side);
  const std::size_t corners = shape == MDBDefines::Triangle ? 3 : shape == MDBDefines::Quadrilateral ? 4 : 0;
  if (corners == 0) return false;
  const std::uint32_t* positions = MDBDefines::SidesetNodeIndices(type, side);
  double at[4][3] = {};
  for (std::size_t i = 0; i < corners; ++i) {
    const std::size_t first = 3 * std::size_t(positions[i]);
    if (first + 2 >= display.size()) return false;
    at[i][0] = display[first];
    at[i][1] = display[first + 1];
  }
  return corners == 3 ? touches(bounds, at[0], at[1], at[2]) : quad_touches(bounds, at[0], at[1], at[2], at[3]);
}

} // namespace

void PickInterface::pickEntities(const std::vector<Node>& nodes, PickBounds& bounds, std::vector<Node>& picked) {
  std::vector<double> x(node_batch);
  std::vector<double> y(node_batch);
  std::vector<double> z(node_batch);
  for (std::size_t begin = 0; begin < nodes.size(); begin += node_batch) {
    const std::size_t count = std::min(node_batch, nodes.size() - begin);
    for (std::vector<double>* axis : {&x, &y, &z})
      std::fill(axis->begin(), axis->end(), nowhere);
    database_->get_coordinate_arrays(count, &nodes[begin], x.data(), y.data(), z.data());
    for (std::size_t i = 0; i < count; ++i) {
      double point[3] = {x[i], y[i], z[i]};
      TransformPoint(point);
      if (touches(bounds, point)) picked.push_back(nodes[begin + i]);
    }
  }
}

void PickInterface::pickEntities(const std::vector<Elem>& elements, PickBounds& bounds, std::vector<Elem>& picked) {
  pickEntitiesTemplate(elements, bounds, picked, partial_accept_);
}

void PickInterface::pickVertices(const std::vector<Elem>& elements, PickBounds& bounds, std::vector<Node>& picked) {
  pickVerticesTemplate(elements, bounds, picked);
}

void PickInterface::pickEdges(const std::vector<Elem>& elements, PickBounds& bounds, std::vector<Elem>& picked) {
  pickEdgesTemplate(elements, bounds, picked);
}

bool PickInterface::evaluateEntity(Tarn::ElementType type, std::vector<double>& display, PickBounds& bounds) {
  if (type > Tarn::Superelement) return false;
  const std::size_t corners = type == Tarn::Edge ? 2 : type == Tarn::Tri ? 3 : type == Tarn::Quad ? 4 : 0;
  if (display.size() < 3 * corners) return false;
  const double* at = display.data();
  if (type == Tarn::Edge) return touches(bounds, at, at + 3);
  if (type == Tarn::Tri) return touches(bounds, at, at + 3, at + 6);
  if (type == Tarn::Quad) return quad_touches(bounds, at, at + 3, at + 6, at + 9);

  const MDBDefines::ElementType solid = MDBDefines::ElementTypeFromTarnType(type);
  if (display.size() >= 3 && !bounds.test(flat_box(display))) return false;
  for (int side = 0; side < MDBDefines::NumSides(solid); ++side)
    if (side_touches(solid, side, display, bounds)) return true;
  return false;
}

void PickInterface::pickEntitiesTemplate(const std::vector<Elem>& elements, PickBounds& bounds,
                                         std::vector<Elem>& picked, bool partial) {
  if (elements.empty()) return;
  std::vector<Tarn::ElementType> types;
  if (partial) {
    types.assign(elements.size(), Tarn::None);
    database_->get_element_types(elements.size(), elements.data(), types.data());
  }
  std::vector<Node> nodes;
  std::vector<double> display;
  std::vector<double> scratch[3];
  for (std::size_t i = 0; i < elements.size(); ++i) {
    nodes.assign(element_capacity, Node{});
    Count count = element_capacity;
    database_->get_element_connectivity(elements[i], &count, nodes.data());
    nodes.resize(std::min(count, element_capacity));
    if (!partial) {
      if (AllNodesAreInBounds(nodes, bounds, scratch)) picked.push_back(elements[i]);
      continue;
    }
    display.assign(3 * nodes.size(), nowhere);
    database_->get_double_coordinates(nodes.size(), nodes.data(), display.data());
    for (std::size_t node = 0; node < nodes.size(); ++node)
      TransformPoint(&display[3 * node]);
    if (evaluateEntity(types[i], display, bounds)) picked.push_back(elements[i]);
  }
}

void PickInterface::pickVerticesTemplate(const std::vector<Elem>& elements, PickBounds& bounds,
                                         std::vector<Node>& picked) {
  std::vector<Node> nodes;
  for (std::size_t begin = 0; begin < elements.size(); begin += vertex_batch) {
    const std::size_t batch = std::min(vertex_batch, elements.size() - begin);
    nodes.assign(nodes_per_element * batch, Node{});
    const Count capacity = nodes.size();
    Count count = capacity;
    if (database_->get_nodes_of_elements(batch, &elements[begin], 0, &count, nodes.data()) != 0) continue;
    nodes.resize(std::min(count, capacity));
    pickEntities(nodes, bounds, picked);
  }
  sort_unique(picked);
}

void PickInterface::pickEdgesTemplate(const std::vector<Elem>& elements, PickBounds& bounds,
                                      std::vector<Elem>& picked) {
  std::vector<Elem> edges;
  for (std::size_t begin = 0; begin < elements.size(); begin += edge_batch) {
    edges.clear();
    const std::size_t end = std::min(elements.size(), begin + edge_batch);
    for (std::size_t i = begin; i < end; ++i) {
      Elem adjacent[edge_capacity] = {};
      Count count = edge_capacity;
      if (database_->get_adjacencies(elements[i], 1, 2, &count, adjacent) != 0) continue;
      edges.insert(edges.end(), adjacent, adjacent + std::min(count, edge_capacity));
    }
    pickEntitiesTemplate(edges, bounds, picked, partial_accept_);
  }
  sort_unique(picked);
}

bool PickInterface::AllNodesAreInBounds(const std::vector<Node>& nodes, PickBounds& bounds,
                                        std::vector<double>* scratch) {
  for (int axis = 0; axis < 3; ++axis)
    scratch[axis].assign(nodes.size(), nowhere);
  database_->get_coordinate_arrays(nodes.size(), nodes.data(), scratch[0].data(), scratch[1].data(), scratch[2].data());
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    double point[3] = {scratch[0][i], scratch[1][i], scratch[2][i]};
    TransformPoint(point);
    if (!touches(bounds, point)) return false;
  }
  return true;
}

void PickInterface::TransformPoint(double* point) const {
  const double world[4] = {point[0], point[1], point[2], 1.0};
  double view[4];
  transform_->MultiplyPoint(world, view);
  for (int axis = 0; axis < 3; ++axis)
    point[axis] = view[axis] / view[3];
  OBPickUtil::view_to_display(point, point, display_size_, viewport_);
}
