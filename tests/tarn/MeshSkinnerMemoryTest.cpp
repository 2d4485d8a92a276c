#include "mesh/database/MeshSkinner.h"
#include "mesh/database/SideToElement.h"
#include "reference/tarn/MeshDatabase.h"

#include <gtest/gtest.h>

#include <fstream>
#include <numeric>
#include <vector>

#include <unistd.h>

namespace {

double resident_megabytes() {
  std::ifstream pages("/proc/self/statm");
  double size = 0, resident = 0;
  pages >> size >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

/// n^3 cubes.
struct Box {
  Tarn::MeshDatabase database;
  std::vector<Tarn::Handle<1>> elements;
  std::vector<int> positions;

  explicit Box(int n) {
    const int nodes_per_edge = n + 1;
    const std::uint64_t node_count = std::uint64_t(nodes_per_edge) * nodes_per_edge * nodes_per_edge;
    const std::vector<double> xyz(3 * node_count);
    const std::uint64_t first_node = database.add_nodes(node_count, xyz.data(), nullptr).value;
    std::vector<Tarn::Handle<0>> nodes;
    for (int z = 0; z < n; ++z)
      for (int y = 0; y < n; ++y)
        for (int x = 0; x < n; ++x)
          for (const int layer : {z, z + 1})
            for (const auto& corner :
                 {std::pair(x, y), std::pair(x + 1, y), std::pair(x + 1, y + 1), std::pair(x, y + 1)})
              nodes.push_back(
                  {first_node + static_cast<std::uint64_t>((layer * nodes_per_edge + corner.second) * nodes_per_edge +
                                                           corner.first)});
    const std::size_t count = nodes.size() / 8;
    const std::uint64_t first =
        database.add_elements(Tarn::Hex, 8, count, nodes.data(), nullptr, database.add_owner("box")).value;
    for (std::size_t i = 0; i < count; ++i)
      elements.push_back({first + i});
    positions.resize(count);
    std::iota(positions.begin(), positions.end(), 0);
  }

  std::size_t skin() {
    SideToElement solids(&database);
    solids.add_elements(elements, positions);
    MeshSkinner skinner(&solids);
    return skinner.getMeshSkin().size();
  }
};

TEST(MeshSkinnerMemory, GivenALargeMesh_WhenSkinnedAgainAndAgain_ThenTheProcessDoesNotGrow) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the sanitizer keeps what is freed";
#endif
  Box box(90);
  for (int i = 0; i < 4; ++i)
    ASSERT_EQ(box.skin(), 6u * 90 * 90);
  const double before = resident_megabytes();

  for (int i = 0; i < 30; ++i)
    box.skin();

  EXPECT_LT(resident_megabytes(), before + 10);
}

} // namespace
