#include "group/NodePointTable.h"

#include <gmock/gmock.h>

#include <limits>
#include <random>
#include <unordered_map>
#include <vector>

namespace {

struct Answer {
  std::uint32_t point;
  bool is_new;
  bool operator==(const Answer& other) const { return point == other.point && is_new == other.is_new; }
};

Answer ask(NodePointTable& table, std::uint32_t id) {
  bool is_new = false;
  const std::uint32_t point = table.point(id, is_new);
  return {point, is_new};
}

TEST(NodePointTable, GivenIds_WhenMet_ThenPointsAreNumberedInThatOrderAndFoundAgain) {
  NodePointTable table;
  table.start(10);
  EXPECT_EQ(ask(table, 7), (Answer{0, true}));
  EXPECT_EQ(ask(table, 3), (Answer{1, true}));
  EXPECT_EQ(ask(table, 7), (Answer{0, false}));
  EXPECT_EQ(ask(table, 3), (Answer{1, false}));
  EXPECT_EQ(table.size(), 2u);
}

TEST(NodePointTable, GivenExtremeIds_WhenMet_ThenEachHasItsOwnPoint) {
  // 0, negative ids seen as unsigned, and both sides of every level's borders.
  const std::vector<std::uint32_t> ids = {0,
                                          1,
                                          4095,
                                          4096,
                                          (1u << 22) - 1,
                                          1u << 22,
                                          0x7fffffffu,
                                          0x80000000u,
                                          static_cast<std::uint32_t>(-1),
                                          static_cast<std::uint32_t>(-4096)};
  NodePointTable table;
  table.start(100);
  for (std::uint32_t i = 0; i < ids.size(); ++i)
    EXPECT_EQ(ask(table, ids[i]), (Answer{i, true})) << ids[i];
  for (std::uint32_t i = 0; i < ids.size(); ++i)
    EXPECT_EQ(ask(table, ids[i]), (Answer{i, false})) << ids[i];
}

TEST(NodePointTable, GivenAnEarlierNumbering_WhenStartedAgain_ThenItIsForgotten) {
  NodePointTable table;
  for (int round = 0; round < 3; ++round) {
    table.start(3);
    EXPECT_EQ(table.size(), 0u);
    EXPECT_EQ(ask(table, 20), (Answer{0, true})) << round;
    EXPECT_EQ(ask(table, static_cast<std::uint32_t>(round)), (Answer{1, true})) << round;
    table.finish();
  }
  table.start(3);
  EXPECT_EQ(ask(table, 2), (Answer{0, true}));
}

TEST(NodePointTable, GivenNumbersThatWouldOverflow_WhenStarted_ThenPagesStartAfresh) {
  NodePointTable table;
  table.start(2);
  ask(table, 5);
  // Entries of two numberings of this many points do not fit into 32 bits.
  table.start(std::numeric_limits<std::uint32_t>::max());
  EXPECT_EQ(ask(table, 5), (Answer{0, true}));
  EXPECT_EQ(ask(table, 6), (Answer{1, true}));
  EXPECT_EQ(ask(table, 5), (Answer{0, false}));
}

TEST(NodePointTable, GivenPages_WhenANumberingEnds_ThenTheyAreKeptUnlessThereAreVeryMany) {
  NodePointTable table;
  EXPECT_EQ(table.page_count(), 0u);
  for (const std::uint32_t pages : {3u, 4096u, 4097u}) {
    table.start(10000);
    for (std::uint32_t page = 0; page < pages; ++page)
      EXPECT_EQ(ask(table, page << 12), (Answer{page, true}));
    EXPECT_EQ(table.page_count(), pages);
    table.finish();
    EXPECT_EQ(table.page_count(), pages <= 4096 ? pages : 0);
  }
  table.start(10);
  EXPECT_EQ(ask(table, 0), (Answer{0, true}));
  EXPECT_EQ(ask(table, 1u << 12), (Answer{1, true}));
}

TEST(NodePointTable, GivenRandomIds_WhenComparedWithAMap_ThenAllAnswersAgree) {
  std::mt19937 random(3);
  NodePointTable table;
  for (int round = 0; round < 4; ++round) {
    std::unordered_map<std::uint32_t, std::uint32_t> expected;
    table.start(5000);
    for (int i = 0; i < 5000; ++i) {
      const std::uint32_t id = random() % 3 == 0 ? random() : random() % 2000;
      const auto [found, is_new] = expected.emplace(id, static_cast<std::uint32_t>(expected.size()));
      ASSERT_EQ(ask(table, id), (Answer{found->second, is_new}));
    }
    EXPECT_EQ(table.size(), expected.size());
    table.finish();
  }
}

} // namespace
