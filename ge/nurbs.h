#pragma once
// Non-uniform rational B-spline curves: evaluation of points and derivatives
// (Piegl & Tiller, The NURBS Book, algorithms A2.1 and A2.3 in homogeneous form).
#include <vector>

#include "ge/point.h"

namespace ge {

struct Nurbs {
  int degree = 3;
  std::vector<double> knots;            // size = controlPoints + degree + 1
  std::vector<Point3d> controlPoints;
  std::vector<double> weights;          // empty: all 1

  // Parameter range over which the curve is defined (works for clamped and
  // for the unclamped knot vectors of periodic splines).
  double startParam() const { return knots[degree]; }
  double endParam() const { return knots[controlPoints.size()]; }
  // True when the data describes a curve that can be evaluated: sizes agree,
  // the degree is at most 25, knots never decrease and the range is not
  // empty, weights are positive, everything is finite.
  bool isValid() const;
};

// Point at a parameter; parameters outside the range are clamped.
Point3d nurbsPoint(const Nurbs& n, double u);
// First and second derivatives with respect to the parameter.
Vector3d nurbsDeriv(const Nurbs& n, double u);
Vector3d nurbsSecondDeriv(const Nurbs& n, double u);
// Distinct knot values inside the range, both ends included: the curve is
// polynomial (or rational) between consecutive breakpoints.
std::vector<double> nurbsBreakpoints(const Nurbs& n);

}  // namespace ge
