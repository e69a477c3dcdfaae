#include "commands/coons_patch.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace commands {

namespace {

ge::Point3d combine(std::initializer_list<std::pair<double, ge::Point3d>> terms) {
  ge::Vector3d sum;
  for (const auto& [w, p] : terms) sum = sum + p.asVector() * w;
  return ge::Point3d{} + sum;
}

// Halving stops here even if the image is still farther than the tolerance:
// 2^-24 of an initial step is below what a drawing can show.
constexpr int kDeepestHalving = 24;

struct Refiner {
  const std::function<ge::Point3d(double)>& image;
  double tolerance;
  MappedSample& out;

  // Appends the samples after t0 up to and including t1; mid is the image at
  // the step's middle. The quarter points examined here become the middles
  // of the two halves, so each halving costs two evaluations.
  void refine(double t0, const ge::Point3d& p0, double t1, const ge::Point3d& p1, const ge::Point3d& mid,
              int depth) {
    const double h = t1 - t0;
    if (depth < kDeepestHalving) {
      ge::Point3d q1 = image(t0 + h / 4), q3 = image(t0 + 3 * h / 4);
      if (distanceToSegment(mid, p0, p1) > tolerance || distanceToSegment(q1, p0, p1) > tolerance ||
          distanceToSegment(q3, p0, p1) > tolerance) {
        refine(t0, p0, t0 + h / 2, mid, q1, depth + 1);
        refine(t0 + h / 2, mid, t1, p1, q3, depth + 1);
        return;
      }
    }
    out.params.push_back(t1);
    out.points.push_back(p1);
  }
};

}  // namespace

CoonsPatch::CoonsPatch(FenceSide bottom, FenceSide right, FenceSide top, FenceSide left)
    : bottom_(std::move(bottom)), right_(std::move(right)), top_(std::move(top)), left_(std::move(left)) {
  l0_ = left_(0), l1_ = left_(1), r0_ = right_(0), r1_ = right_(1);
}

ge::Point3d CoonsPatch::at(double u, double v) const {
  // At v = 0 the side terms (1-u)L(0) + uR(0) cancel the corner blend exactly.
  return combine({{1 - v, bottom_(u)},
                  {v, top_(u)},
                  {1 - u, left_(v)},
                  {u, right_(v)},
                  {-(1 - u) * (1 - v), l0_},
                  {-u * (1 - v), r0_},
                  {-(1 - u) * v, l1_},
                  {-u * v, r1_}});
}

FenceOrientation orientFence(const std::array<CurveEnds, 4>& sides) {
  FenceOrientation best;
  best.widestGap = std::numeric_limits<double>::infinity();
  for (int mask = 0; mask < 16; ++mask) {
    std::array<bool, 4> rev{(mask & 1) != 0, (mask & 2) != 0, (mask & 4) != 0, (mask & 8) != 0};
    auto first = [&](int i) { return rev[i] ? sides[i].end : sides[i].start; };
    auto last = [&](int i) { return rev[i] ? sides[i].start : sides[i].end; };
    enum { kBottom, kRight, kTop, kLeft };
    double gap = std::max({first(kBottom).distanceTo(first(kLeft)), last(kBottom).distanceTo(first(kRight)),
                           last(kRight).distanceTo(last(kTop)), first(kTop).distanceTo(last(kLeft))});
    if (gap < best.widestGap) best = {rev, gap};
  }
  return best;
}

MappedSample sampleMapped(const std::function<ge::Point3d(double)>& image, const std::vector<double>& breaks,
                          double tolerance) {
  MappedSample out;
  if (breaks.empty()) return out;
  Refiner refiner{image, tolerance, out};
  double t0 = breaks.front();
  ge::Point3d p0 = image(t0);
  out.params.push_back(t0);
  out.points.push_back(p0);
  for (size_t i = 1; i < breaks.size(); ++i) {
    if (breaks[i] <= t0) continue;
    ge::Point3d p1 = image(breaks[i]);
    refiner.refine(t0, p0, breaks[i], p1, image((t0 + breaks[i]) / 2), 0);
    t0 = breaks[i], p0 = p1;
  }
  return out;
}

double distanceToSegment(const ge::Point3d& p, const ge::Point3d& a, const ge::Point3d& b) {
  ge::Vector3d ab = b - a;
  double len2 = ab.dot(ab);
  double t = len2 > 0 ? std::clamp((p - a).dot(ab) / len2, 0.0, 1.0) : 0.0;
  return p.distanceTo(a + ab * t);
}

}  // namespace commands
