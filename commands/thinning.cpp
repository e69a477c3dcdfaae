#include "commands/thinning.h"

#include <cassert>
#include <cmath>

namespace commands {

namespace {

// A turn sharper than this (radians between the two legs) is a spike and always stays.
constexpr double kSpikeAngle = 0.1;
// The passes stop after this many.
constexpr int kMaxPasses = 5;

// Whether the middle point of a triple stays. With u = prev - mid and
// v = next - mid, the angle A between them is atan2(|u x v|, u.v) and the
// offset H = |u| sin A = |u x v| / |v|; the comparisons below are those two
// tests without the trigonometry. Degenerate triples (a zero leg) have A = 0
// and so are spikes.
bool keepsMiddle(const ge::Point3d& prev, const ge::Point3d& mid, const ge::Point3d& next, double merge) {
  static const double kTanSpike = std::tan(kSpikeAngle);
  ge::Vector3d u = prev - mid, v = next - mid;
  double cross = u.cross(v).length();
  double dot = u.dot(v);
  if (cross == 0 && dot >= 0) return true;           // A = 0
  if (dot > 0 && cross < kTanSpike * dot) return true;  // A < 0.1
  return cross > merge * v.length();                  // H > D
}

ge::Point3d centroid(const ge::PointList& q, std::size_t first, std::size_t count) {
  ge::Vector3d sum;
  for (std::size_t i = first; i < first + count; ++i) sum = sum + q[i].asVector();
  sum = sum / static_cast<double>(count);
  return {sum.x, sum.y, sum.z};
}

}  // namespace

ThinningThresholds thinningThresholds(double scale, double tolerance) {
  return {0.001 * tolerance * scale, 0.005 * tolerance * scale};
}

namespace {

// One pass in place. The output never overtakes the input: before the pair
// at i at most i points have been written, so p[i - 1] still holds its value
// (or was rewritten with that same point) and p[i], p[i + 1] are read before
// anything is written at their places.
void thinningPassInPlace(ge::PointList& p, double merge) {
  const std::size_t n = p.size();
  if (n == 0) return;
  std::size_t written = 1;  // p[0] stays where it is
  std::size_t i = 1;
  for (; i + 1 < n; i += 2) {
    ge::Point3d prev = p[i - 1], mid = p[i], next = p[i + 1];
    if (keepsMiddle(prev, mid, next, merge)) p[written++] = mid;
    p[written++] = next;
  }
  for (; i < n; ++i) p[written++] = p[i];
  p.resize(written);
}

}  // namespace

ge::PointList thinningPass(const ge::PointList& p, double merge) {
  ge::PointList out = p;
  thinningPassInPlace(out, merge);
  return out;
}

ge::PointList thinningPasses(ge::PointList points, double merge) {
  for (int pass = 0; pass < kMaxPasses && points.size() >= 3; ++pass) thinningPassInPlace(points, merge);
  return points;
}


ge::PointList mergeClusters(const ge::PointList& q, const ThinningThresholds& t) {
  const std::size_t m = q.size();
  ge::PointList out;
  out.reserve(m);
  std::size_t a = 0;
  while (a + 1 < m) {
    std::size_t k = 1;
    while (a + k < m && q[a + k].distanceTo(q[a]) < t.merge) ++k;
    out.push_back(k == 1 ? q[a] : centroid(q, a, k));
    // The isolated point is output here and anchors the next run as well, so
    // it can appear twice; that is how the merge has always behaved.
    if (k > 1 && a + k + 1 < m && q[a + k].distanceTo(q[a + k + 1]) > t.isolation) out.push_back(q[a + k]);
    a += k;
  }
  if (out.size() < m && m > 0) out.push_back(q[m - 1]);
  return out;
}

ge::PointList thinPolylinePoints(ge::PointList points, const ThinningThresholds& t) {
  points = thinningPasses(std::move(points), t.merge);
  if (points.size() < 2) return points;
  return mergeClusters(points, t);
}

int thinningEfficiency(int before, int after) {
  assert(before > 0);
  if (after > before) after = before;
  return static_cast<int>((static_cast<double>(before - after) / before) * 100);
}

int DuplicateMarks::count() const {
  int n = 0;
  for (bool r : remove) n += r ? 1 : 0;
  return n;
}

DuplicateMarks markDuplicateVertices(const ge::PointList& p) {
  DuplicateMarks marks;
  const std::size_t n = p.size();
  marks.remove.assign(n, false);
  if (n < 2) return marks;
  for (std::size_t i = 0; i + 1 < n; ++i)
    if (p[i].distanceTo(p[i + 1]) < kDuplicateVertexTolerance) marks.remove[i] = true;
  if (p[n - 1].distanceTo(p[0]) < kDuplicateVertexTolerance) {
    marks.remove[n - 1] = true;
    marks.lastRepeatsFirst = true;
  }
  return marks;
}

}  // namespace commands
