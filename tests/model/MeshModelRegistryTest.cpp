// The registry of meshes by owner: adding, removing, state of one owner, change routing, life cycle.

#include "ModelScene.h"
#include "group/GMeshGroup.h"
#include "model/GMeshDataGroup.h"

#include <vtkCellData.h>
#include <vtkDataSet.h>
#include <vtkPlane.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>
#include <vtkUnstructuredGrid.h>
#include <vtkWeakPointer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using ElementColors = std::array<std::vector<TovanColor>, 10>;
using NodeColorMap = std::map<Node, TovanColor>;

class MeshModel : public testing::Test {
protected:
  QuadOwner quad(double x = 0.0) { return add_quad_owner(db, x, 0.0); }
  void add(const QuadOwner& q, TovanColor color = kRed, bool force_scalars = false) {
    model.add_mesh(q.owner, q.mesh, color, 1.0f, force_scalars);
  }

  Tarn::MeshDatabase db;
  RecordingModel model{&db};
};

GMeshGroup* group_of(vtkDataObject* block) { return GMeshGroup::get_group(vtkDataSet::SafeDownCast(block)); }

bool is_shrunk(GMeshGroup* group) { return group->get_2d_data()->GetCellData()->GetArray("ElemIds") == nullptr; }

// ------------------------------------------------------------------------------------------ adding

TEST_F(MeshModel, GivenADatabase_WhenAsked_ThenTheModelNamesIt) { EXPECT_EQ(model.database(), &db); }

TEST_F(MeshModel, GivenAnEmptySet_WhenAddedInAnyWay_ThenThereIsNoRecordAndNoPart) {
  const QuadOwner q = quad();
  MeshVector only_kind_zero;
  only_kind_zero.elements[0] = q.block.elements;
  for (const MeshVector& nothing : {MeshVector(), only_kind_zero}) {
    model.add_mesh(q.owner, nothing, kRed, 1.0f, false);
    model.add_mesh(q.owner, nothing, kRed, {kRed}, ElementColors(), {}, 1.0f);
    model.add_mesh_unique(nothing, q.owner);
  }
  EXPECT_EQ(model.get_mesh(q.owner), nullptr);
  EXPECT_THAT(model.added, IsEmpty());

  add(q); // the same with something in it does make one
  EXPECT_NE(model.get_mesh(q.owner), nullptr);
}

TEST_F(MeshModel, GivenAMesh_WhenAdded_ThenItsGroupShowsItAsAsked) {
  const QuadOwner q = quad();
  model.add_mesh(q.owner, q.mesh, kGreen, 0.5f, true);

  GMeshGroup* group = model.get_mesh(q.owner);
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(group->mesh_owner(), q.owner);
  EXPECT_EQ(group->get_model(), &model);
  EXPECT_EQ(group->get_mesh().elements[Tarn::Quad], q.block.elements);
  EXPECT_EQ(group->get_color(), kGreen);
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
  model.add_mesh(nullptr, q.mesh, kRed, 1.0f, false);
  ASSERT_NE(model.get_mesh(nullptr), nullptr);
  EXPECT_EQ(model.get_mesh(q.owner), nullptr);
  EXPECT_TRUE(model.get_visibility(nullptr));
  model.remove_mesh(nullptr);
  EXPECT_EQ(model.get_mesh(nullptr), nullptr);
}

TEST_F(MeshModel, GivenColorLists_WhenAdded_ThenListsPerEntityWinOverTheNodeMap) {
  const QuadOwner q = quad();
  const std::vector<TovanColor> some{kRed};
  const NodeColorMap map{{q.block.nodes[0], kBlue}};
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
    model.add_mesh(q.owner, q.mesh, kGreen, row.nodes, row.elements, row.map, 0.5f);
    GMeshGroup* group = model.get_mesh(q.owner);
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->get_color_type(), row.expected);
    EXPECT_EQ(group->get_color(), kGreen);
    EXPECT_FALSE(group->get_force_scalars());
    EXPECT_TRUE(is_shrunk(group));
    EXPECT_EQ(group->get_mesh().elements[Tarn::Quad], q.block.elements);
    model.remove_mesh(q.owner);
  }
}

TEST_F(MeshModel, GivenColorsPerElementAndPerNode_WhenAdded_ThenTheyReachTheDrawingData) {
  const QuadOwner q = quad();
  ElementColors per_element;
  per_element[Tarn::Quad] = {kBlue};
  model.add_mesh(q.owner, q.mesh, kGreen, {}, per_element, {}, 1.0f);
  unsigned char bytes[4];
  kBlue.to_rgba(bytes);
  auto* colors = model.get_mesh(q.owner)->get_2d_data()->GetCellData()->GetScalars();
  ASSERT_NE(colors, nullptr);
  ASSERT_EQ(colors->GetNumberOfTuples(), 1);
  for (int i = 0; i < 4; ++i)
    EXPECT_EQ(colors->GetComponent(0, i), bytes[i]);
}

TEST_F(MeshModel, GivenTwoMeshesOfOneOwner_WhenAskedByOwner_ThenTheFirstAnswers) {
  const QuadOwner q = quad();
  const QuadOwner other = quad(2.0);
  model.add_mesh(q.owner, q.mesh, kRed, 1.0f, false);
  model.add_mesh(q.owner, other.mesh, kBlue, 1.0f, false);

  GMeshGroup* first = model.get_mesh(q.owner);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->get_color(), kRed);
  model.set_color(q.owner, kGreen);
  model.set_visibility(q.owner, false);
  model.set_node_vis(q.owner, true);
  EXPECT_EQ(first->get_color(), kGreen);
  EXPECT_FALSE(first->get_visibility());
  EXPECT_TRUE(first->get_node_visibility());

  model.remove_mesh(q.owner);
  GMeshGroup* second = model.get_mesh(q.owner);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(second->get_color(), kBlue);
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
  model.set_color(quads[1].owner, kBlue);
  model.set_visibility(quads[1].owner, true);
  model.set_node_vis(quads[1].owner, true);
  model.remove_mesh(quads[1].owner);
  EXPECT_THAT(model.added, IsEmpty());
  EXPECT_THAT(model.removed, IsEmpty());
  for (const auto& q : {quads[0], quads[2]}) {
    ASSERT_NE(model.get_mesh(q.owner), nullptr);
    EXPECT_EQ(model.get_mesh(q.owner)->get_color(), kRed);
  }
}

// ------------------------------------------------------------------------------------------ add_mesh_unique

TEST_F(MeshModel, GivenAnOwnerWithoutAMesh_WhenAddedUniquely_ThenAPlainWhiteOneIsMade) {
  const QuadOwner q = quad();
  model.add_mesh_unique(q.mesh, q.owner);
  GMeshGroup* group = model.get_mesh(q.owner);
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(group->get_color(), kWhite);
  EXPECT_EQ(group->mesh_owner(), q.owner);
  EXPECT_EQ(group->get_mesh().elements[Tarn::Quad], q.block.elements);
  EXPECT_THAT(model.added, SizeIs(3));
}

TEST_F(MeshModel, GivenAnOwnerWithAMesh_WhenAddedUniquely_ThenItsGroupShowsTheNewSetAndKeepsItsLooks) {
  const QuadOwner q = quad();
  const QuadOwner other = quad(2.0);
  model.add_mesh(q.owner, q.mesh, kGreen, 0.5f, true);
  GMeshGroup* group = model.get_mesh(q.owner);
  const auto parts = model.added_data();
  model.forget_calls();

  model.add_mesh_unique(other.mesh, q.owner);
  EXPECT_EQ(model.get_mesh(q.owner), group);
  EXPECT_EQ(group->get_mesh().elements[Tarn::Quad], other.block.elements);
  EXPECT_EQ(group->get_color(), kGreen);
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

// ------------------------------------------------------------------------------------------ removing

TEST_F(MeshModel, GivenTheLastMeshOfADataGroup_WhenRemoved_ThenItsPartsGoInTheirOrder) {
  const QuadOwner q = quad();
  add(q);
  const auto parts = model.added_data();
  ASSERT_THAT(parts, SizeIs(3));
  model.remove_mesh(q.owner);
  EXPECT_EQ(model.removed, parts);
  EXPECT_EQ(model.get_mesh(q.owner), nullptr);
}

TEST_F(MeshModel, GivenOneOfTwoMeshes_WhenRemoved_ThenThePartsStayAndShowTheOther) {
  const QuadOwner q = quad();
  const QuadOwner other = quad(2.0);
  add(q);
  add(other);
  model.remove_mesh(q.owner);
  EXPECT_THAT(model.removed, IsEmpty());
  model.update_parts();
  const auto parts = model.parts_of_add(0);
  ASSERT_EQ(block_count(parts[0]), 1u);
  EXPECT_EQ(block_of(parts[0], 0), model.get_mesh(other.owner)->get_tri_data());
}

TEST_F(MeshModel, GivenARemovedMesh_WhenItsDataIsLookedUp_ThenNoGroupAnswers) {
  const QuadOwner q = quad();
  add(q);
  const vtkSmartPointer<vtkPolyData> surface = model.get_mesh(q.owner)->get_tri_data();
  ASSERT_EQ(GMeshGroup::get_group(surface), model.get_mesh(q.owner));
  model.remove_mesh(q.owner);
  EXPECT_EQ(GMeshGroup::get_group(surface), nullptr) << "the group was deleted";
}

TEST_F(MeshModel, GivenGroupsThatShowTheOwner_WhenItIsRemoved_ThenEachIsTold) {
  const QuadOwner q = quad();
  add(q);
  GMeshGroup one;
  GMeshGroup two;
  GMeshGroup stranger;
  const QuadOwner other = quad(2.0);
  one.set_mesh(q.owner, q.mesh, &model);
  two.set_mesh(q.owner, q.mesh, &model);
  stranger.set_mesh(other.owner, other.mesh, &model);

  model.remove_mesh(q.owner);
  EXPECT_EQ(one.mesh_owner(), nullptr);
  EXPECT_EQ(two.mesh_owner(), nullptr);
  EXPECT_EQ(stranger.mesh_owner(), other.owner);

  // Told once and for all: they left the registry while it was walked.
  const auto stamp = one.MeshTime().GetMTime();
  model.update_mesh_transformed(q.owner);
  EXPECT_EQ(one.MeshTime().GetMTime(), stamp);
}

TEST_F(MeshModel, GivenNoRecordOfTheOwner_WhenItIsRemoved_ThenGroupsThatShowItAreToldAllTheSame) {
  const QuadOwner q = quad();
  GMeshGroup group;
  group.set_mesh(q.owner, q.mesh, &model);
  model.remove_mesh(q.owner);
  EXPECT_EQ(group.mesh_owner(), nullptr);
}

TEST_F(MeshModel, GivenTwoMeshesOfOneOwner_WhenTheFirstIsRemoved_ThenTheSecondStaysWithoutOwnerAndEntities) {
  const QuadOwner q = quad();
  add(q);
  add(q);
  model.remove_mesh(q.owner);
  GMeshGroup* second = model.get_mesh(q.owner);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(second->mesh_owner(), nullptr);
  EXPECT_TRUE(second->get_mesh().empty()) << "what it showed was the owner's";
}

TEST_F(MeshModel, GivenNothingToRemoveFrom_WhenEntitiesAreRemoved_ThenTheAnswerIsFalse) {
  const QuadOwner q = quad();
  const QuadOwner other = quad(2.0);
  EXPECT_FALSE(model.remove_mesh(q.owner, q.mesh)) << "no record at all";
  add(other);
  EXPECT_FALSE(model.remove_mesh(q.owner, q.mesh)) << "no record of the owner";
  EXPECT_FALSE(model.remove_mesh(other.owner, q.mesh)) << "nothing in common";
  EXPECT_TRUE(model.remove_mesh(other.owner, other.mesh)) << "everything in common";
}

TEST_F(MeshModel, GivenSeveralMeshesOfOneOwner_WhenEntitiesAreRemoved_ThenAllAreVisitedAndEmptyOnesGo) {
  const Owner one = db.add_owner("sheet", 2);
  const Owner other = db.add_owner("next", 2);
  const Owner owner = std::min(one, other, std::less<>());
  const Owner next = std::max(one, other, std::less<>()); // its record follows those of the owner
  const Block sheet = add_quads(db, owner, {3, 1}, {0.0, 0.0, 0.0});
  const auto pick = [&](std::vector<int> positions) {
    std::vector<Elem> elements;
    for (int i : positions)
      elements.push_back(sheet.elements[static_cast<std::size_t>(i)]);
    return mesh_of(Tarn::Quad, elements);
  };
  model.add_mesh(owner, pick({0}), kRed, 1.0f, false);       // becomes empty
  model.add_mesh(owner, pick({2}), kGreen, 1.0f, false);     // keeps all
  model.add_mesh(owner, pick({0, 1, 2}), kBlue, 1.0f, true); // keeps one
  model.add_mesh(owner, pick({1}), kWhite, 0.5f, false);     // becomes empty
  model.add_mesh(next, pick({0, 1}), kRed, 1.0f, false);     // another owner's, though of the same entities

  const auto plain = model.parts_of_add(0);
  const auto scalars = model.parts_of_add(1);

  EXPECT_TRUE(model.remove_mesh(owner, pick({0, 1})));
  model.update_parts();
  ASSERT_EQ(block_count(plain[0]), 2u) << "the first and the last record went";
  GMeshGroup* first = group_of(block_of(plain[0], 0));
  EXPECT_EQ(model.get_mesh(owner), first);
  EXPECT_EQ(first->get_color(), kGreen);
  EXPECT_THAT(first->get_mesh().elements[Tarn::Quad], ElementsAre(sheet.elements[2]));
  EXPECT_EQ(group_of(block_of(plain[0], 1)), model.get_mesh(next));
  ASSERT_EQ(block_count(scalars[0]), 1u);
  EXPECT_THAT(group_of(block_of(scalars[0], 0))->get_mesh().elements[Tarn::Quad], ElementsAre(sheet.elements[2]));
  ASSERT_NE(model.get_mesh(next), nullptr);
  EXPECT_THAT(model.get_mesh(next)->get_mesh().elements[Tarn::Quad], SizeIs(2));
}

TEST_F(MeshModel, GivenTheOnlyMesh_WhenAllItsEntitiesAreRemoved_ThenItsPartsGo) {
  const QuadOwner q = quad();
  add(q);
  const auto parts = model.added_data();
  EXPECT_TRUE(model.remove_mesh(q.owner, q.mesh));
  EXPECT_EQ(model.removed, parts);
  EXPECT_EQ(model.get_mesh(q.owner), nullptr);
}

TEST_F(MeshModel, GivenTheEntitiesThatAGroupShows_WhenRemovedFromItsOwner_ThenAllItsMeshesLoseThem) {
  const QuadOwner q = quad();
  add(q);
  add(q, kBlue);
  EXPECT_TRUE(model.remove_mesh(q.owner, model.get_mesh(q.owner)->get_mesh()));
  EXPECT_EQ(model.get_mesh(q.owner), nullptr);
}

TEST_F(MeshModel, GivenAHiddenMesh_WhenRemoved_ThenItIsGone) {
  const QuadOwner q = quad();
  add(q);
  model.set_visibility(q.owner, false);
  model.forget_calls();
  model.remove_mesh(q.owner);
  EXPECT_THAT(model.removed, IsEmpty());
  EXPECT_EQ(model.get_mesh(q.owner), nullptr);
}

// ------------------------------------------------------------------------------------------ life cycle

TEST_F(MeshModel, GivenMeshesAndAWidget_WhenCleared_ThenNothingIsLeftAndTheModelStillWorks) {
  const QuadOwner q = quad();
  const QuadOwner other = quad(2.0);
  add(q);
  add(q);
  add(other);
  const auto parts = model.added_data();
  GMeshGroup foreign;
  foreign.set_mesh(other.owner, other.mesh, &model);
  vtkNew<vtkActor> widget;
  model.add_widget(widget);
  const int references = widget->GetReferenceCount();

  model.clear();
  EXPECT_EQ(model.get_mesh(q.owner), nullptr);
  EXPECT_EQ(model.get_mesh(other.owner), nullptr);
  EXPECT_EQ(model.removed, parts);
  EXPECT_EQ(foreign.mesh_owner(), nullptr) << "removal of each mesh is told";
  EXPECT_LT(widget->GetReferenceCount(), references) << "the base was cleared too";

  model.forget_calls();
  add(q);
  EXPECT_NE(model.get_mesh(q.owner), nullptr);
  EXPECT_EQ(model.added_data(), parts);
}

TEST(MeshModelLife, GivenAModelWithMeshes_WhenDestroyed_ThenGroupsAreToldAndEverythingItOwnsGoes) {
  Tarn::MeshDatabase db;
  const QuadOwner q = add_quad_owner(db, 0.0, 0.0);
  auto model = std::make_unique<GMeshModel>(&db);
  model->add_mesh(q.owner, q.mesh, kRed, 1.0f, false);
  model->add_mesh(q.owner, q.mesh, kBlue, 1.0f, true);
  vtkNew<vtkPlane> plane;
  model->set_clipping_plane(plane);
  GMeshGroup foreign;
  foreign.set_mesh(q.owner, q.mesh, model.get());
  const vtkSmartPointer<vtkPolyData> surface = model->get_mesh(q.owner)->get_tri_data();
  const std::vector<vtkWeakPointer<vtkProperty>> properties{
      model->surface_flat_property(), model->surface_smooth_property(), model->edge_property(), model->node_property()};
  for (const auto& property : properties)
    ASSERT_NE(property.Get(), nullptr);
  ASSERT_GT(plane->GetReferenceCount(), 1);

  model.reset();
  EXPECT_EQ(foreign.mesh_owner(), nullptr);
  EXPECT_EQ(GMeshGroup::get_group(surface), nullptr);
  EXPECT_EQ(plane->GetReferenceCount(), 1);
  for (const auto& property : properties)
    EXPECT_EQ(property.Get(), nullptr);
}

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
  add(other, kBlue, true);
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
        group.set_vertex_color_array({{group.get_mesh().nodes.front(), kBlue}});
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
  model.set_color(q.owner, kBlue);
  EXPECT_EQ(model.get_mesh(q.owner)->get_color(), kBlue);
  model.set_color(q.owner, kNone);
  EXPECT_EQ(model.get_mesh(q.owner)->get_color(), kWhite);
}

// ------------------------------------------------------------------------------------------ changes

TEST_F(MeshModel, GivenRegisteredGroups_WhenTheOwnerIsReportedMoved_ThenTheyHearOfItInTheirOrder) {
  const QuadOwner q = quad();
  const QuadOwner other = quad(2.0);
  GMeshGroup groups[3];
  GMeshGroup stranger;
  model.register_owner(&groups[2], q.owner);
  model.register_owner(&groups[0], q.owner);
  model.register_owner(&groups[1], q.owner);
  model.register_owner(&stranger, other.owner);
  const auto untouched = stranger.MeshTime().GetMTime();

  model.update_mesh_transformed(q.owner);
  EXPECT_LT(groups[2].MeshTime().GetMTime(), groups[0].MeshTime().GetMTime());
  EXPECT_LT(groups[0].MeshTime().GetMTime(), groups[1].MeshTime().GetMTime());
  EXPECT_EQ(stranger.MeshTime().GetMTime(), untouched);

  const auto before = groups[0].MeshTime().GetMTime();
  model.unregister_owner(&groups[0], other.owner); // not registered there
  model.update_mesh_transformed(q.owner);
  EXPECT_GT(groups[0].MeshTime().GetMTime(), before);
}

TEST_F(MeshModel, GivenAPairRegisteredTwice_WhenUnregistered_ThenBothGoAndOthersStay) {
  const QuadOwner q = quad();
  const QuadOwner other = quad(2.0);
  GMeshGroup twice;
  GMeshGroup once;
  model.register_owner(&twice, q.owner);
  model.register_owner(&once, q.owner);
  model.register_owner(&twice, q.owner);
  model.register_owner(&twice, other.owner);

  // Each telling moves a stamp once, so the process's stamp counter tells how often a group was told.
  const auto tellings = [&](Owner owner) {
    vtkTimeStamp before;
    vtkTimeStamp after;
    before.Modified();
    model.update_mesh_transformed(owner);
    after.Modified();
    return after.GetMTime() - before.GetMTime() - 1;
  };
  EXPECT_EQ(tellings(q.owner), 3u);
  model.unregister_owner(&twice, q.owner);
  EXPECT_EQ(tellings(q.owner), 1u);
  EXPECT_EQ(tellings(other.owner), 1u);
  model.unregister_owner(&twice, q.owner); // again: nothing there
  EXPECT_EQ(tellings(q.owner), 1u);
  model.unregister_owner(&once, q.owner);
  model.unregister_owner(&twice, other.owner);
  EXPECT_EQ(tellings(q.owner), 0u);
}

TEST_F(MeshModel, GivenElementsDeletedInTheDatabase_WhenReportedModified_ThenTheGroupAsksAgainOnlyWhenNeeded) {
  const Owner owner = db.add_owner("sheet", 2);
  const Block sheet = add_quads(db, owner, {2, 1}, {0.0, 0.0, 0.0});
  model.add_mesh(owner, mesh_of(Tarn::Quad, sheet.elements), kRed, 1.0f, false);
  GMeshGroup* group = model.get_mesh(owner);
  ASSERT_TRUE(db.delete_elements(1, sheet.elements.data()));
  EXPECT_THAT(group->get_mesh().elements[Tarn::Quad], SizeIs(2)) << "nobody said that anything changed";
  const auto stamp = group->MeshTime().GetMTime();
  model.update_mesh_modified(owner);
  EXPECT_EQ(group->MeshTime().GetMTime(), stamp) << "a mark only";
  EXPECT_THAT(group->get_mesh().elements[Tarn::Quad], ElementsAre(sheet.elements[1]));
}

TEST_F(MeshModel, GivenAnUnknownOwner_WhenChangesAreReported_ThenNobodyHears) {
  const QuadOwner q = quad();
  const QuadOwner unknown = quad(2.0);
  add(q);
  const auto stamp = model.get_mesh(q.owner)->MeshTime().GetMTime();
  model.update_mesh_modified(unknown.owner);
  model.update_mesh_transformed(unknown.owner);
  model.get_mesh(q.owner)->get_mesh();
  EXPECT_EQ(model.get_mesh(q.owner)->MeshTime().GetMTime(), stamp);
}

TEST_F(MeshModel, GivenAGroupThatStoppedObserving_WhenItDies_ThenTheModelForgetsIt) {
  const QuadOwner q = quad();
  add(q);
  model.get_mesh(q.owner)->set_dont_observe();
  model.remove_mesh(q.owner);
  model.update_mesh_modified(q.owner); // would reach a dead group
  EXPECT_EQ(model.get_mesh(q.owner), nullptr);

  {
    GMeshGroup foreign;
    foreign.set_mesh(q.owner, q.mesh, &model);
    foreign.set_dont_observe();
  }
  model.update_mesh_transformed(q.owner);
}

// ------------------------------------------------------------------------------------------ many

TEST_F(MeshModel, GivenTenThousandOwners_WhenOneIsHidden_ThenTheDataOfTheOthersStaysUntouched) {
  constexpr int kOwners = 10000;
  std::vector<QuadOwner> quads;
  for (int i = 0; i < kOwners; ++i)
    quads.push_back(add_quad_owner(db, 2.0 * (i % 100), 2.0 * (i / 100)));
  for (const QuadOwner& q : quads)
    add(q);
  model.update_parts();
  const auto parts = model.parts_of_add(0);
  ASSERT_EQ(block_count(parts[0]), static_cast<unsigned int>(kOwners));
  vtkTimeStamp built;
  built.Modified();

  const auto hidden = static_cast<std::size_t>(kOwners / 2);
  model.set_visibility(quads[hidden].owner, false);
  model.update_parts();
  ASSERT_EQ(block_count(parts[0]), static_cast<unsigned int>(kOwners - 1));
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
  model.set_color(q.owner, kBlue);
  EXPECT_EQ(group->get_2d_data(), grid);
  EXPECT_GT(grid->GetMTime(), stamp);
  EXPECT_EQ(grid->GetPoints(), points);
  EXPECT_EQ(grid->GetCells(), cells);
  EXPECT_EQ(grid->GetCells()->GetConnectivityArray(), connectivity);
}

} // namespace
