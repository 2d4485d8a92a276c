#include "viewer/ViewerStyle.h"

#include "viewer/Clock.h"
#include "viewer/KeyBindings.h"

#include <vtkCallbackCommand.h>
#include <vtkObjectFactory.h>
#include <vtkRenderWindowInteractor.h>

#include <cstdlib>

namespace viewer {
namespace {

constexpr int steady = 3;              // pixels that a click may move
constexpr double double_click_s = 0.4; // the usual time

bool is_near(const MouseState& a, const MouseState& b) {
  return std::abs(a.x - b.x) <= steady && std::abs(a.y - b.y) <= steady;
}

} // namespace

vtkStandardNewMacro(ViewerStyle)

void ViewerStyle::set_handler(InputHandler* handler) { handler_ = handler; }

void ViewerStyle::OnLeftButtonDown() {
  const MouseState at = mouse();
  this->FindPokedRenderer(at.x, at.y);
  if (this->CurrentRenderer == nullptr) return;
  this->GrabFocus(this->EventCallbackCommand);
  pressed_at_ = at;
  pressed_soon_again_ = this->Interactor->GetRepeatCount() > 0;
  press_ = handler_ != nullptr && handler_->press(at) ? Press::Handler : Press::Undecided;
}

void ViewerStyle::OnLeftButtonUp() {
  const Press press = press_;
  press_ = Press::None;
  if (press == Press::Camera) {
    Superclass::OnLeftButtonUp();
    return;
  }
  this->ReleaseFocus();
  if (handler_ == nullptr) return;
  const MouseState at = mouse();
  if (press == Press::Handler) handler_->release(at);
  if (press == Press::Undecided) handler_->click(pressed_at_, is_second_click(pressed_at_));
}

// Some displays tell the second press so.
void ViewerStyle::OnLeftButtonDoubleClick() { OnLeftButtonDown(); }

void ViewerStyle::OnMiddleButtonDown() {
  if (press_ != Press::None) return;
  if (handler_ != nullptr) handler_->leave();
  Superclass::OnMiddleButtonDown();
}

void ViewerStyle::OnRightButtonDown() {
  if (press_ != Press::None) return;
  if (handler_ != nullptr) handler_->leave();
  Superclass::OnRightButtonDown();
}

void ViewerStyle::OnMouseMove() {
  const MouseState at = mouse();
  if (press_ == Press::Undecided && !is_near(at, pressed_at_)) begin_camera_drag();
  const bool camera_moves = this->State != VTKIS_NONE;
  if (camera_moves)
    Superclass::OnMouseMove();
  else if (handler_ != nullptr && press_ != Press::Undecided)
    handler_->move(at);
}

void ViewerStyle::OnMouseWheelForward() {
  if (handler_ == nullptr || !handler_->turn_wheel(mouse(), 1)) Superclass::OnMouseWheelForward();
}

void ViewerStyle::OnMouseWheelBackward() {
  if (handler_ == nullptr || !handler_->turn_wheel(mouse(), -1)) Superclass::OnMouseWheelBackward();
}

void ViewerStyle::OnLeave() {
  if (handler_ != nullptr && press_ == Press::None) handler_->leave();
}

// Also while the camera moves: whoever waits for the time must learn that it has come.
void ViewerStyle::OnTimer() {
  if (handler_ != nullptr) handler_->time_out();
}

void ViewerStyle::OnKeyPress() {
  if (handler_ != nullptr) handler_->key(pressed_key(this->Interactor), this->Interactor->GetKeyCode());
}

void ViewerStyle::OnChar() {}

MouseState ViewerStyle::mouse() const {
  const int* const position = this->Interactor->GetEventPosition();
  return {position[0], position[1], this->Interactor->GetShiftKey() != 0, this->Interactor->GetControlKey() != 0};
}

void ViewerStyle::begin_camera_drag() {
  press_ = Press::Camera;
  if (handler_ != nullptr) handler_->leave();
  if (pressed_at_.shift)
    this->StartPan();
  else
    this->StartRotate();
  // The drag began where the button went down, not where it was found to be one.
  this->Interactor->SetLastEventPosition(pressed_at_.x, pressed_at_.y);
}

// The display counts presses that soon follow one another, by the time at which they were made, so that a slow pick of
// the first does not hide the second; but it counts them wherever they are, wheel included, and takes the last of three
// for a first. So both clocks are asked.
bool ViewerStyle::is_second_click(const MouseState& at) {
  const double now = seconds_now();
  const bool soon = pressed_soon_again_ || now - clicked_when_ < double_click_s;
  const bool second = clicked_when_ >= 0 && soon && is_near(at, clicked_at_);
  clicked_at_ = at;
  clicked_when_ = second ? -1 : now;
  return second;
}

} // namespace viewer
