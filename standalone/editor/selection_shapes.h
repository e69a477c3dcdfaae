#pragma once
// Plane geometry of the polygon and fence selection modes, in the XY plane
// of the drawing: point in polygon, segment contact, and how a box (an
// entity's extents) lies against a polygon or a fence.
#include <vector>

#include "ge/extents.h"
#include "ge/point.h"

namespace standalone {

using Outline = std::vector<ge::Point2d>;

// The points seen from above (z dropped).
Outline outlineOf(const std::vector<ge::Point3d>& points);

// True when p lies inside the closed polygon or on its boundary (crossing
// number; the polygon need not be convex).
bool pointInPolygon(const Outline& polygon, ge::Point2d p);

// True when the segments ab and cd share at least one point (touching ends
// and overlapping collinear segments included).
bool segmentsTouch(ge::Point2d a, ge::Point2d b, ge::Point2d c, ge::Point2d d);

// True when the segments cross at one point inside both (not at an end,
// not collinear).
bool segmentsCrossProperly(ge::Point2d a, ge::Point2d b, ge::Point2d c, ge::Point2d d);

// True when the XY rectangle of box lies wholly inside the polygon (its
// boundary may touch the polygon's).
bool boxInsidePolygon(const Outline& polygon, const ge::Extents3d& box);

// True when the XY rectangle of box and the closed polygon share a point.
bool boxTouchesPolygon(const Outline& polygon, const ge::Extents3d& box);

// True when the open chain of fence points passes through or touches the XY rectangle of box.
bool fenceTouchesBox(const Outline& fence, const ge::Extents3d& box);

// True when adding next to the open chain of polygon points would make the
// closed polygon cross or touch itself (its new edge or its new closing edge
// meeting an edge that is not its neighbour).
bool polygonWouldCrossItself(const Outline& points, ge::Point2d next);

// XY box of the points (z unbounded, so it contains every box in XY terms).
ge::Extents3d outlineBox(const Outline& points);

}  // namespace standalone
