#include "tests/tarn/ForeignMeshData.h"

#include <algorithm>

namespace tarn_test {

void ForeignMeshData::get_element_types(Count count, const Elem* list, Tarn::ElementType* types) {
  for (Count i = 0; i < count; ++i) {
    const auto found = elements.find(list[i].value);
    types[i] = found == elements.end() ? Tarn::None : found->second.type;
  }
}

void ForeignMeshData::get_coordinate_arrays(Count count, const Node* list, double* x, double* y, double* z) {
  for (Count i = 0; i < count; ++i) {
    const auto found = nodes.find(list[i].value);
    if (found == nodes.end()) continue;
    x[i] = found->second[0];
    y[i] = found->second[1];
    z[i] = found->second[2];
  }
}

void ForeignMeshData::get_connectivity(Count count, const Elem* list, Count* length, Node* out) {
  const Count stride = count ? *length / count : 0;
  for (Count i = 0; i < count; ++i) {
    const auto found = elements.find(list[i].value);
    for (Count k = 0; k < stride; ++k) {
      const bool has_node = found != elements.end() && k < found->second.nodes.size();
      const Node node = has_node ? found->second.nodes[k] : Node();
      if (node != Node() || !leaves_nulls_unwritten) out[i * stride + k] = node;
    }
  }
  *length = count * stride;
}

} // namespace tarn_test
