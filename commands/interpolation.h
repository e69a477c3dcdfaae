#pragma once
// The eased blend between two polylines of equal vertex count that the
// interpolated array and the interpolation along a path share.
#include <vector>

#include "ge/point.h"

namespace commands {

// One vertex of a polyline to blend: its position (x, y in the polyline's own
// plane, z its elevation) and the bulge of the segment that starts there.
struct BlendVertex {
  ge::Point3d p;
  double bulge = 0;
};
using BlendPolyline = std::vector<BlendVertex>;

// The easing of an acceleration a in -1..1 (the user's -100..100 over 100):
// exponent e = 2|a| + 1; a >= 0 gives s^e (copies crowd near the first
// polyline), a < 0 gives 1 - (1 - s)^e (they crowd near the second).
double ease(double s, double acceleration);

// The cell blend: x from the column weight w, y from the row weight u, z and
// the bulges from their mean (u + w) / 2. a and b have the same size.
BlendPolyline blendCell(const BlendPolyline& a, const BlendPolyline& b, double u, double w);

}  // namespace commands
