#include "model/GMeshModel.h"
#include "pick/GMeshPicker.h"
#include "platform/base/GPickerBase.h"
#include "platform/base/GView.h"
#include "platform/base/MultiCellPicker.h"
#include "platform/base/PickRectangle.h"
#include "platform/base/PickedEntity.h"
#include "tests/proof/Scene.h"
#include "tests/support/RecordingMeshData.h"

#include <gtest/gtest.h>

#include <vtkRenderer.h>

#include <limits>
#include <map>

using namespace proof;

namespace {

constexpr int owner_count = 20;

/// A sheet of 20 by 10 quadrilaterals, a column an owner, seen from in front through a database that writes calls down.
class ManyOwners : public testing::Test {
protected:
  ManyOwners() {
    scene_.mesh = sheet(owner_count, 10, Tarn::Quad);
    scene_.mesh.owner_count = owner_count;
    for (Element& element : scene_.mesh.elements)
      element.owner = int(scene_.mesh.points[std::size_t(element.nodes[0])][0]);
    scene_.mesh.fill();
    recording_ = std::make_unique<test_support::RecordingMeshData>(*scene_.mesh.database);
    window_->SetOffScreenRendering(1);
    window_->SetSize(300, 200);
    view_ = std::make_unique<GView>(window_);
    Look look;
    look.direction = {0, 0, 1};
    look.zoom = 0.9;
    set_camera(view_->renderer()->GetActiveCamera(), scene_.mesh, look);
    model_ = std::make_unique<GMeshModel>(recording_.get());
    for (int owner = 0; owner < owner_count; ++owner)
      model_->add_mesh(scene_.mesh.owners[std::size_t(owner)], scene_.mesh.of_owner(owner), TovanColor(9, 9, 9), 1.0F,
                       false);
    view_->render();
  }
  ~ManyOwners() override {
    GPickerBase::set_filter(filter_);
    MultiCellPicker::mSelectVisibleOnly = false;
  }

  Scene scene_;
  std::unique_ptr<test_support::RecordingMeshData> recording_;
  vtkNew<vtkRenderWindow> window_;
  std::unique_ptr<GView> view_;
  std::unique_ptr<GMeshModel> model_;
  GMeshPicker picker_;
  std::vector<std::string> filter_ = GPickerBase::filter();
};

TEST_F(ManyOwners, GivenARegionOverAll_WhenTheVisibleIsPicked_ThenEachEntityIsJudgedOnce) {
  const double low[2] = {0, 0};
  const double high[2] = {300, 200};
  PickRectangle everything(low, high);
  MultiCellPicker::mSelectVisibleOnly = true;
  GPickerBase::set_filter({"Face"});
  recording_->forget_calls();
  ASSERT_TRUE(GPickerBase::pick_by_bounds(view_.get(), everything));
  EXPECT_EQ(GPickerBase::picked().size(), 200u);
  // One look at the nodes of each element, though the first owner's elements are handed over twenty times.
  std::map<std::uint64_t, int> asked;
  for (const auto& call : recording_->calls("get_nodes_of_elements"))
    for (const std::uint64_t handle : call.handles)
      ++asked[handle];
  EXPECT_EQ(asked.size(), 200u);
  for (const auto& [handle, times] : asked)
    EXPECT_EQ(times, 1) << handle;
}

TEST_F(ManyOwners, GivenNodesThatOwnersShare_WhenPickedByARegion_ThenEachIsPickedOnce) {
  const double low[2] = {0, 0};
  const double high[2] = {300, 200};
  PickRectangle everything(low, high);
  GPickerBase::set_filter({"Node", "Edge"});
  ASSERT_TRUE(GPickerBase::pick_by_bounds(view_.get(), everything));
  std::map<std::string, int> count;
  for (const EntitySelection& each : GPickerBase::picked())
    ++count[each.entity()->type()];
  EXPECT_EQ(count["Node"], 21 * 11);
  EXPECT_EQ(count["Edge"], 20 * 11 + 21 * 10);
}

// ------------------------------------------------------------------------------------------ degenerate views

/// Asks for everything, in every way; what is found is looked at.
void pick_anyhow(GView* view) {
  const double corners[2][2] = {{-50, -50}, {500, 400}};
  for (const float x : {-1e9F, -1.0F, 0.0F, 150.0F, 299.5F, 1e9F, std::numeric_limits<float>::quiet_NaN()}) {
    GPickerBase::pick(view, x, 100);
    GPickerBase::hover(view, x, x);
    PickRectangle box(corners[0], corners[1]);
    for (const bool visible_only : {false, true}) {
      MultiCellPicker::mSelectVisibleOnly = visible_only;
      GPickerBase::pick_by_bounds(view, box);
    }
    for (const EntitySelection& each : GPickerBase::possible_selections())
      ASSERT_GT(each.entity()->id(), 0);
  }
  MultiCellPicker::mSelectVisibleOnly = false;
}

// To look an entity up is to ask for its kind, and so its database.
TEST_F(ManyOwners, GivenNodesAndEdgesThatOwnersShare_WhenHandedOverAgain_ThenTheyAreNotLookedUpAgain) {
  const double low[2] = {0, 0};
  const double high[2] = {300, 200};
  PickRectangle everything(low, high);
  GPickerBase::set_filter({"Node", "Edge", "Face"});
  recording_->forget_calls();
  ASSERT_TRUE(GPickerBase::pick_by_bounds(view_.get(), everything));
  // 31 edges and 10 faces an owner, of which 19 times 10 edges are the neighbour's too. New ones are asked a little
  // more.
  constexpr std::size_t hits = owner_count * (31 + 10);
  constexpr std::size_t entities = hits - (owner_count - 1) * 10;
  EXPECT_LE(recording_->count("get_element_type"), hits + 2 * entities);
}

TEST_F(ManyOwners, GivenAWindowThatWasNeverDrawn_WhenPicked_ThenNothingIsHitAndNothingHappens) {
  vtkNew<vtkRenderWindow> window;
  window->SetOffScreenRendering(1);
  GView view(window);
  ASSERT_EQ(window->GetSize()[0], 0);
  for (const float x : {-1.0F, 0.0F, 150.0F}) {
    EXPECT_FALSE(GPickerBase::pick(&view, x, x));
    EXPECT_FALSE(GPickerBase::hover(&view, x, x));
  }
  pick_anyhow(&view);
  EXPECT_TRUE(GPickerBase::pick(view_.get(), 150.3F, 100.2F)) << "the other view is as it was";
}

TEST_F(ManyOwners, GivenAViewportWithoutPixels_WhenPicked_ThenNothingHappens) {
  view_->renderer()->SetViewport(0.5, 0.5, 0.5, 0.5);
  pick_anyhow(view_.get());
  view_->renderer()->SetViewport(0, 0, 1, 1);
  view_->render();
  EXPECT_TRUE(GPickerBase::pick(view_.get(), 150.3F, 100.2F));
}

TEST_F(ManyOwners, GivenDegenerateCameras_WhenPicked_ThenNothingHappens) {
  vtkCamera* camera = view_->renderer()->GetActiveCamera();
  const auto try_camera = [&](const Point& eye, const Point& focal, const Point& up, double near, double far) {
    camera->SetPosition(eye.data());
    camera->SetFocalPoint(focal.data());
    camera->SetViewUp(up.data());
    camera->SetClippingRange(near, far);
    for (const bool parallel : {false, true}) {
      camera->SetParallelProjection(parallel);
      pick_anyhow(view_.get());
    }
  };
  try_camera({10, 5, 1e-9}, {10, 5, 0}, {0, 1, 0}, 1e-12, 1); // on the mesh
  try_camera({10, 5, 0}, {11, 5, 0}, {0, 0, 1}, 0.01, 100);   // in its plane
  try_camera({10, 5, 3}, {10, 5, 9}, {0, 1, 0}, 0.01, 100);   // turned away from it
  try_camera({10, 5, 3}, {10, 5, 0}, {0, 0, 1}, 0.01, 100);   // up along the view
  try_camera({10, 5, 3}, {10, 5, 3}, {0, 1, 0}, 0.01, 100);   // looking nowhere
  try_camera({10, 5, 3}, {10, 5, 0}, {0, 1, 0}, 2, 2);        // no depth
  camera->SetViewAngle(1e-9);
  try_camera({10, 5, 3}, {10, 5, 0}, {0, 1, 0}, 0.01, 100);
}

TEST_F(ManyOwners, GivenTheEyeInsideASolid_WhenPicked_ThenTheSolidAroundItOrOneAheadIsHit) {
  Scene inside;
  inside.mesh = block(3, 3, 3, Tarn::Hex);
  inside.views[0].direction = {0.1, 0.2, 1};
  Stage stage(inside);
  vtkCamera* camera = stage.view(0)->renderer()->GetActiveCamera();
  camera->SetPosition(1.5, 1.5, 1.5);
  camera->SetFocalPoint(1.5, 1.6, 0.5);
  camera->SetParallelProjection(false);
  camera->SetClippingRange(0.01, 10);
  model_->unhook_from_views();
  stage.view(0)->render();
  GPickerBase::set_filter({"Hex"});
  ASSERT_TRUE(GPickerBase::pick(stage.view(0), 100.3F, 85.4F));
  // The one around the eye is left through the face that the next is entered by: both lie there, the first in order
  // wins.
  const auto handle = GPickerBase::picked().front().entity()->handle();
  EXPECT_TRUE(handle == inside.mesh.elements[4].handle.value || handle == inside.mesh.elements[13].handle.value);
  // Nothing of what lies behind the eye.
  for (const EntitySelection& each : GPickerBase::possible_selections())
    for (std::size_t i = 18; i < 27; ++i)
      EXPECT_NE(each.entity()->handle(), inside.mesh.elements[i].handle.value);
}

} // namespace
