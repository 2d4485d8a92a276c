#include "platform/base/MultiCellPicker.h"
#include "platform/base/PickCircle.h"
#include "platform/base/PickPolygon.h"
#include "platform/base/PickRectangle.h"
#include "tests/pick/PickerScene.h"
#include "tests/support/RecordingMeshData.h"

#include "group/GMeshGroup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vtkPlane.h>
#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <random>

namespace {

using test_support::RecordingMeshData;
using Reports = std::vector<PickSystemDouble::Report>;

// Every bit, so that what is no number equals itself.
bool is_same(const PickSystemDouble::Report& left, const PickSystemDouble::Report& right) {
  return left.is_node == right.is_node && left.handle == right.handle && left.database == right.database &&
         std::memcmp(left.point.data(), right.point.data(), sizeof left.point) == 0 &&
         std::memcmp(&left.distance, &right.distance, sizeof left.distance) == 0 && left.exact == right.exact;
}

bool are_same(const Reports& left, const Reports& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(), is_same);
}

class Random {
public:
  explicit Random(unsigned seed) : engine_(seed) {}
  double between(double low, double high) { return std::uniform_real_distribution<>(low, high)(engine_); }
  std::size_t below(std::size_t end) { return engine_() % end; }
  bool one_in(std::size_t n) { return below(n) == 0; }

private:
  std::mt19937 engine_;
};

struct Place {
  Tarn::ElementType kind;
  std::vector<int> node_counts;
};

const Place kinds[] = {{Tarn::OneNode, {1}},    {Tarn::Edge, {2, 3}},         {Tarn::Tri, {3, 6, 7}},
                       {Tarn::Quad, {4, 8, 9}}, {Tarn::Tet, {4, 10}},         {Tarn::Hex, {8, 20, 27}},
                       {Tarn::Wedge, {6, 15}},  {Tarn::Pyramid, {5, 13, 14}}, {Tarn::Superelement, {1, 4, 40}}};

/// Elements of all kinds and orders and lone nodes, of any form and all sizes, in and around what is seen; many share
/// nodes. With `odd_numbers` some nodes lie nowhere or very far away.
test_support::NamedMesh ragbag(Random& random, int count, bool odd_numbers) {
  test_support::NamedMesh bag;
  const double odd[] = {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1e300,
                        -1e39};
  for (int i = 0; i < count; ++i) {
    const Place& place = kinds[random.below(std::size(kinds))];
    const double centre[3] = {random.between(-1, 7), random.between(-1, 5), random.between(-6, 6)};
    const double size = std::exp(random.between(-4, 0));
    std::vector<int> nodes;
    for (int n = place.node_counts[random.below(place.node_counts.size())]; n > 0; --n) {
      if (bag.nodes.size() > 40 && random.one_in(20)) {
        nodes.push_back(static_cast<int>(bag.nodes.size() - 1 - random.below(40)));
        continue;
      }
      double at[3];
      for (int axis = 0; axis < 3; ++axis)
        at[axis] = centre[axis] + random.between(-size, size);
      if (odd_numbers && random.one_in(300)) at[random.below(3)] = odd[random.below(4)];
      nodes.push_back(static_cast<int>(bag.nodes.size()));
      bag.add_node(at[0], at[1], at[2]);
    }
    bag.add_element(place.kind, nodes);
  }
  for (int i = 0; i < count / 10; ++i)
    bag.mesh.nodes.push_back(bag.nodes[random.below(bag.nodes.size())]);
  return bag;
}

/// What a model shows of a mesh, through a database whose calls are counted.
struct ShownMesh {
  explicit ShownMesh(test_support::NamedMesh shown) : mesh(std::move(shown)) {
    model.add_mesh(mesh.owner, mesh.mesh, TovanColor(200, 200, 200), 1.0F, false);
    model.update_parts();
  }
  GMeshGroup* group() { return model.get_mesh(mesh.owner); }

  test_support::NamedMesh mesh;
  RecordingMeshData database{*mesh.database};
  GMeshModel model{&database};
};

class PickIndex : public testing::Test {
protected:
  PickIndex() { system_.admitted = {"Hex", "Tet", "Pyramid", "Wedge", "Superelement", "Face", "Tri", "Edge", "Node"}; }
  ~PickIndex() override {
    GMeshPicker::use_index(true);
    MultiCellPicker::mBoxPickAcceptPartialCells = true;
    MultiCellPicker::SetPickToleranceByWindowDiagonal(tolerance_);
  }

  Reports pick(double x, double y) {
    system_.reports.clear();
    picker_.compute_pick(view_.renderer(), static_cast<float>(x), static_cast<float>(y), true);
    return system_.reports;
  }
  Reports pick_region(PickBounds& region) {
    system_.reports.clear();
    picker_.compute_pick_by_bounds(view_.renderer(), &region, true);
    return system_.reports;
  }
  /// What `pick` reports without an index.
  template <class Pick> Reports plainly(Pick pick) {
    GMeshPicker::use_index(false);
    Reports reports = pick();
    GMeshPicker::use_index(true);
    return reports;
  }

  void look_from_anywhere(Random& random) {
    vtkCamera* camera = view_.renderer()->GetActiveCamera();
    camera->SetFocalPoint(random.between(2, 4), random.between(1, 3), random.between(-1, 1));
    const double distance = random.one_in(2) ? 1 : 8; // half the time amid the mesh, some of which is behind the eye
    camera->SetPosition(3 + distance * random.between(-1, 1), 2 + distance * random.between(-1, 1),
                        distance * random.between(-1, 1));
    camera->SetViewUp(random.between(-1, 1), random.between(-1, 1), random.between(-1, 1));
    camera->SetParallelProjection(random.one_in(2));
    camera->SetParallelScale(random.between(0.2, 4));
    camera->SetClippingRange(random.between(0.01, 1), random.between(8, 30));
  }
  /// Some rays and regions; returns how much they found.
  std::size_t expect_the_plain_answers(Random& random, int picks) {
    std::size_t found = 0;
    const auto compare = [&](const char* how, auto pick) {
      const Reports indexed = pick();
      EXPECT_TRUE(are_same(indexed, plainly(pick))) << how;
      found += indexed.size();
    };
    for (int i = 0; i < picks; ++i) {
      const double x = random.between(0, 300);
      const double y = random.between(0, 200);
      MultiCellPicker::SetPickToleranceByWindowDiagonal(random.one_in(4) ? 0 : random.between(0.001, 0.03));
      compare("ray", [&] { return this->pick(x, y); });
      MultiCellPicker::mBoxPickAcceptPartialCells = random.one_in(2);
      const double low[2] = {x, y};
      const double high[2] = {x + random.between(0, 30), y + random.between(0, 30)};
      PickRectangle rectangle(low, high);
      compare("rectangle", [&] { return pick_region(rectangle); });
      PickCircle circle(low, random.between(0, 20));
      compare("circle", [&] { return pick_region(circle); });
      std::vector<std::array<double, 2>> corners(3 + random.below(4));
      for (auto& corner : corners)
        corner = {x + random.between(-30, 30), y + random.between(-30, 30)};
      PickPolygon polygon(corners);
      compare("polygon", [&] { return pick_region(polygon); });
    }
    return found;
  }

  PickSystemDouble system_;
  PlanView view_;
  GMeshPicker picker_;
  double tolerance_ = MultiCellPicker::PickToleranceByWindowDiagonal();
};

TEST_F(PickIndex, GivenElementsOfAllKindsAndForms_WhenPickedFromAnywhere_ThenTheAnswersAreThoseOfThePlainPick) {
  Random random(7);
  for (const bool odd_numbers : {false, true}) {
    ShownMesh shown(ragbag(random, 4500, odd_numbers));
    std::size_t found = 0;
    for (int view = 0; view < 4; ++view) {
      SCOPED_TRACE(testing::Message() << "view " << view << ", odd numbers " << odd_numbers);
      look_from_anywhere(random);
      found += expect_the_plain_answers(random, 3);
    }
    EXPECT_GT(found, 100u);
  }
}

// Rays along the faces and edges of a block, and a tolerance that just reaches the next.
TEST_F(PickIndex, GivenABlock_WhenPickedOnItsGridLines_ThenTheAnswersAreThoseOfThePlainPick) {
  ShownMesh shown(test_support::hex_block(18, 16, 15));
  for (const double x : {0.0, 75.0, 150.0})
    for (const double y : {50.0, 125.0, 200.0}) {
      const auto ray = [&] { return pick(x, y); };
      EXPECT_TRUE(are_same(ray(), plainly(ray))) << x << " " << y;
    }
}

TEST_F(PickIndex, GivenAFarAwayMesh_WhenPicked_ThenTheAnswersAreThoseOfThePlainPick) {
  Random random(11);
  test_support::NamedMesh mesh = test_support::hex_block(18, 16, 15);
  for (const Node node : mesh.nodes) {
    double at[3];
    mesh.database->get_double_coordinates(1, &node, at);
    for (double& coordinate : at)
      coordinate += 1e7;
    mesh.database->move_nodes(1, &node, at);
  }
  ShownMesh shown(std::move(mesh));
  vtkCamera* camera = view_.renderer()->GetActiveCamera();
  camera->SetFocalPoint(1e7 + 3, 1e7 + 2, 1e7);
  camera->SetPosition(1e7 + 3, 1e7 + 2, 1e7 + 30);
  camera->SetClippingRange(1, 60);
  EXPECT_GT(expect_the_plain_answers(random, 4), 0u);
}

// What the plain pick finds among lone nodes and edges it sorts when there are other lists to look at, hit or not.
TEST_F(PickIndex, GivenListsOfWhichNothingIsNear_WhenPicked_ThenHitsAreInTheOrderOfThePlainPick) {
  test_support::NamedMesh mesh = test_support::quad_sheet(70, 70);
  std::vector<int> ends;
  for (const double at : {-1.0, -0.5}) {
    ends.push_back(static_cast<int>(mesh.nodes.size()));
    mesh.add_node(at, -0.5, 0);
    ends.push_back(static_cast<int>(mesh.nodes.size()));
    mesh.add_node(-at - 1.5, -0.5, 0);
  }
  const Elem first = mesh.add_element(Tarn::Edge, {ends[0], ends[1]});
  const Elem second = mesh.add_element(Tarn::Edge, {ends[2], ends[3]});
  mesh.mesh.elements[Tarn::Edge] = {second, first, second};
  mesh.add_node(-1.5, -0.5, 0);
  mesh.add_node(-1.5, -0.5, 0);
  const Node lone[2] = {mesh.nodes[mesh.nodes.size() - 2], mesh.nodes.back()};
  mesh.mesh.nodes = {lone[1], lone[0], lone[1]};
  ShownMesh shown(std::move(mesh));
  vtkCamera* camera = view_.renderer()->GetActiveCamera();
  camera->SetFocalPoint(-1, -0.5, 0);
  camera->SetPosition(-1, -0.5, 10);
  std::size_t repeated = 0;
  for (int x = 100; x < 200; x += 5) {
    const auto ray = [&] { return pick(x, 100); };
    const double low[2] = {x - 2.0, 98};
    const double high[2] = {x + 2.0, 102};
    PickRectangle around(low, high);
    const auto region = [&] { return pick_region(around); };
    EXPECT_TRUE(are_same(ray(), plainly(ray))) << x;
    EXPECT_TRUE(are_same(region(), plainly(region))) << x;
    repeated += system_.reports.size() > 1;
  }
  EXPECT_GT(repeated, 0u);
}

TEST_F(PickIndex, GivenALargeGroup_WhenPickedAgain_ThenOnlyTheFirstPickReadsTheMeshAndEachAsksLittle) {
  ShownMesh shown(test_support::hex_block(18, 16, 15));
  shown.database.forget_calls();
  pick(75, 75);
  const std::size_t reads = shown.database.count("get_connectivity");
  EXPECT_GT(reads, 0u);
  shown.database.forget_calls();
  EXPECT_FALSE(pick(75, 75).empty());
  EXPECT_EQ(shown.database.count("get_connectivity"), 0u);
  EXPECT_LT(shown.database.count("get_element_node_count"), 200u) << "of 4320 hexahedra, in vertices and in solids";
  shown.database.forget_calls();
  plainly([&] { return pick(75, 75); });
  EXPECT_EQ(shown.database.count("get_connectivity"), 0u);
  EXPECT_EQ(shown.database.count("get_element_node_count"), 2 * 4320u);
}

TEST_F(PickIndex, GivenASmallGroup_WhenPicked_ThenThePickIsPlain) {
  for (const int count : {4095, 4096}) {
    test_support::NamedMesh mesh = test_support::quad_sheet(64, 64);
    mesh.mesh.elements[Tarn::Quad].resize(static_cast<std::size_t>(count));
    ShownMesh shown(std::move(mesh));
    shown.database.forget_calls();
    pick(75, 75);
    EXPECT_EQ(shown.database.count("get_connectivity") > 0, count == 4096);
  }
}

TEST_F(PickIndex, GivenAGroupThatDoesNotObserve_WhenPicked_ThenThePickIsPlain) {
  ShownMesh shown(test_support::quad_sheet(70, 70));
  shown.group()->set_dont_observe();
  shown.database.forget_calls();
  EXPECT_FALSE(pick(75, 75).empty());
  EXPECT_EQ(shown.database.count("get_connectivity"), 0u);
}

TEST_F(PickIndex, GivenAChange_WhenPickedAgain_ThenTheAnswersAreThoseOfThePlainPick) {
  Random random(13);
  ShownMesh shown(test_support::hex_block(18, 16, 15));
  Tarn::MeshDatabase& database = *shown.mesh.database;
  const auto expect_fresh_answers = [&](const char* change) {
    SCOPED_TRACE(change);
    shown.model.update_parts();
    EXPECT_GT(expect_the_plain_answers(random, 2), 0u);
  };
  expect_fresh_answers("none");

  std::vector<double> moved;
  for (const Node node : shown.mesh.nodes) {
    double at[3];
    database.get_double_coordinates(1, &node, at);
    moved.insert(moved.end(), {at[0] + 0.3 * at[1], at[1] - 0.4, at[2] - 9});
  }
  database.move_nodes(shown.mesh.nodes.size(), shown.mesh.nodes.data(), moved.data());
  shown.model.update_mesh_transformed(shown.mesh.owner);
  expect_fresh_answers("moved nodes");

  const auto plane = vtkSmartPointer<vtkPlane>::New();
  plane->SetNormal(1, 0, 0);
  plane->SetOrigin(1.5, 0, 0);
  shown.group()->set_clipping_plane(plane);
  expect_fresh_answers("a clipping plane");

  plane->SetOrigin(3.5, 0, 0);
  expect_fresh_answers("a plane moved in place");

  shown.group()->set_clipping_plane(nullptr);
  const Elems gone(shown.mesh.mesh.elements[Tarn::Hex].begin() + 3, shown.mesh.mesh.elements[Tarn::Hex].begin() + 90);
  database.delete_elements(gone.size(), gone.data());
  shown.model.update_mesh_modified(shown.mesh.owner);
  expect_fresh_answers("deleted elements");
}

/// A database that knows an element's kind, but not its nodes.
class NodelessElement : public RecordingMeshData {
public:
  NodelessElement(Tarn::MeshData& database, Elem element) : RecordingMeshData(database), element_(element) {}
  int get_element_connectivity(Elem element, Count* count, Node* nodes) override {
    return element == element_ ? 1 : RecordingMeshData::get_element_connectivity(element, count, nodes);
  }
  void get_connectivity(Count count, const Elem* elements, Count* length, Node* nodes) override {
    RecordingMeshData::get_connectivity(count, elements, length, nodes);
    const auto found = static_cast<Count>(std::find(elements, elements + count, element_) - elements);
    if (found < count) std::fill_n(nodes + found * (*length / count), *length / count, Node{});
  }

private:
  Elem element_;
};

// The plain pick takes a quadrilateral without nodes for the one before it in the list.
TEST_F(PickIndex, GivenAnElementWithoutNodes_WhenPicked_ThenItsListIsLookedAtPlainly) {
  test_support::NamedMesh mesh = test_support::quad_sheet(70, 70);
  const std::uint64_t nodeless = mesh.mesh.elements[Tarn::Quad][3].value;
  NodelessElement database(*mesh.database, {nodeless});
  GMeshModel model(&database);
  model.add_mesh(mesh.owner, mesh.mesh, TovanColor(200, 200, 200), 1.0F, false);
  model.update_parts();
  const auto at_the_one_before = [&] { return pick(125, 25); };
  const auto at_another = [&] { return pick(25, 25); };
  EXPECT_TRUE(are_same(at_the_one_before(), plainly(at_the_one_before)));
  EXPECT_THAT(system_.handles(false), testing::Contains(nodeless));
  EXPECT_TRUE(are_same(at_another(), plainly(at_another)));
  EXPECT_THAT(system_.handles(false), testing::Not(testing::Contains(nodeless)));
}

/// A database that fails where an element has more nodes than there is room for.
class NoTruncation : public RecordingMeshData {
public:
  using RecordingMeshData::RecordingMeshData;
  int get_element_connectivity(Elem element, Count* count, Node* nodes) override {
    Count own = 0;
    get_element_node_count(element, &own);
    if (own > *count) return 1;
    return RecordingMeshData::get_element_connectivity(element, count, nodes);
  }
};

// The plain pick takes the quadrilaterals of higher order for those before them.
TEST_F(PickIndex, GivenADatabaseThatDoesNotCutOff_WhenPicked_ThenTheAnswersAreThoseOfThePlainPick) {
  for (const int every : {1, 5000}) {
    test_support::NamedMesh mesh = test_support::quad_sheet(70, 70);
    for (int i = 0; i < 5000; i += every)
      mesh.add_own_element(Tarn::Quad, 8, 80 + i);
    NoTruncation database(*mesh.database);
    GMeshModel model(&database);
    model.add_mesh(mesh.owner, mesh.mesh, TovanColor(200, 200, 200), 1.0F, false);
    model.update_parts();
    vtkCamera* camera = view_.renderer()->GetActiveCamera();
    camera->SetFocalPoint(69.5, 69.5, 0); // the last that can be told
    camera->SetPosition(69.5, 69.5, 10);
    const auto ray = [&] { return pick(150, 100); };
    EXPECT_TRUE(are_same(ray(), plainly(ray)));
    EXPECT_THAT(system_.handles(false), testing::Contains(mesh.mesh.elements[Tarn::Quad].back().value));
  }
}

TEST_F(PickIndex, GivenADatabaseThatFails_WhenPicked_ThenTheAnswersAreThoseOfThePlainPick) {
  for (const char* operation : {"get_connectivity", "get_coordinate_arrays", "get_element_connectivity",
                                "get_node_coordinates", "get_adjacencies", "get_element_types"}) {
    Random random(19);
    ShownMesh shown(ragbag(random, 4200, false));
    shown.database.fail(operation);
    SCOPED_TRACE(operation);
    expect_the_plain_answers(random, 1);
  }
}

TEST_F(PickIndex, GivenAPick_WhenAnIndexIsMade_ThenNoDataSetIsOlderOrNewerForIt) {
  ShownMesh shown(test_support::quad_sheet(70, 70));
  GMeshGroup* group = shown.group();
  const auto times = [&] {
    return std::vector<vtkMTimeType>{group->get_2d_data()->GetMTime(),   group->get_tri_data()->GetMTime(),
                                     group->get_edge_data()->GetMTime(), group->get_node_data()->GetMTime(),
                                     group->MeshTime().GetMTime(),       group->ColorTime().GetMTime()};
  };
  const auto before = times();
  EXPECT_FALSE(pick(75, 75).empty());
  EXPECT_EQ(times(), before);
}

} // namespace
