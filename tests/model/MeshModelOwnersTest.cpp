// The state of one owner among others: visibility, nodes, colour.

#include "MeshModel.h"

#include "group/GMeshGroup.h"
#include "model/GMeshDataGroup.h"

#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace {

using testing::IsEmpty;
using testing::SizeIs;

// ------------------------------------------------------------------------------------------ one owner

TEST_F(MeshModel, GivenAVisibleMesh_WhenHiddenAndShown_ThenItLeavesAndEntersItsDataGroup) {
  const QuadOwner q = quad();
  add(q);
  const auto parts = model.added_data();
  EXPECT_TRUE(model.get_visibility(q.owner));

  model.forget_calls();
  model.set_visibility(q.owner, true);
  EXPECT_THAT(model.added, IsEmpty()) << "it is visible already";

  model.set_visibility(q.owner, false);
  EXPECT_FALSE(model.get_visibility(q.owner));
  EXPECT_EQ(model.removed, parts);
  model.forget_calls();
  model.set_visibility(q.owner, false);
  EXPECT_THAT(model.removed, IsEmpty());

  model.set_visibility(q.owner, true);
  EXPECT_TRUE(model.get_visibility(q.owner));
  EXPECT_EQ(model.added_data(), parts);
}

TEST_F(MeshModel, GivenHiddenMeshes_WhenEntityVisibilityIsReset_ThenAllAreMarkedVisibleAndNoneIsShown) {
  const QuadOwner q = quad();
  const QuadOwner other = quad(2.0);
  add(q);
  add(other);
  add(other, blue, true);
  model.set_visibility(q.owner, false);
  model.set_visibility(other.owner, false);
  model.forget_calls();

  model.reset_entity_visibility();
  EXPECT_TRUE(model.get_visibility(q.owner));
  EXPECT_TRUE(model.get_visibility(other.owner));
  EXPECT_THAT(model.added, IsEmpty());

  model.set_visibility(q.owner, false); // hiding it and showing it again does bring it back
  model.set_visibility(q.owner, true);
  EXPECT_THAT(model.added, SizeIs(3));
}

TEST_F(MeshModel, GivenAVisibleMesh_WhenItsNodesAreShown_ThenItMovesToTheDataGroupOfShownNodes) {
  const QuadOwner q = quad();
  add(q);
  const auto plain = model.added_data();
  model.forget_calls();

  model.set_node_vis(q.owner, false);
  EXPECT_THAT(model.removed, IsEmpty()) << "they are hidden already";
  EXPECT_FALSE(model.get_node_vis(q.owner));

  model.set_node_vis(q.owner, true);
  EXPECT_TRUE(model.get_node_vis(q.owner));
  EXPECT_EQ(model.removed, plain);
  const auto node_vis = model.added_data();
  ASSERT_THAT(node_vis, SizeIs(3));
  EXPECT_NE(node_vis, plain);

  model.forget_calls();
  model.set_node_vis(q.owner, false);
  EXPECT_FALSE(model.get_node_vis(q.owner));
  EXPECT_EQ(model.removed, node_vis);
  EXPECT_EQ(model.added_data(), plain);
}

TEST_F(MeshModel, GivenAHiddenMesh_WhenItsNodesAreShown_ThenOnlyTheFlagChangesUntilItIsShown) {
  const QuadOwner q = quad();
  add(q);
  const auto plain = model.added_data();
  model.set_visibility(q.owner, false);
  model.forget_calls();
  model.set_node_vis(q.owner, true);
  EXPECT_TRUE(model.get_node_vis(q.owner));
  EXPECT_THAT(model.added, IsEmpty());
  EXPECT_THAT(model.removed, IsEmpty());
  model.set_visibility(q.owner, true);
  ASSERT_THAT(model.added, SizeIs(3));
  EXPECT_NE(model.added_data(), plain);
}

TEST_F(MeshModel, GivenAShownMesh_WhenWhatSelectsItsDataGroupChanges_ThenItCanStillBeHiddenShownAndRemoved) {
  const std::vector<std::function<void(GMeshGroup&)>> changes = {
      [](GMeshGroup& group) {
        group.set_vertex_color_array({{group.get_mesh().nodes.front(), blue}});
      },
      [](GMeshGroup& group) { group.set_force_scalars(true); },
      [](GMeshGroup& group) { group.set_node_visibility(true); },
  };
  for (const auto& change : changes) {
    QuadOwner q = quad();
    q.mesh.nodes = q.block.nodes;
    model.forget_calls();
    add(q);
    const auto entered = model.added_data();
    change(*model.get_mesh(q.owner));
    model.set_visibility(q.owner, false);
    EXPECT_EQ(model.removed, entered) << "it leaves the data group that it is in";

    model.forget_calls();
    model.set_visibility(q.owner, true);
    const auto selected = model.added_data();
    ASSERT_THAT(selected, SizeIs(3));
    EXPECT_NE(selected, entered);
    model.get_mesh(q.owner)->set_node_visibility(!model.get_node_vis(q.owner));
    model.remove_mesh(q.owner);
    EXPECT_EQ(model.removed, selected);
  }
}

TEST_F(MeshModel, GivenAHiddenMeshThatWasReplaced_WhenItIsShownInAnotherDataGroup_ThenItIsDrawnOnce) {
  const QuadOwner q = quad();
  add(q);
  model.set_visibility(q.owner, false);
  model.forget_calls();
  model.add_mesh_unique(q.mesh, q.owner); // draws it, hidden as it is
  const auto entered = model.added_data();
  ASSERT_THAT(entered, SizeIs(3));
  model.get_mesh(q.owner)->set_node_visibility(true);

  model.forget_calls();
  model.set_visibility(q.owner, true);

  EXPECT_EQ(model.removed, entered);
  ASSERT_THAT(model.added, SizeIs(3));
  EXPECT_NE(model.added_data(), entered);
}

TEST_F(MeshModel, GivenAColor_WhenSetByOwner_ThenTheGroupTakesIt) {
  const QuadOwner q = quad();
  add(q);
  model.set_color(q.owner, blue);
  EXPECT_EQ(model.get_mesh(q.owner)->get_color(), blue);
  model.set_color(q.owner, none);
  EXPECT_EQ(model.get_mesh(q.owner)->get_color(), white);
}

// ------------------------------------------------------------------------------------------ many

TEST_F(MeshModel, GivenTenThousandOwners_WhenOneIsHidden_ThenTheDataOfTheOthersStaysUntouched) {
  constexpr int owners = 10000;
  std::vector<QuadOwner> quads;
  for (int i = 0; i < owners; ++i)
    quads.push_back(add_quad_owner(db, 2.0 * (i % 100), 2.0 * (i / 100)));
  for (const QuadOwner& q : quads)
    add(q);
  model.update_parts();
  const auto parts = model.parts_of_add(0);
  ASSERT_EQ(block_count(parts[0]), static_cast<unsigned int>(owners));
  vtkTimeStamp built;
  built.Modified();

  const auto hidden = static_cast<std::size_t>(owners / 2);
  model.set_visibility(quads[hidden].owner, false);
  model.update_parts();
  ASSERT_EQ(block_count(parts[0]), static_cast<unsigned int>(owners - 1));
  int rebuilt = 0;
  for (vtkDataObject* part : parts)
    for (unsigned int i = 0; i < block_count(part); ++i)
      rebuilt += block_of(part, i)->GetMTime() > built.GetMTime();
  EXPECT_EQ(rebuilt, 0);

  // The count does see a rebuild: all data of one owner, three blocks.
  model.update_mesh_transformed(quads[0].owner);
  model.update_parts();
  for (vtkDataObject* part : parts)
    for (unsigned int i = 0; i < block_count(part); ++i)
      rebuilt += block_of(part, i)->GetMTime() > built.GetMTime();
  EXPECT_EQ(rebuilt, 3);
}

TEST_F(MeshModel, GivenASingleColor_WhenItChanges_ThenPointsAndCellsStayTheSameObjects) {
  const QuadOwner q = quad();
  add(q);
  GMeshGroup* group = model.get_mesh(q.owner);
  vtkUnstructuredGrid* grid = group->get_2d_data();
  vtkPoints* points = grid->GetPoints();
  vtkCellArray* cells = grid->GetCells();
  vtkDataArray* connectivity = grid->GetCells()->GetConnectivityArray();
  const auto stamp = grid->GetMTime();
  model.set_color(q.owner, blue);
  EXPECT_EQ(group->get_2d_data(), grid);
  EXPECT_GT(grid->GetMTime(), stamp);
  EXPECT_EQ(grid->GetPoints(), points);
  EXPECT_EQ(grid->GetCells(), cells);
  EXPECT_EQ(grid->GetCells()->GetConnectivityArray(), connectivity);
}

} // namespace
