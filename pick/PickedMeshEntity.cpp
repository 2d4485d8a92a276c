#include "pick/PickedMeshEntity.h"

PickedMeshEntity::PickedMeshEntity(std::uint64_t handle, Tarn::MeshData* database)
    : handle_(handle), database_(database) {}

PickedMeshEntity::~PickedMeshEntity() = default;

const char* PickedMeshEntity::name() const { return ""; }

unsigned long long PickedMeshEntity::handle() const { return handle_; }

Tarn::MeshData* PickedMeshEntity::database() const { return database_; }
