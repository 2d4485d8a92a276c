#pragma once

#include "LabelLog.h"
#include "group/GMeshGroup.h"
#include "model/GMeshLabels.h"
#include "model/GMeshModel.h"
#include "tests/support/NamedMeshes.h"
#include "tests/support/RecordingMeshData.h"

#include <vtkNew.h>
#include <vtkUnstructuredGrid.h>

#include <string>
#include <vector>

/// A label's text and place, in one line: "12 at 0.5 1 0".
std::string line_of(const LabelEntry& label);
/// The same of a text and a place.
std::string line(const std::string& text, std::array<double, 3> place);

/// A mesh that is shown under its one owner, and its labels. Nodes are not in the set, but are drawn with the elements.
class LabelledMesh {
public:
  explicit LabelledMesh(test_support::NamedMesh mesh_in);

  /// Draws the labels, without a view.
  void draw() { labels->RenderOverlay(nullptr, nullptr); }
  /// Draws and gives the lines of all labels, in order.
  std::vector<std::string> lines();
  /// The same, sorted.
  std::vector<std::string> sorted_lines();
  GMeshGroup* group() { return model.get_mesh(mesh.owner); }
  LabelLog& log() { return log_of(labels); }

  void label(Tarn::ElementType kind, int flag = OBUtil::LocalId) {
    model.set_element_label_flag(kind, static_cast<OBUtil::LabelType>(flag));
  }
  void label_nodes(int flag = OBUtil::LocalId) { model.set_node_label_flag(static_cast<OBUtil::LabelType>(flag)); }

  test_support::NamedMesh mesh;
  test_support::RecordingMeshData db;
  GMeshModel model;
  vtkNew<GMeshLabels> labels;
};
