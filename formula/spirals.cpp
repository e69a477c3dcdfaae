// Spirals and space curves.
#include <cmath>

#include "formula/generator_rows.h"
#include "formula/sampling.h"

namespace formula::rows {
using namespace sampling;

namespace {

// +1 when the Direction switch is on, -1 when it is 0.
double directionSign(int direction) { return direction != 0 ? 1.0 : -1.0; }

// Point on the sphere of radius r at polar angle phi (from +z) and longitude lambda.
ge::Vector3d onSphere(double r, double phi, double lambda) {
  return {r * std::sin(phi) * std::cos(lambda), r * std::sin(phi) * std::sin(lambda), r * std::cos(phi)};
}

// The routine rows 63 and 64 share: a closed ring around the origin,
// t in [0, 2 pi], with radius rho(t) and height z(t).
template <class Rho, class Z>
CurveList ring(const ge::Point3d& origin, int n, Rho rho, Z z) {
  return single(spatial(origin, n, 0.0, kTwoPi, [&](double t) {
    return ge::Vector3d{rho(t) * std::cos(t), rho(t) * std::sin(t), z(t)};
  }));
}

}  // namespace

// Stacked rings: 180 samples per pass, Loops + 1 passes, theta = 2 pi i/179;
// x = R cos(c theta), y = R sin(c theta), z = cos(c^2.4 theta) + pass * Dist with c = 1.
CurveList diskSpring(const GeneratorInput& in) {
  const double r = in.real(0), dist = in.real(1);
  const int passes = in.whole(2) + 1;
  constexpr double c = 1.0;
  ge::PointList points;
  for (int pass = 0; pass < passes; ++pass) {
    for (int i = 0; i < 180; ++i) {
      double theta = kTwoPi * i / 179;
      points.push_back(in.origin + ge::Vector3d{r * std::cos(c * theta), r * std::sin(c * theta),
                                                std::cos(std::pow(c, 2.4) * theta) + pass * dist});
    }
  }
  return single(std::move(points));
}

// Involute of a circle of radius r: x = r cos t + t r sin t, y = r sin t - r t cos t,
// t in [0, 2 pi L] times d (d = -1 reverses the sense of t). L x 36 samples.
CurveList involute(const GeneratorInput& in) {
  const int loops = in.whole(0);
  const double d = directionSign(in.whole(1)), r = in.real(2);
  return single(planar(in.origin, loops * 36, 0.0, d * kTwoPi * loops, [&](double t) {
    return XY{r * std::cos(t) + t * r * std::sin(t), r * std::sin(t) - r * t * std::cos(t)};
  }));
}

// rho = r t, t in [0, 2 pi L]; d = -1 mirrors x. L x 36 samples.
CurveList archimedes(const GeneratorInput& in) {
  const int loops = in.whole(0);
  const double d = directionSign(in.whole(1)), r = in.real(2);
  return single(planar(in.origin, loops * 36, 0.0, kTwoPi * loops,
                       [&](double t) { return XY{d * r * t * std::cos(t), r * t * std::sin(t)}; }));
}

// rho = r 2.718281828^(b t) with b = Dist/1000 (the literal base, not e);
// t in [0, 2 pi L]; d = -1 mirrors x. L x 36 samples.
CurveList logarithmicSpiral(const GeneratorInput& in) {
  const int loops = in.whole(0);
  const double d = directionSign(in.whole(1)), b = in.real(2) / 1000, r = in.real(3);
  return single(planar(in.origin, loops * 36, 0.0, kTwoPi * loops, [&](double t) {
    double rho = r * std::pow(2.718281828, b * t);
    return XY{d * rho * std::cos(t), rho * std::sin(t)};
  }));
}

// rho = r/t, t in [1, 1 + 2 pi L]; d = -1 mirrors x. L x 36 samples.
CurveList hyperbolicSpiral(const GeneratorInput& in) {
  const int loops = in.whole(0);
  const double d = directionSign(in.whole(1)), r = in.real(2);
  return single(planar(in.origin, loops * 36, 1.0, 1.0 + kTwoPi * loops, [&](double t) {
    double rho = r / t;
    return XY{d * rho * std::cos(t), rho * std::sin(t)};
  }));
}

// Lituus rho = r/sqrt(t), t in [1, 1 + 2 pi L]; d = -1 mirrors x. L x 36 samples.
CurveList interlockingSpiral(const GeneratorInput& in) {
  const int loops = in.whole(0);
  const double d = directionSign(in.whole(1)), r = in.real(2);
  return single(planar(in.origin, loops * 36, 1.0, 1.0 + kTwoPi * loops, [&](double t) {
    double rho = r / std::sqrt(t);
    return XY{d * rho * std::cos(t), rho * std::sin(t)};
  }));
}

// A closed seam on the sphere of radius Radius: longitude t in [0, 2 pi],
// polar angle pi/2 + w sin(A t) with w = hidden slot x 2.5 degrees. P x 35 samples.
CurveList sphericalCurve(const GeneratorInput& in) {
  const double a = in.real(0), r = in.real(1), w = in.real(3) * 2.5 * kPi / 180;
  return single(spatial(in.origin, precisionCount(in.whole(2)), 0.0, kTwoPi,
                        [&](double t) { return onSphere(r, kPi / 2 + w * std::sin(a * t), t); }));
}

// Fermat spiral rho = R sqrt(t), t in [0, 5 pi]. P x 35 samples.
CurveList fermat(const GeneratorInput& in) {
  const double r = in.real(0);
  return single(planar(in.origin, precisionCount(in.whole(1)), 0.0, 5 * kPi,
                       [&](double t) { return polar(r * std::sqrt(t), t); }));
}

// Six turns on the sphere of radius R, in two runs of samples. B = 1 (spherical
// helix): south pole to equator, then on to the north pole. B = 0 (mantle
// helix): north pole down to the equator, then back up winding the other way,
// a closed hood. P x 35 samples.
CurveList sphericalHelix(const GeneratorInput& in) {
  const double r = in.real(0);
  const bool sphere = in.whole(1) != 0;
  constexpr double kTurnsAngle = 6 * kTwoPi;
  return single(spatial(in.origin, precisionCount(in.whole(2)), 0.0, 1.0, [&](double s) {
    if (sphere) return onSphere(r, kPi * (1 - s), kTurnsAngle * s);
    if (s <= 0.5) return onSphere(r, kPi / 2 * (2 * s), kTurnsAngle * 2 * s);
    double u = 2 * (1 - s);  // 1 at the equator, 0 back at the pole
    return onSphere(r, kPi / 2 * u, -kTurnsAngle * (1 - u));
  }));
}

// rho = R sin(t/10), t in [0, 10 pi]: five turns out to the circle of radius R
// and five back to the centre. P x 35 samples.
CurveList spiralInCircle(const GeneratorInput& in) {
  const double r = in.real(0);
  return single(planar(in.origin, precisionCount(in.whole(1)), 0.0, 10 * kPi,
                       [&](double t) { return polar(r * std::sin(t / 10), t); }));
}

// A woven band on an open cone: h = (1 + sin(9t/7))/2, rho = R(0.6 + 0.4h),
// z = 0.8 R h, t in [0, 14 pi] (seven turns, nine weaves; closes). P x 35 samples.
CurveList bottomlessBasket(const GeneratorInput& in) {
  const double r = in.real(0);
  return single(spatial(in.origin, precisionCount(in.whole(1)), 0.0, 14 * kPi, [&](double t) {
    double h = (1 + std::sin(9 * t / 7)) / 2, rho = r * (0.6 + 0.4 * h);
    return ge::Vector3d{rho * std::cos(t), rho * std::sin(t), 0.8 * r * h};
  }));
}

// Eight turns from pole to pole, s in [0, 1]. B = 1 (UFO): on the flattened
// sphere x, y radius R, z radius 0.3R, longitude 16 pi s. B = 0 (whirlpool
// ball): on the sphere of radius R, longitude 16 pi s^2, tightening as it goes.
// P x 35 samples.
CurveList ufoVortex(const GeneratorInput& in) {
  const double r = in.real(0);
  const bool ufo = in.whole(1) != 0;
  return single(spatial(in.origin, precisionCount(in.whole(2)), 0.0, 1.0, [&](double s) {
    if (ufo) {
      ge::Vector3d p = onSphere(r, kPi * s, 16 * kPi * s);
      return ge::Vector3d{p.x, p.y, 0.3 * p.z};
    }
    return onSphere(r, kPi * s, 16 * kPi * s * s);
  }));
}

// Ten turns down a cone from its apex to the brim of radius R; the slope is
// the hidden slot in degrees: rho = R s, z = (R - rho) tan(slope). P x 35 samples.
CurveList conicalHat(const GeneratorInput& in) {
  const double r = in.real(0), slope = in.real(2) * kPi / 180;
  return single(spatial(in.origin, precisionCount(in.whole(1)), 0.0, 1.0, [&](double s) {
    double rho = r * s, t = 20 * kPi * s;
    return ge::Vector3d{rho * std::cos(t), rho * std::sin(t), (r - rho) * std::tan(slope)};
  }));
}

// A conic wound round a circle: rho = 1.3R/(1 + 0.3 cos(B t)), planar, B lobes.
CurveList circularConic(const GeneratorInput& in) {
  const double r = in.real(0), b = in.real(1);
  return ring(
      in.origin, precisionCount(in.whole(2)), [&](double t) { return 1.3 * r / (1 + 0.3 * std::cos(b * t)); },
      [](double) { return 0.0; });
}

// A sine wave of B periods round the cylinder of radius R: z = (R/4) sin(B t).
CurveList cylindricalSineWave(const GeneratorInput& in) {
  const double r = in.real(0), b = in.real(1);
  return ring(
      in.origin, precisionCount(in.whole(2)), [&](double) { return r; },
      [&](double t) { return r / 4 * std::sin(b * t); });
}

}  // namespace formula::rows
