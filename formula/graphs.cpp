// Graphs y = f(x) and waves. Every curve here is open and planar.
#include <algorithm>
#include <cmath>

#include "formula/generator_rows.h"
#include "formula/sampling.h"

namespace formula::rows {
using namespace sampling;

namespace {

// 35 samples per wave: the fixed per-period count of the sampling rules.
constexpr int kSamplesPerWave = 35;

// The routine rows 8 and 42 share: n samples of the graph y = f(x) for x in
// [x0, x1], drawn as one curve.
template <class F>
CurveList graph(const ge::Point3d& origin, int n, double x0, double x1, F f) {
  return single(planar(origin, n, x0, x1, [&](double x) { return XY{x, f(x)}; }));
}

// A bump of height 1 at c with standard width w (a Gaussian).
double bump(double u, double c, double w) {
  double d = (u - c) / w;
  return std::exp(-0.5 * d * d);
}

}  // namespace

// Waves of semicircles, alternately above and below the axis; wavelength 2H,
// height H. s counts waves from 0 to Waves.
CurveList wave(const GeneratorInput& in) {
  const int waves = in.whole(0);
  const double h = in.real(1), r = h / 2;
  return single(planar(in.origin, waves * kSamplesPerWave, 0.0, waves, [&](double s) {
    double halves = 2 * s;
    double half = std::min(std::floor(halves), 2.0 * waves - 1);
    double u = halves - half;  // 0..1 along this half wave
    double phi = kPi * (1 - u);
    double sign = std::fmod(half, 2.0) == 0 ? 1.0 : -1.0;
    return XY{(half + 0.5) * h + r * std::cos(phi), sign * r * std::sin(phi)};
  }));
}

// y = (H/2) sin(2 pi s), x = 2H s, s = 0..Waves: height H, wavelength 2H.
CurveList sinWave(const GeneratorInput& in) {
  const int waves = in.whole(0);
  const double h = in.real(1);
  return single(planar(in.origin, waves * kSamplesPerWave, 0.0, waves,
                       [&](double s) { return XY{2 * h * s, h / 2 * std::sin(kTwoPi * s)}; }));
}

// As the sine wave, with the amplitude growing linearly from 0 to H/2 at the end.
CurveList sinWidening(const GeneratorInput& in) {
  const int waves = in.whole(0);
  const double h = in.real(1);
  return single(planar(in.origin, waves * kSamplesPerWave, 0.0, waves, [&](double s) {
    return XY{2 * h * s, h / 2 * (s / waves) * std::sin(kTwoPi * s)};
  }));
}

// y = k ln x for x in [m/175, m]; k = HightTimes, m = the hidden second slot. 175 samples.
CurveList logCurve(const GeneratorInput& in) {
  const double k = in.real(0), m = in.real(1);
  return graph(in.origin, 175, m / 175, m, [&](double x) { return k * std::log(x); });
}

// Both branches of x^2/a^2 - y^2/b^2 = 1 over y in [-10, 10); M = N*36 samples each.
CurveList hyperbola(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1);
  const int m = in.whole(2) * 36;
  CurveList curves;
  for (double side : {1.0, -1.0}) {
    ge::PointList points;
    points.reserve(static_cast<std::size_t>(std::max(m, 0)));
    for (int i = 0; i < m; ++i) {
      double y = 20.0 * i / m - 10.0;
      points.push_back({in.origin.x + side * (a / b) * std::sqrt(y * y + b * b), in.origin.y + y, in.origin.z + 0.0});
    }
    curves.push_back({std::move(points)});
  }
  return curves;
}

// x = k s^2/(2a), y = k s for s in [-2a, 2a]; k = N; 6 * SURFTAB1 samples.
CurveList parabola(const GeneratorInput& in) {
  const double a = in.real(0), k = in.real(1);
  return single(planar(in.origin, 6 * in.surftab1, -2 * a, 2 * a,
                       [&](double s) { return XY{s * s / (2 * a) * k, k * s}; }));
}

// Three heart beats, each B long with R peak A high, made of Gaussian P, Q, R, S
// and T waves; P x 35 samples.
CurveList electrocardiogram(const GeneratorInput& in) {
  const double a = in.real(0), beat = in.real(1);
  return graph(in.origin, precisionCount(in.whole(2)), 0.0, 3 * beat, [&](double x) {
    double u = std::fmod(x / beat, 1.0);
    return a * (0.12 * bump(u, 0.20, 0.025) - 0.12 * bump(u, 0.37, 0.01) + bump(u, 0.40, 0.012) -
                0.20 * bump(u, 0.43, 0.01) + 0.25 * bump(u, 0.65, 0.04));
  });
}

// y = (B/10) A e^(-u^2), x = A u, u in [-2.25, 2.25]; P x 35 samples.
CurveList probability(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1);
  const int n = precisionCount(in.whole(2));
  ge::PointList points;
  for (int i = 0; n > 1 && i < n; ++i) {
    double u = (static_cast<double>(i) / (n - 1) - 0.5) * 4.5;
    points.push_back({in.origin.x + a * u, in.origin.y + b / 10 * a * std::exp(-u * u), in.origin.z + 0.0});
  }
  return single(std::move(points));
}

// Witch of Agnesi y = 8A^3/(x^2 + 4A^2) for x in [-4B, 4B]; P x 35 samples.
CurveList witchOfAgnesi(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1);
  return graph(in.origin, precisionCount(in.whole(2)), -4 * b, 4 * b,
               [&](double x) { return 8 * a * a * a / (x * x + 4 * a * a); });
}

// One branch of y = (B/10) A tan u, x = A u, u in [-0.45 pi, 0.45 pi]; P x 35 samples.
CurveList tangentCurve(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1);
  return single(planar(in.origin, precisionCount(in.whole(2)), -0.45 * kPi, 0.45 * kPi,
                       [&](double u) { return XY{a * u, b / 10 * a * std::tan(u)}; }));
}

namespace {
// x = A u, y = A f(u), u in [-3, 3]; P x 35 samples (the hyperbolic functions).
template <class F>
CurveList hyperbolicGraph(const GeneratorInput& in, F f) {
  const double a = in.real(0);
  const int n = precisionCount(in.whole(1));
  ge::PointList points;
  for (int i = 0; n > 1 && i < n; ++i) {
    double u = (static_cast<double>(i) / (n - 1) - 0.5) * 6;
    points.push_back({in.origin.x + a * u, in.origin.y + a * f(u), in.origin.z + 0.0});
  }
  return single(std::move(points));
}
}  // namespace

CurveList hyperbolicSine(const GeneratorInput& in) {
  return hyperbolicGraph(in, [](double u) { return (std::exp(u) - std::exp(-u)) / 2; });
}

CurveList hyperbolicCosine(const GeneratorInput& in) {
  return hyperbolicGraph(in, [](double u) { return (std::exp(-u) + std::exp(u)) / 2; });
}

CurveList hyperbolicTangent(const GeneratorInput& in) {
  return hyperbolicGraph(in, [](double u) { return (std::exp(u) - std::exp(-u)) / (std::exp(-u) + std::exp(u)); });
}

// f(u) = -(u^6/6 - u^4/2 + u^2/2), whose derivative -u(u^2 - 1)^2 vanishes at
// -1, 0 and 1: one peak (u = 0) and two level steps. x = A u, y = 0.3 B A f(u),
// u in [-1.6, 1.6]; P x 35 samples.
CurveList onePeak(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1);
  return single(planar(in.origin, precisionCount(in.whole(2)), -1.6, 1.6, [&](double u) {
    double u2 = u * u;
    return XY{a * u, 0.3 * b * a * -(u2 * u2 * u2 / 6 - u2 * u2 / 2 + u2 / 2)};
  }));
}

// Serpentine y = B A^2 x/(x^2 + A^2) for x in [-s A, s A], s the hidden fourth
// slot; its extremes are +-B A/2 at x = +-A. P x 35 samples.
CurveList snake(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1), s = in.real(3);
  return graph(in.origin, precisionCount(in.whole(2)), -s * a, s * a,
               [&](double x) { return b * a * a * x / (x * x + a * a); });
}

// A bicycle handlebar: x = R0 u, y = (R1 R0/5)(u^4 - 2u^2), u in [-1.6, 1.6];
// grips at u = +-1. P x 35 samples.
CurveList handlebar(const GeneratorInput& in) {
  const double r0 = in.real(0), r1 = in.real(1);
  return single(planar(in.origin, precisionCount(in.whole(2)), -1.6, 1.6, [&](double u) {
    return XY{r0 * u, r1 * r0 / 5 * (u * u * u * u - 2 * u * u)};
  }));
}

// Catenary through the origin: a = B R/4, x = u, y = a cosh(u/R) - a for u in
// [-R/2, R/2]; P x 35 samples.
CurveList catenary(const GeneratorInput& in) {
  const double r = in.real(0), b = in.real(1);
  const double a = 0.25 * b * r;
  const int n = precisionCount(in.whole(2));
  ge::PointList points;
  for (int i = 0; n > 1 && i < n; ++i) {
    double u = (static_cast<double>(i) / (n - 1) - 0.5) * r;
    points.push_back({in.origin.x + u, in.origin.y + a * (std::exp(u / r) + std::exp(-u / r)) / 2 - a, in.origin.z + 0.0});
  }
  return single(std::move(points));
}

}  // namespace formula::rows
