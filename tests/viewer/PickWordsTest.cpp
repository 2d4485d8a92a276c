#include "viewer/HoverPace.h"
#include "viewer/IdSelection.h"
#include "viewer/OptionValues.h"
#include "viewer/OwnerControl.h"
#include "viewer/PickKinds.h"
#include "viewer/PickRecord.h"
#include "viewer/Scene.h"
#include "viewer/ScreenText.h"

#include "pick/GMeshPicker.h"
#include "pick/PickedElement.h"
#include "pick/PickedNode.h"
#include "platform/base/EntitySelection.h"
#include "reference/tarn/MeshDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// What picks are asked and told in: ids, kinds, lines of text; and when to look.

namespace {

using namespace viewer;
using testing::ElementsAre;

TEST(IdLists, GivenIds_WhenWritten_ThenSortedWithRunsOfThreeAndMoreAsRanges) {
  const std::pair<std::vector<int>, const char*> rows[] = {{{}, ""},
                                                           {{7}, "hex:7"},
                                                           {{9, 5, 1}, "hex:1,5,9"},
                                                           {{3, 2, 1}, "hex:1-3"},
                                                           {{1, 2}, "hex:1,2"},
                                                           {{1, 2, 4, 5, 6, 9}, "hex:1,2,4-6,9"},
                                                           {{5, 5, 5, 6, 7, 6}, "hex:5-7"}};
  for (const auto& [ids, text] : rows)
    EXPECT_EQ(id_list(EntityKind::Hex, ids), text);
}

TEST(IdLists, GivenAWrittenList_WhenParsed_ThenTheSameIds) {
  const IdSelection selection = parse_selection(id_list(EntityKind::Node, {4, 8, 9, 10, 30}));
  EXPECT_EQ(selection.kind, EntityKind::Node);
  ASSERT_EQ(selection.ranges.size(), 3u);
  EXPECT_EQ(selection.ranges[1].first, 8);
  EXPECT_EQ(selection.ranges[1].last, 10);
  EXPECT_EQ(selection.ranges[2].first, 30);
  EXPECT_EQ(selection.ranges[2].last, 30);
}

// Two quadrilaterals (ids 5, 9; global 100, 100) and a triangle (7, without a global id) on six nodes (11 to 16).
class SmallMesh : public testing::Test {
protected:
  SmallMesh() {
    const double xyz[18] = {0, 0, 0, 1, 0, 0, 2, 0, 0, 0, 1, 0, 1, 1, 0, 2, 1, 0};
    const int node_ids[] = {11, 12, 13, 14, 15, 16}, quad_ids[] = {5, 9}, global_ids[] = {100, 100}, tri_id = 7;
    const Tarn::Handle<0> first = database.add_nodes(6, xyz, node_ids);
    const auto node = [&](std::uint64_t i) { return Tarn::Handle<0>{first.value + i}; };
    left = database.add_owner("left", 2);
    right = database.add_owner("right", 2);
    const Tarn::Handle<0> quads[] = {node(0), node(1), node(4), node(3), node(1), node(2), node(5), node(4)};
    quad = database.add_elements(Tarn::Quad, 4, 2, quads, quad_ids, left);
    database.set_global_ids(quad, 2, global_ids);
    const Tarn::Handle<0> corners[] = {node(0), node(1), node(4)};
    tri = database.add_elements(Tarn::Tri, 3, 1, corners, &tri_id, right);
  }

  std::string find(const std::string& text, MeshVector& found) {
    return find_entities(database, parse_selection(text), found);
  }

  Tarn::MeshDatabase database;
  Tarn::SMeshOwnerType *left = nullptr, *right = nullptr;
  Tarn::Handle<1> quad, tri;
};

TEST_F(SmallMesh, GivenIds_WhenLookedFor_ThenTheEntitiesThatHaveThem) {
  MeshVector found;
  EXPECT_EQ(find("quad:9", found), "");
  EXPECT_THAT(found.elements[Tarn::Quad], ElementsAre(Tarn::Handle<1>{quad.value + 1}));
  EXPECT_EQ(find("element:1-8", found), "");
  EXPECT_THAT(found.elements[Tarn::Quad], ElementsAre(quad, Tarn::Handle<1>{quad.value + 1}));
  EXPECT_THAT(found.elements[Tarn::Tri], ElementsAre(tri));
  EXPECT_EQ(find("nodes:12-14,16", found), "");
  EXPECT_EQ(found.nodes.size(), 4u);
}

TEST_F(SmallMesh, GivenAGlobalIdThatTwoElementsHave_WhenLookedFor_ThenBoth) {
  MeshVector found;
  EXPECT_EQ(find("element@global:100", found), "");
  EXPECT_EQ(found.elements[Tarn::Quad].size(), 2u);
  EXPECT_TRUE(found.elements[Tarn::Tri].empty());
}

TEST_F(SmallMesh, GivenAnIdThatNothingHas_WhenLookedFor_ThenSaidAndNothingFound) {
  MeshVector found;
  EXPECT_EQ(find("quad:5,7", found), "no quad has the id 7");
  EXPECT_EQ(find("node:11,1-10", found), "no node has the id 1-10");
  EXPECT_EQ(find("tri@global:7", found), "no tri has the global id 7");
  EXPECT_EQ(find("hex:0-2147483647", found), "no hex has the id 0-2147483647");
  EXPECT_TRUE(found.empty());
}

TEST_F(SmallMesh, GivenNodesAmongElements_WhenDescribed_ThenEachHasItsOwnIdsAndOwner) {
  const Tarn::Handle<0> node = database.nodes().front();
  database.set_node_owner(1, &node, right);
  GPicked::PickedEntity* const entities[] = {
      PickedElement::New(tri, &database), PickedNode::New(node, &database), PickedElement::New(quad, &database),
      PickedNode::New(database.nodes().back(), &database), PickedElement::New({quad.value + 1}, &database)};
  std::vector<EntitySelection> selections;
  for (GPicked::PickedEntity* entity : entities) {
    selections.emplace_back(entity, nullptr, 0.0F, true);
    entity->Delete();
  }
  EXPECT_THAT(owners_of(selections, database), ElementsAre(right, right, left, nullptr, left));
  const std::vector<PickRecord> records = describe(selections, database);
  ASSERT_EQ(records.size(), 5u);
  const struct {
    const char* type;
    bool is_node;
    int id;
    std::optional<int> global_id;
    Tarn::SMeshOwnerType* owner;
    const char* owner_name;
  } rows[] = {{"Tri", false, 7, std::nullopt, right, "right"},
              {"Node", true, 11, std::nullopt, right, "right"},
              {"Quad", false, 5, 100, left, "left"},
              {"Node", true, 16, std::nullopt, nullptr, ""},
              {"Quad", false, 9, 100, left, "left"}};
  for (std::size_t i = 0; i < records.size(); ++i) {
    EXPECT_EQ(records[i].type, rows[i].type) << i;
    EXPECT_EQ(records[i].is_node, rows[i].is_node) << i;
    EXPECT_EQ(records[i].id, rows[i].id) << i;
    EXPECT_EQ(records[i].global_id, rows[i].global_id) << i;
    EXPECT_EQ(records[i].owner, rows[i].owner) << i;
    EXPECT_EQ(records[i].owner_name, rows[i].owner_name) << i;
    EXPECT_EQ(records[i].handle, selections[i].entity()->handle()) << i;
  }
  EXPECT_EQ(id_lists(records), "node:11,16 tri:7 quad:5,9");
}

TEST_F(SmallMesh, GivenAMesh_WhenItsFilterIsAskedFor_ThenTheKindsThatItHas) {
  EXPECT_THAT(filter_of_mesh(database), ElementsAre("Face", "Tri"));
  EXPECT_THAT(filter_of_mesh(Tarn::MeshDatabase()), ElementsAre());
}

TEST_F(SmallMesh, GivenChangesOfOwners_WhenUndone_ThenEachInTurn) {
  Scene scene(database, DisplayOptions());
  OwnerControl owners(scene);
  EXPECT_FALSE(owners.undo());
  EXPECT_EQ(owners.hide({left, nullptr}), 1u);
  EXPECT_THAT(scene.visible(), ElementsAre(false, true));
  EXPECT_EQ(owners.hide({left}), 0u) << "hidden already: nothing to undo";
  EXPECT_EQ(owners.show_alone(std::set<Tarn::SMeshOwnerType*>{left}), 1u);
  EXPECT_EQ(owners.show_alone(std::set<Tarn::SMeshOwnerType*>{}), 0u);
  EXPECT_THAT(scene.visible(), ElementsAre(true, false));
  owners.show_all();
  owners.show(0, false);
  EXPECT_EQ(owners.shown_count(), 1u);
  EXPECT_TRUE(owners.undo());
  EXPECT_THAT(scene.visible(), ElementsAre(true, true));
  EXPECT_TRUE(owners.undo());
  EXPECT_THAT(scene.visible(), ElementsAre(true, false));
  EXPECT_TRUE(owners.undo());
  EXPECT_THAT(scene.visible(), ElementsAre(false, true));
  EXPECT_TRUE(owners.undo());
  EXPECT_THAT(scene.visible(), ElementsAre(true, true));
  EXPECT_FALSE(owners.undo());
}

TEST_F(SmallMesh, GivenOwners_WhenTheFocusMoves_ThenRoundAndRound) {
  Scene scene(database, DisplayOptions());
  OwnerControl owners(scene);
  EXPECT_FALSE(owners.focus().has_value());
  for (const std::size_t place : {0, 1, 0}) {
    EXPECT_TRUE(owners.move_focus(1));
    EXPECT_EQ(owners.focus(), place);
  }
  EXPECT_TRUE(owners.move_focus(-1));
  EXPECT_EQ(owners.focus(), 1u);
}

TEST(PickKinds, GivenFilters_WhenDescribed_ThenInTheWordsOfTheKeys) {
  EXPECT_EQ(describe_filter({"Hex"}), "solids");
  EXPECT_EQ(describe_filter({"Face", "Tri", "Node"}), "nodes, faces");
  EXPECT_EQ(describe_filter({"Edge", "ThreeDimElement"}), "edges, solids");
  EXPECT_EQ(describe_filter(all_kinds_filter()), "all");
  EXPECT_EQ(describe_filter({"Hex", "Element"}), "Hex, Element");
  EXPECT_EQ(describe_filter({}), "nothing");
}

TEST(PickKinds, GivenAFilter_WhenAKindIsToggledTwice_ThenAsBefore) {
  const auto& kinds = pick_kinds();
  ASSERT_EQ(kinds.size(), 4u);
  const std::vector<std::string> faces = kinds[2].filter;
  const auto both = toggled(faces, kinds[0]);
  EXPECT_EQ(describe_filter(both), "nodes, faces");
  EXPECT_EQ(toggled(both, kinds[0]), faces);
  EXPECT_TRUE(toggled(faces, kinds[2]).empty());
}

TEST(PickKinds, GivenAFilter_WhenItsTypesAreAskedFor_ThenThoseThatItAdmits) {
  EXPECT_THAT(admitted_types({"Hex", "Tri"}), ElementsAre(Tarn::Tri, Tarn::Hex));
  EXPECT_THAT(admitted_types({"TwoDimElement"}), ElementsAre(Tarn::Tri, Tarn::Quad));
  EXPECT_THAT(admitted_types({"ThreeDimElement"}),
              ElementsAre(Tarn::Tet, Tarn::Hex, Tarn::Wedge, Tarn::Pyramid, Tarn::Superelement));
  EXPECT_THAT(admitted_types({"Node"}), ElementsAre());
  EXPECT_EQ(admitted_types({"Element"}).size(), 8u);
}

TEST(HoverPace, GivenAMouseThatMoves_WhenItRests_ThenItIsTimeToLook) {
  HoverPace pace;
  EXPECT_FALSE(pace.is_waiting());
  pace.moved(10);
  EXPECT_TRUE(pace.is_waiting());
  EXPECT_GT(pace.wait_ms(10), 0);
  pace.moved(10.02);
  EXPECT_GT(pace.wait_ms(10.03), 0) << "it moved meanwhile";
  EXPECT_EQ(pace.wait_ms(10.1), 0);
  pace.looked(0.001);
  EXPECT_FALSE(pace.is_waiting());
  pace.moved(11);
  pace.stop();
  EXPECT_FALSE(pace.is_waiting());
}

TEST(HoverPace, GivenCostlyLooks_WhenTheMouseMoves_ThenItMustRestLonger) {
  HoverPace pace;
  pace.moved(0);
  const int quick = pace.wait_ms(0);
  pace.looked(0.25);
  pace.moved(1);
  EXPECT_NEAR(pace.wait_ms(1), 500, 1);
  EXPECT_GT(pace.wait_ms(1), quick);
  pace.looked(30);
  pace.moved(2);
  EXPECT_NEAR(pace.wait_ms(2), 1000, 1) << "but not without end";
  EXPECT_TRUE(HoverPace::is_too_long(30));
  EXPECT_FALSE(HoverPace::is_too_long(0.5));
}

TEST(ScreenText, GivenLongTexts_WhenShortened_ThenTheyFit) {
  EXPECT_EQ(shortened("abcdefghij", 10), "abcdefghij");
  EXPECT_EQ(shortened("abcdefghijk", 10), "abcdefg...");
  EXPECT_EQ(shortened_amid("abcdefghijklmnop", 13), "abcd...klmnop");
  EXPECT_EQ(shortened("\xc3\xa4\xc3\xa4\xc3\xa4\xc3\xa4\xc3\xa4\xc3\xa4", 5), "\xc3\xa4\xc3\xa4...")
      << "letters, not bytes";
  EXPECT_EQ(drawable("a\xff"
                     "b\xc3"),
            "a?b?");
  EXPECT_EQ(column_count("\xc3\xa4"
                         "b"),
            2);
}

TEST(ScreenText, GivenALongLine_WhenWrapped_ThenItGoesOnIndented) {
  EXPECT_THAT(wrapped("K   one two three four", 12, 4), ElementsAre("K   one two", "    three", "    four"));
  EXPECT_THAT(wrapped("K   abcdefghijklmno", 12, 4), ElementsAre("K   abcdefgh", "    ijklmno"));
  EXPECT_THAT(wrapped("short", 12, 4), ElementsAre("short"));
  EXPECT_THAT(wrapped("", 12, 4), ElementsAre(""));
}

} // namespace
