// Label flags, and which records have a label part. What the labels say is tested in tests/labels.

#include "ModelScene.h"
#include "group/GMeshGroup.h"
#include "model/GMeshLabels.h"
#include "platform/base/GView.h"

#include <vtkActor2D.h>
#include <vtkDataSet.h>
#include <vtkUnstructuredGrid.h>
#include <vtkWeakPointer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr auto foreign_label = static_cast<OBUtil::LabelType>(7);

class ModelLabels : public testing::Test {
protected:
  QuadOwner quad(double x = 0.0) { return add_quad_owner(db, x, 0.0); }
  QuadOwner shown_quad(double x = 0.0) {
    const QuadOwner q = quad(x);
    model.add_mesh(q.owner, q.mesh, red, 1.0f, false);
    return q;
  }
  vtkDataObject* grid_of(const QuadOwner& q) { return model.get_mesh(q.owner)->get_2d_data(); }
  vtkMTimeType flag_time() { return model.label_flag_time()->GetMTime(); }
  void switch_on() { model.set_node_label_flag(OBUtil::LocalId); }
  void switch_off() { model.set_node_label_flag(OBUtil::NoLabel); }

  Tarn::MeshDatabase db;
  RecordingModel model{&db};
};

bool is_in(const std::vector<vtkDataObject*>& list, vtkDataObject* data) {
  return std::find(list.begin(), list.end(), data) != list.end();
}

// ------------------------------------------------------------------------------------------ flags

TEST_F(ModelLabels, GivenANewModel_WhenAsked_ThenNoFlagIsOnAndNoneWasEverSet) {
  for (unsigned type = 0; type < 12; ++type)
    EXPECT_EQ(model.get_element_label_flag(static_cast<Tarn::ElementType>(type)), OBUtil::NoLabel) << type;
  EXPECT_EQ(model.get_node_label_flag(), OBUtil::NoLabel);
  EXPECT_FALSE(model.any_label_flag_on());
  EXPECT_EQ(flag_time(), 0u);
}

TEST_F(ModelLabels, GivenAnyKind_WhenItsFlagIsSet_ThenItAloneIsOn) {
  for (unsigned type = Tarn::OneNode; type <= Tarn::Superelement; ++type) {
    SCOPED_TRACE(type);
    const auto kind = static_cast<Tarn::ElementType>(type);
    model.set_element_label_flag(kind, foreign_label);
    EXPECT_TRUE(model.any_label_flag_on());
    for (unsigned other = 0; other < 10; ++other)
      EXPECT_EQ(model.get_element_label_flag(static_cast<Tarn::ElementType>(other)),
                other == type ? foreign_label : OBUtil::NoLabel);
    EXPECT_EQ(model.get_node_label_flag(), OBUtil::NoLabel);
    model.set_element_label_flag(kind, OBUtil::NoLabel);
    EXPECT_FALSE(model.any_label_flag_on());
  }
  model.set_node_label_flag(OBUtil::NodeElementId);
  EXPECT_TRUE(model.any_label_flag_on());
  EXPECT_EQ(model.get_node_label_flag(), OBUtil::NodeElementId);
}

TEST_F(ModelLabels, GivenAFlag_WhenSetToTheSame_ThenItsTimeStays) {
  model.set_node_label_flag(OBUtil::NoLabel);
  model.set_element_label_flag(Tarn::Hex, OBUtil::NoLabel);
  EXPECT_EQ(flag_time(), 0u);
  model.set_node_label_flag(OBUtil::LocalId);
  const vtkMTimeType first = flag_time();
  EXPECT_GT(first, 0u);
  model.set_node_label_flag(OBUtil::LocalId);
  EXPECT_EQ(flag_time(), first);
  model.set_element_label_flag(Tarn::Hex, OBUtil::GlobalId);
  const vtkMTimeType second = flag_time();
  EXPECT_GT(second, first);
  model.set_element_label_flag(Tarn::Hex, OBUtil::GlobalId);
  EXPECT_EQ(flag_time(), second);
}

TEST_F(ModelLabels, GivenKindNoneAndKindsThatDoNotExist_WhenTheirFlagsAreSet_ThenNothingIsLabelled) {
  shown_quad();
  model.forget_calls();
  model.set_element_label_flag(Tarn::None, OBUtil::LocalId);
  EXPECT_FALSE(model.any_label_flag_on());
  const vtkMTimeType time = flag_time();
  for (const unsigned type : {10u, 11u, 0xffffffffu})
    model.set_element_label_flag(static_cast<Tarn::ElementType>(type), OBUtil::LocalId);
  EXPECT_EQ(flag_time(), time);
  EXPECT_FALSE(model.any_label_flag_on());
  EXPECT_THAT(model.added, IsEmpty());
}

// ------------------------------------------------------------------------------------------ parts

TEST_F(ModelLabels, GivenMeshesOneOfThemHidden_WhenFlagsGoOnAndOff_ThenEachRecordGainsAndLosesOnePart) {
  const QuadOwner first = shown_quad();
  const QuadOwner second = shown_quad(2.0);
  model.add_mesh(second.owner, second.mesh, blue, 1.0f, false);
  model.set_visibility(first.owner, false);
  model.forget_calls();

  model.set_element_label_flag(Tarn::Quad, OBUtil::LocalId);
  ASSERT_THAT(model.added, SizeIs(3));
  EXPECT_TRUE(is_in(model.added_data(), grid_of(first)));
  EXPECT_TRUE(is_in(model.added_data(), grid_of(second)));
  switch_on();
  model.set_element_label_flag(Tarn::Quad, OBUtil::GlobalId);
  EXPECT_THAT(model.added, SizeIs(3)) << "they have one already";

  model.set_element_label_flag(Tarn::Quad, OBUtil::NoLabel);
  EXPECT_THAT(model.removed, IsEmpty()) << "the nodes are still labelled";
  const auto parts = model.added_data();
  switch_off();
  EXPECT_EQ(model.removed, parts);
  model.forget_calls();
  switch_on();
  EXPECT_EQ(model.added_data(), parts);
}

TEST_F(ModelLabels, GivenFlagsOn_WhenMeshesAreAddedInAnyWay_ThenEachComesWithALabelPart) {
  switch_on();
  const QuadOwner plain = quad();
  model.add_mesh(plain.owner, plain.mesh, red, 1.0f, false);
  ASSERT_THAT(model.added, SizeIs(4)) << "three of the data group before that of the labels";
  EXPECT_EQ(model.added[3].data, grid_of(plain));

  const QuadOwner colored = quad(2.0);
  std::array<std::vector<TovanColor>, 10> colors;
  colors[Tarn::Quad] = {green};
  model.add_mesh(colored.owner, colored.mesh, red, {}, colors, {}, 1.0f);
  ASSERT_THAT(model.added, SizeIs(5));
  EXPECT_EQ(model.added[4].data, grid_of(colored));

  const QuadOwner unique = quad(4.0);
  model.add_mesh_unique(unique.mesh, unique.owner);
  ASSERT_THAT(model.added, SizeIs(6));
  EXPECT_EQ(model.added[5].data, grid_of(unique));
  model.forget_calls();
  model.add_mesh_unique(plain.mesh, unique.owner);
  EXPECT_THAT(model.added, IsEmpty()) << "it has one already";
  model.destroy_label_objects();
  model.add_mesh_unique(plain.mesh, unique.owner);
  EXPECT_THAT(model.added_data(), ElementsAre(grid_of(unique)));
}

TEST_F(ModelLabels, GivenALabelledMesh_WhenRemoved_ThenItsLabelPartGoesAfterItsOwn) {
  const QuadOwner q = shown_quad();
  const auto parts = model.added_data();
  switch_on();
  vtkDataObject* labelled = grid_of(q);
  model.remove_mesh(q.owner);
  EXPECT_THAT(model.removed, ElementsAre(parts[0], parts[1], parts[2], labelled));
}

TEST_F(ModelLabels, GivenALabelledMesh_WhenItsEntitiesAreRemoved_ThenItsLabelPartGoesWithTheLast) {
  const QuadOwner q = quad();
  const QuadOwner more = quad(2.0);
  MeshVector both = q.mesh;
  both.append(more.mesh);
  model.add_mesh(q.owner, both, red, 1.0f, false);
  switch_on();
  vtkDataObject* labelled = grid_of(q);

  ASSERT_TRUE(model.remove_mesh(q.owner, more.mesh));
  EXPECT_THAT(model.removed, IsEmpty());
  ASSERT_TRUE(model.remove_mesh(q.owner, q.mesh));
  ASSERT_THAT(model.removed, SizeIs(4));
  EXPECT_EQ(model.removed[3], labelled);
}

TEST_F(ModelLabels, GivenLabelledMeshes_WhenCleared_ThenNoLabelIsLeftAndNewMeshesAreLabelled) {
  GView view;
  shown_quad();
  shown_quad(2.0);
  switch_on();
  model.clear();
  EXPECT_TRUE(model.view_props_.empty() || model.view_props_.at(&view).empty());
  model.forget_calls();
  shown_quad(4.0);
  EXPECT_THAT(model.added, SizeIs(4));
}

TEST_F(ModelLabels, GivenARecordOfTheHosts_WhenItsLabelObjectIsMadeAndDestroyedTwice_ThenOnlyTheFirstTimeCounts) {
  const QuadOwner q = shown_quad();
  model.forget_calls();
  GMeshGraphics record;
  model.create_label_object(record);
  EXPECT_THAT(model.added, IsEmpty()) << "nothing to label";
  record.group = model.get_mesh(q.owner);
  model.create_label_object(record);
  model.create_label_object(record);
  EXPECT_THAT(model.added_data(), ElementsAre(grid_of(q)));
  EXPECT_EQ(record.label_data, grid_of(q));
  model.destroy_label_object(record);
  model.destroy_label_object(record);
  EXPECT_THAT(model.removed, ElementsAre(grid_of(q)));
  EXPECT_EQ(record.label_data, nullptr);
}

// ------------------------------------------------------------------------------------------ hiding and showing

TEST_F(ModelLabels, GivenALabelledMesh_WhenHiddenAndShown_ThenItsLabelsStayAwayUntilAllFlagsWereOff) {
  GView view;
  const QuadOwner q = shown_quad();
  switch_on();
  vtkDataObject* labelled = grid_of(q);
  const auto has_labels = [&] { return model.view_props_.at(&view).count(labelled) == 1; };
  ASSERT_TRUE(has_labels());
  const auto parts = std::vector<vtkDataObject*>(model.added_data());

  model.forget_calls();
  model.set_visibility(q.owner, false);
  EXPECT_THAT(model.removed, ElementsAre(labelled, parts[0], parts[1], parts[2])) << "labels first";
  model.forget_calls();
  model.set_visibility(q.owner, true);
  EXPECT_THAT(model.added_data(), ElementsAre(parts[0], parts[1], parts[2]));
  EXPECT_THAT(model.removed, ElementsAre(labelled)) << "once more, to no effect";
  EXPECT_FALSE(has_labels());

  model.forget_calls();
  model.set_element_label_flag(Tarn::Quad, OBUtil::LocalId);
  model.reset_entity_visibility();
  model.create_label_objects();
  model.add_mesh_unique(q.mesh, q.owner);
  EXPECT_FALSE(is_in(model.added_data(), labelled)) << "the record believes that it has its part";
  EXPECT_FALSE(is_in(model.added_data(), grid_of(q)));

  model.forget_calls();
  model.set_element_label_flag(Tarn::Quad, OBUtil::NoLabel);
  switch_off();
  EXPECT_THAT(model.removed, ElementsAre(labelled));
  switch_on();
  EXPECT_THAT(model.added_data(), ElementsAre(grid_of(q)));
}

TEST_F(ModelLabels, GivenAHiddenLabelledMesh_WhenItsDataIsReplaced_ThenTheOldDataLivesAsLongAsTheRecordNamesIt) {
  const QuadOwner q = shown_quad();
  switch_on();
  const vtkWeakPointer<vtkDataObject> labelled = grid_of(q);
  model.set_visibility(q.owner, false);
  model.update_mesh_transformed(q.owner);
  ASSERT_NE(grid_of(q), labelled.Get());
  EXPECT_NE(labelled.Get(), nullptr);
  switch_off();
  EXPECT_EQ(labelled.Get(), nullptr);
}

TEST_F(ModelLabels, GivenAMeshThatWasHiddenWhenFlagsWentOn_WhenShown_ThenItsLabelsGo) {
  GView view;
  const QuadOwner q = shown_quad();
  model.set_visibility(q.owner, false);
  switch_on();
  vtkDataObject* labelled = grid_of(q);
  ASSERT_EQ(model.view_props_.at(&view).count(labelled), 1u) << "labelled though hidden";
  model.forget_calls();
  model.set_visibility(q.owner, true);
  EXPECT_THAT(model.removed, ElementsAre(labelled));
  EXPECT_EQ(model.view_props_.at(&view).count(labelled), 0u);
}

TEST_F(ModelLabels, GivenAHiddenMeshWithoutALabelPart_WhenShown_ThenOneIsMadeThatItsRecordDoesNotKnow) {
  const QuadOwner q = shown_quad();
  switch_on();
  model.destroy_label_objects();
  model.set_visibility(q.owner, false);
  model.forget_calls();
  model.set_visibility(q.owner, true);
  ASSERT_THAT(model.added, SizeIs(4));
  EXPECT_EQ(model.added[0].data, grid_of(q)) << "labels first";
  EXPECT_THAT(model.removed, IsEmpty());

  model.forget_calls();
  model.set_visibility(q.owner, false);
  EXPECT_FALSE(is_in(model.removed, grid_of(q)));
  model.forget_calls();
  model.create_label_objects();
  EXPECT_THAT(model.added_data(), ElementsAre(grid_of(q))) << "the record still has none";
}

TEST_F(ModelLabels, GivenFlagsOff_WhenHiddenAndShown_ThenLabelsPlayNoPart) {
  const QuadOwner q = shown_quad();
  const auto parts = model.added_data();
  model.forget_calls();
  model.set_visibility(q.owner, false);
  model.set_visibility(q.owner, true);
  model.reset_entity_visibility();
  EXPECT_EQ(model.added_data(), parts);
  EXPECT_EQ(model.removed, parts);
}

TEST_F(ModelLabels, GivenMeshesWithoutLabelParts_WhenEntityVisibilityIsReset_ThenTheyGetThem) {
  const QuadOwner first = shown_quad();
  const QuadOwner second = shown_quad(2.0);
  switch_on();
  model.destroy_label_objects();
  model.set_visibility(second.owner, false);
  model.forget_calls();
  model.reset_entity_visibility();
  EXPECT_TRUE(is_in(model.added_data(), grid_of(first)));
  EXPECT_TRUE(is_in(model.added_data(), grid_of(second)));
  EXPECT_THAT(model.added, SizeIs(2)) << "and no other parts";
  model.reset_entity_visibility();
  EXPECT_THAT(model.added, SizeIs(2)) << "their records know them";
}

// ------------------------------------------------------------------------------------------ props

TEST_F(ModelLabels, GivenTwoViews_WhenLabelsAreOn_ThenEachHasALabelActorOfItsOwn) {
  GView early;
  const QuadOwner q = shown_quad();
  switch_on();
  GView late;
  std::vector<vtkActor2D*> actors;
  for (GView* view : {&early, &late}) {
    const PropList& props = model.view_props_.at(view).at(grid_of(q));
    ASSERT_THAT(props, SizeIs(1));
    actors.push_back(vtkActor2D::SafeDownCast(props[0]));
    ASSERT_NE(actors.back(), nullptr);
    auto* labels = GMeshLabels::SafeDownCast(actors.back()->GetMapper());
    ASSERT_NE(labels, nullptr);
    EXPECT_EQ(labels->GetTextProperty(), GModel::text_property());
    EXPECT_EQ(labels->GetInputDataObject(0, 0), grid_of(q));
  }
  EXPECT_NE(actors[0], actors[1]);
  EXPECT_NE(actors[0]->GetMapper(), actors[1]->GetMapper());
}

TEST_F(ModelLabels, GivenNoView_WhenALabelActorIsMade_ThenTheViewIsNotMissed) {
  const QuadOwner q = shown_quad();
  const PropList props = GMeshModel::create_mesh_label_view(grid_of(q), nullptr, &model);
  ASSERT_THAT(props, SizeIs(1));
  auto* actor = vtkActor2D::SafeDownCast(props[0]);
  ASSERT_NE(actor, nullptr);
  EXPECT_TRUE(actor->GetMapper()->IsA("GMeshLabels"));
}

TEST(MeshLabelsType, GivenAMapper_WhenAskedForItsType_ThenItIsALabelMapperOfVtk) {
  vtkNew<GMeshLabels> labels;
  EXPECT_STREQ(labels->GetClassName(), "GMeshLabels");
  for (const char* name : {"GMeshLabels", "GLabelMapper", "vtkMapper2D"})
    EXPECT_TRUE(labels->IsA(name)) << name;
  EXPECT_FALSE(labels->IsA("vtkMapper"));
  EXPECT_TRUE(GMeshLabels::IsTypeOf("GLabelMapper"));
  EXPECT_EQ(labels->GetNumberOfGenerationsFromBase("GLabelMapper"), 1);
  EXPECT_EQ(labels->GetNumberOfInputPorts(), 1);
  const auto copy = vtk::TakeSmartPointer(labels->NewInstance());
  EXPECT_STREQ(copy->GetClassName(), "GMeshLabels");
  EXPECT_EQ(GMeshLabels::SafeDownCast(labels), labels.Get());
  EXPECT_EQ(GMeshLabels::SafeDownCast(vtkSmartPointer<vtkActor2D>::New()), nullptr);
}

} // namespace
