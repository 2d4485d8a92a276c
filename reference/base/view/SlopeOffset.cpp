#include "reference/base/view/SlopeOffset.h"

#include <vtkActor.h>
#include <vtkMapper.h>
#include <vtkShaderProperty.h>

#include <locale>
#include <sstream>
#include <string>

namespace {

// VTK's own unit of an offset.
constexpr double kDepthPerUnit = 1.0 / 65000.0;

std::string depth_statement(double factor, double units) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << std::scientific << "  gl_FragDepth = gl_FragCoord.z + " << factor << " * surfaceSlope + "
       << units * kDepthPerUnit << ";\n";
  return text.str();
}

} // namespace

void add_slope_offset(vtkProp* prop) {
  auto* actor = vtkActor::SafeDownCast(prop);
  // Without a rendering back end there are no shaders, and asking for them crashes.
  if (!actor || !actor->IsA("vtkOpenGLActor") || !actor->GetMapper()) return;
  double factor = 0.0;
  double units = 0.0;
  actor->GetMapper()->GetRelativeCoincidentTopologyPolygonOffsetParameters(factor, units);
  if (factor == 0.0) return;

  // The slope is taken where all fragments of a triangle pass: elsewhere derivatives are undefined. The depth goes in
  // the place of VTK's own offset.
  constexpr const char* kUniformFlow = "//VTK::UniformFlow::Impl";
  constexpr const char* kDepth = "//VTK::Depth::Impl";
  vtkShaderProperty* shader = actor->GetShaderProperty();
  shader->AddFragmentShaderReplacement(
      kUniformFlow, true,
      std::string(kUniformFlow) +
          "\n  float surfaceSlope = max(abs(dFdx(gl_FragCoord.z)), abs(dFdy(gl_FragCoord.z)));\n",
      false);
  shader->AddFragmentShaderReplacement(kDepth, true, depth_statement(factor, units), false);
}
