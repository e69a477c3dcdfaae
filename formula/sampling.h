#pragma once
// Shared sampling rules of the generators: N samples spread over a parameter
// range including both ends, each point offset by the origin.
#include <cmath>
#include <numbers>

#include "formula/generators.h"

namespace formula::sampling {

inline constexpr double kPi = std::numbers::pi;
inline constexpr double kTwoPi = 2.0 * std::numbers::pi;

// Point count of a "Precision" curve.
constexpr int precisionCount(int precision) { return precision * 35; }

// Parameter of sample i of n spread over [from, to], both ends included.
inline double spread(int i, int n, double from, double to) {
  return n > 1 ? from + (to - from) * static_cast<double>(i) / static_cast<double>(n - 1) : from;
}

// n samples of a planar curve f(t) -> {x, y} for t in [from, to], at the origin's z.
template <class F>
ge::PointList planar(const ge::Point3d& origin, int n, double from, double to, F f) {
  ge::PointList points;
  if (n <= 0) return points;
  points.reserve(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) {
    auto [x, y] = f(spread(i, n, from, to));
    points.push_back({origin.x + x, origin.y + y, origin.z + 0.0});
  }
  return points;
}

// n samples of a space curve f(t) -> ge::Vector3d for t in [from, to], offset by the origin.
template <class F>
ge::PointList spatial(const ge::Point3d& origin, int n, double from, double to, F f) {
  ge::PointList points;
  if (n <= 0) return points;
  points.reserve(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) points.push_back(origin + f(spread(i, n, from, to)));
  return points;
}

// A polar radius rho at angle t as an {x, y} pair.
struct XY {
  double x, y;
};
inline XY polar(double rho, double t) { return {rho * std::cos(t), rho * std::sin(t)}; }

// One curve with the current colour, not closed.
inline CurveList single(ge::PointList points) { return {GeneratedCurve{std::move(points)}}; }

}  // namespace formula::sampling
