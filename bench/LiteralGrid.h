#pragma once

#include "mesh/database/Side.h"

#include <vtkSmartPointer.h>

#include <vector>

namespace Tarn {
class MeshData;
}

class vtkPolyData;
class vtkUnstructuredGrid;

namespace bench {

/// The straightforward way to the 2-D grid of a group: number the faces' nodes, read their coordinates, insert cell by
/// cell. Faces of linear elements only. Carries "NodeIds" and "ElemIds".
vtkSmartPointer<vtkUnstructuredGrid> literal_grid(Tarn::MeshData& database, const std::vector<Side*>& sides);

/// The grid's surface by vtkGeometryFilter on the sequential back end.
vtkSmartPointer<vtkPolyData> literal_surface(vtkUnstructuredGrid* grid);

/// A vertex on each point, inserted one by one.
vtkSmartPointer<vtkPolyData> literal_nodes(vtkUnstructuredGrid* grid);

} // namespace bench
