#pragma once
// Object coordinate systems: the arbitrary-axis rule that gives a planar
// entity's X and Y axes from its normal, and the maps into and out of it.
#include "ge/point.h"

namespace standalone::kernel {

struct Frame {
  ge::Vector3d x, y, z;  // orthonormal, right-handed (x × y = z)
};

// OCS axes of a normal by the arbitrary-axis rule: when the normal is within
// 1/64 of the world Z axis, X = Wy × N, otherwise X = Wz × N; Y = N × X.
inline Frame ocsFrame(const ge::Vector3d& normal) {
  ge::Vector3d n = normal.normalized();
  constexpr double kNearPole = 1.0 / 64.0;
  ge::Vector3d ax = (std::abs(n.x) < kNearPole && std::abs(n.y) < kNearPole) ? ge::kYAxis.cross(n)
                                                                               : ge::kZAxis.cross(n);
  ax = ax.normalized();
  return {ax, n.cross(ax), n};
}

// World point of OCS coordinates (x, y, z).
inline ge::Point3d ocsToWorld(const Frame& f, double x, double y, double z) {
  return ge::Point3d{} + f.x * x + f.y * y + f.z * z;
}

// OCS coordinates of a world point.
inline ge::Point3d worldToOcs(const Frame& f, const ge::Point3d& p) {
  ge::Vector3d v = p.asVector();
  return {v.dot(f.x), v.dot(f.y), v.dot(f.z)};
}

}  // namespace standalone::kernel
