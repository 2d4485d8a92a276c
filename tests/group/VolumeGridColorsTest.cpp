// The colours of a grid.

#include "tests/group/VolumeGridFixture.h"

#include <vtkCellData.h>
#include <vtkPointData.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace group_test;
using namespace test_support;
using ::testing::ElementsAre;

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

TEST_F(VolumeGrid, GivenPositionListsThatAreTooShort_WhenBuilt_ThenTheRestIsWhite) {
  Everything all;
  color_type = GMeshGroup::CellColors;
  node_colors = {color_number(1), color_number(2)};
  for (auto& colors : element_colors)
    colors = {color_number(3), color_number(4)};
  const std::vector<int> nodes = {1};
  const std::vector<int> elements[10] = {{}, {}, {1}};
  node_positions = &nodes;
  element_positions = &elements;
  EXPECT_THAT(scalar_colors(build(all.mesh, all.drawn, all.skin.scattered())->GetCellData()),
              ElementsAre(channels(color_number(2)), white, channels(color_number(4)), white, white, white, white));
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

} // namespace
