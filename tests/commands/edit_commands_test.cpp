// The host's edit commands MOVE, COPY, ROTATE, SCALE, MIRROR and STRETCH run
// from scripts, their output checked against ezdxf's own transforms of the
// same entities (check_transform.py).
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

#include "command_session.h"
#include "standalone/db/dxf_writer.h"
#include "standalone/kernel/text_extents.h"

namespace commands_test {
namespace {

// One entity of every kind the commands carry, none of them symmetric.
void addSamples(CommandSession& s) {
  s.add(host::Line{{1, 2, 0}, {7, 3, 0}});
  s.add(host::Arc{{4, -3, 0}, 2, 0.3, 2.1});
  s.add(host::Circle{{-5, 4, 0}, 1.5});
  host::LwPolyline lw = lwThrough({{0, 0}, {4, 0}, {4, 3}, {1, 5}});
  lw.vertices[1].bulge = 0.6;
  lw.vertices[2].bulge = -0.3;
  s.add(lw);
  host::Ellipse ellipse;
  ellipse.center = {10, 10, 0};
  ellipse.majorAxis = {3, 1, 0};
  ellipse.ratio = 0.4;
  ellipse.startParam = 0.5;
  ellipse.endParam = 4.0;
  s.add(ellipse);
  s.add(poly3dThrough({{0, 0, 0}, {2, 1, 1}, {3, 4, 2}}));
  host::Text text{{3, 8, 0}, {}, 1.5, "Corvane"};
  text.rotation = 0.4;
  s.add(text);
  s.add(host::PointEntity{{-2, -2, 0}});
  // A solid hatch with a polyline path and an edge path of a line, an arc and an elliptic arc.
  host::Hatch hatch;
  host::HatchPath outer;
  outer.flags = 2 | 1;
  outer.polyline = {{20, 0, 0.4}, {26, 0}, {26, 4}, {20, 5}};
  host::HatchPath inner;
  inner.flags = 0;
  inner.edges = {host::HatchLineEdge{{21, 1}, {24, 1}},
                 host::HatchArcEdge{{24, 2}, 1, -std::numbers::pi / 2, std::numbers::pi / 2, true},
                 host::HatchEllipseEdge{{22.5, 3}, {1.5, 0}, 0.5, 0, std::numbers::pi, true},
                 host::HatchLineEdge{{21, 3}, {21, 1}}};
  hatch.paths = {outer, inner};
  s.add(hatch);
  // A pattern hatch: a dashed family with dots and a solid one across it, a seed point.
  host::Hatch pattern;
  pattern.patternName = "CROSSDOTS";
  pattern.solidFill = false;
  pattern.patternType = 2;
  pattern.patternAngle = std::numbers::pi / 6;
  pattern.patternScale = 0.5;
  pattern.patternLines = {{std::numbers::pi / 6, {0.1, 0.2}, {-0.25, 0.433}, {0.4, -0.2, 0, -0.2}},
                          {2 * std::numbers::pi / 3, {0.3, 0}, {-0.6, -0.3}, {}}};
  pattern.seeds = {{31, 1}};
  host::HatchPath boundary;
  boundary.flags = 2 | 1;
  boundary.polyline = {{30, 0}, {35, 0}, {36, 4}, {30, 3}};  // straight: ezdxf flattens arcs differently once scaled
  pattern.paths = {boundary};
  s.add(pattern);
}

struct Edit {
  const char* name;
  std::string script;
  const char* mode;  // same: edited in place; appended: new entities after the old
  std::string op;    // the transform for check_transform.py
};

class EditCommands : public ::testing::TestWithParam<Edit> {};

// Texts and hatch patterns mirrored with everything else.
const std::string kMirrorAll = "SETVAR\nMIRRTEXT\n1\nSETVAR\nMIRRHATCH\n1\n";

TEST_P(EditCommands, AgreeWithEzdxfsTransform) {
  const Edit& edit = GetParam();
  CommandSession s(Language::kEnglish);
  addSamples(s);
  s.start();
  std::string out = s.run(edit.script);
  std::filesystem::path result = s.root() / "edited.dxf", report = s.root() / "report.txt";
  standalone::saveDxf(s.host().drawing(), result);
  std::string cmd = std::string(CORVANE_PYTHON) + " " + CORVANE_CHECK_TRANSFORM + " " + (s.root() / "in.dxf").string() +
                    " " + result.string() + " " + edit.mode + " " + edit.op + " > " + report.string() + " 2>&1";
  int status = std::system(cmd.c_str());
  std::ifstream in(report);
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  EXPECT_EQ(status, 0) << text << "\ntranscript:\n" << out;
  EXPECT_NE(text.find("checked 10"), std::string::npos) << text;
}

INSTANTIATE_TEST_SUITE_P(
    Scripts, EditCommands,
    ::testing::Values(Edit{"MoveByTwoPoints", "MOVE\nALL\n\n1,2\n6,5\n", "same", "translate 5 3"},
                      Edit{"MoveByDisplacement", "MOVE\nALL\n\nD\n-4,2.5\n", "same", "translate -4 2.5"},
                      Edit{"MoveFirstPointAsDisplacement", "MOVE\nALL\n\n5,3\n\n", "same", "translate 5 3"},
                      Edit{"Copy", "COPY\nALL\n\n0,0\n5,3\n\n", "appended", "translate 5 3"},
                      Edit{"Rotate", "ROTATE\nALL\n\n2,1\n30\n", "same", "rotate 2 1 30"},
                      Edit{"RotateByReference", "ROTATE\nALL\n\n2,1\nR\n10\n55\n", "same", "rotate 2 1 45"},
                      Edit{"RotateACopy", "ROTATE\nALL\n\n0,0\nC\n-90\n", "appended", "rotate 0 0 -90"},
                      Edit{"Scale", "SCALE\nALL\n\n2,1\n2.5\n", "same", "scale 2 1 2.5"},
                      Edit{"ScaleByReference", "SCALE\nALL\n\n0,0\nR\n4\n6\n", "same", "scale 0 0 1.5"},
                      Edit{"MirrorKeepingSources", kMirrorAll + "MIRROR\nALL\n\n0,0\n10,5\n\n", "appended",
                           "mirror 0 0 10 5"},
                      Edit{"MirrorErasingSources", kMirrorAll + "MIRROR\nALL\n\n0,0\n0,5\nY\n", "same",
                           "mirror 0 0 0 5"},
                      Edit{"MirrorKeepingPatternDirections", "SETVAR\nMIRRTEXT\n1\nMIRROR\nALL\n\n3,-2\n10,5\nY\n",
                           "same", "mirror-keeping-patterns 3 -2 10 5"},
                      Edit{"StretchAroundEverything", "STRETCH\nC\n-100,-100\n100,100\n\n0,0\n5,3\n", "same",
                           "translate 5 3"}),
    [](const testing::TestParamInfo<Edit>& row) { return std::string(row.param.name); });

// The box corners of a text as a set, for comparing footprints.
bool sameCorners(const standalone::kernel::TextBox& a, const standalone::kernel::TextBox& b) {
  for (const ge::Point3d& p : a) {
    bool found = false;
    for (const ge::Point3d& q : b) found |= p.distanceTo(q) < 1e-9;
    if (!found) return false;
  }
  return true;
}

TEST(Mirror, MirrtextZeroKeepsTextsReadableInTheMirroredFootprint) {
  struct Case {
    const char* line;  // the mirror line's two points
    ge::Matrix3d m;
    int wantAttachment;  // of the MTEXT, attached top left before
  };
  const Case cases[] = {
      {"0,0\n0,5\n", ge::Matrix3d::mirroring({0, 0, 0}, {1, 0, 0}), 3},  // vertical line: left and right swap
      {"0,0\n5,0\n", ge::Matrix3d::mirroring({0, 0, 0}, {0, 1, 0}), 7},  // horizontal line: top and bottom swap
  };
  for (const Case& c : cases) {
    CommandSession s(Language::kEnglish);
    host::Text text{{2, 3, 0}, {}, 2, "Readable"};
    host::Text centred{{0, 0, 0}, {6, -4, 0}, 1, "mid"};
    centred.horizontalJustify = 1;
    host::MText note;
    note.position = {3, 6, 0};
    note.text = "note";
    s.add(text);
    s.add(centred);
    s.add(note);
    s.start();
    s.run(std::string("MIRROR\nALL\n\n") + c.line + "Y\n");
    auto texts = s.entitiesOf<host::Text>();
    ASSERT_EQ(texts.size(), 2u) << c.line;
    for (std::size_t i = 0; i < 2; ++i) {
      const host::Text& before = i == 0 ? text : centred;
      const auto& after = std::get<host::Text>(texts[i].data);
      EXPECT_NEAR(after.rotation, 0, 1e-12) << c.line << "reads left to right as before";
      EXPECT_EQ(after.mirrorFlags, 0);
      EXPECT_EQ(after.horizontalJustify, before.horizontalJustify);
      auto was = standalone::kernel::textBox(before), is = standalone::kernel::textBox(after);
      ASSERT_TRUE(was && is);
      for (ge::Point3d& p : *was) p = c.m.apply(p);
      EXPECT_TRUE(sameCorners(*was, *is)) << c.line << ": the footprint is the mirrored one";
    }
    auto notes = s.entitiesOf<host::MText>();
    ASSERT_EQ(notes.size(), 1u);
    const auto& mirrored = std::get<host::MText>(notes[0].data);
    EXPECT_EQ(mirrored.attachment, c.wantAttachment);
    EXPECT_EQ(mirrored.xDirection, ge::kXAxis);
    EXPECT_LT(mirrored.position.distanceTo(c.m.apply(note.position)), 1e-12);
  }
}

// MIRRTEXT 1: a TEXT reads backwards; an MTEXT, which has no backward flag,
// is mirrored by turning its normal round, its direction mirrored.
TEST(Mirror, MirrtextOneMirrorsTheGlyphs) {
  CommandSession s(Language::kEnglish);
  s.add(host::Text{{2, 3, 0}, {}, 2, "Backward"});
  host::MText note;
  note.position = {3, 6, 0};
  note.text = "note";
  s.add(note);
  s.start();
  s.run("SETVAR\nMIRRTEXT\n1\nMIRROR\nALL\n\n0,0\n0,5\n\n");
  auto texts = s.entitiesOf<host::Text>();
  ASSERT_EQ(texts.size(), 2u);
  const auto& copy = std::get<host::Text>(texts[1].data);
  EXPECT_EQ(copy.mirrorFlags, 2) << "backward";
  EXPECT_LT(copy.position.distanceTo({-2, 3, 0}), 1e-12);
  EXPECT_NEAR(std::cos(copy.rotation), 1, 1e-12) << "a backward text at angle 0 runs leftwards";
  auto notes = s.entitiesOf<host::MText>();
  ASSERT_EQ(notes.size(), 2u);
  const auto& mirrored = std::get<host::MText>(notes[1].data);
  EXPECT_EQ(mirrored.normal, (ge::Vector3d{0, 0, -1}));
  EXPECT_LT((mirrored.xDirection - ge::Vector3d{-1, 0, 0}).length(), 1e-12);
  EXPECT_LT(mirrored.position.distanceTo({-3, 6, 0}), 1e-12);
  EXPECT_EQ(mirrored.attachment, note.attachment);
}

TEST(Stretch, MovesOnlyWhatLiesInsideTheCrossingWindow) {
  CommandSession s(Language::kEnglish);
  host::ObjectId square = s.add(lwThrough({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, true));
  host::ObjectId outside = s.add(host::Line{{0, 20}, {10, 20}});
  host::ObjectId crossing = s.add(host::Line{{0, 5, 0}, {9, 5, 0}});
  host::ObjectId circle = s.add(host::Circle{{10, 5, 0}, 1});
  host::ObjectId arc = s.add(host::Arc{{5, 0, 0}, 5, 0, std::numbers::pi});  // from (10, 0) to (0, 0)
  s.start();
  std::string out = s.run("STRETCH\nC\n8,-1\n12,11\n\n0,0\n5,0\n");
  EXPECT_NE(out.find("Select objects to stretch by crossing-window or crossing-polygon..."), std::string::npos);
  expectPoints(verticesOf(*s.read(square)), {{0, 0, 0}, {15, 0, 0}, {15, 10, 0}, {0, 10, 0}});
  EXPECT_EQ(std::get<host::Line>(s.read(outside)->data).end, (ge::Point3d{10, 20, 0}));
  EXPECT_EQ(std::get<host::Line>(s.read(crossing)->data).end, (ge::Point3d{14, 5, 0}));
  EXPECT_EQ(std::get<host::Line>(s.read(crossing)->data).start, (ge::Point3d{0, 5, 0}));
  EXPECT_EQ(std::get<host::Circle>(s.read(circle)->data).center, (ge::Point3d{15, 5, 0})) << "centre inside: moved";
  // The arc keeps its included angle (a half circle) between (15, 0) and (0, 0).
  const host::Arc a = std::get<host::Arc>(s.read(arc)->data);
  EXPECT_LT(a.center.distanceTo({7.5, 0, 0}), 1e-9);
  EXPECT_NEAR(a.radius, 7.5, 1e-9);
}

// A hatch across the window: boundary points inside move (an arc edge with
// both ends inside moves whole), so do seed points inside; the pattern stays.
TEST(Stretch, HatchAcrossTheWindowMovesItsBoundaryPointsInsideAndKeepsItsPattern) {
  CommandSession s(Language::kEnglish);
  host::Hatch h;
  h.solidFill = false;
  h.patternName = "LINES";
  h.patternLines = {{0.5, {1, 1}, {0, 2}, {1, -1}}};
  h.seeds = {{1, 1}, {9, 1}};
  host::HatchPath square;
  square.flags = 3;
  square.polyline = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
  host::HatchPath slot;
  slot.edges = {host::HatchLineEdge{{20, 0}, {24, 0}},
                host::HatchArcEdge{{24, 2}, 2, -std::numbers::pi / 2, std::numbers::pi / 2, true},
                host::HatchLineEdge{{24, 4}, {20, 4}}, host::HatchLineEdge{{20, 4}, {20, 0}}};
  // A clockwise quarter whose end alone is in the third window: it keeps
  // its quarter turn through the moved end, bending to the side it bent.
  host::HatchPath quarter;
  quarter.edges = {host::HatchLineEdge{{40, 0}, {40, 2}},
                   host::HatchArcEdge{{40, 0}, 2, std::numbers::pi / 2, 0, false},
                   host::HatchLineEdge{{42, 0}, {40, 0}}};
  h.paths = {square, slot, quarter};
  host::ObjectId id = s.add(h);
  s.start();
  s.run("STRETCH\nC\n8,-1\n12,11\nC\n22,-1\n30,5\nC\n41.5,-1\n43,0.5\n\n0,0\n3,0\n");
  std::optional<host::Entity> stretched = s.read(id);
  const auto& got = std::get<host::Hatch>(stretched->data);
  const auto& poly = got.paths[0].polyline;
  std::vector<ge::Point2d> corners;
  for (const auto& v : poly) corners.push_back({v.x, v.y});
  EXPECT_EQ(corners, (std::vector<ge::Point2d>{{0, 0}, {13, 0}, {13, 10}, {0, 10}}));
  const auto& edges = got.paths[1].edges;
  EXPECT_EQ(std::get<host::HatchLineEdge>(edges[0]).end, (ge::Point2d{27, 0}));
  EXPECT_EQ(std::get<host::HatchLineEdge>(edges[0]).start, (ge::Point2d{20, 0}));
  const auto& arc = std::get<host::HatchArcEdge>(edges[1]);
  EXPECT_LT(std::hypot(arc.center.x - 27, arc.center.y - 2), 1e-12);
  EXPECT_NEAR(arc.radius, 2, 1e-12);
  EXPECT_NEAR(arc.startAngle, -std::numbers::pi / 2, 1e-12);
  EXPECT_NEAR(arc.endAngle, std::numbers::pi / 2, 1e-12);
  EXPECT_EQ(std::get<host::HatchLineEdge>(edges[2]).start, (ge::Point2d{27, 4}));
  // Worked by hand: the quarter from (40,2) round to (45,0) has its centre
  // at (41.5,-1.5), both ends sqrt(14.5) from it.
  const auto& bent = std::get<host::HatchArcEdge>(got.paths[2].edges[1]);
  EXPECT_LT(std::hypot(bent.center.x - 41.5, bent.center.y + 1.5), 1e-12);
  EXPECT_NEAR(bent.radius, std::sqrt(14.5), 1e-12);
  EXPECT_NEAR(bent.startAngle, std::atan2(3.5, -1.5), 1e-12);
  EXPECT_NEAR(bent.endAngle, std::atan2(1.5, 3.5), 1e-12);
  EXPECT_FALSE(bent.counterClockwise);
  EXPECT_EQ(std::get<host::HatchLineEdge>(got.paths[2].edges[2]).start, (ge::Point2d{45, 0}));
  EXPECT_EQ(got.seeds, (std::vector<ge::Point2d>{{1, 1}, {12, 1}}));
  EXPECT_EQ(got.patternLines, h.patternLines);
}

}  // namespace
}  // namespace commands_test

namespace commands_test {
namespace {

TEST(PolylineEdit, JoinTakesThePiecesThatMeetItsEndsAndClosesWhenTheyMeet) {
  CommandSession s(Language::kEnglish);
  host::ObjectId target = s.add(lwThrough({{0, 0}, {10, 0}}));
  host::ObjectId down = s.add(host::Line{{10, 5, 0}, {10, 0, 0}});           // runs the other way
  host::ObjectId arch = s.add(host::Arc{{5, 5, 0}, 5, 0, std::numbers::pi});  // (10, 5) over to (0, 5)
  host::ObjectId side = s.add(host::Line{{0, 5, 0}, {0, 0, 0}});
  host::ObjectId apart = s.add(host::Line{{20, 20, 0}, {30, 30, 0}});
  s.start();
  std::string out = s.run("PEDIT\n" + pickOf(target) + "\nJ\n" + selectionOf({side, arch, down, apart}) + "\n");
  EXPECT_NE(out.find("3 segments added to polyline"), std::string::npos) << out;
  const host::LwPolyline joined = std::get<host::LwPolyline>(s.read(target)->data);
  EXPECT_TRUE(joined.closed);
  // The closed outline from wherever the joining left its start: the
  // straight sides and the half circle counter-clockwise from (10, 5) to (0, 5).
  ASSERT_EQ(joined.vertices.size(), 4u);
  const ge::Point2d ring[] = {{10, 0}, {10, 5}, {0, 5}, {0, 0}};
  const double bulges[] = {0, 1, 0, 0};
  std::size_t k = 0;
  while (k < 4 && !(joined.vertices[k].x == 10 && joined.vertices[k].y == 0)) ++k;
  ASSERT_LT(k, 4u);
  for (std::size_t i = 0; i < 4; ++i) {
    const host::LwVertex& v = joined.vertices[(k + i) % 4];
    EXPECT_LT(std::hypot(v.x - ring[i].x, v.y - ring[i].y), 1e-9) << i;
    EXPECT_NEAR(v.bulge, bulges[i], 1e-12) << i;
  }
  EXPECT_FALSE(s.read(down) || s.read(arch) || s.read(side)) << "joined pieces are erased";
  EXPECT_TRUE(s.read(apart));
}

// Join on the heavy polylines: a 2D polyline takes lines, arcs and polylines
// of its plane and closes; a 3D polyline takes straight pieces in any plane,
// at either end, and leaves an arc alone.
TEST(PolylineEdit, JoinOnHeavyPolylines) {
  host::Polyline2d square;
  square.elevation = 2;
  square.vertices = {{.position = {0, 0, 2}}, {.position = {10, 0, 2}}};
  host::Polyline2d side = square;
  side.vertices = {{.position = {0, 5, 2}}, {.position = {0, 0, 2}}};
  struct Case {
    const char* name;
    host::EntityData target;
    std::vector<host::EntityData> pieces;  // selected in this order
    std::vector<bool> joined;
    std::string added;
    ge::PointList want;
    std::vector<double> bulges;
    bool closed;
  };
  const Case cases[] = {
      {"2D", square,
       {host::Line{{10, 5, 2}, {10, 0, 2}}, host::Arc{{5, 5, 2}, 5, 0, std::numbers::pi}, side,
        host::Line{{0, 0, 0}, {0, -5, 0}}},
       {true, true, true, false},
       "3 segments added to polyline",
       {{0, 0, 2}, {10, 0, 2}, {10, 5, 2}, {0, 5, 2}},
       {0, 0, 1, 0},
       true},
      {"3D", poly3dThrough({{0, 0, 0}, {1, 0, 1}}),
       {host::Line{{1, 0, 1}, {1, 2, 3}}, poly3dThrough({{0, -1, 5}, {0, 0, 0}}), lwThrough({{1, 2}, {4, 2}}, false, 3),
        host::Arc{{6, 2, 3}, 2, std::numbers::pi, 0}},
       {true, true, true, false},
       "3 segments added to polyline",
       {{0, -1, 5}, {0, 0, 0}, {1, 0, 1}, {1, 2, 3}, {4, 2, 3}},
       {},
       false},
  };
  for (const Case& c : cases) {
    CommandSession s(Language::kEnglish);
    host::ObjectId target = s.add(c.target);
    std::vector<host::ObjectId> pieces;
    std::string picks;
    for (const auto& piece : c.pieces) pieces.push_back(s.add(piece)), picks += pickOf(pieces.back()) + "\n";
    s.start();
    std::uint64_t firstHandle = 0;
    const host::Entity loaded = *s.read(target);
    if (auto* p2 = std::get_if<host::Polyline2d>(&loaded.data)) firstHandle = p2->vertices[0].handle;
    if (auto* p3 = std::get_if<host::Polyline3d>(&loaded.data)) firstHandle = p3->vertices[0].handle;
    EXPECT_NE(firstHandle, 0u) << c.name;
    std::string out = s.run("PEDIT\n" + pickOf(target) + "\nJ\n" + picks + "\nX\n");
    EXPECT_TRUE(s.says(out, c.added)) << c.name;
    const host::Entity got = *s.read(target);
    expectPoints(verticesOf(got), c.want);
    for (std::size_t i = 0; i < c.pieces.size(); ++i) EXPECT_EQ(!s.read(pieces[i]), c.joined[i]) << c.name << i;
    if (auto* p2 = std::get_if<host::Polyline2d>(&got.data)) {
      EXPECT_EQ(p2->closed, c.closed);
      for (std::size_t i = 0; i < c.bulges.size(); ++i) EXPECT_NEAR(p2->vertices[i].bulge, c.bulges[i], 1e-12);
      EXPECT_EQ(p2->vertices[0].handle, firstHandle) << "the target's own vertices keep their handles";
    }
    if (auto* p3 = std::get_if<host::Polyline3d>(&got.data)) {
      EXPECT_EQ(p3->closed, c.closed);
      EXPECT_EQ(p3->vertices[1].handle, firstHandle) << "the target's own vertices keep their handles";
    }
    // ezdxf reads the joined polyline with the same vertices.
    std::string points;
    for (const ge::Point3d& p : c.want) {
      char buf[96];
      std::snprintf(buf, sizeof buf, "%s%.6f,%.6f,%.6f", points.empty() ? "" : ";", p.x, p.y, p.z);
      points += buf;
    }
    bool found = false;
    for (const std::string& line : s.readBackWithEzdxf())
      found |= line.find(std::string("closed=") + (c.closed ? "1" : "0")) != std::string::npos &&
               line.find("points " + points) != std::string::npos;
    EXPECT_TRUE(found) << c.name << ": ezdxf does not read " << points;
  }
}

// Multiple's Join with a fuzz distance: two straight ends meeting at a
// corner, two on one line, and a straight end facing an arc's end.
struct MultipleJoin {
  const char* name;
  std::vector<ge::Point2d> first, second;
  double secondBulge;  // of the second polyline's first segment
  std::string answers;  // after "J": fuzz distance, join type
  int added;
  ge::PointList joined;  // empty: the polylines stay apart
};

class PolylineEditMultipleJoin : public ::testing::TestWithParam<MultipleJoin> {};

TEST_P(PolylineEditMultipleJoin, BridgesEndsWithinTheFuzzDistanceAsTheJoinTypeSays) {
  const MultipleJoin& c = GetParam();
  CommandSession s(Language::kEnglish);
  host::ObjectId first = s.add(lwThrough(c.first));
  host::LwPolyline secondLw = lwThrough(c.second);
  secondLw.vertices[0].bulge = c.secondBulge;
  host::ObjectId second = s.add(secondLw);
  s.start();
  std::string out = s.run("PEDIT\nM\n" + selectionOf({second, first}) + "J\n" + c.answers + "\n");
  EXPECT_TRUE(s.says(out, std::to_string(c.added) + (c.added == 1 ? " segment" : " segments") +
                              " added to polyline")) << out;
  if (c.joined.empty()) {
    EXPECT_TRUE(s.read(first) && s.read(second));
    return;
  }
  // The first selected takes the other; the second selected here is the second polyline.
  ASSERT_FALSE(s.read(first)) << "the polyline taken into the other is erased";
  expectPoints(verticesOf(*s.read(second)), c.joined);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PolylineEditMultipleJoin,
    ::testing::Values(
        MultipleJoin{"ExtendMeetsAtTheCorner", {{0, 0}, {10, 0}}, {{10.5, 0.5}, {10.5, 10}}, 0, "1\n", 1,
                     {{0, 0, 0}, {10.5, 0, 0}, {10.5, 10, 0}}},
        MultipleJoin{"AddBridgesWithASegment", {{0, 0}, {10, 0}}, {{10.5, 0.5}, {10.5, 10}}, 0, "J\nA\n1\n", 2,
                     {{0, 0, 0}, {10, 0, 0}, {10.5, 0.5, 0}, {10.5, 10, 0}}},
        MultipleJoin{"ExtendAlongOneLine", {{0, 0}, {10, 0}}, {{10.5, 0}, {20, 0}}, 0, "1\n", 2,
                     {{0, 0, 0}, {10, 0, 0}, {10.5, 0, 0}, {20, 0, 0}}},
        MultipleJoin{"ExtendCannotReachTheCornerBeyondTheFuzz", {{0, 0}, {10, 0}}, {{10.5, 0.5}, {20, 1}}, 0,
                     "0.8\n", 0, {}},
        MultipleJoin{"ExtendCannotExtendAnArc", {{0, 0}, {10, 0}}, {{10.5, 0.5}, {10.5, 10}}, 0.4, "1\n", 0, {}},
        MultipleJoin{"BothAddsWhereItCannotExtend", {{0, 0}, {10, 0}}, {{10.5, 0.5}, {10.5, 10}}, 0.4,
                     "J\nB\n1\n", 2, {{0, 0, 0}, {10, 0, 0}, {10.5, 0.5, 0}, {10.5, 10, 0}}},
        MultipleJoin{"NoFuzzJoinsTouchingEndsOnly", {{0, 0}, {10, 0}}, {{10.5, 0.5}, {10.5, 10}}, 0, "\n", 0, {}},
        MultipleJoin{"TouchingEndsJoinWithoutFuzz", {{0, 0}, {10, 0}}, {{10, 0}, {10, 10}}, 0, "\n", 1,
                     {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(PolylineEdit, UndoAfterAMultipleJoinBringsTheJoinedPolylineBack) {
  CommandSession s(Language::kEnglish);
  host::ObjectId first = s.add(lwThrough({{0, 0}, {10, 0}}));
  host::ObjectId second = s.add(lwThrough({{10, 0}, {10, 10}}));
  s.start();
  s.run("PEDIT\nM\n" + selectionOf({first, second}) + "J\n\nU\n\n");
  expectPoints(verticesOf(*s.read(first)), {{0, 0, 0}, {10, 0, 0}});
  EXPECT_EQ(s.entitiesOf<host::LwPolyline>().size(), 2u);
}

TEST(PolylineEdit, EditVertexMovesTheMarkedVertexAndInsertsAfterIt) {
  CommandSession s(Language::kEnglish);
  host::ObjectId target = s.add(lwThrough({{0, 0}, {10, 0}, {10, 10}}));
  s.start();
  s.run("PEDIT\n" + pickOf(target) + "\nE\nN\nM\n12,1\nI\n11,6\nP\nP\nM\n-1,-1\nX\n\n");
  expectPoints(verticesOf(*s.read(target)), {{-1, -1, 0}, {12, 1, 0}, {11, 6, 0}, {10, 10, 0}});
}

}  // namespace
}  // namespace commands_test
