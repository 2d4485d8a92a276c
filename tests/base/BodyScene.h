#pragma once

#include "platform/base/GExtractEdges.h"
#include "platform/base/GModel.h"
#include "tests/base/Frame.h"

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkCubeSource.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkMapper.h>
#include <vtkPNGWriter.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>
#include <vtkRendererCollection.h>
#include <vtkWindowToImageFilter.h>

#include <cstdlib>
#include <string>

constexpr Frame::Color white = {255, 255, 255};

inline bool is_black(const Frame::Color& color) { return color[0] < 60 && color[1] < 60 && color[2] < 60; }
inline bool is_white(const Frame::Color& color) { return is_near(color, white, 2); }
inline bool is_red(const Frame::Color& color) { return color[0] > color[1] + 40 && color[0] > color[2] + 40; }

/// A red body with black edges, as models make them: the surface follows the render mode, the edges never do.
class BodyModel : public GModel {
public:
  explicit BodyModel(vtkPolyData* body, OBUtil::RenderMode mode) : mode_(mode) {
    surface->SetColor(0.9, 0.1, 0.1);
    edge->SetColor(0, 0, 0);
    edge->LightingOff();
    edge->SetLineWidth(2);
    vtkNew<GExtractEdges> extract;
    extract->SetInputData(body);
    extract->Update();
    lines_->ShallowCopy(extract->GetOutput());
    add_part(body, [this](vtkDataObject* data, GView* view) {
      surface_actor = make_actor(data, view, surface, mode_);
      GModel::set_polygon_offset(surface_actor->GetMapper(), 1, 1);
      return PropList{surface_actor};
    });
    add_part(lines_, [this](vtkDataObject* data, GView* view) {
      edge_actor = make_actor(data, view, edge, OBUtil::AsIs);
      edge_actor->PickableOff();
      return PropList{edge_actor};
    });
  }

  void set_mode(OBUtil::RenderMode mode) { surface_actor->GetPropertyKeys()->Set(GModel::RENDER_MODE(), mode); }

  vtkNew<vtkProperty> surface;
  vtkNew<vtkProperty> edge;
  vtkSmartPointer<vtkActor> surface_actor;
  vtkSmartPointer<vtkActor> edge_actor;

private:
  static vtkSmartPointer<vtkActor> make_actor(vtkDataObject* data, GView* view, vtkProperty* property,
                                              OBUtil::RenderMode mode) {
    auto actor = vtkSmartPointer<vtkActor>::New();
    actor->SetProperty(property);
    vtkNew<vtkInformation> keys;
    keys->Set(GModel::RENDER_MODE(), mode);
    actor->SetPropertyKeys(keys);
    actor->SetMapper(GModel::create_mapper(data, view));
    return actor;
  }

  OBUtil::RenderMode mode_;
  vtkNew<vtkPolyData> lines_;
};

inline vtkSmartPointer<vtkPolyData> make_cube() {
  vtkNew<vtkCubeSource> source;
  source->Update();
  return source->GetOutput();
}

inline void look_at_a_corner(vtkRenderer* renderer) {
  renderer->GetActiveCamera()->SetPosition(3, 4, 5);
  renderer->GetActiveCamera()->SetFocalPoint(0, 0, 0);
  renderer->ResetCamera();
}

/// For looking at: set ORBEL_MESH_PICTURES to a folder.
inline void keep_picture(vtkRenderWindow* window, const std::string& name) {
  const char* folder = std::getenv("ORBEL_MESH_PICTURES");
  if (!folder) return;
  vtkNew<vtkWindowToImageFilter> grab;
  grab->SetInput(window);
  grab->SetShouldRerender(false);
  grab->ReadFrontBufferOff();
  vtkNew<vtkPNGWriter> writer;
  writer->SetFileName((std::string(folder) + "/" + name + ".png").c_str());
  writer->SetInputConnection(grab->GetOutputPort());
  writer->Write();
}

inline float depth_at(vtkRenderWindow* window, int x, int y) {
  return window->GetRenderers()->GetFirstRenderer()->GetZ(x, y);
}
