#include "readers/formats/PlyHeader.h"

#include "readers/Refusal.h"
#include "readers/formats/TextNumbers.h"

#include <algorithm>
#include <cstring>

namespace readers {

namespace {

struct Property {
  std::string name;
  std::size_t size = 0;       // of a value
  std::size_t count_size = 0; // of the count before a list; 0: no list
  bool real_count = false;
  bool is_signed = false;
  bool names_vertices = false; // of a face
};

struct Element {
  std::string name;
  std::uint64_t count = 0;
  std::vector<Property> properties;
};

enum class Encoding { Text, Little, Big };

std::size_t size_of_type(const std::string& type) {
  static const std::pair<const char*, std::size_t> Sizes[] = {
      {"char", 1},   {"int8", 1},    {"uchar", 1},  {"uint8", 1},  {"short", 2}, {"int16", 2},
      {"ushort", 2}, {"uint16", 2},  {"int", 4},    {"int32", 4},  {"uint", 4},  {"uint32", 4},
      {"float", 4},  {"float32", 4}, {"double", 8}, {"float64", 8}};
  for (const auto& [name, size] : Sizes)
    if (type == name) return size;
  throw Refusal("unknown property type " + type.substr(0, 30));
}

class PlyCheck {
public:
  explicit PlyCheck(std::string_view text) : text_(text) {}

  std::vector<std::pair<std::string, std::uint64_t>> run() {
    read_header();
    check_vertices();
    for (const Element& element : elements_)
      encoding_ == Encoding::Text ? check_lines(element) : check_rows(element);
    std::vector<std::pair<std::string, std::uint64_t>> others;
    for (const Element& element : elements_)
      if (element.name != "vertex" && element.name != "face") others.emplace_back(element.name, element.count);
    return others;
  }

private:
  void read_header() {
    if (next_line() != "ply") throw Refusal("is not a PLY file");
    while (true) {
      if (at_ >= text_.size()) throw Refusal("ends within its header");
      const std::vector<std::string> words = split(next_line());
      if (words.empty() || words[0] == "comment" || words[0] == "obj_info") continue;
      if (words[0] == "end_header") return;
      if (words[0] == "format" && words.size() >= 2)
        read_format(words[1]);
      else if (words[0] == "element" && words.size() == 3)
        read_element(words);
      else if (words[0] == "property" && !elements_.empty() && (words.size() == 3 || words.size() == 5))
        read_property(words);
      else
        throw Refusal("header line \"" + words[0].substr(0, 30) + "\" is not understood");
    }
  }

  void read_format(const std::string& format) {
    if (format == "ascii")
      encoding_ = Encoding::Text;
    else if (format == "binary_little_endian")
      encoding_ = Encoding::Little;
    else if (format == "binary_big_endian")
      encoding_ = Encoding::Big;
    else
      throw Refusal("unknown format " + format.substr(0, 30));
  }

  void read_element(const std::vector<std::string>& words) {
    const auto count = to_integer(words[2]);
    if (!count || *count < 0)
      throw Refusal("element " + words[1].substr(0, 30) + " declares \"" + words[2].substr(0, 30) + "\"");
    elements_.push_back({words[1].substr(0, 30), static_cast<std::uint64_t>(*count), {}});
  }

  void read_property(const std::vector<std::string>& words) {
    Property property;
    property.name = words.back();
    if (words.size() == 5) {
      if (words[1] != "list") throw Refusal("header line \"property\" is not understood");
      property.count_size = size_of_type(words[2]);
      property.real_count = words[2][0] == 'f' || words[2][0] == 'd';
      property.size = size_of_type(words[3]);
    } else {
      property.size = size_of_type(words[1]);
    }
    const bool is_corners = property.name == "vertex_indices" || property.name == "vertex_index";
    const bool is_whole = words[words.size() - 2][0] != 'f' && words[words.size() - 2][0] != 'd';
    property.names_vertices = elements_.back().name == "face" && is_corners && is_whole && property.count_size > 0;
    property.is_signed = words[words.size() - 2][0] != 'u';
    elements_.back().properties.push_back(property);
  }

  void check_vertices() {
    const auto vertex =
        std::find_if(elements_.begin(), elements_.end(), [](const Element& e) { return e.name == "vertex"; });
    if (vertex == elements_.end()) throw Refusal("declares no vertices");
    vertex_count_ = vertex->count;
    for (const char* axis : {"x", "y", "z"})
      if (std::none_of(vertex->properties.begin(), vertex->properties.end(),
                       [axis](const Property& p) { return p.name == axis && p.count_size == 0; }))
        throw Refusal(std::string("vertices have no property ") + axis);
  }

  void check_rows(const Element& element) {
    std::size_t fixed = 0;
    bool has_lists = false;
    for (const Property& property : element.properties) {
      fixed += property.count_size > 0 ? property.count_size : property.size;
      has_lists = has_lists || property.count_size > 0;
    }
    if (fixed > 0 && element.count > rest() / fixed) too_many(element);
    if (!has_lists) {
      at_ += static_cast<std::size_t>(element.count) * fixed;
      return;
    }
    for (std::uint64_t row = 0; row < element.count; ++row)
      check_row(element, row);
  }

  void check_row(const Element& element, std::uint64_t row) {
    for (const Property& property : element.properties) {
      std::uint64_t bytes = property.size;
      if (property.count_size > 0) {
        if (property.real_count) throw Refusal("lists counted by real numbers");
        if (rest() < property.count_size) ends_in(element, row);
        const std::uint64_t count = read_count(property.count_size);
        if (count > rest() / property.size) ends_in(element, row);
        bytes = count * property.size;
      }
      if (rest() < bytes) ends_in(element, row);
      for (std::uint64_t at = 0; property.names_vertices && at < bytes; at += property.size)
        check_corner(read_integer(at_ + static_cast<std::size_t>(at), property), row);
      at_ += static_cast<std::size_t>(bytes);
    }
  }

  // The reader looks vertices up before anybody else can see the faces.
  void check_corner(std::int64_t vertex, std::uint64_t face) const {
    if (vertex < 0 || static_cast<std::uint64_t>(vertex) >= vertex_count_)
      throw Refusal("face " + std::to_string(face) + " names vertex " + std::to_string(vertex) + " of " +
                    std::to_string(vertex_count_));
  }

  std::int64_t read_integer(std::size_t at, const Property& property) const {
    const std::uint64_t value = read_bytes(at, property.size);
    const std::size_t unused = 64 - 8 * property.size;
    return property.is_signed ? static_cast<std::int64_t>(value << unused) >> unused : static_cast<std::int64_t>(value);
  }

  std::uint64_t read_bytes(std::size_t at, std::size_t size) const {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
      value = value << 8 | static_cast<unsigned char>(text_[at + (encoding_ == Encoding::Big ? i : size - 1 - i)]);
    return value;
  }

  std::uint64_t read_count(std::size_t size) {
    const std::uint64_t count = read_bytes(at_, size);
    at_ += size;
    return count;
  }

  // A row is a line with at least as many numbers as it declares.
  void check_lines(const Element& element) {
    if (element.count > rest() + 1) too_many(element);
    for (std::uint64_t row = 0; row < element.count; ++row) {
      if (at_ >= text_.size()) ends_in(element, row);
      const std::string_view line = next_line();
      std::size_t at = 0;
      for (const Property& property : element.properties) {
        std::uint64_t values = 1;
        if (property.count_size > 0) {
          const auto count = to_integer(next_word(line, at));
          if (!count || *count < 0 || static_cast<std::uint64_t>(*count) > line.size()) ends_in(element, row);
          values = static_cast<std::uint64_t>(*count);
        }
        for (std::uint64_t i = 0; i < values; ++i) {
          const std::string_view word = next_word(line, at);
          if (!is_number(word)) ends_in(element, row);
          if (property.names_vertices) check_corner(to_integer(word).value_or(-1), row);
        }
      }
    }
  }

  std::string_view next_line() {
    const std::size_t end = std::min(text_.find('\n', at_), text_.size());
    std::string_view line = text_.substr(at_, end - at_);
    at_ = std::min(end + 1, text_.size());
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return line;
  }

  static std::vector<std::string> split(std::string_view line) {
    std::vector<std::string> words;
    std::size_t at = 0;
    for (std::string_view word = next_word(line, at); !word.empty(); word = next_word(line, at))
      words.emplace_back(word);
    return words;
  }

  [[noreturn]] static void too_many(const Element& element) {
    throw Refusal("element " + element.name + " declares " + std::to_string(element.count) +
                  ", more than the file can hold");
  }
  [[noreturn]] static void ends_in(const Element& element, std::uint64_t row) {
    throw Refusal("row " + std::to_string(row) + " of element " + element.name + " is not what the header declares");
  }

  std::uint64_t rest() const { return text_.size() - at_; }

  std::string_view text_;
  std::size_t at_ = 0;
  Encoding encoding_ = Encoding::Text;
  std::vector<Element> elements_;
  std::uint64_t vertex_count_ = 0;
};

} // namespace

std::vector<std::pair<std::string, std::uint64_t>> check_ply(std::string_view text) { return PlyCheck(text).run(); }

} // namespace readers
