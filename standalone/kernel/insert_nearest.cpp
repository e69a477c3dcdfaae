// The point of a block reference's geometry nearest to a given point, for
// picks that should meet what a block draws rather than its box.
#include <algorithm>
#include <cmath>

#include "standalone/kernel/curve_kernel.h"
#include "standalone/kernel/insert_extents.h"
#include "standalone/kernel/path_query.h"

namespace standalone {

using host::ErrorStatus;

namespace kernel {

namespace {

void offer(Nearest& best, const ge::Point3d& q, const ge::Point3d& p) {
  double d = q.distanceTo(p);
  if (d < best.distance) best = {q, d};
}

void offerPath(Nearest& best, const Path& path, const ge::Point3d& p) {
  if (!path.pieces.empty()) offer(best, closestPoint(path, p).point, p);
}

ge::Point3d nearestOnSegment(const ge::Point3d& a, const ge::Point3d& b, const ge::Point3d& p) {
  ge::Vector3d d = b - a;
  double len2 = d.dot(d);
  return len2 > 0 ? a + d * std::clamp((p - a).dot(d) / len2, 0.0, 1.0) : a;
}

// The parallelogram c0 c1 c2 c3 (a text's or an image's box, mapped): the
// foot of p in its plane when that lies inside, otherwise the nearest point
// of its edges.
void offerParallelogram(Nearest& best, const TextBox& c, const ge::Point3d& p) {
  ge::Vector3d u = c[1] - c[0], v = c[3] - c[0], w = p - c[0];
  double uu = u.dot(u), uv = u.dot(v), vv = v.dot(v), det = uu * vv - uv * uv;
  if (det > 0) {
    double a = (w.dot(u) * vv - w.dot(v) * uv) / det, b = (w.dot(v) * uu - w.dot(u) * uv) / det;
    if (a >= 0 && a <= 1 && b >= 0 && b <= 1) return offer(best, c[0] + u * a + v * b, p);
  }
  for (int k = 0; k < 4; ++k) offer(best, nearestOnSegment(c[k], c[(k + 1) % 4], p), p);
}

void offerBox(Nearest& best, const std::optional<TextBox>& box, const ge::Matrix3d& m, const ge::Point3d& p) {
  if (!box) return;
  TextBox mapped;
  for (int k = 0; k < 4; ++k) mapped[k] = m.apply((*box)[k]);
  offerParallelogram(best, mapped, p);
}

// Distance from p to the box (0 inside).
double distanceToBox(const ge::Extents3d& e, const ge::Point3d& p) {
  double dx = std::max({e.min.x - p.x, 0.0, p.x - e.max.x});
  double dy = std::max({e.min.y - p.y, 0.0, p.y - e.max.y});
  double dz = std::max({e.min.z - p.z, 0.0, p.z - e.max.z});
  return std::sqrt(dx * dx + dy * dy + dz * dz);
}

}  // namespace

void BlockWalker::nearest(const host::EntityData& e, const ge::Matrix3d& m, const ge::Point3d& p, Nearest& best,
                          int depth) {
  if (std::optional<Path> path = pathOf(e)) return offerPath(best, mappedPath(*path, m), p);
  if (const auto* t = std::get_if<host::Text>(&e)) return offerBox(best, textBox(*t), m, p);
  if (const auto* t = std::get_if<host::MText>(&e)) return offerBox(best, mtextBox(*t), m, p);
  if (const auto* im = std::get_if<host::Image>(&e)) return offerBox(best, imageCorners(*im), m, p);
  if (const auto* pt = std::get_if<host::PointEntity>(&e)) return offer(best, m.apply(pt->position), p);
  if (const auto* h = std::get_if<host::Hatch>(&e)) {
    for (const Path& path : hatchBoundary(*h)) offerPath(best, mappedPath(path, m), p);
    return;
  }
  if (const auto* ref = std::get_if<host::BlockReference>(&e)) nearestInReference(*ref, m, p, best, depth);
}

// Each array cell is the first moved by its offset; cells whose box lies
// farther than the best so far are not looked into.
void BlockWalker::nearestInReference(const host::BlockReference& ref, const ge::Matrix3d& m, const ge::Point3d& p,
                                     Nearest& best, int depth) {
  std::optional<ge::Extents3d> cell = cellExtents(ref, m, depth);
  if (!cell) return;
  std::shared_ptr<const host::BlockContents> block = contents(ref.blockName);
  ge::Matrix3d placed = m * blockTransform(ref, block->basePoint);
  ge::Vector3d column = m.apply(arrayColumnStep(ref)), row = m.apply(arrayRowStep(ref));
  for (int i = 0; i < std::max(ref.columnCount, 1); ++i)
    for (int j = 0; j < std::max(ref.rowCount, 1); ++j) {
      ge::Vector3d offset = column * i + row * j;
      if (distanceToBox(*cell, p - offset) >= best.distance) continue;
      Nearest inCell;
      inCell.distance = best.distance;
      for (const host::EntityData& child : block->entities) nearest(child, placed, p - offset, inCell, depth + 1);
      if (inCell.distance < best.distance) best = {inCell.point + offset, inCell.distance};
    }
}

}  // namespace kernel

ErrorStatus CurveKernel::getBlockReferenceClosestPoint(const host::BlockReference& ref,
                                                       const host::BlockContentsLookup& blocks, const ge::Point3d& p,
                                                       ge::Point3d& nearest) const {
  kernel::BlockWalker walker(*this, blocks);
  if (!walker.contents(ref.blockName)) return ErrorStatus::eKeyNotFound;
  kernel::Nearest best;
  walker.nearest(ref, ge::Matrix3d(), p, best);
  if (!std::isfinite(best.distance)) return ErrorStatus::eDegenerateGeometry;
  nearest = best.point;
  return ErrorStatus::eOk;
}

}  // namespace standalone
