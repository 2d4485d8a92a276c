#pragma once

#include <vtkSmartPointer.h>

class vtkPolyData;
class vtkUnstructuredGrid;

/// What `vtkGeometryFilter` makes of a group's grid: the same points, vertices, lines and polygons, each in the grid's
/// order, and their data. Linear cells, which are all there are in most meshes, share the grid's arrays instead of
/// running the filter; quadratic faces it divides into triangles.
///
/// Every point of the grid must be used by a cell, as in the grids of groups.
vtkSmartPointer<vtkPolyData> make_surface(vtkUnstructuredGrid* grid);
/// The same surface with normals at its points, which are split where it is sharp.
vtkSmartPointer<vtkPolyData> make_smooth_surface(vtkUnstructuredGrid* grid);
