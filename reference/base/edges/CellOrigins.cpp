#include "reference/base/edges/CellOrigins.h"

#include <vtkAOSDataArrayTemplate.h>
#include <vtkAbstractArray.h>
#include <vtkArrayDispatch.h>
#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkSmartPointer.h>

#include <algorithm>
#include <numeric>

namespace {

vtkIdType number_of_cells(const CellOrigins& origins) {
  return std::accumulate(origins.lines_of_cell.begin(), origins.lines_of_cell.end(),
                         static_cast<vtkIdType>(origins.vertices.size()));
}

/// The tuples of one array, spread over the output cells. `Components` is 0 when not known before the run.
template <int Components, class Value>
void spread(const Value* in, const CellOrigins& origins, Value* out, int components) {
  const int n = Components > 0 ? Components : components;
  for (const vtkIdType cell : origins.vertices)
    out = std::copy_n(in + cell * n, n, out);
  for (const int lines : origins.lines_of_cell) {
    for (int i = 0; i < lines; ++i)
      out = std::copy_n(in, n, out);
    in += n;
  }
}

struct SpreadTuples {
  const CellOrigins& origins;
  vtkDataArray* to;

  template <class Array> void operator()(Array* from) const {
    auto* const out = Array::FastDownCast(to)->GetPointer(0);
    const int components = from->GetNumberOfComponents();
    switch (components) {
    case 1:
      return spread<1>(from->GetPointer(0), origins, out, components);
    case 3:
      return spread<3>(from->GetPointer(0), origins, out, components);
    case 4:
      return spread<4>(from->GetPointer(0), origins, out, components);
    default:
      return spread<0>(from->GetPointer(0), origins, out, components);
    }
  }
};

/// For arrays of strings, bits and other layouts.
void spread_one_by_one(vtkAbstractArray* from, const CellOrigins& origins, vtkAbstractArray* to) {
  vtkIdType place = 0;
  for (const vtkIdType cell : origins.vertices)
    to->SetTuple(place++, cell, from);
  for (std::size_t cell = 0; cell < origins.lines_of_cell.size(); ++cell)
    for (int i = 0; i < origins.lines_of_cell[cell]; ++i)
      to->SetTuple(place++, static_cast<vtkIdType>(cell), from);
}

vtkSmartPointer<vtkAbstractArray> make_like(vtkAbstractArray* from, vtkIdType tuples) {
  auto to = vtk::TakeSmartPointer(from->NewInstance());
  to->SetName(from->GetName());
  to->SetNumberOfComponents(from->GetNumberOfComponents());
  to->CopyComponentNames(from);
  if (from->HasInformation()) to->CopyInformation(from->GetInformation(), 1);
  to->SetNumberOfTuples(tuples);
  return to;
}

template <class Value> using Flat = vtkAOSDataArrayTemplate<Value>;
using FlatArrays =
    vtkTypeList::Create<Flat<char>, Flat<signed char>, Flat<unsigned char>, Flat<short>, Flat<unsigned short>,
                        Flat<int>, Flat<unsigned int>, Flat<long>, Flat<unsigned long>, Flat<long long>,
                        Flat<unsigned long long>, Flat<float>, Flat<double>>;

} // namespace

void copy_cell_data(vtkCellData* in, const CellOrigins& origins, vtkCellData* out) {
  const vtkIdType cells = number_of_cells(origins);
  for (int i = 0; i < in->GetNumberOfArrays(); ++i) {
    vtkAbstractArray* from = in->GetAbstractArray(i);
    if (from == in->GetGlobalIds()) continue;
    const vtkSmartPointer<vtkAbstractArray> to = make_like(from, cells);
    SpreadTuples tuples{origins, vtkArrayDownCast<vtkDataArray>(to)};
    auto* const numbers = vtkArrayDownCast<vtkDataArray>(from);
    if (!numbers || !vtkArrayDispatch::DispatchByArray<FlatArrays>::Execute(numbers, tuples))
      spread_one_by_one(from, origins, to);
    const int place = out->AddArray(to);
    const int attribute = in->IsArrayAnAttribute(i);
    if (attribute >= 0) out->SetActiveAttribute(place, attribute);
  }
}
