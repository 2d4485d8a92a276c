#include "reference/base/edges/CellRuns.h"

#include <vtkAOSDataArrayTemplate.h>
#include <vtkAbstractArray.h>
#include <vtkArrayDispatch.h>
#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkSmartPointer.h>

#include <algorithm>
#include <numeric>

namespace {

vtkIdType number_of_cells(const std::vector<CellRun>& runs) {
  return std::accumulate(runs.begin(), runs.end(), vtkIdType{0},
                         [](vtkIdType sum, const CellRun& run) { return sum + run.count; });
}

// The number of components is known when compiled for the common ones, so that a tuple moves in one or two
// instructions.
template <int Components, class Value>
void repeat_tuples(const Value* in, const std::vector<CellRun>& runs, Value* out, int components) {
  const int n = Components > 0 ? Components : components;
  for (const CellRun& run : runs) {
    const Value* tuple = in + run.cell * n;
    for (vtkIdType i = 0; i < run.count; ++i, out += n)
      std::copy_n(tuple, n, out);
  }
}

struct RepeatTuples {
  const std::vector<CellRun>& runs;
  vtkDataArray* out_array;

  template <class Value> void operator()(vtkAOSDataArrayTemplate<Value>* array) const {
    const Value* in = array->GetPointer(0);
    Value* out = vtkAOSDataArrayTemplate<Value>::FastDownCast(out_array)->GetPointer(0);
    const int components = array->GetNumberOfComponents();
    switch (components) {
    case 1:
      return repeat_tuples<1>(in, runs, out, components);
    case 3:
      return repeat_tuples<3>(in, runs, out, components);
    case 4:
      return repeat_tuples<4>(in, runs, out, components);
    default:
      return repeat_tuples<0>(in, runs, out, components);
    }
  }
};

void repeat_one_by_one(vtkAbstractArray* in, const std::vector<CellRun>& runs, vtkAbstractArray* out) {
  vtkIdType to = 0;
  for (const CellRun& run : runs)
    for (vtkIdType i = 0; i < run.count; ++i)
      out->SetTuple(to++, run.cell, in);
}

vtkSmartPointer<vtkAbstractArray> make_like(vtkAbstractArray* in, vtkIdType tuples) {
  auto out = vtk::TakeSmartPointer(in->NewInstance());
  out->SetName(in->GetName());
  out->SetNumberOfComponents(in->GetNumberOfComponents());
  out->CopyComponentNames(in);
  if (in->HasInformation()) out->CopyInformation(in->GetInformation(), 1);
  out->SetNumberOfTuples(tuples);
  return out;
}

} // namespace

void copy_cell_data(vtkCellData* in, const std::vector<CellRun>& runs, vtkCellData* out) {
  const vtkIdType cells = number_of_cells(runs);
  for (int i = 0; i < in->GetNumberOfArrays(); ++i) {
    vtkAbstractArray* from = in->GetAbstractArray(i);
    if (from == in->GetGlobalIds()) continue;
    const vtkSmartPointer<vtkAbstractArray> to = make_like(from, cells);
    using Values = vtkArrayDispatch::AllTypes;
    auto* numbers = vtkArrayDownCast<vtkDataArray>(from);
    const RepeatTuples repeat{runs, vtkArrayDownCast<vtkDataArray>(to)};
    const bool flat = numbers && numbers->HasStandardMemoryLayout();
    if (!flat || !vtkArrayDispatch::DispatchByValueType<Values>::Execute(numbers, repeat))
      repeat_one_by_one(from, runs, to);
    const int place = out->AddArray(to);
    const int attribute = in->IsArrayAnAttribute(i);
    if (attribute >= 0) out->SetActiveAttribute(place, attribute);
  }
}
