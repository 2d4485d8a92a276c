#include "mesh/MeshQueries.h"

#include "tests/support/NamedMeshes.h"
#include "tests/support/RecordingMeshData.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <stdexcept>

namespace {

using namespace test_support;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Elements = std::vector<Tarn::Handle<1>>;
using Nodes = std::vector<Tarn::Handle<0>>;

template <class Handle> std::vector<std::uint64_t> values(const std::vector<Handle>& list) {
  std::vector<std::uint64_t> result;
  for (const Handle handle : list)
    result.push_back(handle.value);
  return result;
}

/// One element of each linear kind, behind a recorder.
class MeshQueries : public ::testing::Test {
protected:
  Elements all() const {
    Elements elements;
    for (const Elements& list : mesh.mesh.elements)
      elements.insert(elements.end(), list.begin(), list.end());
    return elements;
  }
  Tarn::Handle<1> element(Tarn::ElementType type) const { return mesh.mesh.elements[type].at(0); }
  /// The one call that was made.
  DatabaseCall only_call() const {
    EXPECT_EQ(db.calls().size(), 1u);
    return db.calls().empty() ? DatabaseCall() : db.calls()[0];
  }

  NamedMesh mesh = each_linear_kind();
  RecordingMeshData db{*mesh.database};
  std::vector<int> ids[10];
};

TEST_F(MeshQueries, GivenElementsOfEachKind_WhenAskedForTheType_ThenItsNameComesFromOneCall) {
  const char* const names[] = {"", "OneNode", "Edge", "Tri", "Quad", "Tet", "Hex", "Wedge", "Pyramid", "Superelement"};
  for (unsigned type = 1; type < 10; ++type) {
    db.forget_calls();
    const auto handle = element(static_cast<Tarn::ElementType>(type));
    EXPECT_STREQ(OB::get_element_type(handle, &db), names[type]);
    EXPECT_EQ(only_call().operation, "get_element_type");
    EXPECT_THAT(only_call().handles, ElementsAre(handle.value));
  }
}

TEST_F(MeshQueries, GivenAnUnknownElement_WhenAskedForTheType_ThenItIsNoElement) {
  db.lose(element(Tarn::Hex));
  EXPECT_STREQ(OB::get_element_type(element(Tarn::Hex), &db), "None");
  db.report_type(element(Tarn::Tet), 77);
  EXPECT_STREQ(OB::get_element_type(element(Tarn::Tet), &db), "");
}

TEST_F(MeshQueries, GivenElements_WhenAskedForTypes_ThenOneBulkCallFillsTheResizedList) {
  Elements elements = {element(Tarn::Hex), element(Tarn::Tri), element(Tarn::Hex)};
  std::vector<Tarn::ElementType> types(7, Tarn::Superelement);
  OB::get_element_types(3, elements.data(), types, &db);
  EXPECT_THAT(types, ElementsAre(Tarn::Hex, Tarn::Tri, Tarn::Hex));
  EXPECT_EQ(only_call().operation, "get_element_types");
  EXPECT_EQ(only_call().handles, values(elements));
}

TEST_F(MeshQueries, GivenNoElements_WhenAskedForTypes_ThenTheListIsEmptiedWithoutACall) {
  std::vector<Tarn::ElementType> types(2, Tarn::Hex);
  OB::get_element_types(0, nullptr, types, &db);
  EXPECT_THAT(types, IsEmpty());
  EXPECT_THAT(db.calls(), IsEmpty());
}

TEST_F(MeshQueries, GivenANegativeCount_WhenAskedForTypes_ThenItIsALengthError) {
  std::vector<Tarn::ElementType> types;
  EXPECT_THROW(OB::get_element_types(-1, nullptr, types, &db), std::length_error);
  EXPECT_THAT(db.calls(), IsEmpty());
}

TEST_F(MeshQueries, GivenADatabaseThatFails_WhenAskedForTypes_ThenOldEntriesStayAndNewOnesAreZero) {
  Elements elements = all();
  std::vector<Tarn::ElementType> types(1, Tarn::Quad);
  db.fail("get_element_types");
  OB::get_element_types(3, elements.data(), types, &db);
  EXPECT_THAT(types, ElementsAre(Tarn::Quad, Tarn::None, Tarn::None));
}

TEST_F(MeshQueries, GivenTwoHexes_WhenAskedForConnectivity_ThenEntriesAreConcatenatedInElementOrder) {
  const NamedMesh hexes = two_hexes();
  RecordingMeshData hex_db(*hexes.database);
  const Elements& elements = hexes.mesh.elements[Tarn::Hex];
  const Elements reversed(elements.rbegin(), elements.rend());
  Nodes connectivity(99);
  OB::get_element_type_connectivity(reversed, 8, connectivity, &hex_db);
  std::vector<std::uint64_t> expected;
  // Lattice of 3 x 2 x 2 nodes: the second cube first.
  for (const int node : {1, 2, 5, 4, 7, 8, 11, 10, 0, 1, 4, 3, 6, 7, 10, 9})
    expected.push_back(hexes.nodes[static_cast<std::size_t>(node)].value);
  EXPECT_EQ(values(connectivity), expected);
  ASSERT_EQ(hex_db.calls().size(), 1u);
  EXPECT_EQ(hex_db.calls()[0].operation, "get_connectivity");
  EXPECT_EQ(hex_db.calls()[0].handles, values(reversed));
  EXPECT_THAT(hex_db.calls()[0].numbers, ElementsAre(16));
}

TEST_F(MeshQueries, GivenNoElements_WhenAskedForConnectivity_ThenTheDatabaseIsAskedAllTheSame) {
  Nodes connectivity(3);
  OB::get_element_type_connectivity({}, 4, connectivity, &db);
  EXPECT_THAT(connectivity, IsEmpty());
  EXPECT_EQ(only_call().operation, "get_connectivity");
  EXPECT_THAT(only_call().handles, IsEmpty());
  EXPECT_THAT(only_call().numbers, ElementsAre(0));
}

TEST_F(MeshQueries, GivenADatabaseThatReportsAnotherLength_WhenAskedForConnectivity_ThenTheSizeStaysAsAsked) {
  for (const std::uint64_t reported : {0, 3, 4000}) {
    db.report_count("get_connectivity", reported);
    Nodes connectivity;
    OB::get_element_type_connectivity({element(Tarn::Tet)}, 4, connectivity, &db);
    EXPECT_EQ(connectivity.size(), 4u);
  }
}

TEST_F(MeshQueries, GivenAWiderStride_WhenAskedForConnectivity_ThenMissingNodesAreNull) {
  Nodes connectivity;
  OB::get_element_type_connectivity({element(Tarn::Tri)}, 5, connectivity, &db);
  ASSERT_EQ(connectivity.size(), 5u);
  EXPECT_NE(connectivity[2].value, 0u);
  EXPECT_EQ(connectivity[3].value, 0u);
  EXPECT_EQ(connectivity[4].value, 0u);
}

TEST_F(MeshQueries, GivenNodes_WhenAskedForCoordinates_ThenOneCallWritesThemInterleaved) {
  const NamedMesh hex = one_hex();
  RecordingMeshData hex_db(*hex.database);
  const Nodes nodes = {hex.nodes[6], hex.nodes[1]};
  float xyz[7] = {-1, -1, -1, -1, -1, -1, -1};
  OB::get_coordinates(nodes, xyz, &hex_db);
  EXPECT_THAT(xyz, ElementsAre(1, 1, 1, 1, 0, 0, -1));
  ASSERT_EQ(hex_db.calls().size(), 1u);
  EXPECT_EQ(hex_db.calls()[0].operation, "get_float_coordinates");
  EXPECT_EQ(hex_db.calls()[0].handles, values(nodes));
}

TEST_F(MeshQueries, GivenNoNodes_WhenAskedForCoordinates_ThenTheDatabaseIsAskedAllTheSame) {
  OB::get_coordinates({}, nullptr, &db);
  EXPECT_EQ(only_call().operation, "get_float_coordinates");
}

TEST_F(MeshQueries, GivenMixedElements_WhenBrokenOut_ThenListsAndPositionsFollowInputOrder) {
  const auto hex = element(Tarn::Hex);
  const auto tri = element(Tarn::Tri);
  const auto super = element(Tarn::Superelement);
  const Elements elements = {super, hex, tri, hex};
  MeshVector out;
  OB::breakout_mesh_ents(4, elements.data(), out, &db, &ids);
  EXPECT_THAT(out.elements[Tarn::Hex], ElementsAre(hex, hex));
  EXPECT_THAT(out.elements[Tarn::Tri], ElementsAre(tri));
  EXPECT_THAT(out.elements[Tarn::Superelement], ElementsAre(super));
  EXPECT_EQ(out.size(), 4);
  EXPECT_THAT(ids[Tarn::Hex], ElementsAre(1, 3));
  EXPECT_THAT(ids[Tarn::Tri], ElementsAre(2));
  EXPECT_THAT(ids[Tarn::Superelement], ElementsAre(0));
  EXPECT_EQ(only_call().operation, "get_element_types");
  EXPECT_EQ(only_call().handles, values(elements));
}

TEST_F(MeshQueries, GivenNoIdTable_WhenBrokenOut_ThenTheSetIsFilledAlone) {
  MeshVector out;
  OB::breakout_mesh_ents(all(), out, &db, nullptr);
  EXPECT_EQ(out.size(), 9);
  for (std::size_t type = 1; type < 10; ++type)
    EXPECT_EQ(out.elements[type].size(), 1u) << "kind " << type;
}

TEST_F(MeshQueries, GivenTheSameInputTwice_WhenBrokenOut_ThenEverythingDoubles) {
  MeshVector out;
  OB::breakout_mesh_ents(all(), out, &db, &ids);
  OB::breakout_mesh_ents(all(), out, &db, &ids);
  EXPECT_EQ(out.size(), 18);
  for (std::size_t type = 1; type < 10; ++type) {
    const auto handle = element(static_cast<Tarn::ElementType>(type));
    const int position = static_cast<int>(type) - 1;
    EXPECT_THAT(out.elements[type], ElementsAre(handle, handle));
    EXPECT_THAT(ids[type], ElementsAre(position, position));
  }
}

TEST_F(MeshQueries, GivenElementsOfNoOrUnknownKind_WhenBrokenOut_ThenTheyAreLeftOut) {
  db.lose(element(Tarn::Hex));
  db.report_type(element(Tarn::Tet), 10);
  db.report_type(element(Tarn::Quad), 0xffffffffu);
  MeshVector out;
  OB::breakout_mesh_ents(all(), out, &db, &ids);
  EXPECT_EQ(out.size(), 6);
  EXPECT_THAT(out.elements[0], IsEmpty());
  EXPECT_THAT(ids[0], IsEmpty());
  EXPECT_THAT(out.elements[Tarn::Hex], IsEmpty());
  EXPECT_THAT(ids[Tarn::Hex], IsEmpty());
  EXPECT_THAT(out.elements[Tarn::Tet], IsEmpty());
  EXPECT_THAT(out.elements[Tarn::Quad], IsEmpty());
  EXPECT_THAT(ids[Tarn::Pyramid], ElementsAre(7));
}

TEST_F(MeshQueries, GivenAnEmptyList_WhenBrokenOut_ThenNothingIsAsked) {
  MeshVector out;
  OB::breakout_mesh_ents(0, nullptr, out, &db, &ids);
  OB::breakout_mesh_ents({}, out, &db, &ids);
  EXPECT_TRUE(out.empty());
  EXPECT_THAT(db.calls(), IsEmpty());
}

TEST_F(MeshQueries, GivenANegativeCount_WhenBrokenOut_ThenItIsALengthError) {
  MeshVector out;
  EXPECT_THROW(OB::breakout_mesh_ents(-1, nullptr, out, &db, nullptr), std::length_error);
  EXPECT_THAT(db.calls(), IsEmpty());
  EXPECT_TRUE(out.empty());
}

TEST_F(MeshQueries, GivenNodes_WhenAskedForIds_ThenOneCallFillsTheResizedList) {
  const Nodes nodes = {mesh.nodes[4], mesh.nodes[0], mesh.nodes[4]};
  std::vector<int> out(9, -7);
  OB::get_node_ids(nodes.size(), nodes.data(), out, &db);
  EXPECT_THAT(out, ElementsAre(5, 1, 5));
  EXPECT_EQ(only_call().operation, "get_node_ids");
  EXPECT_EQ(only_call().handles, values(nodes));
}

TEST_F(MeshQueries, GivenElements_WhenAskedForIds_ThenOneCallFillsTheResizedList) {
  const Elements elements = {element(Tarn::Superelement), element(Tarn::OneNode)};
  std::vector<int> out;
  OB::get_element_ids(elements.size(), elements.data(), out, &db);
  EXPECT_THAT(out, ElementsAre(9, 1));
  EXPECT_EQ(only_call().operation, "get_element_ids");
  EXPECT_EQ(only_call().handles, values(elements));
}

TEST_F(MeshQueries, GivenElementsWithAndWithoutGlobalIds_WhenAskedForThem_ThenFlagsTell) {
  const auto hex = element(Tarn::Hex);
  const int global = 4711;
  ASSERT_TRUE(mesh.database->set_global_ids(1, &hex, &global));
  const Elements elements = {element(Tarn::Tri), hex};
  std::vector<int> out;
  std::vector<char> has_id(5, 1);
  has_id.resize(1, 1);
  has_id[0] = 0;
  OB::get_global_element_ids(elements.size(), elements.data(), out, has_id, &db);
  ASSERT_EQ(out.size(), 2u);
  ASSERT_EQ(has_id.size(), 2u);
  EXPECT_EQ(has_id[0], 0);
  EXPECT_NE(has_id[1], 0);
  EXPECT_EQ(out[1], global);
  EXPECT_EQ(only_call().operation, "get_global_element_ids");
  EXPECT_EQ(only_call().handles, values(elements));
}

TEST_F(MeshQueries, GivenADatabaseThatFails_WhenAskedForGlobalIds_ThenNewFlagsAreZero) {
  db.fail("get_global_element_ids");
  std::vector<int> out;
  std::vector<char> has_id;
  const Elements elements = all();
  OB::get_global_element_ids(elements.size(), elements.data(), out, has_id, &db);
  EXPECT_EQ(out.size(), 9u);
  EXPECT_EQ(has_id.size(), 9u);
  EXPECT_THAT(has_id, Each(0));
}

TEST_F(MeshQueries, GivenADatabaseThatFails_WhenAskedForAnything_ThenOldEntriesStayAndNewOnesAreZero) {
  for (const char* operation : {"get_node_ids", "get_element_ids", "get_global_element_ids", "get_connectivity"})
    db.fail(operation);
  const Elements elements = all();
  std::vector<int> of_nodes = {7};
  OB::get_node_ids(2, mesh.nodes.data(), of_nodes, &db);
  EXPECT_THAT(of_nodes, ElementsAre(7, 0));
  std::vector<int> of_elements = {7};
  OB::get_element_ids(2, elements.data(), of_elements, &db);
  EXPECT_THAT(of_elements, ElementsAre(7, 0));
  std::vector<int> global = {7};
  std::vector<char> has_id = {1, 1, 1};
  OB::get_global_element_ids(2, elements.data(), global, has_id, &db);
  EXPECT_THAT(global, ElementsAre(7, 0));
  EXPECT_THAT(has_id, ElementsAre(1, 1));
  Nodes connectivity = {{7}};
  OB::get_element_type_connectivity({element(Tarn::Edge)}, 2, connectivity, &db);
  EXPECT_THAT(values(connectivity), ElementsAre(7, 0));
}

TEST_F(MeshQueries, GivenACountOfZero_WhenAskedForIds_ThenOutputsAreEmptyAndNothingIsAsked) {
  std::vector<int> out(3);
  std::vector<char> has_id(3);
  OB::get_node_ids(0, nullptr, out, &db);
  EXPECT_THAT(out, IsEmpty());
  out.resize(3);
  OB::get_element_ids(0, nullptr, out, &db);
  EXPECT_THAT(out, IsEmpty());
  out.resize(3);
  OB::get_global_element_ids(0, nullptr, out, has_id, &db);
  EXPECT_THAT(out, IsEmpty());
  EXPECT_THAT(has_id, IsEmpty());
  EXPECT_THAT(db.calls(), IsEmpty());
}

TEST_F(MeshQueries, GivenTwoQuadsThatShareAnEdge_WhenAskedForEdges_ThenItComesTwiceInElementOrder) {
  const NamedMesh quads = quad_sheet(2, 1);
  RecordingMeshData quad_db(*quads.database);
  const Elements& elements = quads.mesh.elements[Tarn::Quad];
  Elements edges = {{42}};
  OB::get_edges_adjacent_to_elements(elements, edges, &quad_db);
  ASSERT_EQ(edges.size(), 9u);
  EXPECT_EQ(edges[0].value, 42u); // appended, not replaced
  Elements first;
  Elements second;
  OB::get_edges_adjacent_to_elements({elements[0]}, first, &quad_db);
  OB::get_edges_adjacent_to_elements({elements[1]}, second, &quad_db);
  ASSERT_EQ(first.size(), 4u);
  EXPECT_TRUE(std::equal(first.begin(), first.end(), edges.begin() + 1));
  EXPECT_TRUE(std::equal(second.begin(), second.end(), edges.begin() + 5));
  int shared = 0;
  for (const auto edge : first)
    shared += static_cast<int>(std::count(second.begin(), second.end(), edge));
  EXPECT_EQ(shared, 1);
}

TEST_F(MeshQueries, GivenElements_WhenAskedForEdges_ThenThereIsOneCallEachWithTheFixedArguments) {
  Elements edges;
  const Elements elements = {element(Tarn::Hex), element(Tarn::Quad)};
  OB::get_edges_adjacent_to_elements(elements, edges, &db);
  EXPECT_EQ(edges.size(), 12u + 4u);
  ASSERT_EQ(db.calls().size(), 2u);
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(db.calls()[i].operation, "get_adjacencies");
    EXPECT_THAT(db.calls()[i].handles, ElementsAre(elements[i].value));
    EXPECT_THAT(db.calls()[i].numbers, ElementsAre(1, 2, 24));
  }
}

TEST_F(MeshQueries, GivenAFailingElement_WhenAskedForEdges_ThenItAddsNothingAndTheOthersGoOn) {
  Elements edges;
  const Elements elements = {element(Tarn::Tet), element(Tarn::Hex), element(Tarn::Tri)};
  db.fail_call("get_adjacencies", 1);
  OB::get_edges_adjacent_to_elements(elements, edges, &db);
  EXPECT_EQ(edges.size(), 6u + 3u);
  EXPECT_EQ(db.count("get_adjacencies"), 3u);
}

TEST_F(MeshQueries, GivenAWrongCount_WhenAskedForEdges_ThenNoMoreThanTheCapacityIsRead) {
  struct Row {
    std::uint64_t reported;
    std::size_t taken;
  };
  for (const Row row : {Row{0, 0}, Row{2, 2}, Row{24, 24}, Row{25, 24}, Row{~std::uint64_t(0), 24}}) {
    db.report_count("get_adjacencies", row.reported);
    Elements edges;
    OB::get_edges_adjacent_to_elements({element(Tarn::Hex)}, edges, &db);
    EXPECT_EQ(edges.size(), row.taken) << "reported " << row.reported;
  }
}

// One array serves all elements: what a database claims to have written but has not is null, or left from before.
TEST_F(MeshQueries, GivenACountThatIsTooLarge_WhenAskedForEdges_ThenTheRestIsWhatEarlierElementsLeft) {
  Elements of_quad;
  Elements of_tri;
  OB::get_edges_adjacent_to_elements({element(Tarn::Quad)}, of_quad, &db);
  OB::get_edges_adjacent_to_elements({element(Tarn::Tri)}, of_tri, &db);
  ASSERT_EQ(of_quad.size(), 4u);
  ASSERT_EQ(of_tri.size(), 3u);
  db.report_count("get_adjacencies", 5);
  Elements edges;
  OB::get_edges_adjacent_to_elements({element(Tarn::Quad), element(Tarn::Tri)}, edges, &db);
  EXPECT_THAT(edges, ElementsAre(of_quad[0], of_quad[1], of_quad[2], of_quad[3], Tarn::Handle<1>(), of_tri[0],
                                 of_tri[1], of_tri[2], of_quad[3], Tarn::Handle<1>()));
}

} // namespace
