#include "group/GMeshGroup.h"
#include "highlight/GMeshHighlight.h"
#include "highlight/GMeshHighlightProperties.h"
#include "model/GMeshModel.h"
#include "pick/GMeshPicker.h"
#include "platform/base/GPickerBase.h"
#include "platform/base/GView.h"
#include "platform/base/MultiCellPicker.h"
#include "platform/base/PickRectangle.h"
#include "platform/base/PickedEntity.h"
#include "tests/base/Frame.h"
#include "tests/support/NamedMeshes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vtkCamera.h>

#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// A block of 4 x 3 x 2 hexahedra, seen along z, and the pick system round it.
class Picking : public testing::Test {
protected:
  Picking() : block_(test_support::hex_block(4, 3, 2)), model_(block_.database.get()), highlight_(&model_, &looks_) {
    filter_ = GPickerBase::filter();
    model_.add_mesh(block_.owner, block_.mesh, TovanColor(200, 200, 200), 1.0F, false);
    highlight_.observe_selections(true);
    vtkCamera* camera = view_.renderer()->GetActiveCamera();
    camera->SetFocalPoint(2, 1.5, 1);
    camera->SetPosition(2, 1.5, 11);
    camera->SetViewUp(0, 1, 0);
    camera->ParallelProjectionOn();
    camera->SetParallelScale(2);
    view_.renderer()->ResetCameraClippingRange(0, 4, 0, 3, 0, 2);
    view_.render();
  }

  ~Picking() override {
    GPickerBase::set_filter(filter_);
    MultiCellPicker::mSelectVisibleOnly = false;
    highlight_.clear();
  }

  // Where a point of the plane z = 2 is on the screen.
  std::array<float, 2> on_screen(double x, double y) {
    view_.renderer()->SetWorldPoint(x, y, 2, 1);
    view_.renderer()->WorldToDisplay();
    const double* at = view_.renderer()->GetDisplayPoint();
    return {static_cast<float>(at[0]), static_cast<float>(at[1])};
  }

  bool pick(double x, double y, GPickerBase::Change change = GPickerBase::Change::Replace) {
    const auto at = on_screen(x, y);
    return GPickerBase::pick(view_.get(), at[0], at[1], change);
  }

  static std::vector<std::string> picked() { return names(GPickerBase::picked()); }

  static std::vector<std::string> names(const std::vector<EntitySelection>& list) {
    std::vector<std::string> found;
    for (const EntitySelection& each : list)
      found.push_back(std::string(each.entity()->type()) + " " + std::to_string(each.entity()->id()));
    return found;
  }

  int orange_pixels() {
    return view_.render().count([](const Frame::Color& c) { return is_near(c, {255, 140, 0}, 8); });
  }

  OffscreenView view_;
  test_support::NamedMesh block_;
  GMeshModel model_;
  GMeshPicker picker_;
  GMeshHighlightProperties looks_;
  GMeshHighlight highlight_;
  std::vector<std::string> filter_;
};

TEST_F(Picking, GivenSolidsOnly_WhenClicked_ThenTheSolidInFrontIsPickedAndHighlighted) {
  GPickerBase::set_filter({"Hex"});
  EXPECT_EQ(orange_pixels(), 0);
  ASSERT_TRUE(pick(1.5, 1.5));
  // x runs fastest: the second of the second row of the upper layer.
  EXPECT_THAT(picked(), ElementsAre("Hex " + std::to_string(12 + 4 + 2)));
  EXPECT_TRUE(GPickerBase::picked().front().is_exact());
  EXPECT_THAT(names(GPickerBase::possible_selections()), ElementsAre("Hex 18", "Hex 6")) << "the one below comes next";
  EXPECT_GT(orange_pixels(), 100);

  EXPECT_FALSE(pick(30, 30));
  EXPECT_THAT(picked(), IsEmpty());
  EXPECT_EQ(orange_pixels(), 0);
}

TEST_F(Picking, GivenTheUsualFilter_WhenClickedOnANodeOrAnEdge_ThenTheyWin) {
  ASSERT_TRUE(pick(1.0, 1.0));
  EXPECT_STREQ(GPickerBase::picked().front().entity()->type(), "Node");
  ASSERT_TRUE(pick(1.5, 1.0));
  EXPECT_STREQ(GPickerBase::picked().front().entity()->type(), "Edge");
  ASSERT_TRUE(pick(1.5, 1.5));
  EXPECT_STREQ(GPickerBase::picked().front().entity()->type(), "Hex");
}

TEST_F(Picking, GivenAPickedNode_WhenNodesAreShown_ThenItIsDrawn) {
  GPickerBase::set_filter({"Node"});
  ASSERT_TRUE(pick(1.0, 1.0));
  highlight_.set_node_vis(true);
  EXPECT_GT(orange_pixels(), 10);
}

TEST_F(Picking, GivenAnOverlap_WhenWalkedThrough_ThenEachPossibleSelectionIsPickedInTurn) {
  GPickerBase::set_filter({"Hex"});
  ASSERT_TRUE(pick(1.5, 1.5));
  ASSERT_TRUE(GPickerBase::next_possible_selection());
  EXPECT_THAT(picked(), ElementsAre("Hex 6"));
  ASSERT_TRUE(GPickerBase::next_possible_selection());
  EXPECT_THAT(picked(), ElementsAre("Hex 18"));
}

TEST_F(Picking, GivenChanges_WhenPicked_ThenTheListFollows) {
  using Change = GPickerBase::Change;
  GPickerBase::set_filter({"Hex"});
  pick(0.5, 0.5);
  pick(1.5, 0.5, Change::Add);
  EXPECT_THAT(picked(), ElementsAre("Hex 13", "Hex 14"));
  pick(1.5, 0.5, Change::Add);
  EXPECT_THAT(picked(), ElementsAre("Hex 13", "Hex 14"));
  pick(0.5, 0.5, Change::Toggle);
  EXPECT_THAT(picked(), ElementsAre("Hex 14"));
  pick(2.5, 0.5, Change::Toggle);
  EXPECT_THAT(picked(), ElementsAre("Hex 14", "Hex 15"));
  pick(1.5, 0.5, Change::Remove);
  EXPECT_THAT(picked(), ElementsAre("Hex 15"));
}

TEST_F(Picking, GivenTheCursor_WhenItMoves_ThenThePreSelectionFollowsAndLeavesThePicksAlone) {
  GPickerBase::set_filter({"Hex"});
  pick(0.5, 0.5);
  auto at = on_screen(1.5, 1.5);
  EXPECT_TRUE(GPickerBase::hover(view_.get(), at[0], at[1]));
  ASSERT_NE(GPickerBase::pre_selection().entity(), nullptr);
  EXPECT_EQ(GPickerBase::pre_selection().entity()->id(), 18);
  const int red = view_.render().count([](const Frame::Color& c) { return is_near(c, {255, 0, 0}, 8); });
  EXPECT_GT(red, 100);
  EXPECT_THAT(picked(), ElementsAre("Hex 13"));
  at = on_screen(30, 30);
  EXPECT_FALSE(GPickerBase::hover(view_.get(), at[0], at[1]));
  EXPECT_EQ(GPickerBase::pre_selection().entity(), nullptr);
  EXPECT_EQ(view_.render().count([](const Frame::Color& c) { return is_near(c, {255, 0, 0}, 8); }), 0);
}

TEST_F(Picking, GivenARectangle_WhenPickedByIt_ThenVisibleOnlyLeavesTheLayerBelowOut) {
  GPickerBase::set_filter({"Hex"});
  const auto low = on_screen(0.2, 0.2);
  const auto high = on_screen(1.8, 0.8);
  const double from[2] = {low[0], low[1]};
  const double to[2] = {high[0], high[1]};
  PickRectangle region(from, to);
  ASSERT_TRUE(GPickerBase::pick_by_bounds(view_.get(), region));
  EXPECT_THAT(picked(), ElementsAre("Hex 1", "Hex 2", "Hex 13", "Hex 14"));
  MultiCellPicker::mSelectVisibleOnly = true;
  view_.get()->render_depth();
  ASSERT_TRUE(GPickerBase::pick_by_bounds(view_.get(), region));
  EXPECT_THAT(picked(), ElementsAre("Hex 13", "Hex 14"));
}

TEST_F(Picking, GivenAHiddenOwner_WhenPicked_ThenNothingOfItIsReported) {
  model_.set_visibility(block_.owner, false);
  view_.render();
  EXPECT_FALSE(pick(1.5, 1.5));
  EXPECT_THAT(GPickerBase::possible_selections(), IsEmpty());
  model_.set_visibility(block_.owner, true);
  view_.render();
  EXPECT_TRUE(pick(1.5, 1.5));
}

TEST_F(Picking, GivenHighlights_WhenPickedOver_ThenTheyAreNotInTheWay) {
  highlight_.highlight_mesh(block_.mesh);
  GPickerBase::set_filter({"Hex"});
  ASSERT_TRUE(pick(1.5, 1.5));
  EXPECT_THAT(picked(), ElementsAre("Hex 18"));
}

TEST(PickerRegistry, GivenAPickerThatDies_WhenItLeaves_ThenItsRecordsGoWithIt) {
  OffscreenView view;
  test_support::NamedMesh block = test_support::hex_block(1, 1, 1);
  GMeshModel model(block.database.get());
  model.add_mesh(block.owner, block.mesh, TovanColor(200, 200, 200), 1.0F, false);
  view.renderer()->ResetCamera(0, 1, 0, 1, 0, 1);
  view.render();
  {
    GMeshPicker picker;
    ASSERT_TRUE(GPickerBase::pick(view.get(), 150, 100));
    EXPECT_FALSE(GPickerBase::register_picker("Hex", &picker)) << "registered already";
  }
  EXPECT_THAT(GPickerBase::picked(), IsEmpty());
  EXPECT_THAT(GPickerBase::possible_selections(), IsEmpty());
  EXPECT_FALSE(GPickerBase::pick(view.get(), 150, 100));
}

} // namespace
