#pragma once
// The attributes that follow a block reference in a DXF file (ATTRIB ...
// SEQEND) are kept as read; when the reference is moved, turned, scaled or
// mirrored, they are carried along by the same transform when written.
#include <string_view>

#include "host/entity.h"
#include "standalone/db/records.h"

namespace standalone {

// The placement part of a block reference.
InsertPlacement placementOf(const host::BlockReference& ref);

// The attribute records of `tail` (raw ATTRIB ... SEQEND text) with every
// ATTRIB's insertion and alignment points, height, width factor, rotation,
// oblique angle and normal mapped from one placement of their block reference
// to another. Groups in XDATA and embedded objects stay as they are; an
// ATTRIB the mapping would flatten (a zero scale) is left unchanged.
TagList attributesMoved(std::string_view tail, const InsertPlacement& from, const InsertPlacement& to);

}  // namespace standalone
