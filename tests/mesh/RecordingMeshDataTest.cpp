// The recorder that other tests look through tells the truth, and lies only when told to.

#include "tests/support/RecordingMeshData.h"

#include "tests/support/NamedMeshes.h"

#include <gmock/gmock.h>

namespace {

using namespace test_support;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Recorder : public ::testing::Test {
protected:
  NamedMesh mesh = two_hexes();
  Tarn::Handle<1> first = mesh.mesh.elements[Tarn::Hex][0];
  Tarn::Handle<1> second = mesh.mesh.elements[Tarn::Hex][1];
  RecordingMeshData db{*mesh.database};
};

TEST_F(Recorder, GivenCalls_WhenLookedAt_ThenOperationsHandlesAndNumbersStandInOrder) {
  const Tarn::Handle<1> elements[2] = {second, first};
  int ids[2] = {};
  db.get_element_ids(2, elements, ids);
  Tarn::MeshData::Count count = 24;
  Tarn::Handle<1> edges[24];
  EXPECT_EQ(db.get_adjacencies(first, 1, 2, &count, edges), 0);
  db.get_owner_element_count(mesh.owner, Tarn::Hex, &count);

  EXPECT_THAT(ids, ElementsAre(2, 1));
  EXPECT_EQ(count, 2u);
  EXPECT_THAT(db.operations(), ElementsAre("get_element_ids", "get_adjacencies", "get_owner_element_count"));
  EXPECT_THAT(db.calls()[0].handles, ElementsAre(second.value, first.value));
  EXPECT_THAT(db.calls()[1].numbers, ElementsAre(1, 2, 24));
  EXPECT_EQ(db.calls()[2].owner, mesh.owner);
  EXPECT_EQ(db.count("get_element_ids"), 1u);
  EXPECT_EQ(db.calls("get_adjacencies").size(), 1u);
  db.forget_calls();
  EXPECT_THAT(db.calls(), IsEmpty());
}

TEST_F(Recorder, GivenAFailingOperation_WhenCalled_ThenNothingIsWrittenUntilItAnswersWell) {
  int id = -3;
  db.fail("get_element_id");
  db.get_element_id(first, &id);
  EXPECT_EQ(id, -3);
  db.fail("get_element_connectivity");
  Tarn::MeshData::Count count = 8;
  Tarn::Handle<0> nodes[8];
  EXPECT_NE(db.get_element_connectivity(first, &count, nodes), 0);
  EXPECT_EQ(nodes[0].value, 0u);
  db.answer_well();
  db.get_element_id(first, &id);
  EXPECT_EQ(id, 1);
  EXPECT_EQ(db.get_element_connectivity(first, &count, nodes), 0);
  EXPECT_EQ(nodes[0], mesh.nodes[0]);
}

TEST_F(Recorder, GivenAFailingCall_WhenCalledThrice_ThenOnlyThatOneFails) {
  db.fail_call("get_element_id", 1);
  int ids[3] = {-1, -1, -1};
  for (int& id : ids)
    db.get_element_id(second, &id);
  EXPECT_THAT(ids, ElementsAre(2, -1, 2));
}

TEST_F(Recorder, GivenLostEntities_WhenAskedAbout_ThenOnlyTheirOutputsStayUntouched) {
  db.lose(first);
  db.lose(mesh.nodes[3]);
  const Tarn::Handle<1> elements[2] = {first, second};
  int ids[2] = {-1, -1};
  db.get_element_ids(2, elements, ids);
  EXPECT_THAT(ids, ElementsAre(-1, 2));
  int node_ids[4] = {-1, -1, -1, -1};
  db.get_node_ids(4, mesh.nodes.data(), node_ids);
  EXPECT_THAT(node_ids, ElementsAre(1, 2, 3, -1));
  EXPECT_THAT(db.calls()[0].handles, ElementsAre(first.value, second.value));
}

TEST_F(Recorder, GivenFalseCountsAndKinds_WhenAsked_ThenTheyComeInPlaceOfTheTrueOnes) {
  db.report_count("get_element_connectivity", 1000);
  db.report_type(second, 42);
  Tarn::MeshData::Count count = 8;
  Tarn::Handle<0> nodes[8];
  EXPECT_EQ(db.get_element_connectivity(first, &count, nodes), 0);
  EXPECT_EQ(count, 1000u);
  EXPECT_EQ(nodes[7], mesh.nodes[9]);
  const Tarn::Handle<1> elements[2] = {first, second};
  Tarn::ElementType types[2] = {};
  db.get_element_types(2, elements, types);
  EXPECT_EQ(types[0], Tarn::Hex);
  EXPECT_EQ(static_cast<unsigned>(types[1]), 42u);
}

} // namespace
