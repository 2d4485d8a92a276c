#include "RawMesh.h"

#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkNew.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLUnstructuredGridReader.h>

#include <array>
#include <numeric>
#include <random>
#include <stdexcept>
#include <utility>

namespace bench {
namespace {

std::vector<double> lattice(int nx, int ny, int nz) {
  std::vector<double> xyz;
  xyz.reserve(std::size_t(3) * (nx + 1) * (ny + 1) * (nz + 1));
  for (int k = 0; k <= nz; ++k)
    for (int j = 0; j <= ny; ++j)
      for (int i = 0; i <= nx; ++i)
        xyz.insert(xyz.end(), {double(i), double(j), double(k)});
  return xyz;
}

/// Calls `take` with the corners of each cube, in the order of a hexahedron's nodes.
template <class Take> void for_each_cube(int nx, int ny, int nz, const Take& take) {
  const std::int32_t row = nx + 1;
  const std::int32_t layer = row * (ny + 1);
  for (int k = 0; k < nz; ++k)
    for (int j = 0; j < ny; ++j)
      for (int i = 0; i < nx; ++i) {
        const std::int32_t c = i + j * row + k * layer;
        take(std::array<std::int32_t, 8>{c, c + 1, c + 1 + row, c + row, c + layer, c + 1 + layer, c + 1 + row + layer,
                                         c + row + layer});
      }
}

/// A random order of 0 to n - 1.
std::vector<std::int32_t> random_order(std::size_t n, std::mt19937_64& random) {
  std::vector<std::int32_t> order(n);
  std::iota(order.begin(), order.end(), 0);
  // std::shuffle may differ between standard libraries.
  for (std::size_t left = n; left > 1; --left)
    std::swap(order[left - 1], order[random() % left]);
  return order;
}

} // namespace

RawMesh box_of_hexahedra(int nx, int ny, int nz) {
  RawMesh mesh;
  mesh.type = Tarn::Hex;
  mesh.nodes_per_element = 8;
  mesh.xyz = lattice(nx, ny, nz);
  mesh.nodes.reserve(std::size_t(8) * nx * ny * nz);
  for_each_cube(nx, ny, nz, [&mesh](const std::array<std::int32_t, 8>& corners) {
    mesh.nodes.insert(mesh.nodes.end(), corners.begin(), corners.end());
  });
  return mesh;
}

RawMesh box_of_tetrahedra(int n) {
  // One tetrahedron for each way from corner 0 to corner 6 along the cube's edges, all of positive volume.
  static constexpr int tets[6][4] = {{0, 1, 2, 6}, {0, 2, 3, 6}, {0, 3, 7, 6},
                                     {0, 7, 4, 6}, {0, 4, 5, 6}, {0, 5, 1, 6}};
  RawMesh mesh;
  mesh.type = Tarn::Tet;
  mesh.nodes_per_element = 4;
  mesh.xyz = lattice(n, n, n);
  mesh.nodes.reserve(std::size_t(24) * n * n * n);
  for_each_cube(n, n, n, [&mesh](const std::array<std::int32_t, 8>& corners) {
    for (const auto& tet : tets)
      for (const int corner : tet)
        mesh.nodes.push_back(corners[corner]);
  });
  return mesh;
}

RawMesh square_of_quadrilaterals(int n) { return rectangle_of_quadrilaterals(n, n); }

RawMesh rectangle_of_quadrilaterals(int nx, int ny) {
  RawMesh mesh;
  mesh.type = Tarn::Quad;
  mesh.nodes_per_element = 4;
  mesh.xyz = lattice(nx, ny, 0);
  mesh.nodes.reserve(std::size_t(4) * nx * ny);
  const std::int32_t row = nx + 1;
  for (int j = 0; j < ny; ++j)
    for (int i = 0; i < nx; ++i) {
      const std::int32_t c = i + j * row;
      mesh.nodes.insert(mesh.nodes.end(), {c, c + 1, c + 1 + row, c + row});
    }
  return mesh;
}

RawMesh shuffled(const RawMesh& mesh, std::uint64_t seed) {
  std::mt19937_64 random(seed);
  const std::vector<std::int32_t> new_place = random_order(mesh.node_count(), random);
  const std::vector<std::int32_t> element_order = random_order(mesh.element_count(), random);
  RawMesh result;
  result.type = mesh.type;
  result.nodes_per_element = mesh.nodes_per_element;
  result.xyz.resize(mesh.xyz.size());
  for (std::size_t node = 0; node < mesh.node_count(); ++node)
    for (int axis = 0; axis < 3; ++axis)
      result.xyz[std::size_t(3) * new_place[node] + axis] = mesh.xyz[3 * node + axis];
  result.nodes.reserve(mesh.nodes.size());
  for (const std::int32_t element : element_order)
    for (int corner = 0; corner < mesh.nodes_per_element; ++corner)
      result.nodes.push_back(new_place[mesh.nodes[std::size_t(element) * mesh.nodes_per_element + corner]]);
  return result;
}

RawMesh read_tetrahedra(const std::string& path) {
  vtkNew<vtkXMLUnstructuredGridReader> reader;
  if (!reader->CanReadFile(path.c_str())) throw std::runtime_error(path + ": not a readable .vtu file");
  reader->SetFileName(path.c_str());
  reader->Update();
  vtkUnstructuredGrid* grid = reader->GetOutput();
  RawMesh mesh;
  mesh.type = Tarn::Tet;
  mesh.nodes_per_element = 4;
  mesh.xyz.resize(std::size_t(3) * grid->GetNumberOfPoints());
  for (vtkIdType point = 0; point < grid->GetNumberOfPoints(); ++point)
    grid->GetPoint(point, &mesh.xyz[std::size_t(3) * point]);
  for (vtkIdType cell = 0; cell < grid->GetNumberOfCells(); ++cell) {
    if (grid->GetCellType(cell) != VTK_TETRA) continue;
    vtkIdType count = 0;
    const vtkIdType* points = nullptr;
    grid->GetCells()->GetCellAtId(cell, count, points);
    for (vtkIdType corner = 0; corner < count; ++corner)
      mesh.nodes.push_back(static_cast<std::int32_t>(points[corner]));
  }
  if (mesh.nodes.empty()) throw std::runtime_error(path + ": no tetrahedra");
  return mesh;
}

} // namespace bench
