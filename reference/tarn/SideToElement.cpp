#include "mesh/database/SideToElement.h"

#include "reference/tarn/SideToElementPrivate.h"

SideToElement::SideToElement(Tarn::MeshData* database) : d(std::make_unique<Private>()) { d->database = database; }

SideToElement::~SideToElement() = default;

void SideToElement::add_elements(const std::vector<Tarn::Handle<1>>& elements, const std::vector<int>& positions) {
  Tarn::append_of_kind(*d->database, {Tarn::Tet, Tarn::Hex, Tarn::Wedge, Tarn::Pyramid}, elements, positions, d->lists);
}
