#pragma once

#include "mesh/database/Handle.h"
#include "mesh/orbel_mesh_api.h"
#include "pick/PickedMeshEntity.h"

/// The record of a picked node. Made with `New`, given up with `Delete`.
class ORBEL_MESH_API PickedNode : public PickedMeshEntity {
public:
  /// A record that holds one reference; `db` is borrowed and must outlive it.
  static PickedNode* New(Tarn::Handle<0> node, Tarn::MeshData* db);

  /// The node.
  Tarn::Handle<0> node() const;

  /// "Node".
  const char* type() const override;
  /// The database's local id of the node; 0 when it gives none.
  int id() const override;

protected:
  /// See `New`.
  PickedNode(Tarn::Handle<0> node, Tarn::MeshData* db);
  ~PickedNode() override;
};
