#pragma once
// The kernel's names for the object coordinate systems of ge/ocs.h.
#include "ge/ocs.h"

namespace standalone::kernel {

using Frame = ge::OcsFrame;

// OCS axes of a normal by the arbitrary-axis rule.
inline Frame ocsFrame(const ge::Vector3d& normal) { return ge::OcsFrame::of(normal); }
// World point of OCS coordinates (x, y, z).
inline ge::Point3d ocsToWorld(const Frame& f, double x, double y, double z) { return f.toWorld({x, y, z}); }
// OCS coordinates of a world point.
inline ge::Point3d worldToOcs(const Frame& f, const ge::Point3d& p) { return f.toOcs(p); }

}  // namespace standalone::kernel
