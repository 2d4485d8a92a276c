#include "group/MetNodes.h"

#include <vtkNew.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <type_traits>
#include <unordered_set>
#include <vector>

namespace {

using Node = Tarn::Handle<0>;
using ::testing::ElementsAre;

TEST(MetNodes, GivenCellsThatShareNodes_WhenMet_ThenEachNodeIsListedOnceInTheOrderMet) {
  const Node first[4] = {{70}, {10}, {20}, {80}};
  const Node second[3] = {{20}, {10}, {5}};
  vtkNew<vtkTypeUInt64Array> list;
  MetNodes met(*list, 10);
  std::vector<int> places(7);
  met.meet(first, 4, places.data());
  met.meet(second, std::integral_constant<int, 3>(), &places[4]);
  ASSERT_EQ(met.size(), 5u);
  EXPECT_THAT(std::vector<vtkTypeUInt64>(list->GetPointer(0), list->GetPointer(5)), ElementsAre(70, 10, 20, 80, 5));
  EXPECT_EQ(static_cast<const void*>(met.nodes()), list->GetPointer(0));
  EXPECT_THAT(places, ElementsAre(0, 1, 2, 3, 2, 1, 4));
}

// Few and very many different nodes, with values of all sizes, met in cells of all sizes, in a list that has to grow.
TEST(MetNodes, GivenRandomNodes_WhenMet_ThenPlacesLeadBackToThemAndEachIsListedInTheOrderFirstMet) {
  std::mt19937_64 random(5);
  for (const std::uint64_t different : {1u, 50u, 3000u, 100000u}) {
    for (const unsigned shift : {0u, 4u, 32u, 61u}) {
      vtkNew<vtkTypeUInt64Array> list;
      MetNodes met(*list, 1);
      std::vector<Node> uses;
      std::vector<vtkTypeInt64> places;
      for (int cell = 0; cell < 20000; ++cell) {
        const std::size_t before = uses.size();
        for (std::uint64_t count = 1 + random() % 9; count > 0; --count)
          uses.push_back({std::max<std::uint64_t>(1, (1 + random() % different) << shift)});
        places.resize(uses.size());
        met.meet(&uses[before], static_cast<int>(uses.size() - before), &places[before]);
      }
      std::unordered_set<std::uint64_t> seen;
      vtkTypeInt64 most = -1;
      for (std::size_t i = 0; i < uses.size(); ++i) {
        ASSERT_EQ(list->GetValue(places[i]), uses[i].value);
        const bool is_first = seen.insert(uses[i].value).second;
        ASSERT_TRUE(!is_first || places[i] > most) << "after all that were met before";
        most = std::max(most, places[i]);
      }
      EXPECT_EQ(met.size(), static_cast<std::size_t>(most + 1));
    }
  }
}

// A node far from the last use is forgotten: a row of this sheet is within reach, so that almost none is listed twice.
TEST(MetNodes, GivenASheetOfQuadrilaterals_WhenMet_ThenTheListIsHardlyLongerThanTheNodesAreMany) {
  constexpr std::uint64_t side = 301;
  vtkNew<vtkTypeUInt64Array> list;
  MetNodes met(*list, side * side);
  for (std::uint64_t row = 0; row + 1 < side; ++row)
    for (std::uint64_t column = 0; column + 1 < side; ++column) {
      const std::uint64_t corner = 1 + row * side + column;
      const Node cell[4] = {{corner}, {corner + 1}, {corner + side + 1}, {corner + side}};
      int places[4];
      met.meet(cell, 4, places);
    }
  EXPECT_GE(met.size(), side * side);
  EXPECT_LT(met.size(), side * side * 5 / 4);
}

} // namespace
