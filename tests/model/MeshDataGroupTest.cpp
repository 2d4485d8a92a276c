// Blocks per member, in wire and in plain form.

#include "ModelScene.h"
#include "group/GMeshGroup.h"
#include "model/GMeshDataGroup.h"

#include <vtkPolyData.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class MeshDataGroup : public testing::Test {
protected:
  void SetUp() override {
    for (int i = 0; i < 3; ++i) {
      const QuadOwner q = add_quad_owner(db, 2.0 * i, 0.0);
      groups[i].set_mesh(q.owner, q.mesh, &model);
    }
  }

  void expect_blocks(GMeshDataGroup& data_group, const std::vector<int>& members, bool wire) {
    const BlockList parts = data_group.all_blocks();
    ASSERT_THAT(parts, SizeIs(3));
    for (const auto& part : parts)
      ASSERT_EQ(part->GetNumberOfBlocks(), members.size());
    for (unsigned int i = 0; i < members.size(); ++i) {
      GMeshGroup& group = groups[members[i]];
      EXPECT_EQ(parts[0]->GetBlock(i), group.get_tri_data());
      EXPECT_EQ(parts[1]->GetBlock(i), wire ? group.get_wire_data() : group.get_edge_data());
      EXPECT_EQ(parts[2]->GetBlock(i), wire ? group.get_wire_node_data() : group.get_node_data());
    }
  }

  Tarn::MeshDatabase db;
  GMeshModel model{&db};
  GMeshGroup groups[3];
};

TEST_F(MeshDataGroup, GivenANewOne_WhenLookedAt_ThenItHasThreeDifferentEmptyDataObjects) {
  GMeshDataGroup data_group(false);
  const BlockList parts = data_group.all_blocks();
  ASSERT_THAT(parts, SizeIs(3));
  for (const auto& part : parts) {
    ASSERT_NE(part, nullptr);
    EXPECT_EQ(part->GetNumberOfBlocks(), 0u);
  }
  EXPECT_NE(parts[0], parts[1]);
  EXPECT_NE(parts[1], parts[2]);
  EXPECT_NE(parts[0], parts[2]);
  EXPECT_THAT(data_group.all_groups(), ElementsAre(&data_group));
}

TEST_F(MeshDataGroup, GivenMembers_WhenUpdated_ThenEachHasABlockInEachPartInOrderOfJoining) {
  for (bool wire : {false, true}) {
    SCOPED_TRACE(wire);
    GMeshDataGroup data_group(wire);
    for (int i : {2, 0, 1})
      data_group.add_entity(&groups[i]);
    data_group.update_all(nullptr);
    expect_blocks(data_group, {2, 0, 1}, wire);
  }
}

TEST_F(MeshDataGroup, GivenMembersThatLeft_WhenUpdated_ThenTheBlocksFollow) {
  GMeshDataGroup data_group(false);
  for (GMeshGroup& group : groups)
    data_group.add_entity(&group);
  data_group.update_all(nullptr);
  data_group.remove_entity(&groups[1]);
  data_group.update_all(nullptr);
  expect_blocks(data_group, {0, 2}, false);
  data_group.remove_entity(&groups[0]);
  data_group.remove_entity(&groups[2]);
  data_group.update_all(nullptr);
  expect_blocks(data_group, {}, false);
}

TEST_F(MeshDataGroup, GivenAnotherForm_WhenUpdated_ThenEdgesAndNodesChangeAndTheSurfaceStays) {
  GMeshDataGroup data_group(false);
  data_group.add_entity(&groups[0]);
  data_group.update_all(nullptr);
  const BlockList parts = data_group.all_blocks();
  vtkDataObject* const before[] = {parts[0]->GetBlock(0), parts[1]->GetBlock(0), parts[2]->GetBlock(0)};
  data_group.set_wire(true);
  for (int part = 0; part < 3; ++part)
    EXPECT_EQ(parts[part]->GetBlock(0), before[part]) << "nothing happens before the update";
  data_group.update_all(nullptr);
  EXPECT_EQ(parts[0]->GetBlock(0), before[0]);
  EXPECT_NE(parts[1]->GetBlock(0), before[1]);
  EXPECT_NE(parts[2]->GetBlock(0), before[2]);
  expect_blocks(data_group, {0}, true);
  data_group.set_wire(false);
  data_group.update_all(nullptr);
  expect_blocks(data_group, {0}, false);
}

TEST_F(MeshDataGroup, GivenTheFormItHasAlready_WhenSet_ThenItIsMarkedAllTheSame) {
  GMeshDataGroup data_group(true);
  data_group.update_all(nullptr);
  std::vector<GDataGroup*> updated;
  data_group.update_all(&updated);
  ASSERT_THAT(updated, IsEmpty());
  data_group.set_wire(true);
  data_group.update_all(&updated);
  EXPECT_THAT(updated, ElementsAre(&data_group));
}

TEST_F(MeshDataGroup, GivenAForm_WhenAnInstanceIsMade_ThenItHasTheFormAndNoMembers) {
  for (bool wire : {false, true}) {
    SCOPED_TRACE(wire);
    GMeshDataGroup original(!wire);
    original.set_wire(wire);
    original.add_entity(&groups[0]);
    const std::unique_ptr<GDataGroup> instance(original.new_instance());
    auto* made = dynamic_cast<GMeshDataGroup*>(instance.get());
    ASSERT_NE(made, nullptr);
    made->update_all(nullptr);
    expect_blocks(*made, {}, wire);
    made->add_entity(&groups[1]);
    made->update_all(nullptr);
    expect_blocks(*made, {1}, wire);
  }
}

TEST_F(MeshDataGroup, GivenAMemberWhoseContentsChanged_WhenUpdated_ThenThePartsAreMarkedAsChanged) {
  GMeshDataGroup data_group(false);
  data_group.add_entity(&groups[0]);
  data_group.update_all(nullptr);
  const BlockList parts = data_group.all_blocks();
  vtkMTimeType before[3];
  for (int part = 0; part < 3; ++part)
    before[part] = parts[part]->GetMTime();
  groups[0].notify_mesh_transformed();
  data_group.update_all(nullptr);
  for (int part = 0; part < 3; ++part)
    EXPECT_GT(parts[part]->GetMTime(), before[part]) << "actors would keep their old bounds";
}

TEST_F(MeshDataGroup, GivenAMemberThatIsNoMeshGroup_WhenUpdated_ThenItsBlocksAreNull) {
  class Stranger : public GDataGroupEntity {};
  Stranger stranger;
  GMeshDataGroup data_group(false);
  data_group.add_entity(&stranger);
  data_group.add_entity(&groups[0]);
  data_group.update_all(nullptr);
  for (const auto& part : data_group.all_blocks()) {
    ASSERT_EQ(part->GetNumberOfBlocks(), 2u);
    EXPECT_EQ(part->GetBlock(0), nullptr);
    EXPECT_NE(part->GetBlock(1), nullptr);
  }
}

} // namespace
