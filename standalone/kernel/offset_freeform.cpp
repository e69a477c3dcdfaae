#include "standalone/kernel/offset_freeform.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "standalone/kernel/path_query.h"
#include "standalone/kernel/piece_eval.h"
#include "standalone/kernel/pline2.h"
#include "standalone/kernel/spline_fit.h"
#include "standalone/kernel/tolerance.h"

namespace standalone::kernel {

namespace {

// Samples of the exact offset searched for crossings: at least this many
// over the curve, and this many per smooth span.
constexpr int kCrossingSamples = 2048;
constexpr int kCrossingSamplesPerSpan = 32;

// The exact offset of one smooth piece, and the plane it lies in.
class ExactOffset {
 public:
  ExactOffset(const Path& path, const ge::Vector3d& normal, double d)
      : piece_(path.pieces.front()), normal_(normal), d_(d), closed_(path.closed) {
    ge::Vector3d helper = std::abs(normal.x) < 0.9 ? ge::Vector3d{1, 0, 0} : ge::Vector3d{0, 1, 0};
    ex_ = helper.cross(normal).normalized();
    ey_ = normal.cross(ex_).normalized();
    origin_ = piecePoint(piece_, piece_.p0);
  }

  double start() const { return piece_.p0; }
  double end() const { return piece_.p1; }
  double period() const { return piece_.p1 - piece_.p0; }
  bool closed() const { return closed_; }
  // Parameters past the end of a closed curve wrap round to its start.
  double wrap(double u) const { return closed_ && u > end() ? u - period() : u; }

  ge::Point3d at(double u) const {
    u = wrap(u);
    ge::Vector3d t = pieceDeriv(piece_, u);
    return piecePoint(piece_, u) + t.cross(normal_).normalized() * d_;
  }
  ge::Vector3d sourceTangent(double u) const { return pieceDeriv(piece_, wrap(u)); }
  Vec2 inPlane(const ge::Point3d& p) const {
    ge::Vector3d r = p - origin_;
    return {r.dot(ex_), r.dot(ey_)};
  }
  Vec2 at2(double u) const { return inPlane(at(u)); }
  std::vector<double> breakpoints() const { return pieceBreakpoints(piece_); }

 private:
  const Piece& piece_;
  ge::Vector3d normal_, ex_, ey_;
  ge::Point3d origin_;
  double d_;
  bool closed_;
};

std::vector<double> sampleParams(const ExactOffset& off, double from, double to, int perSpan) {
  std::vector<double> bps;
  for (double b : off.breakpoints()) {
    if (b > from && b < to) bps.push_back(b);
    if (off.closed() && b + off.period() > from && b + off.period() < to) bps.push_back(b + off.period());
  }
  bps.push_back(from), bps.push_back(to);
  std::sort(bps.begin(), bps.end());
  std::vector<double> us;
  for (size_t i = 0; i + 1 < bps.size(); ++i)
    for (int k = 0; k < perSpan; ++k) us.push_back(bps[i] + (bps[i + 1] - bps[i]) * k / perSpan);
  us.push_back(to);
  return us;
}

// Where the chords [a0, a1] of one offset and [b0, b1] of another (or the
// same) cross, narrowed by splitting both into quarters until the
// parameters settle.
std::pair<double, double> refineCrossing(const ExactOffset& offA, double a0, double a1, const ExactOffset& offB, double b0,
                                         double b1, double tol) {
  double ua = (a0 + a1) / 2, ub = (b0 + b1) / 2;
  std::array<Vec2, 5> pa, pb;
  for (int iter = 0; iter < 60; ++iter) {
    for (int k = 0; k <= 4; ++k) pa[k] = offA.at2(a0 + (a1 - a0) * k / 4), pb[k] = offB.at2(b0 + (b1 - b0) * k / 4);
    if ((pa[0] - pa[4]).length() <= tol * 1e-3 && (pb[0] - pb[4]).length() <= tol * 1e-3) break;
    bool found = false;
    double best = 0;
    int bi = 0, bj = 0;
    for (int i = 0; i < 4; ++i)
      for (int j = 0; j < 4; ++j) {
        Seg s{pa[i], pa[i + 1], 0}, t{pb[j], pb[j + 1], 0};
        for (Vec2 p : intersectSegs(s, t, tol)) {
          double ca = a0 + (a1 - a0) * (i + s.fractionAt(p)) / 4, cb = b0 + (b1 - b0) * (j + t.fractionAt(p)) / 4;
          double score = std::abs(ca - ua) + std::abs(cb - ub);
          if (!found || score < best) found = true, best = score, bi = i, bj = j, ua = ca, ub = cb;
        }
      }
    if (!found) break;
    double na0 = a0 + (a1 - a0) * bi / 4, na1 = a0 + (a1 - a0) * (bi + 1) / 4;
    double nb0 = b0 + (b1 - b0) * bj / 4, nb1 = b0 + (b1 - b0) * (bj + 1) / 4;
    a0 = na0, a1 = na1, b0 = nb0, b1 = nb1;
  }
  return {ua, ub};
}

// Parameters where the offset crosses itself, or crosses the offset on the
// curve's other side: a curve that faces itself left to right (a spiral)
// puts the edge of the band its offset must keep clear of there.
std::vector<double> crossings(const ExactOffset& off, const ExactOffset& otherSide, double tol) {
  int perSpan = std::max<int>(kCrossingSamplesPerSpan, kCrossingSamples / std::max<size_t>(1, off.breakpoints().size() - 1));
  auto us = sampleParams(off, off.start(), off.end(), perSpan);
  size_t n = us.size() - 1;  // chords per side; chord n + i is the other side's i-th
  std::vector<Seg> chords;
  std::vector<Box2> boxes;
  for (const ExactOffset* side : {&off, &otherSide}) {
    Vec2 prev = side->at2(us.front());
    for (size_t i = 0; i < n; ++i) {
      Vec2 next = side->at2(us[i + 1]);
      chords.push_back({prev, next, 0});
      boxes.push_back(segmentBox(chords.back()));
      prev = next;
    }
  }
  SpatialGrid grid(boxes);
  std::vector<double> cuts;
  for (size_t i = 0; i < n; ++i)
    grid.query(boxes[i], [&](size_t j) {
      bool other = j >= n;
      size_t k = other ? j - n : j;
      bool neighbours = !other && (j <= i + 1 || (off.closed() && i == 0 && j == n - 1));
      if (neighbours || intersectSegs(chords[i], chords[j], tol).empty()) return false;
      auto [ua, ub] = refineCrossing(off, us[i], us[i + 1], other ? otherSide : off, us[k], us[k + 1], tol);
      cuts.push_back(ua);
      if (!other) cuts.push_back(ub);
      return false;
    });
  return cuts;
}

// Of an open curve, parameters where the offset crosses the circles of
// radius |d| about the curve's two ends (its own ends lie on them).
std::vector<double> endCircleCrossings(const ExactOffset& off, const Path& path, double d) {
  std::vector<double> cuts;
  auto us = sampleParams(off, off.start(), off.end(), kCrossingSamplesPerSpan);
  for (const ge::Point3d& c : {pointAtParam(path, off.start()), pointAtParam(path, off.end())}) {
    auto f = [&](double u) { return off.at(u).distanceTo(c) - std::abs(d); };
    for (size_t i = 1; i + 2 < us.size(); ++i) {
      double lo = us[i], hi = us[i + 1], flo = f(lo), fhi = f(hi);
      if ((flo < 0) == (fhi < 0)) continue;
      for (int k = 0; k < 100 && hi - lo > 1e-15 * off.period(); ++k) {
        double mid = (lo + hi) / 2, fm = f(mid);
        ((fm < 0) == (flo < 0) ? lo : hi) = mid;
        if ((fm < 0) == (flo < 0)) flo = fm;
      }
      cuts.push_back((lo + hi) / 2);
    }
  }
  return cuts;
}

// A run of the offset between cuts, by parameter (past the end for a run
// over the seam of a closed curve).
struct Run {
  double u0, u1;
};

// Fits one run, doubling the samples until the fit is within the tolerance.
std::optional<host::Spline> fitRun(const ExactOffset& off, Run run, double limit, const ge::Vector3d& normal) {
  for (int perSpan = 8; perSpan <= 1024; perSpan *= 2) {
    auto us = sampleParams(off, run.u0, run.u1, perSpan);
    std::vector<ge::Point3d> pts;
    for (double u : us) pts.push_back(off.at(u));
    ge::Vector3d t0 = off.sourceTangent(us.front()), t1 = off.sourceTangent(us.back());
    auto fit = interpolateFitPoints(pts, &t0, &t1);
    if (!fit) return std::nullopt;
    Path fitted{{Piece{*fit, fit->startParam(), fit->endParam()}}, false, normal};
    double worst = 0;
    for (size_t i = 0; i + 1 < us.size(); ++i)
      for (double f : {0.25, 0.5, 0.75})
        worst = std::max(worst, closestPoint(fitted, off.at(us[i] + (us[i + 1] - us[i]) * f)).distance);
    if (worst <= limit || perSpan == 1024) {
      host::Spline s;
      s.degree = 3;
      s.knots = fit->knots;
      s.controlPoints = fit->controlPoints;
      s.fitPoints = pts;
      s.startTangent = t0.normalized();
      s.endTangent = t1.normalized();
      s.fitTolerance = 0;
      s.normal = normal;
      s.flags = 8;
      return s;
    }
  }
  return std::nullopt;
}

// Splines of runs that meet at corners, as one spline: the knots of each
// follow on from the last, with a triple knot (a corner) where they meet.
host::Spline joinAtCorners(const std::vector<host::Spline>& parts) {
  host::Spline out = parts.front();
  for (size_t k = 1; k < parts.size(); ++k) {
    const auto& next = parts[k];
    double shift = out.knots.back() - next.knots.front();
    out.knots.pop_back();
    for (size_t i = 4; i < next.knots.size(); ++i) out.knots.push_back(next.knots[i] + shift);
    out.controlPoints.insert(out.controlPoints.end(), next.controlPoints.begin() + 1, next.controlPoints.end());
  }
  // A spline with corners is defined by its control points alone.
  out.fitPoints.clear();
  out.startTangent = out.endTangent = {};
  return out;
}

}  // namespace

host::ErrorStatus offsetFreeForm(const Path& path, const ge::Vector3d& normal, double d,
                                 std::vector<host::EntityData>& out) {
  ExactOffset off(path, normal, d);
  double scale = pathScale(path), tol = pointTolerance(scale);
  double limit = kFreeFormOffsetTolerance * pathExtents(path).diagonal();
  std::vector<double> cuts = crossings(off, ExactOffset(path, normal, -d), tol);
  if (!path.closed) {
    auto ends = endCircleCrossings(off, path, d);
    cuts.insert(cuts.end(), ends.begin(), ends.end());
  }
  std::sort(cuts.begin(), cuts.end());
  cuts.erase(std::unique(cuts.begin(), cuts.end(), [&](double a, double b) { return b - a <= 1e-12 * off.period(); }),
             cuts.end());
  std::vector<Run> runs;
  if (cuts.empty()) {
    runs.push_back({off.start(), off.end()});
  } else if (path.closed) {
    for (size_t i = 0; i < cuts.size(); ++i)
      runs.push_back({cuts[i], i + 1 < cuts.size() ? cuts[i + 1] : cuts.front() + off.period()});
  } else {
    double from = off.start();
    for (double c : cuts) runs.push_back({from, c}), from = c;
    runs.push_back({from, off.end()});
  }
  // Between cuts a run is wholly at |d| from the curve or wholly nearer.
  double need = std::abs(d) - std::max(1e3 * convergenceTolerance(scale), 1e-9 * std::abs(d));
  std::erase_if(runs, [&](const Run& r) { return closestPoint(path, off.at((r.u0 + r.u1) / 2)).distance < need; });
  if (runs.empty()) return host::ErrorStatus::eInvalidOffset;
  // Kept runs joined end to start, as they meet at the cuts.
  double joinTol = 1e3 * tol;
  std::vector<bool> used(runs.size(), false);
  for (size_t i = 0; i < runs.size(); ++i) {
    if (used[i]) continue;
    used[i] = true;
    std::vector<Run> chain{runs[i]};
    for (bool grown = true; grown;) {
      grown = false;
      if (chain.size() > 1 && off.at(chain.back().u1).distanceTo(off.at(chain.front().u0)) <= joinTol) break;
      for (size_t j = 0; j < runs.size(); ++j)
        if (!used[j] && off.at(runs[j].u0).distanceTo(off.at(chain.back().u1)) <= joinTol) {
          used[j] = true, grown = true;
          chain.push_back(runs[j]);
          break;
        }
    }
    std::vector<host::Spline> parts;
    for (const Run& r : chain)
      if (auto s = fitRun(off, r, limit, normal)) parts.push_back(std::move(*s));
    if (parts.empty()) continue;
    host::Spline s = parts.size() == 1 ? parts.front() : joinAtCorners(parts);
    bool closes = off.at(chain.back().u1).distanceTo(off.at(chain.front().u0)) <= joinTol;
    if (closes && path.closed) s.flags |= 1;
    out.push_back(std::move(s));
  }
  return out.empty() ? host::ErrorStatus::eInvalidOffset : host::ErrorStatus::eOk;
}

}  // namespace standalone::kernel
