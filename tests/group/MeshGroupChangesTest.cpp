// How a group's set of entities follows what is added, removed and reported.

#include "group/GMeshGroup.h"

#include "tests/group/MeshGroupFixture.h"

#include <vtkCellData.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace {

using namespace group_test;
using namespace test_support;
using ::testing::ElementsAre;

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

TEST_F(MeshGroup, GivenADatabaseThatListsInAnyOrder_WhenAnExplicitSetIsRebuilt_ThenNothingOfItIsLost) {
  use(edge_chain(4));
  ASSERT_TRUE(mesh.database->add_to_node_set(mesh.owner, mesh.nodes.size(), mesh.nodes.data()));
  db = std::make_unique<BackToFront>(*mesh.database);
  model = std::make_unique<GMeshModel>(db.get());
  MeshVector set = mesh.mesh;
  set.nodes = mesh.nodes;
  group->set_mesh(nullptr, set, model.get());
  group->notify_mesh_modified();
  expect_equal(group->get_mesh(), set);
}

TEST_F(MeshGroup, GivenAnEntityListedManyTimes_WhenRebuilt_ThenItsFirstColorCounts) {
  use(edge_chain(2));
  const auto edges = mesh.mesh.elements[Tarn::Edge];
  MeshVector set;
  std::array<std::vector<TovanColor>, 10> colors;
  for (int i = 0; i < 100; ++i) {
    set.elements[Tarn::Edge].push_back(edges[i % 3 == 0 ? 1 : 0]);
    colors[Tarn::Edge].push_back(color_number(i));
  }
  group->set_mesh(mesh.owner, set, model.get());
  group->set_cell_color_array({}, colors);
  group->notify_mesh_modified();
  EXPECT_THAT(scalar_colors(group->get_2d_data()->GetCellData()),
              ElementsAre(channels(color_number(1)), channels(color_number(0))));
}

TEST_F(MeshGroup, GivenCellColorsInListsThatAreTooShort_WhenRebuilt_ThenTheRestIsWhite) {
  show(edge_chain(3));
  std::array<std::vector<TovanColor>, 10> colors;
  colors[Tarn::Edge] = {color_number(1)};
  group->set_cell_color_array({}, colors);
  group->notify_mesh_modified();
  EXPECT_THAT(scalar_colors(group->get_2d_data()->GetCellData()), ElementsAre(channels(color_number(1)), white, white));
}

} // namespace
