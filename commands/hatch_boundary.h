#pragma once
// Boundaries of hatches restored as closed lightweight polylines: line and
// arc edges exactly (arcs as bulges), elliptic and spline edges as chains of
// short chords, islands as polylines of their own. Each edge is taken in
// whichever direction continues the chain, as writers differ on the running
// direction of clockwise edges.
#include <vector>

#include "host/curves.h"
#include "host/entity.h"

namespace commands {

// Chords per full turn of an elliptic edge; a spline edge gets as many per
// span of its knots. Either strays from the curve by well under 1/1000 of
// its size.
inline constexpr int kChordsPerTurn = 128;
inline constexpr int kChordsPerSpan = 64;

// The polyline of one boundary path, in the hatch's plane (elevation and
// normal); nothing for a path without geometry.
std::optional<host::LwPolyline> boundaryOfPath(const host::HatchPath& path, const host::Hatch& hatch,
                                               const host::CurveServices& curves);

}  // namespace commands
