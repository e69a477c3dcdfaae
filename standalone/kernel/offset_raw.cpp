#include "standalone/kernel/offset_raw.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

namespace standalone::kernel {

namespace {

constexpr double kPi = std::numbers::pi;

// An arc extended past this turn would no longer read as the same corner.
constexpr double kLongestArcExtension = kPi / 2;

// Meeting points farther than this many offset distances from the source
// vertex are not used: the corner is rounded instead (4 is also SVG's
// default mitre limit). Unlimited, the sharp corners of a jagged outline
// would grow spikes across the whole shape.
constexpr double kLongestMitre = 4;

// A source segment moved by d, whose ends the corner joins may trim.
struct Moved {
  Seg seg;
  bool bridge = false;     // an arc turned inside out: its radius would be zero or less
  Vec2 sourceEnd;          // the source vertex this piece's end was moved from
  Vec2 tStart, tEnd;       // the source's unit tangents at the two ends
  double sweep = 0;        // arcs: signed sweep as moved or extended, which trims only shorten
  Vec2 centre;             // arcs: the circle the ends stay on
};

// Unit tangent of a source segment at its start or end.
Vec2 tangentAt(const Seg& s, bool atEnd) {
  Vec2 chord = s.b - s.a;
  Vec2 dir = chord * (1 / chord.length());
  if (!s.isArc()) return dir;
  // The tangent leaves the chord by half the sweep at either end.
  double half = 2 * std::atan(s.bulge) * (atEnd ? 1 : -1);
  return {dir.x * std::cos(half) - dir.y * std::sin(half), dir.x * std::sin(half) + dir.y * std::cos(half)};
}

std::optional<Moved> moveSegment(const Seg& s, double d, double tol) {
  double len = (s.b - s.a).length();
  if (len <= tol) return std::nullopt;
  Moved m;
  m.sourceEnd = s.b;
  m.tStart = tangentAt(s, false), m.tEnd = tangentAt(s, true);
  if (!s.isArc()) {
    Vec2 dir = (s.b - s.a) * (1 / len), right{dir.y, -dir.x};
    m.seg = {s.a + right * d, s.b + right * d, 0};
    return m;
  }
  ArcCircle c = s.circle();
  // The right side of a counter-clockwise arc is its outside.
  double nr = c.sweep > 0 ? c.r + d : c.r - d;
  Vec2 a = c.c + (s.a - c.c) * (nr / c.r), b = c.c + (s.b - c.c) * (nr / c.r);
  if (nr > tol) {
    m.seg = {a, b, s.bulge};  // same sweep, so the same bulge
    m.sweep = c.sweep, m.centre = c.c;
  } else {
    // Turned inside out: its moved ends are swapped through the centre and
    // everything between them lies nearer the arc than |d|.
    m.seg = {a, b, 0};
    m.bridge = true;
  }
  return m;
}

// Moves the ends of a piece to points of its own support, keeping an arc's
// sense. Trims only shorten, so a sweep longer than the original one means
// the ends crossed over: the piece is then empty.
void trimTo(Moved& m, Vec2 a, Vec2 b, double tol) {
  m.seg.a = a, m.seg.b = b;
  if (m.sweep == 0) return;
  if ((b - a).length() <= tol) {
    m.seg.bulge = 0;
    return;
  }
  Vec2 ra = a - m.centre, rb = b - m.centre;
  double rel = std::atan2(ra.cross(rb), ra.dot(rb));  // (-π, π]
  if (m.sweep > 0 && rel < 0) rel += 2 * kPi;
  if (m.sweep < 0 && rel > 0) rel -= 2 * kPi;
  if (std::abs(rel) > std::abs(m.sweep) + 1e-9) rel = 0;
  m.seg.bulge = std::tan(rel / 4);
}

// Intersections of the supports (infinite line, whole circle) of two segments.
std::vector<Vec2> supportIntersections(const Seg& s, const Seg& t, double tol) {
  auto line = [](const Seg& x) { return Segment2{x.a, x.b, false}; };
  auto circle = [](const Seg& x) {
    ArcCircle k = x.circle();
    return Arc2{k.c, k.r, 0, k.sweep, false};  // the whole circle: no start needed
  };
  if (!s.isArc() && !t.isArc()) return intersectSegments(line(s), line(t), tol);
  if (!s.isArc()) return intersectSegmentArc(line(s), circle(t), tol);
  if (!t.isArc()) return intersectSegmentArc(line(t), circle(s), tol);
  return intersectArcs(circle(s), circle(t), tol);
}

// The piece that extends a segment beyond its end (forward) or before its
// start (backward) to a point of its support, or nothing when the point lies
// the other way or too far round the circle.
std::optional<Seg> extension(const Seg& s, Vec2 x, bool forward, double tol) {
  Vec2 from = forward ? s.b : s.a;
  if (!s.isArc()) {
    Vec2 dir = s.b - s.a;
    double along = (x - from).dot(dir) / dir.length();
    if (forward ? along < -tol : along > tol) return std::nullopt;
    return forward ? Seg{from, x, 0} : Seg{x, from, 0};
  }
  ArcCircle c = s.circle();
  Vec2 rf = from - c.c, rx = x - c.c;
  double rel = std::atan2(rf.cross(rx), rf.dot(rx));  // from `from` to x, counter-clockwise positive
  double sense = c.sweep > 0 ? 1 : -1;
  double turn = forward ? rel * sense : -rel * sense;  // how far the arc runs on to reach x
  if (turn < 0) turn += 2 * kPi;
  if (turn * c.r <= tol) turn = 0;
  if (turn > kLongestArcExtension) return std::nullopt;
  double bulge = std::tan(sense * turn / 4);
  return forward ? Seg{from, x, bulge} : Seg{x, from, bulge};
}

// An outer corner extended: the two extensions to the meeting point nearest
// along them.
struct Mitre {
  Seg extendPrev, extendNext;
};

std::optional<Mitre> mitreOf(const Seg& prev, const Seg& next, Vec2 vertex, double d, double tol) {
  std::optional<Mitre> best;
  double bestLength = 0;
  for (Vec2 x : supportIntersections(prev, next, tol)) {
    if ((x - vertex).length() > kLongestMitre * std::abs(d)) continue;
    auto ep = extension(prev, x, true, tol), en = extension(next, x, false, tol);
    if (!ep || !en) continue;
    double length = ep->length() + en->length();
    if (!best || length < bestLength) best = Mitre{*ep, *en}, bestLength = length;
  }
  return best;
}

// Moves one end of a piece along its own line or circle to the far end of
// an extension, an arc's sweep growing by the extension's.
void extendTo(Moved& m, const Seg& ext, bool atEnd) {
  if (atEnd) m.seg.b = ext.b;
  else m.seg.a = ext.a;
  if (m.sweep == 0) return;
  m.sweep = 4 * (std::atan(m.seg.bulge) + std::atan(ext.bulge));
  m.seg.bulge = std::tan(m.sweep / 4);
}

// What fills the corner between two consecutive moved pieces.
struct CornerFill {
  std::vector<RawPiece> pieces;  // after the first piece: an arc or a bridge
  std::optional<Mitre> mitre;    // or the extensions the two pieces grew by
  Vec2 vertex;
};

// An outer corner (the pieces part) is extended to the meeting point of its
// pieces, or filled by an arc of radius |d| about the source vertex where
// they do not meet (or would meet too far out). A full
// reversal is an outer corner, the tip of a spike. At an inner corner the
// pieces are cut back to their crossing; where they do not cross, a bridge
// through the source vertex links them.
CornerFill joinCorner(Moved& p, Moved& q, double d, double tol, bool extend) {
  Vec2 v = p.sourceEnd, e = p.seg.b, s = q.seg.a;
  if ((e - s).length() <= tol) {
    q.seg.a = e;
    return {};
  }
  double turn = p.tEnd.cross(q.tStart);
  bool reversal = std::abs(turn) <= 1e-12 && p.tEnd.dot(q.tStart) < 0;
  if (reversal || turn * d > 0) {
    Vec2 ve = e - v, vs = s - v;
    double sweep = std::atan2(ve.cross(vs), ve.dot(vs));
    if (sweep * d <= 0) sweep = d > 0 ? kPi : -kPi;
    std::optional<Mitre> mitre;
    if (extend && !p.bridge && !q.bridge) mitre = mitreOf(p.seg, q.seg, v, d, tol);
    if (!mitre) return {{{Seg{e, s, std::tan(sweep / 4)}, RawRole::Join}}, std::nullopt, v};
    extendTo(p, mitre->extendPrev, true);
    extendTo(q, mitre->extendNext, false);
    return {{}, mitre, v};
  }
  if (!p.bridge && !q.bridge) {
    auto xs = intersectSegs(p.seg, q.seg, tol);
    Vec2 mid = (e + s) * 0.5;
    auto best = std::min_element(xs.begin(), xs.end(),
                                 [&](Vec2 x, Vec2 y) { return (x - mid).length() < (y - mid).length(); });
    if (best != xs.end()) {
      Vec2 x = *best;
      trimTo(p, p.seg.a, x, tol);
      trimTo(q, x, q.seg.b, tol);
      return {};
    }
  }
  return {{{Seg{e, v, 0}, RawRole::Bridge}, {Seg{v, s, 0}, RawRole::Bridge}}, std::nullopt, v};
}

}  // namespace

RawOffset rawOffset(const Pline2& source, double d, double tol, bool extendCorners) {
  std::vector<Moved> moved;
  for (size_t i = 0; i < source.segmentCount(); ++i)
    if (auto m = moveSegment(segmentOf(source, i), d, tol)) moved.push_back(*m);
  size_t n = moved.size();
  std::vector<CornerFill> fills(n);  // fills[k]: after piece k
  size_t joinCount = n < 2 ? 0 : (source.closed ? n : n - 1);
  for (size_t k = 0; k < joinCount; ++k) fills[k] = joinCorner(moved[k], moved[(k + 1) % n], d, tol, extendCorners);
  RawOffset out;
  out.paths.emplace_back().closed = source.closed;
  auto add = [&](const Seg& seg, RawRole role, size_t origin) {
    if ((seg.b - seg.a).length() > 0) out.paths.front().pieces.push_back({seg, role, origin});
  };
  size_t nextOrigin = n;  // ids beyond the moved pieces' for the corner arcs and bridges
  for (size_t k = 0; k < n; ++k) {
    const Moved& m = moved[k];
    add(m.seg, m.bridge ? RawRole::Bridge : RawRole::Offset, k);
    for (const auto& piece : fills[k].pieces) add(piece.seg, piece.role, nextOrigin++);
    if (const auto& mitre = fills[k].mitre) {
      Vec2 v = fills[k].vertex;
      out.kites.push_back({{Seg{v, mitre->extendPrev.a, 0}, mitre->extendPrev, mitre->extendNext,
                            Seg{mitre->extendNext.b, v, 0}}});
    }
  }
  return out;
}

RawOffset rawOffsetBothSides(const Pline2& source, double d, double tol) {
  RawOffset out = rawOffset(source, d, tol);
  Pline2 reversed;
  reversed.closed = source.closed;
  size_t n = source.vertices.size();
  // Segment k of the reversed loop is segment n-1-k run backwards.
  if (source.closed) {
    for (size_t k = 0; k < n; ++k)
      reversed.vertices.push_back({source.vertices[(n - k) % n].p, -source.vertices[(2 * n - k - 1) % n].bulge});
  } else {
    // Segment k of the reversed line is segment n-2-k run backwards.
    for (size_t k = 0; k < n; ++k)
      reversed.vertices.push_back({source.vertices[n - 1 - k].p, k + 1 < n ? -source.vertices[n - 2 - k].bulge : 0});
  }
  // The other side of an open source marks where the band within |d| of it
  // begins, so its outer corners are arcs about their vertices, as that band is.
  RawOffset other = rawOffset(reversed, d, tol, source.closed);
  other.paths.front().cutsOnly = !source.closed;
  size_t originShift = 0;
  for (const auto& p : out.paths.front().pieces) originShift = std::max(originShift, p.origin + 1);
  for (auto& p : other.paths.front().pieces) p.origin += originShift;
  out.paths.push_back(std::move(other.paths.front()));
  if (source.closed) out.kites.insert(out.kites.end(), other.kites.begin(), other.kites.end());
  return out;
}

}  // namespace standalone::kernel
