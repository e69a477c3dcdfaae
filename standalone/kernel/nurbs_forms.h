#pragma once
// NURBS forms of the kernel's pieces: exact rational arcs and whole bulged
// polylines as one degree-2 curve.
#include "standalone/kernel/nurbs.h"
#include "standalone/kernel/path.h"

namespace standalone::kernel {

// Rational quadratic arc c + cos t·u + sin t·v for t from start over sweep
// (> 0), in pieces of at most a quarter turn; knots in the parameter t.
Nurbs conicArc(const ge::Point3d& c, const ge::Vector3d& u, const ge::Vector3d& v, double start, double sweep);

// One rational degree-2 curve through a path of lines and circular arcs,
// piece i over the parameters i .. i+1. Nothing for other pieces.
std::optional<Nurbs> nurbsOfBulgedPath(const Path& path);

}  // namespace standalone::kernel
