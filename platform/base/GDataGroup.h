#pragma once

#include "platform/base/orbel_base_api.h"

#include <vtkMultiBlockDataSet.h>
#include <vtkSmartPointer.h>

#include <memory>
#include <vector>

class GDataGroupEntity;

/// The multi-block data objects that stand for all members of a data group, in part order.
using BlockList = std::vector<vtkSmartPointer<vtkMultiBlockDataSet>>;

/// Gathers entities whose graphics are drawn together. A data group has a fixed list of data objects, which
/// `do_update` of the derived class fills from the members. Updates are lazy: changes only mark the group.
class ORBEL_BASE_API GDataGroup {
public:
  /// Forgets its members, which live on, and destroys the data groups below it.
  virtual ~GDataGroup();
  GDataGroup(const GDataGroup&) = delete;
  GDataGroup& operator=(const GDataGroup&) = delete;

  /// A new, empty data group of the same kind and settings; the caller owns it.
  virtual GDataGroup* new_instance() = 0;

  /// Makes `entity` the last member (borrowed) and marks the group. The data objects when it became the only member,
  /// else empty; a member that is added again, or null, changes nothing and gives empty.
  BlockList add_entity(GDataGroupEntity* entity);
  /// Takes the member out and marks the group. The data objects when it was the last member, else empty; a stranger
  /// changes nothing and gives empty.
  BlockList remove_entity(GDataGroupEntity* entity);

  /// Makes an empty data group below this one, with `new_instance()`, and owns it: one whose members the host adds,
  /// takes out and draws apart, but which is updated and set together with this one. Null when `new_instance()` made
  /// none.
  GDataGroup* add_group();
  /// Destroys a data group directly below this one. False: it is not one.
  bool remove_group(GDataGroup* group);

  /// This group's own data objects, in part order, whether or not there are members.
  BlockList all_blocks();
  /// This data group, then each data group below it in order of making, each followed by those below it.
  std::vector<GDataGroup*> all_groups();

  /// Marks the group: the next `update_all` calls `do_update`. A new group is not marked.
  void modified();
  /// Calls `do_update` of each of `all_groups()` that is marked, in that order, clearing its mark first. Appends those
  /// to `updated` unless it is null.
  void update_all(std::vector<GDataGroup*>* updated);
  /// Fills the data objects from the members.
  virtual void do_update() = 0;

protected:
  GDataGroup();
  /// The members in order of joining.
  const std::vector<GDataGroupEntity*>& members() const;

  /// The data objects, in part order; the derived class appends them in its constructor.
  BlockList data_objects_;

private:
  friend class GDataGroupEntity;
  struct Private;
  std::unique_ptr<Private> d;
};
