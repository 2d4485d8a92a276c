#pragma once

#include "mesh/database/MeshSkinner.h"
#include "mesh/database/SideToElement.h"

#include <vector>

struct MeshVector;

/// The faces of a set's shells and solids that can be seen from outside.
class MeshSkin {
public:
  /// `positions`: what the faces of each element carry as its position, a list per kind; null is identity. Database and
  /// lists are borrowed; the database must outlive the skin.
  MeshSkin(Tarn::MeshData* database, const MeshVector& mesh, const std::vector<int> (*positions)[10]);
  ~MeshSkin();
  MeshSkin(const MeshSkin&) = delete;
  MeshSkin& operator=(const MeshSkin&) = delete;

  /// The faces; they live as long as the skin.
  const std::vector<Side*>& sides() const;

private:
  SideToElement solids_;
  MeshSkinner skinner_;
  std::vector<Side*> sides_;
};
