#include "standalone/kernel/curve_fit.h"

#include <cmath>
#include <vector>

#include "standalone/kernel/intersect2d.h"

namespace standalone::kernel {

namespace {

Vec2 unit(Vec2 v) {
  double l = v.length();
  return l > 0 ? v * (1 / l) : v;
}

// Tangent at b of the circle through a, b, c (the chord direction when they are collinear).
Vec2 threePointTangent(Vec2 a, Vec2 b, Vec2 c) {
  Vec2 u = b - a, w = c - b;
  double lu = u.length(), lw = w.length();
  if (lu == 0 || lw == 0) return unit(c - a);
  // The tangent of that circle at b is the chord directions weighted by the
  // other chord's length: t ∝ u·|w|/|u| + w·|u|/|w|.
  return unit(u * (lw / lu) + w * (lu / lw));
}

// Signed angle from a to b, counter-clockwise positive.
double angleBetween(Vec2 a, Vec2 b) { return std::atan2(a.cross(b), a.dot(b)); }

// The joint of the biarc from p0 (tangent t0) to p1 (tangent t1) whose two
// tangent legs have equal length.
Vec2 biarcJoint(Vec2 p0, Vec2 t0, Vec2 p1, Vec2 t1) {
  Vec2 v = p1 - p0, t = t0 + t1;
  double denom = 2 * (1 - t0.dot(t1));
  double d;
  if (std::abs(denom) < 1e-12) {
    double vt = v.dot(t1);
    d = vt != 0 ? v.dot(v) / (4 * vt) : v.length() / 2;
  } else {
    double vt = v.dot(t);
    d = (-vt + std::sqrt(vt * vt + denom * v.dot(v))) / denom;
  }
  return (p0 + p1 + (t0 - t1) * d) * 0.5;
}

}  // namespace

bool curveFitPolyline(host::Polyline2d& pl) {
  std::vector<host::Vertex2d> frame;
  for (const auto& v : pl.vertices)
    if (!(pl.curveFit && (v.flags & host::kVertexCurveFitExtra)) && !(v.flags & host::kVertexSplineFit)) frame.push_back(v);
  size_t n = frame.size();
  if (n < 3) return false;
  std::vector<Vec2> p(n), t(n);
  for (size_t i = 0; i < n; ++i) p[i] = {frame[i].position.x, frame[i].position.y};
  for (size_t i = 0; i < n; ++i) {
    if (frame[i].flags & host::kVertexTangentDefined) {
      t[i] = {std::cos(frame[i].tangent), std::sin(frame[i].tangent)};
    } else if (pl.closed || (i > 0 && i + 1 < n)) {
      t[i] = threePointTangent(p[(i + n - 1) % n], p[i], p[(i + 1) % n]);
    } else if (i == 0) {
      // Open ends: the circle through the first (last) three points, at the end.
      Vec2 mid = threePointTangent(p[0], p[1], p[2]);
      t[0] = unit(p[1] - p[0]) * 2 * unit(p[1] - p[0]).dot(mid) - mid;
    } else {
      Vec2 mid = threePointTangent(p[n - 3], p[n - 2], p[n - 1]);
      Vec2 chord = unit(p[n - 1] - p[n - 2]);
      t[i] = chord * 2 * chord.dot(mid) - mid;
    }
  }
  std::vector<host::Vertex2d> out;
  size_t spans = pl.closed ? n : n - 1;
  for (size_t i = 0; i < n; ++i) {
    host::Vertex2d v = frame[i];
    v.flags &= ~(host::kVertexCurveFitExtra | host::kVertexSplineFit | host::kVertexSplineFrame);
    v.bulge = 0;
    if (i >= spans) {
      out.push_back(v);
      break;
    }
    size_t j = (i + 1) % n;
    Vec2 m = biarcJoint(p[i], t[i], p[j], t[j]);
    // An arc's included angle is twice the angle between its tangent and its chord.
    v.bulge = std::tan(angleBetween(t[i], m - p[i]) * 2 / 4);
    out.push_back(v);
    host::Vertex2d joint;
    joint.position = {m.x, m.y, pl.elevation};
    joint.flags = host::kVertexCurveFitExtra;
    joint.bulge = std::tan(angleBetween(p[j] - m, t[j]) * 2 / 4);
    out.push_back(joint);
  }
  pl.vertices = std::move(out);
  pl.curveFit = true;
  pl.splineFit = false;
  pl.curveType = host::PolyCurveType::kNone;
  return true;
}

}  // namespace standalone::kernel
