#pragma once

#include "reference/base/pick/SelectionBuffer.h"

#include <vector>

class GView;

/// Puts the hits of a ray pick in order, best first.
///
/// `pierced` holds the hits of the same pick at a tolerance so small that only faces and solids which the ray goes
/// through are in it. Where there is one, faces and solids that the ray merely grazes come last: the tolerance is for
/// silhouettes and thin things. Hits that lie deeper than the nearest pierced face or solid, by more than the tolerance
/// there, come before those but behind everything else, so that nothing inside or at the back wins; in views whose
/// surfaces can be looked through they do not. Among equals the smaller distance wins, then the exact one, then the
/// first reported.
std::vector<PickHit> rank(GView* view, const SelectionBuffer& hits, const SelectionBuffer& pierced, double tolerance);
