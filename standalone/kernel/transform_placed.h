#pragma once
// transformBy for the placed kinds: texts, multi-line texts, block references,
// hatches and images. Texts and block references keep their kind only under
// similarities (move, turn, uniform scale, mirror); an image takes any affine map.
#include "ge/matrix.h"
#include "host/entity.h"

namespace standalone::kernel {

// True when every element of the matrix is a finite number.
bool isFinite(const ge::Matrix3d& m);

// Transforms a TEXT, MTEXT, INSERT, HATCH or IMAGE in place; false (entity
// unchanged) for other kinds or a map the kind cannot follow. A mirrored TEXT
// reads backwards: its backward flag toggles and it turns to the mirrored
// direction. A mirrored MTEXT, which has no such flag, gets the flipped
// normal. A mirrored block reference gets a negative X scale. A hatch follows
// as transformHatch says, its pattern mirrored with it.
bool transformPlaced(host::EntityData& e, const ge::Matrix3d& m);

// The direction a TEXT's baseline runs along (its rotation in its OCS), a unit vector in WCS.
ge::Vector3d textDirection(const host::Text& t);

}  // namespace standalone::kernel
