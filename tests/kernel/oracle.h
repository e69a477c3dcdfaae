#pragma once
// Independent numerical oracles for the kernel tests: adaptive
// Gauss–Kronrod (7–15) quadrature, written here and shared by no kernel code.
#include <cmath>
#include <functional>

namespace kerneltest {

inline double gk15(const std::function<double(double)>& f, double a, double b, double* error) {
  static const double xk[8] = {0.991455371120812639, 0.949107912342758525, 0.864864423359769073,
                               0.741531185599394440, 0.586087235467691130, 0.405845151377397167,
                               0.207784955007898468, 0.000000000000000000};
  static const double wk[8] = {0.022935322010529225, 0.063092092629978553, 0.104790010322250184,
                               0.140653259715525919, 0.169004726639267903, 0.190350578064785410,
                               0.204432940075298892, 0.209482141084727828};
  static const double wg[4] = {0.129484966168869693, 0.279705391489276668, 0.381830050505118945,
                               0.417959183673469388};
  double c = (a + b) / 2, h = (b - a) / 2;
  double fc = f(c), k = fc * wk[7], g = fc * wg[3];
  for (int j = 0; j < 7; ++j) {
    double f1 = f(c - h * xk[j]), f2 = f(c + h * xk[j]);
    k += wk[j] * (f1 + f2);
    if (j % 2 == 1) g += wg[j / 2] * (f1 + f2);
  }
  *error = std::abs((k - g) * h);
  return k * h;
}

// Integral of f over [a, b] to an absolute error near tol.
inline double integrate(const std::function<double(double)>& f, double a, double b, double tol = 1e-13, int depth = 30) {
  double err;
  double whole = gk15(f, a, b, &err);
  if (err <= tol || depth == 0) return whole;
  double m = (a + b) / 2;
  return integrate(f, a, m, tol / 2, depth - 1) + integrate(f, m, b, tol / 2, depth - 1);
}

}  // namespace kerneltest
