#pragma once
// R12 DXF has no ELLIPSE, SPLINE, HELIX, MTEXT, HATCH or IMAGE. Saving such
// entities into an R12 drawing writes what that version can hold instead:
// curves become polylines through points on the curve, multi-line text
// becomes single-line text, a hatch its boundaries and an image its frame.
#include <optional>
#include <vector>

#include "host/entity.h"

namespace standalone {

// The R12 stand-ins for an entity R12 cannot hold, in drawing order:
// Polyline2d, Polyline3d or Text records (several for a hatch with several
// boundaries, none for a hatch without any); nothing for the kinds R12 has.
std::optional<std::vector<host::EntityData>> r12StandIns(const host::EntityData& data);

}  // namespace standalone
