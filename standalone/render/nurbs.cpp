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

struct Homogeneous {
  double x = 0, y = 0, z = 0, w = 1;
};

Homogeneous lerp(const Homogeneous& a, const Homogeneous& b, double t) {
  return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t, a.z + (b.z - a.z) * t, a.w + (b.w - a.w) * t};
}

// Index k of the span with knots[k] <= t < knots[k+1], kept inside [p, n-1].
std::size_t findSpan(const NurbsCurve& c, double t) {
  std::size_t p = static_cast<std::size_t>(c.degree), n = c.controlPoints.size();
  auto first = c.knots.begin() + static_cast<std::ptrdiff_t>(p);
  auto last = c.knots.begin() + static_cast<std::ptrdiff_t>(n);
  auto it = std::upper_bound(first, last, t);
  std::size_t k = static_cast<std::size_t>(it - c.knots.begin());
  return std::clamp(k == 0 ? p : k - 1, p, n - 1);
}

}  // namespace

bool isEvaluable(const NurbsCurve& c) {
  std::size_t n = c.controlPoints.size();
  if (c.degree < 1 || n < static_cast<std::size_t>(c.degree) + 1) return false;
  if (c.knots.size() != n + static_cast<std::size_t>(c.degree) + 1) return false;
  if (!c.weights.empty() && c.weights.size() != n) return false;
  for (double w : c.weights)
    if (!(w > 0) || !std::isfinite(w)) return false;
  for (std::size_t i = 1; i < c.knots.size(); ++i)
    if (!(c.knots[i] >= c.knots[i - 1]) || !std::isfinite(c.knots[i])) return false;
  return c.knots[n] > c.knots[static_cast<std::size_t>(c.degree)];
}

ge::Point3d evaluate(const NurbsCurve& c, double t) {
  std::size_t p = static_cast<std::size_t>(c.degree);
  t = std::clamp(t, c.knots[p], c.knots[c.controlPoints.size()]);
  std::size_t k = findSpan(c, t);
  std::vector<Homogeneous> d(p + 1);
  for (std::size_t j = 0; j <= p; ++j) {
    std::size_t i = j + k - p;
    double w = c.weights.empty() ? 1.0 : c.weights[i];
    const auto& q = c.controlPoints[i];
    d[j] = {q.x * w, q.y * w, q.z * w, w};
  }
  for (std::size_t r = 1; r <= p; ++r)
    for (std::size_t j = p; j >= r; --j) {
      double lo = c.knots[j + k - p], hi = c.knots[j + 1 + k - r];
      double alpha = hi > lo ? (t - lo) / (hi - lo) : 0.0;
      d[j] = lerp(d[j - 1], d[j], alpha);
    }
  return {d[p].x / d[p].w, d[p].y / d[p].w, d[p].z / d[p].w};
}

std::optional<ge::PointList> sampleNurbs(const NurbsCurve& c, int samplesPerSpan) {
  if (!isEvaluable(c)) return std::nullopt;
  std::size_t p = static_cast<std::size_t>(c.degree), n = c.controlPoints.size();
  ge::PointList points{evaluate(c, c.knots[p])};
  for (std::size_t k = p; k < n; ++k) {
    double a = c.knots[k], b = c.knots[k + 1];
    if (!(b > a)) continue;
    for (int s = 1; s <= samplesPerSpan; ++s) points.push_back(evaluate(c, a + (b - a) * s / samplesPerSpan));
  }
  return points;
}

ge::PointList splineDrawingPoints(const host::Spline& s) {
  NurbsCurve c{s.degree, s.knots, s.controlPoints, s.weights};
  if (auto points = sampleNurbs(c, kSamplesPerSpan)) return *points;
  ge::PointList points = s.fitPoints.size() >= 2 ? s.fitPoints : s.controlPoints;
  if (s.isClosed() && points.size() > 2 && !(points.front() == points.back())) points.push_back(points.front());
  return points;
}

ge::PointList helixDrawingPoints(const host::Helix& h) {
  NurbsCurve c{h.curve.degree, h.curve.knots, h.curve.controlPoints, h.curve.weights};
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
