// What a group stores, under which owners it registers, and what its setters do.

#include "group/GMeshGroup.h"

#include "platform/base/GModel.h"
#include "tests/group/MeshGroupFixture.h"

#include <vtkNew.h>
#include <vtkPlane.h>
#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <set>

namespace {

using namespace group_test;
using namespace test_support;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// ------------------------------------------------------------------------------------------ construction

TEST_F(MeshGroup, GivenANewGroup_WhenLookedAt_ThenEverythingHasItsDefault) {
  GMeshGroup fresh;
  EXPECT_TRUE(fresh.get_visibility());
  EXPECT_FALSE(fresh.get_node_visibility());
  EXPECT_FALSE(fresh.get_force_scalars());
  EXPECT_EQ(fresh.get_color_type(), GMeshGroup::SingleColor);
  EXPECT_EQ(channels(fresh.get_color()), white);
  EXPECT_EQ(fresh.mesh_owner(), nullptr);
  EXPECT_EQ(fresh.get_model(), nullptr);
  EXPECT_TRUE(fresh.empty());
  EXPECT_TRUE(fresh.get_mesh().empty());
  EXPECT_TRUE(fresh.get_filtered_mesh().empty());
  EXPECT_EQ(fresh.MeshTime().GetMTime(), 0u);
  EXPECT_EQ(fresh.ColorTime().GetMTime(), 0u);
}

TEST_F(MeshGroup, GivenTheColorTypes_WhenLookedAt_ThenTheyAre32BitsWithFixedValues) {
  EXPECT_EQ(static_cast<int>(GMeshGroup::CellColors), 0);
  EXPECT_EQ(static_cast<int>(GMeshGroup::VertexColors), 1);
  EXPECT_EQ(static_cast<int>(GMeshGroup::SingleColor), 2);
  EXPECT_EQ(sizeof(GMeshGroup::ColorType), 4u);
}

TEST_F(MeshGroup, GivenANewGroup_WhenItsDataSetsAreAsked_ThenThereAreSixEmptyOnesThatKnowIt) {
  GMeshGroup fresh;
  const std::vector<vtkDataSet*> data = {fresh.get_2d_data(),   fresh.get_tri_data(),  fresh.get_wire_data(),
                                         fresh.get_edge_data(), fresh.get_node_data(), fresh.get_wire_node_data()};
  EXPECT_EQ(std::set<vtkDataSet*>(data.begin(), data.end()).size(), 6u);
  for (vtkDataSet* set : data) {
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(set->GetNumberOfPoints(), 0);
    EXPECT_EQ(set->GetNumberOfCells(), 0);
    EXPECT_EQ(GMeshGroup::get_group(set), &fresh);
  }
}

class Stranger : public GDataGroupEntity {};

TEST_F(MeshGroup, GivenDataSetsOfNobodyAndOfStrangers_WhenAskedForTheirGroup_ThenThereIsNone) {
  vtkNew<vtkPolyData> data;
  EXPECT_EQ(GMeshGroup::get_group(data), nullptr);
  EXPECT_EQ(GMeshGroup::get_group(nullptr), nullptr);
  Stranger stranger;
  GModel::set_back_pointer(data, &stranger);
  EXPECT_EQ(GMeshGroup::get_group(data), nullptr);
  auto gone = std::make_unique<GMeshGroup>();
  GModel::set_back_pointer(data, gone.get());
  EXPECT_EQ(GMeshGroup::get_group(data), gone.get());
  gone.reset();
  EXPECT_EQ(GMeshGroup::get_group(data), nullptr);
}

// ------------------------------------------------------------------------------------------ set_mesh

TEST_F(MeshGroup, GivenAnUnsortedSetWithDuplicates_WhenSet_ThenItIsCopiedAsGiven) {
  use(two_hexes());
  MeshVector set;
  set.nodes = {mesh.nodes[3], mesh.nodes[1], mesh.nodes[3]};
  set.elements[0] = {{5}};
  set.elements[Tarn::Hex] = {mesh.mesh.elements[Tarn::Hex][1], mesh.mesh.elements[Tarn::Hex][0]};
  expect_effect(*group, *data_group, {true, false, true}, [&] { group->set_mesh(mesh.owner, set, model.get()); });
  expect_equal(group->get_mesh(), set);
  EXPECT_EQ(group->mesh_owner(), mesh.owner);
  EXPECT_EQ(group->get_model(), model.get());
  EXPECT_FALSE(group->empty());
}

TEST_F(MeshGroup, GivenAnOwner_WhenSet_ThenTheGroupRegistersThereWithoutAskingTheDatabase) {
  use(two_hexes());
  auto* other = mesh.database->add_owner("other");
  group->set_mesh(other, mesh.mesh, model.get());
  EXPECT_THAT(db->calls(), IsEmpty());
  EXPECT_TRUE(hears_of(other));
  EXPECT_FALSE(hears_of(mesh.owner)); // who owns the entities in the database does not count
}

TEST_F(MeshGroup, GivenNoOwner_WhenSet_ThenTheGroupRegistersUnderEachOwnerOfItsEntities) {
  use(one_hex_and_its_skin());
  const auto& elements = mesh.mesh.elements;
  Tarn::SMeshOwnerType* of_nodes = mesh.database->add_owner("nodes");
  Tarn::SMeshOwnerType* of_quad = mesh.database->add_owner("quad");
  Tarn::SMeshOwnerType* unrelated = mesh.database->add_owner("unrelated");
  ASSERT_TRUE(mesh.database->set_node_owner(2, &mesh.nodes[2], of_nodes));
  ASSERT_TRUE(mesh.database->set_element_owner(1, &elements[Tarn::Quad][1], of_quad));
  MeshVector set = mesh.mesh;
  set.nodes = {mesh.nodes[3], mesh.nodes[0], mesh.nodes[2]};
  group->set_mesh(nullptr, set, model.get());

  ASSERT_THAT(db->operations(), ElementsAre("get_node_owners", "get_element_owners", "get_element_owners"));
  EXPECT_EQ(db->calls()[0].handles, values_of(set.nodes));
  EXPECT_EQ(db->calls()[1].handles, values_of(elements[Tarn::Quad]));
  EXPECT_EQ(db->calls()[2].handles, values_of(elements[Tarn::Hex]));
  EXPECT_EQ(group->mesh_owner(), nullptr);
  for (Tarn::SMeshOwnerType* owner : {mesh.owner, of_nodes, of_quad})
    EXPECT_TRUE(hears_of(owner));
  EXPECT_FALSE(hears_of(unrelated));
  EXPECT_FALSE(hears_of(nullptr));
}

TEST_F(MeshGroup, GivenEntitiesOfSeveralOwners_WhenRebuilt_ThenOwnersAreVisitedOnceEachInPointerOrder) {
  use(edge_chain(3));
  std::vector<Tarn::SMeshOwnerType*> owners = {mesh.owner};
  for (int i = 1; i < 3; ++i) {
    owners.push_back(mesh.database->add_owner("more"));
    ASSERT_TRUE(mesh.database->set_element_owner(1, &mesh.mesh.elements[Tarn::Edge][static_cast<std::size_t>(i)],
                                                 owners.back()));
  }
  MeshVector set = mesh.mesh;
  set.nodes = mesh.nodes;
  group->set_mesh(nullptr, set, model.get());
  db->forget_calls();
  group->notify_mesh_modified();
  group->get_mesh();
  std::sort(owners.begin(), owners.end(), std::less<>());
  std::vector<Tarn::SMeshOwnerType*> visited;
  for (const DatabaseCall& call : db->calls("get_owner_dimension"))
    visited.push_back(call.owner);
  EXPECT_EQ(visited, owners);
}

TEST_F(MeshGroup, GivenEntitiesWithoutAnOwner_WhenSet_ThenTheNullOwnerIsOneOfThem) {
  use(edge_chain(2));
  ASSERT_TRUE(mesh.database->set_element_owner(1, &mesh.mesh.elements[Tarn::Edge][0], nullptr));
  group->set_mesh(nullptr, mesh.mesh, model.get());
  EXPECT_TRUE(hears_of(nullptr));
  EXPECT_TRUE(hears_of(mesh.owner));
}

TEST_F(MeshGroup, GivenAnEmptySetWithoutOwner_WhenSet_ThenTheDatabaseIsNotAsked) {
  use(two_hexes());
  group->set_mesh(nullptr, MeshVector(), model.get());
  EXPECT_THAT(db->calls(), IsEmpty());
  EXPECT_FALSE(hears_of(mesh.owner));
}

TEST_F(MeshGroup, GivenARegisteredGroup_WhenSetAgain_ThenItLeavesTheOldOwnersAndTheOldModel) {
  show(two_hexes());
  auto* other = mesh.database->add_owner("other");
  group->set_mesh(other, mesh.mesh, model.get());
  EXPECT_FALSE(hears_of(mesh.owner));
  EXPECT_TRUE(hears_of(other));
  GMeshModel second(db.get());
  group->set_mesh(other, mesh.mesh, &second);
  EXPECT_FALSE(hears_of(other));
  second.update_mesh_modified(other);
  const int before = group->rebuilds;
  group->get_mesh();
  EXPECT_EQ(group->rebuilds, before + 1);
  group.reset();
  second.update_mesh_modified(other);
}

TEST_F(MeshGroup, GivenItsOwnSets_WhenSetAgain_ThenNothingIsLost) {
  show(two_hexes());
  group->get_2d_data();
  const MeshVector expected = group->get_mesh();
  group->set_mesh(mesh.owner, group->get_filtered_mesh(), model.get());
  expect_equal(group->get_mesh(), expected);
  group->set_mesh(mesh.owner, group->get_mesh(), model.get());
  expect_equal(group->get_mesh(), expected);
}

TEST_F(MeshGroup, GivenAGroupThatDoesNotObserve_WhenSet_ThenItNeitherRegistersNorAsks) {
  use(two_hexes());
  group->set_dont_observe();
  expect_effect(*group, *data_group, {true, false, true}, [&] { group->set_mesh(nullptr, mesh.mesh, model.get()); });
  EXPECT_THAT(db->calls(), IsEmpty());
  EXPECT_FALSE(hears_of(mesh.owner));
  group->set_mesh(mesh.owner, mesh.mesh, model.get());
  EXPECT_FALSE(hears_of(mesh.owner));
  EXPECT_EQ(group->mesh_owner(), mesh.owner);
}

TEST_F(MeshGroup, GivenARegisteredGroup_WhenItStopsObserving_ThenItStaysRegisteredUntilItDies) {
  show(two_hexes());
  ASSERT_TRUE(hears_of(mesh.owner));
  group->set_dont_observe();
  EXPECT_TRUE(hears_of(mesh.owner)) << "only further registrations are off";
  group->set_mesh(mesh.owner, mesh.mesh, model.get());
  EXPECT_TRUE(hears_of(mesh.owner)) << "what does not observe does not unregister";
  group.reset();
  model->update_mesh_modified(mesh.owner); // must not reach the dead group
}

TEST_F(MeshGroup, GivenASetWithoutOwner_WhenSetAgainNotObserving_ThenTheOwnersOfBeforeCountNoMore) {
  use(two_hexes());
  group->set_mesh(nullptr, mesh.mesh, model.get());
  group->notify_mesh_modified();
  EXPECT_FALSE(group->get_mesh().empty()) << "its owner has it all";
  group->set_dont_observe();
  group->set_mesh(nullptr, mesh.mesh, model.get());
  EXPECT_FALSE(group->get_mesh().empty());
  group->notify_mesh_modified();
  EXPECT_TRUE(group->get_mesh().empty()) << "without owners nothing is left of a set";
}

TEST_F(MeshGroup, GivenARegisteredGroup_WhenItDies_ThenTheRegistryForgetsIt) {
  use(two_hexes());
  MeshVector set = mesh.mesh;
  set.nodes = mesh.nodes;
  auto* other = mesh.database->add_owner("other");
  ASSERT_TRUE(mesh.database->set_node_owner(3, mesh.nodes.data(), other));
  group->set_mesh(nullptr, set, model.get());
  group.reset();
  EXPECT_TRUE(data_group->told());
  model->update_mesh_modified(mesh.owner);
  model->update_mesh_modified(other);
  EXPECT_FALSE(data_group->told());
}

// ------------------------------------------------------------------------------------------ display

TEST_F(MeshGroup, GivenDisplayFlags_WhenSet_ThenTheyAreStoredAndNothingElseHappens) {
  show(edge_chain(1));
  expect_effect(*group, *data_group, {}, [&] {
    for (const bool on : {false, true, false}) {
      group->set_visibility(on);
      EXPECT_EQ(group->get_visibility(), on);
      group->set_node_visibility(!on);
      EXPECT_EQ(group->get_node_visibility(), !on);
      EXPECT_EQ(group->get_visibility(), on);
      group->set_force_scalars(on);
      EXPECT_EQ(group->get_force_scalars(), on);
      EXPECT_EQ(group->get_node_visibility(), !on);
    }
    group->set_shrink_factor(0.5F);
  });
}

TEST_F(MeshGroup, GivenColors_WhenSet_ThenZeroReadsAsWhiteAndTheTypeStays) {
  show(edge_chain(1));
  expect_effect(*group, *data_group, {false, true, true}, [&] { group->set_color({1, 2, 3, 4}); });
  EXPECT_EQ(channels(group->get_color()), (Color{1, 2, 3, 4}));
  expect_effect(*group, *data_group, {false, true, true}, [&] { group->set_color(TovanColor()); });
  EXPECT_EQ(channels(group->get_color()), white);
  group->set_color({0, 0, 0, 255});
  EXPECT_EQ(channels(group->get_color()), (Color{0, 0, 0, 255}));
  EXPECT_EQ(group->get_color_type(), GMeshGroup::SingleColor);
  group->set_vertex_color_array({});
  group->set_color({9, 9, 9, 9});
  EXPECT_EQ(group->get_color_type(), GMeshGroup::VertexColors);
}

TEST_F(MeshGroup, GivenColorLists_WhenSet_ThenTheTypeFollowsAndColorTimeMoves) {
  show(edge_chain(1));
  expect_effect(*group, *data_group, {false, true, true}, [&] { group->set_cell_color_array({}, {}); });
  EXPECT_EQ(group->get_color_type(), GMeshGroup::CellColors);
  expect_effect(*group, *data_group, {false, true, true}, [&] { group->set_vertex_color_array({}); });
  EXPECT_EQ(group->get_color_type(), GMeshGroup::VertexColors);
}

TEST_F(MeshGroup, GivenAClippingPlane_WhenSetOrTakenAway_ThenMeshTimeMoves) {
  show(edge_chain(1));
  vtkNew<vtkPlane> plane;
  expect_effect(*group, *data_group, {true, false, true}, [&] { group->set_clipping_plane(plane); });
  EXPECT_EQ(plane->GetReferenceCount(), 2);
  expect_effect(*group, *data_group, {true, false, true}, [&] { group->set_clipping_plane(nullptr); });
  EXPECT_EQ(plane->GetReferenceCount(), 1);
}

TEST_F(MeshGroup, GivenShrinkFactors_WhenSet_ThenTheyAreClampedFromATenthToOne) {
  constexpr float infinity = std::numeric_limits<float>::infinity();
  struct Row {
    float given;
    double stored;
  };
  const double tenth = static_cast<double>(0.1F);
  for (const Row row : {Row{0.5F, 0.5}, Row{0.05F, tenth}, Row{0.1F, tenth}, Row{std::nextafter(0.1F, 0.0F), tenth},
                        Row{0.0F, tenth}, Row{-3.0F, tenth}, Row{-infinity, tenth}, Row{0.875F, 0.875}}) {
    NamedMesh chain;
    // The centre is the origin, so that each point shows the factor to the last bit that a float holds.
    chain.add_node(-1, 0, 0);
    chain.add_node(1, 0, 0);
    chain.add_element(Tarn::Edge, {0, 1});
    show(std::move(chain));
    group->set_shrink_factor(row.given);
    EXPECT_EQ(static_cast<float>(group->get_2d_data()->GetPoint(1)[0]), static_cast<float>(row.stored)) << row.given;
    EXPECT_EQ(group->shrunk_builds, 1);
  }
  for (const float whole : {1.0F, 2.0F, infinity}) {
    show(edge_chain(1));
    group->set_shrink_factor(whole);
    group->get_2d_data();
    EXPECT_EQ(group->builds, 1) << whole;
    EXPECT_EQ(group->shrunk_builds, 0) << whole;
  }
  show(edge_chain(1));
  group->set_shrink_factor(std::numeric_limits<float>::quiet_NaN());
  EXPECT_TRUE(std::isnan(group->get_2d_data()->GetPoint(0)[0]));
}

TEST_F(MeshGroup, GivenATenthAsFactor_WhenStored_ThenItIsTheDoubleNearestTheSinglePrecisionTenth) {
  NamedMesh chain;
  // Large enough that 0.1 and 0.1f differ in the result, which is exact to 2^-6 here.
  constexpr double far = 1048576;
  chain.add_node(-far, 0, 0);
  chain.add_node(far, 0, 0);
  chain.add_element(Tarn::Edge, {0, 1});
  show(std::move(chain));
  group->set_shrink_factor(0.0F);
  const double point = group->get_2d_data()->GetPoint(1)[0];
  EXPECT_EQ(point, static_cast<double>(static_cast<float>(far * static_cast<double>(0.1F))));
}

// ------------------------------------------------------------------------------------------ validate

TEST_F(MeshGroup, GivenEntities_WhenValidated_ThenIdsAreAskedForOnceAListAndNothingChanges) {
  use(one_hex_and_its_skin());
  MeshVector set = mesh.mesh;
  set.nodes = mesh.nodes;
  group->set_mesh(mesh.owner, set, model.get());
  db->forget_calls();
  expect_effect(*group, *data_group, {}, [&] { group->validate(); });
  ASSERT_THAT(db->operations(), ElementsAre("get_node_ids", "get_element_ids", "get_element_ids"));
  EXPECT_EQ(db->calls()[0].handles, values_of(mesh.nodes));
  EXPECT_EQ(db->calls()[1].handles, values_of(mesh.mesh.elements[Tarn::Quad]));
  EXPECT_EQ(db->calls()[2].handles, values_of(mesh.mesh.elements[Tarn::Hex]));
  expect_equal(group->get_mesh(), set);
}

} // namespace
