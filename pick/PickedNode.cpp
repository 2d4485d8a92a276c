#include "pick/PickedNode.h"

#include "mesh/MeshQueries.h"
#include "pick/GMeshPicker.h"

#include <vector>

PickedNode* PickedNode::New(Tarn::Handle<0> node, Tarn::MeshData* db) { return new PickedNode(node, db); }

PickedNode::PickedNode(Tarn::Handle<0> node, Tarn::MeshData* db) : PickedMeshEntity(node.value, db) {}

PickedNode::~PickedNode() = default;

Tarn::Handle<0> PickedNode::node() const { return {handle()}; }

const char* PickedNode::type() const { return GMeshPicker::gNodeType; }

int PickedNode::id() const {
  const Tarn::Handle<0> handle = node();
  std::vector<int> ids(1, 0);
  OB::get_node_ids(1, &handle, ids, database());
  return ids.front();
}
