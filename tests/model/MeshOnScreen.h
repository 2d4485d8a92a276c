#pragma once

#include "ModelScene.h"
#include "Screen.h"

#include <gtest/gtest.h>

#include <cmath>

const TovanColor black(0, 0, 0, 255);

inline Rgb rgb(TovanColor color) { return {color.r, color.g, color.b}; }

inline Rgb rgb(const double* color) {
  return {static_cast<int>(std::lround(color[0] * 255)), static_cast<int>(std::lround(color[1] * 255)),
          static_cast<int>(std::lround(color[2] * 255))};
}

/// `over` at this opacity on `under`.
inline Rgb mix(const Rgb& over, const Rgb& under, double opacity) {
  const auto channel = [&](int a, int b) { return static_cast<int>(std::lround(a * opacity + b * (1 - opacity))); };
  return {channel(over.r, under.r), channel(over.g, under.g), channel(over.b, under.b)};
}

/// How many pixels are not background.
inline int drawn_pixels(const Picture& picture) {
  return picture.count_if([](const Rgb& pixel) { return distance(pixel, Screen::background) > 32; });
}

/// Pixels of a unit quadrilateral seen by `MeshOnScreen`.
constexpr int unit = 100 * 100;

/// Whether that many are of the colour; a black outline takes some.
inline bool covers_a_unit(const Picture& picture, TovanColor color) {
  const int count = picture.count(rgb(color));
  return count > unit - 450 && count <= unit;
}

/// A model whose edges are black and that is looked at from +z, 100 pixels a unit, the picture's centre at 2, 1.5.
class MeshOnScreen : public testing::Test {
protected:
  void SetUp() override {
    model.set_line_color(black);
    look_from_above(screen);
  }
  void TearDown() override { GModel::mNormalDirectedLighting = false; }

  static void look_from_above(Screen& screen) { screen.look_at({2.0, 1.5, 0.0}, {0.0, 0.0, 1.0}, 3.0); }

  /// A unit quadrilateral with its lowest corner at x, y.
  QuadOwner add(double x, double y, TovanColor color) {
    const QuadOwner q = add_quad_owner(db, x, y);
    model.add_mesh(q.owner, q.mesh, color, 1.0f, false);
    return q;
  }

  Rgb pixel_at(const Picture& picture, const Point& point) {
    const auto pixel = screen.pixel_of(point);
    return picture.at(pixel[0], pixel[1]);
  }

  Screen screen;
  Tarn::MeshDatabase db;
  RecordingModel model{&db};
};
