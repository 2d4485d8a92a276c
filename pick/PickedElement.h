#pragma once

#include "mesh/database/Handle.h"
#include "mesh/orbel_mesh_api.h"
#include "pick/PickedMeshEntity.h"

/// The record of a picked element. Made with `New`, given up with `Delete`.
class ORBEL_MESH_API PickedElement : public PickedMeshEntity {
public:
  /// A record that holds one reference; `db` is borrowed and must outlive it.
  static PickedElement* New(Tarn::Handle<1> element, Tarn::MeshData* db);

  /// The element.
  Tarn::Handle<1> element() const;

  /// The database's name of the element's kind, owned by the database library.
  const char* type() const override;
  /// The database's local id of the element; 0 when it gives none.
  int id() const override;
  /// The element's global id; -1 when it has none.
  int element_id() const override;

protected:
  /// See `New`.
  PickedElement(Tarn::Handle<1> element, Tarn::MeshData* db);
  ~PickedElement() override;
};
