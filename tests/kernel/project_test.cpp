// Projection onto a plane: the result is the image of the source under the
// projection map, point for point, and of the kind the host gives.
#include "kernel_test.h"

namespace {

void expectImage(const EntityData& src, const EntityData& img, const ge::Matrix3d& m) {
  for (const Point3d& p : samples(src, 48)) EXPECT_LT(distanceTo(img, m.apply(p)), 1e-9);
  Point3d a, b;
  kernel.getStartPoint(src, a), kernel.getStartPoint(img, b);
  if (!std::holds_alternative<Circle>(src) && !kernel.isClosed(src)) {
    EXPECT_LT(b.distanceTo(m.apply(a)), 1e-9);
  }
}

Plane worldXY() { return Plane{{0, 0, -3}, {0, 0, 1}}; }

// Onto z = -3, straight down or along an oblique direction; the result holds
// the image of every sample and, where given, is of the kind the host makes.
TEST(Projection, EveryKindMapsPointForPointOntoThePlane) {
  const ge::Vector3d down{0, 0, 1}, oblique{0.3, -0.2, 1};
  LwPolyline lw{{{0, 0, 0.5}, {2, 0}, {2, 2}}};
  lw.elevation = 4;
  // A bulged polyline seen at an angle has elliptical arcs: a rational spline.
  LwPolyline tilted = lw;
  tilted.normal = ge::Vector3d{1, 0, 1}.normalized();
  tilted.closed = true;
  Polyline3d p3{{{{0, 0, 0}}, {{1, 2, 3}}, {{4, 1, -2}}}};
  Spline spline;
  kernel.fitSpline({{0, 0, 0}, {1, 2, 3}, {4, 1, -2}, {5, 5, 1}}, nullptr, nullptr, spline);
  const auto noKind = std::variant_npos;  // a kind: the index of the result's alternative
  const struct { const char* what; EntityData source; ge::Vector3d dir; size_t kind; } cases[] = {
      {"tilted circle", Circle{{1, 2, 5}, 2, 0, ge::Vector3d{1, 0, 1}.normalized()}, down, EntityData(Ellipse{}).index()},
      {"flat arc, straight down", Arc{{1, 1, 7}, 2, 0.3, 2.0}, down, EntityData(Arc{}).index()},
      {"tilted arc, oblique", Arc{{0, 0, 2}, 3, 5.5, 1.0, 0, ge::Vector3d{0, 1, 1}.normalized()}, oblique, noKind},
      {"tilted ellipse, oblique", Ellipse{{1, 1, 1}, {3, 0, 1}, ge::Vector3d{-1, 0, 3}.normalized(), 0.3, 0.2, 2.5},
       oblique, noKind},
      {"flat arc, oblique", Arc{{0, 0, 2}, 3, 0.5, 2.0}, oblique, noKind},
      {"raised polyline", lw, down, noKind},
      {"3D polyline", p3, down, noKind},
      {"spline", spline, down, noKind},
      {"tilted closed polyline with a bulge", tilted, down, EntityData(Spline{}).index()},
  };
  std::vector<EntityData> results;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EntityData r;
    if (c.dir == down) {
      ASSERT_EQ(kernel.getOrthoProjectedCurve(c.source, worldXY(), r), ErrorStatus::eOk);
    } else {
      ASSERT_EQ(kernel.getProjectedCurve(c.source, worldXY(), c.dir, r), ErrorStatus::eOk);
    }
    if (c.kind != noKind) {
      ASSERT_EQ(r.index(), c.kind);
    }
    expectImage(c.source, r, ge::Matrix3d::projection({0, 0, -3}, {0, 0, 1}, c.dir));
    results.push_back(r);
  }
  EXPECT_NEAR(std::get<Ellipse>(results[0]).ratio, std::sqrt(0.5), 1e-12);
  EXPECT_NEAR(std::get<Arc>(results[1]).center.z, -3, 1e-12);
  EXPECT_NEAR(std::get<Arc>(results[1]).startAngle, 0.3, 1e-12);
}

TEST(Projection, DirectionInThePlaneIsRefused) {
  EntityData r;
  EXPECT_EQ(kernel.getProjectedCurve(Line{{0, 0, 0}, {1, 1, 1}}, worldXY(), {1, 0, 0}, r), ErrorStatus::eInvalidInput);
  EXPECT_EQ(kernel.getOrthoProjectedCurve(Line{{0, 0, 0}, {0, 0, 1}}, worldXY(), r), ErrorStatus::eDegenerateGeometry);
}

}  // namespace
