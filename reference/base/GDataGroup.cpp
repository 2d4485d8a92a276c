#include "platform/base/GDataGroup.h"

#include "reference/base/GroupLinks.h"

#include <algorithm>

void GDataGroup::Private::close_gaps(const GDataGroup* self) {
  if (gaps == 0) return;
  members.erase(std::remove(members.begin(), members.end(), nullptr), members.end());
  for (std::size_t slot = 0; slot < members.size(); ++slot)
    members[slot]->d->find(self)->slot = slot;
  gaps = 0;
}

GDataGroup::GDataGroup() : d(std::make_unique<Private>()) {}

GDataGroup::~GDataGroup() {
  for (GDataGroupEntity* entity : members()) {
    auto& links = entity->d->links;
    links.erase(links.begin() + (entity->d->find(this) - links.data()));
  }
  while (!d->below.empty())
    remove_group(d->below.back());
  if (d->above) {
    auto& siblings = d->above->d->below;
    siblings.erase(std::remove(siblings.begin(), siblings.end(), this), siblings.end());
  }
}

GDataGroup* GDataGroup::add_group() {
  GDataGroup* group = new_instance();
  if (!group) return nullptr;
  group->d->above = this;
  d->below.push_back(group);
  return group;
}

bool GDataGroup::remove_group(GDataGroup* group) {
  const auto found = std::find(d->below.begin(), d->below.end(), group);
  if (found == d->below.end()) return false;
  d->below.erase(found);
  group->d->above = nullptr;
  delete group;
  return true;
}

BlockList GDataGroup::add_entity(GDataGroupEntity* entity) {
  if (!entity || entity->d->find(this)) return {};
  entity->d->links.push_back({this, d->members.size()});
  d->members.push_back(entity);
  modified();
  return d->members.size() - d->gaps == 1 ? data_objects_ : BlockList{};
}

BlockList GDataGroup::remove_entity(GDataGroupEntity* entity) {
  GDataGroupEntity::Private::Link* link = entity ? entity->d->find(this) : nullptr;
  if (!link) return {};
  d->members[link->slot] = nullptr;
  ++d->gaps;
  auto& links = entity->d->links;
  links.erase(links.begin() + (link - links.data()));
  modified();
  return d->members.size() == d->gaps ? data_objects_ : BlockList{};
}

BlockList GDataGroup::all_blocks() { return data_objects_; }

std::vector<GDataGroup*> GDataGroup::all_groups() {
  std::vector<GDataGroup*> groups{this};
  for (GDataGroup* child : d->below) {
    const std::vector<GDataGroup*> under_child = child->all_groups();
    groups.insert(groups.end(), under_child.begin(), under_child.end());
  }
  return groups;
}

void GDataGroup::modified() { d->marked = true; }

void GDataGroup::update_all(std::vector<GDataGroup*>* updated) {
  struct Step {
    GDataGroup* group;
    std::weak_ptr<char> life;
  };
  std::vector<Step> steps;
  for (GDataGroup* group : all_groups())
    steps.push_back({group, group->d->life});
  // An update runs the host's code, which may destroy groups further on.
  for (const Step& step : steps) {
    if (step.life.expired() || !step.group->d->marked) continue;
    step.group->d->marked = false;
    try {
      step.group->do_update();
    } catch (...) {
      // What a host's database throws must not cost the update: the next walk tries again.
      if (!step.life.expired()) step.group->d->marked = true;
      throw;
    }
    if (updated && !step.life.expired()) updated->push_back(step.group);
  }
}

const std::vector<GDataGroupEntity*>& GDataGroup::members() const {
  d->close_gaps(this);
  return d->members;
}
