#include "reference/base/pick/EntityIdentity.h"
#include "tests/base/FakePicks.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <random>
#include <tuple>

namespace {

const Tarn::MeshData* database(std::uintptr_t address) { return reinterpret_cast<const Tarn::MeshData*>(address); }

EntityIdentity identity(bool is_node, const Tarn::MeshData* db, unsigned long long handle) {
  auto* const entity = new FakeEntity(is_node ? "Node" : "Hex", 0, const_cast<Tarn::MeshData*>(db));
  EntityIdentity made(*entity);
  entity->Delete();
  made.handle = handle;
  return made;
}

TEST(IdentityNumbers, GivenNone_WhenLookedUp_ThenAStranger) {
  IdentityNumbers numbers;
  EXPECT_EQ(numbers.size(), 0u);
  EXPECT_EQ(numbers.find(identity(false, nullptr, 0)), 0u);
  EXPECT_FALSE(numbers.has(identity(false, nullptr, 0)));
}

TEST(IdentityNumbers, GivenIdentitiesThatDifferInOnePart_WhenAdded_ThenEachHasANumberOfItsOwn) {
  IdentityNumbers numbers;
  const EntityIdentity all[] = {identity(false, database(64), 5), identity(true, database(64), 5),
                                identity(false, database(128), 5), identity(false, database(64), 6)};
  for (std::size_t i = 0; i < 4; ++i)
    EXPECT_EQ(numbers.add(all[i]), std::make_pair(i, true));
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(numbers.add(all[i]), std::make_pair(i, false));
    EXPECT_EQ(numbers.find(all[i]), i);
  }
  EXPECT_EQ(numbers.size(), 4u);
  EXPECT_FALSE(numbers.has(identity(true, database(128), 5)));
}

TEST(IdentityNumbers, GivenHandlesInAnyOrderAndDistance_WhenNumbered_ThenInTheOrderOfTheFirstMeeting) {
  std::mt19937_64 random(11);
  for (const unsigned long long distance : {1ull, 16ull, 4096ull, 1ull << 32, 1ull << 57}) {
    IdentityNumbers numbers;
    std::map<std::tuple<bool, const Tarn::MeshData*, unsigned long long>, std::size_t> plain;
    if (distance == 16) numbers.reserve(100);
    for (int i = 0; i < 5000; ++i) {
      const bool is_node = random() % 2 == 0;
      const Tarn::MeshData* const db = database(4096 * (1 + random() % 3));
      const unsigned long long handle = distance * (random() % 700);
      const auto [known, is_new] = plain.emplace(std::make_tuple(is_node, db, handle), plain.size());
      ASSERT_EQ(numbers.add(identity(is_node, db, handle)), std::make_pair(known->second, is_new)) << distance;
    }
    ASSERT_EQ(numbers.size(), plain.size());
    for (const auto& [key, number] : plain)
      EXPECT_EQ(numbers.find(identity(std::get<0>(key), std::get<1>(key), std::get<2>(key))), number);
    EXPECT_FALSE(numbers.has(identity(true, database(4096), 7777777)));
    numbers.clear();
    EXPECT_EQ(numbers.size(), 0u);
    EXPECT_FALSE(numbers.has(identity(std::get<0>(plain.begin()->first), std::get<1>(plain.begin()->first),
                                      std::get<2>(plain.begin()->first))));
  }
}

} // namespace
