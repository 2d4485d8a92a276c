#pragma once

#include "RawMesh.h"

#include "mesh/MeshVector.h"
#include "mesh/database/SMeshOwnerType.h"
#include "reference/tarn/MeshDatabase.h"

#include <vtkSmartPointer.h>

#include <memory>

class vtkUnstructuredGrid;

namespace bench {

/// A mesh as a host holds it: a database with one owner, and the owner's entities.
struct DatabaseMesh {
  std::unique_ptr<Tarn::MeshDatabase> database; ///< holds nothing but the mesh
  Tarn::SMeshOwnerType* owner = nullptr;        ///< owns all elements
  Tarn::Handle<0> first_node;                   ///< node n of the mesh has the handle n further on
  MeshVector entities;                          ///< what `owner` draws
};

/// Fills a database with the mesh. Ids: one for each node and each element; null for running numbers. Throws
/// std::runtime_error when the database refuses.
DatabaseMesh as_database(const RawMesh& mesh, const int* node_ids = nullptr, const int* element_ids = nullptr);

/// Asks the database for what the owner draws.
MeshVector entities_of(const DatabaseMesh& mesh);

/// The mesh as VTK's filters take it, its points in double precision, as the database has them.
vtkSmartPointer<vtkUnstructuredGrid> as_grid(const RawMesh& mesh);

} // namespace bench
