// Extents of texts, multi-line texts and block references (nested, arrayed,
// under rotation and non-uniform scale).
#include <map>
#include <memory>

#include "kernel_test.h"
#include "standalone/kernel/text_extents.h"

namespace {

constexpr double kTol = 1e-9;

struct Box {
  double x0, y0, x1, y1;
};

void expectBox(const ge::Extents3d& e, const Box& b, double tol = kTol) {
  ASSERT_TRUE(e.isValid());
  EXPECT_NEAR(e.min.x, b.x0, tol);
  EXPECT_NEAR(e.min.y, b.y0, tol);
  EXPECT_NEAR(e.max.x, b.x1, tol);
  EXPECT_NEAR(e.max.y, b.y1, tol);
}

host::Text text(std::string content, ge::Point3d at, double height) {
  host::Text t;
  t.text = std::move(content);
  t.position = at;
  t.height = height;
  return t;
}

// A Latin character is estimated at 0.75 of the height: "ABCD" at height 2 is 6 wide.
struct TextCase {
  const char* name;
  host::Text text;
  Box expected;
};

std::vector<TextCase> textCases() {
  std::vector<TextCase> cases;
  auto add = [&](const char* name, auto change, Box b) {
    host::Text t = text("ABCD", {10, 5, 0}, 2);
    change(t);
    cases.push_back({name, t, b});
  };
  add("LeftBaseline", [](host::Text&) {}, {10, 5, 16, 7});
  add("Rotated90", [](host::Text& t) { t.rotation = kPi / 2; }, {8, 5, 10, 11});
  add("WidthFactorHalf", [](host::Text& t) { t.widthFactor = 0.5; }, {10, 5, 13, 7});
  add("CentreOnSecondPoint", [](host::Text& t) { t.horizontalJustify = 1, t.alignmentPoint = {20, 0, 0}; },
      {17, 0, 23, 2});
  add("RightTop", [](host::Text& t) { t.horizontalJustify = 2, t.verticalJustify = 3, t.alignmentPoint = {20, 0, 0}; },
      {14, -2, 20, 0});
  add("Middle", [](host::Text& t) { t.horizontalJustify = 4, t.alignmentPoint = {20, 0, 0}; }, {17, -1, 23, 1});
  add("LeftMiddleRotated180",
      [](host::Text& t) { t.verticalJustify = 2, t.alignmentPoint = {0, 0, 0}, t.rotation = kPi; }, {-6, -1, 0, 1});
  // Aligned and fit texts span their two points whatever the characters.
  add("AlignedSpansItsPoints", [](host::Text& t) { t.horizontalJustify = 3, t.alignmentPoint = {30, 5, 0}; },
      {10, 5, 30, 7});
  add("FitAlongY", [](host::Text& t) { t.horizontalJustify = 5, t.alignmentPoint = {10, 13, 0}; }, {8, 5, 10, 13});
  add("Backward", [](host::Text& t) { t.mirrorFlags = 2; }, {4, 5, 10, 7});
  add("UpsideDown", [](host::Text& t) { t.mirrorFlags = 4; }, {10, 3, 16, 5});
  add("Oblique45LeansRight", [](host::Text& t) { t.oblique = kPi / 4; }, {10, 5, 18, 7});
  // Normal -Z: the OCS X axis is world -X (arbitrary-axis rule), Y stays world Y.
  add("NormalDownRunsLeft", [](host::Text& t) { t.normal = {0, 0, -1}; }, {4, 5, 10, 7});
  return cases;
}

class TextExtents : public ::testing::TestWithParam<TextCase> {};

TEST_P(TextExtents, EstimatedBox) {
  ge::Extents3d e;
  ASSERT_EQ(kernel.getGeomExtents(GetParam().text, e), ErrorStatus::eOk);
  expectBox(e, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Texts, TextExtents, ::testing::ValuesIn(textCases()),
                         [](const auto& row) { return std::string(row.param.name); });

// Widths count characters, not bytes; an empty or heightless text has no extents.
TEST(TextExtentsEdge, CharactersNotBytesAndNothingForEmptyOrHeightlessText) {
  using standalone::kernel::estimatedWidthInHeights;
  EXPECT_DOUBLE_EQ(estimatedWidthInHeights("中文"), 2.8);  // CJK characters are wider
  EXPECT_DOUBLE_EQ(estimatedWidthInHeights("é"), 0.75);    // one character, two bytes
  EXPECT_DOUBLE_EQ(estimatedWidthInHeights("\u00B0\u2300\u00B1"), 3 * 0.75);  // the %%d, %%c, %%p symbols are narrow
  ge::Extents3d e;
  EXPECT_EQ(kernel.getGeomExtents(text("", {0, 0, 0}, 1), e), ErrorStatus::eDegenerateGeometry);
  EXPECT_EQ(kernel.getGeomExtents(text("%%u", {0, 0, 0}, 1), e), ErrorStatus::eDegenerateGeometry);
  EXPECT_EQ(kernel.getGeomExtents(text("A", {0, 0, 0}, 0), e), ErrorStatus::eDegenerateGeometry);
  EXPECT_EQ(kernel.getGeomExtents(text("A", {0, 0, 0}, std::nan("")), e), ErrorStatus::eDegenerateGeometry);
}

host::MText mtext(std::string content, int attachment) {
  host::MText t;
  t.text = std::move(content);
  t.position = {0, 10, 0};
  t.height = 1;
  t.attachment = attachment;
  return t;
}

TEST(MTextExtents, LinesAttachmentsDirectionAndWrapping) {
  ge::Extents3d e;
  const double twoLines = 1 + 5.0 / 3;  // first line's height plus one baseline pitch
  // "AB" and "CDEF": the longest line is 4 × 0.75 = 3 wide.
  ASSERT_EQ(kernel.getGeomExtents(mtext("AB\\PCDEF", 1), e), ErrorStatus::eOk);
  expectBox(e, {0, 10 - twoLines, 3, 10});
  ASSERT_EQ(kernel.getGeomExtents(mtext("AB\\PCDEF", 5), e), ErrorStatus::eOk);
  expectBox(e, {-1.5, 10 - twoLines / 2, 1.5, 10 + twoLines / 2});
  host::MText up = mtext("AB\\PCDEF", 9);  // bottom right, running up the page
  up.xDirection = {0, 2, 0};
  ASSERT_EQ(kernel.getGeomExtents(up, e), ErrorStatus::eOk);
  expectBox(e, {-twoLines, 7, 0, 10});
  // Three words of 3 units at a reference width of 4 wrap onto three lines.
  host::MText wrapped = mtext("aaaa bbbb cccc", 1);
  wrapped.referenceWidth = 4;
  ASSERT_EQ(kernel.getGeomExtents(wrapped, e), ErrorStatus::eOk);
  expectBox(e, {0, 10 - (1 + 2 * 5.0 / 3), 4, 10});
  EXPECT_EQ(kernel.getGeomExtents(mtext("{\\H2x;}\\P", 1), e), ErrorStatus::eDegenerateGeometry);
}

// Blocks by name for the reference tests.
class BlockReferenceExtents : public ::testing::Test {
 protected:
  host::BlockContentsLookup lookup() const {
    return [this](const std::string& name) -> std::shared_ptr<const host::BlockContents> {
      auto it = blocks.find(name);
      if (it == blocks.end()) return nullptr;
      return std::make_shared<host::BlockContents>(it->second);
    };
  }
  ge::Extents3d extentsOf(const host::BlockReference& ref, ErrorStatus expected = ErrorStatus::eOk) const {
    ge::Extents3d e;
    EXPECT_EQ(kernel.getBlockReferenceExtents(ref, lookup(), e), expected);
    return e;
  }

  std::map<std::string, host::BlockContents> blocks{
      // A quarter circle about the base point, from (2,1) to (1,2).
      {"QUARTER", {{1, 1, 0}, {host::Arc{{1, 1, 0}, 1, 0, kPi / 2}}}},
      {"LABEL", {{0, 0, 0}, {text("ABCD", {0, 0, 0}, 2)}}},
  };
};

TEST_F(BlockReferenceExtents, BoxesAreTightUnderEveryPlacement) {
  host::HatchPath round;
  round.edges = {host::HatchArcEdge{{0, 0}, 1, 0, 2 * kPi}};
  host::Hatch disc;
  disc.paths = {round};
  blocks["DISC"] = {{0, 0, 0}, {disc}};
  blocks["OUTER"] = {{0, 0, 0},
                     {host::BlockReference{"QUARTER", {5, 0, 0}, {1, 1, 1}, kPi},
                      host::Line{{0, 0, 0}, {0, -1, 0}}}};
  host::BlockReference arrayed{"QUARTER", {0, 0, 0}, {1, 1, 1}, kPi / 2};
  arrayed.columnCount = 3, arrayed.columnSpacing = 10;  // columns along the rotated X axis: world +Y
  arrayed.rowCount = 2, arrayed.rowSpacing = 5;         // rows along the rotated Y axis: world -X
  const double r = std::sqrt(0.5), half = std::sqrt(2.5);
  const struct { const char* what; host::BlockReference ref; Box box; } cases[] = {
      // The quarter ellipse (2 cos t, sin t) turned a quarter turn: (-sin t, 2 cos t).
      {"stretched and turned", {"QUARTER", {10, 0, 0}, {2, 1, 1}, kPi / 2}, {9, 0, 10, 2}},
      // (2 cos t - sin t, 2 cos t + sin t) / √2: the top is at tan t = 1/2, not at a corner of the box.
      {"stretched and turned 45°", {"QUARTER", {10, 0, 0}, {2, 1, 1}, kPi / 4}, {10 - r, r, 10 + 2 * r, half}},
      {"normal -Z: block X runs along world -X", {"QUARTER", {0, 0, 0}, {1, 1, 1}, 0, {0, 0, -1}}, {-1, 0, 0, 1}},
      {"a text inside", {"LABEL", {0, 0, 0}, {1, 0.5, 1}, 0}, {0, 0, 6, 1}},
      // The unit circle stretched to (2 cos t, sin t) and turned 45°: half-widths √(4/2 + 1/2) both ways,
      // where the corners of the stretched box would give (2 + 1)/√2.
      {"a hatch boundary mapped as its curves", {"DISC", {0, 0, 0}, {2, 1, 1}, kPi / 4}, {-half, -half, half, half}},
      // Inside OUTER the quarter turned half round sits in [4,5] × [-1,0]; the line adds (0,-1)..(0,0).
      {"nested references compose", {"OUTER", {100, 100, 0}, {2, 2, 2}, 0}, {100, 98, 110, 100}},
      {"an array covers its far cells (one cell is [-1,0] × [0,1])", arrayed, {-6, 0, 0, 21}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    expectBox(extentsOf(c.ref), c.box);
  }
}

TEST_F(BlockReferenceExtents, NearestPointOnWhatTheBlockDraws) {
  auto nearest = [&](const host::BlockReference& ref, ge::Point3d p) {
    ge::Point3d on{1e9, 1e9, 1e9};
    EXPECT_EQ(kernel.getBlockReferenceClosestPoint(ref, lookup(), p, on), ErrorStatus::eOk);
    return on;
  };
  auto expectPoint = [](ge::Point3d a, ge::Point3d b) {
    EXPECT_NEAR(a.x, b.x, 1e-9);
    EXPECT_NEAR(a.y, b.y, 1e-9);
  };
  // The stretched, turned quarter (10 - sin t, 2 cos t) is nearest (10,3) at its end t = 0.
  expectPoint(nearest({"QUARTER", {10, 0, 0}, {2, 1, 1}, kPi / 2}, {10, 3, 0}), {10, 2, 0});
  // A text's box counts whole: a point inside is its own nearest, one above meets the top edge.
  host::BlockReference label{"LABEL", {0, 0, 0}, {1, 0.5, 1}, 0};
  expectPoint(nearest(label, {3, 0.5, 0}), {3, 0.5, 0});
  expectPoint(nearest(label, {3, 2, 0}), {3, 1, 0});
  // The far cell of an array: (-5 - sin t, 20 + cos t).
  host::BlockReference grid{"QUARTER", {0, 0, 0}, {1, 1, 1}, kPi / 2};
  grid.columnCount = 3, grid.columnSpacing = 10, grid.rowCount = 2, grid.rowSpacing = 5;
  expectPoint(nearest(grid, {-5, 21.5, 0}), {-5, 21, 0});
  ge::Point3d unused;
  EXPECT_EQ(kernel.getBlockReferenceClosestPoint({"MISSING", {}}, lookup(), {}, unused), ErrorStatus::eKeyNotFound);
}

TEST_F(BlockReferenceExtents, UnknownAndSelfReferringBlocks) {
  extentsOf({"MISSING", {}}, ErrorStatus::eKeyNotFound);
  blocks["LOOP"] = {{0, 0, 0}, {host::BlockReference{"LOOP", {1, 0, 0}}, host::Line{{0, 0, 0}, {1, 0, 0}}}};
  // Each level moves one unit right; the walk stops at the nesting limit instead of recursing for ever.
  ge::Extents3d e = extentsOf({"LOOP", {}});
  EXPECT_GT(e.max.x, 10);
  EXPECT_LT(e.max.x, 100);
  blocks["EMPTY"] = {};
  extentsOf({"EMPTY", {}}, ErrorStatus::eDegenerateGeometry);
  // Without block contents the plain extents call cannot answer for a reference.
  ge::Extents3d plain;
  EXPECT_EQ(kernel.getGeomExtents(host::BlockReference{"QUARTER", {}}, plain), ErrorStatus::eNotApplicable);
}

}  // namespace
