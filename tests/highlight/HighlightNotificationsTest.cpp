#include "tests/highlight/HighlightScene.h"

#include "tests/support/RecordingMeshData.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class HighlightNotifications : public HighlightScene {};

// A record of something that is no mesh entity, though of this database.
class Stranger : public GPicked::PickedEntity {
public:
  explicit Stranger(Tarn::MeshData* db) : db_(db) {}
  const char* type() const override { return "Node"; }
  int id() const override { return 1; }
  const char* name() const override { return ""; }
  unsigned long long handle() const override { return 1; }
  Tarn::MeshData* database() const override { return db_; }

private:
  ~Stranger() override = default;
  Tarn::MeshData* db_;
};

TEST_F(HighlightNotifications, GivenPickedEntities_WhenAdded_ThenTheyAreDrawnInThePropertiesLook) {
  notify_picked({sheet.nodes[3]}, {quads()[2], quads()[1]}, true);
  // First the highlight set is emptied, which takes its three blocks away.
  EXPECT_EQ(highlight.take_changes(), "---++");
  EXPECT_THAT(highlight.set(0).nodes, ElementsAre(sheet.nodes[3]));
  EXPECT_THAT(highlight.set(0).elements[Tarn::Quad], ElementsAre(quads()[1], quads()[2]));
  EXPECT_EQ(highlight.actor(0, view.get())->GetProperty(), looks.edge_highlight_property());
  EXPECT_EQ(highlight.actor(1, view.get())->GetProperty(), looks.edge_highlight_property());
  EXPECT_THAT(log.calls, IsEmpty());
}

TEST_F(HighlightNotifications, GivenPickedEntities_WhenMoreComeOrGo_ThenTheSetFollowsAndTheGroupIsReplaced) {
  notify_picked({}, {quads()[0], quads()[1]}, true);
  const vtkSmartPointer<vtkDataObject> edges = highlight.parts.at(0);
  GMeshGroup* group = highlight.groups(0).at(0);
  highlight.take_changes();
  notify_picked({sheet.nodes[0]}, {quads()[1], quads()[3]}, true);
  EXPECT_EQ(highlight.take_changes(), "------++");
  EXPECT_EQ(highlight.parts.at(0), edges) << "the data group stays";
  EXPECT_NE(highlight.groups(0).at(0), group);
  EXPECT_THAT(highlight.set(0).elements[Tarn::Quad], ElementsAre(quads()[0], quads()[1], quads()[3]));
  notify_picked({}, {quads()[3], quads()[0], quads()[2]}, false);
  EXPECT_EQ(highlight.take_changes(), "------++");
  EXPECT_THAT(highlight.set(0).elements[Tarn::Quad], ElementsAre(quads()[1]));
  EXPECT_THAT(highlight.set(0).nodes, ElementsAre(sheet.nodes[0]));
  notify_picked({sheet.nodes[0]}, {quads()[1]}, false);
  EXPECT_EQ(highlight.take_changes(), "------");
  EXPECT_THAT(highlight.parts, IsEmpty());
}

TEST_F(HighlightNotifications, GivenAnEmptySet_WhenEntitiesAreTakenFromIt_ThenOnlyTheHighlightSetIsEmptied) {
  highlight.highlight_mesh(of_quads({0}));
  highlight.take_changes();
  notify_picked({}, {quads()[1]}, false);
  EXPECT_EQ(highlight.take_changes(), "---") << "every pick empties it, whatever was picked";
  EXPECT_THAT(highlight.parts, IsEmpty());
  notify_hovered(quads()[1], false);
  EXPECT_EQ(highlight.take_changes(), "");
}

TEST_F(HighlightNotifications, GivenANullListOrNothingInIt_WhenNotified_ThenOnlyTheHighlightSetIsEmptied) {
  notify_picked({}, {quads()[0]}, true);
  highlight.highlight_mesh(of_quads({1}));
  highlight.take_changes();
  highlight.notify_picked(3, nullptr, nullptr, true);
  EXPECT_EQ(highlight.take_changes(), "---");
  const GPicked::PickedEntity* null = nullptr;
  highlight.notify_picked(1, &null, nullptr, true);
  highlight.notify_picked(0, &null, nullptr, true);
  highlight.notify_pre_select(nullptr, nullptr, true);
  EXPECT_EQ(highlight.take_changes(), "------");
  EXPECT_THAT(highlight.set(0).elements[Tarn::Quad], ElementsAre(quads()[0]));
}

TEST_F(HighlightNotifications, GivenEntitiesOfOtherDatabasesAndKinds_WhenNotified_ThenTheyAreIgnored) {
  test_support::NamedMesh other = test_support::quad_sheet(2, 1);
  const Records own({sheet.nodes[1]}, {quads()[1]}, sheet.database.get());
  const Records foreign({other.nodes[0]}, other.mesh.elements[Tarn::Quad], other.database.get());
  auto* stranger = new Stranger(sheet.database.get());
  const std::vector<const GPicked::PickedEntity*> all = {
      foreign.data()[0], stranger, own.data()[0], foreign.data()[1], foreign.data()[2], own.data()[1], nullptr};
  highlight.notify_picked(static_cast<int>(all.size()), all.data(), nullptr, true);
  EXPECT_THAT(highlight.set(0).nodes, ElementsAre(sheet.nodes[1]));
  EXPECT_THAT(highlight.set(0).elements[Tarn::Quad], ElementsAre(quads()[1]));
  highlight.take_changes();
  highlight.notify_picked(foreign.count(), foreign.data(), nullptr, true);
  highlight.notify_picked(foreign.count(), foreign.data(), nullptr, false);
  highlight.notify_picked(1, &all[1], nullptr, true);
  EXPECT_EQ(highlight.take_changes(), "---------") << "the highlight set's, three times";
  EXPECT_THAT(highlight.set(0).elements[Tarn::Quad], ElementsAre(quads()[1]));
  highlight.notify_pre_select(foreign.data()[1], nullptr, true);
  highlight.notify_pre_select(stranger, nullptr, true);
  EXPECT_EQ(highlight.take_changes(), "");
  stranger->Delete();
}

TEST_F(HighlightNotifications, GivenTwoModelsInOneView_WhenNotified_ThenEachHighlightTakesItsOwn) {
  test_support::NamedMesh other = test_support::quad_sheet(2, 1);
  GMeshModel other_model(other.database.get());
  RecordingHighlight other_highlight(&other_model, &looks);
  const Records own({}, {quads()[1]}, sheet.database.get());
  const Records foreign({}, {other.mesh.elements[Tarn::Quad][1]}, other.database.get());
  const GPicked::PickedEntity* both[] = {own.data()[0], foreign.data()[0]};
  for (GMeshHighlight* each :
       {static_cast<GMeshHighlight*>(&highlight), static_cast<GMeshHighlight*>(&other_highlight)})
    each->notify_picked(2, both, nullptr, true);
  ASSERT_EQ(quads()[1], other.mesh.elements[Tarn::Quad][1]) << "the handles are alike, only the databases differ";
  EXPECT_THAT(highlight.set(0).elements[Tarn::Quad], ElementsAre(quads()[1]));
  EXPECT_EQ(highlight.groups(0).at(0)->get_model(), &model);
  EXPECT_THAT(other_highlight.set(0).elements[Tarn::Quad], ElementsAre(quads()[1]));
  EXPECT_EQ(other_highlight.groups(0).at(0)->get_model(), &other_model);
}

TEST_F(HighlightNotifications, GivenACount_WhenNotified_ThenOnlySoManyAreTaken) {
  const Records records({}, {quads()[0], quads()[1], quads()[2]}, sheet.database.get());
  highlight.notify_picked(2, records.data(), nullptr, true);
  EXPECT_THAT(highlight.set(0).elements[Tarn::Quad], ElementsAre(quads()[0], quads()[1]));
  highlight.notify_picked(-1, records.data(), nullptr, false);
  EXPECT_THAT(highlight.set(0).elements[Tarn::Quad], SizeIs(2));
}

TEST_F(HighlightNotifications, GivenTheCursor_WhenItMoves_ThenThePreSelectSetFollows) {
  highlight.highlight_mesh(of_quads({3}));
  highlight.take_changes();
  notify_hovered(quads()[0], true);
  EXPECT_EQ(highlight.take_changes(), "++") << "hovering leaves the highlight set alone";
  EXPECT_EQ(highlight.actor(2, view.get())->GetProperty(), looks.pre_select_property());
  EXPECT_EQ(highlight.actor(3, view.get())->GetProperty(), looks.pre_select_property());
  EXPECT_THAT(highlight.set(2).elements[Tarn::Quad], ElementsAre(quads()[0]));
  notify_hovered(quads()[0], false);
  EXPECT_EQ(highlight.take_changes(), "---");
  notify_hovered(quads()[1], true);
  EXPECT_EQ(highlight.take_changes(), "++");
  EXPECT_THAT(highlight.set(2).elements[Tarn::Quad], ElementsAre(quads()[1]));
  notify_hovered(quads()[2], true);
  EXPECT_THAT(highlight.set(2).elements[Tarn::Quad], ElementsAre(quads()[1], quads()[2])) << "added, not replaced";
}

TEST_F(HighlightNotifications, GivenElementsOfNoKind_WhenPicked_ThenTheGroupIsMadeAnewWithoutThem) {
  notify_picked({}, {quads()[0]}, true);
  highlight.take_changes();
  notify_picked({}, {Elem{}, Elem{123456}}, true);
  EXPECT_EQ(highlight.take_changes(), "------++");
  EXPECT_THAT(highlight.set(0).elements[Tarn::Quad], ElementsAre(quads()[0]));
  EXPECT_EQ(highlight.set(0).size(), 1);
  notify_hovered(Elem{}, true);
  EXPECT_EQ(highlight.take_changes(), "");
}

TEST_F(HighlightNotifications, GivenKindsOfAllSorts_WhenPicked_ThenTheyAreSplitByOneBulkQuestion) {
  test_support::NamedMesh mesh = test_support::each_linear_kind();
  test_support::RecordingMeshData db(*mesh.database);
  GMeshModel own_model(&db);
  RecordingHighlight own(&own_model, &looks);
  Elems all;
  for (unsigned type = 9; type >= 1; --type)
    all.push_back(mesh.mesh.elements[type][0]);
  const Records records({}, all, &db);
  own.notify_picked(records.count(), records.data(), nullptr, true);
  EXPECT_EQ(db.count("get_element_types"), 1u);
  EXPECT_EQ(db.operations().at(0), "get_element_types");
  EXPECT_THAT(db.calls()[0].handles, SizeIs(9));
  EXPECT_EQ(own.set(0).elements, mesh.mesh.elements);
}

// ------------------------------------------------------------------------------------------ observing

TEST_F(HighlightNotifications, GivenAHighlight_WhenToldToObserve_ThenItRegistersOnceForEach) {
  EXPECT_THAT(log.calls, IsEmpty());
  highlight.observe_selections(false);
  EXPECT_THAT(log.calls, IsEmpty());
  highlight.observe_selections(true);
  highlight.observe_selections(true);
  EXPECT_THAT(log.calls, ElementsAre("add_pick_observer", "add_pre_selection_observer"));
  log.calls.clear();
  highlight.observe_selections(false);
  highlight.observe_selections(false);
  EXPECT_THAT(log.calls, ElementsAre("remove_pick_observer", "remove_pre_selection_observer"));
}

TEST_F(HighlightNotifications, GivenAHighlight_WhenItDies_ThenItStopsObservingIfItDid) {
  for (const bool observes : {true, false}) {
    auto own = std::make_unique<GMeshHighlight>(&model, &looks);
    own->observe_selections(observes);
    log.calls.clear();
    own.reset();
    if (observes)
      EXPECT_THAT(log.calls, ElementsAre("remove_pick_observer", "remove_pre_selection_observer"));
    else
      EXPECT_THAT(log.calls, IsEmpty());
  }
}

} // namespace
