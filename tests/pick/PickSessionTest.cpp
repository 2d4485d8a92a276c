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
#include "tests/pick/ErraticMeshData.h"
#include "tests/support/NamedMeshes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vtkCamera.h>
#include <vtkPlane.h>

#include <set>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// A view that looks down z, 50 pixels to the unit, from the corner (0, 0).
class PickSession : public testing::Test {
protected:
  PickSession() {
    vtkCamera* camera = view_.renderer()->GetActiveCamera();
    camera->SetPosition(3, 2, 10);
    camera->SetFocalPoint(3, 2, 0);
    camera->ParallelProjectionOn();
    camera->SetParallelScale(2);
    camera->SetClippingRange(5, 15);
  }
  ~PickSession() override {
    GPickerBase::set_filter(filter_);
    MultiCellPicker::mSelectVisibleOnly = false;
  }

  bool pick(double x, double y, GPickerBase::Change change = GPickerBase::Change::Replace) {
    return GPickerBase::pick(view_.get(), static_cast<float>(50 * x), static_cast<float>(50 * y), change);
  }
  bool hover(double x, double y) {
    return GPickerBase::hover(view_.get(), static_cast<float>(50 * x), static_cast<float>(50 * y));
  }
  static PickRectangle whole_window() {
    const double low[2] = {0, 0};
    const double high[2] = {300, 200};
    return PickRectangle(low, high);
  }
  int pixels(Frame::Color color) {
    return view_.render().count([&](const Frame::Color& c) { return is_near(c, color, 8); });
  }

  std::vector<std::string> filter_ = GPickerBase::filter();
  OffscreenView view_;
};

// A sheet in a database of its own, with a highlight in a colour of its own that follows the picks.
struct Session {
  explicit Session(TovanColor color, double x) {
    for (int i = 0; i < 2; ++i)
      mesh.add_own_element(Tarn::Quad, 4, x + i);
    model.add_mesh(mesh.owner, mesh.mesh, TovanColor(230, 230, 230), 1.0F, false);
    looks.set_highlight_color(color);
    looks.set_preselect_color(TovanColor(color.b, color.r, color.g));
    highlight.observe_selections(true);
  }
  const std::vector<Tarn::Handle<1>>& quads() const { return mesh.mesh.elements[Tarn::Quad]; }

  test_support::NamedMesh mesh;
  GMeshModel model{mesh.database.get()};
  GMeshHighlightProperties looks;
  GMeshHighlight highlight{&model, &looks};
};

TEST_F(PickSession, GivenTwoDatabasesInOneView_WhenPicked_ThenEachHighlightsItsOwn) {
  const Frame::Color blue = {0, 0, 255};
  const Frame::Color green = {0, 255, 0};
  GMeshPicker picker;
  Session left(TovanColor(0, 0, 255), 0);
  Session right(TovanColor(0, 255, 0), 3);
  ASSERT_EQ(left.quads()[0], right.quads()[0]) << "handles alone do not tell them apart";
  GPickerBase::set_filter({"Face"});
  view_.render();
  ASSERT_TRUE(pick(0.5, 0.5));
  EXPECT_EQ(GPickerBase::picked().at(0).entity()->database(), left.mesh.database.get());
  EXPECT_GT(pixels(blue), 100);
  EXPECT_EQ(pixels(green), 0);
  ASSERT_TRUE(pick(3.5, 0.5, GPickerBase::Change::Add));
  EXPECT_GT(pixels(blue), 100);
  EXPECT_GT(pixels(green), 100);
  left.highlight.clear();
  EXPECT_EQ(pixels(blue), 0);
  EXPECT_GT(pixels(green), 100);
  ASSERT_THAT(GPickerBase::picked(), SizeIs(1));
  EXPECT_EQ(GPickerBase::picked()[0].entity()->database(), right.mesh.database.get());
  right.highlight.clear();
  EXPECT_THAT(GPickerBase::picked(), IsEmpty());
}

TEST_F(PickSession, GivenAHoveredElement_WhenItOrItsOwnerIsDeleted_ThenHoveringGoesOn) {
  GMeshPicker picker;
  Session session(TovanColor(0, 0, 255), 0);
  GPickerBase::set_filter({"Face"});
  view_.render();
  ASSERT_TRUE(hover(0.5, 0.5));
  const auto gone = session.quads()[0];
  ASSERT_TRUE(session.mesh.database->delete_elements(1, &gone));
  session.model.update_mesh_modified(session.mesh.owner);
  view_.render();
  EXPECT_FALSE(hover(0.5, 0.5));
  EXPECT_TRUE(hover(1.5, 0.5));
  view_.render();
  ASSERT_TRUE(pick(1.5, 0.5));
  ASSERT_TRUE(session.mesh.database->delete_owner(session.mesh.owner));
  session.model.remove_mesh(session.mesh.owner);
  view_.render();
  EXPECT_FALSE(hover(1.5, 0.5));
  EXPECT_FALSE(pick(1.5, 0.5));
  EXPECT_THAT(GPickerBase::possible_selections(), IsEmpty());
  session.highlight.clear();
}

TEST_F(PickSession, GivenAClippedModel_WhenPickedEverywhere_ThenNothingOfWhatIsCutAwayIsOnAnyList) {
  GMeshPicker picker;
  test_support::NamedMesh block = test_support::hex_block(6, 4, 2);
  GMeshModel model(block.database.get());
  model.add_mesh(block.owner, block.mesh, TovanColor(230, 230, 230), 1.0F, false);
  view_.render();
  vtkNew<vtkPlane> plane;
  plane->SetOrigin(2.75, 0, 0);
  plane->SetNormal(1, 0, 0);
  model.set_clipping_plane(plane); // and no frame since
  const auto& hexes = block.mesh.elements[Tarn::Hex];
  std::set<unsigned long long> cut_away;
  for (std::size_t i = 0; i < hexes.size(); ++i)
    if (i % 6 < 2) cut_away.insert(hexes[i].value);
  // Corners of what is left; a node that only cut-away elements have is none of them.
  std::set<unsigned long long> cut_nodes;
  for (std::size_t i = 0; i < block.nodes.size(); ++i)
    if (i % 7 < 2) cut_nodes.insert(block.nodes[i].value);
  std::size_t looked_at = 0;
  const auto look = [&] {
    for (const EntitySelection& each : GPickerBase::possible_selections()) {
      const bool is_node = std::string(each.entity()->type()) == "Node";
      EXPECT_EQ((is_node ? cut_nodes : cut_away).count(each.entity()->handle()), 0u) << each.entity()->id();
      ++looked_at;
    }
  };
  for (double x = 0; x <= 6; x += 0.25)
    for (double y = 0; y <= 4; y += 0.5) {
      pick(x, y);
      look();
    }
  PickRectangle all = whole_window();
  EXPECT_TRUE(GPickerBase::pick_by_bounds(view_.get(), all));
  look();
  EXPECT_GT(looked_at, 500u);
  model.set_visibility(block.owner, false); // and no frame since
  EXPECT_FALSE(pick(4.5, 1.5));
  EXPECT_FALSE(GPickerBase::pick_by_bounds(view_.get(), all));
  EXPECT_THAT(GPickerBase::possible_selections(), IsEmpty());
}

TEST_F(PickSession, GivenAClippedModel_WhenElementsAreDeletedOrPlanesTakenAway_ThenPicksFollow) {
  GMeshPicker picker;
  Session session(TovanColor(0, 0, 255), 0);
  GPickerBase::set_filter({"Face"});
  vtkNew<vtkPlane> plane;
  plane->SetOrigin(1.5, 0, 0);
  plane->SetNormal(1, 0, 0);
  session.model.set_clipping_plane(plane);
  view_.render();
  EXPECT_FALSE(pick(0.5, 0.5));
  ASSERT_TRUE(pick(1.75, 0.5));
  const auto gone = session.quads()[1];
  ASSERT_TRUE(session.mesh.database->delete_elements(1, &gone));
  session.model.update_mesh_modified(session.mesh.owner);
  view_.render();
  EXPECT_FALSE(pick(1.75, 0.5));
  session.model.set_clipping_plane(nullptr);
  view_.render();
  EXPECT_TRUE(pick(0.5, 0.5));
  EXPECT_FALSE(pick(1.75, 0.5));
  session.highlight.clear();
}

TEST_F(PickSession, GivenADatabaseThatErrs_WhenPickedHoveredAndHighlighted_ThenNothingBreaks) {
  static const int node_counts[] = {0, 1, 3, 6, 8, 10, 20, 15, 13, 5};
  test_support::NamedMesh mesh;
  for (int type = 1; type <= 9; ++type)
    mesh.add_own_element(static_cast<Tarn::ElementType>(type), node_counts[type], type % 5);
  GMeshPicker picker;
  std::size_t found = 0;
  for (unsigned seed = 0; seed < 40; ++seed) {
    ErraticMeshData db(*mesh.database, seed, seed % 2 ? 40 : 2000);
    GMeshModel model(&db);
    GMeshHighlightProperties looks;
    GMeshHighlight highlight(&model, &looks);
    highlight.observe_selections(true);
    model.add_mesh(mesh.owner, mesh.mesh, TovanColor(200, 200, 200), 1.0F, false);
    model.update_parts();
    GPickerBase::set_filter(seed % 3 ? filter_ : std::vector<std::string>{"Element"});
    PickRectangle all = whole_window();
    for (double x = 0; x < 6; x += 0.25) {
      found += pick(x, 0.25);
      found += hover(x, 0);
    }
    found += GPickerBase::pick_by_bounds(view_.get(), all);
    highlight.update_parts();
    highlight.clear();
    // No record may outlive its database.
    EXPECT_FALSE(pick(100, 100));
    EXPECT_FALSE(hover(100, 100));
  }
  EXPECT_GT(found, 100u);
}

} // namespace
