#pragma once

#include "mesh/database/ElementType.h"
#include "platform/util/TovanColor.h"

#include <array>
#include <cstddef>

/// The colours that owners and kinds of elements are told apart by.
///
/// Twelve colours that stay far apart for readers with normal vision and with each of the three kinds of dichromacy:
/// under the simulation of Machado, Oliveira and Fernandes, "A Physiologically-based Model for Simulation of Color
/// Vision Deficiency" (IEEE TVCG 15(6), 2009) every two differ by at least 12 in CIEDE2000 (Sharma, Wu and Dalal, Color
/// Research and Application 30(1), 2005), and each differs by at least 16 from the orange of highlights. They were
/// found by annealing for the largest such distance, the method of Petroff, "Accessible Color Sequences for Data
/// Visualization" (2021), among colours of lightness 45 to 89, on which black edges show, and moderate chroma. For
/// comparison: the twelve-colour qualitative scheme of Paul Tol comes to 6, the eight of Okabe and Ito to 10, and both
/// hold colours near that orange.
///
/// Twelve more follow, for meshes of many owners: of all twenty-four every two differ by at least 6.5 in that measure,
/// more than the schemes of twelve above. They were found by a search for the largest such distance with the first
/// dozen fixed, under the same bounds.
namespace viewer {

/// How many of the palette's colours are far apart: the first ones.
constexpr std::size_t far_apart_count = 12;

/// The palette, most different ones first. Opaque.
const std::array<TovanColor, 24>& palette();

/// The colour of owner number `index`: the palette over and over.
TovanColor palette_color(std::size_t index);

/// The colour of a kind of element; the nine kinds have nine colours.
TovanColor kind_color(Tarn::ElementType type);

} // namespace viewer
