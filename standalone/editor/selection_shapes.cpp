#include "standalone/editor/selection_shapes.h"

#include <algorithm>
#include <array>

namespace standalone {

namespace {

// Twice the signed area of abc: positive when c lies left of ab.
double orient(ge::Point2d a, ge::Point2d b, ge::Point2d c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

int sign(double v) { return (v > 0) - (v < 0); }

// True when c, collinear with ab, lies within the segment's box.
bool withinSegmentBox(ge::Point2d a, ge::Point2d b, ge::Point2d c) {
  return std::min(a.x, b.x) <= c.x && c.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= c.y &&
         c.y <= std::max(a.y, b.y);
}

bool onSegment(ge::Point2d a, ge::Point2d b, ge::Point2d p) { return orient(a, b, p) == 0 && withinSegmentBox(a, b, p); }

bool inBox(const ge::Extents3d& box, ge::Point2d p) {
  return box.min.x <= p.x && p.x <= box.max.x && box.min.y <= p.y && p.y <= box.max.y;
}

bool strictlyInBox(const ge::Extents3d& box, ge::Point2d p) {
  return box.min.x < p.x && p.x < box.max.x && box.min.y < p.y && p.y < box.max.y;
}

// Corners of the box's rectangle, counter-clockwise from the lower left.
std::array<ge::Point2d, 4> corners(const ge::Extents3d& box) {
  return {{{box.min.x, box.min.y}, {box.max.x, box.min.y}, {box.max.x, box.max.y}, {box.min.x, box.max.y}}};
}

// Calls f(a, b) for each edge of the closed polygon until it returns true.
template <class F>
bool anyEdge(const Outline& polygon, F f) {
  for (std::size_t i = 0; i < polygon.size(); ++i)
    if (f(polygon[i], polygon[(i + 1) % polygon.size()])) return true;
  return false;
}

template <class F>
bool anyBoxEdge(const ge::Extents3d& box, F f) {
  auto c = corners(box);
  for (int i = 0; i < 4; ++i)
    if (f(c[i], c[(i + 1) % 4])) return true;
  return false;
}

}  // namespace

Outline outlineOf(const std::vector<ge::Point3d>& points) {
  Outline out;
  out.reserve(points.size());
  for (const ge::Point3d& p : points) out.push_back({p.x, p.y});
  return out;
}

bool pointInPolygon(const Outline& polygon, ge::Point2d p) {
  if (polygon.size() < 3) return false;
  if (anyEdge(polygon, [&](ge::Point2d a, ge::Point2d b) { return onSegment(a, b, p); })) return true;
  bool inside = false;
  anyEdge(polygon, [&](ge::Point2d a, ge::Point2d b) {
    // Half-open in y, so a ray through a vertex counts it once.
    if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (p.y - a.y) * (b.x - a.x) / (b.y - a.y)) inside = !inside;
    return false;
  });
  return inside;
}

bool segmentsTouch(ge::Point2d a, ge::Point2d b, ge::Point2d c, ge::Point2d d) {
  double d1 = orient(c, d, a), d2 = orient(c, d, b), d3 = orient(a, b, c), d4 = orient(a, b, d);
  if (sign(d1) * sign(d2) < 0 && sign(d3) * sign(d4) < 0) return true;
  return (d1 == 0 && withinSegmentBox(c, d, a)) || (d2 == 0 && withinSegmentBox(c, d, b)) ||
         (d3 == 0 && withinSegmentBox(a, b, c)) || (d4 == 0 && withinSegmentBox(a, b, d));
}

bool segmentsCrossProperly(ge::Point2d a, ge::Point2d b, ge::Point2d c, ge::Point2d d) {
  return sign(orient(c, d, a)) * sign(orient(c, d, b)) < 0 && sign(orient(a, b, c)) * sign(orient(a, b, d)) < 0;
}

bool boxInsidePolygon(const Outline& polygon, const ge::Extents3d& box) {
  if (!box.isValid() || polygon.size() < 3) return false;
  for (ge::Point2d c : corners(box))
    if (!pointInPolygon(polygon, c)) return false;
  // All corners inside a polygon that is not convex: a reflex corner of the
  // polygon may still cut into the rectangle.
  for (ge::Point2d v : polygon)
    if (strictlyInBox(box, v)) return false;
  return !anyEdge(polygon, [&](ge::Point2d a, ge::Point2d b) {
    return anyBoxEdge(box, [&](ge::Point2d c, ge::Point2d d) { return segmentsCrossProperly(a, b, c, d); });
  });
}

bool boxTouchesPolygon(const Outline& polygon, const ge::Extents3d& box) {
  if (!box.isValid() || polygon.size() < 3) return false;
  for (ge::Point2d c : corners(box))
    if (pointInPolygon(polygon, c)) return true;
  for (ge::Point2d v : polygon)
    if (inBox(box, v)) return true;
  return anyEdge(polygon, [&](ge::Point2d a, ge::Point2d b) {
    return anyBoxEdge(box, [&](ge::Point2d c, ge::Point2d d) { return segmentsTouch(a, b, c, d); });
  });
}

bool fenceTouchesBox(const Outline& fence, const ge::Extents3d& box) {
  if (!box.isValid() || fence.empty()) return false;
  for (ge::Point2d p : fence)
    if (inBox(box, p)) return true;
  for (std::size_t i = 0; i + 1 < fence.size(); ++i)
    if (anyBoxEdge(box, [&](ge::Point2d c, ge::Point2d d) { return segmentsTouch(fence[i], fence[i + 1], c, d); }))
      return true;
  return false;
}

bool polygonWouldCrossItself(const Outline& points, ge::Point2d next) {
  std::size_t n = points.size();
  if (n == 0) return false;
  ge::Point2d last = points.back(), first = points.front();
  if (next == last || (n > 1 && next == first)) return true;  // a repeated point touches itself
  // Existing open edges i: points[i] -> points[i+1].
  for (std::size_t i = 0; i + 1 < n; ++i) {
    ge::Point2d a = points[i], b = points[i + 1];
    // The new edge last -> next shares its start with edge n-2.
    bool newEdgeHits = i + 2 == n ? onSegment(a, b, next) || (orient(a, b, next) == 0 && withinSegmentBox(last, next, a))
                                  : segmentsTouch(a, b, last, next);
    // The closing edge next -> first shares its end with edge 0.
    bool closingHits = n >= 2 && (i == 0 ? onSegment(a, b, next) || (orient(a, b, next) == 0 && withinSegmentBox(next, first, b))
                                         : segmentsTouch(a, b, next, first));
    if (newEdgeHits || closingHits) return true;
  }
  return false;
}

ge::Extents3d outlineBox(const Outline& points) {
  ge::Extents3d box;
  for (ge::Point2d p : points) {
    box.add(ge::Point3d{p.x, p.y, -1e300});
    box.add(ge::Point3d{p.x, p.y, 1e300});
  }
  return box;
}

}  // namespace standalone
