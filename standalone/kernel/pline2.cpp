#include "standalone/kernel/pline2.h"

#include <algorithm>
#include <numbers>

namespace standalone::kernel {

ArcCircle Seg::circle() const {
  Vec2 d = b - a;
  double chord = d.length();
  double h = chord * (1 - bulge * bulge) / (4 * bulge);
  Vec2 c = (a + b) * 0.5 + Vec2{-d.y, d.x} * (h / chord);
  double r = chord * (1 + bulge * bulge) / (4 * std::abs(bulge));
  return {c, r, 4 * std::atan(bulge)};
}

Arc2 Seg::arc() const {
  ArcCircle k = circle();
  return {k.c, k.r, std::atan2(a.y - k.c.y, a.x - k.c.x), k.sweep, true};
}

double Seg::length() const {
  double chord = (b - a).length();
  if (!isArc() || chord == 0) return chord;
  ArcCircle c = circle();
  return c.r * std::abs(c.sweep);
}

Vec2 Seg::pointAt(double t) const {
  if (!isArc() || (a.x == b.x && a.y == b.y)) return a + (b - a) * t;
  Arc2 c = arc();
  double ang = c.start + c.sweep * t;
  return c.c + Vec2{std::cos(ang), std::sin(ang)} * c.r;
}

double Seg::fractionAt(Vec2 p) const {
  if (!isArc()) {
    Vec2 d = b - a;
    double l2 = d.dot(d);
    return l2 > 0 ? std::clamp((p - a).dot(d) / l2, 0.0, 1.0) : 0.0;
  }
  Arc2 c = arc();
  double phi = std::atan2(p.y - c.c.y, p.x - c.c.x);
  double rel = c.sweep >= 0 ? phi - c.start : c.start - phi;
  rel = std::fmod(rel, 2 * std::numbers::pi);
  if (rel < 0) rel += 2 * std::numbers::pi;
  double f = rel / std::abs(c.sweep);
  // Just before the start reads as a full turn; those points belong to the start.
  if (f > 1) f = (rel - std::abs(c.sweep) < 2 * std::numbers::pi - rel) ? 1.0 : 0.0;
  return f;
}

std::vector<Seg> segmentsOf(const Pline2& pl) {
  std::vector<Seg> out;
  for (size_t i = 0; i < pl.segmentCount(); ++i) out.push_back(segmentOf(pl, i));
  return out;
}

std::vector<Box2> boxesOf(const std::vector<Seg>& segs) {
  std::vector<Box2> out;
  for (const auto& s : segs) out.push_back(segmentBox(s));
  return out;
}

Seg segmentOf(const Pline2& pl, size_t i) {
  const auto& v = pl.vertices;
  return {v[i].p, v[(i + 1) % v.size()].p, v[i].bulge};
}

double distanceToSegment(const Seg& s, Vec2 p) {
  if (!s.isArc() || (s.b - s.a).length() == 0) {
    Vec2 d = s.b - s.a;
    double l2 = d.dot(d);
    double t = l2 > 0 ? std::clamp((p - s.a).dot(d) / l2, 0.0, 1.0) : 0.0;
    return (s.a + d * t - p).length();
  }
  Arc2 c = s.arc();
  if (onArc(c, p, 0)) return std::abs((p - c.c).length() - c.r);
  return std::min((p - s.a).length(), (p - s.b).length());
}

std::vector<Vec2> intersectSegs(const Seg& s, const Seg& t, double tol) {
  bool sa = s.isArc() && (s.b - s.a).length() > 0, ta = t.isArc() && (t.b - t.a).length() > 0;
  if (!sa && !ta) return intersectSegments(s.line(), t.line(), tol);
  if (!sa) return intersectSegmentArc(s.line(), t.arc(), tol);
  if (!ta) return intersectSegmentArc(t.line(), s.arc(), tol);
  return intersectArcs(s.arc(), t.arc(), tol);
}

Box2 segmentBox(const Seg& s) {
  Box2 b{std::min(s.a.x, s.b.x), std::min(s.a.y, s.b.y), std::max(s.a.x, s.b.x), std::max(s.a.y, s.b.y)};
  Vec2 d = s.b - s.a;
  double chord = d.length();
  if (!s.isArc() || chord == 0) return b;
  // The circle's extreme points that lie on the arc widen the box. The chord
  // parts the circle into the two arcs, so a point of the circle is on this
  // one when it lies on the arc's side of the chord: the right of a to b for
  // a counter-clockwise arc (positive bulge), the left otherwise. No angles
  // are needed, which keeps boxes of many arcs cheap.
  Vec2 c = (s.a + s.b) * 0.5 + Vec2{-d.y, d.x} * ((1 - s.bulge * s.bulge) / (4 * s.bulge));
  double r = chord * (1 + s.bulge * s.bulge) / (4 * std::abs(s.bulge));
  const Vec2 extremes[] = {{c.x + r, c.y}, {c.x, c.y + r}, {c.x - r, c.y}, {c.x, c.y - r}};
  for (const Vec2& p : extremes) {
    double side = d.cross(p - s.a);
    if (s.bulge > 0 ? side <= 0 : side >= 0) {
      b.minX = std::min(b.minX, p.x), b.maxX = std::max(b.maxX, p.x);
      b.minY = std::min(b.minY, p.y), b.maxY = std::max(b.maxY, p.y);
    }
  }
  return b;
}

}  // namespace standalone::kernel
