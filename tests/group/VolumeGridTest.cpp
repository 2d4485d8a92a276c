#include "group/VolumeGrid.h"

#include "group/EntityColors.h"
#include "mesh/database/Side.h"
#include "tests/group/GridInspection.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkTypeUInt64Array.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <numeric>

namespace {

using namespace group_test;
using namespace test_support;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Ids = std::vector<vtkIdType>;

constexpr Color white = {255, 255, 255, 255};

/// Side records as a skinner hands them out, each with its nodes somewhere else or all in one block.
class SideList {
public:
  void add(int kind, std::vector<Tarn::Handle<0>> nodes, Tarn::Handle<1> element, int position = 0) {
    nodes_.push_back(std::move(nodes));
    sides_.push_back({kind, static_cast<int>(nodes_.back().size()), nodes_.back().data(), element, position});
  }
  std::vector<Side*> scattered() {
    std::vector<Side*> result;
    for (Side& side : sides_)
      result.push_back(&side);
    return result;
  }
  std::vector<Side*> in_one_block() {
    block_.clear();
    for (const auto& nodes : nodes_)
      block_.insert(block_.end(), nodes.begin(), nodes.end());
    const Tarn::Handle<0>* next = block_.data();
    for (Side& side : sides_) {
      side.nodes = next;
      next += side.node_count;
    }
    return scattered();
  }

private:
  std::deque<std::vector<Tarn::Handle<0>>> nodes_;
  std::deque<Side> sides_;
  std::vector<Tarn::Handle<0>> block_;
};

class VolumeGrid : public ::testing::Test {
protected:
  vtkSmartPointer<vtkUnstructuredGrid> build(const NamedMesh& from, const MeshVector& mesh,
                                             const std::vector<Side*>& skin = {}) {
    recorder = std::make_unique<RecordingMeshData>(*from.database);
    if (spoil) spoil(*recorder);
    return build(mesh, skin);
  }
  vtkSmartPointer<vtkUnstructuredGrid> build(const MeshVector& mesh, const std::vector<Side*>& skin = {}) {
    const EntityColors colors{color_type, single, node_colors, element_colors, vertex_colors};
    return make_volume_grid({recorder.get(), mesh, node_positions, element_positions, colors}, skin, narrow_uses);
  }

  std::unique_ptr<RecordingMeshData> recorder;
  std::function<void(RecordingMeshData&)> spoil;
  GMeshGroup::ColorType color_type = GMeshGroup::SingleColor;
  TovanColor single{1, 2, 3, 4};
  std::vector<TovanColor> node_colors;
  std::array<std::vector<TovanColor>, 10> element_colors;
  std::map<Tarn::Handle<0>, TovanColor> vertex_colors;
  const std::vector<int>* node_positions = nullptr;
  const std::vector<int> (*element_positions)[10] = nullptr;
  std::size_t narrow_uses = std::numeric_limits<std::int32_t>::max();
};

// Two nodes, two edges, one of each point-like kind, and a triangle of the skin, all on the nodes of one chain.
struct Everything {
  Everything() {
    for (int i = 0; i < 7; ++i)
      mesh.add_node(i, 10 * i, 100 * i);
    mesh.add_element(Tarn::Edge, {2, 3});
    mesh.add_element(Tarn::Edge, {3, 1, 5});
    mesh.add_element(Tarn::OneNode, {6});
    mesh.add_element(Tarn::Superelement, {6, 4, 0});
    tri = mesh.add_element(Tarn::Tri, {0, 1, 4});
    drawn = mesh.mesh;
    drawn.elements[Tarn::Tri].clear();
    drawn.nodes = {mesh.nodes[5], mesh.nodes[2]};
    skin.add(3, {mesh.nodes[0], mesh.nodes[1], mesh.nodes[4]}, tri);
  }
  NamedMesh mesh;
  Tarn::Handle<1> tri;
  MeshVector drawn;
  SideList skin;
};

TEST_F(VolumeGrid, GivenEntitiesOfAllOrigins_WhenBuilt_ThenCellsComeInTheFixedOrder) {
  Everything all;
  const auto grid = build(all.mesh, all.drawn, all.skin.scattered());
  EXPECT_THAT(cell_types(grid), ElementsAre(VTK_VERTEX, VTK_VERTEX, VTK_POLY_LINE, VTK_POLY_LINE, VTK_VERTEX,
                                            VTK_POLY_VERTEX, VTK_TRIANGLE));
  const auto& elements = all.drawn.elements;
  EXPECT_THAT(handle_values(grid->GetCellData(), "ElemIds"),
              ElementsAre(0, 0, elements[Tarn::Edge][0].value, elements[Tarn::Edge][1].value,
                          elements[Tarn::OneNode][0].value, elements[Tarn::Superelement][0].value, all.tri.value));
}

TEST_F(VolumeGrid, GivenCells_WhenBuilt_ThenPointsAreSharedAndNumberedInTheOrderInWhichCellsMeetThem) {
  Everything all;
  const auto grid = build(all.mesh, all.drawn, all.skin.scattered());
  // Nodes met: 5 2 | 2 3 | 3 1 5 | 6 | 6 4 0 | 0 1 4.
  const int order[] = {5, 2, 3, 1, 6, 4, 0};
  std::vector<std::uint64_t> expected_nodes;
  std::vector<Point> expected_points;
  for (const int node : order) {
    expected_nodes.push_back(all.mesh.nodes[static_cast<std::size_t>(node)].value);
    expected_points.push_back({1.0 * node, 10.0 * node, 100.0 * node});
  }
  EXPECT_EQ(handle_values(grid->GetPointData(), "NodeIds"), expected_nodes);
  EXPECT_EQ(points_of(grid), expected_points);
  EXPECT_THAT(cell_points(grid),
              ElementsAre(Ids{0}, Ids{1}, Ids{1, 2}, Ids{2, 3, 0}, Ids{4}, Ids{4, 5, 6}, Ids{6, 3, 5}));
}

TEST_F(VolumeGrid, GivenAnEmptySet_WhenBuilt_ThenTheHandleArraysAreThereAndEmpty) {
  const NamedMesh nothing;
  const auto grid = build(nothing, MeshVector());
  EXPECT_EQ(grid->GetNumberOfPoints(), 0);
  EXPECT_EQ(grid->GetNumberOfCells(), 0);
  EXPECT_THAT(handle_values(grid->GetPointData(), "NodeIds"), IsEmpty());
  EXPECT_THAT(handle_values(grid->GetCellData(), "ElemIds"), IsEmpty());
  EXPECT_THAT(recorder->calls(), IsEmpty());
}

TEST_F(VolumeGrid, GivenOneColor_WhenBuilt_ThenOnlyTheHandleArraysAreThereAndNotAsAttributes) {
  Everything all;
  const auto grid = build(all.mesh, all.drawn, all.skin.scattered());
  for (vtkDataSetAttributes* data : {static_cast<vtkDataSetAttributes*>(grid->GetPointData()),
                                     static_cast<vtkDataSetAttributes*>(grid->GetCellData())}) {
    EXPECT_EQ(data->GetNumberOfArrays(), 1);
    for (int type = 0; type < vtkDataSetAttributes::NUM_ATTRIBUTES; ++type)
      EXPECT_EQ(data->GetAbstractAttribute(type), nullptr);
  }
}

struct FaceRow {
  int kind, node_count, cell_type, points;
};

class VolumeGridFaces : public VolumeGrid, public ::testing::WithParamInterface<int> {};

TEST_P(VolumeGridFaces, GivenAFaceOfEachKindAndNodeCount_WhenBuilt_ThenTheTableSaysWhatIsDrawn) {
  const FaceRow drawn[] = {
      {3, 3, VTK_TRIANGLE, 3},           {3, 4, VTK_TRIANGLE, 3},      {3, 6, VTK_QUADRATIC_TRIANGLE, 6},
      {3, 7, VTK_QUADRATIC_TRIANGLE, 6}, {4, 4, VTK_QUAD, 4},          {4, 5, VTK_QUAD, 4},
      {4, 8, VTK_QUADRATIC_QUAD, 8},     {4, 9, VTK_QUADRATIC_QUAD, 8}};
  const int kind = GetParam();
  for (int count = 0; count <= 10; ++count) {
    const NamedMesh mesh = lone_nodes(10);
    SideList skin;
    skin.add(kind, {mesh.nodes.begin(), mesh.nodes.begin() + count}, {77});
    // A neighbour on either side shows that nothing shifts.
    SideList between;
    between.add(3, {mesh.nodes[0], mesh.nodes[1], mesh.nodes[2]}, {1});
    between.add(kind, {mesh.nodes.begin(), mesh.nodes.begin() + count}, {77});
    between.add(4, {mesh.nodes[0], mesh.nodes[1], mesh.nodes[2], mesh.nodes[3]}, {2});
    const FaceRow* row = std::find_if(std::begin(drawn), std::end(drawn), [&](const FaceRow& candidate) {
      return candidate.kind == kind && candidate.node_count == count;
    });
    const bool is_drawn = row != std::end(drawn);

    const auto alone = build(mesh, MeshVector(), skin.scattered());
    ASSERT_EQ(alone->GetNumberOfCells(), is_drawn ? 1 : 0) << "kind " << kind << ", " << count << " nodes";
    EXPECT_EQ(alone->GetCellData()->GetArray("ElemIds")->GetNumberOfTuples(), alone->GetNumberOfCells());
    EXPECT_EQ(alone->GetNumberOfPoints(), is_drawn ? row->points : 0) << "kind " << kind << ", " << count << " nodes";
    if (is_drawn) {
      EXPECT_EQ(alone->GetCellType(0), row->cell_type) << "kind " << kind << ", " << count << " nodes";
      Ids points(static_cast<std::size_t>(row->points));
      std::iota(points.begin(), points.end(), 0);
      EXPECT_THAT(cell_points(alone), ElementsAre(points));
    }
    for (const auto& sides : {between.scattered(), between.in_one_block()}) {
      const auto grid = build(mesh, MeshVector(), sides);
      const auto ids = handle_values(grid->GetCellData(), "ElemIds");
      if (is_drawn)
        EXPECT_THAT(ids, ElementsAre(1, 77, 2));
      else
        EXPECT_THAT(ids, ElementsAre(1, 2));
      EXPECT_THAT(cell_points(grid).back(), ElementsAre(0, 1, 2, 3));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, VolumeGridFaces, ::testing::Values(0, 2, 3, 4, 5, 9));

TEST_F(VolumeGrid, GivenANodeInTheSetAndInAnElement_WhenBuilt_ThenItHasOnePointAndAVertexBesides) {
  const NamedMesh chain = edge_chain(1);
  MeshVector mesh = chain.mesh;
  mesh.nodes = {chain.nodes[1]};
  const auto grid = build(chain, mesh);
  EXPECT_EQ(grid->GetNumberOfPoints(), 2);
  EXPECT_THAT(cell_types(grid), ElementsAre(VTK_VERTEX, VTK_POLY_LINE));
  EXPECT_THAT(cell_points(grid), ElementsAre(Ids{0}, Ids{1, 0}));
}

TEST_F(VolumeGrid, GivenDuplicates_WhenBuilt_ThenEachEntryIsDrawnOnItsOwn) {
  const NamedMesh chain = edge_chain(1);
  MeshVector mesh;
  mesh.nodes = {chain.nodes[0], chain.nodes[0]};
  mesh.elements[Tarn::Edge] = {chain.mesh.elements[Tarn::Edge][0], chain.mesh.elements[Tarn::Edge][0]};
  const auto grid = build(chain, mesh);
  EXPECT_EQ(grid->GetNumberOfPoints(), 2);
  EXPECT_EQ(grid->GetNumberOfCells(), 4);
}

TEST_F(VolumeGrid, GivenSuperelementsOfManySizes_WhenBuilt_ThenEachHasAllItsNodes) {
  NamedMesh mesh;
  for (const int count : {1, 7, 3})
    mesh.add_own_element(Tarn::Superelement, count);
  const auto grid = build(mesh, mesh.mesh);
  EXPECT_THAT(cell_types(grid), Each(VTK_POLY_VERTEX));
  EXPECT_THAT(cell_points(grid), ElementsAre(Ids{0}, Ids{1, 2, 3, 4, 5, 6, 7}, Ids{8, 9, 10}));
}

// ------------------------------------------------------------------------------------------ database calls

TEST_F(VolumeGrid, GivenAllLists_WhenBuilt_ThenIdsOfEachListAreAskedForWithOneCall) {
  Everything all;
  all.skin.add(3, {all.mesh.nodes[4], all.mesh.nodes[1], all.mesh.nodes[6]}, all.tri);
  for (const auto& skin : {all.skin.scattered(), all.skin.in_one_block()}) {
    build(all.mesh, all.drawn, skin);
    const auto calls = recorder->calls("get_node_ids");
    ASSERT_EQ(calls.size(), 5u);
    const auto expect_nodes = [&](std::size_t call, const std::vector<std::size_t>& nodes) {
      std::vector<std::uint64_t> expected;
      for (const std::size_t node : nodes)
        expected.push_back(all.mesh.nodes[node].value);
      EXPECT_EQ(calls[call].handles, expected) << "call " << call;
    };
    expect_nodes(0, {5, 2});
    expect_nodes(1, {2, 3, 3, 1, 5});
    expect_nodes(2, {6});
    expect_nodes(3, {6, 4, 0});
    expect_nodes(4, {0, 1, 4, 4, 1, 6});
    EXPECT_EQ(recorder->count("get_connectivity"), 3u);
    EXPECT_EQ(recorder->count("get_coordinate_arrays"), 1u);
    EXPECT_EQ(recorder->calls().size(), 9u);
  }
}

TEST_F(VolumeGrid, GivenCentreNodes_WhenBuilt_ThenTheyAreNotAskedAbout) {
  const NamedMesh mesh = lone_nodes(9);
  SideList skin;
  skin.add(4, mesh.nodes, {5});
  for (const auto& sides : {skin.scattered(), skin.in_one_block()}) {
    build(mesh, MeshVector(), sides);
    ASSERT_EQ(recorder->count("get_node_ids"), 1u);
    EXPECT_EQ(recorder->calls("get_node_ids")[0].handles.size(), 8u);
    EXPECT_EQ(recorder->calls("get_coordinate_arrays")[0].handles.size(), 8u);
  }
}

TEST_F(VolumeGrid, GivenManyNodes_WhenBuilt_ThenEachIsReadOnceInBatchesOfAThousand) {
  struct Row {
    int nodes;
    std::vector<std::size_t> batches;
  };
  for (const Row& row :
       {Row{1, {1}}, Row{999, {999}}, Row{1000, {1000}}, Row{1001, {1000, 1}}, Row{2500, {1000, 1000, 500}}}) {
    NamedMesh mesh = lone_nodes(row.nodes);
    mesh.mesh.nodes = mesh.nodes;
    mesh.mesh.nodes.insert(mesh.mesh.nodes.end(), mesh.nodes.begin(), mesh.nodes.end());
    const auto grid = build(mesh, mesh.mesh);
    std::vector<std::size_t> batches;
    std::vector<std::uint64_t> read;
    for (const DatabaseCall& call : recorder->calls("get_coordinate_arrays")) {
      batches.push_back(call.handles.size());
      read.insert(read.end(), call.handles.begin(), call.handles.end());
    }
    EXPECT_EQ(batches, row.batches);
    EXPECT_EQ(read, values_of(mesh.nodes));
    ASSERT_EQ(grid->GetNumberOfPoints(), row.nodes);
    for (int i = 0; i < row.nodes; ++i)
      ASSERT_EQ(grid->GetPoint(i)[0], i);
  }
}

// ------------------------------------------------------------------------------------------ ids

/// Gives nodes the local ids of a table.
class OddIds : public RecordingMeshData {
public:
  OddIds(NamedMesh& mesh, std::vector<int> ids)
      : RecordingMeshData(*mesh.database), mesh_(mesh), ids_(std::move(ids)) {}
  void get_node_ids(Count count, const Node* nodes, int* ids) override {
    for (Count i = 0; i < count; ++i) {
      const auto found = std::find(mesh_.nodes.begin(), mesh_.nodes.end(), nodes[i]);
      ids[i] = ids_.at(static_cast<std::size_t>(found - mesh_.nodes.begin()));
    }
  }

private:
  NamedMesh& mesh_;
  std::vector<int> ids_;
};

TEST_F(VolumeGrid, GivenIdsThatAreZeroNegativeOrFarApart_WhenBuilt_ThenEachNodeHasItsPoint) {
  NamedMesh mesh = edge_chain(5);
  recorder = std::make_unique<OddIds>(
      mesh, std::vector<int>{0, -1, 1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), 4096});
  const auto grid = build(mesh.mesh);
  EXPECT_EQ(handle_values(grid->GetPointData(), "NodeIds"), values_of(mesh.nodes));
  EXPECT_THAT(cell_points(grid), ElementsAre(Ids{0, 1}, Ids{1, 2}, Ids{2, 3}, Ids{3, 4}, Ids{4, 5}));
}

TEST_F(VolumeGrid, GivenTwoNodesWithOneId_WhenBuilt_ThenTheyAreOnePointThatStandsForTheFirst) {
  NamedMesh mesh = edge_chain(2);
  recorder = std::make_unique<OddIds>(mesh, std::vector<int>{7, 8, 7});
  const auto grid = build(mesh.mesh);
  EXPECT_THAT(handle_values(grid->GetPointData(), "NodeIds"), ElementsAre(mesh.nodes[0].value, mesh.nodes[1].value));
  EXPECT_THAT(cell_points(grid), ElementsAre(Ids{0, 1}, Ids{1, 0}));
}

// ------------------------------------------------------------------------------------------ colours

TEST_F(VolumeGrid, GivenCellColors_WhenBuilt_ThenEachCellHasItsEntitysColor) {
  Everything all;
  all.mesh.add_own_element(Tarn::Hex, 8);
  const auto hex = all.mesh.mesh.elements[Tarn::Hex][0];
  all.skin.add(4, {all.mesh.nodes[8], all.mesh.nodes[7], all.mesh.nodes[10], all.mesh.nodes[9]}, hex, 2);
  all.drawn.elements[Tarn::Tri] = {all.tri};
  all.drawn.elements[Tarn::Hex] = {{}, {}, hex};
  color_type = GMeshGroup::CellColors;
  node_colors = {color_number(1), color_number(2)};
  element_colors[Tarn::Edge] = {color_number(3), color_number(4)};
  element_colors[Tarn::OneNode] = {color_number(5)};
  element_colors[Tarn::Superelement] = {color_number(6)};
  element_colors[Tarn::Tri] = {color_number(7)};
  element_colors[Tarn::Hex] = {color_number(98), color_number(99), color_number(8)};
  const auto grid = build(all.mesh, all.drawn, all.skin.scattered());
  std::vector<Color> expected;
  for (int i = 1; i <= 8; ++i)
    expected.push_back(channels(color_number(i)));
  EXPECT_EQ(scalar_colors(grid->GetCellData()), expected);
  EXPECT_EQ(grid->GetCellData()->GetNumberOfArrays(), 2);
  EXPECT_EQ(grid->GetPointData()->GetScalars(), nullptr);
  EXPECT_EQ(grid->GetPointData()->GetNumberOfArrays(), 1);
}

TEST_F(VolumeGrid, GivenPositions_WhenBuilt_ThenColorsAreLookedUpThere) {
  Everything all;
  color_type = GMeshGroup::CellColors;
  for (int i = 0; i < 10; ++i)
    node_colors.push_back(color_number(i));
  for (std::size_t type = 1; type < 10; ++type)
    for (int i = 0; i < 10; ++i)
      element_colors[type].push_back(color_number(100 * static_cast<int>(type) + i));
  const std::vector<int> nodes = {9, 4};
  const std::vector<int> elements[10] = {{}, {8}, {3, 6}, {}, {}, {}, {}, {}, {}, {5}};
  node_positions = &nodes;
  element_positions = &elements;
  const auto grid = build(all.mesh, all.drawn);
  EXPECT_THAT(scalar_colors(grid->GetCellData()),
              ElementsAre(channels(color_number(9)), channels(color_number(4)), channels(color_number(203)),
                          channels(color_number(206)), channels(color_number(108)), channels(color_number(905))));
}

TEST_F(VolumeGrid, GivenPositionsInAnyOrder_WhenBuilt_ThenFacesHaveTheColorsOfTheirElements) {
  Everything all;
  const auto other = all.mesh.add_element(Tarn::Tri, {2, 1, 4});
  const auto quad = all.mesh.add_element(Tarn::Quad, {0, 1, 4, 2});
  SideList skin;
  skin.add(4, {all.mesh.nodes[0], all.mesh.nodes[1], all.mesh.nodes[4], all.mesh.nodes[2]}, quad, 3);
  skin.add(3, {all.mesh.nodes[0], all.mesh.nodes[1], all.mesh.nodes[4]}, all.tri, 6);
  skin.add(3, {all.mesh.nodes[2], all.mesh.nodes[1], all.mesh.nodes[4]}, other, 3);
  color_type = GMeshGroup::CellColors;
  for (int i = 0; i < 10; ++i) {
    element_colors[Tarn::Tri].push_back(color_number(300 + i));
    element_colors[Tarn::Quad].push_back(color_number(400 + i));
  }
  MeshVector drawn;
  drawn.elements[Tarn::Quad] = {quad};
  for (const bool ascending : {true, false}) {
    drawn.elements[Tarn::Tri] = ascending ? std::vector{other, all.tri} : std::vector{all.tri, other};
    std::vector<int> elements[10];
    elements[Tarn::Tri] = ascending ? std::vector{3, 6} : std::vector{6, 3};
    elements[Tarn::Quad] = {3};
    element_positions = &elements;
    EXPECT_THAT(scalar_colors(build(all.mesh, drawn, skin.scattered())->GetCellData()),
                ElementsAre(channels(color_number(403)), channels(color_number(306)), channels(color_number(303))));
  }
}

TEST_F(VolumeGrid, GivenColorListsThatAreTooShort_WhenBuilt_ThenTheRestIsWhite) {
  Everything all;
  all.skin.add(3, {all.mesh.nodes[0], all.mesh.nodes[1], all.mesh.nodes[2]}, all.tri, -1);
  all.skin.add(3, {all.mesh.nodes[0], all.mesh.nodes[1], all.mesh.nodes[2]}, all.tri, 1);
  color_type = GMeshGroup::CellColors;
  node_colors = {color_number(1)};
  element_colors[Tarn::Edge] = {color_number(3)};
  element_colors[Tarn::Tri] = {color_number(7)};
  all.drawn.elements[Tarn::Tri] = {all.tri, all.tri};
  const auto grid = build(all.mesh, all.drawn, all.skin.scattered());
  EXPECT_THAT(scalar_colors(grid->GetCellData()),
              ElementsAre(channels(color_number(1)), white, channels(color_number(3)), white, white, white,
                          channels(color_number(7)), white, white));
}

TEST_F(VolumeGrid, GivenFacesOfElementsThatNoListHas_WhenBuilt_ThenTheyAreWhite) {
  Everything all;
  color_type = GMeshGroup::CellColors;
  for (auto& colors : element_colors)
    colors = {color_number(7)};
  MeshVector drawn;
  EXPECT_THAT(scalar_colors(build(all.mesh, drawn, all.skin.scattered())->GetCellData()), ElementsAre(white));
  drawn.elements[Tarn::Tri] = {{all.tri.value + 1}, all.tri};
  EXPECT_THAT(scalar_colors(build(all.mesh, drawn, all.skin.scattered())->GetCellData()), ElementsAre(white));
}

TEST_F(VolumeGrid, GivenCellColors_WhenBuilt_ThenTheDatabaseIsNotAskedForKinds) {
  Everything all;
  all.drawn.elements[Tarn::Tri] = {all.tri};
  color_type = GMeshGroup::CellColors;
  build(all.mesh, all.drawn, all.skin.scattered());
  EXPECT_EQ(recorder->count("get_element_types"), 0u);
}

TEST_F(VolumeGrid, GivenSkippedFaces_WhenBuiltWithCellColors_ThenColorsAreTrimmedToo) {
  const NamedMesh mesh = lone_nodes(5);
  SideList skin;
  skin.add(3, {mesh.nodes.begin(), mesh.nodes.begin() + 5}, {1});
  skin.add(3, {mesh.nodes.begin(), mesh.nodes.begin() + 3}, {2});
  color_type = GMeshGroup::CellColors;
  const auto grid = build(mesh, MeshVector(), skin.scattered());
  EXPECT_EQ(grid->GetNumberOfCells(), 1);
  EXPECT_EQ(scalar_colors(grid->GetCellData()).size(), 1u);
}

TEST_F(VolumeGrid, GivenVertexColors_WhenBuilt_ThenEachPointHasItsNodesColorOrTheSingleOne) {
  Everything all;
  color_type = GMeshGroup::VertexColors;
  vertex_colors[all.mesh.nodes[2]] = color_number(2);
  vertex_colors[all.mesh.nodes[4]] = color_number(4);
  vertex_colors[{~std::uint64_t(0)}] = color_number(9);
  const auto grid = build(all.mesh, all.drawn, all.skin.scattered());
  const Color one = channels(single);
  // Points stand for the nodes 5 2 3 1 6 4 0.
  EXPECT_THAT(scalar_colors(grid->GetPointData()),
              ElementsAre(one, channels(color_number(2)), one, one, one, channels(color_number(4)), one));
  EXPECT_EQ(grid->GetPointData()->GetNumberOfArrays(), 2);
  EXPECT_EQ(grid->GetCellData()->GetScalars(), nullptr);
  EXPECT_EQ(grid->GetCellData()->GetNumberOfArrays(), 1);
}

// ------------------------------------------------------------------------------------------ precision and storage

TEST_F(VolumeGrid, GivenMeshesNearAndFar_WhenBuilt_ThenPointsAreSingleUnlessThatWouldShow) {
  for (const double offset : {0.0, 900.0, 1e7}) {
    NamedMesh mesh;
    mesh.add_node(offset, 0, 0);
    mesh.add_node(offset + 1.25, 0, 0);
    mesh.add_element(Tarn::Edge, {0, 1});
    const auto grid = build(mesh, mesh.mesh);
    EXPECT_EQ(grid->GetPoints()->GetDataType(), offset > 1250 ? VTK_DOUBLE : VTK_FLOAT) << offset;
    EXPECT_EQ(grid->GetPoint(1)[0] - grid->GetPoint(0)[0], 1.25) << offset;
  }
}

TEST_F(VolumeGrid, GivenTwoBuilds_WhenCompared_ThenTheyAreTwoGridsWithEqualContent) {
  Everything all;
  const auto first = build(all.mesh, all.drawn, all.skin.scattered());
  const auto second = build(all.mesh, all.drawn, all.skin.in_one_block());
  EXPECT_NE(first, second);
  EXPECT_EQ(difference(first, second), "");
}

TEST_F(VolumeGrid, GivenCells_WhenTheirUsesOfPointsDoNotFit_ThenIdsAreWideAndEverythingElseIsTheSame) {
  Everything all;
  color_type = GMeshGroup::CellColors;
  for (const bool failing : {false, true}) {
    if (failing) spoil = [](RecordingMeshData& db) { db.fail("get_node_ids"); };
    narrow_uses = std::numeric_limits<std::int32_t>::max();
    const auto narrow = build(all.mesh, all.drawn, all.skin.scattered());
    EXPECT_FALSE(narrow->GetCells()->IsStorage64Bit());
    const auto calls = recorder->operations();
    // Two nodes, two edges with room for three nodes, one and three point-like nodes, and room for eight of a face.
    narrow_uses = 2 + 6 + 1 + 3 + 8;
    EXPECT_FALSE(build(all.mesh, all.drawn, all.skin.scattered())->GetCells()->IsStorage64Bit());
    --narrow_uses;
    const auto wide = build(all.mesh, all.drawn, all.skin.scattered());
    EXPECT_TRUE(wide->GetCells()->IsStorage64Bit());
    EXPECT_EQ(difference(narrow, wide), "");
    EXPECT_EQ(recorder->operations(), calls);
  }
}

TEST_F(VolumeGrid, GivenAGrid_WhenItsArraysAreMeasured_ThenNoneHoldsRoomThatIsNotUsed) {
  const NamedMesh mesh = quad_sheet(30, 30);
  SideList skin;
  for (const auto quad : mesh.mesh.elements[Tarn::Quad]) {
    std::vector<Tarn::Handle<0>> nodes(4);
    Tarn::MeshData::Count count = 4;
    ASSERT_EQ(mesh.database->get_element_connectivity(quad, &count, nodes.data()), 0);
    skin.add(4, nodes, quad);
  }
  const auto grid = build(mesh, MeshVector(), skin.scattered());
  auto* node_ids = vtkTypeUInt64Array::SafeDownCast(grid->GetPointData()->GetArray("NodeIds"));
  ASSERT_EQ(node_ids->GetNumberOfTuples(), 31 * 31);
  EXPECT_EQ(node_ids->GetSize(), 31 * 31);
  EXPECT_TRUE(grid->GetCells()->IsValid());
  EXPECT_FALSE(grid->GetCells()->IsStorage64Bit());
}

// ------------------------------------------------------------------------------------------ failures

TEST_F(VolumeGrid, GivenNullNodes_WhenBuilt_ThenTheirVerticesAreLeftOut) {
  const NamedMesh mesh = lone_nodes(2);
  MeshVector drawn;
  drawn.nodes = {{}, mesh.nodes[1], {}, mesh.nodes[0]};
  color_type = GMeshGroup::CellColors;
  node_colors = {color_number(0), color_number(1), color_number(2), color_number(3)};
  const auto grid = build(mesh, drawn);
  EXPECT_THAT(handle_values(grid->GetPointData(), "NodeIds"), ElementsAre(mesh.nodes[1].value, mesh.nodes[0].value));
  EXPECT_THAT(cell_points(grid), ElementsAre(Ids{0}, Ids{1}));
  EXPECT_THAT(scalar_colors(grid->GetCellData()), ElementsAre(channels(color_number(1)), channels(color_number(3))));
  for (const DatabaseCall& call : recorder->calls())
    EXPECT_THAT(call.handles, Each(::testing::Ne(0u))) << call.operation;
}

TEST_F(VolumeGrid, GivenLostElements_WhenBuilt_ThenTheyAreLeftOutAndTheOthersKeepTheirColors) {
  NamedMesh mesh = edge_chain(3);
  for (const int count : {2, 2})
    mesh.add_own_element(Tarn::Superelement, count);
  mesh.add_own_element(Tarn::OneNode, 1);
  color_type = GMeshGroup::CellColors;
  element_colors[Tarn::Edge] = {color_number(0), color_number(1), color_number(2)};
  element_colors[Tarn::Superelement] = {color_number(3), color_number(4)};
  const auto& elements = mesh.mesh.elements;
  spoil = [&](RecordingMeshData& db) {
    db.lose(elements[Tarn::Edge][1]);
    db.lose(elements[Tarn::OneNode][0]);
    db.lose(elements[Tarn::Superelement][0]);
  };
  const auto grid = build(mesh, mesh.mesh);
  EXPECT_THAT(
      handle_values(grid->GetCellData(), "ElemIds"),
      ElementsAre(elements[Tarn::Edge][0].value, elements[Tarn::Edge][2].value, elements[Tarn::Superelement][1].value));
  EXPECT_THAT(cell_points(grid), ElementsAre(Ids{0, 1}, Ids{2, 3}, Ids{4, 5}));
  EXPECT_THAT(scalar_colors(grid->GetCellData()),
              ElementsAre(channels(color_number(0)), channels(color_number(2)), channels(color_number(4))));
}

TEST_F(VolumeGrid, GivenFacesThatLackANode_WhenBuilt_ThenTheyAreLeftOut) {
  const NamedMesh mesh = lone_nodes(5);
  SideList skin;
  skin.add(3, {mesh.nodes[0], {}, mesh.nodes[2]}, {1});
  skin.add(3, {mesh.nodes[0], mesh.nodes[1], mesh.nodes[2], {}}, {2}); // only the centre
  skin.add(4, {mesh.nodes[0], mesh.nodes[1], mesh.nodes[2], {}}, {3});
  for (const auto& sides : {skin.scattered(), skin.in_one_block()})
    EXPECT_THAT(handle_values(build(mesh, MeshVector(), sides)->GetCellData(), "ElemIds"), ElementsAre(2));
}

TEST_F(VolumeGrid, GivenAnOperationThatFails_WhenBuilt_ThenTheGridIsStillWhole) {
  Everything all;
  struct Row {
    const char* operation;
    vtkIdType cells;
    vtkIdType points;
  };
  // Without connectivity only nodes and faces are left; without ids every node is number 0.
  for (const Row row : {Row{"get_connectivity", 3, 5}, Row{"get_node_ids", 7, 1}, Row{"get_coordinate_arrays", 7, 7}}) {
    spoil = [&](RecordingMeshData& db) { db.fail(row.operation); };
    const auto grid = build(all.mesh, all.drawn, all.skin.scattered());
    EXPECT_EQ(grid->GetNumberOfCells(), row.cells) << row.operation;
    ASSERT_EQ(grid->GetNumberOfPoints(), row.points) << row.operation;
    for (const Ids& points : cell_points(grid))
      EXPECT_THAT(points, Each(::testing::AllOf(::testing::Ge(0), ::testing::Lt(row.points)))) << row.operation;
    EXPECT_TRUE(grid->GetCells()->IsValid());
  }
}

TEST_F(VolumeGrid, GivenABatchOfCoordinatesThatFails_WhenBuilt_ThenItsNodesLieAtTheOriginAndOnlyThey) {
  NamedMesh mesh = lone_nodes(2500);
  mesh.mesh.nodes = mesh.nodes;
  spoil = [&](RecordingMeshData& db) {
    db.fail_call("get_coordinate_arrays", 1);
    db.lose(mesh.nodes[2400]);
  };
  const auto grid = build(mesh, mesh.mesh);
  ASSERT_EQ(grid->GetNumberOfPoints(), 2500);
  EXPECT_EQ(grid->GetPoint(999)[0], 999);
  for (const vtkIdType point : {1000, 1999})
    for (int axis = 0; axis < 3; ++axis)
      EXPECT_EQ(grid->GetPoint(point)[axis], 0) << point << ", axis " << axis;
  EXPECT_EQ(grid->GetPoint(2000)[0], 2000);
  EXPECT_EQ(grid->GetPoint(2499)[0], 2499);
}

TEST_F(VolumeGrid, GivenAFalseLengthOfConnectivity_WhenBuilt_ThenItIsNotBelieved) {
  Everything all;
  const auto expected = build(all.mesh, all.drawn);
  for (const std::uint64_t length : {std::uint64_t(0), std::uint64_t(1), ~std::uint64_t(0)}) {
    spoil = [&](RecordingMeshData& db) { db.report_count("get_connectivity", length); };
    EXPECT_EQ(difference(build(all.mesh, all.drawn), expected), "");
  }
}

} // namespace
