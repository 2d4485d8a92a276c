#include "viewer/OwnerCover.h"
#include "reference/tarn/MeshDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using Node = Tarn::MeshData::Node;
using Elem = Tarn::MeshData::Elem;
using testing::ElementsAre;

// Two hexahedra side by side along x: 12 nodes, four at each of x = 0, 1, 2.
class TwoHexes : public testing::Test {
protected:
  TwoHexes() {
    std::vector<double> xyz;
    for (int x = 0; x < 3; ++x)
      for (const auto& [y, z] : {std::pair{0, 0}, {1, 0}, {1, 1}, {0, 1}})
        xyz.insert(xyz.end(), {double(x), double(y), double(z)});
    first = database.add_nodes(12, xyz.data());
    for (int left : {0, 4})
      add(Tarn::Hex, {left, left + 1, left + 2, left + 3, left + 4, left + 5, left + 6, left + 7}, solids);
  }

  Node node(int number) const { return Node{first.value + number}; }

  void add(Tarn::ElementType type, const std::vector<int>& numbers, MeshVector& mesh) {
    std::vector<Node> nodes;
    for (int number : numbers)
      nodes.push_back(node(number));
    mesh.elements[type].push_back(database.add_elements(type, int(nodes.size()), 1, nodes.data()));
  }

  std::vector<bool> covered(const std::vector<MeshVector>& meshes) {
    return viewer::find_covered_owners(database, meshes);
  }

  Tarn::MeshDatabase database;
  Node first;
  MeshVector solids;
};

TEST_F(TwoHexes, GivenSolidsOnly_WhenAsked_ThenNothingIsCovered) { EXPECT_THAT(covered({solids}), ElementsAre(false)); }

TEST_F(TwoHexes, GivenNoOwners_WhenAsked_ThenNoAnswer) { EXPECT_THAT(covered({}), ElementsAre()); }

TEST_F(TwoHexes, GivenAFaceOnASolid_WhenAsked_ThenItIsCovered) {
  MeshVector outside, between;
  add(Tarn::Quad, {0, 1, 2, 3}, outside);
  add(Tarn::Quad, {4, 5, 6, 7}, between);
  EXPECT_THAT(covered({outside, solids, between}), ElementsAre(true, false, true));
}

TEST_F(TwoHexes, GivenAFaceAcrossTwoSolids_WhenAsked_ThenNoOneElementBearsIt) {
  MeshVector across;
  add(Tarn::Quad, {0, 1, 9, 8}, across);
  EXPECT_THAT(covered({solids, across}), ElementsAre(false, false));
}

TEST_F(TwoHexes, GivenOneElementOfTheOwnerInTheOpen_WhenAsked_ThenTheOwnerIsNotCovered) {
  MeshVector mixed;
  add(Tarn::Quad, {0, 1, 2, 3}, mixed);
  add(Tarn::Tri, {0, 5, 10}, mixed);
  EXPECT_THAT(covered({solids, mixed}), ElementsAre(false, false));
}

TEST_F(TwoHexes, GivenBeams_WhenOnAnEdgeAndAcross_ThenOnlyTheFirstIsCovered) {
  MeshVector on, across;
  add(Tarn::Edge, {0, 4}, on);
  add(Tarn::Edge, {0, 8}, across);
  EXPECT_THAT(covered({on, across, solids}), ElementsAre(true, false, false));
}

TEST_F(TwoHexes, GivenNodesAlone_WhenOnTheMeshAndOff_ThenOnlyTheFirstAreCovered) {
  const double far[] = {9, 9, 9};
  MeshVector on, off;
  on.nodes = {node(0), node(11)};
  off.nodes = {node(0), database.add_nodes(1, far)};
  EXPECT_THAT(covered({on, off, solids}), ElementsAre(true, false, false));
}

TEST_F(TwoHexes, GivenFacesAndBeamsWithoutSolids_WhenAsked_ThenBeamsOnFacesAreCovered) {
  MeshVector faces, rim, nothing;
  Tarn::MeshDatabase& db = database;
  db.delete_elements(2, solids.elements[Tarn::Hex].data());
  add(Tarn::Tri, {0, 1, 2}, faces);
  add(Tarn::Edge, {1, 2}, rim);
  EXPECT_THAT(covered({rim, faces, nothing}), ElementsAre(true, false, false));
}

TEST_F(TwoHexes, GivenEqualDimensions_WhenOneCoincidesWithAnother_ThenNeitherIsCovered) {
  MeshVector a, b;
  add(Tarn::Quad, {0, 1, 2, 3}, a);
  add(Tarn::Quad, {0, 1, 2, 3}, b);
  Tarn::MeshDatabase& db = database;
  db.delete_elements(2, solids.elements[Tarn::Hex].data());
  EXPECT_THAT(covered({a, b}), ElementsAre(false, false));
}

TEST_F(TwoHexes, GivenFacesThatCoincideAwayFromTheSolids_WhenBeamsLieOnThem_ThenOnlyTheBeamsAreCovered) {
  MeshVector a, b, rim;
  add(Tarn::Quad, {0, 5, 10, 3}, a);
  add(Tarn::Quad, {0, 5, 10, 3}, b);
  add(Tarn::Edge, {5, 10}, rim);
  EXPECT_THAT(covered({a, solids, b, rim}), ElementsAre(false, false, false, true));
}

TEST_F(TwoHexes, GivenASuperelement_WhenAFaceHasItsNodes_ThenItBearsNothing) {
  MeshVector super, face;
  Tarn::MeshDatabase& db = database;
  db.delete_elements(2, solids.elements[Tarn::Hex].data());
  add(Tarn::Superelement, {0, 1, 2, 3, 4, 5}, super);
  add(Tarn::Quad, {0, 1, 2, 3}, face);
  EXPECT_THAT(covered({super, face}), ElementsAre(false, false));
}

TEST_F(TwoHexes, GivenQuadraticFaces_WhenOnALinearSolid_ThenTheirCornersCount) {
  const double mid[] = {0, 0.5, 0, 0, 1, 0.5, 0, 0.5, 1, 0, 0, 0.5};
  const Node mids = database.add_nodes(4, mid);
  std::vector<Node> nodes = {node(0), node(1), node(2), node(3)};
  for (int i = 0; i < 4; ++i)
    nodes.push_back(Node{mids.value + i});
  MeshVector face;
  face.elements[Tarn::Quad].push_back(database.add_elements(Tarn::Quad, 8, 1, nodes.data()));
  EXPECT_THAT(covered({solids, face}), ElementsAre(false, true));
}

TEST(HighestDimension, GivenMeshes_WhenAsked_ThenThatOfTheirHighestElement) {
  MeshVector mesh;
  EXPECT_EQ(viewer::highest_dimension(mesh), 0);
  mesh.nodes.resize(1);
  mesh.elements[Tarn::OneNode].resize(1);
  EXPECT_EQ(viewer::highest_dimension(mesh), 0);
  mesh.elements[Tarn::Quad].resize(1);
  mesh.elements[Tarn::Edge].resize(1);
  EXPECT_EQ(viewer::highest_dimension(mesh), 2);
  mesh.elements[Tarn::Superelement].resize(1);
  EXPECT_EQ(viewer::highest_dimension(mesh), 3);
}

} // namespace
