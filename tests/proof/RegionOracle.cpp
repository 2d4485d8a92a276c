#include "tests/proof/RegionOracle.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace proof {

namespace {

constexpr Real slack = 0.01L;
constexpr std::size_t tested_nodes = 8; // of an element, at most
constexpr std::size_t visible_nodes = 27;

Real dot(const Real* a, const Real* b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

void cross(const Real* a, const Real* b, Real* out) {
  for (int i = 0; i < 3; ++i)
    out[i] = a[(i + 1) % 3] * b[(i + 2) % 3] - a[(i + 2) % 3] * b[(i + 1) % 3];
}

void normalize(Real* a) {
  const Real length = std::sqrt(dot(a, a));
  for (int i = 0; i < 3; ++i)
    a[i] /= length;
}

using Flat = std::array<Real, 2>;
using Outline = std::vector<Flat>;

Flat flat(const Pixel& p) { return {p[0], p[1]}; }

// What is left of a convex outline (a point, a segment, ...) on the side of a line where `at` is not negative.
template <class At> Outline cut(const Outline& outline, At at) {
  Outline left;
  for (std::size_t i = 0; i < outline.size(); ++i) {
    const Flat a = outline[i];
    const Flat b = outline[(i + 1) % outline.size()];
    const Real from = at(a);
    const Real to = at(b);
    if (from >= 0) left.push_back(a);
    if ((from >= 0) != (to >= 0)) {
      const Real t = from / (from - to);
      left.push_back({a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1])});
    }
  }
  return left;
}

bool box_touches(const Region& region, Outline outline) {
  for (std::size_t axis = 0; axis < 2; ++axis) {
    const Real low = std::min(region.corners[0][axis], region.corners[1][axis]);
    const Real high = std::max(region.corners[0][axis], region.corners[1][axis]);
    outline = cut(outline, [=](const Flat& p) { return p[axis] - low; });
    outline = cut(outline, [=](const Flat& p) { return high - p[axis]; });
  }
  return !outline.empty();
}

// The place on the line through a and b beside p: 0 at a, 1 at b.
Real place_beside(const Flat& p, const Flat& a, const Flat& b) {
  const Real dx = b[0] - a[0];
  const Real dy = b[1] - a[1];
  const Real length2 = dx * dx + dy * dy;
  return length2 == 0 ? 0 : ((p[0] - a[0]) * dx + (p[1] - a[1]) * dy) / length2;
}

Real gap(const Flat& p, const Flat& a, const Flat& b) {
  const Real t = std::clamp<Real>(place_beside(p, a, b), 0, 1);
  return std::hypot(a[0] + t * (b[0] - a[0]) - p[0], a[1] + t * (b[1] - a[1]) - p[1]);
}

// How often the outline is crossed on the way from p to the left, and whether p lies on it.
bool even_odd_holds(const Outline& outline, const Flat& p) {
  bool odd = false;
  for (std::size_t i = 0; i < outline.size(); ++i) {
    const Flat a = outline[i];
    const Flat b = outline[(i + 1) % outline.size()];
    if (gap(p, a, b) == 0) return true;
    const bool passes = (a[1] <= p[1] && p[1] < b[1]) || (b[1] <= p[1] && p[1] < a[1]);
    if (passes && a[0] + (p[1] - a[1]) / (b[1] - a[1]) * (b[0] - a[0]) < p[0]) odd = !odd;
  }
  return odd;
}

// Solves for the places on both segments; parallel ones meet at an end or not at all.
bool segments_cross(const Flat& a, const Flat& b, const Flat& c, const Flat& d) {
  const Real ux = b[0] - a[0];
  const Real uy = b[1] - a[1];
  const Real vx = d[0] - c[0];
  const Real vy = d[1] - c[1];
  const Real det = ux * vy - uy * vx;
  if (det == 0) return gap(a, c, d) == 0 || gap(b, c, d) == 0 || gap(c, a, b) == 0 || gap(d, a, b) == 0;
  const Real s = ((c[0] - a[0]) * vy - (c[1] - a[1]) * vx) / det;
  const Real t = ((c[0] - a[0]) * uy - (c[1] - a[1]) * ux) / det;
  return s >= 0 && s <= 1 && t >= 0 && t <= 1;
}

// Of convex outlines and the region's own.
bool outlines_touch(const Outline& region, const Outline& shape) {
  for (const Flat& p : shape)
    if (even_odd_holds(region, p)) return true;
  for (std::size_t i = 0; i < region.size(); ++i)
    for (std::size_t k = 0; k < shape.size(); ++k)
      if (segments_cross(region[i], region[(i + 1) % region.size()], shape[k], shape[(k + 1) % shape.size()]))
        return true;
  return shape.size() > 2 &&
         std::any_of(region.begin(), region.end(), [&shape](const Flat& p) { return even_odd_holds(shape, p); });
}

bool circle_touches(const Region& region, const Outline& shape) {
  const Flat centre = {region.corners[0][0], region.corners[0][1]};
  if (shape.size() > 2 && even_odd_holds(shape, centre)) return region.radius >= 0;
  for (std::size_t i = 0; i < shape.size(); ++i)
    if (gap(centre, shape[i], shape[(i + 1) % shape.size()]) <= region.radius) return true;
  return false;
}

bool region_touches(const Region& region, const Outline& shape) {
  if (region.kind == Region::Box) return box_touches(region, shape);
  if (region.kind == Region::Circle) return circle_touches(region, shape);
  Outline corners;
  for (const auto& corner : region.corners)
    corners.push_back({corner[0], corner[1]});
  return outlines_touch(corners, shape);
}

// The edges of what is shown, and of those with a mid-side node that node.
std::map<std::pair<int, int>, int> edges_with_middles(const Mesh& mesh, const std::vector<char>& shown) {
  std::map<std::pair<int, int>, int> edges;
  for (std::size_t i = 0; i < mesh.elements.size(); ++i) {
    const Element& element = mesh.elements[i];
    if (!shown[i]) continue;
    const auto& table = edges_of(element.type);
    for (std::size_t k = 0; k < table.size(); ++k) {
      const std::size_t middle = std::size_t(corner_count(element.type)) + k;
      const auto key = std::minmax(element.nodes[std::size_t(table[k][0])], element.nodes[std::size_t(table[k][1])]);
      int& known = edges.emplace(key, -1).first->second;
      if (middle < element.nodes.size()) known = element.nodes[middle];
    }
  }
  return edges;
}

bool element_touches(const Element& element, const std::vector<Pixel>& at, const Region& region, bool whole) {
  if (whole) {
    const auto end = element.nodes.begin() + std::ptrdiff_t(std::min(element.nodes.size(), tested_nodes));
    return std::all_of(element.nodes.begin(), end, [&](int node) { return region.touches(at[std::size_t(node)]); });
  }
  for (const auto& face : faces_of(element.type)) {
    const auto corner = [&](std::size_t i) { return at[std::size_t(element.nodes[std::size_t(face[i])])]; };
    for (std::size_t i = 1; i + 1 < face.size(); ++i)
      if (region.touches(corner(0), corner(i), corner(i + 1))) return true;
  }
  return false;
}

} // namespace

Projection::Projection(vtkCamera* camera, const Scene& scene, const Look& look) {
  double focal[3];
  double eye[3];
  double up[3];
  camera->GetFocalPoint(focal);
  camera->GetPosition(eye);
  camera->GetViewUp(up);
  for (int i = 0; i < 3; ++i) {
    eye_[i] = eye[i];
    ahead_[i] = Real(focal[i]) - eye[i];
    up_[i] = up[i];
  }
  normalize(ahead_);
  cross(ahead_, up_, right_);
  normalize(right_);
  cross(right_, ahead_, up_);
  parallel_ = camera->GetParallelProjection() != 0;
  near_ = camera->GetClippingRange()[0];
  far_ = camera->GetClippingRange()[1];
  left_ = look.viewport[0] * scene.width;
  bottom_ = look.viewport[1] * scene.height;
  width_ = (look.viewport[2] - look.viewport[0]) * scene.width;
  height_ = (look.viewport[3] - look.viewport[1]) * scene.height;
  half_height_ =
      parallel_ ? Real(camera->GetParallelScale()) : std::tan(Real(camera->GetViewAngle()) * std::acos(-1.0L) / 360);
  half_width_ = half_height_ * width_ / height_;
}

Pixel Projection::operator()(const Point& point) const {
  const Real from_eye[3] = {point[0] - eye_[0], point[1] - eye_[1], point[2] - eye_[2]};
  const Real depth = dot(from_eye, ahead_);
  const Real scale = parallel_ ? 1 : depth;
  const Real x = dot(from_eye, right_) / scale / half_width_;
  const Real y = dot(from_eye, up_) / scale / half_height_;
  const Real z = (parallel_ ? 1 : far_ / depth) * (depth - near_) / (far_ - near_);
  return {left_ + (x + 1) / 2 * width_, bottom_ + (y + 1) / 2 * height_, z};
}

bool Region::touches(const Pixel& p) const { return region_touches(*this, {flat(p)}); }

bool Region::touches(const Pixel& a, const Pixel& b) const { return region_touches(*this, {flat(a), flat(b)}); }

bool Region::touches(const Pixel& a, const Pixel& b, const Pixel& c) const {
  return region_touches(*this, {flat(a), flat(b), flat(c)});
}

Entities pick_through(const Mesh& mesh, const std::vector<char>& shown, const Projection& project, const Region& region,
                      const Admitted& admitted, bool whole) {
  std::vector<Pixel> at;
  for (const Point& point : mesh.points)
    at.push_back(project(point));
  Entities found;
  for (std::size_t i = 0; i < mesh.elements.size(); ++i) {
    const Element& element = mesh.elements[i];
    if (!shown[i]) continue;
    if (admitted.nodes && element.type >= Tarn::Edge && element.type <= Tarn::Pyramid)
      for (const int node : element.nodes)
        if (region.touches(at[std::size_t(node)])) found.nodes.insert(node);
    if (admitted.kinds.count(element.type) != 0 && element_touches(element, at, region, whole))
      found.elements.insert(static_cast<int>(i));
  }
  if (!admitted.edges) return found;
  for (const auto& [edge, middle] : edges_with_middles(mesh, shown)) {
    const Pixel a = at[std::size_t(edge.first)];
    const Pixel b = at[std::size_t(edge.second)];
    const bool inside =
        region.touches(a) && region.touches(b) && (middle < 0 || region.touches(at[std::size_t(middle)]));
    if (whole ? inside : region.touches(a, b)) found.edges.insert(edge);
  }
  return found;
}

Entities visible_of(const Entities& entities, const Mesh& mesh, const Projection& project, const Depths& depths) {
  const auto shows = [&](int node) {
    const Pixel at = project(mesh.points[std::size_t(node)]);
    const Real x = std::trunc(at[0] + 0.5L);
    const Real y = std::trunc(at[1] + 0.5L);
    if (!(x >= 0 && x < depths.width && y >= 0 && y < depths.height)) return false;
    return depths.values[std::size_t(y) * std::size_t(depths.width) + std::size_t(x)] + slack >= at[2];
  };
  const std::vector<char> all(mesh.elements.size(), true);
  const auto middles = edges_with_middles(mesh, all);
  Entities visible;
  for (const int node : entities.nodes)
    if (shows(node)) visible.nodes.insert(node);
  for (const auto& edge : entities.edges) {
    const int middle = middles.at(edge);
    const int count = shows(edge.first) + shows(edge.second) + (middle >= 0 && shows(middle));
    if (count >= (middle < 0 ? 2 : 3)) visible.edges.insert(edge);
  }
  for (const int element : entities.elements) {
    const auto& nodes = mesh.elements[std::size_t(element)].nodes;
    const auto end = nodes.begin() + std::ptrdiff_t(std::min(nodes.size(), visible_nodes));
    if (std::count_if(nodes.begin(), end, shows) >= 3) visible.elements.insert(element);
  }
  return visible;
}

} // namespace proof
