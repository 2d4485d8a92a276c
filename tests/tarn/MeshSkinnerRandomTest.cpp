#include "reference/tarn/ElementRuns.h"
#include "reference/tarn/ExteriorSides.h"
#include "tests/tarn/PlainSkinner.h"
#include "tests/tarn/RandomMesh.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <utility>

namespace tarn_test {
namespace {

struct Row {
  const char* name;
  HandleStyle style;
};

class RandomSkin : public testing::TestWithParam<Row> {};

INSTANTIATE_TEST_SUITE_P(Handles, RandomSkin,
                         testing::Values(Row{"SmallNumbers", HandleStyle::SmallNumbers},
                                         Row{"HighBits", HandleStyle::HighBits},
                                         Row{"Addresses", HandleStyle::Addresses},
                                         Row{"Scattered", HandleStyle::Scattered}),
                         [](const auto& row) { return row.param.name; });

TEST_P(RandomSkin, GivenElementsOnFewNodes_WhenSkinned_ThenEqualToCountingFaces) {
  std::size_t total = 0;
  for (unsigned seed = 0; seed < 150; ++seed) {
    RandomMesh mesh(seed, GetParam().style);
    mesh.scatter_elements(8 + static_cast<int>(seed % 40), 1 + static_cast<int>(seed * 7 % 120));
    mesh.scatter_shells(static_cast<int>(seed % 25));

    const auto expected = plain_skin(mesh.database, mesh.solids, mesh.shells);

    ASSERT_EQ(fast_skin(mesh.database, mesh.solids, mesh.shells), expected) << "seed " << seed;
    total += expected.size();
  }
  EXPECT_GT(total, 10000u);
}

TEST_P(RandomSkin, GivenGridsOfMixedKinds_WhenSkinned_ThenEqualToCountingFaces) {
  for (unsigned seed = 0; seed < 12; ++seed) {
    RandomMesh mesh(1000 + seed, GetParam().style);
    mesh.fill_grid(2 + static_cast<int>(seed));
    mesh.scatter_shells(60);

    const auto expected = plain_skin(mesh.database, mesh.solids, mesh.shells);

    ASSERT_GT(expected.size(), 60u);
    ASSERT_EQ(fast_skin(mesh.database, mesh.solids, mesh.shells), expected) << "seed " << seed;
  }
}

/// The exterior sides when only some bits of the words are trusted, so that sides vanish by accident.
std::vector<std::pair<std::uint32_t, int>> sides_with_trust_in(std::uint32_t bits, RandomMesh& mesh) {
  std::vector<Tarn::ElementRuns> lists;
  for (const HandleList& list : mesh.solids)
    Tarn::append_of_kind(mesh.database, {Tarn::Tet, Tarn::Hex, Tarn::Wedge, Tarn::Pyramid}, list, positions_of(list),
                         lists);
  Tarn::drop_repeated(lists);
  const Tarn::ExteriorSides exterior(mesh.database, lists, bits);
  std::vector<std::pair<std::uint32_t, int>> sides;
  for (const auto& side : exterior.candidates())
    if (side.is_exterior) sides.emplace_back(side.solid, side.side);
  std::sort(sides.begin(), sides.end());
  return sides;
}

TEST(ExteriorSides, GivenWordsOfFewBits_WhenSidesVanishByAccident_ThenTheAnswerIsTheSame) {
  for (const std::uint32_t bits : {1u, 2u, 12u, 0x80000000u}) {
    for (unsigned seed = 0; seed < 30; ++seed) {
      RandomMesh mesh(seed, HandleStyle::HighBits);
      mesh.fill_grid(3 + static_cast<int>(seed % 5));

      const auto expected = sides_with_trust_in(~std::uint32_t(0), mesh);

      ASSERT_GT(expected.size(), 50u);
      ASSERT_EQ(sides_with_trust_in(bits, mesh), expected) << "bits " << bits << ", seed " << seed;
    }
  }
}

TEST(ExteriorSides, GivenSolidsThatLackACorner_WhenSkinned_ThenTheyAreAsIfNotThere) {
  std::size_t total = 0;
  for (unsigned seed = 0; seed < 40; ++seed) {
    RandomMesh mesh(seed, HandleStyle::SmallNumbers);
    mesh.fill_grid(3);
    std::mt19937 random(seed);
    for (auto& element : mesh.database.elements)
      if (random() % 6 == 0) element.second.nodes[random() % 4] = {};

    const auto expected = plain_skin(mesh.database, mesh.solids, {});

    ASSERT_EQ(fast_skin(mesh.database, mesh.solids, {}), expected) << "seed " << seed;
    total += expected.size();
  }
  EXPECT_GT(total, 1000u);
}

TEST(ExteriorSides, GivenADatabaseThatLeavesMissingCornersUnwritten_WhenSkinned_ThenTheyAreNotThoseReadBefore) {
  std::size_t total = 0;
  for (unsigned seed = 0; seed < 4; ++seed) {
    RandomMesh mesh(seed, HandleStyle::SmallNumbers);
    mesh.fill_grid(14);
    mesh.database.leaves_nulls_unwritten = true;
    std::mt19937 random(seed);
    std::map<Tarn::ElementType, HandleList> kinds; // each longer than what is read at once
    for (auto& [handle, element] : mesh.database.elements) {
      if (random() % 6 == 0) element.nodes[1 + random() % 3] = {};
      kinds[element.type].push_back({handle});
    }
    std::vector<HandleList> solids;
    for (const auto& [type, list] : kinds)
      solids.push_back(list);

    const auto expected = plain_skin(mesh.database, solids, {});

    ASSERT_EQ(fast_skin(mesh.database, solids, {}), expected) << "seed " << seed;
    total += expected.size();
  }
  EXPECT_GT(total, 10000u);
}

TEST(ExteriorSides, GivenASideThatThreeSolidsHave_WhenSkinned_ThenNoneHasIt) {
  // Three tetrahedra on one triangle: what is left of it at node 1 looks like the side of a single solid.
  ForeignMeshData database;
  database.elements[1] = {Tarn::Tet, {{1}, {2}, {3}, {4}}};
  database.elements[2] = {Tarn::Tet, {{1}, {2}, {3}, {5}}};
  database.elements[3] = {Tarn::Tet, {{3}, {1}, {2}, {6}}};

  const auto skin = fast_skin(database, {{{1}, {2}, {3}}}, {});

  ASSERT_EQ(skin.size(), 9u);
  for (const SkinFace& face : skin)
    EXPECT_TRUE(std::find_if(face.nodes.begin(), face.nodes.end(), [](std::uint64_t node) { return node > 3; }) !=
                face.nodes.end());
}

TEST(ExteriorSides, GivenASolidWhoseSidesAreAllOnesOfSolidsThatLackACorner_WhenSkinned_ThenItShowsThem) {
  ForeignMeshData database;
  database.elements[1] = {Tarn::Tet, {{1}, {2}, {3}, {4}}};
  database.elements[2] = {Tarn::Tet, {{1}, {2}, {3}, {}}};
  database.elements[3] = {Tarn::Tet, {{1}, {2}, {4}, {}}};
  database.elements[4] = {Tarn::Tet, {{2}, {3}, {4}, {}}};
  database.elements[5] = {Tarn::Tet, {{3}, {1}, {4}, {}}};

  const auto skin = fast_skin(database, {{{1}, {2}, {3}, {4}, {5}}}, {});

  ASSERT_EQ(skin.size(), 4u);
  for (const SkinFace& face : skin)
    EXPECT_EQ(face.element, 1u);
}

TEST(ExteriorSides, GivenAHubThatAllSolidsShare_WhenSkinned_ThenItTakesNoLongerThanOthers) {
  // A fan of tetrahedra around node 1, each on three nodes of its own and some on the same: comparing each side with
  // all others at the hub would take days.
  RandomMesh mesh(3, HandleStyle::SmallNumbers);
  HandleList fan;
  for (std::uint64_t i = 0; i < 300000; ++i) {
    const std::uint64_t at = 2 + 2 * (i % 200000);
    mesh.database.elements[i + 1] = {Tarn::Tet, {{1}, {at}, {at + 1}, {at + 2}}};
    fan.push_back({i + 1});
  }

  const auto skin = fast_skin(mesh.database, {fan}, {});

  // Tetrahedra 100000 to 199999 are alone; they and their neighbours have no side in common. The others are there
  // twice.
  ASSERT_EQ(skin.size(), 4u * 100000u);
  EXPECT_EQ(skin.front().element, 100001u);
}

} // namespace
} // namespace tarn_test
