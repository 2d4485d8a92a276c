#pragma once

#include <vtkPolyData.h>
#include <vtkSMPTools.h>
#include <vtkSmartPointer.h>

/// Runs a filter on this thread only, so that its points and cells come in the same order every time.
template <class Filter> vtkSmartPointer<vtkPolyData> run_sequential(Filter* filter, vtkDataObject* input) {
  filter->SetInputDataObject(input);
  vtkSMPTools::LocalScope(vtkSMPTools::Config(1, "Sequential", false), [filter] { filter->Update(); });
  return filter->GetOutput();
}
