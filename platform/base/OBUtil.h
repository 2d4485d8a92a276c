#pragma once

/// Enumerations of the visualization base.
namespace OBUtil {

/// How a view draws the surfaces of a model.
enum RenderMode : int {
  Wireframe = 0,        ///< surfaces are not drawn
  HiddenLine = 1,       ///< surfaces in the background colour
  DimmedHiddenLine = 2, ///< as `HiddenLine` at opacity 0.8 over the edges, so that hidden edges show dimmed
  Shaded = 3,           ///< lit surfaces; the initial mode
  Translucent = 4,      ///< lit surfaces through which one sees, with depth peeling
  SmoothShaded = 5,     ///< as `Shaded`
  AsIs = 6,             ///< drawn as the actor's own property says, whatever the mode of the model
};

/// Which id a label shows.
enum LabelType : int {
  NoLabel = 0,        ///< no label
  LocalId = 1,        ///< the database's local id
  GlobalId = 2,       ///< the global id, where the entity has one
  NodeElementId = 12, ///< on nodes: the local id of the node's own element
};

} // namespace OBUtil
