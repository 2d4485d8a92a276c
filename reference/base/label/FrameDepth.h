#pragma once

#include <vtkNew.h>
#include <vtkWeakPointer.h>

#include <memory>
#include <vector>

class vtkCallbackCommand;
class vtkRenderer;

/// The depth of what is drawn in a renderer, by which labels are hidden. It is read once in a frame, before the first
/// label is drawn: labels write depth themselves, and must not hide one another.
class FrameDepth {
public:
  /// That of the renderer, which is borrowed. All who hold it share it.
  static std::shared_ptr<FrameDepth> get(vtkRenderer* renderer);

  explicit FrameDepth(vtkRenderer* renderer);
  ~FrameDepth();
  FrameDepth(const FrameDepth&) = delete;
  FrameDepth& operator=(const FrameDepth&) = delete;

  bool is_of(vtkRenderer* renderer) const { return renderer_ == renderer; }
  /// Reads what is drawn so far, unless that was done already since the renderer last ended a frame.
  void read();
  /// The farthest depth, 0 to 1, at the pixel of the renderer's viewport and those round it; 1 where nothing is known.
  float farthest_near(int x, int y) const;

private:
  vtkWeakPointer<vtkRenderer> renderer_;
  vtkNew<vtkCallbackCommand> frame_ends_;
  bool is_read_ = false;
  int width_ = 0, height_ = 0;
  std::vector<float> depth_; // rows upwards
};
