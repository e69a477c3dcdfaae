// Writing: unchanged drawings come out byte for byte, new and changed
// entities come back as the same records, kept groups stay where they were.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "standalone/db/dxf_reader.h"
#include "standalone/db/dxf_writer.h"
#include "tests/db/dxf_snippets.h"

namespace {

using namespace dbtest;
using standalone::DrawingDatabase;
using standalone::readDxf;
using standalone::writeDxf;

const std::string kMixedEntities = dxf(
    "0 LINE|5 50|102 {ACAD_XDICTIONARY|360 D|102 }|330 1F|100 AcDbEntity|8 Walls|347 A1|100 AcDbLine"
    "|10 0.0|20 0.0|30 0.0|11 1.5|21 2.5|31 0.0|100 AcDbCustomLine|1 custom|1001 APP|1000 note|1040 2.0"
    "|0 ARC|5 51|330 1F|100 AcDbEntity|8 0|100 AcDbCircle|10 1.0|20 1.0|30 0.0|40 2.0|210 0.0|220 0.0|230 -1.0"
    "|100 AcDbArc|50 10.0|51 100.0"
    "|0 INSERT|5 52|330 1F|100 AcDbEntity|8 0|100 AcDbBlockReference|66 1|2 Door|10 5.0|20 6.0|30 0.0"
    "|0 ATTRIB|5 53|330 52|100 AcDbEntity|8 0|100 AcDbText|10 5.0|20 6.0|30 0.0|40 1.0|1 D1|100 AcDbAttribute"
    "|2 TAG|70 0|0 SEQEND|5 54|330 52|100 AcDbEntity|8 0"
    "|0 DIMENSION|5 55|330 1F|100 AcDbEntity|8 0|100 AcDbDimension|2 *D1|10 0.0|20 0.0|30 0.0|70 32"
    "|100 AcDbAlignedDimension|13 0.0|23 0.0|33 0.0|14 4.0|24 0.0|34 0.0"
    "|0 TEXT|5 56|330 1F|100 AcDbEntity|8 0|100 AcDbText|10 1.0|20 1.0|30 0.0|40 2.0|1 caf\xE9|100 AcDbText");

host::Entity first(const DrawingDatabase& db) { return *db.read(db.entitiesOf(db.modelSpace()).at(0)); }

TEST(DxfWriteUnchanged, FileComesOutByteForByte) {
  std::string lf = drawing(kMixedEntities), crlf;
  for (char c : lf) crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
  EXPECT_EQ(writeDxf(readDxf(lf)), lf) << "LF";
  EXPECT_EQ(writeDxf(readDxf(crlf)), crlf) << "CRLF";
}

TEST(DxfWriteChanged, KeptGroupsReturnAfterTheirSubclassMarker) {
  auto db = readDxf(drawing(kMixedEntities));
  auto line = first(db);
  std::get<host::Line>(line.data).end = {7, 8, 0};
  ASSERT_EQ(db.write(line), host::ErrorStatus::eOk);
  std::string out = writeDxf(db);
  EXPECT_EQ(std::get<host::Line>(first(readDxf(out)).data).end, (ge::Point3d{7, 8, 0}));
  std::string expected = dxf(
      "0 LINE|5 50|102 {ACAD_XDICTIONARY|360 D|102 }|330 1F|100 AcDbEntity|8 Walls|347 A1|100 AcDbLine"
      "|10 0.0|20 0.0|30 0.0|11 7.0|21 8.0|31 0.0|100 AcDbCustomLine|1 custom|1001 APP|1000 note|1040 2.0|0 ARC");
  EXPECT_NE(out.find(expected), std::string::npos) << out.substr(out.find("LINE") - 4, 600);
}

TEST(DxfWriteChanged, InsertKeepsAttributesAndOthersKeepTheirBytes) {
  auto db = readDxf(drawing(kMixedEntities));
  auto ids = db.entitiesOf(db.modelSpace());
  auto insert = *db.read(ids[2]);
  std::get<host::BlockReference>(insert.data).position = {9, 9, 0};
  db.write(insert);
  auto dim = *db.read(ids[3]);
  dim.props.layer = "Walls";
  dim.props.color.index = 3;
  ASSERT_EQ(db.write(dim), host::ErrorStatus::eOk);
  ASSERT_EQ(db.erase(ids[1]), host::ErrorStatus::eOk);
  std::string out = writeDxf(db);
  auto back = readDxf(out);
  auto backIds = back.entitiesOf(back.modelSpace());
  ASSERT_EQ(backIds.size(), 4u);  // the ARC is gone
  EXPECT_EQ(std::get<host::BlockReference>(back.peek(backIds[1])->data).position, (ge::Point3d{9, 9, 0}));
  EXPECT_NE(out.find(dxf("0 ATTRIB|5 53")), std::string::npos);
  EXPECT_NE(out.find(dxf("0 SEQEND|5 54")), std::string::npos);
  auto dimBack = *back.read(backIds[2]);
  EXPECT_EQ(dimBack.props.layer, "Walls");
  EXPECT_EQ(dimBack.props.color.index, 3);
  EXPECT_NE(out.find(dxf("100 AcDbAlignedDimension|13 0.0")), std::string::npos);
  // The text came from an ANSI_1252 file and goes back in it.
  EXPECT_NE(out.find("caf\xE9"), std::string::npos);
}

TEST(DxfWriteChanged, EntitiesWithoutOrWithATakenHandleGetNewOnesInPlace) {
  auto db = readDxf(drawing(dxf("0 3DFACE|330 1F|100 AcDbEntity|8 0|100 AcDbFace|10 0.0|20 0.0|30 0.0") +
                            dxf(head("LINE", "50", "AcDbLine") + groups("10 0.0|20 0.0|30 0.0|11 1.0|21 0.0|31 0.0") +
                                head("SOLID", "50", "AcDbTrace") + groups("10 0.0|20 0.0|30 0.0"))));
  auto back = readDxf(writeDxf(db));
  auto ids = back.entitiesOf(back.modelSpace());
  ASSERT_EQ(ids.size(), 3u);
  EXPECT_EQ(std::get<host::OtherEntity>(back.peek(ids[0])->data).dxfName, "3DFACE");
  EXPECT_TRUE(std::holds_alternative<host::Line>(back.peek(ids[1])->data));
  EXPECT_EQ(std::get<host::OtherEntity>(back.peek(ids[2])->data).dxfName, "SOLID");
  EXPECT_EQ(ids[1].value, 0x50u);
  EXPECT_GE(ids[0].value, 0x100u);
  EXPECT_GE(ids[2].value, 0x100u);
  EXPECT_NE(ids[0], ids[2]);
}

TEST(DxfWriteChanged, PolylineVerticesKeepTheirOwnGroups) {
  auto vertex = [](const std::string& h, const std::string& x, const std::string& extra) {
    return "|0 VERTEX|5 " + h + "|330 60|100 AcDbEntity|8 0|62 3|100 AcDbVertex|100 AcDb2dVertex|10 " + x +
           "|20 1.0|30 0.0|70 0" + extra;
  };
  auto db = readDxf(drawing(dxf("0 POLYLINE|5 60|330 1F|100 AcDbEntity|8 0|100 AcDb2dPolyline|66 1"
                                "|10 0.0|20 0.0|30 0.0|70 0" +
                                vertex("61", "0.0", "|1001 APP|1000 first") + vertex("62", "5.0", "") +
                                "|0 SEQEND|5 63|330 60|100 AcDbEntity|8 0|1001 APP|1000 end")));
  auto pl = first(db);
  std::get<host::Polyline2d>(pl.data).vertices[1].position.x = 9;
  db.write(pl);
  std::string out = writeDxf(db);
  EXPECT_NE(out.find(dxf("10 0.0|20 1.0|30 0.0|70 0|62 3|1001 APP|1000 first|0 VERTEX|5 62")), std::string::npos)
      << out.substr(out.find("POLYLINE"), 700);
  EXPECT_NE(out.find(dxf("10 9.0")), std::string::npos);
  EXPECT_NE(out.find(dxf("8 0|1001 APP|1000 end|0 ENDSEC")), std::string::npos);
}

TEST(DxfWriteChanged, SeedStaysAboveEveryHandleAndNewVariablesJoinTheHeader) {
  auto db = readDxf(drawing(kMixedEntities));
  host::Entity e = entityOf(host::Polyline2d{{{}, {}, {}}});
  db.append(e);
  db.setHeaderVariable("$PDSIZE", {{40, 0.5}});
  db.setHeaderVariable("$PDMODE", {{70, std::int16_t{3}}});
  auto back = readDxf(writeDxf(db));
  auto seed = back.headerVariable("$HANDSEED");
  ASSERT_TRUE(seed);
  std::uint64_t seedValue = std::stoull(std::get<std::string>(seed->at(0).value), nullptr, 16);
  const auto& p = std::get<host::Polyline2d>(back.peek(e.id)->data);
  EXPECT_GT(seedValue, p.seqendHandle);
  for (const auto& v : p.vertices) EXPECT_GT(seedValue, v.handle);
  EXPECT_EQ(*back.headerVariable("PDSIZE"), (host::ResBufList{{40, 0.5}}));
  EXPECT_EQ(*back.headerVariable("PDMODE"), (host::ResBufList{{70, std::int16_t{3}}}));
}

// One sample record of every kind the drawing interprets.
std::vector<host::EntityData> samples() {
  host::Spline spline{.degree = 2, .flags = 8 | 4, .knots = {0, 0, 0, 1, 1, 1},
                      .controlPoints = {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}}, .weights = {1, 0.5, 1},
                      .startTangent = ge::Vector3d{1, 0, 0}};
  host::HatchPath poly{.flags = 3, .polyline = {{0, 0, 0.5}, {4, 0, 0}, {4, 4, 0}}};
  host::HatchPath edges{.edges = {host::HatchLineEdge{{0, 0}, {1, 0}}, host::HatchArcEdge{{1, 1}, 1, 1.0, 2.0, false},
                                  host::HatchEllipseEdge{{0, 0}, {2, 0}, 0.5, 0.5, 1.5, true},
                                  host::HatchSplineEdge{.knots = {0, 0, 0, 0, 1, 1, 1, 1},
                                                        .controlPoints = {{0, 0}, {1, 1}, {2, 1}, {3, 0}}}}};
  using host::kVertexSplineFit, host::kVertexSplineFrame;
  return {host::Line{{0, 0, 0}, {1, 2, 3}},
          host::Circle{{1, 2, 0}, 3, 0, {0, 0, -1}},
          host::Arc{{1, 2, 3}, 4, 0.25, 2.5, 0, {0.6, 0, 0.8}},
          host::Ellipse{{0, 0, 0}, {3, 1, 0}, ge::kZAxis, 0.5, 0.1, 2.0},
          host::LwPolyline{{{0, 0, 0.5, 0, 0}, {3, 0, -1, 0.1, 0.2}}, true, false, 0, 1.5},
          host::Polyline2d{.vertices = {{.position = {0, 0, 0}, .flags = kVertexSplineFit},
                                        {.position = {1, 1, 0}, .flags = kVertexSplineFrame}},
                           .splineFit = true, .curveType = host::PolyCurveType::kCubicSpline},
          host::Polyline3d{.vertices = {{{0, 0, 0}}, {{1, 2, 3}}}, .closed = true},
          spline,
          host::Helix{.curve = spline, .startPoint = {2, 0, 0}, .turns = 2.5},
          host::Text{.position = {1, 2, 0}, .alignmentPoint = {5, 2, 0}, .text = "中文 and text", .rotation = 0.5,
                     .horizontalJustify = 2},
          host::MText{.attachment = 5, .text = std::string(600, 'x') + "中"},
          host::PointEntity{{1, 2, 3}},
          host::BlockReference{.blockName = "Door", .position = {3, 4, 0}, .scale = {2, 2, 1}, .rotation = 1.0},
          host::Hatch{.patternName = "ANSI31", .solidFill = false, .paths = {poly, edges}, .patternAngle = 0.5,
                      .patternScale = 2, .patternLines = {{0.5, {1, 0}, {-1, 2}, {1, -0.5, 0, -0.5}}},
                      .pixelSize = 0.25, .seeds = {{1, 1}}},
          host::Image{.widthPixels = 640, .heightPixels = 480, .imageDefHandle = 0x99}};
}

// Written and read again, the record is the one appended: angles pass through
// degrees and tilted points through the arbitrary axis, so those are equal to rounding.
void expectSameRecord(const host::EntityData& want, host::EntityData got) {
  ASSERT_EQ(want.index(), got.index()) << host::dxfName(want);
  auto settle = [](double& g, double w, double tolerance) {
    EXPECT_NEAR(g, w, tolerance);
    g = w;
  };
  if (auto* arc = std::get_if<host::Arc>(&got)) {
    const auto& w = std::get<host::Arc>(want);
    EXPECT_NEAR(arc->center.distanceTo(w.center), 0, 1e-12);
    arc->center = w.center;
    settle(arc->startAngle, w.startAngle, 1e-14);
    settle(arc->endAngle, w.endAngle, 1e-14);
  } else if (auto* text = std::get_if<host::Text>(&got)) {
    settle(text->rotation, std::get<host::Text>(want).rotation, 1e-14);
  } else if (auto* ref = std::get_if<host::BlockReference>(&got)) {
    settle(ref->rotation, std::get<host::BlockReference>(want).rotation, 1e-14);
  } else if (auto* hatch = std::get_if<host::Hatch>(&got)) {
    auto& edge = std::get<host::HatchArcEdge>(hatch->paths.at(1).edges.at(1));
    const auto& w = std::get<host::HatchArcEdge>(std::get<host::Hatch>(want).paths[1].edges[1]);
    settle(edge.startAngle, w.startAngle, 1e-14);
    settle(edge.endAngle, w.endAngle, 1e-14);
    settle(hatch->patternAngle, std::get<host::Hatch>(want).patternAngle, 1e-14);
    settle(hatch->patternLines.at(0).angle, std::get<host::Hatch>(want).patternLines[0].angle, 1e-14);
  }
  EXPECT_TRUE(want == got) << host::dxfName(want);
}

class DxfWriteNewEntities : public ::testing::TestWithParam<const char*> {};

TEST_P(DxfWriteNewEntities, ReadBackAsTheSameRecords) {
  auto db = DrawingDatabase::createEmpty(GetParam());
  std::vector<host::ObjectId> ids;
  for (const auto& data : samples()) {
    host::Entity e = entityOf(data);
    e.props.layer = "NEW LAYER";
    e.props.color.index = 5;
    ASSERT_EQ(db.append(e), host::ErrorStatus::eOk);
    ids.push_back(e.id);
  }
  auto back = readDxf(writeDxf(db));
  auto list = back.entitiesOf(back.modelSpace());
  ASSERT_EQ(list, ids);
  for (std::size_t i = 0; i < ids.size(); ++i) {
    auto e = *back.read(ids[i]);
    EXPECT_EQ(e.props.layer, "NEW LAYER");
    EXPECT_EQ(e.props.color.index, 5);
    expectSameRecord(db.peek(ids[i])->data, e.data);
  }
  auto layers = back.layerNames();
  EXPECT_NE(std::find(layers.begin(), layers.end(), "NEW LAYER"), layers.end());
}

INSTANTIATE_TEST_SUITE_P(Versions, DxfWriteNewEntities, ::testing::Values("AC1015", "AC1018", "AC1024", "AC1032"));

TEST(DxfWriteChanged, ActiveViewSetOnANewDrawingIsSaved) {
  for (const char* version : {"AC1009", "AC1015", "AC1032"}) {
    auto db = DrawingDatabase::createEmpty(version);
    db.setActiveView({{12.5, -3}, 40, 1.25});
    auto view = readDxf(writeDxf(db)).activeView();
    ASSERT_TRUE(view) << version;
    EXPECT_EQ(view->center, (ge::Point2d{12.5, -3}));
    EXPECT_EQ(view->height, 40);
    EXPECT_EQ(view->aspect, 1.25);
  }
}

// What R12 lacks is written as the old kinds: polylines for lightweight
// polylines, ellipses and splines, text for multiline text.
TEST(DxfWriteR12, StandInsForNewerKinds) {
  auto db = DrawingDatabase::createEmpty("AC1009");
  for (host::EntityData data :
       {host::EntityData{host::LwPolyline{{{0, 0, 0.5, 0, 0}, {3, 0, 0, 0, 0}, {3, 3, 0, 0, 0}}, true}},
        host::EntityData{host::Ellipse{{1, 2, 0}, {4, 0, 0}, ge::kZAxis, 0.5, 0, 2 * 3.141592653589793}},
        host::EntityData{host::Spline{.degree = 2, .knots = {0, 0, 0, 1, 1, 1},
                                      .controlPoints = {{0, 0, 0}, {1, 2, 0}, {2, 0, 0}}}},
        host::EntityData{host::MText{.height = 2, .text = "{\\fArial|b0;first}\\Psecond"}}}) {
    host::Entity e = entityOf(data);
    db.append(e);
  }
  std::string out = writeDxf(db);
  EXPECT_EQ(out.find("AcDb"), std::string::npos);
  auto back = readDxf(out);
  auto ids = back.entitiesOf(back.modelSpace());
  ASSERT_EQ(ids.size(), 4u);
  const auto& pl = std::get<host::Polyline2d>(back.peek(ids[0])->data);
  ASSERT_EQ(pl.vertices.size(), 3u);
  EXPECT_TRUE(pl.closed);
  EXPECT_EQ(pl.vertices[0].bulge, 0.5);
  EXPECT_NE(pl.vertices[2].handle, 0u);
  const auto& pe = std::get<host::Polyline2d>(back.peek(ids[1])->data);
  EXPECT_TRUE(pe.closed);
  EXPECT_GE(pe.vertices.size(), 64u);
  for (const auto& v : pe.vertices) {
    double u = (v.position.x - 1) / 4, w = (v.position.y - 2) / 2;
    EXPECT_NEAR(u * u + w * w, 1.0, 1e-12);
  }
  const auto& ps = std::get<host::Polyline2d>(back.peek(ids[2])->data);
  EXPECT_EQ(ps.vertices.front().position, (ge::Point3d{0, 0, 0}));
  EXPECT_EQ(ps.vertices.back().position, (ge::Point3d{2, 0, 0}));
  // The middle of a quadratic Bezier: (P0 + 2 P1 + P2) / 4.
  EXPECT_NEAR(ps.vertices[ps.vertices.size() / 2].position.y, 1.0, 1e-12);
  const auto& t = std::get<host::Text>(back.peek(ids[3])->data);
  EXPECT_EQ(t.text, "first second");
  EXPECT_EQ(t.height, 2);
}

}  // namespace

namespace {

// An R2010 lightweight polyline whose vertices carry ids 7, 8 and 9.
const std::string kLwWithIds = dxf(
    "0 LWPOLYLINE|5 70|330 1F|100 AcDbEntity|8 0|100 AcDbPolyline|90 3|70 0|43 0.0"
    "|10 0.0|20 0.0|91 7|10 5.0|20 0.0|91 8|42 0.5|10 5.0|20 5.0|91 9");

TEST(DxfWriteChanged, LightweightVertexIdsStayWhileTheCountIsTheSame) {
  struct Case {
    const char* what;
    void (*change)(host::LwPolyline&);
    bool idsExpected;
  };
  const Case cases[] = {
      {"moved vertex", [](host::LwPolyline& p) { p.vertices[1].x = 6; }, true},
      {"closed", [](host::LwPolyline& p) { p.closed = true; }, true},
      {"vertex removed", [](host::LwPolyline& p) { p.vertices.erase(p.vertices.begin()); }, false},
      {"vertex added", [](host::LwPolyline& p) { p.vertices.push_back({1, 1}); }, false},
  };
  for (const Case& c : cases) {
    auto db = readDxf(drawing(kLwWithIds, "AC1024"));
    auto e = first(db);
    c.change(std::get<host::LwPolyline>(e.data));
    ASSERT_EQ(db.write(e), host::ErrorStatus::eOk);
    std::string out = writeDxf(db);
    bool anyId = out.find(dxf("91 7")) != std::string::npos || out.find(dxf("91 8")) != std::string::npos;
    EXPECT_EQ(anyId, c.idsExpected) << c.what;
    if (c.idsExpected) {
      EXPECT_NE(out.find(dxf("10 0.0|20 0.0|91 7")), std::string::npos) << c.what;
      EXPECT_NE(out.find(dxf("20 0.0|91 8|42 0.5|10 5.0|20 5.0|91 9")), std::string::npos) << c.what;
    }
    EXPECT_EQ(std::get<host::LwPolyline>(first(readDxf(out)).data), std::get<host::LwPolyline>(e.data)) << c.what;
  }
}

}  // namespace

namespace {

// R12 has no hatch and no image: a hatch is saved as its boundaries, one
// closed polyline each, an image as its frame; both on their own layer.
TEST(DxfWriteR12, HatchBoundariesAndImageFrames) {
  auto db = DrawingDatabase::createEmpty("AC1009");
  host::HatchPath square{.flags = 3, .polyline = {{0, 0, 0.5}, {4, 0}, {4, 4}, {0, 4}}};
  host::HatchPath slot{.edges = {host::HatchLineEdge{{10, 0}, {12, 0}},
                                 host::HatchArcEdge{{12, 1}, 1, -std::numbers::pi / 2, std::numbers::pi / 2, true},
                                 host::HatchLineEdge{{12, 2}, {10, 2}},
                                 host::HatchArcEdge{{10, 1}, 1, std::numbers::pi / 2, 3 * std::numbers::pi / 2, true}}};
  host::HatchPath ring{.edges = {host::HatchArcEdge{{20, 0}, 3, 0, 0, false}}};
  host::Entity hatch = entityOf(host::Hatch{.paths = {square, slot, ring}});
  hatch.props.layer = "FILL";
  host::Entity image = entityOf(host::Image{.insertion = {1, 2, 0}, .uVector = {0.01, 0, 0}, .vVector = {0, 0.02, 0},
                                            .widthPixels = 300, .heightPixels = 100, .imageDefHandle = 0x99});
  ASSERT_EQ(db.append(hatch), host::ErrorStatus::eOk);
  ASSERT_EQ(db.append(image), host::ErrorStatus::eOk);
  auto back = readDxf(writeDxf(db));
  auto ids = back.entitiesOf(back.modelSpace());
  ASSERT_EQ(ids.size(), 4u);
  std::vector<const host::Polyline2d*> pl;
  for (auto id : ids) {
    pl.push_back(std::get_if<host::Polyline2d>(&back.peek(id)->data));
    ASSERT_TRUE(pl.back() && pl.back()->closed);
    EXPECT_EQ(back.peek(id)->props.layer, id == ids.back() ? "0" : "FILL");
  }
  EXPECT_EQ(ids[0], hatch.id);
  EXPECT_EQ(pl[0]->vertices.size(), 4u);
  EXPECT_EQ(pl[0]->vertices[0].bulge, 0.5);
  // The slot: each half circle is split in two quarter arcs (bulge tan(pi/8)).
  ASSERT_EQ(pl[1]->vertices.size(), 6u);
  EXPECT_EQ(pl[1]->vertices[1].position, (ge::Point3d{12, 0, 0}));
  EXPECT_NEAR(pl[1]->vertices[2].position.x, 13, 1e-12);
  EXPECT_NEAR(pl[1]->vertices[2].position.y, 1, 1e-12);
  EXPECT_NEAR(pl[1]->vertices[1].bulge, std::tan(std::numbers::pi / 8), 1e-12);
  // A clockwise full circle: two half turns with a negative bulge.
  ASSERT_EQ(pl[2]->vertices.size(), 2u);
  EXPECT_NEAR(pl[2]->vertices[1].position.x, 17, 1e-12);
  EXPECT_NEAR(pl[2]->vertices[0].bulge, -1, 1e-12);
  std::vector<ge::Point3d> corners;
  for (const auto& v : pl[3]->vertices) corners.push_back(v.position);
  const std::vector<ge::Point3d> frame{{1, 2, 0}, {4, 2, 0}, {4, 4, 0}, {1, 4, 0}};
  ASSERT_EQ(corners.size(), frame.size());
  for (std::size_t i = 0; i < frame.size(); ++i) EXPECT_NEAR(corners[i].distanceTo(frame[i]), 0, 1e-12) << i;
  // The drawing itself keeps the hatch.
  EXPECT_TRUE(std::holds_alternative<host::Hatch>(db.peek(hatch.id)->data));
}

}  // namespace

namespace {

// An R2004 file whose CLASS entry counts its one HELIX.
std::string withHelixClass(const std::string& entities) {
  std::string file = drawing(entities, "AC1018");
  std::string tables = dxf("0 SECTION|2 TABLES");
  file.insert(file.find(tables), dxf("0 SECTION|2 CLASSES|0 CLASS|1 HELIX|2 AcDbHelix|3 ObjectDBX Classes"
                                     "|90 4095|91 1|280 0|281 1|0 ENDSEC"));
  return file;
}
const std::string kOneHelix = dxf(
    "0 HELIX|5 70|330 1F|100 AcDbEntity|8 0|100 AcDbSpline|70 0|71 3|72 0|73 0|74 0|42 0.0|43 0.0"
    "|100 AcDbHelix|90 29|91 63|10 0.0|20 0.0|30 0.0|11 1.0|21 0.0|31 0.0|12 0.0|22 0.0|32 1.0"
    "|40 1.0|41 1.0|42 1.0|290 1|280 0");

TEST(DxfWriteChanged, ClassCountsFollowAddedAndErasedInstances) {
  struct Case {
    const char* what;
    int added, erased;
    const char* count;
  };
  for (const Case& c : {Case{"unchanged", 0, 0, "91 1"}, Case{"two added", 2, 0, "91 3"},
                        Case{"erased", 0, 1, "91 0"}, Case{"one for one", 1, 1, "91 1"}}) {
    auto db = readDxf(withHelixClass(kOneHelix));
    for (int i = 0; i < c.added; ++i) {
      host::Entity e = entityOf(host::Helix{});
      db.append(e);
    }
    if (c.erased) db.erase(db.entitiesOf(db.modelSpace()).at(0));
    std::string out = writeDxf(db);
    EXPECT_NE(out.find(dxf(std::string("90 4095|") + c.count + "|280 0")), std::string::npos) << c.what;
    if (c.added == 0 && c.erased == 0) {
      EXPECT_EQ(out, withHelixClass(kOneHelix));
    }
  }
}

// A linetype or text style the table lacks gets an entry of its own; the
// entity keeps the name.
TEST(DxfWriteChanged, MissingLinetypeAndStyleGetTableEntries) {
  for (const char* version : {"AC1009", "AC1015", "AC1032"}) {
    auto db = DrawingDatabase::createEmpty(version);
    for (const char* linetype : {"Dash Dot", "dash dot", "ByLayer", "Continuous"}) {
      host::Entity e = entityOf(host::Line{{0, 0, 0}, {1, 0, 0}});
      e.props.linetype = linetype;
      db.append(e);
    }
    for (const char* style : {"Notes", "STANDARD", "notes"}) {
      host::Entity e = entityOf(host::Text{.text = "t", .style = style});
      db.append(e);
      e = entityOf(host::MText{.text = "m", .style = style});
      db.append(e);
    }
    std::string out = writeDxf(db);
    auto count = [&](const std::string& text) {
      std::size_t n = 0;
      for (auto at = out.find(text); at != std::string::npos; at = out.find(text, at + 1)) ++n;
      return n;
    };
    EXPECT_EQ(count(dxf("2 Dash Dot|70 0|3 |72 65|73 0|40 0.0")), 1u) << version;
    EXPECT_EQ(count(dxf("0 LTYPE")), std::string(version) == "AC1009" ? 2u : 4u) << version;
    EXPECT_EQ(count(dxf("2 Notes|70 0|40 0.0|41 1.0")), 1u) << version;
    EXPECT_EQ(count(dxf("0 STYLE")), 2u) << version;
    auto back = readDxf(out);
    auto ids = back.entitiesOf(back.modelSpace());
    EXPECT_EQ(back.peek(ids.at(1))->props.linetype, "dash dot") << version;
    EXPECT_EQ(std::get<host::Text>(back.peek(ids.at(8))->data).style, "notes") << version;
  }
}

}  // namespace

namespace {

// Attributes move with their reference (checked against ezdxf's transforms in
// the interop script); placements that give no transform leave them as read.
TEST(DxfWriteChanged, AttributesStayAsReadWhenThePlacementGivesNoTransform) {
  const std::string attribute = dxf("0 ATTRIB|5 53|330 52|100 AcDbEntity|8 0|100 AcDbText|10 5.0|20 6.0|30 0.0");
  for (auto change : {+[](host::BlockReference& r) { r.blockName = "Window"; },
                      +[](host::BlockReference& r) { r.scale.x = 0; }}) {
    auto db = readDxf(drawing(kMixedEntities));
    auto insert = *db.read(db.entitiesOf(db.modelSpace()).at(2));
    change(std::get<host::BlockReference>(insert.data));
    ASSERT_EQ(db.write(insert), host::ErrorStatus::eOk);
    EXPECT_NE(writeDxf(db).find(attribute), std::string::npos);
  }
  auto db = readDxf(drawing(kMixedEntities));
  auto insert = *db.read(db.entitiesOf(db.modelSpace()).at(2));
  std::get<host::BlockReference>(insert.data).position.x += 1;
  db.write(insert);
  EXPECT_NE(writeDxf(db).find(dxf("100 AcDbText|10 6.0|20 6.0|30 0.0")), std::string::npos);
}

}  // namespace
