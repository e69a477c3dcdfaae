#pragma once
// Object coordinate systems of DXF entities: the arbitrary-axis rule that
// derives the OCS x and y axes from the extrusion direction (normal).
#include <cmath>

#include "ge/point.h"

namespace standalone {

struct OcsFrame {
  ge::Vector3d x, y, z;

  // The frame of a normal: if the normal is within 1/64 of the world Z axis
  // in x and y, x = WorldY × N, otherwise x = WorldZ × N; y = N × x.
  static OcsFrame of(const ge::Vector3d& normal) {
    ge::Vector3d n = normal.normalized();
    constexpr double kArbitraryAxisLimit = 1.0 / 64.0;
    ge::Vector3d ax = (std::fabs(n.x) < kArbitraryAxisLimit && std::fabs(n.y) < kArbitraryAxisLimit)
                          ? ge::kYAxis.cross(n)
                          : ge::kZAxis.cross(n);
    ax = ax.normalized();
    return {ax, n.cross(ax).normalized(), n};
  }
  ge::Point3d toWorld(const ge::Point3d& p) const {
    ge::Vector3d v = x * p.x + y * p.y + z * p.z;
    return {v.x, v.y, v.z};
  }
  ge::Point3d toOcs(const ge::Point3d& p) const {
    ge::Vector3d v = p.asVector();
    return {v.dot(x), v.dot(y), v.dot(z)};
  }
};

// True when the normal is exactly world Z, where OCS and WCS coincide.
inline bool isWorldZ(const ge::Vector3d& n) { return n.x == 0 && n.y == 0 && n.z == 1; }

inline ge::Point3d ocsToWorld(const ge::Point3d& p, const ge::Vector3d& normal) {
  return isWorldZ(normal) ? p : OcsFrame::of(normal).toWorld(p);
}
inline ge::Point3d worldToOcs(const ge::Point3d& p, const ge::Vector3d& normal) {
  return isWorldZ(normal) ? p : OcsFrame::of(normal).toOcs(p);
}

inline constexpr double kDegree = 3.14159265358979323846 / 180.0;

}  // namespace standalone
