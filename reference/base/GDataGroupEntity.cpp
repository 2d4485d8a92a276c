#include "platform/base/GDataGroupEntity.h"

#include "reference/base/GroupLinks.h"

#include <algorithm>

GDataGroupEntity::Private::Link* GDataGroupEntity::Private::find(const GDataGroup* group) {
  const auto found =
      std::find_if(links.begin(), links.end(), [group](const Link& link) { return link.group == group; });
  return found == links.end() ? nullptr : &*found;
}

GDataGroupEntity::GDataGroupEntity() : d(std::make_unique<Private>()) {}

GDataGroupEntity::~GDataGroupEntity() {
  while (!d->links.empty())
    d->links.back().group->remove_entity(this);
  if (d->mark) *d->mark->GetPointer(0) = nullptr;
}

void GDataGroupEntity::modify_owning_groups() {
  for (const Private::Link& link : d->links)
    link.group->modified();
}
