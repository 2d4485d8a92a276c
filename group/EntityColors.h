#pragma once

#include "group/GMeshGroup.h"

#include <vtkSmartPointer.h>
#include <vtkType.h>

#include <cstdint>

class vtkUnsignedCharArray;

/// How a group's entities are coloured, as the builders of its grid read it. All lists are borrowed.
struct EntityColors {
  GMeshGroup::ColorType type;                              ///< which of the following counts
  TovanColor single;                                       ///< for everything, and for vertices without a colour
  const std::vector<TovanColor>& nodes;                    ///< by position in the group's list of nodes
  const std::array<std::vector<TovanColor>, 10>& elements; ///< by kind and position in the group's list of that kind
  const std::map<Tarn::Handle<0>, TovanColor>& vertices;   ///< by node

  /// All channels 255 beyond the list's end.
  TovanColor of_node(int position) const;
  /// All channels 255 beyond the list's end and for kinds that do not exist.
  TovanColor of_element(std::uint32_t kind, int position) const;
  /// The single colour for a node without one.
  TovanColor of_vertex(Tarn::Handle<0> node) const;
};

/// A "Color" array of `count` tuples of red, green, blue and alpha, not yet written.
vtkSmartPointer<vtkUnsignedCharArray> make_color_array(vtkIdType count);
/// A "Color" array of `count` tuples, all of one colour.
vtkSmartPointer<vtkUnsignedCharArray> make_color_array(vtkIdType count, TovanColor color);

/// Remembers which colour each entity of a set has, while the set and with it all positions change.
class ColorsByHandle {
public:
  /// Notes the colours of a set; the lists are parallel to its own, and end where the shorter one does. Of entities
  /// that are noted twice the first colour counts.
  void add(const MeshVector& mesh, const std::vector<TovanColor>& node_colors,
           const std::array<std::vector<TovanColor>, 10>& element_colors);
  /// Makes the lists parallel to those of `mesh`; an entity that was not noted gets all channels 255.
  void write(const MeshVector& mesh, std::vector<TovanColor>& node_colors,
             std::array<std::vector<TovanColor>, 10>& element_colors);

private:
  template <int Dim> using Pairs = std::vector<std::pair<Tarn::Handle<Dim>, TovanColor>>;

  Pairs<0> nodes_;
  std::array<Pairs<1>, 10> elements_;
};
