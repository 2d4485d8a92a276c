#pragma once

#include "platform/base/orbel_base_api.h"

#include <vtkMapper2D.h>

#include <memory>

class GModel;
class TovanString;
class vtkTextProperty;
class vtkWindow;
struct TovanColor;
struct TovanVector;

/// Draws many short texts at points in space. Leaves out points that are out of view, labels whose text and position
/// equal those of another, and, in render modes 1 to 5 of the model, labels whose point lies behind a surface; surfaces
/// that one sees through hide them too.
class ORBEL_BASE_API GLabelMapper : public vtkMapper2D {
public:
  /// Makes a mapper without labels.
  static GLabelMapper* New();
  vtkTypeMacro(GLabelMapper, vtkMapper2D)

  /// The model whose render mode decides whether hidden labels are drawn; borrowed, may be null.
  void set_model(GModel* model);
  /// Font, size (for 72 dots per inch; scaled by the window's DPI), opacity and how texts lie to their points; shared.
  /// Null for VTK's initial ones.
  void SetTextProperty(vtkTextProperty* property);
  /// The text style, or null when none was set.
  vtkTextProperty* GetTextProperty();

  /// Adds a label; an all-zero colour reads as that of the text style. The last argument is not used.
  void add_point(const TovanVector& position, const TovanString& text, const TovanColor& color, int unused);
  /// Removes all labels.
  void clear();
  /// Draws the labels over the viewport.
  void RenderOverlay(vtkViewport* viewport, vtkActor2D* actor) override;
  /// Gives back what the labels take on the graphics card.
  void ReleaseGraphicsResources(vtkWindow* window) override;

protected:
  GLabelMapper();
  ~GLabelMapper() override;
  /// One port, which takes any `vtkDataObject`.
  int FillInputPortInformation(int port, vtkInformation* info) override;

private:
  GLabelMapper(const GLabelMapper&) = delete;
  void operator=(const GLabelMapper&) = delete;

  struct Private;
  std::unique_ptr<Private> d;
};
