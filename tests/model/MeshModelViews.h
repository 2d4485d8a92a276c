#pragma once

#include "ModelScene.h"
#include "Screen.h"

#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>

#include <gtest/gtest.h>

#include <array>
#include <vector>

/// A model with one mesh in each of its four data groups, seen in one view.
class MeshModelViews : public testing::Test {
protected:
  enum Kind { Plain, VertexColored, NodesShown, Scalars };

  void SetUp() override {
    for (int kind = Plain; kind <= Scalars; ++kind) {
      quads.push_back(add_quad_owner(db, 2.0 * kind, 0.0));
      add(static_cast<Kind>(kind));
      parts.push_back(model.parts_of_add(static_cast<std::size_t>(kind)));
    }
    model.forget_calls();
  }

  void TearDown() override { GModel::mNormalDirectedLighting = false; }

  void add(Kind kind) {
    const QuadOwner& q = quads[kind];
    if (kind == VertexColored) {
      model.add_mesh(q.owner, q.mesh, red, {}, {}, {{q.block.nodes[0], blue}}, 1.0f);
    } else if (kind == NodesShown) {
      model.add_mesh(q.owner, q.mesh, red, 1.0f, false); // joins the plain group, adds no part
      model.set_node_vis(q.owner, true);
    } else {
      model.add_mesh(q.owner, q.mesh, red, 1.0f, kind == Scalars);
    }
  }

  vtkActor* surface(Kind kind) { return model.actor(screen.view(), parts[kind][0]); }
  vtkActor* edges(Kind kind) { return model.actor(screen.view(), parts[kind][1]); }
  vtkActor* nodes(Kind kind) { return model.actor(screen.view(), parts[kind][2]); }

  static int mode_of(vtkActor* actor) { return actor->GetPropertyKeys()->Get(GModel::RENDER_MODE()); }

  Screen screen;
  Tarn::MeshDatabase db;
  RecordingModel model{&db};
  std::vector<QuadOwner> quads;
  std::vector<std::array<vtkDataObject*, 3>> parts; ///< of each kind: surface, edges, nodes
};
