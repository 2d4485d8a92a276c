#pragma once

#include "mesh/orbel_mesh_api.h"

#include <vtkPolyDataAlgorithm.h>

/// Puts a vertex cell on the points of a point set, in point order. The output shares the input's points and point data
/// and holds the new vertices only.
class ORBEL_MESH_API GNodeGlypher : public vtkPolyDataAlgorithm {
public:
  /// Makes the filter, `pass_vertices` off.
  static GNodeGlypher* New();
  vtkTypeMacro(GNodeGlypher, vtkPolyDataAlgorithm)
  /// Prints what the base class prints.
  void PrintSelf(ostream& os, vtkIndent indent) override;

  /// Whether points that the input draws as vertex cells get one too. Off at first; moves no time stamp, so set it
  /// before the first update.
  void pass_vertices(bool on);

protected:
  GNodeGlypher();
  ~GNodeGlypher() override;
  /// Takes a `vtkPointSet`; 1.
  int FillInputPortInformation(int port, vtkInformation* info) override;
  /// Does the work; 1.
  int RequestData(vtkInformation* request, vtkInformationVector** inputs, vtkInformationVector* output) override;

private:
  GNodeGlypher(const GNodeGlypher&) = delete;
  void operator=(const GNodeGlypher&) = delete;

  bool pass_vertices_ = false;
};
