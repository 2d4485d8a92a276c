#include "pick/PickedElement.h"

#include "mesh/MeshQueries.h"

#include <vector>

PickedElement* PickedElement::New(Tarn::Handle<1> element, Tarn::MeshData* db) {
  return new PickedElement(element, db);
}

PickedElement::PickedElement(Tarn::Handle<1> element, Tarn::MeshData* db) : PickedMeshEntity(element.value, db) {}

PickedElement::~PickedElement() = default;

Tarn::Handle<1> PickedElement::element() const { return {handle()}; }

const char* PickedElement::type() const { return OB::get_element_type(element(), database()); }

int PickedElement::id() const {
  const Tarn::Handle<1> handle = element();
  std::vector<int> ids(1, 0);
  OB::get_element_ids(1, &handle, ids, database());
  return ids.front();
}

int PickedElement::element_id() const {
  const Tarn::Handle<1> handle = element();
  std::vector<int> ids(1, 0);
  std::vector<char> has_id(1, 0);
  OB::get_global_element_ids(1, &handle, ids, has_id, database());
  return has_id.front() ? ids.front() : -1;
}
