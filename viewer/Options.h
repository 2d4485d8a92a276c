#pragma once

#include "platform/base/OBUtil.h"
#include "platform/util/TovanColor.h"
#include "readers/MeshReader.h"
#include "viewer/IdSelection.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace viewer {

/// What decides the colour of an element.
enum class ColorBy {
  Owner, ///< the owner that it belongs to
  Kind,  ///< tetrahedron, quadrilateral and so on
};

/// The directions from which the mesh can be looked at; `PlusX` looks from +x towards the origin.
enum class ViewFrom { Iso, PlusX, MinusX, PlusY, MinusY, PlusZ, MinusZ };

/// Keeps the half space where the normal, times a point, is at least the distance. The normal is not zero.
struct ClipPlane {
  std::array<double, 3> normal{1, 0, 0}; ///< of any length
  double distance = 0;                   ///< in units of the normal's length
};

/// Which ids are written beside nodes and elements.
struct LabelOptions {
  OBUtil::LabelType nodes = OBUtil::NoLabel;
  std::array<OBUtil::LabelType, 10> elements{}; ///< by `Tarn::ElementType`, of which 0 does not count
};

/// How the mesh is drawn.
struct DisplayOptions {
  OBUtil::RenderMode render_mode = OBUtil::Shaded; ///< never `SmoothShaded` or `AsIs`
  double opacity = 0.5;                            ///< of surfaces in the translucent mode, 0 to 1
  double line_width = 1;                           ///< of edges, in pixels
  double point_size = 6;                           ///< of nodes, in pixels
  TovanColor line_color{0, 0, 0};                  ///< of edges and nodes
  TovanColor background{255, 255, 255};            ///< of the picture
  bool nodes = false;                              ///< whether all nodes are drawn
  bool edges = true;                               ///< whether edges are drawn
  double shrink = 1;                               ///< of each element about its centre, 0.1 to 1
  std::optional<ClipPlane> clip;                   ///< elements that it crosses stay whole
  ColorBy color_by = ColorBy::Owner;               ///< where surfaces get their colour
  LabelOptions labels;                             ///< none; shrunk elements have none
};

/// What a pick asks about, in pixels of the picture, origin at the lower left.
struct PickRequest {
  enum class Shape { Point, Box, Circle, Polygon };
  Shape shape = Shape::Point;
  std::vector<double> numbers; ///< X,Y; X0,Y0,X1,Y1 of two corners; X,Y,R; or X,Y of each corner of the polygon
};

/// What can be picked, and what is.
struct PickOptions {
  std::optional<PickRequest> request; ///< the pick to make without a window
  std::vector<std::string> filter;    ///< the pick filter; empty for the kinds of element that the mesh has
  bool through = false;               ///< whether region picks take hidden entities too
  bool whole = false;                 ///< whether region picks take only entities that are wholly inside
  std::vector<IdSelection> select;    ///< what is picked at the start
};

/// Which owners are drawn. They are applied in this order.
struct OwnerOptions {
  std::vector<std::string> only; ///< when there is any: exactly these
  std::vector<std::string> show; ///< these too
  std::vector<std::string> hide; ///< but not these
};

/// Where the mesh is seen from. The camera starts with the whole visible mesh in the picture.
struct CameraOptions {
  ViewFrom view = ViewFrom::Iso; ///< direction
  double zoom = 1;               ///< magnification after that
  bool parallel = false;         ///< parallel instead of perspective projection
};

/// Everything that the command line says.
struct Options {
  std::vector<std::string> files;                      ///< mesh files, at least one unless `sample`
  bool sample = false;                                 ///< the built-in sample instead of files
  std::optional<std::string> picture_if_no_display;    ///< the picture to write where no window can open
  std::optional<std::string> output;                   ///< the picture to write
  std::array<int, 2> resolution{1280, 720};            ///< width and height of picture or window, in pixels
  bool info = false;                                   ///< whether to describe the mesh on standard output
  readers::GroupBy group_by = readers::GroupBy::Owner; ///< where owners come from
  bool verbose = false;                                ///< whether to tell what is being done
  DisplayOptions display;
  OwnerOptions owners;
  CameraOptions camera;
  PickOptions picking;
};

} // namespace viewer
