// VTK's XML files of a single data set.

#include "readers/DataSetDraft.h"
#include "readers/OwnerArrays.h"
#include "readers/QuietVtk.h"
#include "readers/formats/FormatReader.h"
#include "readers/formats/XmlHeader.h"

#include <vtkDataArraySelection.h>
#include <vtkDataSet.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkRectilinearGrid.h>
#include <vtkStructuredGrid.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLImageDataReader.h>
#include <vtkXMLPolyDataReader.h>
#include <vtkXMLRectilinearGridReader.h>
#include <vtkXMLStructuredGridReader.h>
#include <vtkXMLUnstructuredGridReader.h>

#include <set>

namespace readers {

namespace {

// The arrays that the file names as global ids, by attribute.
std::set<std::string> global_id_arrays(std::string_view text) {
  std::set<std::string> names;
  XmlScan scan(text);
  for (XmlTag tag; scan.next(tag) && tag.name != "AppendedData";)
    if (tag.name == "PointData" || tag.name == "CellData")
      if (const auto name = tag.attribute("GlobalIds")) names.insert(without_entities(*name));
  return names;
}

// Results are not asked for: they may be many times the mesh.
void select_arrays(vtkDataArraySelection& selection, const std::set<std::string>& wanted, bool owners) {
  for (int i = 0; i < selection.GetNumberOfArrays(); ++i) {
    const std::string name = selection.GetArrayName(i);
    const bool needed = wanted.count(name) > 0 || (owners && (is_owner_array(name) || name == "vtkGhostType"));
    selection.SetArraySetting(name.c_str(), needed ? 1 : 0);
  }
}

template <typename Reader> MeshDraft parse_xml(const Source& source) {
  const QuietVtk quiet;
  vtkNew<Reader> reader;
  reader->SetFileName(source.path.c_str());
  reader->UpdateInformation();
  quiet.refuse_errors(source.path);
  const std::set<std::string> ids = global_id_arrays(source.bytes.view());
  select_arrays(*reader->GetPointDataArraySelection(), ids, false);
  select_arrays(*reader->GetCellDataArraySelection(), ids, true);
  reader->Update();
  quiet.refuse_errors(source.path);
  MeshDraft draft;
  add_data_set(draft, *reader->GetOutput(), source.name, source.is_block);
  return draft;
}

} // namespace

FormatReader vtu_format() {
  return {{"VTK XML unstructured grid", {".vtu"}},
          [](const Source& source) { check_vtk_xml(source.bytes.view(), "UnstructuredGrid"); },
          parse_xml<vtkXMLUnstructuredGridReader>,
          true};
}

FormatReader vtp_format() {
  return {{"VTK XML poly data", {".vtp"}},
          [](const Source& source) { check_vtk_xml(source.bytes.view(), "PolyData"); },
          parse_xml<vtkXMLPolyDataReader>,
          true};
}

FormatReader vts_format() {
  return {{"VTK XML structured grid", {".vts"}},
          [](const Source& source) { check_vtk_xml(source.bytes.view(), "StructuredGrid"); },
          parse_xml<vtkXMLStructuredGridReader>,
          true};
}

FormatReader vtr_format() {
  return {{"VTK XML rectilinear grid", {".vtr"}},
          [](const Source& source) { check_vtk_xml(source.bytes.view(), "RectilinearGrid"); },
          parse_xml<vtkXMLRectilinearGridReader>,
          true};
}

FormatReader vti_format() {
  return {{"VTK XML image data", {".vti"}},
          [](const Source& source) { check_vtk_xml(source.bytes.view(), "ImageData"); },
          parse_xml<vtkXMLImageDataReader>,
          true};
}

} // namespace readers
