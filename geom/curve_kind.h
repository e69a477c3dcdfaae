#pragma once
// The process-wide curve-kind flag: whether a multi-point result is written as
// a fitted spline (true, the initial value) or as a polyline (false).
namespace geom {

bool curveKindIsSpline();
void setCurveKindIsSpline(bool spline);

}  // namespace geom
