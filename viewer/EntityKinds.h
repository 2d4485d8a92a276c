#pragma once

#include "mesh/database/ElementType.h"

#include <string>
#include <vector>

/// The words for kinds of mesh entities: in options, in what is printed, and in the pick filter.
namespace viewer {

/// What ids are asked for and shown for.
enum class EntityKind { Node, Edge, Tri, Quad, Tet, Hex, Wedge, Pyramid, Superelement, Element };

/// "node", "hex" and so on; `Element` is any kind of element.
const char* kind_name(EntityKind kind);
/// "nodes", "hexes" and so on.
const char* kind_names(EntityKind kind);
/// All of them, in the order above.
const std::vector<EntityKind>& entity_kinds();
/// The kind of an element; `Element` for elements of one node, which have no word of their own.
EntityKind kind_of(Tarn::ElementType type);
/// The types of element that the kind stands for, in increasing order; none for nodes.
std::vector<Tarn::ElementType> types_of(EntityKind kind);

} // namespace viewer
