#pragma once

#include <vtkSmartPointer.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

/// The distinct edges of a mesh, in order of meeting. Each edge hangs on a chain at its smaller point; links and end
/// points lie in flat arrays, and the end points are the connectivity that will be drawn. `Array` is the VTK array that
/// holds them; its values must be able to hold twice the number of edges.
template <class Array> class EdgeTable {
public:
  using Id = typename Array::ValueType;

  /// Room for `capacity` edges between points 0 to `points` - 1.
  EdgeTable(Id points, Id capacity) : first_(static_cast<std::size_t>(points), kNone) { reserve(capacity); }

  /// Makes room for at least `capacity` edges in all.
  void reserve(Id capacity) {
    if (capacity <= capacity_) return;
    // Left unwritten until used: memory that is never touched costs nothing.
    std::unique_ptr<Id[]> next(new Id[static_cast<std::size_t>(capacity)]);
    std::copy_n(next_.get(), count_, next.get());
    next_ = std::move(next);
    ends_array_->Resize(2 * static_cast<vtkIdType>(capacity));
    ends_ = ends_array_->GetPointer(0);
    capacity_ = capacity;
  }

  /// Makes room for one more edge.
  void reserve_one() {
    if (count_ == capacity_) reserve(2 * capacity_ + 16);
  }

  /// Adds an edge, unless it is there in either direction. There must be room.
  void add(Id a, Id b) {
    const Id smaller = std::min(a, b);
    const Id larger = std::max(a, b);
    Id& first = first_[static_cast<std::size_t>(smaller)];
    for (Id edge = first; edge != kNone; edge = next_[edge])
      if (std::max(ends_[2 * edge], ends_[2 * edge + 1]) == larger) return;
    ends_[2 * count_] = a;
    ends_[2 * count_ + 1] = b;
    next_[count_] = first;
    first = count_++;
  }

  Id points() const { return static_cast<Id>(first_.size()); }
  Id count() const { return count_; }

  /// Hands over the end points, two for each edge, in the direction in which it was met first.
  vtkSmartPointer<Array> take_ends() {
    ends_array_->Resize(2 * static_cast<vtkIdType>(count_));
    ends_array_->SetNumberOfValues(2 * static_cast<vtkIdType>(count_));
    return ends_array_;
  }

private:
  static constexpr Id kNone = -1;

  std::vector<Id> first_;
  std::unique_ptr<Id[]> next_;
  vtkSmartPointer<Array> ends_array_ = vtkSmartPointer<Array>::New();
  Id* ends_ = nullptr;
  Id count_ = 0;
  Id capacity_ = 0;
};
