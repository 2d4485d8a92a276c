#include "MeshInputs.h"

#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkIdTypeArray.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <stdexcept>

namespace bench {
namespace {

int vtk_cell_type(Tarn::ElementType type) {
  switch (type) {
  case Tarn::Quad:
    return VTK_QUAD;
  case Tarn::Tet:
    return VTK_TETRA;
  case Tarn::Hex:
    return VTK_HEXAHEDRON;
  default:
    throw std::invalid_argument("no mesh of this kind is generated");
  }
}

vtkSmartPointer<vtkPoints> as_points(const RawMesh& mesh) {
  vtkNew<vtkDoubleArray> coordinates;
  coordinates->SetNumberOfComponents(3);
  std::copy(mesh.xyz.begin(), mesh.xyz.end(), coordinates->WritePointer(0, static_cast<vtkIdType>(mesh.xyz.size())));
  auto points = vtkSmartPointer<vtkPoints>::New();
  points->SetData(coordinates);
  return points;
}

} // namespace

DatabaseMesh as_database(const RawMesh& mesh, const int* node_ids, const int* element_ids) {
  DatabaseMesh result;
  result.database = std::make_unique<Tarn::MeshDatabase>();
  result.owner = result.database->add_owner("mesh");
  result.first_node = result.database->add_nodes(mesh.node_count(), mesh.xyz.data(), node_ids);
  std::vector<Tarn::Handle<0>> nodes(mesh.nodes.size());
  std::transform(mesh.nodes.begin(), mesh.nodes.end(), nodes.begin(), [&result](std::int32_t node) {
    return Tarn::Handle<0>{result.first_node.value + static_cast<std::uint64_t>(node)};
  });
  const Tarn::Handle<1> first_element = result.database->add_elements(
      mesh.type, mesh.nodes_per_element, mesh.element_count(), nodes.data(), element_ids, result.owner);
  if (result.first_node.value == 0 || first_element.value == 0) throw std::runtime_error("the database refused a mesh");
  result.entities = entities_of(result);
  return result;
}

MeshVector entities_of(const DatabaseMesh& mesh) {
  MeshVector entities;
  for (std::uint32_t kind = Tarn::OneNode; kind <= Tarn::Superelement; ++kind) {
    const auto type = static_cast<Tarn::ElementType>(kind);
    Tarn::MeshData::Count count = 0;
    mesh.database->get_owner_element_count(mesh.owner, type, &count);
    if (count == 0) continue;
    entities.elements[kind].resize(count);
    mesh.database->get_owner_elements(mesh.owner, type, &count, entities.elements[kind].data());
  }
  return entities;
}

vtkSmartPointer<vtkUnstructuredGrid> as_grid(const RawMesh& mesh) {
  const auto count = static_cast<vtkIdType>(mesh.element_count());
  vtkNew<vtkIdTypeArray> offsets;
  vtkIdType* offset = offsets->WritePointer(0, count + 1);
  for (vtkIdType element = 0; element <= count; ++element)
    offset[element] = element * mesh.nodes_per_element;
  vtkNew<vtkIdTypeArray> connectivity;
  std::copy(mesh.nodes.begin(), mesh.nodes.end(),
            connectivity->WritePointer(0, static_cast<vtkIdType>(mesh.nodes.size())));
  vtkNew<vtkCellArray> cells;
  cells->SetData(offsets, connectivity);
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(as_points(mesh));
  grid->SetCells(vtk_cell_type(mesh.type), cells);
  return grid;
}

} // namespace bench
