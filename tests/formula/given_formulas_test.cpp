// Rows whose formula is fixed: sample points recomputed here from the printed
// formula and compared with the points of the entity drawn into the embedded
// drawing (as a polyline, so its vertices are the samples themselves). The
// rose, catenary and Lissajous curves at their defaults, and fit points as the
// samples of a spline, are checked end to end by check_formula_dxf.py.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "formula/draw.h"
#include "formula_host.h"
#include "geom/curve_kind.h"

namespace formula {
namespace {

using formula_test::pointsOf;

constexpr double PI = 3.14159265358979323846;
const ge::Point3d O{3, -2, 5};

struct XYZ {
  double x, y, z = 0;
};

// The plane point at radius rho and angle a.
XYZ polar(double rho, double a) { return {rho * std::cos(a), rho * std::sin(a)}; }

class GivenFormulas : public formula_test::FormulaFixture<> {
 protected:
  DrawnIds drawn;

  void SetUp() override { geom::setCurveKindIsSpline(false); }

  // Draws the row and returns the points of every entity made.
  std::vector<ge::PointList> draw(int row, std::array<int, 4> params) {
    drawFormulaCurve(h->host, row, O, params, drawn);
    std::vector<ge::PointList> out;
    for (host::ObjectId id : drawn) out.push_back(pointsOf(*h->drawing.read(id)));
    return out;
  }

  // Compares the drawn points with n expected samples f(i), offset by O.
  static void expectSamples(const ge::PointList& got, int n, const std::function<XYZ(int)>& f) {
    ASSERT_EQ(static_cast<int>(got.size()), n);
    for (int i = 0; i < n; ++i) {
      XYZ e = f(i);
      double scale = 1 + std::abs(e.x) + std::abs(e.y) + std::abs(e.z);
      ASSERT_NEAR(got[i].x, O.x + e.x, 1e-9 * scale) << "sample " << i;
      ASSERT_NEAR(got[i].y, O.y + e.y, 1e-9 * scale) << "sample " << i;
      ASSERT_NEAR(got[i].z, O.z + e.z, 1e-9 * scale) << "sample " << i;
    }
  }
  // The same for n samples f(a), a running evenly from `from` to `to`.
  static void expectSweep(const ge::PointList& got, int n, double from, double to,
                          const std::function<XYZ(double)>& f) {
    expectSamples(got, n, [&](int i) { return f(from + (to - from) * i / (n - 1)); });
  }
};

TEST_F(GivenFormulas, HeartStopsOneStepShortAndUsesColourOne) {
  geom::setCurveKindIsSpline(true);  // the heart asks for a closed curve in colour 1
  auto got = draw(0, {64, 0, 0, 0});
  ASSERT_EQ(got.size(), 1u);
  expectSamples(got[0], 35, [](int i) {
    double tt = 2 * PI * i / 36, s = 2.0;
    return XYZ{16 * s * std::pow(std::sin(tt), 3),
               s * (13 * std::cos(tt) - 5 * std::cos(2 * tt) - 2 * std::cos(3 * tt) - std::cos(4 * tt))};
  });
  host::Entity e = *h->drawing.read(drawn[0]);
  EXPECT_EQ(e.props.color.index, 1);
  ASSERT_TRUE(std::holds_alternative<host::Polyline3d>(e.data));  // the maker's closed-spline path
  EXPECT_TRUE(std::get<host::Polyline3d>(e.data).closed);
}

TEST_F(GivenFormulas, HyperbolaDrawsBothBranches) {
  auto got = draw(5, {4, 3, 2, 0});
  ASSERT_EQ(got.size(), 2u);
  for (int side = 0; side < 2; ++side)
    expectSamples(got[side], 72, [&](int i) {
      double y = 20.0 * i / 72 - 10, x = 4.0 / 3.0 * std::sqrt(y * y + 9);
      return XYZ{side == 0 ? x : -x, y};
    });
}

XYZ involute(double a) { return {3 * std::cos(a) + a * 3 * std::sin(a), 3 * std::sin(a) - 3 * a * std::cos(a)}; }

// One curve of a row at the given parameters: n samples f(a), a running
// evenly from `from` to `to`.
struct Sweep {
  const char* what;
  int row;
  std::array<int, 4> params;
  int n;
  double from, to;
  XYZ (*f)(double);
};

const Sweep kSweeps[] = {
    {"tricuspid with three tips: a deltoid of 36 points", 11, {20, 3, 0, 0}, 36, 0, 2 * PI,
     [](double a) { return XYZ{10 * (2 * std::cos(a) + std::cos(2 * a)), 10 * (2 * std::sin(a) - std::sin(2 * a))}; }},
    {"involute", 12, {2, 1, 3, 0}, 72, 0, 4 * PI, involute},
    {"involute, direction 0 reverses the sense of t", 12, {2, 0, 3, 0}, 72, 0, -4 * PI, involute},
    {"Archimedes", 13, {3, 1, 2, 0}, 108, 0, 6 * PI,
     [](double a) { return XYZ{2 * a * std::cos(a), 2 * a * std::sin(a)}; }},
    {"Archimedes, direction 0 mirrors about the Y axis", 13, {3, 0, 2, 0}, 108, 0, 6 * PI,
     [](double a) { return XYZ{-2 * a * std::cos(a), 2 * a * std::sin(a)}; }},
    {"hyperbolic spiral from t = 1", 15, {2, 0, 10, 0}, 72, 1, 1 + 4 * PI,
     [](double a) { return XYZ{-10 / a * std::cos(a), 10 / a * std::sin(a)}; }},
    {"interlocking spiral from t = 1", 16, {2, 1, 10, 0}, 72, 1, 1 + 4 * PI,
     [](double a) { return polar(10 / std::sqrt(a), a); }},
    {"kidney line type 1: the cardioid", 17, {10, 1, 0, 0}, 35, 0, 2 * PI,
     [](double a) { return polar(20 * (1 + std::cos(a)), a); }},
    {"kidney line type 0", 17, {10, 0, 0, 0}, 35, 0, 2 * PI,
     [](double a) { return polar(10 * (1 + std::sin(a / 2)), a); }},
    {"double-arc epicycloid, 175 samples", 18, {4, 7, 0, 0}, 175, 0, 2 * PI,
     [](double a) { return XYZ{21 * std::cos(a) + 4 * std::cos(3 * a), 21 * std::sin(a) + 4 * std::sin(3 * a)}; }},
    {"second kidney line, 175 samples", 19, {5, 0, 0, 0}, 175, 0, 2 * PI,
     [](double a) { return XYZ{5 * (3 * std::cos(a) - std::cos(3 * a)), 5 * (3 * std::sin(a) - std::sin(3 * a))}; }},
    {"tetraphylla rose, 175 samples", 21, {10, 0, 0, 0}, 175, 0, 2 * PI,
     [](double a) { return polar(10 * std::cos(2 * a), a); }},
    {"trefoil rose over pi, 175 samples", 22, {10, 0, 0, 0}, 175, 0, PI,
     [](double a) { return polar(10 * std::cos(3 * a), a); }},
    {"second rhodonea, 315 samples", 24, {4, 10, 1, 0}, 315, 0, 10 * PI, [](double a) {
       return XYZ{4 * std::cos(a) + 10 * std::cos(0.8 * a), 4 * std::sin(a) - 10 * std::sin(0.8 * a)};
     }},
    {"epicycloid over 2 pi B", 25, {5, 8, 8, 2}, 70, 0, 2 * PI * 8, [](double a) {
       double k = 5.0 / 8 + 1;
       return XYZ{13 * std::cos(a) - 8 * std::cos(k * a), 13 * std::sin(a) - 8 * std::sin(k * a)};
     }},
    {"hypocycloid over 2 pi B: whole A and B close it", 26, {5, 8, 8, 2}, 70, 0, 2 * PI * 8, [](double a) {
       double k = 1 - 5.0 / 8;
       return XYZ{-3 * std::cos(a) + 8 * std::cos(k * a), -3 * std::sin(a) + 8 * std::sin(k * a)};
     }},
    {"Fermat", 30, {10, 2, 0, 0}, 70, 0, 5 * PI, [](double a) { return polar(10 * std::sqrt(a), a); }},
    {"probability curve over u", 41, {10, 20, 1, 0}, 35, -2.25, 2.25,
     [](double u) { return XYZ{10 * u, 2.0 * 10 * std::exp(-u * u)}; }},
    {"sinh over u", 44, {10, 1, 30, 0}, 35, -3, 3, [](double u) { return XYZ{10 * u, 10 * std::sinh(u)}; }},
    {"cosh over u", 45, {10, 1, 30, 0}, 35, -3, 3, [](double u) { return XYZ{10 * u, 10 * std::cosh(u)}; }},
    {"tanh over u", 46, {10, 1, 30, 0}, 35, -3, 3, [](double u) { return XYZ{10 * u, 10 * std::tanh(u)}; }},
    {"vinelaine grows with the square of a", 47, {4, 1, 0, 0}, 35, -75 * PI / 180, 75 * PI / 180,
     [](double th) { return polar(4 * 8 * std::tan(th) * std::sin(th), th); }},
    {"figure eight", 49, {20, 30, 1, 0}, 35, 0, 2 * PI,
     [](double a) { return XYZ{20 * std::cos(a), 30 * std::sin(2 * a)}; }},
    {"mussel", 68, {10, 31, 1, 0}, 35, -89 * PI / 180, 89 * PI / 180,
     [](double th) { return polar((31.0 * 31 * std::cos(2 * th) + 100) / (10 * std::cos(th)), th); }},
};

TEST_F(GivenFormulas, SweptCurvesMatchTheirFormulas) {
  for (const Sweep& sweep : kSweeps) {
    SCOPED_TRACE(sweep.what);
    expectSweep(draw(sweep.row, sweep.params)[0], sweep.n, sweep.from, sweep.to, sweep.f);
  }
}

TEST_F(GivenFormulas, TricuspidDrawsTipsLessTwoTimes36Points) {
  EXPECT_EQ(draw(11, {20, 5, 0, 0})[0].size(), 3u * 36);
}

TEST_F(GivenFormulas, LogarithmicSpiralUsesTheLiteralBase) {
  auto got = draw(14, {2, 1, 5, 3})[0];
  expectSweep(got, 72, 0, 4 * PI, [](double a) { return polar(3 * std::pow(2.718281828, 0.005 * a), a); });
  // Growth per turn is 2.718281828^(0.005 * 2 pi): sample 36 is not a whole turn
  // (the 72 samples span two turns over 71 steps), so measure at the ends.
  double r0 = std::hypot(got[0].x - O.x, got[0].y - O.y);
  double r1 = std::hypot(got[71].x - O.x, got[71].y - O.y);
  EXPECT_NEAR(r1 / r0, std::pow(2.718281828, 0.005 * 4 * PI), 1e-12);
  EXPECT_NE(r1 / r0, std::exp(0.005 * 4 * PI));
}

// The Lissajous curve at its defaults is checked end to end (FORMULA saved as
// DXF, read by ezdxf). With B = 7 the x amplitude is 70 but the y amplitude 49.
TEST_F(GivenFormulas, LissajousAmplitudesFollowB) {
  double maxX = 0, maxY = 0;
  auto other = draw(48, {3, 7, 100, 12})[0];
  for (auto& p : other) maxX = std::max(maxX, std::abs(p.x - O.x)), maxY = std::max(maxY, std::abs(p.y - O.y));
  EXPECT_NEAR(maxX, 70, 0.1);
  EXPECT_NEAR(maxY, 49, 0.1);
}

TEST_F(GivenFormulas, LameSamplesLieOnTheirCurve) {
  // Every sample on |x/R|^(2/e) + |y/R|^(2/e) = 1 with e = 2/(n/10), signs following cos t and sin t.
  auto lame = draw(67, {10, 31, 1, 0})[0];
  ASSERT_EQ(lame.size(), 35u);
  double e = 2 / 3.1;
  for (auto& p : lame) {
    double x = (p.x - O.x) / 10, y = (p.y - O.y) / 10;
    EXPECT_NEAR(std::pow(std::abs(x), 2 / e) + std::pow(std::abs(y), 2 / e), 1, 1e-9);
  }
}

TEST_F(GivenFormulas, ParabolaCountFollowsSurftab1) {
  h->sysvars.vars["SURFTAB1"] = host::ResBuf::shortInt(10);
  auto got = draw(6, {8, 1, 0, 0})[0];
  ASSERT_EQ(got.size(), 60u);
  for (auto& p : got) EXPECT_NEAR(p.x - O.x, (p.y - O.y) * (p.y - O.y) / 16, 1e-9);  // x = y^2/(2a), k = 1
}

TEST_F(GivenFormulas, DiskSpringPassesAndSphericalHelixOnItsSphere) {
  auto spring = draw(7, {20, 10, 2, 0})[0];
  ASSERT_EQ(spring.size(), 3u * 180);
  for (int i = 0; i < 540; ++i) {
    double th = 2 * PI * (i % 180) / 179;
    EXPECT_NEAR(spring[i].x - O.x, 20 * std::cos(th), 1e-9);
    EXPECT_NEAR(spring[i].z - O.z, std::cos(th) + 10 * (i / 180), 1e-9);
  }
  for (int b : {0, 1}) {
    auto helix = draw(31, {10, b, 2, 0})[0];
    ASSERT_EQ(helix.size(), 70u);
    for (auto& p : helix) EXPECT_NEAR(p.distanceTo(O), 10, 1e-9);
  }
}

}  // namespace
}  // namespace formula
