#pragma once

#include "mesh/database/Handle.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

class GPicker;
namespace GPicked {
class PickedEntity;
}
namespace Tarn {
class MeshData;
}

/// Stands in for the pick system: this program's definitions of its operations come first when the library looks them
/// up. Writes down what the library tells it, every report of it, and answers as told.
struct PickSystemDouble {
  /// One hit put into the selection buffer.
  struct Report {
    bool is_node;
    std::uint64_t handle;
    const Tarn::MeshData* database;
    std::array<float, 3> point;
    float distance;
    bool exact;
    GPicker* picker;
  };

  PickSystemDouble();
  ~PickSystemDouble();

  static void add(GPicker* picker, GPicked::PickedEntity* entity, const float* point, float distance, bool exact);

  /// Handles of the reports, in order.
  std::vector<std::uint64_t> handles() const;
  /// The handles of those about nodes or about elements.
  std::vector<std::uint64_t> handles(bool nodes) const;

  std::vector<Report> reports;
  std::function<void()> on_report;    ///< called at each report, if set
  std::vector<std::string> questions; ///< names that the filter was asked about
  std::set<std::string> admitted;     ///< what it answers true to
  std::vector<std::pair<std::string, GPicker*>> registered;
  std::vector<std::pair<std::string, GPicker*>> unregistered;
  std::size_t refuse_at = ~std::size_t(0); ///< the registration that throws, counted from 0
  bool answer = true;                      ///< to registering and unregistering
};
