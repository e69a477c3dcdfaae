#pragma once
// Offset of a planar polyline with bulges, in named phases: raw offset of
// every segment, joins at the corners (segments extended to meet, the host's
// default gap type), slices between self-intersections, and the stitch of the
// slices that keep their distance from the source.
#include <vector>

#include "standalone/kernel/pline2.h"

namespace standalone::kernel {

// Offsets at signed distance d: positive to the right of the direction of
// travel (outward for a counter-clockwise closed polyline, the side where an
// arc's radius grows when it runs counter-clockwise). tol is the point
// tolerance of the geometry. Empty when nothing remains at that distance.
std::vector<Pline2> offsetPline(const Pline2& source, double d, double tol);

}  // namespace standalone::kernel
