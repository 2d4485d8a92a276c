#include "reference/base/label/LabelFrame.h"

#include "platform/base/GLabelMapper.h"
#include "reference/base/label/LabelDrawing.h"

#include <vtkCallbackCommand.h>
#include <vtkPropCollection.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <map>
#include <utility>

namespace {

/// The actors that draw labels in the renderer.
std::vector<vtkSmartPointer<vtkActor2D>> label_actors(vtkRenderer* renderer) {
  std::vector<vtkSmartPointer<vtkActor2D>> actors;
  vtkCollectionSimpleIterator place = nullptr;
  vtkPropCollection* props = renderer->GetViewProps();
  props->InitTraversal(place);
  while (vtkProp* prop = props->GetNextProp(place)) {
    auto* actor = vtkActor2D::SafeDownCast(prop);
    if (actor && actor->GetVisibility() && GLabelMapper::SafeDownCast(actor->GetMapper())) actors.emplace_back(actor);
  }
  return actors;
}

} // namespace

std::shared_ptr<LabelFrame> LabelFrame::get(vtkRenderer* renderer) {
  static std::map<vtkRenderer*, std::weak_ptr<LabelFrame>> frames;
  for (auto it = frames.begin(); it != frames.end();)
    it = it->second.expired() ? frames.erase(it) : std::next(it);
  std::weak_ptr<LabelFrame>& entry = frames[renderer];
  std::shared_ptr<LabelFrame> frame = entry.lock();
  // A renderer may have come to the address of one that is gone.
  if (!frame || !frame->is_of(renderer)) entry = frame = std::make_shared<LabelFrame>(renderer);
  return frame;
}

LabelFrame::LabelFrame(vtkRenderer* renderer) : renderer_(renderer) {
  frame_ends_->SetClientData(this);
  frame_ends_->SetCallback(
      [](vtkObject*, unsigned long, void* self, void*) { static_cast<LabelFrame*>(self)->forget(); });
  renderer->AddObserver(vtkCommand::EndEvent, frame_ends_);
}

void LabelFrame::forget() {
  done_.clear();
  depth_.forget();
}

LabelFrame::~LabelFrame() {
  if (renderer_) renderer_->RemoveObserver(frame_ends_);
}

void LabelFrame::draw(GLabelMapper* mapper, const std::function<void()>& add_own) {
  if (done_.count(mapper) != 0) return;
  if (collecting_) {
    done_.insert(mapper);
    add_own();
    return;
  }
  // Whatever a host's database throws on the way, the next frame starts afresh.
  struct Collecting {
    explicit Collecting(LabelFrame& frame_in) : frame(frame_in) { frame.collecting_ = true; }
    ~Collecting() {
      frame.collecting_ = false;
      if (!done) frame.forget();
    }
    LabelFrame& frame;
    bool done = false;
  };
  const ActorList actors = label_actors(renderer_); // keeps the mappers until all is painted
  entries_.clear();
  changed_ = false;
  {
    Collecting collecting(*this);
    collect(mapper, add_own, actors);
    collecting.done = true;
  }
  draw_collected();
}

void LabelFrame::collect(GLabelMapper* mapper, const std::function<void()>& add_own, const ActorList& actors) {
  for (const auto& actor : actors) {
    if (actor->GetMapper() == mapper)
      draw(mapper, add_own);
    else
      actor->GetMapper()->RenderOverlay(renderer_, actor);
  }
  // It may be drawn on behalf of something else, which is not in the renderer's list.
  draw(mapper, add_own);
}

void LabelFrame::add(std::uint64_t serial, LabelDrawing& drawing, const LabelList& labels, bool changed) {
  entries_.push_back({serial, &drawing, &labels});
  changed_ = changed_ || changed;
}

void LabelFrame::draw_collected() {
  std::vector<std::uint64_t> serials;
  for (const Entry& entry : entries_)
    serials.push_back(entry.serial);
  int width = 0, height = 0, left = 0, low = 0;
  renderer_->GetTiledSizeAndOrigin(&width, &height, &left, &low);
  if (changed_ || serials != painted_ || width != image_.width() || height != image_.height()) {
    image_.clear(width, height);
    for (const Entry& entry : entries_)
      entry.drawing->paint(*entry.labels, image_);
    image_.finish();
    painted_ = std::move(serials);
  }
  image_.draw(renderer_);
  entries_.clear();
}

void LabelFrame::release(vtkWindow* window) {
  if (!renderer_ || renderer_->GetRenderWindow() == window) image_.release(window);
}
