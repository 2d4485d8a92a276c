#include "tests/pick/PickerScene.h"
#include "tests/support/RecordingMeshData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// ------------------------------------------------------------------------------------------ hits of a ray

class RayReports : public testing::Test {
protected:
  void report(Tarn::MeshData& db, const NodeHits& nodes, const ElementHits& elements, bool element_filter) {
    GMeshPicker::process_picks(&db, nodes, elements, view_.renderer(), element_filter, &picker_);
  }

  PickSystemDouble system_;
  PlanView view_;
  GMeshPicker picker_;
};

TEST_F(RayReports, GivenHits_WhenReported_ThenNodesComeFirstWithPlaceDepthAndFlag) {
  test_support::NamedMesh mesh = test_support::quad_sheet(1, 1);
  test_support::RecordingMeshData db(*mesh.database);
  const Elem quad = mesh.mesh.elements[Tarn::Quad][0];
  report(db, {{mesh.nodes[1], {3, 2, 2.5}, false}, {mesh.nodes[0], {3.1, 2, 0}, true}}, {{quad, {1, 1, -5}, true}},
         false);
  ASSERT_THAT(system_.reports, SizeIs(3));
  const auto& reports = system_.reports;
  EXPECT_TRUE(reports[0].is_node);
  EXPECT_EQ(reports[0].handle, mesh.nodes[1].value);
  EXPECT_THAT(reports[0].point, ElementsAre(3.0F, 2.0F, 2.5F));
  EXPECT_FLOAT_EQ(reports[0].distance, 0.25F) << "a quarter of the way from z = 5 to z = -5";
  EXPECT_FALSE(reports[0].exact);
  EXPECT_TRUE(reports[1].is_node);
  EXPECT_EQ(reports[1].handle, mesh.nodes[0].value);
  EXPECT_THAT(reports[1].point, ElementsAre(3.1F, 2.0F, 0.0F));
  EXPECT_FLOAT_EQ(reports[1].distance, 0.5F);
  EXPECT_TRUE(reports[1].exact);
  EXPECT_FALSE(reports[2].is_node);
  EXPECT_EQ(reports[2].handle, quad.value);
  EXPECT_FLOAT_EQ(reports[2].distance, 1.15F);
  EXPECT_TRUE(reports[2].exact);
  for (const auto& each : reports) {
    EXPECT_EQ(each.database, &db);
    EXPECT_EQ(each.picker, &picker_);
  }
  EXPECT_THAT(db.operations(), ElementsAre("get_element_type"));
  EXPECT_THAT(system_.questions, IsEmpty()) << "the caller asked";
}

TEST_F(RayReports, GivenAPerspectiveView_WhenReported_ThenDepthIsDividedByTheFourthCoordinate) {
  view_.renderer()->GetActiveCamera()->ParallelProjectionOff();
  test_support::NamedMesh mesh = test_support::lone_nodes(1);
  report(*mesh.database, {{mesh.nodes[0], {3, 2, 0}, true}}, {}, false);
  // Between planes at 5 and 15, a point at 10: 15 / 10 * (10 - 5) / (15 - 5).
  EXPECT_NEAR(system_.reports.at(0).distance, 0.75, 1e-6);
}

struct BiasRow {
  unsigned type;
  float bias;
};

class DepthBias : public RayReports, public testing::WithParamInterface<BiasRow> {};

// The constants are single-precision numbers, added in double precision. At some depths that rounds to another distance
// than the decimal numbers would give.
TEST_P(DepthBias, GivenElementsAtManyDepths_WhenReported_ThenTheKindsBiasIsAdded) {
  test_support::NamedMesh mesh = test_support::one_element(Tarn::Hex, 8);
  test_support::RecordingMeshData db(*mesh.database);
  const Elem element = mesh.mesh.elements[Tarn::Hex][0];
  db.report_type(element, GetParam().type);
  ElementHits hits;
  for (int i = 0; i < 2000; ++i)
    hits.push_back({element, {3, 2, 5 - i / 200.03}, true});
  report(db, {}, hits, false);
  ASSERT_THAT(system_.reports, SizeIs(2000));
  vtkNew<vtkMatrix4x4> matrix;
  matrix->DeepCopy(view_.renderer()->GetActiveCamera()->GetCompositeProjectionTransformMatrix(1.5, 0, 1));
  const double decimal = std::round(static_cast<double>(GetParam().bias) * 100) / 100;
  int telling = 0;
  for (std::size_t i = 0; i < hits.size(); ++i) {
    double world[4] = {3, 2, hits[i].point[2], 1};
    double view[4];
    matrix->MultiplyPoint(world, view);
    const double depth = view[2] / view[3];
    ASSERT_EQ(system_.reports[i].distance, static_cast<float>(depth + static_cast<double>(GetParam().bias)));
    telling += static_cast<float>(depth + decimal) != system_.reports[i].distance;
  }
  EXPECT_GT(telling, 0);
}

INSTANTIATE_TEST_SUITE_P(Kinds, DepthBias,
                         testing::Values(BiasRow{Tarn::None, 0.3F}, BiasRow{Tarn::OneNode, 0.3F},
                                         BiasRow{Tarn::Edge, 0.1F}, BiasRow{Tarn::Tri, 0.2F},
                                         BiasRow{Tarn::Quad, 0.15F}, BiasRow{Tarn::Tet, 0.3F}, BiasRow{Tarn::Hex, 0.3F},
                                         BiasRow{Tarn::Wedge, 0.3F}, BiasRow{Tarn::Pyramid, 0.3F},
                                         BiasRow{Tarn::Superelement, 0.3F}, BiasRow{77, 0.3F}),
                         [](const auto& row) { return "kind" + std::to_string(row.param.type); });

TEST_F(RayReports, GivenTheElementFilter_WhenReported_ThenNodesBecomeTheirOwnElementsOrGo) {
  test_support::NamedMesh mesh = test_support::lone_nodes(2);
  const Elem own = mesh.add_element(Tarn::OneNode, {1});
  test_support::RecordingMeshData db(*mesh.database);
  const NodeHits hits = {{mesh.nodes[0], {3, 2, 0}, true}, {mesh.nodes[1], {3, 2, 0}, false}};
  report(db, hits, {}, true);
  ASSERT_THAT(system_.reports, SizeIs(1));
  EXPECT_FALSE(system_.reports[0].is_node);
  EXPECT_EQ(system_.reports[0].handle, own.value);
  EXPECT_FLOAT_EQ(system_.reports[0].distance, 0.5F) << "no bias: it is where the node is";
  EXPECT_FALSE(system_.reports[0].exact);
  ASSERT_THAT(db.operations(), ElementsAre("get_elements_on_nodes", "get_elements_on_nodes"));
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_THAT(db.calls()[i].handles, ElementsAre(mesh.nodes[i].value));
    EXPECT_THAT(db.calls()[i].numbers, ElementsAre(1, 1));
  }
  db.fail("get_elements_on_nodes");
  report(db, hits, {}, true);
  EXPECT_THAT(system_.reports, SizeIs(1)) << "no answer is no element";
}

TEST_F(RayReports, GivenTheElementFilter_WhenReported_ThenElementsWithoutAGlobalIdGo) {
  test_support::NamedMesh mesh = test_support::quad_sheet(3, 1);
  const Elems quads = mesh.mesh.elements[Tarn::Quad];
  const int id = 5;
  mesh.database->set_global_ids(1, &quads[1], &id);
  test_support::RecordingMeshData db(*mesh.database);
  const ElementHits hits = {{quads[0], {3, 2, 0}, true}, {quads[1], {3, 2, 0}, true}, {quads[2], {3, 2, 0}, true}};
  report(db, {}, hits, true);
  EXPECT_THAT(system_.handles(), ElementsAre(quads[1].value));
  EXPECT_FLOAT_EQ(system_.reports[0].distance, 0.65F);
  EXPECT_THAT(db.operations(), ElementsAre("get_element_global_id", "get_element_global_id", "get_element_type",
                                           "get_element_global_id"));
  db.fail("get_element_global_id");
  report(db, {}, hits, true);
  EXPECT_THAT(system_.reports, SizeIs(1));
}

TEST_F(RayReports, GivenAQuadrilateralATriangleAndANodeAtOneDepth_WhenReported_ThenTheyRankInThisOrder) {
  test_support::NamedMesh mesh = test_support::each_linear_kind();
  const auto hit = [&](Tarn::ElementType type) {
    return PickInterface::PickResult<Elem>{mesh.mesh.elements[type][0], {3, 2, 0}, true};
  };
  report(*mesh.database, {{mesh.nodes[0], {3, 2, 0}, true}},
         {hit(Tarn::Hex), hit(Tarn::Tri), hit(Tarn::Quad), hit(Tarn::Edge)}, false);
  ASSERT_THAT(system_.reports, SizeIs(5));
  const auto& r = system_.reports;
  EXPECT_LT(r[0].distance, r[4].distance);
  EXPECT_LT(r[4].distance, r[3].distance);
  EXPECT_LT(r[3].distance, r[2].distance);
  EXPECT_LT(r[2].distance, r[1].distance);
}

TEST_F(RayReports, GivenHitsThatAreNoNumbers_WhenReported_ThenTheyPassThrough) {
  test_support::NamedMesh mesh = test_support::lone_nodes(1);
  report(*mesh.database, {{mesh.nodes[0], {NAN, 2, 0}, true}}, {}, false);
  ASSERT_THAT(system_.reports, SizeIs(1));
  EXPECT_TRUE(std::isnan(system_.reports[0].point[0]));
}

// ------------------------------------------------------------------------------------------ hits of a region

TEST_F(RayReports, GivenRegionHits_WhenReported_ThenAllGoInWithoutPlaceOrDepth) {
  test_support::NamedMesh mesh = test_support::quad_sheet(2, 1);
  test_support::RecordingMeshData db(*mesh.database);
  const Elems& quads = mesh.mesh.elements[Tarn::Quad];
  vtkNew<vtkMatrix4x4> matrix;
  GMeshPicker::process_picks(&db, Nodes{mesh.nodes[3], mesh.nodes[0], mesh.nodes[3]}, Elems{quads[1], quads[0]},
                             view_.renderer(), matrix, false, &picker_);
  EXPECT_THAT(system_.handles(true), ElementsAre(mesh.nodes[3].value, mesh.nodes[0].value, mesh.nodes[3].value));
  EXPECT_THAT(system_.handles(false), ElementsAre(quads[1].value, quads[0].value));
  EXPECT_TRUE(system_.reports.at(2).is_node) << "nodes first";
  for (const auto& each : system_.reports) {
    EXPECT_THAT(each.point, ElementsAre(0, 0, 0));
    EXPECT_EQ(each.distance, 0);
    EXPECT_TRUE(each.exact);
    EXPECT_EQ(each.database, &db);
  }
  EXPECT_THAT(db.calls(), IsEmpty());
}

} // namespace
