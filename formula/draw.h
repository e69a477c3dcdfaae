#pragma once
// Drawing a formula curve into the working drawing, replacing the previous one.
#include <array>
#include <vector>

#include "formula/catalogue.h"
#include "ge/point.h"
#include "host/host.h"

namespace formula {

// The entities of the last drawing, erased before the next one.
using DrawnIds = std::vector<host::ObjectId>;

// The slot values a generator of the row receives: each forced into the row's
// range, so a hidden slot that kept another curve's value still reads sensibly.
std::array<int, kParamCount> generatorParams(int row, const std::array<int, kParamCount>& values);

// Erases the entities in drawn (ids that no longer exist are skipped) and
// empties it, generates the row at the origin, hands each point list to the
// curve maker (current colour, the heart in colour 1; spline or polyline as the
// curve-kind flag says), records the new ids in drawn and refreshes the
// display. An index outside 0..70 does nothing at all. Returns the number of
// entities made.
int drawFormulaCurve(const host::Host& host, int row, const ge::Point3d& origin,
                     const std::array<int, kParamCount>& values, DrawnIds& drawn);

// Appends each point list through the curve maker with the given colour and
// closed flag; returns the ids of the entities made, in order.
DrawnIds makeCurves(const host::Host& host, const std::vector<ge::PointList>& lists, int color, bool closed);

}  // namespace formula
