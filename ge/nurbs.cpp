#include "ge/nurbs.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>

namespace ge {

bool Nurbs::isValid() const {
  constexpr int kMaxSupportedDegree = 25;  // the evaluator's fixed work arrays
  if (degree < 1 || degree > kMaxSupportedDegree || controlPoints.size() < static_cast<size_t>(degree) + 1) return false;
  for (double k : knots)
    if (!std::isfinite(k)) return false;
  for (const auto& p : controlPoints)
    if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z)) return false;
  if (knots.size() != controlPoints.size() + degree + 1) return false;
  if (!weights.empty() && weights.size() != controlPoints.size()) return false;
  for (size_t i = 1; i < knots.size(); ++i)
    if (knots[i] < knots[i - 1]) return false;
  for (double w : weights)
    if (!(w > 0) || !std::isfinite(w)) return false;
  return endParam() > startParam();
}

namespace {

constexpr int kMaxDegree = 25;

// Knot span index i with knots[i] <= u < knots[i+1], restricted to the valid range.
int findSpan(const Nurbs& n, double u) {
  int last = static_cast<int>(n.controlPoints.size()) - 1;
  if (u >= n.knots[last + 1]) {
    int i = last;
    while (i > n.degree && n.knots[i] >= n.knots[last + 1]) --i;
    return i;
  }
  if (u <= n.knots[n.degree]) {
    int i = n.degree;
    while (i < last && n.knots[i + 1] <= n.knots[n.degree]) ++i;
    return i;
  }
  auto it = std::upper_bound(n.knots.begin() + n.degree, n.knots.begin() + last + 1, u);
  return static_cast<int>(it - n.knots.begin()) - 1;
}

// Basis functions and their derivatives up to order `order` (A2.3).
void basisDerivs(const Nurbs& n, int span, double u, int order, std::array<std::array<double, kMaxDegree + 1>, 3>& ders) {
  const int p = n.degree;
  const auto& U = n.knots;
  double ndu[kMaxDegree + 1][kMaxDegree + 1];
  double left[kMaxDegree + 1], right[kMaxDegree + 1];
  ndu[0][0] = 1.0;
  for (int j = 1; j <= p; ++j) {
    left[j] = u - U[span + 1 - j];
    right[j] = U[span + j] - u;
    double saved = 0.0;
    for (int r = 0; r < j; ++r) {
      ndu[j][r] = right[r + 1] + left[j - r];
      double temp = ndu[j][r] != 0 ? ndu[r][j - 1] / ndu[j][r] : 0.0;
      ndu[r][j] = saved + right[r + 1] * temp;
      saved = left[j - r] * temp;
    }
    ndu[j][j] = saved;
  }
  for (int j = 0; j <= p; ++j) ders[0][j] = ndu[j][p];
  double a[2][kMaxDegree + 1];
  for (int r = 0; r <= p; ++r) {
    int s1 = 0, s2 = 1;
    a[0][0] = 1.0;
    for (int k = 1; k <= order; ++k) {
      double d = 0.0;
      int rk = r - k, pk = p - k;
      if (r >= k) {
        a[s2][0] = ndu[pk + 1][rk] != 0 ? a[s1][0] / ndu[pk + 1][rk] : 0.0;
        d = a[s2][0] * ndu[rk][pk];
      }
      int j1 = rk >= -1 ? 1 : -rk;
      int j2 = (r - 1 <= pk) ? k - 1 : p - r;
      for (int j = j1; j <= j2; ++j) {
        a[s2][j] = ndu[pk + 1][rk + j] != 0 ? (a[s1][j] - a[s1][j - 1]) / ndu[pk + 1][rk + j] : 0.0;
        d += a[s2][j] * ndu[rk + j][pk];
      }
      if (r <= pk) {
        a[s2][k] = ndu[pk + 1][r] != 0 ? -a[s1][k - 1] / ndu[pk + 1][r] : 0.0;
        d += a[s2][k] * ndu[r][pk];
      }
      ders[k][r] = d;
      std::swap(s1, s2);
    }
  }
  double f = p;
  for (int k = 1; k <= order; ++k) {
    for (int j = 0; j <= p; ++j) ders[k][j] *= f;
    f *= (p - k);
  }
}

struct Homogeneous {
  Vector3d a[3];  // weighted point and its derivatives
  double w[3] = {0, 0, 0};
};

Homogeneous evaluate(const Nurbs& n, double u, int order) {
  assert(n.degree <= kMaxDegree);
  u = std::clamp(u, n.startParam(), n.endParam());
  int span = findSpan(n, u);
  std::array<std::array<double, kMaxDegree + 1>, 3> ders{};
  basisDerivs(n, span, u, order, ders);
  Homogeneous h;
  for (int j = 0; j <= n.degree; ++j) {
    int i = span - n.degree + j;
    double wi = n.weights.empty() ? 1.0 : n.weights[i];
    Vector3d pw = n.controlPoints[i].asVector() * wi;
    for (int k = 0; k <= order; ++k) {
      h.a[k] = h.a[k] + pw * ders[k][j];
      h.w[k] += wi * ders[k][j];
    }
  }
  return h;
}

}  // namespace

Point3d nurbsPoint(const Nurbs& n, double u) {
  Homogeneous h = evaluate(n, u, 0);
  Vector3d c = h.a[0] / h.w[0];
  return {c.x, c.y, c.z};
}

Vector3d nurbsDeriv(const Nurbs& n, double u) {
  Homogeneous h = evaluate(n, u, std::min(1, n.degree));
  Vector3d c = h.a[0] / h.w[0];
  return (h.a[1] - c * h.w[1]) / h.w[0];
}

Vector3d nurbsSecondDeriv(const Nurbs& n, double u) {
  if (n.degree < 2 && n.weights.empty()) return {};
  Homogeneous h = evaluate(n, u, std::min(2, n.degree));
  Vector3d c = h.a[0] / h.w[0];
  Vector3d d1 = (h.a[1] - c * h.w[1]) / h.w[0];
  return (h.a[2] - d1 * (2 * h.w[1]) - c * h.w[2]) / h.w[0];
}

std::vector<double> nurbsBreakpoints(const Nurbs& n) {
  std::vector<double> b{n.startParam()};
  for (size_t i = n.degree + 1; i < n.controlPoints.size(); ++i)
    if (n.knots[i] > b.back()) b.push_back(n.knots[i]);
  if (n.endParam() > b.back()) b.push_back(n.endParam());
  return b;
}

}  // namespace ge
