#pragma once
// The entities of a hole net in the drawing. A hole of extent e centred at p:
// a circle of diameter e; a square of side e with its sides along the axes;
// a diamond (the square turned by 45 degrees) whose diagonals, along the
// axes, are e long; or a copy of a chosen entity scaled so that the larger
// side of its extents is e, its extents' centre moved to p.
#include <optional>

#include "ge/extents.h"
#include "ge/matrix.h"
#include "ge/point.h"
#include "host/entity.h"

namespace image {

enum class HoleShape { kCircle = 0, kSquare = 1, kDiamond = 2, kCopy = 3 };

// Hole size factor of the "Size:" value (percent): the preview and the drawing
// both use size × 3 / 100 of the darkness-scaled cell, so 33 lets a black cell's
// hole just fill its cell.
inline double sizeFactor(int size) { return size * 3 / 100.0; }

// A circle, square or diamond hole (shape kCopy gives nothing: see copyTransform).
std::optional<host::EntityData> holeEntity(HoleShape shape, const ge::Point3d& centre, double extent);

// The transformation that places a copy of an entity with the given extents
// as a hole of extent e at p; nothing when the extents are empty or have no size.
std::optional<ge::Matrix3d> copyTransform(const ge::Extents3d& extents, const ge::Point3d& centre, double extent);

}  // namespace image
