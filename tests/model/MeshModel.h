#pragma once

#include "ModelScene.h"

#include <gtest/gtest.h>

/// A model on a database that starts empty.
class MeshModel : public testing::Test {
protected:
  QuadOwner quad(double x = 0.0) { return add_quad_owner(db, x, 0.0); }
  void add(const QuadOwner& q, TovanColor color = red, bool force_scalars = false) {
    model.add_mesh(q.owner, q.mesh, color, 1.0f, force_scalars);
  }

  Tarn::MeshDatabase db;
  RecordingModel model{&db};
};
