// What the labels say, where they stand, when they are made anew, and what the database is asked for that.

#include "LabelledMesh.h"

#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkPlane.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

using test_support::NamedMesh;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

namespace {

using Lines = std::vector<std::string>;

// ------------------------------------------------------------------------------------------ nodes

TEST(NodeLabels, GivenASheet_WhenNodesAreLabelled_ThenEachHasItsIdWhereItIs) {
  LabelledMesh sheet(test_support::quad_sheet(2, 1));
  sheet.label_nodes();
  EXPECT_THAT(sheet.lines(),
              UnorderedElementsAre("1 at 0 0 0", "2 at 1 0 0", "3 at 2 0 0", "4 at 0 1 0", "5 at 1 1 0", "6 at 2 1 0"));
  EXPECT_THAT(sheet.db.operations(), ElementsAre("get_node_ids", "get_element_types")) << "two calls in all";
  EXPECT_THAT(sheet.db.calls("get_node_ids")[0].handles, SizeIs(6));
}

TEST(NodeLabels, GivenAnyFlagWithoutAMeaningOfItsOwn_WhenNodesAreLabelled_ThenItMeansLocalIds) {
  for (const int flag : {1, 3, 11, 13, 255, -1}) {
    SCOPED_TRACE(flag);
    LabelledMesh sheet(test_support::quad_sheet(1, 1));
    sheet.label_nodes(flag);
    EXPECT_THAT(sheet.lines(), UnorderedElementsAre("1 at 0 0 0", "2 at 1 0 0", "3 at 0 1 0", "4 at 1 1 0"));
    EXPECT_EQ(sheet.db.count("get_elements_on_nodes"), 0u);
  }
}

/// A sheet of one quadrilateral with one-node elements on its second and third node, of which the second alone has a
/// global id. Elements are numbered from 1: the quadrilateral, then those two.
LabelledMesh nodes_with_elements() {
  NamedMesh mesh = test_support::quad_sheet(1, 1);
  mesh.add_element(Tarn::OneNode, {1});
  const auto second = mesh.add_element(Tarn::OneNode, {2});
  const int global_id = 77;
  mesh.database->set_global_ids(1, &second, &global_id);
  return LabelledMesh(std::move(mesh));
}

TEST(NodeLabels, GivenElementsOnNodes_WhenLabelledWithTheirIds_ThenOnlyNodesThatHaveOneAreLabelled) {
  LabelledMesh sheet = nodes_with_elements();
  sheet.label_nodes(OBUtil::NodeElementId);
  EXPECT_THAT(sheet.lines(), UnorderedElementsAre("2 at 1 0 0", "3 at 0 1 0"));

  const auto calls = sheet.db.calls("get_elements_on_nodes");
  ASSERT_THAT(calls, SizeIs(4)) << "one for each node";
  for (const auto& call : calls) {
    EXPECT_THAT(call.handles, SizeIs(1));
    EXPECT_THAT(call.numbers, ElementsAre(1, 1));
  }
  EXPECT_EQ(sheet.db.count("get_element_id"), 2u);
  EXPECT_EQ(sheet.db.count("get_element_global_id"), 0u);
  EXPECT_EQ(sheet.db.count("get_node_ids"), 0u);
}

TEST(NodeLabels, GivenElementsOnNodes_WhenLabelledWithTheirGlobalIds_ThenOnlyValidOnesAreShown) {
  LabelledMesh sheet = nodes_with_elements();
  sheet.label_nodes(OBUtil::GlobalId);
  EXPECT_THAT(sheet.lines(), ElementsAre("77 at 0 1 0"));
  EXPECT_EQ(sheet.db.count("get_elements_on_nodes"), 4u);
  EXPECT_EQ(sheet.db.count("get_element_global_id"), 2u);
  EXPECT_EQ(sheet.db.count("get_element_id"), 0u);
}

TEST(NodeLabels, GivenLoneNodes_WhenLabelled_ThenTheyAreLabelledToo) {
  NamedMesh nodes = test_support::lone_nodes(3);
  nodes.mesh.nodes = nodes.nodes;
  LabelledMesh lone(std::move(nodes));
  lone.label_nodes();
  EXPECT_THAT(lone.lines(), ElementsAre("1 at 0 0 0", "2 at 1 0 0", "3 at 2 0 0"));
  lone.label(Tarn::OneNode);
  EXPECT_THAT(lone.lines(), SizeIs(3)) << "they are drawn as cells, but of no element";
}

// ------------------------------------------------------------------------------------------ elements

struct KindRow {
  Tarn::ElementType kind;
  Lines lines;
};

/// One element of each kind, side by side: kind k begins at x = 2 k and has the id k.
const KindRow kinds[] = {
    {Tarn::OneNode, {"1 at 2 0 0"}},
    {Tarn::Tri, {"3 at 6.33333 0.333333 0"}},
    {Tarn::Quad, {"4 at 8.5 0.5 0"}},
    {Tarn::Tet,
     {"5 at 10.3333 0.333333 0", "5 at 10.3333 0 0.333333", "5 at 10 0.333333 0.333333",
      "5 at 10.3333 0.333333 0.333333"}},
    {Tarn::Hex,
     {"6 at 12.5 0.5 0", "6 at 12.5 0.5 1", "6 at 12.5 0 0.5", "6 at 12.5 1 0.5", "6 at 12 0.5 0.5",
      "6 at 13 0.5 0.5"}},
    {Tarn::Wedge,
     {"7 at 14.3333 0.333333 0", "7 at 14.3333 0.333333 1", "7 at 14 0.5 0.5", "7 at 14.5 0 0.5", "7 at 14.5 0.5 0.5"}},
    {Tarn::Pyramid,
     {"8 at 16.5 0.5 0", "8 at 16.5 0.166667 0.333333", "8 at 16.5 0.833333 0.333333", "8 at 16.1667 0.5 0.333333",
      "8 at 16.8333 0.5 0.333333"}},
    {Tarn::Superelement, {"9 at 18.5 0 0"}},
};

TEST(ElementLabels, GivenEachKind_WhenItIsLabelled_ThenItsIdStandsAtTheCentreOfEachCellThatDrawsIt) {
  for (const KindRow& row : kinds) {
    SCOPED_TRACE(row.kind);
    LabelledMesh all(test_support::each_linear_kind());
    all.label(row.kind);
    EXPECT_THAT(all.lines(), UnorderedElementsAreArray(row.lines));
    EXPECT_THAT(all.db.operations(), ElementsAre("get_element_types", "get_element_ids"));
    EXPECT_THAT(all.db.calls("get_element_ids")[0].handles, SizeIs(row.lines.size())) << "of that kind alone";
  }
}

TEST(ElementLabels, GivenEdgesAmongOthers_WhenEdgesAreLabelled_ThenSoAreTheEdgesOfFacesAndNoOthers) {
  LabelledMesh all(test_support::each_linear_kind());
  all.label(Tarn::Edge);
  const Lines lines = all.lines();
  ASSERT_THAT(lines, SizeIs(1 + 3 + 4)) << "the edge, and those of the triangle and the quadrilateral";
  EXPECT_EQ(lines[0], "2 at 4.5 0 0");
  Lines places;
  for (const LabelEntry& label : all.log().labels)
    places.push_back(line("", label.position));
  EXPECT_THAT(places, UnorderedElementsAre(" at 4.5 0 0", " at 6.5 0 0", " at 6.5 0.5 0", " at 6 0.5 0", " at 8.5 0 0",
                                           " at 9 0.5 0", " at 8.5 1 0", " at 8 0.5 0"));
}

TEST(ElementLabels, GivenQuadraticElements_WhenLabelled_ThenAllPointsOfTheCellCount) {
  NamedMesh mesh;
  // A triangle whose mid-side nodes are moved: corners at 0 0, 3 0, 0 3, mid-side nodes all at 6 6.
  for (const auto& [x, y] : {std::pair(0, 0), {3, 0}, {0, 3}, {6, 6}, {6, 6}, {6, 6}})
    mesh.add_node(x, y, 0);
  mesh.add_element(Tarn::Tri, {0, 1, 2, 3, 4, 5});
  LabelledMesh triangle(std::move(mesh));
  triangle.label(Tarn::Tri);
  EXPECT_THAT(triangle.lines(), ElementsAre("1 at 3.5 3.5 0"));
}

TEST(ElementLabels, GivenSeveralKindsAndNodes_WhenLabelled_ThenNodesComeFirstThenKindsThenEdgesOfFaces) {
  NamedMesh mesh;
  for (int i = 0; i < 4; ++i)
    mesh.add_node(i % 2, i / 2, 0);
  mesh.add_element(Tarn::Quad, {0, 1, 3, 2});
  mesh.add_element(Tarn::Edge, {0, 1});
  mesh.add_element(Tarn::OneNode, {3});
  LabelledMesh mixed(std::move(mesh));
  mixed.label_nodes();
  for (const auto kind : {Tarn::Quad, Tarn::Edge, Tarn::OneNode})
    mixed.label(kind);
  const Lines lines = mixed.lines();
  // The edges of faces bring their nodes along.
  ASSERT_THAT(lines, SizeIs(4 + 3 + 4 + 4));
  EXPECT_THAT(Lines(lines.begin() + 4, lines.begin() + 7), ElementsAre("3 at 1 1 0", "2 at 0.5 0 0", "1 at 0.5 0.5 0"));
  Lines nodes(lines.begin(), lines.begin() + 4), again(lines.begin() + 7, lines.begin() + 11);
  EXPECT_THAT(again, UnorderedElementsAreArray(nodes));
  EXPECT_THAT(nodes, UnorderedElementsAre("1 at 0 0 0", "2 at 1 0 0", "3 at 0 1 0", "4 at 1 1 0"));
}

TEST(ElementLabels, GivenGlobalIdsForSome_WhenLabelledGlobally_ThenOnlyTheyAre) {
  NamedMesh mesh = test_support::quad_sheet(3, 1);
  const int ids[] = {500, -7};
  mesh.database->set_global_ids(1, &mesh.mesh.elements[Tarn::Quad][0], &ids[0]);
  mesh.database->set_global_ids(1, &mesh.mesh.elements[Tarn::Quad][2], &ids[1]);
  LabelledMesh sheet(std::move(mesh));
  sheet.label(Tarn::Quad, OBUtil::GlobalId);
  EXPECT_THAT(sheet.lines(), ElementsAre("500 at 0.5 0.5 0", "-7 at 2.5 0.5 0"));
  EXPECT_THAT(sheet.db.operations(), ElementsAre("get_element_types", "get_global_element_ids"));
  EXPECT_THAT(sheet.db.calls("get_global_element_ids")[0].handles, SizeIs(3));

  for (const int local : {1, 5, 12, 99, -1}) {
    sheet.label(Tarn::Quad, local);
    EXPECT_THAT(sheet.lines(), ElementsAre("1 at 0.5 0.5 0", "2 at 1.5 0.5 0", "3 at 2.5 0.5 0")) << local;
  }
}

TEST(ElementLabels, GivenTheLargestAndSmallestIds_WhenLabelled_ThenAllDigitsAreThere) {
  NamedMesh mesh = test_support::quad_sheet(2, 1);
  const int ids[] = {2147483647, -2147483647 - 1};
  mesh.database->set_global_ids(2, mesh.mesh.elements[Tarn::Quad].data(), ids);
  LabelledMesh sheet(std::move(mesh));
  sheet.label(Tarn::Quad, OBUtil::GlobalId);
  EXPECT_THAT(sheet.lines(), ElementsAre("2147483647 at 0.5 0.5 0", "-2147483648 at 1.5 0.5 0"));
}

TEST(ElementLabels, GivenALabel_WhenAdded_ThenItHasTheGroupsColorAndTheLastArgumentIsZero) {
  LabelledMesh sheet(test_support::quad_sheet(1, 1));
  sheet.label_nodes();
  sheet.label(Tarn::Edge);
  sheet.draw();
  ASSERT_THAT(sheet.log().labels, SizeIs(4 + 4 + 4));
  for (const LabelEntry& label : sheet.log().labels) {
    EXPECT_EQ(label.color, TovanColor(10, 20, 30));
    EXPECT_EQ(label.last_argument, 0);
  }
}

// ------------------------------------------------------------------------------------------ edges of faces

TEST(AdjacentEdgeLabels, GivenFacesThatShareEdges_WhenEdgesAreLabelled_ThenEachIsLabelledOnce) {
  LabelledMesh sheet(test_support::quad_sheet(2, 1));
  sheet.label(Tarn::Edge);
  Lines places;
  sheet.draw();
  for (const LabelEntry& label : sheet.log().labels)
    places.push_back(line("", label.position));
  EXPECT_THAT(places, UnorderedElementsAre(" at 0.5 0 0", " at 1.5 0 0", " at 0.5 1 0", " at 1.5 1 0", " at 0 0.5 0",
                                           " at 1 0.5 0", " at 2 0.5 0"));
  const auto calls = sheet.db.calls("get_adjacencies");
  ASSERT_THAT(calls, SizeIs(2));
  for (const auto& call : calls)
    EXPECT_THAT(call.numbers, ElementsAre(1, 2, 24));
}

TEST(AdjacentEdgeLabels, GivenTrianglesAndQuadrilaterals_WhenEdgesAreLabelled_ThenTrianglesAreAskedAboutFirst) {
  NamedMesh mesh;
  for (const auto& [x, y] : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}, {2, 0}})
    mesh.add_node(x, y, 0);
  const auto quad = mesh.add_element(Tarn::Quad, {0, 1, 2, 3});
  const auto triangle = mesh.add_element(Tarn::Tri, {1, 4, 2});
  LabelledMesh mixed(std::move(mesh));
  mixed.label(Tarn::Edge);
  EXPECT_THAT(mixed.lines(), SizeIs(4 + 3 - 1));
  const auto calls = mixed.db.calls("get_adjacencies");
  ASSERT_THAT(calls, SizeIs(2));
  EXPECT_THAT(calls[0].handles, ElementsAre(triangle.value));
  EXPECT_THAT(calls[1].handles, ElementsAre(quad.value));
  EXPECT_THAT(mixed.db.calls("get_element_owners"), SizeIs(1)) << "the group of the edges belongs to nobody";
}

TEST(AdjacentEdgeLabels, GivenTheFlagOffOrNoFaces_WhenLabelled_ThenNoEdgeIsAskedFor) {
  LabelledMesh sheet(test_support::quad_sheet(2, 1));
  sheet.label(Tarn::Quad);
  sheet.draw();
  EXPECT_EQ(sheet.db.count("get_adjacencies"), 0u);
  LabelledMesh hexes(test_support::two_hexes());
  hexes.label(Tarn::Edge);
  EXPECT_THAT(hexes.lines(), IsEmpty()) << "the faces of solids are no faces of the mesh";
  EXPECT_EQ(hexes.db.count("get_adjacencies"), 0u);
}

TEST(AdjacentEdgeLabels, GivenADatabaseThatCallsItsEdgesFaces_WhenLabelled_ThenTheirEdgesAreNotAskedForAgain) {
  LabelledMesh sheet(test_support::quad_sheet(1, 1));
  Tarn::Handle<1> edges[24];
  Tarn::MeshData::Count count = 24;
  ASSERT_EQ(sheet.mesh.database->get_adjacencies(sheet.mesh.mesh.elements[Tarn::Quad][0], 1, 2, &count, edges), 0);
  ASSERT_EQ(count, 4u);
  for (int i = 0; i < 4; ++i)
    sheet.db.report_type(edges[i], Tarn::Quad);
  sheet.label(Tarn::Edge);
  sheet.draw();
  EXPECT_EQ(sheet.db.count("get_adjacencies"), 1u);
}

TEST(AdjacentEdgeLabels, GivenEdgesLabelled_WhenTheOwnerOfTheFacesIsReportedChanged_ThenOnlyTheMeshIsLeftToHear) {
  LabelledMesh sheet(test_support::quad_sheet(2, 1));
  sheet.label(Tarn::Edge);
  sheet.draw();
  sheet.model.update_mesh_transformed(sheet.mesh.owner);
  sheet.model.update_mesh_transformed(nullptr);
  EXPECT_THAT(sheet.lines(), SizeIs(7));
}

// ------------------------------------------------------------------------------------------ when they are made anew

TEST(LabelRebuild, GivenLabelsDrawn_WhenNothingChanged_ThenTheyAreNotMadeAgain) {
  LabelledMesh sheet(test_support::quad_sheet(2, 1));
  sheet.label_nodes();
  sheet.draw();
  EXPECT_EQ(sheet.log().clears, 1);
  sheet.db.forget_calls();
  sheet.draw();
  sheet.draw();
  EXPECT_EQ(sheet.log().clears, 1);
  EXPECT_EQ(sheet.log().draws, 3);
  EXPECT_THAT(sheet.log().labels, SizeIs(6));
  EXPECT_THAT(sheet.db.calls(), IsEmpty());
}

TEST(LabelRebuild, GivenLabelsDrawn_WhenColorMeshOrFlagChange_ThenEachMakesThemOnceMore) {
  LabelledMesh sheet(test_support::quad_sheet(2, 1));
  sheet.label_nodes();
  sheet.draw();
  struct Row {
    const char* name;
    std::function<void()> change;
    std::size_t labels;
  };
  const double moved[] = {0, 0, 9};
  vtkNew<vtkPlane> plane;
  plane->SetOrigin(1, 0, 0);
  plane->SetNormal(-1, 0, 0);
  const Row rows[] = {
      {"color", [&] { sheet.model.set_color(sheet.mesh.owner, TovanColor(1, 2, 3)); }, 6},
      {"nodes moved",
       [&] {
         sheet.mesh.database->move_nodes(1, &sheet.mesh.nodes[0], moved);
         sheet.model.update_mesh_transformed(sheet.mesh.owner);
       },
       6},
      {"another flag", [&] { sheet.label(Tarn::Quad); }, 8},
      {"flag of no kind", [&] { sheet.label(Tarn::None); }, 8},
      {"entities",
       [&] {
         sheet.model.remove_mesh(sheet.mesh.owner, [&] {
           MeshVector some;
           some.elements[Tarn::Quad] = {sheet.mesh.mesh.elements[Tarn::Quad][1]};
           return some;
         }());
       },
       5},
  };
  int clears = 1;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    row.change();
    sheet.draw();
    EXPECT_EQ(sheet.log().clears, ++clears);
    sheet.draw();
    EXPECT_EQ(sheet.log().clears, clears);
    EXPECT_THAT(sheet.log().labels, SizeIs(row.labels));
  }
  EXPECT_EQ(sheet.log().labels[0].color, TovanColor(1, 2, 3));
  Lines lines = sheet.lines();
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "1 at 0 0 9"), 1);
}

TEST(LabelRebuild, GivenAClippingPlane_WhenLabelled_ThenOnlyWhatIsLeftIs) {
  LabelledMesh sheet(test_support::quad_sheet(3, 1));
  sheet.label(Tarn::Quad);
  vtkNew<vtkPlane> plane;
  plane->SetOrigin(1.5, 0, 0);
  plane->SetNormal(1, 0, 0);
  sheet.model.set_clipping_plane(plane);
  EXPECT_THAT(sheet.lines(), ElementsAre("2 at 1.5 0.5 0", "3 at 2.5 0.5 0"));
  sheet.model.set_clipping_plane(nullptr);
  EXPECT_THAT(sheet.lines(), SizeIs(3));
}

// ------------------------------------------------------------------------------------------ what there is to label

TEST(LabelInput, GivenAShrunkMesh_WhenLabelled_ThenNothingIs) {
  LabelledMesh sheet(test_support::quad_sheet(2, 1));
  sheet.group()->set_shrink_factor(0.5f);
  sheet.model.update_mesh_transformed(sheet.mesh.owner);
  sheet.label_nodes();
  sheet.label(Tarn::Quad);
  EXPECT_THAT(sheet.lines(), IsEmpty());
  EXPECT_EQ(sheet.log().clears, 1);
}

TEST(LabelInput, GivenIdArraysOfAnotherType_WhenLabelled_ThenTheyCountAsMissing) {
  LabelledMesh sheet(test_support::quad_sheet(2, 1));
  vtkNew<vtkFloatArray> wrong;
  wrong->SetName("NodeIds");
  wrong->SetNumberOfTuples(6);
  wrong->Fill(1);
  sheet.group()->get_2d_data()->GetPointData()->AddArray(wrong);
  sheet.label_nodes();
  sheet.label(Tarn::Quad);
  EXPECT_THAT(sheet.lines(), ElementsAre("1 at 0.5 0.5 0", "2 at 1.5 0.5 0"));
  EXPECT_EQ(sheet.db.count("get_node_ids"), 0u);
}

TEST(LabelInput, GivenNoGroupBehindTheInput_WhenDrawn_ThenLabelsStayAsTheyAreAndAreDrawn) {
  LabelledMesh sheet(test_support::quad_sheet(2, 1));
  sheet.label_nodes();
  sheet.draw();
  int draws = 1;
  const auto expect_old_labels = [&](const char* what) {
    SCOPED_TRACE(what);
    sheet.label(Tarn::Quad, draws + 20); // would make them anew
    sheet.draw();
    EXPECT_EQ(sheet.log().clears, 1);
    EXPECT_THAT(sheet.log().labels, SizeIs(6));
    EXPECT_EQ(sheet.log().draws, ++draws);
  };
  sheet.labels->SetInputDataObject(vtkSmartPointer<vtkPolyData>::New());
  expect_old_labels("point set of nobody");
  sheet.labels->SetInputDataObject(vtkSmartPointer<vtkImageData>::New());
  expect_old_labels("no point set");
  sheet.labels->SetInputDataObject(nullptr);
  expect_old_labels("no input");

  sheet.labels->SetInputDataObject(sheet.group()->get_2d_data());
  const vtkSmartPointer<vtkDataObject> data = sheet.labels->GetInputDataObject(0, 0);
  sheet.model.remove_mesh(sheet.mesh.owner);
  expect_old_labels("group gone");
}

TEST(LabelInput, GivenNoModel_WhenDrawn_ThenNothingIsLabelled) {
  LabelledMesh sheet(test_support::quad_sheet(2, 1));
  sheet.label_nodes();
  sheet.labels->set_model(nullptr);
  EXPECT_THAT(sheet.lines(), IsEmpty());
  EXPECT_EQ(sheet.log().draws, 1);
  EXPECT_THAT(sheet.db.calls(), IsEmpty());
}

TEST(LabelInput, GivenAModel_WhenSet_ThenTheMapperBelowKnowsItToo) {
  LabelledMesh sheet(test_support::quad_sheet(1, 1));
  EXPECT_EQ(sheet.log().model, &sheet.model);
  sheet.labels->set_model(nullptr);
  EXPECT_EQ(sheet.log().model, nullptr);
}

TEST(LabelInput, GivenDataThatWasReplaced_WhenDrawn_ThenTheGroupsPresentDataIsLabelled) {
  LabelledMesh sheet(test_support::quad_sheet(2, 1));
  vtkDataObject* old = sheet.labels->GetInputDataObject(0, 0);
  sheet.label_nodes();
  const double moved[] = {0, 0, 9};
  sheet.mesh.database->move_nodes(1, &sheet.mesh.nodes[0], moved);
  sheet.model.update_mesh_transformed(sheet.mesh.owner);
  ASSERT_NE(sheet.group()->get_2d_data(), old);
  const Lines lines = sheet.lines();
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "1 at 0 0 9"), 1);
}

} // namespace
