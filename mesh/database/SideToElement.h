#pragma once

#include "mesh/database/Handle.h"
#include "mesh/database/tovan_tarn_api.h"

#include <memory>
#include <vector>

namespace Tarn {
class MeshData;
}

/// The solids whose exterior sides a `MeshSkinner` looks for.
class TOVAN_TARN_API SideToElement {
public:
  /// `database` is borrowed and must outlive this object.
  explicit SideToElement(Tarn::MeshData* database);
  ~SideToElement();
  SideToElement(const SideToElement&) = delete;
  SideToElement& operator=(const SideToElement&) = delete;

  /// Adds solids of one kind; `positions` has one entry per element and comes back in `Side::position`. Elements
  /// without sides add nothing.
  void add_elements(const std::vector<Tarn::Handle<1>>& elements, const std::vector<int>& positions);

private:
  friend class MeshSkinner;
  struct Private;
  std::unique_ptr<Private> d;
};
