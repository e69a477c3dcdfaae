#pragma once
// R12 DXF has no ELLIPSE, SPLINE, HELIX or MTEXT. Saving such entities into
// an R12 drawing writes what that version can hold instead, as AutoCAD's own
// save to R12 does: curves become polylines through points on the curve,
// multi-line text becomes single-line text.
#include <optional>

#include "host/entity.h"

namespace standalone {

// The R12 stand-in for an entity R12 cannot hold: a Polyline2d (planar with
// the world Z normal), a Polyline3d, or a Text; nothing for the kinds without
// a stand-in (HATCH, IMAGE) and for the kinds R12 has anyway.
std::optional<host::EntityData> r12StandIn(const host::EntityData& data);

}  // namespace standalone
