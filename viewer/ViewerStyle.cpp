#include "viewer/ViewerStyle.h"

#include <vtkCallbackCommand.h>
#include <vtkObjectFactory.h>
#include <vtkRenderWindowInteractor.h>

namespace viewer {

vtkStandardNewMacro(ViewerStyle)

void ViewerStyle::set_bindings(const std::vector<KeyBinding>* bindings) { bindings_ = bindings; }

void ViewerStyle::OnLeftButtonDown() {
  const int* const position = this->Interactor->GetEventPosition();
  this->FindPokedRenderer(position[0], position[1]);
  if (this->CurrentRenderer == nullptr) return;
  this->GrabFocus(this->EventCallbackCommand);
  if (this->Interactor->GetShiftKey() != 0)
    this->StartPan();
  else
    this->StartRotate();
}

void ViewerStyle::OnKeyPress() {
  if (bindings_ == nullptr) return;
  const std::string key = pressed_key(this->Interactor);
  if (const KeyBinding* const binding = find_binding(*bindings_, key)) binding->action(key);
}

void ViewerStyle::OnChar() {}

} // namespace viewer
