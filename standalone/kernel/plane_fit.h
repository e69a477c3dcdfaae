#pragma once
// The plane of a point set, when there is one.
#include <optional>
#include <vector>

#include "ge/point.h"

namespace standalone::kernel {

// Unit normal of the plane holding every point (Newell's method, then a check
// within the point tolerance of the set's size); nothing when the points are
// collinear or do not lie in one plane. The sign follows the points' turning
// sense; points in a plane parallel to XY get +Z.
std::optional<ge::Vector3d> planeNormalOfPoints(const std::vector<ge::Point3d>& points);

}  // namespace standalone::kernel
