#include "group/GMeshGroup.h"
#include "platform/base/GView.h"
#include "platform/base/MultiCellPicker.h"
#include "tests/pick/PickerScene.h"
#include "tests/support/RecordingMeshData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vtkFloatArray.h>
#include <vtkObjectFactory.h>
#include <vtkRenderer.h>
#include <vtkXOpenGLRenderWindow.h>

#include <cmath>
#include <functional>
#include <tuple>
#include <utility>

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr int window_width = 40;
constexpr int window_height = 20;

// A window whose depth buffer is told, pixel by pixel, and that writes down what was read of it.
class ScriptedWindow : public vtkXOpenGLRenderWindow {
public:
  static ScriptedWindow* New() {
    auto* made = new ScriptedWindow;
    made->InitializeObjectBase();
    return made;
  }
  vtkTypeMacro(ScriptedWindow, vtkXOpenGLRenderWindow)
  using vtkXOpenGLRenderWindow::GetZbufferData;
  int GetZbufferData(int x1, int y1, int x2, int y2, vtkFloatArray* values) override {
    read.push_back({x1, y1, x2, y2});
    values->SetNumberOfComponents(1);
    values->SetNumberOfTuples(0);
    for (int y = y1; y <= y2; ++y)
      for (int x = x1; x <= x2; ++x)
        if (values->GetNumberOfTuples() < most) values->InsertNextValue(depth(x, y));
    return 1;
  }
  std::function<float(int, int)> depth = [](int, int) { return 1.0F; };
  std::vector<std::array<int, 4>> read;
  vtkIdType most = 1 << 20;
};

// Nodes are given by the pixel that they are shown at: the matrix is the identity.
class VisibleOnly : public testing::Test {
protected:
  VisibleOnly() {
    window_->SetOffScreenRendering(1);
    window_->SetSize(window_width, window_height);
    window_->AddRenderer(renderer_);
  }

  Node node_at(double px, double py, double z = 0.5) {
    return mesh_.add_node(2 * px / window_width - 1, 2 * py / window_height - 1, z);
  }

  void report(Tarn::MeshData& db, const Nodes& nodes, const Elems& elements) {
    GMeshPicker::process_picks(&db, nodes, elements, renderer_, matrix_, true, &picker_);
  }
  Values shown(const Nodes& nodes) {
    system_.reports.clear();
    report(*mesh_.database, nodes, {});
    return system_.handles(true);
  }
  bool shows(Node node) { return !shown({node}).empty(); }

  PickSystemDouble system_;
  vtkNew<ScriptedWindow> window_;
  vtkNew<vtkRenderer> renderer_;
  vtkNew<vtkMatrix4x4> matrix_;
  test_support::NamedMesh mesh_;
  GMeshPicker picker_;
};

TEST_F(VisibleOnly, GivenHits_WhenReported_ThenTheWholeBufferIsReadOnceBothCornersIncluded) {
  shown({node_at(5, 5), node_at(6, 6)});
  ASSERT_THAT(window_->read, SizeIs(1));
  EXPECT_THAT(window_->read[0], ElementsAre(0, 0, window_width, window_height));
}

TEST_F(VisibleOnly, GivenHits_WhenReported_ThenEachIsLookedUpAndReportedBeforeTheNext) {
  for (int i = 0; i < 4; ++i)
    node_at(5 + i, 5, i == 1 ? 2 : 0.5);
  const Elem quad = mesh_.add_element(Tarn::Quad, {0, 1, 2, 3});
  test_support::RecordingMeshData db(*mesh_.database);
  std::vector<std::size_t> asked;
  system_.on_report = [&] { asked.push_back(db.count("get_node_coordinates")); };
  report(db, mesh_.nodes, {quad, quad});
  // Nodes 0, 2 and 3 show; each element has four nodes to look at.
  EXPECT_THAT(asked, ElementsAre(1, 3, 4, 8, 12));
}

TEST_F(VisibleOnly, GivenOneHiddenPixel_WhenNodesLieAround_ThenOnlyThoseOnItAreHidden) {
  for (const auto& [px, py] : std::vector<std::pair<int, int>>{{0, 0}, {7, 3}, {39, 19}, {39, 0}, {0, 19}}) {
    window_->depth = [px = px, py = py](int x, int y) { return x == px && y == py ? 0.0F : 1.0F; };
    EXPECT_FALSE(shows(node_at(px, py))) << px << ' ' << py;
    for (const auto& [dx, dy] : std::vector<std::pair<int, int>>{{1, 0}, {-1, 0}, {0, 1}, {0, -1}}) {
      const int x = px + dx;
      const int y = py + dy;
      const bool in_window = x >= 0 && x < window_width && y >= 0 && y < window_height;
      EXPECT_EQ(shows(node_at(x, y)), in_window) << x << ' ' << y;
    }
  }
}

struct PixelRow {
  const char* name;
  double px, py;
  bool in_window;
};

class VisiblePixels : public VisibleOnly, public testing::WithParamInterface<PixelRow> {};

TEST_P(VisiblePixels, GivenAPlace_WhenRounded_ThenTheEdgesOfTheWindowDecide) {
  EXPECT_EQ(shows(node_at(GetParam().px, GetParam().py)), GetParam().in_window);
}

INSTANTIATE_TEST_SUITE_P(
    Places, VisiblePixels,
    testing::Values(PixelRow{"middle", 20, 10, true}, PixelRow{"left", -0.25, 10, true},
                    PixelRow{"left_half_a_pixel_and_more", -0.75, 10, true}, // -0.25 is truncated to 0
                    PixelRow{"left_out", -1.6, 10, false}, PixelRow{"left_far_out", -20, 10, false},
                    PixelRow{"below", 20, -0.75, true}, PixelRow{"below_out", 20, -1.6, false},
                    PixelRow{"right", 39.25, 10, true}, PixelRow{"right_rounds_to_the_width", 39.5, 10, false},
                    PixelRow{"right_out", 40, 10, false}, PixelRow{"above", 20, 19.25, true},
                    PixelRow{"above_rounds_to_the_height", 20, 19.5, false}, PixelRow{"above_out", 20, 21, false},
                    PixelRow{"far_away", 1e300, 10, false}, PixelRow{"far_below", 10, -1e300, false},
                    PixelRow{"nowhere", std::nan(""), 10, false}, PixelRow{"nowhere_in_y", 10, std::nan(""), false},
                    PixelRow{"infinitely_far", INFINITY, 10, false}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(VisibleOnly, GivenDepths_WhenCompared_ThenASlackOfAHundredthIsLeft) {
  struct Row {
    float buffer;
    double z;
    bool shows;
  };
  const double half = 0.5F;
  for (const Row& row : {Row{0.5F, 0.2, true}, Row{0.5F, half, true}, Row{0.5F, half + 0.01, true},
                         Row{0.5F, half + 0.0100001, false}, Row{0.5F, 0.9, false}, Row{0.0F, 0.009, true},
                         Row{1.0F, 1.5, false}, Row{NAN, 0.5, false}, Row{0.5F, NAN, false}}) {
    window_->depth = [&row](int, int) { return row.buffer; };
    EXPECT_EQ(shows(node_at(5, 5, row.z)), row.shows) << row.buffer << " before " << row.z;
  }
}

TEST_F(VisibleOnly, GivenAMatrixWithPerspective_WhenProjected_ThenItDividesByTheFourthCoordinate) {
  matrix_->SetElement(3, 3, 2);
  window_->depth = [](int x, int y) { return x == 25 && y == 12 ? 1.0F : 0.0F; };
  const Node node = mesh_.add_node(2 * 0.25, 2 * 0.2, 2 * 0.5); // pixel 25, 12
  EXPECT_TRUE(shows(node));
  window_->depth = [](int x, int y) { return x == 25 && y == 12 ? 0.48F : 1.0F; };
  EXPECT_FALSE(shows(node)) << "at half its depth, 0.5, it is hidden";
}

TEST_F(VisibleOnly, GivenAHalfViewport_WhenProjected_ThenPixelsAreTheWindows) {
  renderer_->SetViewport(0.5, 0, 1, 1);
  window_->depth = [](int x, int y) { return x == 30 && y == 10 ? 1.0F : 0.0F; };
  EXPECT_TRUE(shows(mesh_.add_node(0, 0, 0.5)));
}

TEST_F(VisibleOnly, GivenNodesThatTheDatabaseDoesNotKnow_WhenReported_ThenTheyAreHidden) {
  const Node known = node_at(5, 5);
  EXPECT_THAT(shown({Node{}, known, Node{12345678}}), ElementsAre(known.value));
}

TEST_F(VisibleOnly, GivenABufferThatIsTooShort_WhenRead_ThenTheRestHidesWhatLiesThere) {
  window_->most = 3 * (window_width + 1) + 10; // three rows and ten pixels
  const Node seen = node_at(9, 3);
  EXPECT_THAT(shown({seen, node_at(10, 3), node_at(5, 15)}), ElementsAre(seen.value));
  window_->most = 0;
  EXPECT_FALSE(shows(seen));
}

TEST_F(VisibleOnly, GivenAWindowOfNoSize_WhenReported_ThenNothingIsReadOrShown) {
  const Node node = node_at(5, 5);
  for (const auto& [width, height] : std::vector<std::pair<int, int>>{{0, 0}, {0, 20}, {40, 0}}) {
    window_->SetSize(width, height);
    EXPECT_FALSE(shows(node));
  }
  EXPECT_THAT(window_->read, IsEmpty());
  window_->RemoveRenderer(renderer_);
  EXPECT_FALSE(shows(node)) << "nor without a window";
}

// ------------------------------------------------------------------------------------------ elements

struct CountRow {
  Tarn::ElementType type;
  int nodes;
  int visible;
  bool shows;
};

class VisibleElements : public VisibleOnly, public testing::WithParamInterface<CountRow> {};

TEST_P(VisibleElements, GivenSomeNodesHidden_WhenReported_ThenItTakesTwoOfTwoOrThreeOfMore) {
  const CountRow& row = GetParam();
  std::vector<int> positions;
  for (int i = 0; i < row.nodes; ++i) {
    node_at(5 + i % 9, 5 + i / 9, i < row.visible ? 0.5 : 2);
    positions.push_back(i);
  }
  const Elem element = mesh_.add_element(row.type, positions);
  test_support::RecordingMeshData db(*mesh_.database);
  report(db, {}, {element});
  EXPECT_THAT(system_.handles(false), SizeIs(row.shows ? 1 : 0));
  EXPECT_THAT(db.calls("get_nodes_of_elements").at(0).numbers, ElementsAre(0, 27));
  EXPECT_EQ(db.count("get_node_coordinates"), row.nodes < 2 ? 0u : std::min(27u, unsigned(row.nodes)));
}

INSTANTIATE_TEST_SUITE_P(Counts, VisibleElements,
                         testing::Values(CountRow{Tarn::OneNode, 1, 0, true}, CountRow{Tarn::OneNode, 1, 1, true},
                                         CountRow{Tarn::Edge, 2, 0, false}, CountRow{Tarn::Edge, 2, 1, false},
                                         CountRow{Tarn::Edge, 2, 2, true}, CountRow{Tarn::Edge, 3, 2, false},
                                         CountRow{Tarn::Edge, 3, 3, true}, CountRow{Tarn::Tri, 3, 2, false},
                                         CountRow{Tarn::Tri, 3, 3, true}, CountRow{Tarn::Quad, 4, 2, false},
                                         CountRow{Tarn::Quad, 4, 3, true}, CountRow{Tarn::Quad, 4, 4, true},
                                         CountRow{Tarn::Hex, 8, 2, false}, CountRow{Tarn::Hex, 8, 3, true},
                                         CountRow{Tarn::Hex, 27, 2, false}, CountRow{Tarn::Hex, 27, 3, true},
                                         CountRow{Tarn::Superelement, 30, 3, true}),
                         [](const auto& row) {
                           return std::to_string(row.param.visible) + "of" + std::to_string(row.param.nodes) +
                                  "ofkind" + std::to_string(row.param.type);
                         });

TEST_F(VisibleOnly, GivenAnElementWhoseVisibleNodesComeLast_WhenReported_ThenTheyCount) {
  std::vector<int> positions;
  for (int i = 0; i < 27; ++i) {
    node_at(5 + i % 9, 5 + i / 9, i >= 24 ? 0.5 : 2);
    positions.push_back(i);
  }
  report(*mesh_.database, {}, {mesh_.add_element(Tarn::Hex, positions)});
  EXPECT_THAT(system_.reports, SizeIs(1)) << "room for 27";
}

TEST_F(VisibleOnly, GivenADatabaseThatFailsOrLies_WhenReported_ThenNothingIsReadOutOfRange) {
  for (int i = 0; i < 4; ++i)
    node_at(5 + i, 5);
  const Elem quad = mesh_.add_element(Tarn::Quad, {0, 1, 2, 3});
  test_support::RecordingMeshData db(*mesh_.database);
  db.report_count("get_nodes_of_elements", 100000);
  report(db, {}, {quad});
  EXPECT_THAT(system_.reports, SizeIs(1));
  db.report_count("get_nodes_of_elements", 0);
  report(db, {}, {quad});
  EXPECT_THAT(system_.reports, SizeIs(2)) << "an element without nodes is never left out";
  db.answer_well();
  db.fail("get_nodes_of_elements");
  report(db, {}, {quad});
  EXPECT_THAT(system_.reports, SizeIs(2)) << "one that cannot be had is";
}

// ------------------------------------------------------------------------------------------ once per pick

void set_pickable(vtkRenderer& renderer, bool pickable) {
  vtkActorCollection* actors = renderer.GetActors();
  for (int i = 0; i < actors->GetNumberOfItems(); ++i)
    vtkActor::SafeDownCast(actors->GetItemAsObject(i))->SetPickable(pickable ? 1 : 0);
}

TEST(VisibleOnlyPick, GivenHitsHandedOverAgain_WhenPickedByARegion_ThenTheBufferAndTheDatabaseAreReadOnce) {
  PickSystemDouble system;
  system.admitted = {"Node", "Face"};
  vtkNew<ScriptedWindow> window;
  window->SetOffScreenRendering(1);
  window->SetSize(300, 200);
  GView view(window);
  PlanView::look_down(*view.renderer());
  test_support::NamedMesh mesh = test_support::quad_sheet(1, 1);
  test_support::RecordingMeshData db(*mesh.database);
  GMeshModel model(&db);
  model.add_mesh(mesh.owner, mesh.mesh, TovanColor(200, 200, 200), 1.0F, false);
  model.update_parts();
  set_pickable(*view.renderer(), true);
  GMeshPicker picker;
  ScriptedRegion region;
  region.point = [](const double*) { return true; };
  region.triangle = [](const double*, const double*, const double*) { return true; };
  window->depth = [](int x, int) { return x < 10 ? 0.0F : 1.0F; }; // hides the nodes at x = 0
  db.forget_calls();
  MultiCellPicker::mSelectVisibleOnly = true;
  picker.compute_pick_by_bounds(view.renderer(), &region, true);
  MultiCellPicker::mSelectVisibleOnly = false;
  EXPECT_THAT(window->read, SizeIs(1));
  // 1 + 2 + 3 times the two nodes at x = 1; of the quadrilateral only two nodes show.
  EXPECT_THAT(system.handles(true), SizeIs(12));
  EXPECT_THAT(system.handles(false), IsEmpty());
  // Three groups of the same 4 nodes and 1 element, each looked up when it first came.
  EXPECT_EQ(db.count("get_node_coordinates"), 4u + 4u);
  region.asked.clear();
  picker.compute_pick_by_bounds(view.renderer(), &region, true);
  EXPECT_THAT(window->read, SizeIs(1)) << "not read when all is taken";
  EXPECT_THAT(system.handles(false), SizeIs(6));
  set_pickable(*view.renderer(), false);
  MultiCellPicker::mSelectVisibleOnly = true;
  picker.compute_pick_by_bounds(view.renderer(), &region, true);
  MultiCellPicker::mSelectVisibleOnly = false;
  EXPECT_THAT(window->read, SizeIs(1)) << "not read when nothing is touched";
}

// What is kept within a pick must not show: the same reports, in the same order, as without.
TEST(VisibleOnlyPick, GivenSeveralModels_WhenPickedByARegion_ThenTheReportsAreThoseOfThePlainWalk) {
  PickSystemDouble system;
  system.admitted = {"Node", "Edge", "Face"};
  vtkNew<ScriptedWindow> window;
  window->SetOffScreenRendering(1);
  window->SetSize(300, 200);
  GView view(window);
  PlanView::look_down(*view.renderer());
  ShownSheet sheets[] = {ShownSheet(2), ShownSheet(3, -1), ShownSheet(1, 1)};
  window->depth = [](int x, int y) { return (x / 40 + y / 30) % 3 == 0 ? 0.0F : 1.0F; };
  GMeshPicker picker;
  ScriptedRegion region;
  region.point = [](const double* p) { return p[0] < 120; };
  region.segment = [](const double* a, const double* b) { return a[0] + b[0] < 250; };
  region.triangle = [](const double*, const double*, const double*) { return true; };
  for (const bool visible_only : {true, false}) {
    system.reports.clear();
    MultiCellPicker::mSelectVisibleOnly = visible_only;
    picker.compute_pick_by_bounds(view.renderer(), &region, true);
    MultiCellPicker::mSelectVisibleOnly = false;
    const auto kept = std::exchange(system.reports, {});

    vtkNew<vtkMatrix4x4> matrix;
    matrix->DeepCopy(view.renderer()->GetActiveCamera()->GetCompositeProjectionTransformMatrix(1.5, 0, 1));
    Nodes nodes;
    Elems elements;
    for (ShownSheet& sheet : sheets) {
      GMeshGroup* group = sheet.model.get_mesh(sheet.mesh.owner);
      PickInterface plain(sheet.mesh.database.get());
      plain.setTransform(matrix, window->GetSize(), view.renderer()->GetViewport());
      GMeshPicker::pick_mesh_by_bounds(plain, group->get_filtered_mesh(), &region, nodes, elements, true);
      GMeshPicker::process_picks(sheet.mesh.database.get(), nodes, elements, view.renderer(), matrix, visible_only,
                                 &picker);
    }
    ASSERT_EQ(kept.size(), system.reports.size());
    EXPECT_GT(kept.size(), 30u);
    for (std::size_t i = 0; i < kept.size(); ++i) {
      const auto& plain = system.reports[i];
      EXPECT_EQ(
          std::tie(kept[i].is_node, kept[i].handle, kept[i].database, kept[i].point, kept[i].distance, kept[i].exact,
                   kept[i].picker),
          std::tie(plain.is_node, plain.handle, plain.database, plain.point, plain.distance, plain.exact, plain.picker))
          << i;
    }
  }
}

} // namespace
