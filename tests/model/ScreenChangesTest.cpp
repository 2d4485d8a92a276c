// From the database to pixels: that a reported change shows.

#include "MeshOnScreen.h"

#include "group/GMeshGroup.h"

#include <vtkNew.h>
#include <vtkPlane.h>

#include <gtest/gtest.h>

namespace {

// ------------------------------------------------------------------------------------------ changes

TEST_F(MeshOnScreen, GivenDeletedElements_WhenReported_ThenTheirPixelsGo) {
  const Owner owner = db.add_owner("sheet", 2);
  const Block sheet = add_quads(db, owner, {3, 1}, {0.5, 1.0, 0.0});
  model.add_mesh(owner, mesh_of(Tarn::Quad, sheet.elements), red, 1.0f, false);
  const int before = screen.shoot().count(rgb(red));
  ASSERT_GT(before, 3 * unit - 1000);
  ASSERT_TRUE(db.delete_elements(1, &sheet.elements[1]));
  EXPECT_EQ(screen.shoot().count(rgb(red)), before) << "not reported yet";
  model.update_mesh_modified(owner);
  const Picture picture = screen.shoot();
  EXPECT_NEAR(picture.count(rgb(red)), before * 2 / 3, 250);
  EXPECT_EQ(pixel_at(picture, {2.0, 1.5, 0.0}), Screen::background);
}

TEST_F(MeshOnScreen, GivenMovedNodes_WhenReported_ThenSurfaceEdgesAndNodesMove) {
  const QuadOwner q = add(0.5, 1.0, red);
  model.set_node_vis(true);
  screen.shoot();
  const double there[] = {2.5, 0.5, 0, 3.5, 0.5, 0, 2.5, 1.5, 0, 3.5, 1.5, 0};
  ASSERT_TRUE(db.move_nodes(4, q.block.nodes.data(), there));
  model.update_mesh_transformed(q.owner);
  const Picture picture = screen.shoot();
  EXPECT_LE(distance(pixel_at(picture, {3.0, 1.0, 0.0}), rgb(red)), 8);
  EXPECT_EQ(pixel_at(picture, {1.0, 1.5, 0.0}), Screen::background);
  EXPECT_TRUE(picture.has_near(screen.pixel_of({3.0, 1.5, 0.0}), rgb(black), 1)) << "an edge";
  EXPECT_TRUE(picture.has_near(screen.pixel_of({3.5, 0.5, 0.0}), rgb(black), 0)) << "a node";
  EXPECT_FALSE(picture.has_near(screen.pixel_of({0.5, 1.0, 0.0}), rgb(black), 5)) << "where a node was";
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
    model.add_mesh(owner, mesh, green, 1.0f, false);
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
  model.add_mesh(owner, mesh_of(Tarn::Quad, sheet.elements), red, 1.0f, false);
  vtkNew<vtkPlane> plane;
  plane->SetNormal(1.0, 0.0, 0.0);
  plane->SetOrigin(1.5, 0.0, 0.0);
  model.set_clipping_plane(plane);
  const Picture clipped = screen.shoot();
  EXPECT_NEAR(clipped.count(rgb(red)), 3 * unit, 1000) << "the element that crosses the plane stays whole";
  EXPECT_EQ(pixel_at(clipped, {0.5, 1.5, 0.0}), Screen::background);

  plane->SetOrigin(3.1, 0.0, 0.0);
  EXPECT_EQ(difference(screen.shoot(), clipped).mean, 0.0) << "no data group was told";
  model.set_clipping_plane(plane);
  EXPECT_NEAR(screen.shoot().count(rgb(red)), unit, 500);
  model.set_clipping_plane(nullptr);
  EXPECT_NEAR(screen.shoot().count(rgb(red)), 4 * unit, 1300);
}

TEST_F(MeshOnScreen, GivenAShownMesh_WhenShrunk_ThenReportingItMovedShowsIt) {
  const QuadOwner q = add(1.0, 1.0, red);
  const Picture whole = screen.shoot();
  ASSERT_TRUE(covers_a_unit(whole, red));
  model.get_mesh(q.owner)->set_shrink_factor(0.5f);
  EXPECT_EQ(difference(screen.shoot(), whole).mean, 0.0);
  model.update_mesh_transformed(q.owner);
  const Picture shrunk = screen.shoot();
  EXPECT_NEAR(shrunk.count(rgb(red)), unit / 4, 250);
  EXPECT_TRUE(shrunk.has_near(screen.pixel_of({1.25, 1.5, 0.0}), rgb(black), 1)) << "its edge at half the way";
  model.get_mesh(q.owner)->set_shrink_factor(1.0f);
  model.update_mesh_transformed(q.owner);
  EXPECT_EQ(difference(screen.shoot(), whole).mean, 0.0);
}

TEST_F(MeshOnScreen, GivenColorListsOnAShownMesh_WhenReportedMoved_ThenTheyShow) {
  const QuadOwner q = add(1.0, 1.0, red);
  screen.shoot();
  std::array<std::vector<TovanColor>, 10> colors;
  colors[Tarn::Quad] = {blue};
  model.get_mesh(q.owner)->set_cell_color_array({}, colors);
  model.update_mesh_transformed(q.owner);
  EXPECT_TRUE(covers_a_unit(screen.shoot(), blue));

  model.set_color(q.owner, green); // no way back but removing and adding
  EXPECT_TRUE(covers_a_unit(screen.shoot(), blue));
  model.remove_mesh(q.owner);
  model.add_mesh(q.owner, q.mesh, green, 1.0f, false);
  EXPECT_TRUE(covers_a_unit(screen.shoot(), green));
}

TEST_F(MeshOnScreen, GivenAMeshFarFromTheOrigin_WhenDrawn_ThenThePictureIsTheSameAsAtTheOrigin) {
  const auto draw = [&](double offset) {
    model.clear();
    const Owner owner = db.add_owner("block", 3);
    const Block block = add_hexes(db, owner, {3, 2, 2}, {offset, offset, -offset}, 0.25);
    model.add_mesh(owner, mesh_of(Tarn::Hex, block.elements), green, 1.0f, false);
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

} // namespace
