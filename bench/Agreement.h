#pragma once

#include <vtkType.h>

#include <array>
#include <string>
#include <vector>

class vtkCellArray;
class vtkDataSet;
class vtkDataSetAttributes;
class vtkIdTypeArray;
class vtkPolyData;
class vtkTypeUInt64Array;
class vtkUnstructuredGrid;

/// What stands between the benchmark and a lie: every comparison is made once between results that were also compared.
/// All of these throw std::runtime_error, saying what differs, when results do not agree.
namespace bench {

/// Cells by the nodes that they use, in an order that no longer depends on how they were found: the nodes of each
/// ascending, unused places -1, and the list ascending.
using CellSet = std::vector<std::array<vtkIdType, 4>>;

/// The cells with the mesh's number of each point; cells have at most 4 points.
CellSet cell_set(vtkCellArray* cells, const std::vector<vtkIdType>& node_of_point);

/// The mesh's node number of each point, from an array of handles that starts at `first_handle`, or from VTK's original
/// point ids.
std::vector<vtkIdType> nodes_of_handles(vtkTypeUInt64Array* handles, unsigned long long first_handle);
std::vector<vtkIdType> nodes_of_point_ids(vtkIdTypeArray* point_ids);

/// Area of all polygons.
double surface_area(vtkPolyData* surface);

/// `what` names the things compared.
void require_equal(const std::string& what, double ours, double peer, double relative_tolerance = 0);
void require_equal(const std::string& what, const CellSet& ours, const CellSet& peer);
/// Points, cells in their order, and all point and cell arrays.
void require_equal(const std::string& what, vtkUnstructuredGrid* ours, vtkUnstructuredGrid* peer);
void require_equal(const std::string& what, vtkPolyData* ours, vtkPolyData* peer);

} // namespace bench
