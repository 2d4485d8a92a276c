#include "readers/OwnerNames.h"

#include <map>
#include <set>

namespace readers {

namespace {

// Length of the well-formed UTF-8 sequence at `at`, 0 when there is none.
std::size_t sequence_length(const std::string& text, std::size_t at) {
  const auto byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u; };
  const auto follows = [&](std::size_t i) { return (byte(i) & 0xc0u) == 0x80u; };
  const unsigned lead = byte(at);
  const unsigned second = byte(at + 1);
  if (lead < 0x80) return 1;
  if (lead >= 0xc2 && lead <= 0xdf && follows(at + 1)) return 2;
  if (lead >= 0xe0 && lead <= 0xef && follows(at + 1) && follows(at + 2)) {
    const bool overlong = lead == 0xe0 && second < 0xa0;
    const bool surrogate = lead == 0xed && second >= 0xa0;
    return overlong || surrogate ? 0 : 3;
  }
  if (lead >= 0xf0 && lead <= 0xf4 && follows(at + 1) && follows(at + 2) && follows(at + 3)) {
    const bool overlong = lead == 0xf0 && second < 0x90;
    const bool beyond = lead == 0xf4 && second >= 0x90;
    return overlong || beyond ? 0 : 4;
  }
  return 0;
}

std::string printable(const std::string& name) {
  std::string result;
  for (std::size_t at = 0; at < name.size();) {
    const std::size_t length = sequence_length(name, at);
    const bool control = length == 1 && (static_cast<unsigned char>(name[at]) < 0x20 || name[at] == 0x7f);
    result += length == 0 || control ? "?" : name.substr(at, length);
    at += length == 0 ? 1 : length;
  }
  return result.empty() ? "unnamed" : result;
}

class UniqueNames {
public:
  std::string operator()(const std::string& name) {
    std::string unique = name;
    // Where a name left off is remembered: thousands of blocks may have the same.
    for (int& n = last_[name]; !taken_.insert(unique).second;)
      unique = name + " (" + std::to_string(++n + 1) + ")";
    return unique;
  }

private:
  std::set<std::string> taken_;
  std::map<std::string, int> last_;
};

} // namespace

void tidy_names(MeshDraft& draft) {
  UniqueNames unique;
  for (std::string& owner : draft.owners)
    owner = unique(printable(owner));
  for (NodeSet& set : draft.node_sets)
    set.name = unique(printable(set.name));
}

} // namespace readers
