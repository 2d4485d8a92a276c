#include "PickScene.h"

#include <vtkCamera.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <string>

namespace bench {

PickStage::PickStage() {
  window_->SetOffScreenRendering(1);
  window_->SetSize(width, height);
  view_ = std::make_unique<GView>(window_);
}

void PickStage::look_at_all(double x, double y, double z) {
  vtkRenderer* renderer = view_->renderer();
  vtkCamera* camera = renderer->GetActiveCamera();
  camera->SetFocalPoint(0, 0, 0);
  camera->SetPosition(x, y, z);
  renderer->ResetCamera();
  view_->render();
}

PickedMesh::PickedMesh(const RawMesh& raw) : PickedMesh(raw, 1) {}

PickedMesh::PickedMesh(const RawMesh& raw, int owners) : database_(std::make_unique<Tarn::MeshDatabase>()) {
  const Tarn::Handle<0> first_node = database_->add_nodes(raw.node_count(), raw.xyz.data());
  std::vector<Tarn::Handle<0>> nodes;
  nodes.reserve(raw.nodes.size());
  for (const std::int32_t node : raw.nodes)
    nodes.push_back({first_node.value + std::uint64_t(node)});
  model_ = std::make_unique<GMeshModel>(database_.get());
  model_->unhook_from_views();
  database_->reserve_elements(raw.type, raw.nodes_per_element, raw.element_count());
  for (int i = 0; i < owners; ++i) {
    const std::size_t begin = raw.element_count() * std::size_t(i) / std::size_t(owners);
    const std::size_t end = raw.element_count() * std::size_t(i + 1) / std::size_t(owners);
    Tarn::SMeshOwnerType* owner = database_->add_owner("owner " + std::to_string(i));
    const Tarn::Handle<1> first =
        database_->add_elements(raw.type, raw.nodes_per_element, end - begin,
                                &nodes[begin * std::size_t(raw.nodes_per_element)], nullptr, owner);
    if (i == 0) first_element_ = first;
    MeshVector mesh;
    for (std::size_t k = 0; k < end - begin; ++k)
      mesh.elements[raw.type].push_back({first.value + k});
    model_->add_mesh(owner, mesh, TovanColor(200, 200, 200), 1.0F, false);
  }
}

void PickedMesh::show(PickStage& stage) {
  model_->hook_to_views();
  stage.view()->render();
}

void PickedMesh::touch(PickStage& stage) {
  for (Tarn::SMeshOwnerType* owner : database_->owners())
    model_->update_mesh_transformed(owner);
  stage.view()->render();
}

void PickedMesh::hide() { model_->unhook_from_views(); }

} // namespace bench
