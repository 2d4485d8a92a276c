// Labels on screen: that they stand where the mesh is drawn, and go with it.

#include "ModelScene.h"
#include "Screen.h"
#include "group/GMeshGroup.h"

#include <vtkPlane.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using testing::SizeIs;

namespace {

using Points = std::vector<Point>;

class LabelsOnScreen : public testing::Test {
protected:
  /// Two by two hexahedra, one deep, seen from the front, a little from above and from the right.
  LabelsOnScreen() {
    owner = db.add_owner("block", 3);
    block = add_hexes(db, owner, {2, 2, 1}, {0, 0, 0});
    model.add_mesh(owner, mesh_of(Tarn::Hex, block.elements), red, 1.0f, false);
    screen.look_at({1, 1, 0.5}, {0.3, 0.2, 1}, 3.0);
  }

  /// The pixels that changed since `before`.
  std::vector<std::array<int, 2>> changes(const Picture& before) {
    const Picture after = screen.shoot();
    std::vector<std::array<int, 2>> changed;
    for (int y = 0; y < after.height; ++y)
      for (int x = 0; x < after.width; ++x)
        if (distance(before.at(x, y), after.at(x, y)) > 24) changed.push_back({x, y});
    return changed;
  }

  /// Whether something changed round each of the points, and nowhere else.
  void expect_at(const std::vector<std::array<int, 2>>& changed, const Points& points) {
    std::vector<int> hits(points.size(), 0);
    int stray = 0;
    for (const auto& pixel : changed) {
      bool near = false;
      for (std::size_t i = 0; i < points.size(); ++i) {
        const auto place = screen.pixel_of(points[i]);
        if (std::abs(pixel[0] - place[0]) > 12 || std::abs(pixel[1] - place[1]) > 9) continue;
        ++hits[i];
        near = true;
      }
      stray += !near;
    }
    EXPECT_EQ(stray, 0);
    for (std::size_t i = 0; i < points.size(); ++i)
      EXPECT_GT(hits[i], 15) << "no label at " << points[i][0] << ' ' << points[i][1] << ' ' << points[i][2];
  }

  Screen screen;
  Tarn::MeshDatabase db;
  GMeshModel model{&db};
  Owner owner;
  Block block;
};

/// The nodes on the three sides that are seen.
Points seen_nodes() {
  Points nodes;
  for (int x = 0; x <= 2; ++x)
    for (int y = 0; y <= 2; ++y)
      for (int z = 0; z <= 1; ++z)
        if (x == 2 || y == 2 || z == 1) nodes.push_back({double(x), double(y), double(z)});
  return nodes;
}

TEST_F(LabelsOnScreen, GivenABlock_WhenNodesAreLabelled_ThenALabelStandsOnEachNodeThatIsSeen) {
  const Picture plain = screen.shoot();
  model.set_node_label_flag(OBUtil::LocalId);
  const auto changed = changes(plain);
  ASSERT_THAT(seen_nodes(), SizeIs(14));
  expect_at(changed, seen_nodes());
  model.set_node_label_flag(OBUtil::NoLabel);
  EXPECT_THAT(changes(plain), SizeIs(0));
}

TEST_F(LabelsOnScreen, GivenABlock_WhenElementsAreLabelled_ThenALabelStandsInTheMiddleOfEachFaceThatIsSeen) {
  const Picture plain = screen.shoot();
  model.set_element_label_flag(Tarn::Hex, OBUtil::LocalId);
  expect_at(changes(plain), {{0.5, 0.5, 1},
                             {1.5, 0.5, 1},
                             {0.5, 1.5, 1},
                             {1.5, 1.5, 1},
                             {2, 0.5, 0.5},
                             {2, 1.5, 0.5},
                             {0.5, 2, 0.5},
                             {1.5, 2, 0.5}});
}

TEST_F(LabelsOnScreen, GivenAClippingPlane_WhenNodesAreLabelled_ThenLabelsGoWithTheElements) {
  vtkNew<vtkPlane> plane;
  plane->SetOrigin(1.5, 0, 0);
  plane->SetNormal(1, 0, 0);
  model.set_node_label_flag(OBUtil::LocalId);
  model.set_clipping_plane(plane);
  const auto labelled = screen.shoot();
  model.set_node_label_flag(OBUtil::NoLabel);
  Points nodes;
  for (const Point& node : seen_nodes())
    if (node[0] >= 1) nodes.push_back(node);
  // Those on the side x = 1 are seen from behind, but for its upper and its front rim.
  expect_at(changes(labelled), nodes);
}

TEST_F(LabelsOnScreen, GivenALabelledBlock_WhenHidden_ThenItsLabelsGoToo) {
  model.set_node_label_flag(OBUtil::LocalId);
  ASSERT_GT(screen.shoot().count_if([](const Rgb& c) { return distance(c, Screen::background) > 24; }), 1000);
  model.set_visibility(owner, false);
  EXPECT_EQ(screen.shoot().count_if([](const Rgb& c) { return distance(c, Screen::background) > 24; }), 0);
  model.set_visibility(owner, true);
  const Picture shown = screen.shoot();
  model.set_node_label_flag(OBUtil::NoLabel);
  EXPECT_THAT(changes(shown), SizeIs(0)) << "they stayed away";
}

TEST_F(LabelsOnScreen, GivenALabelledBlock_WhenItsNodesMove_ThenLabelsMoveWithThem) {
  model.set_node_label_flag(OBUtil::LocalId);
  screen.shoot();
  const Point far_away = {3, 2.2, 1};
  const Node corner = db.find_node(18); // that at 2 2 1
  Point place;
  db.get_double_coordinates(1, &corner, place.data());
  ASSERT_EQ(place, (Point{2, 2, 1}));
  db.move_nodes(1, &corner, far_away.data());
  model.update_mesh_transformed(owner);
  const Picture labelled = screen.shoot();
  model.set_node_label_flag(OBUtil::NoLabel);
  const auto changed = changes(labelled);
  const auto pixel = screen.pixel_of(far_away);
  const auto round_it = std::count_if(changed.begin(), changed.end(), [&](const std::array<int, 2>& each) {
    return std::abs(each[0] - pixel[0]) <= 12 && std::abs(each[1] - pixel[1]) <= 9;
  });
  EXPECT_GT(round_it, 15);
}

TEST_F(LabelsOnScreen, GivenTwoOwnersThatShareNodes_WhenLabelled_ThenNeitherHidesTheOthersLabels) {
  const Owner other = db.add_owner("other", 3);
  const Block more = add_hexes(db, other, {2, 1, 1}, {0, -1, 0});
  model.add_mesh(other, mesh_of(Tarn::Hex, more.elements), blue, 1.0f, false);
  screen.look_at({1, 0.5, 0.5}, {0.3, 0.2, 1}, 4.0);
  const Picture plain = screen.shoot();
  model.set_element_label_flag(Tarn::Hex, OBUtil::LocalId);
  expect_at(changes(plain), {{0.5, 0.5, 1},
                             {1.5, 0.5, 1},
                             {0.5, 1.5, 1},
                             {1.5, 1.5, 1},
                             {2, 0.5, 0.5},
                             {2, 1.5, 0.5},
                             {0.5, 2, 0.5},
                             {1.5, 2, 0.5},
                             {0.5, -0.5, 1},
                             {1.5, -0.5, 1},
                             {2, -0.5, 0.5}});
}

} // namespace
