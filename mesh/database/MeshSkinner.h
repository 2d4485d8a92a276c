#pragma once

#include "mesh/database/Handle.h"
#include "mesh/database/Side.h"
#include "mesh/database/tovan_tarn_api.h"

#include <memory>
#include <vector>

class SideToElement;

/// Computes what can be seen of a set of elements from outside: its shells, and the sides that only one solid has.
/// Where a shell coincides with an exterior side (same corner nodes) the shell stands for it.
class TOVAN_TARN_API MeshSkinner {
public:
  /// `solids` is borrowed and must outlive the skinner.
  explicit MeshSkinner(SideToElement* solids);
  ~MeshSkinner();
  MeshSkinner(const MeshSkinner&) = delete;
  MeshSkinner& operator=(const MeshSkinner&) = delete;

  /// Adds shells of one kind (triangles or quadrilaterals), as `SideToElement::add_elements` does. False: nothing was
  /// added.
  bool add_skin_elements(const std::vector<Tarn::Handle<1>>& elements, const std::vector<int>& positions);

  /// The shells in the order added, then the exterior sides in order of solid and side. The records and their nodes
  /// belong to the skinner, in one block of memory, and are replaced by the next call.
  std::vector<Side*> getMeshSkin();

private:
  struct Private;
  std::unique_ptr<Private> d;
};
