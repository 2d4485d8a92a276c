#pragma once

#include "platform/base/orbel_base_api.h"

#include <vtkPolyDataAlgorithm.h>

/// Extracts the edges of a data set's two-dimensional cells, each once, as lines of two points: element edges only,
/// never those of a tessellation; a quadratic edge becomes two lines. Edges come in the order in which the cells meet
/// them, with the cell data of the first cell that has them; global ids of cells stay behind. The output shares the
/// points of a point set, used or not, with all point data. Cells whose connectivity leaves the data set are left out.
class ORBEL_BASE_API GExtractEdges : public vtkPolyDataAlgorithm {
public:
  /// Makes the filter, both options off.
  static GExtractEdges* New();
  vtkTypeMacro(GExtractEdges, vtkPolyDataAlgorithm)

  /// Whether one-dimensional cells pass too, as lines of two points. A line that coincides with an edge is drawn once,
  /// with the data of whichever cell comes first. Off at first; moves no time stamp, so set it before the first update.
  void pass_lines(bool on);
  /// Whether zero-dimensional cells pass too, as they are. Off at first; moves no time stamp, so set it before the
  /// first update.
  void pass_vertices(bool on);

protected:
  GExtractEdges();
  ~GExtractEdges() override;
  /// Takes any `vtkDataSet`.
  int FillInputPortInformation(int port, vtkInformation* info) override;
  /// Does the work; 1.
  int RequestData(vtkInformation* request, vtkInformationVector** inputs, vtkInformationVector* output) override;

private:
  GExtractEdges(const GExtractEdges&) = delete;
  void operator=(const GExtractEdges&) = delete;

  bool pass_lines_ = false;
  bool pass_vertices_ = false;
};
