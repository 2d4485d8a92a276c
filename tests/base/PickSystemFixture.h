#pragma once

#include "tests/base/FakePicks.h"
#include "tests/base/Frame.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vtkCamera.h>

#include <string>
#include <vector>

inline std::vector<std::string> names_of(const std::vector<EntitySelection>& list) {
  std::vector<std::string> names;
  for (const EntitySelection& each : list)
    names.push_back(FakeObserver::name_of(each.entity()));
  return names;
}

/// A view along -z: the point (x, y, z) lies 10 - z deep. Nothing is left behind in the pick system.
class PickSystem : public testing::Test {
protected:
  PickSystem() {
    vtkCamera* camera = view_.renderer()->GetActiveCamera();
    camera->SetPosition(0, 0, 10);
    camera->SetFocalPoint(0, 0, 0);
    camera->SetParallelScale(10);
    camera->ParallelProjectionOn();
    alive_before_ = FakeEntity::alive;
  }
  ~PickSystem() override {
    GPickerBase::set_filter(filter_);
    MultiCellPicker::SetPickToleranceByWindowDiagonal(0.005);
    EXPECT_THAT(GPickerBase::picked(), testing::IsEmpty());
    EXPECT_EQ(FakeEntity::alive, alive_before_);
  }

  bool pick(GPickerBase::Change change = GPickerBase::Change::Replace) {
    return GPickerBase::pick(view_.get(), 10, 20, change);
  }
  bool hover() { return GPickerBase::hover(view_.get(), 10, 20); }
  static std::vector<std::string> picked() { return names_of(GPickerBase::picked()); }
  static std::vector<std::string> possible() { return names_of(GPickerBase::possible_selections()); }

  OffscreenView view_;
  std::vector<std::string> filter_ = GPickerBase::filter();
  int alive_before_;
};
