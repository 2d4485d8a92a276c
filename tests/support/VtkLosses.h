#pragma once

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace test_support {

/// While it lives, the leak check overlooks what is allocated. VTK loses what it holds for the moment, such as its list
/// of props, when an exception passes through.
class VtkLosses {
public:
#if defined(__SANITIZE_ADDRESS__)
  VtkLosses() { __lsan_disable(); }
  ~VtkLosses() { __lsan_enable(); }
#else
  VtkLosses() {}
  ~VtkLosses() {}
#endif
  VtkLosses(const VtkLosses&) = delete;
  VtkLosses& operator=(const VtkLosses&) = delete;
};

} // namespace test_support
