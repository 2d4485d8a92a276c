#include "tests/tarn/RandomMesh.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace tarn_test {

namespace {

constexpr int most_grid_nodes = 1 << 20;

std::uint64_t scrambled(std::uint64_t number) {
  number = (number ^ number >> 31) * 0x7fb5d329728ea185u;
  number = (number ^ number >> 27) * 0x81dadef4bc2dd44du;
  return number ^ number >> 33;
}

int corners_of(Tarn::ElementType type) {
  return type == Tarn::Tet ? 4 : type == Tarn::Pyramid ? 5 : type == Tarn::Wedge ? 6 : 8;
}

} // namespace

RandomMesh::RandomMesh(unsigned seed, HandleStyle style) : random_(seed), style_(style) {}

std::uint64_t RandomMesh::handle_value(std::uint64_t number, bool is_node) const {
  switch (style_) {
  case HandleStyle::SmallNumbers:
    return number + 1;
  case HandleStyle::HighBits:
    return (std::uint64_t(is_node ? 0x20 : 0x30) << 56) + number;
  case HandleStyle::Addresses:
    return 0x7f0123450010u + 48 * number;
  case HandleStyle::Scattered:
    return scrambled(2 * number + (is_node ? 2 : 3));
  }
  return 0;
}

Tarn::Handle<0> RandomMesh::node(int number) {
  const std::uint64_t value = handle_value(static_cast<std::uint64_t>(number), true);
  database.nodes[value];
  return {value};
}

Tarn::Handle<1> RandomMesh::add(Tarn::ElementType type, const std::vector<int>& numbers) {
  const Tarn::Handle<1> element{handle_value(next_element_++, false)};
  ForeignMeshData::Element& made = database.elements[element.value];
  made.type = type;
  for (const int number : numbers)
    made.nodes.push_back(node(number));
  return element;
}

Tarn::ElementType RandomMesh::kind_of(const HandleList& list) const {
  return database.elements.at(list.front().value).type;
}

void RandomMesh::extend(Tarn::ElementType type, std::vector<int>& numbers) {
  static const std::array<std::vector<int>, 10> counts = {
      {{}, {}, {}, {3, 6, 7}, {4, 8, 9}, {4, 10}, {8, 20, 27}, {6, 15, 18}, {5, 13, 14}, {}}};
  if (pick(3) != 0) return;
  const std::vector<int>& possible = counts[type];
  const auto count = static_cast<std::size_t>(possible[std::size_t(pick(static_cast<int>(possible.size())))]);
  while (numbers.size() < count)
    numbers.push_back(most_grid_nodes + pick(1000));
}

void RandomMesh::add_solid(Tarn::ElementType type, const std::vector<int>& numbers) {
  std::vector<int> all = numbers;
  extend(type, all);
  if (pick(8) == 0 || solids.empty() || kind_of(solids.back()) != type) solids.emplace_back();
  solids.back().push_back(add(type, all));
}

void RandomMesh::scatter_elements(int nodes, int elements) {
  std::vector<std::pair<Tarn::ElementType, std::vector<int>>> made;
  for (int i = 0; i < elements; ++i) {
    if (!made.empty() && pick(10) == 0) {
      const auto& again = made[std::size_t(pick(static_cast<int>(made.size())))];
      add_solid(again.first, again.second);
      continue;
    }
    const auto type = static_cast<Tarn::ElementType>(Tarn::Tet + pick(4));
    std::vector<int> numbers;
    for (int k = 0; k < corners_of(type); ++k) {
      int number = pick(nodes);
      const bool collapsed = pick(20) == 0;
      while (!collapsed && nodes > 12 && std::find(numbers.begin(), numbers.end(), number) != numbers.end())
        number = pick(nodes);
      numbers.push_back(number);
    }
    made.emplace_back(type, numbers);
    add_solid(type, numbers);
  }
}

void RandomMesh::fill_grid(int n) {
  const int side = n + 1;
  std::vector<int> number(std::size_t(side * side * side));
  std::iota(number.begin(), number.end(), 0);
  std::shuffle(number.begin(), number.end(), random_);
  std::vector<std::pair<Tarn::ElementType, std::vector<int>>> cells;
  for (int cell = 0; cell < n * n * n; ++cell) {
    const int x = cell % n, y = cell / n % n, z = cell / n / n;
    const auto at = [&](int dx, int dy, int dz) {
      return number[std::size_t(((z + dz) * side + y + dy) * side + x + dx)];
    };
    const std::array<int, 8> c = {at(0, 0, 0), at(1, 0, 0), at(1, 1, 0), at(0, 1, 0),
                                  at(0, 0, 1), at(1, 0, 1), at(1, 1, 1), at(0, 1, 1)};
    const auto add_cell = [&](Tarn::ElementType type, const std::vector<int>& places) {
      std::vector<int> numbers;
      for (const int place : places)
        numbers.push_back(c[std::size_t(place)]);
      cells.emplace_back(type, numbers);
    };
    switch (pick(5)) {
    case 0:
    case 1:
      add_cell(Tarn::Hex, {0, 1, 2, 3, 4, 5, 6, 7});
      break;
    case 2:
      add_cell(Tarn::Wedge, {0, 1, 2, 4, 5, 6});
      add_cell(Tarn::Wedge, {0, 2, 3, 4, 6, 7});
      break;
    case 3:
      add_cell(Tarn::Pyramid, {0, 1, 2, 3, 4});
      add_cell(Tarn::Pyramid, {1, 5, 6, 2, 4});
      add_cell(Tarn::Pyramid, {3, 2, 6, 7, 4});
      break;
    default:
      for (const auto& tet :
           {std::vector<int>{0, 1, 2, 6}, {0, 2, 3, 6}, {0, 3, 7, 6}, {0, 7, 4, 6}, {0, 4, 5, 6}, {0, 5, 1, 6}})
        add_cell(Tarn::Tet, tet);
    }
  }
  std::shuffle(cells.begin(), cells.end(), random_);
  for (const auto& cell : cells)
    add_solid(cell.first, cell.second);
}

void RandomMesh::scatter_shells(int count) {
  const std::vector<SkinFace> skin = plain_skin(database, solids, {});
  for (int i = 0; i < count; ++i) {
    const bool on_side = !skin.empty() && pick(3) != 0;
    ForeignMeshData::Element shell{pick(2) == 0 ? Tarn::Tri : Tarn::Quad, {}};
    if (on_side) {
      const SkinFace& face = skin[std::size_t(pick(static_cast<int>(skin.size())))];
      shell.type = face.kind == 3 ? Tarn::Tri : Tarn::Quad;
      for (int k = 0; k < face.kind; ++k)
        shell.nodes.push_back({face.nodes[std::size_t(k)]});
      std::rotate(shell.nodes.begin(), shell.nodes.begin() + pick(face.kind), shell.nodes.end());
      if (pick(2) == 0) std::reverse(shell.nodes.begin(), shell.nodes.end());
    } else {
      for (int k = 0; k < (shell.type == Tarn::Tri ? 3 : 4); ++k)
        shell.nodes.push_back(node(pick(60)));
    }
    std::vector<int> middles(shell.nodes.size());
    extend(shell.type, middles);
    while (shell.nodes.size() < middles.size())
      shell.nodes.push_back(node(most_grid_nodes + pick(1000)));
    const std::uint64_t value = handle_value(next_element_++, false);
    database.elements[value] = shell;
    if (pick(6) == 0 || shells.empty() || kind_of(shells.back()) != shell.type) shells.emplace_back();
    shells.back().push_back({value});
  }
}

} // namespace tarn_test
