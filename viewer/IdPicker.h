#pragma once

#include "mesh/MeshVector.h"
#include "platform/base/EntitySelection.h"
#include "platform/base/GPicker.h"
#include "platform/base/GPickerBase.h"

#include <vector>

namespace Tarn {
class MeshData;
}

namespace viewer {

/// Picks entities that are known already, as if a region had held them: so what is found by id is picked like anything
/// else. It answers to a kind of its own, which nobody admits but `pick`.
class IdPicker : public GPicker {
public:
  /// `database` is borrowed.
  explicit IdPicker(Tarn::MeshData* database);
  ~IdPicker() override;

  /// Picks the entities in the view.
  void pick(GView& view, const MeshVector& mesh, GPickerBase::Change change);
  /// Picks these instead of what is picked, with the points and distances that they have.
  void pick(GView& view, const std::vector<EntitySelection>& selections);

  void compute_pick(vtkRenderer* renderer, float x, float y) override;
  void compute_pre_select(vtkRenderer* renderer, float x, float y) override;
  void compute_pick_by_bounds(vtkRenderer* renderer, PickBounds* bounds) override;

private:
  void pick_wanted(GView& view, GPickerBase::Change change);

  Tarn::MeshData* database_;
  std::vector<EntitySelection> wanted_;
};

} // namespace viewer
