#include "reference/base/label/TextQuads.h"

#include "reference/base/label/GlyphSheet.h"

#include <vtkCellArray.h>
#include <vtkFloatArray.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper2D.h>
#include <vtkTexture.h>
#include <vtkTexturedActor2D.h>
#include <vtkTypeInt32Array.h>
#include <vtkUnsignedCharArray.h>
#include <vtkViewport.h>
#include <vtkWindow.h>

namespace {

constexpr vtkIdType kCorners = 4;
constexpr vtkIdType kTriangles = 2;

/// Two triangles for each of `count` rectangles whose corners run round.
vtkSmartPointer<vtkCellArray> triangles(vtkIdType count) {
  vtkNew<vtkTypeInt32Array> offsets;
  vtkNew<vtkTypeInt32Array> connectivity;
  const vtkIdType cells = kTriangles * count;
  int* offset = offsets->WritePointer(0, cells + 1);
  for (vtkIdType i = 0; i <= cells; ++i)
    offset[i] = static_cast<int>(3 * i);
  int* point = connectivity->WritePointer(0, 3 * cells);
  for (vtkIdType i = 0; i < count; ++i)
    for (const int corner : {0, 1, 2, 0, 2, 3})
      *point++ = static_cast<int>(kCorners * i) + corner;
  auto cell_array = vtkSmartPointer<vtkCellArray>::New();
  cell_array->SetData(offsets, connectivity);
  return cell_array;
}

} // namespace

TextQuads::TextQuads() {
  corners_->SetNumberOfComponents(3);
  texture_coordinates_->SetNumberOfComponents(2);
  tints_->SetNumberOfComponents(4);
  vtkNew<vtkPoints> points;
  points->SetData(corners_);
  data_->SetPoints(points);
  data_->GetPointData()->SetTCoords(texture_coordinates_);
  data_->GetPointData()->SetScalars(tints_);
  mapper_->SetInputData(data_);
  mapper_->SetColorModeToDirectScalars();
  actor_->SetMapper(mapper_);
}

TextQuads::~TextQuads() = default;

void TextQuads::resize(std::size_t count) {
  const auto corners = static_cast<vtkIdType>(count) * kCorners;
  corners_->SetNumberOfTuples(corners);
  texture_coordinates_->SetNumberOfTuples(corners);
  tints_->SetNumberOfTuples(corners);
  if (count != count_) data_->SetPolys(triangles(static_cast<vtkIdType>(count)));
  count_ = count;
}

void TextQuads::set(std::size_t i, const GlyphSheet& sheet, std::uint32_t number, int x, int y, TovanColor tint) {
  const GlyphSheet::Piece& piece = sheet.piece(number);
  const auto corner = static_cast<vtkIdType>(i) * kCorners;
  const auto left = static_cast<float>(x), right = static_cast<float>(x + piece.width);
  const auto low = static_cast<float>(y), high = static_cast<float>(y + piece.height);
  float* xyz = corners_->GetPointer(3 * corner);
  for (const float value : {left, low, 0.0f, right, low, 0.0f, right, high, 0.0f, left, high, 0.0f})
    *xyz++ = value;

  const float texel_width = 1.0f / static_cast<float>(sheet.width());
  const float texel_height = 1.0f / static_cast<float>(sheet.height());
  const float u0 = texel_width * static_cast<float>(piece.x);
  const float u1 = texel_width * static_cast<float>(piece.x + piece.width);
  const float v0 = texel_height * static_cast<float>(piece.y);
  const float v1 = texel_height * static_cast<float>(piece.y + piece.height);
  float* uv = texture_coordinates_->GetPointer(2 * corner);
  for (const float value : {u0, v0, u1, v0, u1, v1, u0, v1})
    *uv++ = value;

  unsigned char* rgba = tints_->GetPointer(4 * corner);
  for (vtkIdType k = 0; k < kCorners; ++k, rgba += 4)
    tint.to_rgba(rgba);
}

void TextQuads::finish() {
  corners_->Modified();
  texture_coordinates_->Modified();
  tints_->Modified();
  data_->GetPoints()->Modified();
  data_->Modified();
}

void TextQuads::draw(vtkViewport* viewport, GlyphSheet& sheet) {
  if (count_ == 0) return;
  actor_->SetTexture(sheet.texture());
  actor_->RenderOverlay(viewport);
}

void TextQuads::release(vtkWindow* window) { actor_->ReleaseGraphicsResources(window); }
