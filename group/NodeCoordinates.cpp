#include "group/NodeCoordinates.h"

#include "group/CoordinateRange.h"
#include "mesh/database/MeshData.h"

#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkTypeUInt64Array.h>

#include <algorithm>
#include <array>

namespace {

constexpr vtkIdType batch_size = 1000;

struct Batch {
  std::array<Tarn::Handle<0>, batch_size> nodes;
  std::array<double, batch_size> x, y, z;

  void read(Tarn::MeshData* database, const vtkTypeUInt64* handles, vtkIdType count) {
    std::transform(handles, handles + count, nodes.begin(),
                   [](vtkTypeUInt64 handle) { return Tarn::Handle<0>{handle}; });
    // What the database leaves alone must not be the previous batch's.
    x.fill(0);
    y.fill(0);
    z.fill(0);
    database->get_coordinate_arrays(static_cast<Tarn::MeshData::Count>(count), nodes.data(), x.data(), y.data(),
                                    z.data());
  }
};

template <class Value>
void interleave(std::size_t count, const double* x, const double* y, const double* z, Value* xyz) {
  for (std::size_t i = 0; i < count; ++i) {
    xyz[3 * i] = static_cast<Value>(x[i]);
    xyz[3 * i + 1] = static_cast<Value>(y[i]);
    xyz[3 * i + 2] = static_cast<Value>(z[i]);
  }
}

template <class Array>
vtkSmartPointer<Array> read_coordinates(Tarn::MeshData* database, vtkTypeUInt64Array* nodes, CoordinateRange& range) {
  const vtkIdType node_count = nodes->GetNumberOfTuples();
  const vtkTypeUInt64* handles = nodes->GetPointer(0);
  auto coordinates = vtkSmartPointer<Array>::New();
  coordinates->SetNumberOfComponents(3);
  auto* out = coordinates->WritePointer(0, 3 * node_count);
  Batch batch;
  for (vtkIdType done = 0; done < node_count; done += batch_size) {
    const vtkIdType count = std::min(batch_size, node_count - done);
    batch.read(database, handles + done, count);
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i)
      range.add(batch.x[i], batch.y[i], batch.z[i]);
    interleave(static_cast<std::size_t>(count), batch.x.data(), batch.y.data(), batch.z.data(), out + 3 * done);
  }
  return coordinates;
}

} // namespace

vtkSmartPointer<vtkPoints> read_points(Tarn::MeshData* database, vtkTypeUInt64Array* nodes) {
  auto points = vtkSmartPointer<vtkPoints>::New();
  CoordinateRange range;
  points->SetData(read_coordinates<vtkFloatArray>(database, nodes, range));
  // Far away meshes are rare: they are read twice, so that all others never take up double the memory.
  if (range.needs_double()) points->SetData(read_coordinates<vtkDoubleArray>(database, nodes, range));
  return points;
}
