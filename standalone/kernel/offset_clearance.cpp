#include "standalone/kernel/offset_clearance.h"

#include <algorithm>
#include <cmath>

namespace standalone::kernel {

namespace {

Box2 kiteBox(const Kite& kite) {
  Box2 all = segmentBox(kite.edges[0]);
  for (const Seg& e : kite.edges) {
    Box2 b = segmentBox(e);
    all = {std::min(all.minX, b.minX), std::min(all.minY, b.minY), std::max(all.maxX, b.maxX),
           std::max(all.maxY, b.maxY)};
  }
  return all;
}

std::vector<Box2> kiteBoxes(const std::vector<Kite>& kites) {
  std::vector<Box2> out;
  for (const auto& k : kites) out.push_back(kiteBox(k));
  return out;
}

}  // namespace

OffsetClearance::OffsetClearance(const Pline2& source, std::vector<Kite> kites, double d, double tol)
    : source_(segmentsOf(source)),
      sourceGrid_(boxesOf(source_), std::abs(d) / 2),  // cells about the query size
      kites_(std::move(kites)),
      kiteGrid_(kiteBoxes(kites_)),
      margin_(std::max(1e-2 * tol, 1e-12 * std::abs(d))) {
  need_ = std::abs(d) - margin_;
}

bool OffsetClearance::clear(Vec2 p) const {
  if (!farFromSource(p) || insideAKite(p)) return false;
  return !loop_ || (loop_->windingAt(p) == 0) == outside_;
}

void OffsetClearance::keepSide(const Pline2& source, bool outside) {
  loop_ = std::make_unique<WindingCounter>(source);
  outside_ = outside;
}

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
    const Kite& kite = kites_[i];
    int winding = 0;
    for (const Seg& e : kite.edges) winding += windingContribution(e, p);
    if (winding == 0) return false;
    // On an edge is not inside: other corners' extensions run along them.
    for (const Seg& e : kite.edges)
      if (distanceToSegment(e, p) <= margin_) return false;
    inside = true;
    return true;
  });
  return inside;
}

}  // namespace standalone::kernel
