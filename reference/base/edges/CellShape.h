#pragma once

#include <vtkCellType.h>

/// How a cell's edges follow from its list of points.
enum class CellShape {
  None,           ///< nothing that is drawn as edges: no points, or a solid
  Points,         ///< vertices
  Chain,          ///< lines through all points in turn
  QuadraticChain, ///< end points, then the middle
  Loop,           ///< a polygon
  QuadraticLoop,  ///< corners, then the middle of each side, then perhaps points inside
  Pixel,          ///< a rectangle in the order of rows
  Strip,          ///< a triangle strip: its outline
  LinearSides,    ///< a quadrilateral of which two opposite sides have a middle
  Other,          ///< the cell itself has to be asked
};

inline CellShape shape_of(int cell_type) {
  switch (cell_type) {
  case VTK_VERTEX:
  case VTK_POLY_VERTEX:
    return CellShape::Points;
  case VTK_LINE:
  case VTK_POLY_LINE:
    return CellShape::Chain;
  case VTK_QUADRATIC_EDGE:
    return CellShape::QuadraticChain;
  case VTK_TRIANGLE:
  case VTK_QUAD:
  case VTK_POLYGON:
    return CellShape::Loop;
  case VTK_QUADRATIC_TRIANGLE:
  case VTK_BIQUADRATIC_TRIANGLE:
  case VTK_QUADRATIC_QUAD:
  case VTK_BIQUADRATIC_QUAD:
  case VTK_QUADRATIC_POLYGON:
    return CellShape::QuadraticLoop;
  case VTK_PIXEL:
    return CellShape::Pixel;
  case VTK_TRIANGLE_STRIP:
    return CellShape::Strip;
  case VTK_QUADRATIC_LINEAR_QUAD:
    return CellShape::LinearSides;
  case VTK_EMPTY_CELL:
  case VTK_TETRA:
  case VTK_VOXEL:
  case VTK_HEXAHEDRON:
  case VTK_WEDGE:
  case VTK_PYRAMID:
    return CellShape::None;
  default:
    return CellShape::Other;
  }
}

/// The number of corners of a `QuadraticLoop` of that type and number of points.
inline int corners_of(int cell_type, int points) {
  switch (cell_type) {
  case VTK_QUADRATIC_TRIANGLE:
  case VTK_BIQUADRATIC_TRIANGLE:
    return 3;
  case VTK_QUADRATIC_POLYGON:
    return points / 2;
  default:
    return 4;
  }
}
