// Adding meshes to a model, and asking for them by owner.

#include "MeshModel.h"

#include "group/GMeshGroup.h"

#include <vtkCellData.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>

namespace {

using testing::IsEmpty;
using testing::SizeIs;

using ElementColors = std::array<std::vector<TovanColor>, 10>;
using NodeColorMap = std::map<Node, TovanColor>;

bool is_shrunk(GMeshGroup* group) { return group->get_2d_data()->GetCellData()->GetArray("ElemIds") == nullptr; }

// ------------------------------------------------------------------------------------------ adding

TEST_F(MeshModel, GivenADatabase_WhenAsked_ThenTheModelNamesIt) { EXPECT_EQ(model.database(), &db); }

TEST_F(MeshModel, GivenAnEmptySet_WhenAddedInAnyWay_ThenThereIsNoRecordAndNoPart) {
  const QuadOwner q = quad();
  MeshVector only_kind_zero;
  only_kind_zero.elements[0] = q.block.elements;
  for (const MeshVector& nothing : {MeshVector(), only_kind_zero}) {
    model.add_mesh(q.owner, nothing, red, 1.0f, false);
    model.add_mesh(q.owner, nothing, red, {red}, ElementColors(), {}, 1.0f);
    model.add_mesh_unique(nothing, q.owner);
  }
  EXPECT_EQ(model.get_mesh(q.owner), nullptr);
  EXPECT_THAT(model.added, IsEmpty());

  add(q); // the same with something in it does make one
  EXPECT_NE(model.get_mesh(q.owner), nullptr);
}

TEST_F(MeshModel, GivenAMesh_WhenAdded_ThenItsGroupShowsItAsAsked) {
  const QuadOwner q = quad();
  model.add_mesh(q.owner, q.mesh, green, 0.5f, true);

  GMeshGroup* group = model.get_mesh(q.owner);
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(group->mesh_owner(), q.owner);
  EXPECT_EQ(group->get_model(), &model);
  EXPECT_EQ(group->get_mesh().elements[Tarn::Quad], q.block.elements);
  EXPECT_EQ(group->get_color(), green);
  EXPECT_EQ(group->get_color_type(), GMeshGroup::SingleColor);
  EXPECT_TRUE(group->get_force_scalars());
  EXPECT_TRUE(group->get_visibility());
  EXPECT_FALSE(group->get_node_visibility());
  EXPECT_TRUE(is_shrunk(group));
  EXPECT_THAT(model.added, SizeIs(3));
}

TEST_F(MeshModel, GivenNoShrinkAndNoForcedScalars_WhenAdded_ThenTheGroupHasNeither) {
  const QuadOwner q = quad();
  add(q);
  ASSERT_NE(model.get_mesh(q.owner), nullptr);
  EXPECT_FALSE(model.get_mesh(q.owner)->get_force_scalars());
  EXPECT_FALSE(is_shrunk(model.get_mesh(q.owner)));
}

TEST_F(MeshModel, GivenANullOwner_WhenAddedShownAndRemoved_ThenNullIsAKeyLikeAnyOther) {
  const QuadOwner q = quad();
  model.add_mesh(nullptr, q.mesh, red, 1.0f, false);
  ASSERT_NE(model.get_mesh(nullptr), nullptr);
  EXPECT_EQ(model.get_mesh(q.owner), nullptr);
  EXPECT_TRUE(model.get_visibility(nullptr));
  model.remove_mesh(nullptr);
  EXPECT_EQ(model.get_mesh(nullptr), nullptr);
}

TEST_F(MeshModel, GivenColorLists_WhenAdded_ThenListsPerEntityWinOverTheNodeMap) {
  const QuadOwner q = quad();
  const std::vector<TovanColor> some{red};
  const NodeColorMap map{{q.block.nodes[0], blue}};
  const auto at_kind = [&](std::size_t kind) {
    ElementColors colors;
    colors[kind] = some;
    return colors;
  };
  struct Row {
    const char* name;
    std::vector<TovanColor> nodes;
    ElementColors elements;
    NodeColorMap map;
    GMeshGroup::ColorType expected;
  };
  const Row rows[] = {
      {"nothing", {}, {}, {}, GMeshGroup::SingleColor},
      {"node list", some, {}, {}, GMeshGroup::CellColors},
      {"node list and map", some, {}, map, GMeshGroup::CellColors},
      {"list of the last kind and map", {}, at_kind(9), map, GMeshGroup::CellColors},
      {"list of kind 0 and map", {}, at_kind(0), map, GMeshGroup::CellColors},
      {"map", {}, {}, map, GMeshGroup::VertexColors},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    model.add_mesh(q.owner, q.mesh, green, row.nodes, row.elements, row.map, 0.5f);
    GMeshGroup* group = model.get_mesh(q.owner);
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->get_color_type(), row.expected);
    EXPECT_EQ(group->get_color(), green);
    EXPECT_FALSE(group->get_force_scalars());
    EXPECT_TRUE(is_shrunk(group));
    EXPECT_EQ(group->get_mesh().elements[Tarn::Quad], q.block.elements);
    model.remove_mesh(q.owner);
  }
}

TEST_F(MeshModel, GivenColorsPerElementAndPerNode_WhenAdded_ThenTheyReachTheDrawingData) {
  const QuadOwner q = quad();
  ElementColors per_element;
  per_element[Tarn::Quad] = {blue};
  model.add_mesh(q.owner, q.mesh, green, {}, per_element, {}, 1.0f);
  unsigned char bytes[4];
  blue.to_rgba(bytes);
  auto* colors = model.get_mesh(q.owner)->get_2d_data()->GetCellData()->GetScalars();
  ASSERT_NE(colors, nullptr);
  ASSERT_EQ(colors->GetNumberOfTuples(), 1);
  for (int i = 0; i < 4; ++i)
    EXPECT_EQ(colors->GetComponent(0, i), bytes[i]);
}

TEST_F(MeshModel, GivenTwoMeshesOfOneOwner_WhenAskedByOwner_ThenTheFirstAnswers) {
  const QuadOwner q = quad();
  const QuadOwner other = quad(2.0);
  model.add_mesh(q.owner, q.mesh, red, 1.0f, false);
  model.add_mesh(q.owner, other.mesh, blue, 1.0f, false);

  GMeshGroup* first = model.get_mesh(q.owner);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->get_color(), red);
  model.set_color(q.owner, green);
  model.set_visibility(q.owner, false);
  model.set_node_vis(q.owner, true);
  EXPECT_EQ(first->get_color(), green);
  EXPECT_FALSE(first->get_visibility());
  EXPECT_TRUE(first->get_node_visibility());

  model.remove_mesh(q.owner);
  GMeshGroup* second = model.get_mesh(q.owner);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(second->get_color(), blue);
  EXPECT_TRUE(second->get_visibility());
  EXPECT_FALSE(second->get_node_visibility());
  model.remove_mesh(q.owner);
  EXPECT_EQ(model.get_mesh(q.owner), nullptr);
}

TEST_F(MeshModel, GivenNeighbouringOwners_WhenAskedForOneWithoutAMesh_ThenNobodyElseAnswers) {
  std::vector<QuadOwner> quads{quad(0.0), quad(2.0), quad(4.0)};
  std::sort(quads.begin(), quads.end(), [](const auto& a, const auto& b) { return std::less<>()(a.owner, b.owner); });
  add(quads[0]);
  add(quads[2]);
  EXPECT_EQ(model.get_mesh(quads[1].owner), nullptr);
  EXPECT_FALSE(model.get_visibility(quads[1].owner));
  EXPECT_FALSE(model.get_node_vis(quads[1].owner));
  model.forget_calls();
  model.set_color(quads[1].owner, blue);
  model.set_visibility(quads[1].owner, true);
  model.set_node_vis(quads[1].owner, true);
  model.remove_mesh(quads[1].owner);
  EXPECT_THAT(model.added, IsEmpty());
  EXPECT_THAT(model.removed, IsEmpty());
  for (const auto& q : {quads[0], quads[2]}) {
    ASSERT_NE(model.get_mesh(q.owner), nullptr);
    EXPECT_EQ(model.get_mesh(q.owner)->get_color(), red);
  }
}

// ------------------------------------------------------------------------------------------ add_mesh_unique

TEST_F(MeshModel, GivenAnOwnerWithoutAMesh_WhenAddedUniquely_ThenAPlainWhiteOneIsMade) {
  const QuadOwner q = quad();
  model.add_mesh_unique(q.mesh, q.owner);
  GMeshGroup* group = model.get_mesh(q.owner);
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(group->get_color(), white);
  EXPECT_EQ(group->mesh_owner(), q.owner);
  EXPECT_EQ(group->get_mesh().elements[Tarn::Quad], q.block.elements);
  EXPECT_THAT(model.added, SizeIs(3));
}

TEST_F(MeshModel, GivenAnOwnerWithAMesh_WhenAddedUniquely_ThenItsGroupShowsTheNewSetAndKeepsItsLooks) {
  const QuadOwner q = quad();
  const QuadOwner other = quad(2.0);
  model.add_mesh(q.owner, q.mesh, green, 0.5f, true);
  GMeshGroup* group = model.get_mesh(q.owner);
  const auto parts = model.added_data();
  model.forget_calls();

  model.add_mesh_unique(other.mesh, q.owner);
  EXPECT_EQ(model.get_mesh(q.owner), group);
  EXPECT_EQ(group->get_mesh().elements[Tarn::Quad], other.block.elements);
  EXPECT_EQ(group->get_color(), green);
  EXPECT_TRUE(group->get_force_scalars());
  EXPECT_TRUE(is_shrunk(group));
  EXPECT_EQ(model.removed, parts) << "the group leaves its data group ...";
  EXPECT_EQ(model.added_data(), parts) << "... and enters it again";
  model.remove_mesh(q.owner);
  EXPECT_EQ(model.get_mesh(q.owner), nullptr) << "one record, not two";
}

TEST_F(MeshModel, GivenAHiddenMesh_WhenAddedUniquely_ThenItIsDrawnThoughItsFlagStaysOff) {
  const QuadOwner q = quad();
  add(q);
  model.set_visibility(q.owner, false);
  model.forget_calls();
  model.add_mesh_unique(q.mesh, q.owner);
  EXPECT_THAT(model.removed, IsEmpty());
  EXPECT_THAT(model.added, SizeIs(3));
  EXPECT_FALSE(model.get_visibility(q.owner));
}

} // namespace
