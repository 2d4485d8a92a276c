// Whole pictures against those in baselines/. Set ORBEL_MESH_WRITE_BASELINES=1 to draw them anew, and look at them.

#include "ModelScene.h"
#include "Screen.h"
#include "group/GMeshGroup.h"

#include <vtkPlane.h>
#include <vtksys/SystemTools.hxx>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <functional>

namespace {

const TovanColor black(0, 0, 0, 255);
const TovanColor orange(230, 160, 60);
const TovanColor sky(90, 150, 220);

/// Drivers differ in the last bit of a colour and in which pixels a line takes.
constexpr double mean_tolerance = 0.6;
constexpr double fraction_tolerance = 0.01;

struct Stage {
  Stage() { model.set_line_color(black); }

  Screen screen;
  Tarn::MeshDatabase db;
  GMeshModel model{&db};
};

struct Scene {
  const char* name;
  std::function<void(Stage&)> set;
};

/// Moves every node of a sheet.
void bend(Stage& stage, const Block& sheet, const std::function<Point(const Point&)>& place) {
  std::vector<Point> points(sheet.nodes.size());
  stage.db.get_double_coordinates(points.size(), sheet.nodes.data(), points[0].data());
  for (Point& point : points)
    point = place(point);
  stage.db.move_nodes(points.size(), sheet.nodes.data(), points[0].data());
}

/// An L of two blocks, seen from a corner.
void set_blocks(Stage& stage) {
  const Owner low = stage.db.add_owner("low", 3);
  const Owner high = stage.db.add_owner("high", 3);
  const Block base = add_hexes(stage.db, low, {6, 2, 4}, {0, 0, 0}, 0.5);
  const Block tower = add_hexes(stage.db, high, {2, 3, 4}, {0, 1, 0}, 0.5);
  stage.model.add_mesh(low, mesh_of(Tarn::Hex, base.elements), sky, 1.0f, false);
  stage.model.add_mesh(high, mesh_of(Tarn::Hex, tower.elements), orange, 1.0f, false);
  stage.screen.look_at({1.5, 1.1, 1.0}, {0.6, 0.5, 1.0}, 4.0);
}

std::function<void(Stage&)> blocks_in_mode(OBUtil::RenderMode mode) {
  return [mode](Stage& stage) {
    set_blocks(stage);
    stage.model.set_render_mode(mode);
  };
}

void set_shrunk(Stage& stage) {
  set_blocks(stage);
  for (Owner owner : stage.db.owners()) {
    stage.model.get_mesh(owner)->set_shrink_factor(0.7f);
    stage.model.update_mesh_transformed(owner);
  }
}

void set_clipped(Stage& stage) {
  set_blocks(stage);
  vtkNew<vtkPlane> plane;
  plane->SetOrigin(1.2, 0.0, 1.2);
  plane->SetNormal(-1.0, 0.0, -1.0);
  stage.model.set_clipping_plane(plane);
}

void set_nodes_and_thick_lines(Stage& stage) {
  set_blocks(stage);
  stage.model.set_node_vis(stage.db.owners()[0], true);
  stage.model.set_node_point_size(1.5f);
  stage.model.set_line_width(3.0f);
}

void set_element_labels(Stage& stage) {
  set_blocks(stage);
  stage.model.set_element_label_flag(Tarn::Hex, OBUtil::LocalId);
}

/// Nodes and edges of a sheet that is dark, so that labels have a bright rim, behind a block that one sees through.
void set_node_labels(Stage& stage) {
  const Owner sheet = stage.db.add_owner("sheet", 2);
  const Owner block = stage.db.add_owner("block", 3);
  const Block back = add_quads(stage.db, sheet, {3, 2}, {0, 0, 0});
  const Block front = add_hexes(stage.db, block, {1, 1, 1}, {0, 0, 0.5});
  stage.model.add_mesh(sheet, mesh_of(Tarn::Quad, back.elements), TovanColor(30, 0, 70), 1.0f, false);
  stage.model.add_mesh(block, mesh_of(Tarn::Hex, front.elements), orange, 1.0f, false);
  stage.model.set_render_mode(OBUtil::Translucent);
  stage.model.set_node_label_flag(OBUtil::LocalId);
  stage.model.set_element_label_flag(Tarn::Edge, OBUtil::LocalId);
  stage.screen.look_at({1.5, 1.0, 0.5}, {0.2, 0.3, 1.0}, 3.2);
}

void set_hidden_owner(Stage& stage) {
  set_blocks(stage);
  stage.model.set_visibility(stage.db.owners()[1], false);
}

void set_own_line_colors(Stage& stage) {
  stage.model.set_line_color(none);
  const Owner forced = stage.db.add_owner("forced", 3);
  const Owner plain = stage.db.add_owner("plain", 3);
  const Block left = add_hexes(stage.db, forced, {2, 2, 2}, {0, 0, 0});
  const Block right = add_hexes(stage.db, plain, {2, 2, 2}, {3, 0, 0});
  stage.model.add_mesh(forced, mesh_of(Tarn::Hex, left.elements), red, 1.0f, true);
  stage.model.add_mesh(plain, mesh_of(Tarn::Hex, right.elements), red, 1.0f, false);
  stage.model.set_line_color(blue);
  stage.model.set_render_mode(OBUtil::Wireframe);
  stage.screen.look_at({2.5, 1.0, 1.0}, {0.4, 0.5, 1.0}, 5.0);
}

void set_element_colors(Stage& stage) {
  const Owner owner = stage.db.add_owner("sheet", 2);
  const Block sheet = add_quads(stage.db, owner, {6, 4}, {0, 0, 0});
  std::array<std::vector<TovanColor>, 10> colors;
  for (int i = 0; i < 24; ++i)
    colors[Tarn::Quad].push_back(
        {static_cast<unsigned char>(40 + 35 * (i % 6)), static_cast<unsigned char>(60 + 50 * (i / 6)), 140});
  stage.model.add_mesh(owner, mesh_of(Tarn::Quad, sheet.elements), white, {}, colors, {}, 1.0f);
  stage.screen.look_at({3.0, 2.0, 0.0}, {0.0, -0.4, 1.0}, 5.0);
}

/// A wave with colours by height, so that shading and colours both run smoothly.
void set_vertex_colors(Stage& stage) {
  const Owner owner = stage.db.add_owner("wave", 2);
  const Block sheet = add_quads(stage.db, owner, {24, 16}, {0, 0, 0}, 0.25);
  std::vector<double> waves;
  bend(stage, sheet, [&](const Point& p) {
    waves.push_back(std::sin(2.0 * p[0]) * std::cos(1.5 * p[1]));
    return Point{p[0], p[1], 0.3 * waves.back()};
  });
  std::map<Node, TovanColor> colors;
  for (std::size_t i = 0; i < waves.size(); ++i)
    colors[sheet.nodes[i]] = {static_cast<unsigned char>(127 + 120 * waves[i]), 110,
                              static_cast<unsigned char>(127 - 120 * waves[i])};
  stage.model.add_mesh(owner, mesh_of(Tarn::Quad, sheet.elements), white, {}, {}, colors, 1.0f);
  stage.model.set_edge_vis(false);
  stage.screen.look_at({3.0, 2.0, 0.0}, {0.3, -0.8, 1.0}, 4.6);
}

/// Every kind in two rows, each linear below and quadratic above, with nodes.
void set_every_kind(Stage& stage) {
  const int counts[2][10] = {{0, 1, 2, 3, 4, 4, 8, 6, 5, 3}, {0, 1, 3, 6, 8, 10, 20, 15, 13, 5}};
  for (int kind = 1; kind < 10; ++kind)
    for (int quadratic : {0, 1}) {
      const auto type = static_cast<Tarn::ElementType>(kind);
      const bool solid = kind > 4;
      const Point at{solid ? 1.8 * (kind - 5) : 2.0 * (kind - 1), 1.7 * quadratic + (solid ? 3.6 : 0.0), 0.0};
      const Owner owner = stage.db.add_owner("element");
      const Block block = add_element(stage.db, owner, type, element_points(type, counts[quadratic][kind], at));
      stage.model.add_mesh(owner, mesh_of(type, block.elements), quadratic ? green : orange, 1.0f, false);
    }
  stage.model.set_node_vis(true);
  stage.model.set_node_point_size(0.8f);
  stage.screen.look_at({4.2, 3.3, 0.5}, {0.25, 0.35, 1.0}, 8.0);
}

/// A sheet rolled up, so that both its sides are seen.
void set_normal_directed(Stage& stage) {
  GModel::mNormalDirectedLighting = true;
  const Owner owner = stage.db.add_owner("roll", 2);
  const Block sheet = add_quads(stage.db, owner, {24, 4}, {0, 0, 0}, 0.25);
  bend(stage, sheet, [](const Point& p) {
    const double radius = 0.8 + 0.15 * p[0];
    return Point{radius * std::sin(0.9 * p[0]), p[1], radius * std::cos(0.9 * p[0])};
  });
  stage.model.add_mesh(owner, mesh_of(Tarn::Quad, sheet.elements), green, 1.0f, false);
  stage.screen.look_at({0.0, 0.5, 0.0}, {0.1, 0.8, 1.0}, 4.4);
}

const Scene scenes[] = {
    {"shaded", blocks_in_mode(OBUtil::Shaded)},
    {"wireframe", blocks_in_mode(OBUtil::Wireframe)},
    {"hidden_line", blocks_in_mode(OBUtil::HiddenLine)},
    {"dimmed_hidden_line", blocks_in_mode(OBUtil::DimmedHiddenLine)},
    {"translucent", blocks_in_mode(OBUtil::Translucent)},
    {"shrunk", set_shrunk},
    {"clipped", set_clipped},
    {"nodes_and_thick_lines", set_nodes_and_thick_lines},
    {"element_labels", set_element_labels},
    {"node_labels", set_node_labels},
    {"hidden_owner", set_hidden_owner},
    {"own_line_colors", set_own_line_colors},
    {"element_colors", set_element_colors},
    {"vertex_colors", set_vertex_colors},
    {"every_kind", set_every_kind},
    {"normal_directed", set_normal_directed},
};

bool writes_baselines() { return std::getenv("ORBEL_MESH_WRITE_BASELINES") != nullptr; }

std::string baseline_of(const Scene& scene) { return std::string(ORBEL_MESH_BASELINES "/") + scene.name + ".png"; }

/// Leaves the picture where it can be looked at.
std::string keep(const Picture& picture, const Scene& scene) {
  vtksys::SystemTools::MakeDirectory(ORBEL_MESH_PICTURES);
  const std::string path = std::string(ORBEL_MESH_PICTURES "/") + scene.name + ".png";
  write_png(picture, path);
  return path;
}

class MeshPicture : public testing::TestWithParam<Scene> {
protected:
  void TearDown() override { GModel::mNormalDirectedLighting = false; }
};

TEST_P(MeshPicture, GivenAScene_WhenDrawn_ThenItLooksLikeItsBaseline) {
  Stage stage;
  const Picture empty = stage.screen.shoot();
  GetParam().set(stage);
  const Picture drawn = stage.screen.shoot();
  if (writes_baselines()) {
    write_png(drawn, baseline_of(GetParam()));
    GTEST_SKIP() << "wrote " << baseline_of(GetParam());
  }
  const Picture baseline = read_png(baseline_of(GetParam()));
  ASSERT_EQ(baseline.width, Screen::window_width) << "no baseline";
  const Difference differ = difference(drawn, baseline);
  EXPECT_LT(differ.mean, mean_tolerance);
  EXPECT_LT(differ.fraction_differing, fraction_tolerance);
  if (HasFailure()) std::cerr << "What was drawn: " << keep(drawn, GetParam()) << "\n";
  EXPECT_GT(difference(empty, baseline).mean, 4 * mean_tolerance) << "the tolerance would let an empty view pass";
  EXPECT_GT(difference(empty, baseline).fraction_differing, 2 * fraction_tolerance);
}

INSTANTIATE_TEST_SUITE_P(Scenes, MeshPicture, testing::ValuesIn(scenes),
                         [](const auto& scene) { return std::string(scene.param.name); });

TEST(MeshPictures, GivenTheBaselines_WhenComparedWithEachOther_ThenTheTolerancesTellThemApart) {
  if (writes_baselines()) GTEST_SKIP();
  for (const Scene& one : scenes)
    for (const Scene& other : scenes) {
      if (&one == &other) continue;
      const Difference differ = difference(read_png(baseline_of(one)), read_png(baseline_of(other)));
      EXPECT_TRUE(differ.mean > mean_tolerance || differ.fraction_differing > fraction_tolerance)
          << one.name << " and " << other.name;
    }
}

} // namespace
