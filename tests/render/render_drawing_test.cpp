// Drawings rendered to PNG and read back: ink where entities are, white paper
// elsewhere, colours, fills, orientation of mirrored arcs, inserts, errors.
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
using render_test::Pixel;
constexpr double kPi = std::numbers::pi;

namespace {

class RenderDrawing : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = std::filesystem::temp_directory_path() /
           ("corvane-render-" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    std::filesystem::remove_all(dir_);
    std::filesystem::create_directories(dir_);
  }
  void TearDown() override {
    if (!HasFailure()) std::filesystem::remove_all(dir_);
  }

  // 200 x 200 pixels showing (-10,-10)..(10,10): pixel = (100 + 10 x, 100 - 10 y).
  static RenderOptions fixedView() {
    RenderOptions o;
    o.widthPx = o.heightPx = 200;
    o.viewCenter = ge::Point2d{0, 0};
    o.viewHeight = 20;
    return o;
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

  std::filesystem::path dir_;
};

host::EntityProps colored(int index) {
  host::EntityProps p;
  p.color.index = index;
  return p;
}

}  // namespace

TEST_F(RenderDrawing, LineIsInkAndPaperStaysWhite) {
  Picture pic = renderAlone(host::Line{{-8, -8, 0}, {8, 8, 0}});
  EXPECT_EQ(pic.width, 200);
  EXPECT_EQ(pic.height, 200);
  for (double t = -7; t <= 7; t += 0.5) EXPECT_TRUE(pic.inkNear(px(t), py(t))) << t;
  EXPECT_EQ(pic.inkCount(0, 0, 60, 60), 0);  // far upper-left corner
  EXPECT_EQ(pic.inkCount(px(3), py(-3) - 5, px(3) + 10, py(-3) + 5), 0);
  Pixel corner = pic.at(199, 0);
  EXPECT_EQ(corner.r + corner.g + corner.b, 3 * 255);
}

TEST_F(RenderDrawing, ExtentsAreFittedWithAMargin) {
  FakeDrawing d;
  d.add(host::Line{{100, 50, 0}, {300, 150, 0}});
  RenderOptions o;
  o.widthPx = 400;
  o.heightPx = 200;
  Picture pic = render(d, o);
  ViewTransform v = planView(d, o);
  ge::Point2d a = v.toPage({100, 50}), b = v.toPage({300, 150});
  EXPECT_GT(a.x, 0);
  EXPECT_LT(b.x, 400);
  EXPECT_GT(a.y, b.y);
  EXPECT_TRUE(pic.inkNear(static_cast<int>(a.x), static_cast<int>(a.y), 2));
  EXPECT_TRUE(pic.inkNear(static_cast<int>(b.x), static_cast<int>(b.y), 2));
  ge::Point2d mid = v.toDrawing({(a.x + b.x) / 2, (a.y + b.y) / 2});
  EXPECT_NEAR(mid.x, 200, 1e-9);
  EXPECT_NEAR(mid.y, 100, 1e-9);
}

TEST_F(RenderDrawing, MirroredArcLightsTheMirroredSide) {
  host::Arc arc;
  arc.radius = 6;
  arc.startAngle = 0;
  arc.endAngle = kPi / 2;
  arc.normal = {0, 0, -1};
  Picture pic = renderAlone(arc);
  double r = 6, c = std::cos(kPi / 4) * r;
  EXPECT_TRUE(pic.inkNear(px(-c), py(c)));     // upper left: OCS X is world -X
  EXPECT_FALSE(pic.inkNear(px(c), py(c), 3));  // upper right stays empty
  EXPECT_FALSE(pic.inkNear(px(-c), py(-c), 3));
  arc.normal = {0, 0, 1};
  Picture pic2 = renderAlone(arc);
  EXPECT_TRUE(pic2.inkNear(px(c), py(c)));
  EXPECT_FALSE(pic2.inkNear(px(-c), py(c), 3));
}

TEST_F(RenderDrawing, SolidHatchFillsItsInsideAndLeavesItsIsland) {
  host::Hatch h;
  host::HatchPath outer;
  outer.flags = 1 | 2;
  outer.polyline = {{-8, -8}, {8, -8}, {8, 8}, {-8, 8}};
  host::HatchPath island;
  island.flags = 2;
  island.polyline = {{-2, -2}, {2, -2}, {2, 2}, {-2, 2}};
  h.paths = {outer, island};
  Picture pic = renderAlone(h);
  EXPECT_TRUE(pic.isInk(px(-5), py(5)));
  EXPECT_TRUE(pic.isInk(px(6), py(-6)));
  EXPECT_FALSE(pic.isInk(px(0), py(0)));  // the island is open
  EXPECT_FALSE(pic.isInk(px(9), py(0)));
  // A patterned hatch shows only its boundary.
  h.solidFill = false;
  h.patternName = "ANSI31";
  Picture pic2 = renderAlone(h);
  EXPECT_FALSE(pic2.isInk(px(-5), py(5)));
  EXPECT_TRUE(pic2.inkNear(px(-8), py(5)));
}

TEST_F(RenderDrawing, HatchEdgePathWithClockwiseArc) {
  host::Hatch h;
  host::HatchPath p;
  // Half disc above the X axis: a line from (5,0) to (-5,0), then clockwise
  // from angle pi over the top to angle 0, back at (5,0).
  p.edges.push_back(host::HatchLineEdge{{5, 0}, {-5, 0}});
  host::HatchArcEdge top;
  top.radius = 5;
  top.startAngle = kPi;
  top.endAngle = 0;
  top.counterClockwise = false;
  p.edges.push_back(top);
  h.paths = {p};
  Picture pic = renderAlone(h);
  EXPECT_TRUE(pic.isInk(px(0), py(3)));
  EXPECT_TRUE(pic.isInk(px(-3), py(3)));
  EXPECT_TRUE(pic.isInk(px(3), py(3)));
  EXPECT_FALSE(pic.isInk(px(0), py(-3)));
}

TEST_F(RenderDrawing, IndexTrueAndLayerColours) {
  FakeDrawing d;
  d.add(host::Line{{-8, 5, 0}, {8, 5, 0}}, colored(1));
  host::EntityProps onLayer;
  onLayer.layer = "GREEN";
  d.setLayerColor("GREEN", {3, std::nullopt});
  d.add(host::Line{{-8, 0, 0}, {8, 0, 0}}, onLayer);
  host::EntityProps trueBlue;
  trueBlue.color = {256, 0x0000FF};
  d.add(host::Line{{-8, -5, 0}, {8, -5, 0}}, trueBlue);
  host::EntityProps off;
  off.layer = "OFF";
  d.setLayerColor("OFF", {-1, std::nullopt});
  d.add(host::Line{{-8, -8, 0}, {8, -8, 0}}, off);
  Picture pic = render(d);
  // A one-pixel line on a pixel boundary is half-covered in two rows: check the hue.
  auto p = pic.darkestNear(px(0), py(5));
  EXPECT_GT(p.r, p.g + 100);
  EXPECT_EQ(p.g, p.b);
  p = pic.darkestNear(px(0), py(0));
  EXPECT_GT(p.g, p.r + 100);
  EXPECT_EQ(p.r, p.b);
  p = pic.darkestNear(px(0), py(-5));
  EXPECT_GT(p.b, p.r + 100);
  EXPECT_EQ(p.r, p.g);
  EXPECT_FALSE(pic.inkNear(px(0), py(-8), 2));  // layer off
}

TEST_F(RenderDrawing, WidePolylineIsFilledAndBulgesBend) {
  host::LwPolyline pl;
  pl.vertices = {{-8, 0, 0, 0, 0}, {0, 0, 1, 0, 0}, {4, 0, 0, 0, 0}};
  pl.constantWidth = 1.0;
  Picture pic = renderAlone(pl);
  EXPECT_TRUE(pic.isInk(px(-4), py(0.4)));
  EXPECT_TRUE(pic.isInk(px(-4), py(-0.4)));
  EXPECT_FALSE(pic.isInk(px(-4), py(0.8)));
  // Bulge 1 from (0,0) to (4,0): a counter-clockwise half circle below the chord.
  EXPECT_TRUE(pic.isInk(px(2), py(-2)));
  EXPECT_FALSE(pic.inkNear(px(2), py(2), 3));
}

TEST_F(RenderDrawing, LongClosedPolylineDrawsItsClosingSegment) {
  // 600 vertices on three quarters of a circle: long enough to be stroked in
  // pieces; the closing chord runs from (0,-6) back to (6,0).
  host::LwPolyline pl;
  for (int i = 0; i < 600; ++i) {
    double t = 1.5 * kPi * i / 599;
    pl.vertices.push_back({6 * std::cos(t), 6 * std::sin(t), 0, 0, 0});
  }
  pl.closed = true;
  Picture pic = renderAlone(pl);
  EXPECT_TRUE(pic.inkNear(px(3), py(-3)));
  EXPECT_TRUE(pic.inkNear(px(-6), py(0)));
  EXPECT_FALSE(pic.inkNear(px(4.2), py(-4.2), 2));  // the missing quarter of the circle
}

TEST_F(RenderDrawing, SplineFitPolylineDrawsItsCurveNotItsFrame) {
  host::Polyline2d pl;
  pl.splineFit = true;
  pl.curveType = host::PolyCurveType::kCubicSpline;
  for (double x = -6; x <= 6; x += 1) pl.vertices.push_back({{x, 0, 0}, 0, 0, 0, 0, host::kVertexSplineFit});
  pl.vertices.push_back({{-6, 8, 0}, 0, 0, 0, 0, host::kVertexSplineFrame});
  pl.vertices.push_back({{6, 8, 0}, 0, 0, 0, 0, host::kVertexSplineFrame});
  Picture pic = renderAlone(pl);
  EXPECT_TRUE(pic.inkNear(px(0), py(0)));
  EXPECT_EQ(pic.inkCount(px(-5), py(8) - 3, px(5), py(8) + 3), 0);
}

TEST_F(RenderDrawing, InsertPlacesRotatesScalesAndNests) {
  FakeDrawing d;
  host::ObjectId tick = d.addBlock("TICK", {1, 0, 0});
  d.add(host::Line{{1, 0, 0}, {3, 0, 0}}, colored(0), tick);  // by block
  host::ObjectId pair = d.addBlock("PAIR");
  host::BlockReference inner;
  inner.blockName = "TICK";
  d.add(inner, colored(0), pair);
  host::BlockReference outer;
  outer.blockName = "PAIR";
  outer.position = {-2, -2, 0};
  outer.rotation = kPi / 2;
  outer.scale = {2, 2, 2};
  d.add(outer, colored(5));
  Picture pic = render(d);
  // The tick runs from the base point 2 units along X; turned and doubled it
  // runs from (-2,-2) up to (-2,2).
  EXPECT_TRUE(pic.inkNear(px(-2), py(0)));
  EXPECT_TRUE(pic.inkNear(px(-2), py(1.5)));
  auto p = pic.darkestNear(px(-2), py(0));
  EXPECT_GT(p.b, p.r + 100);  // colour passed down by block
  EXPECT_EQ(p.r, p.g);
  EXPECT_EQ(pic.inkCount(px(0), py(-8), px(9), py(-1)), 0);
}

TEST_F(RenderDrawing, MirroredInsertMirrorsTextAndStretchesCircles) {
  FakeDrawing d;
  host::ObjectId label = d.addBlock("LABEL");
  host::Text t;
  t.text = "MW";
  t.height = 2;
  d.add(t, {}, label);
  host::Circle c;
  c.center = {0, -4, 0};
  c.radius = 1;
  d.add(c, {}, label);
  host::BlockReference ref;
  ref.blockName = "LABEL";
  ref.scale = {-3, 1, 1};  // mirrored in X and stretched: the text runs left, the circle becomes an ellipse
  d.add(ref);
  Picture pic = render(d);
  EXPECT_GT(pic.inkCount(px(-8), py(2), px(0), py(0)), 80);
  EXPECT_EQ(pic.inkCount(px(0.3), py(2.5), 200, py(-0.3)), 0);
  EXPECT_TRUE(pic.inkNear(px(-3), py(-4)));  // ends of the ellipse's long axis
  EXPECT_TRUE(pic.inkNear(px(3), py(-4)));
  EXPECT_TRUE(pic.inkNear(px(0), py(-3)));
  EXPECT_FALSE(pic.inkNear(px(0), py(-4), 3));
}

TEST_F(RenderDrawing, SelfReferencingBlockEnds) {
  FakeDrawing d;
  host::ObjectId loop = d.addBlock("LOOP");
  d.add(host::Line{{0, 0, 0}, {1, 0, 0}}, {}, loop);
  host::BlockReference self;
  self.blockName = "LOOP";
  self.position = {0.5, 0.5, 0};
  d.add(self, {}, loop);
  d.add(self, {}, loop);
  d.add(self);
  Picture pic = render(d);
  EXPECT_TRUE(pic.inkNear(px(1), py(0.5)));
}

TEST_F(RenderDrawing, BrokenValuesAreSkippedNotFatal) {
  FakeDrawing d;
  const double nan = std::nan(""), inf = std::numeric_limits<double>::infinity();
  d.add(host::Line{{nan, 0, 0}, {1, 1, 0}});
  d.add(host::Line{{inf, 0, 0}, {1, 1, 0}});
  host::Arc huge;
  huge.radius = 3;
  huge.startAngle = 1e300;  // a naive "add 2 pi until past the start" never ends
  huge.endAngle = -1e300;
  d.add(huge);
  host::Ellipse flat;
  flat.majorAxis = {0, 0, 0};
  flat.startParam = nan;
  d.add(flat);
  host::Text t;
  t.height = nan;
  t.text = "x";
  d.add(t);
  host::Helix h;
  h.turns = 1e12;
  d.add(h);
  host::ObjectId empty = d.addBlock("EMPTY");
  (void)empty;
  host::BlockReference many;
  many.blockName = "EMPTY";
  many.columnCount = many.rowCount = 30000;  // 9e8 copies of nothing
  d.add(many);
  d.add(host::Line{{-8, -8, 0}, {8, -8, 0}});
  RenderOptions fit;  // fitted to the finite part only
  fit.widthPx = fit.heightPx = 200;
  Picture pic = render(d, fit);
  EXPECT_GT(pic.inkCount(0, 0, 200, 200), 20);
  EXPECT_NO_THROW(render(d));
}

TEST_F(RenderDrawing, PointGlyphCrossInCircle) {
  const host::PointEntity point{{0, 0, 0}};
  RenderOptions o = fixedView();
  o.pointMode = 35;
  o.pointSize = 8;  // absolute: circle of radius 4
  Picture pic = renderAlone(point, o);
  EXPECT_TRUE(pic.inkNear(px(4), py(0)));  // circle
  EXPECT_TRUE(pic.inkNear(px(0), py(-4)));
  EXPECT_TRUE(pic.inkNear(px(2), py(2)));        // diagonal of the x
  EXPECT_FALSE(pic.inkNear(px(2.5), py(0), 2));  // inside, off the x
  EXPECT_EQ(pic.inkCount(px(5), 0, 200, 200), 0);
  // PDSIZE 0: 5 % of the view height, 1 unit here.
  o.pointSize = 0;
  Picture small = renderAlone(point, o);
  EXPECT_TRUE(small.inkNear(px(0.5), py(0)));
  EXPECT_FALSE(small.inkNear(px(2), py(0), 3));
}

TEST_F(RenderDrawing, TextAndMTextLandNearTheirAnchors) {
  FakeDrawing d;
  host::Text t;
  t.position = {-8, 4, 0};
  t.height = 2;
  t.text = "HELLO";
  d.add(t);
  host::MText m;
  m.position = {8, -2, 0};
  m.height = 1.5;
  m.attachment = 3;  // top right
  m.text = "{\\fArial;AB}\\PCD";
  d.add(m);
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
  host::Text t;
  t.text = "MW";
  t.height = 2;
  t.position = {5, 5, 0};  // ignored once justified
  t.alignmentPoint = {0, 0, 0};
  t.horizontalJustify = 2;  // right
  t.verticalJustify = 3;    // top
  Picture pic = renderAlone(t);
  EXPECT_GT(pic.inkCount(px(-4), py(0), px(0), py(-2)), 50);
  EXPECT_EQ(pic.inkCount(px(0.2), 0, 200, 200), 0);
  EXPECT_EQ(pic.inkCount(0, 0, 200, py(0.2)), 0);

  // Fit: stretched between the two points, height kept.
  t.horizontalJustify = 5;
  t.verticalJustify = 0;
  t.position = {-8, 0, 0};
  t.alignmentPoint = {8, 0, 0};
  Picture fitted = renderAlone(t);
  EXPECT_GT(fitted.inkCount(px(-8), py(2), px(-6), py(0)), 20);
  EXPECT_GT(fitted.inkCount(px(6), py(2), px(8), py(0)), 20);
  EXPECT_EQ(fitted.inkCount(0, 0, 200, py(2.3)), 0);

  // Backward text runs to the left of its insertion point.
  host::Text back;
  back.text = "MW";
  back.height = 2;
  back.mirrorFlags = 2;
  Picture backward = renderAlone(back);
  EXPECT_GT(backward.inkCount(px(-4), py(2), px(0), py(0)), 50);
  EXPECT_EQ(backward.inkCount(px(0.2), 0, 200, 200), 0);
}

TEST_F(RenderDrawing, MTextWrapsAtItsReferenceWidth) {
  host::MText m;
  m.position = {-9, 9, 0};
  m.height = 1;
  m.referenceWidth = 9;
  m.text = "wrap these words into several short lines";
  Picture pic = renderAlone(m);
  EXPECT_EQ(pic.inkCount(px(0.3), 0, 200, 200), 0);  // nothing beyond the reference width
  // Line pitch 5/3 of the height: the third line's capitals sit between y = 4.67 and 5.67.
  EXPECT_GT(pic.inkCount(px(-9), py(5.6), px(0), py(4.7)), 10);
}

TEST_F(RenderDrawing, EllipseSplineAndImageFrame) {
  FakeDrawing d;
  host::Ellipse e;
  e.majorAxis = {6, 0, 0};
  e.ratio = 0.5;
  d.add(e);
  host::Spline s;
  s.degree = 2;
  s.knots = {0, 0, 0, 1, 1, 1};
  s.controlPoints = {{-8, -8, 0}, {0, -4, 0}, {8, -8, 0}};
  d.add(s);
  host::Image im;
  im.insertion = {5, 5, 0};
  im.uVector = {0.1, 0, 0};
  im.vVector = {0, 0.1, 0};
  im.widthPixels = 30;
  im.heightPixels = 20;
  d.add(im);
  Picture pic = render(d);
  EXPECT_TRUE(pic.inkNear(px(6), py(0)));
  EXPECT_TRUE(pic.inkNear(px(0), py(3)));
  EXPECT_FALSE(pic.inkNear(px(0), py(4.5), 2));
  EXPECT_TRUE(pic.inkNear(px(0), py(-6)));  // the quadratic's middle
  EXPECT_FALSE(pic.inkNear(px(0), py(-4), 3));
  EXPECT_TRUE(pic.inkNear(px(8), py(6)));  // right side of the image frame
  EXPECT_FALSE(pic.isInk(px(6.5), py(6)));
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
  std::vector<SheetCell> cells{{"circle", {circle}}, {"line", {{{0, 0, 0}, {1, 1, 0}}}}, {"empty", {}}};
  renderSheetToPng(cells, sheet, 2, 100);
  Picture s = render_test::loadPng(sheet);
  EXPECT_EQ(s.width, 200);
  EXPECT_EQ(s.height, 200);
  EXPECT_GT(s.inkCount(0, 0, 100, 80), 100);   // the circle in the first cell
  EXPECT_GT(s.inkCount(0, 80, 100, 100), 5);   // its caption
  EXPECT_GT(s.inkCount(100, 0, 200, 80), 50);  // the line in the second
  EXPECT_EQ(s.inkCount(0, 100, 100, 178), 0);  // the empty cell draws nothing but its caption
  EXPECT_GT(s.inkCount(0, 178, 100, 200), 5);
}
