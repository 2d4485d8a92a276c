#include "model/GNodeGlypher.h"

#include "tests/group/GridInspection.h"

#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkIndent.h>
#include <vtkInformation.h>
#include <vtkInformationVector.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkStructuredGrid.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>

#include <sstream>
#include <stdexcept>

namespace {

using namespace group_test;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

vtkSmartPointer<vtkUnstructuredGrid> ten_points() {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  vtkNew<vtkPoints> points;
  vtkNew<vtkDoubleArray> values;
  values->SetName("values");
  for (int i = 0; i < 10; ++i) {
    points->InsertNextPoint(i, 0, 0);
    values->InsertNextValue(10 * i);
  }
  grid->SetPoints(points);
  grid->GetPointData()->SetScalars(values);
  return grid;
}

void add_cell(vtkUnstructuredGrid* grid, int type, const std::vector<vtkIdType>& points) {
  grid->InsertNextCell(type, static_cast<vtkIdType>(points.size()), points.data());
}

vtkSmartPointer<vtkPolyData> glyph(vtkDataObject* input, bool pass_vertices) {
  vtkNew<GNodeGlypher> glypher;
  glypher->pass_vertices(pass_vertices);
  glypher->SetInputDataObject(input);
  glypher->Update();
  return glypher->GetOutput();
}

TEST(NodeGlypher, GivenVertexCellsOnTwoOfTenPoints_WhenGlyphed_ThenTheOthersOrAllGetAVertex) {
  auto grid = ten_points();
  add_cell(grid, VTK_VERTEX, {2});
  add_cell(grid, VTK_LINE, {2, 3});
  add_cell(grid, VTK_VERTEX, {5});
  add_cell(grid, VTK_POLY_VERTEX, {7, 8});
  add_cell(grid, VTK_QUAD, {0, 1, 2, 3});

  const auto rest = glyph(grid, false);
  EXPECT_THAT(cell_types(rest), Each(VTK_VERTEX));
  EXPECT_THAT(cell_points(rest), ElementsAre(ElementsAre(0), ElementsAre(1), ElementsAre(3), ElementsAre(4),
                                             ElementsAre(6), ElementsAre(7), ElementsAre(8), ElementsAre(9)));
  EXPECT_EQ(rest->GetNumberOfVerts(), 8);

  const auto all = glyph(grid, true);
  ASSERT_EQ(all->GetNumberOfCells(), 10);
  for (vtkIdType i = 0; i < 10; ++i)
    EXPECT_THAT(cell_points(all)[static_cast<std::size_t>(i)], ElementsAre(i));
  EXPECT_EQ(all->GetNumberOfVerts(), 10);
}

TEST(NodeGlypher, GivenPoints_WhenGlyphed_ThenPointsAndPointDataAreSharedAndCellDataAreNot) {
  auto grid = ten_points();
  const auto output = glyph(grid, false);
  EXPECT_EQ(output->GetPoints(), grid->GetPoints());
  EXPECT_EQ(output->GetPointData()->GetScalars(), grid->GetPointData()->GetScalars());
  EXPECT_EQ(output->GetPointData()->GetNumberOfArrays(), 1);
  EXPECT_EQ(output->GetNumberOfCells(), 10);
}

TEST(NodeGlypher, GivenNoPoints_WhenGlyphed_ThenTheOutputIsEmpty) {
  vtkNew<vtkUnstructuredGrid> without;
  vtkNew<vtkUnstructuredGrid> with_none;
  with_none->SetPoints(vtkNew<vtkPoints>());
  for (vtkUnstructuredGrid* grid : {without.Get(), with_none.Get()}) {
    const auto output = glyph(grid, true);
    EXPECT_EQ(output->GetNumberOfPoints(), 0);
    EXPECT_EQ(output->GetNumberOfCells(), 0);
    EXPECT_EQ(output->GetPointData()->GetNumberOfArrays(), 0);
  }
}

TEST(NodeGlypher, GivenAFilterThatHadPoints_WhenTheyGo_ThenTheOutputIsEmptyAgain) {
  auto grid = ten_points();
  vtkNew<GNodeGlypher> glypher;
  glypher->SetInputDataObject(grid);
  glypher->Update();
  ASSERT_EQ(glypher->GetOutput()->GetNumberOfCells(), 10);
  vtkNew<vtkUnstructuredGrid> empty;
  glypher->SetInputDataObject(empty);
  glypher->Update();
  EXPECT_EQ(glypher->GetOutput()->GetNumberOfCells(), 0);
  EXPECT_EQ(glypher->GetOutput()->GetNumberOfPoints(), 0);
}

TEST(NodeGlypher, GivenOtherPointSets_WhenGlyphed_ThenTheirVertexCellsCountAsWell) {
  vtkNew<vtkPolyData> poly;
  poly->SetPoints(ten_points()->GetPoints());
  vtkNew<vtkCellArray> vertices;
  vertices->InsertNextCell({4});
  vertices->InsertNextCell({0, 1}); // a poly-vertex
  poly->SetVerts(vertices);
  EXPECT_EQ(glyph(poly, false)->GetNumberOfCells(), 9);
  EXPECT_EQ(glyph(poly, true)->GetNumberOfCells(), 10);

  vtkNew<vtkStructuredGrid> structured;
  structured->SetDimensions(5, 2, 1);
  structured->SetPoints(poly->GetPoints());
  EXPECT_EQ(glyph(structured, false)->GetNumberOfCells(), 10);
}

TEST(NodeGlypher, GivenAVertexCellBeyondThePoints_WhenGlyphed_ThenItIsIgnored) {
  auto grid = ten_points();
  add_cell(grid, VTK_VERTEX, {10});
  add_cell(grid, VTK_VERTEX, {-1});
  add_cell(grid, VTK_VERTEX, {3});
  EXPECT_EQ(glyph(grid, false)->GetNumberOfCells(), 9);
}

/// Opens the filter's protected operations.
class OpenGlypher : public GNodeGlypher {
public:
  static OpenGlypher* New();
  vtkTypeMacro(OpenGlypher, GNodeGlypher)
  using GNodeGlypher::FillInputPortInformation;
  using GNodeGlypher::RequestData;
};
vtkStandardNewMacro(OpenGlypher)

/// Has a number of points that no point set has.
class NegativePoints : public vtkUnstructuredGrid {
public:
  static NegativePoints* New();
  vtkTypeMacro(NegativePoints, vtkUnstructuredGrid)
  vtkIdType GetNumberOfPoints() override { return -1; }
};
vtkStandardNewMacro(NegativePoints)

TEST(NodeGlypher, GivenANegativeNumberOfPoints_WhenGlyphed_ThenItIsALengthError) {
  vtkNew<OpenGlypher> glypher;
  vtkNew<NegativePoints> input;
  vtkNew<vtkPolyData> result;
  vtkNew<vtkInformation> input_information;
  input_information->Set(vtkDataObject::DATA_OBJECT(), input);
  vtkNew<vtkInformationVector> inputs;
  inputs->Append(input_information);
  vtkNew<vtkInformation> output_information;
  output_information->Set(vtkDataObject::DATA_OBJECT(), result);
  vtkNew<vtkInformationVector> output;
  output->Append(output_information);
  vtkInformationVector* input_vectors[] = {inputs.Get()};
  EXPECT_THROW(glypher->RequestData(nullptr, input_vectors, output), std::length_error);
}

TEST(NodeGlypher, GivenTheFilter_WhenARequestIsServed_ThenItSaysSo) {
  vtkNew<OpenGlypher> glypher;
  auto grid = ten_points();
  vtkNew<vtkUnstructuredGrid> empty;
  for (vtkUnstructuredGrid* input : {grid.Get(), empty.Get()}) {
    vtkNew<vtkPolyData> result;
    vtkNew<vtkInformation> input_information;
    input_information->Set(vtkDataObject::DATA_OBJECT(), input);
    vtkNew<vtkInformationVector> inputs;
    inputs->Append(input_information);
    vtkNew<vtkInformation> output_information;
    output_information->Set(vtkDataObject::DATA_OBJECT(), result);
    vtkNew<vtkInformationVector> output;
    output->Append(output_information);
    vtkInformationVector* input_vectors[] = {inputs.Get()};
    EXPECT_EQ(glypher->RequestData(nullptr, input_vectors, output), 1);
    EXPECT_EQ(result->GetNumberOfCells(), input->GetNumberOfPoints());
  }
}

TEST(NodeGlypher, GivenTheFilter_WhenAskedForItsInput_ThenItIsAPointSet) {
  vtkNew<OpenGlypher> glypher;
  vtkNew<vtkInformation> information;
  EXPECT_EQ(glypher->FillInputPortInformation(0, information), 1);
  EXPECT_STREQ(information->Get(vtkAlgorithm::INPUT_REQUIRED_DATA_TYPE()), "vtkPointSet");
}

TEST(NodeGlypher, GivenTheFilter_WhenItsOptionIsSet_ThenNoTimeStampMoves) {
  vtkNew<GNodeGlypher> glypher;
  const vtkMTimeType before = glypher->GetMTime();
  glypher->pass_vertices(true);
  glypher->pass_vertices(false);
  EXPECT_EQ(glypher->GetMTime(), before);
  glypher->Modified();
  EXPECT_GT(glypher->GetMTime(), before);
}

TEST(NodeGlypher, GivenTheClass_WhenAskedForItsType_ThenVtkKnowsItsNameAndBases) {
  vtkNew<GNodeGlypher> glypher;
  EXPECT_STREQ(glypher->GetClassName(), "GNodeGlypher");
  EXPECT_TRUE(glypher->IsA("GNodeGlypher"));
  EXPECT_TRUE(glypher->IsA("vtkPolyDataAlgorithm"));
  EXPECT_FALSE(glypher->IsA("vtkPolyData"));
  EXPECT_EQ(GNodeGlypher::IsTypeOf("vtkPolyDataAlgorithm"), 1);
  EXPECT_EQ(GNodeGlypher::SafeDownCast(glypher.Get()), glypher.Get());
  EXPECT_EQ(GNodeGlypher::SafeDownCast(vtkNew<vtkPolyData>().Get()), nullptr);
  const auto instance = vtk::TakeSmartPointer(glypher->NewInstance());
  EXPECT_STREQ(instance->GetClassName(), "GNodeGlypher");
  EXPECT_EQ(glypher->GetNumberOfGenerationsFromBase("GNodeGlypher"), 0);
  EXPECT_EQ(glypher->GetNumberOfGenerationsFromBase("vtkPolyDataAlgorithm"), 1);
}

TEST(NodeGlypher, GivenTheFilter_WhenPrinted_ThenItPrintsWhatItsBasePrints) {
  vtkNew<GNodeGlypher> glypher;
  std::ostringstream own;
  std::ostringstream base;
  glypher->PrintSelf(own, vtkIndent());
  glypher->vtkPolyDataAlgorithm::PrintSelf(base, vtkIndent());
  EXPECT_FALSE(own.str().empty());
  EXPECT_EQ(own.str(), base.str());
}

} // namespace
