#include "tests/highlight/HighlightScene.h"

#include "tests/support/RecordingMeshData.h"

#include <vtkPlane.h>
#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Le;
using testing::SizeIs;

namespace {

// ------------------------------------------------------------------------------------------ changes of the database

class HighlightChanges : public HighlightScene {
protected:
  // Cells drawn as edges in part `i`.
  vtkIdType lines(std::size_t i) {
    highlight.update_parts();
    auto* blocks = vtkMultiBlockDataSet::SafeDownCast(highlight.parts.at(i));
    vtkIdType count = 0;
    for (unsigned int block = 0; block < blocks->GetNumberOfBlocks(); ++block)
      count += vtkPolyData::SafeDownCast(blocks->GetBlock(block))->GetNumberOfLines();
    return count;
  }
};

TEST_F(HighlightChanges, GivenElementsInAllSets_WhenTheyAreDeleted_ThenTheyAreNoLongerDrawn) {
  notify_picked({}, {quads()[0], quads()[1]}, true);
  notify_hovered(quads()[0], true);
  highlight.highlight_mesh(of_quads({0, 3}));
  EXPECT_EQ(lines(0), 7);
  EXPECT_EQ(lines(2), 4);
  EXPECT_EQ(lines(4), 8);
  const Elem gone = quads()[0];
  ASSERT_TRUE(sheet.database->delete_elements(1, &gone));
  model.update_mesh_modified(sheet.owner);
  EXPECT_EQ(lines(0), 4);
  EXPECT_EQ(lines(2), 0);
  EXPECT_EQ(lines(4), 4);
  view.render();
  // Notifications about the dead go on.
  notify_hovered(gone, false);
  notify_picked({}, {gone}, false);
  notify_picked({}, {gone, quads()[2]}, true);
  // The hovered set comes first now: it keeps the dead handle, whose kind nobody knows any more, and draws nothing.
  EXPECT_EQ(lines(0), 0);
  EXPECT_EQ(lines(2), 7) << "1 and 2";
  view.render();
  highlight.clear();
  EXPECT_THAT(highlight.parts, IsEmpty());
}

TEST_F(HighlightChanges, GivenHighlights_WhenTheirOwnerIsDeleted_ThenTheyGoWithIt) {
  notify_picked({sheet.nodes[0]}, {quads()[0]}, true);
  notify_hovered(quads()[1], true);
  highlight.highlight_mesh(of_quads({2}));
  view.render();
  ASSERT_TRUE(sheet.database->delete_owner(sheet.owner));
  model.remove_mesh(sheet.owner);
  view.render();
  for (const std::size_t part : {0, 2, 4}) {
    EXPECT_EQ(lines(part), 0);
    EXPECT_TRUE(highlight.set(part).empty());
  }
  notify_picked({}, {quads()[3]}, true);
  notify_hovered(quads()[1], false);
  highlight.unhighlight_mesh(of_quads({2}));
  view.render();
  highlight.clear();
}

// What is left of a set is asked for as what is drawn of its owners: not nodes of elements, nor edges of faces.
TEST_F(HighlightChanges, GivenNodesOfElementsAndEdgesOfFaces_WhenTheirOwnerIsReportedChanged_ThenOnlyElementsStay) {
  std::vector<Elem> edges(24);
  Tarn::MeshData::Count count = edges.size();
  ASSERT_EQ(sheet.database->get_adjacencies(quads()[0], 1, 2, &count, edges.data()), 0);
  const Node lone = sheet.add_node(9, 9, 9);
  notify_picked({sheet.nodes[0], lone}, {quads()[0], edges[0]}, true);
  EXPECT_THAT(highlight.set(0).nodes, SizeIs(2));
  EXPECT_THAT(highlight.set(0).elements[Tarn::Edge], SizeIs(1));
  model.update_mesh_modified(sheet.owner);
  EXPECT_THAT(highlight.set(0).nodes, ElementsAre(lone)) << "drawn in its own right";
  EXPECT_THAT(highlight.set(0).elements[Tarn::Edge], IsEmpty());
  EXPECT_THAT(highlight.set(0).elements[Tarn::Quad], ElementsAre(quads()[0]));
  // The picked set itself still holds them: the next pick brings them back.
  notify_picked({}, {quads()[1]}, true);
  EXPECT_THAT(highlight.set(0).nodes, SizeIs(2));
  EXPECT_THAT(highlight.set(0).elements[Tarn::Edge], SizeIs(1));
}

TEST_F(HighlightChanges, GivenHighlights_WhenTheirNodesMove_ThenTheyMoveAlong) {
  highlight.highlight_mesh(of_quads({0}));
  highlight.update_parts();
  auto* edges = vtkPolyData::SafeDownCast(vtkMultiBlockDataSet::SafeDownCast(highlight.parts.at(0))->GetBlock(0));
  EXPECT_EQ(edges->GetBounds()[5], 0);
  const double up[3] = {0, 0, 7};
  ASSERT_TRUE(sheet.database->move_nodes(1, &sheet.nodes[0], up));
  model.update_mesh_transformed(sheet.owner);
  highlight.update_parts();
  EXPECT_EQ(vtkMultiBlockDataSet::SafeDownCast(highlight.parts.at(0))->GetBlock(0), edges);
  EXPECT_EQ(edges->GetBounds()[5], 7);
}

TEST_F(HighlightChanges, GivenAModelThatClips_WhenHighlighted_ThenHighlightsStayWhole) {
  vtkNew<vtkPlane> plane;
  plane->SetOrigin(2.5, 0, 0);
  plane->SetNormal(1, 0, 0);
  highlight.highlight_mesh(of_quads({0}));
  notify_hovered(quads()[1], true);
  model.set_clipping_plane(plane);
  highlight.highlight_mesh(of_quads({1}));
  EXPECT_EQ(lines(0), 4);
  EXPECT_EQ(lines(2), 7);
  highlight.select_mesh(model.get_mesh(sheet.owner));
  EXPECT_EQ(lines(4), 7) << "a selected group is the model's own, clipped to two";
  view.render();
}

TEST_F(HighlightChanges, GivenASelectedGroup_WhenItsOwnerIsHidden_ThenItsHighlightStaysUntilItIsHiddenToo) {
  GMeshGroup* group = model.get_mesh(sheet.owner);
  highlight.select_mesh(group);
  model.set_visibility(sheet.owner, false);
  EXPECT_EQ(lines(0), 13);
  highlight.set_visibility(group, false);
  EXPECT_THAT(highlight.parts, IsEmpty());
}

TEST_F(HighlightChanges, GivenASelectedGroup_WhenUnselectedBeforeItDies_ThenNothingOfItIsLeft) {
  highlight.select_mesh(model.get_mesh(sheet.owner));
  highlight.unselect_mesh(model.get_mesh(sheet.owner));
  model.remove_mesh(sheet.owner);
  view.render();
  highlight.clear();
  EXPECT_THAT(highlight.parts, IsEmpty());
}

TEST_F(HighlightChanges, GivenAHighlightedGroup_WhenItDies_ThenItsDataAreNoLongerDrawn) {
  highlight.highlight_mesh(model.get_mesh(sheet.owner));
  EXPECT_EQ(lines(0), 13);
  model.remove_mesh(sheet.owner);
  highlight.update_parts();
  EXPECT_EQ(vtkMultiBlockDataSet::SafeDownCast(highlight.parts.at(0))->GetNumberOfBlocks(), 0u);
  view.render();
}

TEST_F(HighlightChanges, GivenADatabaseThatFails_WhenHighlighted_ThenWhatItKnowsIsDrawn) {
  test_support::RecordingMeshData db(*sheet.database);
  GMeshModel own_model(&db);
  RecordingHighlight own(&own_model, &looks);
  db.lose(quads()[1]);
  const Records records({sheet.nodes[0]}, {quads()[0], quads()[1]}, &db);
  own.notify_picked(records.count(), records.data(), nullptr, true);
  EXPECT_THAT(own.set(0).elements[Tarn::Quad], ElementsAre(quads()[0]));
  for (const char* operation : {"get_element_types", "get_connectivity", "get_coordinate_arrays", "get_element_owners",
                                "get_node_owners", "get_node_ids", "get_element_ids"}) {
    db.fail(operation);
    own.highlight_mesh(of_quads({0, 1, 2}));
    own.notify_picked(records.count(), records.data(), nullptr, true);
    own.notify_pre_select(records.data()[1], nullptr, true);
    own.update_parts();
    own.unhighlight_mesh(of_quads({1}));
    own.clear();
    EXPECT_THAT(own.parts, IsEmpty()) << operation;
    db.answer_well();
  }
}

// Highlights draw as the modes without surfaces do: lines and points of the mesh show in them.
TEST_F(HighlightChanges, GivenLinesAndPoints_WhenHighlighted_ThenTheyAreDrawnToo) {
  const Elem edge = sheet.add_element(Tarn::Edge, {0, 1});
  const Elem point = sheet.add_element(Tarn::OneNode, {2});
  highlight.highlight_mesh(sheet.mesh); // makes part 0
  const vtkIdType all = lines(0);
  highlight.clear_non_picked();
  notify_picked({}, {edge, point}, true);
  notify_hovered(edge, true);
  MeshVector lone;
  lone.elements[Tarn::Edge] = {edge};
  highlight.highlight_mesh(lone);
  for (const std::size_t part : {0, 2, 4})
    EXPECT_EQ(lines(part), 1) << part;
  EXPECT_GT(all, 12);
  auto* picked_nodes = vtkMultiBlockDataSet::SafeDownCast(highlight.parts.at(1));
  EXPECT_EQ(vtkPolyData::SafeDownCast(picked_nodes->GetBlock(0))->GetNumberOfVerts(), 3);
  // A group that is given to the data groups later draws so as well.
  highlight.clear();
  highlight.highlight_mesh(lone);
  EXPECT_EQ(lines(0), 1);
}

// ------------------------------------------------------------------------------------------ what it costs

TEST(HighlightCost, GivenABigModel_WhenOneElementIsHighlighted_ThenNothingOfTheModelIsAskedOrRebuilt) {
  PickSystemLog log;
  test_support::NamedMesh block = test_support::hex_block(12, 12, 12);
  test_support::RecordingMeshData db(*block.database);
  GMeshModel model(&db);
  model.add_mesh(block.owner, block.mesh, TovanColor(200, 200, 200), 1.0F, false);
  model.update_parts();
  GMeshHighlightProperties looks;
  RecordingHighlight highlight(&model, &looks);
  GMeshGroup* group = model.get_mesh(block.owner);
  vtkDataObject* const data[] = {group->get_2d_data(), group->get_tri_data(), group->get_edge_data(),
                                 group->get_node_data()};
  std::vector<vtkMTimeType> stamps;
  for (vtkDataObject* each : data)
    stamps.push_back(each->GetMTime());
  const vtkMTimeType mesh_time = group->MeshTime().GetMTime();
  const vtkMTimeType color_time = group->ColorTime().GetMTime();

  const Elems& hexes = block.mesh.elements[Tarn::Hex];
  MeshVector one;
  one.elements[Tarn::Hex] = {hexes[700]};
  const Records records({block.nodes[40]}, {hexes[800]}, &db);
  db.forget_calls();
  highlight.highlight_mesh(one);
  highlight.notify_picked(records.count(), records.data(), nullptr, true);
  highlight.notify_pre_select(records.data()[1], nullptr, true);
  highlight.update_parts();
  model.update_parts();
  highlight.notify_pre_select(records.data()[1], nullptr, false);
  highlight.unhighlight_mesh(one);
  highlight.notify_picked(records.count(), records.data(), nullptr, false);
  highlight.update_parts();
  model.update_parts();

  ASSERT_FALSE(db.calls().empty());
  for (const auto& call : db.calls())
    EXPECT_THAT(call.handles.size(), Le(24u)) << call.operation << ": more than a hexahedron's sides have corners";
  EXPECT_THAT(db.calls().size(), Le(60u));
  EXPECT_EQ(db.count("get_owner_elements"), 0u);
  EXPECT_EQ(model.get_mesh(block.owner), group);
  for (std::size_t i = 0; i < stamps.size(); ++i)
    EXPECT_EQ(data[i]->GetMTime(), stamps[i]);
  EXPECT_EQ(group->MeshTime().GetMTime(), mesh_time);
  EXPECT_EQ(group->ColorTime().GetMTime(), color_time);
  EXPECT_EQ(group->get_2d_data(), data[0]);
}

} // namespace
