// Reading entity kinds from inline DXF: values, units (degrees to radians),
// object coordinates to world coordinates, and the drawing's structure.
#include <gtest/gtest.h>

#include <numbers>

#include "standalone/db/dxf_reader.h"
#include "tests/db/dxf_snippets.h"

namespace {

using namespace dbtest;
using standalone::readDxf;

constexpr double kPi = std::numbers::pi;

// The entities of model space in a file holding the given groups.
std::vector<host::Entity> modelSpace(const Groups& entities) {
  auto db = readDxf(drawing(dxf(entities)));
  std::vector<host::Entity> out;
  for (auto id : db.entitiesOf(db.modelSpace())) out.push_back(*db.read(id));
  return out;
}

// The only entity of model space in a file holding the given groups.
host::Entity only(const Groups& entities) {
  auto all = modelSpace(entities);
  EXPECT_EQ(all.size(), 1u);
  return all.at(0);
}

TEST(DxfReadKinds, ArcWithDownwardNormalIsMirroredIntoWorldCoordinates) {
  auto e = only(head("ARC", "50", "AcDbCircle") +
                groups("10 3.0|20 4.0|30 0.0|40 2.0|210 0.0|220 0.0|230 -1.0|100 AcDbArc|50 90.0|51 180.0"));
  const auto& arc = std::get<host::Arc>(e.data);
  // OCS x axis of (0,0,-1) is world -X: OCS (3,4) is world (-3,4).
  EXPECT_DOUBLE_EQ(arc.center.x, -3.0);
  EXPECT_DOUBLE_EQ(arc.center.y, 4.0);
  EXPECT_DOUBLE_EQ(arc.startAngle, kPi / 2);
  EXPECT_DOUBLE_EQ(arc.endAngle, kPi);
  EXPECT_EQ(arc.normal, (ge::Vector3d{0, 0, -1}));
  EXPECT_EQ(e.owner.value, 0x1Fu);
  EXPECT_EQ(e.id.value, 0x50u);
}

TEST(DxfReadKinds, TiltedCircleAndTextUseTheArbitraryAxis) {
  // Normal (1,0,0): |Nx| >= 1/64, so OCS x = Z x N = (0,1,0) and OCS y = N x Ax = (0,0,1).
  auto c = only(head("CIRCLE", "50", "AcDbCircle") + groups("10 2.0|20 5.0|30 7.0|40 1.0|210 1.0|220 0.0|230 0.0"));
  EXPECT_EQ(std::get<host::Circle>(c.data).center, (ge::Point3d{7, 2, 5}));
  auto t = only(head("TEXT", "51", "AcDbText") +
                groups("10 2.0|20 5.0|30 7.0|40 1.5|1 abc|50 30|210 1.0|220 0.0|230 0.0|100 AcDbText|73 2"));
  const auto& text = std::get<host::Text>(t.data);
  EXPECT_EQ(text.position, (ge::Point3d{7, 2, 5}));
  EXPECT_NEAR(text.rotation, kPi / 6, 1e-15);
  EXPECT_EQ(text.verticalJustify, 2);
  EXPECT_EQ(text.text, "abc");
}

TEST(DxfReadKinds, LwPolylineKeepsBulgesWidthsAndElevation) {
  auto e = only(head("LWPOLYLINE", "52", "AcDbPolyline") +
                groups("90 3|70 129|43 0.0|38 2.5|10 0|20 0|42 1.0|10 10|20 0|40 0.5|41 0.25|10 10|20 5|42 -0.4142"));
  EXPECT_EQ(std::get<host::LwPolyline>(e.data),
            (host::LwPolyline{.vertices = {{0, 0, 1.0}, {10, 0, 0, 0.5, 0.25}, {10, 5, -0.4142}}, .closed = true,
                              .plinegen = true, .elevation = 2.5}));
  // An absurd vertex count reserves nothing it cannot fill.
  auto absurd = only(head("LWPOLYLINE", "52", "AcDbPolyline") + groups("90 99999999|70 0|10 0|20 0|10 1|20 1"));
  const auto& two = std::get<host::LwPolyline>(absurd.data).vertices;
  EXPECT_EQ(two.size(), 2u);
  EXPECT_LT(two.capacity(), 1000u);
}

TEST(DxfReadKinds, SplineFitPolylineKeepsCurveAndFrameVertices) {
  auto vertex = [](const std::string& h, const std::string& x, const std::string& flags) {
    return groups("0 VERTEX|5 " + h + "|330 53|100 AcDbEntity|8 0|100 AcDbVertex|100 AcDb2dVertex|10 " + x +
                  "|20 1.0|30 0.0|70 " + flags);
  };
  auto p = std::get<host::Polyline2d>(
      only(head("POLYLINE", "53", "AcDb2dPolyline") + groups("66 1|10 0.0|20 0.0|30 4.0|70 4|75 6") +
           vertex("54", "0.5", "8") + vertex("55", "1.5", "8") + vertex("56", "0.0", "16") +
           vertex("57", "2.0", "16") + groups("0 SEQEND|5 58|330 53|100 AcDbEntity|8 0"))
          .data);
  EXPECT_TRUE(p.splineFit);
  EXPECT_EQ(p.curveType, host::PolyCurveType::kCubicSpline);
  EXPECT_EQ(p.elevation, 4.0);
  ASSERT_EQ(p.vertices.size(), 4u);
  EXPECT_EQ(p.vertices[0].flags, host::kVertexSplineFit);
  EXPECT_EQ(p.vertices[3].flags, host::kVertexSplineFrame);
  EXPECT_EQ(p.vertices[3].handle, 0x57u);
  EXPECT_EQ(p.seqendHandle, 0x58u);
}

TEST(DxfReadKinds, ThreeDPolylinePolyfaceMeshAndSplineWithWeightsAndTangents) {
  auto p3 = only(head("POLYLINE", "63", "AcDb3dPolyline") +
                 groups("66 1|70 9|0 VERTEX|5 64|330 63|100 AcDbEntity|8 0|100 AcDbVertex|100 AcDb3dPolylineVertex"
                        "|10 1|20 2|30 3|70 32|0 SEQEND|5 65|330 63|100 AcDbEntity|8 0"));
  EXPECT_EQ(std::get<host::Polyline3d>(p3.data),
            (host::Polyline3d{.vertices = {{{1, 2, 3}, 32, 0x64}}, .closed = true, .seqendHandle = 0x65}));

  // A polyface mesh stays uninterpreted, with its vertices.
  auto mesh = only(head("POLYLINE", "60", "AcDbPolyFaceMesh") +
                   groups("66 1|70 64|71 3|72 1|0 VERTEX|5 61|330 60|100 AcDbEntity|8 0|100 AcDbVertex"
                          "|100 AcDbPolyFaceMeshVertex|10 1|20 2|30 3|70 192|0 SEQEND|5 62|330 60|100 AcDbEntity|8 0"));
  ASSERT_TRUE(std::holds_alternative<host::OtherEntity>(mesh.data));
  EXPECT_EQ(std::get<host::OtherEntity>(mesh.data).dxfName, "POLYLINE");

  auto sp = only(head("SPLINE", "66", "AcDbSpline") +
                 groups("70 12|71 2|72 6|73 3|74 2|12 1|22 0|32 0|40 0|40 0|40 0|40 1|40 1|40 1|41 1|41 0.7071|41 1"
                        "|10 0|20 0|30 0|10 1|20 1|30 0|10 2|20 0|30 0|11 0|21 0|31 0|11 2|21 0|31 0"));
  EXPECT_EQ(std::get<host::Spline>(sp.data),
            (host::Spline{.degree = 2, .flags = 12, .knots = {0, 0, 0, 1, 1, 1},
                          .controlPoints = {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}}, .weights = {1, 0.7071, 1},
                          .fitPoints = {{0, 0, 0}, {2, 0, 0}}, .startTangent = ge::Vector3d{1, 0, 0}}));
}

TEST(DxfReadKinds, HelixKeepsItsSplineAndAxis) {
  auto e = only(head("HELIX", "67", "AcDbSpline") +
                groups("70 0|71 3|72 0|73 1|74 0|10 2|20 0|30 0|100 AcDbHelix|90 29|91 63|10 0|20 0|30 0"
                       "|11 2|21 0|31 0|12 0|22 0|32 1|40 2|41 3|42 1|290 0|280 1"));
  EXPECT_EQ(std::get<host::Helix>(e.data),
            (host::Helix{.curve = {.controlPoints = {{2, 0, 0}}}, .startPoint = {2, 0, 0}, .topRadius = 2, .turns = 3,
                         .turnHeight = 1, .counterClockwise = false, .constrain = 1}));
}

TEST(DxfReadKinds, MTextJoinsChunksAndTurnsAnAngleIntoADirection) {
  auto e = only(head("MTEXT", "68", "AcDbMText") +
                groups("10 1|20 2|30 0|40 2.5|71 5|3 first part, |3 second part, |1 end|50 90"));
  const auto& m = std::get<host::MText>(e.data);
  EXPECT_EQ(m.text, "first part, second part, end");
  EXPECT_EQ(m.attachment, 5);
  EXPECT_NEAR(m.xDirection.x, 0, 1e-15);
  EXPECT_NEAR(m.xDirection.y, 1, 1e-15);
}

TEST(DxfReadKinds, HatchPathsWithClockwiseArcThenPatternAndSeedPoints) {
  auto e = only(head("HATCH", "69", "AcDbHatch") +
                groups("10 0|20 0|30 1.5|210 0|220 0|230 1|2 ANSI31|70 0|71 1|91 2"
                       "|92 7|72 1|73 1|93 2|10 0|20 0|42 0.5|10 4|20 0|42 0|97 1|330 50"
                       "|92 1|93 2|72 1|10 0|20 0|11 1|21 0|72 2|10 0|20 0|40 1|50 270|51 360|73 0|97 0"
                       "|75 0|76 1|52 90|41 2|77 1|78 2|53 135|43 1|44 2|45 -2.2|46 -2.2|79 0"
                       "|53 45|43 0|44 0|45 0|46 1|79 2|49 1.5|49 -0.5|47 0.03|98 1|10 5.5|20 6.5"));
  const auto& h = std::get<host::Hatch>(e.data);
  EXPECT_EQ(h.style, 0);
  EXPECT_NEAR(h.patternAngle, kPi / 2, 1e-15);
  EXPECT_EQ(h.patternScale, 2);
  EXPECT_TRUE(h.patternDouble);
  ASSERT_EQ(h.patternLines.size(), 2u);
  EXPECT_NEAR(h.patternLines[0].angle, 3 * kPi / 4, 1e-15);
  EXPECT_EQ(h.patternLines[0].base, (ge::Point2d{1, 2}));
  EXPECT_EQ(h.patternLines[0].offset, (ge::Point2d{-2.2, -2.2}));
  EXPECT_TRUE(h.patternLines[0].dashes.empty());
  EXPECT_EQ(h.patternLines[1].dashes, (std::vector<double>{1.5, -0.5}));
  EXPECT_EQ(h.pixelSize, 0.03);
  EXPECT_EQ(h.seeds, (std::vector<ge::Point2d>{{5.5, 6.5}}));
  EXPECT_EQ(h.elevation, 1.5);
  EXPECT_TRUE(h.associative);
  ASSERT_EQ(h.paths.size(), 2u);
  EXPECT_EQ(h.paths[0].polyline.size(), 2u);
  EXPECT_EQ(h.paths[0].polyline[0].bulge, 0.5);
  EXPECT_EQ(h.paths[0].sourceHandles, std::vector<std::uint64_t>{0x50});
  ASSERT_EQ(h.paths[1].edges.size(), 2u);
  const auto& arc = std::get<host::HatchArcEdge>(h.paths[1].edges[1]);
  EXPECT_FALSE(arc.counterClockwise);
  // Clockwise edges store 360 - angle.
  EXPECT_NEAR(arc.startAngle, kPi / 2, 1e-15);
  EXPECT_NEAR(arc.endAngle, 0, 1e-15);
}

TEST(DxfReadKinds, InsertWithAttributesAndImage) {
  auto all = modelSpace(head("INSERT", "70", "AcDbBlockReference") +
                        groups("66 1|2 Door|10 5|20 6|30 0|41 2|50 45|0 ATTRIB|5 71|330 70|100 AcDbEntity|8 0"
                               "|100 AcDbText|10 5|20 6|30 0|40 1|1 D1|100 AcDbAttribute|2 TAG|70 0"
                               "|0 SEQEND|5 72|330 70|100 AcDbEntity|8 0") +
                        head("IMAGE", "73", "AcDbRasterImage") +
                        groups("90 0|10 1|20 1|30 0|11 0.01|21 0|31 0|12 0|22 0.01|32 0|13 640|23 480|340 74"
                               "|70 7|280 0"));
  ASSERT_EQ(all.size(), 2u);
  const auto& ins = std::get<host::BlockReference>(all[0].data);
  EXPECT_EQ(ins.blockName, "Door");
  EXPECT_TRUE(ins.hasAttributes);
  EXPECT_NEAR(ins.rotation, kPi / 4, 1e-15);
  EXPECT_EQ(ins.scale, (ge::Vector3d{2, 1, 1}));
  EXPECT_EQ(std::get<host::Image>(all[1].data),
            (host::Image{{1, 1, 0}, {0.01, 0, 0}, {0, 0.01, 0}, 640, 480, 0x74, 7}));
}

TEST(DxfReadKinds, CommonPropertiesAndUninterpretedKinds) {
  auto db = readDxf(drawing(dxf(
      groups("0 LINE|5 75|102 {ACAD_REACTORS|330 C|102 }|102 {ACAD_XDICTIONARY|360 D|102 }|330 1F"
             "|100 AcDbEntity|8 Walls|6 DASHED|62 1|420 16711680|370 35|48 2.0|60 1"
             "|100 AcDbLine|10 0|20 0|30 0|11 1|21 1|31 0") +
      head("3DFACE", "76", "AcDbFace") + groups("10 0|20 0|30 0"))));
  auto ids = db.entitiesOf(db.modelSpace());
  ASSERT_EQ(ids.size(), 2u);
  EXPECT_EQ(db.read(ids[0])->props, (host::EntityProps{"Walls", {1, 0xFF0000}, "DASHED", 2.0, 35, true}));
  EXPECT_EQ(db.reactorsOf(ids[0]), std::vector<host::ObjectId>{host::ObjectId{0xC}});
  EXPECT_EQ(std::get<host::OtherEntity>(db.peek(ids[1])->data).dxfName, "3DFACE");
}

TEST(DxfReadStructure, TablesBlocksHeaderAndView) {
  auto db = readDxf(drawing(""));
  EXPECT_EQ(db.version(), "AC1015");
  EXPECT_EQ(db.layerNames(), (std::vector<std::string>{"0", "Walls"}));
  EXPECT_TRUE(db.isLayerFrozenOrLocked("WALLS"));
  EXPECT_FALSE(db.isLayerFrozenOrLocked("0"));
  EXPECT_EQ(db.layerColor("Walls")->index, -3);
  EXPECT_EQ(db.blockNames(), (std::vector<std::string>{"*Model_Space", "*Paper_Space", "Door"}));
  auto door = db.findBlock("DOOR");
  ASSERT_TRUE(door);
  EXPECT_EQ(door->value, 0x40u);
  EXPECT_EQ(db.entitiesOf(*door).size(), 1u);
  EXPECT_EQ(db.blockBasePoint(*door), (ge::Point3d{1, 2, 0}));
  EXPECT_EQ(db.modelSpace().value, 0x1Fu);
  EXPECT_EQ(*db.headerVariable("PDMODE"), (host::ResBufList{{70, std::int16_t{35}}}));
  EXPECT_EQ(db.currentLayer(), "Walls");
  auto view = db.activeView();
  ASSERT_TRUE(view);
  EXPECT_EQ(view->center, (ge::Point2d{150.5, -20.25}));
  EXPECT_EQ(view->height, 300.0);
  EXPECT_EQ(view->aspect, 1.6);
  EXPECT_EQ(db.namedObjectsDictionary().value, 0xCu);
  EXPECT_EQ(db.dictionaryLookup(db.namedObjectsDictionary(), "ACAD_GROUP")->value, 0xDu);
}

TEST(DxfReadStructure, R12WithoutHandlesGetsPrivateIds) {
  auto db = readDxf(dxf("0 SECTION|2 ENTITIES|0 LINE|8 0|10 0|20 0|30 0|11 1|21 1|31 0"
                        "|0 CIRCLE|8 0|67 1|10 0|20 0|30 0|40 1|0 ENDSEC|0 EOF"));
  EXPECT_EQ(db.version(), "AC1009");
  auto model = db.entitiesOf(db.modelSpace());
  ASSERT_EQ(model.size(), 1u);
  EXPECT_FALSE(model[0].isNull());
  EXPECT_TRUE(std::holds_alternative<host::Line>(db.peek(model[0])->data));
  EXPECT_TRUE(db.isBlockRecord(db.modelSpace()));
}

TEST(DxfReadText, CodePagesAndUnicodeEscapes) {
  auto text = [](const std::string& value, const std::string& version, const std::string& codepage = "ANSI_1252") {
    auto db = readDxf(drawing(dxf(head("TEXT", "80", "AcDbText") +
                                  groups("10 0|20 0|30 0|40 1|1 " + value + "|100 AcDbText")),
                              version, codepage));
    return std::get<host::Text>(db.peek(db.entitiesOf(db.modelSpace()).at(0))->data).text;
  };
  EXPECT_EQ(text("caf\xE9", "AC1015"), "caf\xC3\xA9");  // é in ANSI_1252
  EXPECT_EQ(text("\xD6\xD0\xCE\xC4", "AC1018", "ANSI_936"), "中文");  // GBK
  EXPECT_EQ(text("\\U+4E2D!", "AC1015"), "中!");
  EXPECT_EQ(text("中文", "AC1021"), "中文");  // UTF-8 from R2007
}

}  // namespace
