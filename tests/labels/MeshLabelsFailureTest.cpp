// Databases that fail: what cannot be answered is left out, or shown as the 0 that nobody wrote over.

#include "LabelledMesh.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using test_support::NamedMesh;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// A quadrilateral and a hexahedron apart from each other, a one-node element on the first node; all with global ids.
NamedMesh mixed_mesh() {
  NamedMesh mesh = test_support::quad_sheet(1, 1);
  mesh.add_own_element(Tarn::Hex, 8, 5);
  mesh.add_element(Tarn::OneNode, {0});
  int id = 100;
  for (const auto& list : mesh.mesh.elements)
    for (const auto element : list) {
      mesh.database->set_global_ids(1, &element, &id);
      ++id;
    }
  return mesh;
}

/// Switches everything on.
void label_all(LabelledMesh& mesh, int flag) {
  mesh.label_nodes(flag);
  for (unsigned kind = Tarn::OneNode; kind <= Tarn::Superelement; ++kind)
    mesh.label(static_cast<Tarn::ElementType>(kind), flag);
}

struct FailureRow {
  const char* operation;
  int node_flag;
  int element_flag;
  std::size_t labels; ///< that are left
};

// Whole: 12 nodes, 1 one-node element, 1 quadrilateral, 6 faces of the hexahedron; 4 edges with 4 nodes again.
const FailureRow failures[] = {
    {"", 1, 1, 12 + 1 + 1 + 6 + 4 + 4},
    {"get_node_ids", 1, 1, 12 + 1 + 1 + 6 + 4 + 1},       // zeros; by id the edges' nodes are one
    {"get_element_ids", 1, 1, 12 + 1 + 1 + 6 + 4 + 4},    // zeros
    {"get_element_types", 1, 1, 12},                      // no kinds
    {"get_adjacencies", 1, 1, 12 + 1 + 1 + 6},            // no edges of faces
    {"get_element_owners", 1, 1, 12 + 1 + 1 + 6 + 4 + 4}, // nobody's edges are labelled all the same
    {"get_global_element_ids", 1, 2, 12 + 4},             // none is valid
    {"", 12, 1, 1 + 1 + 1 + 6 + 4 + 1},                   // of the nodes only that with an element
    {"get_elements_on_nodes", 12, 1, 1 + 1 + 6 + 4},      // null handles
    {"get_element_id", 12, 1, 1 + 1 + 1 + 6 + 4 + 1},     // zero
    {"", 2, 2, 1 + 1 + 1 + 6 + 1},                        // edges of faces have no global ids
    {"get_element_global_id", 2, 2, 1 + 1 + 6},           // not valid
};

TEST(FailingDatabase, GivenOneOperationThatFails_WhenLabelled_ThenTheRestIsStillThere) {
  for (const FailureRow& row : failures) {
    SCOPED_TRACE(std::string(row.operation) + " at flags " + std::to_string(row.node_flag) + " and " +
                 std::to_string(row.element_flag));
    LabelledMesh mesh(mixed_mesh());
    label_all(mesh, row.element_flag);
    mesh.label_nodes(row.node_flag);
    mesh.db.fail(row.operation);
    EXPECT_THAT(mesh.lines(), SizeIs(row.labels));
    mesh.db.answer_well();
    mesh.model.update_mesh_transformed(mesh.mesh.owner);
    mesh.draw();
    EXPECT_EQ(mesh.log().clears, 2) << "and it recovers";
  }
}

TEST(FailingDatabase, GivenIdsThatNobodyWrote_WhenLabelled_ThenTheyAreZero) {
  LabelledMesh sheet(test_support::quad_sheet(1, 1));
  sheet.label_nodes();
  sheet.label(Tarn::Quad);
  sheet.db.fail("get_node_ids");
  sheet.db.fail("get_element_ids");
  sheet.draw();
  ASSERT_THAT(sheet.log().labels, SizeIs(5));
  for (const LabelEntry& label : sheet.log().labels)
    EXPECT_EQ(label.text, "0");
}

TEST(FailingDatabase, GivenEverySecondCallFails_WhenEdgesAreLabelled_ThenThoseOfTheOthersAre) {
  LabelledMesh sheet(test_support::quad_sheet(4, 1));
  sheet.label(Tarn::Edge);
  sheet.db.fail_call("get_adjacencies", 1);
  sheet.db.fail_call("get_adjacencies", 3);
  EXPECT_THAT(sheet.lines(), SizeIs(8)) << "of two that do not touch";
}

TEST(FailingDatabase, GivenLostEntities_WhenLabelled_ThenNothingElseSuffers) {
  LabelledMesh sheet(test_support::quad_sheet(2, 1));
  sheet.label(Tarn::Quad);
  sheet.label_nodes(OBUtil::NodeElementId);
  sheet.db.lose(sheet.mesh.mesh.elements[Tarn::Quad][0]);
  sheet.db.lose(sheet.mesh.nodes[0]);
  EXPECT_THAT(sheet.lines(), ElementsAre("2 at 1.5 0.5 0"));
}

TEST(FailingDatabase, GivenKindsThatDoNotExist_WhenLabelled_ThenTheirElementsAreLeftOut) {
  for (const std::uint32_t kind : {10u, 11u, 1000u, 0xffffffffu, 0u}) {
    SCOPED_TRACE(kind);
    LabelledMesh sheet(test_support::quad_sheet(2, 1));
    sheet.label(Tarn::Quad);
    sheet.db.report_type(sheet.mesh.mesh.elements[Tarn::Quad][1], kind);
    EXPECT_THAT(sheet.lines(), ElementsAre("1 at 0.5 0.5 0"));
  }
}

TEST(FailingDatabase, GivenMoreOrFewerEdgesThanThereAre_WhenLabelled_ThenNoneIsReadBeyondTheRoom) {
  struct Row {
    std::uint64_t reported;
    std::size_t labels;
  };
  // Slots that the database left alone are null handles.
  for (const Row& row : {Row{0, 0}, Row{2, 2}, Row{24, 4}, Row{1000000, 4}}) {
    SCOPED_TRACE(row.reported);
    LabelledMesh sheet(test_support::quad_sheet(1, 1));
    sheet.label(Tarn::Edge);
    sheet.db.report_count("get_adjacencies", row.reported);
    EXPECT_THAT(sheet.lines(), SizeIs(row.labels));
  }
}

TEST(FailingDatabase, GivenCoordinatesThatAreNoNumbers_WhenLabelled_ThenOtherLabelsStandWhereTheyShould) {
  NamedMesh mesh = test_support::quad_sheet(2, 1);
  const double nowhere[] = {std::numeric_limits<double>::quiet_NaN(), 0, 0};
  mesh.database->move_nodes(1, &mesh.nodes[0], nowhere);
  LabelledMesh sheet(std::move(mesh));
  sheet.label(Tarn::Quad);
  const auto lines = sheet.lines();
  ASSERT_THAT(lines, SizeIs(2));
  EXPECT_EQ(lines[1], "2 at 1.5 0.5 0");
}

} // namespace
