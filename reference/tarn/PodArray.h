#pragma once

#include "reference/tarn/HugePages.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace Tarn {

/// A contiguous array of plain values that grows in place where the system can (`realloc` moves pages, not bytes) and
/// leaves new entries unwritten, so that large arrays cost what they hold and are touched once.
template <class T> class PodArray {
  static_assert(std::is_trivially_copyable<T>::value, "entries are moved as bytes");

public:
  PodArray() = default;
  ~PodArray() { std::free(data_); }
  PodArray(PodArray&& other) noexcept { swap(other); }
  PodArray& operator=(PodArray&& other) noexcept {
    swap(other);
    return *this;
  }
  PodArray(const PodArray&) = delete;
  PodArray& operator=(const PodArray&) = delete;

  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  T* data() { return data_; }
  const T* data() const { return data_; }
  T& operator[](std::size_t position) { return data_[position]; }
  const T& operator[](std::size_t position) const { return data_[position]; }
  T* begin() { return data_; }
  T* end() { return data_ + size_; }
  const T* begin() const { return data_; }
  const T* end() const { return data_ + size_; }
  /// Bytes of the entries; spare room is not counted, since nobody has touched it.
  std::size_t bytes() const { return size_ * sizeof(T); }

  /// Makes room for `size` entries in all, exactly.
  void reserve(std::size_t size) {
    if (size > capacity_) reallocate(size);
  }
  /// Makes room for `extra` more entries, and for later growth.
  void reserve_more(std::size_t extra) {
    if (extra > maximum() - size_) throw std::length_error("PodArray");
    if (size_ + extra <= capacity_) return;
    reallocate(size_ == 0 ? extra : std::max(size_ + extra, capacity_ + capacity_ / 2));
  }
  /// Adds entries that hold nothing yet and gives the first of them.
  T* append(std::size_t count) {
    reserve_more(count);
    size_ += count;
    return data_ + (size_ - count);
  }
  /// Adds copies of `value`.
  void append(std::size_t count, T value) { std::fill_n(append(count), count, value); }
  void push_back(T value) { *append(1) = value; }
  /// Sets the length; new entries hold nothing yet.
  void resize(std::size_t size) {
    if (size > size_) reserve_more(size - size_);
    size_ = size;
  }
  void assign(std::size_t size, T value) {
    resize(size);
    std::fill_n(data_, size, value);
  }
  /// Empties the array and keeps its room.
  void clear() { size_ = 0; }
  void swap(PodArray& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
  }

private:
  static constexpr std::size_t maximum() { return std::numeric_limits<std::size_t>::max() / 2 / sizeof(T); }

  void reallocate(std::size_t capacity) {
    if (capacity > maximum()) throw std::length_error("PodArray");
    const std::size_t bytes = capacity * sizeof(T);
    // Not aligned to large pages, which saves little: blocks freed would fit no later one, and the heap grow with each.
    void* const grown = std::realloc(static_cast<void*>(data_), bytes);
    if (!grown) throw std::bad_alloc();
    prefer_huge_pages(grown, bytes);
    data_ = static_cast<T*>(grown);
    capacity_ = capacity;
  }

  T* data_ = nullptr;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

} // namespace Tarn
