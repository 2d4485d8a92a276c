// What a clipping plane leaves of the data sets of a group.

#include "tests/group/DerivedDataFixture.h"

#include <vtkCellData.h>
#include <vtkNew.h>
#include <vtkPlane.h>
#include <vtkPointData.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace group_test;
using namespace test_support;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

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

} // namespace
