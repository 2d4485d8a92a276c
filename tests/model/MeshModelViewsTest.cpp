// What the model draws with: data groups, parts, factories, settings.

#include "ModelScene.h"
#include "Screen.h"
#include "group/GMeshGroup.h"
#include "model/GMeshDataGroup.h"
#include "platform/base/GView.h"

#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkMapper.h>
#include <vtkPlane.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using Parts = std::array<vtkDataObject*, 3>;

constexpr bool kFlat = true;

/// A model with one mesh in each of its four data groups, seen in one view.
class MeshModelViews : public testing::Test {
protected:
  enum Kind { Plain, VertexColored, NodesShown, Scalars };

  void SetUp() override {
    for (int kind = Plain; kind <= Scalars; ++kind) {
      quads.push_back(add_quad_owner(db, 2.0 * kind, 0.0));
      add(static_cast<Kind>(kind));
      parts.push_back(model.parts_of_add(static_cast<std::size_t>(kind)));
    }
    model.forget_calls();
  }

  void TearDown() override { GModel::mNormalDirectedLighting = false; }

  void add(Kind kind) {
    const QuadOwner& q = quads[kind];
    if (kind == VertexColored) {
      model.add_mesh(q.owner, q.mesh, kRed, {}, {}, {{q.block.nodes[0], kBlue}}, 1.0f);
    } else if (kind == NodesShown) {
      model.add_mesh(q.owner, q.mesh, kRed, 1.0f, false); // joins the plain group, adds no part
      model.set_node_vis(q.owner, true);
    } else {
      model.add_mesh(q.owner, q.mesh, kRed, 1.0f, kind == Scalars);
    }
  }

  vtkActor* surface(Kind kind) { return model.actor(screen.view(), parts[kind][0]); }
  vtkActor* edges(Kind kind) { return model.actor(screen.view(), parts[kind][1]); }
  vtkActor* nodes(Kind kind) { return model.actor(screen.view(), parts[kind][2]); }

  static int mode_of(vtkActor* actor) { return actor->GetPropertyKeys()->Get(GModel::RENDER_MODE()); }

  Screen screen;
  Tarn::MeshDatabase db;
  RecordingModel model{&db};
  std::vector<QuadOwner> quads;
  std::vector<Parts> parts;
};

// ------------------------------------------------------------------------------------------ initial looks

TEST(MeshModelLooks, GivenANewModel_WhenLookedAt_ThenItsPropertiesAreAsDocumented) {
  Tarn::MeshDatabase db;
  GMeshModel model(&db);

  vtkProperty* flat = model.surface_flat_property();
  EXPECT_EQ(flat->GetPointSize(), 6.0f);
  EXPECT_EQ(flat->GetInterpolation(), VTK_FLAT);
  EXPECT_EQ(flat->GetRepresentation(), VTK_SURFACE);
  EXPECT_TRUE(flat->GetLighting());
  EXPECT_EQ(flat->GetOpacity(), 1.0);

  vtkProperty* smooth = model.surface_smooth_property();
  EXPECT_EQ(smooth->GetPointSize(), 6.0f);
  EXPECT_EQ(smooth->GetInterpolation(), VTK_GOURAUD);
  EXPECT_EQ(smooth->GetOpacity(), 1.0);

  vtkProperty* edge = model.edge_property();
  EXPECT_FALSE(edge->GetLighting());
  EXPECT_EQ(edge->GetAmbient(), 1.0);
  EXPECT_EQ(edge->GetDiffuse(), 0.0);
  EXPECT_EQ(edge->GetSpecular(), 0.0);
  EXPECT_EQ(edge->GetRepresentation(), VTK_WIREFRAME);
  EXPECT_EQ(edge->GetPointSize(), 6.0f);

  vtkProperty* node = model.node_property();
  EXPECT_FALSE(node->GetLighting());
  EXPECT_EQ(node->GetRepresentation(), VTK_POINTS);
  EXPECT_EQ(node->GetPointSize(), 6.0f);

  for (vtkProperty* black : {edge, node})
    for (int i = 0; i < 3; ++i)
      EXPECT_EQ(black->GetColor()[i], 0.0);
  const std::set<vtkProperty*> all{flat, smooth, edge, node};
  EXPECT_THAT(all, SizeIs(4));
}

TEST(MeshModelLooks, GivenANewModel_WhenAsked_ThenItsSettingsAreAsDocumented) {
  Tarn::MeshDatabase db;
  GMeshModel model(&db);
  EXPECT_EQ(model.get_render_mode(), OBUtil::Shaded);
  EXPECT_EQ(model.get_opacity(), 0.5);
  EXPECT_TRUE(model.get_edge_vis());
  EXPECT_FALSE(model.get_node_vis());
  EXPECT_EQ(model.get_line_width(), 1.0f);
  EXPECT_EQ(model.get_node_point_size(), 1.0f);
  EXPECT_EQ(model.get_line_color(), kNone);
}

// ------------------------------------------------------------------------------------------ data groups and parts

TEST_F(MeshModelViews, GivenOneMeshOfEachKind_WhenAdded_ThenEachHasADataGroupOfItsOwn) {
  model.update_parts();
  std::set<vtkDataObject*> all;
  for (int kind = Plain; kind <= Scalars; ++kind) {
    SCOPED_TRACE(kind);
    GMeshGroup* group = model.get_mesh(quads[kind].owner);
    for (vtkDataObject* part : parts[kind]) {
      all.insert(part);
      ASSERT_EQ(block_count(part), 1u);
    }
    EXPECT_EQ(block_of(parts[kind][0], 0), group->get_tri_data());
    EXPECT_EQ(block_of(parts[kind][1], 0), group->get_edge_data());
    EXPECT_EQ(block_of(parts[kind][2], 0), group->get_node_data());
  }
  EXPECT_THAT(all, SizeIs(12));
}

TEST_F(MeshModelViews, GivenAMeshThatFitsSeveralDataGroups_WhenAdded_ThenNodesWinThenScalarsThenVertexColors) {
  struct Row {
    const char* name;
    bool nodes, scalars, vertex_colors;
    Kind expected;
  };
  const Row rows[] = {{"all", true, true, true, NodesShown},
                      {"nodes and colours", true, false, true, NodesShown},
                      {"scalars and colours", false, true, true, Scalars},
                      {"nodes and scalars", true, true, false, NodesShown}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const QuadOwner q = add_quad_owner(db, 20.0, 0.0);
    std::map<Node, TovanColor> colors;
    if (row.vertex_colors) colors[q.block.nodes[0]] = kBlue;
    model.add_mesh(q.owner, q.mesh, kRed, {}, {}, colors, 1.0f);
    model.set_visibility(q.owner, false);
    model.get_mesh(q.owner)->set_force_scalars(row.scalars);
    model.get_mesh(q.owner)->set_node_visibility(row.nodes);
    model.set_visibility(q.owner, true);
    model.update_parts();
    for (int kind = Plain; kind <= Scalars; ++kind)
      EXPECT_EQ(block_count(parts[kind][0]), kind == row.expected ? 2u : 1u) << "data group " << kind;
    model.set_visibility(q.owner, false); // leaves the data group that it entered
    model.update_parts();
    EXPECT_EQ(block_count(parts[row.expected][0]), 1u);
    model.remove_mesh(q.owner);
  }
}

TEST_F(MeshModelViews, GivenADataGroupWithAMember_WhenAnotherJoins_ThenNoPartIsAddedAndItShowsAtTheNextUpdate) {
  const QuadOwner q = add_quad_owner(db, 20.0, 0.0);
  model.add_mesh(q.owner, q.mesh, kRed, 1.0f, false);
  EXPECT_THAT(model.added, IsEmpty());
  model.update_parts();
  ASSERT_EQ(block_count(parts[Plain][0]), 2u);
  EXPECT_EQ(block_of(parts[Plain][0], 1), model.get_mesh(q.owner)->get_tri_data());
}

TEST_F(MeshModelViews, GivenChangesInAllDataGroups_WhenUpdated_ThenPlainComesFirstThenVertexColorsNodesAndScalars) {
  model.update_parts();
  ModificationLog log;
  const char* const names[] = {"plain", "vertex-coloured", "nodes", "scalars"};
  for (int kind = Plain; kind <= Scalars; ++kind)
    log.watch(parts[kind][0], names[kind]);
  for (const QuadOwner& q : quads)
    model.set_color(q.owner, kGreen);
  EXPECT_THAT(log.names, IsEmpty());
  model.update_parts();
  log.names.erase(std::unique(log.names.begin(), log.names.end()), log.names.end());
  EXPECT_THAT(log.names, ElementsAre("plain", "vertex-coloured", "nodes", "scalars"));
  log.names.clear();
  model.update_parts();
  EXPECT_THAT(log.names, IsEmpty()) << "nothing changed";
}

// ------------------------------------------------------------------------------------------ static factories

TEST_F(MeshModelViews, GivenASurface_WhenMade_ThenItsActorIsAsAskedFor) {
  vtkNew<vtkMultiBlockDataSet> data;
  vtkNew<vtkProperty> front;
  vtkNew<vtkProperty> back;
  for (bool scalars : {false, true}) {
    const PropList props = GMeshModel::create_mesh_tri_view(data.Get(), &screen.view(), front.Get(), back.Get(),
                                                            OBUtil::HiddenLine, scalars);
    ASSERT_THAT(props, SizeIs(1));
    auto* actor = vtkActor::SafeDownCast(props[0]);
    ASSERT_NE(actor, nullptr);
    EXPECT_EQ(actor->GetProperty(), front);
    EXPECT_EQ(actor->GetBackfaceProperty(), back);
    EXPECT_EQ(mode_of(actor), OBUtil::HiddenLine);
    EXPECT_TRUE(actor->GetVisibility());
    EXPECT_TRUE(actor->GetPickable());
    ASSERT_NE(actor->GetMapper(), nullptr);
    EXPECT_EQ(actor->GetMapper()->GetScalarVisibility(), scalars);
    EXPECT_EQ(actor->GetMapper()->GetInputDataObject(0, 0), data);
    double factor = 0, units = 0;
    actor->GetMapper()->GetCoincidentTopologyPolygonOffsetParameters(factor, units);
    double plain_factor = 0, plain_units = 0;
    const auto plain = GModel::create_mapper(data, &screen.view());
    plain->GetCoincidentTopologyPolygonOffsetParameters(plain_factor, plain_units);
    EXPECT_NE(std::make_pair(factor, units), std::make_pair(plain_factor, plain_units));
    EXPECT_EQ(actor->GetReferenceCount(), 1) << "the list holds the only reference";
    EXPECT_EQ(actor->GetPropertyKeys()->GetReferenceCount(), 1);
  }
  const PropList one_sided =
      GMeshModel::create_mesh_tri_view(data, &screen.view(), front, nullptr, OBUtil::Shaded, true);
  EXPECT_EQ(vtkActor::SafeDownCast(one_sided[0])->GetBackfaceProperty(), nullptr);
}

TEST_F(MeshModelViews, GivenEdgesAndNodes_WhenMade_ThenTheirActorsAreAsAskedFor) {
  vtkNew<vtkMultiBlockDataSet> data;
  vtkNew<vtkProperty> property;
  vtkNew<vtkProperty> back;
  const auto plain = GModel::create_mapper(data, &screen.view());
  double plain_factor = 0, plain_units = 0;
  plain->GetCoincidentTopologyPolygonOffsetParameters(plain_factor, plain_units);
  for (bool visible : {false, true})
    for (bool scalars : {false, true})
      for (bool nodes_wanted : {false, true}) {
        const auto factory =
            nodes_wanted ? static_cast<PropList (*)(vtkDataObject*, GView*, vtkProperty*, vtkProperty*, bool, bool)>(
                               &GMeshModel::create_mesh_node_view)
                         : static_cast<PropList (*)(vtkDataObject*, GView*, vtkProperty*, vtkProperty*, bool, bool)>(
                               &GMeshModel::create_mesh_edge_view);
        const PropList props = factory(data, &screen.view(), property, back, visible, scalars);
        ASSERT_THAT(props, SizeIs(1));
        auto* actor = vtkActor::SafeDownCast(props[0]);
        ASSERT_NE(actor, nullptr);
        EXPECT_EQ(actor->GetVisibility(), visible);
        EXPECT_FALSE(actor->GetPickable());
        EXPECT_EQ(actor->GetProperty(), property);
        EXPECT_EQ(actor->GetBackfaceProperty(), back);
        EXPECT_EQ(actor->GetMapper()->GetScalarVisibility(), scalars);
        EXPECT_EQ(actor->GetMapper()->GetInputDataObject(0, 0), data);
        double factor = 0, units = 0;
        actor->GetMapper()->GetCoincidentTopologyPolygonOffsetParameters(factor, units);
        EXPECT_EQ(std::make_pair(factor, units), std::make_pair(plain_factor, plain_units)) << "no polygon offset";
        if (nodes_wanted) {
          EXPECT_EQ(actor->GetPropertyKeys(), nullptr);
        } else {
          ASSERT_NE(actor->GetPropertyKeys(), nullptr);
          EXPECT_EQ(mode_of(actor), 6);
        }
      }
}

// ------------------------------------------------------------------------------------------ member factories

TEST_F(MeshModelViews, GivenTheModelsFactories_WhenTheyMakeProps_ThenTheseHaveTheModelsProperties) {
  vtkNew<vtkMultiBlockDataSet> data;
  const auto only = [](const PropList& props) { return vtkActor::SafeDownCast(props.at(0)); };
  model.set_render_mode(OBUtil::Translucent);

  PropList props = model.create_mesh_tri_view(data, &screen.view(), kFlat);
  EXPECT_EQ(only(props)->GetProperty(), model.surface_flat_property());
  EXPECT_EQ(only(props)->GetBackfaceProperty(), nullptr);
  EXPECT_EQ(mode_of(only(props)), OBUtil::Translucent);
  EXPECT_TRUE(only(props)->GetMapper()->GetScalarVisibility());
  props = model.create_mesh_tri_view(data, &screen.view(), !kFlat);
  EXPECT_EQ(only(props)->GetProperty(), model.surface_smooth_property());
  EXPECT_TRUE(only(props)->GetMapper()->GetScalarVisibility());

  for (bool visible : {false, true})
    for (bool scalars : {false, true}) {
      props = model.create_mesh_edge_view(data, &screen.view(), visible, scalars);
      EXPECT_EQ(only(props)->GetProperty(), model.edge_property());
      EXPECT_EQ(only(props)->GetBackfaceProperty(), nullptr);
      EXPECT_EQ(only(props)->GetVisibility(), visible);
      EXPECT_EQ(only(props)->GetMapper()->GetScalarVisibility(), scalars);
      props = model.create_mesh_node_view(data, &screen.view(), visible, scalars);
      EXPECT_EQ(only(props)->GetProperty(), model.node_property());
      EXPECT_EQ(only(props)->GetBackfaceProperty(), nullptr);
      EXPECT_EQ(only(props)->GetVisibility(), visible);
      EXPECT_EQ(only(props)->GetMapper()->GetScalarVisibility(), scalars);
    }
}

TEST_F(MeshModelViews, GivenNormalDirectedLighting_WhenPropsAreMade_ThenTheyHaveItsPropertiesAndNoScalars) {
  vtkNew<vtkMultiBlockDataSet> data;
  const auto only = [](const PropList& props) { return vtkActor::SafeDownCast(props.at(0)); };
  GModel::mNormalDirectedLighting = true;
  for (bool flat : {false, true}) {
    const PropList props = model.create_mesh_tri_view(data, &screen.view(), flat);
    EXPECT_EQ(only(props)->GetProperty(), GModel::surface_normal_front_property());
    EXPECT_EQ(only(props)->GetBackfaceProperty(), GModel::surface_normal_back_property());
    EXPECT_EQ(mode_of(only(props)), OBUtil::Shaded);
    EXPECT_FALSE(only(props)->GetMapper()->GetScalarVisibility());
  }
  for (bool visible : {false, true}) {
    PropList props = model.create_mesh_edge_view(data, &screen.view(), visible, true);
    EXPECT_EQ(only(props)->GetProperty(), GModel::curve_normal_property());
    EXPECT_EQ(only(props)->GetVisibility(), visible);
    EXPECT_FALSE(only(props)->GetMapper()->GetScalarVisibility());
    props = model.create_mesh_node_view(data, &screen.view(), visible, true);
    EXPECT_EQ(only(props)->GetProperty(), GModel::curve_normal_property()) << "the same as edges";
    EXPECT_EQ(only(props)->GetVisibility(), visible);
    EXPECT_FALSE(only(props)->GetMapper()->GetScalarVisibility());
  }
}

TEST_F(MeshModelViews, GivenEachDataGroup_WhenItsPropsAreMade_ThenOnlyVertexColoredSurfacesAreSmooth) {
  EXPECT_EQ(surface(Plain)->GetProperty(), model.surface_flat_property());
  EXPECT_EQ(surface(VertexColored)->GetProperty(), model.surface_smooth_property());
  EXPECT_EQ(surface(NodesShown)->GetProperty(), model.surface_flat_property());
  EXPECT_EQ(surface(Scalars)->GetProperty(), model.surface_flat_property());
  for (Kind kind : {Plain, VertexColored, NodesShown, Scalars}) {
    SCOPED_TRACE(kind);
    EXPECT_EQ(edges(kind)->GetProperty(), model.edge_property());
    EXPECT_EQ(nodes(kind)->GetProperty(), model.node_property());
    EXPECT_TRUE(edges(kind)->GetVisibility());
    EXPECT_EQ(nodes(kind)->GetVisibility(), kind == NodesShown);
    EXPECT_EQ(mode_of(surface(kind)), OBUtil::Shaded);
    EXPECT_TRUE(edges(kind)->GetMapper()->GetScalarVisibility()) << "no line colour is set";
    EXPECT_TRUE(nodes(kind)->GetMapper()->GetScalarVisibility());
  }
}

TEST_F(MeshModelViews, GivenSettingsThatChangedSince_WhenAFactoryMakesPropsForALaterView_ThenItUsesWhatItCaptured) {
  // Kept at the time when the parts were added: edge visibility, line colour set or not, own node visibility.
  model.set_edge_vis(false);
  model.set_line_color(kRed);
  model.set_render_mode(OBUtil::HiddenLine);
  Screen later;
  vtkActor* later_edges = model.actor(later.view(), parts[Plain][1]);
  vtkActor* later_nodes = model.actor(later.view(), parts[Plain][2]);
  EXPECT_TRUE(later_edges->GetVisibility());
  EXPECT_TRUE(later_edges->GetMapper()->GetScalarVisibility());
  EXPECT_TRUE(later_nodes->GetMapper()->GetScalarVisibility());
  EXPECT_FALSE(later_nodes->GetVisibility());
  EXPECT_EQ(mode_of(model.actor(later.view(), parts[Plain][0])), OBUtil::HiddenLine) << "read when props are made";
  EXPECT_FALSE(edges(Plain)->GetVisibility()) << "props made before were told";

  // Read when props are made: the model's node visibility.
  model.set_node_vis(true);
  Screen last;
  EXPECT_TRUE(model.actor(last.view(), parts[Plain][2])->GetVisibility());
  EXPECT_TRUE(model.actor(last.view(), parts[NodesShown][2])->GetVisibility());
}

TEST_F(MeshModelViews, GivenSettings_WhenPartsAreAddedAfterwards_ThenTheyCaptureThem) {
  for (const QuadOwner& q : quads)
    model.remove_mesh(q.owner);
  model.set_edge_vis(false);
  model.set_line_color(kRed);
  model.set_node_vis(true);
  for (Kind kind : {Plain, VertexColored, Scalars}) {
    SCOPED_TRACE(kind);
    model.forget_calls();
    add(kind);
    ASSERT_THAT(model.added, SizeIs(3));
    EXPECT_FALSE(edges(kind)->GetVisibility());
    EXPECT_TRUE(nodes(kind)->GetVisibility());
    // Also forced scalars: the line colour that was set before is captured for every data group alike.
    EXPECT_FALSE(edges(kind)->GetMapper()->GetScalarVisibility());
    EXPECT_FALSE(nodes(kind)->GetMapper()->GetScalarVisibility());
  }
}

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
  model.set_line_color(kGreen);
  EXPECT_EQ(model.get_line_color(), kGreen);
  EXPECT_THAT(log.names, ElementsAre("nodes edges", "nodes nodes", "vertex-coloured edges", "vertex-coloured nodes",
                                     "plain edges", "plain nodes"));
  double rgb[3];
  kGreen.to_rgb(rgb);
  for (vtkProperty* property : {model.edge_property(), model.node_property()})
    for (int i = 0; i < 3; ++i)
      EXPECT_EQ(property->GetColor()[i], rgb[i]);
  for (Kind kind : {Plain, VertexColored, NodesShown, Scalars})
    for (vtkActor* actor : {edges(kind), nodes(kind)})
      EXPECT_EQ(actor->GetMapper()->GetScalarVisibility(), kind == Scalars) << kind;

  log.names.clear();
  model.edge_property()->SetColor(0.1, 0.2, 0.3);
  model.set_line_color(kGreen); // the same again: not passed on
  EXPECT_THAT(log.names, IsEmpty());
  EXPECT_EQ(model.edge_property()->GetColor()[0], 0.1);
}

TEST_F(MeshModelViews, GivenALineColor_WhenTakenBack_ThenScalarsComeBackAndThePropertiesKeepTheColor) {
  model.set_line_color(kGreen);
  model.set_line_color(kNone);
  EXPECT_EQ(model.get_line_color(), kNone);
  double rgb[3];
  kGreen.to_rgb(rgb);
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

// ------------------------------------------------------------------------------------------ clipping plane

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
  model.add_mesh(owner, mesh, kRed, 1.0f, false);
  GMeshGroup* first = model.get_mesh(owner);
  const Owner other = db.add_owner("other", 2);
  model.add_mesh(other, mesh, kRed, 1.0f, true);
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
  model.add_mesh(owner, mesh, kRed, 1.0f, false);
  model.add_mesh(second, mesh, kRed, {}, {}, {}, 1.0f);
  model.add_mesh_unique(mesh, unique);
  for (Owner each : {owner, second, unique})
    EXPECT_EQ(drawn(model.get_mesh(each)), 2u);
  model.get_mesh(unique)->set_clipping_plane(nullptr);
  model.add_mesh_unique(mesh, unique);
  EXPECT_EQ(drawn(model.get_mesh(unique)), 2u) << "an existing group is given the plane again";
}

} // namespace
