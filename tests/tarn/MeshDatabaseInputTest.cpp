// What the build interface of the reference database makes of missing arrays.

#include "reference/tarn/MeshDatabase.h"

#include <gtest/gtest.h>

namespace {

TEST(MeshDatabaseInput, GivenMissingArrays_WhenBuildingOrEditing_ThenNothingChangesAndItSaysSo) {
  Tarn::MeshDatabase db;
  const double xyz[9] = {0, 0, 0, 1, 0, 0, 0, 1, 0};
  EXPECT_EQ(db.add_nodes(3, nullptr).value, 0u);
  EXPECT_EQ(db.node_count(), 0u);
  const Tarn::Handle<0> first = db.add_nodes(3, xyz);
  const Tarn::Handle<0> nodes[3] = {first, {first.value + 1}, {first.value + 2}};

  EXPECT_EQ(db.add_elements(Tarn::Tri, 3, 1, nullptr).value, 0u);
  EXPECT_EQ(db.element_count(Tarn::Tri), 0u);
  const Tarn::Handle<1> element = db.add_elements(Tarn::Tri, 3, 1, nodes);

  Tarn::SMeshOwnerType* const owner = db.add_owner("set");
  EXPECT_FALSE(db.move_nodes(3, nodes, nullptr));
  EXPECT_FALSE(db.move_nodes(3, nullptr, xyz));
  EXPECT_FALSE(db.set_global_ids(1, &element, nullptr));
  EXPECT_FALSE(db.set_global_ids(element, 1, nullptr));
  EXPECT_FALSE(db.set_node_owner(3, nullptr, owner));
  EXPECT_FALSE(db.set_element_owner(1, nullptr, owner));
  EXPECT_FALSE(db.add_to_node_set(owner, 3, nullptr));
  EXPECT_FALSE(db.delete_elements(1, nullptr));
  EXPECT_EQ(db.element_count(Tarn::Tri), 1u);
}

TEST(MeshDatabaseInput, GivenMissingArrays_WhenThereIsNothingToDo_ThenThatIsDone) {
  Tarn::MeshDatabase db;
  EXPECT_TRUE(db.move_nodes(0, nullptr, nullptr));
  EXPECT_TRUE(db.set_global_ids(0, nullptr, nullptr));
  EXPECT_TRUE(db.delete_elements(0, nullptr));
}

} // namespace
