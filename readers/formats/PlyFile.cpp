// PLY files.

#include "readers/DataSetDraft.h"
#include "readers/QuietVtk.h"
#include "readers/formats/FormatReader.h"
#include "readers/formats/PlyHeader.h"

#include <vtkNew.h>
#include <vtkPLYReader.h>
#include <vtkPolyData.h>

namespace readers {

namespace {

MeshDraft parse(const Source& source) {
  const QuietVtk quiet;
  vtkNew<vtkPLYReader> reader;
  reader->SetFileName(source.path.c_str());
  reader->SetDuplicatePointsForFaceTexture(false);
  reader->Update();
  quiet.refuse_errors(source.path);
  MeshDraft draft;
  add_data_set(draft, *reader->GetOutput(), source.name, source.is_block);
  for (const auto& [name, count] : check_ply(source.bytes.view()))
    draft.leave_out("rows of element \"" + name + "\"", count);
  return draft;
}

} // namespace

FormatReader ply_format() {
  return {{"PLY", {".ply"}}, [](const Source& source) { check_ply(source.bytes.view()); }, parse, true};
}

} // namespace readers
