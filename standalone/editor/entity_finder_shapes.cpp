// Window polygon, crossing polygon and fence selections. Curves are tested
// against the outline's segments with the curve services' intersections;
// other entities (texts, block references, hatches, images, points) by the
// rectangle of their extents.
#include <algorithm>

#include "standalone/editor/entity_finder.h"
#include "standalone/editor/selection_shapes.h"

namespace standalone {

namespace {

bool segmentMissesBox(ge::Point2d a, ge::Point2d b, const ge::Extents3d& box) {
  return std::max(a.x, b.x) < box.min.x || std::min(a.x, b.x) > box.max.x || std::max(a.y, b.y) < box.min.y ||
         std::min(a.y, b.y) > box.max.y;
}

}  // namespace

std::optional<bool> EntityFinder::curveMeetsChain(const host::Entity& e, const ge::Extents3d& ext,
                                                  const Outline& chain, bool closed) const {
  // The selection is drawn on the screen: a flat curve meets the outline at
  // its own height; one that leaves its plane is met in its view from above.
  host::EntityData projected;
  const host::EntityData* curve = &e.data;
  double z = ext.min.z;
  if (ext.max.z != ext.min.z) {
    if (curves_.getOrthoProjectedCurve(e.data, host::Plane{}, projected) != host::ErrorStatus::eOk) return std::nullopt;
    curve = &projected;
    z = 0;
  }
  std::size_t segments = closed ? chain.size() : chain.size() - 1;
  for (std::size_t i = 0; i < segments; ++i) {
    ge::Point2d a = chain[i], b = chain[(i + 1) % chain.size()];
    if (a == b || segmentMissesBox(a, b, ext)) continue;
    host::Line edge{{a.x, a.y, z}, {b.x, b.y, z}};
    std::vector<ge::Point3d> hits;
    if (curves_.intersectWith(*curve, edge, host::Intersect::kOnBothOperands, hits) != host::ErrorStatus::eOk)
      return std::nullopt;
    if (!hits.empty()) return true;
  }
  return false;
}

bool EntityFinder::polygonTakes(const host::Entity& e, const ge::Extents3d& ext, const Outline& polygon,
                                bool crossing) const {
  if (boxInsidePolygon(polygon, ext)) return true;
  if (!boxTouchesPolygon(polygon, ext)) return false;
  if (!host::isCurve(e.data)) return crossing;  // the box straddles the outline
  // A curve that meets no edge lies wholly inside or wholly outside.
  std::optional<bool> meets = curveMeetsChain(e, ext, polygon, true);
  ge::Point3d start;
  if (!meets || curves_.getStartPoint(e.data, start) != host::ErrorStatus::eOk) return crossing;
  bool startInside = pointInPolygon(polygon, {start.x, start.y});
  return crossing ? *meets || startInside : !*meets && startInside;
}

std::vector<host::ObjectId> EntityFinder::inPolygon(const std::vector<ge::Point3d>& points, bool crossing) const {
  Outline polygon = outlineOf(points);
  if (polygon.size() < 3) return {};
  QueryScope blocks(*this);
  ge::Extents3d hull = outlineBox(polygon);
  std::vector<host::ObjectId> out;
  for (host::ObjectId id : drawing_.entitiesOf(drawing_.currentSpace())) {
    std::optional<host::Entity> e = drawing_.read(id);
    ge::Extents3d ext;
    if (!e || hidden(*e) || !boxOf(*e, ext) || !hull.intersectsXY(ext)) continue;
    if (polygonTakes(*e, ext, polygon, crossing)) out.push_back(id);
  }
  return out;
}

std::vector<host::ObjectId> EntityFinder::alongFence(const std::vector<ge::Point3d>& points) const {
  Outline fence = outlineOf(points);
  if (fence.size() < 2) return {};
  QueryScope blocks(*this);
  ge::Extents3d hull = outlineBox(fence);
  std::vector<host::ObjectId> out;
  for (host::ObjectId id : drawing_.entitiesOf(drawing_.currentSpace())) {
    std::optional<host::Entity> e = drawing_.read(id);
    ge::Extents3d ext;
    if (!e || hidden(*e) || !boxOf(*e, ext) || !hull.intersectsXY(ext) || !fenceTouchesBox(fence, ext)) continue;
    if (!host::isCurve(e->data) || curveMeetsChain(*e, ext, fence, false).value_or(true)) out.push_back(id);
  }
  return out;
}

}  // namespace standalone
