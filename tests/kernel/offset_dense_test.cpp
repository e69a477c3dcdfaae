// Offsets of dense and noisy polylines: a closed source gives closed loops
// only, an open source open pieces, and no point of a result comes nearer the
// source than the offset distance. Arcs far smaller than the distance and
// noise larger than the chords are the hard cases here.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "kernel_test.h"

namespace {

// Deterministic noise in [0, 1).
class Noise {
 public:
  explicit Noise(std::uint64_t seed) : state_(seed) {}
  double next() {
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<double>(state_ >> 11) * (1.0 / 9007199254740992.0);
  }

 private:
  std::uint64_t state_;
};

// A wavy star of radius about 100 with 17 lobes; vertices about 0.07 apart
// at 10,000 vertices, bulges uniform in ±maxBulge (arc radii near 0.3 at 0.05).
LwPolyline wavyStar(int n, double maxBulge, double noise, bool closed) {
  Noise rng(20261121);
  LwPolyline pl;
  pl.closed = closed;
  for (int i = 0; i < n; ++i) {
    double a = 2 * kPi * i / n;
    double r = 100 + 10 * std::sin(17 * a) + noise * rng.next();
    pl.vertices.push_back({r * std::cos(a), r * std::sin(a), maxBulge * (2 * rng.next() - 1)});
  }
  if (!closed) pl.vertices.back().bulge = 0;
  return pl;
}

// A circle of radius 50 whose vertices jump radially by up to `noise`.
LwPolyline noisyCircle(int n, double noise, bool closed, std::uint64_t seed) {
  Noise rng(seed);
  LwPolyline pl;
  pl.closed = closed;
  for (int i = 0; i < n; ++i) {
    double a = 2 * kPi * i / n, r = 50 + noise * (2 * rng.next() - 1);
    pl.vertices.push_back({r * std::cos(a), r * std::sin(a)});
  }
  return pl;
}

// Two 10x10 squares joined by a neck 2 high, each edge cut into `pieces`.
LwPolyline denseDumbbell(int pieces) {
  const double corners[][2] = {{0, 0},  {10, 0},  {10, 4}, {14, 4}, {14, 0},  {24, 0},
                               {24, 10}, {14, 10}, {14, 6}, {10, 6}, {10, 10}, {0, 10}};
  LwPolyline pl;
  pl.closed = true;
  for (int i = 0; i < 12; ++i) {
    const double* p = corners[i];
    const double* q = corners[(i + 1) % 12];
    for (int k = 0; k < pieces; ++k) {
      double t = double(k) / pieces;
      pl.vertices.push_back({p[0] + (q[0] - p[0]) * t, p[1] + (q[1] - p[1]) * t});
    }
  }
  return pl;
}

// Segment i of a bulged polyline as a chord and, for arcs, centre, radius
// and sweep: the test's own geometry, independent of the kernel's.
struct TestSeg {
  double ax, ay, bx, by, cx = 0, cy = 0, r = 0, start = 0, sweep = 0;
  bool arc = false;
};

TestSeg segmentOf(const LwPolyline& pl, size_t i) {
  const auto& a = pl.vertices[i];
  const auto& b = pl.vertices[(i + 1) % pl.vertices.size()];
  TestSeg s{a.x, a.y, b.x, b.y};
  double dx = b.x - a.x, dy = b.y - a.y, chord = std::hypot(dx, dy);
  if (a.bulge == 0 || chord == 0) return s;
  s.arc = true;
  s.sweep = 4 * std::atan(a.bulge);
  s.r = chord / (2 * std::abs(std::sin(s.sweep / 2)));
  double h = chord * (1 - a.bulge * a.bulge) / (4 * a.bulge);  // centre's offset from the chord's middle, to the left
  s.cx = (a.x + b.x) / 2 - dy / chord * h, s.cy = (a.y + b.y) / 2 + dx / chord * h;
  s.start = std::atan2(a.y - s.cy, a.x - s.cx);
  return s;
}

void pointAt(const TestSeg& s, double t, double& x, double& y) {
  if (!s.arc) {
    x = s.ax + (s.bx - s.ax) * t, y = s.ay + (s.by - s.ay) * t;
    return;
  }
  double ang = s.start + s.sweep * t;
  x = s.cx + s.r * std::cos(ang), y = s.cy + s.r * std::sin(ang);
}

double distanceTo(const TestSeg& s, double x, double y) {
  if (s.arc) {
    double rel = std::atan2(y - s.cy, x - s.cx) - s.start;
    if (s.sweep < 0) rel = -rel;
    rel = std::fmod(std::fmod(rel, 2 * kPi) + 2 * kPi, 2 * kPi);
    if (rel <= std::abs(s.sweep)) return std::abs(std::hypot(x - s.cx, y - s.cy) - s.r);
    return std::min(std::hypot(x - s.ax, y - s.ay), std::hypot(x - s.bx, y - s.by));
  }
  double dx = s.bx - s.ax, dy = s.by - s.ay, l2 = dx * dx + dy * dy;
  double t = l2 > 0 ? std::clamp(((x - s.ax) * dx + (y - s.ay) * dy) / l2, 0.0, 1.0) : 0.0;
  return std::hypot(s.ax + dx * t - x, s.ay + dy * t - y);
}

// Distance from a point to a polyline, by brute force; segments that cannot
// come within `near` of the point are passed over.
double distanceTo(const std::vector<TestSeg>& segs, double x, double y, double near) {
  double best = 1e300;
  for (const auto& s : segs) {
    double reach = std::hypot(s.bx - s.ax, s.by - s.ay) * (s.arc ? 2.0 : 1.0) + (s.arc ? 2 * s.r : 0.0);
    if (std::hypot(x - s.ax, y - s.ay) - reach > std::min(best, near)) continue;
    best = std::min(best, distanceTo(s, x, y));
  }
  return best;
}

struct Case {
  std::string name;
  LwPolyline source;
  double d;
  int loops;  // expected number of results; 0: any number, at least one
  double loopArea = 0;  // expected area of each result; 0: not checked
};

std::ostream& operator<<(std::ostream& os, const Case& c) { return os << c.name; }

class DenseOffset : public ::testing::TestWithParam<Case> {};

// Checks the results of one offset: sense of closure, and distance from the
// source at samples spread along every result.
void expectClosureAndDistance(const LwPolyline& source, double d, const std::vector<EntityData>& out) {
  const double tol = 1e-7;
  std::vector<TestSeg> segs;
  for (size_t i = 0; i < (source.closed ? source.vertices.size() : source.vertices.size() - 1); ++i)
    segs.push_back(segmentOf(source, i));
  for (const auto& r : out) {
    const auto& pl = std::get<LwPolyline>(r);
    EXPECT_EQ(pl.closed, source.closed) << pl.vertices.size() << " vertices";
    size_t n = pl.closed ? pl.vertices.size() : pl.vertices.size() - 1;
    // Every segment's middle when there are few, else 4000 spread evenly,
    // at quarter, middle and three-quarter points in turn.
    size_t samples = std::min<size_t>(4000, n);
    int tooNear = 0;
    double nearest = 1e300;
    for (size_t k = 0; k < samples; ++k) {
      double x, y;
      pointAt(segmentOf(pl, k * n / samples), samples < n ? 0.25 * (1 + k % 3) : 0.5, x, y);
      double dist = distanceTo(segs, x, y, 2 * std::abs(d));
      nearest = std::min(nearest, dist);
      if (dist < std::abs(d) - tol) ++tooNear;
    }
    EXPECT_EQ(tooNear, 0) << "nearest " << nearest << " for |d| " << std::abs(d);
  }
}

TEST_P(DenseOffset, ClosureAndDistanceHold) {
  const Case& c = GetParam();
  std::vector<EntityData> out;
  ASSERT_EQ(kernel.getOffsetCurves(c.source, c.d, out), ErrorStatus::eOk);
  ASSERT_FALSE(out.empty());
  if (c.loops > 0) {
    EXPECT_EQ(out.size(), size_t(c.loops));
  }
  expectClosureAndDistance(c.source, c.d, out);
  if (c.loopArea > 0) {
    for (const auto& r : out) EXPECT_NEAR(area(r), c.loopArea, 1e-9);
  }
}

// Scribbles: random vertices in a square, some with bulges, some repeated,
// crossing themselves many times, offset by small and large distances. An
// offset may be empty, but what there is keeps its distance and its closure.
TEST(DenseOffset, RandomScribblesKeepClosureAndDistance) {
  Noise rng(42);
  for (int trial = 0; trial < 300; ++trial) {
    LwPolyline pl;
    pl.closed = rng.next() < 0.6;
    int n = 3 + static_cast<int>(rng.next() * 30);
    for (int i = 0; i < n; ++i) {
      if (i > 0 && rng.next() < 0.05) {
        pl.vertices.push_back(pl.vertices.back());
        continue;
      }
      double bulge = rng.next() < 0.3 ? (2 * rng.next() - 1) * (rng.next() < 0.2 ? 3 : 0.5) : 0;
      pl.vertices.push_back({10 * rng.next(), 10 * rng.next(), bulge});
    }
    if (!pl.closed) pl.vertices.back().bulge = 0;
    double d = (2 * rng.next() - 1) * (rng.next() < 0.5 ? 0.5 : 3);
    SCOPED_TRACE("trial " + std::to_string(trial) + ", d " + std::to_string(d));
    std::vector<EntityData> out;
    ErrorStatus es = kernel.getOffsetCurves(pl, d, out);
    ASSERT_TRUE(es == ErrorStatus::eOk || (es == ErrorStatus::eInvalidOffset && out.empty()));
    expectClosureAndDistance(pl, d, out);
  }
}

std::vector<Case> cases() {
  std::vector<Case> out;
  for (bool closed : {true, false}) {
    std::string kind = closed ? "Closed" : "Open";
    for (double d : {2.0, -2.0}) {
      std::string side = d > 0 ? "Out" : "In";
      out.push_back({"TinyArcs" + kind + side, wavyStar(10000, 0.05, 0.001, closed), d, closed ? 1 : 0});
      out.push_back({"NoisyTinyArcs" + kind + side, wavyStar(10000, 0.05, 0.3, closed), d, closed ? 1 : 0});
    }
    // Deep inside the jagged circle, the corners of the noise meet up to four
    // offsets out and cut notches that part the inside into several loops.
    for (double d : {0.5, -0.5, 3.0, -3.0, -12.0})
      out.push_back({"NoisyCircle" + kind + (d > 0 ? "Out" : "In") + std::to_string(int(std::abs(d) * 10)),
                     noisyCircle(3000, 0.6, closed, 7), d, closed && d != -12.0 ? 1 : 0});
  }
  // Noise of 0.2 at chords of 0.1 makes the loop cross itself here and
  // there: its sides swap at each crossing.
  for (double d : {0.5, -0.5})
    out.push_back({std::string("TwistedCircle") + (d > 0 ? "Out" : "In"), noisyCircle(3000, 0.2, true, 11), d,
                   d > 0 ? 1 : 0});
  // A square whose right side ties a knot: a small clockwise loop outside.
  LwPolyline knot{{{0, 0}, {20, 0}, {20, 8}, {26, 14}, {26, 10}, {20, 16}, {20, 20}, {0, 20}}, true};
  out.push_back({"KnotGrows", knot, 1.5, 1});
  out.push_back({"KnotShrinks", knot, -0.5, 2});  // the knot's loop keeps an island
  // Inward by 1.5 the neck vanishes: two 7 x 7 squares, sides straight across the old neck.
  out.push_back({"DumbbellNeckVanishes", denseDumbbell(40), -1.5, 2, 7 * 7});
  out.push_back({"SparseDumbbellNeckVanishes", denseDumbbell(1), -1.5, 2, 7 * 7});
  out.push_back({"DumbbellNeckStays", denseDumbbell(40), -0.5, 1});
  out.push_back({"DumbbellGrows", denseDumbbell(40), 1.0, 1});
  return out;
}

auto caseName = [](const auto& row) { return row.param.name; };

INSTANTIATE_TEST_SUITE_P(Families, DenseOffset, ::testing::ValuesIn(cases()), caseName);

}  // namespace
