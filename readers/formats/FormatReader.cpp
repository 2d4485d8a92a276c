#include "readers/formats/FormatReader.h"

#include "readers/GuardedRead.h"
#include "readers/Refusal.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace readers {

namespace {

std::string lower_extension(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension;
}

const FormatReader& find_format(const std::string& path) {
  const std::string extension = lower_extension(path);
  for (const FormatReader& reader : format_readers())
    for (const std::string& known : reader.format.extensions)
      if (known == extension) return reader;
  if (extension.empty()) throw Refusal("has no extension to tell its format by");
  throw Refusal("unknown extension " + extension);
}

MeshDraft read(const std::string& path, const std::string& name, bool is_block, int depth, std::size_t& blocks) {
  const FileBytes bytes(path);
  const FormatReader& reader = find_format(path);
  const Source source{path, name, is_block, depth, blocks, bytes};
  reader.check(source);
  const auto parse = [&] { return reader.parse(source); };
  MeshDraft draft = reader.guarded ? read_guarded(parse, limits_for(bytes.size())) : parse();
  // A parser whose memory was damaged may have handed over anything.
  const std::string found = find_inconsistency(draft);
  if (!found.empty()) throw Refusal("damaged: its reader gave " + found);
  return draft;
}

} // namespace

const std::vector<FormatReader>& format_readers() {
  static const std::vector<FormatReader> all = {vtu_format(),  vtp_format(), vts_format(),        vtr_format(),
                                                vti_format(),  vtm_format(), legacy_vtk_format(), exodus_format(),
                                                cgns_format(), stl_format(), ply_format(),        obj_format()};
  return all;
}

MeshDraft read_draft(const std::string& path) {
  std::size_t blocks = 0;
  return read(path, std::filesystem::path(path).stem().string(), false, 0, blocks);
}

MeshDraft read_block_draft(const std::string& path, const std::string& name, const Source& parent) {
  return read(path, name, true, parent.depth + 1, parent.blocks);
}

} // namespace readers
