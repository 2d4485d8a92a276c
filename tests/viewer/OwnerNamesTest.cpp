#include "viewer/OwnerNames.h"

#include <gtest/gtest.h>

namespace {

using namespace viewer;

std::vector<SceneOwner> owners(const std::vector<std::string>& names) {
  std::vector<SceneOwner> list;
  for (const std::string& name : names)
    list.push_back({nullptr, name, TovanColor(), true});
  return list;
}

TEST(OwnerNames, GivenFewOwners_WhenOneIsUnknown_ThenAllAreListedTheNearestFirst) {
  EXPECT_EQ(unknown_owner("blok 2", owners({"side set 1", "block 1", "block 2"})),
            "no owner is named 'blok 2'; owners: 'block 2', 'block 1', 'side set 1'");
}

TEST(OwnerNames, GivenEqualDistances_WhenListed_ThenInTheOrderOfTheMesh) {
  EXPECT_EQ(unknown_owner("x", owners({"b", "a", "b"})), "no owner is named 'x'; owners: 'b', 'a'");
}

TEST(OwnerNames, GivenManyOwners_WhenOneIsUnknown_ThenEightAreListedAndTheOthersCounted) {
  EXPECT_EQ(unknown_owner("", owners({"1", "2", "3", "4", "5", "6", "7", "8", "far", "farther"})),
            "no owner is named ''; owners: '1', '2', '3', '4', '5', '6', '7', '8' and 2 more (--info lists them)");
}

TEST(OwnerNames, GivenNoOwners_WhenOneIsAskedFor_ThenSaysSo) {
  EXPECT_EQ(unknown_owner("x", {}), "no owner is named 'x'; there are none");
}

} // namespace
