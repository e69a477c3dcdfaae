#pragma once
// Deterministic benchmark data, generated identically by shapely_bench.py:
// a 64-bit linear congruential generator and fixed formulas.
#include <cmath>
#include <cstdint>
#include <numbers>

#include "host/entity.h"

namespace kernelbench {

class Lcg {
 public:
  // Uniform in [0, 1).
  double next() {
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<double>(state_ >> 11) * (1.0 / 9007199254740992.0);
  }

 private:
  std::uint64_t state_ = 20261121;
};

// A long wavy open polyline of straight segments.
inline host::LwPolyline longPolyline(int vertices) {
  Lcg rng;
  host::LwPolyline pl;
  pl.vertices.reserve(vertices);
  for (int i = 0; i < vertices; ++i) pl.vertices.push_back({double(i), 10 * std::sin(i * 0.01) + rng.next()});
  return pl;
}

// Random segments in a 1000 x 1000 square, up to 50 long.
inline std::vector<host::Line> randomSegments(int count) {
  Lcg rng;
  std::vector<host::Line> out;
  for (int i = 0; i < count; ++i) {
    double x = 1000 * rng.next(), y = 1000 * rng.next(), a = 2 * std::numbers::pi * rng.next(), l = 50 * rng.next();
    out.push_back({{x, y, 0}, {x + l * std::cos(a), y + l * std::sin(a), 0}});
  }
  return out;
}

// A closed wavy star of `vertices` vertices, radius about 100 with a little
// noise; bulges in ±0.05 when bulged (arc radii down to about 0.3, far below
// the offsets: the hard case for trimming).
inline host::LwPolyline wavyStar(int vertices, bool bulged) {
  Lcg rng;
  host::LwPolyline pl;
  pl.closed = true;
  for (int i = 0; i < vertices; ++i) {
    double a = 2 * std::numbers::pi * i / vertices;
    double r = 100 + 10 * std::sin(17 * a) + 0.001 * rng.next();
    double b = 0.05 * (2 * rng.next() - 1);
    pl.vertices.push_back({r * std::cos(a), r * std::sin(a), bulged ? b : 0.0});
  }
  return pl;
}

}  // namespace kernelbench
