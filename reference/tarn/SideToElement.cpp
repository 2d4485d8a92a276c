#include "mesh/database/SideToElement.h"

#include "reference/tarn/SideToElementPrivate.h"

SideToElement::SideToElement(Tarn::MeshData* database) : d(std::make_unique<Private>()) { d->database = database; }

SideToElement::~SideToElement() = default;

void SideToElement::add_elements(const std::vector<Tarn::Handle<1>>& elements, const std::vector<int>& positions) {
  if (!elements.empty() && !positions.empty()) d->lists.push_back({elements, positions});
}
