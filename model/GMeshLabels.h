#pragma once

#include "mesh/orbel_mesh_api.h"
#include "platform/base/GLabelMapper.h"
#include "platform/util/TovanColor.h"

#include <vtkTimeStamp.h>

class GMeshGroup;
class GMeshModel;

/// Draws the ids of a mesh: at its nodes, and at the centres of the cells that draw its elements. The input is the 2-D
/// data of a mesh group; the model's label flags say which ids. The list of labels is made anew at the next frame after
/// the group's entities, its colour or a flag changed.
class ORBEL_MESH_API GMeshLabels : public GLabelMapper {
public:
  /// Makes a mapper without a model, which labels nothing.
  static GMeshLabels* New();
  vtkTypeMacro(GMeshLabels, GLabelMapper)

  /// The model whose flags and database are asked, and by whose render mode labels are hidden; borrowed.
  void set_model(GMeshModel* model);
  /// Brings the labels up to date and draws them. An input that no mesh group built, or whose group is gone, leaves the
  /// labels as they are.
  void RenderOverlay(vtkViewport* viewport, vtkActor2D* actor) override;

protected:
  GMeshLabels();
  ~GMeshLabels() override;
  /// Adds the labels of all nodes and elements of the group that the flags ask for, and those of the edges of its
  /// triangles and quadrilaterals.
  void add_labels(GMeshGroup* group);
  /// Adds one label: the number, in the colour.
  void add_label(int id, double position[3], TovanColor color);

private:
  GMeshLabels(const GMeshLabels&) = delete;
  void operator=(const GMeshLabels&) = delete;

  struct Drawn;
  struct ElementsOfKind;
  void add_own_labels(GMeshGroup* group, bool with_adjacent_edges);
  void add_node_labels(const Drawn& drawn);
  void add_node_element_labels(const Drawn& drawn, bool global);
  void add_element_labels(const Drawn& drawn, ElementsOfKind& elements, bool global);
  void add_adjacent_edge_labels(const Drawn& drawn, const ElementsOfKind& triangles,
                                const ElementsOfKind& quadrilaterals);

  vtkTimeStamp build_time_;
  GMeshModel* model_ = nullptr;
};
