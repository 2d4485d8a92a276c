#pragma once

#include "platform/util/TovanColor.h"
#include "reference/base/label/FrameDepth.h"
#include "reference/base/label/GlyphSheet.h"
#include "reference/base/label/TextQuads.h"

#include <vtkWeakPointer.h>

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

class LabelList;
class ScreenProjection;
class vtkRenderer;
class vtkTextProperty;
class vtkWindow;

/// The labels of one mapper in one renderer.
class LabelDrawing {
public:
  explicit LabelDrawing(vtkRenderer* renderer);

  /// Whether the renderer is gone, or was never this one.
  bool is_stale(vtkRenderer* renderer) const { return renderer_ != renderer; }
  /// Draws what is in view. `hides`: not those whose point lies behind what is drawn.
  void draw(const LabelList& labels, vtkTextProperty* style, bool hides);
  void release(vtkWindow* window);

private:
  /// A label in view.
  struct Shown {
    std::size_t label;
    int x, y;        ///< lower left end of its line
    std::size_t end; ///< of its pieces, which begin where those before end

    bool operator==(const Shown& other) const {
      return label == other.label && x == other.x && y == other.y && end == other.end;
    }
  };
  /// What the rectangles were made from.
  struct State {
    std::uint64_t list = 0, sheet = 0;
    unsigned char opacity = 0;
    std::uint32_t plain_color = 0; ///< of labels without one
    std::vector<Shown> shown;

    bool operator==(const State& other) const {
      return list == other.list && sheet == other.sheet && opacity == other.opacity &&
             plain_color == other.plain_color && shown == other.shown;
    }
  };

  void choose_sheet(vtkTextProperty* style);
  void place_labels(const LabelList& labels, vtkTextProperty* style, bool hides);
  void make_quads(const LabelList& labels);
  TovanColor tint_of(TovanColor color) const;

  vtkWeakPointer<vtkRenderer> renderer_;
  std::shared_ptr<FrameDepth> depth_;
  std::shared_ptr<GlyphSheet> sheet_;
  TextQuads quads_;
  State drawn_;
  State wanted_;
  std::vector<std::uint32_t> pieces_; // of all labels in view
};
