#include "tests/readers/ReadFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

namespace {

using namespace reader_tests;
using namespace Tarn;
using testing::ElementsAre;
using testing::ElementsAreArray;

using Triangle = std::array<float, 9>;

std::string binary_stl(const std::string& head, const std::vector<Triangle>& triangles) {
  std::string bytes = head;
  bytes.resize(80, ' ');
  const auto count = static_cast<std::uint32_t>(triangles.size());
  bytes.append(reinterpret_cast<const char*>(&count), 4);
  for (const Triangle& triangle : triangles) {
    bytes.append(12, '\0');
    bytes.append(reinterpret_cast<const char*>(triangle.data()), sizeof triangle).append(2, '\0');
  }
  return bytes;
}

// Two triangles on one edge, the third without area; -0 and 0 are one coordinate.
const std::vector<Triangle> three_triangles = {
    {0, 0, 0, 1, 0, 0, 0, 1, 0}, {1, 0, 0, 1, 1, 0, 0, 1, -0.0f}, {0, 0, 0, 0, 0, 0, 1, 0, 0}};

TEST(SurfaceFiles, GivenBinaryStl_WhenReading_ThenEqualCornersAreOneNodeAndDegenerateTrianglesStay) {
  const ReadMesh read(write_file("three.stl", binary_stl("made by hand", three_triangles)));
  ASSERT_EQ(read.report.error, "");
  EXPECT_EQ(read.report.nodes, 4u);
  EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Tri, 3}})));
  EXPECT_THAT(read.connectivity(Tri, 0), ElementsAre(0, 1, 2));
  EXPECT_THAT(read.connectivity(Tri, 1), ElementsAre(1, 3, 2));
  EXPECT_THAT(read.connectivity(Tri, 2), ElementsAre(0, 0, 1));
  EXPECT_THAT(read.owner_names(), ElementsAre("three"));
  EXPECT_EQ(read.dimension("three"), 2u);
}

TEST(SurfaceFiles, GivenBinaryStlThatBeginsAsText_WhenReading_ThenItIsReadAsBinary) {
  const ReadMesh read(write_file("solid.stl", binary_stl("solid by name", three_triangles)));
  EXPECT_EQ(read.report.error, "");
  EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Tri, 3}})));
}

TEST(SurfaceFiles, GivenNodesThatDifferInTheLastBit_WhenReadingStl_ThenTheyStayApart) {
  const ReadMesh read(
      write_file("close.stl", binary_stl("", {{0, 0, 0, 1, 0, 0, 0, 1, 0}, {1.0000001f, 0, 0, 1, 1, 0, 0, 1, 0}})));
  EXPECT_EQ(read.report.nodes, 5u);
}

TEST(SurfaceFiles, GivenTextStl_WhenReading_ThenItsTrianglesAreThere) {
  const ReadMesh read(write_file("text.stl",
                                 "solid a b\n facet normal 0 0 1\n  outer loop\n   vertex 0 0 0\n"
                                 "   vertex 1e0 0 0\n   vertex 0 1 0\n  endloop\n endfacet\nendsolid a b\n"));
  ASSERT_EQ(read.report.error, "");
  EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Tri, 1}})));
  EXPECT_THAT(read.coordinates(), ElementsAre(0, 0, 0, 1, 0, 0, 0, 1, 0));
}

TEST(SurfaceFiles, GivenPly_WhenReading_ThenNodesStayAsTheyAreAndOtherRowsAreCounted) {
  const ReadMesh read(write_file("mesh.ply", "ply\nformat ascii 1.0\ncomment coincident nodes 0 and 3\n"
                                             "element vertex 5\nproperty float x\nproperty float y\nproperty float z\n"
                                             "property uchar red\nelement face 3\n"
                                             "property list uchar int vertex_indices\nelement edge 1\n"
                                             "property int vertex1\nproperty int vertex2\nend_header\n"
                                             "0 0 0 255\n1 0 0 0\n1 1 0 0\n0 0 0 9\n0 1 0 9\n"
                                             "3 0 1 2\n4 3 1 2 4\n5 0 1 2 3 4\n0 1\n"));
  ASSERT_EQ(read.report.error, "");
  EXPECT_EQ(read.report.nodes, 5u);
  EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Tri, 1}, {Quad, 1}})));
  EXPECT_THAT(read.connectivity(Quad, 0), ElementsAre(3, 1, 2, 4));
  EXPECT_EQ(text_of(read.report.left_out), "1 polygons with more than 4 corners; 1 rows of element \"edge\"");
  EXPECT_THAT(read.owner_names(), ElementsAre("mesh"));
}

TEST(SurfaceFiles, GivenObj_WhenReading_ThenNodesAreSharedWhateverTextureAndNormalsSay) {
  const ReadMesh read(write_file("mesh.obj", "# a comment\nmtllib none.mtl\nv 0 0 0\nv 1 0 0 1.0\nv 1 1 0\nv +0 1e0 0\n"
                                             "vt 0 0\nvt 1 0\nvn 0 0 1\ng one\nusemtl red\n"
                                             "f 1/1/1 2/2/1 3/2/1\nf 1//1 3//1 4//1\r\nf -4 \\\n-3 -2 -1 # last\n"
                                             "l 1 2 3\np 4 1\n"));
  ASSERT_EQ(read.report.error, "");
  EXPECT_EQ(read.report.nodes, 4u);
  EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{OneNode, 2}, {Edge, 2}, {Tri, 2}, {Quad, 1}})));
  EXPECT_THAT(read.connectivity(Tri, 0), ElementsAre(0, 1, 2));
  EXPECT_THAT(read.connectivity(Tri, 1), ElementsAre(0, 2, 3));
  EXPECT_THAT(read.connectivity(Quad, 0), ElementsAre(0, 1, 2, 3));
  EXPECT_THAT(read.connectivity(OneNode, 0), ElementsAre(3));
  EXPECT_THAT(read.coordinates(), ElementsAre(0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0));
  EXPECT_THAT(read.owner_names(), ElementsAre("mesh"));
  EXPECT_EQ(read.dimension("mesh"), MeshDatabase::AnyDimension);
}

TEST(SurfaceFiles, GivenObjWithWhatCannotBeDrawn_WhenReading_ThenItIsCounted) {
  const ReadMesh read(write_file("odd.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 0 2 0\nf 1 2 3 4 5\nf 1 2 3\n"
                                            "cstype bezier\ncurv 0 1 1 2 3\n"));
  EXPECT_EQ(text_of(read.report.left_out), "1 free-form curves and surfaces; 1 polygons with more than 4 corners");
  EXPECT_THAT(read.report.elements, ElementsAreArray(counts({{Tri, 1}})));
}

} // namespace
