#include "reference/base/view/SlopeOffset.h"

#include <vtkActor.h>
#include <vtkCompositeDataIterator.h>
#include <vtkCompositeDataSet.h>
#include <vtkMapper.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>
#include <vtkShaderProperty.h>
#include <vtkSmartPointer.h>
#include <vtkUniforms.h>

#include <algorithm>
#include <string>

namespace {

// Points are wider, but a surface that gives way farther than the lines on its rim are wide lets what lies behind it
// show along the rim.
constexpr double kReachOfPoints = 1.0;

constexpr const char* kUniform = "orbelOffsetPixels";
// Derivatives are defined only where all fragments of a triangle pass.
constexpr const char* kFlowTag = "//VTK::UniformFlow::Impl";
constexpr const char* kMeasureSlope = "//VTK::UniformFlow::Impl\n"
                                      "  float orbelSlope = abs(dFdx(gl_FragCoord.z)) + abs(dFdy(gl_FragCoord.z));\n";
constexpr const char* kDepthTag = "//VTK::Depth::Impl";
constexpr const char* kPushBack = "  gl_FragDepth = gl_FragCoord.z + orbelOffsetPixels * orbelSlope;\n";

double offset_factor(vtkActor* actor) {
  double factor = 0.0, units = 0.0;
  if (actor->GetMapper()) actor->GetMapper()->GetRelativeCoincidentTopologyPolygonOffsetParameters(factor, units);
  return factor;
}

/// The first block that has cells stands for all: a part's blocks are of one kind.
vtkPolyData* first_poly_data(vtkDataObject* data) {
  if (auto* single = vtkPolyData::SafeDownCast(data)) return single;
  auto* blocks = vtkCompositeDataSet::SafeDownCast(data);
  if (!blocks) return nullptr;
  const auto block = vtk::TakeSmartPointer(blocks->NewIterator());
  for (block->InitTraversal(); !block->IsDoneWithTraversal(); block->GoToNextItem()) {
    auto* poly = vtkPolyData::SafeDownCast(block->GetCurrentDataObject());
    if (poly && poly->GetNumberOfCells() > 0) return poly;
  }
  return nullptr;
}

bool pushes_back(vtkShaderProperty* shader) {
  for (int i = 0; i < shader->GetNumberOfShaderReplacements(); ++i) {
    std::string tag, code;
    bool first = false, all = false;
    shader->GetNthShaderReplacement(i, tag, first, code, all);
    if (code == kPushBack) return true;
  }
  return false;
}

} // namespace

double reach_of_lines_and_points(vtkActor* actor) {
  if (!actor->GetVisibility() || offset_factor(actor) != 0.0 || !actor->GetMapper()) return 0.0;
  vtkPolyData* data = first_poly_data(actor->GetMapper()->GetInputDataObject(0, 0));
  if (!data) return 0.0;
  const double line = data->GetNumberOfLines() > 0 ? actor->GetProperty()->GetLineWidth() / 2 : 0.0;
  const double point =
      data->GetNumberOfVerts() > 0 ? std::min(kReachOfPoints, actor->GetProperty()->GetPointSize() / 2.0) : 0.0;
  return std::max(line, point);
}

void set_slope_offset(vtkActor* actor, double pixels) {
  const double factor = offset_factor(actor);
  // Without a rendering back end there are no shaders, and asking for them crashes.
  if (factor == 0.0 || !actor->IsA("vtkOpenGLActor")) return;
  vtkShaderProperty* shader = actor->GetShaderProperty();
  if (!pushes_back(shader)) {
    shader->AddFragmentShaderReplacement(kFlowTag, true, kMeasureSlope, false);
    shader->AddFragmentShaderReplacement(kDepthTag, true, kPushBack, false);
  }
  shader->GetFragmentCustomUniforms()->SetUniformf(kUniform, static_cast<float>(factor * pixels));
}
