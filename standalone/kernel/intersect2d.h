#pragma once
// Intersections of straight segments and circular arcs in a plane, one small
// function per pairing. Unbounded primitives stand for the extensions the
// host's intersectWith can ask for (a line's infinite support, an arc's circle).
#include <vector>

#include "ge/point.h"

namespace standalone::kernel {

struct Vec2 {
  double x = 0, y = 0;
  Vec2 operator+(Vec2 o) const { return {x + o.x, y + o.y}; }
  Vec2 operator-(Vec2 o) const { return {x - o.x, y - o.y}; }
  Vec2 operator*(double s) const { return {x * s, y * s}; }
  double dot(Vec2 o) const { return x * o.x + y * o.y; }
  double cross(Vec2 o) const { return x * o.y - y * o.x; }
  double length() const { return std::sqrt(x * x + y * y); }
};

struct Segment2 {
  Vec2 a, b;
  bool bounded = true;
};

// Arc c + r(cos θ, sin θ) for θ from start over the signed sweep.
struct Arc2 {
  Vec2 c;
  double r = 0;
  double start = 0, sweep = 0;
  bool bounded = true;  // false: the whole circle
};

// Does the point (known to be on the support) lie on the bounded primitive, within tol?
bool onSegment(const Segment2& s, Vec2 p, double tol);
bool onArc(const Arc2& a, Vec2 p, double tol);

// Intersection points within tol; tangencies give one point, overlapping
// collinear segments or coincident arcs give the ends of the overlap.
std::vector<Vec2> intersectSegments(const Segment2& s, const Segment2& t, double tol);
std::vector<Vec2> intersectSegmentArc(const Segment2& s, const Arc2& a, double tol);
std::vector<Vec2> intersectArcs(const Arc2& a, const Arc2& b, double tol);

}  // namespace standalone::kernel
