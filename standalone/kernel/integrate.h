#pragma once
// Adaptive Gauss–Legendre quadrature for smooth integrands (arc lengths and
// areas of free-form pieces).
#include <algorithm>
#include <cmath>
#include <numbers>

namespace standalone::kernel {

namespace detail {
// 10-point Gauss–Legendre nodes and weights on [-1, 1] (Abramowitz & Stegun 25.4.30).
inline constexpr double kNodes[5] = {0.1488743389816312, 0.4333953941292472, 0.6794095682990244,
                                     0.8650633666889845, 0.9739065285171717};
inline constexpr double kWeights[5] = {0.2955242247147529, 0.2692667193099963, 0.2190863625159820,
                                       0.1494513491505806, 0.0666713443086881};

template <typename F>
double gauss10(F&& f, double a, double b) {
  double m = (a + b) / 2, h = (b - a) / 2, s = 0;
  for (int i = 0; i < 5; ++i) s += kWeights[i] * (f(m - h * kNodes[i]) + f(m + h * kNodes[i]));
  return s * h;
}

template <typename F>
double adaptive(F&& f, double a, double b, double whole, double tol, int depth) {
  double m = (a + b) / 2;
  double left = gauss10(f, a, m), right = gauss10(f, m, b);
  if (depth <= 0 || std::abs(left + right - whole) <= tol) return left + right;
  return adaptive(f, a, m, left, tol / 2, depth - 1) + adaptive(f, m, b, right, tol / 2, depth - 1);
}
}  // namespace detail

// Integral of f over [a, b] to about 1e-13 relative to the integral of |f|'s scale.
template <typename F>
double integrate(F&& f, double a, double b) {
  if (b <= a) return 0.0;
  double whole = detail::gauss10(f, a, b);
  double tol = 1e-14 * std::max(std::abs(whole), 1e-300);
  return detail::adaptive(f, a, b, whole, tol, 12);
}

}  // namespace standalone::kernel
