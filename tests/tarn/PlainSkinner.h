#pragma once

#include "mesh/database/Side.h"
#include "tests/tarn/CountedSkin.h"
#include "tests/tarn/ForeignMeshData.h"

#include <vector>

namespace tarn_test {

using test_support::SkinFace;

/// A list given to the skinner: positions are those of the handles, times ten plus one.
using HandleList = std::vector<Tarn::Handle<1>>;

/// The skin as anyone would write it down, shells and mid-side nodes included: faces counted in a map by the set of
/// their corners. A solid listed again counts once.
std::vector<SkinFace> plain_skin(const ForeignMeshData& database, const std::vector<HandleList>& solids,
                                 const std::vector<HandleList>& shells);
/// The same from `MeshSkinner`.
std::vector<SkinFace> fast_skin(Tarn::MeshData& database, const std::vector<HandleList>& solids,
                                const std::vector<HandleList>& shells);
/// The positions that both give to a list.
std::vector<int> positions_of(const HandleList& list);
/// Copies what the skinner gave.
std::vector<SkinFace> copy_of(const std::vector<Side*>& sides);

} // namespace tarn_test
