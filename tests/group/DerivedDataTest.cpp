// When a group rebuilds its data sets, what from, and which objects stay.

#include "group/SequentialFilter.h"
#include "model/GNodeGlypher.h"
#include "platform/base/GExtractEdges.h"
#include "tests/group/GroupFixture.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkFieldData.h>
#include <vtkGeometryFilter.h>
#include <vtkIntArray.h>
#include <vtkNew.h>
#include <vtkPlane.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataNormals.h>
#include <vtkSMPTools.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>

#include <functional>

namespace {

using namespace group_test;
using namespace test_support;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Ids = std::vector<vtkIdType>;

constexpr Color white = {255, 255, 255, 255};

struct Derived {
  const char* name;
  vtkPolyData* (GMeshGroup::*get)();
};
const Derived derived[] = {{"tri", &GMeshGroup::get_tri_data},
                           {"wire", &GMeshGroup::get_wire_data},
                           {"edge", &GMeshGroup::get_edge_data},
                           {"node", &GMeshGroup::get_node_data},
                           {"wire node", &GMeshGroup::get_wire_node_data}};

class DerivedData : public GroupFixture {
protected:
  vtkPolyData* get(const Derived& which) { return (group.get()->*which.get)(); }
  /// A mesh with something for each data set to show: nodes, edges, a superelement and a solid.
  void show_everything() {
    NamedMesh all = one_hex();
    all.add_element(Tarn::Edge, {0, 6});
    all.add_element(Tarn::OneNode, {3});
    all.add_element(Tarn::Superelement, {0, 1, 2});
    all.mesh.nodes = {all.nodes[5], all.nodes[6]};
    show(std::move(all));
  }
};

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

// ------------------------------------------------------------------------------------------ clipping

class Clipping : public DerivedData {
protected:
  void SetUp() override {
    NamedMesh chain = edge_chain(4);
    chain.mesh.nodes = chain.nodes;
    show(std::move(chain));
    plane->SetOrigin(2, 0, 0);
    plane->SetNormal(1, 0, 0);
  }
  vtkNew<vtkPlane> plane;
};

TEST_F(Clipping, GivenAPlane_WhenBuilt_ThenOnlyWhatLiesOnItsNearSideIsLeft) {
  const auto& edges = mesh.mesh.elements[Tarn::Edge];
  group->set_clipping_plane(plane);
  auto* grid = group->get_2d_data();
  // The edge that ends on the plane is not wholly beyond it.
  EXPECT_THAT(group->get_filtered_mesh().elements[Tarn::Edge], ElementsAre(edges[1], edges[2], edges[3]));
  EXPECT_THAT(group->get_filtered_mesh().nodes, ElementsAre(mesh.nodes[2], mesh.nodes[3], mesh.nodes[4]));
  EXPECT_EQ(group->get_mesh().size(), 9);
  EXPECT_THAT(handle_values(grid->GetCellData(), "ElemIds"),
              ElementsAre(0, 0, 0, edges[1].value, edges[2].value, edges[3].value));
}

TEST_F(Clipping, GivenAPlaneMovedInPlace_WhenAskedAgain_ThenTheGridFollowsThoughNobodyIsTold) {
  group->set_clipping_plane(plane);
  group->get_2d_data();
  data_group->told();
  plane->SetOrigin(3.5, 0, 0);
  EXPECT_FALSE(data_group->told());
  group->get_2d_data();
  EXPECT_EQ(group->builds, 2);
  EXPECT_EQ(group->get_filtered_mesh().nodes.size(), 1u);
  group->get_2d_data();
  EXPECT_EQ(group->builds, 2);
}

TEST_F(Clipping, GivenEveryKind_WhenClipped_ThenEachIsJudgedByItsOwnNodes) {
  for (const bool keep_first : {false, true}) {
    NamedMesh two;
    for (unsigned type = 1; type < 10; ++type)
      for (const double x : {0.0, 10.0}) {
        const auto kind = static_cast<Tarn::ElementType>(type);
        two.add_own_element(kind, linear_node_count(kind), x);
      }
    show(std::move(two));
    plane->SetOrigin(5, 0, 0);
    plane->SetNormal(keep_first ? -1 : 1, 0, 0);
    group->set_clipping_plane(plane);
    group->get_2d_data();
    for (std::size_t type = 1; type < 10; ++type)
      EXPECT_THAT(group->get_filtered_mesh().elements[type], ElementsAre(mesh.mesh.elements[type][keep_first ? 0 : 1]))
          << type;
  }
}

TEST_F(Clipping, GivenAPlane_WhenTakenAway_ThenEverythingIsBack) {
  group->set_clipping_plane(plane);
  group->get_2d_data();
  EXPECT_EQ(group->get_filtered_mesh().size(), 6);
  group->set_clipping_plane(nullptr);
  EXPECT_EQ(group->get_filtered_mesh().size(), 6);
  EXPECT_EQ(group->get_2d_data()->GetNumberOfCells(), 9);
  EXPECT_EQ(values_of(group->get_filtered_mesh().nodes), values_of(mesh.mesh.nodes));
  EXPECT_EQ(values_of(group->get_filtered_mesh().elements[Tarn::Edge]), values_of(mesh.mesh.elements[Tarn::Edge]));
}

TEST_F(Clipping, GivenCellColors_WhenClipped_ThenEachEntityKeepsItsOwn) {
  std::array<std::vector<TovanColor>, 10> colors;
  std::vector<TovanColor> node_colors;
  for (int i = 0; i < 5; ++i)
    node_colors.push_back(color_number(i));
  for (int i = 0; i < 4; ++i)
    colors[Tarn::Edge].push_back(color_number(10 + i));
  group->set_cell_color_array(node_colors, colors);
  group->set_clipping_plane(plane);
  const auto numbers = [](const std::vector<int>& list) {
    std::vector<Color> result;
    for (const int n : list)
      result.push_back(channels(color_number(n)));
    return result;
  };
  EXPECT_EQ(scalar_colors(group->get_2d_data()->GetCellData()), numbers({2, 3, 4, 11, 12, 13}));
  group->set_shrink_factor(0.5F);
  group->notify_mesh_transformed();
  EXPECT_EQ(scalar_colors(group->get_2d_data()->GetCellData()), numbers({11, 12, 13}));
}

TEST_F(Clipping, GivenCellColorsOnSolids_WhenClipped_ThenTheirFacesKeepThem) {
  show(hex_block(4, 1, 1));
  std::array<std::vector<TovanColor>, 10> colors;
  for (int i = 0; i < 4; ++i)
    colors[Tarn::Hex].push_back(color_number(i));
  group->set_cell_color_array({}, colors);
  plane->SetOrigin(2.5, 0, 0);
  group->set_clipping_plane(plane);
  auto* grid = group->get_2d_data();
  const auto& hexes = mesh.mesh.elements[Tarn::Hex];
  const auto elements = handle_values(grid->GetCellData(), "ElemIds");
  const auto cell_colors = scalar_colors(grid->GetCellData());
  ASSERT_EQ(elements.size(), 10u);
  for (std::size_t i = 0; i < elements.size(); ++i)
    EXPECT_EQ(cell_colors[i], channels(color_number(elements[i] == hexes[2].value ? 2 : 3)));
}

TEST_F(Clipping, GivenAShrinkFactor_WhenClipped_ThenTheShrunkBuilderIsUsed) {
  group->set_shrink_factor(0.5F);
  group->set_clipping_plane(plane);
  auto* grid = group->get_2d_data();
  EXPECT_EQ(group->shrunk_builds, 1);
  EXPECT_EQ(group->builds, 0);
  EXPECT_EQ(grid->GetNumberOfCells(), 3);
}

TEST_F(Clipping, GivenKindZero_WhenClipped_ThenItIsCarriedAlong) {
  MeshVector odd = mesh.mesh;
  odd.elements[0] = {{7}, {5}};
  group->set_mesh(mesh.owner, odd, model.get());
  group->set_clipping_plane(plane);
  group->get_2d_data();
  EXPECT_THAT(values_of(group->get_filtered_mesh().elements[0]), ElementsAre(7, 5));
}

TEST_F(Clipping, GivenAPlaneBeyondEverything_WhenBuilt_ThenTheGridIsEmptyButHasItsArrays) {
  plane->SetOrigin(100, 0, 0);
  group->set_clipping_plane(plane);
  auto* grid = group->get_2d_data();
  EXPECT_TRUE(group->get_filtered_mesh().empty());
  EXPECT_FALSE(group->get_mesh().empty());
  EXPECT_EQ(grid->GetNumberOfCells(), 0);
  EXPECT_THAT(handle_values(grid->GetPointData(), "NodeIds"), IsEmpty());
}

TEST_F(Clipping, GivenAPlaneWithoutANormal_WhenBuilt_ThenNothingIsClipped) {
  plane->SetNormal(0, 0, 0);
  group->set_clipping_plane(plane);
  EXPECT_EQ(group->get_2d_data()->GetNumberOfCells(), 9);
}

// ------------------------------------------------------------------------------------------ the five poly data

TEST_F(DerivedData, GivenEachDataSet_WhenAskedFor_ThenItIsWhatItsFilterMakesOfTheGrid) {
  show_everything();
  auto* grid = group->get_2d_data();
  vtkNew<GExtractEdges> wire;
  wire->pass_lines(true);
  wire->pass_vertices(true);
  vtkNew<GNodeGlypher> wire_nodes;
  wire_nodes->pass_vertices(true);
  const vtkSmartPointer<vtkPolyData> expected[] = {
      run_sequential(vtkNew<vtkGeometryFilter>().Get(), grid), run_sequential(wire.Get(), grid),
      run_sequential(vtkNew<GExtractEdges>().Get(), grid), run_sequential(vtkNew<GNodeGlypher>().Get(), grid),
      run_sequential(wire_nodes.Get(), grid)};
  for (std::size_t i = 0; i < std::size(derived); ++i) {
    EXPECT_GT(get(derived[i])->GetNumberOfCells(), 0) << derived[i].name;
    EXPECT_EQ(difference(get(derived[i]), expected[i]), "") << derived[i].name;
  }
  EXPECT_EQ(group->get_edge_data()->GetNumberOfLines(), 12);
  EXPECT_EQ(group->get_edge_data()->GetNumberOfVerts(), 0);
  EXPECT_EQ(group->get_wire_data()->GetNumberOfLines(), 13);
  EXPECT_GT(group->get_wire_data()->GetNumberOfVerts(), 0);
  // Nodes 5 and 6 and the one-node element on node 3 are vertex cells of the grid.
  EXPECT_EQ(group->get_node_data()->GetNumberOfVerts(), 5);
  EXPECT_EQ(group->get_wire_node_data()->GetNumberOfVerts(), 8);
}

TEST_F(DerivedData, GivenVertexColors_WhenTheSurfaceIsAskedFor_ThenItHasNormalsAndElseNot) {
  show(one_hex());
  EXPECT_EQ(group->get_tri_data()->GetPointData()->GetNormals(), nullptr);
  EXPECT_EQ(group->get_tri_data()->GetNumberOfPoints(), 8);
  group->set_vertex_color_array({{mesh.nodes[0], color_number(1)}});
  group->notify_mesh_transformed();
  auto* tri = group->get_tri_data();
  vtkNew<vtkPolyDataNormals> normals;
  const auto surface = run_sequential(vtkNew<vtkGeometryFilter>().Get(), group->get_2d_data());
  EXPECT_EQ(difference(tri, run_sequential(normals.Get(), surface)), "");
  EXPECT_NE(tri->GetPointData()->GetNormals(), nullptr);
  EXPECT_EQ(tri->GetNumberOfPoints(), 24);
  group->set_cell_color_array({}, {});
  group->notify_mesh_transformed();
  EXPECT_EQ(group->get_tri_data()->GetPointData()->GetNormals(), nullptr);
}

TEST_F(DerivedData, GivenRebuilds_WhenDataSetsAreAskedFor_ThenTheyStayTheSameObjectsOfTheirGroup) {
  show_everything();
  for (const Derived& which : derived) {
    auto* data = get(which);
    const vtkIdType cells = data->GetNumberOfCells();
    EXPECT_GT(cells, 0) << which.name;
    EXPECT_EQ(GMeshGroup::get_group(data), group.get()) << which.name;
    mesh.add_own_element(Tarn::Hex, 8, 5);
    group->set_mesh(mesh.owner, mesh.mesh, model.get());
    EXPECT_EQ(get(which), data) << which.name;
    EXPECT_GT(data->GetNumberOfCells(), cells) << which.name;
    EXPECT_EQ(GMeshGroup::get_group(data), group.get()) << which.name;
    EXPECT_GE(data->GetMTime(), group->get_2d_data()->GetMTime()) << which.name;
  }
}

TEST_F(DerivedData, GivenFieldArraysOnTheGrid_WhenDataSetsAreMade_ThenTheyDoNotTravelAlong) {
  show_everything();
  for (const Derived& which : derived) {
    auto* grid = group->get_2d_data();
    vtkNew<vtkIntArray> field;
    field->SetName("stowaway");
    grid->GetFieldData()->AddArray(field);
    grid->Modified();
    vtkFieldData* before = get(which)->GetFieldData();
    ASSERT_NE(before, nullptr);
    EXPECT_EQ(before->GetNumberOfArrays(), 0) << which.name;
    grid->Modified();
    const vtkSmartPointer<vtkFieldData> kept = before;
    EXPECT_NE(get(which)->GetFieldData(), kept) << which.name;
    EXPECT_NE(get(which)->GetFieldData(), grid->GetFieldData()) << which.name;
  }
}

TEST_F(DerivedData, GivenOneDataSet_WhenAskedFor_ThenTheOthersAreNotRebuilt) {
  show_everything();
  std::vector<vtkMTimeType> times;
  std::vector<vtkPolyData*> data;
  for (const Derived& which : derived) {
    data.push_back(get(which));
    times.push_back(data.back()->GetMTime());
  }
  group->notify_mesh_transformed();
  for (std::size_t i = 0; i < std::size(derived); ++i) {
    for (std::size_t later = i; later < std::size(derived); ++later)
      EXPECT_EQ(data[later]->GetMTime(), times[later]) << derived[later].name;
    get(derived[i]);
    EXPECT_GT(data[i]->GetMTime(), times[i]) << derived[i].name;
  }
}

TEST_F(DerivedData, GivenAPendingRebuild_WhenADerivedDataSetIsAskedFor_ThenItIsCarriedOut) {
  for (const Derived& which : derived) {
    show_everything();
    get(which);
    group->notify_mesh_modified();
    get(which);
    EXPECT_EQ(group->rebuilds, 1) << which.name;
    EXPECT_EQ(group->builds, 2) << which.name;
  }
}

TEST_F(DerivedData, GivenThreadsElsewhere_WhenDataSetsAreMade_ThenTheProcessKeepsItsSettings) {
  const std::string before = vtkSMPTools::GetBackend();
  show_everything();
  group->set_vertex_color_array({});
  for (const Derived& which : derived)
    get(which);
  EXPECT_EQ(std::string(vtkSMPTools::GetBackend()), before);
}

// ------------------------------------------------------------------------------------------ big and bad

TEST_F(DerivedData, GivenABlock_WhenShown_ThenItsDataSetsHaveTheSizesOfItsSkin) {
  show(hex_block(6, 5, 4));
  const vtkIdType faces = 2 * (6 * 5 + 5 * 4 + 4 * 6);
  const vtkIdType points = faces + 2; // Euler: a closed surface of quadrilaterals
  EXPECT_EQ(group->get_2d_data()->GetNumberOfCells(), faces);
  EXPECT_EQ(group->get_2d_data()->GetNumberOfPoints(), points);
  EXPECT_EQ(group->get_tri_data()->GetNumberOfPolys(), faces);
  EXPECT_EQ(group->get_edge_data()->GetNumberOfLines(), 2 * faces);
  EXPECT_EQ(group->get_node_data()->GetNumberOfVerts(), points);
  show(tet_block(3, 2, 2));
  EXPECT_EQ(group->get_2d_data()->GetNumberOfCells(), 2 * 2 * (3 * 2 + 2 * 2 + 2 * 3));
}

TEST_F(DerivedData, GivenQuadraticElements_WhenShown_ThenEverySideIsAQuadraticFace) {
  for (const int nodes : {20, 27}) {
    show(one_element(Tarn::Hex, nodes));
    EXPECT_THAT(cell_types(group->get_2d_data()), ::testing::AllOf(::testing::SizeIs(6), Each(VTK_QUADRATIC_QUAD)));
    EXPECT_EQ(group->get_2d_data()->GetNumberOfPoints(), 20);
    EXPECT_GT(group->get_tri_data()->GetNumberOfPolys(), 6);
    EXPECT_EQ(group->get_edge_data()->GetNumberOfLines(), 24);
  }
}

TEST_F(DerivedData, GivenADatabaseThatAnswersBadly_WhenShown_ThenAllDataSetsAreStillSound) {
  NamedMesh all = each_quadratic_kind();
  all.mesh.nodes = all.nodes;
  const MeshVector set = all.mesh;
  show(std::move(all));
  const std::vector<std::function<void()>> faults = {[&] { db->fail("get_connectivity"); },
                                                     [&] { db->fail("get_node_ids"); },
                                                     [&] { db->fail("get_coordinate_arrays"); },
                                                     [&] { db->fail("get_float_coordinates"); },
                                                     [&] { db->fail("get_element_types"); },
                                                     [&] { db->fail_call("get_connectivity", 1); },
                                                     [&] { db->report_count("get_connectivity", 1); },
                                                     [&] { db->report_count("get_connectivity", ~std::uint64_t(0)); },
                                                     [&] {
                                                       for (std::size_t type = 1; type < 10; ++type)
                                                         db->lose(set.elements[type][0]);
                                                     },
                                                     [&] {
                                                       for (const auto node : set.nodes)
                                                         db->lose(node);
                                                     },
                                                     [&] {
                                                       for (std::size_t type = 1; type < 10; ++type)
                                                         db->report_type(set.elements[type][0], 1000);
                                                     }};
  for (std::size_t fault = 0; fault < faults.size(); ++fault)
    for (const auto color : {GMeshGroup::SingleColor, GMeshGroup::CellColors})
      for (const float shrink : {1.0F, 0.5F}) {
        db->answer_well();
        db->forget_calls();
        if (color == GMeshGroup::CellColors) group->set_cell_color_array({}, {});
        group->set_shrink_factor(shrink);
        group->notify_mesh_transformed();
        faults[fault]();
        auto* grid = group->get_2d_data();
        for (const Ids& points : cell_points(grid))
          EXPECT_THAT(points, Each(::testing::AllOf(::testing::Ge(0), ::testing::Lt(grid->GetNumberOfPoints()))))
              << "fault " << fault;
        for (const Derived& which : derived)
          EXPECT_LE(get(which)->GetNumberOfPoints(), 100000) << which.name;
      }
}

} // namespace
