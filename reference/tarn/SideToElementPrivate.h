#pragma once

#include "mesh/database/SideToElement.h"
#include "reference/tarn/ElementRuns.h"

#include <vector>

/// The lists that were added, and the database that knows them.
struct SideToElement::Private {
  Tarn::MeshData* database;
  std::vector<Tarn::ElementRuns> lists;
};
