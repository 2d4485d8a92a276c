#include "reference/tarn/ElementRuns.h"

#include "mesh/database/MeshData.h"

#include <limits>
#include <unordered_set>

namespace Tarn {

namespace {

ElementType type_of_first_known(MeshData& database, const std::vector<Handle<1>>& elements) {
  std::array<ElementType, ElementRuns::chunk_size> types;
  for (std::size_t done = 0; done < elements.size(); done += types.size()) {
    const std::size_t count = std::min(types.size(), elements.size() - done);
    types.fill(None);
    database.get_element_types(count, &elements[done], types.data());
    const auto end = types.begin() + static_cast<std::ptrdiff_t>(count);
    const auto known = std::find_if(types.begin(), end, [](ElementType type) { return type != None; });
    if (known != end) return *known;
  }
  return None;
}

bool have_repeated(const std::vector<ElementRuns>& lists) {
  std::vector<ElementRuns::Run> runs;
  for (const ElementRuns& list : lists)
    runs.insert(runs.end(), list.runs().begin(), list.runs().end());
  const auto lower = [](const ElementRuns::Run& a, const ElementRuns::Run& b) { return a.first < b.first; };
  if (!std::is_sorted(runs.begin(), runs.end(), lower)) std::sort(runs.begin(), runs.end(), lower);
  return std::adjacent_find(runs.begin(), runs.end(), [](const ElementRuns::Run& a, const ElementRuns::Run& b) {
           return b.first - a.first < a.count;
         }) != runs.end();
}

} // namespace

void ElementRuns::append(const std::vector<Handle<1>>& elements, const std::vector<int>& positions) {
  const std::size_t count = std::min(elements.size(), positions.size());
  for (std::size_t i = 0; i < count;) {
    const std::uint64_t element = elements[i].value - i;
    const std::int64_t position = static_cast<std::int64_t>(positions[i]) - static_cast<std::int64_t>(i);
    const std::size_t begin = i;
    const std::size_t most = std::min<std::size_t>(count, begin + std::numeric_limits<std::uint32_t>::max());
    while (i < most && elements[i].value == element + i && positions[i] == position + static_cast<std::int64_t>(i))
      ++i;
    append({elements[begin].value, static_cast<std::uint32_t>(i - begin), positions[begin]});
  }
}

void ElementRuns::append(const Run& run) {
  size_ += run.count;
  if (!runs_.empty()) {
    Run& last = runs_[runs_.size() - 1];
    const bool follows =
        run.first - last.first == last.count &&
        static_cast<std::int64_t>(run.position) - last.position == static_cast<std::int64_t>(last.count);
    if (follows && run.count <= std::numeric_limits<std::uint32_t>::max() - last.count) {
      last.count += run.count;
      return;
    }
  }
  runs_.push_back(run);
}

bool append_of_kind(MeshData& database, const std::vector<ElementType>& types, const std::vector<Handle<1>>& elements,
                    const std::vector<int>& positions, std::vector<ElementRuns>& lists) {
  const ElementType type = type_of_first_known(database, elements);
  if (positions.empty() || std::find(types.begin(), types.end(), type) == types.end()) return false;
  if (lists.empty() || lists.back().type() != type) lists.emplace_back(type);
  lists.back().append(elements, positions);
  return true;
}

void drop_repeated(std::vector<ElementRuns>& lists) {
  if (!have_repeated(lists)) return;
  std::unordered_set<std::uint64_t> seen;
  for (ElementRuns& list : lists) {
    ElementRuns distinct(list.type());
    for (const ElementRuns::Run& run : list.runs())
      for (std::uint32_t i = 0; i < run.count; ++i)
        if (seen.insert(run.first + i).second)
          distinct.append({run.first + i, 1, static_cast<int>(run.position + static_cast<std::int64_t>(i))});
    list = std::move(distinct);
  }
}

} // namespace Tarn
