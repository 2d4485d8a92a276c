#pragma once

#include <vtkProperty.h>
#include <vtkSmartPointer.h>
#include <vtkWeakPointer.h>

#include <map>
#include <utility>
#include <vector>

class vtkActor;
class vtkProp;
class vtkRenderer;

/// Dresses the props of a renderer for the length of one frame, as the render mode of each asks, and undresses them
/// again. Properties are shared between actors, models and views, so none is written to: an actor that must look
/// different wears a stand-in for the frame.
class FrameLooks {
public:
  enum class Pass {
    Picture, ///< what the user sees
    Depth,   ///< opaque surfaces of what can be picked, for reading the depth buffer
  };

  FrameLooks() = default;
  ~FrameLooks();
  FrameLooks(const FrameLooks&) = delete;
  FrameLooks& operator=(const FrameLooks&) = delete;

  /// `parts`: the actors that models made for this renderer. Sizes in pixels are multiplied by `scale`.
  void put_on(vtkRenderer* renderer, const std::vector<vtkActor*>& parts, double scale, Pass pass);
  /// Puts everything back; does nothing when nothing is on.
  void take_off();

private:
  enum class Look { Scaled, Background, Dimmed };

  struct Dressed {
    vtkSmartPointer<vtkActor> actor;
    vtkSmartPointer<vtkProperty> front;
    vtkSmartPointer<vtkProperty> back;
    bool scalars;
    bool force_opaque;
  };
  struct StandIn {
    vtkSmartPointer<vtkProperty> original;
    vtkSmartPointer<vtkProperty> property;
    vtkMTimeType original_time = 0;
    bool used = false;
  };
  struct RendererState {
    vtkWeakPointer<vtkRenderer> renderer;
    bool depth_peeling = false;
    int peels = 0;
    double occlusion_ratio = 0.0;
    bool fxaa = false;
  };

  void keep(vtkRenderer* renderer);
  void push_surfaces_back(const std::vector<vtkActor*>& parts, Pass pass);
  void hide_what_has_no_depth(vtkRenderer* renderer);
  void dress_for_picture(vtkRenderer* renderer, vtkActor* actor);
  void dress_for_depth(vtkActor* actor);
  void hide(vtkProp* prop);
  void remember(vtkActor* actor);
  void wear_background(vtkActor* actor, Look look);
  void wear_scaled(vtkActor* actor);
  vtkProperty* stand_in(vtkProperty* original, Look look);
  void drop_unused_stand_ins();

  std::vector<Dressed> dressed_;
  std::vector<vtkSmartPointer<vtkProp>> hidden_;
  RendererState renderer_;
  std::map<std::pair<vtkProperty*, Look>, StandIn> stand_ins_;
  double scale_ = 1.0;
  double background_[3] = {0.0, 0.0, 0.0};
};
