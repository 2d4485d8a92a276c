// The mesh database is of use without graphics.
#include <orbel_mesh/reference/tarn/MeshDatabase.h>

int main() {
  Tarn::MeshDatabase database;
  const double origin[] = {0, 0, 0};
  database.add_nodes(1, origin);
  return database.node_count() == 1 ? 0 : 1;
}
