#pragma once

#include "viewer/InputHandler.h"

#include <vtkInteractorStyleTrackballCamera.h>

namespace viewer {

/// Mouse and keyboard of the window. Left drag rotates, middle or Shift+left pans, wheel and right zoom, as far as the
/// handler leaves them to the camera; a press that moves by less than a few pixels is a click. Keys go to the handler:
/// those of VTK's own styles are off.
class ViewerStyle : public vtkInteractorStyleTrackballCamera {
public:
  static ViewerStyle* New();
  vtkTypeMacro(ViewerStyle, vtkInteractorStyleTrackballCamera)

  /// `handler` is borrowed; null for none.
  void set_handler(InputHandler* handler);

  void OnLeftButtonDown() override;
  void OnLeftButtonUp() override;
  void OnLeftButtonDoubleClick() override;
  void OnMiddleButtonDown() override;
  void OnRightButtonDown() override;
  void OnMouseMove() override;
  void OnMouseWheelForward() override;
  void OnMouseWheelBackward() override;
  void OnLeave() override;
  void OnTimer() override;
  void OnKeyPress() override;
  void OnChar() override;

protected:
  ViewerStyle() = default;

private:
  // What the left button is doing.
  enum class Press { None, Undecided, Camera, Handler };

  MouseState mouse() const;
  void begin_camera_drag();
  bool is_second_click(const MouseState& at);

  InputHandler* handler_ = nullptr;
  Press press_ = Press::None;
  MouseState pressed_at_;
  bool pressed_soon_again_ = false;
  MouseState clicked_at_;
  double clicked_when_ = -1; // seconds; negative for never, or as the second of two
};

} // namespace viewer
