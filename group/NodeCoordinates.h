#pragma once

#include <vtkSmartPointer.h>

class vtkPoints;
class vtkTypeUInt64Array;
namespace Tarn {
class MeshData;
}

/// The points of nodes given by their handles, in that order, read from the database 1000 at a time. Single precision,
/// or double where the nodes lie too far from the origin for that. Nodes that the database does not answer for lie at
/// the origin.
vtkSmartPointer<vtkPoints> read_points(Tarn::MeshData* database, vtkTypeUInt64Array* nodes);
