#include "pick/GMeshPicker.h"
#include "tests/pick/PickDoubles.h"
#include "tests/pick/PickSystemDouble.h"
#include "tests/support/NamedMeshes.h"
#include "tests/support/RecordingMeshData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const std::vector<std::string> questions = {"Hex",    "Tet", "Pyramid", "Wedge", "Knife",           "Superelement",
                                            "Face",   "Tri", "Edge",    "Node",  "ThreeDimElement", "TwoDimElement",
                                            "Element"};

// One of each kind and two nodes besides. A pick is told from the calls that it makes: which stage looked at which
// list.
class Candidates : public testing::TestWithParam<bool> {
protected:
  Candidates() : mesh_(test_support::each_linear_kind()), db_(*mesh_.database) {
    set_ = mesh_.mesh;
    set_.nodes = {mesh_.nodes[1], mesh_.nodes[0]};
  }

  bool by_ray() const { return GetParam(); }

  // The stages in order: "nodes", "vertices KIND", "edges KIND" or "entities KIND".
  std::vector<std::string> stages(bool use_filter) {
    db_.forget_calls();
    FlatPicker picker(&db_);
    if (by_ray()) {
      Ray ray = down_at(500, 500);
      NodeHits nodes;
      ElementHits elements;
      GMeshPicker::pick_mesh_by_ray(picker, set_, ray.data(), nodes, elements, use_filter);
    } else {
      ScriptedRegion region;
      Nodes nodes;
      Elems elements;
      GMeshPicker::pick_mesh_by_bounds(picker, set_, &region, nodes, elements, use_filter);
    }
    return read_stages();
  }

  std::vector<std::string> read_stages() {
    std::vector<std::string> stages;
    const char* vertices = by_ray() ? "get_element_vertices" : "get_nodes_of_elements";
    std::string adjacent;
    for (const auto& call : db_.calls()) {
      std::string stage;
      if (call.operation == "get_coordinate_arrays" && call.handles.size() == 2 &&
          call.handles[0] == set_.nodes[0].value && call.handles[1] == set_.nodes[1].value)
        stage = "nodes";
      else if (call.operation == vertices)
        stage = "vertices " + kind_of(call.handles[0]);
      else if (call.operation == "get_adjacencies")
        stage = "edges " + kind_of(call.handles[0]);
      else if (call.operation == "get_element_types" && !kind_of(call.handles[0]).empty())
        stage = "entities " + kind_of(call.handles[0]);
      if (stage.empty()) continue;
      // A ray pick of a superelement looks at its vertices: that belongs to it.
      if (!stages.empty() && stage == "vertices Superelement" && stages.back() == "entities Superelement") continue;
      stages.push_back(stage);
    }
    return stages;
  }

  // Empty for what is none of the set, such as an edge of a face.
  std::string kind_of(std::uint64_t handle) const {
    static const char* const names[] = {"",    "OneNode", "Edge",  "Tri",     "Quad",
                                        "Tet", "Hex",     "Wedge", "Pyramid", "Superelement"};
    for (unsigned type = 1; type <= Tarn::Superelement; ++type)
      if (set_.elements[type][0].value == handle) return names[type];
    return "";
  }

  std::vector<std::string> node_stages() const {
    std::vector<std::string> stages = {"nodes",        "vertices OneNode", "vertices Edge",
                                       "vertices Tri", "vertices Quad",    "vertices Hex",
                                       "vertices Tet", "vertices Pyramid", "vertices Wedge"};
    if (!by_ray()) stages.erase(stages.begin() + 1);
    return stages;
  }
  static std::vector<std::string> edge_stages() {
    return {"entities Edge", "edges Tri", "edges Quad", "edges Hex", "edges Tet", "edges Pyramid", "edges Wedge"};
  }
  std::vector<std::string> entity_stages() const {
    std::vector<std::string> stages = {"entities Tri",     "entities Quad",  "entities Hex",         "entities Tet",
                                       "entities Pyramid", "entities Wedge", "entities Superelement"};
    if (!by_ray()) stages.pop_back();
    return stages;
  }

  PickSystemDouble system_;
  test_support::NamedMesh mesh_;
  test_support::RecordingMeshData db_;
  MeshVector set_;
};

INSTANTIATE_TEST_SUITE_P(By, Candidates, testing::Bool(),
                         [](const auto& row) { return std::string(row.param ? "ray" : "region"); });

std::vector<std::string> joined(std::initializer_list<std::vector<std::string>> lists) {
  std::vector<std::string> all;
  for (const auto& list : lists)
    all.insert(all.end(), list.begin(), list.end());
  return all;
}

TEST_P(Candidates, GivenNoFilterUsed_WhenPicked_ThenEveryKindIsLookedAtAndEveryQuestionAskedOnce) {
  EXPECT_THAT(stages(false), ElementsAreArray(joined({node_stages(), edge_stages(), entity_stages()})));
  EXPECT_EQ(system_.questions, questions) << "asked all the same";
}

TEST_P(Candidates, GivenAFilterThatAdmitsNothing_WhenPicked_ThenNothingIsLookedAt) {
  EXPECT_THAT(stages(true), IsEmpty());
  EXPECT_EQ(system_.questions, questions);
}

TEST_P(Candidates, GivenElementAlone_WhenPicked_ThenEveryKindIsLookedAt) {
  system_.admitted = {"Element"};
  EXPECT_THAT(stages(true), ElementsAreArray(joined({node_stages(), edge_stages(), entity_stages()})));
}

TEST_P(Candidates, GivenOneName_WhenPicked_ThenItAdmitsItsListsOnly) {
  const std::vector<std::string> super =
      by_ray() ? std::vector<std::string>{"entities Superelement"} : std::vector<std::string>{};
  const std::vector<std::pair<std::string, std::vector<std::string>>> rows = {
      {"Hex", {"entities Hex"}},
      {"Tet", {"entities Tet"}},
      {"Pyramid", {"entities Pyramid"}},
      {"Wedge", {"entities Wedge"}},
      {"Knife", {}},
      {"Superelement", super},
      {"Face", {"entities Quad"}},
      {"Tri", {"entities Tri"}},
      {"Edge", edge_stages()},
      {"Node", node_stages()},
      {"ThreeDimElement", joined({{"entities Hex", "entities Tet", "entities Pyramid", "entities Wedge"}, super})},
      {"TwoDimElement", {"entities Tri", "entities Quad"}},
      {"Quad", {}}}; // not a filter's name
  for (const auto& [name, expected] : rows) {
    system_.admitted = {name};
    EXPECT_THAT(stages(true), ElementsAreArray(expected)) << name;
  }
}

TEST_P(Candidates, GivenEmptyLists_WhenPicked_ThenTheDatabaseIsNotAsked) {
  set_.clear();
  PickInterface picker(&db_);
  Ray ray = down_at(0, 0);
  NodeHits node_hits = {{{5}, {0, 0, 0}, true}, {{2}, {0, 0, 0}, true}};
  ElementHits element_hits;
  GMeshPicker::pick_mesh_by_ray(picker, set_, ray.data(), node_hits, element_hits, false);
  ScriptedRegion region;
  Nodes nodes = {{5}, {2}, {5}};
  Elems elements = {{9}, {1}};
  GMeshPicker::pick_mesh_by_bounds(picker, set_, &region, nodes, elements, false);
  EXPECT_THAT(db_.calls(), IsEmpty());
  EXPECT_THAT(values_of(node_hits), ElementsAre(5, 2)) << "the caller's list is never sorted";
  EXPECT_THAT(values_of(nodes), ElementsAre(5, 2, 5));
  EXPECT_THAT(values_of(elements), ElementsAre(9, 1));
}

// ------------------------------------------------------------------------------------------ what is appended

// A sheet of two quadrilaterals, and an edge element on their common side.
struct Sheet {
  Sheet() : mesh(test_support::quad_sheet(2, 1)), picker(mesh.database.get()) {
    edge = mesh.add_element(Tarn::Edge, {1, 4});
    picker.setTolerance(0.05);
    screen.put_into(picker);
  }
  const Elems& quads() const { return mesh.mesh.elements[Tarn::Quad]; }
  test_support::NamedMesh mesh;
  Elem edge;
  PickInterface picker;
  FlatScreen screen;
};

TEST(CandidateHits, GivenListsOfTheCallers_WhenPicked_ThenHitsComeAfterThemNodesSortedByTheVertexPick) {
  PickSystemDouble system;
  Sheet sheet;
  MeshVector set = sheet.mesh.mesh;
  set.nodes = {sheet.mesh.nodes[4]};
  Ray ray{1, -1, 0, 1, 2, 0}; // along the common side
  NodeHits nodes = {{{999}, {0, 0, 0}, true}, {{999}, {0, 0, 0}, true}};
  ElementHits elements = {{{998}, {0, 0, 0}, true}, {{998}, {0, 0, 0}, true}};
  GMeshPicker::pick_mesh_by_ray(sheet.picker, set, ray.data(), nodes, elements, false);
  EXPECT_THAT(values_of(nodes), ElementsAre(999, 999, sheet.mesh.nodes[1].value, sheet.mesh.nodes[4].value));
  // Four sides that end on the ray, and the edge between; then the quadrilaterals.
  ASSERT_THAT(elements, SizeIs(2 + 5 + 2));
  EXPECT_EQ(elements[0].handle.value, 998u);
  EXPECT_EQ(elements[1].handle.value, 998u);
  EXPECT_EQ(elements[7].handle, sheet.quads()[0]);
  EXPECT_EQ(elements[8].handle, sheet.quads()[1]);
  int edges = 0;
  for (const auto& hit : elements)
    edges += hit.handle == sheet.edge;
  EXPECT_EQ(edges, 1);
}

TEST(CandidateHits, GivenRepeatedNodesAlone_WhenPicked_ThenNeighboursMergeAndOthersStay) {
  PickSystemDouble system;
  test_support::NamedMesh mesh = test_support::lone_nodes(2);
  PickInterface picker(mesh.database.get());
  picker.setTolerance(0.05);
  FlatScreen screen;
  screen.put_into(picker);
  MeshVector set;
  const Node a = mesh.nodes[0];
  const Node b = mesh.nodes[1];
  set.nodes = {b, b, a, a, a, b};
  Ray ray{-1, 0, 0, 5, 0, 0};
  NodeHits hits = {{b, {0, 0, 0}, false}};
  ElementHits none;
  GMeshPicker::pick_mesh_by_ray(picker, set, ray.data(), hits, none, false);
  EXPECT_THAT(values_of(hits), ElementsAreArray(values_of(Nodes{b, b, a, b}))) << "the caller's own is no neighbour";
  EXPECT_FALSE(hits[0].is_exact);
  ScriptedRegion region;
  region.point = [](const double*) { return true; };
  Nodes nodes = {b};
  Elems no_elements;
  GMeshPicker::pick_mesh_by_bounds(picker, set, &region, nodes, no_elements, false);
  EXPECT_THAT(values_of(nodes), ElementsAreArray(values_of(Nodes{b, b, a, b})));
}

TEST(CandidateHits, GivenRepeatedEdgesAndFaces_WhenPicked_ThenOnlyEdgesMerge) {
  PickSystemDouble system;
  test_support::NamedMesh mesh = test_support::edge_chain(1);
  const Elem quad = mesh.add_own_element(Tarn::Quad, 4);
  PickInterface picker(mesh.database.get());
  picker.setTolerance(0.05);
  FlatScreen screen;
  screen.put_into(picker);
  const Elem edge = mesh.mesh.elements[Tarn::Edge][0];
  Ray ray = down_at(0.5, 0);
  MeshVector edges_only;
  edges_only.elements[Tarn::Edge] = {edge, edge};
  MeshVector faces_only;
  faces_only.elements[Tarn::Quad] = {quad, quad};
  system.admitted = {"Edge", "Face"};
  NodeHits no_nodes;
  ElementHits hits;
  GMeshPicker::pick_mesh_by_ray(picker, edges_only, ray.data(), no_nodes, hits, true);
  EXPECT_THAT(hits, SizeIs(1));
  system.admitted = {"Face"};
  hits.clear();
  GMeshPicker::pick_mesh_by_ray(picker, faces_only, ray.data(), no_nodes, hits, true);
  EXPECT_THAT(hits, SizeIs(2)) << "straight into the list";

  ScriptedRegion region;
  region.segment = [](const double*, const double*) { return true; };
  region.triangle = [](const double*, const double*, const double*) { return true; };
  Nodes nodes;
  Elems elements;
  GMeshPicker::pick_mesh_by_bounds(picker, faces_only, &region, nodes, elements, true);
  EXPECT_THAT(elements, SizeIs(2));
  system.admitted = {"Edge"};
  elements.clear();
  GMeshPicker::pick_mesh_by_bounds(picker, edges_only, &region, nodes, elements, true);
  EXPECT_THAT(elements, SizeIs(1));
}

TEST(CandidateHits, GivenOneNodeElements_WhenPicked_ThenOnlyARayFindsTheirNodes) {
  PickSystemDouble system;
  test_support::NamedMesh mesh = test_support::one_element(Tarn::OneNode, 1);
  PickInterface picker(mesh.database.get());
  picker.setTolerance(0.05);
  FlatScreen screen;
  screen.put_into(picker);
  Ray ray = down_at(0, 0);
  NodeHits hits;
  ElementHits no_elements;
  GMeshPicker::pick_mesh_by_ray(picker, mesh.mesh, ray.data(), hits, no_elements, false);
  EXPECT_THAT(hits, SizeIs(1));
  ScriptedRegion region;
  region.point = [](const double*) { return true; };
  Nodes nodes;
  Elems elements;
  GMeshPicker::pick_mesh_by_bounds(picker, mesh.mesh, &region, nodes, elements, false);
  EXPECT_THAT(nodes, IsEmpty());
  EXPECT_THAT(elements, IsEmpty());
}

} // namespace
