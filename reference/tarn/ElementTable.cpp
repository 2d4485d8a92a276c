#include "reference/tarn/ElementTable.h"

namespace Tarn {

void ElementTable::reserve(std::uint64_t count, std::uint64_t nodes_per_element) {
  connectivity_.reserve_more(count * nodes_per_element);
  ids.reserve_more(count);
  owners.reserve_more(count);
}

void ElementTable::append_connectivity(std::uint64_t count, std::uint64_t nodes_per_element, const Handle<0>* nodes) {
  if (connectivity_.empty()) {
    stride_ = nodes_per_element;
  } else if (stride_ != nodes_per_element && stride_ != 0) {
    start_offsets();
  }
  if (stride_ == 0) {
    std::uint64_t* const ends = offsets_.append(count);
    for (std::uint64_t i = 0; i < count; ++i)
      ends[i] = connectivity_.size() + (i + 1) * nodes_per_element;
  }
  const std::uint64_t total = count * nodes_per_element;
  Index* const out = connectivity_.append(total);
  for (std::uint64_t i = 0; i < total; ++i)
    out[i] = static_cast<Index>(nodes[i].value);
}

void ElementTable::start_offsets() {
  const std::uint64_t count = connectivity_.size() / stride_;
  std::uint64_t* const offsets = offsets_.append(count + 1);
  for (std::uint64_t i = 0; i <= count; ++i)
    offsets[i] = i * stride_;
  stride_ = 0;
}

void ElementTable::set_global_id(std::uint64_t index, int id) {
  if (global_ids.size() < size()) global_ids.append(size() - global_ids.size(), 0);
  global_ids[index] = id;
  has_global_id.set(index);
}

std::size_t ElementTable::bytes() const {
  return connectivity_.bytes() + offsets_.bytes() + ids.bytes() + owners.bytes() + global_ids.bytes() +
         has_global_id.bytes() + dead.bytes() + id_index.bytes();
}

} // namespace Tarn
