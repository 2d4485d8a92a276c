#include "tests/readers/ReadFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vtk_exodusII.h>

#include <numeric>

namespace {

using namespace reader_tests;
using namespace Tarn;
using testing::ElementsAre;
using testing::ElementsAreArray;

struct BlockSpec {
  std::int64_t id;
  const char* name;
  const char* topology;
  int nodes_per_element;
  std::vector<int> connectivity; ///< from 1
};

struct SetSpec {
  std::int64_t id;
  const char* name;
  std::vector<int> entries;
  std::vector<int> sides; ///< of side sets
};

struct FileSpec {
  int dimensions = 3;
  std::vector<double> xyz; ///< three for each node
  std::vector<BlockSpec> blocks;
  std::vector<SetSpec> side_sets;
  std::vector<SetSpec> node_sets;
  std::vector<int> node_numbers;
  std::vector<int> element_numbers;
};

void write_sets(int file, ex_entity_type type, const std::vector<SetSpec>& sets) {
  for (const SetSpec& set : sets) {
    ex_put_set_param(file, type, set.id, static_cast<std::int64_t>(set.entries.size()), 0);
    ex_put_set(file, type, set.id, set.entries.data(), set.sides.empty() ? nullptr : set.sides.data());
    if (*set.name) ex_put_name(file, type, set.id, set.name);
  }
}

std::string write(const std::string& name, const FileSpec& spec) {
  int word = 8;
  int file_word = 8;
  const int file = ex_create(scratch(name).c_str(), EX_CLOBBER, &word, &file_word);
  const auto nodes = static_cast<int>(spec.xyz.size() / 3);
  int elements = 0;
  for (const BlockSpec& block : spec.blocks)
    elements += static_cast<int>(block.connectivity.size()) / block.nodes_per_element;
  ex_put_init(file, "test", spec.dimensions, nodes, elements, static_cast<std::int64_t>(spec.blocks.size()),
              static_cast<std::int64_t>(spec.node_sets.size()), static_cast<std::int64_t>(spec.side_sets.size()));
  std::vector<double> axes[3];
  for (std::size_t i = 0; i < spec.xyz.size(); ++i)
    axes[i % 3].push_back(spec.xyz[i]);
  ex_put_coord(file, axes[0].data(), axes[1].data(), spec.dimensions > 2 ? axes[2].data() : nullptr);
  for (const BlockSpec& block : spec.blocks) {
    ex_put_block(file, EX_ELEM_BLOCK, block.id, block.topology,
                 static_cast<std::int64_t>(block.connectivity.size()) / block.nodes_per_element,
                 block.nodes_per_element, 0, 0, 0);
    ex_put_conn(file, EX_ELEM_BLOCK, block.id, block.connectivity.data(), nullptr, nullptr);
    if (*block.name) ex_put_name(file, EX_ELEM_BLOCK, block.id, block.name);
  }
  write_sets(file, EX_SIDE_SET, spec.side_sets);
  write_sets(file, EX_NODE_SET, spec.node_sets);
  if (!spec.node_numbers.empty()) ex_put_id_map(file, EX_NODE_MAP, spec.node_numbers.data());
  if (!spec.element_numbers.empty()) ex_put_id_map(file, EX_ELEM_MAP, spec.element_numbers.data());
  ex_close(file);
  return scratch(name);
}

std::vector<int> one_to(int n) {
  std::vector<int> numbers(static_cast<std::size_t>(n));
  std::iota(numbers.begin(), numbers.end(), 1);
  return numbers;
}

FileSpec one_element(const char* topology, int nodes, int dimensions = 3) {
  FileSpec spec;
  spec.dimensions = dimensions;
  for (int i = 0; i < nodes; ++i)
    spec.xyz.insert(spec.xyz.end(), {double(i), double(i % 7), double(i % 5)});
  spec.blocks = {{1, "", topology, nodes, one_to(nodes)}};
  return spec;
}

TEST(ExodusFiles, GivenATopology_WhenReading_ThenItsKindAndItsOrderAreCanonical) {
  const struct {
    const char* topology;
    int nodes;
    int dimensions;
    ElementType type;
    std::vector<int> order; ///< place in the file of each node; empty: the same
  } rows[] = {
      {"SPHERE", 1, 3, OneNode, {}},
      {"BAR", 2, 3, Edge, {}},
      {"BEAM3", 3, 3, Edge, {}},
      {"TRUSS", 2, 2, Edge, {}},
      {"SHELL2", 2, 2, Edge, {}},
      {"TRI3", 3, 2, Tri, {}},
      {"tri6", 6, 3, Tri, {}},
      {"TRISHELL", 3, 3, Tri, {}},
      {"SHELL", 3, 3, Tri, {}},
      {"SHELL4", 4, 3, Quad, {}},
      {"QUAD8", 8, 2, Quad, {}},
      {"SHELL9", 9, 3, Quad, {}},
      {"TETRA", 4, 3, Tet, {}},
      {"TETRA10", 10, 3, Tet, {}},
      {"HEX", 8, 3, Hex, {}},
      {"HEX20", 20, 3, Hex, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 16, 17, 18, 19, 12, 13, 14, 15}},
      {"HEX27", 27, 3, Hex, {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 16, 17,
                             18, 19, 12, 13, 14, 15, 23, 24, 25, 26, 21, 22, 20}},
      {"WEDGE", 6, 3, Wedge, {}},
      {"WEDGE15", 15, 3, Wedge, {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 13, 14, 9, 10, 11}},
      {"WEDGE18", 18, 3, Wedge, {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 13, 14, 9, 10, 11, 15, 16, 17}},
      {"PYRAMID", 5, 3, Pyramid, {}},
      {"PYRAMID13", 13, 3, Pyramid, {}},
      {"PYRAMID14", 14, 3, Pyramid, {}},
      {"SUPER", 31, 3, Superelement, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.topology);
    const ReadMesh read(write("topology.e", one_element(row.topology, row.nodes, row.dimensions)));
    ASSERT_EQ(read.report.error, "");
    EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{row.type, 1}})));
    std::vector<int> expected = one_to(row.nodes);
    for (int& place : expected)
      --place;
    EXPECT_THAT(read.connectivity(row.type, 0), ElementsAreArray(row.order.empty() ? expected : row.order));
  }
}

TEST(ExodusFiles, GivenATopologyThatCannotBeDrawn_WhenReading_ThenItsElementsAreCounted) {
  FileSpec spec = one_element("TETRA14", 14);
  spec.blocks.push_back({2, "", "TETRA", 4, {1, 2, 3, 4}});
  const ReadMesh read(write("left_out.e", spec));
  ASSERT_EQ(read.report.error, "");
  EXPECT_EQ(text_of(read.report.left_out), "1 elements TETRA14 with 14 nodes");
  EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Tet, 1}})));
  EXPECT_THAT(read.global_ids(Tet), ElementsAre(2));
}

TEST(ExodusFiles, GivenNamesNumbersAndSets_WhenReading_ThenTheyAreAllThere) {
  FileSpec spec;
  spec.xyz = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 5, 5, 5};
  spec.blocks = {{10, "plate", "SHELL4", 4, {1, 2, 3, 4}}, {20, "", "BAR", 2, {1, 3, 2, 4}}};
  spec.side_sets = {{3, "top", {1}, {1}}, {4, "", {1, 1}, {3, 6}}};
  spec.node_sets = {{8, "clamped", {2, 4}, {}}, {9, "", {}, {}}};
  spec.node_numbers = {100, 90, 80, 70, 60};
  spec.element_numbers = {7, 1000, 5};

  const ReadMesh read(write("names.e", spec));

  ASSERT_EQ(read.report.error, "");
  EXPECT_THAT(read.owner_names(), ElementsAre("plate", "block 20", "top", "side set 4", "clamped", "node set 9"));
  EXPECT_THAT(read.node_ids(), ElementsAre(100, 90, 80, 70, 60));
  EXPECT_THAT(read.element_ids(Quad), ElementsAre(7, 1001));
  EXPECT_THAT(read.element_ids(Edge), ElementsAre(1000, 5, 1002, 1003));
  EXPECT_THAT(read.global_ids(Edge), ElementsAre(1000, 5, 1002, 1003));
  EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Edge, 2}, {Quad, 1}})));
  EXPECT_THAT(read.report.set_faces, ElementsAreArray(counts({{Edge, 2}, {Quad, 1}})));
  EXPECT_EQ(read.dimension("plate"), 2u);
  EXPECT_EQ(read.dimension("block 20"), 1u);
  EXPECT_EQ(read.dimension("side set 4"), 1u);
  EXPECT_EQ(read.dimension("clamped"), 0u);
  EXPECT_EQ(read.owner_nodes("clamped"), 2u);
  EXPECT_EQ(read.owner_nodes("plate"), 5u) << "its corners, and the node that no element uses";
  EXPECT_THAT(read.node_flags(), ElementsAre(0, testing::Ne(0), 0, testing::Ne(0), testing::Ne(0)));
  EXPECT_THAT(read.connectivity(Quad, 1), ElementsAre(0, 1, 2, 3));
  EXPECT_THAT(read.connectivity(Edge, 2), ElementsAre(0, 1));
  EXPECT_THAT(read.connectivity(Edge, 3), ElementsAre(3, 0));
  EXPECT_EQ(find_fault(*read.database, read.report), "");
}

TEST(ExodusFiles, GivenGroupByNone_WhenReading_ThenNodeSetsAreNotSetApart) {
  FileSpec spec = one_element("TETRA", 4);
  spec.node_sets = {{8, "clamped", {2, 4}, {}}};
  readers::Options options;
  options.group_by = readers::GroupBy::None;
  const ReadMesh read(write("none.e", spec), options);
  EXPECT_THAT(read.owner_names(), ElementsAre("none"));
  EXPECT_THAT(read.node_flags(), testing::Each(0));
}

// Sides as the format numbers them, as places in the element of the canonical order.
TEST(ExodusFiles, GivenASideOfAnElement_WhenReading_ThenItsFaceHasTheNodesOfTheElement) {
  const struct {
    const char* name;
    const char* topology;
    int nodes;
    int dimensions;
    int side;
    ElementType type;
    std::vector<int> face; ///< positions of the file's nodes
  } rows[] = {
      {"hex 1", "HEX8", 8, 3, 1, Quad, {0, 1, 5, 4}},
      {"hex 4", "HEX8", 8, 3, 4, Quad, {0, 4, 7, 3}},
      {"hex 5", "HEX8", 8, 3, 5, Quad, {0, 3, 2, 1}},
      {"hex 6", "HEX8", 8, 3, 6, Quad, {4, 5, 6, 7}},
      // Exodus numbers mid-sides 8-11 round the bottom, 12-15 up, 16-19 round the top.
      {"hex20 1", "HEX20", 20, 3, 1, Quad, {0, 1, 5, 4, 8, 13, 16, 12}},
      {"hex20 5", "HEX20", 20, 3, 5, Quad, {0, 3, 2, 1, 11, 10, 9, 8}},
      {"hex27 1 (-y)", "HEX27", 27, 3, 1, Quad, {0, 1, 5, 4, 8, 13, 16, 12, 25}},
      {"hex27 2 (+x)", "HEX27", 27, 3, 2, Quad, {1, 2, 6, 5, 9, 14, 17, 13, 24}},
      {"hex27 6 (top)", "HEX27", 27, 3, 6, Quad, {4, 5, 6, 7, 16, 17, 18, 19, 22}},
      {"tet 3", "TETRA", 4, 3, 3, Tri, {0, 3, 2}},
      {"tet10 1", "TETRA10", 10, 3, 1, Tri, {0, 1, 3, 4, 8, 7}},
      {"wedge 3", "WEDGE", 6, 3, 3, Quad, {0, 3, 5, 2}},
      {"wedge 4", "WEDGE", 6, 3, 4, Tri, {0, 2, 1}},
      {"wedge15 5", "WEDGE15", 15, 3, 5, Tri, {3, 4, 5, 12, 13, 14}},
      {"wedge18 2", "WEDGE18", 18, 3, 2, Quad, {1, 2, 5, 4, 7, 11, 13, 10, 16}},
      {"pyramid 2", "PYRAMID", 5, 3, 2, Tri, {1, 2, 4}},
      {"pyramid 5", "PYRAMID", 5, 3, 5, Quad, {0, 3, 2, 1}},
      {"pyramid13 4", "PYRAMID13", 13, 3, 4, Tri, {0, 4, 3, 9, 12, 8}},
      {"pyramid14 5", "PYRAMID14", 14, 3, 5, Quad, {0, 3, 2, 1, 8, 7, 6, 5, 13}},
      {"quad 4 in the plane", "QUAD", 4, 2, 4, Edge, {3, 0}},
      {"quad8 1 in the plane", "QUAD8", 8, 2, 1, Edge, {0, 1, 4}},
      {"tri 3 in the plane", "TRI", 3, 2, 3, Edge, {2, 0}},
      {"shell 2", "SHELL4", 4, 3, 2, Quad, {0, 3, 2, 1}},
      {"shell 5", "SHELL4", 4, 3, 5, Edge, {2, 3}},
      {"tri shell 1", "TRI6", 6, 3, 1, Tri, {0, 1, 2, 3, 4, 5}},
      {"tri shell 4", "TRI6", 6, 3, 4, Edge, {1, 2, 4}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    FileSpec spec = one_element(row.topology, row.nodes, row.dimensions);
    spec.side_sets = {{1, "side", {1}, {row.side}}};
    const ReadMesh read(write("side.e", spec));
    ASSERT_EQ(read.report.error, "");
    EXPECT_THAT(read.report.set_faces, ElementsAreArray(counts({{row.type, 1}})));
    const std::size_t place = read.report.elements[row.type];
    EXPECT_THAT(read.connectivity(row.type, place), ElementsAreArray(row.face));
  }
}

TEST(ExodusFiles, GivenSetsThatNameNothing_WhenReading_ThenTheirEntriesAreCounted) {
  FileSpec spec = one_element("TETRA", 4);
  spec.side_sets = {{1, "", {1, 1, 2, 1}, {1, 5, 1, 0}}};
  spec.node_sets = {{1, "", {1, 9, 0}, {}}};
  const ReadMesh read(write("nothing.e", spec));
  ASSERT_EQ(read.report.error, "");
  EXPECT_EQ(text_of(read.report.left_out),
            "3 entries of side sets that are no side of an element here; 2 entries of node sets that are no node");
  EXPECT_EQ(read.owner_elements("side set 1")[Tri], 1u);
  EXPECT_EQ(read.owner_nodes("node set 1"), 1u);
}

TEST(ExodusFiles, GivenNodesOnly_WhenReading_ThenTheyAreDrawn) {
  FileSpec spec;
  spec.xyz = {0, 0, 0, 1, 0, 0};
  const ReadMesh read(write("nodes.e", spec));
  ASSERT_EQ(read.report.error, "");
  EXPECT_THAT(read.owner_names(), ElementsAre("nodes"));
  EXPECT_THAT(read.node_flags(), testing::Each(testing::Ne(0)));
}

TEST(ExodusFiles, GivenAFileInThePlane_WhenReading_ThenZIsZero) {
  const ReadMesh read(write("plane.e", one_element("TRI", 3, 2)));
  EXPECT_THAT(read.coordinates(), ElementsAre(0, 0, 0, 1, 1, 0, 2, 2, 0));
}

} // namespace
