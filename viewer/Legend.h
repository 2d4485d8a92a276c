#pragma once

#include "platform/util/TovanColor.h"

#include <vtkNew.h>
#include <vtkSmartPointer.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

class vtkActor2D;
class vtkPolyData;
class vtkRenderer;
class vtkTextActor;

namespace viewer {

/// A line of the legend.
struct LegendRow {
  std::string text;
  std::optional<TovanColor> color;  ///< of the patch before the text; none for no patch
  bool faint = false;               ///< of something that is not shown: a hollow patch and a grey text
  bool strong = false;              ///< of what is in focus: bold
  std::optional<std::size_t> owner; ///< the owner that it stands for
};

/// A list of colours and names in the upper right corner, which scrolls where it is longer than the window is high.
/// Places are pixels of the window, origin at the lower left.
class Legend {
public:
  /// Adds its props to the renderer, which must outlive the legend.
  explicit Legend(vtkRenderer* renderer);
  ~Legend();
  Legend(const Legend&) = delete;
  Legend& operator=(const Legend&) = delete;

  void set_rows(std::vector<LegendRow> rows);
  void set_visible(bool visible);
  bool is_visible() const;
  /// Scrolls by rows, down when positive; false when there is nothing more that way.
  bool scroll(int rows);
  /// Scrolls until the owner's row shows.
  void reveal(std::size_t owner);
  /// Places everything for the renderer's present size; to be called before each frame. `leaves_room`: draws nothing.
  void lay_out(bool leaves_room = false);

  /// Where it lies, or would lie were nothing else in its place: left, bottom, right, top.
  std::array<int, 4> frame() const;
  /// Whether the place lies on the legend.
  bool covers(int x, int y) const;
  /// The owner whose row lies there.
  std::optional<std::size_t> owner_at(int x, int y) const;

private:
  int first_possible() const;
  vtkTextActor* text_actor(std::size_t index);
  void draw_boxes();

  vtkRenderer* renderer_;
  vtkNew<vtkPolyData> boxes_;
  vtkNew<vtkActor2D> box_actor_;
  std::vector<vtkSmartPointer<vtkTextActor>> texts_;
  std::vector<LegendRow> rows_;
  bool visible_ = true;
  int first_ = 0; // the uppermost row that shows
  int shown_ = 0; // how many rows have room
  int drawn_ = 0; // how many of them are drawn
  int left_ = 0, right_ = 0, top_ = 0, bottom_ = 0, row_height_ = 1;
};

} // namespace viewer
