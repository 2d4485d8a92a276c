#include "mesh/MeshVector.h"

#include <algorithm>

namespace {

template <class List> void sort_list(List& list) {
  std::sort(list.begin(), list.end());
  list.erase(std::unique(list.begin(), list.end()), list.end());
}

template <class List> void append_list(List& to, const List& from) {
  if (&to == &from) {
    const List copy = from;
    to.insert(to.end(), copy.begin(), copy.end());
    return;
  }
  to.insert(to.end(), from.begin(), from.end());
}

// Merge walk; both lists ascending.
template <class List> bool remove_from_list(List& list, const List& other) {
  std::size_t read = 0;
  std::size_t write = 0;
  std::size_t skip = 0;
  while (read < list.size() && skip < other.size()) {
    if (list[read] < other[skip]) {
      list[write++] = list[read++];
    } else {
      if (list[read] == other[skip]) ++read;
      ++skip;
    }
  }
  while (read < list.size())
    list[write++] = list[read++];
  const bool shorter = write < list.size();
  list.resize(write);
  return shorter;
}

} // namespace

MeshVector::MeshVector() = default;
MeshVector::MeshVector(const MeshVector& other) = default;
MeshVector& MeshVector::operator=(const MeshVector& other) = default;
MeshVector::MeshVector(MeshVector&& other) noexcept = default;

MeshVector& MeshVector::operator=(MeshVector&& other) noexcept {
  // Swapping with a fresh set empties the source whatever the vectors' own move assignment leaves there.
  MeshVector taken(std::move(other));
  nodes.swap(taken.nodes);
  elements.swap(taken.elements);
  return *this;
}

MeshVector::~MeshVector() = default;

bool MeshVector::empty() const {
  return nodes.empty() &&
         std::all_of(elements.begin() + 1, elements.end(), [](const auto& list) { return list.empty(); });
}

int MeshVector::size() const {
  std::size_t total = nodes.size();
  for (std::size_t type = 1; type < elements.size(); ++type)
    total += elements[type].size();
  return static_cast<int>(total);
}

void MeshVector::append(const MeshVector& other) {
  append_list(nodes, other.nodes);
  for (std::size_t type = 1; type < elements.size(); ++type)
    append_list(elements[type], other.elements[type]);
}

void MeshVector::sort_unique() {
  sort_list(nodes);
  for (std::size_t type = 1; type < elements.size(); ++type)
    sort_list(elements[type]);
}

bool MeshVector::remove(const MeshVector& other) {
  sort_unique();
  bool removed = remove_from_list(nodes, other.nodes);
  for (std::size_t type = 1; type < elements.size(); ++type)
    removed |= remove_from_list(elements[type], other.elements[type]);
  return removed;
}

void MeshVector::clear() {
  nodes.clear();
  for (std::size_t type = 1; type < elements.size(); ++type)
    elements[type].clear();
}
