#include "Agreement.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkDataSetAttributes.h>
#include <vtkIdTypeArray.h>
#include <vtkMath.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkTypeUInt64Array.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>
#include <vtkVariant.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <stdexcept>

namespace bench {
namespace {

[[noreturn]] void disagree(const std::string& what, const std::string& how) {
  throw std::runtime_error(what + " disagree: " + how);
}

void require_equal_arrays(const std::string& what, vtkAbstractArray* ours, vtkAbstractArray* peer) {
  if (!ours || !peer) {
    if (ours != peer) disagree(what, "only one side has them");
    return;
  }
  if (ours->GetNumberOfComponents() != peer->GetNumberOfComponents()) disagree(what, "components");
  if (ours->GetNumberOfValues() != peer->GetNumberOfValues()) disagree(what, "lengths");
  // Variants keep 64-bit integers exact.
  for (vtkIdType i = 0; i < ours->GetNumberOfValues(); ++i)
    if (ours->GetVariantValue(i) != peer->GetVariantValue(i)) disagree(what, "value " + std::to_string(i));
}

void require_equal_attributes(const std::string& what, vtkDataSetAttributes* ours, vtkDataSetAttributes* peer) {
  if (ours->GetNumberOfArrays() != peer->GetNumberOfArrays()) disagree(what, "numbers of arrays");
  for (int i = 0; i < peer->GetNumberOfArrays(); ++i) {
    const char* name = peer->GetArrayName(i);
    require_equal_arrays(what + ", " + name, ours->GetAbstractArray(name), peer->GetAbstractArray(i));
  }
}

void require_equal_cells(const std::string& what, vtkCellArray* ours, vtkCellArray* peer) {
  if (ours->GetNumberOfCells() != peer->GetNumberOfCells()) disagree(what, "numbers of cells");
  vtkIdType count = 0;
  vtkIdType peer_count = 0;
  const vtkIdType* points = nullptr;
  const vtkIdType* peer_points = nullptr;
  for (vtkIdType cell = 0; cell < peer->GetNumberOfCells(); ++cell) {
    ours->GetCellAtId(cell, count, points);
    peer->GetCellAtId(cell, peer_count, peer_points);
    if (!std::equal(points, points + count, peer_points, peer_points + peer_count))
      disagree(what, "cell " + std::to_string(cell));
  }
}

void require_equal_points_and_data(const std::string& what, vtkPointSet* ours, vtkPointSet* peer) {
  require_equal_arrays(what + ", points", ours->GetPoints()->GetData(), peer->GetPoints()->GetData());
  require_equal_attributes(what + ", point data", ours->GetPointData(), peer->GetPointData());
  require_equal_attributes(what + ", cell data", ours->GetCellData(), peer->GetCellData());
}

double triangle_area(vtkPoints* points, vtkIdType a, vtkIdType b, vtkIdType c) {
  double p[3], q[3], r[3], normal[3];
  points->GetPoint(a, p);
  points->GetPoint(b, q);
  points->GetPoint(c, r);
  vtkMath::Subtract(q, p, q);
  vtkMath::Subtract(r, p, r);
  vtkMath::Cross(q, r, normal);
  return vtkMath::Norm(normal) / 2;
}

} // namespace

CellSet cell_set(vtkCellArray* cells, const std::vector<vtkIdType>& node_of_point) {
  CellSet set(cells->GetNumberOfCells(), {-1, -1, -1, -1});
  vtkIdType count = 0;
  const vtkIdType* points = nullptr;
  for (vtkIdType cell = 0; cell < cells->GetNumberOfCells(); ++cell) {
    cells->GetCellAtId(cell, count, points);
    if (count > 4) throw std::runtime_error("a cell of more than 4 points");
    std::transform(points, points + count, set[cell].begin(), [&](vtkIdType point) { return node_of_point.at(point); });
    std::sort(set[cell].begin(), set[cell].begin() + count);
  }
  std::sort(set.begin(), set.end());
  return set;
}

std::vector<vtkIdType> nodes_of_handles(vtkTypeUInt64Array* handles, unsigned long long first_handle) {
  if (!handles) throw std::runtime_error("no \"NodeIds\"");
  std::vector<vtkIdType> nodes(handles->GetNumberOfValues());
  for (vtkIdType point = 0; point < handles->GetNumberOfValues(); ++point)
    nodes[point] = static_cast<vtkIdType>(handles->GetValue(point) - first_handle);
  return nodes;
}

std::vector<vtkIdType> nodes_of_point_ids(vtkIdTypeArray* point_ids) {
  if (!point_ids) throw std::runtime_error("no original point ids");
  return {point_ids->GetPointer(0), point_ids->GetPointer(0) + point_ids->GetNumberOfValues()};
}

double surface_area(vtkPolyData* surface) {
  double area = 0;
  vtkIdType count = 0;
  const vtkIdType* points = nullptr;
  for (vtkIdType cell = 0; cell < surface->GetPolys()->GetNumberOfCells(); ++cell) {
    surface->GetPolys()->GetCellAtId(cell, count, points);
    for (vtkIdType corner = 2; corner < count; ++corner)
      area += triangle_area(surface->GetPoints(), points[0], points[corner - 1], points[corner]);
  }
  return area;
}

void require_equal(const std::string& what, double ours, double peer, double relative_tolerance) {
  if (std::abs(ours - peer) <= relative_tolerance * std::abs(peer)) return;
  std::ostringstream how;
  how << ours << " here, " << peer << " there";
  disagree(what, how.str());
}

void require_equal(const std::string& what, const CellSet& ours, const CellSet& peer) {
  require_equal(what, static_cast<double>(ours.size()), static_cast<double>(peer.size()));
  if (ours != peer) disagree(what, "not the same cells");
}

void require_equal(const std::string& what, vtkUnstructuredGrid* ours, vtkUnstructuredGrid* peer) {
  require_equal_points_and_data(what, ours, peer);
  require_equal_cells(what, ours->GetCells(), peer->GetCells());
  require_equal_arrays(what + ", cell types", ours->GetCellTypesArray(), peer->GetCellTypesArray());
}

void require_equal(const std::string& what, vtkPolyData* ours, vtkPolyData* peer) {
  require_equal_points_and_data(what, ours, peer);
  require_equal_cells(what + ", vertices", ours->GetVerts(), peer->GetVerts());
  require_equal_cells(what + ", lines", ours->GetLines(), peer->GetLines());
  require_equal_cells(what + ", polygons", ours->GetPolys(), peer->GetPolys());
}

} // namespace bench
