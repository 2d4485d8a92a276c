// Wavefront OBJ files: vertices, faces, lines and points. Read here: VTK's reader splits all faces apart when the file
// has texture coordinates or normals, and drops those faces that lack them where others have some.

#include "readers/CellSorter.h"
#include "readers/Refusal.h"
#include "readers/formats/FormatReader.h"
#include "readers/formats/TextNumbers.h"

#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkNew.h>

#include <algorithm>

namespace readers {

namespace {

constexpr std::size_t node_limit = std::size_t{1} << 29;

class ObjFile {
public:
  explicit ObjFile(const Source& source) : text_(source.bytes.view()) { draft_.owners.push_back(source.name); }

  MeshDraft read() {
    if (text_.find('\0') != std::string_view::npos) throw Refusal("is not a text file");
    while (at_ < text_.size())
      read_line(next_line());
    sort_cells();
    own_the_rest(draft_, 0, 0);
    return std::move(draft_);
  }

private:
  // A backslash at its end joins a line to the next.
  std::string_view next_line() {
    ++line_;
    joined_.clear();
    while (true) {
      std::string_view line = physical_line();
      const bool goes_on = !line.empty() && line.back() == '\\' && at_ < text_.size();
      if (!goes_on && joined_.empty()) return line;
      if (goes_on) line.remove_suffix(1);
      joined_.append(line).append(" ");
      if (!goes_on) return joined_;
      ++line_;
    }
  }

  std::string_view physical_line() {
    const std::size_t end = std::min(text_.find('\n', at_), text_.size());
    std::string_view line = text_.substr(at_, end - at_);
    at_ = std::min(end + 1, text_.size());
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return line;
  }

  void read_line(std::string_view line) {
    std::size_t at = 0;
    const std::string_view keyword = next_word(line, at);
    if (keyword == "v") return read_vertex(line, at);
    if (keyword == "f" || keyword == "fo") return read_cell(line, at, faces_);
    if (keyword == "l") return read_cell(line, at, lines_);
    if (keyword == "p") return read_cell(line, at, points_);
    if (keyword == "curv" || keyword == "curv2" || keyword == "surf") draft_.leave_out("free-form curves and surfaces");
    // Everything else speaks of looks or of groups.
  }

  void read_vertex(std::string_view line, std::size_t at) {
    for (int axis = 0; axis < 3; ++axis) {
      const std::string_view word = next_word(line, at);
      const auto value = to_real(word);
      if (!value) throw Refusal(where() + "\"" + std::string(word.substr(0, 30)) + "\" is not a coordinate");
      draft_.xyz.push_back(*value);
    }
    if (draft_.node_count() > node_limit) throw Refusal("more than 2^29 nodes");
  }

  // Indices count from 1, or backwards from the last vertex so far; what follows a slash is of no interest.
  void read_cell(std::string_view line, std::size_t at, vtkCellArray* cells) {
    corners_.clear();
    for (std::string_view word = next_word(line, at); !word.empty() && word[0] != '#'; word = next_word(line, at)) {
      const auto index = to_integer(word.substr(0, word.find('/')));
      if (!index || *index == 0) throw Refusal(where() + "\"" + std::string(word.substr(0, 30)) + "\" is not an index");
      corners_.push_back(*index > 0 ? *index - 1 : static_cast<vtkIdType>(draft_.node_count()) + *index);
    }
    cells->InsertNextCell(static_cast<vtkIdType>(corners_.size()), corners_.data());
  }

  std::string where() const { return "line " + std::to_string(line_) + ": "; }

  void sort_cells() {
    draft_.node_owner.assign(draft_.node_count(), unowned);
    CellFacts facts;
    facts.owner_of_label.push_back(0);
    PointPlaces places;
    places.point_count = draft_.node_count();
    CellList points{points_, nullptr, {}, VTK_POLY_VERTEX};
    std::fill(std::begin(points.short_types), std::end(points.short_types), VTK_POLY_VERTEX);
    CellList lines{lines_, nullptr, {}, VTK_POLY_LINE};
    std::fill(std::begin(lines.short_types), std::end(lines.short_types), VTK_POLY_LINE);
    const CellList faces{faces_, nullptr, {VTK_POLYGON, VTK_POLYGON, VTK_POLYGON, VTK_TRIANGLE, VTK_QUAD}, VTK_POLYGON};
    add_cells(draft_, {points, lines, faces}, facts, places);
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t line_ = 0;
  std::string joined_;
  std::vector<vtkIdType> corners_;
  vtkNew<vtkCellArray> points_;
  vtkNew<vtkCellArray> lines_;
  vtkNew<vtkCellArray> faces_;
  MeshDraft draft_;
};

} // namespace

FormatReader obj_format() {
  return {{"Wavefront OBJ", {".obj"}},
          [](const Source&) {},
          [](const Source& source) { return ObjFile(source).read(); },
          false};
}

} // namespace readers
