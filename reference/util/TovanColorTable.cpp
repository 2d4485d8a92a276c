#include "platform/util/TovanColorTable.h"

namespace {
// Orange: no owner colour of the viewer's palette comes near it.
TovanColor highlight_color(255, 140, 0);
} // namespace

TovanColor TovanColorTable::get_highlight_color() { return highlight_color; }

void TovanColorTable::set_highlight_color(TovanColor color) { highlight_color = color; }
