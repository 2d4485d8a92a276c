#include "LabelledMesh.h"

#include <algorithm>
#include <sstream>

std::string line(const std::string& text, std::array<double, 3> place) {
  std::ostringstream out;
  out << text << " at " << place[0] << ' ' << place[1] << ' ' << place[2];
  return out.str();
}

std::string line_of(const LabelEntry& label) { return line(label.text, label.position); }

LabelledMesh::LabelledMesh(test_support::NamedMesh mesh_in) : mesh(std::move(mesh_in)), db(*mesh.database), model(&db) {
  model.add_mesh(mesh.owner, mesh.mesh, TovanColor(10, 20, 30), 1.0f, false);
  labels->set_model(&model);
  labels->SetInputDataObject(group()->get_2d_data());
  db.forget_calls();
}

std::vector<std::string> LabelledMesh::lines() {
  draw();
  std::vector<std::string> result;
  for (const LabelEntry& label : log().labels)
    result.push_back(line_of(label));
  return result;
}

std::vector<std::string> LabelledMesh::sorted_lines() {
  auto result = lines();
  std::sort(result.begin(), result.end());
  return result;
}
