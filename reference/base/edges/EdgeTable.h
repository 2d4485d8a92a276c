#pragma once

#include <vtkSmartPointer.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

/// The distinct edges of a mesh, in order of meeting. Each edge is kept at its smaller point, which has room for three
/// larger ones, as many as a regular surface needs, in a quarter of a cache line; further ones hang on a chain. `Array`
/// is the VTK array that holds the connectivity; its values must be able to hold twice the number of edges.
template <class Array> class EdgeTable {
public:
  using Id = typename Array::ValueType;

  /// Room for `capacity` edges between points 0 to `points` - 1.
  EdgeTable(Id points, Id capacity) : neighbours_(new Neighbours[static_cast<std::size_t>(points)]) {
    std::fill_n(neighbours_.get(), points, Neighbours{{none, none, none}, none});
    resize(capacity);
  }

  /// Makes sure that `more` edges can be added.
  void make_room(Id more) {
    if (count() + more > capacity_) resize(std::max(2 * capacity_, count() + more));
  }

  /// Adds an edge, unless it is there in either direction. There must be room.
  void add(Id a, Id b) {
    Neighbours& neighbours = neighbours_[static_cast<std::size_t>(std::min(a, b))];
    const Id larger = std::max(a, b);
    for (Id& place : neighbours.first) {
      if (place == larger) return;
      if (place == none) {
        place = larger;
        append(a, b);
        return;
      }
    }
    if (add_to_chain(neighbours, larger)) append(a, b);
  }

  Id count() const { return static_cast<Id>((last_ - ends_) / 2); }

  /// Hands over the end points, two for each edge, in the direction in which it was met first.
  vtkSmartPointer<Array> take_ends() {
    const vtkIdType values = last_ - ends_;
    ends_array_->Resize(values);
    ends_array_->SetNumberOfValues(values);
    return ends_array_;
  }

private:
  static constexpr Id none = -1;

  /// The larger ends of the edges at a point, in order of adding: the first three, then a chain in `links_`.
  struct Neighbours {
    Id first[3];
    Id chain;
  };
  struct Link {
    Id neighbour;
    Id next;
  };

  // Never written to before it is used: memory that is not touched costs nothing.
  void resize(Id capacity) {
    const std::ptrdiff_t used = last_ - ends_;
    ends_array_->Resize(2 * static_cast<vtkIdType>(capacity));
    ends_ = ends_array_->GetPointer(0);
    last_ = ends_ + used;
    capacity_ = capacity;
  }

  void append(Id a, Id b) {
    *last_++ = a;
    *last_++ = b;
  }

  bool add_to_chain(Neighbours& neighbours, Id larger) {
    for (Id link = neighbours.chain; link != none; link = links_[static_cast<std::size_t>(link)].next)
      if (links_[static_cast<std::size_t>(link)].neighbour == larger) return false;
    links_.push_back({larger, neighbours.chain});
    neighbours.chain = static_cast<Id>(links_.size()) - 1;
    return true;
  }

  std::unique_ptr<Neighbours[]> neighbours_;
  std::vector<Link> links_;
  vtkSmartPointer<Array> ends_array_ = vtkSmartPointer<Array>::New();
  Id* ends_ = nullptr;
  // A pointer rather than a count: what is written through it cannot be the pointer itself, so it stays in a register.
  Id* last_ = nullptr;
  Id capacity_ = 0;
};
