#include "tests/highlight/HighlightScene.h"

#include "platform/util/TovanColorTable.h"

#include <gmock/gmock.h>

#include <memory>

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class HighlightSets : public HighlightScene {};

// ------------------------------------------------------------------------------------------ sets and groups by hand

TEST_F(HighlightSets, GivenASetOfTheCallers_WhenAddedTo_ThenItIsSortedAndANewGroupDrawsIt) {
  MeshVector set = of_quads({3, 0});
  set.nodes = {sheet.nodes[2]};
  MeshVector more = of_quads({0, 2});
  more.nodes = {sheet.nodes[2], sheet.nodes[1]};
  GMeshGroup before;
  GMeshGroup* group = &before;
  EXPECT_TRUE(highlight.highlight_mesh(more, set, group));
  const std::unique_ptr<GMeshGroup> made(group);
  EXPECT_NE(group, &before) << "what was there is left alone";
  EXPECT_THAT(set.elements[Tarn::Quad], ElementsAre(quads()[0], quads()[2], quads()[3]));
  EXPECT_THAT(set.nodes, ElementsAre(sheet.nodes[1], sheet.nodes[2]));
  EXPECT_EQ(group->get_mesh().elements, set.elements);
  EXPECT_EQ(group->get_mesh().nodes, set.nodes);
  EXPECT_EQ(group->get_model(), &model);
  EXPECT_EQ(group->mesh_owner(), nullptr);
  EXPECT_THAT(highlight.changes, IsEmpty()) << "nothing is drawn";
}

TEST_F(HighlightSets, GivenEmptySets_WhenAddedToOrTakenFrom_ThenThereIsNoGroup) {
  MeshVector set;
  GMeshGroup before;
  GMeshGroup* group = &before;
  EXPECT_TRUE(highlight.highlight_mesh(MeshVector(), set, group));
  EXPECT_EQ(group, nullptr);
  group = &before;
  EXPECT_TRUE(highlight.unhighlight_mesh(of_quads({1}), set, group));
  EXPECT_EQ(group, nullptr);
  set = of_quads({1});
  group = &before;
  EXPECT_TRUE(highlight.unhighlight_mesh(of_quads({1}), set, group));
  EXPECT_EQ(group, nullptr);
  EXPECT_TRUE(set.empty());
}

TEST_F(HighlightSets, GivenUnsortedSets_WhenTakenFrom_ThenBothAreSortedFirstAndTheArgumentStays) {
  MeshVector set = of_quads({3, 0, 2, 3});
  const MeshVector gone = of_quads({2, 0, 1, 0});
  GMeshGroup* group = nullptr;
  EXPECT_TRUE(highlight.unhighlight_mesh(gone, set, group));
  const std::unique_ptr<GMeshGroup> made(group);
  EXPECT_THAT(set.elements[Tarn::Quad], ElementsAre(quads()[3]));
  EXPECT_THAT(group->get_mesh().elements[Tarn::Quad], ElementsAre(quads()[3]));
  EXPECT_THAT(gone.elements[Tarn::Quad], ElementsAre(quads()[2], quads()[0], quads()[1], quads()[0]));
}

TEST_F(HighlightSets, GivenASetAddedToItself_WhenSorted_ThenItStays) {
  MeshVector set = of_quads({1, 0});
  GMeshGroup* group = nullptr;
  highlight.highlight_mesh(set, set, group);
  const std::unique_ptr<GMeshGroup> first(group);
  EXPECT_THAT(set.elements[Tarn::Quad], ElementsAre(quads()[0], quads()[1]));
  highlight.unhighlight_mesh(set, set, group);
  EXPECT_EQ(group, nullptr);
}

// ------------------------------------------------------------------------------------------ the highlight set

TEST_F(HighlightSets, GivenEntities_WhenHighlighted_ThenEdgesAndNodesAreDrawnAndNoSurface) {
  MeshVector mesh = of_quads({2, 0, 2});
  mesh.nodes = {sheet.nodes[4]};
  EXPECT_TRUE(highlight.highlight_mesh(mesh));
  EXPECT_EQ(highlight.take_changes(), "++");
  EXPECT_THAT(highlight.set(0).elements[Tarn::Quad], ElementsAre(quads()[0], quads()[2]));
  EXPECT_THAT(highlight.set(0).nodes, ElementsAre(sheet.nodes[4]));
  EXPECT_EQ(highlight.groups(0), highlight.groups(1));
  // The part that comes first is made by the edge factory: an actor in wireframe; the second draws points.
  EXPECT_EQ(highlight.actor(0, view.get())->GetProperty(), highlight.edge_highlight_property());
  EXPECT_EQ(highlight.actor(1, view.get())->GetProperty(), highlight.edge_highlight_property());
  EXPECT_TRUE(highlight.actor(0, view.get())->GetVisibility());
  EXPECT_FALSE(highlight.actor(1, view.get())->GetVisibility()) << "nodes are hidden at first";
}

TEST_F(HighlightSets, GivenAHighlight_WhenMoreIsAddedOrTaken_ThenTheGroupIsReplaced) {
  highlight.highlight_mesh(of_quads({0}));
  GMeshGroup* first = highlight.groups(0).at(0);
  highlight.take_changes();
  EXPECT_TRUE(highlight.highlight_mesh(of_quads({2, 1})));
  EXPECT_EQ(highlight.take_changes(), "---++") << "all blocks go, two come";
  EXPECT_NE(highlight.groups(0).at(0), first);
  EXPECT_THAT(highlight.set(0).elements[Tarn::Quad], ElementsAre(quads()[0], quads()[1], quads()[2]));
  EXPECT_TRUE(highlight.unhighlight_mesh(of_quads({1, 3})));
  EXPECT_EQ(highlight.take_changes(), "---++");
  EXPECT_THAT(highlight.set(0).elements[Tarn::Quad], ElementsAre(quads()[0], quads()[2]));
  EXPECT_TRUE(highlight.unhighlight_mesh(of_quads({0, 1, 2, 3})));
  EXPECT_EQ(highlight.take_changes(), "---");
  EXPECT_THAT(highlight.parts, IsEmpty());
  EXPECT_TRUE(highlight.unhighlight_mesh(of_quads({0}))) << "also when there is nothing";
  EXPECT_TRUE(highlight.highlight_mesh(MeshVector()));
  EXPECT_EQ(highlight.take_changes(), "");
}

TEST_F(HighlightSets, GivenPicksAndHovers_WhenHighlighted_ThenTheSetsStayApart) {
  notify_picked({}, {quads()[0]}, true);
  notify_hovered(quads()[1], true);
  highlight.highlight_mesh(of_quads({2}));
  ASSERT_THAT(highlight.parts, SizeIs(6));
  EXPECT_THAT(highlight.set(0).elements[Tarn::Quad], ElementsAre(quads()[0]));
  EXPECT_THAT(highlight.set(2).elements[Tarn::Quad], ElementsAre(quads()[1]));
  EXPECT_THAT(highlight.set(4).elements[Tarn::Quad], ElementsAre(quads()[2]));
  highlight.take_changes();
  highlight.clear_non_picked();
  EXPECT_EQ(highlight.take_changes(), "---");
  ASSERT_THAT(highlight.parts, SizeIs(4));
  EXPECT_THAT(highlight.set(0).elements[Tarn::Quad], ElementsAre(quads()[0]));
  EXPECT_THAT(highlight.set(2).elements[Tarn::Quad], ElementsAre(quads()[1]));
  highlight.highlight_mesh(of_quads({3}));
  EXPECT_THAT(highlight.set(4).elements[Tarn::Quad], ElementsAre(quads()[3])) << "what was cleared is forgotten";
}

TEST_F(HighlightSets, GivenNoHighlight_WhenCleared_ThenAllBlocksAreTakenAllTheSame) {
  highlight.clear_non_picked();
  EXPECT_EQ(highlight.take_changes(), "---");
  const vtkSmartPointer<vtkDataObject> before = [this] {
    highlight.highlight_mesh(of_quads({0}));
    return highlight.parts.at(0);
  }();
  highlight.clear_non_picked();
  highlight.highlight_mesh(of_quads({0}));
  EXPECT_NE(highlight.parts.at(0), before) << "the data group is a new one";
}

// ------------------------------------------------------------------------------------------ its own property

TEST(HighlightOwnProperty, GivenATable_WhenMade_ThenItsColorIsTakenOnceAndForAll) {
  PickSystemLog log;
  const TovanColor before = TovanColorTable::get_highlight_color();
  TovanColorTable::set_highlight_color(TovanColor(51, 102, 153, 7));
  test_support::NamedMesh mesh;
  GMeshModel model(mesh.database.get());
  GMeshHighlightProperties looks;
  GMeshHighlight highlight(&model, &looks);
  TovanColorTable::set_highlight_color(before);
  looks.set_highlight_color(TovanColor(1, 1, 1));
  vtkProperty* own = highlight.edge_highlight_property();
  EXPECT_NE(own, looks.edge_highlight_property());
  EXPECT_EQ(own->GetColor()[0], 0.2);
  EXPECT_EQ(own->GetColor()[1], 0.4);
  EXPECT_EQ(own->GetColor()[2], 0.6);
  EXPECT_EQ(own->GetOpacity(), 1);
  EXPECT_EQ(own->GetLineWidth(), 3);
  EXPECT_EQ(own->GetPointSize(), 6);
  EXPECT_EQ(own->GetRepresentation(), VTK_WIREFRAME);
  EXPECT_EQ(own->GetAmbient(), 1);
  EXPECT_EQ(own->GetDiffuse(), 0);
  EXPECT_EQ(own->GetSpecular(), 0);
  EXPECT_EQ(own->GetReferenceCount(), 1);
  EXPECT_FALSE(highlight.get_node_vis());
  EXPECT_THAT(log.calls, IsEmpty());
}

TEST(HighlightOwnProperty, GivenAProp_WhenTheHighlightDies_ThenItsPropertyIsReleased) {
  PickSystemLog log;
  vtkSmartPointer<vtkProperty> own;
  {
    test_support::NamedMesh mesh;
    GMeshModel model(mesh.database.get());
    GMeshHighlightProperties looks;
    GMeshHighlight highlight(&model, &looks);
    own = highlight.edge_highlight_property();
  }
  EXPECT_EQ(own->GetReferenceCount(), 1);
}

} // namespace
