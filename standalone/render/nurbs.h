#pragma once
// Splines and helices as point lists for drawing; the curves are evaluated
// by the kernel's NURBS code.
#include <optional>
#include <vector>

#include "ge/point.h"
#include "host/entity.h"
#include "ge/nurbs.h"

namespace standalone {

// Points along the curve: samplesPerSpan in every knot span of non-zero
// length, first and last points included. Nothing when the curve's data is
// not usable (the kernel's validity rule).
std::optional<ge::PointList> sampleNurbs(const ge::Nurbs& c, int samplesPerSpan);

// Points to draw a spline: its NURBS when the control data is usable, else the
// polyline through its fit points, else its control polygon.
ge::PointList splineDrawingPoints(const host::Spline& s);

// Points to draw a helix: its spline, or the turns computed from its axis,
// radii and turn count when the spline holds no usable data.
ge::PointList helixDrawingPoints(const host::Helix& h);

}  // namespace standalone
