// intersectWith: all intersection points of two curves. Coplanar curves are
// intersected in their plane, exactly for lines and arcs; free-form pieces are
// flattened to chords and each candidate is refined by Newton steps on the
// true curves. Curves in different planes meet where one crosses the other.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "standalone/kernel/curve_kernel.h"
#include "standalone/kernel/intersect2d.h"
#include "standalone/kernel/path_query.h"
#include "standalone/kernel/piece_eval.h"
#include "standalone/kernel/tolerance.h"

namespace standalone {

using host::ErrorStatus;
using namespace kernel;

namespace {

struct PlaneFrame {
  ge::Point3d origin;
  ge::Vector3d u, v, n;
  Vec2 to2(const ge::Point3d& p) const { return {(p - origin).dot(u), (p - origin).dot(v)}; }
  Vec2 to2(const ge::Vector3d& d) const { return {d.dot(u), d.dot(v)}; }
  ge::Point3d to3(Vec2 p) const { return origin + u * p.x + v * p.y; }
};

PlaneFrame frameOf(const ge::Point3d& origin, const ge::Vector3d& normal) {
  ge::Vector3d n = normal.normalized();
  ge::Vector3d u = (std::abs(n.x) < 0.9 ? ge::kXAxis : ge::kYAxis).cross(n).normalized();
  return {origin, u, n.cross(u), n};
}

bool isStraight(const Path& p, double tol) {
  ge::Point3d a = pointAtParam(p, p.startParam()), b = pointAtParam(p, p.endParam());
  // A closed path (or one without length) has no direction to be straight along.
  if (a.distanceTo(b) <= tol) return false;
  ge::Vector3d d = (b - a).normalized();
  for (const auto& piece : p.pieces) {
    auto* l = std::get_if<LinePiece>(&piece.geometry);
    if (!l) return false;
    if ((l->a - a).cross(d).length() > tol || (l->b - a).cross(d).length() > tol) return false;
  }
  return true;
}

// Plane the intersection can work in, if the two paths share one.
std::optional<PlaneFrame> commonPlane(const Path& a, const Path& b, double tol) {
  bool sa = isStraight(a, tol), sb = isStraight(b, tol);
  auto na = sa ? std::nullopt : pathPlaneNormal(a);
  auto nb = sb ? std::nullopt : pathPlaneNormal(b);
  ge::Point3d oa = pointAtParam(a, a.startParam()), ob = pointAtParam(b, b.startParam());
  auto liesIn = [&](const Path& p, const ge::Point3d& o, const ge::Vector3d& n) {
    for (const auto& piece : p.pieces)
      for (double u : {piece.p0, piece.p1})
        if (std::abs((piecePoint(piece, u) - o).dot(n)) > tol) return false;
    return true;
  };
  if (na && nb) {
    if (na->cross(*nb).length() > 1e-9 || std::abs((ob - oa).dot(*na)) > tol) return std::nullopt;
    return frameOf(oa, *na);
  }
  if (na && sb) return liesIn(b, oa, *na) ? std::optional(frameOf(oa, *na)) : std::nullopt;
  if (nb && sa) return liesIn(a, ob, *nb) ? std::optional(frameOf(ob, *nb)) : std::nullopt;
  if (sa && sb) {
    ge::Vector3d da = pointAtParam(a, a.endParam()) - oa, db = pointAtParam(b, b.endParam()) - ob;
    ge::Vector3d n = da.cross(db);
    if (n.length() <= 1e-12 * da.length() * db.length()) n = da.cross(ob - oa);  // parallel lines
    if (n.length() == 0) n = std::abs(da.normalized().z) < 0.9 ? da.cross(ge::kZAxis) : da.cross(ge::kXAxis);
    n = n.normalized();
    if (std::abs((ob - oa).dot(n)) > tol) return std::nullopt;  // skew lines
    return frameOf(oa, n);
  }
  return std::nullopt;
}

// A primitive of the planar intersection: exact, or a chord of a free-form piece.
struct Primitive {
  std::variant<Segment2, Arc2> shape;
  size_t piece = 0;
  double u0 = 0, u1 = 0;  // parameter range of a chord
  bool chord = false;
  double minX = 0, maxX = 0, minY = 0, maxY = 0;
};

void setBox(Primitive& p) {
  if (auto* s = std::get_if<Segment2>(&p.shape)) {
    if (!s->bounded) {
      p.minX = p.minY = -INFINITY;
      p.maxX = p.maxY = INFINITY;
      return;
    }
    p.minX = std::min(s->a.x, s->b.x), p.maxX = std::max(s->a.x, s->b.x);
    p.minY = std::min(s->a.y, s->b.y), p.maxY = std::max(s->a.y, s->b.y);
  } else {
    const auto& a = std::get<Arc2>(p.shape);
    p.minX = a.c.x - a.r, p.maxX = a.c.x + a.r, p.minY = a.c.y - a.r, p.maxY = a.c.y + a.r;
  }
}

// Chords per smooth span of a free-form piece: fine enough that a crossing
// is seldom missed, the refinement does the rest.
constexpr int kChordsPerSpan = 32;

std::vector<Primitive> primitivesOf(const Path& path, const PlaneFrame& f, bool extend) {
  std::vector<Primitive> out;
  for (size_t i = 0; i < path.pieces.size(); ++i) {
    const Piece& piece = path.pieces[i];
    if (auto* l = std::get_if<LinePiece>(&piece.geometry)) {
      out.push_back({Segment2{f.to2(l->a), f.to2(l->b), !extend}, i});
    } else if (auto* a = std::get_if<ArcPiece>(&piece.geometry); a && a->normal().cross(f.n).length() < 1e-9) {
      double sign = a->normal().dot(f.n) > 0 ? 1.0 : -1.0;
      Vec2 x2 = f.to2(a->x);
      double xAngle = std::atan2(x2.y, x2.x);
      out.push_back({Arc2{f.to2(a->center), a->radius, xAngle + sign * a->start, sign * a->sweep, !extend}, i});
    } else {
      auto bps = pieceBreakpoints(piece);
      for (size_t k = 0; k + 1 < bps.size(); ++k)
        for (int j = 0; j < kChordsPerSpan; ++j) {
          double u0 = bps[k] + (bps[k + 1] - bps[k]) * j / kChordsPerSpan;
          double u1 = bps[k] + (bps[k + 1] - bps[k]) * (j + 1) / kChordsPerSpan;
          out.push_back({Segment2{f.to2(piecePoint(piece, u0)), f.to2(piecePoint(piece, u1)), true}, i, u0, u1, true});
        }
    }
  }
  for (auto& p : out) setBox(p);
  return out;
}

std::vector<Vec2> intersectPrimitives(const Primitive& a, const Primitive& b, double tol) {
  // Chords are intersected with a generous tolerance: they only seed the refinement.
  double t = (a.chord || b.chord) ? tol * 1e3 : tol;
  if (auto* sa = std::get_if<Segment2>(&a.shape)) {
    if (auto* sb = std::get_if<Segment2>(&b.shape)) return intersectSegments(*sa, *sb, t);
    return intersectSegmentArc(*sa, std::get<Arc2>(b.shape), t);
  }
  const auto& aa = std::get<Arc2>(a.shape);
  if (auto* sb = std::get_if<Segment2>(&b.shape)) return intersectSegmentArc(*sb, aa, t);
  return intersectArcs(aa, std::get<Arc2>(b.shape), t);
}

double clampToPiece(const Piece& p, double u) { return std::clamp(u, p.p0, p.p1); }

// Newton steps on A(u) - B(v) = 0 (least squares in 3D). Returns the point on
// A when the two curves meet there within tol.
std::optional<ge::Point3d> refine(const Piece& pa, double u, const Piece& pb, double v, double tol) {
  for (int it = 0; it < 40; ++it) {
    ge::Vector3d r = piecePoint(pa, u) - piecePoint(pb, v);
    ge::Vector3d da = pieceDeriv(pa, u), db = pieceDeriv(pb, v) * -1.0;
    // Normal equations of the 3x2 system [da db] (du dv) = -r.
    double a11 = da.dot(da), a12 = da.dot(db), a22 = db.dot(db);
    double b1 = -da.dot(r), b2 = -db.dot(r);
    double det = a11 * a22 - a12 * a12;
    if (std::abs(det) <= 1e-300) break;
    double du = (b1 * a22 - b2 * a12) / det, dv = (a11 * b2 - a12 * b1) / det;
    double nu = clampToPiece(pa, u + du), nv = clampToPiece(pb, v + dv);
    bool done = std::abs(nu - u) <= 1e-15 * std::max(1.0, std::abs(u)) && std::abs(nv - v) <= 1e-15 * std::max(1.0, std::abs(v));
    u = nu, v = nv;
    if (done) break;
  }
  ge::Point3d p = piecePoint(pa, u);
  if (p.distanceTo(piecePoint(pb, v)) > tol) return std::nullopt;
  return p;
}

double initialParam(const Primitive& prim, const Piece& piece, Vec2 q, const PlaneFrame& f) {
  if (prim.chord) {
    const auto& s = std::get<Segment2>(prim.shape);
    Vec2 d = s.b - s.a;
    double t = d.dot(d) > 0 ? std::clamp((q - s.a).dot(d) / d.dot(d), 0.0, 1.0) : 0.0;
    return prim.u0 + (prim.u1 - prim.u0) * t;
  }
  Path one{{piece}, false, std::nullopt};
  return closestPoint(one, f.to3(q)).param;
}

// Sort-and-sweep on x: boxes enter in order of their left edge and leave the
// active lists once the sweep has passed their right edge, so a pair is tested
// only when the boxes overlap (within tol) in x, and then in y.
template <typename Emit>
void sweepPairs(const std::vector<Primitive>& a, const std::vector<Primitive>& b, double tol, Emit emit) {
  struct Event {
    double x;
    bool fromA;
    size_t index;
  };
  std::vector<Event> events;
  events.reserve(a.size() + b.size());
  for (size_t i = 0; i < a.size(); ++i) events.push_back({a[i].minX, true, i});
  for (size_t i = 0; i < b.size(); ++i) events.push_back({b[i].minX, false, i});
  std::sort(events.begin(), events.end(), [](const Event& p, const Event& q) { return p.x < q.x; });
  std::vector<size_t> activeA, activeB;
  auto prune = [&](std::vector<size_t>& active, const std::vector<Primitive>& prims, double x) {
    std::erase_if(active, [&](size_t i) { return prims[i].maxX < x - tol; });
  };
  auto overlapY = [&](const Primitive& p, const Primitive& q) {
    return p.minY <= q.maxY + tol && q.minY <= p.maxY + tol;
  };
  for (const auto& ev : events) {
    if (ev.fromA) {
      prune(activeB, b, ev.x);
      for (size_t j : activeB)
        if (overlapY(a[ev.index], b[j])) emit(a[ev.index], b[j]);
      activeA.push_back(ev.index);
    } else {
      prune(activeA, a, ev.x);
      for (size_t i : activeA)
        if (overlapY(a[i], b[ev.index])) emit(a[i], b[ev.index]);
      activeB.push_back(ev.index);
    }
  }
}

void addUnique(std::vector<ge::Point3d>& pts, const ge::Point3d& p, double tol) {
  for (const auto& q : pts)
    if (q.distanceTo(p) <= tol) return;
  pts.push_back(p);
}

std::vector<ge::Point3d> planarIntersections(const Path& a, const Path& b, const PlaneFrame& f, bool extendA,
                                             bool extendB, double tol) {
  auto pa = primitivesOf(a, f, extendA), pb = primitivesOf(b, f, extendB);
  std::vector<ge::Point3d> out;
  sweepPairs(pa, pb, tol, [&](const Primitive& x, const Primitive& y) {
    for (Vec2 q : intersectPrimitives(x, y, tol)) {
      if (!x.chord && !y.chord) {
        addUnique(out, f.to3(q), tol);
        continue;
      }
      const Piece& px = a.pieces[x.piece];
      const Piece& py = b.pieces[y.piece];
      if (auto p = refine(px, initialParam(x, px, q, f), py, initialParam(y, py, q, f), tol)) addUnique(out, *p, tol);
    }
  });
  return out;
}

// Curves in different planes: chords of both in 3D, pairs that pass near
// each other refined on the true curves.
std::vector<ge::Point3d> spatialIntersections(const Path& a, const Path& b, double tol) {
  struct Chord {
    size_t piece;
    double u0, u1;
    ge::Point3d p0, p1;
  };
  auto chords = [](const Path& p) {
    std::vector<Chord> out;
    for (size_t i = 0; i < p.pieces.size(); ++i) {
      const Piece& piece = p.pieces[i];
      int n = std::holds_alternative<LinePiece>(piece.geometry) ? 1 : kChordsPerSpan;
      auto bps = pieceBreakpoints(piece);
      for (size_t k = 0; k + 1 < bps.size(); ++k)
        for (int j = 0; j < n; ++j) {
          double u0 = bps[k] + (bps[k + 1] - bps[k]) * j / n, u1 = bps[k] + (bps[k + 1] - bps[k]) * (j + 1) / n;
          out.push_back({i, u0, u1, piecePoint(piece, u0), piecePoint(piece, u1)});
        }
    }
    return out;
  };
  auto ca = chords(a), cb = chords(b);
  std::vector<ge::Point3d> out;
  for (const auto& x : ca)
    for (const auto& y : cb) {
      double reach = 0.25 * (x.p0.distanceTo(x.p1) + y.p0.distanceTo(y.p1)) + tol;
      ge::Extents3d ex, ey;
      ex.add(x.p0), ex.add(x.p1), ey.add(y.p0), ey.add(y.p1);
      if (ex.min.x > ey.max.x + reach || ey.min.x > ex.max.x + reach || ex.min.y > ey.max.y + reach ||
          ey.min.y > ex.max.y + reach || ex.min.z > ey.max.z + reach || ey.min.z > ex.max.z + reach)
        continue;
      const Piece& px = a.pieces[x.piece];
      const Piece& py = b.pieces[y.piece];
      if (auto p = refine(px, (x.u0 + x.u1) / 2, py, (y.u0 + y.u1) / 2, tol)) addUnique(out, *p, tol);
    }
  return out;
}

// Two lines at one height, on both operands: the plane is the XY plane
// itself, so the general path's frame and paths are not needed. Batches of
// many lines (all-pairs intersections) spend their time here. Appends the
// points and gives true when it answered.
bool flatLines(const host::EntityData& a, const host::EntityData& b, host::Intersect mode,
               std::vector<ge::Point3d>& points) {
  auto* la = std::get_if<host::Line>(&a);
  auto* lb = std::get_if<host::Line>(&b);
  if (!la || !lb || mode != host::Intersect::kOnBothOperands) return false;
  double z = la->start.z;
  if (la->end.z != z || lb->start.z != z || lb->end.z != z) return false;
  ge::Extents3d box;
  for (const ge::Point3d& p : {la->start, la->end, lb->start, lb->end}) box.add(p);
  double tol = pointTolerance(geometryScale(box));
  Segment2 s{{la->start.x, la->start.y}, {la->end.x, la->end.y}, true};
  Segment2 t{{lb->start.x, lb->start.y}, {lb->end.x, lb->end.y}, true};
  Vec2 d1 = s.b - s.a, d2 = t.b - t.a;
  double den = d1.cross(d2);
  if (std::abs(den) > 1e-14 * d1.length() * d2.length()) {
    // One crossing at most, as intersectSegments finds it.
    Vec2 q = s.a + d1 * ((t.a - s.a).cross(d2) / den);
    if (onSegment(s, q, tol) && onSegment(t, q, tol)) points.push_back({q.x, q.y, z});
    return true;
  }
  std::vector<ge::Point3d> out;
  for (Vec2 q : intersectSegments(s, t, tol)) addUnique(out, {q.x, q.y, z}, tol);
  points.insert(points.end(), out.begin(), out.end());
  return true;
}

bool extendable(const host::EntityData& e) {
  return std::holds_alternative<host::Line>(e) || std::holds_alternative<host::Arc>(e);
}

}  // namespace

ErrorStatus CurveKernel::intersectWith(const EntityData& a, const EntityData& b, host::Intersect mode,
                                       std::vector<ge::Point3d>& points) const {
  if (flatLines(a, b, mode, points)) return ErrorStatus::eOk;
  auto pa = pathOf(a), pb = pathOf(b);
  if (!pa || !pb) return ErrorStatus::eNotApplicable;
  ge::Extents3d box = pathExtents(*pa);
  box.add(pathExtents(*pb));
  double tol = pointTolerance(geometryScale(box));
  bool extendA = (mode == host::Intersect::kExtendThis || mode == host::Intersect::kExtendBoth) && extendable(a);
  bool extendB = (mode == host::Intersect::kExtendArg || mode == host::Intersect::kExtendBoth) && extendable(b);
  std::vector<ge::Point3d> found;
  if (auto plane = commonPlane(*pa, *pb, tol)) found = planarIntersections(*pa, *pb, *plane, extendA, extendB, tol);
  else found = spatialIntersections(*pa, *pb, tol);
  points.insert(points.end(), found.begin(), found.end());
  return ErrorStatus::eOk;
}

}  // namespace standalone
