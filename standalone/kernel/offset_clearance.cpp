#include "standalone/kernel/offset_clearance.h"

#include <algorithm>
#include <cmath>

namespace standalone::kernel {

namespace {

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

Box2 loopBox(const Pline2& loop) {
  Box2 all = segmentBox(segmentOf(loop, 0));
  for (size_t i = 1; i < loop.segmentCount(); ++i) {
    Box2 b = segmentBox(segmentOf(loop, i));
    all = {std::min(all.minX, b.minX), std::min(all.minY, b.minY), std::max(all.maxX, b.maxX),
           std::max(all.maxY, b.maxY)};
  }
  return all;
}

std::vector<Box2> boxesOf(const std::vector<Pline2>& loops) {
  std::vector<Box2> out;
  for (const auto& l : loops) out.push_back(loopBox(l));
  return out;
}

// Crossing of the ray from p towards +x by the chord a→b: +1 upwards with p
// on its left, -1 downwards with p on its right (half-open in y, so a ray
// through a vertex counts once).
int chordCrossing(Vec2 a, Vec2 b, Vec2 p) {
  double side = (b - a).cross(p - a);
  if (a.y <= p.y) return b.y > p.y && side > 0 ? 1 : 0;
  return b.y <= p.y && side < 0 ? -1 : 0;
}

// An arc turns about p as its chord does, plus one whole turn (in the arc's
// sense) when p lies between the chord and the arc.
int arcCorrection(const Seg& s, Vec2 p) {
  if ((s.b - s.a).length() == 0) return 0;
  Arc2 c = s.arc();
  if ((p - c.c).length() >= c.r) return 0;
  double side = (s.b - s.a).cross(p - s.a);
  // A counter-clockwise arc lies to the right of its chord, a clockwise one to the left.
  if (c.sweep > 0) return side < 0 ? 1 : 0;
  return side > 0 ? -1 : 0;
}

int windingAbout(const Pline2& loop, Vec2 p) {
  int w = 0;
  for (size_t i = 0; i < loop.segmentCount(); ++i) {
    Seg s = segmentOf(loop, i);
    w += chordCrossing(s.a, s.b, p);
    if (s.isArc()) w += arcCorrection(s, p);
  }
  return w;
}

}  // namespace

OffsetClearance::OffsetClearance(const Pline2& source, std::vector<Pline2> kites, double d, double tol)
    : source_(segmentsOf(source)),
      sourceGrid_(boxesOf(source_), std::abs(d) / 2),  // cells about the query size
      kites_(std::move(kites)),
      kiteGrid_(boxesOf(kites_)),
      margin_(std::max(1e-2 * tol, 1e-12 * std::abs(d))) {
  need_ = std::abs(d) - margin_;
}

bool OffsetClearance::clear(Vec2 p) const { return farFromSource(p) && !insideAKite(p); }

bool OffsetClearance::farFromSource(Vec2 p) const {
  bool ok = true;
  sourceGrid_.query(Box2{p.x - need_, p.y - need_, p.x + need_, p.y + need_}, [&](size_t i) {
    // The box's nearest point first: most candidates are ruled out by it.
    const Box2& b = sourceGrid_.box(i);
    double dx = std::max({b.minX - p.x, 0.0, p.x - b.maxX}), dy = std::max({b.minY - p.y, 0.0, p.y - b.maxY});
    if (dx * dx + dy * dy >= need_ * need_) return false;
    if (distanceToSegment(source_[i], p) < need_) ok = false;
    return !ok;
  });
  return ok;
}

bool OffsetClearance::insideAKite(Vec2 p) const {
  bool inside = false;
  kiteGrid_.query(Box2{p.x, p.y, p.x, p.y}, [&](size_t i) {
    const Pline2& kite = kites_[i];
    if (windingAbout(kite, p) == 0) return false;
    // On an edge is not inside: other corners' extensions run along them.
    for (size_t k = 0; k < kite.segmentCount(); ++k)
      if (distanceToSegment(segmentOf(kite, k), p) <= margin_) return false;
    inside = true;
    return true;
  });
  return inside;
}

}  // namespace standalone::kernel
