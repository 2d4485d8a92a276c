#include "reference/tarn/ExteriorSides.h"

#include "mesh/database/MeshData.h"
#include "reference/tarn/ElementShape.h"
#include "reference/tarn/SideFolds.h"

#include <algorithm>
#include <type_traits>
#include <utility>
#include <vector>

namespace Tarn {

namespace {

using Node = Handle<0>;
using Elem = Handle<1>;

// In the place of a first candidate: there is none yet; they are so many that they hang on their keys.
constexpr std::uint32_t no_candidate = 0xffffffffu;
constexpr std::uint32_t crowd = 0xfffffffeu;
constexpr int longest_chain = 64;

// A side's key is the product of its corners' factors. They are odd, so that no key is null, and far apart: where sums
// of neighbouring numbers are equal, products are not.
std::uint64_t factor(std::uint64_t node) { return 0x9e3779b97f4a7c15ull + 2 * node; }
std::uint64_t product(std::uint64_t a, std::uint64_t b) { return a * b; }
std::uint64_t smaller(std::uint64_t a, std::uint64_t b) { return a < b ? a : b; }

/// What there is to know of all sides of a solid at once.
template <ElementType Type> struct SideKeys {
  using Fold = SideFold<Type>;
  std::uint64_t keys[Fold::sides];     ///< products of the corners' factors
  std::uint64_t smallest[Fold::sides]; ///< smallest corners

  explicit SideKeys(const std::uint64_t* corners) {
    std::uint64_t factors[Fold::corners];
    std::transform(corners, corners + Fold::corners, factors, factor);
    Fold::fold(factors, product, keys);
    Fold::fold(corners, smaller, smallest);
  }
};

// Another number for each handle, null for null.
std::uint64_t rotated(std::uint64_t handle, int bits) {
  return bits == 0 ? handle : handle >> bits | handle << (64 - bits);
}

/// The corners of a chunk of elements, by number.
class ChunkCorners {
public:
  ChunkCorners(MeshData& database, std::size_t stride, int rotation)
      : database_(database), stride_(stride), rotation_(rotation), nodes_(stride * ElementRuns::chunk_size) {}

  void read(const Elem* elements, std::size_t count) {
    // What the database does not know it leaves untouched.
    std::fill_n(nodes_.begin(), count * stride_, 0);
    MeshData::Count length = count * stride_;
    static_assert(sizeof(Node) == sizeof(std::uint64_t) && std::is_standard_layout_v<Node>, "a handle is its value");
    database_.get_connectivity(count, elements, &length, reinterpret_cast<Node*>(nodes_.data()));
    if (rotation_ == 0) return;
    for (std::uint64_t& node : nodes_)
      node = rotated(node, rotation_);
  }
  /// Whether the database knows the element.
  bool is_known(std::size_t element) const { return *of(element) != 0; }
  /// Whether it has all its corners.
  bool is_whole(std::size_t element) const {
    return std::find(of(element), of(element) + stride_, 0u) == of(element) + stride_;
  }
  const std::uint64_t* of(std::size_t element) const { return nodes_.data() + element * stride_; }

private:
  MeshData& database_;
  std::size_t stride_;
  int rotation_;
  std::vector<std::uint64_t> nodes_;
};

void sort_pair(std::uint64_t& a, std::uint64_t& b) {
  const std::uint64_t low = smaller(a, b);
  b = a < b ? b : a;
  a = low;
}

void sort(ExteriorSides::Corners& corners) {
  std::uint64_t* const at = corners.nodes;
  sort_pair(at[0], at[1]);
  sort_pair(at[2], at[3]);
  sort_pair(at[0], at[2]);
  sort_pair(at[1], at[3]);
  sort_pair(at[1], at[2]);
}

/// Ascending, with repeated corners only once; triangles come with a null. False for fewer than three.
bool put_in_order(ExteriorSides::Corners& corners) {
  sort(corners);
  std::uint64_t* const at = corners.nodes;
  bool repeated = false;
  for (int i = 1; i < 4; ++i) {
    if (at[i] != at[i - 1]) continue;
    at[i - 1] = 0;
    repeated = true;
  }
  if (repeated) sort(corners);
  return at[1] != 0;
}

bool is_same_side(const ExteriorSides::Corners& a, const ExteriorSides::Corners& b) {
  return ((a.nodes[0] ^ b.nodes[0]) | (a.nodes[1] ^ b.nodes[1]) | (a.nodes[2] ^ b.nodes[2]) |
          (a.nodes[3] ^ b.nodes[3])) == 0;
}

std::uint64_t key_of(const ExteriorSides::Corners& corners) {
  std::uint64_t key = 1;
  for (const std::uint64_t node : corners.nodes)
    key *= factor(node);
  return key;
}

/// Sum of the products of the ends of each edge.
std::uint64_t sum_of_edges(const std::uint64_t* corners, std::uint32_t count) {
  std::uint64_t sum = 0;
  std::uint64_t last = factor(corners[count - 1]);
  for (std::uint32_t k = 0; k < count; ++k) {
    const std::uint64_t next = factor(corners[k]);
    if (last != next) sum ^= last * next;
    last = next;
  }
  return sum;
}

// Kinds whose solids share nodes with many others need fewer slots.
std::uint64_t expected_nodes(const ElementRuns& list) {
  if (list.type() == Tet) return list.size() / 4;
  return list.type() == Hex ? list.size() : list.size() / 2;
}

} // namespace

ExteriorSides::ExteriorSides(MeshData& database, const std::vector<ElementRuns>& lists, std::uint32_t trusted) {
  if (lists.empty()) return;
  choose_slots(database, lists);
  for (const ElementRuns& list : lists)
    for_kind(list.type(), [&](auto type) { toggle_sides<type()>(database, list); });
  mark_open_slots(trusted);
  list_all_open_sides(database, lists);
  // Sides of solids that turn out to lack a corner may have made those of others vanish.
  if (lowest_node_ != 0 && sum_of_edges_ == 0) return;
  mark_all_slots();
  list_all_open_sides(database, lists);
}

void ExteriorSides::cover(const Node* corners, int count) {
  if (words_.empty()) return;
  Corners shell{};
  for (int corner = 0; corner < count; ++corner)
    shell.nodes[corner] = rotated(corners[corner].value, rotation_);
  const std::uint64_t slot = *std::min_element(shell.nodes, shell.nodes + count) & mask_;
  put_in_order(shell);
  if (!is_open(slot)) return;
  if (Candidate* const covered = find(slot, shell)) covered->is_exterior = false;
}

template <class Call> void ExteriorSides::for_kind(ElementType type, Call call) {
  switch (type) {
  case Tet:
    return call(std::integral_constant<ElementType, Tet>());
  case Hex:
    return call(std::integral_constant<ElementType, Hex>());
  case Wedge:
    return call(std::integral_constant<ElementType, Wedge>());
  case Pyramid:
    return call(std::integral_constant<ElementType, Pyramid>());
  default:
    return;
  }
}

// About one slot a node. Handles may be anything, addresses for example: low bits that never change go to the top. A
// poor choice costs time only.
void ExteriorSides::choose_slots(MeshData& database, const std::vector<ElementRuns>& lists) {
  std::uint64_t nodes = 0;
  for (const ElementRuns& list : lists)
    nodes += expected_nodes(list);
  std::uint64_t slots = 1024;
  while (slots < nodes)
    slots *= 2;
  mask_ = slots - 1;
  words_.assign(slots, 0);

  const ElementRuns::Run& run = lists.front().runs()[0];
  std::vector<Elem> elements(std::min<std::size_t>(ElementRuns::chunk_size, run.count));
  for (std::size_t i = 0; i < elements.size(); ++i)
    elements[i].value = run.first + i;
  ChunkCorners sample(database, 4, 0);
  sample.read(elements.data(), elements.size());
  std::uint64_t changing = 0;
  for (std::size_t i = 0; i < elements.size(); ++i)
    for (std::size_t corner = 0; corner < 4 && sample.is_known(i); ++corner)
      changing |= sample.of(i)[corner] ^ sample.of(i)[0];
  while (changing != 0 && (changing >> rotation_ & 1) == 0)
    ++rotation_;
}

template <ElementType Type> void ExteriorSides::toggle_sides(MeshData& database, const ElementRuns& list) {
  using Fold = SideFold<Type>;
  ChunkCorners nodes(database, Fold::corners, rotation_);
  list.for_each_chunk([&](const Elem* elements, std::size_t count) {
    nodes.read(elements, count);
    // Copies, which no word written to can be mistaken for.
    const std::uint64_t mask = mask_;
    std::uint32_t* const words = words_.data();
    std::uint64_t lowest = lowest_node_;
    for (std::size_t i = 0; i < count; ++i) {
      if (!nodes.is_known(i)) continue;
      const SideKeys<Type> sides(nodes.of(i));
      for (int side = 0; side < Fold::sides; ++side)
        words[sides.smallest[side] & mask] ^= static_cast<std::uint32_t>(sides.keys[side] >> 32);
      // These two have every corner between them.
      lowest = std::min({lowest, sides.smallest[Fold::first_half], sides.smallest[Fold::other_half]});
    }
    lowest_node_ = lowest;
  });
}

void ExteriorSides::mark_open_slots(std::uint32_t trusted) {
  open_.resize(words_.size());
  std::uint64_t open_count = 0;
  for (std::size_t slot = 0; slot < words_.size(); ++slot) {
    const bool open = (words_[slot] & trusted) != 0;
    open_[slot] = open;
    open_count += open;
    words_[slot] = open ? no_candidate : 0;
  }
  candidates_.reserve(2 * open_count);
}

void ExteriorSides::mark_all_slots() {
  open_.assign(open_.size(), 1);
  words_.assign(words_.size(), no_candidate);
  candidates_.clear();
  crowded_.clear();
}

void ExteriorSides::list_all_open_sides(MeshData& database, const std::vector<ElementRuns>& lists) {
  std::uint64_t solid = 0;
  for (const ElementRuns& list : lists) {
    for_kind(list.type(),
             [&](auto type) { list_open_sides<type()>(database, list, static_cast<std::uint32_t>(solid)); });
    solid += list.size();
  }
}

template <ElementType Type>
void ExteriorSides::list_open_sides(MeshData& database, const ElementRuns& list, std::uint32_t solid) {
  using Fold = SideFold<Type>;
  const ElementShape& shape = element_shape(Type);
  ChunkCorners nodes(database, Fold::corners, rotation_);
  list.for_each_chunk([&](const Elem* elements, std::size_t count) {
    nodes.read(elements, count);
    const std::uint64_t mask = mask_;
    const unsigned char* const open = open_.data();
    for (std::size_t i = 0; i < count; ++i, ++solid) {
      const std::uint64_t* const corners = nodes.of(i);
      unsigned char any = 0;
      for (int corner = 0; corner < Fold::corners; ++corner) {
        any |= open[corners[corner] & mask];
      }
      if (any == 0 || !nodes.is_whole(i)) continue;
      std::uint64_t smallest[Fold::sides];
      Fold::fold(corners, smaller, smallest);
      for (int side = 0; side < Fold::sides; ++side)
        if (is_open(smallest[side] & mask)) list_side(smallest[side] & mask, corners, shape.sides[side], solid, side);
    }
  });
}

void ExteriorSides::list_side(std::uint64_t slot, const std::uint64_t* solid_corners, const SideShape& shape,
                              std::uint32_t solid, int side) {
  Corners corners{};
  for (std::uint32_t corner = 0; corner < shape.corner_count; ++corner)
    corners.nodes[corner] = solid_corners[shape.nodes[corner]];
  const std::uint64_t edges = sum_of_edges(corners.nodes, shape.corner_count);
  if (!put_in_order(corners)) return;
  // Edges that come in pairs vanish from the sum.
  sum_of_edges_ ^= edges;
  if (Candidate* const same = find(slot, corners)) {
    same->is_exterior = false;
    return;
  }
  const auto place = static_cast<std::uint32_t>(candidates_.size());
  Candidate& listed = *candidates_.append(1);
  listed.corners = corners;
  listed.solid = solid;
  listed.side = static_cast<unsigned char>(side);
  listed.is_exterior = true;
  std::uint32_t& first = words_[slot] == crowd ? crowded_.insert(key_of(corners), no_candidate) : words_[slot];
  listed.next = std::exchange(first, place);
}

ExteriorSides::Candidate* ExteriorSides::find(std::uint64_t slot, const Corners& corners) {
  std::uint32_t at = words_[slot];
  if (at == crowd) {
    const std::uint32_t* const first = crowded_.find(key_of(corners));
    at = first ? *first : no_candidate;
  }
  int passed = 0;
  for (; at != no_candidate; at = candidates_[at].next, ++passed)
    if (is_same_side(candidates_[at].corners, corners)) return &candidates_[at];
  if (passed > longest_chain && words_[slot] != crowd) spread_chain(slot);
  return nullptr;
}

// A node that very many sides share, the hub of a wheel say, would be walked through again for each of them.
void ExteriorSides::spread_chain(std::uint64_t slot) {
  std::uint32_t at = std::exchange(words_[slot], crowd);
  while (at != no_candidate) {
    Candidate& moved = candidates_[at];
    std::uint32_t& first = crowded_.insert(key_of(moved.corners), no_candidate);
    at = std::exchange(moved.next, std::exchange(first, at));
  }
}

} // namespace Tarn
