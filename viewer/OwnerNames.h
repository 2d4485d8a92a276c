#pragma once

#include "viewer/Scene.h"

#include <string>

namespace viewer {

/// One line for a name that no owner has: the names that come nearest to it, and how many more there are.
std::string unknown_owner(const std::string& name, const std::vector<SceneOwner>& owners);

} // namespace viewer
