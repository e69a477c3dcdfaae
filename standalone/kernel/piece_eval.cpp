#include "standalone/kernel/piece_eval.h"

#include <algorithm>
#include <cmath>

#include "standalone/kernel/integrate.h"

namespace standalone::kernel {

namespace {

double fraction(const Piece& p, double u) { return p.p1 > p.p0 ? (u - p.p0) / (p.p1 - p.p0) : 0.0; }

double arcAngle(const ArcPiece& a, const Piece& p, double u) { return a.start + a.sweep * fraction(p, u); }

// Speed |C'(u)| of a free-form piece.
double speed(const Piece& p, double u) { return pieceDeriv(p, u).length(); }

// Length of a free-form piece between two parameters, integrated between its breakpoints.
double freeFormLength(const Piece& p, double a, double b) {
  if (b <= a) return 0.0;
  auto bps = pieceBreakpoints(p);
  double total = 0.0;
  for (size_t i = 0; i + 1 < bps.size(); ++i) {
    double lo = std::max(a, bps[i]), hi = std::min(b, bps[i + 1]);
    if (hi > lo) total += integrate([&](double u) { return speed(p, u); }, lo, hi);
  }
  return total;
}

}  // namespace

bool isAnalytic(const Piece& p) {
  return std::holds_alternative<LinePiece>(p.geometry) || std::holds_alternative<ArcPiece>(p.geometry);
}

ge::Point3d piecePoint(const Piece& p, double u) {
  if (auto* l = std::get_if<LinePiece>(&p.geometry)) return l->a + (l->b - l->a) * fraction(p, u);
  if (auto* a = std::get_if<ArcPiece>(&p.geometry)) {
    double t = arcAngle(*a, p, u);
    return a->center + (a->x * std::cos(t) + a->y * std::sin(t)) * a->radius;
  }
  if (auto* e = std::get_if<EllipsePiece>(&p.geometry)) return e->center + e->major * std::cos(u) + e->minor * std::sin(u);
  return nurbsPoint(std::get<Nurbs>(p.geometry), u);
}

ge::Vector3d pieceDeriv(const Piece& p, double u) {
  double range = p.p1 - p.p0;
  if (auto* l = std::get_if<LinePiece>(&p.geometry)) return range > 0 ? (l->b - l->a) / range : ge::Vector3d{};
  if (auto* a = std::get_if<ArcPiece>(&p.geometry)) {
    double t = arcAngle(*a, p, u);
    double dt = range > 0 ? a->sweep / range : 0.0;
    return (a->x * -std::sin(t) + a->y * std::cos(t)) * (a->radius * dt);
  }
  if (auto* e = std::get_if<EllipsePiece>(&p.geometry)) return e->major * -std::sin(u) + e->minor * std::cos(u);
  return nurbsDeriv(std::get<Nurbs>(p.geometry), u);
}

ge::Vector3d pieceSecondDeriv(const Piece& p, double u) {
  double range = p.p1 - p.p0;
  if (std::holds_alternative<LinePiece>(p.geometry)) return {};
  if (auto* a = std::get_if<ArcPiece>(&p.geometry)) {
    double t = arcAngle(*a, p, u);
    double dt = range > 0 ? a->sweep / range : 0.0;
    return (a->x * std::cos(t) + a->y * std::sin(t)) * (-a->radius * dt * dt);
  }
  if (auto* e = std::get_if<EllipsePiece>(&p.geometry)) return (e->major * std::cos(u) + e->minor * std::sin(u)) * -1.0;
  return nurbsSecondDeriv(std::get<Nurbs>(p.geometry), u);
}

double pieceLengthTo(const Piece& p, double u) {
  u = std::clamp(u, p.p0, p.p1);
  if (auto* l = std::get_if<LinePiece>(&p.geometry)) return l->a.distanceTo(l->b) * fraction(p, u);
  if (auto* a = std::get_if<ArcPiece>(&p.geometry)) return a->radius * std::abs(a->sweep) * fraction(p, u);
  return freeFormLength(p, p.p0, u);
}

double pieceLength(const Piece& p) { return pieceLengthTo(p, p.p1); }

double pieceParamAtLength(const Piece& p, double s) {
  if (p.p1 <= p.p0) return p.p0;
  if (isAnalytic(p)) {
    double len = pieceLength(p);
    return len > 0 ? p.p0 + (p.p1 - p.p0) * std::clamp(s / len, 0.0, 1.0) : p.p0;
  }
  // Free form: find the smooth interval holding s, then Newton on the length
  // with bisection as a safeguard.
  auto bps = pieceBreakpoints(p);
  double acc = 0.0;
  for (size_t i = 0; i + 1 < bps.size(); ++i) {
    double lo = bps[i], hi = bps[i + 1];
    double len = freeFormLength(p, lo, hi);
    if (acc + len < s && i + 2 < bps.size()) {
      acc += len;
      continue;
    }
    double target = std::clamp(s - acc, 0.0, len);
    double a = lo, b = hi, u = lo + (hi - lo) * (len > 0 ? target / len : 0.0);
    double tol = 1e-15 * std::max({std::abs(lo), std::abs(hi), hi - lo});
    for (int it = 0; it < 60; ++it) {
      double f = freeFormLength(p, lo, u) - target;
      if (std::abs(f) <= 1e-14 * std::max(len, 1e-300)) break;
      if (f > 0) b = u; else a = u;
      double v = speed(p, u);
      double next = v > 0 ? u - f / v : (a + b) / 2;
      if (!(next > a && next < b)) next = (a + b) / 2;
      if (std::abs(next - u) <= tol) { u = next; break; }
      u = next;
    }
    return u;
  }
  return p.p1;
}

std::vector<double> pieceBreakpoints(const Piece& p) {
  if (auto* n = std::get_if<Nurbs>(&p.geometry)) {
    auto b = nurbsBreakpoints(*n);
    b.front() = std::max(b.front(), p.p0);
    b.back() = std::min(b.back(), p.p1);
    return b;
  }
  if (std::holds_alternative<EllipsePiece>(p.geometry)) {
    // Quarter turns keep the integrand smooth and the quadrature short.
    std::vector<double> b{p.p0};
    int parts = std::max(1, static_cast<int>(std::ceil((p.p1 - p.p0) / (std::numbers::pi / 2))));
    for (int i = 1; i < parts; ++i) b.push_back(p.p0 + (p.p1 - p.p0) * i / parts);
    b.push_back(p.p1);
    return b;
  }
  return {p.p0, p.p1};
}

size_t pieceIndexAt(const Path& path, double u) {
  const auto& ps = path.pieces;
  auto it = std::upper_bound(ps.begin(), ps.end(), u, [](double v, const Piece& p) { return v < p.p1; });
  if (it == ps.end()) return ps.size() - 1;
  return static_cast<size_t>(it - ps.begin());
}

}  // namespace standalone::kernel
