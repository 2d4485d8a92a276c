#include "group/NodePointTable.h"

#include <gmock/gmock.h>

#include <sys/resource.h>

#include <cstdlib>
#include <limits>
#include <new>
#include <numeric>
#include <ostream>
#include <random>
#include <unordered_map>
#include <vector>

namespace {

struct Numbering {
  std::vector<std::uint32_t> points;     // of the ids
  std::vector<vtkTypeUInt64> first_uses; // of the points, the place at which each id was met first
  bool operator==(const Numbering& other) const { return points == other.points && first_uses == other.first_uses; }
};

void PrintTo(const Numbering& numbering, std::ostream* out) {
  *out << ::testing::PrintToString(numbering.points) << " met at " << ::testing::PrintToString(numbering.first_uses);
}

Numbering number(NodePointTable& table, const std::vector<std::uint32_t>& ids) {
  std::vector<int> points(ids.begin(), ids.end());
  Numbering result;
  result.first_uses.resize(ids.size());
  std::iota(result.first_uses.begin(), result.first_uses.end(), vtkTypeUInt64{0});
  const std::size_t count = table.number(ids.size(), points.data(), result.first_uses.data());
  result.points.assign(points.begin(), points.end());
  result.first_uses.resize(count);
  return result;
}

Numbering number_with_a_map(const std::vector<std::uint32_t>& ids) {
  std::unordered_map<std::uint32_t, std::uint32_t> points;
  Numbering result;
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const auto [found, is_new] = points.emplace(ids[i], static_cast<std::uint32_t>(points.size()));
    result.points.push_back(found->second);
    if (is_new) result.first_uses.push_back(i);
  }
  return result;
}

TEST(NodePointTable, GivenIds_WhenNumbered_ThenPointsAreInTheOrderInWhichTheyAreMet) {
  NodePointTable table;
  EXPECT_EQ(number(table, {7, 3, 7, 3, 9}), (Numbering{{0, 1, 0, 1, 2}, {0, 1, 4}}));
}

TEST(NodePointTable, GivenNoIds_WhenNumbered_ThenThereAreNoPoints) {
  NodePointTable table;
  EXPECT_EQ(table.number(0, nullptr, nullptr), 0u);
  EXPECT_EQ(table.page_count(), 0u);
}

TEST(NodePointTable, GivenExtremeIds_WhenNumbered_ThenEachHasItsOwnPoint) {
  // 0, negative ids seen as unsigned, and both sides of every level's borders.
  std::vector<std::uint32_t> ids = {0,
                                    1,
                                    4095,
                                    4096,
                                    (1u << 22) - 1,
                                    1u << 22,
                                    0x7fffffffu,
                                    0x80000000u,
                                    static_cast<std::uint32_t>(-1),
                                    static_cast<std::uint32_t>(-4096)};
  ids.insert(ids.end(), ids.begin(), ids.end());
  NodePointTable table;
  EXPECT_EQ(number(table, ids), number_with_a_map(ids));
}

TEST(NodePointTable, GivenAnEarlierNumbering_WhenNumberedAgain_ThenItIsForgotten) {
  NodePointTable table;
  for (std::uint32_t round = 0; round < 3; ++round)
    EXPECT_EQ(number(table, {20, round}), (Numbering{{0, 1}, {0, 1}})) << round;
  EXPECT_EQ(number(table, {2}), (Numbering{{0}, {0}}));
}

TEST(NodePointTable, GivenAsManyPointsAsFit_WhenNumberedAgain_ThenNumbersStartAfresh) {
  NodePointTable table(std::numeric_limits<std::uint32_t>::max() - 2);
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(number(table, {5}), (Numbering{{0}, {0}})) << round;
    EXPECT_EQ(number(table, {5, 6, 5}), (Numbering{{0, 1, 0}, {0, 1}})) << round;
  }
  // One more than fits.
  NodePointTable nearly_full(std::numeric_limits<std::uint32_t>::max() - 2);
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(number(nearly_full, {5, 6, 7}), (Numbering{{0, 1, 2}, {0, 1, 2}})) << round;
    EXPECT_EQ(number(nearly_full, {6}), (Numbering{{0}, {0}})) << round;
  }
}

TEST(NodePointTable, GivenPages_WhenNumbered_ThenTheyAreKeptUnlessThereAreVeryMany) {
  NodePointTable table;
  EXPECT_EQ(table.page_count(), 0u);
  for (const std::uint32_t pages : {3u, 4096u, 4097u}) {
    std::vector<std::uint32_t> ids;
    for (std::uint32_t page = 0; page < pages; ++page)
      ids.push_back(page << 12);
    EXPECT_TRUE(number(table, ids) == number_with_a_map(ids)) << pages;
    EXPECT_EQ(table.page_count(), pages <= 4096 ? pages : 0);
  }
  EXPECT_EQ(number(table, {0, 1u << 12, 0}), (Numbering{{0, 1, 0}, {0, 1}}));
}

// Exits with 0 when the table is as good as new after a numbering that ran out of memory halfway.
[[noreturn]] void number_again_after_memory_ran_out() {
  NodePointTable table;
  number(table, {6});
  std::vector<std::uint32_t> ids(1000, 5);
  for (std::uint32_t page = 1; page <= 8192; ++page)
    ids.push_back(page << 12);
  std::vector<int> points(ids.begin(), ids.end());
  std::vector<vtkTypeUInt64> nodes(ids.size());
  rlimit as_it_was;
  getrlimit(RLIMIT_AS, &as_it_was);
  const rlimit no_more = {0, as_it_was.rlim_max};
  bool ran_out = false;
  setrlimit(RLIMIT_AS, &no_more);
  try {
    table.number(ids.size(), points.data(), nodes.data());
  } catch (const std::bad_alloc&) {
    ran_out = true;
  }
  setrlimit(RLIMIT_AS, &as_it_was);
  const bool kept_nothing = table.page_count() == 0;
  const bool is_as_new = number(table, {6, 5, 7}) == Numbering{{0, 1, 2}, {0, 1, 2}};
  std::_Exit(ran_out && kept_nothing && is_as_new ? 0 : 1);
}

TEST(NodePointTable, GivenNoMemoryForAllPages_WhenNumberedAgain_ThenWhatWasBegunIsForgotten) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "sanitizers end the program when memory runs out";
#endif
  EXPECT_EXIT(number_again_after_memory_ran_out(), ::testing::ExitedWithCode(0), "");
}

TEST(NodePointTable, GivenRandomIds_WhenComparedWithAMap_ThenAllAnswersAgree) {
  std::mt19937 random(3);
  NodePointTable table;
  for (int round = 0; round < 4; ++round) {
    std::vector<std::uint32_t> ids(5000);
    for (std::uint32_t& id : ids)
      id = random() % 3 == 0 ? random() : random() % 2000;
    EXPECT_EQ(number(table, ids), number_with_a_map(ids));
  }
}

} // namespace
