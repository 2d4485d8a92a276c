#include "pick/index/EntityBoxes.h"

#include "mesh/database/MDBDefines.h"
#include "mesh/database/MeshData.h"

#include <algorithm>
#include <limits>

namespace {

using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;
using Count = Tarn::MeshData::Count;
using Box = BoxTree::Box;

// What the database does not answer for is nowhere.
constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();

// As many handles as are asked for at once: what is read of them stays in the processor's cache.
constexpr std::size_t batch_size = 16384;

constexpr std::size_t most_nodes = 27; // of an element that is no superelement
constexpr std::size_t most_asked = 8;  // of a single element at once, by picks

bool is_null(Node node) { return node.value == 0; }

/// The places of a batch of nodes.
class Coordinates {
public:
  void read(Tarn::MeshData& database, const Node* nodes, std::size_t count) {
    for (std::vector<double>& axis : axes_)
      axis.assign(count, nowhere);
    if (count > 0) database.get_coordinate_arrays(count, nodes, axes_[0].data(), axes_[1].data(), axes_[2].data());
  }
  void add_to(Box& box, std::size_t node) const {
    const double point[3] = {axes_[0][node], axes_[1][node], axes_[2][node]};
    box.add(point);
  }

private:
  std::vector<double> axes_[3];
};

/// Reads the boxes of lists of elements, a batch at a time.
class ElementBoxReader {
public:
  ElementBoxReader(Tarn::MeshData& database, Tarn::ElementType kind)
      : database_(database), corners_(static_cast<std::size_t>(std::max(0, MDBDefines::NodesPerElement(kind)))) {}

  bool read(const std::vector<Elem>& elements, std::vector<Box>& boxes) {
    boxes.assign(elements.size(), Box());
    if (corners_ == 0 || corners_ >= most_nodes) return false;
    constexpr std::size_t at_once = batch_size / most_nodes;
    for (std::size_t first = 0; first < elements.size(); first += at_once)
      if (!read(&elements[first], std::min(at_once, elements.size() - first), &boxes[first])) return false;
    return true;
  }

private:
  bool read(const Elem* elements, std::size_t count, Box* boxes) {
    // One node more than the corners tells elements of higher order, which are rare.
    std::size_t stride = corners_ + 1;
    ask(elements, count, stride);
    const std::size_t higher = first_of_higher_order(count, stride);
    if (higher < count) ask(elements, count, stride = most_nodes);
    if (!answers_alike(elements[0], &nodes_[0], stride)) return false;
    if (higher < count && !answers_alike(elements[higher], &nodes_[higher * stride], stride)) return false;
    for (std::size_t i = 0; i < count; ++i)
      if (!fill_up(&nodes_[i * stride], stride)) return false;
    coordinates_.read(database_, nodes_.data(), nodes_.size());
    for (std::size_t node = 0; node < nodes_.size(); ++node)
      coordinates_.add_to(boxes[node / stride], node);
    return true;
  }

  // Whether the database gives a single element's nodes as it gives those of many, cut off where there is room for
  // fewer. Where it fails instead, the plain pick takes nodes of other elements, and must see all of them.
  bool answers_alike(Elem element, const Node* nodes, std::size_t stride) const {
    const auto own = static_cast<std::size_t>(std::find_if(nodes, nodes + stride, is_null) - nodes);
    for (const std::size_t room : {std::min(corners_, most_asked), most_asked}) {
      Node single[most_asked];
      Count count = room;
      if (database_.get_element_connectivity(element, &count, single) != 0) return false;
      if (count != std::min(own, room) || !std::equal(single, single + count, nodes)) return false;
    }
    return true;
  }

  // Repeats the first node where there is none, which leaves the box as it is. False where corners are missing.
  bool fill_up(Node* nodes, std::size_t count) const {
    if (std::any_of(nodes, nodes + corners_, is_null)) return false;
    std::replace_if(nodes + corners_, nodes + count, is_null, nodes[0]);
    return true;
  }

  void ask(const Elem* elements, std::size_t count, std::size_t stride) {
    nodes_.assign(count * stride, Node{});
    Count length = nodes_.size();
    database_.get_connectivity(count, elements, &length, nodes_.data());
  }

  std::size_t first_of_higher_order(std::size_t count, std::size_t stride) const {
    std::size_t i = 0;
    while (i < count && is_null(nodes_[(i + 1) * stride - 1]))
      ++i;
    return i;
  }

  Tarn::MeshData& database_;
  const std::size_t corners_;
  std::vector<Node> nodes_;
  Coordinates coordinates_;
};

} // namespace

std::vector<Box> boxes_of(Tarn::MeshData& database, const std::vector<Node>& nodes) {
  std::vector<Box> boxes(nodes.size());
  Coordinates coordinates;
  for (std::size_t first = 0; first < nodes.size(); first += batch_size) {
    const std::size_t count = std::min(batch_size, nodes.size() - first);
    coordinates.read(database, &nodes[first], count);
    for (std::size_t i = 0; i < count; ++i)
      coordinates.add_to(boxes[first + i], i);
  }
  return boxes;
}

bool boxes_of(Tarn::MeshData& database, const std::vector<Elem>& elements, Tarn::ElementType kind,
              std::vector<Box>& boxes) {
  return ElementBoxReader(database, kind).read(elements, boxes);
}
