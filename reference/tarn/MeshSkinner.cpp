#include "mesh/database/MeshSkinner.h"

#include "mesh/database/MeshData.h"
#include "reference/tarn/ElementShape.h"
#include "reference/tarn/ExteriorSides.h"
#include "reference/tarn/PodArray.h"
#include "reference/tarn/SideToElementPrivate.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

using Tarn::ElementRuns;
using Tarn::ElementShape;
using Tarn::ExteriorSides;
using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;

/// Walks through a list of elements, from one to a later one.
class ElementCursor {
public:
  explicit ElementCursor(const ElementRuns& list) : run_(list.runs().begin()) {}

  /// Goes on to the element with this number in the list.
  void move_to(std::uint64_t number) {
    while (number - run_start_ >= run_->count)
      run_start_ += (run_++)->count;
    offset_ = number - run_start_;
  }
  Elem element() const { return {run_->first + offset_}; }
  int position() const { return static_cast<int>(run_->position + static_cast<std::int64_t>(offset_)); }

private:
  const ElementRuns::Run* run_;
  std::uint64_t run_start_ = 0; // number of the run's first element
  std::uint64_t offset_ = 0;    // within the run
};

/// Reads the nodes of elements of one kind in bulk.
class NodeReader {
public:
  explicit NodeReader(Tarn::MeshData& database) : database_(database) {}

  /// Reads all nodes of each element.
  void read_all(const Elem* elements, std::size_t count, Tarn::ElementType type) {
    // One node more than there are corners tells elements that have more; only where there are any, all are read.
    const std::size_t corners = Tarn::element_shape(type).corner_count;
    read(elements, count, corners + 1);
    bool is_linear = true;
    for (std::size_t i = 0; i < count; ++i)
      is_linear = is_linear && of(i)[corners] == Node();
    if (!is_linear) read(elements, count, Tarn::most_nodes(type));
  }
  const Node* of(std::size_t element) const { return &nodes_[element * stride_]; }
  /// How many nodes there are before the first null.
  std::size_t count(std::size_t element) const {
    return static_cast<std::size_t>(std::find(of(element), of(element) + stride_, Node()) - of(element));
  }

private:
  void read(const Elem* elements, std::size_t count, std::size_t stride) {
    stride_ = stride;
    nodes_.assign(count * stride, Node());
    Tarn::MeshData::Count length = nodes_.size();
    database_.get_connectivity(count, elements, &length, nodes_.data());
  }

  Tarn::MeshData& database_;
  std::size_t stride_ = 0;
  std::vector<Node> nodes_;
};

/// The nodes of some solids of one kind, to be asked for in the order given.
class SolidNodes {
public:
  SolidNodes(Tarn::MeshData& database, Tarn::ElementType type, std::vector<Elem> solids)
      : reader_(database), type_(type), solids_(std::move(solids)) {}

  void move_to(Elem solid) {
    while (at_ == end_ || solids_[at_] != solid)
      if (at_ == end_ || ++at_ == end_) read_chunk();
  }
  const Node* nodes() const { return reader_.of(at_ - begin_); }
  std::size_t count() const { return reader_.count(at_ - begin_); }

private:
  void read_chunk() {
    begin_ = end_;
    end_ = std::min(solids_.size(), begin_ + ElementRuns::chunk_size);
    reader_.read_all(&solids_[begin_], end_ - begin_, type_);
  }

  NodeReader reader_;
  Tarn::ElementType type_;
  std::vector<Elem> solids_;
  std::size_t begin_ = 0; // what was read
  std::size_t end_ = 0;
  std::size_t at_ = 0;
};

using CandidateIt = const ExteriorSides::Candidate*;

} // namespace

struct MeshSkinner::Private {
  SideToElement* solids;
  std::vector<ElementRuns> shells;
  Tarn::PodArray<Side> sides;
  Tarn::PodArray<Node> nodes; // of all sides, in their order

  Tarn::MeshData& database() const { return *solids->d->database; }
  void add_shells(const ElementRuns& list, ExteriorSides& exterior);
  void add_solids(const ElementRuns& list, std::uint64_t first, CandidateIt begin, CandidateIt end);
  int add_side_nodes(const ElementShape& shape, int side, const SolidNodes& solid);
  std::vector<Side*> finish();
};

MeshSkinner::MeshSkinner(SideToElement* solids) : d(std::make_unique<Private>()) { d->solids = solids; }

MeshSkinner::~MeshSkinner() = default;

bool MeshSkinner::add_skin_elements(const std::vector<Elem>& elements, const std::vector<int>& positions) {
  return Tarn::append_of_kind(d->database(), {Tarn::Tri, Tarn::Quad}, elements, positions, d->shells);
}

std::vector<Side*> MeshSkinner::getMeshSkin() {
  std::vector<ElementRuns>& solids = d->solids->d->lists;
  Tarn::drop_repeated(solids);
  ExteriorSides exterior(d->database(), solids);
  d->sides.clear();
  d->nodes.clear();
  for (const ElementRuns& list : d->shells)
    d->add_shells(list, exterior);
  CandidateIt begin = exterior.candidates().begin();
  std::uint64_t first = 0;
  for (const ElementRuns& list : solids) {
    const std::uint64_t next = first + list.size();
    const CandidateIt end = std::find_if(begin, exterior.candidates().end(),
                                         [next](const ExteriorSides::Candidate& side) { return side.solid >= next; });
    d->add_solids(list, first, begin, end);
    first = next;
    begin = end;
  }
  return d->finish();
}

void MeshSkinner::Private::add_shells(const ElementRuns& list, ExteriorSides& exterior) {
  const std::size_t corners = Tarn::element_shape(list.type()).corner_count;
  NodeReader reader(database());
  ElementCursor shell(list);
  std::uint64_t number = 0;
  sides.reserve_more(list.size());
  nodes.reserve_more(list.size() * corners);
  list.for_each_chunk([&](const Elem* elements, std::size_t count) {
    reader.read_all(elements, count, list.type());
    for (std::size_t i = 0; i < count; ++i) {
      shell.move_to(number++);
      const std::size_t known = reader.count(i);
      if (known < corners) continue;
      exterior.cover(reader.of(i), static_cast<int>(corners));
      std::copy_n(reader.of(i), known, nodes.append(known));
      sides.push_back({static_cast<int>(corners), static_cast<int>(known), nullptr, elements[i], shell.position()});
    }
  });
}

void MeshSkinner::Private::add_solids(const ElementRuns& list, std::uint64_t first, CandidateIt begin,
                                      CandidateIt end) {
  const ElementShape& shape = Tarn::element_shape(list.type());
  std::vector<Elem> outer;
  ElementCursor cursor(list);
  std::size_t count = 0;
  for (CandidateIt side = begin; side != end; ++side) {
    if (!side->is_exterior) continue;
    ++count;
    cursor.move_to(side->solid - first);
    if (outer.empty() || outer.back() != cursor.element()) outer.push_back(cursor.element());
  }
  sides.reserve_more(count);
  nodes.reserve_more(count * 4);
  SolidNodes solid_nodes(database(), list.type(), std::move(outer));
  ElementCursor solid(list);
  for (CandidateIt side = begin; side != end; ++side) {
    if (!side->is_exterior) continue;
    solid.move_to(side->solid - first);
    solid_nodes.move_to(solid.element());
    const int node_count = add_side_nodes(shape, side->side, solid_nodes);
    sides.push_back({static_cast<int>(shape.sides[side->side].corner_count), node_count, nullptr, solid.element(),
                     solid.position()});
  }
}

// The side's corners, its mid-side nodes where the solid has all of them, its centre where the solid has centres.
int MeshSkinner::Private::add_side_nodes(const ElementShape& shape, int side, const SolidNodes& solid) {
  const Tarn::SideShape& side_shape = shape.sides[side];
  const std::size_t known = solid.count();
  const std::size_t own = side_shape.corner_count * (known >= shape.node_counts[1] ? 2u : 1u);
  Node* const out = nodes.append(own);
  for (std::size_t i = 0; i < own; ++i)
    out[i] = solid.nodes()[side_shape.nodes[i]];
  const bool has_centre = side_shape.centre != 0 && known == shape.with_centres;
  if (has_centre) nodes.push_back(solid.nodes()[side_shape.centre]);
  return static_cast<int>(own + has_centre);
}

// The nodes lie still now: tells the sides where.
std::vector<Side*> MeshSkinner::Private::finish() {
  std::vector<Side*> skin(sides.size());
  const Node* first = nodes.data();
  for (std::size_t i = 0; i < sides.size(); ++i) {
    sides[i].nodes = first;
    first += sides[i].node_count;
    skin[i] = &sides[i];
  }
  return skin;
}
