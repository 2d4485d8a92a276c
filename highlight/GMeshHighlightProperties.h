#pragma once

#include "mesh/orbel_mesh_api.h"
#include "platform/util/TovanColor.h"

class vtkProperty;

/// How picked, highlighted and pre-selected mesh entities look. The host makes one, may change it at any time, and
/// hands it to `GMeshHighlight`; views share the three VTK properties, so that a change shows at the next render.
///
/// Alpha never reaches a property. An all-zero colour stands for the default.
class ORBEL_MESH_API GMeshHighlightProperties {
public:
  /// Highlights in the colour table's colour, the pre-selection in red; lines of 3 pixels, points of 6.
  GMeshHighlightProperties();
  /// Releases the three properties.
  ~GMeshHighlightProperties();
  GMeshHighlightProperties(const GMeshHighlightProperties&) = delete;
  /// Copies colours and property pointers as they are, without taking references: both objects then release the same
  /// properties, so only one of them may be destroyed.
  GMeshHighlightProperties& operator=(const GMeshHighlightProperties& other);

  /// Colour of highlights and edge highlights; all-zero takes the colour table's colour of this moment.
  void set_highlight_color(TovanColor color);
  /// Colour of the pre-selection; all-zero is red.
  void set_preselect_color(TovanColor color);
  /// Line width in pixels of highlights and edge highlights; the pre-selection keeps its own.
  void set_highlight_line_width(float width);
  /// Point size in pixels of highlights and edge highlights; the pre-selection keeps its own.
  void set_highlight_point_size(float size);

  /// For highlighted entities, lit; owned by this object, as are the next two.
  vtkProperty* highlight_property();
  /// For highlighted edges: unlit wireframe.
  vtkProperty* edge_highlight_property();
  /// For the pre-selected entity: unlit wireframe.
  vtkProperty* pre_select_property();

private:
  TovanColor highlight_color_;
  TovanColor preselect_color_;
  vtkProperty* highlight_property_;
  vtkProperty* edge_highlight_property_;
  vtkProperty* pre_select_property_;
};
