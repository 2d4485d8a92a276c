#include "platform/base/MultiCellPicker.h"
#include "platform/base/PickRectangle.h"
#include "tests/pick/PickerScene.h"
#include "tests/support/RecordingMeshData.h"

#include "group/GMeshGroup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vtkMultiBlockDataSet.h>
#include <vtkPlane.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// What a group is asked in one pick: each kind, then once more whether elements are wanted.
std::vector<std::string> questions_for(int groups) {
  std::vector<std::string> all;
  for (int i = 0; i < groups; ++i)
    for (const char* name : {"Hex", "Tet", "Pyramid", "Wedge", "Knife", "Superelement", "Face", "Tri", "Edge", "Node",
                             "ThreeDimElement", "TwoDimElement", "Element", "Element"})
      all.push_back(name);
  return all;
}

class Walk : public testing::Test {
protected:
  ~Walk() override {
    MultiCellPicker::mSelectVisibleOnly = false;
    MultiCellPicker::mBoxPickAcceptPartialCells = true;
  }

  Values pick(double x, double y, bool use_filter = true) {
    system_.reports.clear();
    system_.questions.clear();
    picker_.compute_pick(view_.renderer(), pixel(x), pixel(y), use_filter);
    return system_.handles();
  }
  Values pick_region(PickBounds& region, bool use_filter = true) {
    system_.reports.clear();
    system_.questions.clear();
    picker_.compute_pick_by_bounds(view_.renderer(), &region, use_filter);
    return system_.handles();
  }

  PickSystemDouble system_;
  PlanView view_;
  GMeshPicker picker_;
};

// The surface, the edges and the nodes of an owner are three actors, each of which leads to its group. Models let only
// the surface be picked.
TEST_F(Walk, GivenAShownOwner_WhenPicked_ThenItIsFoundBehindEachOfItsPickableActors) {
  ShownSheet sheet(2);
  ASSERT_THAT(view_.actors(), SizeIs(3));
  system_.admitted = {"Face"};
  const std::uint64_t quad = sheet.quads()[0].value;
  EXPECT_THAT(pick(0.5, 0.5), ElementsAre(quad));
  EXPECT_EQ(system_.questions, questions_for(1));
  EXPECT_FLOAT_EQ(system_.reports[0].distance, 0.65F);
  EXPECT_THAT(system_.reports[0].point, ElementsAre(0.5F, 0.5F, 0.0F));
  EXPECT_EQ(system_.reports[0].picker, &picker_);
  EXPECT_EQ(system_.reports[0].database, sheet.mesh.database.get());
  view_.let_all_be_picked();
  EXPECT_THAT(pick(0.5, 0.5), ElementsAre(quad, quad, quad));
  EXPECT_EQ(system_.questions, questions_for(3));
}

TEST_F(Walk, GivenNoFilterUsed_WhenPicked_ThenAllKindsAreCandidatesButElementIsStillAsked) {
  ShownSheet sheet(1);
  EXPECT_THAT(pick(0.5, 0.5, true), IsEmpty()) << "the filter admits nothing";
  EXPECT_THAT(pick(0.5, 0.5, false), ElementsAre(sheet.quads()[0].value));
  EXPECT_EQ(system_.questions, questions_for(1));
  system_.admitted = {"Element"};
  EXPECT_THAT(pick(0.5, 0.5, false), IsEmpty()) << "it has no global id";
}

TEST_F(Walk, GivenActorsThatCannotBePicked_WhenPicked_ThenTheyAreSkipped) {
  ShownSheet sheet(1);
  ScriptedRegion region;
  region.triangle = [](const double*, const double*, const double*) { return true; };
  system_.admitted = {"Face"};
  view_.let_all_be_picked();
  for (std::size_t hidden = 0; hidden < 3; ++hidden) {
    view_.actors()[hidden]->SetPickable(0);
    EXPECT_THAT(pick(0.5, 0.5), SizeIs(2 - hidden));
  }
  EXPECT_THAT(pick_region(region), IsEmpty());
  EXPECT_THAT(region.asked, IsEmpty());
  view_.actors()[1]->SetPickable(1);
  view_.actors()[1]->SetVisibility(0);
  EXPECT_THAT(pick(0.5, 0.5), SizeIs(1)) << "only being pickable counts";
}

TEST_F(Walk, GivenARayBesideABlock_WhenPicked_ThenItsGroupIsNotAsked) {
  ShownSheet sheet(2);
  double tolerance = 0;
  GMeshPicker::compute_pick_tolerance(view_.renderer(), tolerance);
  ASSERT_GT(tolerance, 0.01);
  struct Row {
    double x, y;
    bool asked;
  };
  for (const Row& row :
       {Row{1, 0.5, true}, Row{-0.9 * tolerance, 0.5, true}, Row{-1.1 * tolerance, 0.5, false},
        Row{2 + 0.9 * tolerance, 0.5, true}, Row{2 + 1.1 * tolerance, 0.5, false}, Row{1, -0.9 * tolerance, true},
        Row{1, -1.1 * tolerance, false}, Row{1, 1 + 0.9 * tolerance, true}, Row{1, 1 + 1.1 * tolerance, false}}) {
    pick(row.x, row.y);
    EXPECT_EQ(system_.questions, questions_for(row.asked ? 1 : 0)) << row.x << ' ' << row.y;
  }
}

TEST_F(Walk, GivenAViewAlongTheSheet_WhenTheRayPassesAboveIt_ThenDepthCountsToo) {
  ShownSheet sheet(2);
  vtkCamera* camera = view_.renderer()->GetActiveCamera();
  camera->SetPosition(1, -10, 0);
  camera->SetFocalPoint(1, 0.5, 0);
  camera->SetViewUp(0, 0, 1);
  camera->SetClippingRange(1, 20);
  double tolerance = 0;
  GMeshPicker::compute_pick_tolerance(view_.renderer(), tolerance);
  for (const double share : {-1.1, -0.9, 0.9, 1.1}) {
    system_.questions.clear();
    picker_.compute_pick(view_.renderer(), 150, 100 + pixel(share * tolerance), true);
    EXPECT_EQ(system_.questions, questions_for(std::abs(share) < 1 ? 1 : 0)) << share;
  }
}

TEST_F(Walk, GivenSeveralOwners_WhenPicked_ThenEachHasHitListsOfItsOwn) {
  ShownSheet front(2, 1);
  ShownSheet back(2, -1);
  system_.admitted = {"Face"};
  const std::uint64_t a = front.quads()[1].value;
  const std::uint64_t b = back.quads()[1].value;
  ASSERT_THAT(pick(1.5, 0.5), ElementsAre(a, b));
  EXPECT_EQ(system_.reports[0].database, front.mesh.database.get());
  EXPECT_EQ(system_.reports[1].database, back.mesh.database.get());
  EXPECT_FLOAT_EQ(system_.reports[0].distance, 0.55F);
  EXPECT_FLOAT_EQ(system_.reports[1].distance, 0.75F);
}

TEST_F(Walk, GivenStrangersInTheView_WhenPicked_ThenTheyAreSkippedAndTheRestIsFound) {
  vtkNew<vtkActor> no_mapper;
  vtkNew<vtkActor> no_input;
  vtkNew<vtkPolyDataMapper> idle;
  no_input->SetMapper(idle);
  vtkNew<vtkActor> plain;
  vtkNew<vtkPolyDataMapper> plain_mapper;
  vtkNew<vtkPolyData> data;
  plain_mapper->SetInputData(data);
  plain->SetMapper(plain_mapper);
  // Nobody's data set, where the ray goes.
  vtkNew<vtkPolyData> nobodys;
  vtkNew<vtkPoints> points;
  points->InsertNextPoint(0, 0, 0);
  points->InsertNextPoint(6, 4, 0);
  nobodys->SetPoints(points);
  vtkNew<vtkMultiBlockDataSet> nested;
  nested->SetNumberOfBlocks(1);
  nested->SetBlock(0, nobodys);
  vtkNew<vtkMultiBlockDataSet> blocks;
  blocks->SetNumberOfBlocks(5);
  blocks->SetBlock(1, nested); // the first stays null
  blocks->SetBlock(2, nobodys);
  blocks->SetBlock(3, data); // empty, so that no ray meets it
  vtkNew<vtkActor> strange;
  const auto mapper = GModel::create_mapper(blocks, view_.get());
  strange->SetMapper(mapper);
  for (vtkActor* actor : {no_mapper.Get(), no_input.Get(), plain.Get(), strange.Get()})
    view_.renderer()->AddActor(actor);
  ShownSheet sheet(1); // its actors come after those
  blocks->SetBlock(4, sheet.model.get_mesh(sheet.mesh.owner)->get_tri_data());
  system_.admitted = {"Face"};
  EXPECT_THAT(pick(0.5, 0.5), SizeIs(2)) << "as the last block of the strange one, and in its own place";
  ScriptedRegion region;
  region.triangle = [](const double*, const double*, const double*) { return true; };
  EXPECT_THAT(pick_region(region), SizeIs(3)) << "1 + 2";
}

TEST_F(Walk, GivenAnActorBesideTheRegion_WhenPicked_ThenThoseAfterItAreFound) {
  ShownSheet beside(1);
  ShownSheet inside(3);
  const double low[2] = {110, 10};
  const double high[2] = {130, 20};
  PickRectangle region(low, high);
  system_.admitted = {"Face"};
  EXPECT_THAT(pick_region(region), ElementsAre(inside.quads()[2].value));
  EXPECT_EQ(system_.reports[0].database, inside.mesh.database.get());
  EXPECT_THAT(pick(2.5, 0.5), ElementsAre(inside.quads()[2].value)) << "nor does a ray beside it end the walk";
}

// ------------------------------------------------------------------------------------------ hiding and clipping

TEST_F(Walk, GivenAnOwnerJustHidden_WhenPickedBeforeTheNextFrame_ThenNothingOfItIsReported) {
  test_support::NamedMesh mesh = test_support::quad_sheet(1, 1);
  const auto beside = mesh.database->add_owner("beside");
  for (const double x : {2.0, 3.0})
    for (const double y : {0.0, 1.0})
      mesh.add_node(x, y, 0);
  const Elem other = mesh.add_element(Tarn::Quad, {4, 6, 7, 5});
  mesh.database->set_element_owner(1, &other, beside);
  MeshVector first;
  first.elements[Tarn::Quad] = {mesh.mesh.elements[Tarn::Quad][0]};
  MeshVector second;
  second.elements[Tarn::Quad] = {other};
  GMeshModel model(mesh.database.get());
  model.add_mesh(mesh.owner, first, TovanColor(200, 200, 200), 1.0F, false);
  model.add_mesh(beside, second, TovanColor(200, 200, 200), 1.0F, false);
  model.update_parts();
  system_.admitted = {"Face"};
  ASSERT_THAT(pick(0.5, 0.5), SizeIs(1));
  model.set_visibility(mesh.owner, false); // its blocks are still there
  EXPECT_THAT(pick(0.5, 0.5), IsEmpty());
  ScriptedRegion region;
  region.triangle = [](const double*, const double*, const double*) { return true; };
  EXPECT_THAT(pick_region(region), ElementsAre(other.value));
  model.set_visibility(mesh.owner, true);
  model.update_parts();
  EXPECT_THAT(pick(0.5, 0.5), SizeIs(1));
}

TEST_F(Walk, GivenAPlaneJustSet_WhenPickedBeforeTheNextFrame_ThenWhatItCutsAwayIsNotReported) {
  ShownSheet sheet(4);
  system_.admitted = {"Face", "Node", "Edge"};
  ASSERT_THAT(pick(0.5, 0.5), SizeIs(1));
  vtkNew<vtkPlane> plane;
  plane->SetOrigin(2.5, 0, 0);
  plane->SetNormal(1, 0, 0);
  sheet.model.set_clipping_plane(plane);
  EXPECT_THAT(pick(0.5, 0.5), IsEmpty());
  EXPECT_THAT(pick(2.5, 0.5), ElementsAre(sheet.quads()[2].value)) << "one that the plane crosses stays whole";
  ScriptedRegion region;
  region.triangle = [](const double*, const double*, const double*) { return true; };
  system_.admitted = {"Face"};
  EXPECT_THAT(pick_region(region), ElementsAre(sheet.quads()[2].value, sheet.quads()[3].value));
  plane->SetOrigin(3.5, 0, 0); // moved in place
  EXPECT_THAT(pick(2.5, 0.5), IsEmpty());
}

// ------------------------------------------------------------------------------------------ regions

TEST_F(Walk, GivenSeveralGroups_WhenPickedByARegion_ThenEarlierHitsAreHandedOverAgain) {
  ShownSheet sheet(1);
  ScriptedRegion region;
  region.triangle = [](const double*, const double*, const double*) { return true; };
  region.point = [](const double*) { return true; };
  system_.admitted = {"Face", "Node"};
  view_.let_all_be_picked();
  pick_region(region);
  const Values nodes = values_of(sheet.mesh.nodes);
  const std::uint64_t quad = sheet.quads()[0].value;
  // Three actors, one group each: after each, all that was found so far, nodes first.
  Values expected;
  for (int found = 1; found <= 3; ++found) {
    for (int i = 0; i < found; ++i)
      expected.insert(expected.end(), nodes.begin(), nodes.end());
    expected.insert(expected.end(), found, quad);
  }
  EXPECT_THAT(system_.handles(), ElementsAreArray(expected));
  std::vector<std::string> questions; // once per group; not whether elements are wanted
  for (int i = 0; i < 3; ++i) {
    const auto all = questions_for(1);
    questions.insert(questions.end(), all.begin(), all.end() - 1);
  }
  EXPECT_EQ(system_.questions, questions);
  pick_region(region);
  EXPECT_THAT(system_.handles(), SizeIs(expected.size())) << "a new call begins anew";
}

TEST_F(Walk, GivenARegionThatTouchesNoBox_WhenPicked_ThenOnlyTheActorsBoxesAreAskedAbout) {
  ShownSheet sheet(2);
  ScriptedRegion region;
  region.box = false;
  EXPECT_THAT(pick_region(region), IsEmpty());
  EXPECT_THAT(system_.questions, IsEmpty());
  ASSERT_THAT(region.kinds_asked(), ElementsAre("box"));
  const auto& at = region.asked[0].at;
  EXPECT_NEAR(at[0], 0, 1e-6);
  EXPECT_NEAR(at[1], 0, 1e-6);
  EXPECT_NEAR(at[3], 100, 1e-6);
  EXPECT_NEAR(at[4], 50, 1e-6);
}

TEST_F(Walk, GivenAHalfViewport_WhenPickedByARegion_ThenPointsAreTheWindowsPixels) {
  ShownSheet sheet(1);
  view_.renderer()->SetViewport(0.5, 0, 1, 1);
  ScriptedRegion region;
  system_.admitted = {"Node"};
  pick_region(region);
  std::vector<double> x;
  for (const auto& question : region.asked)
    if (question.kind == "point") x.push_back(question.at[0]);
  ASSERT_THAT(x, SizeIs(4));
  EXPECT_NEAR(x[0], 225 - 150, 1e-6) << "three units left of the middle of the right half";
}

TEST_F(Walk, GivenTheSettings_WhenPickedByARegion_ThenTheyAreReadAtEachPick) {
  ShownSheet sheet(1);
  ScriptedRegion region;
  region.triangle = [](const double*, const double*, const double*) { return true; };
  system_.admitted = {"Face"};
  MultiCellPicker::mBoxPickAcceptPartialCells = true;
  EXPECT_THAT(pick_region(region), SizeIs(1));
  MultiCellPicker::mBoxPickAcceptPartialCells = false;
  EXPECT_THAT(pick_region(region), IsEmpty()) << "no node is inside";
  region.point = [](const double*) { return true; };
  EXPECT_THAT(pick_region(region), SizeIs(1));
}

TEST_F(Walk, GivenVisibleOnly_WhenPickedByARegion_ThenWhatLiesBehindIsLeftOut) {
  ShownSheet front(2, 1);
  ShownSheet back(3, -1); // its last lies open
  view_.get()->render_depth();
  ScriptedRegion region;
  region.triangle = [](const double*, const double*, const double*) { return true; };
  system_.admitted = {"Face"};
  MultiCellPicker::mSelectVisibleOnly = true;
  pick_region(region);
  ASSERT_FALSE(system_.reports.empty());
  Values of_front;
  Values of_back;
  for (const auto& each : system_.reports)
    (each.database == front.mesh.database.get() ? of_front : of_back).push_back(each.handle);
  EXPECT_THAT(of_front, ElementsAreArray(values_of(front.quads())));
  // A node at the upper or right rim of the front falls on the pixel beyond it: of the first of the back two show, of
  // the second three. The front's own were found before, and are handed over again under the database of the back.
  const Elems shown_of_back = {back.quads()[1], back.quads()[2]};
  EXPECT_THAT(Values(of_back.end() - 2, of_back.end()), ElementsAreArray(values_of(shown_of_back)));

  system_.reports.clear();
  vtkNew<vtkMatrix4x4> matrix;
  matrix->DeepCopy(view_.renderer()->GetActiveCamera()->GetCompositeProjectionTransformMatrix(1.5, 0, 1));
  GMeshPicker::process_picks(back.mesh.database.get(), {}, back.quads(), view_.renderer(), matrix, true, &picker_);
  EXPECT_THAT(system_.handles(), ElementsAreArray(values_of(shown_of_back)));
}

TEST_F(Walk, GivenTwoDatabases_WhenPickedByARegion_ThenHandlesOfTheFirstGoToTheSecondToo) {
  ShownSheet first(1);
  ShownSheet second(1, -1);
  ScriptedRegion region;
  region.triangle = [](const double*, const double*, const double*) { return true; };
  system_.admitted = {"Face"};
  pick_region(region);
  ASSERT_THAT(system_.handles(), ElementsAre(first.quads()[0].value, first.quads()[0].value, second.quads()[0].value));
  EXPECT_EQ(system_.reports[0].database, first.mesh.database.get());
  EXPECT_EQ(system_.reports[1].database, second.mesh.database.get());
  EXPECT_EQ(system_.reports[2].database, second.mesh.database.get());
}

// ------------------------------------------------------------------------------------------ entry points

class OwnRayPick : public GMeshPicker {
public:
  using GMeshPicker::compute_pick;
  void compute_pick(vtkRenderer*, float x, float y, bool use_filter) override {
    calls.push_back({x, y, use_filter * 1.0F});
  }
  std::vector<std::array<float, 3>> calls;
};

class OwnRegionPick : public GMeshPicker {
public:
  using GMeshPicker::compute_pick_by_bounds;
  void compute_pick_by_bounds(vtkRenderer*, PickBounds* bounds, bool use_filter) override {
    calls.push_back({bounds, use_filter});
  }
  std::vector<std::pair<PickBounds*, bool>> calls;
};

TEST_F(Walk, GivenASubclassThatOverridesTheRayPick_WhenAnyEntryIsCalled_ThenItIsRun) {
  OwnRayPick own;
  GMeshPicker& picker = own;
  GPicker& base = own;
  base.compute_pick(view_.renderer(), 1, 2);
  base.compute_pre_select(view_.renderer(), 3, 4);
  picker.compute_pre_select(view_.renderer(), 5, 6, false);
  picker.compute_pre_select(view_.renderer(), 7, 8, true);
  EXPECT_THAT(own.calls, ElementsAre(std::array<float, 3>{1, 2, 1}, std::array<float, 3>{3, 4, 1},
                                     std::array<float, 3>{5, 6, 0}, std::array<float, 3>{7, 8, 1}));
}

TEST_F(Walk, GivenASubclassThatOverridesTheRegionPick_WhenCalledThroughTheBase_ThenItIsRunWithTheFilter) {
  OwnRegionPick own;
  GPicker& base = own;
  ScriptedRegion region;
  base.compute_pick_by_bounds(view_.renderer(), &region);
  EXPECT_THAT(own.calls, ElementsAre(std::pair<PickBounds*, bool>{&region, true}));
  int low[2] = {0, 0};
  int high[2] = {10, 10};
  base.compute_pick_by_box(view_.renderer(), low, high);
  EXPECT_THAT(own.calls, SizeIs(2)) << "the base makes a region of a box";
}

TEST_F(Walk, GivenPickAndPreSelect_WhenCalled_ThenTheyReportTheSame) {
  ShownSheet sheet(1);
  system_.admitted = {"Face"};
  GPicker& base = picker_;
  base.compute_pick(view_.renderer(), pixel(0.5), pixel(0.5));
  const Values picked = system_.handles();
  system_.reports.clear();
  base.compute_pre_select(view_.renderer(), pixel(0.5), pixel(0.5));
  EXPECT_EQ(system_.handles(), picked);
  EXPECT_THAT(picked, SizeIs(1));
}

} // namespace
