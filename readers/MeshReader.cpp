#include "readers/MeshReader.h"

#include "readers/DatabaseFill.h"
#include "readers/OwnerNames.h"
#include "readers/Refusal.h"
#include "readers/formats/FormatReader.h"

#include <algorithm>
#include <filesystem>

namespace readers {

namespace {

std::string stem_of(const std::string& path) { return std::filesystem::path(path).stem().string(); }

std::string list_left_out(const MeshDraft& draft) {
  std::string text;
  for (const LeftOut& left_out : draft.left_out)
    text += (text.empty() ? "" : ", ") + std::to_string(left_out.count) + " " + left_out.reason;
  return text;
}

// Cells that were all left out are no mesh, nodes that nobody ever used are one.
void refuse_what_is_empty(const MeshDraft& draft) {
  const bool lost_all = draft.element_count() == 0 && !draft.left_out.empty();
  if (lost_all) throw Refusal("nothing in it can be drawn: " + list_left_out(draft));
  if (draft.node_count() == 0) throw Refusal("holds no mesh");
}

void put_under_one_owner(MeshDraft& draft, const std::string& name) {
  draft.owners = {name};
  draft.node_sets.clear();
  std::fill(draft.node_owner.begin(), draft.node_owner.end(), 0);
  for (ElementBatch& batch : draft.batches)
    batch.owner = 0;
}

MeshDraft read_and_check(const std::string& path, const Options& options) {
  MeshDraft draft = read_draft(path);
  leave_out_bad_nodes(draft);
  refuse_what_is_empty(draft);
  if (options.group_by == GroupBy::None) put_under_one_owner(draft, stem_of(path));
  tidy_names(draft);
  return draft;
}

std::string try_to_read(const std::string& path, Tarn::MeshDatabase& database, const Options& options, Report& report) {
  try {
    return fill_database(read_and_check(path, options), options, database, report);
  } catch (const Refusal& refusal) {
    return refusal.what();
  } catch (const std::bad_alloc&) {
    return "too large for the memory of this machine";
  }
}

} // namespace

Report read_mesh(const std::string& path, Tarn::MeshDatabase& database, const Options& options) {
  Report report;
  const std::string error = try_to_read(path, database, options, report);
  if (error.empty()) return report;
  Report failure;
  failure.error = path + ": " + error;
  return failure;
}

const std::vector<Format>& formats() {
  static const std::vector<Format> all = [] {
    std::vector<Format> list;
    for (const FormatReader& reader : format_readers())
      list.push_back(reader.format);
    return list;
  }();
  return all;
}

} // namespace readers
