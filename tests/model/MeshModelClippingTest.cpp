// How a model holds its clipping plane and hands it on.

#include "ModelScene.h"

#include "group/GMeshGroup.h"

#include <vtkNew.h>
#include <vtkPlane.h>
#include <vtkUnstructuredGrid.h>

#include <gtest/gtest.h>

namespace {

class ClippingPlane : public testing::Test {
protected:
  ClippingPlane() {
    owner = db.add_owner("sheet", 2);
    sheet = add_quads(db, owner, {4, 1}, {0.0, 0.0, 0.0});
    mesh = mesh_of(Tarn::Quad, sheet.elements);
    keep_right_of(2.1);
  }
  void keep_right_of(double x) {
    plane->SetOrigin(x, 0.0, 0.0);
    plane->SetNormal(1.0, 0.0, 0.0);
  }
  std::size_t drawn(GMeshGroup* group) {
    group->get_2d_data();
    return group->get_filtered_mesh().elements[Tarn::Quad].size();
  }

  Tarn::MeshDatabase db;
  RecordingModel model{&db};
  Owner owner;
  Block sheet;
  MeshVector mesh;
  vtkNew<vtkPlane> plane;
};

TEST_F(ClippingPlane, GivenAPlane_WhenSetReplacedAndTakenAway_ThenTheModelHoldsOneReference) {
  const int free = plane->GetReferenceCount();
  vtkNew<vtkPlane> other;
  model.set_clipping_plane(plane);
  EXPECT_EQ(plane->GetReferenceCount(), free + 1);
  model.set_clipping_plane(plane); // the same again
  EXPECT_EQ(plane->GetReferenceCount(), free + 1);
  model.set_clipping_plane(other);
  EXPECT_EQ(plane->GetReferenceCount(), free);
  EXPECT_EQ(other->GetReferenceCount(), free + 1);
  model.set_clipping_plane(nullptr);
  EXPECT_EQ(other->GetReferenceCount(), free);
}

TEST_F(ClippingPlane, GivenThatTheModelHoldsTheLastReference_WhenThePlaneIsSetAgain_ThenItLives) {
  vtkPlane* own = vtkPlane::New();
  model.set_clipping_plane(own);
  own->Delete();
  ASSERT_EQ(own->GetReferenceCount(), 1);
  model.set_clipping_plane(own);
  EXPECT_EQ(own->GetReferenceCount(), 1);
}

TEST_F(ClippingPlane, GivenMeshes_WhenAPlaneIsSetAndTakenAway_ThenEveryRecordHears) {
  model.add_mesh(owner, mesh, red, 1.0f, false);
  GMeshGroup* first = model.get_mesh(owner);
  const Owner other = db.add_owner("other", 2);
  model.add_mesh(other, mesh, red, 1.0f, true);
  ASSERT_EQ(drawn(first), 4u);
  model.set_visibility(other, false);

  model.set_clipping_plane(plane);
  EXPECT_EQ(drawn(first), 2u);
  EXPECT_EQ(drawn(model.get_mesh(other)), 2u) << "hidden ones too";
  const auto stamp = first->MeshTime().GetMTime();
  model.set_clipping_plane(plane);
  EXPECT_GT(first->MeshTime().GetMTime(), stamp) << "told again, also when it is the same";
  model.set_clipping_plane(nullptr);
  EXPECT_EQ(drawn(first), 4u);
  EXPECT_EQ(drawn(model.get_mesh(other)), 4u);
}

TEST_F(ClippingPlane, GivenAPlane_WhenMeshesAreAddedInAnyWay_ThenTheyAreClipped) {
  model.set_clipping_plane(plane);
  const Owner second = db.add_owner("second", 2);
  const Owner unique = db.add_owner("unique", 2);
  model.add_mesh(owner, mesh, red, 1.0f, false);
  model.add_mesh(second, mesh, red, {}, {}, {}, 1.0f);
  model.add_mesh_unique(mesh, unique);
  for (Owner each : {owner, second, unique})
    EXPECT_EQ(drawn(model.get_mesh(each)), 2u);
  model.get_mesh(unique)->set_clipping_plane(nullptr);
  model.add_mesh_unique(mesh, unique);
  EXPECT_EQ(drawn(model.get_mesh(unique)), 2u) << "an existing group is given the plane again";
}

} // namespace
