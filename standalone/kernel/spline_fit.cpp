#include "standalone/kernel/spline_fit.h"

#include <array>
#include <cassert>
#include <cmath>

namespace standalone::kernel {

namespace {

// Banded linear system with lower bandwidth kLow and upper bandwidth kHigh,
// solved by Gaussian elimination without pivoting. That is safe here: the
// collocation matrix of B-spline interpolation is totally positive (de Boor).
class BandSystem {
 public:
  static constexpr int kLow = 2, kHigh = 3, kWidth = kLow + kHigh + 1;
  explicit BandSystem(int n) : n_(n), a_(n), rhs_(n) {}
  double& at(int row, int col) {
    assert(col - row >= -kLow && col - row <= kHigh);
    return a_[row][col - row + kLow];
  }
  ge::Vector3d& rhs(int row) { return rhs_[row]; }

  std::optional<std::vector<ge::Vector3d>> solve() {
    for (int k = 0; k < n_; ++k) {
      double pivot = at(k, k);
      if (pivot == 0 || !std::isfinite(pivot)) return std::nullopt;
      for (int r = k + 1; r <= std::min(n_ - 1, k + kLow); ++r) {
        double f = at(r, k) / pivot;
        if (f == 0) continue;
        for (int c = k; c <= std::min(n_ - 1, k + kHigh); ++c)
          if (c - r <= kHigh) at(r, c) -= f * at(k, c);
        rhs_[r] = rhs_[r] - rhs_[k] * f;
      }
    }
    std::vector<ge::Vector3d> x(n_);
    for (int r = n_ - 1; r >= 0; --r) {
      ge::Vector3d s = rhs_[r];
      for (int c = r + 1; c <= std::min(n_ - 1, r + kHigh); ++c) s = s - x[c] * at(r, c);
      x[r] = s / at(r, r);
    }
    return x;
  }

 private:
  int n_;
  std::vector<std::array<double, kWidth>> a_;
  std::vector<ge::Vector3d> rhs_;
};

// Non-zero cubic basis values at u in span `span`.
std::array<double, 4> cubicBasis(const std::vector<double>& U, int span, double u) {
  std::array<double, 4> N{1, 0, 0, 0};
  double left[4], right[4];
  for (int j = 1; j <= 3; ++j) {
    left[j] = u - U[span + 1 - j];
    right[j] = U[span + j] - u;
    double saved = 0;
    for (int r = 0; r < j; ++r) {
      double temp = N[r] / (right[r + 1] + left[j - r]);
      N[r] = saved + right[r + 1] * temp;
      saved = left[j - r] * temp;
    }
    N[j] = saved;
  }
  return N;
}

std::vector<ge::Point3d> distinctPoints(const std::vector<ge::Point3d>& pts) {
  std::vector<ge::Point3d> out;
  for (const auto& p : pts)
    if (out.empty() || p.distanceTo(out.back()) > 0) out.push_back(p);
  return out;
}

bool usable(const ge::Vector3d* t) { return t && t->length() > 0; }

}  // namespace

std::optional<Nurbs> interpolateFitPoints(const std::vector<ge::Point3d>& fitPoints, const ge::Vector3d* startTangent,
                                          const ge::Vector3d* endTangent) {
  std::vector<ge::Point3d> q = distinctPoints(fitPoints);
  if (q.size() < 2) return std::nullopt;
  const int m = static_cast<int>(q.size()) - 1;  // last fit point index
  std::vector<double> t(m + 1, 0.0);
  for (int i = 1; i <= m; ++i) t[i] = t[i - 1] + q[i].distanceTo(q[i - 1]);

  Nurbs n;
  n.degree = 3;
  n.knots.assign(4, 0.0);
  for (int i = 1; i < m; ++i) n.knots.push_back(t[i]);
  for (int i = 0; i < 4; ++i) n.knots.push_back(t[m]);
  const int count = m + 3;  // control points
  const auto& U = n.knots;
  const int last = count - 1;

  BandSystem sys(count);
  sys.at(0, 0) = 1;
  sys.rhs(0) = q[0].asVector();
  sys.at(last, last) = 1;
  sys.rhs(last) = q[m].asVector();

  // Start condition: first derivative = unit tangent (parameter in chord
  // length), or second derivative 0.
  if (usable(startTangent)) {
    double d = 3.0 / (U[4] - U[1]);
    sys.at(1, 0) = -d;
    sys.at(1, 1) = d;
    sys.rhs(1) = startTangent->normalized();
  } else {
    double a = 1.0 / (U[5] - U[2]), b = 1.0 / (U[4] - U[1]);
    sys.at(1, 0) = b;
    sys.at(1, 1) = -a - b;
    sys.at(1, 2) = a;
  }
  if (usable(endTangent)) {
    double d = 3.0 / (U[last + 3] - U[last]);
    sys.at(last - 1, last - 1) = -d;
    sys.at(last - 1, last) = d;
    sys.rhs(last - 1) = endTangent->normalized();
  } else {
    double a = 1.0 / (U[last + 3] - U[last]), b = 1.0 / (U[last + 2] - U[last - 1]);
    sys.at(last - 1, last) = a;
    sys.at(last - 1, last - 1) = -a - b;
    sys.at(last - 1, last - 2) = b;
  }
  // Interior fit points: C(t_i) = Q_i; at the simple knot t_i = U[3+i] the
  // non-zero basis functions are those of control points i .. i+2.
  for (int i = 1; i < m; ++i) {
    int span = 3 + i;
    auto N = cubicBasis(U, span, t[i]);
    int row = i + 1;
    for (int j = 0; j < 4; ++j) {
      int col = span - 3 + j;
      if (N[j] != 0) sys.at(row, col) = N[j];
    }
    sys.rhs(row) = q[i].asVector();
  }
  auto x = sys.solve();
  if (!x) return std::nullopt;
  for (const auto& v : *x) n.controlPoints.push_back({v.x, v.y, v.z});
  return n;
}

}  // namespace standalone::kernel
