#include "readers/formats/LegacyHeader.h"

#include "readers/Refusal.h"
#include "readers/formats/TextNumbers.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace readers {

namespace {

std::string lower(std::string_view text) {
  std::string result(text.substr(0, 40));
  std::transform(result.begin(), result.end(), result.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return result;
}

std::string upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

std::uint64_t size_of_type(const std::string& type) {
  static const std::pair<const char*, std::uint64_t> sizes[] = {
      {"float", 4},          {"double", 8},        {"int", 4},           {"unsigned_int", 4},
      {"long", 8},           {"unsigned_long", 8}, {"vtktypeint64", 8},  {"short", 2},
      {"unsigned_short", 2}, {"char", 1},          {"unsigned_char", 1}, {"vtktypeuint64", 8},
      {"vtkidtype", 4},      {"vtktypeint32", 4},  {"vtktypeuint32", 4}, {"signed_char", 1}};
  for (const auto& [name, size] : sizes)
    if (type == name) return size;
  throw Refusal("unknown data type " + type);
}

// Whether the reader gets a value out of the text: it stops at what its stream does not take for a value of the type.
bool reads_as(std::string_view text, const std::string& type) {
  const auto value = to_real(text);
  if (!value || !std::isfinite(*value)) return false;
  if (type == "float") return std::abs(*value) < 0x1.ffffffp127; // what is less rounds to the largest float at most
  return type == "double" || to_integer(text).has_value();
}

constexpr std::array<std::string_view, 5> cell_sections = {"cells", "vertices", "lines", "polygons", "triangle_strips"};
constexpr std::array<std::string_view, 5> data_sets = {"unstructured_grid", "polydata", "structured_grid",
                                                       "structured_points", "rectilinear_grid"};

template <std::size_t N> bool contains(const std::array<std::string_view, N>& list, std::string_view word) {
  return std::find(list.begin(), list.end(), word) != list.end();
}

class Walk {
public:
  explicit Walk(std::string_view text) : text_(text) {}

  void run() {
    read_head();
    while (true) {
      const std::string keyword = lower(word());
      if (keyword == "points" || ends_with_coordinates(keyword))
        check_coordinates(keyword);
      else if (contains(cell_sections, keyword))
        check_cells(keyword);
      else if (keyword == "cell_types")
        check_types();
      else if (keyword == "dimensions")
        check_dimensions();
      else if (keyword == "spacing" || keyword == "origin" || keyword == "aspect_ratio")
        line();
      else if (keyword == "metadata")
        skip_metadata();
      else
        return check_types_fit_cells(); // attributes, or the end
    }
  }

private:
  static bool ends_with_coordinates(const std::string& keyword) {
    return keyword == "x_coordinates" || keyword == "y_coordinates" || keyword == "z_coordinates";
  }

  void read_head() {
    if (lower(text_.substr(0, 14)) != "# vtk datafile") throw Refusal("is not a legacy VTK file");
    const std::string first(line());
    const std::size_t version = first.find_last_of(" \t");
    major_version_ = version == std::string::npos ? 0 : std::atoi(first.c_str() + version);
    line(); // title
    const std::string mode = lower(word());
    if (mode != "ascii" && mode != "binary") throw Refusal("line 3 is neither ASCII nor BINARY");
    binary_ = mode == "binary";
    if (lower(word()) != "dataset") throw Refusal("line 4 does not name a DATASET");
    const std::string data_set = lower(word());
    if (!contains(data_sets, data_set)) throw Refusal("dataset type " + upper(data_set) + " is not a mesh");
    line();
  }

  void check_coordinates(const std::string& keyword) {
    const std::uint64_t count = declared(keyword);
    const std::string type = lower(word());
    const std::uint64_t size = size_of_type(type);
    const std::uint64_t values = keyword == "points" ? 3 : 1;
    line();
    check_fits(keyword, count, values * (binary_ ? size : 2));
    skip(keyword, count * values, type);
  }

  void check_cells(const std::string& keyword) {
    std::uint64_t count = declared(keyword);
    const std::uint64_t length = declared(keyword);
    line();
    if (major_version_ >= 5) {
      check_array(keyword, "offsets", count);
      check_array(keyword, "connectivity", length);
      count -= count > 0 ? 1 : 0;
    } else {
      check_fits(keyword, count, binary_ ? 4 : 2);
      check_fits(keyword, length, binary_ ? 4 : 2);
      walk_cells(keyword, count, length);
    }
    if (keyword == "cells") cells_ = count;
  }

  void check_array(const std::string& section, const std::string& name, std::uint64_t count) {
    if (lower(word()) != name) throw Refusal(upper(section) + " lacks its " + upper(name));
    const std::string type = lower(word());
    const std::uint64_t size = size_of_type(type);
    line();
    check_fits(section, count, binary_ ? size : 2);
    skip(upper(section) + " " + name, count, type);
  }

  void check_types() {
    types_ = declared("cell_types");
    line();
    check_fits("cell_types", types_, binary_ ? 4 : 2);
    skip("cell_types", types_, "int");
  }

  // The reader takes as many types as there are cells, wherever they come from.
  void check_types_fit_cells() const {
    if (cells_ != types_)
      throw Refusal("has " + std::to_string(cells_) + " CELLS but " + std::to_string(types_) + " CELL_TYPES");
  }

  void check_dimensions() {
    constexpr std::int64_t most = std::int64_t{1} << 29;
    std::int64_t product = 1;
    for (int axis = 0; axis < 3; ++axis) {
      const std::string text(word());
      const auto value = to_integer(text);
      if (!value || *value < 0) throw Refusal("DIMENSIONS declares \"" + text.substr(0, 30) + "\"");
      if (*value > most || (product *= *value) > most) throw Refusal("DIMENSIONS declares more than 2^29 points");
    }
    line();
  }

  // Lists of count and points: the reader walks them by the counts, wherever these lead.
  void walk_cells(const std::string& keyword, std::uint64_t count, std::uint64_t length) {
    std::uint64_t left = length;
    for (std::uint64_t cell = 0; cell < count; ++cell) {
      const std::int64_t points = left > 0 ? next_value() : -1;
      if (points < 0 || static_cast<std::uint64_t>(points) > left - 1)
        throw Refusal(upper(keyword) + ": cell " + std::to_string(cell) + " does not fit into the list of " +
                      std::to_string(length) + " values");
      if (binary_)
        at_ += 4 * static_cast<std::size_t>(points);
      else
        for (std::int64_t point = 0; point < points; ++point)
          next_value();
      left -= 1 + static_cast<std::uint64_t>(points);
    }
    if (left != 0)
      throw Refusal(upper(keyword) + ": " + std::to_string(left) + " of " + std::to_string(length) +
                    " values belong to no cell");
    if (binary_) return;
    while (at_ < text_.size() && is_blank(text_[at_]))
      ++at_;
  }

  std::int64_t next_value() {
    if (!binary_) {
      const std::string_view text = word();
      const auto value = to_integer(text);
      if (!value)
        throw Refusal(text.empty() ? "ends within its cells"
                                   : "\"" + std::string(text.substr(0, 30)) + "\" among cells");
      return *value;
    }
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i)
      value = value << 8 | static_cast<unsigned char>(text_[at_++]);
    return static_cast<std::int32_t>(value);
  }

  void check_fits(const std::string& keyword, std::uint64_t count, std::uint64_t bytes_each) const {
    // The last value of a text may end the file without a blank.
    if (count > (text_.size() - at_ + 1) / bytes_each)
      throw Refusal(upper(keyword) + " declares " + std::to_string(count) + ", more than the file can hold");
  }

  std::uint64_t declared(const std::string& keyword) {
    const std::string text(word());
    const auto value = to_integer(text);
    if (!value || *value < 0) throw Refusal(upper(keyword) + " declares \"" + text.substr(0, 30) + "\"");
    return static_cast<std::uint64_t>(*value);
  }

  void skip(const std::string& keyword, std::uint64_t values, const std::string& type) {
    if (binary_) {
      at_ = std::min<std::size_t>(text_.size(), at_ + values * size_of_type(type));
      return;
    }
    for (std::uint64_t i = 0; i < values; ++i) {
      const std::string_view text = word();
      if (text.empty())
        throw Refusal(upper(keyword) + ": ends at value " + std::to_string(i) + " of " + std::to_string(values));
      if (!reads_as(text, type))
        throw Refusal(upper(keyword) + ": value " + std::to_string(i) + " is \"" + std::string(text.substr(0, 30)) +
                      "\"");
    }
  }

  void skip_metadata() {
    line();
    while (at_ < text_.size() && !is_all_blank(line())) {
    }
  }

  static bool is_all_blank(std::string_view text) { return std::all_of(text.begin(), text.end(), is_blank); }

  std::string_view word() { return next_word(text_, at_); }

  // The rest of the line.
  std::string_view line() {
    const std::size_t start = at_;
    at_ = text_.find('\n', at_);
    at_ = at_ == std::string_view::npos ? text_.size() : at_ + 1;
    return text_.substr(start, at_ - start);
  }

  std::string_view text_;
  std::size_t at_ = 0;
  int major_version_ = 0;
  bool binary_ = false;
  std::uint64_t cells_ = 0;
  std::uint64_t types_ = 0;
};

} // namespace

void check_legacy_vtk(std::string_view text) { Walk(text).run(); }

} // namespace readers
