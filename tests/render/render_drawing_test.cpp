// Drawings rendered to PNG and read back: ink where entities are, white paper
// elsewhere, fills, mirrored inserts, texts, glyphs and errors (colours, mirrored
// arcs, bulges and nested inserts are probed on the drawing ezdxf writes).
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <numbers>

#include "standalone/render/render.h"
#include "tests/render/fake_drawing.h"
#include "tests/render/picture.h"

using namespace standalone;
using render_test::FakeDrawing;
using render_test::Picture;
constexpr double kPi = std::numbers::pi;

namespace {

class RenderDrawing : public ::testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::remove_all(dir_);
    std::filesystem::create_directories(dir_);
  }
  void TearDown() override {
    if (!HasFailure()) std::filesystem::remove_all(dir_);
  }

  // 200 x 200 pixels showing (-10,-10)..(10,10): pixel = (100 + 10 x, 100 - 10 y).
  static RenderOptions fixedView() {
    return {.widthPx = 200, .heightPx = 200, .viewCenter = {{0, 0}}, .viewHeight = 20};
  }
  static int px(double x) { return static_cast<int>(std::lround(100 + 10 * x)); }
  static int py(double y) { return static_cast<int>(std::lround(100 - 10 * y)); }

  Picture render(const FakeDrawing& d, const RenderOptions& o = fixedView()) {
    auto file = dir_ / "out.png";
    renderDrawingToPng(d, file, o);
    return render_test::loadPng(file);
  }
  // Renders a drawing that holds only this entity.
  Picture renderAlone(host::EntityData data, const RenderOptions& o = fixedView()) {
    FakeDrawing d;
    d.add(std::move(data));
    return render(d, o);
  }

  // A point of the drawing and whether ink is expected within radius pixels of it (0: on that pixel).
  struct Probe {
    double x, y;
    bool ink;
    int radius = 1;
  };
  static void expectProbes(const Picture& pic, std::initializer_list<Probe> probes) {
    for (const Probe& p : probes)
      EXPECT_EQ(pic.inkNear(px(p.x), py(p.y), p.radius), p.ink) << "at (" << p.x << ", " << p.y << ")";
  }

  const std::filesystem::path dir_ = std::filesystem::temp_directory_path() /
      ("corvane-render-" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
};

}  // namespace

TEST_F(RenderDrawing, SolidHatchFillsItsInsideAndLeavesItsIsland) {
  host::Hatch h{.paths = {{.flags = 1 | 2, .polyline = {{-8, -8}, {8, -8}, {8, 8}, {-8, 8}}},
                          {.flags = 2, .polyline = {{-2, -2}, {2, -2}, {2, 2}, {-2, 2}}}}};
  Picture pic = renderAlone(h);
  expectProbes(pic, {{-5, 5, true, 0}, {6, -6, true, 0}, {0, 0, false, 0} /* the island is open */, {9, 0, false, 0}});
  const render_test::Pixel paper = pic.at(199, 0);
  EXPECT_EQ(paper.r + paper.g + paper.b, 3 * 255) << "the paper is pure white";
  // A patterned hatch shows only its boundary.
  h.solidFill = false;
  h.patternName = "ANSI31";
  Picture pattern = renderAlone(h);
  expectProbes(pattern, {{-5, 5, false, 0}, {-8, 5, true}});
}

TEST_F(RenderDrawing, LongClosedPolylineDrawsItsClosingSegment) {
  // 600 vertices on three quarters of a circle: long enough to be stroked in
  // pieces; the closing chord runs from (0,-6) back to (6,0).
  host::LwPolyline pl{.closed = true};
  for (int i = 0; i < 600; ++i) {
    double t = 1.5 * kPi * i / 599;
    pl.vertices.push_back({6 * std::cos(t), 6 * std::sin(t)});
  }
  Picture pic = renderAlone(pl);
  expectProbes(pic, {{3, -3, true}, {-6, 0, true}, {4.2, -4.2, false, 2} /* the missing quarter of the circle */});
}

TEST_F(RenderDrawing, SplineFitPolylineDrawsItsCurveNotItsFrame) {
  host::Polyline2d pl{.splineFit = true, .curveType = host::PolyCurveType::kCubicSpline};
  for (double x = -6; x <= 6; x += 1) pl.vertices.push_back({.position = {x, 0, 0}, .flags = host::kVertexSplineFit});
  for (double x : {-6, 6}) pl.vertices.push_back({.position = {x, 8, 0}, .flags = host::kVertexSplineFrame});
  Picture pic = renderAlone(pl);
  EXPECT_TRUE(pic.inkNear(px(0), py(0)));
  EXPECT_EQ(pic.inkCount(px(-5), py(8) - 3, px(5), py(8) + 3), 0);
}

TEST_F(RenderDrawing, MirroredInsertMirrorsTextAndStretchesCircles) {
  FakeDrawing d;
  host::ObjectId label = d.addBlock("LABEL");
  d.add(host::Text{.height = 2, .text = "MW"}, {}, label);
  d.add(host::Circle{{0, -4, 0}, 1}, {}, label);
  // Mirrored in X and stretched: the text runs left, the circle becomes an ellipse.
  d.add(host::BlockReference{.blockName = "LABEL", .scale = {-3, 1, 1}});
  Picture pic = render(d);
  EXPECT_GT(pic.inkCount(px(-8), py(2), px(0), py(0)), 80);
  EXPECT_EQ(pic.inkCount(px(0.3), py(2.5), 200, py(-0.3)), 0);
  // The ends of the ellipse's long axis, the top of its short one, and not its centre.
  expectProbes(pic, {{-3, -4, true}, {3, -4, true}, {0, -3, true}, {0, -4, false, 3}});
}

TEST_F(RenderDrawing, SelfReferencingBlockEnds) {
  FakeDrawing d;
  host::ObjectId loop = d.addBlock("LOOP");
  d.add(host::Line{{0, 0, 0}, {1, 0, 0}}, {}, loop);
  host::BlockReference self{.blockName = "LOOP", .position = {0.5, 0.5, 0}};
  d.add(self, {}, loop);
  d.add(self, {}, loop);
  d.add(self);
  EXPECT_TRUE(render(d).inkNear(px(1), py(0.5)));
}

TEST_F(RenderDrawing, BrokenValuesAreSkippedNotFatal) {
  FakeDrawing d;
  const double nan = std::nan(""), inf = std::numeric_limits<double>::infinity();
  d.add(host::Line{{nan, 0, 0}, {1, 1, 0}});
  d.add(host::Line{{inf, 0, 0}, {1, 1, 0}});
  // A naive "add 2 pi until past the start" never ends.
  d.add(host::Arc{.radius = 3, .startAngle = 1e300, .endAngle = -1e300});
  d.add(host::Ellipse{.majorAxis = {0, 0, 0}, .startParam = nan});
  d.add(host::Text{.height = nan, .text = "x"});
  d.add(host::Helix{.turns = 1e12});
  d.addBlock("EMPTY");
  d.add(host::BlockReference{.blockName = "EMPTY", .columnCount = 30000, .rowCount = 30000});  // 9e8 copies of nothing
  d.add(host::Line{{-8, -8, 0}, {8, -8, 0}});
  Picture pic = render(d, {.widthPx = 200, .heightPx = 200});  // fitted to the finite part only
  EXPECT_GT(pic.inkCount(0, 0, 200, 200), 20);
  EXPECT_NO_THROW(render(d));
}

TEST_F(RenderDrawing, PointGlyphCrossInCircle) {
  const host::PointEntity point{{0, 0, 0}};
  RenderOptions o = fixedView();
  o.pointMode = 35;
  o.pointSize = 8;  // absolute: circle of radius 4
  Picture pic = renderAlone(point, o);
  // The circle, the diagonal of the x, and inside off the x.
  expectProbes(pic, {{4, 0, true}, {0, -4, true}, {2, 2, true}, {2.5, 0, false, 2}});
  EXPECT_EQ(pic.inkCount(px(5), 0, 200, 200), 0);
  // PDSIZE 0: 5 % of the view height, 1 unit here.
  o.pointSize = 0;
  Picture small = renderAlone(point, o);
  expectProbes(small, {{0.5, 0, true}, {2, 0, false, 3}});
}

TEST_F(RenderDrawing, TextAndMTextLandNearTheirAnchors) {
  FakeDrawing d;
  d.add(host::Text{.position = {-8, 4, 0}, .height = 2, .text = "HELLO"});
  // Attachment 3: top right.
  d.add(host::MText{.position = {8, -2, 0}, .height = 1.5, .attachment = 3, .text = "{\\fArial;AB}\\PCD"});
  Picture pic = render(d);
  // Left-aligned on the baseline: ink above and to the right of the anchor.
  EXPECT_GT(pic.inkCount(px(-8), py(6), px(0), py(4)), 50);
  EXPECT_EQ(pic.inkCount(0, py(8), 200, py(6.5)), 0);
  EXPECT_EQ(pic.inkCount(0, 0, px(-8.3), py(3)), 0);
  // Top right: two lines below and to the left of the anchor.
  EXPECT_GT(pic.inkCount(px(4), py(-2), px(8), py(-3.5)), 20);
  EXPECT_GT(pic.inkCount(px(4), py(-4.5), px(8), py(-6)), 20);
  EXPECT_EQ(pic.inkCount(px(8.3), 0, 200, 200), 0);
}

TEST_F(RenderDrawing, TextJustificationPlacesTheRightCorner) {
  // Right, top: position is ignored once justified.
  Picture rightTop = renderAlone(host::Text{.position = {5, 5, 0}, .alignmentPoint = {0, 0, 0}, .height = 2,
                                            .text = "MW", .horizontalJustify = 2, .verticalJustify = 3});
  EXPECT_GT(rightTop.inkCount(px(-4), py(0), px(0), py(-2)), 50);
  EXPECT_EQ(rightTop.inkCount(px(0.2), 0, 200, 200), 0);
  EXPECT_EQ(rightTop.inkCount(0, 0, 200, py(0.2)), 0);

  // Fit: stretched between the two points, height kept.
  Picture fitted = renderAlone(host::Text{.position = {-8, 0, 0}, .alignmentPoint = {8, 0, 0}, .height = 2,
                                          .text = "MW", .horizontalJustify = 5});
  EXPECT_GT(fitted.inkCount(px(-8), py(2), px(-6), py(0)), 20);
  EXPECT_GT(fitted.inkCount(px(6), py(2), px(8), py(0)), 20);
  EXPECT_EQ(fitted.inkCount(0, 0, 200, py(2.3)), 0);

  // Backward text runs to the left of its insertion point.
  Picture backward = renderAlone(host::Text{.height = 2, .text = "MW", .mirrorFlags = 2});
  EXPECT_GT(backward.inkCount(px(-4), py(2), px(0), py(0)), 50);
  EXPECT_EQ(backward.inkCount(px(0.2), 0, 200, 200), 0);
}

TEST_F(RenderDrawing, MTextWrapsAtItsReferenceWidth) {
  Picture pic = renderAlone(host::MText{.position = {-9, 9, 0}, .height = 1, .referenceWidth = 9,
                                        .text = "wrap these words into several short lines"});
  EXPECT_EQ(pic.inkCount(px(0.3), 0, 200, 200), 0);  // nothing beyond the reference width
  // Line pitch 5/3 of the height: the third line's capitals sit between y = 4.67 and 5.67.
  EXPECT_GT(pic.inkCount(px(-9), py(5.6), px(0), py(4.7)), 10);
}

TEST_F(RenderDrawing, EllipseSplineAndImageFrame) {
  FakeDrawing d;
  d.add(host::Ellipse{.majorAxis = {6, 0, 0}, .ratio = 0.5});
  d.add(host::Spline{.degree = 2, .knots = {0, 0, 0, 1, 1, 1}, .controlPoints = {{-8, -8, 0}, {0, -4, 0}, {8, -8, 0}}});
  d.add(host::Image{.insertion = {5, 5, 0}, .uVector = {0.1, 0, 0}, .vVector = {0, 0.1, 0}, .widthPixels = 30,
                    .heightPixels = 20});
  Picture pic = render(d);
  expectProbes(pic, {{6, 0, true}, {0, 3, true}, {0, 4.5, false, 2},  // the ellipse
                     {0, -6, true}, {0, -4, false, 3},                 // the quadratic's middle
                     {8, 6, true}, {6.5, 6, false, 0}});               // the right side of the image frame
}

TEST_F(RenderDrawing, UnwritableTargetIsReportedAndLeavesNothing) {
  FakeDrawing d;
  d.add(host::Line{{0, 0, 0}, {1, 1, 0}});
  auto missing = dir_ / "no-such-folder" / "x.png";
  try {
    renderDrawingToPng(d, missing, fixedView());
    FAIL() << "expected RenderError";
  } catch (const RenderError& e) {
    EXPECT_NE(std::string(e.what()).find("no-such-folder"), std::string::npos);
  }
  EXPECT_FALSE(std::filesystem::exists(missing.parent_path()));
  RenderOptions zero = fixedView();
  zero.widthPx = 0;
  auto existing = dir_ / "keep.png";
  std::ofstream(existing) << "old";
  EXPECT_THROW(renderDrawingToPng(d, existing, zero), RenderError);
  EXPECT_EQ(std::filesystem::file_size(existing), 3u);
  EXPECT_THROW(renderDrawingToSvg(d, dir_, fixedView()), RenderError);  // a folder
  for (const auto& entry : std::filesystem::directory_iterator(dir_))
    EXPECT_EQ(entry.path().extension(), ".png") << entry.path();
}

TEST_F(RenderDrawing, PointListsAndSheet) {
  ge::PointList circle;
  for (int i = 0; i <= 64; ++i) circle.push_back({std::cos(i * kPi / 32), std::sin(i * kPi / 32), 0});
  auto file = dir_ / "preview.png";
  renderPointListsToPng({circle}, file, 120, 80);
  Picture pic = render_test::loadPng(file);
  EXPECT_EQ(pic.width, 120);
  EXPECT_EQ(pic.height, 80);
  EXPECT_GT(pic.inkCount(0, 0, 120, 80), 100);
  EXPECT_FALSE(pic.isInk(60, 40));  // centre of the circle
  auto sheet = dir_ / "sheet.png";
  renderSheetToPng({{"circle", {circle}}, {"line", {{{0, 0, 0}, {1, 1, 0}}}}, {"empty", {}}}, sheet, 2, 100);
  Picture s = render_test::loadPng(sheet);
  EXPECT_EQ(s.width, 200);
  EXPECT_EQ(s.height, 200);
  EXPECT_GT(s.inkCount(0, 0, 100, 80), 100);   // the circle in the first cell
  EXPECT_GT(s.inkCount(0, 80, 100, 100), 5);   // its caption
  EXPECT_GT(s.inkCount(100, 0, 200, 80), 50);  // the line in the second
  EXPECT_EQ(s.inkCount(0, 100, 100, 178), 0);  // the empty cell draws nothing but its caption
  EXPECT_GT(s.inkCount(0, 178, 100, 200), 5);
}
