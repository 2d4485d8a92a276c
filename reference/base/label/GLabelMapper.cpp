#include "platform/base/GLabelMapper.h"

#include "platform/base/GModel.h"
#include "platform/util/TovanString.h"
#include "reference/base/label/LabelDrawing.h"
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

struct GLabelMapper::Private {
  LabelDrawing& drawing_in(vtkRenderer* renderer);
  bool hides() const;

  GModel* model = nullptr;
  vtkSmartPointer<vtkTextProperty> style;
  vtkNew<vtkTextProperty> plain_style;
  LabelList labels;
  std::map<vtkRenderer*, std::unique_ptr<LabelDrawing>> drawings;
};

LabelDrawing& GLabelMapper::Private::drawing_in(vtkRenderer* renderer) {
  for (auto it = drawings.begin(); it != drawings.end();)
    it = it->second->is_stale(it->first) ? drawings.erase(it) : std::next(it);
  std::unique_ptr<LabelDrawing>& drawing = drawings[renderer];
  if (!drawing) drawing = std::make_unique<LabelDrawing>(renderer);
  return *drawing;
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
  if (!renderer || !renderer->GetRenderWindow() || renderer->GetSelector() || d->labels.size() == 0) return;
  d->drawing_in(renderer).draw(d->labels, d->style ? d->style.Get() : d->plain_style.Get(), d->hides());
}

void GLabelMapper::ReleaseGraphicsResources(vtkWindow* window) {
  for (auto& drawing : d->drawings)
    drawing.second->release(window);
}
