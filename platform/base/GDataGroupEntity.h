#pragma once

#include "platform/base/orbel_base_api.h"

#include <memory>

class GDataGroup;

/// What can be a member of data groups. It may be in several at once, and knows them.
class ORBEL_BASE_API GDataGroupEntity {
public:
  /// Leaves all its data groups; back pointers to it answer null from now on.
  virtual ~GDataGroupEntity();
  GDataGroupEntity(const GDataGroupEntity&) = delete;
  GDataGroupEntity& operator=(const GDataGroupEntity&) = delete;

protected:
  GDataGroupEntity();
  /// Tells every data group that it is in that it changed; nothing is updated before the next `GDataGroup::update_all`.
  void modify_owning_groups();

private:
  friend class GDataGroup;
  friend class GModel;
  struct Private;
  std::unique_ptr<Private> d;
};
