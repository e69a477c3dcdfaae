#pragma once
// Extents of entities placed by an affine map (block references: scale,
// rotation, normal, arrays; non-uniform scales included) and of block
// references from their block's contents.
#include <optional>

#include "ge/extents.h"
#include "ge/matrix.h"
#include "host/curves.h"
#include "host/entity.h"

namespace standalone::kernel {

// Block references nested deeper than this are not looked into (and a block
// that refers to itself stops here).
inline constexpr int kMaxBlockNesting = 16;

// Maps block coordinates into the world for a reference (its first array
// cell): the base point moved to the origin, scaled, rotated about the
// reference's normal, placed in its OCS at its position.
ge::Matrix3d blockTransform(const host::BlockReference& ref, const ge::Point3d& basePoint);

// World offset between neighbouring array cells: along the rotated X axis of
// the reference for columns, along its rotated Y axis for rows (spacings in
// drawing units, not scaled).
ge::Vector3d arrayColumnStep(const host::BlockReference& ref);
ge::Vector3d arrayRowStep(const host::BlockReference& ref);

// Extents of an entity mapped by m. Curves and hatch boundaries are mapped
// piece by piece (an arc under a non-uniform scale becomes the elliptical arc
// it is), texts and images by the corners of their box, block references
// through blocks (nothing beyond kMaxBlockNesting); other kinds by the
// corners of their own extents.
// Nothing when the entity has no extents.
std::optional<ge::Extents3d> mappedExtents(const host::CurveServices& curves, const host::EntityData& e,
                                           const ge::Matrix3d& m, const host::BlockContentsLookup& blocks);

}  // namespace standalone::kernel
