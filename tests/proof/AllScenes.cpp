#include "tests/proof/Scene.h"

#include <cmath>
#include <random>
#include <utility>

namespace proof {

namespace {

constexpr Look parallel_view(double x, double y, double z) {
  Look look;
  look.direction = {x, y, z};
  look.parallel = true;
  return look;
}

constexpr Look perspective(double x, double y, double z, double zoom = 1.4, double angle = 30) {
  Look look;
  look.direction = {x, y, z};
  look.zoom = zoom;
  look.angle = angle;
  return look;
}

constexpr Clip keep(Point origin, Point normal) { return {true, origin, normal}; }

Look in_viewport(Look look, double x0, double y0, double x1, double y1) {
  look.viewport[0] = x0;
  look.viewport[1] = y0;
  look.viewport[2] = x1;
  look.viewport[3] = y1;
  return look;
}

// All faces stay plane: sheared, stretched and narrower above.
Point leaning(Point p) {
  const double narrow = 1 - 0.08 * p[2];
  return {narrow * (p[0] + 0.2 * p[1]), narrow * (1.3 * p[1]), 0.9 * p[2] + 0.15 * p[1]};
}

// The same numbers everywhere.
double noise(std::mt19937& random) { return random() / 4294967296.0 - 0.5; }

void jitter(Mesh& mesh, double amount, unsigned seed) {
  std::mt19937 random(seed);
  for (Point& point : mesh.points)
    for (double& value : point)
      value += amount * noise(random);
}

Tarn::ElementType any_solid(unsigned number) {
  const Tarn::ElementType kinds[] = {Tarn::Hex, Tarn::Wedge, Tarn::Tet, Tarn::Pyramid};
  return kinds[number % 4];
}

Mesh mixed_solids(int nx, int ny, int nz, unsigned seed) {
  std::mt19937 random(seed);
  return block(nx, ny, nz, [&random](int, int, int) { return any_solid(random() >> 7); });
}

Mesh scattered(int n, Tarn::ElementType kind, unsigned seed) {
  std::mt19937 random(seed);
  return block(
      n, n, n, [kind](int, int, int) { return kind; },
      [&random](int, int, int) { return (random() >> 9) % 3 == 0 ? 0 : -1; });
}

Mesh tube(Tarn::ElementType kind) {
  Mesh mesh = sheet(14, 4, kind);
  mesh.move([](Point p) { return Point{3 * std::cos(0.35 * p[0]), 1.5 * p[1], 3 * std::sin(0.35 * p[0])}; });
  return mesh;
}

Mesh dotted() {
  Mesh mesh = sheet(5, 5, Tarn::Quad);
  for (int i = 0; i < 3; ++i) {
    std::vector<int> nodes;
    for (int k = 0; k < 4; ++k)
      nodes.push_back(mesh.add_point({0.6 + 1.7 * i, 0.55 + 1.3 * k, 0.4}));
    mesh.add(Tarn::Superelement, nodes);
  }
  return mesh;
}

// One of each kind beside the other, thin kinds too.
Mesh every_kind() {
  Mesh mesh;
  double x = 0;
  for (const Tarn::ElementType kind : {Tarn::Hex, Tarn::Wedge, Tarn::Tet, Tarn::Pyramid}) {
    std::array<int, 8> corners{};
    int at = 0;
    for (const auto& c : {Point{0, 0, 0}, Point{1, 0, 0}, Point{1, 1, 0}, Point{0, 1, 0}, Point{0, 0, 1},
                          Point{1, 0, 1}, Point{1, 1, 1}, Point{0, 1, 1}})
      corners[std::size_t(at++)] = mesh.add_point({x + c[0], c[1], c[2]});
    add_cube(mesh, kind, corners);
    x += 1.3;
  }
  const int a = mesh.add_point({0, -1.4, 0});
  const int b = mesh.add_point({2, -1.4, 0});
  const int c = mesh.add_point({2, -0.3, 0.3});
  const int d = mesh.add_point({0, -0.3, 0.3});
  const int e = mesh.add_point({3.5, -1.2, 0.5});
  mesh.add(Tarn::Quad, {a, b, c, d});
  mesh.add(Tarn::Tri, {b, e, c});
  mesh.add(Tarn::Edge, {e, mesh.add_point({5, -1, 0})});
  mesh.add(Tarn::OneNode, {e});
  mesh.add(Tarn::Superelement, {mesh.add_point({4.5, -0.4, 1}), mesh.add_point({4.9, -1.3, 0.2})});
  return mesh;
}

Mesh owners_in_layers() {
  Mesh mesh = block(
      5, 3, 3, [](int x, int y, int z) { return any_solid(unsigned(x + 2 * y + 3 * z)); },
      [](int x, int, int z) { return (x + z) % 4; });
  mesh.move(leaning);
  return mesh;
}

Mesh quadratic(Mesh mesh, const std::function<Point(Point)>& bend = nullptr) {
  mesh.make_quadratic(bend);
  return mesh;
}

Mesh moved(Mesh mesh) {
  mesh.move(leaning);
  return mesh;
}

Point bulging(Point p) {
  return {p[0] + 0.12 * std::sin(2.1 * p[1] + p[2]), p[1] + 0.1 * std::sin(1.7 * p[0]), p[2] + 0.1 * std::cos(p[0])};
}

Scene scene(const char* name, Mesh mesh, Look look) {
  Scene made;
  made.name = name;
  made.mesh = std::move(mesh);
  made.views = {look};
  return made;
}

void add_single_kinds(std::vector<Scene>& scenes) {
  scenes.push_back(scene("hexahedra, parallel", block(4, 4, 3, Tarn::Hex), parallel_view(0.6, 0.5, 1)));
  scenes.push_back(scene("hexahedra, perspective", moved(block(4, 4, 3, Tarn::Hex)), perspective(-0.7, 0.4, 1)));
  scenes.push_back(scene("hexahedra, along an axis", block(5, 4, 2, Tarn::Hex), parallel_view(0, 0, 1)));
  scenes.push_back(scene("wedges", moved(block(4, 3, 3, Tarn::Wedge)), perspective(1, 0.7, 0.4)));
  scenes.push_back(scene("tetrahedra", moved(block(3, 3, 2, Tarn::Tet)), perspective(0.2, 1, 0.9)));
  scenes.push_back(scene("pyramids", moved(block(3, 3, 2, Tarn::Pyramid)), parallel_view(0.9, -0.6, 0.8)));
  scenes.push_back(scene("quadrilaterals", tube(Tarn::Quad), perspective(0.3, 0.6, 1)));
  scenes.push_back(scene("triangles", tube(Tarn::Tri), parallel_view(0.9, 0.7, 0.2)));
  scenes.push_back(scene("superelements before a sheet", dotted(), perspective(0.1, 0.2, 1)));
  Mesh loose = block(3, 3, 2, Tarn::Tet);
  jitter(loose, 0.4, 3);
  scenes.push_back(scene("tetrahedra out of shape", std::move(loose), perspective(-1, 0.8, 0.7)));
  Mesh warped = block(3, 3, 3, Tarn::Hex);
  jitter(warped, 0.3, 5);
  scenes.push_back(scene("warped hexahedra", std::move(warped), parallel_view(0.7, 0.8, 1)));
}

void add_mixed(std::vector<Scene>& scenes) {
  scenes.push_back(scene("every kind", every_kind(), perspective(0.3, 0.5, 1)));
  scenes.push_back(scene("mixed solids", moved(mixed_solids(4, 3, 2, 7)), perspective(0.8, 0.6, 1)));
  scenes.push_back(scene("mixed solids, parallel", mixed_solids(3, 3, 3, 8), parallel_view(1, 0.9, 0.8)));
  scenes.push_back(scene("scattered hexahedra", scattered(6, Tarn::Hex, 9), perspective(0.6, 0.7, 1)));
  scenes.push_back(
      scene("scattered wedges, from close by", scattered(5, Tarn::Wedge, 10), perspective(0.5, 0.3, 1, 1.2, 70)));
  scenes.push_back(scene("scattered pyramids, parallel", scattered(4, Tarn::Pyramid, 11), parallel_view(0.4, 0.3, 1)));
  scenes.push_back(scene("several owners", owners_in_layers(), perspective(0.7, 0.5, 1)));
  scenes.push_back(scene("several owners, two hidden", owners_in_layers(), parallel_view(-0.6, 0.5, 1)));
  scenes.back().hidden = {1, 3};
  Mesh far_away = moved(mixed_solids(3, 3, 2, 12));
  far_away.move([](Point p) { return Point{p[0] + 20000, p[1] - 50000, p[2] + 3000}; });
  scenes.push_back(scene("far from the origin", std::move(far_away), parallel_view(0.5, 0.5, 1)));
}

void add_clipped(std::vector<Scene>& scenes) {
  scenes.push_back(scene("clipped hexahedra", block(4, 4, 4, Tarn::Hex), perspective(0.6, 0.5, 1)));
  scenes.back().clip = keep({2, 2, 2.5}, {-0.3, -0.2, -1});
  scenes.push_back(scene("clipped mixed owners", owners_in_layers(), parallel_view(0.8, 0.4, 1)));
  scenes.back().clip = keep({2.5, 2, 1.2}, {-0.6, 0.2, -0.7});
  scenes.back().hidden = {2};
}

void add_quadratic(std::vector<Scene>& scenes) {
  scenes.push_back(scene("quadratic hexahedra", quadratic(moved(block(3, 3, 3, Tarn::Hex))), perspective(1, 0.5, 0.8)));
  scenes.push_back(
      scene("quadratic tetrahedra", quadratic(moved(block(2, 3, 2, Tarn::Tet))), parallel_view(0.6, 0.9, 0.5)));
  scenes.push_back(scene("quadratic mixed solids", quadratic(mixed_solids(3, 2, 2, 13)), perspective(0.6, 0.5, 1)));
  scenes.push_back(scene("curved hexahedra", quadratic(block(3, 2, 2, Tarn::Hex), bulging), perspective(0.7, 0.5, 1)));
  scenes.push_back(scene("curved quadrilaterals", quadratic(tube(Tarn::Quad), bulging), perspective(0.3, 0.7, 1)));
  scenes.push_back(scene("curved triangles, clipped", quadratic(tube(Tarn::Tri), bulging), parallel_view(0.5, 0.6, 1)));
  scenes.back().clip = keep({0, 3, 0}, {0, 1, 0.2});
}

void add_shelled(std::vector<Scene>& scenes) {
  Mesh skinned = moved(mixed_solids(3, 3, 2, 14));
  add_shells(skinned, 2, 0);
  scenes.push_back(scene("shells on solids", std::move(skinned), perspective(0.6, 0.6, 1)));
  Mesh apart = moved(block(4, 3, 2, Tarn::Hex));
  add_shells(apart, 3, 1);
  scenes.push_back(scene("shells on solids, in an owner of their own", std::move(apart), parallel_view(0.9, 0.5, 1)));
}

void add_views(std::vector<Scene>& scenes) {
  scenes.push_back(
      scene("two views", moved(mixed_solids(3, 2, 2, 15)), in_viewport(perspective(0.5, 0.6, 1), 0, 0, 0.5, 1)));
  scenes.back().views.push_back(in_viewport(parallel_view(-1, 0.4, 0.3), 0.5, 0, 1, 1));
  scenes.back().width *= 2;
  scenes.push_back(scene("right half of the window", moved(block(3, 4, 3, Tarn::Wedge)),
                         in_viewport(perspective(0.7, 0.3, 1), 0.5, 0, 1, 1)));
  scenes.back().width *= 2;
  scenes.push_back(scene("upper half of the window, parallel, clipped", moved(block(5, 3, 3, Tarn::Hex)),
                         in_viewport(parallel_view(0.6, 0.7, 1), 0, 0.5, 1, 1)));
  scenes.back().height *= 2;
  scenes.back().clip = keep({2.5, 2, 1.5}, {-1, 0.3, -0.4});
  scenes.push_back(scene("translucent", moved(mixed_solids(3, 3, 2, 16)), perspective(0.4, 0.8, 1)));
  scenes.back().translucent = true;
  scenes.push_back(scene("translucent owners, clipped", owners_in_layers(), parallel_view(0.5, 0.6, 1)));
  scenes.back().translucent = true;
  scenes.back().clip = keep({2, 2, 1.8}, {0.2, -0.3, -1});
  scenes.back().hidden = {0};
}

} // namespace

std::vector<Scene> all_scenes() {
  std::vector<Scene> scenes;
  for (const auto add : {add_single_kinds, add_mixed, add_clipped, add_quadratic, add_shelled, add_views})
    add(scenes);
  return scenes;
}

} // namespace proof
