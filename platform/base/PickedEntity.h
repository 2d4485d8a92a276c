#pragma once

#include "platform/base/orbel_base_api.h"

#include <cstdint>

namespace Tarn {
class MeshData;
}

namespace GPicked {

/// A record of something that can be picked. Reference-counted, 1 at construction: `Register` takes a reference,
/// `Delete` gives one up and destroys the record with the last. Two records of equal kind, database and handle name the
/// same entity.
class ORBEL_BASE_API PickedEntity {
public:
  PickedEntity(const PickedEntity&) = delete;
  PickedEntity& operator=(const PickedEntity&) = delete;

  /// Takes a reference.
  void Register() const;
  /// Gives a reference up.
  virtual void Delete();
  /// The kind's display name, in static storage.
  virtual const char* type() const = 0;
  /// The local id.
  virtual int id() const = 0;
  /// The global id of an element that has one; the base answers -1.
  virtual int element_id() const;
  /// The entity's name, never null.
  virtual const char* name() const = 0;
  /// The entity's handle in its database.
  virtual unsigned long long handle() const = 0;

protected:
  PickedEntity();
  virtual ~PickedEntity();

public:
  /// The database that the handle belongs to; borrowed.
  virtual Tarn::MeshData* database() const = 0;

private:
  mutable std::int32_t count_ = 1;
};

} // namespace GPicked
