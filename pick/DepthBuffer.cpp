#include "pick/DepthBuffer.h"

#include "mesh/database/MeshData.h"

#include <vtkFloatArray.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <limits>

namespace {
constexpr Tarn::MeshData::Count element_capacity = 27;
constexpr double slack = 0.01;
} // namespace

DepthBuffer::DepthBuffer(vtkRenderer* renderer, vtkMatrix4x4* matrix) : renderer_(renderer), matrix_(matrix) {
  vtkRenderWindow* window = renderer->GetRenderWindow();
  if (!window) return;
  const int* size = window->GetSize();
  if (size[0] <= 0 || size[1] <= 0) return;
  width_ = size[0];
  height_ = size[1];
  vtkNew<vtkFloatArray> values;
  window->GetZbufferData(0, 0, width_, height_, values);
  depth_.assign(values->GetPointer(0), values->GetPointer(0) + values->GetNumberOfValues());
  depth_.resize(std::size_t(width_ + 1) * std::size_t(height_ + 1), 0.0f);
}

int DepthBuffer::count_visible_nodes(Tarn::MeshData* db, const Tarn::Handle<0>* nodes, std::size_t count) const {
  int visible = 0;
  for (std::size_t i = 0; i < count; ++i) {
    constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();
    double point[4] = {nowhere, nowhere, nowhere, 1.0};
    db->get_node_coordinates(nodes[i], &point[0], &point[1], &point[2]);
    matrix_->MultiplyPoint(point, point);
    renderer_->SetViewPoint(point[0] / point[3], point[1] / point[3], point[2] / point[3]);
    renderer_->ViewToDisplay();
    const double* display = renderer_->GetDisplayPoint();
    // Where the conversion would overflow (or is no number) the node is not in the window either.
    const double px = display[0] + 0.5;
    const double py = display[1] + 0.5;
    if (!(px > -1.0 && px < width_ && py > -1.0 && py < height_)) continue;
    const float behind = depth_[std::size_t(int(py)) * std::size_t(width_ + 1) + std::size_t(int(px))];
    if (behind + slack >= display[2]) ++visible;
  }
  return visible;
}

bool DepthBuffer::is_visible(Tarn::MeshData* db, Tarn::Handle<0> node) const {
  return count_visible_nodes(db, &node, 1) != 0;
}

bool DepthBuffer::is_visible(Tarn::MeshData* db, Tarn::Handle<1> element) const {
  Tarn::Handle<0> nodes[element_capacity];
  Tarn::MeshData::Count count = element_capacity;
  if (db->get_nodes_of_elements(1, &element, 0, &count, nodes) != 0) return false;
  count = std::min(count, element_capacity);
  if (count < 2) return true;
  return count_visible_nodes(db, nodes, count) >= (count == 2 ? 2 : 3);
}
