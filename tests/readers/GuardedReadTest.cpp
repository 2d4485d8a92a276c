#include "readers/GuardedRead.h"

#include "readers/Refusal.h"
#include "tests/readers/ReadFiles.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <unistd.h>

namespace {

using readers::Limits;
using readers::MeshDraft;
using readers::read_guarded;
using readers::Refusal;

constexpr Limits small{std::uint64_t{512} << 20, 2};

std::string refusal_of(const std::function<MeshDraft()>& parse, const Limits& limits = small) {
  try {
    read_guarded(parse, limits);
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
  return "no refusal";
}

MeshDraft small_draft() {
  MeshDraft draft;
  draft.xyz = {0, 0, 0, 1, 0, 0};
  draft.node_numbers = {5, std::int64_t{1} << 40};
  draft.node_owner = {0, 0};
  draft.owners = {"one", ""};
  readers::ElementBatch batch;
  batch.type = Tarn::Edge;
  batch.nodes_per_element = 2;
  batch.owner = 1;
  batch.from_side_set = true;
  batch.nodes = {0, 1};
  batch.position = {1};
  batch.numbers = {-7};
  draft.batches = {batch};
  draft.node_sets = {{"set", {1}}};
  draft.left_out = {{"things", 3}};
  draft.notices = {"a notice"};
  draft.last_position = 1;
  return draft;
}

TEST(GuardedRead, GivenAParserThatSucceeds_WhenGuarded_ThenItsDraftComesOverWhole) {
  const MeshDraft draft = read_guarded(small_draft, small);

  const MeshDraft expected = small_draft();
  EXPECT_EQ(draft.xyz, expected.xyz);
  EXPECT_EQ(draft.node_numbers, expected.node_numbers);
  EXPECT_EQ(draft.node_owner, expected.node_owner);
  EXPECT_EQ(draft.owners, expected.owners);
  ASSERT_EQ(draft.batches.size(), 1u);
  EXPECT_EQ(draft.batches[0].type, Tarn::Edge);
  EXPECT_EQ(draft.batches[0].nodes_per_element, 2u);
  EXPECT_EQ(draft.batches[0].owner, 1u);
  EXPECT_TRUE(draft.batches[0].from_side_set);
  EXPECT_EQ(draft.batches[0].nodes, expected.batches[0].nodes);
  EXPECT_EQ(draft.batches[0].position, expected.batches[0].position);
  EXPECT_EQ(draft.batches[0].numbers, expected.batches[0].numbers);
  ASSERT_EQ(draft.node_sets.size(), 1u);
  EXPECT_EQ(draft.node_sets[0].name, "set");
  EXPECT_EQ(draft.node_sets[0].nodes, std::vector<std::uint32_t>{1});
  ASSERT_EQ(draft.left_out.size(), 1u);
  EXPECT_EQ(draft.left_out[0].reason, "things");
  EXPECT_EQ(draft.left_out[0].count, 3u);
  EXPECT_EQ(draft.notices, expected.notices);
  EXPECT_EQ(draft.last_position, 1u);
}

TEST(GuardedRead, GivenAParserThatRefuses_WhenGuarded_ThenTheRefusalComesOver) {
  EXPECT_EQ(refusal_of([]() -> MeshDraft { throw Refusal("line 7 is wrong"); }), "line 7 is wrong");
}

TEST(GuardedRead, GivenAParserThatDies_WhenGuarded_ThenThisProcessLivesAndSaysSo) {
  const std::string line = "damaged: its reader does not survive it";
  EXPECT_EQ(refusal_of([]() -> MeshDraft { std::raise(SIGSEGV), std::abort(); }), line);
  EXPECT_EQ(refusal_of([]() -> MeshDraft { std::abort(); }), line);
  EXPECT_EQ(refusal_of([]() -> MeshDraft { ::_exit(0); }), line);
  EXPECT_EQ(refusal_of([]() -> MeshDraft { ::_exit(1); }), line);
  EXPECT_EQ(refusal_of([]() -> MeshDraft { throw 5; }), line);
}

TEST(GuardedRead, GivenAParserWithoutEnd_WhenGuarded_ThenItIsStopped) {
  EXPECT_EQ(refusal_of(
                []() -> MeshDraft {
                  for (volatile bool forever = true; forever;) {
                  }
                  return {};
                },
                {std::uint64_t{512} << 20, 1}),
            "damaged, or too large: reading it does not come to an end");
}

TEST(GuardedRead, GivenAParserThatWantsTooMuch_WhenGuarded_ThenTheLimitHolds) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "no limit on the address space under this sanitizer";
#endif
  EXPECT_EQ(refusal_of([] {
              MeshDraft draft;
              draft.xyz.resize(std::size_t{3} << 30);
              return draft;
            }),
            "damaged, or too large: reading it takes more memory than it may");
}

TEST(GuardedRead, GivenAParserThatPrints_WhenGuarded_ThenNothingIsSeen) {
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();

  read_guarded(
      [] {
        std::cerr << "noise" << std::endl;
        std::cout << "noise" << std::endl;
        return small_draft();
      },
      small);

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(GuardedRead, GivenFilesThatMakeLibrariesComplain_WhenReading_ThenNothingIsPrinted) {
  const std::string bad_exodus = reader_tests::write_file("quiet.e", "CDF\1" + std::string(40, '\0'));
  const std::string bad_legacy = reader_tests::write_file(
      "quiet.vtk", "# vtk DataFile Version 3.0\nx\nASCII\nDATASET POLYDATA\nPOINTS 1 float\nx\n");
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();

  const reader_tests::ReadMesh exodus(bad_exodus);
  const reader_tests::ReadMesh legacy(bad_legacy);

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_NE(exodus.report.error, "");
  EXPECT_NE(legacy.report.error, "");
}

} // namespace
