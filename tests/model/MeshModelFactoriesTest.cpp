// The props that a model's factories make.

#include "MeshModelViews.h"

#include "group/GMeshGroup.h"
#include "model/GMeshDataGroup.h"
#include "platform/base/GView.h"

#include <vtkInformation.h>
#include <vtkMapper.h>
#include <vtkNew.h>
#include <vtkProperty.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::SizeIs;

constexpr bool drawn_flat = true;

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

  PropList props = model.create_mesh_tri_view(data, &screen.view(), drawn_flat);
  EXPECT_EQ(only(props)->GetProperty(), model.surface_flat_property());
  EXPECT_EQ(only(props)->GetBackfaceProperty(), nullptr);
  EXPECT_EQ(mode_of(only(props)), OBUtil::Translucent);
  EXPECT_TRUE(only(props)->GetMapper()->GetScalarVisibility());
  props = model.create_mesh_tri_view(data, &screen.view(), !drawn_flat);
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
  model.set_line_color(red);
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
  model.set_line_color(red);
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

} // namespace
