#include "reference/base/view/FrameLooks.h"

#include "platform/base/GModel.h"
#include "reference/base/view/SlopeOffset.h"

#include <vtkActor.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkMapper.h>
#include <vtkProp3D.h>
#include <vtkPropCollection.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <algorithm>

namespace {

constexpr double dimmed_opacity = 0.8;
constexpr int peels = 12;

OBUtil::RenderMode mode_of(vtkActor* actor) {
  vtkInformation* keys = actor->GetPropertyKeys();
  if (!keys || !keys->Has(GModel::RENDER_MODE())) return OBUtil::AsIs;
  return static_cast<OBUtil::RenderMode>(keys->Get(GModel::RENDER_MODE()));
}

void scale_sizes(vtkProperty* property, vtkProperty* original, double scale) {
  property->SetPointSize(static_cast<float>(original->GetPointSize() * scale));
  property->SetLineWidth(static_cast<float>(original->GetLineWidth() * scale));
}

void paint_flat(vtkProperty* property, vtkProperty* original, const double background[3], double opacity) {
  property->SetColor(background[0], background[1], background[2]);
  property->SetOpacity(opacity);
  property->LightingOff();
  property->SetAmbient(1.0);
  property->SetDiffuse(0.0);
  property->SetSpecular(0.0);
  property->SetBackfaceCulling(original->GetBackfaceCulling());
  property->SetFrontfaceCulling(original->GetFrontfaceCulling());
}

} // namespace

FrameLooks::~FrameLooks() { take_off(); }

void FrameLooks::put_on(vtkRenderer* renderer, const std::vector<vtkActor*>& parts, double scale, Pass pass) {
  take_off();
  keep(renderer);
  scale_ = scale;
  renderer->GetBackground(background_);
  const bool on_screen = !renderer->GetRenderWindow()->GetOffScreenRendering();
  renderer->SetUseFXAA(renderer_.fxaa && on_screen && pass == Pass::Picture);

  push_surfaces_back(parts, pass);
  for (vtkActor* actor : parts)
    set_point_lift(actor, renderer, pass == Pass::Picture ? scale_ : 0.0);
  if (pass == Pass::Depth) hide_what_has_no_depth(renderer);
  for (vtkActor* actor : parts) {
    if (!actor->GetVisibility()) continue;
    if (pass == Pass::Depth)
      dress_for_depth(actor);
    else
      dress_for_picture(renderer, actor);
  }
  drop_unused_stand_ins();
}

void FrameLooks::take_off() {
  for (const auto& prop : hidden_)
    prop->VisibilityOn();
  hidden_.clear();
  // In reverse: an actor that stands for several parts is dressed several times, over what it wears already.
  for (auto each = dressed_.rbegin(); each != dressed_.rend(); ++each) {
    each->actor->SetProperty(each->front);
    each->actor->SetBackfaceProperty(each->back);
    each->actor->SetForceOpaque(each->force_opaque);
    if (each->actor->GetMapper()) each->actor->GetMapper()->SetScalarVisibility(each->scalars);
  }
  dressed_.clear();
  if (vtkRenderer* renderer = renderer_.renderer) {
    renderer->SetUseDepthPeeling(renderer_.depth_peeling);
    renderer->SetMaximumNumberOfPeels(renderer_.peels);
    renderer->SetOcclusionRatio(renderer_.occlusion_ratio);
    renderer->SetUseFXAA(renderer_.fxaa);
  }
  renderer_.renderer = nullptr;
}

void FrameLooks::keep(vtkRenderer* renderer) {
  renderer_.renderer = renderer;
  renderer_.depth_peeling = renderer->GetUseDepthPeeling();
  renderer_.peels = renderer->GetMaximumNumberOfPeels();
  renderer_.occlusion_ratio = renderer->GetOcclusionRatio();
  renderer_.fxaa = renderer->GetUseFXAA();
}

// As far as the lines and points in front are wide, so that none of their pixels sinks in. Not when the depth itself is
// wanted.
void FrameLooks::push_surfaces_back(const std::vector<vtkActor*>& parts, Pass pass) {
  double reach = 0.0;
  if (pass == Pass::Picture) {
    for (vtkActor* actor : parts)
      reach = std::max(reach, scale_ * reach_of_lines_and_points(actor));
  }
  for (vtkActor* actor : parts)
    set_slope_offset(actor, reach);
}

// Flat props write the nearest depth, what cannot be picked must not hide what can, and translucent props write none.
void FrameLooks::hide_what_has_no_depth(vtkRenderer* renderer) {
  vtkPropCollection* props = renderer->GetViewProps();
  vtkCollectionSimpleIterator place;
  props->InitTraversal(place);
  while (vtkProp* prop = props->GetNextProp(place)) {
    if (!prop->GetVisibility()) continue;
    if (!vtkProp3D::SafeDownCast(prop) || !prop->GetPickable())
      hide(prop);
    else if (auto* actor = vtkActor::SafeDownCast(prop)) {
      remember(actor);
      actor->ForceOpaqueOn();
    }
  }
}

void FrameLooks::dress_for_depth(vtkActor* actor) {
  if (mode_of(actor) == OBUtil::Wireframe) hide(actor);
}

void FrameLooks::dress_for_picture(vtkRenderer* renderer, vtkActor* actor) {
  switch (mode_of(actor)) {
  case OBUtil::Wireframe:
    hide(actor);
    return;
  case OBUtil::HiddenLine:
    wear_background(actor, Look::Background);
    return;
  case OBUtil::DimmedHiddenLine:
    // Translucent, so drawn after all edges: those behind it show through dimmed.
    wear_background(actor, Look::Dimmed);
    return;
  case OBUtil::Translucent:
    renderer->SetUseDepthPeeling(true);
    renderer->SetMaximumNumberOfPeels(peels);
    renderer->SetOcclusionRatio(0.0);
    break;
  default:
    break;
  }
  if (scale_ != 1.0) wear_scaled(actor);
}

void FrameLooks::hide(vtkProp* prop) {
  hidden_.emplace_back(prop);
  prop->VisibilityOff();
}

void FrameLooks::remember(vtkActor* actor) {
  vtkMapper* mapper = actor->GetMapper();
  dressed_.push_back({actor, actor->GetProperty(), actor->GetBackfaceProperty(),
                      mapper && mapper->GetScalarVisibility(), actor->GetForceOpaque()});
}

void FrameLooks::wear_background(vtkActor* actor, Look look) {
  remember(actor);
  actor->SetProperty(stand_in(actor->GetProperty(), look));
  actor->SetBackfaceProperty(nullptr);
  if (actor->GetMapper()) actor->GetMapper()->ScalarVisibilityOff();
}

void FrameLooks::wear_scaled(vtkActor* actor) {
  remember(actor);
  actor->SetProperty(stand_in(actor->GetProperty(), Look::Scaled));
  if (vtkProperty* back = actor->GetBackfaceProperty()) actor->SetBackfaceProperty(stand_in(back, Look::Scaled));
}

// Stand-ins live from frame to frame: a fresh property each time would make the mapper build its shaders anew.
vtkProperty* FrameLooks::stand_in(vtkProperty* original, Look look) {
  StandIn& entry = stand_ins_[{original, look}];
  entry.used = true;
  if (!entry.property) {
    entry.original = original;
    entry.property = vtkSmartPointer<vtkProperty>::New();
  }
  if (look != Look::Scaled)
    paint_flat(entry.property, original, background_, look == Look::Dimmed ? dimmed_opacity : 1.0);
  else if (entry.original_time != original->GetMTime())
    entry.property->DeepCopy(original);
  entry.original_time = original->GetMTime();
  scale_sizes(entry.property, original, scale_);
  return entry.property;
}

void FrameLooks::drop_unused_stand_ins() {
  for (auto it = stand_ins_.begin(); it != stand_ins_.end();) {
    const bool used = std::exchange(it->second.used, false);
    it = used ? std::next(it) : stand_ins_.erase(it);
  }
}
