#include "reference/base/view/ModelState.h"

#include "platform/base/GView.h"
#include "reference/base/view/Stage.h"

#include <vtkRenderer.h>

void GModel::Private::show_in(GView* view) {
  const std::weak_ptr<char> alive = life;
  std::uint64_t last = 0;
  for (auto it = parts.begin(); it != parts.end(); it = parts.upper_bound(last)) {
    last = it->first;
    show_part(view, last);
    if (alive.expired() || !hooked || !Stage::instance().is_open(view)) return;
  }
  for (const auto& widget : widgets)
    view->renderer()->AddViewProp(widget);
}

void GModel::Private::hide_from(GView* view) {
  const auto entry = self->view_props_.extract(view);
  vtkRenderer* renderer = view->renderer();
  if (!entry.empty()) {
    for (const auto& [data, props] : entry.mapped())
      for (const auto& prop : props)
        renderer->RemoveViewProp(prop);
  }
  for (const auto& widget : widgets)
    renderer->RemoveViewProp(widget);
}

void GModel::Private::show_part(GView* view, std::uint64_t serial) {
  const auto found = parts.find(serial);
  if (found == parts.end() || !hooked || !Stage::instance().is_open(view)) return;
  // The factory is the host's code: it may remove this part, unhook or destroy the model, or close the view.
  const Part part = found->second;
  const auto shown = self->view_props_.find(view);
  if (shown != self->view_props_.end() && shown->second.count(part.data)) return;

  const std::weak_ptr<char> alive = life;
  const PropList props = part.factory ? part.factory(part.data, view) : PropList{};

  if (alive.expired() || !hooked || !parts.count(serial) || !Stage::instance().is_open(view)) return;
  if (!self->view_props_[view].emplace(part.data, props).second) return;
  for (const auto& prop : props)
    if (prop) view->renderer()->AddViewProp(prop);
}
