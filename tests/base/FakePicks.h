#pragma once

#include "platform/base/GPicker.h"
#include "platform/base/GPickerBase.h"
#include "platform/base/MultiCellPicker.h"
#include "platform/base/PickBounds.h"
#include "platform/base/PickCallbackNow.h"
#include "platform/base/PickedEntity.h"

#include <array>
#include <functional>
#include <string>
#include <vector>

/// An entity of any kind, counted.
class FakeEntity : public GPicked::PickedEntity {
public:
  FakeEntity(std::string kind, int number, Tarn::MeshData* of = nullptr)
      : kind_(std::move(kind)), number_(number), database_(of) {
    ++alive;
  }
  const char* type() const override { return kind_.c_str(); }
  int id() const override { return number_; }
  const char* name() const override { return ""; }
  unsigned long long handle() const override { return static_cast<unsigned long long>(number_); }
  Tarn::MeshData* database() const override { return database_; }

  static int alive;

protected:
  ~FakeEntity() override { --alive; }

private:
  std::string kind_;
  int number_;
  Tarn::MeshData* database_;
};

inline int FakeEntity::alive = 0;

/// Something for a picker to report.
struct FakeHit {
  std::string type;
  int id;
  std::array<float, 3> point = {0, 0, 0};
  float distance = 0.5F;
  bool exact = true;
  bool pierced = true;                               ///< found however small the tolerance
  std::array<float, 3> pierced_point = {-1, -1, -1}; ///< where, when that is another place
};

/// Reports what it is told to, under the names it is given.
class FakePicker : public GPicker {
public:
  explicit FakePicker(std::vector<std::string> names, std::string label = "", std::vector<std::string>* log = nullptr)
      : names_(std::move(names)), label_(std::move(label)), log_(log) {
    for (const std::string& name : names_)
      GPickerBase::register_picker(name.c_str(), this);
  }
  ~FakePicker() override {
    for (const std::string& name : names_)
      GPickerBase::unregister_picker(name.c_str(), this);
  }

  void compute_pick(vtkRenderer*, float x, float y) override {
    at = {x, y};
    report("pick");
  }
  void compute_pre_select(vtkRenderer*, float x, float y) override {
    at = {x, y};
    report("hover");
  }
  void compute_pick_by_bounds(vtkRenderer*, PickBounds* bounds) override {
    if (on_bounds) on_bounds(bounds);
    report("bounds");
  }

  std::vector<FakeHit> hits;
  std::vector<double> tolerances; ///< seen at each call
  std::array<float, 2> at = {0, 0};
  std::function<void()> on_call = [] {};
  std::function<void(PickBounds*)> on_bounds;

private:
  void report(const char* what) {
    const double tolerance = MultiCellPicker::PickToleranceByWindowDiagonal();
    tolerances.push_back(tolerance);
    if (log_) log_->push_back(label_ + what);
    on_call();
    const bool narrow = tolerance < 1e-4;
    for (const FakeHit& hit : hits) {
      if (narrow && !hit.pierced) continue;
      auto* entity = new FakeEntity(hit.type, hit.id);
      const bool elsewhere = narrow && hit.pierced_point[0] >= 0;
      add_to_selection_buffer(entity, (elsewhere ? hit.pierced_point : hit.point).data(), hit.distance, hit.exact);
      entity->Delete();
    }
  }

  std::vector<std::string> names_;
  std::string label_;
  std::vector<std::string>* log_;
};

/// Writes down what it is told: "+Hex 1 Hex 2", "-Hex 1", pre-selections with a "?" before.
class FakeObserver : public GPicked::PickCallbackNow {
public:
  FakeObserver() {
    GPickerBase::add_pick_observer(this);
    GPickerBase::add_pre_selection_observer(this);
  }
  ~FakeObserver() override {
    GPickerBase::remove_pick_observer(this);
    GPickerBase::remove_pre_selection_observer(this);
  }

  void notify_picked(int count, const GPicked::PickedEntity* const* entities, const float* const* points,
                     bool add) override {
    std::string text = add ? "+" : "-";
    for (int i = 0; i < count; ++i) {
      text += (i ? " " : "") + name_of(entities[i]);
      last_point = {points[i][0], points[i][1], points[i][2]};
    }
    told.push_back(text);
    on_told();
  }
  void notify_pre_select(const GPicked::PickedEntity* entity, const float* const point, bool add) override {
    told.push_back(std::string(add ? "?+" : "?-") + (entity ? name_of(entity) : "null"));
    last_point = {point[0], point[1], point[2]};
    on_told();
  }

  static std::string name_of(const GPicked::PickedEntity* entity) {
    return std::string(entity->type()) + " " + std::to_string(entity->id());
  }

  std::vector<std::string> told;
  std::array<float, 3> last_point = {0, 0, 0};
  std::function<void()> on_told = [] {};
};
