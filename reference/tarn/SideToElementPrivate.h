#pragma once

#include "mesh/database/SideToElement.h"
#include "reference/tarn/ElementList.h"

/// The lists that were added, and the database that knows them.
struct SideToElement::Private {
  Tarn::MeshData* database;
  std::vector<Tarn::ElementList> lists;
};
