#pragma once
// Object coordinate systems of planar DXF entities: the arbitrary-axis rule
// that derives an entity's X and Y axes from its extrusion direction.
#include <cmath>

#include "ge/matrix.h"
#include "ge/point.h"

namespace ge {

// Orthonormal, right-handed axes of an object coordinate system (x × y = z).
struct OcsFrame {
  Vector3d x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1};

  // The frame of a normal: when the normal lies within 1/64 of the world Z
  // axis in x and y, X = WorldY × N, otherwise X = WorldZ × N; Y = N × X.
  // A zero or non-finite normal stands for the world Z axis, as readers of
  // damaged files take it.
  static OcsFrame of(const Vector3d& normal) {
    Vector3d n = normal.normalized();
    if (!(std::isfinite(n.x) && std::isfinite(n.y) && std::isfinite(n.z)) || n.length() == 0) return {};
    constexpr double kArbitraryAxisLimit = 1.0 / 64.0;
    Vector3d ax = (std::fabs(n.x) < kArbitraryAxisLimit && std::fabs(n.y) < kArbitraryAxisLimit) ? kYAxis.cross(n)
                                                                                                 : kZAxis.cross(n);
    ax = ax.normalized();
    return {ax, n.cross(ax).normalized(), n};
  }

  // World point of OCS coordinates.
  Point3d toWorld(const Point3d& p) const {
    Vector3d v = x * p.x + y * p.y + z * p.z;
    return {v.x, v.y, v.z};
  }
  // OCS coordinates of a world point.
  Point3d toOcs(const Point3d& p) const {
    Vector3d v = p.asVector();
    return {v.dot(x), v.dot(y), v.dot(z)};
  }
  // The map from OCS to world coordinates as a matrix.
  Matrix3d toWorldMatrix() const { return Matrix3d::fromFrame({}, x, y, z); }
};

// True when the normal is exactly world Z, where OCS and WCS coincide.
inline bool isWorldZ(const Vector3d& n) { return n.x == 0 && n.y == 0 && n.z == 1; }

// World point of OCS coordinates under a normal (exact for the world Z normal).
inline Point3d ocsToWorld(const Point3d& p, const Vector3d& normal) {
  return isWorldZ(normal) ? p : OcsFrame::of(normal).toWorld(p);
}
// OCS coordinates of a world point under a normal (exact for the world Z normal).
inline Point3d worldToOcs(const Point3d& p, const Vector3d& normal) {
  return isWorldZ(normal) ? p : OcsFrame::of(normal).toOcs(p);
}

}  // namespace ge
