#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace Tarn {

/// An opaque reference to an entity of the mesh database: `Handle<0>` a node, `Handle<1>` an element. It is passed by
/// value and means something to its database only. The value 0 is the null handle: no entity.
template <int Dim> struct Handle {
  std::uint64_t value = 0; ///< the database's own number of the entity
};

/// True when both name the same entity.
template <int Dim> inline bool operator==(Handle<Dim> left, Handle<Dim> right) { return left.value == right.value; }
/// True when they name different entities.
template <int Dim> inline bool operator!=(Handle<Dim> left, Handle<Dim> right) { return left.value != right.value; }
/// Orders handles as unsigned 64-bit integers.
template <int Dim> inline bool operator<(Handle<Dim> left, Handle<Dim> right) { return left.value < right.value; }

} // namespace Tarn

/// Hashes a handle by its value.
template <int Dim> struct std::hash<Tarn::Handle<Dim>> {
  /// The hash of the 64-bit value.
  std::size_t operator()(Tarn::Handle<Dim> handle) const noexcept { return std::hash<std::uint64_t>()(handle.value); }
};
