#pragma once

#include <vtkType.h>

#include <vector>

class vtkCellData;

/// Which input cell each output cell comes from: `count` output cells from `cell`, in output order.
struct CellRun {
  vtkIdType cell;
  vtkIdType count;
};

/// Adds to `out` a copy of each array of `in`, with one tuple for each output cell: that of the input cell it comes
/// from. Global ids stay behind, since they would not be unique any more.
void copy_cell_data(vtkCellData* in, const std::vector<CellRun>& runs, vtkCellData* out);
