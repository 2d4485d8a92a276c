#include "readers/MeshDraft.h"

#include "readers/OwnerNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace {

using namespace readers;
using testing::ElementsAre;

// Three nodes in a row, two edges between them, a node set.
MeshDraft two_edges() {
  MeshDraft draft;
  draft.xyz = {0, 0, 0, 1, 0, 0, 2, 0, 0};
  draft.node_numbers = {10, 11, 12};
  draft.node_owner = {0, 0, 0};
  draft.owners = {"edges"};
  ElementBatch batch;
  batch.type = Tarn::Edge;
  batch.nodes_per_element = 2;
  batch.nodes = {0, 1, 1, 2};
  batch.position = {1, 2};
  batch.numbers = {101, 102};
  draft.batches = {batch};
  draft.node_sets = {{"ends", {0, 2}}};
  draft.last_position = 2;
  return draft;
}

TEST(MeshDraft, GivenASoundDraft_WhenLookingForInconsistency_ThenThereIsNone) {
  EXPECT_EQ(find_inconsistency(two_edges()), "");
}

TEST(MeshDraft, GivenOneThingWrong_WhenLookingForInconsistency_ThenItIsFound) {
  const std::pair<const char*, std::function<void(MeshDraft&)>> rows[] = {
      {"coordinates of a wrong length", [](MeshDraft& d) { d.xyz.pop_back(); }},
      {"node owners of a wrong length", [](MeshDraft& d) { d.node_owner.pop_back(); }},
      {"node numbers of a wrong length", [](MeshDraft& d) { d.node_numbers.pop_back(); }},
      {"an unknown owner of nodes", [](MeshDraft& d) { d.node_owner[1] = 1; }},
      {"a node set out of range", [](MeshDraft& d) { d.node_sets[0].nodes[0] = 3; }},
      {"an unknown kind of element", [](MeshDraft& d) { d.batches[0].nodes_per_element = 4; }},
      {"an unknown kind of element", [](MeshDraft& d) { d.batches[0].type = Tarn::None; }},
      {"an unknown owner of elements", [](MeshDraft& d) { d.batches[0].owner = 1; }},
      {"connectivity of a wrong length", [](MeshDraft& d) { d.batches[0].nodes.pop_back(); }},
      {"element numbers of a wrong length", [](MeshDraft& d) { d.batches[0].numbers.pop_back(); }},
      {"connectivity out of range", [](MeshDraft& d) { d.batches[0].nodes[3] = 3; }},
      {"an element position out of range", [](MeshDraft& d) { d.batches[0].position[0] = 0; }},
      {"an element position out of range", [](MeshDraft& d) { d.batches[0].position[0] = 3; }},
  };
  for (const auto& [expected, spoil] : rows) {
    MeshDraft draft = two_edges();
    spoil(draft);
    EXPECT_EQ(find_inconsistency(draft), expected);
  }
}

TEST(MeshDraft, GivenANodeThatCannotBeDrawn_WhenLeavingBadNodesOut_ThenItsElementsGoAndTheRestCloseRanks) {
  MeshDraft draft = two_edges();
  draft.xyz[1] = std::nan("");

  leave_out_bad_nodes(draft);

  EXPECT_THAT(draft.xyz, ElementsAre(1, 0, 0, 2, 0, 0));
  EXPECT_THAT(draft.node_numbers, ElementsAre(11, 12));
  EXPECT_THAT(draft.node_owner, ElementsAre(0u, 0u));
  EXPECT_THAT(draft.batches[0].nodes, ElementsAre(0u, 1u));
  EXPECT_THAT(draft.batches[0].position, ElementsAre(2u));
  EXPECT_THAT(draft.batches[0].numbers, ElementsAre(102));
  EXPECT_THAT(draft.node_sets[0].nodes, ElementsAre(1u));
  ASSERT_EQ(draft.left_out.size(), 2u);
  EXPECT_EQ(draft.left_out[0].count, 1u);
  EXPECT_EQ(draft.left_out[1].count, 1u);
  EXPECT_EQ(find_inconsistency(draft), "");
}

TEST(MeshDraft, GivenTheLargestSinglePrecisionCoordinate_WhenLeavingBadNodesOut_ThenItStays) {
  MeshDraft draft = two_edges();
  draft.xyz[0] = 3.4028234663852886e38;
  leave_out_bad_nodes(draft);
  EXPECT_EQ(draft.node_count(), 3u);

  draft.xyz[0] = 3.5e38;
  leave_out_bad_nodes(draft);
  EXPECT_EQ(draft.node_count(), 2u);
}

TEST(MeshDraft, GivenTwoDrafts_WhenOneIsAppended_ThenItsIndicesMoveBehindTheOthers) {
  MeshDraft draft = two_edges();

  append_draft(draft, two_edges());

  EXPECT_EQ(find_inconsistency(draft), "");
  EXPECT_EQ(draft.node_count(), 6u);
  EXPECT_THAT(draft.node_numbers, ElementsAre(10, 11, 12, 10, 11, 12));
  EXPECT_THAT(draft.node_owner, ElementsAre(0u, 0u, 0u, 1u, 1u, 1u));
  ASSERT_EQ(draft.batches.size(), 2u);
  EXPECT_EQ(draft.batches[1].owner, 1u);
  EXPECT_THAT(draft.batches[1].nodes, ElementsAre(3u, 4u, 4u, 5u));
  EXPECT_THAT(draft.batches[1].position, ElementsAre(3u, 4u));
  EXPECT_THAT(draft.node_sets[1].nodes, ElementsAre(3u, 5u));
  EXPECT_EQ(draft.last_position, 4u);
}

TEST(MeshDraft, GivenADraftWithoutNodeNumbers_WhenAppended_ThenNobodyHasNumbers) {
  MeshDraft draft = two_edges();
  MeshDraft unnumbered = two_edges();
  unnumbered.node_numbers.clear();
  append_draft(draft, std::move(unnumbered));
  EXPECT_TRUE(draft.node_numbers.empty());
}

TEST(MeshDraft, GivenOneReasonTwice_WhenLeavingOut_ThenItsCountsAddUp) {
  MeshDraft draft;
  draft.leave_out("polyhedra", 2);
  draft.leave_out("voids");
  draft.leave_out("polyhedra", 3);
  draft.leave_out("nothing", 0);
  ASSERT_EQ(draft.left_out.size(), 2u);
  EXPECT_EQ(draft.left_out[0].count, 5u);
  EXPECT_EQ(draft.left_out[1].count, 1u);
}

TEST(OwnerNames, GivenNamesThatCannotBeShown_WhenTidied_ThenTheyArePrintableAndUnique) {
  MeshDraft draft;
  draft.owners = {"wall", "wall", "", "a\nb", "na\xc3\xafve", "bad\xff\xc3", "wall", "\xed\xa0\x80", "wall (2)"};
  draft.node_sets = {{"wall", {}}};

  tidy_names(draft);

  EXPECT_THAT(draft.owners, ElementsAre("wall", "wall (2)", "unnamed", "a?b", "na\xc3\xafve", "bad??", "wall (3)",
                                        "???", "wall (2) (2)"));
  EXPECT_EQ(draft.node_sets[0].name, "wall (4)");
}

} // namespace
