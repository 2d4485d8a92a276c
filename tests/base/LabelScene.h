#pragma once

#include "platform/base/GLabelMapper.h"
#include "platform/base/GModel.h"
#include "platform/util/TovanColor.h"
#include "platform/util/TovanString.h"
#include "platform/util/TovanVector.h"
#include "tests/base/Frame.h"

#include <vtkActor2D.h>
#include <vtkCamera.h>
#include <vtkNew.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>
#include <vtkTextProperty.h>

#include <algorithm>
#include <array>
#include <string>

const TovanColor green_text(0, 200, 0);
const TovanColor magenta_text(220, 60, 220);

/// An actor that draws labels, centred on their points.
struct Labels {
  Labels() {
    style->SetFontSize(10);
    style->SetJustificationToCentered();
    style->SetVerticalJustificationToCentered();
    mapper->SetTextProperty(style);
    actor->SetMapper(mapper);
  }
  void add(std::array<double, 3> place, const std::string& text, TovanColor color = green_text) {
    mapper->add_point(TovanVector(place.data()), TovanString(text.c_str()), color, 0);
  }

  vtkNew<vtkTextProperty> style;
  vtkNew<GLabelMapper> mapper;
  vtkNew<vtkActor2D> actor;
};

inline bool is_background(const Frame::Color& color) { return is_near(color, {255, 255, 255}, 2); }
inline bool is_green(const Frame::Color& color) { return color[1] > color[0] + 80 && color[1] > color[2] + 80; }
inline bool is_magenta(const Frame::Color& color) { return color[0] > color[1] + 70 && color[2] > color[1] + 70; }

/// The smallest rectangle with all pixels that `is` holds for.
struct PixelBox {
  int left = 1 << 20, right = -1, low = 1 << 20, high = -1;

  PixelBox(const Frame& frame, const std::function<bool(const Frame::Color&)>& is) {
    for (int y = 0; y < frame.height; ++y)
      for (int x = 0; x < frame.width; ++x)
        if (is(frame.at(x, y))) add(x, y);
  }
  void add(int x, int y) {
    left = std::min(left, x);
    right = std::max(right, x);
    low = std::min(low, y);
    high = std::max(high, y);
  }
  bool empty() const { return right < 0; }
  double x() const { return (left + right + 1) / 2.0; }
  double y() const { return (low + high + 1) / 2.0; }
  int width() const { return right - left + 1; }
  int height() const { return high - low + 1; }
};

inline PixelBox drawn_box(const Frame& frame) {
  return {frame, [](const Frame::Color& color) { return !is_background(color); }};
}

/// Where VTK draws a point of the world, in pixels of the window.
inline std::array<double, 2> pixel_of(vtkRenderer* renderer, std::array<double, 3> place) {
  renderer->SetWorldPoint(place[0], place[1], place[2], 1.0);
  renderer->WorldToDisplay();
  return {renderer->GetDisplayPoint()[0], renderer->GetDisplayPoint()[1]};
}

/// A camera at z = 10 that looks at the origin and sees from -1 to 1 along y, unless the projection is perspective.
inline void look_along_z(vtkRenderer* renderer, bool parallel = true) {
  vtkCamera* camera = renderer->GetActiveCamera();
  camera->SetPosition(0, 0, 10);
  camera->SetFocalPoint(0, 0, 0);
  camera->SetViewUp(0, 1, 0);
  camera->SetParallelProjection(parallel);
  camera->SetParallelScale(1);
  camera->SetViewAngle(30);
  camera->SetClippingRange(1, 100);
}
