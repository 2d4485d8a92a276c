#include "viewer/Palette.h"

namespace viewer {

const std::array<TovanColor, 12>& palette() {
  static const std::array<TovanColor, 12> colors = {
      TovanColor(0x5a, 0xc3, 0x96), TovanColor(0x78, 0x69, 0x96), TovanColor(0xd2, 0xc3, 0xff),
      TovanColor(0xb4, 0x5a, 0x00), TovanColor(0x0f, 0x78, 0x69), TovanColor(0x96, 0x96, 0xff),
      TovanColor(0x78, 0x87, 0x5a), TovanColor(0xf0, 0xc3, 0xd2), TovanColor(0xb4, 0x87, 0xb4),
      TovanColor(0xa5, 0xf0, 0xa5), TovanColor(0x4b, 0x69, 0xe1), TovanColor(0x69, 0x96, 0x87)};
  return colors;
}

TovanColor palette_color(std::size_t index) { return palette()[index % palette().size()]; }

TovanColor kind_color(Tarn::ElementType type) {
  // Solids first, since most meshes have only these: their colours differ most.
  constexpr std::size_t place[] = {0, 7, 4, 5, 6, 0, 1, 2, 3, 8};
  return palette_color(type < std::size(place) ? place[type] : 0);
}

} // namespace viewer
