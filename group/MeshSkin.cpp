#include "group/MeshSkin.h"

#include "mesh/MeshVector.h"
#include "mesh/database/ElementType.h"

#include <numeric>

MeshSkin::MeshSkin(Tarn::MeshData* database, const MeshVector& mesh, const std::vector<int> (*positions)[10])
    : solids_(database), skinner_(&solids_) {
  for (const std::size_t type : {Tarn::Hex, Tarn::Tet, Tarn::Pyramid, Tarn::Wedge})
    solids_.add_elements(mesh.elements[type], positions_of(type, mesh.elements[type].size(), positions));
  for (const std::size_t type : {Tarn::Quad, Tarn::Tri})
    skinner_.add_skin_elements(mesh.elements[type], positions_of(type, mesh.elements[type].size(), positions));
  sides_ = skinner_.getMeshSkin();
}

MeshSkin::~MeshSkin() = default;

const std::vector<Side*>& MeshSkin::sides() const { return sides_; }

const std::vector<int>& MeshSkin::positions_of(std::size_t type, std::size_t count,
                                               const std::vector<int> (*positions)[10]) {
  if (positions) return (*positions)[type];
  std::vector<int>& identity = identity_[type];
  identity.resize(count);
  std::iota(identity.begin(), identity.end(), 0);
  return identity;
}
