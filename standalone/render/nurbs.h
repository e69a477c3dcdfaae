#pragma once
// Evaluation of NURBS curves by de Boor's algorithm (Piegl and Tiller, The
// NURBS Book, A2.1/A4.1), for drawing splines and helices as point lists.
#include <optional>
#include <vector>

#include "ge/point.h"
#include "host/entity.h"

namespace standalone {

struct NurbsCurve {
  int degree = 3;
  std::vector<double> knots;  // controlPoints.size() + degree + 1 values, non-decreasing
  std::vector<ge::Point3d> controlPoints;
  std::vector<double> weights;  // empty when all are 1
};

// True when the data describes a curve we can evaluate (sizes agree, knots
// never decrease, the domain is not empty, weights are positive).
bool isEvaluable(const NurbsCurve& c);

// The point at parameter t, clamped to the domain [knots[degree], knots[n]].
// The curve must be evaluable.
ge::Point3d evaluate(const NurbsCurve& c, double t);

// Points along the curve: samplesPerSpan in every knot span of non-zero
// length, first and last points included. Nothing when not evaluable.
std::optional<ge::PointList> sampleNurbs(const NurbsCurve& c, int samplesPerSpan);

// Points to draw a spline: its NURBS when the control data is usable, else the
// polyline through its fit points, else its control polygon.
ge::PointList splineDrawingPoints(const host::Spline& s);

// Points to draw a helix: its spline, or the turns computed from its axis,
// radii and turn count when the spline holds no usable data.
ge::PointList helixDrawingPoints(const host::Helix& h);

}  // namespace standalone
