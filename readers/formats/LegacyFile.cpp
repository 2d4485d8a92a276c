// Legacy VTK files.

#include "readers/DataSetDraft.h"
#include "readers/QuietVtk.h"
#include "readers/Refusal.h"
#include "readers/formats/FormatReader.h"
#include "readers/formats/LegacyHeader.h"

#include <vtkDataSet.h>
#include <vtkDataSetReader.h>
#include <vtkNew.h>

namespace readers {

namespace {

MeshDraft parse(const Source& source) {
  const QuietVtk quiet;
  vtkNew<vtkDataSetReader> reader;
  reader->SetFileName(source.path.c_str());
  reader->ReadAllScalarsOn();
  reader->ReadAllFieldsOn();
  reader->Update();
  quiet.refuse_errors(source.path);
  if (!reader->GetOutput()) throw Refusal("holds no mesh");
  MeshDraft draft;
  add_data_set(draft, *reader->GetOutput(), source.name, source.is_block);
  return draft;
}

} // namespace

FormatReader legacy_vtk_format() {
  return {{"VTK legacy", {".vtk"}}, [](const Source& source) { check_legacy_vtk(source.bytes.view()); }, parse, true};
}

} // namespace readers
