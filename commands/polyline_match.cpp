#include "commands/polyline_match.h"

#include <algorithm>
#include <cmath>

namespace commands {

namespace {

struct ArcSegment {
  double chord = 0;
  double sweep = 0;  // unsigned included angle, 0 for a straight segment
};

ArcSegment segmentOf(const MatchPolyline& pl, std::size_t i) {
  const BlendVertex& a = pl.vertices[i];
  const BlendVertex& b = pl.vertices[(i + 1) % pl.vertices.size()];
  return {std::hypot(b.p.x - a.p.x, b.p.y - a.p.y), 4 * std::atan(std::abs(a.bulge))};
}

std::size_t segmentCount(const MatchPolyline& pl) {
  if (pl.vertices.size() < 2) return 0;
  return pl.closed ? pl.vertices.size() : pl.vertices.size() - 1;
}

// Twice the signed area in the polyline's plane, its arcs included.
double signedArea(const MatchPolyline& pl) {
  double area = 0;
  for (std::size_t i = 0; i < segmentCount(pl); ++i) {
    const BlendVertex& a = pl.vertices[i];
    const BlendVertex& b = pl.vertices[(i + 1) % pl.vertices.size()];
    area += a.p.x * b.p.y - b.p.x * a.p.y;
    ArcSegment s = segmentOf(pl, i);
    if (s.sweep > 0 && s.chord > 0) {
      double r = s.chord / (2 * std::sin(s.sweep / 2));
      area += std::copysign(r * r * (s.sweep - std::sin(s.sweep)), a.bulge);
    }
  }
  return area;
}

double distance2d(const ge::Point3d& a, const ge::Point3d& b) { return std::hypot(a.x - b.x, a.y - b.y); }

}  // namespace

double segmentLength(const MatchPolyline& pl, std::size_t i) {
  ArcSegment s = segmentOf(pl, i);
  if (s.sweep < 1e-12) return s.chord;
  return s.chord / (2 * std::sin(s.sweep / 2)) * s.sweep;
}

void splitToCount(MatchPolyline& pl, std::size_t count) {
  while (pl.vertices.size() < count && segmentCount(pl) > 0) {
    std::size_t longest = 0;
    for (std::size_t i = 1; i < segmentCount(pl); ++i)
      if (segmentLength(pl, i) > segmentLength(pl, longest)) longest = i;
    BlendVertex& a = pl.vertices[longest];
    const BlendVertex& b = pl.vertices[(longest + 1) % pl.vertices.size()];
    // The arc's middle lies off the chord's middle by its sagitta, to the
    // right of the chord for a counter-clockwise (positive) bulge.
    double dx = b.p.x - a.p.x, dy = b.p.y - a.p.y, chord = std::hypot(dx, dy);
    double sagitta = a.bulge * chord / 2;
    ge::Point3d middle{(a.p.x + b.p.x) / 2, (a.p.y + b.p.y) / 2, (a.p.z + b.p.z) / 2};
    if (chord > 0) middle = {middle.x + dy / chord * sagitta, middle.y - dx / chord * sagitta, middle.z};
    double half = std::tan(std::atan(a.bulge) / 2);
    a.bulge = half;
    pl.vertices.insert(pl.vertices.begin() + static_cast<std::ptrdiff_t>(longest) + 1, BlendVertex{middle, half});
  }
}

MatchPolyline opened(const MatchPolyline& pl) {
  MatchPolyline out = pl;
  if (!pl.closed || pl.vertices.empty()) return out;
  out.closed = false;
  out.vertices.push_back({pl.vertices.front().p, 0});
  return out;
}

MatchPolyline reversed(const MatchPolyline& pl) {
  MatchPolyline out;
  out.closed = pl.closed;
  std::size_t n = pl.vertices.size();
  for (std::size_t j = 0; j < n; ++j) {
    std::size_t i = n - 1 - j;
    // The segment leaving vertex i backwards is the one that arrived at it.
    double bulge = 0;
    if (pl.closed) bulge = -pl.vertices[(i + n - 1) % n].bulge;
    else if (i > 0) bulge = -pl.vertices[i - 1].bulge;
    out.vertices.push_back({pl.vertices[i].p, bulge});
  }
  return out;
}

void matchPolylines(MatchPolyline& a, MatchPolyline& b) {
  if (a.vertices.empty() || b.vertices.empty()) return;
  if (a.closed != b.closed) {
    a = opened(a);
    b = opened(b);
  }
  const ge::Point3d& start = a.vertices.front().p;
  if (a.closed) {
    if ((signedArea(a) < 0) != (signedArea(b) < 0)) b = reversed(b);
    auto nearest = std::min_element(b.vertices.begin(), b.vertices.end(), [&](const auto& u, const auto& v) {
      return distance2d(u.p, start) < distance2d(v.p, start);
    });
    std::rotate(b.vertices.begin(), nearest, b.vertices.end());
  } else if (distance2d(b.vertices.back().p, start) < distance2d(b.vertices.front().p, start)) {
    b = reversed(b);
  }
  std::size_t count = std::max(a.vertices.size(), b.vertices.size());
  splitToCount(a, count);
  splitToCount(b, count);
}

}  // namespace commands
