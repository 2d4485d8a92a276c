#pragma once

#include "platform/base/orbel_base_api.h"

#include <memory>
#include <vector>

class vtkRenderWindow;
class vtkRenderer;

/// One renderer in one render window of the host. Every open view is known to the process: models hook themselves to
/// all of them, and to those that open later.
class ORBEL_BASE_API GView {
public:
  /// Opens a view in `window`, which is shared with the host; null makes a window of the view's own. The window gets
  /// one renderer more and loses its multisampling: windows on screen are smoothed after drawing instead. Pixel sizes
  /// are meant for 96 dots per inch and scale with the window's DPI; VTK's initial 72 counts as unknown and becomes 96.
  /// Models that are hooked to views make their props for it at once.
  explicit GView(vtkRenderWindow* window = nullptr);
  /// Closes the view: models drop the props that they made for it, the renderer leaves the window.
  virtual ~GView();
  GView(const GView&) = delete;
  GView& operator=(const GView&) = delete;

  /// The view's renderer, owned by the view; never null.
  vtkRenderer* renderer() const;
  /// The window, shared; never null.
  vtkRenderWindow* window() const;

  /// Draws a frame: `update_parts()` and `Render(this)` of each hooked model, then the window. A frame that somebody
  /// else asks the window for, such as an interactor, is drawn in the same way.
  void render();
  /// Draws a frame without 2-D props and without props that cannot be picked, surfaces opaque, so that the depth buffer
  /// holds the model alone: to be called before asking a picker itself for the visible entities of a region. The next
  /// `render()` shows the whole picture again.
  void render_depth();

  /// The open views, in order of construction.
  static const std::vector<GView*>& views();

private:
  struct Private;
  std::unique_ptr<Private> d;
};
