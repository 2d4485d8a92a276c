#include "group/MeshSkin.h"

#include "mesh/MeshVector.h"
#include "mesh/database/ElementType.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace {

using Elements = std::vector<Tarn::Handle<1>>;

// Positions that nobody has yet are made for a slice at a time: a list as long as the mesh would have to be written to
// fresh memory first.
template <class Add> void add_in_slices(const Elements& elements, Add add) {
  constexpr std::size_t slice_size = 1u << 14;
  Elements slice;
  std::vector<int> positions;
  for (std::size_t begin = 0; begin < elements.size(); begin += slice_size) {
    const auto first = elements.begin() + static_cast<std::ptrdiff_t>(begin);
    slice.assign(first, first + static_cast<std::ptrdiff_t>(std::min(slice_size, elements.size() - begin)));
    positions.resize(slice.size());
    std::iota(positions.begin(), positions.end(), static_cast<int>(begin));
    add(slice, positions);
  }
}

template <class Add> void add_list(const Elements& elements, const std::vector<int>* positions, Add add) {
  if (positions)
    add(elements, *positions);
  else
    add_in_slices(elements, add);
}

} // namespace

MeshSkin::MeshSkin(Tarn::MeshData* database, const MeshVector& mesh, const std::vector<int> (*positions)[10])
    : solids_(database), skinner_(&solids_) {
  const auto positions_of = [positions](std::size_t type) { return positions ? &(*positions)[type] : nullptr; };
  for (const std::size_t type : {Tarn::Hex, Tarn::Tet, Tarn::Pyramid, Tarn::Wedge})
    add_list(mesh.elements[type], positions_of(type),
             [this](const Elements& list, const std::vector<int>& places) { solids_.add_elements(list, places); });
  for (const std::size_t type : {Tarn::Quad, Tarn::Tri})
    add_list(mesh.elements[type], positions_of(type), [this](const Elements& list, const std::vector<int>& places) {
      skinner_.add_skin_elements(list, places);
    });
  sides_ = skinner_.getMeshSkin();
}

MeshSkin::~MeshSkin() = default;

const std::vector<Side*>& MeshSkin::sides() const { return sides_; }
