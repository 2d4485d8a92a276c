#include "group/Surface.h"

#include "group/SequentialFilter.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkGeometryFilter.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkPolyDataNormals.h>
#include <vtkTypeInt32Array.h>
#include <vtkTypeInt64Array.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <array>

namespace {

/// The lists of cells of poly data, in the order in which it numbers them.
enum CellList : unsigned char { Verts, Lines, Polys, None };

CellList list_of(unsigned char cell_type) {
  switch (cell_type) {
  case VTK_VERTEX:
  case VTK_POLY_VERTEX:
    return Verts;
  case VTK_LINE:
  case VTK_POLY_LINE:
    return Lines;
  case VTK_TRIANGLE:
  case VTK_QUAD:
  case VTK_POLYGON:
    return Polys;
  default:
    return None;
  }
}

/// Which cells of a grid go where.
struct CellSplit {
  std::array<vtkIdType, 4> counts{};
  bool in_order = true; // the grid numbers its cells as the poly data will
};

CellSplit split(vtkUnsignedCharArray* types) {
  CellSplit split;
  CellList previous = Verts;
  const unsigned char* type = types->GetPointer(0);
  for (vtkIdType cell = 0; cell < types->GetNumberOfTuples(); ++cell) {
    const CellList list = list_of(type[cell]);
    ++split.counts[list];
    split.in_order = split.in_order && previous <= list;
    previous = list;
  }
  return split;
}

template <class IdArray>
vtkSmartPointer<vtkCellArray> cells_of(CellList list, vtkIdType count, vtkUnsignedCharArray* types, IdArray* offsets,
                                       IdArray* connectivity) {
  const unsigned char* type = types->GetPointer(0);
  const auto* offset = offsets->GetPointer(0);
  const auto* point = connectivity->GetPointer(0);
  vtkNew<IdArray> new_offsets;
  vtkNew<IdArray> new_connectivity;
  auto* next_offset = new_offsets->WritePointer(0, count + 1);
  auto* const points = new_connectivity->WritePointer(0, connectivity->GetNumberOfValues());
  auto* next_point = points;
  *next_offset++ = 0;
  for (vtkIdType cell = 0; cell < types->GetNumberOfTuples(); ++cell) {
    if (list_of(type[cell]) != list) continue;
    for (auto i = offset[cell]; i < offset[cell + 1]; ++i)
      *next_point++ = point[i];
    *next_offset++ = static_cast<typename IdArray::ValueType>(next_point - points);
  }
  new_connectivity->Resize(next_point - points);
  auto cells = vtkSmartPointer<vtkCellArray>::New();
  cells->SetData(new_offsets.Get(), new_connectivity.Get());
  return cells;
}

vtkSmartPointer<vtkCellArray> cells_of(CellList list, const CellSplit& split, vtkUnstructuredGrid* grid) {
  const vtkIdType count = split.counts[list];
  vtkCellArray* cells = grid->GetCells();
  if (count == 0) return nullptr;
  if (count == grid->GetNumberOfCells()) return cells;
  vtkUnsignedCharArray* types = grid->GetCellTypesArray();
  return cells->IsStorage64Bit()
             ? cells_of(list, count, types, cells->GetOffsetsArray64(), cells->GetConnectivityArray64())
             : cells_of(list, count, types, cells->GetOffsetsArray32(), cells->GetConnectivityArray32());
}

// The cell data in the order of the poly data's lists, copied run by run.
void copy_cell_data(vtkUnstructuredGrid* grid, vtkCellData* out) {
  const vtkIdType count = grid->GetNumberOfCells();
  const unsigned char* type = grid->GetCellTypesArray()->GetPointer(0);
  out->CopyAllOn();
  out->CopyAllocate(grid->GetCellData(), count);
  vtkIdType copied = 0;
  for (const CellList list : {Verts, Lines, Polys}) {
    for (vtkIdType first = 0, end = 0; first < count; first = end) {
      for (end = first + 1; end < count && list_of(type[end]) == list_of(type[first]);)
        ++end;
      if (list_of(type[first]) != list) continue;
      out->CopyData(grid->GetCellData(), copied, end - first, first);
      copied += end - first;
    }
  }
}

} // namespace

vtkSmartPointer<vtkPolyData> make_surface(vtkUnstructuredGrid* grid) {
  const CellSplit cells = grid->GetNumberOfCells() > 0 ? split(grid->GetCellTypesArray()) : CellSplit();
  if (grid->GetNumberOfCells() == 0 || cells.counts[None] > 0)
    return run_sequential(vtkNew<vtkGeometryFilter>().Get(), grid);
  auto surface = vtkSmartPointer<vtkPolyData>::New();
  surface->SetPoints(grid->GetPoints());
  surface->SetVerts(cells_of(Verts, cells, grid));
  surface->SetLines(cells_of(Lines, cells, grid));
  surface->SetPolys(cells_of(Polys, cells, grid));
  surface->GetPointData()->ShallowCopy(grid->GetPointData());
  if (cells.in_order)
    surface->GetCellData()->ShallowCopy(grid->GetCellData());
  else
    copy_cell_data(grid, surface->GetCellData());
  return surface;
}

vtkSmartPointer<vtkPolyData> make_smooth_surface(vtkUnstructuredGrid* grid) {
  return run_sequential(vtkNew<vtkPolyDataNormals>().Get(), make_surface(grid));
}
