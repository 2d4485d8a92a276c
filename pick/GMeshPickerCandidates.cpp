#include "pick/GMeshPicker.h"

#include "platform/base/GPickerBase.h"

#include <algorithm>
#include <initializer_list>

// Which entities of a mesh are candidates of a pick, in which order.

namespace {

using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;
using NodeHit = PickInterface::PickResult<Node>;
using ElementHit = PickInterface::PickResult<Elem>;

// What the pick filter admits.
struct Admitted {
  bool hex, tet, pyramid, wedge, knife, superelement, quad, tri, edge, node, solid, shell, element;

  explicit Admitted(bool use_filter) {
    // Asked in this order, also when the answers do not count.
    const auto ask = [use_filter](const char* name) { return GPickerBase::is_filtered(name) || !use_filter; };
    hex = ask(GMeshPicker::gHexType);
    tet = ask(GMeshPicker::gTetType);
    pyramid = ask(GMeshPicker::gPyramidType);
    wedge = ask(GMeshPicker::gWedgeType);
    knife = ask(GMeshPicker::gKnifeType); // there are no knives to pick
    superelement = ask(GMeshPicker::gSuperElemType);
    quad = ask(GMeshPicker::gQuadType);
    tri = ask(GMeshPicker::gTriType);
    edge = ask(GMeshPicker::gEdgeType);
    node = ask(GMeshPicker::gNodeType);
    solid = ask(GMeshPicker::g3dElementType);
    shell = ask(GMeshPicker::g2dElementType);
    element = ask(GMeshPicker::gElementType);
  }
};

Elem identity(Elem handle) { return handle; }
Node identity(Node handle) { return handle; }
template <class H> H identity(const PickInterface::PickResult<H>& hit) { return hit.handle; }

// Of equal neighbours the first stays. The list is not sorted: what repeats further apart is reported again.
template <class Hit> void append_distinct(std::vector<Hit>& found, std::vector<Hit>& hits) {
  const auto same = [](const Hit& left, const Hit& right) { return identity(left) == identity(right); };
  hits.insert(hits.end(), found.begin(), std::unique(found.begin(), found.end(), same));
}

// `Where` is a ray (double*) or a region (PickBounds&): what the forms of each `PickInterface` operation differ in.
template <class Where, class Hit>
void pick_vertices(PickInterface& picker, const MeshVector& mesh, Where&& where,
                   std::initializer_list<Tarn::ElementType> types, std::vector<Hit>& hits) {
  std::vector<Hit> found;
  if (!mesh.nodes.empty()) picker.pickEntities(mesh.nodes, where, found);
  for (const Tarn::ElementType type : types)
    if (!mesh.elements[type].empty()) picker.pickVertices(mesh.elements[type], where, found);
  append_distinct(found, hits);
}

template <class Where, class Hit>
void pick_edges(PickInterface& picker, const MeshVector& mesh, Where&& where, std::vector<Hit>& hits) {
  std::vector<Hit> found;
  if (!mesh.elements[Tarn::Edge].empty()) picker.pickEntities(mesh.elements[Tarn::Edge], where, found);
  for (const Tarn::ElementType type : {Tarn::Tri, Tarn::Quad, Tarn::Hex, Tarn::Tet, Tarn::Pyramid, Tarn::Wedge})
    if (!mesh.elements[type].empty()) picker.pickEdges(mesh.elements[type], where, found);
  append_distinct(found, hits);
}

template <class Where, class Hit>
void pick_elements(PickInterface& picker, const std::vector<Elem>& elements, Where&& where, bool admitted,
                   std::vector<Hit>& hits) {
  if (admitted && !elements.empty()) picker.pickEntities(elements, where, hits);
}

template <class Where, class Hit>
void pick_shells_and_solids(PickInterface& picker, const MeshVector& mesh, Where&& where, const Admitted& admitted,
                            std::vector<Hit>& hits) {
  const bool shell = admitted.shell || admitted.element;
  const bool solid = admitted.solid || admitted.element;
  pick_elements(picker, mesh.elements[Tarn::Tri], where, admitted.tri || shell, hits);
  pick_elements(picker, mesh.elements[Tarn::Quad], where, admitted.quad || shell, hits);
  pick_elements(picker, mesh.elements[Tarn::Hex], where, admitted.hex || solid, hits);
  pick_elements(picker, mesh.elements[Tarn::Tet], where, admitted.tet || solid, hits);
  pick_elements(picker, mesh.elements[Tarn::Pyramid], where, admitted.pyramid || solid, hits);
  pick_elements(picker, mesh.elements[Tarn::Wedge], where, admitted.wedge || solid, hits);
}

} // namespace

void GMeshPicker::pick_mesh_by_ray(PickInterface& picker, const MeshVector& mesh, double* const ray,
                                   std::vector<NodeHit>& node_hits, std::vector<ElementHit>& element_hits,
                                   bool use_filter) {
  const Admitted admitted(use_filter);
  if (admitted.node || admitted.element) {
    pick_vertices(picker, mesh, ray,
                  {Tarn::OneNode, Tarn::Edge, Tarn::Tri, Tarn::Quad, Tarn::Hex, Tarn::Tet, Tarn::Pyramid, Tarn::Wedge},
                  node_hits);
  }
  if (admitted.edge || admitted.element) pick_edges(picker, mesh, ray, element_hits);
  pick_shells_and_solids(picker, mesh, ray, admitted, element_hits);
  pick_elements(picker, mesh.elements[Tarn::Superelement], ray,
                admitted.superelement || admitted.solid || admitted.element, element_hits);
}

void GMeshPicker::pick_mesh_by_bounds(PickInterface& picker, const MeshVector& mesh, PickBounds* bounds,
                                      std::vector<Node>& nodes, std::vector<Elem>& elements, bool use_filter) {
  const Admitted admitted(use_filter);
  if (admitted.node || admitted.element) {
    pick_vertices(picker, mesh, *bounds,
                  {Tarn::Edge, Tarn::Tri, Tarn::Quad, Tarn::Hex, Tarn::Tet, Tarn::Pyramid, Tarn::Wedge}, nodes);
  }
  if (admitted.edge || admitted.element) pick_edges(picker, mesh, *bounds, elements);
  // No superelements: a region does not pick them.
  pick_shells_and_solids(picker, mesh, *bounds, admitted, elements);
}
