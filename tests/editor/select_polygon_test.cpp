// Window polygon, crossing polygon and fence selections, driven by ERASE from
// a script on the embedded host over a drawing of curves, texts and block
// references; and the plane geometry behind them where it is subtle.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>

#include "standalone/db/dxf_reader.h"
#include "standalone/editor/selection_shapes.h"
#include "tests/support/scripted_host.h"

namespace {

using ::testing::HasSubstr;
using ::testing::UnorderedElementsAreArray;
constexpr double kPi = 3.14159265358979323846;

// An R12 drawing whose only block, QUARTER, is a quarter circle of radius 1
// about its base point (1,1), from (2,1) to (1,2).
const char* kQuarterBlock =
    "0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n8\n0\n2\nQUARTER\n70\n0\n10\n1\n20\n1\n30\n0\n"
    "0\nARC\n8\n0\n10\n1\n20\n1\n30\n0\n40\n1\n50\n0\n51\n90\n0\nENDBLK\n8\n0\n0\nENDSEC\n"
    "0\nSECTION\n2\nENTITIES\n0\nENDSEC\n0\nEOF\n";

host::Text label(const char* content, ge::Point3d at) {
  host::Text t;
  t.text = content;
  t.position = at;
  t.height = 1;  // a character is estimated at 0.75 wide
  return t;
}

// Two lines of MTEXT hanging from (0.5, 9.5): 0.75 wide, 1 + 5/3 high.
host::MText notes() {
  host::MText m;
  m.text = "A\\PB";
  m.position = {0.5, 9.5, 0};
  m.height = 1;
  return m;
}

// A solid hatch over the square of side a with its lower left corner at (x, y).
host::Hatch square(double x, double y, double a) {
  host::HatchPath path;
  path.flags = 2 | 1;
  path.polyline = {{x, y}, {x + a, y}, {x + a, y + a}, {x, y + a}};
  host::Hatch h;
  h.paths = {path};
  return h;
}

// The outline of a U: a square 10 × 10 with a notch 4 < x < 6 cut down from the top to y = 4.
const char* kUPoints = "0,0\n10,0\n10,10\n6,10\n6,4\n4,4\n4,10\n0,10\n";

class PolygonSelection : public ::testing::Test {
 protected:
  PolygonSelection() {
    session.startHost(standalone::readDxf(kQuarterBlock), session.root() / "corvane", [](standalone::EmbeddedHost&) {});
    ids = {
        {"leftLine", session.add(host::Line{{1, 1, 0}, {3, 2, 0}})},
        {"notchLine", session.add(host::Line{{5, 6, 0}, {5, 8, 0}})},             // in the notch: outside
        {"acrossNotch", session.add(host::Line{{3, 6, 0}, {7, 6, 0}})},           // crosses both notch edges
        {"leftCircle", session.add(host::Circle{{2, 7, 0}, 1})},
        {"rightLabel", session.add(label("AB", {7, 1, 0}))},                      // [7, 8.5] × [1, 2]
        {"notchLabel", session.add(label("AB", {5, 8, 0}))},                      // straddles the notch edge x = 6
        {"rightInsert", session.add(host::BlockReference{"QUARTER", {8, 8, 0}})},  // [8, 9] × [8, 9]
        {"notchInsert", session.add(host::BlockReference{"QUARTER", {5, 5, 0}, {0.5, 0.5, 1}})},
        {"farCircle", session.add(host::Circle{{12, 5, 0}, 1})},
        {"aroundCircle", session.add(host::Circle{{5, 5, 0}, 20})},  // its box holds the U, the circle misses it
        {"leftMText", session.add(notes())},                          // [0.5, 1.25] × [6.83, 9.5]
        {"rightHatch", session.add(square(7, 5, 2))},
        {"cornerImage", session.add(host::Image{{-1, -1, 0}, {1, 0, 0}, {0, 1, 0}, 2, 2})},  // over the corner (0,0)
    };
  }

  // Names of the entities this ERASE took away; answers end where the
  // selection ends, the Enter that ends it is added here.
  std::vector<std::string> erasedBy(const std::string& answers) {
    std::vector<std::string> before = present();
    transcript_ = session.run("ERASE\n" + answers + "\n");
    std::vector<std::string> after = present(), gone;
    std::set_difference(before.begin(), before.end(), after.begin(), after.end(), std::back_inserter(gone));
    return gone;
  }
  std::vector<std::string> present() {
    std::vector<std::string> names;  // sorted, as the map is
    for (const auto& [name, id] : ids)
      if (session.host().drawing().read(id)) names.push_back(name);
    return names;
  }

  test_support::ScriptedHost session{"extents"};
  std::map<std::string, host::ObjectId> ids;
  std::string transcript_;
};

TEST_F(PolygonSelection, WindowPolygonTakesWhatLiesWhollyInside) {
  EXPECT_THAT(erasedBy(std::string("WP\n") + kUPoints + "\n"),
              UnorderedElementsAreArray(
                  {"leftLine", "leftCircle", "rightLabel", "rightInsert", "leftMText", "rightHatch"}));
  EXPECT_THAT(transcript_, HasSubstr("Select objects: WP\nFirst polygon point: 0,0\n"
                                     "Specify endpoint of line or [Undo]: 10,0\n"));
  EXPECT_THAT(transcript_, HasSubstr("Specify endpoint of line or [Undo]: \n6 found\nSelect objects: \n"));
}

TEST_F(PolygonSelection, CrossingPolygonAlsoTakesWhatCrossesItsEdges) {
  EXPECT_THAT(erasedBy(std::string("CP\n") + kUPoints + "\n"),
              UnorderedElementsAreArray(
                  {"leftLine", "acrossNotch", "leftCircle", "rightLabel", "notchLabel", "rightInsert", "leftMText",
                   "rightHatch", "cornerImage"}));
}

TEST_F(PolygonSelection, FenceTakesWhatItPassesThrough) {
  // Across the U at y = 6.5, then down through the right label.
  EXPECT_THAT(erasedBy("F\n-1,6.5\n11,6.5\n7.5,0.5\n\n"),
              UnorderedElementsAreArray({"notchLine", "leftCircle", "rightLabel", "rightHatch"}));
  EXPECT_THAT(transcript_, HasSubstr("Select objects: F\nFirst fence point: -1,6.5\n"));
}

TEST_F(PolygonSelection, AFenceThroughARotatedInsertsBox) {
  // The reference turned a quarter: its arc runs from (8,9) to (7,8); a fence
  // across its box at x = 7.5 meets it.
  host::ObjectId turned = session.add(host::BlockReference{"QUARTER", {8, 8, 0}, {1, 1, 1}, kPi / 2});
  session.run("ERASE\nF\n7.5,7.9\n7.5,9.5\n\n\n");
  EXPECT_FALSE(session.host().drawing().read(turned));
  EXPECT_TRUE(session.host().drawing().read(ids["rightInsert"]));
}

TEST_F(PolygonSelection, CurvesOffTheGroundAreMetInPlan) {
  // A circle at height 5 crossed by a window that holds none of it and not its start point.
  host::ObjectId raised = session.add(host::Circle{{30, 30, 5}, 2});
  // A 3D polyline along the bottom and right of [40,44]²; the fence cuts its box's top-left corner only.
  host::Polyline3d bent;
  bent.vertices = {{{40, 40, 0}}, {{44, 40, 10}}, {{44, 44, 0}}};
  host::ObjectId spatial = session.add(bent);
  session.run("ERASE\nC 27,29 29,31\nF 40.5,43.5 41,44.5\n\n\n");
  EXPECT_FALSE(session.host().drawing().read(raised));
  EXPECT_TRUE(session.host().drawing().read(spatial));
  session.run("ERASE\nF 43,39 43,41\n\n\n");
  EXPECT_FALSE(session.host().drawing().read(spatial));
}

TEST_F(PolygonSelection, UndoAndARefusedSelfCrossingPoint) {
  // (0,-5) would cross the first edge; Undo then drops (10,10) as well, leaving
  // the triangle (0,0) (10,0) (0,10), which holds only the left line wholly.
  EXPECT_THAT(erasedBy("WP\n0,0\n10,0\n10,10\n0,-5\nU\n0,10\n\n"), UnorderedElementsAreArray({"leftLine"}));
  EXPECT_THAT(transcript_, HasSubstr("Specify endpoint of line or [Undo]: 0,-5\n"
                                     "Invalid point: the polygon cannot cross or touch itself.\n"));
  EXPECT_THAT(transcript_, HasSubstr("Specify endpoint of line or [Undo]: U\n"));
}

TEST_F(PolygonSelection, TooFewPointsSelectNothing) {
  EXPECT_THAT(erasedBy("CP\n0,0\n10,10\n\n"), ::testing::IsEmpty());
  EXPECT_THAT(transcript_, HasSubstr("0 found\n"));
  EXPECT_THAT(erasedBy("F\n3,3\n\nWP\n\n"), ::testing::IsEmpty());
}

TEST_F(PolygonSelection, PicksAndWindowsReachTextsAndInserts) {
  // A block reference is picked on what its block draws, not anywhere in its box.
  EXPECT_THAT(erasedBy("8.2,8.2\n"), ::testing::IsEmpty());
  EXPECT_THAT(erasedBy("8.7071,8.7071\n"), UnorderedElementsAreArray({"rightInsert"}));
  EXPECT_THAT(erasedBy("W 6.9,0.9 8.6,2.1\n"), UnorderedElementsAreArray({"rightLabel"}));
  EXPECT_THAT(erasedBy("7.5,1.5\n"), ::testing::IsEmpty());  // the label was erased above
}

TEST_F(PolygonSelection, APickPrefersALineToTheLabelOverIt) {
  // The label is drawn after the line and lies on top of it; a pick on the
  // line still takes the line, a pick off it inside the label's box the label.
  host::ObjectId line = session.add(host::Line{{19, 20.5, 0}, {24, 20.5, 0}});
  host::ObjectId over = session.add(label("ABCD", {20, 20, 0}));  // [20, 23] × [20, 21]
  session.run("ERASE\n21,20.5\n\n");
  EXPECT_FALSE(session.host().drawing().read(line));
  EXPECT_TRUE(session.host().drawing().read(over));
  session.run("ERASE\n21,20.8\n\n");
  EXPECT_FALSE(session.host().drawing().read(over));
}

// The plane geometry where a wrong sign or an off-by-one edge would slip through.
TEST(SelectionShapes, ConcaveOutlinesAndBoxes) {
  using namespace standalone;
  Outline u{{0, 0}, {10, 0}, {10, 10}, {6, 10}, {6, 4}, {4, 4}, {4, 10}, {0, 10}};
  auto box = [](double x0, double y0, double x1, double y1) { return ge::Extents3d{{x0, y0, 0}, {x1, y1, 0}}; };
  EXPECT_TRUE(pointInPolygon(u, {2, 8}));
  EXPECT_FALSE(pointInPolygon(u, {5, 8}));
  EXPECT_TRUE(pointInPolygon(u, {6, 7}));   // on an edge counts as inside
  EXPECT_TRUE(pointInPolygon(u, {4, 2}));   // level with a reflex vertex
  EXPECT_FALSE(boxInsidePolygon(u, box(3, 5, 7, 6)));  // all corners inside, the notch cuts through
  EXPECT_TRUE(boxInsidePolygon(u, box(1, 1, 9, 3)));
  EXPECT_FALSE(boxTouchesPolygon(u, box(4.5, 5, 5.5, 9)));
  EXPECT_TRUE(boxTouchesPolygon({{0, 0}, {1, 0}, {0, 1}}, box(-5, -5, 5, 5)));  // polygon inside the box
  EXPECT_TRUE(fenceTouchesBox({{-1, 0.5}, {2, 0.5}}, box(0, 0, 1, 1)));
  EXPECT_FALSE(fenceTouchesBox({{-1, 2}, {2, 2}, {2, -1}}, box(0, 0, 1, 1)));
  EXPECT_TRUE(segmentsTouch({0, 0}, {2, 0}, {1, 0}, {3, 0}));  // collinear overlap
  EXPECT_FALSE(segmentsCrossProperly({0, 0}, {2, 0}, {1, 0}, {1, 1}));  // one ends on the other
}

TEST(SelectionShapes, PolygonSelfCrossing) {
  using namespace standalone;
  Outline open{{0, 0}, {10, 0}, {10, 10}};
  EXPECT_FALSE(polygonWouldCrossItself(open, {0, 10}));
  EXPECT_TRUE(polygonWouldCrossItself(open, {5, -5}));   // the new edge crosses the first edge
  EXPECT_TRUE(polygonWouldCrossItself(open, {15, 5}));   // the closing edge (15,5)-(0,0) crosses (10,0)-(10,10)
  EXPECT_TRUE(polygonWouldCrossItself(open, {10, 5}));   // folds back along the last edge
  EXPECT_TRUE(polygonWouldCrossItself({{0, 0}, {10, 0}}, {-5, 0}));  // the new edge runs back over the first
  EXPECT_FALSE(polygonWouldCrossItself({{0, 0}}, {10, 0}));
}

}  // namespace
