#pragma once
// Turning curves into point lists: length, equal-length samples, vertices.
#include "ge/point.h"
#include "host/curves.h"

namespace geom {

// Length of a curve: the distance at its end parameter; 0 when either query fails.
double curveLength(const host::CurveServices& curves, const host::EntityData& curve);

// Points at equal arc length along a curve, first and last included: `count`
// points, or 16 when count < 4; the last point is the curve's end point. A null
// curve or a curve shorter than 0.0001 fails and leaves `points` empty.
bool sampleCurveByLength(const host::CurveServices& curves, const host::EntityData* curve, int count,
                         ge::PointList& points);

// The entity's own vertices in order: world points of a lightweight polyline,
// the stored vertex positions of a 2D polyline (object coordinates, every
// vertex in stored order) and of a 3D polyline. Other kinds give an empty list
// and false.
bool getVertexList(const host::EntityData& entity, ge::PointList& points);

}  // namespace geom
