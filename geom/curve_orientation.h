#pragma once
// The orientation rule the offset commands run before offsetting, so that the
// host's signed offset distance always means the same side.
//
// The host offsets a curve at a positive distance to the right of its
// direction of travel seen from its normal (circles and arcs: the larger
// radius; lines: towards larger X, then Y, then Z). The rule therefore turns
// every curve to run counter-clockwise about its own normal, after which a
// positive distance is "Outside" and a negative one "Inner":
//
// - A closed curve is reversed when it runs clockwise about its normal, so
//   Outside is outside and Inner inside whichever way it was drawn.
// - An open curve is judged as though closed by its chord (the straight line
//   from its end back to its start, as the host measures an open curve's
//   area): Outside is the side away from the area it bounds with its chord
//   (the convex side of a bow), Inner the side towards it.
// - A curve that bounds no area with its chord (a straight polyline, an S
//   symmetric about its chord) is turned so that its positive side faces
//   larger X, then larger Y, then larger Z: the side the host gives a line.
//
// Circles, arcs and lines are never reversed: their offsets do not depend on
// their direction. 3D polylines and helices, which have no plane, are left as
// they are.
#include <optional>

#include "host/curves.h"

namespace geom {

// How a curve turns about its own normal; an open curve is closed by its chord.
enum class Turning { kCounterClockwise, kClockwise, kStraight };

// The signed area a curve encloses about its own normal (counter-clockwise
// positive), an open curve closed by its chord; nothing for kinds without a
// plane (3D polylines, helices) or when the curve cannot be measured.
std::optional<double> signedAreaAboutNormal(const host::CurveServices& curves, const host::EntityData& curve);

Turning turningOf(const host::CurveServices& curves, const host::EntityData& curve);

// Applies the rule above to the record (not to the drawing); true when it reversed the curve.
bool orientForOffset(const host::CurveServices& curves, host::EntityData& curve);

}  // namespace geom
