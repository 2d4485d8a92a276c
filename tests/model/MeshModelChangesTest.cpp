// Which groups hear of a change that is reported to a model.

#include "MeshModel.h"

#include "group/GMeshGroup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::SizeIs;

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
  model.add_mesh(owner, mesh_of(Tarn::Quad, sheet.elements), red, 1.0f, false);
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

} // namespace
