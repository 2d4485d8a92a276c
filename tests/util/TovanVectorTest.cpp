#include "platform/util/TovanVector.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(TovanVector, GivenNothing_WhenMade_ThenItIsTheOrigin) {
  const TovanVector origin;

  EXPECT_EQ(origin.x, 0.0);
  EXPECT_EQ(origin.y, 0.0);
  EXPECT_EQ(origin.z, 0.0);
}

TEST(TovanVector, GivenCoordinates_WhenMade_ThenTheyKeepTheirOrder) {
  const double xyz[3] = {4, 5, 6};
  const TovanVector from_values(1, 2, 3);
  const TovanVector from_array(xyz);

  EXPECT_EQ(from_values.x, 1.0);
  EXPECT_EQ(from_values.y, 2.0);
  EXPECT_EQ(from_values.z, 3.0);
  EXPECT_EQ(from_array.x, 4.0);
  EXPECT_EQ(from_array.y, 5.0);
  EXPECT_EQ(from_array.z, 6.0);
}

TEST(TovanVector, GivenTwoPoints_WhenMeasured_ThenTheDistanceIsEuclideanBothWays) {
  const TovanVector a(1, -2, 3);
  const TovanVector b(3, 1, -3);

  EXPECT_DOUBLE_EQ(a.distance_between(b), 7.0);
  EXPECT_DOUBLE_EQ(b.distance_between(a), 7.0);
  EXPECT_EQ(a.distance_between(a), 0.0);
}

TEST(TovanVector, GivenDistancesWhoseSquareOverflows_WhenMeasured_ThenTheyAreStillRight) {
  EXPECT_DOUBLE_EQ(TovanVector(3e200, 0, 0).distance_between(TovanVector(0, 4e200, 0)), 5e200);
  EXPECT_DOUBLE_EQ(TovanVector(3e-200, 0, 0).distance_between(TovanVector(0, 4e-200, 0)), 5e-200);
}

} // namespace
