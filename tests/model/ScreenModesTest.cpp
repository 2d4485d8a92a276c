// From the database to pixels: render modes, edges and nodes.

#include "MeshOnScreen.h"

#include <gtest/gtest.h>

#include <map>

namespace {

Point between(const Point& a, const Point& b, double t) {
  return {a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1]), a[2] + t * (b[2] - a[2])};
}

/// A block of two hexahedra seen from a corner: its sides x = 2, y = 1 and z = 1 are in sight.
class BlockOnScreen : public MeshOnScreen {
protected:
  void SetUp() override {
    MeshOnScreen::SetUp();
    owner = db.add_owner("block", 3);
    block = add_hexes(db, owner, {2, 1, 1}, {0.0, 0.0, 0.0});
    model.add_mesh(owner, mesh_of(Tarn::Hex, block.elements), green, 1.0f, false);
    screen.look_at({1.0, 0.5, 0.5}, {0.6, 0.7, 1.0}, 2.8);
  }

  /// Whether a dark line runs all the way between two points of the world.
  bool has_line(const Picture& picture, const Point& a, const Point& b) {
    for (double t = 0.03; t < 0.98; t += 0.01)
      if (!picture.has_near(screen.pixel_of(between(a, b, t)), rgb(black), 1, 40)) return false;
    return true;
  }
  /// The darkest green at or beside a point of the world.
  int darkness_at(const Picture& picture, const Point& point) {
    const auto pixel = screen.pixel_of(point);
    int darkest = 255;
    for (int dy = -1; dy <= 1; ++dy)
      for (int dx = -1; dx <= 1; ++dx)
        darkest = std::min(darkest, picture.at(pixel[0] + dx, pixel[1] + dy).g);
    return darkest;
  }

  // Points away from crossing lines.
  const Point hidden_edge{0.0, 0.0, 0.55};
  const Point on_top{0.5, 1.0, 0.6};

  Owner owner;
  Block block;
};

TEST_F(BlockOnScreen, GivenShadedHexahedra_WhenDrawn_ThenEdgesInSightAreWholeAndBlack) {
  const Picture picture = screen.shoot();
  const std::pair<Point, Point> in_sight[] = {{{0, 0, 1}, {2, 0, 1}}, {{0, 1, 1}, {2, 1, 1}}, {{0, 1, 0}, {2, 1, 0}},
                                              {{2, 0, 0}, {2, 1, 0}}, {{2, 0, 1}, {2, 1, 1}}, {{0, 0, 1}, {0, 1, 1}},
                                              {{1, 0, 1}, {1, 1, 1}}, {{2, 0, 0}, {2, 0, 1}}, {{2, 1, 0}, {2, 1, 1}},
                                              {{1, 1, 0}, {1, 1, 1}}, {{0, 1, 0}, {0, 1, 1}}};
  for (const auto& [a, b] : in_sight)
    EXPECT_TRUE(has_line(picture, a, b)) << testing::PrintToString(a) << " " << testing::PrintToString(b);
  EXPECT_FALSE(has_line(picture, {0, 0, 0}, {0, 0, 1})) << "behind";
  EXPECT_FALSE(has_line(picture, {0, 1, 1}, {1, 0, 1})) << "a diagonal is no edge";
  model.set_edge_vis(false);
  EXPECT_FALSE(has_line(screen.shoot(), {1, 0, 1}, {1, 1, 1}));
  model.set_edge_vis(true);
  EXPECT_TRUE(has_line(screen.shoot(), {1, 0, 1}, {1, 1, 1}));
  model.set_visibility(owner, false);
  EXPECT_FALSE(has_line(screen.shoot(), {0, 0, 1}, {2, 0, 1})) << "an empty view";
}

TEST_F(BlockOnScreen, GivenASideAtAGrazingAngle_WhenDrawn_ThenItsEdgesHaveNoGaps) {
  screen.look_at({1.0, 0.5, 0.5}, {0.0, 0.06, 1.0}, 2.8);
  const Picture picture = screen.shoot();
  EXPECT_TRUE(has_line(picture, {0, 1, 1}, {2, 1, 1}));
  EXPECT_TRUE(has_line(picture, {0, 0, 1}, {2, 0, 1}));
  EXPECT_TRUE(has_line(picture, {0, 1, 0}, {2, 1, 0})) << "the far end of the grazing side";
  EXPECT_TRUE(has_line(picture, {1, 0, 1}, {1, 1, 1}));
}

TEST_F(BlockOnScreen, GivenEachRenderMode_WhenDrawn_ThenSurfacesAndHiddenLinesLookAsTheModeSays) {
  std::map<int, Picture> pictures;
  for (int mode : {0, 1, 2, 3, 4, 5}) {
    model.set_render_mode(static_cast<OBUtil::RenderMode>(mode));
    pictures[mode] = screen.shoot();
    EXPECT_TRUE(has_line(pictures[mode], {1, 0, 1}, {1, 1, 1})) << "mode " << mode;
  }
  EXPECT_EQ(pixel_at(pictures[0], on_top), Screen::background);
  EXPECT_LT(darkness_at(pictures[0], hidden_edge), 40) << "wireframe shows what is behind";

  EXPECT_EQ(pixel_at(pictures[1], on_top), Screen::background);
  EXPECT_GT(darkness_at(pictures[1], hidden_edge), 200) << "hidden lines are hidden";

  EXPECT_GT(darkness_at(pictures[2], hidden_edge), 90) << "hidden lines are dimmed ...";
  EXPECT_LT(darkness_at(pictures[2], hidden_edge), 220) << "... but there";

  const Rgb top = pixel_at(pictures[3], on_top);
  EXPECT_GT(top.g, top.r + 40) << "a green side";
  EXPECT_GT(top.g, top.b + 40);
  EXPECT_NEAR(darkness_at(pictures[3], hidden_edge), pixel_at(pictures[3], hidden_edge).g, 3) << "a plain side";
  EXPECT_GT(darkness_at(pictures[3], hidden_edge), 60);

  EXPECT_GT(distance(pixel_at(pictures[4], on_top), top), 15) << "see through";
  EXPECT_GT(distance(pixel_at(pictures[4], on_top), Screen::background), 15);
  EXPECT_EQ(difference(pictures[5], pictures[3]).mean, 0.0);

  model.set_render_mode(OBUtil::Shaded);
  EXPECT_EQ(difference(screen.shoot(), pictures[3]).mean, 0.0) << "and back";
}

TEST_F(BlockOnScreen, GivenShadedAndWireframe_WhenDepthIsRead_ThenOnlySurfacesFillIt) {
  screen.shoot();
  EXPECT_LT(screen.depth_at(screen.pixel_of(on_top)), 0.999);
  EXPECT_GT(screen.depth_at(screen.pixel_of(on_top)), 0.0);
  const double nearer = screen.depth_at(screen.pixel_of({1.9, 0.9, 1.0}));
  const double farther = screen.depth_at(screen.pixel_of({0.2, 0.2, 1.0}));
  EXPECT_LT(nearer, farther);
  model.set_render_mode(OBUtil::Wireframe);
  screen.shoot();
  EXPECT_EQ(screen.depth_at(screen.pixel_of(on_top)), 1.0);
}

TEST_F(MeshOnScreen, GivenTranslucentMode_WhenOpacityChanges_ThenASingleLayerMixesAccordingly) {
  add(1.0, 1.0, red);
  model.set_render_mode(OBUtil::Translucent);
  for (double opacity : {0.5, 0.25, 0.75, 1.0}) {
    model.set_opacity(opacity);
    EXPECT_LE(distance(pixel_at(screen.shoot(), {1.5, 1.5, 0.0}), mix(rgb(red), Screen::background, opacity)), 8)
        << opacity;
  }
}

TEST_F(MeshOnScreen, GivenALineWidth_WhenItGrows_ThenEdgesCoverMorePixels) {
  add(1.0, 1.0, red);
  EXPECT_NEAR(screen.shoot().count(rgb(black), 30), 400, 60);
  model.set_line_width(5.0f);
  EXPECT_NEAR(screen.shoot().count(rgb(black), 30), 5 * 400, 200);
}

TEST_F(MeshOnScreen, GivenAPointSize_WhenItGrows_ThenNodesCoverMorePixels) {
  add(1.0, 1.0, red);
  model.set_edge_vis(false);
  EXPECT_EQ(screen.shoot().count(rgb(black), 30), 0) << "nodes are hidden at first";
  model.set_node_vis(true);
  EXPECT_NEAR(screen.shoot().count(rgb(black), 30), 4 * 36, 4 * 8);
  model.set_node_point_size(2.0f);
  EXPECT_NEAR(screen.shoot().count(rgb(black), 30), 4 * 144, 4 * 32);
}

TEST_F(MeshOnScreen, GivenNodes_WhenShown_ThenEachIsWhereItsCoordinatesAre) {
  const Owner owner = db.add_owner("sheet", 2);
  const Block sheet = add_quads(db, owner, {3, 2}, {0.5, 0.5, 0.0});
  model.add_mesh(owner, mesh_of(Tarn::Quad, sheet.elements), red, 1.0f, false);
  model.set_edge_vis(false);
  std::vector<Point> points(sheet.nodes.size());
  db.get_double_coordinates(sheet.nodes.size(), sheet.nodes.data(), points[0].data());
  ASSERT_EQ(points.size(), 12u);
  const auto nodes_seen = [&] {
    const Picture picture = screen.shoot();
    return std::count_if(points.begin(), points.end(),
                         [&](const Point& point) { return distance(pixel_at(picture, point), rgb(black)) < 30; });
  };
  EXPECT_EQ(nodes_seen(), 0);
  model.set_node_vis(true);
  EXPECT_EQ(nodes_seen(), 12);
  model.set_node_vis(false);
  EXPECT_EQ(nodes_seen(), 0);
  model.set_node_vis(owner, true);
  EXPECT_EQ(nodes_seen(), 12);
  model.set_visibility(owner, false);
  EXPECT_EQ(nodes_seen(), 0) << "an empty view";
}

} // namespace
