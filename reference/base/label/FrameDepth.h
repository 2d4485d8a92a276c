#pragma once

#include <vector>

class vtkRenderer;

/// The depth of what is drawn in a renderer, by which labels are hidden. It is read once in a frame, before the first
/// label is drawn: flat props, labels among them, write depth themselves.
class FrameDepth {
public:
  /// Reads what is drawn so far, unless something was read and not forgotten.
  void read(vtkRenderer* renderer);
  void forget() { is_read_ = false; }
  /// The farthest depth, 0 to 1, at the pixel of the renderer's viewport and those round it; 1 where nothing is known.
  float farthest_near(int x, int y) const;

private:
  bool is_read_ = false;
  int width_ = 0, height_ = 0;
  std::vector<float> depth_; // rows upwards
};
