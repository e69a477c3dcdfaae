#include "standalone/render/projection.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "ge/ocs.h"

namespace standalone {

namespace {
// Relative tolerance for "still a circle" after projection.
constexpr double kCircularTolerance = 1e-9;
// A bulge smaller than this is a straight segment.
constexpr double kStraightBulge = 1e-12;
}  // namespace

ge::Matrix3d ocsToWorld(const ge::Vector3d& normal) { return ge::OcsFrame::of(normal).toWorldMatrix(); }

std::optional<PathArc> projectArc(const ge::Matrix3d& m, const ge::Point3d& center, const ge::Vector3d& xAxis,
                                  const ge::Vector3d& yAxis, double radius, double startAngle, double endAngle,
                                  bool ccw) {
  ge::Vector3d u = m.apply(xAxis * radius), v = m.apply(yAxis * radius);
  double ul = std::hypot(u.x, u.y), vl = std::hypot(v.x, v.y);
  double cross = u.x * v.y - u.y * v.x, dot = u.x * v.x + u.y * v.y;
  double scale = std::max(ul, vl);
  if (scale == 0 || std::abs(ul - vl) > kCircularTolerance * scale ||
      std::abs(dot) > kCircularTolerance * scale * scale)
    return std::nullopt;
  // u = r (cos phi, sin phi); v is u turned by +90 degrees (ccw) or -90 (cw).
  double phi = std::atan2(u.y, u.x);
  double sign = cross > 0 ? 1 : -1;
  ge::Point3d c = m.apply(center);
  return PathArc{{c.x, c.y}, ul, phi + sign * startAngle, phi + sign * endAngle, (cross > 0) == ccw};
}

std::optional<BulgeArc> bulgeToArc(const ge::Point2d& a, const ge::Point2d& b, double bulge) {
  double dx = b.x - a.x, dy = b.y - a.y, chord = std::hypot(dx, dy);
  if (std::abs(bulge) < kStraightBulge || chord == 0) return std::nullopt;
  // Included angle 4 atan(bulge); the centre lies on the chord's bisector.
  double theta = 4 * std::atan(bulge);
  double radius = chord / (2 * std::sin(std::abs(theta) / 2));
  // Signed distance from the chord midpoint to the centre, to the left of a->b for ccw arcs.
  double h = chord * (1 - bulge * bulge) / (4 * bulge);
  ge::Point2d mid{(a.x + b.x) / 2, (a.y + b.y) / 2};
  ge::Point2d center{mid.x - dy / chord * h, mid.y + dx / chord * h};
  double a0 = std::atan2(a.y - center.y, a.x - center.x);
  return BulgeArc{center, radius, a0, a0 + theta, bulge > 0};
}

double ccwSweep(double startAngle, double endAngle) {
  constexpr double kTwoPi = 2 * std::numbers::pi;
  if (!std::isfinite(startAngle) || !std::isfinite(endAngle)) return 0;
  double sweep = std::fmod(endAngle - startAngle, kTwoPi);
  if (sweep <= 0) sweep += kTwoPi;
  return sweep;
}

int piecesForSweep(double sweep) {
  // One piece per 2 degrees keeps the chord error under 1e-4 of the radius.
  constexpr double kPieceAngle = std::numbers::pi / 90;
  if (!std::isfinite(sweep)) return 4;
  return std::clamp(static_cast<int>(std::ceil(std::abs(sweep) / kPieceAngle)), 4, 720);
}

}  // namespace standalone
