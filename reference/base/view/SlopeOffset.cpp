#include "reference/base/view/SlopeOffset.h"

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkCompositeDataIterator.h>
#include <vtkCompositeDataSet.h>
#include <vtkMapper.h>
#include <vtkMath.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>
#include <vtkRenderer.h>
#include <vtkShaderProperty.h>
#include <vtkSmartPointer.h>
#include <vtkUniforms.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace {

// Points are wider, but a surface that gives way farther than the lines on its rim are wide lets what lies behind it
// show along the rim.
constexpr double reach_of_points = 1.0;

constexpr double slope_at_points = 2.0;

constexpr const char* uniform = "orbelOffsetPixels";
// Derivatives are defined only where all fragments of a triangle pass.
constexpr const char* flow_tag = "//VTK::UniformFlow::Impl";
constexpr const char* measure_slope_code =
    "//VTK::UniformFlow::Impl\n"
    "  float orbelSlope = abs(dFdx(gl_FragCoord.z)) + abs(dFdy(gl_FragCoord.z));\n";
constexpr const char* depth_tag = "//VTK::Depth::Impl";
constexpr const char* push_back_code = "  gl_FragDepth = gl_FragCoord.z + orbelOffsetPixels * orbelSlope;\n";
// VTK's own normal of a facet, from how places change from pixel to pixel. For meshes of some nanometres in metres the
// product and its square are too small for single precision, for very large ones too large: facets would turn black.
constexpr const char* facet_normal = "normalize(cross(fdx,fdy))";
constexpr const char* scaled_facet_normal = "normalize(cross(fdx / max(max(abs(fdx.x), abs(fdx.y)), abs(fdx.z)),"
                                            " fdy / max(max(abs(fdy.x), abs(fdy.y)), abs(fdy.z))))";

constexpr const char* lift_uniform = "orbelLift";
constexpr const char* position_tag = "//VTK::PositionVC::Impl";
constexpr const char* lift_code = "//VTK::PositionVC::Impl\n"
                                  "  gl_Position.z = max(gl_Position.z + orbelLift, -gl_Position.w);\n";

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
    if (code == push_back_code) return true;
  }
  return false;
}

bool lifts_points(vtkShaderProperty* shader) {
  for (int i = 0; i < shader->GetNumberOfShaderReplacements(); ++i) {
    std::string tag, code;
    bool first = false, all = false;
    shader->GetNthShaderReplacement(i, tag, first, code, all);
    if (code == lift_code) return true;
  }
  return false;
}

bool has_points_alone(vtkPolyData* data) {
  return data && data->GetNumberOfVerts() > 0 && data->GetNumberOfVerts() == data->GetNumberOfCells();
}

/// What to add to a clip coordinate z to come nearer by as many pixels at any depth.
double clip_depth_of(double pixels, vtkRenderer* renderer) {
  vtkCamera* const camera = renderer->GetActiveCamera();
  const int height = std::max(1, renderer->GetSize()[1]);
  const double near = camera->GetClippingRange()[0], far = camera->GetClippingRange()[1];
  if (!(far > near)) return 0.0;
  if (camera->GetParallelProjection()) return -2 / (far - near) * pixels * 2 * camera->GetParallelScale() / height;
  // Pixels grow with the distance: the part of it that is one is the same everywhere.
  const double half_angle = vtkMath::RadiansFromDegrees(camera->GetViewAngle()) / 2;
  const double part = std::min(0.5, pixels * 2 * std::tan(half_angle) / height);
  return -2 * far * near / (far - near) * part / (1 - part);
}

} // namespace

double reach_of_lines_and_points(vtkActor* actor) {
  if (!actor->GetVisibility() || offset_factor(actor) != 0.0 || !actor->GetMapper()) return 0.0;
  vtkPolyData* data = first_poly_data(actor->GetMapper()->GetInputDataObject(0, 0));
  if (!data) return 0.0;
  const double line = data->GetNumberOfLines() > 0 ? actor->GetProperty()->GetLineWidth() / 2 : 0.0;
  const double point =
      data->GetNumberOfVerts() > 0 ? std::min(reach_of_points, actor->GetProperty()->GetPointSize() / 2.0) : 0.0;
  return std::max(line, point);
}

void set_slope_offset(vtkActor* actor, double pixels) {
  const double factor = offset_factor(actor);
  // Without a rendering back end there are no shaders, and asking for them crashes.
  if (factor == 0.0 || !actor->IsA("vtkOpenGLActor")) return;
  vtkShaderProperty* shader = actor->GetShaderProperty();
  if (!pushes_back(shader)) {
    shader->AddFragmentShaderReplacement(flow_tag, true, measure_slope_code, false);
    shader->AddFragmentShaderReplacement(depth_tag, true, push_back_code, false);
    shader->AddFragmentShaderReplacement(facet_normal, false, scaled_facet_normal, true);
  }
  shader->GetFragmentCustomUniforms()->SetUniformf(uniform, static_cast<float>(factor * pixels));
}

void set_point_lift(vtkActor* actor, vtkRenderer* renderer, double scale) {
  if (!actor->GetMapper() || !actor->IsA("vtkOpenGLActor")) return;
  vtkShaderProperty* shader = actor->GetShaderProperty();
  const bool is_lifted = lifts_points(shader);
  const bool lift = scale != 0.0 && actor->GetVisibility() && offset_factor(actor) == 0.0 &&
                    has_points_alone(first_poly_data(actor->GetMapper()->GetInputDataObject(0, 0)));
  if (!lift && !is_lifted) return;
  if (!is_lifted) shader->AddVertexShaderReplacement(position_tag, true, lift_code, false);
  const double pixels = lift ? slope_at_points * scale * actor->GetProperty()->GetPointSize() / 2 : 0.0;
  shader->GetVertexCustomUniforms()->SetUniformf(lift_uniform, static_cast<float>(clip_depth_of(pixels, renderer)));
}
