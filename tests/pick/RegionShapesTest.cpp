#include "tests/pick/PickDoubles.h"
#include "tests/support/NamedMeshes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// Display coordinates whose x is the node's position: node n is at (n, 100 + n, 200 + n).
std::vector<double> numbered(int nodes) {
  std::vector<double> display;
  for (int n = 0; n < nodes; ++n)
    for (int axis = 0; axis < 3; ++axis)
      display.push_back(100 * axis + n);
  return display;
}

// Which nodes a question was about.
std::vector<int> nodes_of(const ScriptedRegion::Question& question) {
  std::vector<int> nodes;
  for (std::size_t i = 0; i < question.at.size(); i += 3) {
    EXPECT_EQ(question.at[i + 1], question.at[i] + 100) << "x and y of one node";
    nodes.push_back(static_cast<int>(question.at[i]));
  }
  return nodes;
}

struct Row {
  const char* name;
  Tarn::ElementType type;
  int node_count;
  std::string kind;
  std::vector<std::vector<int>> asked; ///< of a region that nothing touches, box left out
};

class EvaluateEntity : public testing::TestWithParam<Row> {};

TEST_P(EvaluateEntity, GivenARegionThatNothingTouches_WhenEvaluated_ThenAllShapesAreTriedInOrder) {
  const Row& row = GetParam();
  std::vector<double> display = numbered(row.node_count);
  ScriptedRegion region;
  EXPECT_FALSE(PickInterface::evaluateEntity(row.type, display, region));
  auto asked = region.asked;
  if (row.type > Tarn::Quad) {
    ASSERT_FALSE(asked.empty());
    EXPECT_EQ(asked[0].kind, "box");
    EXPECT_THAT(asked[0].at, ElementsAre(0, 100, 0, row.node_count - 1, 99 + row.node_count, 0)) << "flat";
    asked.erase(asked.begin());
  }
  ASSERT_THAT(asked, SizeIs(row.asked.size()));
  for (std::size_t i = 0; i < asked.size(); ++i) {
    EXPECT_EQ(asked[i].kind, row.kind);
    EXPECT_THAT(nodes_of(asked[i]), ElementsAreArray(row.asked[i])) << "shape " << i;
  }
}

TEST_P(EvaluateEntity, GivenARegionThatOneShapeTouches_WhenEvaluated_ThenItIsTheLastTried) {
  const Row& row = GetParam();
  for (std::size_t touching = 0; touching < row.asked.size(); ++touching) {
    std::vector<double> display = numbered(row.node_count);
    ScriptedRegion region;
    std::size_t tried = 0;
    region.segment = [&](const double*, const double*) { return tried++ == touching; };
    region.triangle = [&](const double*, const double*, const double*) { return tried++ == touching; };
    EXPECT_TRUE(PickInterface::evaluateEntity(row.type, display, region));
    EXPECT_EQ(tried, touching + 1);
  }
}

using Shapes = std::vector<std::vector<int>>;
const Shapes tet = {{0, 1, 3}, {1, 2, 3}, {2, 0, 3}, {0, 2, 1}};
// Each quadrilateral as two triangles: its corners 0, 1, 2 and 0, 2, 3.
const Shapes hex = {{0, 4, 7}, {0, 7, 3}, {1, 2, 6}, {1, 6, 5}, {0, 1, 5}, {0, 5, 4},
                    {3, 7, 6}, {3, 6, 2}, {0, 3, 2}, {0, 2, 1}, {4, 5, 6}, {4, 6, 7}};
const Shapes wedge = {{0, 1, 2}, {3, 5, 4}, {0, 3, 4}, {0, 4, 1}, {1, 4, 5}, {1, 5, 2}, {2, 5, 3}, {2, 3, 0}};
const Shapes pyramid = {{0, 3, 2}, {0, 2, 1}, {0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {3, 0, 4}};

INSTANTIATE_TEST_SUITE_P(Kinds, EvaluateEntity,
                         testing::Values(Row{"edge", Tarn::Edge, 2, "segment", {{0, 1}}},
                                         Row{"long_edge", Tarn::Edge, 3, "segment", {{0, 1}}},
                                         Row{"tri", Tarn::Tri, 3, "triangle", {{0, 1, 2}}},
                                         Row{"quadratic_tri", Tarn::Tri, 6, "triangle", {{0, 1, 2}}},
                                         Row{"quad", Tarn::Quad, 4, "triangle", {{0, 1, 2}, {0, 2, 3}}},
                                         Row{"quadratic_quad", Tarn::Quad, 8, "triangle", {{0, 1, 2}, {0, 2, 3}}},
                                         Row{"tet", Tarn::Tet, 4, "triangle", tet},
                                         Row{"quadratic_tet", Tarn::Tet, 8, "triangle", tet},
                                         Row{"hex", Tarn::Hex, 8, "triangle", hex},
                                         Row{"wedge", Tarn::Wedge, 6, "triangle", wedge},
                                         Row{"pyramid", Tarn::Pyramid, 5, "triangle", pyramid},
                                         Row{"superelement", Tarn::Superelement, 5, "", {}}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(EvaluateSolid, GivenABoxThatDoesNotTouch_WhenEvaluated_ThenNoSideIsTried) {
  std::vector<double> display = numbered(8);
  ScriptedRegion region;
  region.box = false;
  region.triangle = [](const double*, const double*, const double*) { return true; };
  EXPECT_FALSE(PickInterface::evaluateEntity(Tarn::Hex, display, region));
  EXPECT_THAT(region.kinds_asked(), ElementsAre("box"));
}

TEST(EvaluateSolid, GivenNoCoordinates_WhenEvaluated_ThenTheBoxIsNotAskedAbout) {
  ScriptedRegion region;
  for (const auto type : {Tarn::None, Tarn::OneNode, Tarn::Tet, Tarn::Hex, Tarn::Superelement}) {
    std::vector<double> none;
    EXPECT_FALSE(PickInterface::evaluateEntity(type, none, region));
  }
  EXPECT_THAT(region.asked, IsEmpty());
}

TEST(EvaluateSolid, GivenKindsWithoutSides_WhenEvaluated_ThenOnlyTheBoxIsAsked) {
  for (const auto type : {Tarn::None, Tarn::OneNode, Tarn::Superelement}) {
    std::vector<double> display = numbered(1);
    ScriptedRegion region;
    region.triangle = [](const double*, const double*, const double*) { return true; };
    EXPECT_FALSE(PickInterface::evaluateEntity(type, display, region));
    ASSERT_THAT(region.kinds_asked(), ElementsAre("box"));
    EXPECT_THAT(region.asked[0].at, ElementsAre(0, 100, 0, 0, 100, 0));
  }
}

TEST(EvaluateSolid, GivenTooFewCoordinates_WhenEvaluated_ThenWhatTheyDoNotReachIsLeftOut) {
  struct Few {
    Tarn::ElementType type;
    int node_count;
    std::size_t triangles; ///< tried
  };
  // A hexahedron of 7 nodes has three whole sides: y = 0, y = 1 lacks node 7, and so on.
  for (const Few& few : {Few{Tarn::Edge, 1, 0}, Few{Tarn::Tri, 2, 0}, Few{Tarn::Quad, 3, 0}, Few{Tarn::Quad, 0, 0},
                         Few{Tarn::Tet, 3, 1}, Few{Tarn::Hex, 7, 6}, Few{Tarn::Hex, 4, 2}, Few{Tarn::Hex, 1, 0}}) {
    SCOPED_TRACE(testing::Message() << "kind " << few.type << " with " << few.node_count);
    std::vector<double> display = numbered(few.node_count);
    ScriptedRegion region;
    region.point = [](const double*) { return true; };
    region.segment = [](const double*, const double*) { return true; };
    std::size_t triangles = 0;
    region.triangle = [&](const double*, const double*, const double*) { return ++triangles == 0; };
    EXPECT_FALSE(PickInterface::evaluateEntity(few.type, display, region));
    EXPECT_EQ(triangles, few.triangles);
  }
}

TEST(EvaluateSolid, GivenAnUnknownKind_WhenEvaluated_ThenNothingIsAsked) {
  for (const unsigned type : {10u, 25u, 0xffffffffu}) {
    std::vector<double> display = numbered(8);
    ScriptedRegion region;
    EXPECT_FALSE(PickInterface::evaluateEntity(static_cast<Tarn::ElementType>(type), display, region));
    EXPECT_THAT(region.asked, IsEmpty());
  }
}

// Side tests see x and y alone, whatever the depth.
TEST(EvaluateSolid, GivenDepths_WhenEvaluated_ThenSidesAreFlat) {
  std::vector<double> display = numbered(4);
  ScriptedRegion region;
  PickInterface::evaluateEntity(Tarn::Tet, display, region);
  ASSERT_THAT(region.asked, SizeIs(5));
  for (std::size_t i = 1; i < 5; ++i)
    for (std::size_t corner = 0; corner < 3; ++corner)
      EXPECT_EQ(region.asked[i].at[3 * corner + 2], 0);
}

} // namespace
