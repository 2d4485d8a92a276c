// From the database to pixels, through real views.

#include "Screen.h"
#include "ModelScene.h"
#include "group/GMeshGroup.h"

#include <vtkPlane.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

namespace {

const TovanColor kBlack(0, 0, 0, 255);

Rgb rgb(TovanColor color) { return {color.r, color.g, color.b}; }

Rgb rgb(const double* color) {
  return {static_cast<int>(std::lround(color[0] * 255)), static_cast<int>(std::lround(color[1] * 255)),
          static_cast<int>(std::lround(color[2] * 255))};
}

Rgb mix(const Rgb& over, const Rgb& under, double opacity) {
  const auto channel = [&](int a, int b) { return static_cast<int>(std::lround(a * opacity + b * (1 - opacity))); };
  return {channel(over.r, under.r), channel(over.g, under.g), channel(over.b, under.b)};
}

Point between(const Point& a, const Point& b, double t) {
  return {a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1]), a[2] + t * (b[2] - a[2])};
}

int drawn_pixels(const Picture& picture) {
  return picture.count_if([](const Rgb& pixel) { return distance(pixel, Screen::kBackground) > 32; });
}

/// A model whose edges are black and that is looked at from +z, 100 pixels a unit, the picture's centre at 2, 1.5.
class MeshOnScreen : public testing::Test {
protected:
  void SetUp() override {
    model.set_line_color(kBlack);
    look_from_above(screen);
  }
  void TearDown() override { GModel::mNormalDirectedLighting = false; }

  static void look_from_above(Screen& screen) { screen.look_at({2.0, 1.5, 0.0}, {0.0, 0.0, 1.0}, 3.0); }

  /// A unit quadrilateral with its lowest corner at x, y.
  QuadOwner add(double x, double y, TovanColor color) {
    const QuadOwner q = add_quad_owner(db, x, y);
    model.add_mesh(q.owner, q.mesh, color, 1.0f, false);
    return q;
  }

  Rgb pixel_at(const Picture& picture, const Point& point) {
    const auto pixel = screen.pixel_of(point);
    return picture.at(pixel[0], pixel[1]);
  }

  Screen screen;
  Tarn::MeshDatabase db;
  RecordingModel model{&db};
};

constexpr int kUnit = 100 * 100;

/// Pixels of a unit quadrilateral, of which its black outline takes some.
bool covers_a_unit(const Picture& picture, TovanColor color) {
  const int count = picture.count(rgb(color));
  return count > kUnit - 450 && count <= kUnit;
}

// ------------------------------------------------------------------------------------------ views

TEST_F(MeshOnScreen, GivenNothing_WhenDrawn_ThenThereIsOnlyBackground) {
  const Picture picture = screen.shoot();
  EXPECT_EQ(picture.count(Screen::kBackground, 0), Screen::kWidth * Screen::kHeight);
  EXPECT_FALSE(covers_a_unit(picture, kRed));
  EXPECT_FALSE(picture.has_near({200, 150}, rgb(kBlack), 200));
  EXPECT_EQ(screen.depth_at({200, 150}), 1.0);
}

TEST_F(MeshOnScreen, GivenTwoViewsAndOneOpenedLater_WhenDrawn_ThenAllShowTheMesh) {
  Screen second;
  look_from_above(second);
  add(1.0, 1.0, kRed);
  EXPECT_TRUE(covers_a_unit(screen.shoot(), kRed));
  EXPECT_TRUE(covers_a_unit(second.shoot(), kRed));
  Screen later;
  look_from_above(later);
  EXPECT_TRUE(covers_a_unit(later.shoot(), kRed));
  const QuadOwner q = add(2.5, 1.0, kBlue);
  for (Screen* each : {&screen, &second, &later})
    EXPECT_TRUE(covers_a_unit(each->shoot(), kBlue));
  model.set_visibility(q.owner, false);
  for (Screen* each : {&screen, &second, &later}) {
    const Picture picture = each->shoot();
    EXPECT_EQ(picture.count(rgb(kBlue)), 0);
    EXPECT_TRUE(covers_a_unit(picture, kRed));
  }
}

TEST_F(MeshOnScreen, GivenTwoViews_WhenOneCloses_ThenTheOtherGoesOnShowingTheMesh) {
  {
    Screen second;
    add(1.0, 1.0, kRed);
    second.shoot();
  }
  add(2.5, 1.0, kBlue);
  const Picture picture = screen.shoot();
  EXPECT_TRUE(covers_a_unit(picture, kRed));
  EXPECT_TRUE(covers_a_unit(picture, kBlue));
}

TEST_F(MeshOnScreen, GivenAModel_WhenItIsDestroyedOrCleared_ThenItsMeshIsGoneFromTheView) {
  auto other = std::make_unique<GMeshModel>(&db);
  const QuadOwner q = add_quad_owner(db, 1.0, 1.0);
  other->add_mesh(q.owner, q.mesh, kRed, 1.0f, false);
  ASSERT_GT(screen.shoot().count(rgb(kRed)), 9000);
  other.reset();
  EXPECT_EQ(drawn_pixels(screen.shoot()), 0);

  add(1.0, 1.0, kGreen);
  ASSERT_TRUE(covers_a_unit(screen.shoot(), kGreen));
  model.clear();
  EXPECT_EQ(drawn_pixels(screen.shoot()), 0);
}

// ------------------------------------------------------------------------------------------ visibility and colours

TEST_F(MeshOnScreen, GivenOwnersInOneDataGroup_WhenOneIsHiddenAndShown_ThenOnlyItChanges) {
  const QuadOwner red = add(0.2, 1.0, kRed);
  add(1.4, 1.0, kGreen);
  add(2.6, 1.0, kBlue);
  const Picture all = screen.shoot();
  for (TovanColor color : {kRed, kGreen, kBlue})
    ASSERT_TRUE(covers_a_unit(all, color));
  model.set_visibility(red.owner, false);
  const Picture hidden = screen.shoot();
  EXPECT_EQ(hidden.count(rgb(kRed)), 0);
  EXPECT_TRUE(covers_a_unit(hidden, kGreen));
  EXPECT_TRUE(covers_a_unit(hidden, kBlue));
  model.set_visibility(red.owner, true);
  EXPECT_EQ(difference(screen.shoot(), all).mean, 0.0);
}

TEST_F(MeshOnScreen, GivenAShownOwner_WhenItsColorChanges_ThenItsPixelsDo) {
  const QuadOwner q = add(1.0, 1.0, kRed);
  add(2.5, 1.0, kBlue);
  ASSERT_TRUE(covers_a_unit(screen.shoot(), kRed));
  model.set_color(q.owner, kGreen);
  const Picture picture = screen.shoot();
  EXPECT_EQ(picture.count(rgb(kRed)), 0);
  EXPECT_TRUE(covers_a_unit(picture, kGreen));
  EXPECT_TRUE(covers_a_unit(picture, kBlue));
}

TEST_F(MeshOnScreen, GivenColorsPerElement_WhenDrawn_ThenEachElementHasItsOwn) {
  const Owner owner = db.add_owner("sheet", 2);
  const Block sheet = add_quads(db, owner, {3, 1}, {0.5, 1.0, 0.0});
  std::array<std::vector<TovanColor>, 10> colors;
  colors[Tarn::Quad] = {kRed, kGreen, kBlue};
  model.add_mesh(owner, mesh_of(Tarn::Quad, sheet.elements), kWhite, {}, colors, {}, 1.0f);
  const Picture picture = screen.shoot();
  const TovanColor expected[] = {kRed, kGreen, kBlue};
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(covers_a_unit(picture, expected[i]));
    EXPECT_LE(distance(pixel_at(picture, {1.0 + i, 1.5, 0.0}), rgb(expected[i])), 8);
  }
}

TEST_F(MeshOnScreen, GivenColorsPerNode_WhenDrawn_ThenTheyFlowIntoEachOther) {
  const Owner owner = db.add_owner("sheet", 2);
  const Block sheet = add_quads(db, owner, {1, 1}, {1.0, 1.0, 0.0});
  const std::map<Node, TovanColor> colors{
      {sheet.nodes[0], kRed}, {sheet.nodes[2], kRed}, {sheet.nodes[1], kBlue}, {sheet.nodes[3], kBlue}};
  model.add_mesh(owner, mesh_of(Tarn::Quad, sheet.elements), kWhite, {}, {}, colors, 1.0f);
  const Picture picture = screen.shoot();
  for (double t : {0.1, 0.25, 0.5, 0.75, 0.9})
    EXPECT_LE(distance(pixel_at(picture, {1.0 + t, 1.4, 0.0}), mix(rgb(kBlue), rgb(kRed), t)), 10) << t;
}

/// Two quadrilaterals that meet at a ridge along y under 20 degrees, looked at from the right.
class Ridge : public MeshOnScreen {
protected:
  void SetUp() override {
    const double drop = std::tan(10.0 * M_PI / 180.0);
    const double xyz[] = {-1, -1, -drop, 0, -1, 0, 1, -1, -drop, -1, 1, -drop, 0, 1, 0, 1, 1, -drop};
    owner = db.add_owner("ridge", 2);
    const Node first = db.add_nodes(6, xyz, nullptr, owner);
    const auto at = [&](std::uint64_t i) { return Node{first.value + i}; };
    const Node connectivity[] = {at(0), at(1), at(4), at(3), at(1), at(2), at(5), at(4)};
    const Elem element = db.add_elements(Tarn::Quad, 4, 2, connectivity, nullptr, owner);
    mesh = mesh_of(Tarn::Quad, {element, {element.value + 1}});
    for (std::uint64_t i = 0; i < 6; ++i)
      white[at(i)] = kWhite;
    model.set_edge_vis(false);
    screen.look_at({0.0, 0.0, 0.0}, {std::sin(40.0 * M_PI / 180.0), 0.0, std::cos(40.0 * M_PI / 180.0)}, 2.5);
  }

  /// Brightness along a line across the ridge.
  std::vector<int> brightness_across() {
    const Picture picture = screen.shoot();
    const auto left = screen.pixel_of({-0.9, 0.1, -0.158});
    const auto right = screen.pixel_of({0.9, 0.1, -0.158});
    std::vector<int> result;
    for (int x = left[0]; x <= right[0]; ++x)
      result.push_back(picture.at(x, left[1]).g);
    return result;
  }
  static int largest_step(const std::vector<int>& values) {
    int step = 0;
    for (std::size_t i = 1; i < values.size(); ++i)
      step = std::max(step, std::abs(values[i] - values[i - 1]));
    return step;
  }

  Owner owner;
  MeshVector mesh;
  std::map<Node, TovanColor> white;
};

TEST_F(Ridge, GivenColorsPerNode_WhenLit_ThenShadingRunsSmoothlyAcrossTheRidge) {
  model.add_mesh(owner, mesh, kRed, {}, {}, white, 1.0f);
  const auto values = brightness_across();
  ASSERT_GT(values.size(), 100u);
  EXPECT_GT(std::abs(values.back() - values.front()), 35) << "the two sides are lit differently";
  EXPECT_LT(largest_step(values), 6);
}

TEST_F(Ridge, GivenOneColor_WhenLit_ThenEachSideIsFlatAndTheRidgeIsAStep) {
  model.add_mesh(owner, mesh, kWhite, 1.0f, false);
  const auto values = brightness_across();
  ASSERT_GT(values.size(), 100u);
  EXPECT_LE(std::abs(values[values.size() / 4] - values.front()), 2);
  EXPECT_LE(std::abs(values[values.size() * 3 / 4] - values.back()), 2);
  EXPECT_GT(largest_step(values), 35);
}

TEST_F(MeshOnScreen, GivenForcedScalars_WhenALineColorIsSet_ThenOnlyTheirEdgesKeepTheirOwn) {
  model.set_line_color(kNone);
  model.set_line_width(6.0f);
  const QuadOwner forced = add_quad_owner(db, 0.5, 1.0);
  const QuadOwner plain = add_quad_owner(db, 2.5, 1.0);
  model.add_mesh(forced.owner, forced.mesh, kRed, 1.0f, true);
  model.add_mesh(plain.owner, plain.mesh, kRed, 1.0f, false);
  const auto edge_pixel = [&](double x) { return pixel_at(screen.shoot(), {x, 1.5, 0.0}); };
  EXPECT_LE(distance(edge_pixel(0.5), rgb(kRed)), 4) << "no line colour: own colours";
  EXPECT_LE(distance(edge_pixel(2.5), rgb(kRed)), 4);
  model.set_line_color(kBlue);
  EXPECT_LE(distance(edge_pixel(0.5), rgb(kRed)), 4);
  EXPECT_LE(distance(edge_pixel(2.5), rgb(kBlue)), 4);
  model.set_line_color(kNone);
  EXPECT_LE(distance(edge_pixel(2.5), rgb(kRed)), 4);
}

TEST_F(MeshOnScreen, GivenNormalDirectedLighting_WhenDrawn_ThenFrontBackAndCurvesHaveTheirOwnLooks) {
  GModel::mNormalDirectedLighting = true;
  model.set_line_width(6.0f);
  GModel::curve_normal_property()->SetLineWidth(6.0f);
  add(1.0, 1.0, kGreen);
  const auto look = [&](double z) {
    screen.look_at({2.0, 1.5, 0.0}, {0.0, 0.0, z}, 3.0);
    const Picture picture = screen.shoot();
    return std::make_pair(pixel_at(picture, {1.5, 1.5, 0.0}), pixel_at(picture, {1.0, 1.5, 0.0}));
  };
  const auto front = look(1.0);
  const auto back = look(-1.0);
  GModel::curve_normal_property()->SetLineWidth(1.0f);
  const Rgb front_color = rgb(GModel::surface_normal_front_property()->GetDiffuseColor());
  const Rgb back_color = rgb(GModel::surface_normal_back_property()->GetDiffuseColor());
  const Rgb curve_color = rgb(GModel::curve_normal_property()->GetColor());
  ASSERT_GT(distance(front_color, back_color), 80);
  EXPECT_LT(distance(front.first, front_color), 40);
  EXPECT_LT(distance(back.first, back_color), 40);
  EXPECT_LT(distance(front.second, curve_color), 40);
  EXPECT_LT(distance(back.second, curve_color), 40);
}

// ------------------------------------------------------------------------------------------ changes

TEST_F(MeshOnScreen, GivenDeletedElements_WhenReported_ThenTheirPixelsGo) {
  const Owner owner = db.add_owner("sheet", 2);
  const Block sheet = add_quads(db, owner, {3, 1}, {0.5, 1.0, 0.0});
  model.add_mesh(owner, mesh_of(Tarn::Quad, sheet.elements), kRed, 1.0f, false);
  const int before = screen.shoot().count(rgb(kRed));
  ASSERT_GT(before, 3 * kUnit - 1000);
  ASSERT_TRUE(db.delete_elements(1, &sheet.elements[1]));
  EXPECT_EQ(screen.shoot().count(rgb(kRed)), before) << "not reported yet";
  model.update_mesh_modified(owner);
  const Picture picture = screen.shoot();
  EXPECT_NEAR(picture.count(rgb(kRed)), before * 2 / 3, 250);
  EXPECT_EQ(pixel_at(picture, {2.0, 1.5, 0.0}), Screen::kBackground);
}

TEST_F(MeshOnScreen, GivenMovedNodes_WhenReported_ThenSurfaceEdgesAndNodesMove) {
  const QuadOwner q = add(0.5, 1.0, kRed);
  model.set_node_vis(true);
  screen.shoot();
  const double there[] = {2.5, 0.5, 0, 3.5, 0.5, 0, 2.5, 1.5, 0, 3.5, 1.5, 0};
  ASSERT_TRUE(db.move_nodes(4, q.block.nodes.data(), there));
  model.update_mesh_transformed(q.owner);
  const Picture picture = screen.shoot();
  EXPECT_LE(distance(pixel_at(picture, {3.0, 1.0, 0.0}), rgb(kRed)), 8);
  EXPECT_EQ(pixel_at(picture, {1.0, 1.5, 0.0}), Screen::kBackground);
  EXPECT_TRUE(picture.has_near(screen.pixel_of({3.0, 1.5, 0.0}), rgb(kBlack), 1)) << "an edge";
  EXPECT_TRUE(picture.has_near(screen.pixel_of({3.5, 0.5, 0.0}), rgb(kBlack), 0)) << "a node";
  EXPECT_FALSE(picture.has_near(screen.pixel_of({0.5, 1.0, 0.0}), rgb(kBlack), 5)) << "where a node was";
}

TEST_F(MeshOnScreen, GivenMeshesOfEachKind_WhenReportedModified_ThenThePictureStaysTheSame) {
  const int counts[2][10] = {{0, 1, 2, 3, 4, 4, 8, 6, 5, 3}, {0, 1, 3, 6, 8, 10, 20, 15, 13, 5}};
  std::vector<Owner> owners;
  for (int kind = 1; kind < 10; ++kind)
    for (int quadratic : {0, 1}) {
      const auto type = static_cast<Tarn::ElementType>(kind);
      owners.push_back(db.add_owner("owner"));
      add_element(db, owners.back(), type,
                  element_points(type, counts[quadratic][kind], {1.5 * kind, 1.5 * quadratic, 0.0}));
    }
  const double lone[] = {1.0, 4.0, 0.0};
  owners.push_back(db.add_owner("points", 0));
  db.add_nodes(1, lone, nullptr, owners.back());
  for (Owner owner : owners) {
    MeshVector mesh;
    model.get_mesh_to_draw(owner, mesh);
    ASSERT_FALSE(mesh.empty());
    model.add_mesh(owner, mesh, kGreen, 1.0f, false);
    model.set_node_vis(owner, true);
  }
  screen.look_at({8.0, 2.5, 0.0}, {0.3, 0.4, 1.0}, 12.0);
  const Picture first = screen.shoot();
  ASSERT_GT(drawn_pixels(first), 2000);
  for (Owner owner : owners) {
    model.update_mesh_modified(owner);
    EXPECT_EQ(difference(screen.shoot(), first).mean, 0.0);
  }
}

// ------------------------------------------------------------------------------------------ recipes for hosts

TEST_F(MeshOnScreen, GivenAClippingPlane_WhenMovedInPlace_ThenSettingItAgainShowsIt) {
  const Owner owner = db.add_owner("sheet", 2);
  const Block sheet = add_quads(db, owner, {4, 1}, {0.0, 1.0, 0.0});
  model.add_mesh(owner, mesh_of(Tarn::Quad, sheet.elements), kRed, 1.0f, false);
  vtkNew<vtkPlane> plane;
  plane->SetNormal(1.0, 0.0, 0.0);
  plane->SetOrigin(1.5, 0.0, 0.0);
  model.set_clipping_plane(plane);
  const Picture clipped = screen.shoot();
  EXPECT_NEAR(clipped.count(rgb(kRed)), 3 * kUnit, 1000) << "the element that crosses the plane stays whole";
  EXPECT_EQ(pixel_at(clipped, {0.5, 1.5, 0.0}), Screen::kBackground);

  plane->SetOrigin(3.1, 0.0, 0.0);
  EXPECT_EQ(difference(screen.shoot(), clipped).mean, 0.0) << "no data group was told";
  model.set_clipping_plane(plane);
  EXPECT_NEAR(screen.shoot().count(rgb(kRed)), kUnit, 500);
  model.set_clipping_plane(nullptr);
  EXPECT_NEAR(screen.shoot().count(rgb(kRed)), 4 * kUnit, 1300);
}

TEST_F(MeshOnScreen, GivenAShownMesh_WhenShrunk_ThenReportingItMovedShowsIt) {
  const QuadOwner q = add(1.0, 1.0, kRed);
  const Picture whole = screen.shoot();
  ASSERT_TRUE(covers_a_unit(whole, kRed));
  model.get_mesh(q.owner)->set_shrink_factor(0.5f);
  EXPECT_EQ(difference(screen.shoot(), whole).mean, 0.0);
  model.update_mesh_transformed(q.owner);
  const Picture shrunk = screen.shoot();
  EXPECT_NEAR(shrunk.count(rgb(kRed)), kUnit / 4, 250);
  EXPECT_TRUE(shrunk.has_near(screen.pixel_of({1.25, 1.5, 0.0}), rgb(kBlack), 1)) << "its edge at half the way";
  model.get_mesh(q.owner)->set_shrink_factor(1.0f);
  model.update_mesh_transformed(q.owner);
  EXPECT_EQ(difference(screen.shoot(), whole).mean, 0.0);
}

TEST_F(MeshOnScreen, GivenColorListsOnAShownMesh_WhenReportedMoved_ThenTheyShow) {
  const QuadOwner q = add(1.0, 1.0, kRed);
  screen.shoot();
  std::array<std::vector<TovanColor>, 10> colors;
  colors[Tarn::Quad] = {kBlue};
  model.get_mesh(q.owner)->set_cell_color_array({}, colors);
  model.update_mesh_transformed(q.owner);
  EXPECT_TRUE(covers_a_unit(screen.shoot(), kBlue));

  model.set_color(q.owner, kGreen); // no way back but removing and adding
  EXPECT_TRUE(covers_a_unit(screen.shoot(), kBlue));
  model.remove_mesh(q.owner);
  model.add_mesh(q.owner, q.mesh, kGreen, 1.0f, false);
  EXPECT_TRUE(covers_a_unit(screen.shoot(), kGreen));
}

TEST_F(MeshOnScreen, GivenAMeshFarFromTheOrigin_WhenDrawn_ThenThePictureIsTheSameAsAtTheOrigin) {
  const auto draw = [&](double offset) {
    model.clear();
    const Owner owner = db.add_owner("block", 3);
    const Block block = add_hexes(db, owner, {3, 2, 2}, {offset, offset, -offset}, 0.25);
    model.add_mesh(owner, mesh_of(Tarn::Hex, block.elements), kGreen, 1.0f, false);
    screen.look_at({offset + 0.375, offset + 0.25, -offset + 0.25}, {0.5, 0.6, 1.0}, 1.2);
    return screen.shoot();
  };
  model.set_node_vis(true);
  const Picture near_picture = draw(0.0);
  const Picture far_picture = draw(1e7);
  ASSERT_GT(drawn_pixels(near_picture), 10000);
  const Difference differ = difference(near_picture, far_picture);
  EXPECT_LT(differ.mean, 0.5);
  EXPECT_LT(differ.fraction_differing, 0.003);
}

// ------------------------------------------------------------------------------------------ edges, modes, nodes

/// A block of two hexahedra seen from a corner: its sides x = 2, y = 1 and z = 1 are in sight.
class BlockOnScreen : public MeshOnScreen {
protected:
  void SetUp() override {
    MeshOnScreen::SetUp();
    owner = db.add_owner("block", 3);
    block = add_hexes(db, owner, {2, 1, 1}, {0.0, 0.0, 0.0});
    model.add_mesh(owner, mesh_of(Tarn::Hex, block.elements), kGreen, 1.0f, false);
    screen.look_at({1.0, 0.5, 0.5}, {0.6, 0.7, 1.0}, 2.8);
  }

  /// Whether a dark line runs all the way between two points of the world.
  bool has_line(const Picture& picture, const Point& a, const Point& b) {
    for (double t = 0.03; t < 0.98; t += 0.01)
      if (!picture.has_near(screen.pixel_of(between(a, b, t)), rgb(kBlack), 1, 40)) return false;
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
  EXPECT_EQ(pixel_at(pictures[0], on_top), Screen::kBackground);
  EXPECT_LT(darkness_at(pictures[0], hidden_edge), 40) << "wireframe shows what is behind";

  EXPECT_EQ(pixel_at(pictures[1], on_top), Screen::kBackground);
  EXPECT_GT(darkness_at(pictures[1], hidden_edge), 200) << "hidden lines are hidden";

  EXPECT_GT(darkness_at(pictures[2], hidden_edge), 90) << "hidden lines are dimmed ...";
  EXPECT_LT(darkness_at(pictures[2], hidden_edge), 220) << "... but there";

  const Rgb top = pixel_at(pictures[3], on_top);
  EXPECT_GT(top.g, top.r + 40) << "a green side";
  EXPECT_GT(top.g, top.b + 40);
  EXPECT_NEAR(darkness_at(pictures[3], hidden_edge), pixel_at(pictures[3], hidden_edge).g, 3) << "a plain side";
  EXPECT_GT(darkness_at(pictures[3], hidden_edge), 60);

  EXPECT_GT(distance(pixel_at(pictures[4], on_top), top), 15) << "see through";
  EXPECT_GT(distance(pixel_at(pictures[4], on_top), Screen::kBackground), 15);
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
  add(1.0, 1.0, kRed);
  model.set_render_mode(OBUtil::Translucent);
  for (double opacity : {0.5, 0.25, 0.75, 1.0}) {
    model.set_opacity(opacity);
    EXPECT_LE(distance(pixel_at(screen.shoot(), {1.5, 1.5, 0.0}), mix(rgb(kRed), Screen::kBackground, opacity)), 8)
        << opacity;
  }
}

TEST_F(MeshOnScreen, GivenALineWidth_WhenItGrows_ThenEdgesCoverMorePixels) {
  add(1.0, 1.0, kRed);
  EXPECT_NEAR(screen.shoot().count(rgb(kBlack), 30), 400, 60);
  model.set_line_width(5.0f);
  EXPECT_NEAR(screen.shoot().count(rgb(kBlack), 30), 5 * 400, 200);
}

TEST_F(MeshOnScreen, GivenAPointSize_WhenItGrows_ThenNodesCoverMorePixels) {
  add(1.0, 1.0, kRed);
  model.set_edge_vis(false);
  EXPECT_EQ(screen.shoot().count(rgb(kBlack), 30), 0) << "nodes are hidden at first";
  model.set_node_vis(true);
  EXPECT_NEAR(screen.shoot().count(rgb(kBlack), 30), 4 * 36, 4 * 8);
  model.set_node_point_size(2.0f);
  EXPECT_NEAR(screen.shoot().count(rgb(kBlack), 30), 4 * 144, 4 * 32);
}

TEST_F(MeshOnScreen, GivenNodes_WhenShown_ThenEachIsWhereItsCoordinatesAre) {
  const Owner owner = db.add_owner("sheet", 2);
  const Block sheet = add_quads(db, owner, {3, 2}, {0.5, 0.5, 0.0});
  model.add_mesh(owner, mesh_of(Tarn::Quad, sheet.elements), kRed, 1.0f, false);
  model.set_edge_vis(false);
  std::vector<Point> points(sheet.nodes.size());
  db.get_double_coordinates(sheet.nodes.size(), sheet.nodes.data(), points[0].data());
  ASSERT_EQ(points.size(), 12u);
  const auto nodes_seen = [&] {
    const Picture picture = screen.shoot();
    return std::count_if(points.begin(), points.end(),
                         [&](const Point& point) { return distance(pixel_at(picture, point), rgb(kBlack)) < 30; });
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
