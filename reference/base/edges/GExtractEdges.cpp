#include "platform/base/GExtractEdges.h"

#include <vtkCell.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkDataSet.h>
#include <vtkInformation.h>
#include <vtkInformationVector.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

vtkStandardNewMacro(GExtractEdges);

GExtractEdges::GExtractEdges() = default;

GExtractEdges::~GExtractEdges() = default;

void GExtractEdges::pass_lines(bool on) { pass_lines_ = on; }

void GExtractEdges::pass_vertices(bool on) { pass_vertices_ = on; }

int GExtractEdges::FillInputPortInformation(int, vtkInformation* info) {
  info->Set(vtkAlgorithm::INPUT_REQUIRED_DATA_TYPE(), "vtkDataSet");
  return 1;
}

int GExtractEdges::RequestData(vtkInformation*, vtkInformationVector** inputs, vtkInformationVector* outputs) {
  vtkDataSet* input = vtkDataSet::GetData(inputs[0]);
  vtkPolyData* output = vtkPolyData::GetData(outputs);
  if (auto* point_set = vtkPointSet::SafeDownCast(input)) {
    output->SetPoints(point_set->GetPoints());
  } else {
    vtkNew<vtkPoints> points;
    for (vtkIdType i = 0; i < input->GetNumberOfPoints(); ++i)
      points->InsertNextPoint(input->GetPoint(i));
    output->SetPoints(points);
  }
  output->GetPointData()->PassData(input->GetPointData());

  vtkNew<vtkCellArray> vertices;
  vtkNew<vtkCellArray> lines;
  std::vector<vtkIdType> vertex_sources;
  std::vector<vtkIdType> line_sources;
  std::set<std::pair<vtkIdType, vtkIdType>> known;
  const auto add_segments = [&](vtkIdType cell, vtkIdType a, vtkIdType b) {
    if (!known.insert(std::minmax(a, b)).second) return;
    lines->InsertNextCell({a, b});
    line_sources.push_back(cell);
  };
  const auto add_edge = [&](vtkIdType cell, vtkCell* edge) {
    const vtkIdType count = edge->GetNumberOfPoints();
    if (count == 3) {
      add_segments(cell, edge->GetPointId(0), edge->GetPointId(2));
      add_segments(cell, edge->GetPointId(2), edge->GetPointId(1));
      return;
    }
    for (vtkIdType i = 1; i < count; ++i)
      add_segments(cell, edge->GetPointId(i - 1), edge->GetPointId(i));
  };
  for (vtkIdType id = 0; id < input->GetNumberOfCells(); ++id) {
    vtkCell* cell = input->GetCell(id);
    const int dimension = cell->GetCellDimension();
    if (dimension == 0 && pass_vertices_ && cell->GetNumberOfPoints() > 0) {
      vertices->InsertNextCell(cell->GetPointIds());
      vertex_sources.push_back(id);
    } else if (dimension == 1 && pass_lines_) {
      add_edge(id, cell);
    } else if (dimension == 2) {
      for (int edge = 0; edge < cell->GetNumberOfEdges(); ++edge)
        add_edge(id, cell->GetEdge(edge));
    }
  }
  output->SetVerts(vertices);
  output->SetLines(lines);
  vertex_sources.insert(vertex_sources.end(), line_sources.begin(), line_sources.end());
  vtkCellData* data = output->GetCellData();
  data->CopyAllocate(input->GetCellData(), static_cast<vtkIdType>(vertex_sources.size()));
  for (std::size_t i = 0; i < vertex_sources.size(); ++i)
    data->CopyData(input->GetCellData(), vertex_sources[i], static_cast<vtkIdType>(i));
  return 1;
}
