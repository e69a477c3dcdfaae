#pragma once
// Evaluation of single pieces at a host parameter: point, derivatives,
// length, parameter at a length, breakpoints for numerical work.
#include <vector>

#include "standalone/kernel/path.h"

namespace standalone::kernel {

ge::Point3d piecePoint(const Piece& p, double u);
// Derivative with respect to the host parameter.
ge::Vector3d pieceDeriv(const Piece& p, double u);
ge::Vector3d pieceSecondDeriv(const Piece& p, double u);
// Arc length from the piece's start p0 to parameter u.
double pieceLengthTo(const Piece& p, double u);
double pieceLength(const Piece& p);
// Parameter at arc length s from the piece's start (0 <= s <= length).
double pieceParamAtLength(const Piece& p, double s);
// Parameters between which the piece is smooth (at least p0 and p1).
std::vector<double> pieceBreakpoints(const Piece& p);
// True for lines and circular arcs, whose queries are closed forms.
bool isAnalytic(const Piece& p);

// Piece index holding parameter u (the last piece for u at the very end).
size_t pieceIndexAt(const Path& path, double u);

}  // namespace standalone::kernel
