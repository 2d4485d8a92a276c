#pragma once

#include <string>

/// A plate of two layers of 5 x 5 unit hexahedra, and where its parts are when a window of 640 x 480 shows it from +z
/// in parallel projection.
///
/// Hexahedron (i, j) of layer k, 1 being the upper, has the id 1 + i + 5 j + 25 k; node (i, j) of level k, 2 being the
/// uppermost, 1 + i + 6 j + 36 k. The layers belong to the owners "MaterialIds 1" and "MaterialIds 2".
namespace plate {

constexpr int width = 640, height = 480;

/// Pixels of a unit: the margin is 8 % of the plate.
constexpr double unit = height / (5 * 1.08);

/// The pixel at which x or y of the plate lies.
constexpr int column(double x) { return static_cast<int>(width / 2.0 + (x - 2.5) * unit); }
constexpr int row(double y) { return static_cast<int>(height / 2.0 + (y - 2.5) * unit); }

/// Writes the mesh to a file of the folder and gives its path.
std::string write(const std::string& folder);

} // namespace plate
