#include "tests/proof/Scene.h"

#include <vtkActor.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderer.h>
#include <vtkUnsignedCharArray.h>

#include <algorithm>
#include <set>

namespace proof {

namespace {

using Face = std::vector<int>;

// Corners of a face, and its mid-side nodes where the element has them.
struct DrawnFace {
  Face corners;
  Face middles;
};

DrawnFace face_nodes(const Element& element, const std::vector<int>& face) {
  DrawnFace drawn;
  const auto& edges = edges_of(element.type);
  const auto corners = std::size_t(corner_count(element.type));
  for (std::size_t i = 0; i < face.size(); ++i) {
    drawn.corners.push_back(element.nodes[std::size_t(face[i])]);
    if (element.nodes.size() < corners + edges.size()) continue;
    const int from = face[i];
    const int to = face[(i + 1) % face.size()];
    const auto found = std::find_if(edges.begin(), edges.end(), [&](const std::array<int, 2>& edge) {
      return (edge[0] == from && edge[1] == to) || (edge[0] == to && edge[1] == from);
    });
    drawn.middles.push_back(element.nodes[corners + std::size_t(found - edges.begin())]);
  }
  return drawn;
}

// The triangles of a face: a fan, or each corner with the mid-side nodes beside it and a fan of these.
std::vector<std::array<int, 3>> triangles_of(const DrawnFace& face) {
  std::vector<std::array<int, 3>> triangles;
  const auto fan = [&triangles](const Face& nodes) {
    for (std::size_t i = 1; i + 1 < nodes.size(); ++i)
      triangles.push_back({nodes[0], nodes[i], nodes[i + 1]});
  };
  if (face.middles.empty()) {
    fan(face.corners);
    return triangles;
  }
  const std::size_t count = face.corners.size();
  for (std::size_t i = 0; i < count; ++i)
    triangles.push_back({face.corners[i], face.middles[i], face.middles[(i + count - 1) % count]});
  fan(face.middles);
  return triangles;
}

class Canvas {
public:
  Canvas(const Mesh& mesh, double dot_size) {
    vtkNew<vtkPoints> points;
    points->SetDataTypeToDouble();
    for (const Point& point : mesh.points)
      points->InsertNextPoint(point.data());
    data_->SetPoints(points);
    data_->SetPolys(triangles_);
    data_->SetVerts(dots_);
    triangle_colors_->SetNumberOfComponents(3);
    dot_colors_->SetNumberOfComponents(3);
    dot_size_ = dot_size;
  }

  void add_triangle(const std::array<int, 3>& nodes, int id) {
    const vtkIdType cell[3] = {nodes[0], nodes[1], nodes[2]};
    triangles_->InsertNextCell(3, cell);
    add_color(triangle_colors_, id);
  }

  void add_dot(int node, int id) {
    const vtkIdType cell = node;
    dots_->InsertNextCell(1, &cell);
    add_color(dot_colors_, id);
  }

  vtkSmartPointer<vtkActor> actor() {
    // Vertices come first among the cells of poly data.
    vtkNew<vtkUnsignedCharArray> colors;
    colors->SetNumberOfComponents(3);
    for (vtkUnsignedCharArray* list : {dot_colors_.Get(), triangle_colors_.Get()})
      for (vtkIdType i = 0; i < list->GetNumberOfTuples(); ++i)
        colors->InsertNextTuple(i, list);
    data_->GetCellData()->SetScalars(colors);
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputData(data_);
    vtkNew<vtkActor> actor;
    actor->SetMapper(mapper);
    actor->GetProperty()->LightingOff();
    actor->GetProperty()->SetAmbient(1);
    actor->GetProperty()->SetDiffuse(0);
    actor->GetProperty()->SetInterpolationToFlat();
    actor->GetProperty()->SetPointSize(static_cast<float>(dot_size_));
    return actor.Get();
  }

private:
  static void add_color(vtkUnsignedCharArray* colors, int id) {
    const unsigned char rgb[3] = {static_cast<unsigned char>((id + 1) & 255),
                                  static_cast<unsigned char>(((id + 1) >> 8) & 255), 0};
    colors->InsertNextTypedTuple(rgb);
  }

  vtkNew<vtkPolyData> data_;
  vtkNew<vtkCellArray> triangles_;
  vtkNew<vtkCellArray> dots_;
  vtkNew<vtkUnsignedCharArray> triangle_colors_;
  vtkNew<vtkUnsignedCharArray> dot_colors_;
  double dot_size_ = 1;
};

bool is_shell(const Element& element) { return element.type == Tarn::Tri || element.type == Tarn::Quad; }

Face sorted(Face nodes) {
  std::sort(nodes.begin(), nodes.end());
  return nodes;
}

} // namespace

std::vector<int> draw_ids(const Scene& scene, const std::vector<char>& shown, const Look& look, double dot_size) {
  const Mesh& mesh = scene.mesh;
  // Where a shell lies on a solid's face, it is the shell that one sees.
  std::set<Face> shells;
  for (std::size_t i = 0; i < mesh.elements.size(); ++i)
    if (shown[i] && is_shell(mesh.elements[i]))
      shells.insert(sorted(face_nodes(mesh.elements[i], faces_of(mesh.elements[i].type).front()).corners));

  Canvas canvas(mesh, dot_size);
  for (std::size_t i = 0; i < mesh.elements.size(); ++i) {
    const Element& element = mesh.elements[i];
    if (!shown[i]) continue;
    for (const auto& face : faces_of(element.type)) {
      const DrawnFace drawn = face_nodes(element, face);
      if (!is_shell(element) && shells.count(sorted(drawn.corners)) != 0) continue;
      for (const auto& triangle : triangles_of(drawn))
        canvas.add_triangle(triangle, static_cast<int>(i));
    }
    if (element.type == Tarn::Superelement)
      for (const int node : element.nodes)
        canvas.add_dot(node, static_cast<int>(i));
  }

  vtkNew<vtkRenderWindow> window;
  window->SetOffScreenRendering(1);
  window->SetMultiSamples(0);
  window->SetSize(scene.width, scene.height);
  vtkNew<vtkRenderer> renderer;
  renderer->SetBackground(0, 0, 0);
  renderer->SetUseFXAA(false);
  renderer->SetViewport(look.viewport[0], look.viewport[1], look.viewport[2], look.viewport[3]);
  window->AddRenderer(renderer);
  renderer->AddActor(canvas.actor());
  set_camera(renderer->GetActiveCamera(), mesh, look);
  window->Render();
  vtkNew<vtkUnsignedCharArray> pixels;
  window->GetPixelData(0, 0, scene.width - 1, scene.height - 1, 0, pixels);

  std::vector<int> ids;
  for (vtkIdType i = 0; i < pixels->GetNumberOfTuples(); ++i)
    ids.push_back(pixels->GetTypedComponent(i, 0) + 256 * pixels->GetTypedComponent(i, 1) - 1);
  return ids;
}

} // namespace proof
