// A host's database that throws: the exception passes on, and what comes after is as if it had not happened.

#include "ModelScene.h"
#include "Screen.h"
#include "group/GMeshGroup.h"
#include "tests/support/RecordingMeshData.h"
#include "tests/support/VtkLosses.h"

#include <vtkPropCollection.h>
#include <vtkRenderer.h>

#include <gtest/gtest.h>

#include <functional>

using test_support::DatabaseError;
using test_support::RecordingMeshData;

namespace {

/// Two by two hexahedra and a quadrilateral beside them, seen askew.
struct Blocks {
  Blocks() {
    solid = db.add_owner("solid", 3);
    sheet = db.add_owner("sheet", 2);
    hexes = add_hexes(db, solid, {2, 2, 1}, {0, 0, 0});
    quads = add_quads(db, sheet, {1, 1}, {2.5, 0, 0});
    screen.look_at({1.5, 1, 0.5}, {0.3, 0.2, 1}, 4.0);
  }
  void add_all(GMeshModel& model) {
    model.add_mesh(solid, mesh_of(Tarn::Hex, hexes.elements), red, 1.0f, false);
    model.add_mesh(sheet, mesh_of(Tarn::Quad, quads.elements), blue, 1.0f, true);
  }
  /// What a model on the database itself shows.
  Picture expected(const std::function<void(GMeshModel&)>& change) {
    GMeshModel model(&db);
    add_all(model);
    change(model);
    return screen.shoot();
  }

  Screen screen;
  Tarn::MeshDatabase db;
  RecordingMeshData watched{db};
  Owner solid, sheet;
  Block hexes, quads;
};

struct Row {
  const char* name;
  std::function<void(GMeshModel&)> look;
};

const Row looks[] = {
    {"as added", [](GMeshModel&) {}},
    {"wire and nodes",
     [](GMeshModel& model) {
       model.set_render_mode(OBUtil::HiddenLine);
       model.set_node_vis(true);
     }},
    {"labels, translucent",
     [](GMeshModel& model) {
       model.set_render_mode(OBUtil::Translucent);
       model.set_node_label_flag(OBUtil::LocalId);
       model.set_element_label_flag(Tarn::Hex, OBUtil::GlobalId);
       model.set_element_label_flag(Tarn::Edge, OBUtil::LocalId);
     }},
};

TEST(ThrowingDatabase, GivenAnyCallOfAFrameThatThrows_WhenDrawnAgain_ThenThePictureIsWhole) {
  Blocks blocks;
  for (const Row& row : looks) {
    SCOPED_TRACE(row.name);
    const Picture expected = blocks.expected(row.look);
    std::size_t throwing = 0;
    for (;; ++throwing) {
      GMeshModel model(&blocks.watched);
      row.look(model);
      blocks.add_all(model);
      blocks.watched.throw_after(throwing);
      bool threw = false;
      try {
        const test_support::VtkLosses losses;
        blocks.screen.view().render();
      } catch (const DatabaseError&) {
        threw = true;
      }
      if (!threw) break;
      ASSERT_EQ(difference(blocks.screen.shoot(), expected).fraction_differing, 0.0) << "call " << throwing;
    }
    blocks.watched.answer_well();
    EXPECT_GT(throwing, 2u);
  }
}

TEST(ThrowingDatabase, GivenAnyCallAfterAChangeThatThrows_WhenDrawnAgain_ThenTheChangeShows) {
  std::size_t throwing = 0;
  for (;; ++throwing) {
    SCOPED_TRACE(throwing);
    Blocks blocks;
    GMeshModel model(&blocks.watched);
    blocks.add_all(model);
    const Picture before = blocks.screen.shoot();
    ASSERT_TRUE(blocks.db.delete_elements(1, blocks.hexes.elements.data()));
    model.update_mesh_modified(blocks.solid);
    blocks.watched.throw_after(throwing);
    bool threw = false;
    try {
      blocks.screen.view().render();
    } catch (const DatabaseError&) {
      threw = true;
    }
    const Picture after = blocks.screen.shoot();
    ASSERT_GT(difference(before, after).fraction_differing, 0.02);
    ASSERT_EQ(model.get_mesh(blocks.solid)->get_mesh().elements[Tarn::Hex].size(), 3u);
    if (!threw) break;
  }
  EXPECT_GT(throwing, 3u);
}

TEST(ThrowingDatabase, GivenLabels_WhenAddingThrowsHalfway_ThenNothingOfTheMeshStays) {
  Blocks blocks;
  RecordingModel model(&blocks.watched);
  model.set_node_label_flag(OBUtil::LocalId);
  const MeshVector mesh = mesh_of(Tarn::Hex, blocks.hexes.elements);
  blocks.watched.throw_after(0);
  EXPECT_THROW(model.add_mesh(blocks.solid, mesh, red, 1.0f, false), DatabaseError);
  EXPECT_EQ(model.get_mesh(blocks.solid), nullptr);
  ASSERT_EQ(model.added.size(), 3u) << "surface, edges, nodes";
  EXPECT_EQ(model.removed, model.added_data());
  EXPECT_EQ(blocks.screen.view().renderer()->GetViewProps()->GetNumberOfItems(), 0);
  blocks.watched.forget_calls();
  model.update_mesh_modified(blocks.solid);
  model.update_parts();
  EXPECT_TRUE(blocks.watched.calls().empty()) << "nobody is registered";

  model.forget_calls();
  model.add_mesh(blocks.solid, mesh, red, 1.0f, false);
  EXPECT_EQ(model.added.size(), 4u) << "and the labels";
  EXPECT_NE(model.get_mesh(blocks.solid), nullptr);
}

TEST(ThrowingDatabase, GivenAnUnownedMesh_WhenReplacingThrows_ThenItStaysInView) {
  Blocks blocks;
  RecordingModel model(&blocks.watched);
  const MeshVector mesh = mesh_of(Tarn::Hex, blocks.hexes.elements);
  model.add_mesh_unique(mesh, nullptr);
  ASSERT_EQ(model.added.size(), 3u);
  blocks.watched.throw_after(0);
  EXPECT_THROW(model.add_mesh_unique(mesh, nullptr), DatabaseError);
  model.update_parts();
  EXPECT_EQ(block_count(model.added.back().data), 1u);
  model.set_visibility(nullptr, false);
  model.update_parts();
  EXPECT_EQ(block_count(model.added.back().data), 0u);
}

} // namespace
