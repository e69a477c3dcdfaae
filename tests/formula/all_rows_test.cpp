// Every row at its defaults and at the limits of its ranges draws finite,
// non-degenerate curves with the promised number of samples.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "formula/generators.h"

namespace formula {
namespace {

enum class Setting { kDefaults, kMinimum, kMaximum };

std::array<int, kParamCount> paramsFor(int row, Setting setting) {
  std::array<int, kParamCount> values{};
  for (int k = 0; k < kParamCount; ++k) {
    const auto& p = englishCatalogue()[row].params[k];
    values[k] = setting == Setting::kDefaults ? p.defaultValue
                : setting == Setting::kMinimum ? p.minValue
                                               : p.maxValue;
  }
  return values;
}

// Twice the largest triangle area spanned by the first point, the farthest
// point from it, and any other point: zero only when all points lie on a line.
double spread(const ge::PointList& pts) {
  size_t far = 0;
  for (size_t i = 1; i < pts.size(); ++i)
    if (pts[i].distanceTo(pts[0]) > pts[far].distanceTo(pts[0])) far = i;
  ge::Vector3d axis = pts[far] - pts[0];
  double best = 0;
  for (const auto& p : pts) best = std::max(best, axis.cross(p - pts[0]).length());
  return best;
}

// Rows whose formula is fixed: at the limits of their ranges they may
// legitimately collapse (A = B in the hypocycloid) or grow beyond what a
// length can hold (the logarithmic spiral), so there only finiteness is asked.
bool hasFixedFormula(int row) {
  static const std::set<int> rows{0,  5,  6,  7,  11, 12, 13, 14, 15, 16, 17, 18, 19, 21, 22, 23,
                                  24, 25, 26, 30, 31, 41, 44, 45, 46, 47, 48, 49, 65, 67, 68};
  return rows.count(row) > 0;
}

class EveryRow : public ::testing::TestWithParam<std::tuple<int, Setting>> {};

TEST_P(EveryRow, DrawsFiniteNonDegenerateCurvesOfTheRuledSampleCount) {
  auto [row, setting] = GetParam();
  const ge::Point3d origin{100, 200, 7};
  auto params = paramsFor(row, setting);
  CurveList curves = generateFormulaCurve(row, {origin, params, 6});
  ASSERT_FALSE(curves.empty());
  const auto& def = englishCatalogue()[row];
  for (int k = 0; k < kParamCount; ++k) {
    // A "Precision" slot: N = Precision x 35; a "Loops" slot of a spiral: N = Loops x 36.
    if (def.params[k].caption == "Precision") {
      EXPECT_EQ(curves[0].points.size(), 35u * params[k]) << row;
    }
    if (def.params[k].caption == "Loops" && row != 7) {
      EXPECT_EQ(curves[0].points.size(), 36u * params[k]) << row;
    }
  }
  for (const auto& curve : curves) {
    ASSERT_GE(curve.points.size(), 3u);
    for (const auto& p : curve.points)
      ASSERT_TRUE(std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z)) << "row " << row;
    if (hasFixedFormula(row) && setting != Setting::kDefaults) continue;
    double size = 0;
    for (const auto& p : curve.points) size = std::max(size, p.distanceTo(curve.points[0]));
    EXPECT_GT(size, 1e-6) << "row " << row;
    EXPECT_GT(spread(curve.points), 1e-6 * size * size) << "row " << row << " lies on a line";
    // No two consecutive samples coincide: a fitted spline needs distinct fit points.
    for (size_t i = 1; i < curve.points.size(); ++i)
      EXPECT_GT(curve.points[i].distanceTo(curve.points[i - 1]), 1e-9 * size) << "row " << row << " sample " << i;
  }
}

std::string caseName(const ::testing::TestParamInfo<std::tuple<int, Setting>>& info) {
  auto [row, setting] = info.param;
  const char* names[] = {"defaults", "minimum", "maximum"};
  return "row" + std::to_string(row) + "_" + names[static_cast<int>(setting)];
}

INSTANTIATE_TEST_SUITE_P(Catalogue, EveryRow,
                         ::testing::Combine(::testing::Range(0, kCurveCount),
                                            ::testing::Values(Setting::kDefaults, Setting::kMinimum,
                                                              Setting::kMaximum)),
                         caseName);

TEST(EveryRowPlanarity, PlanarRowsLieAtTheOriginsZ) {
  const int spaceRows[] = {7, 29, 31, 37, 38, 39, 64};
  for (int row = 0; row < kCurveCount; ++row) {
    bool space = std::find(std::begin(spaceRows), std::end(spaceRows), row) != std::end(spaceRows);
    CurveList curves = generateFormulaCurve(row, {ge::Point3d{1, 2, 3}, defaultParams(row), 6});
    bool flat = true;
    for (const auto& c : curves)
      for (const auto& p : c.points) flat = flat && p.z == 3.0;
    EXPECT_EQ(flat, !space) << "row " << row;
  }
}

TEST(EveryRowDispatch, IndexesOutsideTheListDrawNothing) {
  EXPECT_TRUE(generateFormulaCurve(71, {}).empty());
  EXPECT_TRUE(generateFormulaCurve(-1, {}).empty());
  EXPECT_EQ(generatorFor(200), nullptr);
  EXPECT_NE(generatorFor(70), nullptr);  // the last, placeholder row has its own generator
}

}  // namespace
}  // namespace formula
