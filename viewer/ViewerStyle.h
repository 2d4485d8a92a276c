#pragma once

#include "viewer/KeyBindings.h"

#include <vtkInteractorStyleTrackballCamera.h>

namespace viewer {

/// Mouse and keyboard of the window. Left drag rotates, middle or Shift+left pans, wheel and right zoom; keys do what
/// the table says and nothing else: the keys of VTK's own styles are off.
class ViewerStyle : public vtkInteractorStyleTrackballCamera {
public:
  static ViewerStyle* New();
  vtkTypeMacro(ViewerStyle, vtkInteractorStyleTrackballCamera)

  /// `bindings` is borrowed; null for none.
  void set_bindings(const std::vector<KeyBinding>* bindings);

  void OnLeftButtonDown() override;
  void OnKeyPress() override;
  void OnChar() override;

protected:
  ViewerStyle() = default;

private:
  const std::vector<KeyBinding>* bindings_ = nullptr;
};

} // namespace viewer
