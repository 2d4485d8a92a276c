#pragma once

#include <vtkType.h>

#include <vector>

class vtkCellData;

/// Which input cells the cells of an edge set come from. Poly data number vertices before lines.
struct CellOrigins {
  /// The input cell of each vertex cell.
  std::vector<vtkIdType> vertices;
  /// For each input cell, how many lines come from it; lines lie in order of input cells.
  std::vector<int> lines_of_cell;
};

/// Adds to `out` a copy of each array of `in`, with one tuple for each output cell: that of the input cell it comes
/// from. Global ids stay behind, since they would not be unique any more.
void copy_cell_data(vtkCellData* in, const CellOrigins& origins, vtkCellData* out);
