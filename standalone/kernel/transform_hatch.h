#pragma once
// A hatch under a map of the drawing: its boundary, pattern lines and seed
// points, in the hatch's object coordinates.
#include "ge/matrix.h"
#include "host/entity.h"

namespace standalone::kernel {

// How a pattern follows a map that reverses orientation.
enum class MirroredPattern {
  kMirror,  // the pattern is mirrored with the boundary
  kKeep,    // the pattern keeps its direction: its lines are only carried
            // along with the pattern's origin (and scaled)
};

// Transforms a hatch in place; false (hatch unchanged) for a map that does
// not carry its plane onto itself with the same normal (a move, a turn
// about the normal, a uniform scale, a mirror across a line in the plane).
// Pattern lines turn and scale with the map: angles, base points, offsets and
// dash lengths; the pattern's angle and scale follow.
bool transformHatch(host::Hatch& h, const ge::Matrix3d& m, MirroredPattern mirrored = MirroredPattern::kMirror);

}  // namespace standalone::kernel
