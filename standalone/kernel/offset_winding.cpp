#include "standalone/kernel/offset_winding.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace standalone::kernel {

namespace {

Pline2 closedLoop(Pline2 loop) {
  loop.closed = true;
  return loop;
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
  ArcCircle c = s.circle();
  if ((p - c.c).length() >= c.r) return 0;
  double side = (s.b - s.a).cross(p - s.a);
  // A counter-clockwise arc lies to the right of its chord, a clockwise one to the left.
  if (c.sweep > 0) return side < 0 ? 1 : 0;
  return side > 0 ? -1 : 0;
}

}  // namespace

int windingContribution(const Seg& s, Vec2 p) {
  int w = chordCrossing(s.a, s.b, p);
  if (s.isArc()) w += arcCorrection(s, p);
  return w;
}

WindingCounter::WindingCounter(const Pline2& loop) : segs_(segmentsOf(closedLoop(loop))), grid_(boxesOf(segs_)) {
  for (size_t i = 0; i < segs_.size(); ++i) maxX_ = std::max(maxX_, grid_.box(i).maxX);
}

int WindingCounter::windingAt(Vec2 p) const {
  int w = 0;
  // Segments whose box meets the ray; those whose box holds p are among them.
  grid_.query(Box2{p.x, p.y, std::max(maxX_, p.x), p.y}, [&](size_t i) {
    w += windingContribution(segs_[i], p);
    return false;
  });
  return w;
}

}  // namespace standalone::kernel
