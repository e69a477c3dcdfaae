#include "standalone/kernel/plane_fit.h"

#include <cmath>

#include "standalone/kernel/tolerance.h"

namespace standalone::kernel {

std::optional<ge::Vector3d> planeNormalOfPoints(const std::vector<ge::Point3d>& pts) {
  if (pts.size() < 3) return std::nullopt;
  ge::Extents3d box;
  for (const auto& p : pts) box.add(p);
  double tol = pointTolerance(geometryScale(box));
  if (box.max.z - box.min.z <= tol) return ge::kZAxis;  // the common case: flat in world XY
  ge::Vector3d n;
  for (size_t i = 0; i < pts.size(); ++i) {
    const auto& a = pts[i];
    const auto& b = pts[(i + 1) % pts.size()];
    n = n + ge::Vector3d{(a.y - b.y) * (a.z + b.z), (a.z - b.z) * (a.x + b.x), (a.x - b.x) * (a.y + b.y)};
  }
  // Newell's sum vanishes for symmetric zig-zags; fall back to the widest triangle.
  if (n.length() <= tol * tol) {
    for (size_t i = 1; i + 1 < pts.size(); ++i) {
      ge::Vector3d c = (pts[i] - pts[0]).cross(pts[i + 1] - pts[0]);
      if (c.length() > n.length()) n = c;
    }
  }
  if (n.length() <= tol * tol) return std::nullopt;
  n = n.normalized();
  for (const auto& p : pts)
    if (std::abs((p - pts[0]).dot(n)) > tol) return std::nullopt;
  return n;
}

}  // namespace standalone::kernel
