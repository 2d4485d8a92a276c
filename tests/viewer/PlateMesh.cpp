#include "PlateMesh.h"

#include <fstream>

namespace plate {

std::string write(const std::string& folder) {
  const std::string path = folder + "/plate.vtk";
  std::ofstream file(path);
  file << "# vtk DataFile Version 3.0\nplate\nASCII\nDATASET UNSTRUCTURED_GRID\nPOINTS 108 float\n";
  for (int k = 0; k < 3; ++k)
    for (int j = 0; j < 6; ++j)
      for (int i = 0; i < 6; ++i)
        file << i << " " << j << " " << k << "\n";
  file << "CELLS 50 450\n";
  for (int k = 0; k < 2; ++k)
    for (int j = 0; j < 5; ++j)
      for (int i = 0; i < 5; ++i) {
        file << 8;
        for (const int corner : {0, 1, 7, 6, 36, 37, 43, 42})
          file << " " << i + 6 * j + 36 * k + corner;
        file << "\n";
      }
  file << "CELL_TYPES 50\n";
  for (int i = 0; i < 50; ++i)
    file << "12\n";
  file << "CELL_DATA 50\nSCALARS MaterialIds int 1\nLOOKUP_TABLE default\n";
  for (int i = 0; i < 50; ++i)
    file << 1 + i / 25 << "\n";
  return path;
}

} // namespace plate
