#pragma once

#include "tests/tarn/ForeignMeshData.h"
#include "tests/tarn/PlainSkinner.h"

#include <random>
#include <vector>

namespace tarn_test {

/// What handles look like in a made-up database.
enum class HandleStyle {
  SmallNumbers, ///< 1, 2, 3 ...: null hides right before the first
  HighBits,     ///< numbers above a tag
  Addresses,    ///< 48 bytes apart, far up
  Scattered,    ///< random 64-bit values
};

/// Makes meshes from a fixed seed. Elements of all solid kinds and node counts on few nodes, so that faces meet twice,
/// three times and more; some are collapsed, some repeated; shells lie on sides and elsewhere.
class RandomMesh {
public:
  RandomMesh(unsigned seed, HandleStyle style);

  ForeignMeshData database;
  std::vector<HandleList> solids; ///< lists of one kind each, several per kind
  std::vector<HandleList> shells;

  /// Elements on random nodes.
  void scatter_elements(int nodes, int elements);
  /// An n^3 grid of cells, each cut into hexahedra, wedges, tetrahedra or pyramids, nodes and elements shuffled.
  void fill_grid(int n);
  /// Shells: some on sides of solids, as they are or turned, some anywhere.
  void scatter_shells(int count);

private:
  int pick(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
  Tarn::Handle<0> node(int number);
  Tarn::Handle<1> add(Tarn::ElementType type, const std::vector<int>& numbers);
  void add_solid(Tarn::ElementType type, const std::vector<int>& numbers);
  Tarn::ElementType kind_of(const HandleList& list) const;
  void extend(Tarn::ElementType type, std::vector<int>& numbers);
  std::uint64_t handle_value(std::uint64_t number, bool is_node) const;

  std::mt19937 random_;
  HandleStyle style_;
  int node_count_ = 0;
  std::uint64_t next_element_ = 1;
};

} // namespace tarn_test
