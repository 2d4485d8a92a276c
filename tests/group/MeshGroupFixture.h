#pragma once

#include "tests/group/GroupFixture.h"

namespace group_test {

inline void expect_equal(const MeshVector& left, const MeshVector& right) {
  EXPECT_EQ(values_of(left.nodes), values_of(right.nodes));
  for (std::size_t type = 0; type < 10; ++type)
    EXPECT_EQ(values_of(left.elements[type]), values_of(right.elements[type])) << "kind " << type;
}

class MeshGroup : public GroupFixture {
protected:
  /// Whether the model tells the group of the owner's changes.
  bool hears_of(Tarn::SMeshOwnerType* owner) {
    group->update_mesh();
    const int before = group->rebuilds;
    model->update_mesh_modified(owner);
    group->update_mesh();
    return group->rebuilds > before;
  }
};

} // namespace group_test
