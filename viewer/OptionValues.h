#pragma once

#include "viewer/Options.h"

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

/// Values of options, from text. Each function throws `BadValue` for text that it does not take: wrong, not finite, or
/// out of range. Nothing is trimmed or guessed.
namespace viewer {

/// Text that is no value of its option. `what()` is one line without the option's name.
class BadValue : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// A finite number, digits in the C locale: "0.5", "-1e3".
double parse_number(const std::string& text);
/// A number from `low` to `high`.
double parse_number(const std::string& text, double low, double high);
/// "W,H" in pixels.
std::array<int, 2> parse_resolution(const std::string& text);
/// "#RRGGBB", opaque.
TovanColor parse_color(const std::string& text);
/// "NX,NY,NZ,D".
ClipPlane parse_clip(const std::string& text);
/// "iso", "+x" and so on.
ViewFrom parse_view(const std::string& text);
/// "wireframe", "hidden-line", "dimmed", "shaded" or "translucent".
OBUtil::RenderMode parse_render_mode(const std::string& text);
/// "owner" or "kind".
ColorBy parse_color_by(const std::string& text);
/// "owner" or "none".
readers::GroupBy parse_group_by(const std::string& text);
/// "X,Y", "X0,Y0,X1,Y1", "X,Y,R" with a positive radius, or three corners and more: by the shape.
PickRequest parse_pick(PickRequest::Shape shape, const std::string& text);
/// "KIND:local" or "KIND:global", or "nodes:element", separated by commas: of the same kind the last counts.
LabelOptions parse_labels(const std::string& text);
/// Names of the pick filter, separated by commas: "Hex,Node".
std::vector<std::string> parse_filter(const std::string& text);
/// "KIND:IDS" or "KIND@global:IDS": "hex:1,5,9-12", "nodes:3". Ids are not negative.
IdSelection parse_selection(const std::string& text);
/// A path that ends in ".png".
std::string parse_picture_path(const std::string& text);

/// The text that `parse_render_mode` takes for the mode.
const char* render_mode_name(OBUtil::RenderMode mode);
/// The text that `parse_view` takes for the direction.
const char* view_name(ViewFrom view);
/// The text that `parse_clip` takes for the plane, to nine digits.
std::string clip_text(const ClipPlane& plane);

} // namespace viewer
