#pragma once
// Planar polylines with bulges in a plane's own 2D coordinates: the working
// form of offsets. A segment runs from vertex i to vertex i+1 (wrapping when
// closed) and takes the bulge of vertex i.
#include <cmath>
#include <optional>
#include <vector>

#include "standalone/kernel/intersect2d.h"
#include "standalone/kernel/spatial_grid.h"

namespace standalone::kernel {

struct PVertex {
  Vec2 p;
  double bulge = 0;  // tan(sweep / 4), positive counter-clockwise
};

struct Pline2 {
  std::vector<PVertex> vertices;
  bool closed = false;
  size_t segmentCount() const {
    return vertices.size() < 2 ? 0 : (closed ? vertices.size() : vertices.size() - 1);
  }
};

// One segment as a primitive: a line, or an arc with centre, radius and signed sweep.
// An arc segment's circle and signed sweep, without the start angle: that
// costs an atan2, and lengths, areas and offsets do not need it.
struct ArcCircle {
  Vec2 c;
  double r = 0, sweep = 0;
};

struct Seg {
  Vec2 a, b;
  double bulge = 0;
  bool isArc() const { return bulge != 0; }
  Arc2 arc() const;           // only for arcs
  ArcCircle circle() const;   // only for arcs; the same centre, radius and sweep as arc()
  Segment2 line() const { return {a, b, true}; }
  double length() const;
  // Point at fraction t (0..1) of the segment, by length.
  Vec2 pointAt(double t) const;
  // Fraction of the segment at a point lying on it.
  double fractionAt(Vec2 p) const;
};

Seg segmentOf(const Pline2& pl, size_t i);

// Distance from a point to the segment.
double distanceToSegment(const Seg& s, Vec2 p);

// Box around a segment, arcs included whole (their extreme points).
Box2 segmentBox(const Seg& s);

// All segments of a polyline in order, and their boxes.
std::vector<Seg> segmentsOf(const Pline2& pl);
std::vector<Box2> boxesOf(const std::vector<Seg>& segs);

// Do two straight segments that follow each other (the first's end is the
// second's start) meet nowhere else? True unless they fold back along one line.
inline bool lineNeighboursMeetOnlyAtTheirVertex(const Seg& first, const Seg& second) {
  if (first.isArc() || second.isArc()) return false;
  Vec2 u = first.b - first.a, v = second.b - second.a;
  return std::abs(u.cross(v)) > 1e-12 * u.length() * v.length() || u.dot(v) > 0;
}

// Intersections of two segments, exact for lines and arcs.
std::vector<Vec2> intersectSegs(const Seg& s, const Seg& t, double tol);

}  // namespace standalone::kernel
