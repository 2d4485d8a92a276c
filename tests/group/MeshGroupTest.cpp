#include "group/GMeshGroup.h"

#include "platform/base/GModel.h"
#include "tests/group/GroupFixture.h"

#include <vtkCellData.h>
#include <vtkNew.h>
#include <vtkPlane.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <set>

namespace {

using namespace group_test;
using namespace test_support;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Color white = {255, 255, 255, 255};

void expect_equal(const MeshVector& left, const MeshVector& right) {
  EXPECT_EQ(values_of(left.nodes), values_of(right.nodes));
  for (std::size_t type = 0; type < 10; ++type)
    EXPECT_EQ(values_of(left.elements[type]), values_of(right.elements[type])) << "kind " << type;
}

class MeshGroup : public GroupFixture {
protected:
  /// Whether the model tells the group of the owner's changes.
  bool hears_of(Tarn::SMeshOwnerType* owner) {
    group->update_mesh();
    const int before = group->rebuilds;
    model->update_mesh_modified(owner);
    group->update_mesh();
    return group->rebuilds > before;
  }
};

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

// ------------------------------------------------------------------------------------------ add and remove

TEST_F(MeshGroup, GivenAnotherGroup_WhenAdded_ThenTheSetsAreMergedSortedAndUnique) {
  show(two_hexes());
  OpenGroup other;
  MeshVector set;
  set.nodes = {mesh.nodes[5], mesh.nodes[5], mesh.nodes[1]};
  set.elements[Tarn::Hex] = {mesh.mesh.elements[Tarn::Hex][1]};
  other.set_dont_observe();
  other.set_mesh(nullptr, set, model.get());
  expect_effect(*group, *data_group, {true, false, true}, [&] { group->add_mesh(&other); });
  EXPECT_THAT(group->get_mesh().nodes, ElementsAre(mesh.nodes[1], mesh.nodes[5]));
  EXPECT_THAT(group->get_mesh().elements[Tarn::Hex],
              ElementsAre(mesh.mesh.elements[Tarn::Hex][0], mesh.mesh.elements[Tarn::Hex][1]));
  EXPECT_EQ(other.get_mesh().nodes.size(), 3u);
}

TEST_F(MeshGroup, GivenEntities_WhenRemoved_ThenTheGroupIsMarkedOnlyIfSomethingWentAndSomethingIsLeft) {
  show(edge_chain(3));
  const auto& edges = mesh.mesh.elements[Tarn::Edge];
  MeshVector some;
  some.elements[Tarn::Edge] = {edges[1]};
  expect_effect(*group, *data_group, {true, false, true}, [&] { EXPECT_TRUE(group->remove_mesh(some)); });
  EXPECT_THAT(group->get_mesh().elements[Tarn::Edge], ElementsAre(edges[0], edges[2]));
  expect_effect(*group, *data_group, {false, false, false}, [&] { EXPECT_FALSE(group->remove_mesh(some)); });
  expect_effect(*group, *data_group, {false, false, false}, [&] { EXPECT_TRUE(group->remove_mesh(mesh.mesh)); });
  EXPECT_TRUE(group->empty());
}

TEST_F(MeshGroup, GivenCellColors_WhenEntitiesComeAndGo_ThenColorsStayWithTheirHandles) {
  show(edge_chain(4));
  auto edges = mesh.mesh.elements[Tarn::Edge];
  // Against handle order, so that sorting moves positions.
  MeshVector set;
  set.elements[Tarn::Edge] = {edges[3], edges[1]};
  set.nodes = {mesh.nodes[4], mesh.nodes[0]};
  group->set_mesh(mesh.owner, set, model.get());
  std::array<std::vector<TovanColor>, 10> colors;
  colors[Tarn::Edge] = {color_number(3), color_number(1)};
  group->set_cell_color_array({color_number(14), color_number(10)}, colors);

  OpenGroup plain;
  plain.set_dont_observe();
  MeshVector more;
  more.elements[Tarn::Edge] = {edges[0]};
  plain.set_mesh(nullptr, more, model.get());
  group->add_mesh(&plain);
  EXPECT_THAT(scalar_colors(group->get_2d_data()->GetCellData()),
              ElementsAre(channels(color_number(10)), channels(color_number(14)), white, channels(color_number(1)),
                          channels(color_number(3))));

  OpenGroup colored;
  colored.set_dont_observe();
  more.elements[Tarn::Edge] = {edges[2], edges[3]};
  colored.set_mesh(nullptr, more, model.get());
  colors[Tarn::Edge] = {color_number(2), color_number(99)};
  colored.set_cell_color_array({}, colors);
  group->add_mesh(&colored);
  MeshVector less;
  less.elements[Tarn::Edge] = {edges[0]};
  less.nodes = {mesh.nodes[0]};
  EXPECT_TRUE(group->remove_mesh(less));
  EXPECT_THAT(scalar_colors(group->get_2d_data()->GetCellData()),
              ElementsAre(channels(color_number(14)), channels(color_number(1)), channels(color_number(2)),
                          channels(color_number(3))));
}

TEST_F(MeshGroup, GivenCellColors_WhenNothingIsRemoved_ThenTheSortStillTakesColorsAlong) {
  show(edge_chain(2));
  const auto& edges = mesh.mesh.elements[Tarn::Edge];
  MeshVector set;
  set.elements[Tarn::Edge] = {edges[1], edges[0]};
  group->set_mesh(mesh.owner, set, model.get());
  std::array<std::vector<TovanColor>, 10> colors;
  colors[Tarn::Edge] = {color_number(1), color_number(0)};
  group->set_cell_color_array({}, colors);
  EXPECT_FALSE(group->remove_mesh(MeshVector()));
  EXPECT_THAT(scalar_colors(group->get_2d_data()->GetCellData()),
              ElementsAre(channels(color_number(0)), channels(color_number(1))));
}

TEST_F(MeshGroup, GivenABuiltGroup_WhenItsSetChanges_ThenTheFilteredSetStaysUntilTheNextBuild) {
  show(edge_chain(3));
  const auto& edges = mesh.mesh.elements[Tarn::Edge];
  EXPECT_TRUE(group->get_filtered_mesh().empty());
  group->get_2d_data();
  expect_equal(group->get_filtered_mesh(), mesh.mesh);
  MeshVector some;
  some.elements[Tarn::Edge] = {edges[1]};
  group->remove_mesh(some);
  expect_equal(group->get_filtered_mesh(), mesh.mesh);
  group->get_2d_data();
  EXPECT_THAT(group->get_filtered_mesh().elements[Tarn::Edge], ElementsAre(edges[0], edges[2]));
  OpenGroup other;
  other.set_dont_observe();
  other.set_mesh(nullptr, some, model.get());
  group->add_mesh(&other);
  EXPECT_EQ(group->get_filtered_mesh().elements[Tarn::Edge].size(), 2u);
  group->set_mesh(mesh.owner, some, model.get());
  EXPECT_EQ(group->get_filtered_mesh().elements[Tarn::Edge].size(), 2u);
  group->get_2d_data();
  expect_equal(group->get_filtered_mesh(), some);
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

// ------------------------------------------------------------------------------------------ notifications

TEST_F(MeshGroup, GivenAReportOfChange_WhenDataAreAskedFor_ThenTheSetIsRebuiltOnce) {
  struct Row {
    const char* name;
    std::function<void(OpenGroup&)> ask;
  };
  const Row rows[] = {{"get_mesh", [](OpenGroup& asked) { asked.get_mesh(); }},
                      {"get_filtered_mesh", [](OpenGroup& asked) { asked.get_filtered_mesh(); }},
                      {"get_2d_data", [](OpenGroup& asked) { asked.get_2d_data(); }},
                      {"update_mesh", [](OpenGroup& asked) { asked.update_mesh(); }}};
  for (const Row& row : rows) {
    show(edge_chain(1));
    row.ask(*group);
    EXPECT_EQ(group->rebuilds, 0) << row.name;
    expect_effect(*group, *data_group, {false, false, true}, [&] { group->notify_mesh_modified(); });
    EXPECT_EQ(group->rebuilds, 0) << row.name;
    expect_effect(*group, *data_group, {true, false, false}, [&] { row.ask(*group); });
    EXPECT_EQ(group->rebuilds, 1) << row.name;
    row.ask(*group);
    EXPECT_EQ(group->rebuilds, 1) << row.name;
  }
}

TEST_F(MeshGroup, GivenReadersThatDoNotUpdate_WhenAsked_ThenThePendingRebuildWaits) {
  show(edge_chain(1));
  group->notify_mesh_modified();
  EXPECT_FALSE(group->empty());
  group->validate();
  group->get_color();
  group->mesh_owner();
  EXPECT_EQ(group->rebuilds, 0);
}

TEST_F(MeshGroup, GivenMovedNodes_WhenReported_ThenMeshTimeMovesAndTheSetStays) {
  show(edge_chain(1));
  expect_effect(*group, *data_group, {true, false, true}, [&] { group->notify_mesh_transformed(); });
  group->get_2d_data();
  EXPECT_EQ(group->rebuilds, 0);
  EXPECT_EQ(group->builds, 1);
}

TEST_F(MeshGroup, GivenADeletedOwner_WhenItIsTheGroupsOwn_ThenTheGroupHasNoOwnerAndNoEntitiesLeft) {
  show(two_hexes());
  expect_effect(*group, *data_group, {false, false, true}, [&] { group->notify_mesh_deleted(mesh.owner); });
  EXPECT_EQ(group->mesh_owner(), nullptr);
  EXPECT_EQ(group->rebuilds, 0);
  EXPECT_TRUE(group->get_mesh().empty());
  EXPECT_EQ(group->rebuilds, 1);
  EXPECT_FALSE(hears_of(mesh.owner));
}

TEST_F(MeshGroup, GivenADeletedOwner_WhenItIsOneOfSeveral_ThenItsEntitiesGoAtTheNextRequest) {
  use(edge_chain(3));
  const auto& edges = mesh.mesh.elements[Tarn::Edge];
  auto* other = mesh.database->add_owner("other");
  ASSERT_TRUE(mesh.database->set_element_owner(1, &edges[1], other));
  group->set_mesh(nullptr, mesh.mesh, model.get());
  group->notify_mesh_deleted(other);
  EXPECT_THAT(group->get_mesh().elements[Tarn::Edge], ElementsAre(edges[0], edges[2]));
  EXPECT_FALSE(hears_of(other));
  EXPECT_TRUE(hears_of(mesh.owner));
}

TEST_F(MeshGroup, GivenADeletedOwnerThatIsNotTheGroups_WhenReported_ThenItIsUnregisteredAndTheGroupMarkedAllTheSame) {
  show(two_hexes());
  auto* other = mesh.database->add_owner("other");
  model->register_owner(group.get(), other);
  ASSERT_TRUE(hears_of(other));
  const int before = group->rebuilds;
  expect_effect(*group, *data_group, {false, false, true}, [&] { group->notify_mesh_deleted(other); });
  group->get_mesh();
  EXPECT_EQ(group->rebuilds, before + 1);
  EXPECT_EQ(group->mesh_owner(), mesh.owner);
  EXPECT_FALSE(hears_of(other));
  EXPECT_TRUE(hears_of(mesh.owner));
}

// ------------------------------------------------------------------------------------------ rebuild_mesh

TEST_F(MeshGroup, GivenAnOwner_WhenRebuilt_ThenTheSetIsWhatTheModelDrawsForIt) {
  show(edge_chain(2));
  const auto added = mesh.add_element(Tarn::Edge, {0, 2});
  const auto gone = mesh.mesh.elements[Tarn::Edge][0];
  ASSERT_TRUE(mesh.database->delete_elements(1, &gone));
  model->update_mesh_modified(mesh.owner);
  EXPECT_THAT(group->get_mesh().elements[Tarn::Edge], ElementsAre(mesh.mesh.elements[Tarn::Edge][1], added));
  EXPECT_EQ(group->get_mesh().size(), 2);
}

TEST_F(MeshGroup, GivenAnExplicitSet_WhenRebuilt_ThenItLosesWhatIsGoneAndNeverGrows) {
  use(edge_chain(4));
  const auto edges = mesh.mesh.elements[Tarn::Edge];
  ASSERT_TRUE(mesh.database->add_to_node_set(mesh.owner, 2, mesh.nodes.data()));
  MeshVector set;
  set.nodes = {mesh.nodes[1], mesh.nodes[0]};
  set.elements[Tarn::Edge] = {edges[3], edges[1], edges[3], edges[0]};
  group->set_mesh(nullptr, set, model.get());
  mesh.add_element(Tarn::Edge, {0, 2});
  ASSERT_TRUE(mesh.database->delete_elements(1, &edges[1]));
  group->notify_mesh_modified();
  EXPECT_THAT(group->get_mesh().elements[Tarn::Edge], ElementsAre(edges[0], edges[3]));
  EXPECT_THAT(group->get_mesh().nodes, ElementsAre(mesh.nodes[0], mesh.nodes[1]));
}

TEST_F(MeshGroup, GivenAnExplicitSetOfAllKinds_WhenRebuilt_ThenEachKindIsKept) {
  use(each_linear_kind());
  group->set_mesh(nullptr, mesh.mesh, model.get());
  group->notify_mesh_modified();
  expect_equal(group->get_mesh(), mesh.mesh);
  EXPECT_EQ(group->get_mesh().size(), 9);
}

TEST_F(MeshGroup, GivenAnExplicitSetOfTwoOwners_WhenRebuilt_ThenTheirPartsFollowEachOtherInOwnerOrder) {
  use(edge_chain(4));
  const auto edges = mesh.mesh.elements[Tarn::Edge];
  auto* other = mesh.database->add_owner("other");
  ASSERT_TRUE(mesh.database->set_element_owner(1, &edges[1], other));
  group->set_mesh(nullptr, mesh.mesh, model.get());
  group->notify_mesh_modified();
  if (std::less<>()(mesh.owner, other))
    EXPECT_THAT(group->get_mesh().elements[Tarn::Edge], ElementsAre(edges[0], edges[2], edges[3], edges[1]));
  else
    EXPECT_THAT(group->get_mesh().elements[Tarn::Edge], ElementsAre(edges[1], edges[0], edges[2], edges[3]));
}

TEST_F(MeshGroup, GivenCellColors_WhenRebuilt_ThenColorsStayWithTheirHandlesAndNewEntitiesAreWhite) {
  use(edge_chain(3));
  ASSERT_TRUE(mesh.database->add_to_node_set(mesh.owner, 3, mesh.nodes.data()));
  const auto edges = mesh.mesh.elements[Tarn::Edge];
  MeshVector set;
  set.nodes = {mesh.nodes[2], mesh.nodes[0]};
  set.elements[Tarn::Edge] = {edges[2], edges[1], edges[0], edges[2]};
  group->set_mesh(mesh.owner, set, model.get());
  std::array<std::vector<TovanColor>, 10> colors;
  // The fourth entry names an edge for the second time: the first colour counts.
  colors[Tarn::Edge] = {color_number(12), color_number(11), color_number(10), color_number(99)};
  group->set_cell_color_array({color_number(2), color_number(0)}, colors);
  ASSERT_TRUE(mesh.database->delete_elements(1, &edges[1]));
  mesh.add_element(Tarn::Edge, {0, 3});
  group->notify_mesh_modified();

  auto* grid = group->get_2d_data();
  EXPECT_EQ(group->get_mesh().nodes.size(), 3u);
  EXPECT_EQ(group->get_mesh().elements[Tarn::Edge].size(), 3u);
  EXPECT_THAT(scalar_colors(grid->GetCellData()),
              ElementsAre(channels(color_number(0)), white, channels(color_number(2)), channels(color_number(10)),
                          channels(color_number(12)), white));
}

/// Lists what an owner has back to front.
class BackToFront : public RecordingMeshData {
public:
  using RecordingMeshData::RecordingMeshData;
  void get_owner_nodes(Tarn::SMeshOwnerType* owner, Count* count, int unused, Node* nodes) override {
    RecordingMeshData::get_owner_nodes(owner, count, unused, nodes);
    std::reverse(nodes, nodes + *count);
  }
  void get_owner_elements(Tarn::SMeshOwnerType* owner, Tarn::ElementType type, Count* count, Elem* elements) override {
    RecordingMeshData::get_owner_elements(owner, type, count, elements);
    std::reverse(elements, elements + *count);
  }
};

TEST_F(MeshGroup, GivenADatabaseThatListsInAnyOrder_WhenRebuilt_ThenOnlyCellColorsSortTheSet) {
  use(each_linear_kind());
  for (std::size_t type = 1; type < 10; ++type)
    mesh.add_own_element(static_cast<Tarn::ElementType>(type), linear_node_count(static_cast<Tarn::ElementType>(type)));
  ASSERT_TRUE(mesh.database->add_to_node_set(mesh.owner, mesh.nodes.size(), mesh.nodes.data()));
  db = std::make_unique<BackToFront>(*mesh.database);
  model = std::make_unique<GMeshModel>(db.get());
  MeshVector sorted = mesh.mesh;
  sorted.nodes = mesh.nodes;
  sorted.sort_unique();
  MeshVector reversed = sorted;
  std::reverse(reversed.nodes.begin(), reversed.nodes.end());
  for (auto& list : reversed.elements)
    std::reverse(list.begin(), list.end());

  group->set_mesh(mesh.owner, sorted, model.get());
  group->notify_mesh_modified();
  expect_equal(group->get_mesh(), reversed);

  std::array<std::vector<TovanColor>, 10> colors;
  for (std::size_t type = 1; type < 10; ++type)
    colors[type] = {color_number(static_cast<int>(type) + 10), color_number(static_cast<int>(type))};
  std::vector<TovanColor> node_colors;
  for (std::size_t i = 0; i < mesh.nodes.size(); ++i)
    node_colors.push_back(color_number(static_cast<int>(1000 + mesh.nodes.size() - i)));
  group->set_cell_color_array(node_colors, colors);
  group->notify_mesh_modified();
  expect_equal(group->get_mesh(), sorted);
  // Shrunk, every kind but nodes is drawn, in the order of the kinds; the last node colours are looked at unshrunk.
  const auto unshrunk = scalar_colors(group->get_2d_data()->GetCellData());
  for (std::size_t i = 0; i < mesh.nodes.size(); ++i)
    EXPECT_EQ(unshrunk[i], channels(color_number(static_cast<int>(1001 + i)))) << i;
  group->set_shrink_factor(0.5F);
  group->notify_mesh_transformed();
  const int sides[] = {0, 1, 1, 1, 1, 4, 6, 5, 5, 1};
  std::vector<Color> expected;
  for (int type = 1; type < 10; ++type)
    for (const int number : {type, type + 10})
      expected.insert(expected.end(), static_cast<std::size_t>(sides[type]), channels(color_number(number)));
  EXPECT_EQ(scalar_colors(group->get_2d_data()->GetCellData()), expected);
}

TEST_F(MeshGroup, GivenCellColorsInListsThatAreTooShort_WhenRebuilt_ThenTheRestIsWhite) {
  show(edge_chain(3));
  std::array<std::vector<TovanColor>, 10> colors;
  colors[Tarn::Edge] = {color_number(1)};
  group->set_cell_color_array({}, colors);
  group->notify_mesh_modified();
  EXPECT_THAT(scalar_colors(group->get_2d_data()->GetCellData()), ElementsAre(channels(color_number(1)), white, white));
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
