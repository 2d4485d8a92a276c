#include "platform/base/GView.h"

#include "platform/base/GLabelMapper.h"
#include "platform/base/GModel.h"
#include "reference/base/label/LabelFrame.h"
#include "reference/base/view/FrameLooks.h"
#include "reference/base/view/ModelState.h"
#include "reference/base/view/Stage.h"

#include <vtkActor.h>
#include <vtkActor2D.h>
#include <vtkCallbackCommand.h>
#include <vtkMapper.h>
#include <vtkNew.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkRendererCollection.h>

#include <exception>
#include <utility>

namespace {

// VTK's initial DPI says that nobody has asked the display yet.
constexpr int unknown_dpi = 72;
constexpr int plain_dpi = 96;

bool draws_labels(vtkProp* prop) {
  auto* actor = vtkActor2D::SafeDownCast(prop);
  return actor && actor->GetVisibility() && GLabelMapper::SafeDownCast(actor->GetMapper());
}

/// Sets a window so that frames leave the depth of one renderer behind and nothing to be seen, for as long as it lives.
class OnlyDepth {
public:
  OnlyDepth(vtkRenderWindow* window, vtkRenderer* renderer)
      : window_(window), swaps_(window->GetSwapBuffers()), samples_(window->GetMultiSamples()) {
    // Other renderers would draw over the depth.
    vtkCollectionSimpleIterator place;
    window->GetRenderers()->InitTraversal(place);
    while (vtkRenderer* each = window->GetRenderers()->GetNextRenderer(place))
      if (each != renderer && each->GetDraw()) others_.emplace_back(each);
    for (const auto& other : others_)
      other->DrawOff();
    window->SetSwapBuffers(false);
    window->SetMultiSamples(0);
  }
  ~OnlyDepth() {
    window_->SetMultiSamples(samples_);
    window_->SetSwapBuffers(swaps_);
    for (const auto& other : others_)
      other->DrawOn();
  }
  OnlyDepth(const OnlyDepth&) = delete;
  OnlyDepth& operator=(const OnlyDepth&) = delete;

private:
  vtkSmartPointer<vtkRenderWindow> window_;
  std::vector<vtkSmartPointer<vtkRenderer>> others_;
  bool swaps_;
  int samples_;
};

} // namespace

struct GView::Private {
  explicit Private(GView* view) : self(view) {}

  void open(vtkRenderWindow* window_of_host);
  void meet_models();
  void close();

  static void observe(vtkObject* object, unsigned long event, vtkCallbackCommand* command,
                      void (*callback)(vtkObject*, unsigned long, void*, void*), Private* state);
  void draw();
  void start_frame();
  void prepare_models();
  void start_drawing();
  std::vector<vtkActor*> part_actors() const;
  bool labels_need_own_depth() const;
  void read_label_depth();

  GView* self;
  vtkSmartPointer<vtkRenderWindow> window;
  vtkNew<vtkRenderer> renderer;
  FrameLooks looks;
  FrameLooks::Pass pass = FrameLooks::Pass::Picture;
  std::shared_ptr<LabelFrame> label_frame;
  bool reading_label_depth = false;
  std::exception_ptr* thrown = nullptr; // where a frame of the view's own keeps what a model throws
  // Frames also come from interactors, captures and hosts that render the window themselves: listening to the window
  // and the renderer gives all of them the same picture.
  vtkNew<vtkCallbackCommand> frame_starts;
  vtkNew<vtkCallbackCommand> drawing_starts;
  vtkNew<vtkCallbackCommand> drawing_ends;
  std::shared_ptr<char> life = std::make_shared<char>();
};

void GView::Private::open(vtkRenderWindow* window_of_host) {
  window = window_of_host ? vtkSmartPointer<vtkRenderWindow>(window_of_host) : vtkSmartPointer<vtkRenderWindow>::New();
  window->SetMultiSamples(0);
  if (window->GetDPI() == unknown_dpi) window->SetDPI(plain_dpi);
  renderer->SetBackground(0.91, 0.92, 0.94);
  renderer->UseFXAAOn();
  window->AddRenderer(renderer);

  observe(
      window, vtkCommand::StartEvent, frame_starts,
      [](vtkObject*, unsigned long, void* state, void*) { static_cast<Private*>(state)->start_frame(); }, this);
  observe(
      renderer, vtkCommand::StartEvent, drawing_starts,
      [](vtkObject*, unsigned long, void* state, void*) { static_cast<Private*>(state)->start_drawing(); }, this);
  observe(
      renderer, vtkCommand::EndEvent, drawing_ends,
      [](vtkObject*, unsigned long, void* state, void*) { static_cast<Private*>(state)->looks.take_off(); }, this);
}

void GView::Private::observe(vtkObject* object, unsigned long event, vtkCallbackCommand* command,
                             void (*callback)(vtkObject*, unsigned long, void*, void*), Private* state) {
  command->SetCallback(callback);
  command->SetClientData(state);
  object->AddObserver(event, command);
}

void GView::Private::meet_models() {
  Stage& stage = Stage::instance();
  stage.views.push_back(self);
  for (GModel* model : std::vector<GModel*>(stage.models))
    if (stage.is_hooked(model)) model->d->show_in(self);
}

void GView::Private::close() {
  Stage& stage = Stage::instance();
  stage.leave(self);
  for (GModel* model : std::vector<GModel*>(stage.models))
    model->d->hide_from(self);
  window->RemoveObserver(frame_starts);
  renderer->RemoveObserver(drawing_starts);
  renderer->RemoveObserver(drawing_ends);
  looks.take_off();
  window->RemoveRenderer(renderer);
}

// VTK takes a window for busy for good when an exception leaves a frame, and draws no more. So what the models of a
// frame of the view's own throw is kept until the frame is done; others, which an interactor or the host asked for, are
// broken off, and the window is free again.
void GView::Private::draw() {
  // Kept here: a model may close the view during its own frame.
  const vtkSmartPointer<vtkRenderWindow> kept_window = window;
  const std::weak_ptr<char> alive = life;
  std::exception_ptr thrown_here;
  std::exception_ptr* const outer = std::exchange(thrown, &thrown_here);
  try {
    kept_window->Render();
  } catch (...) { // on the way through the renderer: labels ask the database when they are drawn
    thrown_here = std::current_exception();
    kept_window->ClearInRenderStatus();
    if (!alive.expired()) looks.take_off();
  }
  if (!alive.expired()) thrown = outer;
  if (thrown_here) std::rethrow_exception(thrown_here);
}

void GView::Private::start_frame() {
  const vtkSmartPointer<vtkRenderWindow> kept_window = window;
  std::exception_ptr* keep_in = nullptr;
  for (const GView* view : Stage::instance().views) // several may share the window: whose frame it is, keeps it
    if (view->d->window == window && view->d->thrown) keep_in = view->d->thrown;
  try {
    prepare_models();
  } catch (...) {
    if (!keep_in) {
      kept_window->ClearInRenderStatus();
      throw;
    }
    *keep_in = std::current_exception();
  }
}

void GView::Private::prepare_models() {
  const Stage& stage = Stage::instance();
  const std::weak_ptr<char> alive = life;
  GView* const view = self;
  for (GModel* model : std::vector<GModel*>(stage.models)) {
    if (stage.is_hooked(model)) model->update_parts();
    if (alive.expired()) return;
    if (stage.is_hooked(model)) model->Render(view);
    if (alive.expired()) return;
  }
}

void GView::Private::start_drawing() {
  if (!reading_label_depth && labels_need_own_depth()) read_label_depth();
  looks.put_on(renderer, part_actors(), static_cast<double>(window->GetDPI()) / plain_dpi,
               reading_label_depth ? FrameLooks::Pass::Depth : pass);
}

// Surfaces that one sees through leave no depth behind, by which labels could be hidden.
bool GView::Private::labels_need_own_depth() const {
  if (pass != FrameLooks::Pass::Picture || renderer->GetSelector()) return false;
  for (GModel* model : Stage::instance().models) {
    const OBUtil::RenderMode mode = model->get_render_mode();
    if (mode != OBUtil::DimmedHiddenLine && mode != OBUtil::Translucent) continue;
    const auto shown = model->view_props_.find(self);
    if (shown == model->view_props_.end()) continue;
    for (const auto& [data, props] : shown->second)
      for (const auto& prop : props)
        if (draws_labels(prop)) return true;
  }
  return false;
}

// A drawing of its own, before that of the frame: the renderer wipes it away when it goes on.
void GView::Private::read_label_depth() {
  if (!label_frame) label_frame = LabelFrame::get(renderer);
  reading_label_depth = true;
  try {
    renderer->Render();
  } catch (...) {
    reading_label_depth = false;
    throw;
  }
  reading_label_depth = false;
  label_frame->depth().read(renderer);
}

std::vector<vtkActor*> GView::Private::part_actors() const {
  std::vector<vtkActor*> actors;
  for (const GModel* model : Stage::instance().models) {
    const auto shown = model->view_props_.find(self);
    if (shown == model->view_props_.end()) continue;
    for (const auto& [data, props] : shown->second)
      for (const auto& prop : props)
        if (auto* actor = vtkActor::SafeDownCast(prop)) actors.push_back(actor);
  }
  return actors;
}

GView::GView(vtkRenderWindow* window) : d(std::make_unique<Private>(this)) {
  // Relative offsets, which keep edges in front of their surfaces, act in this mode only. It is the process's, so the
  // host's choice stands once a view is open.
  if (views().empty()) vtkMapper::SetResolveCoincidentTopologyToPolygonOffset();
  d->open(window);
  try {
    d->meet_models();
  } catch (...) {
    d->close(); // no destructor runs
    throw;
  }
}

GView::~GView() { d->close(); }

vtkRenderer* GView::renderer() const { return d->renderer; }

vtkRenderWindow* GView::window() const { return d->window; }

void GView::render() { d->draw(); }

void GView::render_depth() {
  const OnlyDepth setting(d->window, d->renderer);
  const std::weak_ptr<char> alive = d->life;
  const auto draw_pictures_again = [&] {
    if (!alive.expired()) d->pass = FrameLooks::Pass::Picture;
  };
  d->pass = FrameLooks::Pass::Depth;
  try {
    d->draw();
  } catch (...) {
    draw_pictures_again();
    throw;
  }
  draw_pictures_again();
}

const std::vector<GView*>& GView::views() { return Stage::instance().views; }
