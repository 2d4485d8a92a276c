#pragma once

#include "platform/base/GPickerBase.h"
#include "platform/base/MultiCellPicker.h"

#include <string>
#include <vector>

namespace proof {

/// Puts the settings of picking back at the end of a test.
class PickSettings {
public:
  PickSettings() = default;
  ~PickSettings() {
    GPickerBase::set_filter(filter_);
    MultiCellPicker::mSelectVisibleOnly = visible_only_;
    MultiCellPicker::mBoxPickAcceptPartialCells = partial_;
    MultiCellPicker::SetPickToleranceByWindowDiagonal(tolerance_);
  }
  PickSettings(const PickSettings&) = delete;
  PickSettings& operator=(const PickSettings&) = delete;

  /// As it was at the start: a fraction of the window's diagonal.
  double tolerance() const { return tolerance_; }

private:
  std::vector<std::string> filter_ = GPickerBase::filter();
  bool visible_only_ = MultiCellPicker::mSelectVisibleOnly;
  bool partial_ = MultiCellPicker::mBoxPickAcceptPartialCells;
  double tolerance_ = MultiCellPicker::PickToleranceByWindowDiagonal();
};

} // namespace proof
