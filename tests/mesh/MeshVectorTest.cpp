#include "mesh/MeshVector.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

template <int Dim> std::vector<Tarn::Handle<Dim>> handles(const std::vector<std::uint64_t>& values) {
  std::vector<Tarn::Handle<Dim>> result;
  for (const std::uint64_t value : values)
    result.push_back({value});
  return result;
}

template <int Dim> std::vector<std::uint64_t> values(const std::vector<Tarn::Handle<Dim>>& list) {
  std::vector<std::uint64_t> result;
  for (const auto handle : list)
    result.push_back(handle.value);
  return result;
}

/// A set whose eleven lists all differ.
MeshVector filled() {
  MeshVector mesh;
  mesh.nodes = handles<0>({5, 3, 5});
  for (std::uint64_t type = 0; type < 10; ++type)
    mesh.elements[type] = handles<1>({100 + type, 10 + type});
  return mesh;
}

void expect_equal(const MeshVector& left, const MeshVector& right) {
  EXPECT_EQ(values(left.nodes), values(right.nodes));
  for (std::size_t type = 0; type < 10; ++type)
    EXPECT_EQ(values(left.elements[type]), values(right.elements[type])) << "kind " << type;
}

TEST(MeshVector, GivenNothing_WhenConstructed_ThenAllElevenListsAreEmpty) {
  const MeshVector mesh;
  EXPECT_THAT(mesh.nodes, IsEmpty());
  for (const auto& list : mesh.elements)
    EXPECT_THAT(list, IsEmpty());
}

TEST(MeshVector, GivenAFilledSet_WhenCopied_ThenAllElevenListsAreEqualAndIndependent) {
  const MeshVector original = filled();
  MeshVector copy(original);
  expect_equal(copy, original);
  copy.nodes.clear();
  copy.elements[0].clear();
  expect_equal(original, filled());

  MeshVector assigned;
  assigned.nodes = handles<0>({1});
  assigned = original;
  expect_equal(assigned, original);
}

TEST(MeshVector, GivenAFilledSet_WhenMoved_ThenTheSourceHasElevenEmptyLists) {
  MeshVector source = filled();
  const MeshVector constructed(std::move(source));
  expect_equal(constructed, filled());
  expect_equal(source, MeshVector()); // NOLINT(bugprone-use-after-move): the contract says what is left

  source = filled();
  MeshVector assigned;
  assigned.nodes = handles<0>({77});
  assigned.elements[0] = handles<1>({78});
  assigned = std::move(source);
  expect_equal(assigned, filled());
  expect_equal(source, MeshVector()); // NOLINT(bugprone-use-after-move)
  static_assert(std::is_nothrow_move_constructible_v<MeshVector>);
  static_assert(std::is_nothrow_move_assignable_v<MeshVector>);
}

TEST(MeshVector, GivenEntitiesInOneListOnly_WhenAskedIfEmpty_ThenOnlyKindZeroDoesNotCount) {
  EXPECT_TRUE(MeshVector().empty());
  MeshVector nodes;
  nodes.nodes = handles<0>({1});
  EXPECT_FALSE(nodes.empty());
  for (std::size_t type = 0; type < 10; ++type) {
    MeshVector mesh;
    mesh.elements[type] = handles<1>({1, 2});
    EXPECT_EQ(mesh.empty(), type == 0) << "kind " << type;
    EXPECT_EQ(mesh.size(), type == 0 ? 0 : 2) << "kind " << type;
  }
}

TEST(MeshVector, GivenEntitiesInAllLists_WhenAskedForSize_ThenNodesAndKindsOneToNineAreSummed) {
  EXPECT_EQ(MeshVector().size(), 0);
  EXPECT_EQ(filled().size(), 3 + 9 * 2);
  static_assert(std::is_same_v<decltype(MeshVector().size()), int>);
}

/// Pretends to hold `count` elements of kind `type`: only the length is ever looked at. Restores the list at the end.
class PretendedLength {
public:
  PretendedLength(MeshVector& mesh, std::size_t type, std::size_t count) : list_(mesh.elements[type]) {
    std::memcpy(saved_, &list_, sizeof saved_);
    // libstdc++ keeps begin, end and end of storage.
    const std::uintptr_t end = 4096 + count * sizeof(Tarn::Handle<1>);
    const std::uintptr_t pretended[3] = {4096, end, end};
    static_assert(sizeof pretended == sizeof(std::vector<Tarn::Handle<1>>));
    std::memcpy(static_cast<void*>(&list_), pretended, sizeof pretended);
  }
  ~PretendedLength() { std::memcpy(static_cast<void*>(&list_), saved_, sizeof saved_); }

private:
  std::vector<Tarn::Handle<1>>& list_;
  unsigned char saved_[sizeof(std::vector<Tarn::Handle<1>>)];
};

TEST(MeshVector, GivenMoreThan32BitsOfEntities_WhenAskedForSize_ThenItIsTruncated) {
  MeshVector mesh;
  mesh.nodes = handles<0>({1, 2});
  const PretendedLength hexes(mesh, 6, (std::size_t(1) << 32) + 5);
  EXPECT_EQ(mesh.size(), 7);
  const PretendedLength tets(mesh, 5, (std::size_t(1) << 31) - 7);
  EXPECT_EQ(mesh.size(), std::numeric_limits<int>::min());
}

TEST(MeshVector, GivenTwoSets_WhenAppended_ThenEachListGrowsAtItsEndInTheOthersOrder) {
  MeshVector mesh = filled();
  MeshVector other;
  other.nodes = handles<0>({9, 5});
  for (std::uint64_t type = 0; type < 10; ++type)
    other.elements[type] = handles<1>({2, 100 + type});
  mesh.append(other);
  EXPECT_THAT(values(mesh.nodes), ElementsAre(5, 3, 5, 9, 5));
  EXPECT_THAT(values(mesh.elements[0]), ElementsAre(100, 10));
  for (std::uint64_t type = 1; type < 10; ++type)
    EXPECT_THAT(values(mesh.elements[type]), ElementsAre(100 + type, 10 + type, 2, 100 + type));
}

TEST(MeshVector, GivenASet_WhenAppendedToItself_ThenItsEntriesDoubleUntilMadeUnique) {
  MeshVector mesh = filled();
  mesh.append(mesh);
  EXPECT_THAT(values(mesh.nodes), ElementsAre(5, 3, 5, 5, 3, 5));
  EXPECT_THAT(values(mesh.elements[4]), ElementsAre(104, 14, 104, 14));
  EXPECT_THAT(values(mesh.elements[0]), ElementsAre(100, 10));
  mesh.sort_unique();
  EXPECT_THAT(values(mesh.nodes), ElementsAre(3, 5));
  EXPECT_THAT(values(mesh.elements[4]), ElementsAre(14, 104));
}

TEST(MeshVector, GivenUnsortedListsWithDuplicates_WhenSorted_ThenOrderIsUnsignedAndCapacityStays) {
  constexpr std::uint64_t top_bit = std::uint64_t(1) << 63;
  MeshVector mesh;
  mesh.nodes = handles<0>({top_bit, 7, 1, 7, top_bit});
  for (std::uint64_t type = 0; type < 10; ++type)
    mesh.elements[type] = handles<1>({3, 2, 3});
  const std::size_t node_capacity = mesh.nodes.capacity();
  const std::size_t element_capacity = mesh.elements[9].capacity();
  mesh.sort_unique();
  EXPECT_THAT(values(mesh.nodes), ElementsAre(1, 7, top_bit));
  EXPECT_THAT(values(mesh.elements[0]), ElementsAre(3, 2, 3));
  for (std::uint64_t type = 1; type < 10; ++type)
    EXPECT_THAT(values(mesh.elements[type]), ElementsAre(2, 3));
  EXPECT_EQ(mesh.nodes.capacity(), node_capacity);
  EXPECT_EQ(mesh.elements[9].capacity(), element_capacity);
}

struct RemoveRow {
  const char* name;
  std::vector<std::uint64_t> from, what, left;
  bool removed;
};

class MeshVectorRemove : public ::testing::TestWithParam<RemoveRow> {};

TEST_P(MeshVectorRemove, GivenAList_WhenRemovingAnother_ThenTheMergeWalkDecides) {
  const RemoveRow& row = GetParam();
  MeshVector nodes;
  nodes.nodes = handles<0>(row.from);
  MeshVector node_argument;
  node_argument.nodes = handles<0>(row.what);
  EXPECT_EQ(nodes.remove(node_argument), row.removed);
  EXPECT_EQ(values(nodes.nodes), row.left);
  for (std::size_t type = 1; type < 10; ++type) {
    MeshVector mesh;
    mesh.elements[type] = handles<1>(row.from);
    MeshVector argument;
    argument.elements[type] = handles<1>(row.what);
    EXPECT_EQ(mesh.remove(argument), row.removed) << "kind " << type;
    EXPECT_EQ(values(mesh.elements[type]), row.left) << "kind " << type;
    EXPECT_EQ(values(argument.elements[type]), row.what) << "kind " << type;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, MeshVectorRemove,
    ::testing::Values(RemoveRow{"common", {5, 1, 3, 9}, {3, 5}, {1, 9}, true},
                      RemoveRow{"all", {2, 1}, {1, 2}, {}, true},
                      RemoveRow{"absent", {5, 1, 5}, {2, 4, 6}, {1, 5}, false},
                      RemoveRow{"empty_argument", {5, 1, 5}, {}, {1, 5}, false},
                      RemoveRow{"empty_receiver", {}, {1, 2}, {}, false},
                      // 7 is passed by while the walk looks for something at least 9.
                      RemoveRow{"unsorted_argument", {1, 7, 9}, {9, 7}, {1, 7}, true},
                      RemoveRow{"duplicates_count_once", {4, 4, 4, 6}, {4}, {6}, true},
                      RemoveRow{"rest_after_the_argument_ends", {1, 2, 3, 4}, {1}, {2, 3, 4}, true},
                      RemoveRow{"unsigned_order", {std::uint64_t(1) << 63, 1}, {std::uint64_t(1) << 63}, {1}, true}),
    [](const auto& row) { return row.param.name; });

TEST(MeshVector, GivenEntitiesOfAllLists_WhenRemoved_ThenEachListLosesItsOwn) {
  MeshVector mesh = filled();
  MeshVector some;
  some.nodes = handles<0>({5});
  for (std::uint64_t type = 1; type < 10; ++type)
    some.elements[type] = handles<1>({10 + type});
  EXPECT_TRUE(mesh.remove(some));
  EXPECT_THAT(values(mesh.nodes), ElementsAre(3));
  for (std::uint64_t type = 1; type < 10; ++type)
    EXPECT_THAT(values(mesh.elements[type]), ElementsAre(100 + type)) << "kind " << type;
  MeshVector itself = filled();
  EXPECT_TRUE(itself.remove(itself));
  EXPECT_TRUE(itself.empty());
}

TEST(MeshVector, GivenKindZero_WhenRemoving_ThenItIsLeftAlone) {
  MeshVector mesh;
  mesh.elements[0] = handles<1>({3, 1, 3});
  MeshVector argument;
  argument.elements[0] = handles<1>({1, 3});
  EXPECT_FALSE(mesh.remove(argument));
  EXPECT_THAT(values(mesh.elements[0]), ElementsAre(3, 1, 3));
}

TEST(MeshVector, GivenAFilledSet_WhenCleared_ThenKindZeroStaysAndCapacitiesToo) {
  MeshVector mesh = filled();
  const std::size_t capacity = mesh.elements[9].capacity();
  mesh.clear();
  EXPECT_TRUE(mesh.empty());
  EXPECT_THAT(mesh.nodes, IsEmpty());
  EXPECT_THAT(values(mesh.elements[0]), ElementsAre(100, 10));
  for (std::size_t type = 1; type < 10; ++type)
    EXPECT_THAT(mesh.elements[type], IsEmpty());
  EXPECT_EQ(mesh.elements[9].capacity(), capacity);
  EXPECT_GE(mesh.nodes.capacity(), 3u);
  EXPECT_THAT(values(MeshVector(mesh).elements[0]), ElementsAre(100, 10));
}

} // namespace
