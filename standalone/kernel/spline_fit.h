#pragma once
// Cubic interpolation through fit points as the host does it with fit
// tolerance 0: chord-length knots kept in drawing units, clamped ends, and
// either natural ends (second derivative 0) or given end tangents.
#include <optional>
#include <vector>

#include "ge/point.h"
#include "standalone/kernel/nurbs.h"

namespace standalone::kernel {

// The interpolating cubic; consecutive coincident fit points count once.
// Nothing when fewer than two distinct points remain. Tangents are directions
// (their length does not matter); a zero-length tangent counts as absent.
std::optional<Nurbs> interpolateFitPoints(const std::vector<ge::Point3d>& fitPoints, const ge::Vector3d* startTangent,
                                          const ge::Vector3d* endTangent);

}  // namespace standalone::kernel
