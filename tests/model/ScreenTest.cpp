// From the database to pixels: views, visibility, colours and light.

#include "MeshOnScreen.h"

#include "model/GMeshDataGroup.h"

#include <vtkProperty.h>

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <memory>

namespace {

// ------------------------------------------------------------------------------------------ views

TEST_F(MeshOnScreen, GivenNothing_WhenDrawn_ThenThereIsOnlyBackground) {
  const Picture picture = screen.shoot();
  EXPECT_EQ(picture.count(Screen::background, 0), Screen::window_width * Screen::window_height);
  EXPECT_FALSE(covers_a_unit(picture, red));
  EXPECT_FALSE(picture.has_near({200, 150}, rgb(black), 200));
  EXPECT_EQ(screen.depth_at({200, 150}), 1.0);
}

TEST_F(MeshOnScreen, GivenTwoViewsAndOneOpenedLater_WhenDrawn_ThenAllShowTheMesh) {
  Screen second;
  look_from_above(second);
  add(1.0, 1.0, red);
  EXPECT_TRUE(covers_a_unit(screen.shoot(), red));
  EXPECT_TRUE(covers_a_unit(second.shoot(), red));
  Screen later;
  look_from_above(later);
  EXPECT_TRUE(covers_a_unit(later.shoot(), red));
  const QuadOwner q = add(2.5, 1.0, blue);
  for (Screen* each : {&screen, &second, &later})
    EXPECT_TRUE(covers_a_unit(each->shoot(), blue));
  model.set_visibility(q.owner, false);
  for (Screen* each : {&screen, &second, &later}) {
    const Picture picture = each->shoot();
    EXPECT_EQ(picture.count(rgb(blue)), 0);
    EXPECT_TRUE(covers_a_unit(picture, red));
  }
}

TEST_F(MeshOnScreen, GivenTwoViews_WhenOneCloses_ThenTheOtherGoesOnShowingTheMesh) {
  {
    Screen second;
    add(1.0, 1.0, red);
    second.shoot();
  }
  add(2.5, 1.0, blue);
  const Picture picture = screen.shoot();
  EXPECT_TRUE(covers_a_unit(picture, red));
  EXPECT_TRUE(covers_a_unit(picture, blue));
}

TEST_F(MeshOnScreen, GivenAModel_WhenItIsDestroyedOrCleared_ThenItsMeshIsGoneFromTheView) {
  auto other = std::make_unique<GMeshModel>(&db);
  const QuadOwner q = add_quad_owner(db, 1.0, 1.0);
  other->add_mesh(q.owner, q.mesh, red, 1.0f, false);
  ASSERT_GT(screen.shoot().count(rgb(red)), 9000);
  other.reset();
  EXPECT_EQ(drawn_pixels(screen.shoot()), 0);

  add(1.0, 1.0, green);
  ASSERT_TRUE(covers_a_unit(screen.shoot(), green));
  model.clear();
  EXPECT_EQ(drawn_pixels(screen.shoot()), 0);
}

// ------------------------------------------------------------------------------------------ visibility and colours

TEST_F(MeshOnScreen, GivenOwnersInOneDataGroup_WhenOneIsHiddenAndShown_ThenOnlyItChanges) {
  const QuadOwner red_quad = add(0.2, 1.0, red);
  add(1.4, 1.0, green);
  add(2.6, 1.0, blue);
  const Picture all = screen.shoot();
  for (TovanColor color : {red, green, blue})
    ASSERT_TRUE(covers_a_unit(all, color));
  model.set_visibility(red_quad.owner, false);
  const Picture hidden = screen.shoot();
  EXPECT_EQ(hidden.count(rgb(red)), 0);
  EXPECT_TRUE(covers_a_unit(hidden, green));
  EXPECT_TRUE(covers_a_unit(hidden, blue));
  model.set_visibility(red_quad.owner, true);
  EXPECT_EQ(difference(screen.shoot(), all).mean, 0.0);
}

TEST_F(MeshOnScreen, GivenAShownOwner_WhenItsColorChanges_ThenItsPixelsDo) {
  const QuadOwner q = add(1.0, 1.0, red);
  add(2.5, 1.0, blue);
  ASSERT_TRUE(covers_a_unit(screen.shoot(), red));
  model.set_color(q.owner, green);
  const Picture picture = screen.shoot();
  EXPECT_EQ(picture.count(rgb(red)), 0);
  EXPECT_TRUE(covers_a_unit(picture, green));
  EXPECT_TRUE(covers_a_unit(picture, blue));
}

TEST_F(MeshOnScreen, GivenColorsPerElement_WhenDrawn_ThenEachElementHasItsOwn) {
  const Owner owner = db.add_owner("sheet", 2);
  const Block sheet = add_quads(db, owner, {3, 1}, {0.5, 1.0, 0.0});
  std::array<std::vector<TovanColor>, 10> colors;
  colors[Tarn::Quad] = {red, green, blue};
  model.add_mesh(owner, mesh_of(Tarn::Quad, sheet.elements), white, {}, colors, {}, 1.0f);
  const Picture picture = screen.shoot();
  const TovanColor expected[] = {red, green, blue};
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(covers_a_unit(picture, expected[i]));
    EXPECT_LE(distance(pixel_at(picture, {1.0 + i, 1.5, 0.0}), rgb(expected[i])), 8);
  }
}

TEST_F(MeshOnScreen, GivenColorsPerNode_WhenDrawn_ThenTheyFlowIntoEachOther) {
  const Owner owner = db.add_owner("sheet", 2);
  const Block sheet = add_quads(db, owner, {1, 1}, {1.0, 1.0, 0.0});
  const std::map<Node, TovanColor> colors{
      {sheet.nodes[0], red}, {sheet.nodes[2], red}, {sheet.nodes[1], blue}, {sheet.nodes[3], blue}};
  model.add_mesh(owner, mesh_of(Tarn::Quad, sheet.elements), white, {}, {}, colors, 1.0f);
  const Picture picture = screen.shoot();
  for (double t : {0.1, 0.25, 0.5, 0.75, 0.9})
    EXPECT_LE(distance(pixel_at(picture, {1.0 + t, 1.4, 0.0}), mix(rgb(blue), rgb(red), t)), 10) << t;
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
      all_white[at(i)] = white;
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
  std::map<Node, TovanColor> all_white;
};

TEST_F(Ridge, GivenColorsPerNode_WhenLit_ThenShadingRunsSmoothlyAcrossTheRidge) {
  model.add_mesh(owner, mesh, red, {}, {}, all_white, 1.0f);
  const auto values = brightness_across();
  ASSERT_GT(values.size(), 100u);
  EXPECT_GT(std::abs(values.back() - values.front()), 35) << "the two sides are lit differently";
  EXPECT_LT(largest_step(values), 6);
}

TEST_F(Ridge, GivenOneColor_WhenLit_ThenEachSideIsFlatAndTheRidgeIsAStep) {
  model.add_mesh(owner, mesh, white, 1.0f, false);
  const auto values = brightness_across();
  ASSERT_GT(values.size(), 100u);
  EXPECT_LE(std::abs(values[values.size() / 4] - values.front()), 2);
  EXPECT_LE(std::abs(values[values.size() * 3 / 4] - values.back()), 2);
  EXPECT_GT(largest_step(values), 35);
}

TEST_F(MeshOnScreen, GivenForcedScalars_WhenALineColorIsSet_ThenOnlyTheirEdgesKeepTheirOwn) {
  model.set_line_color(none);
  model.set_line_width(6.0f);
  const QuadOwner forced = add_quad_owner(db, 0.5, 1.0);
  const QuadOwner plain = add_quad_owner(db, 2.5, 1.0);
  model.add_mesh(forced.owner, forced.mesh, red, 1.0f, true);
  model.add_mesh(plain.owner, plain.mesh, red, 1.0f, false);
  const auto edge_pixel = [&](double x) { return pixel_at(screen.shoot(), {x, 1.5, 0.0}); };
  EXPECT_LE(distance(edge_pixel(0.5), rgb(red)), 4) << "no line colour: own colours";
  EXPECT_LE(distance(edge_pixel(2.5), rgb(red)), 4);
  model.set_line_color(blue);
  EXPECT_LE(distance(edge_pixel(0.5), rgb(red)), 4);
  EXPECT_LE(distance(edge_pixel(2.5), rgb(blue)), 4);
  model.set_line_color(none);
  EXPECT_LE(distance(edge_pixel(2.5), rgb(red)), 4);
}

TEST_F(MeshOnScreen, GivenNormalDirectedLighting_WhenDrawn_ThenFrontBackAndCurvesHaveTheirOwnLooks) {
  GModel::mNormalDirectedLighting = true;
  model.set_line_width(6.0f);
  GModel::curve_normal_property()->SetLineWidth(6.0f);
  add(1.0, 1.0, green);
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

} // namespace
