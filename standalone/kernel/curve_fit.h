#pragma once
// The curve-fit form of a 2D polyline (PEDIT Fit): a pair of arcs between
// each two frame vertices, passing through every vertex with a smooth tangent.
#include "host/entity.h"

namespace standalone::kernel {

// Replaces the vertices by the fitted ones: each frame vertex (tangent flag
// kept) followed by the joint of its arc pair (flag 1). A vertex's tangent
// is its own when flagged, else that of the circle through it and its
// neighbours. False when fewer than 3 frame vertices remain.
bool curveFitPolyline(host::Polyline2d& pl);

}  // namespace standalone::kernel
