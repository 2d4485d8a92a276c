#pragma once

#include "reference/base/label/FrameDepth.h"
#include "reference/base/label/LabelImage.h"

#include <vtkActor2D.h>
#include <vtkNew.h>
#include <vtkSmartPointer.h>
#include <vtkWeakPointer.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <unordered_set>
#include <vector>

class GLabelMapper;
class LabelDrawing;
class LabelList;
class vtkCallbackCommand;
class vtkRenderer;

/// All labels of a renderer's frame: the first mapper whose turn it is has all others paint too, then the picture is
/// drawn once, however many mappers there are.
class LabelFrame {
public:
  /// That of the renderer, which is borrowed. All who hold it share it.
  static std::shared_ptr<LabelFrame> get(vtkRenderer* renderer);

  explicit LabelFrame(vtkRenderer* renderer);
  ~LabelFrame();
  LabelFrame(const LabelFrame&) = delete;
  LabelFrame& operator=(const LabelFrame&) = delete;

  /// Whether it is that of the renderer.
  bool is_of(vtkRenderer* renderer) const { return renderer_ == renderer; }
  /// Draws the mapper's labels, unless they were in this frame. `add_own` is to call `add` if there is something to
  /// draw; it is called at once or not at all.
  void draw(GLabelMapper* mapper, const std::function<void()>& add_own);
  /// Enters labels that are placed. `serial` tells them from all others ever.
  void add(std::uint64_t serial, LabelDrawing& drawing, const LabelList& labels, bool changed);
  /// The depth of what is drawn, by which labels are hidden.
  FrameDepth& depth() { return depth_; }
  /// Gives back what the picture takes on the graphics card, if that is the renderer's window.
  void release(vtkWindow* window);

private:
  using ActorList = std::vector<vtkSmartPointer<vtkActor2D>>;
  struct Entry {
    std::uint64_t serial;
    LabelDrawing* drawing;
    const LabelList* labels;
  };

  void collect(GLabelMapper* mapper, const std::function<void()>& add_own, const ActorList& actors);
  void draw_collected();
  void forget();

  vtkWeakPointer<vtkRenderer> renderer_;
  FrameDepth depth_;
  LabelImage image_;
  std::unordered_set<const GLabelMapper*> done_; // in this frame
  bool collecting_ = false;
  bool changed_ = false;
  std::vector<Entry> entries_;
  std::vector<std::uint64_t> painted_; // serials of what is on the picture
  vtkNew<vtkCallbackCommand> frame_ends_;
};
