#pragma once

#include "platform/base/OBUtil.h"
#include "platform/base/orbel_base_api.h"

#include <vtkProp.h>
#include <vtkSmartPointer.h>

#include <functional>
#include <map>
#include <memory>
#include <vector>

class GDataGroup;
class GDataGroupEntity;
class GView;
class vtkDataObject;
class vtkInformationIntegerKey;
class vtkMapper;
class vtkProperty;
class vtkTextProperty;

/// The props of one part in one view.
using PropList = std::vector<vtkSmartPointer<vtkProp>>;

/// Something that is drawn in every view. A model keeps *parts*, data objects each with a factory that makes its props,
/// and calls the factory once per view. Views and models may die in any order.
class ORBEL_BASE_API GModel {
public:
  /// Makes the props of a data object in a view.
  using PropFactory = std::function<PropList(vtkDataObject*, GView*)>;
  /// The props that were made, by view and data object.
  using ViewProps = std::map<GView*, std::map<vtkDataObject*, PropList>>;

  /// Hooks the model to all views, present and future.
  GModel();
  virtual ~GModel();
  GModel(const GModel&) = delete;
  GModel& operator=(const GModel&) = delete;

  /// Stores the mode that its parts are drawn in.
  virtual void set_render_mode(OBUtil::RenderMode mode);
  /// The stored mode, at first `Shaded`.
  virtual OBUtil::RenderMode get_render_mode();

  /// Adds a part: keeps a reference on `data` and calls `factory` for every hooked view, now and whenever one opens.
  /// A data object that is a part already keeps its first factory. Null is ignored.
  virtual void add_part(vtkDataObject* data, PropFactory factory);
  /// Removes the part and its props. `data` is only a key and never dereferenced: unknown and stale pointers are
  /// ignored.
  virtual void remove_part(vtkDataObject* data);
  /// Shows a prop of the host's own in every hooked view; the model keeps a reference.
  virtual void add_widget(vtkProp* widget);
  /// Takes such a prop away again.
  virtual void remove_widget(vtkProp* widget);
  /// Brings the parts' data up to date; called by each view before a frame. The base does nothing.
  virtual void update_parts();
  /// Called by each view before its window is drawn, after `update_parts`. The base does nothing.
  virtual void Render(GView* view);
  /// Takes all props out of all views and leaves later views alone; the parts are kept.
  virtual void unhook_from_views();
  /// Puts the props back into all views, present and future.
  virtual void hook_to_views();
  /// Removes all parts and widgets.
  virtual void clear();

  /// Notes in `data` which entity it draws; null clears the note. The data object's modification time stays. The note
  /// does not travel through filters or copies, and answers null once the entity is gone.
  static void set_back_pointer(vtkDataObject* data, GDataGroupEntity* entity);
  /// The entity noted in `data`, or null.
  static GDataGroupEntity* get_back_pointer(vtkDataObject* data);

  /// A mapper for multi-block or poly data, whose input is `data` itself with no filter between.
  static vtkSmartPointer<vtkMapper> create_mapper(vtkDataObject* data, GView* view);
  /// Pushes what the mapper draws away from the eye, relative to other mappers, so that edges on a surface show whole.
  static void set_polygon_offset(vtkMapper* mapper, double factor, double units);
  /// Calls `change` for each view and each of `group->all_groups()` with the props, if any, that were made for that
  /// group's data object number `part`.
  static void set_datagroup_attributes(GDataGroup* group, int part, ViewProps& props,
                                       std::function<void(GView*, PropList&)> change);

  /// The key in an actor's property keys that tells how the actor is drawn: an `OBUtil::RenderMode`.
  static vtkInformationIntegerKey* RENDER_MODE();
  /// How surfaces that face the eye are drawn under normal-directed lighting.
  static vtkProperty* surface_normal_front_property();
  /// How surfaces that face away are drawn under normal-directed lighting.
  static vtkProperty* surface_normal_back_property();
  /// How curves and points are drawn under normal-directed lighting.
  static vtkProperty* curve_normal_property();
  /// The text style of labels.
  static vtkTextProperty* text_property();

  /// Whether surfaces are coloured by the side that faces the eye instead of by their own colour. False at load; read
  /// when props are made.
  static bool mNormalDirectedLighting;

protected:
  /// The props of all parts in all hooked views.
  ViewProps view_props_;

private:
  friend class GView;
  struct Private;
  std::unique_ptr<Private> d;
};
