// Offsets of dense and noisy polylines: a closed source gives closed loops
// only, an open source open pieces, and no point of a result comes nearer the
// source than the offset distance. Arcs far smaller than the distance and
// noise larger than the chords are the hard cases here.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <numbers>
#include <string>
#include <vector>

#include "standalone/kernel/curve_kernel.h"

namespace {

using namespace host;
constexpr double kPi = std::numbers::pi;

standalone::CurveKernel kernel;

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

struct Case {
  std::string name;
  LwPolyline source;
  double d;
  int loops;  // expected number of results; 0: any number, at least one
};

std::ostream& operator<<(std::ostream& os, const Case& c) { return os << c.name; }

class DenseOffset : public ::testing::TestWithParam<Case> {};

// Checks the results of one offset: sense of closure, count, and distance
// from the source at samples spread along every result (each segment's
// middle among them).
TEST_P(DenseOffset, ClosureAndDistanceHold) {
  const Case& c = GetParam();
  std::vector<EntityData> out;
  ASSERT_EQ(kernel.getOffsetCurves(c.source, c.d, out), ErrorStatus::eOk);
  ASSERT_FALSE(out.empty());
  if (c.loops > 0) {
    EXPECT_EQ(out.size(), size_t(c.loops));
  }
  const double tol = 1e-7;
  for (const auto& r : out) {
    const auto& pl = std::get<LwPolyline>(r);
    EXPECT_EQ(pl.closed, c.source.closed) << pl.vertices.size() << " vertices";
    double s, t;
    kernel.getStartParam(r, s), kernel.getEndParam(r, t);
    int samples = std::min<int>(4000, 2 * pl.vertices.size() + 1);
    int tooNear = 0;
    double nearest = 1e300;
    for (int i = 0; i <= samples; ++i) {
      ge::Point3d p, q;
      kernel.getPointAtParam(r, s + (t - s) * (i + 0.5) / (samples + 1), p);
      kernel.getClosestPointTo(c.source, p, q);
      double dist = q.distanceTo(p);
      nearest = std::min(nearest, dist);
      if (dist < std::abs(c.d) - tol) ++tooNear;
    }
    EXPECT_EQ(tooNear, 0) << "nearest " << nearest << " for |d| " << std::abs(c.d);
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
  out.push_back({"DumbbellNeckVanishes", denseDumbbell(40), -1.5, 2});
  out.push_back({"DumbbellNeckStays", denseDumbbell(40), -0.5, 1});
  out.push_back({"DumbbellGrows", denseDumbbell(40), 1.0, 1});
  return out;
}

auto caseName = [](const auto& info) { return info.param.name; };

INSTANTIATE_TEST_SUITE_P(Families, DenseOffset, ::testing::ValuesIn(cases()), caseName);

}  // namespace
