#pragma once

#include "platform/util/TovanColor.h"
#include "reference/base/label/GlyphSheet.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

class FrameDepth;
class LabelImage;
class LabelList;
class vtkRenderer;
class vtkTextProperty;

/// The labels of one mapper in one renderer: which of them are in view, and where.
class LabelDrawing {
public:
  /// Finds the labels in view, without those that lie behind the depth unless that is null. False when everything is as
  /// it was when it was last painted.
  bool place(const LabelList& labels, vtkTextProperty* style, vtkRenderer* renderer, const FrameDepth* depth);
  /// Paints what was placed; the labels must be the same.
  void paint(const LabelList& labels, LabelImage& image);

private:
  /// A label in view.
  struct Shown {
    std::size_t label;
    int x, y;        ///< lower left end of its line
    std::size_t end; ///< of its pieces, which begin where those before it end

    bool operator==(const Shown& other) const { return label == other.label && x == other.x && y == other.y; }
  };
  /// All that a painting is made from.
  struct State {
    std::uint64_t list = 0;
    std::shared_ptr<GlyphSheet> sheet;
    unsigned char opacity = 0;
    TovanColor plain_color; ///< of labels without one
    std::vector<Shown> shown;

    bool operator==(const State& other) const {
      return list == other.list && sheet == other.sheet && opacity == other.opacity &&
             plain_color == other.plain_color && shown == other.shown;
    }
  };

  void find_labels_in_view(const LabelList& labels, vtkTextProperty* style, vtkRenderer* renderer,
                           const FrameDepth* depth);
  TovanColor tint_of(TovanColor color) const;

  State painted_;
  State placed_;
  std::vector<std::uint32_t> pieces_; // of all labels placed
};
