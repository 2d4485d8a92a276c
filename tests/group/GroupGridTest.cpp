// When a group rebuilds or refills its grid, and what the colours and the shrink factor make of it.

#include "tests/group/DerivedDataFixture.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkNew.h>
#include <vtkPlane.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace group_test;
using namespace test_support;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// ------------------------------------------------------------------------------------------ the grid

TEST_F(DerivedData, GivenAHex_WhenItsGridIsAskedFor_ThenItIsItsSkinInASingleColor) {
  show(one_hex());
  group->set_color({9, 8, 7, 6});
  auto* grid = group->get_2d_data();
  EXPECT_THAT(cell_types(grid), ElementsAre(VTK_QUAD, VTK_QUAD, VTK_QUAD, VTK_QUAD, VTK_QUAD, VTK_QUAD));
  EXPECT_EQ(grid->GetNumberOfPoints(), 8);
  EXPECT_THAT(handle_values(grid->GetCellData(), "ElemIds"), Each(mesh.mesh.elements[Tarn::Hex][0].value));
  EXPECT_EQ(handle_values(grid->GetPointData(), "NodeIds").size(), 8u);
  EXPECT_THAT(scalar_colors(grid->GetCellData()), ::testing::AllOf(::testing::SizeIs(6), Each(Color{9, 8, 7, 6})));
  EXPECT_THAT(scalar_colors(grid->GetPointData()), ::testing::AllOf(::testing::SizeIs(8), Each(Color{9, 8, 7, 6})));
  EXPECT_EQ(grid->GetCellData()->GetNumberOfArrays(), 2);
  EXPECT_EQ(grid->GetPointData()->GetNumberOfArrays(), 2);
  EXPECT_EQ(GMeshGroup::get_group(grid), group.get());
}

TEST_F(DerivedData, GivenTwoHexes_WhenTheirGridIsAskedFor_ThenTheSharedSideIsNotThere) {
  show(two_hexes());
  EXPECT_EQ(group->get_2d_data()->GetNumberOfCells(), 10);
  EXPECT_EQ(group->get_2d_data()->GetNumberOfPoints(), 12);
}

TEST_F(DerivedData, GivenAHexUnderItsSkin_WhenColoredByCell_ThenTheShellsStandForTheSides) {
  show(one_hex_and_its_skin());
  std::array<std::vector<TovanColor>, 10> colors;
  for (int i = 0; i < 6; ++i)
    colors[Tarn::Quad].push_back(color_number(i));
  colors[Tarn::Hex] = {color_number(77)};
  group->set_cell_color_array({}, colors);
  auto* grid = group->get_2d_data();
  EXPECT_EQ(handle_values(grid->GetCellData(), "ElemIds"), values_of(mesh.mesh.elements[Tarn::Quad]));
  std::vector<Color> expected;
  for (int i = 0; i < 6; ++i)
    expected.push_back(channels(color_number(i)));
  EXPECT_EQ(scalar_colors(grid->GetCellData()), expected);
}

TEST_F(DerivedData, GivenSolidsOfAllKinds_WhenColoredByCell_ThenEachSideHasItsElementsColor) {
  NamedMesh solids;
  const std::pair<Tarn::ElementType, int> kinds[] = {{Tarn::Tet, 4},     {Tarn::Hex, 8}, {Tarn::Wedge, 6},
                                                     {Tarn::Pyramid, 5}, {Tarn::Tri, 3}, {Tarn::Quad, 4}};
  std::array<std::vector<TovanColor>, 10> colors;
  std::map<std::uint64_t, Color> expected;
  double x = 0;
  for (int round = 0; round < 2; ++round)
    for (const auto& [kind, count] : kinds) {
      const auto element = solids.add_own_element(kind, count, x += 2);
      colors[kind].push_back(color_number(static_cast<int>(kind) * 10 + round));
      expected[element.value] = channels(colors[kind].back());
    }
  show(std::move(solids));
  group->set_cell_color_array({}, colors);
  auto* grid = group->get_2d_data();
  const auto elements = handle_values(grid->GetCellData(), "ElemIds");
  const auto cell_colors = scalar_colors(grid->GetCellData());
  ASSERT_EQ(elements.size(), 2u * (4 + 6 + 5 + 5 + 1 + 1));
  for (std::size_t i = 0; i < elements.size(); ++i)
    EXPECT_EQ(cell_colors[i], expected[elements[i]]) << i;
  std::vector<std::uint64_t> order;
  for (const auto& [kind, sides] :
       {std::pair{Tarn::Quad, 1}, {Tarn::Tri, 1}, {Tarn::Hex, 6}, {Tarn::Tet, 4}, {Tarn::Pyramid, 5}, {Tarn::Wedge, 5}})
    for (const auto element : mesh.mesh.elements[kind])
      order.insert(order.end(), static_cast<std::size_t>(sides), element.value);
  EXPECT_EQ(elements, order);
}

// So many that lists are handed to the skinner in several slices.
TEST_F(DerivedData, GivenVeryManyShells_WhenColoredByCell_ThenEachHasItsOwnColor) {
  show(quad_sheet(130, 130));
  const auto& quads = mesh.mesh.elements[Tarn::Quad];
  std::array<std::vector<TovanColor>, 10> colors;
  for (std::size_t i = 0; i < quads.size(); ++i)
    colors[Tarn::Quad].push_back(color_number(static_cast<int>(i)));
  group->set_cell_color_array({}, colors);
  const auto cell_colors = scalar_colors(group->get_2d_data()->GetCellData());
  ASSERT_EQ(cell_colors.size(), 16900u);
  for (std::size_t i = 0; i < cell_colors.size(); ++i)
    ASSERT_EQ(cell_colors[i], channels(colors[Tarn::Quad][i])) << i;
}

TEST_F(DerivedData, GivenAnUnchangedGroup_WhenAskedTwice_ThenNothingIsRebuilt) {
  show_everything();
  auto* grid = group->get_2d_data();
  const vtkMTimeType built = grid->GetMTime();
  std::vector<vtkMTimeType> times;
  for (const Derived& which : derived)
    times.push_back(get(which)->GetMTime());
  db->forget_calls();
  EXPECT_EQ(group->get_2d_data(), grid);
  EXPECT_EQ(grid->GetMTime(), built);
  for (std::size_t i = 0; i < times.size(); ++i)
    EXPECT_EQ(get(derived[i])->GetMTime(), times[i]) << derived[i].name;
  EXPECT_THAT(db->calls(), IsEmpty());
  EXPECT_EQ(group->builds, 1);
}

TEST_F(DerivedData, GivenAReportedMove_WhenAskedAgain_ThenTheGridIsAnotherAndTheOldOneIsAsItWas) {
  show(edge_chain(1));
  vtkSmartPointer<vtkUnstructuredGrid> old = group->get_2d_data();
  const double moved[3] = {5, 6, 7};
  ASSERT_TRUE(mesh.database->move_nodes(1, &mesh.nodes[1], moved));
  EXPECT_EQ(group->get_2d_data(), old);
  group->notify_mesh_transformed();
  auto* grid = group->get_2d_data();
  EXPECT_NE(grid, old);
  EXPECT_EQ(points_of(grid)[1], (Point{5, 6, 7}));
  EXPECT_EQ(points_of(old)[1], (Point{1, 0, 0}));
  EXPECT_EQ(group->builds, 2);
}

TEST_F(DerivedData, GivenAnEmptyGroup_WhenBuilt_ThenTheGridHasItsArrays) {
  use(edge_chain(1));
  group->set_mesh(mesh.owner, MeshVector(), model.get());
  auto* grid = group->get_2d_data();
  EXPECT_EQ(group->builds, 1);
  EXPECT_THAT(handle_values(grid->GetPointData(), "NodeIds"), IsEmpty());
  EXPECT_THAT(handle_values(grid->GetCellData(), "ElemIds"), IsEmpty());
  EXPECT_THAT(scalar_colors(grid->GetPointData()), IsEmpty());
  EXPECT_THAT(scalar_colors(grid->GetCellData()), IsEmpty());
  for (const Derived& which : derived)
    EXPECT_EQ(get(which)->GetNumberOfCells(), 0) << which.name;
}

TEST_F(DerivedData, GivenAGroupWithoutAModel_WhenBuilt_ThenItIsEmpty) {
  vtkNew<vtkPlane> plane;
  OpenGroup fresh;
  fresh.set_clipping_plane(plane);
  EXPECT_EQ(fresh.get_2d_data()->GetNumberOfCells(), 0);
  fresh.set_clipping_plane(nullptr);
  EXPECT_EQ(fresh.get_2d_data()->GetNumberOfCells(), 0);
  fresh.set_shrink_factor(0.5F);
  fresh.notify_mesh_transformed();
  EXPECT_EQ(fresh.get_2d_data()->GetNumberOfCells(), 0);
  EXPECT_EQ(fresh.builds + fresh.shrunk_builds, 3);
  // Nor does it matter that it was given entities that nobody can tell anything about.
  show(edge_chain(1));
  fresh.add_mesh(group.get());
  EXPECT_EQ(fresh.get_2d_data()->GetNumberOfCells(), 0);
}

// ------------------------------------------------------------------------------------------ colours

TEST_F(DerivedData, GivenASingleColor_WhenItChanges_ThenOnlyTheColorArraysAreNew) {
  show_everything();
  auto* grid = group->get_2d_data();
  for (const Derived& which : derived)
    get(which);
  auto* points = grid->GetPoints();
  auto* coordinates = grid->GetPoints()->GetData();
  auto* cells = grid->GetCells();
  auto* connectivity = cells->GetConnectivityArray();
  auto* types = grid->GetCellTypesArray();
  auto* node_ids = grid->GetPointData()->GetArray("NodeIds");
  auto* elem_ids = grid->GetCellData()->GetArray("ElemIds");
  const vtkSmartPointer<vtkDataArray> old_cell_colors = grid->GetCellData()->GetScalars();
  const vtkSmartPointer<vtkDataArray> old_point_colors = grid->GetPointData()->GetScalars();
  const vtkMTimeType built = grid->GetMTime();
  db->forget_calls();

  group->set_color({1, 2, 3, 4});
  ASSERT_EQ(group->get_2d_data(), grid);
  EXPECT_EQ(grid->GetPoints(), points);
  EXPECT_EQ(grid->GetPoints()->GetData(), coordinates);
  EXPECT_EQ(grid->GetCells(), cells);
  EXPECT_EQ(cells->GetConnectivityArray(), connectivity);
  EXPECT_EQ(grid->GetCellTypesArray(), types);
  EXPECT_EQ(grid->GetPointData()->GetArray("NodeIds"), node_ids);
  EXPECT_EQ(grid->GetCellData()->GetArray("ElemIds"), elem_ids);
  EXPECT_THAT(scalar_colors(grid->GetCellData()), Each(Color{1, 2, 3, 4}));
  EXPECT_THAT(scalar_colors(grid->GetPointData()), Each(Color{1, 2, 3, 4}));
  EXPECT_EQ(scalar_colors(grid->GetCellData()).size(), static_cast<std::size_t>(grid->GetNumberOfCells()));
  EXPECT_EQ(grid->GetCellData()->GetNumberOfArrays(), 2);
  EXPECT_EQ(grid->GetPointData()->GetNumberOfArrays(), 2);
  EXPECT_GT(grid->GetMTime(), built);
  EXPECT_THAT(db->calls(), IsEmpty());
  EXPECT_EQ(group->builds, 1);
  // Others may share the old arrays.
  EXPECT_NE(grid->GetCellData()->GetScalars(), old_cell_colors);
  EXPECT_NE(grid->GetPointData()->GetScalars(), old_point_colors);
  EXPECT_EQ(old_cell_colors->GetComponent(0, 0), 255);
  EXPECT_EQ(old_point_colors->GetComponent(0, 0), 255);
}

TEST_F(DerivedData, GivenAColorChange_WhenDerivedDataAreAskedFor_ThenEachShowsItAndIsTheSameObject) {
  show_everything();
  for (const Derived& which : derived) {
    auto* before = get(which);
    ASSERT_GT(before->GetNumberOfPoints(), 0) << which.name;
    EXPECT_THAT(scalar_colors(before->GetPointData()), Each(white)) << which.name;
  }
  std::vector<vtkPolyData*> objects;
  for (const Derived& which : derived)
    objects.push_back(get(which));
  group->set_color({1, 2, 3, 4});
  for (std::size_t i = 0; i < std::size(derived); ++i) {
    EXPECT_EQ(get(derived[i]), objects[i]) << derived[i].name;
    EXPECT_THAT(scalar_colors(objects[i]->GetPointData()), Each(Color{1, 2, 3, 4})) << derived[i].name;
  }
}

TEST_F(DerivedData, GivenAColorChange_WhenNobodyAsks_ThenNothingIsTouched) {
  show(edge_chain(1));
  auto* grid = group->get_2d_data();
  const vtkMTimeType built = grid->GetMTime();
  group->set_color({1, 2, 3, 4});
  EXPECT_EQ(grid->GetMTime(), built);
  EXPECT_THAT(scalar_colors(grid->GetCellData()), Each(white));
}

TEST_F(DerivedData, GivenColorLists_WhenSetOnABuiltGroup_ThenTheyShowAfterTheMeshStampNextMoves) {
  show(edge_chain(2));
  auto* grid = group->get_2d_data();
  std::array<std::vector<TovanColor>, 10> colors;
  colors[Tarn::Edge] = {color_number(1), color_number(2)};
  group->set_cell_color_array({}, colors);
  const vtkMTimeType built = grid->GetMTime();
  EXPECT_EQ(group->get_2d_data(), grid);
  EXPECT_EQ(grid->GetMTime(), built);
  EXPECT_THAT(scalar_colors(grid->GetCellData()), Each(white));
  group->notify_mesh_transformed();
  EXPECT_THAT(scalar_colors(group->get_2d_data()->GetCellData()),
              ElementsAre(channels(color_number(1)), channels(color_number(2))));
  EXPECT_EQ(group->get_2d_data()->GetPointData()->GetScalars(), nullptr);

  group->set_vertex_color_array({{mesh.nodes[1], color_number(3)}});
  EXPECT_EQ(group->get_2d_data()->GetPointData()->GetScalars(), nullptr);
  group->notify_mesh_transformed();
  EXPECT_THAT(scalar_colors(group->get_2d_data()->GetPointData()),
              ElementsAre(white, channels(color_number(3)), white));
  EXPECT_EQ(group->get_2d_data()->GetCellData()->GetScalars(), nullptr);
}

TEST_F(DerivedData, GivenColorLists_WhenTheSingleColorIsUpdated_ThenNothingHappens) {
  show(edge_chain(2));
  for (const bool by_vertex : {false, true}) {
    if (by_vertex)
      group->set_vertex_color_array({});
    else
      group->set_cell_color_array({}, {});
    group->notify_mesh_transformed();
    auto* grid = group->get_2d_data();
    const vtkMTimeType built = grid->GetMTime();
    group->update_color_array();
    EXPECT_EQ(grid->GetMTime(), built);
    EXPECT_EQ(grid->GetPointData()->GetScalars() != nullptr, by_vertex);
    EXPECT_EQ(grid->GetCellData()->GetScalars() != nullptr, !by_vertex);
  }
}

// ------------------------------------------------------------------------------------------ shrinking

TEST_F(DerivedData, GivenAShrinkFactor_WhenTheMeshStampMoves_ThenTheSameGridIsRefilledShrunk) {
  show_everything();
  auto* grid = group->get_2d_data();
  group->set_shrink_factor(0.5F);
  EXPECT_EQ(group->get_2d_data()->GetPointData()->HasArray("NodeIds"), 1);
  group->notify_mesh_transformed();
  EXPECT_EQ(group->get_2d_data(), grid);
  EXPECT_EQ(group->shrunk_builds, 1);
  EXPECT_EQ(grid->GetPointData()->HasArray("NodeIds"), 0);
  EXPECT_EQ(grid->GetCellData()->HasArray("ElemIds"), 0);
  EXPECT_EQ(grid->GetNumberOfPoints(), 1 + 2 + 8 + 3);
  EXPECT_EQ(grid->GetNumberOfCells(), 1 + 1 + 6 + 1);
  EXPECT_THAT(scalar_colors(grid->GetCellData()), ::testing::AllOf(::testing::SizeIs(9), Each(white)));
  EXPECT_THAT(scalar_colors(grid->GetPointData()), ::testing::AllOf(::testing::SizeIs(14), Each(white)));
  EXPECT_EQ(GMeshGroup::get_group(grid), group.get());

  group->set_color({1, 2, 3, 4});
  EXPECT_EQ(group->get_2d_data(), grid);
  EXPECT_EQ(group->shrunk_builds, 1);
  EXPECT_THAT(scalar_colors(grid->GetCellData()), Each(Color{1, 2, 3, 4}));

  group->notify_mesh_transformed();
  EXPECT_EQ(group->get_2d_data(), grid);
  EXPECT_EQ(group->shrunk_builds, 2);
  group->set_shrink_factor(1.0F);
  group->notify_mesh_transformed();
  EXPECT_NE(group->get_2d_data(), grid);
  EXPECT_EQ(group->get_2d_data()->GetPointData()->HasArray("NodeIds"), 1);
}

TEST_F(DerivedData, GivenDerivedDataThatShareArrays_WhenTheGridIsShrunk_ThenTheyStayAsTheyAreUntilAskedFor) {
  show(two_hexes());
  auto* tri = group->get_tri_data();
  auto* node = group->get_node_data();
  vtkNew<vtkPolyData> tri_copy;
  tri_copy->DeepCopy(tri);
  vtkNew<vtkPolyData> node_copy;
  node_copy->DeepCopy(node);
  group->set_shrink_factor(0.5F);
  group->notify_mesh_transformed();
  group->get_2d_data();
  EXPECT_EQ(difference(tri, tri_copy), "");
  EXPECT_EQ(difference(node, node_copy), "");
  EXPECT_EQ(group->get_tri_data(), tri);
  EXPECT_EQ(tri->GetNumberOfPolys(), 12);
}

} // namespace
