#include "platform/base/MultiCellPicker.h"

namespace {
double tolerance = 0.005;
} // namespace

bool MultiCellPicker::mSelectVisibleOnly = false;
bool MultiCellPicker::mBoxPickAcceptPartialCells = true;

double MultiCellPicker::PickToleranceByWindowDiagonal() { return tolerance; }

void MultiCellPicker::SetPickToleranceByWindowDiagonal(double fraction) { tolerance = fraction; }
