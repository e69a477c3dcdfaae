#pragma once
// Arithmetic of dividing curves and numbering their vertices.
#include <optional>
#include <vector>

#include "ge/point.h"

namespace commands {

// Distances along a curve of length L for N points at equal spacing, both ends
// included: i * L / (N - 1) for i = 0 .. N - 1 (N >= 2).
std::vector<double> distancesForCount(double length, int count);

// A spacing d is refused when it exceeds a quarter of the curve's length
// (exactly a quarter is accepted).
bool spacingTooLong(double length, double spacing);

// The number of points when dividing a curve of length L every d:
// trunc(L / d + 1), so the remainder joins the last piece.
int countForSpacing(double length, double spacing);

// Distances i * d for i = 0 .. count - 1.
std::vector<double> distancesForSpacing(double spacing, int count);

// The lower-left rule of vertex numbering: the list is to be reversed when its
// first point lies right of its last, or level with it (|dx| < 0.0001) and above it.
bool startsAtUpperRight(const ge::PointList& points);

}  // namespace commands
