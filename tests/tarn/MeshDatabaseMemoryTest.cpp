// What a mesh costs, by the database's own accounts: bytes, and calls that must not depend on the size of the mesh.

#include "reference/tarn/MeshDatabase.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <ostream>
#include <vector>

namespace {

using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;
using Count = std::uint64_t;

/// Bytes of plain arrays that hold the same mesh.
double raw_bytes(double nodes, double elements, double nodes_per_element) {
  return 24 * nodes + 8 * nodes_per_element * elements + 4 * (nodes + elements);
}

std::vector<Node> consecutive(Node first, Count count) {
  std::vector<Node> nodes(count);
  for (Count i = 0; i < count; ++i)
    nodes[i].value = first.value + i;
  return nodes;
}

struct MeshRow {
  const char* name;
  Tarn::ElementType type;
  int nodes_per_element;
  int owners;
  bool has_global_ids;
  bool ids_in_order;
};

void PrintTo(const MeshRow& row, std::ostream* out) { *out << row.name; }

class MeshBytes : public testing::TestWithParam<MeshRow> {};

INSTANTIATE_TEST_SUITE_P(MeshDatabase, MeshBytes,
                         testing::Values(MeshRow{"hexes", Tarn::Hex, 8, 1, false, true},
                                         MeshRow{"hexes_as_from_a_file", Tarn::Hex, 8, 1, true, false},
                                         MeshRow{"hexes_of_many_owners", Tarn::Hex, 8, 1000, true, true},
                                         MeshRow{"hexes_quadratic", Tarn::Hex, 20, 3, true, true},
                                         MeshRow{"tets", Tarn::Tet, 4, 1, true, true}),
                         [](const auto& row) { return row.param.name; });

TEST_P(MeshBytes, GivenALargeMesh_WhenBuilt_ThenItTakesAtMostOneAndAHalfTimesTheRawArrays) {
  const MeshRow& row = GetParam();
  constexpr Count count = 100000;
  Tarn::MeshDatabase db;
  const std::vector<double> xyz(3 * count);
  std::vector<int> ids(count);
  std::iota(ids.begin(), ids.end(), 1);
  if (!row.ids_in_order) std::reverse(ids.begin(), ids.end());
  std::vector<Node> nodes = consecutive(db.add_nodes(count, xyz.data(), ids.data()), count);
  const Count part = count / static_cast<Count>(row.owners);
  for (std::size_t i = count; i < part * static_cast<Count>(row.nodes_per_element); ++i)
    nodes.push_back(nodes[i - count]);
  Count added = 0;
  for (int owner = 0; owner < row.owners; ++owner, added += part) {
    const Elem first =
        db.add_elements(row.type, row.nodes_per_element, part, nodes.data(), ids.data() + added, db.add_owner("part"));
    ASSERT_NE(first, Elem());
    if (row.has_global_ids) {
      ASSERT_TRUE(db.set_global_ids(first, part, ids.data()));
    }
  }

  const double raw = raw_bytes(count, static_cast<double>(added), row.nodes_per_element);
  const double used = static_cast<double>(db.memory_bytes());
  EXPECT_LT(used, 1.5 * raw);
  EXPECT_GT(used, 24.0 * count + 4.0 * row.nodes_per_element * static_cast<double>(added)) << "the account is honest";
}

TEST(MeshDatabaseMemory, GivenNodeCountsThatMix_WhenAdded_ThenOnlyPlacesAreAdded) {
  constexpr Count count = 10000;
  Tarn::MeshDatabase db;
  const std::vector<double> xyz(3 * 30);
  std::vector<Node> nodes = consecutive(db.add_nodes(30, xyz.data()), 30);
  nodes.resize(8 * count, nodes[0]);
  db.add_elements(Tarn::Hex, 8, count, nodes.data());
  const Count before = db.memory_bytes();

  const Elem quadratic = db.add_elements(Tarn::Hex, 20, 1, nodes.data());

  EXPECT_LE(db.memory_bytes() - before, 8 * (count + 2) + 4 * 20 + 100);
  Count length = 0;
  db.get_element_node_count(quadratic, &length);
  EXPECT_EQ(length, 20u);
  db.get_element_node_count({quadratic.value - 1}, &length);
  EXPECT_EQ(length, 8u);
}

TEST(MeshDatabaseMemory, GivenEdgesOfALinearMesh_WhenAskedFor_ThenNothingIsKept) {
  Tarn::MeshDatabase db;
  const std::vector<double> xyz(3 * 1000);
  const std::vector<Node> nodes = consecutive(db.add_nodes(1000, xyz.data()), 1000);
  const Elem first = db.add_elements(Tarn::Hex, 8, 100, nodes.data());
  const Count before = db.memory_bytes();

  for (Count i = 0; i < 100; ++i) {
    Elem edges[24];
    Count count = 24;
    ASSERT_EQ(db.get_adjacencies({first.value + i}, 1, 2, &count, edges), 0);
    ASSERT_EQ(count, 12u);
  }

  EXPECT_EQ(db.memory_bytes(), before);
}

} // namespace
