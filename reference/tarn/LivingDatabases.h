#pragma once

namespace Tarn {

struct SuperelementSizes;

/// The databases of this process that are alive, for the one question of the element tables that needs them all.
class LivingDatabases {
public:
  /// Enters a database by its record of superelement sizes.
  static void enter(const SuperelementSizes* sizes);
  /// Takes it out again.
  static void leave(const SuperelementSizes* sizes);
  /// The largest node count of any superelement that a living database holds; 0 when there is none.
  static int largest_superelement();
};

} // namespace Tarn
