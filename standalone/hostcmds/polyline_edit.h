#pragma once
// The host's polyline edit command PEDIT over the embedded drawing: one
// polyline or Multiple over a selection set, with Close, Open, Width, Fit, Spline,
// Decurve, Reverse, Ltype gen and Undo on lightweight, 2D and 3D polylines;
// Multiple offers to turn selected lines, arcs and splines into polylines.
#include "standalone/editor/host_commands.h"

namespace standalone {

// Adds PEDIT to the runner.
void addPolylineEditCommands(HostCommandRunner& runner);

// Width edit of every segment: a lightweight polyline gets one constant
// width, a 2D polyline the width at every vertex; false for other kinds.
bool setUniformWidth(host::EntityData& polyline, double width);
// Close or open a polyline record; false for other kinds.
bool setPolylineClosed(host::EntityData& polyline, bool closed);
// Removes spline or curve fitting: a 2D polyline keeps its frame vertices only.
bool decurvePolyline(host::EntityData& polyline);

}  // namespace standalone
