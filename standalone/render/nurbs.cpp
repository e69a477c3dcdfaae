#include "standalone/render/nurbs.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace standalone {

namespace {

// Samples per knot span: enough for a cubic span to look smooth on screen.
constexpr int kSamplesPerSpan = 24;
// Samples per helix turn when it is built from its axis data.
constexpr int kHelixSamplesPerTurn = 72;
// Most helix turns we draw: the host allows 500, and bad data must not
// make us sample millions of points.
constexpr double kMaxHelixTurns = 500;

}  // namespace

std::optional<ge::PointList> sampleNurbs(const ge::Nurbs& c, int samplesPerSpan) {
  if (!c.isValid()) return std::nullopt;
  std::vector<double> breaks = ge::nurbsBreakpoints(c);
  ge::PointList points{ge::nurbsPoint(c, breaks.front())};
  points.reserve((breaks.size() - 1) * static_cast<std::size_t>(samplesPerSpan) + 1);
  for (std::size_t k = 1; k < breaks.size(); ++k) {
    double a = breaks[k - 1], b = breaks[k];
    for (int s = 1; s <= samplesPerSpan; ++s) points.push_back(ge::nurbsPoint(c, a + (b - a) * s / samplesPerSpan));
  }
  return points;
}

ge::PointList splineDrawingPoints(const host::Spline& s) {
  ge::Nurbs c{s.degree, s.knots, s.controlPoints, s.weights};
  if (auto points = sampleNurbs(c, kSamplesPerSpan)) return *points;
  ge::PointList points = s.fitPoints.size() >= 2 ? s.fitPoints : s.controlPoints;
  if (s.isClosed() && points.size() > 2 && !(points.front() == points.back())) points.push_back(points.front());
  return points;
}

ge::PointList helixDrawingPoints(const host::Helix& h) {
  ge::Nurbs c{h.curve.degree, h.curve.knots, h.curve.controlPoints, h.curve.weights};
  if (auto points = sampleNurbs(c, kSamplesPerSpan)) return *points;
  ge::Vector3d axis = h.axisVector.normalized();
  if (axis.length() == 0) axis = ge::kZAxis;
  ge::Vector3d radial = h.startPoint - h.axisBase;
  radial = radial - axis * radial.dot(axis);
  double baseRadius = radial.length();
  ge::Vector3d x = baseRadius > 0 ? radial / baseRadius
                                  : (axis.cross(ge::kXAxis).length() > 0.5 ? axis.cross(ge::kXAxis).normalized()
                                                                           : axis.cross(ge::kYAxis).normalized());
  ge::Vector3d y = axis.cross(x) * (h.counterClockwise ? 1.0 : -1.0);
  double turns = std::clamp(std::isfinite(h.turns) ? h.turns : 0.0, 0.0, kMaxHelixTurns);
  int count = std::max(2, static_cast<int>(std::ceil(turns * kHelixSamplesPerTurn)));
  ge::PointList points;
  points.reserve(static_cast<std::size_t>(count) + 1);
  for (int i = 0; i <= count; ++i) {
    double f = static_cast<double>(i) / count, angle = 2 * std::numbers::pi * turns * f;
    double radius = baseRadius + (h.topRadius - baseRadius) * f;
    ge::Point3d onAxis = h.axisBase + axis * (turns * h.turnHeight * f);
    points.push_back(onAxis + x * (radius * std::cos(angle)) + y * (radius * std::sin(angle)));
  }
  return points;
}

}  // namespace standalone
