#pragma once

#include "mesh/database/ElementType.h"
#include "mesh/database/Handle.h"
#include "reference/tarn/PodArray.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tarn {

class MeshData;

/// Elements of one kind, each with a position, in the order added: runs of handles and positions that both count up.
/// An owner's elements are few runs, however many they are, so that keeping them costs nothing.
class ElementRuns {
public:
  /// One run; its k-th element has the handle `first + k` and the position `position + k`.
  struct Run {
    std::uint64_t first;
    std::uint32_t count;
    std::int32_t position;
  };
  /// How many elements are handed out at once: few enough for their nodes to stay in the fastest cache.
  static constexpr std::size_t chunk_size = 256;

  explicit ElementRuns(ElementType type) : type_(type) {}

  /// The kind of all elements.
  ElementType type() const { return type_; }
  const PodArray<Run>& runs() const { return runs_; }
  /// How many elements there are.
  std::uint64_t size() const { return size_; }

  /// Adds the elements that have a position.
  void append(const std::vector<Handle<1>>& elements, const std::vector<int>& positions);
  void append(const Run& run);

  /// Calls `take(elements, count)` with up to `chunk_size` elements at a time, in order.
  template <class Take> void for_each_chunk(Take take) const {
    std::array<Handle<1>, chunk_size> chunk;
    std::size_t filled = 0;
    for (const Run& run : runs_) {
      for (std::uint32_t done = 0; done < run.count;) {
        const std::size_t taken = std::min<std::size_t>(chunk_size - filled, run.count - done);
        for (std::size_t i = 0; i < taken; ++i)
          chunk[filled + i].value = run.first + done + i;
        filled += taken;
        done += static_cast<std::uint32_t>(taken);
        if (filled < chunk_size) continue;
        take(chunk.data(), filled);
        filled = 0;
      }
    }
    if (filled != 0) take(chunk.data(), filled);
  }

private:
  ElementType type_;
  PodArray<Run> runs_;
  std::uint64_t size_ = 0;
};

/// Adds elements to the last of the lists if that is of their kind, else to a new one. The kind is that of the first
/// element that the database knows. False: nothing was added, since none is known, or none is of a kind in `types`.
bool append_of_kind(MeshData& database, const std::vector<ElementType>& types, const std::vector<Handle<1>>& elements,
                    const std::vector<int>& positions, std::vector<ElementRuns>& lists);

/// Leaves out every element that was there before, in whichever list.
void drop_repeated(std::vector<ElementRuns>& lists);

} // namespace Tarn
