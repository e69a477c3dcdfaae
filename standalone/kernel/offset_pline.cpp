#include "standalone/kernel/offset_pline.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "standalone/kernel/offset_winding.h"
#include "standalone/kernel/spatial_grid.h"

namespace standalone::kernel {

namespace {

constexpr double kPi = std::numbers::pi;

// Sine of the largest turn at an inner corner that is joined at the meeting
// point of its segments rather than by a detour through the source vertex.
constexpr double kGentleTurn = 0.05;

double wrapAngle(double a) {  // into (-π, π]
  a = std::fmod(a, 2 * kPi);
  if (a <= -kPi) a += 2 * kPi;
  if (a > kPi) a -= 2 * kPi;
  return a;
}

// A segment of the raw offset. Arcs keep their circle so their ends can move
// along it when the corners are joined.
struct RawSeg {
  Vec2 a, b;
  bool arc = false;
  Vec2 c;
  double r = 0, sweep0 = 0;
  Vec2 sourceEnd;      // the source vertex this segment's end was offset from
  Vec2 tStart, tEnd;   // the source's unit tangents at the two ends

  double bulge() const {
    if (!arc) return 0;
    double sa = std::atan2(a.y - c.y, a.x - c.x), sb = std::atan2(b.y - c.y, b.x - c.x);
    double sweep = sweep0 + wrapAngle(sb - sa - sweep0);
    return std::tan(sweep / 4);
  }
};

// Unit tangent of a source segment at fraction 0 or 1.
Vec2 tangentAt(const Seg& s, bool atEnd) {
  Vec2 chord = s.b - s.a;
  double len = chord.length();
  Vec2 dir = chord * (1 / len);
  if (!s.isArc()) return dir;
  // The tangent leaves the chord by half the sweep at either end.
  double half = 2 * std::atan(s.bulge) * (atEnd ? 1 : -1);
  return {dir.x * std::cos(half) - dir.y * std::sin(half), dir.x * std::sin(half) + dir.y * std::cos(half)};
}

// Phase 1: every source segment moved to the right by d on its own; arcs
// whose radius would become zero or less are left out.
std::vector<RawSeg> rawOffset(const Pline2& src, double d, double tol) {
  std::vector<RawSeg> out;
  for (size_t i = 0; i < src.segmentCount(); ++i) {
    Seg s = segmentOf(src, i);
    double len = (s.b - s.a).length();
    if (len <= tol) continue;
    RawSeg r;
    r.sourceEnd = s.b;
    r.tStart = tangentAt(s, false), r.tEnd = tangentAt(s, true);
    if (!s.isArc()) {
      Vec2 dir = (s.b - s.a) * (1 / len), right{dir.y, -dir.x};
      r.a = s.a + right * d, r.b = s.b + right * d;
      out.push_back(r);
      continue;
    }
    Arc2 c = s.arc();
    // The right side of a counter-clockwise arc is its outside.
    double nr = c.sweep > 0 ? c.r + d : c.r - d;
    r.a = c.c + (s.a - c.c) * (nr / c.r), r.b = c.c + (s.b - c.c) * (nr / c.r);
    if (nr > tol) {
      r.arc = true, r.c = c.c, r.r = nr, r.sweep0 = c.sweep;
      out.push_back(r);
      continue;
    }
    // Turned inside out: the arc is removed and its neighbours joined
    // across it (extended to meet, or by a detour at an inner corner).
  }
  return out;
}

// Intersections of the supports (infinite line, whole circle) of two raw segments.
std::vector<Vec2> supportIntersections(const RawSeg& s, const RawSeg& t, double tol) {
  auto lineOf = [](const RawSeg& x) { return Segment2{x.a, x.b, false}; };
  auto circleOf = [](const RawSeg& x) { return Arc2{x.c, x.r, 0, 2 * kPi, false}; };
  if (!s.arc && !t.arc) return intersectSegments(lineOf(s), lineOf(t), tol);
  if (!s.arc) return intersectSegmentArc(lineOf(s), circleOf(t), tol);
  if (!t.arc) return intersectSegmentArc(lineOf(t), circleOf(s), tol);
  return intersectArcs(circleOf(s), circleOf(t), tol);
}

// Phase 2: corners joined by extending (or trimming) both segments to their
// meeting point nearest the corner; where they cannot meet, an arc about the
// source vertex fills the gap. A segment that its neighbours trim past its
// own length (it would run backwards) is consumed when its neighbours meet
// right there: it is dropped and they are joined to each other instead. That
// removes the slivers that turn back without crossing themselves.
struct Join {
  std::optional<Vec2> point;    // meeting point of the two segments
  std::optional<PVertex> fill;  // or the start of an arc that bridges the gap
  std::optional<Vec2> via;      // or, at an inner corner, the source vertex to pass through
};

// Does the corner between two raw segments lie on the inner side of the
// turn (where their offsets overlap)? A full reversal counts as inner.
bool innerCorner(const RawSeg& s1, const RawSeg& s2, double d) {
  double turn = s1.tEnd.cross(s2.tStart);
  if (std::abs(turn) <= 1e-12) return s1.tEnd.dot(s2.tStart) < 0;
  return turn * d < 0;
}

// Does a point of the segment's support lie on the segment itself?
bool liesOn(const RawSeg& s, Vec2 p, double tol) {
  if (!s.arc) return onSegment(Segment2{s.a, s.b, true}, p, tol);
  double start = std::atan2(s.a.y - s.c.y, s.a.x - s.c.x);
  return onArc(Arc2{s.c, s.r, start, 4 * std::atan(s.bulge()), true}, p, tol);
}

// At inner corners the raw ends are joined through the source vertex (a
// detour that the trim removes) rather than at the supports' meeting point:
// short or nearly reversed segments would put that point far away.
Join joinOf(const RawSeg& s1, const RawSeg& s2, double d, double tol) {
  if ((s1.b - s2.a).length() <= tol) return {s1.b, std::nullopt, std::nullopt};
  auto xs = supportIntersections(s1, s2, tol);
  Vec2 mid = (s1.b + s2.a) * 0.5;
  auto best = std::min_element(xs.begin(), xs.end(),
                               [&](Vec2 p, Vec2 q) { return (p - mid).length() < (q - mid).length(); });
  if (innerCorner(s1, s2, d)) {
    // At a gentle turn whose segments both reach their meeting point,
    // trimming them there is what the detour would come to, without the
    // near-coincident legs that no point beside them can tell apart.
    bool gentle = std::abs(s1.tEnd.cross(s2.tStart)) < kGentleTurn && s1.tEnd.dot(s2.tStart) > 0;
    if (gentle && best != xs.end() && liesOn(s1, *best, tol) && liesOn(s2, *best, tol))
      return {*best, std::nullopt, std::nullopt};
    return {std::nullopt, std::nullopt, s1.sourceEnd};
  }
  if (best != xs.end()) return {*best, std::nullopt, std::nullopt};
  Vec2 v = s1.sourceEnd;
  double sweep = wrapAngle(std::atan2(s2.a.y - v.y, s2.a.x - v.x) - std::atan2(s1.b.y - v.y, s1.b.x - v.x));
  return {std::nullopt, PVertex{s1.b, std::tan(sweep / 4)}, std::nullopt};
}

// Does the segment run backwards between its joined ends?
bool runsBackwards(const RawSeg& s, Vec2 start, Vec2 end) {
  if (!s.arc) return (end - start).dot(s.b - s.a) < 0;
  RawSeg moved = s;
  moved.a = start, moved.b = end;
  return 4 * std::atan(moved.bulge()) * s.sweep0 < 0;
}

Pline2 joinCorners(const std::vector<RawSeg>& raw, bool closed, double d, double tol) {
  size_t n = raw.size();
  std::vector<size_t> prev(n), next(n);
  for (size_t k = 0; k < n; ++k) prev[k] = (k + n - 1) % n, next[k] = (k + 1) % n;
  std::vector<bool> alive(n, true);
  std::vector<Join> joins(n);  // joins[k]: between k and next[k]
  auto hasJoinAfter = [&](size_t k) { return closed || k != n - 1; };
  for (size_t k = 0; k < n; ++k)
    if (hasJoinAfter(k) && n > 1) joins[k] = joinOf(raw[k], raw[next[k]], d, tol);
  auto startOf = [&](size_t k) {
    bool joined = closed || k != 0;
    return joined && joins[prev[k]].point ? *joins[prev[k]].point : raw[k].a;
  };
  auto endOf = [&](size_t k) { return hasJoinAfter(k) && joins[k].point ? *joins[k].point : raw[k].b; };
  size_t aliveCount = n;
  std::vector<size_t> work;
  for (size_t k = n; k-- > 0;) work.push_back(k);
  while (!work.empty()) {
    size_t k = work.back();
    work.pop_back();
    bool end = !closed && (k == 0 || k == n - 1);
    if (!alive[k] || end || aliveCount <= 3) continue;
    Vec2 a = startOf(k), b = endOf(k);
    if (!runsBackwards(raw[k], a, b)) continue;
    size_t p = prev[k], q = next[k];
    Join direct = joinOf(raw[p], raw[q], d, tol);
    // Only where the neighbours meet within the span of the turned-back
    // segment: a far meeting point means the segment matters after all.
    double span = (b - a).length() + (raw[k].b - raw[k].a).length();
    if (!direct.point || (*direct.point - (a + b) * 0.5).length() > span) continue;
    alive[k] = false;
    --aliveCount;
    next[p] = q, prev[q] = p;
    joins[p] = direct;
    work.push_back(p);
    work.push_back(q);
  }
  Pline2 out;
  out.closed = closed;
  size_t first = 0;
  while (!alive[first]) ++first;
  size_t k = first;
  do {
    RawSeg s = raw[k];
    s.a = startOf(k);
    s.b = endOf(k);
    out.vertices.push_back({s.a, s.bulge()});
    if (hasJoinAfter(k) && joins[k].fill) {
      PVertex f = *joins[k].fill;
      f.p = s.b;
      out.vertices.push_back(f);
    }
    if (hasJoinAfter(k) && joins[k].via) {
      out.vertices.push_back({s.b, 0});
      out.vertices.push_back({*joins[k].via, 0});
    }
    if (!closed && k == n - 1) {
      out.vertices.push_back({s.b, 0});
      break;
    }
    k = next[k];
  } while (k != first);
  return out;
}

// A piece of the joined offset between split points.
struct SubSeg {
  Seg seg;
  bool startsAtSplit = false;
};

// Phase 3: every segment split where the joined offset crosses itself.
std::vector<SubSeg> splitAtSelfIntersections(const Pline2& pl, double tol) {
  size_t n = pl.segmentCount();
  std::vector<Seg> segs;
  std::vector<Box2> boxes;
  for (size_t i = 0; i < n; ++i) {
    segs.push_back(segmentOf(pl, i));
    Box2 b = segmentBox(segs.back());
    b.minX -= tol, b.minY -= tol, b.maxX += tol, b.maxY += tol;
    boxes.push_back(b);
  }
  std::vector<std::vector<double>> cuts(n);
  SpatialGrid grid(boxes);
  for (size_t i = 0; i < n; ++i) {
    auto visit = [&](size_t j) {
      if (j <= i) return false;
      bool next = j == i + 1, wrap = pl.closed && i == 0 && j == n - 1;
      for (Vec2 p : intersectSegs(segs[i], segs[j], tol)) {
        // Neighbours always touch at their shared vertex; that is no crossing.
        if (next && (p - segs[i].b).length() <= tol) continue;
        if (wrap && (p - segs[i].a).length() <= tol) continue;
        cuts[i].push_back(segs[i].fractionAt(p));
        cuts[j].push_back(segs[j].fractionAt(p));
      }
      return false;
    };
    grid.query(boxes[i], visit);
  }
  std::vector<SubSeg> out;
  for (size_t i = 0; i < n; ++i) {
    auto& c = cuts[i];
    std::sort(c.begin(), c.end());
    double from = 0;
    bool split = false;
    const Seg& s = segs[i];
    double sweep = s.isArc() ? 4 * std::atan(s.bulge) : 0;
    auto emit = [&](double t0, double t1, bool startSplit) {
      Seg piece{s.pointAt(t0), s.pointAt(t1), s.isArc() ? std::tan(sweep * (t1 - t0) / 4) : 0};
      out.push_back({piece, startSplit});
    };
    for (double t : c) {
      if (t * s.length() <= tol) {
        split = true;
        continue;
      }
      if ((1 - t) * s.length() <= tol) {
        // Marks the start of the next segment.
        if (i + 1 < n) cuts[i + 1].insert(cuts[i + 1].begin(), 0.0);
        else if (pl.closed && !out.empty()) out.front().startsAtSplit = true;
        continue;
      }
      if (t - from > 0) emit(from, t, split);
      from = t;
      split = true;
    }
    emit(from, 1.0, split);
  }
  return out;
}

double signedArea(const Pline2& pl);

// Phase 4: slices are the runs between split points.
std::vector<std::vector<Seg>> slicesOf(const std::vector<SubSeg>& subs, bool closed) {
  std::vector<std::vector<Seg>> slices;
  size_t first = 0;
  if (closed) {
    while (first < subs.size() && !subs[first].startsAtSplit) ++first;
    if (first == subs.size()) first = 0;
  }
  for (size_t k = 0; k < subs.size(); ++k) {
    const SubSeg& s = subs[(first + k) % subs.size()];
    if (slices.empty() || s.startsAtSplit) slices.emplace_back();
    slices.back().push_back(s.seg);
  }
  return slices;
}

// Of a closed offset, a slice stays when it bounds the region the raw offset
// winds once about in the source's sense (+1 counter-clockwise, -1
// clockwise): that region lies on the slice's left for a counter-clockwise
// source and on its right for a clockwise one. Between split points the raw
// offset does not cross itself, so one point beside the slice decides.
std::vector<std::vector<Seg>> slicesBoundingTheRegion(std::vector<std::vector<Seg>> slices, const Pline2& joined,
                                                     double sense, double tol) {
  WindingCounter winding(joined);
  int want = sense > 0 ? 1 : -1;
  std::vector<std::vector<Seg>> kept;
  for (auto& slice : slices) {
    const Seg& s = *std::max_element(slice.begin(), slice.end(),
                                     [](const Seg& x, const Seg& y) { return x.length() < y.length(); });
    Vec2 chord = s.b - s.a;
    double len = chord.length();
    if (len == 0) continue;
    // At its middle an arc runs parallel to its chord.
    Vec2 left{-chord.y / len, chord.x / len};
    double step = std::max(10 * tol, std::min(1e3 * tol, 0.01 * s.length()));
    Vec2 beside = s.pointAt(0.5) + left * (step * want);
    int w = winding.windingAt(beside);
    if (w == want) kept.push_back(std::move(slice));
  }
  return kept;
}

// Tells whether points keep at least |d| (less a rounding margin) from the source.
class SourceClearance {
 public:
  SourceClearance(const Pline2& src, double d, double tol)
      : source_(segmentsOf(src)), grid_(boxesOf(source_), std::abs(d) / 2),  // cells about the query size
        need_(std::abs(d) - std::max(1e3 * tol, 1e-9 * std::abs(d))) {}

  bool farEnough(Vec2 p) const {
    bool ok = true;
    grid_.query(Box2{p.x - need_, p.y - need_, p.x + need_, p.y + need_}, [&](size_t i) {
      // The box's nearest point first: most candidates are ruled out by it.
      const Box2& b = grid_.box(i);
      double dx = std::max({b.minX - p.x, 0.0, p.x - b.maxX}), dy = std::max({b.minY - p.y, 0.0, p.y - b.maxY});
      if (dx * dx + dy * dy >= need_ * need_) return false;
      if (distanceToSegment(source_[i], p) < need_) ok = false;
      return !ok;
    });
    return ok;
  }

 private:
  static std::vector<Seg> segmentsOf(const Pline2& pl) {
    std::vector<Seg> out;
    for (size_t i = 0; i < pl.segmentCount(); ++i) out.push_back(segmentOf(pl, i));
    return out;
  }
  static std::vector<Box2> boxesOf(const std::vector<Seg>& segs) {
    std::vector<Box2> out;
    for (const auto& s : segs) out.push_back(segmentBox(s));
    return out;
  }

  std::vector<Seg> source_;
  SpatialGrid grid_;
  double need_;
};

// Of an open offset, a slice stays when all its points keep at least |d|
// from the source.
std::vector<std::vector<Seg>> slicesFarEnough(std::vector<std::vector<Seg>> slices, const Pline2& src, double d,
                                              double tol) {
  if (src.segmentCount() == 0) return {};  // a lone vertex offsets to nothing
  SourceClearance clearance(src, d, tol);
  auto farEnough = [&](Vec2 p) { return clearance.farEnough(p); };
  std::vector<std::vector<Seg>> kept;
  for (auto& slice : slices) {
    bool ok = true;
    for (const auto& s : slice) {
      // Between split points the offset does not cross itself, so a piece is
      // wholly valid or not: its midpoint decides.
      if (!farEnough(s.pointAt(0.5))) {
        ok = false;
        break;
      }
    }
    if (ok) kept.push_back(std::move(slice));
  }
  return kept;
}

// Phase 5: valid slices joined end to start into polylines. Where the raw
// offset ran over itself (collinear or concentric overlaps) the same slice
// appears twice; it is kept once.
std::vector<Pline2> stitch(std::vector<std::vector<Seg>> slices, double tol) {
  std::vector<Pline2> out;
  double joinTol = 1e3 * tol;
  auto same = [&](const std::vector<Seg>& x, const std::vector<Seg>& y) {
    return (x.front().a - y.front().a).length() <= joinTol && (x.back().b - y.back().b).length() <= joinTol &&
           (x.front().pointAt(0.5) - y.front().pointAt(0.5)).length() <= joinTol;
  };
  // Slices ordered by the x of their start, so the slice that continues a
  // chain is found by a binary search instead of a scan.
  std::vector<size_t> byStart(slices.size());
  for (size_t i = 0; i < slices.size(); ++i) byStart[i] = i;
  auto startX = [&](size_t i) { return slices[i].front().a.x; };
  std::sort(byStart.begin(), byStart.end(), [&](size_t a, size_t b) { return startX(a) < startX(b); });
  auto startingAt = [&](Vec2 p, auto f) {
    auto it = std::lower_bound(byStart.begin(), byStart.end(), p.x - joinTol,
                               [&](size_t i, double x) { return startX(i) < x; });
    for (; it != byStart.end() && startX(*it) <= p.x + joinTol; ++it)
      if ((slices[*it].front().a - p).length() <= joinTol && f(*it)) return;
  };
  std::vector<bool> used(slices.size(), false);
  for (size_t i = 0; i < slices.size(); ++i) {
    if (used[i]) continue;
    startingAt(slices[i].front().a, [&](size_t j) {
      if (j > i && !used[j] && same(slices[i], slices[j])) used[j] = true;
      return false;
    });
  }
  for (size_t i = 0; i < slices.size(); ++i) {
    if (used[i]) continue;
    used[i] = true;
    std::vector<Seg> chain = slices[i];
    for (bool grown = true; grown;) {
      grown = false;
      if ((chain.back().b - chain.front().a).length() <= joinTol && chain.size() > 1) break;
      startingAt(chain.back().b, [&](size_t j) {
        if (used[j]) return false;
        used[j] = true;
        chain.insert(chain.end(), slices[j].begin(), slices[j].end());
        grown = true;
        return true;
      });
    }
    Pline2 pl;
    pl.closed = chain.size() > 1 && (chain.back().b - chain.front().a).length() <= joinTol;
    for (const auto& s : chain)
      if ((s.b - s.a).length() > tol || pl.vertices.empty()) pl.vertices.push_back({s.a, s.bulge});
    if (!pl.closed) pl.vertices.push_back({chain.back().b, 0});
    if (pl.segmentCount() > 0) out.push_back(std::move(pl));
  }
  return out;
}

// Signed area of a closed polyline, counter-clockwise positive: the shoelace
// sum plus each arc's circular segment.
double signedArea(const Pline2& pl) {
  double twice = 0;
  for (size_t i = 0; i < pl.segmentCount(); ++i) {
    Seg s = segmentOf(pl, i);
    twice += s.a.cross(s.b);
    if (s.isArc() && (s.b - s.a).length() > 0) {
      Arc2 c = s.arc();
      twice += c.r * c.r * (c.sweep - std::sin(c.sweep));
    }
  }
  return twice / 2;
}

// Do more than half of the loop's segments keep their middle at |d| from the source?
bool mostlyClear(const Pline2& loop, const SourceClearance& clearance) {
  size_t clear = 0, near = 0, n = loop.segmentCount();
  // Stops as soon as the majority is settled.
  for (size_t i = 0; i < n && 2 * clear <= n && 2 * near < n; ++i)
    (clearance.farEnough(segmentOf(loop, i).pointAt(0.5)) ? clear : near) += 1;
  return 2 * clear > n;
}

}  // namespace

std::vector<Pline2> offsetPline(const Pline2& source, double d, double tol) {
  if (d == 0) return {source};
  auto raw = rawOffset(source, d, tol);
  if (raw.empty()) return {};
  Pline2 joined = joinCorners(raw, source.closed, d, tol);
  auto subs = splitAtSelfIntersections(joined, tol);
  auto slices = slicesOf(subs, source.closed);
  slices = source.closed ? slicesBoundingTheRegion(std::move(slices), joined, signedArea(source), tol)
                         : slicesFarEnough(std::move(slices), source, d, tol);
  auto result = stitch(std::move(slices), tol);
  // Loops that run against the source's sense are knots of mitre spikes, not offsets.
  if (source.closed) {
    double sense = signedArea(source);
    std::erase_if(result, [&](const Pline2& r) { return r.closed && signedArea(r) * sense <= 0; });
    // Detours at inner corners and through the centres of turned-over arcs
    // can cross one another and wind once about small islands lying within
    // |d| of the source. An offset loop keeps most of its length at |d|.
    SourceClearance clearance(source, d, tol);
    std::erase_if(result, [&](const Pline2& r) { return !mostlyClear(r, clearance); });
    // Growing a closed curve gives one outline; smaller loops beside it are
    // knots of mitre spikes too.
    bool growing = (sense > 0) == (d > 0);
    if (growing && result.size() > 1) {
      auto largest = std::max_element(result.begin(), result.end(), [](const Pline2& a, const Pline2& b) {
        return std::abs(signedArea(a)) < std::abs(signedArea(b));
      });
      result = {*largest};
    }
  }
  return result;
}

}  // namespace standalone::kernel
