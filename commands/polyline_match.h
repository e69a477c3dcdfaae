#pragma once
// Matching two polylines vertex for vertex so that they can be blended: both
// run the same way from corresponding starts, and the one with fewer
// vertices gains vertices where its segments are longest.
#include <cstddef>

#include "commands/interpolation.h"

namespace commands {

// A polyline to blend: vertices with the bulge of the segment that starts there.
struct MatchPolyline {
  BlendPolyline vertices;
  bool closed = false;
};

// Length of segment i (to the next vertex, the closing segment included).
double segmentLength(const MatchPolyline& pl, std::size_t i);

// Splits the longest segment at its middle (an arc at the middle of its
// sweep, into two arcs of the same circle) until there are `count` vertices.
// The shape does not change.
void splitToCount(MatchPolyline& pl, std::size_t count);

// The closing segment made explicit: the first vertex repeated at the end.
MatchPolyline opened(const MatchPolyline& pl);

// The same polyline run the other way round (bulges moved and negated).
MatchPolyline reversed(const MatchPolyline& pl);

// Makes b correspond to a: two closed polylines run the same way round
// (by the sign of their areas) and b starts at its vertex nearest a's start;
// an open b runs from the end nearer a's start. A closed polyline meeting an
// open one is opened at its start. Then both get the same vertex count.
void matchPolylines(MatchPolyline& a, MatchPolyline& b);

}  // namespace commands
