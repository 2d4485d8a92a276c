// VTK's XML files of multi-block data sets: names of blocks and the files that hold them.

#include "readers/Refusal.h"
#include "readers/formats/FormatReader.h"
#include "readers/formats/XmlHeader.h"

#include <filesystem>

namespace readers {

namespace {

constexpr int deepest_file = 8; // files may name each other in a circle
// Of all files together: where each names several others the number of blocks grows with every level.
constexpr std::size_t most_blocks = 65536;

struct BlockFile {
  std::string name;
  std::string path;
};

std::string name_of(const XmlTag& tag) { return without_entities(tag.attribute("name").value_or("")); }

// The name of a block is its own, else that of the blocks round it, else its number.
std::string block_name(const XmlTag& tag, const std::vector<std::string>& around, std::size_t number) {
  const std::string own = name_of(tag);
  if (!own.empty()) return own;
  for (auto outer = around.rbegin(); outer != around.rend(); ++outer)
    if (!outer->empty()) return *outer;
  return "block " + std::to_string(number);
}

std::vector<BlockFile> list_blocks(const Source& source) {
  const std::filesystem::path folder = std::filesystem::path(source.path).parent_path();
  std::vector<BlockFile> blocks;
  std::vector<std::string> around;
  XmlScan scan(source.bytes.view());
  for (XmlTag tag; scan.next(tag) && tag.name != "AppendedData";) {
    const bool group = tag.name == "Block" || tag.name == "Piece";
    if (group && !tag.closes_itself) around.push_back(name_of(tag));
    if ((tag.name == "/Block" || tag.name == "/Piece") && !around.empty()) around.pop_back();
    if (tag.name != "DataSet") continue;
    const auto file = tag.attribute("file");
    if (!file) continue; // an empty block
    const std::string path = (folder / without_entities(*file)).string();
    blocks.push_back({block_name(tag, around, blocks.size() + 1), path});
  }
  return blocks;
}

// Blocks that cannot be read are left out: the others may be what the user is after.
bool add_block(MeshDraft& draft, const BlockFile& block, const Source& parent, std::string& reason) {
  try {
    append_draft(draft, read_block_draft(block.path, block.name, parent));
    return true;
  } catch (const Refusal& refusal) {
    reason = "block " + block.name + ": " + block.path + ": " + refusal.what();
    return false;
  }
}

MeshDraft parse(const Source& source) {
  if (source.depth >= deepest_file) throw Refusal("is nested deeper than 8 files");
  const std::vector<BlockFile> blocks = list_blocks(source);
  if (blocks.empty()) throw Refusal("names no files with blocks");
  MeshDraft draft;
  std::size_t lost = 0;
  std::string first_reason;
  for (const BlockFile& block : blocks) {
    // Refused on every level, each of which stops at its next block.
    if (source.blocks++ >= most_blocks)
      throw Refusal("names more than " + std::to_string(most_blocks) + " blocks, nested ones included");
    std::string reason;
    if (add_block(draft, block, source, reason)) continue;
    if (lost++ == 0) first_reason = reason;
    draft.notices.push_back(reason);
  }
  if (lost == blocks.size()) throw Refusal(first_reason);
  draft.leave_out("blocks that cannot be read", lost);
  return draft;
}

} // namespace

FormatReader vtm_format() {
  return {{"VTK XML multi-block", {".vtm"}},
          [](const Source& source) { check_vtk_xml(source.bytes.view(), "vtkMultiBlockDataSet"); },
          parse,
          false};
}

} // namespace readers
