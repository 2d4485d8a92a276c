#include "reference/tarn/ExteriorSides.h"

#include "mesh/database/MeshData.h"
#include "reference/tarn/ElementShape.h"
#include "reference/tarn/SideFolds.h"

#include <algorithm>
#include <type_traits>
#include <vector>

namespace Tarn {

namespace {

using Node = Handle<0>;
using Elem = Handle<1>;

constexpr std::uint32_t no_candidate = 0xffffffffu;

// Null stays null. Two multiplications: sums of neighbouring handles must not be told by the handles' own sum.
std::uint64_t mixed(std::uint64_t node) {
  node *= 0x9e3779b97f4a7c15ull;
  node ^= node >> 32;
  return node * 0xd6e8feb86659fd93ull;
}

std::uint64_t sum(std::uint64_t a, std::uint64_t b) { return a + b; }
std::uint64_t smaller(std::uint64_t a, std::uint64_t b) { return a < b ? a : b; }

/// What there is to know of all sides of a solid at once.
template <ElementType Type> struct SideKeys {
  using Fold = SideFold<Type>;
  std::uint64_t keys[Fold::sides];     ///< sums of the corners' mixes
  std::uint64_t smallest[Fold::sides]; ///< smallest corners

  explicit SideKeys(const std::uint64_t* corners) {
    std::uint64_t mixes[Fold::corners];
    std::transform(corners, corners + Fold::corners, mixes, mixed);
    Fold::fold(mixes, sum, keys);
    Fold::fold(corners, smaller, smallest);
  }
};

/// The corners of a chunk of elements.
class ChunkCorners {
public:
  ChunkCorners(MeshData& database, std::size_t stride)
      : database_(database), stride_(stride), nodes_(stride * ElementRuns::chunk_size) {}

  void read(const Elem* elements, std::size_t count) {
    // What the database does not know it leaves untouched.
    for (std::size_t i = 0; i < count; ++i)
      nodes_[i * stride_] = 0;
    MeshData::Count length = count * stride_;
    static_assert(sizeof(Node) == sizeof(std::uint64_t) && std::is_standard_layout_v<Node>, "a handle is its value");
    database_.get_connectivity(count, elements, &length, reinterpret_cast<Node*>(nodes_.data()));
  }
  bool is_known(std::size_t element) const { return nodes_[element * stride_] != 0; }
  const std::uint64_t* of(std::size_t element) const { return nodes_.data() + element * stride_; }

private:
  MeshData& database_;
  std::size_t stride_;
  std::vector<std::uint64_t> nodes_;
};

bool all_differ(const ExteriorSides::Corners& corners) {
  const Node* const at = corners.nodes;
  return at[0] != at[1] && at[1] != at[2] && at[2] != at[0] && at[3] != at[0] && at[3] != at[1] && at[3] != at[2];
}

ExteriorSides::Corners corners_of(const SideShape& side, const std::uint64_t* solid_corners, std::uint64_t key) {
  ExteriorSides::Corners corners{};
  corners.count = side.corner_count;
  corners.key = key;
  for (int corner = 0; corner < corners.count; ++corner)
    corners.nodes[corner].value = solid_corners[side.nodes[corner]];
  return corners;
}

/// Leaves repeated corners out of the key; gives the number of different ones.
int merge_repeated(ExteriorSides::Corners& corners) {
  int distinct = 0;
  corners.key = 0;
  const Node* const first = corners.nodes;
  for (const Node* node = first; node != first + corners.count; ++node) {
    if (std::find(first, node, *node) != node) continue;
    ++distinct;
    corners.key += mixed(node->value);
  }
  return distinct;
}

bool all_among(const ExteriorSides::Corners& some, const ExteriorSides::Corners& corners) {
  const Node* const end = corners.nodes + corners.count;
  return std::all_of(some.nodes, some.nodes + some.count,
                     [&corners, end](Node node) { return std::find(corners.nodes, end, node) != end; });
}

bool is_same_side(const ExteriorSides::Corners& a, const ExteriorSides::Corners& b) {
  return a.key == b.key && all_among(a, b) && all_among(b, a);
}

// Kinds whose solids share nodes with many others need fewer slots.
std::uint64_t expected_nodes(const ElementRuns& list) {
  if (list.type() == Tet) return list.size() / 4;
  return list.type() == Hex ? list.size() : list.size() / 2;
}

} // namespace

ExteriorSides::ExteriorSides(MeshData& database, const std::vector<ElementRuns>& lists) {
  if (lists.empty()) return;
  choose_slots(database, lists);
  for (const ElementRuns& list : lists)
    for_kind(list.type(), [&](auto type) { toggle_sides<type()>(database, list); });
  mark_open_slots();
  std::uint64_t solid = 0;
  for (const ElementRuns& list : lists) {
    for_kind(list.type(),
             [&](auto type) { list_open_sides<type()>(database, list, static_cast<std::uint32_t>(solid)); });
    solid += list.size();
  }
}

void ExteriorSides::cover(const Node* corners, int count) {
  if (words_.empty()) return;
  Corners shell{};
  std::copy_n(corners, count, shell.nodes);
  shell.count = count;
  merge_repeated(shell);
  const std::uint64_t slot = slot_of_(std::min_element(corners, corners + count)->value);
  if (states_[slot] != Listed) return;
  for (auto at = static_cast<std::uint32_t>(words_[slot]); at != no_candidate; at = candidates_[at].next)
    if (is_same_side(candidates_[at].corners, shell)) candidates_[at].is_exterior = false;
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

// About one slot a node. Handles may be anything, addresses for example: low bits that never change are left out. A
// poor choice costs time only.
void ExteriorSides::choose_slots(MeshData& database, const std::vector<ElementRuns>& lists) {
  std::uint64_t nodes = 0;
  for (const ElementRuns& list : lists)
    nodes += expected_nodes(list);
  std::uint64_t slots = 1024;
  while (slots < nodes)
    slots *= 2;
  slot_of_.mask = slots - 1;
  words_.assign(slots, 0);

  const ElementRuns::Run& run = lists.front().runs()[0];
  std::vector<Elem> elements(std::min<std::size_t>(ElementRuns::chunk_size, run.count));
  for (std::size_t i = 0; i < elements.size(); ++i)
    elements[i].value = run.first + i;
  ChunkCorners sample(database, 4);
  sample.read(elements.data(), elements.size());
  std::uint64_t changing = 0;
  for (std::size_t i = 0; i < elements.size(); ++i)
    for (std::size_t corner = 0; corner < 4 && sample.is_known(i); ++corner)
      changing |= sample.of(i)[corner] ^ sample.of(i)[0];
  while (changing != 0 && (changing >> slot_of_.shift & 1) == 0)
    ++slot_of_.shift;
}

template <ElementType Type> void ExteriorSides::toggle_sides(MeshData& database, const ElementRuns& list) {
  using Fold = SideFold<Type>;
  ChunkCorners nodes(database, Fold::corners);
  list.for_each_chunk([&](const Elem* elements, std::size_t count) {
    nodes.read(elements, count);
    // Copies, which no word written to can be mistaken for.
    const Slots slot_of = slot_of_;
    std::uint64_t* const words = words_.data();
    for (std::size_t i = 0; i < count; ++i) {
      if (!nodes.is_known(i)) continue;
      const SideKeys<Type> sides(nodes.of(i));
      for (int side = 0; side < Fold::sides; ++side)
        words[slot_of(sides.smallest[side])] ^= sides.keys[side];
    }
  });
}

void ExteriorSides::mark_open_slots() {
  states_.resize(words_.size());
  std::uint64_t open = 0;
  for (std::size_t slot = 0; slot < words_.size(); ++slot) {
    states_[slot] = words_[slot] != 0 ? Open : Closed;
    open += states_[slot];
  }
  candidates_.reserve(2 * open);
}

template <ElementType Type>
void ExteriorSides::list_open_sides(MeshData& database, const ElementRuns& list, std::uint32_t solid) {
  using Fold = SideFold<Type>;
  const ElementShape& shape = element_shape(Type);
  ChunkCorners nodes(database, Fold::corners);
  list.for_each_chunk([&](const Elem* elements, std::size_t count) {
    nodes.read(elements, count);
    const Slots slot_of = slot_of_;
    const unsigned char* const states = states_.data();
    for (std::size_t i = 0; i < count; ++i, ++solid) {
      const std::uint64_t* const corners = nodes.of(i);
      unsigned char any = Closed;
      for (int corner = 0; corner < Fold::corners; ++corner)
        any |= states[slot_of(corners[corner])];
      if (any == Closed || !nodes.is_known(i)) continue;
      const SideKeys<Type> sides(corners);
      for (int side = 0; side < Fold::sides; ++side) {
        const std::uint64_t slot = slot_of(sides.smallest[side]);
        // No side has a null corner.
        if (states_[slot] == Closed || sides.smallest[side] == 0) continue;
        list_side(slot, corners_of(shape.sides[side], corners, sides.keys[side]), solid, side);
      }
    }
  });
}

void ExteriorSides::list_side(std::uint64_t slot, Corners corners, std::uint32_t solid, int side) {
  if (!all_differ(corners) && merge_repeated(corners) < 3) return;
  if (states_[slot] == Open) {
    states_[slot] = Listed;
    words_[slot] = no_candidate;
  }
  const auto first = static_cast<std::uint32_t>(words_[slot]);
  for (std::uint32_t at = first; at != no_candidate; at = candidates_[at].next) {
    if (!is_same_side(candidates_[at].corners, corners)) continue;
    candidates_[at].is_exterior = false;
    return;
  }
  words_[slot] = candidates_.size();
  Candidate& listed = *candidates_.append(1);
  listed.corners = corners;
  listed.solid = solid;
  listed.next = first;
  listed.side = side;
  listed.is_exterior = true;
}

} // namespace Tarn
