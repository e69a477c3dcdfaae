#include "standalone/kernel/intersect2d.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace standalone::kernel {

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

Vec2 arcPoint(const Arc2& a, double t) { return a.c + Vec2{std::cos(t), std::sin(t)} * a.r; }

std::vector<Vec2> keepOnBoth(const std::vector<Vec2>& pts, auto onFirst, auto onSecond) {
  std::vector<Vec2> out;
  for (const auto& p : pts)
    if (onFirst(p) && onSecond(p)) out.push_back(p);
  return out;
}

// Points of the segment's support line at distance r from c.
std::vector<Vec2> lineCircle(Vec2 a, Vec2 b, Vec2 c, double r, double tol) {
  Vec2 d = b - a;
  double len = d.length();
  if (len == 0) return {};
  Vec2 u = d * (1 / len);
  Vec2 foot = a + u * (c - a).dot(u);
  double h = (c - foot).length();
  if (h > r + tol) return {};
  if (h >= r - tol) return {foot};  // tangent within tolerance
  double k = std::sqrt(r * r - h * h);
  return {foot - u * k, foot + u * k};
}

}  // namespace

bool onSegment(const Segment2& s, Vec2 p, double tol) {
  if (!s.bounded) return true;
  Vec2 d = s.b - s.a;
  double len2 = d.dot(d);
  if (len2 == 0) return (p - s.a).length() <= tol;
  double t = (p - s.a).dot(d) / len2, slack = tol / std::sqrt(len2);
  return t >= -slack && t <= 1 + slack;
}

bool onArc(const Arc2& a, Vec2 p, double tol) {
  if (!a.bounded) return true;
  double phi = std::atan2(p.y - a.c.y, p.x - a.c.x);
  double rel = a.sweep >= 0 ? phi - a.start : a.start - phi;
  rel = std::fmod(rel, kTwoPi);
  if (rel < 0) rel += kTwoPi;
  double slack = a.r > 0 ? tol / a.r : 0;
  return rel <= std::abs(a.sweep) + slack || rel >= kTwoPi - slack;
}

std::vector<Vec2> intersectSegments(const Segment2& s, const Segment2& t, double tol) {
  Vec2 d1 = s.b - s.a, d2 = t.b - t.a;
  double l1 = d1.length(), l2 = d2.length();
  if (l1 == 0 || l2 == 0) return {};
  double den = d1.cross(d2);
  if (std::abs(den) <= 1e-14 * l1 * l2) {
    // Parallel: collinear overlaps meet at the ends of the overlap.
    if (std::abs((t.a - s.a).cross(d1)) / l1 > tol) return {};
    if (!s.bounded || !t.bounded) return {};  // an unbounded overlap has no ends to report
    std::vector<Vec2> cands{s.a, s.b, t.a, t.b}, out;
    for (const auto& p : cands)
      if (onSegment(s, p, tol) && onSegment(t, p, tol)) out.push_back(p);
    return out;
  }
  double u = (t.a - s.a).cross(d2) / den;
  Vec2 p = s.a + d1 * u;
  return keepOnBoth({p}, [&](Vec2 q) { return onSegment(s, q, tol); }, [&](Vec2 q) { return onSegment(t, q, tol); });
}

std::vector<Vec2> intersectSegmentArc(const Segment2& s, const Arc2& a, double tol) {
  return keepOnBoth(lineCircle(s.a, s.b, a.c, a.r, tol), [&](Vec2 q) { return onSegment(s, q, tol); },
                    [&](Vec2 q) { return onArc(a, q, tol); });
}

std::vector<Vec2> intersectArcs(const Arc2& a, const Arc2& b, double tol) {
  Vec2 dc = b.c - a.c;
  double d = dc.length();
  std::vector<Vec2> pts;
  if (d <= tol) {
    // Concentric: only coincident circles meet, at the ends of their overlap.
    if (std::abs(a.r - b.r) > tol || !a.bounded || !b.bounded) return {};
    pts = {arcPoint(a, a.start), arcPoint(a, a.start + a.sweep), arcPoint(b, b.start), arcPoint(b, b.start + b.sweep)};
  } else {
    if (d > a.r + b.r + tol || d < std::abs(a.r - b.r) - tol) return {};
    double x = (d * d + a.r * a.r - b.r * b.r) / (2 * d);
    double h2 = a.r * a.r - x * x;
    Vec2 e = dc * (1 / d), n{-e.y, e.x};
    Vec2 base = a.c + e * x;
    double h = h2 > 0 ? std::sqrt(h2) : 0.0;
    if (h <= tol) pts = {base};
    else pts = {base + n * h, base - n * h};
  }
  return keepOnBoth(pts, [&](Vec2 q) { return onArc(a, q, tol); }, [&](Vec2 q) { return onArc(b, q, tol); });
}

}  // namespace standalone::kernel
