#include "LabelLog.h"

#include "platform/base/GLabelMapper.h"
#include "platform/util/TovanString.h"
#include "platform/util/TovanVector.h"

#include <vtkAlgorithm.h>
#include <vtkInformation.h>
#include <vtkObjectFactory.h>

#include <map>

namespace {

std::map<GLabelMapper*, LabelLog>& logs() {
  static std::map<GLabelMapper*, LabelLog> all;
  return all;
}

} // namespace

LabelLog& log_of(GLabelMapper* mapper) { return logs()[mapper]; }

struct GLabelMapper::Private {};

vtkStandardNewMacro(GLabelMapper)

GLabelMapper::GLabelMapper() { logs().erase(this); }
GLabelMapper::~GLabelMapper() { logs().erase(this); }

void GLabelMapper::set_model(GModel* model) { log_of(this).model = model; }
void GLabelMapper::SetTextProperty(vtkTextProperty*) {}
vtkTextProperty* GLabelMapper::GetTextProperty() { return nullptr; }

void GLabelMapper::add_point(const TovanVector& position, const TovanString& text, const TovanColor& color, int last) {
  log_of(this).labels.push_back({text.c_str(), {position.x, position.y, position.z}, color, last});
}

void GLabelMapper::clear() {
  log_of(this).labels.clear();
  ++log_of(this).clears;
}

void GLabelMapper::RenderOverlay(vtkViewport*, vtkActor2D*) { ++log_of(this).draws; }
void GLabelMapper::ReleaseGraphicsResources(vtkWindow*) {}

int GLabelMapper::FillInputPortInformation(int, vtkInformation* info) {
  info->Set(vtkAlgorithm::INPUT_REQUIRED_DATA_TYPE(), "vtkDataObject");
  return 1;
}
