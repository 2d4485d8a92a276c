#include "platform/base/GModel.h"

#include "platform/base/GDataGroup.h"
#include "platform/base/GView.h"
#include "reference/base/view/ModelState.h"
#include "reference/base/view/Stage.h"

#include <vtkDataObject.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <utility>

GModel::GModel() : d(std::make_unique<Private>(this)) { GModel::hook_to_views(); }

GModel::~GModel() { GModel::unhook_from_views(); }

void GModel::set_render_mode(OBUtil::RenderMode mode) { d->mode = mode; }

OBUtil::RenderMode GModel::get_render_mode() { return d->mode; }

void GModel::add_part(vtkDataObject* data, PropFactory factory) {
  if (!data || d->serials.count(data)) return;
  const std::uint64_t serial = d->next_serial++;
  d->serials.emplace(data, serial);
  d->parts.emplace(serial, Private::Part{data, std::move(factory)});

  const std::weak_ptr<char> alive = d->life;
  try {
    for (GView* view : std::vector<GView*>(Stage::instance().views)) {
      d->show_part(view, serial);
      if (alive.expired()) return;
    }
  } catch (...) {
    // A part that is missing in some views could not be added again: it is known already.
    if (!alive.expired()) GModel::remove_part(data);
    throw;
  }
}

void GModel::remove_part(vtkDataObject* data) {
  const auto serial = d->serials.find(data);
  if (serial == d->serials.end()) return;
  const auto part = d->parts.extract(serial->second);
  d->serials.erase(serial);

  for (auto view = view_props_.begin(); view != view_props_.end();) {
    const auto entry = view->second.extract(data);
    if (!entry.empty()) {
      for (const auto& prop : entry.mapped())
        view->first->renderer()->RemoveViewProp(prop);
    }
    view = view->second.empty() ? view_props_.erase(view) : std::next(view);
  }
}

void GModel::add_widget(vtkProp* widget) {
  if (!widget || std::find(d->widgets.begin(), d->widgets.end(), widget) != d->widgets.end()) return;
  d->widgets.emplace_back(widget);
  if (!d->hooked) return;
  for (const GView* view : Stage::instance().views)
    view->renderer()->AddViewProp(widget);
}

void GModel::remove_widget(vtkProp* widget) {
  const auto found = std::find(d->widgets.begin(), d->widgets.end(), widget);
  if (found == d->widgets.end()) return;
  const vtkSmartPointer<vtkProp> kept = *found;
  d->widgets.erase(found);
  if (!d->hooked) return;
  for (const GView* view : Stage::instance().views)
    view->renderer()->RemoveViewProp(kept);
}

void GModel::update_parts() {}

void GModel::Render(GView*) {}

void GModel::unhook_from_views() {
  if (!d->hooked) return;
  d->hooked = false;
  Stage::instance().leave(this);
  for (GView* view : Stage::instance().views)
    d->hide_from(view);
}

void GModel::hook_to_views() {
  if (d->hooked) return;
  d->hooked = true;
  Stage::instance().models.push_back(this);
  const std::weak_ptr<char> alive = d->life;
  try {
    for (GView* view : std::vector<GView*>(Stage::instance().views)) {
      if (Stage::instance().is_open(view)) d->show_in(view);
      if (alive.expired() || !d->hooked) return;
    }
  } catch (...) {
    if (!alive.expired()) GModel::unhook_from_views(); // a factory threw: in all views or in none
    throw;
  }
}

void GModel::clear() {
  while (!d->parts.empty())
    GModel::remove_part(d->parts.begin()->second.data);
  while (!d->widgets.empty())
    GModel::remove_widget(d->widgets.back());
}

void GModel::set_datagroup_attributes(GDataGroup* group, int part, ViewProps& props,
                                      std::function<void(GView*, PropList&)> change) {
  if (!group || part < 0 || !change) return;
  std::vector<vtkDataObject*> wanted;
  for (GDataGroup* each : group->all_groups()) {
    const BlockList blocks = each->all_blocks();
    if (static_cast<std::size_t>(part) < blocks.size()) wanted.push_back(blocks[part]);
  }
  std::vector<GView*> views;
  for (const auto& entry : props)
    views.push_back(entry.first);

  // Looked up anew each time: the change may add and remove parts.
  for (GView* view : views) {
    for (vtkDataObject* data : wanted) {
      const auto in_view = props.find(view);
      if (in_view == props.end()) break;
      const auto made = in_view->second.find(data);
      if (made != in_view->second.end()) change(view, made->second);
    }
  }
}
