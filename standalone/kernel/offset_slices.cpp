#include "standalone/kernel/offset_slices.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "standalone/kernel/spatial_grid.h"

namespace standalone::kernel {

namespace {

// A run of a raw piece between cuts.
struct Piece {
  Seg seg;
  size_t origin;
};
using Slice = std::vector<Piece>;

// Fractions along every raw piece where it crosses another, path by path.
// Bridges are skipped: they lie in the cleared region everywhere but at
// their ends, which are cuts anyway.
std::vector<std::vector<std::vector<double>>> crossings(const std::vector<RawPath>& paths, double tol) {
  struct Placed {
    size_t path, index;
  };
  std::vector<Placed> all;
  std::vector<Box2> boxes;
  for (size_t p = 0; p < paths.size(); ++p)
    for (size_t i = 0; i < paths[p].pieces.size(); ++i) {
      all.push_back({p, i});
      Box2 b = segmentBox(paths[p].pieces[i].seg);
      boxes.push_back({b.minX - tol, b.minY - tol, b.maxX + tol, b.maxY + tol});
    }
  auto pieceOf = [&](const Placed& x) -> const RawPiece& { return paths[x.path].pieces[x.index]; };
  std::vector<std::vector<std::vector<double>>> cuts(paths.size());
  for (size_t p = 0; p < paths.size(); ++p) cuts[p].resize(paths[p].pieces.size());
  SpatialGrid grid(boxes);
  for (size_t i = 0; i < all.size(); ++i) {
    if (pieceOf(all[i]).role == RawRole::Bridge) continue;
    grid.query(boxes[i], [&](size_t j) {
      if (j <= i || pieceOf(all[j]).role == RawRole::Bridge) return false;
      const Seg &s = pieceOf(all[i]).seg, &t = pieceOf(all[j]).seg;
      const RawPath& path = paths[all[i].path];
      bool samePath = all[i].path == all[j].path;
      bool next = samePath && all[j].index == all[i].index + 1;
      bool wrap = samePath && path.closed && all[i].index == 0 && all[j].index + 1 == path.pieces.size();
      if ((next && lineNeighboursMeetOnlyAtTheirVertex(s, t)) || (wrap && lineNeighboursMeetOnlyAtTheirVertex(t, s)))
        return false;
      for (Vec2 p : intersectSegs(s, t, tol)) {
        // Neighbours always touch at their shared vertex; that is no crossing.
        if (next && (p - s.b).length() <= tol) continue;
        if (wrap && (p - s.a).length() <= tol) continue;
        cuts[all[i].path][all[i].index].push_back(s.fractionAt(p));
        cuts[all[j].path][all[j].index].push_back(t.fractionAt(p));
      }
      return false;
    });
  }
  return cuts;
}

// Of an open source, the offset ends at its end vertices' circles of radius
// |d|: pieces are cut where they cross them, except at the main path's own ends.
void addEndCircleCrossings(const RawPath& path, const Pline2& source, double d, double tol,
                           std::vector<std::vector<double>>& cuts) {
  const auto& pieces = path.pieces;
  if (pieces.empty() || source.vertices.empty()) return;
  Vec2 pathStart = pieces.front().seg.a, pathEnd = pieces.back().seg.b;
  double r = std::abs(d);
  for (Vec2 c : {source.vertices.front().p, source.vertices.back().p}) {
    Arc2 circle{c, r, 0, 2 * std::numbers::pi, false};
    for (size_t i = 0; i < pieces.size(); ++i) {
      const Seg& s = pieces[i].seg;
      Box2 b = segmentBox(s);
      if (pieces[i].role == RawRole::Bridge || b.minX > c.x + r || b.maxX < c.x - r || b.minY > c.y + r ||
          b.maxY < c.y - r)
        continue;
      auto xs = s.isArc() ? intersectArcs(s.arc(), circle, tol) : intersectSegmentArc(s.line(), circle, tol);
      for (Vec2 p : xs)
        if ((p - pathStart).length() > tol && (p - pathEnd).length() > tol) cuts[i].push_back(s.fractionAt(p));
    }
  }
}

// The raw path as slices: runs between cuts, with bridges left out.
std::vector<Slice> slicesOf(const RawPath& path, std::vector<std::vector<double>> cuts, double tol) {
  struct Cut {
    Piece piece;
    bool startsSlice;
  };
  std::vector<Cut> pieces;
  bool nextStartsSlice = false;  // after a bridge or a cut at a piece's end
  for (size_t i = 0; i < path.pieces.size(); ++i) {
    const RawPiece& raw = path.pieces[i];
    if (raw.role == RawRole::Bridge) {
      nextStartsSlice = true;
      continue;
    }
    const Seg& s = raw.seg;
    auto& c = cuts[i];
    std::sort(c.begin(), c.end());
    double len = s.length(), sweep = s.isArc() ? 4 * std::atan(s.bulge) : 0, from = 0;
    bool startCut = nextStartsSlice;
    nextStartsSlice = false;
    std::vector<double> inner;
    for (double t : c) {
      if (t * len <= tol) startCut = true;
      else if ((1 - t) * len <= tol) nextStartsSlice = true;
      else if (inner.empty() || (t - inner.back()) * len > tol) inner.push_back(t);
    }
    inner.push_back(1.0);
    for (double t : inner) {
      Seg piece{from == 0 ? s.a : s.pointAt(from), t == 1.0 ? s.b : s.pointAt(t),
                s.isArc() ? std::tan(sweep * (t - from) / 4) : 0};
      pieces.push_back({{piece, raw.origin}, startCut});
      from = t, startCut = true;
    }
  }
  if (pieces.empty()) return {};
  // A closed path wraps: it is read from its first cut so that no slice straddles the seam.
  size_t first = 0;
  if (path.closed) {
    if (nextStartsSlice) pieces.front().startsSlice = true;
    while (first < pieces.size() && !pieces[first].startsSlice) ++first;
    if (first == pieces.size()) first = 0;
  }
  std::vector<Slice> slices;
  for (size_t k = 0; k < pieces.size(); ++k) {
    const Cut& c = pieces[(first + k) % pieces.size()];
    if (slices.empty() || c.startsSlice) slices.emplace_back();
    slices.back().push_back(c.piece);
  }
  return slices;
}

// A slice keeps clear of the source or not as a whole, so a few of its
// pieces decide: the longest, whose middle is farthest from any cut, and
// some spread along it to outvote rounding at a near-tangent cut.
bool keepsClear(const Slice& slice, const OffsetClearance& clearance) {
  constexpr size_t kSamples = 8;
  auto longest = std::max_element(slice.begin(), slice.end(),
                                  [](const Piece& a, const Piece& b) { return a.seg.length() < b.seg.length(); });
  if (!clearance.clear(longest->seg.pointAt(0.5))) return false;
  size_t step = std::max<size_t>(1, slice.size() / kSamples);
  for (size_t i = 0; i < slice.size(); i += step)
    if (!clearance.clear(slice[i].seg.pointAt(0.5))) return false;
  return true;
}

// Consecutive pieces of one line or circle become one piece again.
void appendMerged(Slice& chain, const Piece& p) {
  if (!chain.empty() && chain.back().origin == p.origin) {
    Seg& last = chain.back().seg;
    double sweep = 4 * (std::atan(last.bulge) + std::atan(p.seg.bulge));
    // Merged arcs keep below a full turn; a line's pieces always merge.
    if (std::abs(sweep) < 1.9 * std::numbers::pi) {
      last.b = p.seg.b;
      last.bulge = std::tan(sweep / 4);
      return;
    }
  }
  chain.push_back(p);
}

// Open paths whose end meets another's start become one path (a chain may
// have begun in the middle of what its predecessor continues). A path that
// meets its own start stays as it is.
void joinOpenEnds(std::vector<Slice>& chains, double joinTol) {
  constexpr size_t kNone = static_cast<size_t>(-1);
  auto closesOnItself = [&](const Slice& c) { return (c.back().seg.b - c.front().seg.a).length() <= joinTol; };
  // Each open chain's successor: the nearest open chain starting where it
  // ends, found among the starts ordered by x.
  std::vector<size_t> byStart;
  for (size_t i = 0; i < chains.size(); ++i)
    if (!closesOnItself(chains[i])) byStart.push_back(i);
  auto startX = [&](size_t i) { return chains[i].front().seg.a.x; };
  std::sort(byStart.begin(), byStart.end(), [&](size_t a, size_t b) { return startX(a) < startX(b); });
  std::vector<size_t> next(chains.size(), kNone);
  std::vector<bool> hasPrevious(chains.size(), false);
  for (size_t i : byStart) {
    Vec2 end = chains[i].back().seg.b;
    auto it = std::lower_bound(byStart.begin(), byStart.end(), end.x - joinTol,
                               [&](size_t k, double x) { return startX(k) < x; });
    double best = joinTol;
    for (; it != byStart.end() && startX(*it) <= end.x + joinTol; ++it) {
      double dist = (chains[*it].front().seg.a - end).length();
      if (*it != i && !hasPrevious[*it] && dist <= best) next[i] = *it, best = dist;
    }
    if (next[i] != kNone) hasPrevious[next[i]] = true;
  }
  // Chains followed from those nothing leads into, then what is left in rings.
  std::vector<Slice> joined;
  std::vector<bool> done(chains.size(), false);
  auto follow = [&](size_t head) {
    Slice chain;
    for (size_t i = head; i != kNone && !done[i]; i = next[i]) {
      done[i] = true;
      for (const auto& p : chains[i]) appendMerged(chain, p);
    }
    joined.push_back(std::move(chain));
  };
  for (size_t i = 0; i < chains.size(); ++i)
    if (!done[i] && !hasPrevious[i]) follow(i);
  for (size_t i = 0; i < chains.size(); ++i)
    if (!done[i]) follow(i);
  chains = std::move(joined);
}

// Kept slices joined end to start into chains. Where raw pieces ran over one
// another (collinear or concentric overlaps) the same slice appears twice;
// it is kept once.
std::vector<Slice> stitch(const std::vector<Slice>& slices, bool closedSource, double joinTol) {
  auto same = [&](const Slice& x, const Slice& y) {
    return (x.front().seg.a - y.front().seg.a).length() <= joinTol &&
           (x.back().seg.b - y.back().seg.b).length() <= joinTol &&
           (x.front().seg.pointAt(0.5) - y.front().seg.pointAt(0.5)).length() <= joinTol;
  };
  // Slices ordered by the x of their start, so the slice that continues a
  // chain is found by a binary search instead of a scan.
  std::vector<size_t> byStart(slices.size());
  for (size_t i = 0; i < slices.size(); ++i) byStart[i] = i;
  auto startX = [&](size_t i) { return slices[i].front().seg.a.x; };
  std::sort(byStart.begin(), byStart.end(), [&](size_t a, size_t b) { return startX(a) < startX(b); });
  auto startingNear = [&](Vec2 p, auto f) {
    auto it = std::lower_bound(byStart.begin(), byStart.end(), p.x - joinTol,
                               [&](size_t i, double x) { return startX(i) < x; });
    for (; it != byStart.end() && startX(*it) <= p.x + joinTol; ++it)
      if ((slices[*it].front().seg.a - p).length() <= joinTol) f(*it);
  };
  std::vector<bool> used(slices.size(), false);
  for (size_t i = 0; i < slices.size(); ++i) {
    if (used[i]) continue;
    startingNear(slices[i].front().seg.a, [&](size_t j) {
      if (j > i && !used[j] && same(slices[i], slices[j])) used[j] = true;
    });
  }
  std::vector<Slice> chains;
  for (size_t i = 0; i < slices.size(); ++i) {
    if (used[i]) continue;
    used[i] = true;
    Slice chain;
    for (const auto& p : slices[i]) appendMerged(chain, p);
    while ((chain.back().seg.b - chain.front().seg.a).length() > joinTol || chain.size() < 2) {
      size_t best = slices.size();
      double bestDist = joinTol;
      startingNear(chain.back().seg.b, [&](size_t j) {
        double dist = (slices[j].front().seg.a - chain.back().seg.b).length();
        if (!used[j] && dist <= bestDist) best = j, bestDist = dist;
      });
      if (best == slices.size()) break;
      used[best] = true;
      for (const auto& p : slices[best]) appendMerged(chain, p);
    }
    chains.push_back(std::move(chain));
  }
  if (!closedSource) joinOpenEnds(chains, joinTol);
  return chains;
}

Pline2 polylineOf(Slice chain, bool closedSource, double joinTol, double tol) {
  Pline2 pl;
  // An open source gives open results, even one that comes back to its start.
  pl.closed = closedSource && chain.size() > 1 && (chain.back().seg.b - chain.front().seg.a).length() <= joinTol;
  if (pl.closed && chain.size() > 2 && chain.back().origin == chain.front().origin) {
    // The seam fell inside one line or circle.
    Piece last = chain.back();
    chain.pop_back();
    Slice head;
    appendMerged(head, last);
    appendMerged(head, chain.front());
    chain.front() = head.size() == 1 ? head.front() : chain.front();
    if (head.size() != 1) chain.push_back(last);
  }
  for (const auto& p : chain)
    if ((p.seg.b - p.seg.a).length() > tol || pl.vertices.empty()) pl.vertices.push_back({p.seg.a, p.seg.bulge});
  if (!pl.closed) pl.vertices.push_back({chain.back().seg.b, 0});
  return pl;
}

}  // namespace

bool crossesItself(const Pline2& pl, double tol) {
  RawPath path;
  path.closed = pl.closed;
  for (size_t i = 0; i < pl.segmentCount(); ++i) {
    Seg s = segmentOf(pl, i);
    if ((s.b - s.a).length() > tol) path.pieces.push_back({s, RawRole::Offset, i});
  }
  auto cuts = crossings({path}, tol);
  return std::any_of(cuts.front().begin(), cuts.front().end(), [](const auto& c) { return !c.empty(); });
}

std::vector<Pline2> trimRawOffset(const RawOffset& raw, const Pline2& source, const OffsetClearance& clearance,
                                  double d, double tol) {
  if (source.segmentCount() == 0 || raw.paths.empty()) return {};
  auto cuts = crossings(raw.paths, tol);
  if (!source.closed) addEndCircleCrossings(raw.paths.front(), source, d, tol, cuts.front());
  std::vector<Slice> kept;
  for (size_t p = 0; p < raw.paths.size(); ++p)
    if (!raw.paths[p].cutsOnly)
      for (auto& slice : slicesOf(raw.paths[p], std::move(cuts[p]), tol))
      if (keepsClear(slice, clearance)) kept.push_back(std::move(slice));
  if (kept.empty()) return {};
  double joinTol = 1e3 * tol;
  std::vector<Pline2> out;
  for (auto& chain : stitch(kept, source.closed, joinTol)) {
    Pline2 pl = polylineOf(std::move(chain), source.closed, joinTol, tol);
    if (pl.segmentCount() > 0) out.push_back(std::move(pl));
  }
  return out;
}

}  // namespace standalone::kernel
