#pragma once

#include "mesh/database/ElementType.h"

#include <cstdint>

/// Combining the corner values of every side of a solid at once, what two sides have in common only once. `op` must not
/// mind the order of its operands. Sides are numbered as in `ElementShape`; `first_half` and `other_half` are two that
/// have all corners between them.
namespace Tarn {

template <ElementType Type> struct SideFold;

template <> struct SideFold<Tet> {
  static constexpr int corners = 4;
  static constexpr int sides = 4;
  static constexpr int first_half = 0;
  static constexpr int other_half = 3;
  template <class Op> static void fold(const std::uint64_t* v, Op op, std::uint64_t* out) {
    const std::uint64_t v01 = op(v[0], v[1]);
    const std::uint64_t v23 = op(v[2], v[3]);
    out[0] = op(v01, v[3]);
    out[1] = op(v23, v[1]);
    out[2] = op(v23, v[0]);
    out[3] = op(v01, v[2]);
  }
};

template <> struct SideFold<Hex> {
  static constexpr int corners = 8;
  static constexpr int sides = 6;
  static constexpr int first_half = 4;
  static constexpr int other_half = 5;
  template <class Op> static void fold(const std::uint64_t* v, Op op, std::uint64_t* out) {
    const std::uint64_t v01 = op(v[0], v[1]);
    const std::uint64_t v23 = op(v[2], v[3]);
    const std::uint64_t v45 = op(v[4], v[5]);
    const std::uint64_t v67 = op(v[6], v[7]);
    out[0] = op(op(v[0], v[3]), op(v[4], v[7]));
    out[1] = op(op(v[1], v[2]), op(v[5], v[6]));
    out[2] = op(v01, v45);
    out[3] = op(v23, v67);
    out[4] = op(v01, v23);
    out[5] = op(v45, v67);
  }
};

template <> struct SideFold<Wedge> {
  static constexpr int corners = 6;
  static constexpr int sides = 5;
  static constexpr int first_half = 0;
  static constexpr int other_half = 1;
  template <class Op> static void fold(const std::uint64_t* v, Op op, std::uint64_t* out) {
    const std::uint64_t v03 = op(v[0], v[3]);
    const std::uint64_t v14 = op(v[1], v[4]);
    const std::uint64_t v25 = op(v[2], v[5]);
    out[0] = op(op(v[0], v[1]), v[2]);
    out[1] = op(op(v[3], v[4]), v[5]);
    out[2] = op(v03, v14);
    out[3] = op(v14, v25);
    out[4] = op(v25, v03);
  }
};

template <> struct SideFold<Pyramid> {
  static constexpr int corners = 5;
  static constexpr int sides = 5;
  static constexpr int first_half = 0;
  static constexpr int other_half = 1;
  template <class Op> static void fold(const std::uint64_t* v, Op op, std::uint64_t* out) {
    const std::uint64_t v01 = op(v[0], v[1]);
    const std::uint64_t v23 = op(v[2], v[3]);
    out[0] = op(v01, v23);
    out[1] = op(v01, v[4]);
    out[2] = op(op(v[1], v[2]), v[4]);
    out[3] = op(v23, v[4]);
    out[4] = op(op(v[3], v[0]), v[4]);
  }
};

} // namespace Tarn
