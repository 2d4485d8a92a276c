// STL files, binary and text.

#include "readers/DataSetDraft.h"
#include "readers/QuietVtk.h"
#include "readers/Refusal.h"
#include "readers/formats/FormatReader.h"

#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkSTLReader.h>

#include <array>
#include <cstring>
#include <unordered_map>

namespace readers {

namespace {

constexpr std::size_t head = 84; // 80 bytes of text and the number of triangles
constexpr std::size_t triangle = 50;

std::uint64_t declared_triangles(std::string_view bytes) {
  std::uint64_t count = 0;
  for (std::size_t i = 4; i-- > 0;)
    count = count << 8 | static_cast<unsigned char>(bytes[80 + i]);
  return count;
}

// The length decides: there are binary files that begin as text ones do.
void check(const Source& source) {
  const std::string_view bytes = source.bytes.view();
  const bool begins_as_text = bytes.substr(0, 5) == "solid";
  if (bytes.size() < head) {
    if (!begins_as_text) throw Refusal("is not an STL file");
    return;
  }
  const std::uint64_t count = declared_triangles(bytes);
  const std::uint64_t length = head + count * triangle;
  if (length == bytes.size() || begins_as_text) return;
  if (length > bytes.size())
    throw Refusal("declares " + std::to_string(count) + " triangles, more than the file can hold");
}

struct PlaceHash {
  std::size_t operator()(const std::array<double, 3>& place) const {
    std::uint64_t hash = 0;
    for (double value : place) {
      std::uint64_t bits = 0;
      std::memcpy(&bits, &value, sizeof bits);
      hash = (hash ^ bits) * 0x9e3779b97f4a7c15u;
      hash ^= hash >> 32;
    }
    return static_cast<std::size_t>(hash);
  }
};

// The format has no connectivity: triangles repeat their corners, so equal coordinates are one node here.
void merge_equal_nodes(MeshDraft& draft) {
  std::unordered_map<std::array<double, 3>, std::uint32_t, PlaceHash> known;
  std::vector<std::uint32_t> index(draft.node_count());
  std::uint32_t kept = 0;
  for (std::size_t node = 0; node < index.size(); ++node) {
    std::array<double, 3> place{};
    for (std::size_t axis = 0; axis < 3; ++axis)
      place[axis] = draft.xyz[3 * node + axis] + 0.0; // -0 becomes 0
    const auto [found, is_new] = known.emplace(place, kept);
    index[node] = found->second;
    if (is_new) std::copy(place.begin(), place.end(), draft.xyz.begin() + 3 * std::ptrdiff_t{kept++});
  }
  draft.xyz.resize(3 * std::size_t{kept});
  draft.node_owner.assign(kept, 0);
  for (ElementBatch& batch : draft.batches)
    for (std::uint32_t& node : batch.nodes)
      node = index[node];
}

MeshDraft parse(const Source& source) {
  const QuietVtk quiet;
  vtkNew<vtkSTLReader> reader;
  reader->SetFileName(source.path.c_str());
  reader->MergingOff(); // VTK's merging drops degenerate triangles
  reader->Update();
  quiet.refuse_errors(source.path);
  MeshDraft draft;
  add_data_set(draft, *reader->GetOutput(), source.name, source.is_block);
  merge_equal_nodes(draft);
  return draft;
}

} // namespace

FormatReader stl_format() { return {{"STL", {".stl"}}, check, parse, true}; }

} // namespace readers
