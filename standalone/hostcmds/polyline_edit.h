#pragma once
// The host's polyline edit command PEDIT over the embedded drawing: one
// polyline or Multiple over a selection set, with Close, Open, Width, Fit, Spline,
// Decurve, Reverse, Ltype gen, Undo, Join and Edit vertex (Next, Previous,
// Move, Insert) on lightweight, 2D and 3D polylines;
// Join over Multiple with a fuzz distance and a join type; Multiple offers
// to turn selected lines, arcs and splines into polylines.
#include <vector>

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

// Join: the pieces (lines and arcs in the XY plane, open lightweight
// polylines of the target's plane) whose ends meet the open target's ends
// are added end to end, turned round where needed, until none meets; used
// marks the pieces taken. A target whose ends come to meet is closed. The
// number of segments added.
int joinToPolyline(host::LwPolyline& target, const std::vector<host::EntityData>& pieces, std::vector<bool>& used);
// Join on a 2D polyline: it loses its fitting and takes what a lightweight
// polyline of its plane takes (2D polylines of its plane too, without their
// fitting); its own vertices keep their handles.
int joinTo2dPolyline(host::Polyline2d& target, const std::vector<host::EntityData>& pieces, std::vector<bool>& used);
// Join on a 3D polyline: it loses its fitting and takes, in any plane, lines,
// 3D polylines and 2D or lightweight polylines without arc segments, whose
// ends meet its ends; arcs and bulges are refused (a 3D polyline has none).
int joinTo3dPolyline(host::Polyline3d& target, const std::vector<host::EntityData>& pieces, std::vector<bool>& used);

// How Multiple's Join bridges ends that lie apart but within the fuzz
// distance: Extend trims or extends the two straight end segments to where
// they cross (ends on one line are bridged along it); Add puts a straight
// segment between the ends; Both extends where it can and adds elsewhere.
enum class JoinType { kExtend, kAdd, kBoth };

// Multiple's Join: every open polyline takes, at either end, the nearest end
// of another open polyline of its plane that lies within the fuzz distance,
// first polylines first, until no ends are that close. An extension whose
// crossing lies farther than the fuzz distance from either end is not made
// (Both adds a segment instead). joinedInto[i] is the index of the polyline
// that took polyline i, or i itself when it stays. A polyline whose ends
// come to meet is closed. The number of segments added, bridges included.
int joinPolylines(std::vector<host::LwPolyline>& polylines, double fuzz, JoinType type,
                  std::vector<std::size_t>& joinedInto);
// Edit vertex: moves a vertex (x and y; a 3D polyline's z too), or inserts
// one after it, splitting that segment into two straight ones. False for an
// index beyond the vertices or another kind.
bool moveVertex(host::EntityData& polyline, std::size_t index, const ge::Point3d& to);
bool insertVertexAfter(host::EntityData& polyline, std::size_t index, const ge::Point3d& at);
std::size_t vertexCount(const host::EntityData& polyline);

}  // namespace standalone
