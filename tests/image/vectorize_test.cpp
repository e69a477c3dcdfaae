// R2V's own vectorizer end to end: a picture of a few coloured shapes gives
// one closed curve per shape, within two pixels of the shape, as polylines or
// fitted splines by the curve-kind flag.
#include <cmath>

#include <gtest/gtest.h>

#include "command_session.h"
#include "geom/curve_kind.h"
#include "image/picture.h"

namespace commands_test {
namespace {

// Distance from p to the segment ab.
double toSegment(ge::Point2d p, ge::Point2d a, ge::Point2d b) {
  double dx = b.x - a.x, dy = b.y - a.y;
  double t = std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
  return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

double toPolygon(ge::Point2d p, const std::vector<ge::Point2d>& corners) {
  double best = 1e300;
  for (std::size_t i = 0; i < corners.size(); ++i)
    best = std::min(best, toSegment(p, corners[i], corners[(i + 1) % corners.size()]));
  return best;
}

bool insideTriangle(double x, double y, const std::vector<ge::Point2d>& t) {
  auto side = [&](ge::Point2d a, ge::Point2d b) { return (b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x); };
  double s0 = side(t[0], t[1]), s1 = side(t[1], t[2]), s2 = side(t[2], t[0]);
  return (s0 >= 0 && s1 >= 0 && s2 >= 0) || (s0 <= 0 && s1 <= 0 && s2 <= 0);
}

class Vectorize : public CommandTest {
 protected:
  // 160 x 100 pixels (y upward in these shape coordinates): a red disc, a blue
  // square and a green triangle on white, each drawn with anti-aliased edges.
  const ge::Point2d discCentre{35, 50};
  const double discRadius = 22;
  const std::vector<ge::Point2d> square{{70, 25}, {105, 25}, {105, 60}, {70, 60}};
  const std::vector<ge::Point2d> triangle{{115, 15}, {150, 15}, {132, 80}};

  std::string picture() {
    image::Picture p = image::blankPicture(160, 100, {255, 255, 255});
    for (int row = 0; row < 100; ++row)
      for (int x = 0; x < 160; ++x) {
        double cx = x + 0.5, cy = 100 - row - 0.5;
        if (std::hypot(cx - discCentre.x, cy - discCentre.y) < discRadius) p.set(x, row, {220, 30, 30});
        if (cx > 70 && cx < 105 && cy > 25 && cy < 60) p.set(x, row, {30, 40, 200});
        if (insideTriangle(cx, cy, triangle)) p.set(x, row, {20, 160, 60});
      }
    std::string path = (s.root() / "shapes.png").string();
    image::savePng(p, path);
    return path;
  }
  // The distance of a drawing point (origin 10,20, one unit per pixel) from the nearest shape edge.
  double offEdge(const ge::Point3d& q) const {
    ge::Point2d p{q.x - 10, q.y - 20};
    return std::min({std::fabs(std::hypot(p.x - discCentre.x, p.y - discCentre.y) - discRadius), toPolygon(p, square),
                     toPolygon(p, triangle)});
  }
  void TearDown() override { geom::setCurveKindIsSpline(true); }
};

INSTANTIATE_TEST_SUITE_P(Languages, Vectorize, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

// The tracer box is remembered, a missing picture draws nothing; then one
// closed outline per shape, as polylines and as splines.
TEST_P(Vectorize, OneClosedOutlinePerShapeWithinTwoPixels) {
  std::string file = picture();
  std::string processed = (s.root() / "processed.png").string();
  geom::setCurveKindIsSpline(false);
  s.start();
  s.run("R2V\nYes\n^C\n");
  std::string out = s.run("R2V\n\n^C\n");
  EXPECT_TRUE(s.says(out, "\nTrace with the external tracer? [Yes/No] <Yes>: ", "\n使用外部描图程序? [Yes/No] <Yes>: "));
  out = s.run("R2V\nNo\n" + (s.root() / "none.png").string() + "\n");
  EXPECT_TRUE(s.says(out, "Load image error 2!", "载入图片错误2!"));
  EXPECT_TRUE(s.entities().empty());
  out = s.run("R2V\nNo\n" + file + "\n4\n16\n1\n" + processed + "\n10,20\n160\n");
  EXPECT_TRUE(s.says(out, "\nColours [2--16] <2>: ", "\n颜色数 [2--16] <2>: "));
  EXPECT_TRUE(s.says(out, "\n3 outlines drawn.", "\n绘制了3条轮廓线。"));
  auto outlines = s.entitiesOf<host::LwPolyline>();
  ASSERT_EQ(outlines.size(), 3u);
  for (const host::Entity& e : outlines) {
    EXPECT_TRUE(std::get<host::LwPolyline>(e.data).closed);
    for (const ge::Point3d& p : verticesOf(e)) EXPECT_LE(offEdge(p), 2.0) << p.x << "," << p.y;
  }
  auto shown = std::get<image::Picture>(image::loadPicture(processed));
  EXPECT_EQ(shown.width, 160) << "the processed picture was written";

  geom::setCurveKindIsSpline(true);
  out = s.run("R2V\nNo\n" + file + "\n4\n16\n1\n\n10,20\n160\n");
  auto splines = s.entitiesOf<host::Spline>();
  ASSERT_EQ(splines.size(), 3u);
  const host::CurveServices& curves = s.host().host().curves;
  for (const host::Entity& e : splines) {
    double start = 0, end = 0;
    curves.getStartParam(e.data, start);
    curves.getEndParam(e.data, end);
    ge::Point3d first, last;
    curves.getStartPoint(e.data, first);
    curves.getEndPoint(e.data, last);
    EXPECT_LT(first.distanceTo(last), 1e-9) << "the ends meet";
    for (int i = 0; i <= 200; ++i) {
      ge::Point3d p;
      curves.getPointAtParam(e.data, start + (end - start) * i / 200, p);
      EXPECT_LE(offEdge(p), 2.0) << p.x << "," << p.y;
    }
  }
}

}  // namespace
}  // namespace commands_test
