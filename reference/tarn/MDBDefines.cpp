#include "mesh/database/MDBDefines.h"

namespace MDBDefines {

const char* TarnTypeName(Tarn::ElementType type) {
  static const char* const names[] = {"None", "OneNode", "Edge",  "Tri",     "Quad",
                                      "Tet",  "Hex",     "Wedge", "Pyramid", "Superelement"};
  return type <= Tarn::Superelement ? names[type] : "";
}

} // namespace MDBDefines
