#pragma once

#include "reference/base/pick/SelectionBuffer.h"

#include <vector>

class GView;

/// Puts the hits of a ray pick in order, best first.
///
/// `pierced` holds the hits of the same pick at a tolerance so small that only faces and solids which the ray goes
/// through are in it: it tells where they are pierced, and these hits get that place. Where there is one, faces and
/// solids that the ray merely grazes come last: the tolerance is for silhouettes and thin things. What lies behind the
/// nearest pierced face or solid comes before those but behind everything else, so that nothing inside or at the back
/// wins; points and lines are behind when they lie deeper by more than the tolerance there, faces and solids when they
/// do not lie in it. In views whose surfaces can be looked through nothing is behind. Among the rest the smaller
/// distance wins, then the exact one, then the first reported; but no face or solid wins against a point or line that
/// lies before it by more than the tolerance.
std::vector<PickHit> rank(GView* view, const SelectionBuffer& hits, const SelectionBuffer& pierced, double tolerance);
