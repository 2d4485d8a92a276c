// What the settings of a model do to the props of its data groups.

#include "MeshModelViews.h"

#include "group/GMeshGroup.h"
#include "model/GMeshDataGroup.h"

#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkMapper.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// ------------------------------------------------------------------------------------------ static setters

TEST_F(MeshModelViews, GivenADataGroup_WhenAStaticSetterRuns_ThenOnlyItsFirstPropOfThatPartChanges) {
  GMeshDataGroup data_group(false);
  const BlockList blocks = data_group.all_blocks();
  GModel::ViewProps views;
  vtkNew<vtkActor> actors[3][2];
  for (int part = 0; part < 3; ++part)
    for (const auto& actor : actors[part]) {
      vtkNew<vtkInformation> keys;
      keys->Set(GModel::RENDER_MODE(), OBUtil::Shaded);
      actor->SetPropertyKeys(keys);
      actor->SetMapper(GModel::create_mapper(blocks[part], &screen.view()));
      actor->GetMapper()->ScalarVisibilityOn();
      views[&screen.view()][blocks[part]].push_back(actor.Get());
    }
  const auto expect = [&](int changed_part, auto changed, const char* what) {
    for (int part = 0; part < 3; ++part)
      for (int prop = 0; prop < 2; ++prop)
        EXPECT_EQ(changed(actors[part][prop].Get()), part == changed_part && prop == 0)
            << what << ", part " << part << ", prop " << prop;
  };
  GMeshModel::set_edge_vis(false, &data_group, views);
  expect(
      1, [](vtkActor* actor) { return !actor->GetVisibility(); }, "edge visibility");
  GMeshModel::set_edge_vis(true, &data_group, views);
  EXPECT_TRUE(actors[1][0]->GetVisibility());

  GMeshModel::set_node_vis(false, &data_group, views);
  expect(
      2, [](vtkActor* actor) { return !actor->GetVisibility(); }, "node visibility");

  GMeshModel::set_render_mode(OBUtil::Translucent, &data_group, views);
  expect(
      0, [](vtkActor* actor) { return mode_of(actor) != OBUtil::Shaded; }, "render mode");
  EXPECT_EQ(mode_of(actors[0][0]), OBUtil::Translucent);

  GMeshModel::set_edge_node_scalar_vis(false, &data_group, views);
  for (int part = 0; part < 3; ++part)
    for (int prop = 0; prop < 2; ++prop)
      EXPECT_EQ(actors[part][prop]->GetMapper()->GetScalarVisibility(), part == 0 || prop == 1);
  GMeshModel::set_edge_node_scalar_vis(true, &data_group, views);
  EXPECT_TRUE(actors[1][0]->GetMapper()->GetScalarVisibility());
  EXPECT_TRUE(actors[2][0]->GetMapper()->GetScalarVisibility());
}

TEST_F(MeshModelViews, GivenPropsThatCannotTakeASetting_WhenItIsSet_ThenTheyAreLeftAlone) {
  GMeshDataGroup data_group(false);
  const BlockList blocks = data_group.all_blocks();
  GModel::ViewProps views;
  vtkNew<vtkActor> without_keys;
  vtkNew<vtkActor> without_mode;
  vtkNew<vtkActor> without_mapper;
  vtkNew<vtkInformation> no_mode;
  without_mode->SetPropertyKeys(no_mode);
  Screen other;
  views[&screen.view()] = {{blocks[0], {without_keys.Get()}}, {blocks[1], {}}, {blocks[2], {without_mapper.Get()}}};
  views[&other.view()] = {{blocks[0], {without_mode.Get()}}};
  GMeshModel::set_render_mode(OBUtil::HiddenLine, &data_group, views);
  GMeshModel::set_edge_vis(false, &data_group, views);
  GMeshModel::set_edge_node_scalar_vis(false, &data_group, views);
  GMeshModel::set_node_vis(false, &data_group, views);
  EXPECT_EQ(without_keys->GetPropertyKeys(), nullptr);
  EXPECT_FALSE(no_mode->Has(GModel::RENDER_MODE()));
  EXPECT_FALSE(without_mapper->GetVisibility()) << "what it can take it takes";
}

TEST_F(MeshModelViews, GivenDataGroupsBelowAnother_WhenItsRenderModeIsSet_ThenTheyDeliverWireToo) {
  GMeshDataGroup top(false);
  auto* below = dynamic_cast<GMeshDataGroup*>(top.add_group());
  ASSERT_NE(below, nullptr);
  auto* lowest = dynamic_cast<GMeshDataGroup*>(below->add_group());
  ASSERT_NE(lowest, nullptr);
  GMeshGroup* group = model.get_mesh(quads[Plain].owner);
  GModel::ViewProps no_views;
  for (GMeshDataGroup* each : {&top, below, lowest})
    each->add_entity(group);
  for (bool wire : {true, false}) {
    GMeshModel::set_render_mode(wire ? OBUtil::DimmedHiddenLine : OBUtil::Shaded, &top, no_views);
    top.update_all(nullptr);
    for (GMeshDataGroup* each : {&top, below, lowest})
      EXPECT_EQ(block_of(each->all_blocks()[1], 0), wire ? group->get_wire_data() : group->get_edge_data());
  }
}

TEST_F(MeshModelViews, GivenEachRenderMode_WhenSet_ThenTheFirstThreeDeliverWire) {
  for (int mode : {0, 1, 2, 3, 4, 5, 6}) {
    SCOPED_TRACE(mode);
    model.set_render_mode(static_cast<OBUtil::RenderMode>(mode));
    EXPECT_EQ(model.get_render_mode(), mode);
    model.update_parts();
    for (Kind kind : {Plain, VertexColored, NodesShown, Scalars}) {
      GMeshGroup* group = model.get_mesh(quads[kind].owner);
      const bool wire = mode < 3;
      EXPECT_EQ(block_of(parts[kind][1], 0), wire ? group->get_wire_data() : group->get_edge_data());
      EXPECT_EQ(block_of(parts[kind][2], 0), wire ? group->get_wire_node_data() : group->get_node_data());
      EXPECT_EQ(mode_of(surface(kind)), mode);
      EXPECT_EQ(mode_of(edges(kind)), 6);
    }
  }
}

// ------------------------------------------------------------------------------------------ model settings

TEST_F(MeshModelViews, GivenARenderMode_WhenSet_ThenDataGroupsHearInOrder) {
  ModificationLog log;
  const char* const names[] = {"plain", "vertex-coloured", "nodes", "scalars"};
  for (Kind kind : {Plain, VertexColored, NodesShown, Scalars})
    log.watch(surface(kind)->GetPropertyKeys(), names[kind]);
  model.set_render_mode(OBUtil::Wireframe);
  EXPECT_THAT(log.names, ElementsAre("vertex-coloured", "plain", "scalars", "nodes"));
}

TEST_F(MeshModelViews, GivenOpacity_WhenSet_ThenItIsClampedAndActsInTranslucentModeOnly) {
  vtkProperty* flat = model.surface_flat_property();
  vtkProperty* smooth = model.surface_smooth_property();
  const auto expect_opacity = [&](double expected) {
    EXPECT_EQ(flat->GetOpacity(), expected);
    EXPECT_EQ(smooth->GetOpacity(), expected);
  };
  struct Row {
    double given, kept;
  };
  const Row rows[] = {{0.25, 0.25}, {-1.0, 0.0}, {0.0, 0.0}, {1.5, 1.0}, {1.0, 1.0}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.given);
    model.set_render_mode(OBUtil::Shaded);
    model.set_opacity(row.given);
    EXPECT_EQ(model.get_opacity(), row.kept);
    expect_opacity(1.0);
    model.set_render_mode(OBUtil::Translucent);
    expect_opacity(row.kept);
    model.set_opacity(0.75);
    expect_opacity(0.75);
    model.set_opacity(row.given);
    expect_opacity(row.kept);
    for (int mode : {0, 1, 2, 3, 5, 6}) {
      model.set_render_mode(static_cast<OBUtil::RenderMode>(mode));
      expect_opacity(1.0);
    }
  }
}

TEST_F(MeshModelViews, GivenTheModeThatTheModelHas_WhenSet_ThenNothingHappens) {
  model.surface_flat_property()->SetOpacity(0.3);
  ModificationLog log;
  log.watch(surface(Plain)->GetPropertyKeys(), "keys");
  model.set_render_mode(OBUtil::Shaded);
  EXPECT_EQ(model.surface_flat_property()->GetOpacity(), 0.3);
  EXPECT_THAT(log.names, IsEmpty());
  model.set_render_mode(OBUtil::SmoothShaded);
  EXPECT_EQ(model.surface_flat_property()->GetOpacity(), 1.0);
}

TEST_F(MeshModelViews, GivenEdges_WhenHiddenAndShown_ThenDataGroupsHearInOrder) {
  ModificationLog log;
  const char* const names[] = {"plain", "vertex-coloured", "nodes", "scalars"};
  for (Kind kind : {Plain, VertexColored, NodesShown, Scalars})
    log.watch(edges(kind), names[kind]);
  model.set_edge_vis(false);
  EXPECT_FALSE(model.get_edge_vis());
  EXPECT_THAT(log.names, ElementsAre("nodes", "vertex-coloured", "plain", "scalars"));
  for (Kind kind : {Plain, VertexColored, NodesShown, Scalars})
    EXPECT_FALSE(edges(kind)->GetVisibility());
  edges(Plain)->VisibilityOn();
  model.set_edge_vis(false); // the same again: not passed on
  EXPECT_TRUE(edges(Plain)->GetVisibility());
  model.set_edge_vis(true);
  EXPECT_TRUE(model.get_edge_vis());
  EXPECT_TRUE(edges(Scalars)->GetVisibility());
}

TEST_F(MeshModelViews, GivenNodes_WhenShownAndHidden_ThenDataGroupsHearInOrderAndNodesOfTheirOwnStay) {
  ModificationLog log;
  const char* const names[] = {"plain", "vertex-coloured", "nodes", "scalars"};
  for (Kind kind : {Plain, VertexColored, NodesShown, Scalars})
    log.watch(nodes(kind), names[kind]);
  model.set_node_vis(true);
  EXPECT_TRUE(model.get_node_vis());
  EXPECT_THAT(log.names, ElementsAre("vertex-coloured", "plain", "scalars"));
  for (Kind kind : {Plain, VertexColored, NodesShown, Scalars})
    EXPECT_TRUE(nodes(kind)->GetVisibility());
  model.set_node_vis(false);
  EXPECT_FALSE(model.get_node_vis());
  for (Kind kind : {Plain, VertexColored, NodesShown, Scalars})
    EXPECT_EQ(nodes(kind)->GetVisibility(), kind == NodesShown);
  nodes(Plain)->VisibilityOn();
  model.set_node_vis(false); // the same again: not passed on
  EXPECT_TRUE(nodes(Plain)->GetVisibility());
}

TEST_F(MeshModelViews, GivenALineWidth_WhenSet_ThenItIsThatOfEdges) {
  model.set_line_width(3.5f);
  EXPECT_EQ(model.get_line_width(), 3.5f);
  EXPECT_EQ(model.edge_property()->GetLineWidth(), 3.5f);
  model.edge_property()->SetLineWidth(2.0f);
  EXPECT_EQ(model.get_line_width(), 2.0f);
}

TEST_F(MeshModelViews, GivenANodePointSize_WhenSet_ThenNodesGetSixPixelsEachAndOthersGoBackToSix) {
  vtkProperty* const others[] = {model.surface_flat_property(), model.surface_smooth_property(), model.edge_property()};
  for (vtkProperty* property : others)
    property->SetPointSize(11.0f);
  model.set_node_point_size(2.0f);
  EXPECT_EQ(model.node_property()->GetPointSize(), 12.0f);
  EXPECT_EQ(model.get_node_point_size(), 2.0f);
  for (vtkProperty* property : others)
    EXPECT_EQ(property->GetPointSize(), 6.0f);
  model.node_property()->SetPointSize(3.0f);
  EXPECT_EQ(model.get_node_point_size(), 0.5f);
}

TEST_F(MeshModelViews, GivenALineColor_WhenSet_ThenAllButForcedScalarsTakeItInOrder) {
  ModificationLog log;
  const char* const names[] = {"plain", "vertex-coloured", "nodes", "scalars"};
  for (Kind kind : {Plain, VertexColored, NodesShown, Scalars}) {
    log.watch(edges(kind)->GetMapper(), std::string(names[kind]) + " edges");
    log.watch(nodes(kind)->GetMapper(), std::string(names[kind]) + " nodes");
  }
  model.set_line_color(green);
  EXPECT_EQ(model.get_line_color(), green);
  EXPECT_THAT(log.names, ElementsAre("nodes edges", "nodes nodes", "vertex-coloured edges", "vertex-coloured nodes",
                                     "plain edges", "plain nodes"));
  double rgb[3];
  green.to_rgb(rgb);
  for (vtkProperty* property : {model.edge_property(), model.node_property()})
    for (int i = 0; i < 3; ++i)
      EXPECT_EQ(property->GetColor()[i], rgb[i]);
  for (Kind kind : {Plain, VertexColored, NodesShown, Scalars})
    for (vtkActor* actor : {edges(kind), nodes(kind)})
      EXPECT_EQ(actor->GetMapper()->GetScalarVisibility(), kind == Scalars) << kind;

  log.names.clear();
  model.edge_property()->SetColor(0.1, 0.2, 0.3);
  model.set_line_color(green); // the same again: not passed on
  EXPECT_THAT(log.names, IsEmpty());
  EXPECT_EQ(model.edge_property()->GetColor()[0], 0.1);
}

TEST_F(MeshModelViews, GivenALineColor_WhenTakenBack_ThenScalarsComeBackAndThePropertiesKeepTheColor) {
  model.set_line_color(green);
  model.set_line_color(none);
  EXPECT_EQ(model.get_line_color(), none);
  double rgb[3];
  green.to_rgb(rgb);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(model.edge_property()->GetColor()[i], rgb[i]);
    EXPECT_EQ(model.node_property()->GetColor()[i], rgb[i]);
  }
  for (Kind kind : {Plain, VertexColored, NodesShown, Scalars})
    for (vtkActor* actor : {edges(kind), nodes(kind)})
      EXPECT_TRUE(actor->GetMapper()->GetScalarVisibility()) << kind;
}

TEST_F(MeshModelViews, GivenABlackLineColorThatIsOpaque_WhenSet_ThenItCountsAsAColor) {
  model.set_line_color(TovanColor(0, 0, 0, 255));
  EXPECT_FALSE(edges(Plain)->GetMapper()->GetScalarVisibility());
}

} // namespace
