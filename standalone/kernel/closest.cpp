// Closest points: closed forms for lines and arcs, sampling plus a Newton
// refinement of (C(u) - P)·C'(u) = 0 for free-form pieces.
#include <algorithm>
#include <cmath>

#include "standalone/kernel/path_query.h"
#include "standalone/kernel/piece_eval.h"

namespace standalone::kernel {

namespace {

ClosestPoint onLine(const Piece& piece, const LinePiece& l, const ge::Point3d& p) {
  ge::Vector3d d = l.b - l.a;
  double len2 = d.dot(d);
  double t = len2 > 0 ? std::clamp((p - l.a).dot(d) / len2, 0.0, 1.0) : 0.0;
  ge::Point3d q = l.a + d * t;
  return {piece.p0 + (piece.p1 - piece.p0) * t, q, q.distanceTo(p)};
}

ClosestPoint better(const ClosestPoint& a, const ClosestPoint& b) { return b.distance < a.distance ? b : a; }

ClosestPoint at(const Piece& piece, double u, const ge::Point3d& p) {
  ge::Point3d q = piecePoint(piece, u);
  return {u, q, q.distanceTo(p)};
}

ClosestPoint onArc(const Piece& piece, const ArcPiece& a, const ge::Point3d& p) {
  ClosestPoint best = better(at(piece, piece.p0, p), at(piece, piece.p1, p));
  ge::Vector3d v = p - a.center;
  double px = v.dot(a.x), py = v.dot(a.y);
  if (px == 0 && py == 0) return best;  // at the centre every point is as near
  double phi = std::atan2(py, px);
  // Fraction of the sweep at which the arc passes the angle phi.
  double rel = a.sweep >= 0 ? phi - a.start : a.start - phi;
  rel = std::fmod(rel, 2 * std::numbers::pi);
  if (rel < 0) rel += 2 * std::numbers::pi;
  double f = rel / std::abs(a.sweep);
  if (f <= 1.0 && a.sweep != 0) best = better(best, at(piece, piece.p0 + (piece.p1 - piece.p0) * f, p));
  return best;
}

// Root of g(u) = (C(u) - P)·C'(u) inside [lo, hi] where g changes sign,
// by Newton steps kept inside the bracket.
double refineFootParam(const Piece& piece, const ge::Point3d& p, double lo, double hi) {
  auto g = [&](double u) { return (piecePoint(piece, u) - p).dot(pieceDeriv(piece, u)); };
  double glo = g(lo);
  double u = (lo + hi) / 2;
  for (int it = 0; it < 80; ++it) {
    ge::Vector3d d1 = pieceDeriv(piece, u), d2 = pieceSecondDeriv(piece, u);
    ge::Vector3d r = piecePoint(piece, u) - p;
    double gu = r.dot(d1), dg = d1.dot(d1) + r.dot(d2);
    if (gu == 0) return u;
    if ((gu < 0) == (glo < 0)) { lo = u; glo = gu; } else hi = u;
    double next = dg != 0 ? u - gu / dg : (lo + hi) / 2;
    if (!(next > lo && next < hi)) next = (lo + hi) / 2;
    if (std::abs(next - u) <= 1e-16 * std::max({std::abs(u), hi - lo, 1e-300})) return next;
    u = next;
    if (hi - lo <= 1e-16 * std::max(std::abs(u), 1e-300)) break;
  }
  return u;
}

ClosestPoint onFreeForm(const Piece& piece, const ge::Point3d& p) {
  auto bps = pieceBreakpoints(piece);
  ClosestPoint best = at(piece, piece.p0, p);
  constexpr int kSamplesPerSpan = 24;
  for (size_t i = 0; i + 1 < bps.size(); ++i) {
    double a = bps[i], b = bps[i + 1];
    auto g = [&](double u) { return (piecePoint(piece, u) - p).dot(pieceDeriv(piece, u)); };
    double prevU = a, prevG = g(a);
    best = better(best, at(piece, a, p));
    for (int k = 1; k <= kSamplesPerSpan; ++k) {
      double u = a + (b - a) * k / kSamplesPerSpan;
      double gu = g(u);
      best = better(best, at(piece, u, p));
      // A minimum of the distance lies where g goes from negative to positive.
      if (prevG < 0 && gu > 0) best = better(best, at(piece, refineFootParam(piece, p, prevU, u), p));
      prevU = u;
      prevG = gu;
    }
  }
  return best;
}

}  // namespace

ClosestPoint closestPoint(const Path& path, const ge::Point3d& p) {
  ClosestPoint best{path.startParam(), pointAtParam(path, path.startParam()), 0};
  best.distance = best.point.distanceTo(p);
  for (const auto& piece : path.pieces) {
    ClosestPoint c;
    if (auto* l = std::get_if<LinePiece>(&piece.geometry)) c = onLine(piece, *l, p);
    else if (auto* a = std::get_if<ArcPiece>(&piece.geometry)) c = onArc(piece, *a, p);
    else c = onFreeForm(piece, p);
    best = better(best, c);
  }
  return best;
}

}  // namespace standalone::kernel
