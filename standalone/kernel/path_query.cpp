#include "standalone/kernel/path_query.h"

#include <algorithm>
#include <cmath>

#include "standalone/kernel/integrate.h"
#include "standalone/kernel/piece_eval.h"
#include "standalone/kernel/tolerance.h"

namespace standalone::kernel {

double pathLength(const Path& path) {
  double s = 0;
  for (const auto& p : path.pieces) s += pieceLength(p);
  return s;
}

bool paramInRange(const Path& path, double u) {
  double a = path.startParam(), b = path.endParam();
  double slack = 1e-12 * std::max({std::abs(a), std::abs(b), 1.0});
  return u >= a - slack && u <= b + slack;
}

double distAtParam(const Path& path, double u) {
  double s = 0;
  for (const auto& p : path.pieces) {
    if (u >= p.p1) {
      s += pieceLength(p);
      continue;
    }
    return s + pieceLengthTo(p, u);
  }
  return s;
}

std::optional<double> paramAtDist(const Path& path, double dist) {
  double total = pathLength(path);
  double slack = 1e-12 * std::max(total, 1e-300);
  if (dist < -slack || dist > total + slack) return std::nullopt;
  double s = 0;
  for (const auto& p : path.pieces) {
    double len = pieceLength(p);
    if (dist <= s + len) return pieceParamAtLength(p, dist - s);
    s += len;
  }
  return path.endParam();
}

ge::Point3d pointAtParam(const Path& path, double u) {
  return piecePoint(path.pieces[pieceIndexAt(path, u)], u);
}

ge::Vector3d derivAtParam(const Path& path, double u) { return pieceDeriv(path.pieces[pieceIndexAt(path, u)], u); }

namespace {

void addArcExtremes(ge::Extents3d& e, const ArcPiece& a) {
  // Along each world axis k the arc's coordinate c_k + r(cos θ x_k + sin θ y_k)
  // is extreme where tan θ = y_k / x_k.
  double xs[3] = {a.x.x, a.x.y, a.x.z}, ys[3] = {a.y.x, a.y.y, a.y.z};
  double lo = std::min(a.start, a.start + a.sweep), hi = std::max(a.start, a.start + a.sweep);
  for (int k = 0; k < 3; ++k) {
    if (xs[k] == 0 && ys[k] == 0) continue;
    double t0 = std::atan2(ys[k], xs[k]);
    for (int h = 0; h < 2; ++h) {
      double t = t0 + h * std::numbers::pi;
      // Bring t into [lo, lo + 2π).
      t = lo + std::fmod(std::fmod(t - lo, 2 * std::numbers::pi) + 2 * std::numbers::pi, 2 * std::numbers::pi);
      if (t <= hi) e.add(a.center + (a.x * std::cos(t) + a.y * std::sin(t)) * a.radius);
    }
  }
}

void addEllipseExtremes(ge::Extents3d& e, const Piece& piece, const EllipsePiece& el) {
  double ms[3] = {el.major.x, el.major.y, el.major.z}, ns[3] = {el.minor.x, el.minor.y, el.minor.z};
  for (int k = 0; k < 3; ++k) {
    if (ms[k] == 0 && ns[k] == 0) continue;
    double t0 = std::atan2(ns[k], ms[k]);
    for (int h = -4; h <= 4; ++h) {
      double t = t0 + h * std::numbers::pi;
      if (t >= piece.p0 && t <= piece.p1) e.add(piecePoint(piece, t));
    }
  }
}

void addFreeFormExtremes(ge::Extents3d& e, const Piece& piece) {
  // Dense sampling per smooth span; each span of a cubic turns at most a few times.
  auto bps = pieceBreakpoints(piece);
  constexpr int kSamples = 64;
  for (size_t i = 0; i + 1 < bps.size(); ++i)
    for (int k = 0; k <= kSamples; ++k) e.add(piecePoint(piece, bps[i] + (bps[i + 1] - bps[i]) * k / kSamples));
}

}  // namespace

ge::Extents3d pathExtents(const Path& path) {
  ge::Extents3d e;
  for (const auto& piece : path.pieces) {
    e.add(piecePoint(piece, piece.p0));
    e.add(piecePoint(piece, piece.p1));
    if (auto* a = std::get_if<ArcPiece>(&piece.geometry)) addArcExtremes(e, *a);
    else if (auto* el = std::get_if<EllipsePiece>(&piece.geometry)) addEllipseExtremes(e, piece, *el);
    else if (std::holds_alternative<Nurbs>(piece.geometry)) addFreeFormExtremes(e, piece);
  }
  return e;
}

double pathScale(const Path& path) { return geometryScale(pathExtents(path)); }

std::optional<ge::Vector3d> pathPlaneNormal(const Path& path) {
  if (path.normal) return path.normal->normalized();
  // Newell's method over sample points, then a check that all lie in that plane.
  std::vector<ge::Point3d> pts;
  for (const auto& piece : path.pieces) {
    auto bps = pieceBreakpoints(piece);
    int per = isAnalytic(piece) ? 1 : 8;
    for (size_t i = 0; i + 1 < bps.size(); ++i)
      for (int k = 0; k < per; ++k) pts.push_back(piecePoint(piece, bps[i] + (bps[i + 1] - bps[i]) * k / per));
  }
  pts.push_back(pointAtParam(path, path.endParam()));
  ge::Vector3d n;
  for (size_t i = 0; i < pts.size(); ++i) {
    const auto& a = pts[i];
    const auto& b = pts[(i + 1) % pts.size()];
    n = n + ge::Vector3d{(a.y - b.y) * (a.z + b.z), (a.z - b.z) * (a.x + b.x), (a.x - b.x) * (a.y + b.y)};
  }
  if (n.length() == 0) return std::nullopt;
  n = n.normalized();
  double tol = pointTolerance(pathScale(path));
  for (const auto& p : pts)
    if (std::abs((p - pts[0]).dot(n)) > tol) return std::nullopt;
  return n;
}

namespace {

struct PlaneCoords {
  ge::Point3d origin;
  ge::Vector3d u, v;
  double cross(const ge::Vector3d& a, const ge::Vector3d& b) const {
    return a.dot(u) * b.dot(v) - a.dot(v) * b.dot(u);
  }
};

// Twice the signed area swept from the origin by a piece: ∫ (P - O) × P' du.
double twiceSweptArea(const PlaneCoords& pc, const Piece& piece) {
  if (auto* l = std::get_if<LinePiece>(&piece.geometry)) return pc.cross(l->a - pc.origin, l->b - pc.origin);
  if (auto* a = std::get_if<ArcPiece>(&piece.geometry)) {
    // P = C + r(cos θ X + sin θ Y): the integral splits into a chord part and r²·sweep·(X × Y).
    ge::Vector3d c = a->center - pc.origin;
    double s = a->start, e = a->start + a->sweep;
    return a->radius * ((std::cos(e) - std::cos(s)) * pc.cross(c, a->x) + (std::sin(e) - std::sin(s)) * pc.cross(c, a->y)) +
           a->radius * a->radius * a->sweep * pc.cross(a->x, a->y);
  }
  if (auto* el = std::get_if<EllipsePiece>(&piece.geometry)) {
    ge::Vector3d c = el->center - pc.origin;
    double s = piece.p0, e = piece.p1;
    return (std::cos(e) - std::cos(s)) * pc.cross(c, el->major) + (std::sin(e) - std::sin(s)) * pc.cross(c, el->minor) +
           (e - s) * pc.cross(el->major, el->minor);
  }
  double total = 0;
  auto bps = pieceBreakpoints(piece);
  for (size_t i = 0; i + 1 < bps.size(); ++i)
    total += integrate([&](double u) { return pc.cross(piecePoint(piece, u) - pc.origin, pieceDeriv(piece, u)); },
                       bps[i], bps[i + 1]);
  return total;
}

}  // namespace

double signedArea(const Path& path, const ge::Vector3d& normal) {
  ge::Vector3d n = normal.normalized();
  ge::Vector3d u = (std::abs(n.x) < 0.9 ? ge::kXAxis : ge::kYAxis).cross(n).normalized();
  PlaneCoords pc{pointAtParam(path, path.startParam()), u, n.cross(u)};
  double twice = 0;
  for (const auto& piece : path.pieces) twice += twiceSweptArea(pc, piece);
  // The closing chord runs back to the origin itself and sweeps no area.
  return twice / 2;
}

std::vector<ge::Point3d> pointsAtDists(const Path& path, const std::vector<double>& dists) {
  std::vector<ge::Point3d> out;
  out.reserve(dists.size());
  size_t i = 0;
  double before = 0;  // length of the pieces before piece i
  double len = pieceLength(path.pieces[0]);
  for (double d : dists) {
    while (d > before + len && i + 1 < path.pieces.size()) {
      before += len;
      len = pieceLength(path.pieces[++i]);
    }
    const Piece& p = path.pieces[i];
    out.push_back(piecePoint(p, pieceParamAtLength(p, std::clamp(d - before, 0.0, len))));
  }
  return out;
}

}  // namespace standalone::kernel
