#include "standalone/kernel/arrangement.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <numeric>
#include <unordered_map>

namespace standalone::kernel {

namespace {

constexpr double kPi = std::numbers::pi;

// The circle of a bulged piece.
struct Circle2 {
  Vec2 c;
  double r = 0;
};

Circle2 circleOf(const BulgePiece& p) {
  Vec2 d = p.b - p.a;
  double chord = d.length();
  Vec2 mid = (p.a + p.b) * 0.5;
  Vec2 left{-d.y / chord, d.x / chord};
  double beta = p.bulge;
  // The centre lies left of the chord for a counter-clockwise arc under a half circle.
  double offset = chord * 0.5 * (1 - beta * beta) / (2 * beta);
  return {mid + left * offset, chord * (1 + beta * beta) / (4 * std::abs(beta))};
}

Arc2 arcOf(const BulgePiece& p) {
  Circle2 k = circleOf(p);
  Vec2 s = p.a - k.c;
  return {k.c, k.r, std::atan2(s.y, s.x), 4 * std::atan(p.bulge), true};
}

Box2 boxOf(const BulgePiece& p) {
  Box2 b{std::min(p.a.x, p.b.x), std::min(p.a.y, p.b.y), std::max(p.a.x, p.b.x), std::max(p.a.y, p.b.y)};
  if (p.bulge != 0) {  // the circle's box holds the arc: coarse but safe
    Circle2 k = circleOf(p);
    b = {std::min(b.minX, k.c.x - k.r), std::min(b.minY, k.c.y - k.r), std::max(b.maxX, k.c.x + k.r),
         std::max(b.maxY, k.c.y + k.r)};
  }
  return b;
}

// Where p lies along the piece, 0 at a and 1 at b (p on the piece).
double positionOn(const BulgePiece& piece, Vec2 p) {
  if (piece.bulge == 0) {
    Vec2 d = piece.b - piece.a;
    return (p - piece.a).dot(d) / d.dot(d);
  }
  Arc2 arc = arcOf(piece);
  Vec2 q = p - arc.c;
  double angle = std::atan2(q.y, q.x) - arc.start;
  if (arc.sweep < 0) angle = -angle;
  angle = std::fmod(angle, 2 * kPi);
  if (angle < 0) angle += 2 * kPi;
  if (angle > std::abs(arc.sweep) + kPi) angle -= 2 * kPi;  // just before the start
  return angle / std::abs(arc.sweep);
}

// The part of a piece between two positions, ends given.
BulgePiece partOf(const BulgePiece& piece, double t0, double t1, Vec2 a, Vec2 b) {
  if (piece.bulge == 0) return {a, b, 0};
  double sweep = 4 * std::atan(piece.bulge) * (t1 - t0);
  return {a, b, std::tan(sweep / 4)};
}

// Tangent angle at the start of a piece and its signed curvature (positive
// turning left), to order the pieces leaving a point.
std::pair<double, double> leavingDirection(const BulgePiece& p) {
  Vec2 d = p.b - p.a;
  double chordAngle = std::atan2(d.y, d.x);
  if (p.bulge == 0) return {chordAngle, 0};
  double included = 4 * std::atan(p.bulge);
  double angle = chordAngle - included / 2;
  if (angle <= -kPi) angle += 2 * kPi;
  if (angle > kPi) angle -= 2 * kPi;
  return {angle, (p.bulge > 0 ? 1 : -1) / circleOf(p).r};
}

// Area between a bulged piece and its chord, signed as the loop gains it.
double segmentArea(const BulgePiece& p) {
  if (p.bulge == 0) return 0;
  double included = 4 * std::atan(std::abs(p.bulge));
  double r = circleOf(p).r;
  double area = r * r / 2 * (included - std::sin(included));
  return p.bulge > 0 ? area : -area;
}

// Is p strictly inside the region between the arc and its chord?
bool inSegment(const BulgePiece& piece, Vec2 p) {
  Circle2 k = circleOf(piece);
  if ((p - k.c).length() >= k.r) return false;
  double side = (piece.b - piece.a).cross(p - piece.a);
  return piece.bulge > 0 ? side < 0 : side > 0;
}

// Merges points closer than a tolerance into one numbered vertex.
class VertexIndex {
 public:
  explicit VertexIndex(double tolerance) : tol_(tolerance), cell_(tolerance * 4) {}

  int find(Vec2 p) {
    long cx = cellOf(p.x), cy = cellOf(p.y);
    for (long dx = -1; dx <= 1; ++dx)
      for (long dy = -1; dy <= 1; ++dy) {
        auto it = cells_.find(key(cx + dx, cy + dy));
        if (it == cells_.end()) continue;
        for (int v : it->second)
          if ((points_[v] - p).length() <= tol_) return v;
      }
    int v = static_cast<int>(points_.size());
    points_.push_back(p);
    cells_[key(cx, cy)].push_back(v);
    return v;
  }
  Vec2 point(int v) const { return points_[v]; }
  std::size_t size() const { return points_.size(); }
  // The vertices within distance d of p.
  template <typename F>
  void near(Vec2 p, double d, F f) const {
    double cells = std::ceil(d / cell_);
    if ((2 * cells + 1) * (2 * cells + 1) > static_cast<double>(points_.size())) {  // fewer points than cells
      for (std::size_t v = 0; v < points_.size(); ++v)
        if ((points_[v] - p).length() <= d) f(static_cast<int>(v));
      return;
    }
    long span = static_cast<long>(cells);
    long cx = cellOf(p.x), cy = cellOf(p.y);
    for (long dx = -span; dx <= span; ++dx)
      for (long dy = -span; dy <= span; ++dy) {
        auto it = cells_.find(key(cx + dx, cy + dy));
        if (it == cells_.end()) continue;
        for (int v : it->second)
          if ((points_[v] - p).length() <= d) f(v);
      }
  }

 private:
  long cellOf(double x) const { return static_cast<long>(std::floor(x / cell_)); }
  static std::uint64_t key(long x, long y) {
    return (static_cast<std::uint64_t>(static_cast<std::uint32_t>(x)) << 32) | static_cast<std::uint32_t>(y);
  }
  double tol_, cell_;
  std::vector<Vec2> points_;
  std::unordered_map<std::uint64_t, std::vector<int>> cells_;
};

struct Edge {
  int from = 0, to = 0;
  BulgePiece piece;  // from -> to
};

BulgePiece reversed(const BulgePiece& p) { return {p.b, p.a, -p.bulge}; }

int findRoot(std::vector<int>& parent, int v) {
  while (parent[v] != v) v = parent[v] = parent[parent[v]];
  return v;
}

}  // namespace

double signedArea(const std::vector<BulgePiece>& pieces) {
  double area = 0;
  for (const BulgePiece& p : pieces) area += p.a.cross(p.b) / 2 + segmentArea(p);
  return area;
}

int windingNumber(const Loop& loop, Vec2 p) {
  if (p.x < loop.box.minX || p.x > loop.box.maxX || p.y < loop.box.minY || p.y > loop.box.maxY) return 0;
  int winding = 0;
  for (const BulgePiece& piece : loop.pieces) {
    Vec2 a = piece.a, b = piece.b;
    double side = (b - a).cross(p - a);
    if (a.y <= p.y) {
      if (b.y > p.y && side > 0) ++winding;
    } else if (b.y <= p.y && side < 0) {
      --winding;
    }
    if (piece.bulge != 0 && inSegment(piece, p)) winding += piece.bulge > 0 ? 1 : -1;
  }
  return winding;
}

std::size_t Arrangement::faceCount() const {
  return static_cast<std::size_t>(
      std::count_if(loops_.begin(), loops_.end(), [](const Loop& l) { return l.area > 0; }));
}

Arrangement::Arrangement(const std::vector<BulgePiece>& input, double gapTolerance) {
  // Pieces of usable size; arcs over half a turn are halved so that every
  // piece is a proper arc and a circle has two ends.
  std::vector<BulgePiece> pieces;
  double scale = 0;
  for (const BulgePiece& p : input)
    scale = std::max({scale, std::abs(p.a.x), std::abs(p.a.y), std::abs(p.b.x), std::abs(p.b.y)});
  tolerance_ = 1e-9 * std::max(scale, 1e-300);
  for (const BulgePiece& p : input) {
    if ((p.b - p.a).length() <= tolerance_) continue;  // a closed piece comes as two halves
    if (std::abs(p.bulge) > 1) {
      double included = 4 * std::atan(p.bulge);
      Vec2 c = circleOf(p).c;
      Vec2 s = p.a - c;
      double start = std::atan2(s.y, s.x);
      Vec2 m = c + Vec2{std::cos(start + included / 2), std::sin(start + included / 2)} * s.length();
      double half = std::tan(included / 8);
      pieces.push_back({p.a, m, half});
      pieces.push_back({m, p.b, half});
      continue;
    }
    pieces.push_back(p);
  }

  // Crossings of every pair of pieces whose boxes meet.
  std::vector<Box2> boxes;
  boxes.reserve(pieces.size());
  for (const BulgePiece& p : pieces) boxes.push_back(boxOf(p));
  std::vector<std::vector<Vec2>> cuts(pieces.size());
  SpatialGrid grid(boxes);
  double tol = tolerance_ * 10;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    Box2 q = boxes[i];
    q = {q.minX - tol, q.minY - tol, q.maxX + tol, q.maxY + tol};
    grid.query(q, [&](std::size_t j) {
      if (j <= i) return false;
      const BulgePiece &s = pieces[i], &t = pieces[j];
      std::vector<Vec2> hits;
      if (s.bulge == 0 && t.bulge == 0)
        hits = intersectSegments({s.a, s.b}, {t.a, t.b}, tol);
      else if (s.bulge == 0)
        hits = intersectSegmentArc({s.a, s.b}, arcOf(t), tol);
      else if (t.bulge == 0)
        hits = intersectSegmentArc({t.a, t.b}, arcOf(s), tol);
      else
        hits = intersectArcs(arcOf(s), arcOf(t), tol);
      for (Vec2 h : hits) {
        cuts[i].push_back(h);
        cuts[j].push_back(h);
      }
      return false;
    });
  }

  // Split every piece at its cuts, ends merged into shared vertices.
  VertexIndex vertices(tol * 10);
  std::vector<Edge> edges;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const BulgePiece& p = pieces[i];
    std::vector<std::pair<double, Vec2>> stops{{0.0, p.a}, {1.0, p.b}};
    for (Vec2 c : cuts[i]) {
      double t = positionOn(p, c);
      if (t > 0 && t < 1) stops.push_back({t, c});
    }
    std::sort(stops.begin(), stops.end(), [](const auto& x, const auto& y) { return x.first < y.first; });
    int prev = vertices.find(stops[0].second);
    double prevT = 0;
    for (std::size_t k = 1; k < stops.size(); ++k) {
      int v = vertices.find(stops[k].second);
      if (v == prev) continue;
      edges.push_back({prev, v, partOf(p, prevT, stops[k].first, vertices.point(prev), vertices.point(v))});
      prev = v;
      prevT = stops[k].first;
    }
  }

  // One edge per pair of vertices and shape: overlapping pieces give the same edge twice.
  for (Edge& e : edges)
    if (e.from > e.to) {
      std::swap(e.from, e.to);
      e.piece = reversed(e.piece);
    }
  std::sort(edges.begin(), edges.end(), [](const Edge& x, const Edge& y) {
    if (x.from != y.from) return x.from < y.from;
    if (x.to != y.to) return x.to < y.to;
    return x.piece.bulge < y.piece.bulge;
  });
  std::vector<Edge> unique;
  for (const Edge& e : edges)
    if (unique.empty() || unique.back().from != e.from || unique.back().to != e.to ||
        std::abs(unique.back().piece.bulge - e.piece.bulge) > 1e-6)
      unique.push_back(e);
  edges = std::move(unique);

  std::size_t n = vertices.size();
  std::vector<int> degree(n, 0);
  for (const Edge& e : edges) ++degree[e.from], ++degree[e.to];

  // Gap tolerance: a loose end is bridged to the nearest other vertex within reach.
  if (gapTolerance > 0) {
    std::vector<Edge> bridges;
    for (std::size_t v = 0; v < n; ++v) {
      if (degree[v] != 1) continue;
      int neighbour = -1;
      for (const Edge& e : edges)
        if (e.from == static_cast<int>(v) || e.to == static_cast<int>(v))
          neighbour = e.from == static_cast<int>(v) ? e.to : e.from;
      int best = -1;
      double bestDistance = gapTolerance;
      Vec2 p = vertices.point(static_cast<int>(v));
      vertices.near(p, gapTolerance, [&](int w) {
        if (w == static_cast<int>(v) || w == neighbour) return;
        double d = (vertices.point(w) - p).length();
        if (d <= bestDistance) best = w, bestDistance = d;
      });
      if (best < 0) continue;
      int from = std::min<int>(static_cast<int>(v), best), to = std::max<int>(static_cast<int>(v), best);
      bool known =
          std::any_of(bridges.begin(), bridges.end(), [&](const Edge& e) { return e.from == from && e.to == to; });
      if (!known) bridges.push_back({from, to, {vertices.point(from), vertices.point(to), 0}});
    }
    for (const Edge& e : bridges) ++degree[e.from], ++degree[e.to], edges.push_back(e);
  }

  // Pieces that hang loose enclose nothing: peel them off from their free ends.
  std::vector<std::vector<int>> at(n);
  for (std::size_t i = 0; i < edges.size(); ++i)
    at[edges[i].from].push_back(static_cast<int>(i)), at[edges[i].to].push_back(static_cast<int>(i));
  std::vector<char> removed(edges.size(), 0);
  std::vector<int> loose;
  for (std::size_t v = 0; v < n; ++v)
    if (degree[v] == 1) loose.push_back(static_cast<int>(v));
  while (!loose.empty()) {
    int v = loose.back();
    loose.pop_back();
    for (int e : at[v]) {
      if (removed[e]) continue;
      removed[e] = 1;
      int other = edges[e].from == v ? edges[e].to : edges[e].from;
      --degree[v];
      if (--degree[other] == 1) loose.push_back(other);
    }
  }

  // Half-edges 2e (from -> to) and 2e+1 (to -> from), ordered counter-clockwise about their start.
  std::vector<std::vector<int>> leaving(n);
  std::vector<std::pair<double, double>> direction(edges.size() * 2);
  auto pieceOf = [&](int h) { return h % 2 == 0 ? edges[h / 2].piece : reversed(edges[h / 2].piece); };
  auto startOf = [&](int h) { return h % 2 == 0 ? edges[h / 2].from : edges[h / 2].to; };
  for (std::size_t e = 0; e < edges.size(); ++e) {
    if (removed[e]) continue;
    for (int h : {static_cast<int>(2 * e), static_cast<int>(2 * e + 1)}) {
      direction[h] = leavingDirection(pieceOf(h));
      leaving[startOf(h)].push_back(h);
    }
  }
  std::vector<int> slot(edges.size() * 2, -1);
  for (std::size_t v = 0; v < n; ++v) {
    auto& hs = leaving[v];
    // Pieces leaving along one tangent are told apart by their curvature:
    // the one bending more to the left comes later counter-clockwise.
    std::sort(hs.begin(), hs.end(), [&](int x, int y) { return direction[x].first < direction[y].first; });
    for (std::size_t i = 0; i < hs.size();) {
      std::size_t j = i + 1;
      while (j < hs.size() && direction[hs[j]].first - direction[hs[j - 1]].first < 1e-9) ++j;
      if (j - i > 1)
        std::sort(hs.begin() + static_cast<long>(i), hs.begin() + static_cast<long>(j),
                  [&](int x, int y) { return direction[x].second < direction[y].second; });
      i = j;
    }
    for (std::size_t i = 0; i < hs.size(); ++i) slot[hs[i]] = static_cast<int>(i);
  }

  // Components, for telling islands from the faces around them.
  std::vector<int> parent(n);
  std::iota(parent.begin(), parent.end(), 0);
  for (std::size_t e = 0; e < edges.size(); ++e)
    if (!removed[e]) parent[findRoot(parent, edges[e].from)] = findRoot(parent, edges[e].to);

  // Trace the loops: after arriving at a vertex, leave by the piece next
  // clockwise from the way back, so the face stays on the left.
  std::vector<char> used(edges.size() * 2, 0);
  for (std::size_t first = 0; first < used.size(); ++first) {
    if (used[first] || removed[first / 2]) continue;
    Loop loop;
    int h = static_cast<int>(first);
    while (!used[h]) {
      used[h] = 1;
      loop.pieces.push_back(pieceOf(h));
      int twin = h ^ 1;
      int v = startOf(twin);
      const auto& hs = leaving[v];
      int k = slot[twin];
      h = hs[(k + static_cast<int>(hs.size()) - 1) % hs.size()];
    }
    if (h != static_cast<int>(first)) continue;  // only on an inconsistent order: keep the result sane
    loop.area = signedArea(loop.pieces);
    Box2 box = boxOf(loop.pieces[0]);
    for (const BulgePiece& p : loop.pieces) {
      Box2 b = boxOf(p);
      box = {std::min(box.minX, b.minX), std::min(box.minY, b.minY), std::max(box.maxX, b.maxX),
             std::max(box.maxY, b.maxY)};
    }
    loop.box = box;
    loop.component = findRoot(parent, startOf(static_cast<int>(first)));
    loops_.push_back(std::move(loop));
  }
}

std::optional<Arrangement::Region> Arrangement::regionAt(Vec2 p) const {
  std::optional<std::size_t> face;
  for (std::size_t i = 0; i < loops_.size(); ++i) {
    const Loop& l = loops_[i];
    if (l.area <= 0 || (face && l.area >= loops_[*face].area)) continue;
    if (windingNumber(l, p) != 0) face = i;
  }
  if (!face) return std::nullopt;
  const Loop& outer = loops_[*face];
  Region region{*face, {}};
  // Figures inside the face: their outer edges, when p is not inside them.
  std::vector<std::size_t> candidates;
  for (std::size_t i = 0; i < loops_.size(); ++i) {
    const Loop& l = loops_[i];
    if (l.area >= 0 || l.component == outer.component) continue;
    if (l.box.minX < outer.box.minX || l.box.maxX > outer.box.maxX || l.box.minY < outer.box.minY ||
        l.box.maxY > outer.box.maxY)
      continue;
    if (windingNumber(outer, l.pieces[0].a) == 0 || windingNumber(l, p) != 0) continue;
    candidates.push_back(i);
  }
  // An island inside another island belongs to a face of that island.
  for (std::size_t i : candidates) {
    bool nested = std::any_of(candidates.begin(), candidates.end(), [&](std::size_t j) {
      return j != i && windingNumber(loops_[j], loops_[i].pieces[0].a) != 0;
    });
    if (!nested) region.islands.push_back(i);
  }
  // A figure inside a smaller face around p is no island of this face: such a
  // face would have been chosen. Figures inside faces of other islands are
  // already out (nested). What is left are the islands proper.
  return region;
}

}  // namespace standalone::kernel
