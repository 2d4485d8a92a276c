#include "group/CoordinateRange.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

struct Row {
  const char* name;
  std::vector<std::array<double, 3>> points;
  bool needs_double;
};

class CoordinateRangeRows : public ::testing::TestWithParam<Row> {};

TEST_P(CoordinateRangeRows, GivenPoints_WhenJudged_ThenMagnitudeOverSizeDecides) {
  CoordinateRange range;
  for (const auto& point : GetParam().points)
    range.add(point[0], point[1], point[2]);
  EXPECT_EQ(range.needs_double(), GetParam().needs_double);
}

INSTANTIATE_TEST_SUITE_P(Rows, CoordinateRangeRows,
                         ::testing::Values(Row{"nothing", {}, false}, Row{"origin", {{0, 0, 0}}, false},
                                           Row{"around_the_origin", {{-1, -1, -1}, {1, 1, 1}}, false},
                                           Row{"at_the_limit", {{999, 0, 0}, {1000, 0, 0}}, false},
                                           Row{"beyond_the_limit", {{1000, 0, 0}, {1001, 0, 0}}, true},
                                           Row{"beyond_on_the_negative_side", {{0, -1001, 0}, {0, -1000, 0}}, true},
                                           Row{"long_in_another_direction", {{0, 0, 5000}, {5, 0, 5000}}, false},
                                           Row{"far_away", {{1e7, 0, 0}, {1e7 + 10, 10, 10}}, true},
                                           Row{"one_point_off_the_origin", {{3, 0, 0}}, true},
                                           Row{"not_a_number", {{nan, nan, nan}}, false},
                                           Row{"not_a_number_among_numbers", {{nan, 1, 0}, {0, 0, nan}}, false},
                                           Row{"infinite", {{-infinity, 0, 0}, {infinity, 0, 0}}, false}),
                         [](const auto& row) { return row.param.name; });

} // namespace
