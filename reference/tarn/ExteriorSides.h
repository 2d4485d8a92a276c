#pragma once

#include "mesh/database/Handle.h"
#include "reference/tarn/ElementRuns.h"
#include "reference/tarn/FlatMap.h"
#include "reference/tarn/PodArray.h"

#include <cstdint>
#include <vector>

namespace Tarn {

class MeshData;
struct SideShape;

/// The sides of a set of solids that only one of them has. Sides are the same when they have the same distinct corners,
/// so that a collapsed quadrilateral meets the triangle that it has become; those with fewer than three are no sides.
///
/// Every side is added, by exclusive or, as the upper half of a 64-bit product of its corners to a word that belongs to
/// its smallest corner: sides seen twice are gone again, and what is left tells at which corners a side is open. Only
/// the sides at these, a layer below the skin, are then compared corner by corner, so that one that three solids have
/// is told from one that a single solid has.
///
/// Different sides that vanish together by accident do not go unnoticed. The sides of a solid cover each of their edges
/// twice, so the sides that an odd number of solids has form a surface without a border, and without those overlooked
/// it would have one. Then all sides are compared. (To slip through, sides would have to vanish in 32 bits at each of
/// their smallest corners and enclose a volume by themselves, which takes two such accidents at once. Two
/// quadrilaterals crossed on the same corners make a border, too, and cost the time of the comparison.)
///
/// Fresh memory costs more than the work on it, so there is little: four bytes and a bit for each node, and the sides
/// that are compared.
class ExteriorSides {
public:
  /// The distinct corners of a side, by number, ascending; null ones before them where there are fewer than four.
  struct Corners {
    std::uint64_t nodes[4];
  };
  /// A side at an open corner.
  struct Candidate {
    Corners corners;
    std::uint32_t solid; ///< which solid, counted through all lists
    std::uint32_t next;  ///< the next candidate with the same word
    unsigned char side;  ///< which side of it
    bool is_exterior;    ///< false once another solid has it, or a shell covers it
  };

  /// Looks at all solids; `lists` holds no solid twice, and is borrowed for the call. A solid that lacks a corner is
  /// passed over. `trusted` are the bits of the words that are looked at; tests take few, to see accidents.
  ExteriorSides(MeshData& database, const std::vector<ElementRuns>& lists, std::uint32_t trusted = ~std::uint32_t(0));

  /// Takes the side with these corners out, if there is one.
  void cover(const Handle<0>* corners, int count);

  /// In the order of solids and sides; those that are not exterior are to be passed over.
  const PodArray<Candidate>& candidates() const { return candidates_; }

private:
  void choose_slots(MeshData& database, const std::vector<ElementRuns>& lists);
  template <ElementType Type> void toggle_sides(MeshData& database, const ElementRuns& list);
  void mark_open_slots(std::uint32_t trusted);
  void mark_all_slots();
  void list_all_open_sides(MeshData& database, const std::vector<ElementRuns>& lists);
  template <ElementType Type> void list_open_sides(MeshData& database, const ElementRuns& list, std::uint32_t solid);
  void list_side(std::uint64_t slot, const std::uint64_t* solid_corners, const SideShape& shape, std::uint32_t solid,
                 int side);
  Candidate* find(std::uint64_t slot, const Corners& corners);
  void spread_chain(std::uint64_t slot);
  bool is_open(std::uint64_t slot) const { return open_[slot] != 0; }
  template <class Call> static void for_kind(ElementType type, Call call);

  int rotation_ = 0;              ///< what turns a node's handle into its number
  std::uint64_t mask_ = 0;        ///< what turns a node's number into its slot
  PodArray<std::uint32_t> words_; ///< sums of sides; of open slots then the first candidate, or what stands for none
  PodArray<unsigned char> open_;  ///< for each slot whether some side may be open at it
  PodArray<Candidate> candidates_;
  std::uint64_t sum_of_edges_ = 0; ///< not null when the sides that an odd number of solids has have a border
  std::uint64_t lowest_node_ = ~std::uint64_t(0); ///< the smallest corner of any solid, 0 when one lacks a corner
  FlatMap<std::uint32_t> crowded_;                ///< first candidate by key, at crowded slots
};

} // namespace Tarn
