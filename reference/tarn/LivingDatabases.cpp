#include "reference/tarn/LivingDatabases.h"

#include "reference/tarn/SuperelementSizes.h"

#include <algorithm>
#include <vector>

namespace Tarn {

namespace {

std::vector<const SuperelementSizes*>& living() {
  static std::vector<const SuperelementSizes*> list;
  return list;
}

} // namespace

void LivingDatabases::enter(const SuperelementSizes* sizes) { living().push_back(sizes); }

void LivingDatabases::leave(const SuperelementSizes* sizes) {
  living().erase(std::remove(living().begin(), living().end(), sizes), living().end());
}

int LivingDatabases::largest_superelement() {
  int largest = 0;
  for (const SuperelementSizes* sizes : living())
    largest = std::max(largest, sizes->largest());
  return largest;
}

} // namespace Tarn
