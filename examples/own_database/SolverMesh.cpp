#include "SolverMesh.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace {

constexpr std::size_t across = 8; // elements across the bar
constexpr std::size_t along = 40; // and along it
constexpr std::size_t margin = 8; // elements by which the plate is wider than the bar, on each side
constexpr std::size_t foot = 6;   // layers of the bar that belong to its foot
constexpr double size = 1.0 / across;

enum Part : std::size_t { Foot, Bar, Plate };

void add_node(SolverMesh& mesh, double x, double y, double z) {
  mesh.coordinates.insert(mesh.coordinates.end(), {x, y, z});
}

void add_element(SolverMesh& mesh, Tarn::ElementType kind, Part part, std::initializer_list<std::size_t> nodes) {
  mesh.kinds.push_back(kind);
  mesh.corners.insert(mesh.corners.end(), nodes);
  mesh.first_corner.push_back(mesh.corners.size());
  mesh.part.push_back(part);
}

void add_bar(SolverMesh& mesh) {
  constexpr std::size_t row = across + 1, layer = row * row;
  const std::size_t first = mesh.node_count();
  for (std::size_t k = 0; k <= along; ++k)
    for (std::size_t j = 0; j <= across; ++j)
      for (std::size_t i = 0; i <= across; ++i)
        add_node(mesh, i * size - 0.5, j * size - 0.5, k * size);
  for (std::size_t k = 0; k < along; ++k)
    for (std::size_t j = 0; j < across; ++j)
      for (std::size_t i = 0; i < across; ++i) {
        const std::size_t n = first + i + j * row + k * layer, above = n + layer;
        add_element(mesh, Tarn::Hex, k < foot ? Foot : Bar,
                    {n, n + 1, n + row + 1, n + row, above, above + 1, above + row + 1, above + row});
      }
}

void add_plate(SolverMesh& mesh) {
  constexpr std::size_t elements = across + 2 * margin, row = elements + 1;
  constexpr double half = 0.5 * elements * size;
  const std::size_t first = mesh.node_count();
  for (std::size_t j = 0; j <= elements; ++j)
    for (std::size_t i = 0; i <= elements; ++i)
      add_node(mesh, i * size - half, j * size - half, 0);
  for (std::size_t j = 0; j < elements; ++j)
    for (std::size_t i = 0; i < elements; ++i) {
      const std::size_t n = first + i + j * row;
      add_element(mesh, Tarn::Quad, Plate, {n, n + 1, n + row + 1, n + row});
    }
}

} // namespace

SolverMesh make_bar() {
  SolverMesh mesh;
  mesh.part_names = {"foot", "bar", "plate"};
  mesh.first_corner.push_back(0);
  add_bar(mesh);
  add_plate(mesh);
  return mesh;
}

void twist(SolverMesh& mesh, const SolverMesh& straight, double radians) {
  for (std::size_t n = 0; n < mesh.node_count(); ++n) {
    const double* from = &straight.coordinates[3 * n];
    const double turn = radians * from[2] / (along * size);
    double* to = &mesh.coordinates[3 * n];
    to[0] = from[0] * std::cos(turn) - from[1] * std::sin(turn);
    to[1] = from[0] * std::sin(turn) + from[1] * std::cos(turn);
  }
}
