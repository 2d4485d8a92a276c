// Random building and editing, held against a model of maps.

#include "reference/tarn/MeshDatabase.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <vector>

namespace {

using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;
using Count = std::uint64_t;
using Owner = Tarn::SMeshOwnerType*;

struct ModelElement {
  Tarn::ElementType type;
  std::vector<Node> nodes;
  int id;
  Owner owner;
};

/// The database and what it should know.
class Twin {
public:
  explicit Twin(unsigned seed) : random_(seed) {}

  void step();
  void compare();
  std::size_t size() const { return elements_.size(); }

private:
  int pick(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
  Owner any_owner() { return owners_.empty() || pick(5) == 0 ? nullptr : owners_[random_() % owners_.size()]; }
  Node any_node() { return node_list_[random_() % node_list_.size()]; }
  std::vector<Elem> some_elements();
  void add_nodes();
  void add_elements();
  void delete_owner();
  void compare_elements();
  void compare_owner(Owner owner);

  std::mt19937 random_;
  Tarn::MeshDatabase db_;
  std::vector<Owner> owners_;
  std::vector<Node> node_list_;
  std::map<std::uint64_t, std::pair<int, Owner>> nodes_; ///< id and owner
  std::map<Owner, std::set<std::uint64_t>> listed_;
  std::map<std::uint64_t, ModelElement> elements_;
  std::set<int> element_ids_;
  int largest_id_ = 0;
};

std::vector<Elem> Twin::some_elements() {
  std::vector<Elem> list;
  for (const auto& element : elements_)
    if (pick(6) == 0) list.push_back({element.first});
  std::shuffle(list.begin(), list.end(), random_);
  if (!list.empty() && pick(3) == 0) list.push_back(list.front());
  return list;
}

void Twin::add_nodes() {
  const int count = 1 + pick(20);
  std::vector<double> xyz(static_cast<std::size_t>(3 * count));
  const Owner owner = any_owner();
  const Node first = db_.add_nodes(static_cast<Count>(count), xyz.data(), nullptr, owner);
  ASSERT_NE(first, Node());
  for (int i = 0; i < count; ++i) {
    node_list_.push_back({first.value + static_cast<Count>(i)});
    nodes_[node_list_.back().value] = {static_cast<int>(node_list_.size()), owner};
  }
}

void Twin::add_elements() {
  const std::pair<Tarn::ElementType, int> kinds[] = {
      {Tarn::OneNode, 1}, {Tarn::Edge, 2}, {Tarn::Edge, 3}, {Tarn::Tri, 3},
      {Tarn::Tri, 6},     {Tarn::Hex, 8},  {Tarn::Hex, 20}, {Tarn::Superelement, 1 + pick(30)}};
  const auto kind = kinds[pick(8)];
  const int count = 1 + pick(12);
  std::vector<Node> nodes;
  for (int i = 0; i < count * kind.second; ++i)
    nodes.push_back(any_node());
  std::vector<int> ids;
  if (pick(2) == 0)
    while (static_cast<int>(ids.size()) < count) {
      const int id = 1 + pick(100000);
      if (element_ids_.insert(id).second) ids.push_back(id);
    }
  const Owner owner = any_owner();
  const Elem first = db_.add_elements(kind.first, kind.second, static_cast<Count>(count), nodes.data(),
                                      ids.empty() ? nullptr : ids.data(), owner);
  ASSERT_NE(first, Elem());
  for (int i = 0; i < count; ++i) {
    const int id = ids.empty() ? largest_id_ + 1 + i : ids[static_cast<std::size_t>(i)];
    const auto begin = nodes.begin() + i * kind.second;
    elements_[first.value + static_cast<Count>(i)] = {kind.first, {begin, begin + kind.second}, id, owner};
    element_ids_.insert(id);
  }
  largest_id_ = std::max(largest_id_, *element_ids_.rbegin());
}

void Twin::delete_owner() {
  if (owners_.empty()) return;
  const std::size_t place = random_() % owners_.size();
  const Owner owner = owners_[place];
  owners_.erase(owners_.begin() + static_cast<std::ptrdiff_t>(place));
  ASSERT_TRUE(db_.delete_owner(owner));
  listed_.erase(owner);
  for (auto& node : nodes_)
    if (node.second.second == owner) node.second.second = nullptr;
  for (auto element = elements_.begin(); element != elements_.end();) {
    if (element->second.owner == owner) {
      element_ids_.erase(element->second.id);
      element = elements_.erase(element);
    } else {
      ++element;
    }
  }
}

void Twin::step() {
  if (owners_.size() < 3) owners_.push_back(db_.add_owner("owner"));
  const int choice = node_list_.empty() ? 0 : pick(20);
  if (choice < 3) return add_nodes();
  if (choice < 10) return add_elements();
  if (choice == 10) return delete_owner();
  if (choice < 14) {
    const std::vector<Elem> list = some_elements();
    ASSERT_TRUE(db_.delete_elements(list.size(), list.data()));
    for (const Elem element : list) {
      const auto found = elements_.find(element.value);
      if (found == elements_.end()) continue;
      element_ids_.erase(found->second.id);
      elements_.erase(found);
    }
  } else if (choice < 17) {
    const std::vector<Elem> list = some_elements();
    const Owner owner = any_owner();
    ASSERT_TRUE(db_.set_element_owner(list.size(), list.data(), owner));
    for (const Elem element : list)
      elements_[element.value].owner = owner;
  } else {
    const std::vector<Node> list = {any_node(), any_node(), any_node(), any_node()};
    const Owner owner = any_owner();
    if (choice == 17 && owner) {
      ASSERT_TRUE(db_.add_to_node_set(owner, list.size(), list.data()));
      for (const Node node : list)
        listed_[owner].insert(node.value);
    } else {
      ASSERT_TRUE(db_.set_node_owner(list.size(), list.data(), owner));
      for (const Node node : list)
        nodes_[node.value].second = owner;
    }
  }
}

void Twin::compare_elements() {
  std::vector<Elem> list;
  for (const auto& element : elements_)
    list.push_back({element.first});
  std::vector<Tarn::ElementType> types(list.size());
  std::vector<int> ids(list.size());
  std::vector<Owner> owners(list.size());
  std::vector<Node> all(list.size() * 40);
  Count length = all.size();
  db_.get_element_types(list.size(), list.data(), types.data());
  db_.get_element_ids(list.size(), list.data(), ids.data());
  db_.get_element_owners(list.size(), list.data(), owners.data());
  db_.get_connectivity(list.size(), list.data(), &length, all.data());
  for (std::size_t i = 0; i < list.size(); ++i) {
    const ModelElement& model = elements_[list[i].value];
    ASSERT_EQ(types[i], model.type);
    ASSERT_EQ(ids[i], model.id);
    ASSERT_EQ(owners[i], model.owner);
    ASSERT_EQ(db_.find_element(model.id), list[i]);
    std::vector<Node> padded = model.nodes;
    padded.resize(40);
    ASSERT_TRUE(std::equal(padded.begin(), padded.end(), all.begin() + static_cast<std::ptrdiff_t>(40 * i)));
  }
}

void Twin::compare_owner(Owner owner) {
  for (std::uint32_t value = 1; value <= 9; ++value) {
    const auto type = static_cast<Tarn::ElementType>(value);
    std::vector<Elem> expected;
    for (const auto& element : elements_)
      if (element.second.owner == owner && element.second.type == type) expected.push_back({element.first});
    Count count = 0;
    db_.get_owner_element_count(owner, type, &count);
    ASSERT_EQ(count, expected.size());
    std::vector<Elem> got(count);
    db_.get_owner_elements(owner, type, &count, got.data());
    ASSERT_EQ(got, expected);
  }
  std::set<std::uint64_t> expected = listed_[owner];
  for (const auto& node : nodes_)
    if (node.second.second == owner) expected.insert(node.first);
  Count count = 0;
  db_.get_owner_node_count(owner, &count);
  ASSERT_EQ(count, expected.size());
  std::vector<Node> got(count);
  db_.get_owner_nodes(owner, &count, 0, got.data());
  ASSERT_TRUE(std::equal(got.begin(), got.end(), expected.begin(), expected.end(),
                         [](Node node, std::uint64_t value) { return node.value == value; }));
}

void Twin::compare() {
  compare_elements();
  for (const Owner owner : owners_)
    compare_owner(owner);
  std::set<std::uint64_t> used;
  for (const auto& element : elements_)
    for (const Node node : element.second.nodes)
      used.insert(node.value);
  std::set<std::uint64_t> in_set;
  for (const auto& list : listed_)
    in_set.insert(list.second.begin(), list.second.end());
  for (const Node node : node_list_) {
    char flag = 9;
    db_.get_node_flags(1, &node, &flag);
    ASSERT_EQ(flag, used.count(node.value) == 0 || in_set.count(node.value) != 0 ? 1 : 0);
    Elem point{1};
    db_.get_elements_on_nodes(1, 1, &node, &point);
    const auto first = std::find_if(elements_.begin(), elements_.end(), [&](const auto& element) {
      return element.second.type == Tarn::OneNode && element.second.nodes[0] == node;
    });
    ASSERT_EQ(point.value, first == elements_.end() ? 0u : first->first);
  }
}

TEST(MeshDatabaseRandom, GivenAnyBuildingAndEditing_WhenAsked_ThenTheAnswersAreThoseOfAPlainModel) {
  std::size_t largest = 0;
  for (unsigned seed = 0; seed < 25; ++seed) {
    SCOPED_TRACE(seed);
    Twin twin(seed);
    for (int step = 0; step < 60; ++step) {
      ASSERT_NO_FATAL_FAILURE(twin.step()) << step;
      ASSERT_NO_FATAL_FAILURE(twin.compare()) << step;
      largest = std::max(largest, twin.size());
    }
  }
  EXPECT_GT(largest, 60u);
}

} // namespace
