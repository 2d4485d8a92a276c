#include "tests/highlight/HighlightScene.h"

#include "tests/support/RecordingMeshData.h"

#include <vtkCamera.h>

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// ------------------------------------------------------------------------------------------ factories

TEST(HighlightFactories, GivenAProperty_WhenActorsAreMade_ThenTheyCannotBePickedAndHaveItsColor) {
  OffscreenView view;
  vtkNew<vtkMultiBlockDataSet> data;
  for (const int representation : {VTK_POINTS, VTK_WIREFRAME, VTK_SURFACE}) {
    vtkNew<vtkProperty> property;
    property->SetRepresentation(representation);
    for (const bool nodes : {false, true}) {
      const PropList props = nodes ? GMeshHighlight::create_mesh_node_view(data, view.get(), true, property)
                                   : GMeshHighlight::create_mesh_edge_view(data, view.get(), property);
      ASSERT_THAT(props, SizeIs(representation == VTK_SURFACE ? 0 : 1)) << "surfaces are dropped";
      if (props.empty()) continue;
      auto* actor = vtkActor::SafeDownCast(props[0]);
      ASSERT_NE(actor, nullptr);
      EXPECT_EQ(actor->GetPickable(), 0);
      EXPECT_EQ(actor->GetProperty(), property.Get());
      EXPECT_EQ(actor->GetBackfaceProperty(), nullptr);
      EXPECT_EQ(actor->GetMapper()->GetScalarVisibility(), 0);
      EXPECT_EQ(actor->GetVisibility(), 1);
    }
  }
}

TEST(HighlightFactories, GivenNodesToHide_WhenMade_ThenTheActorIsHidden) {
  OffscreenView view;
  vtkNew<vtkMultiBlockDataSet> data;
  vtkNew<vtkProperty> property;
  property->SetRepresentationToWireframe();
  const PropList props = GMeshHighlight::create_mesh_node_view(data, view.get(), false, property);
  ASSERT_THAT(props, SizeIs(1));
  EXPECT_EQ(props[0]->GetVisibility(), 0);
}

class HighlightViews : public HighlightScene {};

TEST_F(HighlightViews, GivenParts_WhenAViewOpensLater_ThenItShowsThemToo) {
  notify_picked({}, {quads()[0]}, true);
  notify_hovered(quads()[1], true);
  OffscreenView later;
  for (std::size_t i = 0; i < 4; ++i) {
    vtkActor* actor = highlight.actor(i, later.get());
    ASSERT_NE(actor, nullptr);
    EXPECT_EQ(actor->GetProperty(), i < 2 ? looks.edge_highlight_property() : looks.pre_select_property());
    EXPECT_EQ(actor->GetPickable(), 0);
  }
}

TEST_F(HighlightViews, GivenSharedProperties_WhenOneHighlightsLookChanges_ThenAllThatShareThemShowIt) {
  RecordingHighlight other(&model, &looks);
  notify_picked({}, {quads()[0]}, true);
  const Records records({}, {quads()[1]}, sheet.database.get());
  other.notify_picked(1, records.data(), nullptr, true);
  highlight.highlight_mesh(of_quads({2}));
  looks.set_highlight_color(TovanColor(0, 255, 0));
  for (RecordingHighlight* each : {&highlight, &other})
    EXPECT_EQ(each->actor(0, view.get())->GetProperty()->GetColor()[1], 1);
  EXPECT_NE(highlight.actor(2, view.get())->GetProperty()->GetColor()[1], 1) << "the highlight set has its own";
  highlight.highlight_mesh(of_quads({3}));
  EXPECT_NE(highlight.edge_highlight_property()->GetColor()[1], 1);
}

TEST_F(HighlightViews, GivenNodeVisibility_WhenItChanges_ThenAllThreeSetsFollow) {
  notify_picked({}, {quads()[0]}, true);
  notify_hovered(quads()[1], true);
  highlight.highlight_mesh(of_quads({2}));
  ASSERT_THAT(highlight.parts, SizeIs(6));
  const auto nodes_shown = [this] {
    int shown = 0;
    for (const std::size_t part : {1, 3, 5})
      shown += highlight.actor(part, view.get())->GetVisibility();
    return shown;
  };
  EXPECT_EQ(nodes_shown(), 0);
  highlight.set_node_vis(true);
  EXPECT_TRUE(highlight.get_node_vis());
  EXPECT_EQ(nodes_shown(), 3);
  highlight.actor(1, view.get())->SetVisibility(0);
  highlight.set_node_vis(true);
  EXPECT_EQ(nodes_shown(), 2) << "an equal flag does nothing";
  notify_hovered(quads()[3], true);
  EXPECT_EQ(highlight.actor(highlight.parts.size() - 1, view.get())->GetVisibility(), 1) << "new parts take the flag";
  highlight.set_node_vis(false);
  EXPECT_FALSE(highlight.get_node_vis());
  EXPECT_EQ(nodes_shown(), 0);
  EXPECT_EQ(highlight.actor(0, view.get())->GetVisibility(), 1) << "edges stay";
}

TEST_F(HighlightViews, GivenThreeSets_WhenUpdated_ThenPickedComesFirstThenHighlightedThenHovered) {
  test_support::RecordingMeshData db(*sheet.database);
  GMeshModel own_model(&db);
  RecordingHighlight own(&own_model, &looks);
  const Records records({}, {quads()[0], quads()[1]}, &db);
  own.notify_pre_select(records.data()[0], nullptr, true);
  own.notify_picked(1, &records.data()[1], nullptr, true);
  own.highlight_mesh(of_quads({2}));
  db.forget_calls();
  own.update_parts();
  std::vector<std::uint64_t> order;
  for (const auto& call : db.calls())
    for (const std::size_t i : {0, 1, 2})
      if (!call.handles.empty() && call.handles[0] == quads()[i].value && (order.empty() || order.back() != i))
        order.push_back(i);
  EXPECT_THAT(order, ElementsAre(1, 2, 0));
  db.forget_calls();
  own.update_parts();
  EXPECT_THAT(db.calls(), IsEmpty()) << "nothing changed";
}

// ------------------------------------------------------------------------------------------ pictures

TEST_F(HighlightViews, GivenPickedHighlightedAndHovered_WhenDrawn_ThenEachHasItsColor) {
  looks.set_highlight_color(TovanColor(0, 160, 0));
  vtkCamera* camera = view.renderer()->GetActiveCamera();
  camera->SetPosition(2, 0.5, 10);
  camera->SetFocalPoint(2, 0.5, 0);
  camera->ParallelProjectionOn();
  camera->SetParallelScale(2);
  camera->SetClippingRange(1, 20);
  const auto count = [this](Frame::Color color) {
    return view.render().count([&](const Frame::Color& c) { return is_near(c, color, 8); });
  };
  const Frame::Color green = {0, 160, 0};
  const Frame::Color orange = {255, 140, 0};
  const Frame::Color red = {255, 0, 0};
  notify_picked({}, {quads()[0]}, true);
  highlight.highlight_mesh(of_quads({1}));
  notify_hovered(quads()[3], true);
  EXPECT_GT(count(green), 100);
  EXPECT_GT(count(orange), 100);
  EXPECT_GT(count(red), 100);
  notify_hovered(quads()[3], false);
  EXPECT_EQ(count(red), 0);
  notify_picked({}, {quads()[0]}, false);
  EXPECT_EQ(count(green), 0);
  EXPECT_EQ(count(orange), 0) << "a pick empties the highlight set too";
}

} // namespace
