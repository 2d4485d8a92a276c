// Removing meshes and entities from a model, clearing and destroying it.

#include "MeshModel.h"

#include "group/GMeshGroup.h"
#include "model/GMeshDataGroup.h"

#include <vtkDataSet.h>
#include <vtkNew.h>
#include <vtkPlane.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>
#include <vtkWeakPointer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

GMeshGroup* group_of(vtkDataObject* block) { return GMeshGroup::get_group(vtkDataSet::SafeDownCast(block)); }

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
  model.add_mesh(owner, pick({0}), red, 1.0f, false);       // becomes empty
  model.add_mesh(owner, pick({2}), green, 1.0f, false);     // keeps all
  model.add_mesh(owner, pick({0, 1, 2}), blue, 1.0f, true); // keeps one
  model.add_mesh(owner, pick({1}), white, 0.5f, false);     // becomes empty
  model.add_mesh(next, pick({0, 1}), red, 1.0f, false);     // another owner's, though of the same entities

  const auto plain = model.parts_of_add(0);
  const auto scalars = model.parts_of_add(1);

  EXPECT_TRUE(model.remove_mesh(owner, pick({0, 1})));
  model.update_parts();
  ASSERT_EQ(block_count(plain[0]), 2u) << "the first and the last record went";
  GMeshGroup* first = group_of(block_of(plain[0], 0));
  EXPECT_EQ(model.get_mesh(owner), first);
  EXPECT_EQ(first->get_color(), green);
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
  add(q, blue);
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
  model->add_mesh(q.owner, q.mesh, red, 1.0f, false);
  model->add_mesh(q.owner, q.mesh, blue, 1.0f, true);
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

} // namespace
