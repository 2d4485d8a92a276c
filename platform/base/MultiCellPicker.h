#pragma once

#include "platform/base/orbel_base_api.h"

/// Settings of picking, shared by the process and read at each pick.
struct ORBEL_BASE_API MultiCellPicker {
  /// The pick tolerance as a fraction of the window's diagonal; 0.005 at load.
  static double PickToleranceByWindowDiagonal();
  /// Sets that fraction.
  static void SetPickToleranceByWindowDiagonal(double fraction);

  /// Whether region picks leave out what is hidden behind something else. False at load.
  static bool mSelectVisibleOnly;
  /// Whether region picks take elements that are only partly inside. True at load.
  static bool mBoxPickAcceptPartialCells;
};
