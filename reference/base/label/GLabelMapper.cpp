#include "platform/base/GLabelMapper.h"

#include "platform/base/GModel.h"
#include "platform/util/TovanString.h"
#include "reference/base/label/LabelDrawing.h"
#include "reference/base/label/LabelFrame.h"
#include "reference/base/label/LabelList.h"

#include <vtkAlgorithm.h>
#include <vtkInformation.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>
#include <vtkTextProperty.h>

#include <map>

namespace {

std::uint64_t next_serial() {
  static std::uint64_t last = 0;
  return ++last;
}

} // namespace

struct GLabelMapper::Private {
  /// One renderer that the labels are drawn in.
  struct Place {
    std::shared_ptr<LabelFrame> frame;
    LabelDrawing drawing;
    std::uint64_t serial = next_serial();
  };

  Place& place_in(vtkRenderer* renderer);
  void add_to(Place& place, vtkRenderer* renderer);
  bool hides() const;

  GModel* model = nullptr;
  vtkSmartPointer<vtkTextProperty> style;
  vtkNew<vtkTextProperty> plain_style;
  LabelList labels;
  std::map<vtkRenderer*, Place> places;
};

GLabelMapper::Private::Place& GLabelMapper::Private::place_in(vtkRenderer* renderer) {
  for (auto it = places.begin(); it != places.end();)
    it = it->second.frame->is_of(it->first) ? std::next(it) : places.erase(it);
  Place& place = places[renderer];
  if (!place.frame) place.frame = LabelFrame::get(renderer);
  return place;
}

void GLabelMapper::Private::add_to(Place& place, vtkRenderer* renderer) {
  if (labels.size() == 0) return;
  const bool hiding = hides();
  if (hiding) place.frame->depth().read(renderer);
  const bool changed = place.drawing.place(labels, style ? style.Get() : plain_style.Get(), renderer,
                                           hiding ? &place.frame->depth() : nullptr);
  place.frame->add(place.serial, place.drawing, labels, changed);
}

// Where surfaces are not drawn nothing is behind them.
bool GLabelMapper::Private::hides() const {
  if (!model) return false;
  const OBUtil::RenderMode mode = model->get_render_mode();
  return mode >= OBUtil::HiddenLine && mode <= OBUtil::SmoothShaded;
}

vtkStandardNewMacro(GLabelMapper)

GLabelMapper::GLabelMapper() : d(std::make_unique<Private>()) {}

GLabelMapper::~GLabelMapper() = default;

int GLabelMapper::FillInputPortInformation(int, vtkInformation* info) {
  info->Set(vtkAlgorithm::INPUT_REQUIRED_DATA_TYPE(), "vtkDataObject");
  return 1;
}

void GLabelMapper::set_model(GModel* model) { d->model = model; }

void GLabelMapper::SetTextProperty(vtkTextProperty* property) {
  if (property == d->style) return;
  d->style = property;
  Modified();
}

vtkTextProperty* GLabelMapper::GetTextProperty() { return d->style; }

void GLabelMapper::add_point(const TovanVector& position, const TovanString& text, const TovanColor& color, int) {
  d->labels.add(position, text.c_str(), color);
}

void GLabelMapper::clear() { d->labels.clear(); }

void GLabelMapper::RenderOverlay(vtkViewport* viewport, vtkActor2D*) {
  auto* renderer = vtkRenderer::SafeDownCast(viewport);
  // Labels are not among the things that a hardware selection tells apart.
  if (!renderer || !renderer->GetRenderWindow() || renderer->GetSelector()) return;
  Private::Place& place = d->place_in(renderer);
  place.frame->draw(this, [&] { d->add_to(place, renderer); });
}

void GLabelMapper::ReleaseGraphicsResources(vtkWindow* window) {
  for (auto& [renderer, place] : d->places)
    place.frame->release(window);
}
