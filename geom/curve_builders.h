#pragma once
// Turning point lists into drawing entities: a line, a polyline or a fitted
// spline through the points.
#include <optional>

#include "ge/point.h"
#include "host/host.h"

namespace geom {

// What the builders need of the host: the working drawing and its curve services.
struct BuildContext {
  host::Drawing& drawing;
  const host::CurveServices& curves;
  BuildContext(host::Drawing& d, const host::CurveServices& c) : drawing(d), curves(c) {}
  BuildContext(const host::Host& h) : drawing(h.drawing), curves(h.curves) {}  // NOLINT: implicit on purpose
};

// Colour numbers the builders take: 0 or 256 by layer, 1..255 an index
// colour, anything else (callers pass -1) the drawing's current colour.
inline constexpr int kColorByLayer = 256;
inline constexpr int kColorCurrent = -1;
host::Color resolveColor(int colorNumber, const host::Drawing& drawing);

// A curve through the points, appended to the target drawing (the working
// drawing when target is null): nothing for fewer than 2 points; a line from
// the first to the last point when there are 2 or the points are collinear by
// the unsigned-angle rule (every direction from the first point makes the same
// angle with +X within 0.001 rad, so points mirrored about the X axis through
// the first point count as collinear); otherwise a polyline or a fitted spline
// as the curve-kind flag says. Tangents apply to the spline only. True when an
// entity was appended.
bool makeCurveByPoints(BuildContext ctx, host::Drawing* target, const ge::PointList& points, int colorNumber,
                       bool closed, const ge::Vector3d& startTangent, const ge::Vector3d& endTangent);

// The shape makeCurveByPoints (without tangents) appends for the points,
// made but not appended; nothing when it would append nothing.
std::optional<host::EntityData> curveShapeByPoints(const host::CurveServices& curves, const ge::PointList& points,
                                                   bool closed);

// A straight-segment polyline through the points with the drawing's default
// properties: lightweight when consecutive z values differ by at most 0.0001
// (elevation of the first point), else a simple 3D polyline. Appended beside
// the source entity when one is given, else to the current space. True when
// an entity was appended.
bool buildPolyline(BuildContext ctx, host::ObjectId source, const ge::PointList& points, bool closed);

// A degree-3 spline through the points as fit points with fit tolerance 0,
// with end tangents only when both have non-zero length; a closed request
// gives a closed 3D polyline through the points instead. The colour is set
// and the entity appended to the target drawing (working when null).
bool buildFitSpline(BuildContext ctx, host::Drawing* target, const ge::PointList& points, const host::Color& color,
                    bool closed, const ge::Vector3d& startTangent, const ge::Vector3d& endTangent);

}  // namespace geom
