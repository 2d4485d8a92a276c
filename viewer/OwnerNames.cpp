#include "viewer/OwnerNames.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <utility>

namespace viewer {
namespace {

constexpr std::size_t most_candidates = 8;

// How many characters must be inserted, removed or replaced to turn one name into the other.
std::size_t edits_between(const std::string& a, const std::string& b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), 0);
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i] != b[j]);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row[b.size()];
}

std::vector<std::string> nearest_first(const std::string& name, const std::vector<SceneOwner>& owners) {
  std::set<std::string> seen;
  std::vector<std::pair<std::size_t, std::string>> ranked;
  for (const SceneOwner& owner : owners)
    if (seen.insert(owner.name).second) ranked.emplace_back(edits_between(name, owner.name), owner.name);
  std::stable_sort(ranked.begin(), ranked.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<std::string> names;
  for (auto& entry : ranked)
    names.push_back(std::move(entry.second));
  return names;
}

} // namespace

std::string unknown_owner(const std::string& name, const std::vector<SceneOwner>& owners) {
  const auto names = nearest_first(name, owners);
  std::string text = "no owner is named '" + name + "'; " + (names.empty() ? "there are none" : "owners:");
  for (std::size_t i = 0; i < std::min(names.size(), most_candidates); ++i)
    text += (i == 0 ? " '" : ", '") + names[i] + "'";
  if (names.size() > most_candidates)
    text += " and " + std::to_string(names.size() - most_candidates) + " more (--info lists them)";
  return text;
}

} // namespace viewer
