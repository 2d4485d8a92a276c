#include "group/EntityColors.h"

#include <vtkUnsignedCharArray.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

const TovanColor white(255, 255, 255, 255);

TovanColor at(const std::vector<TovanColor>& colors, int position) {
  const bool given = position >= 0 && static_cast<std::size_t>(position) < colors.size();
  return given ? colors[static_cast<std::size_t>(position)] : white;
}

template <class Pairs> bool handle_less(const Pairs& left, const Pairs& right) { return left.first < right.first; }

template <class Handle, class Pairs>
void add_list(const std::vector<Handle>& handles, const std::vector<TovanColor>& colors, Pairs& pairs) {
  const std::size_t count = std::min(handles.size(), colors.size());
  pairs.reserve(pairs.size() + count);
  for (std::size_t i = 0; i < count; ++i)
    pairs.emplace_back(handles[i], colors[i]);
}

// Sets are in order once they have changed, so that both lists are mostly walked through side by side.
template <class Handle, class Pairs>
void write_list(const std::vector<Handle>& handles, Pairs& pairs, std::vector<TovanColor>& colors) {
  using Pair = typename Pairs::value_type;
  if (!std::is_sorted(pairs.begin(), pairs.end(), handle_less<Pair>))
    std::stable_sort(pairs.begin(), pairs.end(), handle_less<Pair>);
  colors.clear();
  colors.reserve(handles.size());
  auto at = pairs.begin();
  for (std::size_t i = 0; i < handles.size(); ++i) {
    const Handle handle = handles[i];
    if (i > 0 && handle < handles[i - 1])
      at = std::lower_bound(pairs.begin(), pairs.end(), Pair(handle, TovanColor()), handle_less<Pair>);
    while (at != pairs.end() && at->first < handle)
      ++at;
    colors.push_back(at != pairs.end() && at->first == handle ? at->second : white);
  }
}

} // namespace

TovanColor EntityColors::of_node(int position) const { return at(nodes, position); }

TovanColor EntityColors::of_element(std::uint32_t kind, int position) const {
  return kind < elements.size() ? at(elements[kind], position) : white;
}

TovanColor EntityColors::of_vertex(Tarn::Handle<0> node) const {
  const auto found = vertices.lower_bound(node);
  return found != vertices.end() && found->first == node ? found->second : single;
}

vtkSmartPointer<vtkUnsignedCharArray> make_color_array(vtkIdType count) {
  auto colors = vtkSmartPointer<vtkUnsignedCharArray>::New();
  colors->SetName("Color");
  colors->SetNumberOfComponents(4);
  colors->SetNumberOfTuples(count);
  return colors;
}

vtkSmartPointer<vtkUnsignedCharArray> make_color_array(vtkIdType count, TovanColor color) {
  unsigned char rgba[4];
  color.to_rgba(rgba);
  auto colors = make_color_array(count);
  unsigned char* out = colors->GetPointer(0);
  for (vtkIdType i = 0; i < count; ++i)
    std::memcpy(out + 4 * i, rgba, 4);
  return colors;
}

void ColorsByHandle::add(const MeshVector& mesh, const std::vector<TovanColor>& node_colors,
                         const std::array<std::vector<TovanColor>, 10>& element_colors) {
  add_list(mesh.nodes, node_colors, nodes_);
  for (std::size_t type = 1; type < elements_.size(); ++type)
    add_list(mesh.elements[type], element_colors[type], elements_[type]);
}

void ColorsByHandle::write(const MeshVector& mesh, std::vector<TovanColor>& node_colors,
                           std::array<std::vector<TovanColor>, 10>& element_colors) {
  write_list(mesh.nodes, nodes_, node_colors);
  for (std::size_t type = 1; type < elements_.size(); ++type)
    write_list(mesh.elements[type], elements_[type], element_colors[type]);
}
