#pragma once

#include "mesh/orbel_mesh_api.h"
#include "platform/base/GDataGroup.h"

/// Merges mesh groups into three multi-block data objects, one block per member: 0 surface, 1 edges, 2 nodes.
class ORBEL_MESH_API GMeshDataGroup : public GDataGroup {
public:
  /// `wire`: whether edges and nodes come in wire form (`GMeshGroup::get_wire_data`), for modes that draw no surface.
  explicit GMeshDataGroup(bool wire);
  ~GMeshDataGroup() override;

  /// A new, empty one of the same form; the caller owns it.
  GDataGroup* new_instance() override;
  /// Changes the form and marks the group, also when it had that form already.
  void set_wire(bool on);
  /// Asks each member for its data. Members that are no mesh groups have null blocks.
  void do_update() override;

private:
  bool wire_;
};
