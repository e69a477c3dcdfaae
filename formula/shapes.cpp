// Closed figures and other named shapes.
#include <array>
#include <cmath>

#include "formula/generator_rows.h"
#include "formula/sampling.h"

namespace formula::rows {
using namespace sampling;

// s = Width/32; x = 16s sin^3 t, y = s(13 cos t - 5 cos 2t - 2 cos 3t - cos 4t),
// t = 2 pi i/36 for i = 0..34, so the last sample stops one step short of 2 pi.
// Drawn in colour 1 with the closed flag set.
CurveList heart(const GeneratorInput& in) {
  const double s = in.real(0) / 32;
  ge::PointList points;
  for (int i = 0; i < 35; ++i) {
    double t = kTwoPi * i / 36, st = std::sin(t);
    points.push_back({in.origin.x + 16 * s * st * st * st,
                      in.origin.y + s * (13 * std::cos(t) - 5 * std::cos(2 * t) - 2 * std::cos(3 * t) - std::cos(4 * t)),
                      in.origin.z + 0.0});
  }
  return {GeneratedCurve{std::move(points), 1, true}};
}

// Two ingots back to back: x = 2A cos t, y = A sin t (b + (1 - b) sin^2 2t) with
// b = B/1000 the height of the middle; the ears rise at 45 degrees. P x 35 samples.
CurveList goldenIngot(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1) / 1000;
  return single(planar(in.origin, precisionCount(in.whole(2)), 0.0, kTwoPi, [&](double t) {
    double s2 = std::sin(2 * t) * std::sin(2 * t);
    return XY{2 * a * std::cos(t), a * std::sin(t) * (b + (1 - b) * s2)};
  }));
}

// Cap: x = R cos t, y = 0.8R sin t for the upper half. Below it the gills turn
// in quickly and the stem runs down with nearly straight sides:
// x = R(w sign(cos t)|cos t|^0.3 + (1 - w) cos^31 t), y = 1.5R sin t, with
// w = hidden slot/100 the stem's half-width. P x 35 samples.
CurveList mushroom(const GeneratorInput& in) {
  const double r = in.real(0), w = in.real(2) / 100;
  return single(planar(in.origin, precisionCount(in.whole(1)), 0.0, kTwoPi, [&](double t) {
    double c = std::cos(t), s = std::sin(t);
    if (s >= 0) return XY{r * c, 0.8 * r * s};
    return XY{r * (w * std::copysign(std::pow(std::abs(c), 0.3), c) + (1 - w) * std::pow(c, 31)), 1.5 * r * s};
  }));
}

// Fay's butterfly rho = (R/3)(e^cos t - 2 cos 4t + sin^5(t/12)), one sweep of
// t over [0, 2 pi] (the full pattern needs 12 pi, more than the samples can
// follow). P x 35 samples.
CurveList butterfly(const GeneratorInput& in) {
  const double r = in.real(0);
  return single(planar(in.origin, precisionCount(in.whole(1)), 0.0, kTwoPi, [&](double t) {
    return polar(r / 3 * (std::exp(std::cos(t)) - 2 * std::cos(4 * t) + std::pow(std::sin(t / 12), 5)), t);
  }));
}

// rho = (R/10)(8 - sin t + 2 sin 3t + 2 sin 5t - sin 7t + 3 cos 2t - 2 cos 4t),
// t over [0, 2 pi]: wings left and right. P x 35 samples.
CurveList butterfly2(const GeneratorInput& in) {
  const double r = in.real(0);
  return single(planar(in.origin, precisionCount(in.whole(1)), 0.0, kTwoPi, [&](double t) {
    double rho = 8 - std::sin(t) + 2 * std::sin(3 * t) + 2 * std::sin(5 * t) - std::sin(7 * t) + 3 * std::cos(2 * t) -
                 2 * std::cos(4 * t);
    return polar(r / 10 * rho, t + kPi / 2);
  }));
}

// Folium of Descartes rho = 3R sin t cos t/(sin^3 t + cos^3 t): the leaf for t in
// [0, pi/2] and its two tails, each extended by the hidden slot in degrees (below
// the asymptote at 45). P x 35 samples.
CurveList leaf(const GeneratorInput& in) {
  const double r = in.real(0), tail = in.real(2) * kPi / 180;
  return single(planar(in.origin, precisionCount(in.whole(1)), -tail, kPi / 2 + tail, [&](double t) {
    double s = std::sin(t), c = std::cos(t);
    return polar(3 * r * s * c / (s * s * s + c * c * c), t);
  }));
}

// Cissoid: theta from -75 to 75 degrees, rho = 2A tan theta sin theta,
// x = A rho cos theta, y = A rho sin theta (the extra A is kept). P x 35 samples.
CurveList vinelaine(const GeneratorInput& in) {
  const double a = in.real(0);
  const int n = precisionCount(in.whole(1));
  ge::PointList points;
  for (int i = 0; n > 1 && i < n; ++i) {
    double theta = (static_cast<double>(i) / (n - 1) - 0.5) * 150 * kPi / 180;
    double rho = 2 * a * std::tan(theta) * std::sin(theta);
    points.push_back({in.origin.x + a * rho * std::cos(theta), in.origin.y + a * rho * std::sin(theta), in.origin.z + 0.0});
  }
  return single(std::move(points));
}

// x = 10B sin(A t + C), y = B^2 sin t (C a phase in radians as typed); t over
// [0, 2 pi]. P x 35 samples.
CurveList lissajous(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1), c = in.real(2);
  return single(planar(in.origin, precisionCount(in.whole(3)), 0.0, kTwoPi,
                       [&](double t) { return XY{10 * b * std::sin(a * t + c), b * b * std::sin(t)}; }));
}

// x = A cos t, y = B sin 2t over [0, 2 pi]. P x 35 samples.
CurveList figureEight(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1);
  return single(planar(in.origin, precisionCount(in.whole(2)), 0.0, kTwoPi,
                       [&](double t) { return XY{a * std::cos(t), b * std::sin(2 * t)}; }));
}

// A palm of radius A with five fingers as Gaussian bumps of the polar radius at
// 30..150 degrees, the thumb (30) and little finger (150) shorter. P x 35 samples.
CurveList hand(const GeneratorInput& in) {
  const double a = in.real(0);
  constexpr std::array<double, 5> kLength{0.9, 1.5, 1.7, 1.5, 1.1};
  constexpr double kWidth = 9 * kPi / 180;
  return single(planar(in.origin, precisionCount(in.whole(1)), 0.0, kTwoPi, [&](double t) {
    double rho = 1;
    for (int j = 0; j < 5; ++j) {
      double d = (t - (30.0 + 30.0 * j) * kPi / 180) / kWidth;
      rho += kLength[j] * std::exp(-0.5 * d * d);
    }
    return polar(a * rho, t);
  }));
}

// x = R sin t, y = -R cos t - 0.25R |sin t| (1 - cos t)/2: round at the bottom,
// pointed at the top (t = pi). P x 35 samples.
CurveList peach(const GeneratorInput& in) {
  const double r = in.real(0);
  return single(planar(in.origin, precisionCount(in.whole(1)), 0.0, kTwoPi, [&](double t) {
    return XY{r * std::sin(t), -r * std::cos(t) - 0.25 * r * std::abs(std::sin(t)) * (1 - std::cos(t)) / 2};
  }));
}

// A lock outline: rho = R(1 - (T/80) cos 4t - (S/46) sin t cos 4t), t the polar
// angle: S raises the ears at 45 and 135 degrees, dips the top and points the
// bottom; T squares the sides. P x 35 samples.
CurveList longevityLock(const GeneratorInput& in) {
  const double r = in.real(0), s = in.real(1), tt = in.real(2);
  return single(planar(in.origin, precisionCount(in.whole(3)), 0.0, kTwoPi, [&](double t) {
    return polar(r * (1 - tt / 80 * std::cos(4 * t) - s / 46 * std::sin(t) * std::cos(4 * t)), t);
  }));
}

// A lantern: x = R cos t, y = 1.3R sign(sin t)|sin t|^q with q = hidden slot/100;
// small q flattens top and bottom. P x 35 samples.
CurveList drum(const GeneratorInput& in) {
  const double r = in.real(0), q = in.real(2) / 100;
  return single(planar(in.origin, precisionCount(in.whole(1)), 0.0, kTwoPi, [&](double t) {
    double s = std::sin(t);
    return XY{r * std::cos(t), std::copysign(1.3 * r * std::pow(std::abs(s), q), s)};
  }));
}

// rho = R(1 + c cos 2t), c = hidden slot/100; waisted when c > 0.2. P x 35 samples.
CurveList peanut(const GeneratorInput& in) {
  const double r = in.real(0), c = in.real(2) / 100;
  return single(planar(in.origin, precisionCount(in.whole(1)), 0.0, kTwoPi,
                       [&](double t) { return polar(r * (1 + c * std::cos(2 * t)), t); }));
}

// Bow curve x^4 = x^2 y - y^3: x = 3R u(1 - u^2), y = 3R B u^2(1 - u^2), u in
// [-1, 1]; two loops meeting at the origin, B stretches them upwards. P x 35 samples.
CurveList bow(const GeneratorInput& in) {
  const double r = in.real(0), b = in.real(1);
  return single(planar(in.origin, precisionCount(in.whole(2)), -1.0, 1.0, [&](double u) {
    double w = 1 - u * u;
    return XY{3 * r * u * w, 3 * r * b * u * u * w};
  }));
}

// Bell profile, open at the mouth: x = R sin(pi u/2)(0.55 + 0.45 u^4),
// y = 1.4R cos(pi u/2), u in [-1, 1]. P x 35 samples.
CurveList bell(const GeneratorInput& in) {
  const double r = in.real(0);
  return single(planar(in.origin, precisionCount(in.whole(1)), -1.0, 1.0, [&](double u) {
    return XY{r * std::sin(kPi * u / 2) * (0.55 + 0.45 * u * u * u * u), 1.4 * r * std::cos(kPi * u / 2)};
  }));
}

}  // namespace formula::rows
