// What a new model looks like, and the data groups and parts that it draws with.

#include "MeshModelViews.h"

#include "group/GMeshGroup.h"
#include "model/GMeshDataGroup.h"

#include <vtkPolyData.h>
#include <vtkProperty.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// ------------------------------------------------------------------------------------------ initial looks

TEST(MeshModelLooks, GivenANewModel_WhenLookedAt_ThenItsPropertiesAreAsDocumented) {
  Tarn::MeshDatabase db;
  GMeshModel model(&db);

  vtkProperty* flat = model.surface_flat_property();
  EXPECT_EQ(flat->GetPointSize(), 6.0f);
  EXPECT_EQ(flat->GetInterpolation(), VTK_FLAT);
  EXPECT_EQ(flat->GetRepresentation(), VTK_SURFACE);
  EXPECT_TRUE(flat->GetLighting());
  EXPECT_EQ(flat->GetOpacity(), 1.0);

  vtkProperty* smooth = model.surface_smooth_property();
  EXPECT_EQ(smooth->GetPointSize(), 6.0f);
  EXPECT_EQ(smooth->GetInterpolation(), VTK_GOURAUD);
  EXPECT_EQ(smooth->GetOpacity(), 1.0);

  vtkProperty* edge = model.edge_property();
  EXPECT_FALSE(edge->GetLighting());
  EXPECT_EQ(edge->GetAmbient(), 1.0);
  EXPECT_EQ(edge->GetDiffuse(), 0.0);
  EXPECT_EQ(edge->GetSpecular(), 0.0);
  EXPECT_EQ(edge->GetRepresentation(), VTK_WIREFRAME);
  EXPECT_EQ(edge->GetPointSize(), 6.0f);

  vtkProperty* node = model.node_property();
  EXPECT_FALSE(node->GetLighting());
  EXPECT_EQ(node->GetRepresentation(), VTK_POINTS);
  EXPECT_EQ(node->GetPointSize(), 6.0f);

  for (vtkProperty* black : {edge, node})
    for (int i = 0; i < 3; ++i)
      EXPECT_EQ(black->GetColor()[i], 0.0);
  const std::set<vtkProperty*> all{flat, smooth, edge, node};
  EXPECT_THAT(all, SizeIs(4));
}

TEST(MeshModelLooks, GivenANewModel_WhenAsked_ThenItsSettingsAreAsDocumented) {
  Tarn::MeshDatabase db;
  GMeshModel model(&db);
  EXPECT_EQ(model.get_render_mode(), OBUtil::Shaded);
  EXPECT_EQ(model.get_opacity(), 0.5);
  EXPECT_TRUE(model.get_edge_vis());
  EXPECT_FALSE(model.get_node_vis());
  EXPECT_EQ(model.get_line_width(), 1.0f);
  EXPECT_EQ(model.get_node_point_size(), 1.0f);
  EXPECT_EQ(model.get_line_color(), none);
}

// ------------------------------------------------------------------------------------------ data groups and parts

TEST_F(MeshModelViews, GivenOneMeshOfEachKind_WhenAdded_ThenEachHasADataGroupOfItsOwn) {
  model.update_parts();
  std::set<vtkDataObject*> all;
  for (int kind = Plain; kind <= Scalars; ++kind) {
    SCOPED_TRACE(kind);
    GMeshGroup* group = model.get_mesh(quads[kind].owner);
    for (vtkDataObject* part : parts[kind]) {
      all.insert(part);
      ASSERT_EQ(block_count(part), 1u);
    }
    EXPECT_EQ(block_of(parts[kind][0], 0), group->get_tri_data());
    EXPECT_EQ(block_of(parts[kind][1], 0), group->get_edge_data());
    EXPECT_EQ(block_of(parts[kind][2], 0), group->get_node_data());
  }
  EXPECT_THAT(all, SizeIs(12));
}

TEST_F(MeshModelViews, GivenAMeshThatFitsSeveralDataGroups_WhenAdded_ThenNodesWinThenScalarsThenVertexColors) {
  struct Row {
    const char* name;
    bool nodes, scalars, vertex_colors;
    Kind expected;
  };
  const Row rows[] = {{"all", true, true, true, NodesShown},
                      {"nodes and colours", true, false, true, NodesShown},
                      {"scalars and colours", false, true, true, Scalars},
                      {"nodes and scalars", true, true, false, NodesShown}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const QuadOwner q = add_quad_owner(db, 20.0, 0.0);
    std::map<Node, TovanColor> colors;
    if (row.vertex_colors) colors[q.block.nodes[0]] = blue;
    model.add_mesh(q.owner, q.mesh, red, {}, {}, colors, 1.0f);
    model.set_visibility(q.owner, false);
    model.get_mesh(q.owner)->set_force_scalars(row.scalars);
    model.get_mesh(q.owner)->set_node_visibility(row.nodes);
    model.set_visibility(q.owner, true);
    model.update_parts();
    for (int kind = Plain; kind <= Scalars; ++kind)
      EXPECT_EQ(block_count(parts[kind][0]), kind == row.expected ? 2u : 1u) << "data group " << kind;
    model.set_visibility(q.owner, false); // leaves the data group that it entered
    model.update_parts();
    EXPECT_EQ(block_count(parts[row.expected][0]), 1u);
    model.remove_mesh(q.owner);
  }
}

TEST_F(MeshModelViews, GivenADataGroupWithAMember_WhenAnotherJoins_ThenNoPartIsAddedAndItShowsAtTheNextUpdate) {
  const QuadOwner q = add_quad_owner(db, 20.0, 0.0);
  model.add_mesh(q.owner, q.mesh, red, 1.0f, false);
  EXPECT_THAT(model.added, IsEmpty());
  model.update_parts();
  ASSERT_EQ(block_count(parts[Plain][0]), 2u);
  EXPECT_EQ(block_of(parts[Plain][0], 1), model.get_mesh(q.owner)->get_tri_data());
}

TEST_F(MeshModelViews, GivenChangesInAllDataGroups_WhenUpdated_ThenPlainComesFirstThenVertexColorsNodesAndScalars) {
  model.update_parts();
  ModificationLog log;
  const char* const names[] = {"plain", "vertex-coloured", "nodes", "scalars"};
  for (int kind = Plain; kind <= Scalars; ++kind)
    log.watch(parts[kind][0], names[kind]);
  for (const QuadOwner& q : quads)
    model.set_color(q.owner, green);
  EXPECT_THAT(log.names, IsEmpty());
  model.update_parts();
  log.names.erase(std::unique(log.names.begin(), log.names.end()), log.names.end());
  EXPECT_THAT(log.names, ElementsAre("plain", "vertex-coloured", "nodes", "scalars"));
  log.names.clear();
  model.update_parts();
  EXPECT_THAT(log.names, IsEmpty()) << "nothing changed";
}

} // namespace
