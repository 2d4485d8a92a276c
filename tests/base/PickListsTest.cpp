// What is picked, possible and pre-selected, and who is told of its changes.

#include "tests/base/PickSystemFixture.h"

#include "platform/base/PickRectangle.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <random>

using testing::ElementsAre;
using testing::IsEmpty;
using Change = GPickerBase::Change;

namespace {

using PickLists = PickSystem;

TEST_F(PickLists, GivenPicks_WhenReplaced_ThenRemovalIsToldBeforeAddition) {
  FakePicker picker({"Hex"});
  FakeObserver observer;
  picker.hits = {{"Hex", 1, {1, 2, 3}}};
  pick();
  EXPECT_FLOAT_EQ(observer.last_point[1], 2);
  picker.hits = {{"Hex", 2}};
  pick();
  picker.hits = {};
  EXPECT_FALSE(pick());
  EXPECT_FALSE(pick());
  EXPECT_THAT(observer.told, ElementsAre("+Hex 1", "-Hex 1", "+Hex 2", "-Hex 2")) << "and nothing of no change";
}

TEST_F(PickLists, GivenChanges_WhenPicked_ThenEachTellsWhatReallyChanged) {
  FakePicker picker({"Hex"});
  FakeObserver observer;
  PickRectangle region(std::array<double, 2>{0, 0}.data(), std::array<double, 2>{9, 9}.data());
  const auto pick_these = [&](std::vector<int> ids, Change change) {
    picker.hits.clear();
    for (const int id : ids)
      picker.hits.push_back({"Hex", id});
    GPickerBase::pick_by_bounds(view_.get(), region, change);
  };
  pick_these({1, 2, 3}, Change::Replace);
  pick_these({3, 4}, Change::Add);
  EXPECT_THAT(picked(), ElementsAre("Hex 1", "Hex 2", "Hex 3", "Hex 4"));
  pick_these({2, 9}, Change::Remove);
  EXPECT_THAT(picked(), ElementsAre("Hex 1", "Hex 3", "Hex 4"));
  pick_these({1, 5}, Change::Toggle);
  EXPECT_THAT(picked(), ElementsAre("Hex 3", "Hex 4", "Hex 5"));
  EXPECT_THAT(observer.told, ElementsAre("+Hex 1 Hex 2 Hex 3", "+Hex 4", "-Hex 2", "-Hex 1", "+Hex 5"));
}

TEST_F(PickLists, GivenPicks_WhenTakenOutByTheHost_ThenObserversAreToldAndStrangersIgnored) {
  FakePicker picker({"Hex"});
  picker.hits = {{"Hex", 1}, {"Hex", 2}, {"Node", 1}};
  PickRectangle region(std::array<double, 2>{0, 0}.data(), std::array<double, 2>{9, 9}.data());
  GPickerBase::pick_by_bounds(view_.get(), region);
  FakeObserver observer;
  auto* same = new FakeEntity("Hex", 1);
  auto* stranger = new FakeEntity("Hex", 5);
  auto* of_another_database = new FakeEntity("Hex", 2, reinterpret_cast<Tarn::MeshData*>(8));
  const GPicked::PickedEntity* gone[] = {same, nullptr, stranger, of_another_database};
  GPickerBase::remove_from_picked_list(4, gone);
  EXPECT_THAT(observer.told, ElementsAre("-Hex 1"));
  EXPECT_THAT(picked(), ElementsAre("Hex 2", "Node 1"));
  for (auto* each : {same, stranger, of_another_database})
    each->Delete();
}

TEST_F(PickLists, GivenPossibleSelections_WhenOneIsTakenOut_ThenTheWalkGoesOnFromWhereItStood) {
  FakePicker picker({"Hex"});
  for (int id = 1; id <= 4; ++id)
    picker.hits.push_back({"Node", id, {0, 0, 0}, 0.1F * float(id)});
  pick();
  ASSERT_TRUE(GPickerBase::next_possible_selection());
  EXPECT_THAT(picked(), ElementsAre("Node 2"));
  auto* first = new FakeEntity("Node", 1);
  GPickerBase::remove_from_possible_selections_list(first);
  GPickerBase::remove_from_possible_selections_list(first);
  GPickerBase::remove_from_possible_selections_list(nullptr);
  first->Delete();
  EXPECT_THAT(possible(), ElementsAre("Node 2", "Node 3", "Node 4"));
  ASSERT_TRUE(GPickerBase::next_possible_selection());
  EXPECT_THAT(picked(), ElementsAre("Node 3"));
  ASSERT_TRUE(GPickerBase::next_possible_selection());
  ASSERT_TRUE(GPickerBase::next_possible_selection());
  EXPECT_THAT(picked(), ElementsAre("Node 2")) << "round again";
  picker.hits.resize(1);
  pick();
  EXPECT_FALSE(GPickerBase::next_possible_selection()) << "one alone has none after it";
}

TEST_F(PickLists,
       GivenManyPossibleSelections_WhenTakenOutAtRandomBetweenSteps_ThenTheListAndTheWalkAreThoseOfAPlainOne) {
  std::mt19937 random(20);
  FakePicker picker({"Hex"});
  for (int id = 0; id < 200; ++id)
    picker.hits.push_back({"Node", id, {0, 0, 0}, 0.1F * float(id + 1)});
  pick();
  std::vector<int> left(200);
  std::iota(left.begin(), left.end(), 0);
  std::size_t at = 0;
  bool gone_there = false;
  while (left.size() > 1) {
    for (int i = 0; i < 1 + int(random() % 5); ++i) {
      const int id = int(random() % 200);
      auto* gone = new FakeEntity("Node", id);
      GPickerBase::remove_from_possible_selections_list(gone);
      gone->Delete();
      const auto found = std::find(left.begin(), left.end(), id);
      if (found == left.end()) continue;
      const auto place = std::size_t(found - left.begin());
      if (place == at) gone_there = true;
      if (place < at) --at;
      left.erase(found);
    }
    std::vector<std::string> names;
    for (int id : left)
      names.push_back("Node " + std::to_string(id));
    ASSERT_EQ(possible(), names);
    if (left.size() < 2) break;
    ASSERT_TRUE(GPickerBase::next_possible_selection());
    at = (gone_there ? at : at + 1) % left.size();
    gone_there = false;
    ASSERT_EQ(picked().back(), names[at]);
  }
}

TEST_F(PickLists, GivenTheCursor_WhenItMoves_ThenRemovalIsToldFirstAndNeverOfNothing) {
  FakePicker picker({"Hex"});
  FakeObserver observer;
  EXPECT_FALSE(hover());
  picker.hits = {{"Hex", 1}};
  EXPECT_TRUE(hover());
  EXPECT_TRUE(hover());
  picker.hits = {{"Hex", 2}};
  hover();
  EXPECT_EQ(GPickerBase::pre_selection().entity()->id(), 2);
  GPickerBase::set_pre_selection(EntitySelection());
  GPickerBase::set_pre_selection(EntitySelection());
  EXPECT_EQ(GPickerBase::pre_selection().entity(), nullptr);
  EXPECT_THAT(observer.told, ElementsAre("?+Hex 1", "?-Hex 1", "?+Hex 2", "?-Hex 2"));
  EXPECT_THAT(picked(), IsEmpty());
}

TEST_F(PickLists, GivenObservers_WhenTheyComeAndGoDuringANotification_ThenTheWalkIsOnACopy) {
  FakePicker picker({"Hex"});
  picker.hits = {{"Hex", 1}};
  FakeObserver first;
  auto leaving = std::make_unique<FakeObserver>();
  std::unique_ptr<FakeObserver> coming;
  first.on_told = [&] {
    // In this order: at the same address it could not be told from the one that left.
    if (!coming) coming = std::make_unique<FakeObserver>();
    leaving.reset();
  };
  GPickerBase::add_pick_observer(&first);
  pick();
  EXPECT_THAT(first.told, ElementsAre("+Hex 1")) << "added twice, told once";
  EXPECT_THAT(coming->told, IsEmpty());
  GPickerBase::remove_pick_observer(&first);
  picker.hits = {};
  pick();
  EXPECT_EQ(first.told.size(), 1u);
  EXPECT_THAT(coming->told, ElementsAre("-Hex 1"));
}

TEST_F(PickLists, GivenAnObserverThatPicks_WhenTold_ThenTheInnerPickStands) {
  FakePicker picker({"Hex"});
  FakeObserver observer;
  picker.hits = {{"Hex", 1}};
  observer.on_told = [&] {
    if (observer.told.size() > 1) return;
    picker.hits = {{"Hex", 2}};
    pick();
  };
  pick();
  EXPECT_THAT(picked(), ElementsAre("Hex 2"));
  EXPECT_THAT(possible(), ElementsAre("Hex 2"));
}

TEST_F(PickLists, GivenAPickerThatLeaves_WhenItsRecordsArePicked_ThenTheyGoAndObserversAreTold) {
  FakeObserver observer;
  {
    FakePicker picker({"Hex"});
    picker.hits = {{"Hex", 1}};
    pick();
    hover();
  }
  EXPECT_THAT(observer.told, testing::UnorderedElementsAre("+Hex 1", "?+Hex 1", "-Hex 1", "?-Hex 1"));
  EXPECT_THAT(possible(), IsEmpty());
  EXPECT_EQ(GPickerBase::pre_selection().entity(), nullptr);
}

} // namespace
