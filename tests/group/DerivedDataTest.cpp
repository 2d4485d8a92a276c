// What the five poly data of a group are made of, and which objects stay.

#include "group/SequentialFilter.h"
#include "model/GNodeGlypher.h"
#include "platform/base/GExtractEdges.h"
#include "tests/group/DerivedDataFixture.h"

#include <vtkCellType.h>
#include <vtkFieldData.h>
#include <vtkGeometryFilter.h>
#include <vtkIntArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkPolyDataNormals.h>
#include <vtkSMPTools.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace group_test;
using namespace test_support;
using ::testing::Each;

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
