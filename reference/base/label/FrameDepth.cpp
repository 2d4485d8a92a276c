#include "reference/base/label/FrameDepth.h"

#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <algorithm>

void FrameDepth::read(vtkRenderer* renderer) {
  if (is_read_) return;
  is_read_ = true;
  int left = 0, low = 0;
  renderer->GetTiledSizeAndOrigin(&width_, &height_, &left, &low);
  if (width_ <= 0 || height_ <= 0) width_ = height_ = 0;
  depth_.assign(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_), 1.0f);
  if (!depth_.empty())
    renderer->GetRenderWindow()->GetZbufferData(left, low, left + width_ - 1, low + height_ - 1, depth_.data());
}

float FrameDepth::farthest_near(int x, int y) const {
  if (depth_.empty()) return 1.0f;
  float farthest = 0.0f;
  for (int row = std::max(0, y - 1); row <= std::min(height_ - 1, y + 1); ++row) {
    const float* pixels = &depth_[static_cast<std::size_t>(row) * static_cast<std::size_t>(width_)];
    for (int column = std::max(0, x - 1); column <= std::min(width_ - 1, x + 1); ++column)
      farthest = std::max(farthest, pixels[column]);
  }
  return farthest;
}
