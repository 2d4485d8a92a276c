#pragma once

#include "platform/base/GView.h"

#include <vtkNew.h>
#include <vtkPropCollection.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkUnsignedCharArray.h>

#include <array>
#include <cmath>
#include <functional>
#include <memory>
#include <vector>

/// A picture taken back from a window: 8-bit RGB, rows from the bottom.
struct Frame {
  using Color = std::array<int, 3>;

  explicit Frame(vtkRenderWindow* window) : width(window->GetSize()[0]), height(window->GetSize()[1]) {
    vtkNew<vtkUnsignedCharArray> values;
    window->GetPixelData(0, 0, width - 1, height - 1, 1, values);
    pixels.assign(values->GetPointer(0), values->GetPointer(0) + values->GetNumberOfValues());
  }

  Color at(int x, int y) const {
    const std::size_t first = 3 * (std::size_t(y) * std::size_t(width) + std::size_t(x));
    return {pixels[first], pixels[first + 1], pixels[first + 2]};
  }

  /// How many pixels `is` holds for.
  int count(const std::function<bool(const Color&)>& is) const {
    int found = 0;
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x)
        found += is(at(x, y));
    return found;
  }

  int width;
  int height;
  std::vector<unsigned char> pixels;
};

inline bool is_near(const Frame::Color& color, const Frame::Color& wanted, int slack = 6) {
  for (std::size_t i = 0; i < 3; ++i)
    if (std::abs(color[i] - wanted[i]) > slack) return false;
  return true;
}

/// A view of 300 by 200 pixels in a window that is never shown.
class OffscreenView {
public:
  OffscreenView() {
    window_->SetOffScreenRendering(1);
    window_->SetSize(300, 200);
    view_ = std::make_unique<GView>(window_);
    view_->renderer()->SetBackground(1, 1, 1);
  }

  GView* get() { return view_.get(); }
  vtkRenderer* renderer() { return view_->renderer(); }
  Frame render() {
    view_->render();
    return Frame(window_);
  }
  vtkRenderWindow* window() { return window_; }
  void close() { view_.reset(); }

private:
  vtkNew<vtkRenderWindow> window_;
  std::unique_ptr<GView> view_;
};
