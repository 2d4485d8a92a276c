#include "readers/Numbering.h"

#include "readers/DatabaseFill.h"
#include "tests/readers/ReadFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace reader_tests;
using testing::ElementsAre;

TEST(Numbering, GivenNumbers_WhenAskedWhetherTheyCanBeIds_ThenUniquePositiveAndBelowTwoToThe31) {
  const struct {
    const char* name;
    std::vector<std::int64_t> numbers;
    bool expected;
  } rows[] = {
      {"none", {}, true},
      {"running", {1, 2, 3}, true},
      {"in any order", {3, 1, 2}, true},
      {"far apart", {1, 2147483647}, true},
      {"too large", {1, 2147483648}, false},
      {"zero", {0, 1}, false},
      {"negative", {-1, 1}, false},
      {"twice, close", {1, 2, 2}, false},
      {"twice, far", {2147483647, 1, 2147483647}, false},
  };
  for (const auto& row : rows)
    EXPECT_EQ(readers::are_unique_ids(row.numbers), row.expected) << row.name;
}

// One edge for each number, in two batches and one face of a side set.
readers::MeshDraft draft_with_numbers(const std::vector<std::int64_t>& numbers) {
  readers::MeshDraft draft;
  draft.xyz.assign(12, 0.0);
  draft.node_owner = {0, 0, 0, 0};
  draft.owners = {"a", "faces"};
  for (std::size_t i = 0; i < 2; ++i) {
    readers::ElementBatch batch;
    batch.type = Tarn::Edge;
    batch.nodes_per_element = 2;
    batch.nodes = {0, 1};
    batch.position = {static_cast<std::uint32_t>(2 - i)}; // the second batch came first in the file
    if (!numbers.empty()) batch.numbers = {numbers[i]};
    draft.batches.push_back(batch);
  }
  readers::ElementBatch face;
  face.type = Tarn::Tri;
  face.nodes_per_element = 3;
  face.owner = 1;
  face.from_side_set = true;
  face.nodes = {0, 1, 2};
  face.position = {3};
  draft.batches.push_back(face);
  draft.last_position = 3;
  return draft;
}

struct Filled {
  Tarn::MeshDatabase database;
  readers::Report report;
  std::string error;

  void add(const readers::MeshDraft& draft) {
    report = {};
    error = readers::fill_database(draft, {}, database, report);
  }
  std::vector<int> local(Tarn::ElementType type) {
    const auto elements = database.elements(type);
    std::vector<int> ids(elements.size());
    database.get_element_ids(elements.size(), elements.data(), ids.data());
    return ids;
  }
  std::vector<int> global(Tarn::ElementType type) {
    const auto elements = database.elements(type);
    std::vector<int> ids(elements.size());
    std::vector<char> has(elements.size());
    database.get_global_element_ids(elements.size(), elements.data(), ids.data(), has.data());
    EXPECT_THAT(has, testing::Each(testing::Ne(0)));
    return ids;
  }
};

TEST(Numbering, GivenAFileWithoutNumbers_WhenFilling_ThenIdsRunInFileOrderWithoutNotice) {
  Filled filled;
  filled.add(draft_with_numbers({}));
  EXPECT_EQ(filled.error, "");
  EXPECT_THAT(filled.local(Tarn::Edge), ElementsAre(2, 1));
  EXPECT_THAT(filled.local(Tarn::Tri), ElementsAre(3));
  EXPECT_THAT(filled.global(Tarn::Edge), ElementsAre(2, 1));
  EXPECT_THAT(filled.report.notices, testing::IsEmpty());
}

TEST(Numbering, GivenAFileWithGoodNumbers_WhenFilling_ThenTheseAreLocalAndGlobalAndFacesFollow) {
  Filled filled;
  filled.add(draft_with_numbers({70, 30}));
  EXPECT_THAT(filled.local(Tarn::Edge), ElementsAre(70, 30));
  EXPECT_THAT(filled.local(Tarn::Tri), ElementsAre(71));
  EXPECT_THAT(filled.global(Tarn::Edge), ElementsAre(70, 30));
  EXPECT_THAT(filled.global(Tarn::Tri), ElementsAre(71));
  EXPECT_THAT(filled.report.notices, testing::IsEmpty());
}

TEST(Numbering, GivenAFileThatRepeatsNumbers_WhenFilling_ThenLocalIdsRunWithOneNoticeAndGlobalOnesStay) {
  Filled filled;
  filled.add(draft_with_numbers({30, 30}));
  EXPECT_THAT(filled.local(Tarn::Edge), ElementsAre(2, 1));
  EXPECT_THAT(filled.global(Tarn::Edge), ElementsAre(30, 30));
  EXPECT_THAT(filled.report.notices, ElementsAre("element numbers of the file are not unique, positive, below 2^31 and "
                                                 "unused: numbered from 1"));
}

TEST(Numbering, GivenNumbersBeyond31Bits_WhenFilling_ThenAllIdsRun) {
  Filled filled;
  filled.add(draft_with_numbers({std::int64_t{1} << 31, 4}));
  EXPECT_THAT(filled.local(Tarn::Edge), ElementsAre(2, 1));
  EXPECT_THAT(filled.global(Tarn::Edge), ElementsAre(2, 1));
  EXPECT_EQ(filled.report.notices.size(), 1u);
}

TEST(Numbering, GivenNoRoomForFacesBehindTheLargestNumber_WhenFilling_ThenAllRun) {
  Filled filled;
  filled.add(draft_with_numbers({2147483647, 4}));
  EXPECT_THAT(filled.local(Tarn::Edge), ElementsAre(2, 1));
  EXPECT_THAT(filled.local(Tarn::Tri), ElementsAre(3));
}

TEST(Numbering, GivenASecondFile_WhenItsNumbersAreTaken_ThenItsIdsFollowTheLargestSoFar) {
  Filled filled;
  filled.add(draft_with_numbers({70, 30}));

  filled.add(draft_with_numbers({30, 31}));

  EXPECT_EQ(filled.error, "");
  EXPECT_THAT(filled.local(Tarn::Edge), ElementsAre(70, 30, 73, 72));
  EXPECT_THAT(filled.local(Tarn::Tri), ElementsAre(71, 74));
  EXPECT_THAT(filled.global(Tarn::Edge), ElementsAre(70, 30, 30, 31));
  EXPECT_THAT(filled.report.notices, ElementsAre("element numbers of the file are not unique, positive, below 2^31 and "
                                                 "unused: numbered from 72"));
  EXPECT_EQ(filled.report.nodes, 4u);
  EXPECT_EQ(filled.database.node_count(), 8u);
}

TEST(Numbering, GivenASecondFileWithFreeNumbers_WhenFilling_ThenItKeepsThem) {
  Filled filled;
  filled.add(draft_with_numbers({70, 30}));
  filled.add(draft_with_numbers({50, 51}));
  EXPECT_THAT(filled.local(Tarn::Edge), ElementsAre(70, 30, 50, 51));
  EXPECT_THAT(filled.local(Tarn::Tri), ElementsAre(71, 72));
  EXPECT_THAT(filled.report.notices, testing::IsEmpty());
}

TEST(Numbering, GivenNodeNumbers_WhenFilling_ThenTheyAreIdsUnlessRepeated) {
  readers::MeshDraft draft = draft_with_numbers({});
  draft.node_numbers = {9, 7, 5, 3};
  Filled filled;
  filled.add(draft);
  const auto ids = [&filled] {
    const auto nodes = filled.database.nodes();
    std::vector<int> result(nodes.size());
    filled.database.get_node_ids(nodes.size(), nodes.data(), result.data());
    return result;
  };
  EXPECT_THAT(ids(), ElementsAre(9, 7, 5, 3));

  filled.add(draft);

  EXPECT_THAT(ids(), ElementsAre(9, 7, 5, 3, 10, 11, 12, 13));
  EXPECT_THAT(filled.report.notices, testing::Contains("node numbers of the file are not unique, positive, below 2^31 "
                                                       "and unused: numbered from 10"));
}

} // namespace
