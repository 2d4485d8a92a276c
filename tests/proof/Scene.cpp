#include "tests/proof/Scene.h"

#include <vtkPlane.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cmath>

namespace proof {

void set_camera(vtkCamera* camera, const Mesh& mesh, const Look& look) {
  const auto box = mesh.bounds();
  double middle[3];
  double radius = 0;
  double length = 0;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    radius += (box[3 + axis] - box[axis]) * (box[3 + axis] - box[axis]) / 4;
    length += look.direction[axis] * look.direction[axis];
  }
  radius = std::sqrt(radius);
  length = std::sqrt(length);
  for (std::size_t axis = 0; axis < 3; ++axis)
    middle[axis] = (box[axis] + box[3 + axis]) / 2 + look.shift[axis] * radius;
  const double half = look.angle / 2 * std::acos(-1.0) / 180;
  const double away = look.parallel ? 3 * radius : radius / look.zoom / std::sin(half);
  camera->SetFocalPoint(middle);
  camera->SetPosition(middle[0] + away * look.direction[0] / length, middle[1] + away * look.direction[1] / length,
                      middle[2] + away * look.direction[2] / length);
  camera->SetViewUp(look.up.data());
  camera->SetParallelProjection(look.parallel);
  camera->SetParallelScale(radius / look.zoom);
  camera->SetViewAngle(look.angle);
  // Round what the shift may have moved off the middle.
  const double shift = std::hypot(look.shift[0], look.shift[1], look.shift[2]);
  const double reach = radius * (1.01 + shift);
  camera->SetClippingRange(std::max(away - reach, away / 100), away + reach);
}

Stage::Stage(Scene& scene) : scene_(scene) {
  if (!scene.mesh.database) scene.mesh.fill();
  window_->SetOffScreenRendering(1);
  window_->SetSize(scene.width, scene.height);
  for (const Look& look : scene.views) {
    views_.push_back(std::make_unique<GView>(window_));
    vtkRenderer* renderer = views_.back()->renderer();
    renderer->SetViewport(look.viewport[0], look.viewport[1], look.viewport[2], look.viewport[3]);
    set_camera(renderer->GetActiveCamera(), scene.mesh, look);
  }
  model_ = std::make_unique<GMeshModel>(scene.mesh.database.get());
  for (int owner = 0; owner < scene.mesh.owner_count; ++owner)
    model_->add_mesh(scene.mesh.owners[std::size_t(owner)], scene.mesh.of_owner(owner), TovanColor(200, 200, 200), 1.0F,
                     false);
  if (scene.translucent) model_->set_render_mode(OBUtil::Translucent);
  show(scene.hidden, scene.clip);
}

void Stage::show(const std::vector<int>& hidden, const Clip& clip, bool draw) {
  for (int owner = 0; owner < scene_.mesh.owner_count; ++owner)
    model_->set_visibility(scene_.mesh.owners[std::size_t(owner)],
                           std::find(hidden.begin(), hidden.end(), owner) == hidden.end());
  vtkNew<vtkPlane> plane;
  plane->SetOrigin(clip.origin[0], clip.origin[1], clip.origin[2]);
  plane->SetNormal(clip.normal[0], clip.normal[1], clip.normal[2]);
  model_->set_clipping_plane(clip.on ? plane.Get() : nullptr);
  shown_ = scene_.mesh.shown(hidden, clip);
  if (draw) window_->Render();
}

} // namespace proof
