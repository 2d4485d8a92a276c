#include "viewer/OptionValues.h"

#include "pick/GMeshPicker.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>
#include <sstream>
#include <utility>

namespace viewer {
namespace {

constexpr int largest_side = 16384;
constexpr long largest_area = 64L * 1024 * 1024;

template <class Value> struct Choice {
  const char* name;
  Value value;
};

constexpr Choice<OBUtil::RenderMode> render_modes[] = {{"wireframe", OBUtil::Wireframe},
                                                       {"hidden-line", OBUtil::HiddenLine},
                                                       {"dimmed", OBUtil::DimmedHiddenLine},
                                                       {"shaded", OBUtil::Shaded},
                                                       {"translucent", OBUtil::Translucent}};
constexpr Choice<ViewFrom> views[] = {{"iso", ViewFrom::Iso},  {"+x", ViewFrom::PlusX},  {"-x", ViewFrom::MinusX},
                                      {"+y", ViewFrom::PlusY}, {"-y", ViewFrom::MinusY}, {"+z", ViewFrom::PlusZ},
                                      {"-z", ViewFrom::MinusZ}};
constexpr Choice<ColorBy> color_sources[] = {{"owner", ColorBy::Owner}, {"kind", ColorBy::Kind}};
constexpr Choice<OBUtil::LabelType> label_sources[] = {
    {"local", OBUtil::LocalId}, {"global", OBUtil::GlobalId}, {"element", OBUtil::NodeElementId}};
constexpr Choice<readers::GroupBy> groupings[] = {{"owner", readers::GroupBy::Owner}, {"none", readers::GroupBy::None}};

std::string quoted(const std::string& text) { return "'" + text + "'"; }

std::vector<std::string> split(const std::string& text) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == ',')
      parts.emplace_back();
    else
      parts.back() += c;
  }
  return parts;
}

std::string plain(double number) {
  std::ostringstream text;
  text << number;
  return text.str();
}

template <class Value, std::size_t Size>
Value parse_choice(const std::string& text, const Choice<Value> (&choices)[Size]) {
  std::string names;
  for (const auto& choice : choices) {
    if (text == choice.name) return choice.value;
    names += std::string(names.empty() ? "" : ", ") + choice.name;
  }
  throw BadValue(quoted(text) + " is not one of " + names);
}

template <class Value, std::size_t Size> const char* name_of(Value value, const Choice<Value> (&choices)[Size]) {
  for (const auto& choice : choices)
    if (choice.value == value) return choice.name;
  return "";
}

int parse_side(const std::string& text) {
  int side = 0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, side);
  if (result.ec != std::errc() || result.ptr != end || side < 1 || side > largest_side)
    throw BadValue(quoted(text) + " is not a whole number from 1 to " + std::to_string(largest_side));
  return side;
}

// The form and what it is made of: so many numbers, or, when `more`, so many and any even number besides.
struct PickForm {
  const char* form;
  std::size_t count;
  bool more;
};

const PickForm& form_of(PickRequest::Shape shape) {
  static constexpr PickForm forms[] = {
      {"X,Y", 2, false}, {"X0,Y0,X1,Y1", 4, false}, {"X,Y,R", 3, false}, {"X0,Y0,X1,Y1,X2,Y2,...", 6, true}};
  return forms[static_cast<std::size_t>(shape)];
}

constexpr double largest_pixel = 1e6;

const std::vector<const char*>& filter_names() {
  static const std::vector<const char*> names = {
      GMeshPicker::gHexType,    GMeshPicker::gTetType,       GMeshPicker::gPyramidType,   GMeshPicker::gWedgeType,
      GMeshPicker::gKnifeType,  GMeshPicker::gSuperElemType, GMeshPicker::gQuadType,      GMeshPicker::gTriType,
      GMeshPicker::gEdgeType,   GMeshPicker::gNodeType,      GMeshPicker::g3dElementType, GMeshPicker::g2dElementType,
      GMeshPicker::gElementType};
  return names;
}

EntityKind parse_kind(const std::string& text) {
  std::string names;
  for (const EntityKind kind : entity_kinds()) {
    if (text == kind_name(kind) || text == kind_names(kind)) return kind;
    names += std::string(names.empty() ? "" : ", ") + kind_name(kind);
  }
  throw BadValue(quoted(text) + " is not one of " + names);
}

int parse_id(const std::string& text) {
  int id = 0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, id);
  if (result.ec != std::errc() || result.ptr != end || id < 0) throw BadValue(quoted(text) + " is not an id");
  return id;
}

IdRange parse_range(const std::string& text) {
  const std::size_t dash = text.find('-');
  if (dash == std::string::npos || dash == 0) return {parse_id(text), parse_id(text)};
  const IdRange range = {parse_id(text.substr(0, dash)), parse_id(text.substr(dash + 1))};
  if (range.first > range.last) throw BadValue(quoted(text) + " runs backwards");
  return range;
}

} // namespace

double parse_number(const std::string& text) {
  const char* const begin = text.data() + (text.size() > 1 && text[0] == '+' && text[1] != '-');
  const char* const end = text.data() + text.size();
  double number = 0;
  const auto result = std::from_chars(begin, end, number);
  if (result.ec != std::errc() || result.ptr != end || !std::isfinite(number))
    throw BadValue(quoted(text) + " is not a number");
  return number;
}

double parse_number(const std::string& text, double low, double high) {
  const double number = parse_number(text);
  if (number < low || number > high) throw BadValue(quoted(text) + " is not from " + plain(low) + " to " + plain(high));
  return number;
}

std::array<int, 2> parse_resolution(const std::string& text) {
  const auto parts = split(text);
  if (parts.size() != 2) throw BadValue(quoted(text) + " is not of the form W,H");
  const std::array<int, 2> size = {parse_side(parts[0]), parse_side(parts[1])};
  if (static_cast<long>(size[0]) * size[1] > largest_area)
    throw BadValue(quoted(text) + " has more than " + std::to_string(largest_area) + " pixels");
  return size;
}

TovanColor parse_color(const std::string& text) {
  const bool hexadecimal = text.size() == 7 && text[0] == '#' &&
                           std::all_of(text.begin() + 1, text.end(), [](unsigned char c) { return std::isxdigit(c); });
  if (!hexadecimal) throw BadValue(quoted(text) + " is not of the form #RRGGBB");
  const auto channel = [&](int at) { return static_cast<unsigned char>(std::stoi(text.substr(at, 2), nullptr, 16)); };
  return {channel(1), channel(3), channel(5)};
}

ClipPlane parse_clip(const std::string& text) {
  const auto parts = split(text);
  if (parts.size() != 4) throw BadValue(quoted(text) + " is not of the form NX,NY,NZ,D");
  ClipPlane plane;
  for (int axis = 0; axis < 3; ++axis)
    plane.normal[axis] = parse_number(parts[axis], -1e100, 1e100);
  plane.distance = parse_number(parts[3], -1e100, 1e100);
  const double length = std::hypot(plane.normal[0], plane.normal[1], plane.normal[2]);
  if (!(length > 1e-100)) throw BadValue(quoted(text) + " has no normal");
  return plane;
}

ViewFrom parse_view(const std::string& text) { return parse_choice(text, views); }

OBUtil::RenderMode parse_render_mode(const std::string& text) { return parse_choice(text, render_modes); }

ColorBy parse_color_by(const std::string& text) { return parse_choice(text, color_sources); }

readers::GroupBy parse_group_by(const std::string& text) { return parse_choice(text, groupings); }

PickRequest parse_pick(PickRequest::Shape shape, const std::string& text) {
  const PickForm& form = form_of(shape);
  const auto parts = split(text);
  const bool fits = parts.size() == form.count || (form.more && parts.size() > form.count && parts.size() % 2 == 0);
  if (!fits) throw BadValue(quoted(text) + " is not of the form " + form.form);
  PickRequest request{shape, {}};
  for (const std::string& part : parts)
    request.numbers.push_back(parse_number(part, -largest_pixel, largest_pixel));
  if (shape == PickRequest::Shape::Circle && !(request.numbers[2] > 0))
    throw BadValue(quoted(text) + " has no positive radius");
  return request;
}

LabelOptions parse_labels(const std::string& text) {
  LabelOptions labels;
  for (const std::string& part : split(text)) {
    const std::size_t colon = part.find(':');
    if (colon == std::string::npos) throw BadValue(quoted(part) + " is not of the form KIND:local or KIND:global");
    const EntityKind kind = parse_kind(part.substr(0, colon));
    const auto source = parse_choice(part.substr(colon + 1), label_sources);
    if (source == OBUtil::NodeElementId && kind != EntityKind::Node)
      throw BadValue(quoted(part) + ": only nodes can show their elements");
    if (kind == EntityKind::Node) labels.nodes = source;
    for (const Tarn::ElementType type : types_of(kind))
      labels.elements[type] = source;
  }
  return labels;
}

std::vector<std::string> parse_filter(const std::string& text) {
  const auto& known = filter_names();
  const auto names = split(text);
  for (const std::string& name : names) {
    if (std::find(known.begin(), known.end(), name) != known.end()) continue;
    std::string list;
    for (const char* each : known)
      list += std::string(list.empty() ? "" : ", ") + each;
    throw BadValue(quoted(name) + " is not one of " + list);
  }
  return names;
}

IdSelection parse_selection(const std::string& text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos) throw BadValue(quoted(text) + " is not of the form KIND:IDS");
  std::string kind = text.substr(0, colon);
  IdSelection selection;
  const std::size_t at = kind.find('@');
  if (at != std::string::npos) {
    if (kind.substr(at) != "@global") throw BadValue(quoted(kind.substr(at)) + " is not @global");
    kind.resize(at);
    selection.global = true;
  }
  selection.kind = parse_kind(kind);
  if (selection.global && selection.kind == EntityKind::Node) throw BadValue("nodes have no global ids");
  for (const std::string& part : split(text.substr(colon + 1)))
    selection.ranges.push_back(parse_range(part));
  return selection;
}

std::string parse_picture_path(const std::string& text) {
  std::string end = text.size() > 4 ? text.substr(text.size() - 4) : "";
  std::transform(end.begin(), end.end(), end.begin(), [](unsigned char c) { return std::tolower(c); });
  if (end != ".png")
    throw BadValue(quoted(text) + " does not end in .png, and pictures are written in that format only");
  return text;
}

const char* render_mode_name(OBUtil::RenderMode mode) { return name_of(mode, render_modes); }

const char* view_name(ViewFrom view) { return name_of(view, views); }

std::string clip_text(const ClipPlane& plane) {
  std::string text;
  for (const double value : {plane.normal[0], plane.normal[1], plane.normal[2], plane.distance}) {
    char digits[32];
    // The sum takes the sign from a zero.
    const auto end = std::to_chars(digits, digits + sizeof digits, value + 0.0, std::chars_format::general, 9).ptr;
    text.append(text.empty() ? "" : ",").append(digits, end);
  }
  return text;
}

} // namespace viewer
