#include "CountedSkin.h"

#include "mesh/database/MeshSkinner.h"
#include "mesh/database/SideToElement.h"
#include "tests/support/NamedMeshes.h"
#include "tests/support/RecordingMeshData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

using namespace test_support;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using Elements = std::vector<Tarn::Handle<1>>;

std::vector<int> counted_from(int first, std::size_t count) {
  std::vector<int> positions(count);
  std::iota(positions.begin(), positions.end(), first);
  return positions;
}

std::vector<SkinFace> faces_of(MeshSkinner& skinner) {
  std::vector<SkinFace> faces;
  for (const Side* side : skinner.getMeshSkin()) {
    SkinFace face{side->kind, {}, side->element.value, side->position};
    for (int i = 0; i < side->node_count; ++i)
      face.nodes.push_back(side->nodes[i].value);
    faces.push_back(face);
  }
  return faces;
}

std::vector<SkinFace> skin_of(Tarn::MeshData& database, const std::vector<Solids>& solids,
                              const std::vector<Solids>& shells = {}) {
  SideToElement side_to_element(&database);
  for (const Solids& list : solids)
    side_to_element.add_elements(list.elements, list.positions);
  MeshSkinner skinner(&side_to_element);
  for (const Solids& list : shells)
    skinner.add_skin_elements(list.elements, list.positions);
  return faces_of(skinner);
}

Solids in_order(const Elements& elements) { return {elements, counted_from(0, elements.size())}; }

/// A part of the elements in random order, with random positions.
Solids some_of(Elements elements, std::mt19937& random) {
  for (std::size_t i = elements.size(); i > 1; --i)
    std::swap(elements[i - 1], elements[random() % i]);
  elements.resize(elements.size() * 2 / 3);
  Solids solids{elements, {}};
  for (std::size_t i = 0; i < elements.size(); ++i)
    solids.positions.push_back(static_cast<int>(random() % 1000));
  return solids;
}

/// A database whose node handles are far apart, as addresses are.
class SpreadNodes : public RecordingMeshData {
public:
  explicit SpreadNodes(Tarn::MeshData& database) : RecordingMeshData(database) {}
  void get_connectivity(Count count, const Elem* elements, Count* length, Node* nodes) override {
    RecordingMeshData::get_connectivity(count, elements, length, nodes);
    for (Count i = 0; i < *length; ++i)
      if (nodes[i].value != 0) nodes[i].value = (nodes[i].value & 0xffffff) * 4096 + 0x7f0000000010;
  }
};

struct KindRow {
  const char* name;
  Tarn::ElementType type;
  int node_count;
  std::vector<int> side_node_counts;
};

void PrintTo(const KindRow& row, std::ostream* out) { *out << row.name; }

class EachSolid : public testing::TestWithParam<KindRow> {};

INSTANTIATE_TEST_SUITE_P(MeshSkinner, EachSolid,
                         testing::Values(KindRow{"Tet", Tarn::Tet, 4, {3, 3, 3, 3}},
                                         KindRow{"Tet10", Tarn::Tet, 10, {6, 6, 6, 6}},
                                         KindRow{"Hex", Tarn::Hex, 8, {4, 4, 4, 4, 4, 4}},
                                         KindRow{"Hex20", Tarn::Hex, 20, {8, 8, 8, 8, 8, 8}},
                                         KindRow{"Hex27", Tarn::Hex, 27, {9, 9, 9, 9, 9, 9}},
                                         KindRow{"Wedge", Tarn::Wedge, 6, {3, 3, 4, 4, 4}},
                                         KindRow{"Wedge15", Tarn::Wedge, 15, {6, 6, 8, 8, 8}},
                                         KindRow{"Wedge18", Tarn::Wedge, 18, {6, 6, 9, 9, 9}},
                                         KindRow{"Pyramid", Tarn::Pyramid, 5, {4, 3, 3, 3, 3}},
                                         KindRow{"Pyramid13", Tarn::Pyramid, 13, {8, 6, 6, 6, 6}},
                                         KindRow{"Pyramid14", Tarn::Pyramid, 14, {9, 6, 6, 6, 6}}),
                         [](const auto& row) { return row.param.name; });

std::array<double, 3> mean_place(Tarn::MeshData& database, const std::vector<std::uint64_t>& nodes) {
  std::array<double, 3> sum{};
  for (const std::uint64_t node : nodes) {
    double xyz[3];
    database.get_node_coordinates({node}, &xyz[0], &xyz[1], &xyz[2]);
    for (std::size_t axis = 0; axis < 3; ++axis)
      sum[axis] += xyz[axis] / static_cast<double>(nodes.size());
  }
  return sum;
}

} // namespace

TEST_P(EachSolid, GivenOneSolid_WhenSkinned_ThenAllSidesComeInOrderWithAllTheirNodes) {
  const KindRow& row = GetParam();
  const NamedMesh mesh = one_element(row.type, row.node_count);
  const Tarn::Handle<1> element = mesh.mesh.elements[row.type][0];

  const std::vector<SkinFace> skin = skin_of(*mesh.database, {{{element}, {7}}});

  const MDBDefines::ElementType shape = MDBDefines::ElementTypeFromTarnType(row.type);
  ASSERT_THAT(skin, SizeIs(row.side_node_counts.size()));
  for (std::size_t side = 0; side < skin.size(); ++side) {
    SCOPED_TRACE(side);
    const auto number = static_cast<int>(side);
    EXPECT_EQ(skin[side].kind, MDBDefines::NodesPerSide(shape, number));
    EXPECT_EQ(skin[side].element, element.value);
    EXPECT_EQ(skin[side].position, 7);
    ASSERT_THAT(skin[side].nodes, SizeIs(static_cast<std::size_t>(row.side_node_counts[side])));
    std::vector<std::uint64_t> corners;
    for (int corner = 0; corner < skin[side].kind; ++corner)
      corners.push_back(mesh.nodes[MDBDefines::SidesetNodeIndices(shape, number)[corner]].value);
    const auto kind = static_cast<std::size_t>(skin[side].kind);
    EXPECT_EQ(std::vector<std::uint64_t>(skin[side].nodes.begin(), skin[side].nodes.begin() + skin[side].kind),
              corners);
    // Mid-side nodes lie between corners k and k + 1, a centre in the middle of the corners.
    for (std::size_t k = 0; k < kind && skin[side].nodes.size() >= 2 * kind; ++k)
      EXPECT_EQ(mean_place(*mesh.database, {skin[side].nodes[kind + k]}),
                mean_place(*mesh.database, {corners[k], corners[(k + 1) % kind]}));
    if (skin[side].nodes.size() == 2 * kind + 1) {
      EXPECT_EQ(mean_place(*mesh.database, {skin[side].nodes.back()}), mean_place(*mesh.database, corners));
    }
  }
}

TEST(MeshSkinner, GivenTwoHexesWithACommonSide_WhenSkinned_ThenItIsLeftOutAndTheRestIsInOrder) {
  const NamedMesh mesh = two_hexes();
  const Elements& hexes = mesh.mesh.elements[Tarn::Hex];

  const std::vector<SkinFace> skin = skin_of(*mesh.database, {in_order(hexes)});

  ASSERT_THAT(skin, SizeIs(10));
  EXPECT_EQ(skin, counted_skin(*mesh.database, {in_order(hexes)}));
  EXPECT_TRUE(std::all_of(skin.begin(), skin.begin() + 5, [&](auto& face) { return face.element == hexes[0].value; }));
  EXPECT_TRUE(std::all_of(skin.begin() + 5, skin.end(), [&](auto& face) { return face.element == hexes[1].value; }));
}

TEST(MeshSkinner, GivenAShellOnASide_WhenSkinned_ThenItComesFirstAndStandsForTheSide) {
  const NamedMesh mesh = one_hex_and_its_skin();
  const Elements& quads = mesh.mesh.elements[Tarn::Quad];
  const Elements some = {quads[4], quads[1]};

  const auto skin = skin_of(*mesh.database, {in_order(mesh.mesh.elements[Tarn::Hex])}, {{some, {40, 10}}});

  ASSERT_THAT(skin, SizeIs(6));
  EXPECT_EQ(skin[0].element, quads[4].value);
  EXPECT_EQ(skin[0].position, 40);
  EXPECT_EQ(skin[1].element, quads[1].value);
  EXPECT_EQ(skin[1].position, 10);
  for (std::size_t i = 2; i < skin.size(); ++i) {
    EXPECT_EQ(skin[i].element, mesh.mesh.elements[Tarn::Hex][0].value);
    for (std::size_t shell = 0; shell < 2; ++shell)
      EXPECT_FALSE(std::is_permutation(skin[i].nodes.begin(), skin[i].nodes.end(), skin[shell].nodes.begin()));
  }
}

TEST(MeshSkinner, GivenShellsOfSeveralNodeCounts_WhenSkinned_ThenEachKeepsAllItsNodes) {
  NamedMesh mesh;
  for (const int nodes : {4, 9, 8})
    mesh.add_own_element(Tarn::Quad, nodes, nodes);
  for (const int nodes : {7, 3, 6})
    mesh.add_own_element(Tarn::Tri, nodes, nodes);

  const auto skin =
      skin_of(*mesh.database, {}, {in_order(mesh.mesh.elements[Tarn::Quad]), in_order(mesh.mesh.elements[Tarn::Tri])});

  std::vector<std::size_t> counts;
  std::vector<int> kinds;
  std::vector<std::uint64_t> nodes;
  for (const SkinFace& face : skin) {
    counts.push_back(face.nodes.size());
    kinds.push_back(face.kind);
    nodes.insert(nodes.end(), face.nodes.begin(), face.nodes.end());
  }
  EXPECT_THAT(counts, ElementsAre(4, 9, 8, 7, 3, 6));
  EXPECT_THAT(kinds, ElementsAre(4, 4, 4, 3, 3, 3));
  std::vector<std::uint64_t> all;
  for (const Tarn::Handle<0> node : mesh.nodes)
    all.push_back(node.value);
  EXPECT_EQ(nodes, all);
}

TEST(MeshSkinner, GivenASolidListedTwice_WhenSkinned_ThenItCountsOnce) {
  const NamedMesh mesh = two_hexes();
  const Elements& hexes = mesh.mesh.elements[Tarn::Hex];

  EXPECT_EQ(skin_of(*mesh.database, {{{hexes[0], hexes[1], hexes[0]}, {5, 6, 7}}}),
            skin_of(*mesh.database, {{{hexes[0], hexes[1]}, {5, 6}}}));
  EXPECT_EQ(skin_of(*mesh.database, {{{hexes[1]}, {6}}, {{hexes[0], hexes[1]}, {5, 8}}}),
            skin_of(*mesh.database, {{{hexes[1], hexes[0]}, {6, 5}}}));
}

TEST(MeshSkinner, GivenThreeSolidsOnOneSide_WhenSkinned_ThenItIsNotExterior) {
  NamedMesh mesh;
  for (const double z : {0.0, 1.0, -1.0, 2.0})
    mesh.add_node(0, 0, z);
  mesh.add_node(1, 0, 0);
  mesh.add_node(0, 1, 0);
  for (const int apex : {1, 2, 3})
    mesh.add_element(Tarn::Tet, {0, 4, 5, apex});

  const auto skin = skin_of(*mesh.database, {in_order(mesh.mesh.elements[Tarn::Tet])});

  EXPECT_THAT(skin, SizeIs(9));
  EXPECT_EQ(skin, counted_skin(*mesh.database, {in_order(mesh.mesh.elements[Tarn::Tet])}));
}

TEST(MeshSkinner, GivenACollapsedHexOnAWedge_WhenSkinned_ThenTheSideThatBecameATriangleIsShared) {
  NamedMesh mesh;
  for (const double z : {0.0, 1.0, 2.0})
    for (const auto& corner : {std::array<double, 2>{0, 0}, {1, 0}, {0, 1}})
      mesh.add_node(corner[0], corner[1], z);
  mesh.add_element(Tarn::Wedge, {0, 2, 1, 3, 5, 4});
  mesh.add_element(Tarn::Hex, {3, 4, 5, 5, 6, 7, 8, 8});

  const std::vector<Solids> solids = {in_order(mesh.mesh.elements[Tarn::Hex]),
                                      in_order(mesh.mesh.elements[Tarn::Wedge])};
  const auto skin = skin_of(*mesh.database, solids);

  // Of the hex: three whole sides and the far triangle; the side without area is none. Of the wedge: four.
  EXPECT_THAT(skin, SizeIs(8));
  EXPECT_EQ(skin, counted_skin(*mesh.database, solids));
}

TEST(MeshSkinner, GivenEntitiesThatDrawNothing_WhenAdded_ThenTheAnswerSaysSo) {
  const NamedMesh mesh = one_hex_and_its_skin();
  const Tarn::Handle<1> hex = mesh.mesh.elements[Tarn::Hex][0];
  const Tarn::Handle<1> quad = mesh.mesh.elements[Tarn::Quad][0];
  SideToElement solids(mesh.database.get());
  solids.add_elements({}, {});
  solids.add_elements({quad}, {0});
  solids.add_elements({{12345}}, {0});
  MeshSkinner skinner(&solids);

  EXPECT_FALSE(skinner.add_skin_elements({}, {}));
  EXPECT_FALSE(skinner.add_skin_elements({hex}, {0}));
  EXPECT_FALSE(skinner.add_skin_elements({{12345}}, {0}));
  EXPECT_THAT(faces_of(skinner), IsEmpty());
  EXPECT_TRUE(skinner.add_skin_elements({quad}, {0}));
  EXPECT_THAT(faces_of(skinner), SizeIs(1));
  EXPECT_THAT(faces_of(skinner), SizeIs(1)) << "asking again replaces the answer";
}

TEST(MeshSkinner, GivenElementsThatTheDatabaseLost_WhenSkinned_ThenTheOthersAreAsIfAlone) {
  const NamedMesh mesh = hex_block(3, 3, 3);
  RecordingMeshData database(*mesh.database);
  Elements hexes = mesh.mesh.elements[Tarn::Hex];
  database.lose(hexes[0]);
  database.lose(hexes[13]);

  const auto skin = skin_of(database, {in_order(hexes)});

  Solids known = in_order(hexes);
  for (const std::ptrdiff_t lost : {13, 0}) {
    known.elements.erase(known.elements.begin() + lost);
    known.positions.erase(known.positions.begin() + lost);
  }
  EXPECT_THAT(skin, SizeIs(54 + 6));
  EXPECT_EQ(skin, counted_skin(*mesh.database, {known}));
}

TEST(MeshSkinner, GivenADatabaseThatFails_WhenSkinned_ThenThereIsNothing) {
  const NamedMesh mesh = one_hex_and_its_skin();
  RecordingMeshData database(*mesh.database);
  database.fail("get_connectivity");

  EXPECT_THAT(skin_of(database, {in_order(mesh.mesh.elements[Tarn::Hex])}, {in_order(mesh.mesh.elements[Tarn::Quad])}),
              IsEmpty());
}

TEST(MeshSkinner, GivenRandomPartsOfBlocks_WhenSkinned_ThenSidesAreThoseMetOnce) {
  std::mt19937 random(7);
  for (int round = 0; round < 10; ++round) {
    SCOPED_TRACE(round);
    const NamedMesh hexes = hex_block(9, 7, 8);
    const NamedMesh tets = tet_block(5, 6, 4);
    const std::vector<Solids> some_hexes = {some_of(hexes.mesh.elements[Tarn::Hex], random)};
    const std::vector<Solids> some_tets = {some_of(tets.mesh.elements[Tarn::Tet], random)};
    SpreadNodes spread(*hexes.database);

    EXPECT_EQ(skin_of(*hexes.database, some_hexes), counted_skin(*hexes.database, some_hexes));
    EXPECT_EQ(skin_of(*tets.database, some_tets), counted_skin(*tets.database, some_tets));
    EXPECT_EQ(skin_of(spread, some_hexes), counted_skin(spread, some_hexes));
  }
}

TEST(MeshSkinner, GivenKindsThatShareSides_WhenSkinned_ThenSidesAreThoseMetOnce) {
  // A cube of a hexahedron's corners: pyramids on two of its sides, wedges on two, tetrahedra on the pyramids.
  NamedMesh mesh = one_hex();
  const int top = static_cast<int>(mesh.nodes.size());
  mesh.add_node(0.5, 0.5, 2);
  mesh.add_node(0.5, 0.5, -1);
  mesh.add_node(2, 0, 0.5);
  mesh.add_node(2, 1, 0.5);
  mesh.add_element(Tarn::Pyramid, {4, 5, 6, 7, top});
  mesh.add_element(Tarn::Pyramid, {0, 3, 2, 1, top + 1});
  mesh.add_element(Tarn::Wedge, {1, 5, top + 2, 2, 6, top + 3});
  mesh.add_element(Tarn::Tet, {5, top + 2, 6, top});
  std::vector<Solids> solids;
  for (const auto type : {Tarn::Hex, Tarn::Tet, Tarn::Pyramid, Tarn::Wedge})
    solids.push_back(in_order(mesh.mesh.elements[type]));

  const auto skin = skin_of(*mesh.database, solids);

  EXPECT_EQ(skin, counted_skin(*mesh.database, solids));
  // 6 + 4 + 5 + 5 + 5 sides, of which the hexahedron shares 3 and the tetrahedron 1.
  EXPECT_THAT(skin, SizeIs(25 - 2 * 4));
}

TEST(MeshSkinner, GivenManyElements_WhenSkinned_ThenTheDatabaseIsAskedInBulk) {
  const NamedMesh mesh = hex_block(16, 16, 16);
  RecordingMeshData database(*mesh.database);

  ASSERT_THAT(skin_of(database, {in_order(mesh.mesh.elements[Tarn::Hex])}), SizeIs(6 * 16 * 16));

  // All hexahedra twice, the outer ones once more, a few for a first look, 256 at a time.
  const std::size_t all = 16 * 16 * 16;
  const std::size_t outer = all - 14 * 14 * 14;
  EXPECT_EQ(database.count("get_connectivity"), 2 * (all / 256) + (outer + 255) / 256 + 1);
  EXPECT_EQ(database.count("get_element_types"), 1u);
  EXPECT_EQ(database.calls().size(), database.count("get_connectivity") + 1);
}

TEST(MeshSkinner, GivenManyQuadraticElements_WhenSkinned_ThenTheirNodesAreAskedForInBulk) {
  NamedMesh mesh;
  for (int i = 0; i < 1000; ++i)
    mesh.add_own_element(i < 300 ? Tarn::Tet : Tarn::Hex, i < 300 ? 10 : 20, 2 * i);
  RecordingMeshData database(*mesh.database);

  const auto skin =
      skin_of(database, {in_order(mesh.mesh.elements[Tarn::Hex]), in_order(mesh.mesh.elements[Tarn::Tet])});

  ASSERT_THAT(skin, SizeIs(6 * 700 + 4 * 300));
  EXPECT_TRUE(std::all_of(skin.begin(), skin.begin() + 6 * 700, [](auto& face) { return face.nodes.size() == 8; }));
  EXPECT_TRUE(std::all_of(skin.begin() + 6 * 700, skin.end(), [](auto& face) { return face.nodes.size() == 6; }));
  EXPECT_LE(database.calls().size(), 24u);
}
