#pragma once
// Tolerances of the kernel. None is a fixed absolute epsilon: each is scaled to
// the size of the geometry it judges, so a drawing in millimetres and one in
// kilometres behave alike.
#include <algorithm>
#include <cmath>

#include "ge/extents.h"

namespace standalone::kernel {

// Relative precision we trust of coordinates after a few operations: about
// 1e4 units in the last place of a double.
inline constexpr double kRelativePrecision = 1e-12;

// Size that sets the scale of a tolerance: the larger of the geometry's
// extent and its distance from the origin (coordinates far from the origin
// carry absolute rounding errors proportional to that distance).
inline double geometryScale(const ge::Extents3d& e) {
  if (!e.isValid()) return 1.0;
  double far = std::max({std::abs(e.min.x), std::abs(e.min.y), std::abs(e.min.z), std::abs(e.max.x),
                         std::abs(e.max.y), std::abs(e.max.z)});
  return std::max({e.diagonal(), far, 1e-300});
}

// Two points closer than this count as one point (intersections, joins, duplicates).
inline double pointTolerance(double scale) { return 1e-9 * scale; }

// A point this near a curve counts as on it for queries by point
// (getParamAtPoint, getDistAtPoint). Ten times the point tolerance, so points
// that other operations computed (intersections, samples, offsets) pass.
inline double onCurveTolerance(double scale) { return 1e-8 * scale; }

// Two numbers of size `scale` that differ by less than this are equal after
// iterative refinement (Newton steps stop here).
inline double convergenceTolerance(double scale) { return kRelativePrecision * scale; }

}  // namespace standalone::kernel
