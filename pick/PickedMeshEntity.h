#pragma once

#include "mesh/orbel_mesh_api.h"
#include "platform/base/PickedEntity.h"

#include <cstdint>

/// What records of picked nodes and elements have in common: a handle and the database that it belongs to.
class ORBEL_MESH_API PickedMeshEntity : public GPicked::PickedEntity {
public:
  /// "": mesh entities have no names.
  const char* name() const override;
  /// The handle's value.
  unsigned long long handle() const override;
  /// The database, borrowed.
  Tarn::MeshData* database() const override;

protected:
  /// `database` is borrowed and must outlive the record.
  PickedMeshEntity(std::uint64_t handle, Tarn::MeshData* database);
  ~PickedMeshEntity() override;

private:
  std::uint64_t handle_;
  Tarn::MeshData* database_;
};
