#pragma once
// The records that follow some entities in DXF: VERTEX ... SEQEND after a
// POLYLINE, ATTRIB ... SEQEND after an INSERT.
#include "standalone/db/dxf_entity_reader.h"

namespace standalone {

// Reads the VERTEX and SEQEND records after a POLYLINE whose 70 flags are
// given, turning the record into a 2D or 3D polyline (or an uninterpreted
// mesh). Groups the records have no field for are kept per vertex.
void readPolylineVertices(TagReader& r, EntityRecord& rec, EntityReadContext& ctx, int flags);
// Takes the ATTRIB ... SEQEND records after an INSERT as one span of bytes.
void readAttributes(TagReader& r, EntityRecord& rec, EntityReadContext& ctx);
// True when the next group is a 0 group of the given type.
bool nextIs(TagReader& r, std::string_view type);

}  // namespace standalone
