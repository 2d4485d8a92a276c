#include "readers/formats/CgnsShapes.h"

#include "tests/readers/ReadFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

namespace {

using namespace reader_tests;
using namespace Tarn;
using testing::ElementsAre;
using testing::ElementsAreArray;

struct SectionSpec {
  const char* name;
  CGNS_ENUMT(ElementType_t) type;
  int count;
  std::vector<cgsize_t> values;
  std::vector<cgsize_t> offsets; ///< of mixed and arbitrary sections
};

class Writer {
public:
  explicit Writer(const std::string& name, int cell_dimension = 3, int file_type = CG_FILE_HDF5) {
    cg_set_file_type(file_type);
    cg_open(scratch(name).c_str(), CG_MODE_WRITE, &file_);
    cg_base_write(file_, "base", cell_dimension, 3, &base_);
  }
  ~Writer() { cg_close(file_); }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  int add_zone(const char* name, int nodes, int elements) {
    const cgsize_t size[3] = {nodes, elements, 0};
    int zone = 0;
    cg_zone_write(file_, base_, name, size, CGNS_ENUMV(Unstructured), &zone);
    write_coordinates(zone, nodes);
    return zone;
  }

  void add_structured_zone(const char* name, int i, int j, int k) {
    const cgsize_t size[9] = {i, j, k, i - 1, j - 1, k - 1, 0, 0, 0};
    int zone = 0;
    cg_zone_write(file_, base_, name, size, CGNS_ENUMV(Structured), &zone);
    write_coordinates(zone, i * j * k);
  }

  void add_structured_sheet(const char* name, int i, int j) {
    const cgsize_t size[6] = {i, j, i - 1, j - 1, 0, 0};
    int zone = 0;
    cg_zone_write(file_, base_, name, size, CGNS_ENUMV(Structured), &zone);
    write_coordinates(zone, i * j);
  }

  void add_section(int zone, const SectionSpec& section) {
    int index = 0;
    const cgsize_t first = next_;
    next_ += section.count;
    if (section.offsets.empty())
      cg_section_write(file_, base_, zone, section.name, section.type, first, next_ - 1, 0, section.values.data(),
                       &index);
    else
      cg_poly_section_write(file_, base_, zone, section.name, section.type, first, next_ - 1, 0, section.values.data(),
                            section.offsets.data(), &index);
  }

private:
  void write_coordinates(int zone, int nodes) {
    int index = 0;
    for (int axis = 0; axis < 3; ++axis) {
      std::vector<double> values;
      for (int i = 0; i < nodes; ++i)
        values.push_back(i + 0.25 * axis);
      static constexpr const char* names[] = {"CoordinateX", "CoordinateY", "CoordinateZ"};
      cg_coord_write(file_, base_, zone, CGNS_ENUMV(RealDouble), names[axis], values.data(), &index);
    }
  }

  int file_ = 0;
  int base_ = 0;
  cgsize_t next_ = 1;
};

std::vector<cgsize_t> one_to(int n) {
  std::vector<cgsize_t> numbers(static_cast<std::size_t>(n));
  std::iota(numbers.begin(), numbers.end(), 1);
  return numbers;
}

TEST(CgnsFiles, GivenAnElementType_WhenReading_ThenItsKindAndItsOrderAreCanonical) {
  const struct {
    CGNS_ENUMT(ElementType_t) type;
    int nodes;
    ElementType kind;
    std::vector<int> order; ///< place in the file of each node; empty: the same
  } rows[] = {
      {CGNS_ENUMV(NODE), 1, OneNode, {}},
      {CGNS_ENUMV(BAR_2), 2, Edge, {}},
      {CGNS_ENUMV(BAR_3), 3, Edge, {}},
      {CGNS_ENUMV(TRI_3), 3, Tri, {}},
      {CGNS_ENUMV(TRI_6), 6, Tri, {}},
      {CGNS_ENUMV(QUAD_4), 4, Quad, {}},
      {CGNS_ENUMV(QUAD_8), 8, Quad, {}},
      {CGNS_ENUMV(QUAD_9), 9, Quad, {}},
      {CGNS_ENUMV(TETRA_4), 4, Tet, {}},
      {CGNS_ENUMV(TETRA_10), 10, Tet, {}},
      {CGNS_ENUMV(PYRA_5), 5, Pyramid, {}},
      {CGNS_ENUMV(PYRA_13), 13, Pyramid, {}},
      {CGNS_ENUMV(PYRA_14), 14, Pyramid, {}},
      {CGNS_ENUMV(PENTA_6), 6, Wedge, {}},
      {CGNS_ENUMV(PENTA_15), 15, Wedge, {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 13, 14, 9, 10, 11}},
      {CGNS_ENUMV(PENTA_18), 18, Wedge, {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 13, 14, 9, 10, 11, 15, 16, 17}},
      {CGNS_ENUMV(HEXA_8), 8, Hex, {}},
      {CGNS_ENUMV(HEXA_20), 20, Hex, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 16, 17, 18, 19, 12, 13, 14, 15}},
      {CGNS_ENUMV(HEXA_27), 27, Hex, {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 16, 17,
                                      18, 19, 12, 13, 14, 15, 24, 22, 21, 23, 20, 25, 26}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(cg_ElementTypeName(row.type));
    {
      Writer writer("kind.cgns");
      writer.add_section(writer.add_zone("zone", row.nodes, 1), {"all", row.type, 1, one_to(row.nodes), {}});
    }
    const ReadMesh read(scratch("kind.cgns"));
    ASSERT_EQ(read.report.error, "");
    EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{row.kind, 1}})));
    std::vector<int> expected(static_cast<std::size_t>(row.nodes));
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_THAT(read.connectivity(row.kind, 0), ElementsAreArray(row.order.empty() ? expected : row.order));
    EXPECT_THAT(read.owner_names(), ElementsAre("zone"));
  }
}

TEST(CgnsFiles, GivenMixedAndBoundarySections_WhenReading_ThenVolumesAreTheZoneAndBoundariesOwnersOfTheirNodes) {
  for (const int file_type : {CG_FILE_HDF5, CG_FILE_ADF}) {
    {
      Writer writer("mixed.cgns", 3, file_type);
      const int zone = writer.add_zone("body", 7, 2);
      writer.add_section(zone, {"inlet", CGNS_ENUMV(TRI_3), 1, {1, 2, 3}, {}});
      writer.add_section(zone, {"solid",
                                CGNS_ENUMV(MIXED),
                                2,
                                {CGNS_ENUMV(TETRA_4), 1, 2, 3, 4, CGNS_ENUMV(PYRA_5), 1, 2, 3, 4, 5},
                                {0, 5, 11}});
      writer.add_section(zone, {"wire", CGNS_ENUMV(BAR_2), 1, {4, 5}, {}});
    }
    const ReadMesh read(scratch("mixed.cgns"));
    ASSERT_EQ(read.report.error, "");
    EXPECT_THAT(read.owner_names(), ElementsAre("body", "inlet", "wire"));
    EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Tet, 1}, {Pyramid, 1}})));
    EXPECT_THAT(read.report.set_faces, ElementsAreArray(counts({{Edge, 1}, {Tri, 1}})));
    EXPECT_THAT(read.connectivity(Tri, 0), ElementsAre(0, 1, 2));
    EXPECT_THAT(read.connectivity(Pyramid, 0), ElementsAre(0, 1, 2, 3, 4));
    EXPECT_THAT(read.global_ids(Tet), ElementsAre(2));
    EXPECT_THAT(read.global_ids(Pyramid), ElementsAre(3));
    EXPECT_EQ(read.dimension("inlet"), 2u);
    EXPECT_EQ(read.dimension("wire"), 1u);
    EXPECT_EQ(read.owner_nodes("body"), 7u) << "those of its elements and those of none";
    EXPECT_EQ(read.owner_nodes("inlet"), 0u) << "its nodes belong to the body";
    EXPECT_THAT(read.node_flags(), ElementsAre(0, 0, 0, 0, 0, testing::Ne(0), testing::Ne(0)));
    const std::vector<double> xyz = read.coordinates();
    EXPECT_THAT(std::vector<double>(xyz.begin() + 3, xyz.begin() + 6), ElementsAre(1, 1.25, 1.5));
  }
}

TEST(CgnsFiles, GivenAStructuredZoneBesideAnother_WhenReading_ThenItIsHexahedraAndSectionsAreCalledByTheirZone) {
  {
    Writer writer("zones.cgns");
    writer.add_structured_zone("block", 3, 2, 2);
    const int zone = writer.add_zone("body", 4, 1);
    writer.add_section(zone, {"solid", CGNS_ENUMV(TETRA_4), 1, {1, 2, 3, 4}, {}});
    writer.add_section(zone, {"wall", CGNS_ENUMV(TRI_3), 1, {1, 2, 3}, {}});
  }
  const ReadMesh read(scratch("zones.cgns"));
  ASSERT_EQ(read.report.error, "");
  EXPECT_THAT(read.owner_names(), ElementsAre("block", "body", "body/wall"));
  EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Tet, 1}, {Hex, 2}})));
  EXPECT_THAT(read.connectivity(Hex, 1), ElementsAre(1, 2, 5, 4, 7, 8, 11, 10));
  EXPECT_THAT(read.connectivity(Tet, 0), ElementsAre(12, 13, 14, 15));
  EXPECT_THAT(read.element_ids(Hex), ElementsAre(1, 2));
  EXPECT_THAT(read.report.notices, testing::IsEmpty());
}

TEST(CgnsFiles, GivenAStructuredSheet_WhenReading_ThenItIsQuadrilaterals) {
  {
    Writer writer("sheet.cgns", 2);
    writer.add_structured_sheet("sheet", 3, 2);
  }
  const ReadMesh read(scratch("sheet.cgns"));
  ASSERT_EQ(read.report.error, "");
  EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Quad, 2}})));
  EXPECT_THAT(read.connectivity(Quad, 1), ElementsAre(1, 2, 5, 4));
}

TEST(CgnsFiles, GivenBlocksOneNodeThick_WhenReading_ThenTheyAreSheetsAndLines) {
  {
    Writer writer("thin.cgns");
    writer.add_structured_zone("a dot", 1, 1, 1);      // zones come in the order of their names: node 0
    writer.add_structured_zone("b flat", 3, 2, 1);     // 1 to 6
    writer.add_structured_zone("c line", 1, 1, 3);     // 7 to 9
    writer.add_structured_zone("d standing", 3, 1, 2); // 10 to 15
  }
  const ReadMesh read(scratch("thin.cgns"));
  ASSERT_EQ(read.report.error, "");
  EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Edge, 2}, {Quad, 4}})));
  EXPECT_THAT(read.connectivity(Quad, 1), ElementsAre(2, 3, 6, 5));
  EXPECT_THAT(read.connectivity(Quad, 3), ElementsAre(11, 12, 15, 14));
  EXPECT_THAT(read.connectivity(Edge, 1), ElementsAre(8, 9));
}

TEST(CgnsFiles, GivenWhatCannotBeDrawn_WhenReading_ThenItIsCountedAndTheRestIsThere) {
  {
    Writer writer("odd.cgns");
    const int zone = writer.add_zone("body", 20, 3);
    writer.add_section(zone, {"solid", CGNS_ENUMV(TETRA_4), 2, {1, 2, 3, 4, 1, 2, 3, 99}, {}});
    writer.add_section(zone, {"cubic", CGNS_ENUMV(TETRA_20), 1, one_to(20), {}});
    writer.add_section(zone, {"polygons", CGNS_ENUMV(NGON_n), 1, {1, 2, 3, 4, 5}, {0, 5}});
  }
  const ReadMesh read(scratch("odd.cgns"));
  ASSERT_EQ(read.report.error, "");
  EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Tet, 1}})));
  EXPECT_EQ(text_of(read.report.left_out),
            "1 polygons of NGON_n sections; 1 elements of order 3 and higher; 1 elements "
            "on nodes that do not exist");
  EXPECT_THAT(read.report.notices,
              ElementsAre("element 2 of section solid is the first on a node that does not exist: 99 of 20"));
}

} // namespace
