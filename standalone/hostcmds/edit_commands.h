#pragma once
// The host's edit commands over the embedded drawing: MOVE, COPY, ROTATE,
// SCALE, MIRROR (honouring MIRRTEXT) and STRETCH. Every changed entity is
// written back through the drawing, so its persistent reactors hear of it.
#include <vector>

#include "ge/matrix.h"
#include "ge/point.h"
#include "host/curves.h"
#include "standalone/editor/host_commands.h"

namespace standalone {

// Adds MOVE, COPY, ROTATE, SCALE, MIRROR and STRETCH to the runner.
void addEditCommands(HostCommandRunner& runner);

// A TEXT or MTEXT mirrored so that it stays readable (MIRRTEXT 0): it takes
// the mirrored footprint, reading along whichever of the two mirrored axes
// lies closer to its old direction; a TEXT keeps its justification, an MTEXT
// swaps its attachment across the flipped axis. False for other kinds or a
// map that is not a mirror.
bool mirrorReadable(host::EntityData& text, const ge::Matrix3d& mirror);

// STRETCH of one entity: the points of it inside any of the crossing
// polygons move by the displacement. A line moves its ends, polylines and
// splines their vertices (fit points or control points), an arc its ends
// keeping its included angle; circles, ellipses, texts, blocks and other
// kinds move whole when their defining point is inside. A hatch wholly inside
// moves with its pattern; across the crossing its boundary is stretched and
// its pattern stays. False when nothing of it lay inside.
bool stretchEntity(host::EntityData& e, const std::vector<std::vector<ge::Point2d>>& crossings,
                   const ge::Vector3d& displacement, const host::CurveServices& curves);

}  // namespace standalone
