// Roses, rolling-circle curves and polar flowers. All planar; the closed ones
// close because the first and last samples coincide.
#include <algorithm>
#include <cmath>

#include "formula/generator_rows.h"
#include "formula/sampling.h"

namespace formula::rows {
using namespace sampling;

namespace {
// n samples of the polar curve rho(t), t in [from, to].
template <class Rho>
CurveList polarCurve(const ge::Point3d& origin, int n, double from, double to, Rho rho) {
  return single(planar(origin, n, from, to, [&](double t) { return polar(rho(t), t); }));
}
}  // namespace

// Hypocycloid of Tips cusps, k = Tips - 1 (a deltoid for Tips = 3): x = (R/k)(k cos t + cos kt),
// y = (R/k)(k sin t - sin kt); (k - 1) x 36 samples over [0, 2 pi].
CurveList tricuspid(const GeneratorInput& in) {
  const double r = in.real(0);
  const int k = in.whole(1) - 1;
  const double kd = k;
  return single(planar(in.origin, (k - 1) * 36, 0.0, kTwoPi, [&](double t) {
    return XY{r / kd * (kd * std::cos(t) + std::cos(kd * t)), r / kd * (kd * std::sin(t) - std::sin(kd * t))};
  }));
}

// TYPE 1: cardioid rho = 2A(1 + cos t); otherwise rho = A(1 + sin(t/2)). 35 samples over [0, 2 pi].
CurveList kidneyLine(const GeneratorInput& in) {
  const double a = in.real(0);
  const bool cardioid = in.whole(1) == 1;
  return polarCurve(in.origin, 35, 0.0, kTwoPi, [&](double t) {
    return cardioid ? 2 * a * (1 + std::cos(t)) : a * (1 + std::sin(t / 2));
  });
}

// x = 3B cos t + A cos 3t, y = 3B sin t + A sin 3t; 175 samples over [0, 2 pi].
CurveList doubleArcEpicycloid(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1);
  return single(planar(in.origin, 175, 0.0, kTwoPi, [&](double t) {
    return XY{3 * b * std::cos(t) + a * std::cos(3 * t), 3 * b * std::sin(t) + a * std::sin(3 * t)};
  }));
}

// Nephroid x = A(3 cos t - cos 3t), y = A(3 sin t - sin 3t); 175 samples over [0, 2 pi].
CurveList kidneyLine2(const GeneratorInput& in) {
  const double a = in.real(0);
  return single(planar(in.origin, 175, 0.0, kTwoPi, [&](double t) {
    return XY{a * (3 * std::cos(t) - std::cos(3 * t)), a * (3 * std::sin(t) - std::sin(3 * t))};
  }));
}

// Talbot's curve with a = A, b = B, f^2 = a^2 - b^2, scaled by C:
// x = C(a^2 + f^2 sin^2 t) cos t/a, y = C(a^2 - 2f^2 + f^2 sin^2 t) sin t/b; 175 samples.
CurveList talbotFish(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1), c = in.real(2);
  const double f2 = a * a - b * b;
  return single(planar(in.origin, 175, 0.0, kTwoPi, [&](double t) {
    double s2 = std::sin(t) * std::sin(t);
    return XY{c * (a * a + f2 * s2) * std::cos(t) / a, c * (a * a - 2 * f2 + f2 * s2) * std::sin(t) / b};
  }));
}

// Four-leaved rose rho = A cos 2t; 175 samples over [0, 2 pi].
CurveList tetraphyllaRose(const GeneratorInput& in) {
  const double a = in.real(0);
  return polarCurve(in.origin, 175, 0.0, kTwoPi, [&](double t) { return a * std::cos(2 * t); });
}

// Three-leaved rose rho = A cos 3t; 175 samples over [0, pi].
CurveList trefoilRose(const GeneratorInput& in) {
  const double a = in.real(0);
  return polarCurve(in.origin, 175, 0.0, kPi, [&](double t) { return a * std::cos(3 * t); });
}

// Rose rho = B sin(A t); C x 35 samples over [0, 2 pi].
CurveList rhodonea(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1);
  return polarCurve(in.origin, in.whole(2) * 35, 0.0, kTwoPi, [&](double t) { return b * std::sin(a * t); });
}

// x = A cos t + B cos 0.8t, y = A sin t - B sin 0.8t; 315 samples over [0, 10 pi].
CurveList rhodonea2(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1);
  return single(planar(in.origin, 315, 0.0, 10 * kPi, [&](double t) {
    return XY{a * std::cos(t) + b * std::cos(0.8 * t), a * std::sin(t) - b * std::sin(0.8 * t)};
  }));
}

// k = A/B + 1; x = (A+B) cos t - C cos kt, y = (A+B) sin t - C sin kt;
// t over [0, 2 pi B] so integer A and B close. P x 35 samples.
CurveList epicycloid(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1), c = in.real(2);
  const double k = a / b + 1;
  return single(planar(in.origin, precisionCount(in.whole(3)), 0.0, kTwoPi * b, [&](double t) {
    return XY{(a + b) * std::cos(t) - c * std::cos(k * t), (a + b) * std::sin(t) - c * std::sin(k * t)};
  }));
}

// k = 1 - A/B; x = (A-B) cos t + C cos kt, y = (A-B) sin t + C sin kt;
// t over [0, 2 pi B]. P x 35 samples.
CurveList hypocycloid(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1), c = in.real(2);
  const double k = 1 - a / b;
  return single(planar(in.origin, precisionCount(in.whole(3)), 0.0, kTwoPi * b, [&](double t) {
    return XY{(a - b) * std::cos(t) + c * std::cos(k * t), (a - b) * std::sin(t) + c * std::sin(k * t)};
  }));
}

// Hypotrochoid: a circle of radius A rolls inside one of radius A + B carrying
// a pen at distance d = C A/4 (C = 4 draws the hypocycloid itself, below it a
// curtate and above it a prolate curve): x = B cos t + d cos(B t/A),
// y = B sin t - d sin(B t/A); t over [0, 2 pi A], so integer A and B close.
// P x 35 samples.
CurveList hypotrochoid(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1), d = in.real(2) * a / 4;
  const double k = b / a;
  return single(planar(in.origin, precisionCount(in.whole(3)), 0.0, kTwoPi * a, [&](double t) {
    return XY{b * std::cos(t) + d * std::cos(k * t), b * std::sin(t) - d * std::sin(k * t)};
  }));
}

// Epitrochoid: a circle of radius A rolls outside one of radius B carrying a
// pen at distance C: x = (B+A) cos t - C cos((B+A)t/A), y = (B+A) sin t - C sin((B+A)t/A);
// t over [0, 2 pi A]. P x 35 samples.
CurveList epitrochoid(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1), c = in.real(2);
  const double k = (b + a) / a;
  return single(planar(in.origin, precisionCount(in.whole(3)), 0.0, kTwoPi * a, [&](double t) {
    return XY{(b + a) * std::cos(t) - c * std::cos(k * t), (b + a) * std::sin(t) - c * std::sin(k * t)};
  }));
}

// A disc with twelve rays: rho = R(1 + 0.25 cos 12t) over [0, 2 pi]. P x 35 samples.
CurveList sun(const GeneratorInput& in) {
  const double r = in.real(0);
  return polarCurve(in.origin, precisionCount(in.whole(1)), 0.0, kTwoPi,
                    [&](double t) { return r * (1 + 0.25 * std::cos(12 * t)); });
}

// Nine round petals: rho = R(0.6 + 0.4 |cos 4.5t|) over [0, 2 pi]. P x 35 samples.
CurveList ninePetalFlower(const GeneratorInput& in) {
  const double r = in.real(0);
  return polarCurve(in.origin, precisionCount(in.whole(1)), 0.0, kTwoPi,
                    [&](double t) { return r * (0.6 + 0.4 * std::abs(std::cos(4.5 * t))); });
}

// Rounded star of C points: rho = A(1 + (B/10) cos Ct) over [0, 2 pi]. P x 35 samples.
CurveList plum(const GeneratorInput& in) {
  const double a = in.real(0), b = in.real(1), c = in.real(2);
  return polarCurve(in.origin, precisionCount(in.whole(3)), 0.0, kTwoPi,
                    [&](double t) { return a * (1 + b / 10 * std::cos(c * t)); });
}

// Six straight leaves: rho = R |cos 3t|^q with q = hidden slot/30 (larger q, slimmer leaves).
CurveList hexaphyllaRectangulata(const GeneratorInput& in) {
  const double r = in.real(0), q = in.real(2) / 30;
  return polarCurve(in.origin, precisionCount(in.whole(1)), 0.0, kTwoPi,
                    [&](double t) { return r * std::pow(std::abs(std::cos(3 * t)), q); });
}

// Six curved leaves: rho = R |cos 3t| drawn at the angle t + w rho/R, each leaf
// bent by up to w = hidden slot degrees at its tip.
CurveList curvilinearHexaphylla(const GeneratorInput& in) {
  const double r = in.real(0), w = in.real(2) * kPi / 180;
  return single(planar(in.origin, precisionCount(in.whole(1)), 0.0, kTwoPi, [&](double t) {
    double rho = r * std::abs(std::cos(3 * t));
    return polar(rho, t + w * rho / r);
  }));
}

// Six-leaf flower: rho = R(c + (1 - c)|cos 3t|), c = hidden slot/100 the heart's share.
CurveList hexaphyllum(const GeneratorInput& in) {
  const double r = in.real(0), c = in.real(2) / 100;
  return polarCurve(in.origin, precisionCount(in.whole(1)), 0.0, kTwoPi,
                    [&](double t) { return r * (c + (1 - c) * std::abs(std::cos(3 * t))); });
}

// Lame superellipse: e = 2/(n/10); x = +-R |cos t|^e, y = +-R |sin t|^e with the
// signs of cos t and sin t; t over [0, 2 pi]. P x 35 samples.
CurveList lame(const GeneratorInput& in) {
  const double r = in.real(0), e = 2 / (in.real(1) / 10);
  return single(planar(in.origin, precisionCount(in.whole(2)), 0.0, kTwoPi, [&](double t) {
    double c = std::cos(t), s = std::sin(t);
    return XY{std::copysign(r * std::pow(std::abs(c), e), c), std::copysign(r * std::pow(std::abs(s), e), s)};
  }));
}

// Conchoid-like mussel: rho = (m^2 cos 2 theta + R^2)/(R cos theta), m = parm2,
// theta from -89 to 89 degrees. P x 35 samples.
CurveList mussel(const GeneratorInput& in) {
  const double r = in.real(0), m = in.real(1);
  const int n = precisionCount(in.whole(2));
  ge::PointList points;
  for (int i = 0; n > 1 && i < n; ++i) {
    double theta = (178.0 * i / (n - 1) - 89) * kPi / 180;
    double rho = (m * m * std::cos(2 * theta) + r * r) / (r * std::cos(theta));
    points.push_back({in.origin.x + rho * std::cos(theta), in.origin.y + rho * std::sin(theta), in.origin.z + 0.0});
  }
  return single(std::move(points));
}

// Watt's curve r^2 = b^2 - (a sin t +- sqrt(c^2 - a^2 cos^2 t))^2 with b = R,
// a = R A/10 and c = a + (hidden slot/36)(R - 2a), which keeps both roots real;
// A = 5 pinches it into a figure eight. Two closed curves (the + and the - root),
// each P x 35 samples over [0, 2 pi].
CurveList watt(const GeneratorInput& in) {
  const double r = in.real(1), a = r * in.real(0) / 10, c = a + in.real(3) / 36 * (r - 2 * a);
  const int n = precisionCount(in.whole(2));
  CurveList curves;
  for (double root : {1.0, -1.0}) {
    curves.push_back({planar(in.origin, n, 0.0, kTwoPi, [&](double t) {
      double inner = std::sqrt(std::max(0.0, c * c - a * a * std::cos(t) * std::cos(t)));
      double u = a * std::sin(t) + root * inner;
      return polar(std::sqrt(std::max(0.0, r * r - u * u)), t);
    })});
  }
  return curves;
}

// Gielis superformula of five-fold symmetry with n1 = n2 = n3 = hidden slot/10:
// rho = R (|cos(5t/4)|^n + |sin(5t/4)|^n)^(-1/n). P x 35 samples over [0, 2 pi].
CurveList superformula(const GeneratorInput& in) {
  const double r = in.real(0), n = in.real(2) / 10;
  return polarCurve(in.origin, precisionCount(in.whole(1)), 0.0, kTwoPi, [&](double t) {
    double u = 5 * t / 4;
    return r * std::pow(std::pow(std::abs(std::cos(u)), n) + std::pow(std::abs(std::sin(u)), n), -1 / n);
  });
}

}  // namespace formula::rows
