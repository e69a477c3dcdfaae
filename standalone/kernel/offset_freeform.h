#pragma once
// Offsets of planar free-form curves (ellipses, splines). The exact offset is
// sampled, cut where it crosses itself (and, for an open curve, where it
// crosses the circles of radius |d| about the curve's ends), the runs nearer
// the curve than |d| are dropped (the loops past a cusp), and each remaining
// run is fitted as a cubic spline within kFreeFormOffsetTolerance of the
// exact offset. Runs that meet at a corner become one spline with a corner
// there.
#include <vector>

#include "host/codes.h"
#include "host/entity.h"
#include "standalone/kernel/path.h"

namespace standalone::kernel {

// Largest distance, relative to the diagonal of the source's extents, between
// a fitted free-form offset and the exact offset, checked at the quarter
// points between its fit points.
inline constexpr double kFreeFormOffsetTolerance = 1e-7;

// d is signed: positive to the right of the direction of travel seen from
// the side `normal` points to.
host::ErrorStatus offsetFreeForm(const Path& path, const ge::Vector3d& normal, double d,
                                 std::vector<host::EntityData>& out);

}  // namespace standalone::kernel
