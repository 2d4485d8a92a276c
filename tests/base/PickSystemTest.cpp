// Who is asked, at what tolerance, in which views, and which hit wins.

#include "tests/base/PickSystemFixture.h"

#include "platform/base/GModel.h"
#include "platform/base/PickRectangle.h"

#include <array>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::vector<std::string> thirteen_names = {
    "Hex", "Tet",  "Pyramid", "Wedge",           "Knife",         "Superelement", "Face",
    "Tri", "Edge", "Node",    "ThreeDimElement", "TwoDimElement", "Element"};

// ------------------------------------------------------------------------------------------ registry and filter

TEST_F(PickSystem, GivenNothingSet_WhenAskedWhatIsAdmitted_ThenAllButElementAre) {
  for (const std::string& name : thirteen_names)
    EXPECT_EQ(GPickerBase::is_filtered(name.c_str()), name != "Element") << name;
  EXPECT_FALSE(GPickerBase::is_filtered("Curve"));
  EXPECT_EQ(GPickerBase::filter().size(), 12u);
}

TEST_F(PickSystem, GivenEveryUnionOfTheThirteenNames_WhenPicked_ThenExactlyTheAdmittedPickersAreAsked) {
  std::vector<std::string> log;
  std::vector<std::unique_ptr<FakePicker>> pickers;
  for (const std::string& name : thirteen_names)
    pickers.push_back(std::make_unique<FakePicker>(std::vector<std::string>{name}, name + " ", &log));
  for (unsigned set = 0; set < 1u << 13; ++set) {
    std::vector<std::string> admitted;
    std::vector<std::string> expected;
    for (std::size_t i = 0; i < thirteen_names.size(); ++i)
      if (set >> i & 1u) admitted.push_back(thirteen_names[i]);
    for (int pass = 0; pass < 2; ++pass)
      for (const std::string& name : admitted)
        expected.push_back(name + " pick");
    GPickerBase::set_filter(admitted);
    log.clear();
    pick();
    ASSERT_EQ(log, expected);
  }
}

TEST_F(PickSystem, GivenAPickerUnderSeveralNames_WhenPicked_ThenItIsAskedOnceAPassAndAsLongAsOneIsAdmitted) {
  FakePicker picker({"Hex", "Tet"});
  pick();
  EXPECT_EQ(picker.tolerances.size(), 2u);
  GPickerBase::set_filter({"Tet"});
  pick();
  EXPECT_EQ(picker.tolerances.size(), 4u);
  GPickerBase::set_filter({"Tri"});
  EXPECT_FALSE(pick());
  EXPECT_EQ(picker.tolerances.size(), 4u);
}

TEST_F(PickSystem, GivenNames_WhenRegistered_ThenTheyAreComparedByContent) {
  FakePicker picker({"Hex"});
  const std::string same_text = std::string("He") + "x";
  EXPECT_FALSE(GPickerBase::register_picker(same_text.c_str(), &picker));
  EXPECT_TRUE(GPickerBase::register_picker("Curve", &picker));
  EXPECT_TRUE(GPickerBase::unregister_picker("Curve", &picker));
  EXPECT_FALSE(GPickerBase::unregister_picker("Curve", &picker));
}

TEST_F(PickSystem, GivenAPickerThatEndsAnother_WhenPicked_ThenTheOtherIsAskedNoMore) {
  std::vector<std::string> log;
  FakePicker first({"Hex"}, "first ", &log);
  auto second = std::make_unique<FakePicker>(std::vector<std::string>{"Tet"}, "second ", &log);
  first.on_call = [&second] { second.reset(); };
  pick();
  EXPECT_THAT(log, ElementsAre("first pick", "first pick"));
}

// ------------------------------------------------------------------------------------------ the tolerance

TEST_F(PickSystem, GivenTheTolerance_WhenPicked_ThenItIsAThousandthFirstAndWholeAfterAndAlwaysPutBack) {
  EXPECT_DOUBLE_EQ(MultiCellPicker::PickToleranceByWindowDiagonal(), 0.005);
  FakePicker picker({"Hex"});
  pick();
  EXPECT_THAT(picker.tolerances, ElementsAre(testing::DoubleEq(0.005e-3), testing::DoubleEq(0.005)));
  picker.on_call = [] { throw std::runtime_error("a picker that fails"); };
  EXPECT_THROW(pick(), std::runtime_error);
  EXPECT_DOUBLE_EQ(MultiCellPicker::PickToleranceByWindowDiagonal(), 0.005);
  // And no pick is under way: what comes now goes nowhere.
  FakeEntity* stray = new FakeEntity("Hex", 1);
  const float origin[3] = {0, 0, 0};
  picker.add_to_selection_buffer(stray, origin, 0, true);
  picker.add_to_selection_buffer(nullptr, origin, 0, true);
  stray->Delete();
  EXPECT_EQ(FakeEntity::alive, alive_before_);
}

TEST_F(PickSystem, GivenAScreenOfSmallPixels_WhenPicked_ThenTheToleranceGrowsAsLinesAndPointsDo) {
  view_.window()->SetDPI(192);
  FakePicker picker({"Hex"});
  pick();
  ASSERT_EQ(picker.tolerances.size(), 2u);
  EXPECT_DOUBLE_EQ(picker.tolerances[1], 0.01);
}

// ------------------------------------------------------------------------------------------ ranking

TEST_F(PickSystem, GivenHits_WhenPicked_ThenTheSmallestDistanceWinsAndExactOnesAmongEquals) {
  FakePicker picker({"Hex"});
  picker.hits = {{"Hex", 1, {0, 0, 0}, 0.6F, true},
                 {"Node", 2, {0, 0, 0}, 0.5F, false},
                 {"Node", 3, {0, 0, 0}, 0.5F, true},
                 {"Node", 4, {0, 0, 0}, 0.4F, false}};
  pick();
  EXPECT_THAT(possible(), ElementsAre("Node 4", "Node 3", "Node 2", "Hex 1"));
}

TEST_F(PickSystem, GivenAnEntityReportedTwice_WhenPicked_ThenItIsOneEntryWithTheNearerReport) {
  FakePicker picker({"Hex"});
  picker.hits = {{"Node", 7, {1, 0, 0}, 0.6F, true},
                 {"Hex", 7, {0, 0, 0}, 0.7F, true},
                 {"Node", 7, {2, 0, 0}, 0.4F, false},
                 {"Node", 7, {3, 0, 0}, 0.4F, true},
                 {"Node", 7, {4, 0, 0}, 0.5F, true}};
  pick();
  ASSERT_THAT(possible(), ElementsAre("Node 7", "Hex 7")) << "a node and an element of one handle are two";
  const EntitySelection& node = GPickerBase::possible_selections().front();
  EXPECT_FLOAT_EQ(node.point()[0], 3);
  EXPECT_FLOAT_EQ(node.distance(), 0.4F);
  EXPECT_TRUE(node.is_exact());
}

TEST_F(PickSystem, GivenAPiercedFace_WhenOthersAreGrazed_ThenGrazedFacesComeLastAndPointsDoNot) {
  FakePicker picker({"Hex"});
  picker.hits = {{"Quad", 1, {0, 0, 0}, 0.1F, true, false},
                 {"Tri", 2, {0, 0, 0}, 0.5F},
                 {"Node", 3, {0, 0, 0}, 0.3F, true, false}};
  pick();
  EXPECT_THAT(possible(), ElementsAre("Node 3", "Tri 2", "Quad 1"));
}

TEST_F(PickSystem, GivenNothingPierced_WhenFacesAreGrazed_ThenTheNearestOfThemWins) {
  FakePicker picker({"Hex"});
  picker.hits = {{"Quad", 1, {0, 0, 0}, 0.6F, true, false}, {"Quad", 2, {0, 0, 0}, 0.5F, true, false}};
  pick();
  EXPECT_THAT(picked(), ElementsAre("Quad 2"));
}

TEST_F(PickSystem, GivenAPiercedFace_WhenOthersLieDeeper_ThenTheyAreBehindWhateverTheirDistance) {
  FakePicker picker({"Hex"});
  // The tolerance is 0.9 pixels, 0.09 in the world.
  picker.hits = {{"Hex", 1, {0, 0, 5}, 0.6F},        // pierced first
                 {"Quad", 2, {0, 0, 4.95F}, 0.5F},   // a face just behind
                 {"Node", 3, {0, 0, 4.8F}, 0.4F},    // deeper than the tolerance
                 {"Node", 4, {0, 0, 4.95F}, 0.45F}}; // in the face, as drawn
  pick();
  EXPECT_THAT(possible(), ElementsAre("Node 4", "Hex 1", "Node 3", "Quad 2"));
}

TEST_F(PickSystem, GivenAShellOnASolid_WhenBothArePierced_ThenTheReportedDistanceDecides) {
  FakePicker picker({"Hex"});
  picker.hits = {{"Hex", 1, {0, 0, 5}, 0.6F}, {"Quad", 2, {0, 0, 4.9999F}, 0.5F}};
  pick();
  EXPECT_THAT(picked(), ElementsAre("Quad 2"));
}

TEST_F(PickSystem, GivenASolidBehindWhoseSideIsGrazedInFront_WhenPicked_ThenThePiercedOneInFrontWins) {
  FakePicker picker({"Hex"});
  picker.hits = {{"Wedge", 1, {0, 0, 5}, 0.5F}, {"Wedge", 2, {0, 0, 5.05F}, 0.4F, true, true, {0, 0, 4.5F}}};
  pick();
  EXPECT_THAT(possible(), ElementsAre("Wedge 1", "Wedge 2"));
  EXPECT_FLOAT_EQ(GPickerBase::possible_selections()[1].point()[2], 4.5F) << "where it is pierced";
}

TEST_F(PickSystem, GivenADotWellInFront_WhenAFaceIsFavouredByItsKind_ThenTheDotWins) {
  FakePicker picker({"Hex"});
  picker.hits = {{"Quad", 1, {0, 0, 5}, 0.40F}, {"Superelement", 2, {0, 0, 6}, 0.50F, true, false}};
  pick();
  EXPECT_THAT(possible(), ElementsAre("Superelement 2", "Quad 1"));
  picker.hits[1].point = {0, 0, 5.05F};
  pick();
  EXPECT_THAT(possible(), ElementsAre("Quad 1", "Superelement 2")) << "one that lies in the face does not";
}

TEST_F(PickSystem, GivenSurfacesThatAreNotDrawn_WhenPicked_ThenNothingIsBehind) {
  GModel wire;
  wire.set_render_mode(OBUtil::Wireframe);
  FakePicker picker({"Hex"});
  picker.hits = {{"Hex", 1, {0, 0, 5}, 0.6F}, {"Node", 2, {0, 0, -5}, 0.5F}};
  pick();
  EXPECT_THAT(possible(), ElementsAre("Node 2", "Hex 1"));
  wire.set_render_mode(OBUtil::Shaded);
  pick();
  EXPECT_THAT(possible(), ElementsAre("Hex 1", "Node 2"));
}

TEST_F(PickSystem, GivenDistancesThatAreNoNumbers_WhenPicked_ThenTheyComeLast) {
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  FakePicker picker({"Hex"});
  picker.hits = {{"Node", 1, {nan, nan, nan}, nan}, {"Node", 2, {0, 0, 0}, 0.9F}, {"Hex", 3, {nan, 0, 0}, nan}};
  EXPECT_TRUE(pick());
  ASSERT_EQ(possible().size(), 3u);
  EXPECT_EQ(possible().front(), "Node 2");
}

// ------------------------------------------------------------------------------------------ views, regions, values

TEST_F(PickSystem, GivenViewsThatAreNotOpen_WhenPicked_ThenNobodyIsAsked) {
  FakePicker picker({"Hex"});
  picker.hits = {{"Hex", 1}};
  PickRectangle region(std::array<double, 2>{0, 0}.data(), std::array<double, 2>{9, 9}.data());
  OffscreenView other;
  GView* closed = other.get();
  other.close();
  for (GView* view : {static_cast<GView*>(nullptr), closed}) {
    EXPECT_FALSE(GPickerBase::pick(view, 1, 1));
    EXPECT_FALSE(GPickerBase::hover(view, 1, 1));
    EXPECT_FALSE(GPickerBase::pick_by_bounds(view, region));
  }
  EXPECT_THAT(picker.tolerances, IsEmpty());
}

TEST_F(PickSystem, GivenAPlaceInTheWindow_WhenPicked_ThenPickersGetIt) {
  FakePicker picker({"Hex"});
  GPickerBase::pick(view_.get(), 12.5F, 7.25F);
  EXPECT_THAT(picker.at, ElementsAre(12.5F, 7.25F));
}

// What a region says of points tells its shape.
std::vector<bool> verdicts(PickBounds* bounds, const std::vector<std::array<double, 3>>& points) {
  std::vector<bool> touches;
  double distance = 0;
  for (const auto& point : points)
    touches.push_back(bounds->test(point.data(), distance).touches);
  return touches;
}

TEST_F(PickSystem, GivenBoxPolygonAndCircle_WhenAPickerIsAskedForThem_ThenItGetsTheRegion) {
  FakePicker picker({"Hex"});
  std::vector<bool> found;
  std::vector<std::array<double, 3>> points;
  picker.on_bounds = [&](PickBounds* bounds) { found = verdicts(bounds, points); };

  int low[2] = {30, 40};
  int high[2] = {10, 20};
  points = {{10, 20, 5}, {30, 40, 0}, {20, 41, 0}, {9, 30, 0}};
  picker.compute_pick_by_box(view_.renderer(), low, high);
  EXPECT_THAT(found, ElementsAre(true, true, false, false));

  int corners[3][2] = {{0, 0}, {20, 0}, {0, 20}};
  points = {{5, 5, 0}, {10, 10, 0}, {11, 10, 0}};
  picker.compute_pick_by_polygon(view_.renderer(), 3, corners);
  EXPECT_THAT(found, ElementsAre(true, true, false));

  int centre[2] = {50, 50};
  points = {{50, 52.5, 0}, {50, 52.6, 0}};
  picker.compute_pick_by_circle(view_.renderer(), centre, 2.5);
  EXPECT_THAT(found, ElementsAre(true, false));
}

TEST(EntitySelectionValue, GivenAnEntity_WhenCopiedAndAssigned_ThenItLivesAsLongAsOneOfThem) {
  const int before = FakeEntity::alive;
  auto* entity = new FakeEntity("Hex", 1);
  const float point[3] = {1, 2, 3};
  {
    EntitySelection empty;
    EXPECT_EQ(empty.entity(), nullptr);
    EntitySelection first(entity, point, 0.25F, true);
    entity->Delete();
    EntitySelection copy(first);
    first = empty;
    EXPECT_EQ(first.entity(), nullptr);
    EXPECT_EQ(FakeEntity::alive, before + 1);
    EntitySelection& alias = copy;
    copy = alias;
    EXPECT_EQ(copy.entity()->id(), 1);
    EXPECT_FLOAT_EQ(copy.point()[2], 3);
    EXPECT_FLOAT_EQ(copy.distance(), 0.25F);
    EXPECT_TRUE(copy.is_exact());
  }
  EXPECT_EQ(FakeEntity::alive, before);
}

/// Registers, and then its constructor throws: its own destructor does not run.
class BrokenPicker : public GPicker {
public:
  BrokenPicker() {
    GPickerBase::register_picker("Hex", this);
    GPickerBase::register_picker("Tet", this);
    throw std::runtime_error("no memory");
  }
  void compute_pick(vtkRenderer*, float, float) override {}
  void compute_pre_select(vtkRenderer*, float, float) override {}
  void compute_pick_by_bounds(vtkRenderer*, PickBounds*) override {}
};

TEST_F(PickSystem, GivenAPickerThatThrowsInItsConstructor_WhenPicking_ThenNobodyAsksWhatNeverLived) {
  alignas(BrokenPicker) std::array<std::byte, sizeof(BrokenPicker)> place;
  EXPECT_THROW(new (place.data()) BrokenPicker, std::runtime_error);
  auto* const never_lived = reinterpret_cast<BrokenPicker*>(place.data());
  EXPECT_FALSE(GPickerBase::unregister_picker("Hex", never_lived));
  EXPECT_FALSE(GPickerBase::unregister_picker("Tet", never_lived));
  EXPECT_FALSE(pick());
}

TEST_F(PickSystem, GivenAPickerThatDoesNotUnregister_WhenItDies_ThenItLeavesAndItsRecordsGo) {
  class Forgetful : public FakePicker {
  public:
    Forgetful() : FakePicker({}) { GPickerBase::register_picker("Hex", this); }
  };
  auto picker = std::make_unique<Forgetful>();
  picker->hits = {{"Hex", 1}};
  EXPECT_TRUE(pick());
  ASSERT_THAT(picked(), testing::ElementsAre("Hex 1"));
  picker.reset();
  EXPECT_THAT(picked(), testing::IsEmpty());
  EXPECT_THAT(possible(), testing::IsEmpty());
  EXPECT_FALSE(pick());
}

} // namespace
