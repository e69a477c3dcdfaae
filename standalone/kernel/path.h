#pragma once
// A curve of any kind as a chain of pieces, each owning a range of the host's
// parameter: lines and circular arcs for the bulged kinds, an elliptical arc,
// or a NURBS curve. Every query of the kernel works on this form.
#include <optional>
#include <variant>
#include <vector>

#include "ge/extents.h"
#include "ge/point.h"
#include "host/entity.h"
#include "standalone/kernel/nurbs.h"
#include "standalone/kernel/ocs.h"

namespace standalone::kernel {

// Straight piece; the parameter runs linearly in length.
struct LinePiece {
  ge::Point3d a, b;
};

// Circular arc c + r(cos θ x + sin θ y), θ from start to start + sweep; the
// sweep is negative for an arc that runs clockwise about x × y. The parameter
// runs linearly in θ.
struct ArcPiece {
  ge::Point3d center;
  ge::Vector3d x, y;  // orthonormal
  double radius = 0;
  double start = 0, sweep = 0;
  ge::Vector3d normal() const { return x.cross(y); }
};

// Elliptical arc c + cos t·major + sin t·minor; the parameter is t itself.
struct EllipsePiece {
  ge::Point3d center;
  ge::Vector3d major, minor;
};

using PieceGeometry = std::variant<LinePiece, ArcPiece, EllipsePiece, Nurbs>;

struct Piece {
  PieceGeometry geometry;
  double p0 = 0, p1 = 0;  // host parameter range of this piece, p1 >= p0
};

struct Path {
  std::vector<Piece> pieces;
  bool closed = false;
  // Normal of the curve's plane for the planar kinds (the entity's own normal);
  // empty for kinds that may leave a plane (3D polylines, splines, helices).
  std::optional<ge::Vector3d> normal;
  double startParam() const { return pieces.front().p0; }
  double endParam() const { return pieces.back().p1; }
};

// The path of a curve entity; nothing for entities that are not curves or
// cannot be evaluated (no vertices, inconsistent spline data).
std::optional<Path> pathOf(const host::EntityData& e);

// Bulged segment from a to b (OCS 2D points at elevation z of the OCS frame f), as a world piece.
Piece bulgeSegment(const ge::Point2d& a, const ge::Point2d& b, double bulge, double z, const Frame& f, double p0,
                   double p1);

// The NURBS of a spline record: its control data, or when it has only fit
// points, the interpolating curve through them. Nothing when unusable.
std::optional<Nurbs> nurbsOf(const host::Spline& s);

}  // namespace standalone::kernel
