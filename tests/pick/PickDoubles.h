#pragma once

#include "pick/PickInterface.h"
#include "platform/base/PickBounds.h"
#include "platform/util/TovanBox.h"
#include "tests/support/RecordingMeshData.h"

#include <vtkMatrix4x4.h>
#include <vtkNew.h>

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Shorthands and doubles for the tests of picking.

using Node = Tarn::Handle<0>;
using Elem = Tarn::Handle<1>;
using Nodes = std::vector<Node>;
using Elems = std::vector<Elem>;
using NodeHits = std::vector<PickInterface::PickResult<Node>>;
using ElementHits = std::vector<PickInterface::PickResult<Elem>>;
using Values = std::vector<std::uint64_t>;

/// From one point to another.
using Ray = std::array<double, 6>;

/// The ray through x, y that looks down from z = 5 to z = -5.
inline Ray down_at(double x, double y) { return {x, y, 5, x, y, -5}; }

inline std::uint64_t value_of(Node node) { return node.value; }
inline std::uint64_t value_of(Elem element) { return element.value; }
template <class H> std::uint64_t value_of(const PickInterface::PickResult<H>& hit) { return hit.handle.value; }

/// The handles of a list of handles or hits, in order.
template <class List> Values values_of(const List& list) {
  Values values;
  for (const auto& each : list)
    values.push_back(value_of(each));
  return values;
}

/// The picks that only subclasses may call.
class OpenPickInterface : public PickInterface {
public:
  using PickInterface::AllNodesAreInBounds;
  using PickInterface::pick3DEntities;
  using PickInterface::pickEdgeEntities;
  using PickInterface::pickEdgesTemplate;
  using PickInterface::pickEntitiesTemplate;
  using PickInterface::pickFaceEntities;
  using PickInterface::PickInterface;
  using PickInterface::pickTriEntities;
  using PickInterface::pickVerticesTemplate;
  using PickInterface::TransformPoint;
};

/// A region that writes down what it is asked, and that is told what to answer: nothing touches at first. Each question
/// is its kind and the x, y, z of its points.
class ScriptedRegion : public PickBounds {
public:
  struct Question {
    std::string kind; ///< "point", "segment", "triangle" or "box"
    std::vector<double> at;
  };

  std::function<bool(const double*)> point = [](const double*) { return false; };
  std::function<bool(const double*, const double*)> segment = [](const double*, const double*) { return false; };
  std::function<bool(const double*, const double*, const double*)> triangle = [](const double*, const double*,
                                                                                 const double*) { return false; };
  bool box = true;
  std::vector<Question> asked;

  std::vector<std::string> kinds_asked() const {
    std::vector<std::string> kinds;
    for (const Question& each : asked)
      kinds.push_back(each.kind);
    return kinds;
  }

  Result test(const double* p, double&) override {
    note("point", {p});
    return {point(p), 0, 0};
  }
  Result test(const double* a, const double* b, double&) override {
    note("segment", {a, b});
    return {segment(a, b), 0, 0};
  }
  Result test(const double* a, const double* b, const double* c, double&) override {
    note("triangle", {a, b, c});
    return {triangle(a, b, c), 0, 0};
  }
  bool test(const TovanBox& b) override {
    note("box", {b.minimum(), b.maximum()});
    return box;
  }

private:
  void note(const char* kind, const std::vector<const double*>& points) {
    Question question{kind, {}};
    for (const double* each : points)
      question.at.insert(question.at.end(), each, each + 3);
    asked.push_back(question);
  }
};

/// A transform for region picks: a world point x, y (seen along z) is the display point 10 x, 10 y of a window of 100
/// by 100 pixels.
class FlatScreen {
public:
  FlatScreen() {
    matrix_->SetElement(0, 0, 0.2);
    matrix_->SetElement(0, 3, -1);
    matrix_->SetElement(1, 1, 0.2);
    matrix_->SetElement(1, 3, -1);
  }
  void put_into(PickInterface& picker) { picker.setTransform(matrix_, size_, viewport_); }
  vtkMatrix4x4* matrix() { return matrix_; }

private:
  vtkNew<vtkMatrix4x4> matrix_;
  int size_[2] = {100, 100};
  double viewport_[4] = {0, 0, 1, 1};
};

/// A pick interface behind a flat screen.
class FlatPicker : public OpenPickInterface {
public:
  explicit FlatPicker(Tarn::MeshData* database) : OpenPickInterface(database) { screen_.put_into(*this); }

private:
  FlatScreen screen_;
};

/// How many calls of one operation follow one another, from other calls to other calls.
inline std::vector<std::size_t> runs_of(const std::string& operation, const test_support::RecordingMeshData& database) {
  std::vector<std::size_t> runs;
  bool in_run = false;
  for (const auto& call : database.calls()) {
    const bool is_it = call.operation == operation;
    if (is_it && !in_run) runs.push_back(0);
    if (is_it) ++runs.back();
    in_run = is_it;
  }
  return runs;
}
