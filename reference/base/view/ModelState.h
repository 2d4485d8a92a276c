#pragma once

#include "platform/base/GModel.h"

#include <vtkDataObject.h>

#include <cstdint>
#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

/// What a model keeps: its parts and widgets, and how they come into views and leave them.
struct GModel::Private {
  struct Part {
    vtkSmartPointer<vtkDataObject> data;
    PropFactory factory;
  };

  explicit Private(GModel* model) : self(model) {}

  /// Makes the props of all parts in the view, in order of adding, then the widgets.
  void show_in(GView* view);
  /// Takes everything out of the view.
  void hide_from(GView* view);
  /// Makes the props of one part in the view, unless the part or the view is gone or the props are there already.
  void show_part(GView* view, std::uint64_t serial);

  GModel* self;
  /// By a running number, so that a walk goes in order of adding and survives what factories do to the list.
  std::map<std::uint64_t, Part> parts;
  std::unordered_map<const vtkDataObject*, std::uint64_t> serials;
  std::uint64_t next_serial = 0;
  std::vector<vtkSmartPointer<vtkProp>> widgets;
  OBUtil::RenderMode mode = OBUtil::Shaded;
  bool hooked = false;
  /// Expires with the model: lets a walk that calls out notice its death.
  std::shared_ptr<char> life = std::make_shared<char>();
};
