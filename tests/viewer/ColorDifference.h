#pragma once

#include "platform/util/TovanColor.h"

#include <array>

/// How different colours look.
namespace colors {

using Lab = std::array<double, 3>;

/// Kinds of colour vision.
enum class Vision { Normal, Protanopia, Deuteranopia, Tritanopia };

/// The colour as somebody of that vision sees it, in CIELAB under D65: the simulation of Machado, Oliveira and
/// Fernandes (2009) at full severity, in linear sRGB.
Lab seen(TovanColor color, Vision vision);

/// The colour difference CIEDE2000, weights 1.
double difference(const Lab& a, const Lab& b);

} // namespace colors
