#include "reference/base/label/FrameDepth.h"

#include <vtkCallbackCommand.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <map>

std::shared_ptr<FrameDepth> FrameDepth::get(vtkRenderer* renderer) {
  static std::map<vtkRenderer*, std::weak_ptr<FrameDepth>> all;
  for (auto it = all.begin(); it != all.end();)
    it = it->second.expired() ? all.erase(it) : std::next(it);
  std::weak_ptr<FrameDepth>& entry = all[renderer];
  std::shared_ptr<FrameDepth> depth = entry.lock();
  // A renderer may have come to the address of one that is gone.
  if (!depth || !depth->is_of(renderer)) entry = depth = std::make_shared<FrameDepth>(renderer);
  return depth;
}

FrameDepth::FrameDepth(vtkRenderer* renderer) : renderer_(renderer) {
  frame_ends_->SetClientData(this);
  frame_ends_->SetCallback(
      [](vtkObject*, unsigned long, void* depth, void*) { static_cast<FrameDepth*>(depth)->is_read_ = false; });
  renderer->AddObserver(vtkCommand::EndEvent, frame_ends_);
}

FrameDepth::~FrameDepth() {
  if (renderer_) renderer_->RemoveObserver(frame_ends_);
}

void FrameDepth::read() {
  if (is_read_ || !renderer_) return;
  is_read_ = true;
  int left = 0, low = 0;
  renderer_->GetTiledSizeAndOrigin(&width_, &height_, &left, &low);
  vtkRenderWindow* window = renderer_->GetRenderWindow();
  if (width_ <= 0 || height_ <= 0 || !window) {
    width_ = height_ = 0;
    return;
  }
  depth_.assign(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_), 1.0f);
  window->GetZbufferData(left, low, left + width_ - 1, low + height_ - 1, depth_.data());
}

float FrameDepth::farthest_near(int x, int y) const {
  if (width_ == 0 || height_ == 0) return 1.0f;
  float farthest = 0.0f;
  for (int row = std::max(0, y - 1); row <= std::min(height_ - 1, y + 1); ++row) {
    const float* pixels = &depth_[static_cast<std::size_t>(row) * static_cast<std::size_t>(width_)];
    for (int column = std::max(0, x - 1); column <= std::min(width_ - 1, x + 1); ++column)
      farthest = std::max(farthest, pixels[column]);
  }
  return farthest;
}
