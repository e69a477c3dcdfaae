// The curve builders: which entity a point list becomes, where it goes, and
// with which colour.
#include <gtest/gtest.h>

#include "tests/support/fake_drawing.h"
#include "geom/append.h"
#include "geom/curve_builders.h"
#include "geom/curve_kind.h"
#include "standalone/kernel/curve_kernel.h"

namespace {

using namespace host;
using ge::Point3d;

class Builders : public ::testing::Test {
 protected:
  test_support::MemoryDrawing drawing;
  standalone::CurveKernel kernel;
  geom::BuildContext ctx{drawing, kernel};
  ge::Vector3d zero{};
  void SetUp() override { geom::setCurveKindIsSpline(true); }
  void TearDown() override { geom::setCurveKindIsSpline(true); }
  const EntityData& only() {
    EXPECT_EQ(drawing.appended.size(), 1u);
    return drawing.appended.back().data;
  }
};

// Fewer than two points make nothing; an append the drawing refuses reports false.
TEST_F(Builders, NothingMadeReportsFalse) {
  EXPECT_FALSE(geom::makeCurveByPoints(ctx, nullptr, {{1, 2, 3}}, 7, false, zero, zero));
  EXPECT_FALSE(geom::buildPolyline(ctx, kNullId, {{1, 2, 3}}, false));
  EXPECT_TRUE(drawing.appended.empty());
  drawing.appendStatus = ErrorStatus::eNotOpenForWrite;
  EXPECT_FALSE(geom::makeCurveByPoints(ctx, nullptr, {{0, 0, 0}, {1, 0, 0}}, 7, false, zero, zero));
  EXPECT_FALSE(geom::buildPolyline(ctx, kNullId, {{0, 0, 0}, {1, 1, 0}}, false));
}

TEST_F(Builders, CurveKindFlagChoosesSplineOrPolyline) {
  ge::PointList pts{{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {3, 1, 0}};
  ASSERT_TRUE(geom::makeCurveByPoints(ctx, nullptr, pts, 7, false, zero, zero));
  // Degree, fit points and control points are read back by ezdxf (builders_ezdxf_check.py).
  auto* s = std::get_if<Spline>(&drawing.appended.back().data);
  ASSERT_NE(s, nullptr);
  EXPECT_FALSE(s->startTangent.has_value());
  EXPECT_EQ(drawing.appended.back().props.color.index, 7);

  geom::setCurveKindIsSpline(false);
  ASSERT_TRUE(geom::makeCurveByPoints(ctx, nullptr, pts, 7, false, zero, zero));
  auto* pl = std::get_if<LwPolyline>(&drawing.appended.back().data);
  ASSERT_NE(pl, nullptr);
  EXPECT_EQ(pl->vertices.size(), 4u);
  // The polyline branch takes the drawing's defaults, not the colour passed in.
  EXPECT_EQ(drawing.appended.back().props.color.index, 5);
}

TEST_F(Builders, TangentsApplyOnlyWhenBothAreNonZero) {
  ge::PointList pts{{0, 0, 0}, {1, 1, 0}, {2, 0, 0}};
  ASSERT_TRUE(geom::makeCurveByPoints(ctx, nullptr, pts, 1, false, {1, 0, 0}, zero));
  EXPECT_FALSE(std::get<Spline>(drawing.appended.back().data).startTangent.has_value());
  ASSERT_TRUE(geom::makeCurveByPoints(ctx, nullptr, pts, 1, false, {0, 2, 0}, {1, 0, 0}));
  const auto& s = std::get<Spline>(drawing.appended.back().data);
  ASSERT_TRUE(s.startTangent.has_value());
  // The fitted curve leaves its first point along the tangent.
  ge::Vector3d d;
  ASSERT_EQ(kernel.getFirstDeriv(s, s.knots.front(), d), ErrorStatus::eOk);
  EXPECT_NEAR(d.normalized().y, 1.0, 1e-12);
}

struct ColorCase {
  int number;
  int expectedIndex;
};
class ColorNumbers : public Builders, public ::testing::WithParamInterface<ColorCase> {};

TEST_P(ColorNumbers, ResolveAsDocumented) {
  drawing.current.index = 42;
  ASSERT_TRUE(geom::makeCurveByPoints(ctx, nullptr, {{0, 0, 0}, {1, 0, 0}}, GetParam().number, false, zero, zero));
  EXPECT_EQ(drawing.appended.back().props.color.index, GetParam().expectedIndex);
}

INSTANTIATE_TEST_SUITE_P(Numbers, ColorNumbers,
                         ::testing::Values(ColorCase{256, 256}, ColorCase{0, 256}, ColorCase{7, 7}, ColorCase{255, 255},
                                           ColorCase{-1, 42}, ColorCase{300, 42}));

TEST_F(Builders, ZWithinOneTenThousandthKeepsALightweightPolyline) {
  ASSERT_TRUE(geom::buildPolyline(ctx, kNullId, {{0, 0, 1}, {1, 0, 1.0001}, {1, 1, 1.0002}}, false));
  auto* lw = std::get_if<LwPolyline>(&drawing.appended.back().data);
  ASSERT_NE(lw, nullptr);
  EXPECT_EQ(lw->elevation, 1.0);
  ASSERT_TRUE(geom::buildPolyline(ctx, kNullId, {{0, 0, 0}, {1, 0, 0.00011}}, true));
  auto* p3 = std::get_if<Polyline3d>(&drawing.appended.back().data);
  ASSERT_NE(p3, nullptr);
  EXPECT_TRUE(p3->closed);
}

TEST_F(Builders, PolylineGoesBesideItsSource) {
  Entity src;
  src.data = Line{{0, 0, 0}, {1, 0, 0}};
  ASSERT_EQ(drawing.append(src, test_support::MemoryDrawing::kBlock), ErrorStatus::eOk);
  ASSERT_TRUE(geom::buildPolyline(ctx, src.id, {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}}, false));
  EXPECT_EQ(drawing.appended.back().owner, test_support::MemoryDrawing::kBlock);
  EXPECT_EQ(drawing.appended.back().props.layer, "WORK");
}

// A closed fit gives a closed 3D polyline; a target drawing receives the curve instead.
TEST_F(Builders, ClosedFitsAndTargetDrawings) {
  ASSERT_TRUE(geom::buildFitSpline(ctx, nullptr, {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}}, Color{}, true, zero, zero));
  auto* p3 = std::get_if<Polyline3d>(&only());
  ASSERT_NE(p3, nullptr);
  EXPECT_TRUE(p3->closed);
  drawing.appended.clear();
  test_support::MemoryDrawing other;
  ASSERT_TRUE(geom::makeCurveByPoints(ctx, &other, {{0, 0, 0}, {1, 1, 0}, {3, 0, 0}}, 3, false, zero, zero));
  EXPECT_TRUE(drawing.appended.empty());
  ASSERT_EQ(other.appended.size(), 1u);
  EXPECT_TRUE(std::holds_alternative<Spline>(other.appended[0].data));
}

}  // namespace
