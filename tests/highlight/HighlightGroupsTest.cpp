#include "tests/highlight/HighlightScene.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// ------------------------------------------------------------------------------------------ whole groups

class HighlightGroups : public HighlightScene {
protected:
  GMeshGroup* group() { return model.get_mesh(sheet.owner); }
};

TEST_F(HighlightGroups, GivenNull_WhenAskedFor_ThenTheAnswerIsFalseAndNothingHappens) {
  GMeshGroup* none = nullptr;
  EXPECT_FALSE(highlight.highlight_mesh(none));
  EXPECT_FALSE(highlight.unhighlight_mesh(none));
  EXPECT_FALSE(highlight.select_mesh(none));
  EXPECT_FALSE(highlight.unselect_mesh(none));
  EXPECT_FALSE(highlight.set_visibility(none, true));
  EXPECT_FALSE(highlight.set_visibility(none, false));
  EXPECT_THAT(highlight.changes, IsEmpty());
}

TEST_F(HighlightGroups, GivenAGroup_WhenHighlighted_ThenItIsDrawnInTheOwnLookUntilItIsNoLonger) {
  EXPECT_TRUE(highlight.highlight_mesh(group()));
  EXPECT_EQ(highlight.take_changes(), "++");
  EXPECT_THAT(highlight.groups(0), ElementsAre(group()));
  EXPECT_EQ(highlight.actor(0, view.get())->GetProperty(), highlight.edge_highlight_property());
  EXPECT_TRUE(highlight.highlight_mesh(group()));
  EXPECT_EQ(highlight.take_changes(), "") << "it is there already";
  EXPECT_TRUE(highlight.unhighlight_mesh(group()));
  EXPECT_EQ(highlight.take_changes(), "---");
  EXPECT_TRUE(highlight.unhighlight_mesh(group()));
  EXPECT_EQ(highlight.take_changes(), "");
}

TEST_F(HighlightGroups, GivenAGroup_WhenSelected_ThenItIsDrawnWithThePickedSetInTheOwnLook) {
  EXPECT_TRUE(highlight.select_mesh(group()));
  EXPECT_EQ(highlight.take_changes(), "++");
  EXPECT_THAT(highlight.groups(0), ElementsAre(group()));
  EXPECT_EQ(highlight.actor(0, view.get())->GetProperty(), highlight.edge_highlight_property());
  EXPECT_EQ(highlight.actor(1, view.get())->GetProperty(), highlight.edge_highlight_property());

  // A pick joins it: no new parts, and none go when it leaves.
  notify_picked({}, {quads()[0]}, true);
  EXPECT_EQ(highlight.take_changes(), "---") << "the highlight set's";
  ASSERT_THAT(highlight.groups(0), SizeIs(2));
  EXPECT_EQ(highlight.groups(0)[0], group());
  EXPECT_THAT(highlight.groups(0)[1]->get_mesh().elements[Tarn::Quad], ElementsAre(quads()[0]));
  notify_picked({}, {quads()[0]}, false);
  EXPECT_EQ(highlight.take_changes(), "---");
  EXPECT_THAT(highlight.groups(0), ElementsAre(group()));

  EXPECT_TRUE(highlight.unselect_mesh(group()));
  EXPECT_EQ(highlight.take_changes(), "---");
  EXPECT_THAT(highlight.parts, IsEmpty());
  EXPECT_TRUE(highlight.unselect_mesh(group()));
  EXPECT_EQ(highlight.take_changes(), "");
}

TEST_F(HighlightGroups, GivenASelectedGroup_WhenHiddenAndShown_ThenItsHighlightFollows) {
  highlight.select_mesh(group());
  highlight.take_changes();
  EXPECT_TRUE(highlight.set_visibility(group(), true));
  EXPECT_EQ(highlight.take_changes(), "");
  EXPECT_TRUE(highlight.set_visibility(group(), false));
  EXPECT_EQ(highlight.take_changes(), "---");
  EXPECT_TRUE(highlight.set_visibility(group(), false));
  EXPECT_EQ(highlight.take_changes(), "");
  EXPECT_TRUE(highlight.set_visibility(group(), true));
  EXPECT_EQ(highlight.take_changes(), "++");
  EXPECT_THAT(highlight.groups(0), ElementsAre(group()));
  EXPECT_TRUE(group()->get_visibility()) << "the group's own flag is not meant";
}

TEST_F(HighlightGroups, GivenAGroupThatIsNotSelected_WhenShownOrHidden_ThenNothingHappens) {
  for (const bool visible : {true, false}) {
    EXPECT_TRUE(highlight.set_visibility(group(), visible));
    EXPECT_THAT(highlight.changes, IsEmpty());
  }
  highlight.highlight_mesh(group()); // highlighted is not selected
  highlight.take_changes();
  EXPECT_TRUE(highlight.set_visibility(group(), false));
  highlight.select_mesh(group());
  highlight.unselect_mesh(group());
  highlight.take_changes();
  EXPECT_TRUE(highlight.set_visibility(group(), true));
  EXPECT_THAT(highlight.changes, IsEmpty()) << "no longer selected";
}

// ------------------------------------------------------------------------------------------ clearing

TEST_F(HighlightGroups, GivenAllSets_WhenCleared_ThenAllGoAndThePickSystemIsTold) {
  notify_picked({sheet.nodes[1], sheet.nodes[0]}, {quads()[2], quads()[0]}, true);
  notify_hovered(quads()[1], true);
  highlight.highlight_mesh(of_quads({3}));
  ASSERT_THAT(highlight.parts, SizeIs(6));
  highlight.take_changes();
  log.during = [this] { EXPECT_THAT(highlight.parts, IsEmpty()) << "the sets go before anybody is told"; };
  highlight.clear();
  EXPECT_EQ(highlight.take_changes(), "---------");
  const auto node = [this](std::size_t i) { return "node " + std::to_string(sheet.nodes[i].value); };
  const auto element = [this](std::size_t i) { return "element " + std::to_string(quads()[i].value); };
  const std::string possible = "remove_from_possible_selections_list ";
  EXPECT_THAT(log.calls,
              ElementsAre(possible + node(0), possible + node(1), possible + element(0), possible + element(2),
                          "remove_from_picked_list " + node(0) + ", " + node(1) + ", " + element(0) + ", " + element(2),
                          "set_pre_selection nothing"));
  log.during = [] {};
  // All sets are empty, so that nothing comes back.
  notify_picked({}, {quads()[0]}, false);
  notify_hovered(quads()[1], false);
  EXPECT_EQ(highlight.take_changes(), "---");
  notify_picked({}, {quads()[3]}, true);
  EXPECT_THAT(highlight.set(0).elements[Tarn::Quad], ElementsAre(quads()[3]));
  EXPECT_THAT(highlight.set(0).nodes, IsEmpty());
  notify_hovered(quads()[2], true);
  EXPECT_THAT(highlight.set(2).elements[Tarn::Quad], ElementsAre(quads()[2]));
}

TEST_F(HighlightGroups, GivenEveryKind_WhenCleared_ThenAllAreTakenOffTheLists) {
  test_support::NamedMesh mesh = test_support::each_linear_kind();
  GMeshModel own_model(mesh.database.get());
  RecordingHighlight own(&own_model, &looks);
  Elems all;
  for (unsigned type = 1; type <= 9; ++type)
    all.push_back(mesh.mesh.elements[type][0]);
  const Records records({}, all, mesh.database.get());
  own.notify_picked(records.count(), records.data(), nullptr, true);
  own.clear();
  ASSERT_THAT(log.calls, SizeIs(9 + 2));
  for (std::size_t i = 0; i < 9; ++i)
    EXPECT_EQ(log.calls[i], "remove_from_possible_selections_list element " + std::to_string(all[i].value));
}

TEST_F(HighlightGroups, GivenNothingPicked_WhenCleared_ThenOnlyThePreSelectionIsReset) {
  highlight.clear();
  EXPECT_EQ(highlight.take_changes(), "---------");
  EXPECT_THAT(log.calls, ElementsAre("set_pre_selection nothing"));
  notify_hovered(quads()[0], true);
  log.calls.clear();
  highlight.clear();
  EXPECT_THAT(log.calls, ElementsAre("set_pre_selection nothing")) << "what was hovered is on no list";
}

TEST_F(HighlightGroups, GivenNotificationsDuringClear_WhenTheyComeBack_ThenTheyChangeNothing) {
  notify_picked({}, {quads()[0]}, true);
  log.during = [this] {
    const Records records({}, {quads()[0]}, sheet.database.get());
    highlight.notify_picked(1, records.data(), nullptr, false);
    highlight.notify_pre_select(records.data()[0], nullptr, false);
  };
  highlight.clear();
  log.during = [] {};
  EXPECT_THAT(highlight.parts, IsEmpty());
}

TEST_F(HighlightGroups, GivenASelectedGroup_WhenCleared_ThenItStaysListedAndCanBeShownAgain) {
  highlight.select_mesh(group());
  highlight.clear();
  EXPECT_THAT(highlight.parts, IsEmpty());
  highlight.take_changes();
  EXPECT_TRUE(highlight.set_visibility(group(), true));
  EXPECT_EQ(highlight.take_changes(), "++");
  EXPECT_THAT(highlight.groups(0), ElementsAre(group()));
  highlight.clear();
  highlight.take_changes();
  EXPECT_TRUE(highlight.select_mesh(group()));
  EXPECT_EQ(highlight.take_changes(), "++");
}

TEST_F(HighlightGroups, GivenAWidget_WhenCleared_ThenTheModelsOwnClearingTakesItAway) {
  vtkNew<vtkActor> widget;
  highlight.add_widget(widget);
  ASSERT_TRUE(view.renderer()->HasViewProp(widget));
  highlight.clear();
  EXPECT_FALSE(view.renderer()->HasViewProp(widget));
}

} // namespace
