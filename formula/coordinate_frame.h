#pragma once
// The graduated coordinate frame drawn around a formula curve ("Draw UCS").
#include <optional>

#include "formula/draw.h"

namespace formula {

// How far the frame reaches on each side of its origin, in drawing units; the
// negative sides as negative numbers (negX <= 0 <= posX, negY <= 0 <= posY).
struct FrameReach {
  double negX = 0, posX = 0, negY = 0, posY = 0;
};

// The box of the given entities measured from the origin; nothing when none of
// them has extents.
std::optional<FrameReach> reachAround(const host::Host& host, const DrawnIds& ids, const ge::Point3d& origin);

// Tick spacing for a frame of that reach: 1, 2 or 5 times a power of ten, at
// least 1, giving about five ticks on the longest half-axis.
double tickStep(const FrameReach& reach);

// Draws the two axes through the origin over the reach (rounded out to whole
// ticks), a tick mark at every step and its distance from the origin as a "%d"
// label: below the X axis (top, middle alignment), left of the Y axis (middle,
// right alignment). Returns the ids of the lines and texts.
DrawnIds drawCoordinateFrame(const host::Host& host, const ge::Point3d& origin, const FrameReach& reach);

}  // namespace formula
