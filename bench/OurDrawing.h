#pragma once

#include "MeshInputs.h"

#include "group/GMeshGroup.h"
#include "model/GMeshModel.h"

#include <memory>

class vtkPolyData;

namespace bench {

/// A group of a mesh that nothing was built of yet, and what it draws.
class OurDrawing {
public:
  /// `mesh` is borrowed.
  explicit OurDrawing(DatabaseMesh& mesh) : mesh_(mesh), model_(mesh.database.get()) {}

  /// Makes the group.
  void prepare() {
    group_ = std::make_unique<GMeshGroup>();
    group_->set_dont_observe();
    group_->set_mesh(mesh_.owner, mesh_.entities, &model_);
  }
  /// Builds everything that is drawn.
  void build() {
    group_->get_tri_data();
    group_->get_edge_data();
    group_->get_node_data();
  }
  /// Frees all of it.
  void release() { group_.reset(); }

  /// The group, between `prepare` and `release`.
  GMeshGroup& group() { return *group_; }

private:
  DatabaseMesh& mesh_;
  GMeshModel model_;
  std::unique_ptr<GMeshGroup> group_;
};

} // namespace bench
