#include "tests/proof/ProofMesh.h"

#include <algorithm>
#include <limits>
#include <map>

namespace proof {

namespace {

using Tarn::ElementType;

Point between(const Point& a, const Point& b) { return {(a[0] + b[0]) / 2, (a[1] + b[1]) / 2, (a[2] + b[2]) / 2}; }

bool is_kept(const Point& point, const Clip& clip) {
  double side = 0;
  for (std::size_t axis = 0; axis < 3; ++axis)
    side += (point[axis] - clip.origin[axis]) * clip.normal[axis];
  return !clip.on || side >= 0;
}

bool is_one_of(const std::vector<int>& owners, int owner) {
  return std::find(owners.begin(), owners.end(), owner) != owners.end();
}

// The outer faces: those that one solid has.
std::vector<std::vector<int>> outer_faces(const Mesh& mesh) {
  std::map<std::vector<int>, std::pair<int, std::vector<int>>> seen;
  for (const Element& element : mesh.elements) {
    if (element.type < Tarn::Tet || element.type > Tarn::Pyramid) continue;
    for (const auto& face : faces_of(element.type)) {
      std::vector<int> nodes;
      for (const int corner : face)
        nodes.push_back(element.nodes[std::size_t(corner)]);
      std::vector<int> key = nodes;
      std::sort(key.begin(), key.end());
      auto& entry = seen[key];
      ++entry.first;
      entry.second = nodes;
    }
  }
  std::vector<std::vector<int>> outer;
  for (const auto& [key, entry] : seen)
    if (entry.first == 1) outer.push_back(entry.second);
  return outer;
}

} // namespace

const std::vector<std::vector<int>>& faces_of(ElementType type) {
  static const std::vector<std::vector<int>> tables[] = {
      {},
      {},
      {},
      {{0, 1, 2}},
      {{0, 1, 2, 3}},
      {{0, 1, 3}, {1, 2, 3}, {2, 0, 3}, {0, 2, 1}},
      {{0, 4, 7, 3}, {1, 2, 6, 5}, {0, 1, 5, 4}, {3, 7, 6, 2}, {0, 3, 2, 1}, {4, 5, 6, 7}},
      {{0, 1, 2}, {3, 5, 4}, {0, 3, 4, 1}, {1, 4, 5, 2}, {2, 5, 3, 0}},
      {{0, 3, 2, 1}, {0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {3, 0, 4}},
      {}};
  return tables[type];
}

const std::vector<std::array<int, 2>>& edges_of(ElementType type) {
  static const std::vector<std::array<int, 2>> tables[] = {
      {},
      {},
      {{0, 1}},
      {{0, 1}, {1, 2}, {2, 0}},
      {{0, 1}, {1, 2}, {2, 3}, {3, 0}},
      {{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}},
      {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}},
      {{0, 1}, {1, 2}, {2, 0}, {3, 4}, {4, 5}, {5, 3}, {0, 3}, {1, 4}, {2, 5}},
      {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {0, 4}, {1, 4}, {2, 4}, {3, 4}},
      {}};
  return tables[type];
}

int corner_count(ElementType type) {
  static const int counts[] = {0, 1, 2, 3, 4, 4, 8, 6, 5, 0};
  return counts[type];
}

int Mesh::add_point(Point point) {
  points.push_back(point);
  return static_cast<int>(points.size()) - 1;
}

void Mesh::add(ElementType type, std::vector<int> nodes, int owner) {
  elements.push_back({type, std::move(nodes), owner, false, {}});
}

void Mesh::make_quadratic(const std::function<Point(Point)>& bend) {
  std::map<std::pair<int, int>, int> middles;
  for (Element& element : elements) {
    for (const auto& edge : edges_of(element.type)) {
      const int a = element.nodes[std::size_t(edge[0])];
      const int b = element.nodes[std::size_t(edge[1])];
      const auto [found, is_new] = middles.emplace(std::minmax(a, b), 0);
      if (is_new) {
        const Point middle = between(points[std::size_t(a)], points[std::size_t(b)]);
        found->second = add_point(bend ? bend(middle) : middle);
      }
      element.nodes.push_back(found->second);
    }
    element.curved = bool(bend);
  }
}

void Mesh::move(const std::function<Point(Point)>& where) {
  for (Point& point : points)
    point = where(point);
}

void Mesh::fill() {
  database = std::make_unique<Tarn::MeshDatabase>();
  for (int owner = 0; owner < owner_count; ++owner)
    owners.push_back(database->add_owner("owner " + std::to_string(owner)));
  const Tarn::Handle<0> first = database->add_nodes(points.size(), points.front().data());
  for (std::size_t i = 0; i < points.size(); ++i)
    handles.push_back({first.value + i});
  for (Element& element : elements) {
    std::vector<Tarn::Handle<0>> nodes;
    for (const int node : element.nodes)
      nodes.push_back(handles[std::size_t(node)]);
    element.handle = database->add_elements(element.type, static_cast<int>(nodes.size()), 1, nodes.data(), nullptr,
                                            owners[std::size_t(element.owner)]);
  }
}

MeshVector Mesh::of_owner(int owner) const {
  MeshVector list;
  for (const auto& [node, of] : lone_nodes)
    if (of == owner) list.nodes.push_back(handles[std::size_t(node)]);
  for (const Element& element : elements)
    if (element.owner == owner) list.elements[element.type].push_back(element.handle);
  return list;
}

std::vector<char> Mesh::shown(const std::vector<int>& hidden_owners, const Clip& clip) const {
  std::vector<char> shown;
  for (const Element& element : elements) {
    const bool is_left = std::any_of(element.nodes.begin(), element.nodes.end(),
                                     [&](int node) { return is_kept(points[std::size_t(node)], clip); });
    shown.push_back(is_left && !is_one_of(hidden_owners, element.owner));
  }
  return shown;
}

std::vector<char> Mesh::shown_lone_nodes(const std::vector<int>& hidden_owners, const Clip& clip) const {
  std::vector<char> shown;
  for (const auto& [node, owner] : lone_nodes)
    shown.push_back(is_kept(points[std::size_t(node)], clip) && !is_one_of(hidden_owners, owner));
  return shown;
}

std::array<double, 6> Mesh::bounds() const {
  constexpr double most = std::numeric_limits<double>::max();
  std::array<double, 6> box = {most, most, most, -most, -most, -most};
  for (const Point& point : points) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      box[axis] = std::min(box[axis], point[axis]);
      box[3 + axis] = std::max(box[3 + axis], point[axis]);
    }
  }
  return box;
}

void add_cube(Mesh& mesh, ElementType type, const std::array<int, 8>& c, int owner) {
  switch (type) {
  case Tarn::Hex:
    mesh.add(type, {c.begin(), c.end()}, owner);
    break;
  case Tarn::Wedge:
    mesh.add(type, {c[0], c[2], c[1], c[4], c[6], c[5]}, owner);
    mesh.add(type, {c[0], c[3], c[2], c[4], c[7], c[6]}, owner);
    break;
  case Tarn::Tet:
    for (const auto& way : {std::array<int, 2>{1, 2}, {2, 3}, {3, 7}, {7, 4}, {4, 5}, {5, 1}})
      mesh.add(type, {c[0], c[std::size_t(way[0])], c[std::size_t(way[1])], c[6]}, owner);
    break;
  case Tarn::Pyramid: {
    Point middle = {0, 0, 0};
    for (const int corner : c)
      for (std::size_t axis = 0; axis < 3; ++axis)
        middle[axis] += mesh.points[std::size_t(corner)][axis] / 8;
    const int apex = mesh.add_point(middle);
    for (const auto& face : faces_of(Tarn::Hex))
      mesh.add(
          type,
          {c[std::size_t(face[3])], c[std::size_t(face[2])], c[std::size_t(face[1])], c[std::size_t(face[0])], apex},
          owner);
    break;
  }
  default:
    break;
  }
}

Mesh block(int nx, int ny, int nz, const std::function<ElementType(int, int, int)>& kind,
           const std::function<int(int, int, int)>& owner) {
  Mesh mesh;
  for (int z = 0; z <= nz; ++z)
    for (int y = 0; y <= ny; ++y)
      for (int x = 0; x <= nx; ++x)
        mesh.add_point({double(x), double(y), double(z)});
  const int dy = nx + 1;
  const int dz = dy * (ny + 1);
  for (int z = 0; z < nz; ++z) {
    for (int y = 0; y < ny; ++y) {
      for (int x = 0; x < nx; ++x) {
        const int to = owner ? owner(x, y, z) : 0;
        if (to < 0) continue;
        mesh.owner_count = std::max(mesh.owner_count, to + 1);
        const int base = x + y * dy + z * dz;
        add_cube(
            mesh, kind(x, y, z),
            {base, base + 1, base + dy + 1, base + dy, base + dz, base + dz + 1, base + dz + dy + 1, base + dz + dy},
            to);
      }
    }
  }
  return mesh;
}

Mesh block(int nx, int ny, int nz, ElementType kind) {
  return block(nx, ny, nz, [kind](int, int, int) { return kind; });
}

Mesh sheet(int nx, int ny, ElementType kind) {
  Mesh mesh;
  for (int y = 0; y <= ny; ++y)
    for (int x = 0; x <= nx; ++x)
      mesh.add_point({double(x), double(y), 0});
  for (int y = 0; y < ny; ++y) {
    for (int x = 0; x < nx; ++x) {
      const int a = x + y * (nx + 1);
      const int d = a + nx + 1;
      if (kind == Tarn::Quad) {
        mesh.add(kind, {a, a + 1, d + 1, d});
      } else {
        mesh.add(kind, {a, a + 1, d + 1});
        mesh.add(kind, {a, d + 1, d});
      }
    }
  }
  return mesh;
}

void add_shells(Mesh& mesh, int nth, int owner) {
  mesh.owner_count = std::max(mesh.owner_count, owner + 1);
  int count = 0;
  for (const auto& face : outer_faces(mesh))
    if (count++ % nth == 0) mesh.add(face.size() == 3 ? Tarn::Tri : Tarn::Quad, face, owner);
}

} // namespace proof
