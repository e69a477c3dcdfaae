// txt2PL end to end: texts of every placement turned into closed polylines
// through the host's MIRROR, WMFOUT, WMFIN and ERASE, compared with the
// glyph outlines the renderer itself places for the source texts.
#include <cmath>
#include <filesystem>
#include <fstream>
#include <numbers>

#include <gtest/gtest.h>

#include "command_session.h"
#include "standalone/render/outlines.h"
#include "standalone/render/scene_builder.h"

namespace commands_test {
namespace {

constexpr double kDegree = std::numbers::pi / 180;

struct TextCase {
  const char* name;
  host::EntityData text;
};

host::Text text(const char* s, ge::Point3d at, double height) { return host::Text{at, at, height, s}; }

std::vector<TextCase> textCases() {
  host::Text centred = text("Centred Mid", {0, 0, 0}, 2);
  centred.horizontalJustify = 1;
  centred.verticalJustify = 2;
  centred.alignmentPoint = {40, 15, 0};
  centred.rotation = 20 * kDegree;
  host::Text slanted = text("Slanted narrow", {5, -3, 0}, 1.5);
  slanted.oblique = 15 * kDegree;
  slanted.widthFactor = 0.7;
  host::Text right = text("右对齐文字", {0, 0, 0}, 3);
  right.horizontalJustify = 2;
  right.alignmentPoint = {60, 30, 0};
  host::Text aligned = text("Aligned", {10, 50, 0}, 2);
  aligned.horizontalJustify = 3;
  aligned.alignmentPoint = {30, 52, 0};
  host::MText note;
  note.position = {30, 40, 0};
  note.height = 2;
  note.attachment = 5;
  note.text = "First line\\P第二行中文";
  host::MText wrapped;
  wrapped.position = {-20, 10, 0};
  wrapped.height = 1.2;
  wrapped.referenceWidth = 12;
  wrapped.xDirection = ge::Vector3d{std::cos(0.5), std::sin(0.5), 0};
  wrapped.text = "words that wrap inside the box 以及中文";
  return {{"LeftEnglish", text("Hello, ABC", {10, 20, 0}, 2.5)},
          {"LeftChinese", text("中文字体", {10, 10, 0}, 3)},
          {"MiddleRotated", centred},
          {"ObliqueWidthFactor", slanted},
          {"RightChinese", right},
          {"Aligned", aligned},
          {"MTextTwoLanguages", note},
          {"MTextWrappedTurned", wrapped}};
}

// The renderer's glyph contours of the entities, in drawing units.
std::vector<standalone::Outline> rendererOutlines(const host::Drawing& drawing, const std::vector<host::ObjectId>& ids) {
  constexpr double kFine = 1000;  // flatten within a thousandth of a tolerance unit
  standalone::OutlineTracer tracer(standalone::PlaneMap{kFine, 0, 0, kFine, 0, 0}, 0.05);
  std::vector<standalone::Outline> out;
  for (const standalone::SceneItem& item : standalone::buildSceneOf(drawing, ids, {}).items)
    for (standalone::Outline o : tracer.outlinesOf(item)) {
      for (ge::Point2d& p : o.points) p = {p.x / kFine, p.y / kFine};
      out.push_back(std::move(o));
    }
  return out;
}

// Polylines of the block references of the drawing, placed in the drawing.
std::vector<standalone::Outline> placedBlockPolylines(CommandSession& s, int& references) {
  std::vector<standalone::Outline> out;
  references = 0;
  auto& db = s.host().drawing();
  for (const host::Entity& e : s.entitiesOf<host::BlockReference>()) {
    ++references;
    const auto& ref = std::get<host::BlockReference>(e.data);
    std::optional<host::ObjectId> block = db.findBlock(ref.blockName);
    if (!block) continue;
    double c = std::cos(ref.rotation), sn = std::sin(ref.rotation);
    for (host::ObjectId id : db.entitiesOf(*block)) {
      std::optional<host::Entity> part = db.read(id);
      if (!part) continue;
      const auto* pl = std::get_if<host::LwPolyline>(&part->data);
      if (!pl) continue;
      standalone::Outline o;
      o.closed = pl->closed;
      for (const host::LwVertex& v : pl->vertices) {
        double x = v.x * ref.scale.x, y = v.y * ref.scale.y;
        o.points.push_back({ref.position.x + c * x - sn * y, ref.position.y + sn * x + c * y});
      }
      out.push_back(std::move(o));
    }
  }
  return out;
}

double distanceToSegment(ge::Point2d p, ge::Point2d a, ge::Point2d b) {
  double dx = b.x - a.x, dy = b.y - a.y, len2 = dx * dx + dy * dy;
  double t = len2 > 0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / len2, 0.0, 1.0) : 0;
  return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

double distanceToOutline(ge::Point2d p, const standalone::Outline& o) {
  double best = std::numeric_limits<double>::infinity();
  std::size_t n = o.points.size();
  for (std::size_t i = 0; i < n; ++i) best = std::min(best, distanceToSegment(p, o.points[i], o.points[(i + 1) % n]));
  return best;
}

// Largest distance of a vertex of one outline set from the nearest outline of the other.
double farthest(const std::vector<standalone::Outline>& from, const std::vector<standalone::Outline>& to) {
  double worst = 0;
  for (const auto& o : from)
    for (ge::Point2d p : o.points) {
      double best = std::numeric_limits<double>::infinity();
      for (const auto& t : to) best = std::min(best, distanceToOutline(p, t));
      worst = std::max(worst, best);
    }
  return worst;
}

class Text2Polylines : public ::testing::TestWithParam<TextCase> {};

TEST_P(Text2Polylines, ClosedPolylinesLieOnTheGlyphsTheRendererDraws) {
  CommandSession s(Language::kEnglish);
  host::ObjectId id = s.add(GetParam().text);
  s.start();
  std::vector<standalone::Outline> want = rendererOutlines(s.host().drawing(), {id});
  ASSERT_FALSE(want.empty());
  ge::Extents3d box;
  ASSERT_EQ(s.host().host().curves.getGeomExtents(s.read(id)->data, box), host::ErrorStatus::eOk);
  s.run("SETVAR\nMIRRTEXT\n0\n");
  std::string out = s.run("txt2PL\n" + pickOf(id) + "\n\n");

  EXPECT_FALSE(s.read(id)) << "the source text is erased";
  int references = 0;
  std::vector<standalone::Outline> got = placedBlockPolylines(s, references);
  EXPECT_EQ(references, 1) << "one block reference of the imported metafile\n" << out;
  EXPECT_EQ(got.size(), want.size()) << "one polyline per glyph contour\n" << out;
  for (const auto& o : got) EXPECT_TRUE(o.closed);
  // The metafile holds whole logical units, kViewSpan of them across the view of the texts.
  double tolerance = 4 * std::max(box.max.x - box.min.x, box.max.y - box.min.y) / 32000;
  EXPECT_LT(farthest(got, want), tolerance) << "every polyline vertex lies on a glyph";
  EXPECT_LT(farthest(want, got), tolerance) << "every glyph is covered by polylines";

  EXPECT_EQ(s.sysvar("CMDECHO"), host::ResBuf::shortInt(1));
  EXPECT_EQ(s.sysvar("MIRRTEXT"), host::ResBuf::shortInt(0)) << "restored";
  const auto center = std::get<ge::Point3d>(s.sysvar("VIEWCTR").value);
  EXPECT_NEAR(center.x, (box.min.x + box.max.x) / 2, 1e-9) << "the zoom stays on the texts";
  EXPECT_NEAR(center.y, (box.min.y + box.max.y) / 2, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(Texts, Text2Polylines, ::testing::ValuesIn(textCases()),
                         [](const testing::TestParamInfo<TextCase>& row) { return std::string(row.param.name); });

TEST_P(CommandTest, Text2PlTakesOnlyTextsAndSaysWhenThereAreNone) {
  s.add(host::Line{{0, 0, 0}, {5, 5, 0}});
  s.start();
  std::string out = s.run("txt2PL\nALL\n\n");
  EXPECT_TRUE(s.says(out, "Please select TEXT >\n", "请选择文字>\n"));
  EXPECT_TRUE(s.says(out, "No selected.\n", "未选中。\n"));
  EXPECT_EQ(s.entities().size(), 1u);
  EXPECT_TRUE(s.entitiesOf<host::BlockReference>().empty());
}

INSTANTIATE_TEST_SUITE_P(Languages, CommandTest, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

TEST(Text2Pl, ManyTextsAtOnceUnderTheChinesePromptsLeaveNoMetafileBehind) {
  CommandSession s(Language::kChinese);
  for (const TextCase& c : textCases()) s.add(c.text);
  s.start();
  std::vector<host::ObjectId> ids;
  for (const host::Entity& e : s.entities()) ids.push_back(e.id);
  std::vector<standalone::Outline> want = rendererOutlines(s.host().drawing(), ids);
  auto tempFiles = [] {
    std::size_t n = 0;
    for (const auto& f : std::filesystem::directory_iterator(std::filesystem::temp_directory_path()))
      n += f.path().extension() == ".wmf";
    return n;
  };
  std::size_t before = tempFiles();
  std::string out = s.run("txt2PL\nALL\n\n");
  EXPECT_TRUE(s.says(out, "请选择文字>\n"));
  int references = 0;
  std::vector<standalone::Outline> got = placedBlockPolylines(s, references);
  EXPECT_EQ(references, 1);
  EXPECT_EQ(got.size(), want.size());
  EXPECT_TRUE(s.entitiesOf<host::Text>().empty() && s.entitiesOf<host::MText>().empty());
  EXPECT_LT(farthest(got, want), 0.02);
  EXPECT_EQ(tempFiles(), before) << "the temporary metafile is removed";
}

}  // namespace
}  // namespace commands_test

namespace commands_test {
namespace {

TEST(Wmfout, TextsGoOutAsGlyphOutlinesThatWmf2svgReadsAndWmfinRefusesDamage) {
  CommandSession s(Language::kEnglish);
  s.add(host::Text{{0, 0, 0}, {}, 2, "Metafile 中文"});
  s.add(host::Circle{{5, 8, 0}, 2});
  s.start();
  std::string wmf = (s.root() / "texts.wmf").string(), svg = (s.root() / "texts.svg").string();
  s.run("ZOOM\nE\nWMFOUT\n" + wmf + "\nALL\n\n");
  ASSERT_TRUE(std::filesystem::exists(wmf));
  std::string cmd = std::string(CORVANE_WMF2SVG) + " -o " + svg + " " + wmf;
  ASSERT_EQ(std::system(cmd.c_str()), 0);
  std::ifstream in(svg);
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  EXPECT_GT(std::count(text.begin(), text.end(), 'Z'), 10) << "closed glyph contours";
  EXPECT_NE(text.find("<polygon"), std::string::npos) << "the circle, closed";

  std::ofstream(s.root() / "bad.wmf") << "this text is long enough to be read but is not a metafile";
  std::size_t before = s.entities().size();
  std::string out = s.run("WMFIN\n" + (s.root() / "bad.wmf").string() + "\n");
  EXPECT_NE(out.find("not a Windows metafile"), std::string::npos) << out;
  EXPECT_EQ(s.entities().size(), before);
  EXPECT_FALSE(s.host().drawing().findBlock("WMF0")) << "no block made";
}

}  // namespace
}  // namespace commands_test

namespace commands_test {
namespace {

// Styles made by ezdxf: a TrueType file, a family kept in the style's
// extended data, and a bare SHX name. txt2PL takes each text's outlines from
// its style's font.
TEST(Text2Pl, EachTextTakesTheFontItsStyleNames) {
  CommandSession s(Language::kEnglish);
  std::filesystem::path dxf = s.root() / "styles.dxf";
  std::string script =
      "import ezdxf, sys\n"
      "doc = ezdxf.new('R2010')\n"
      "doc.styles.new('SERIF', dxfattribs={'font': 'DejaVuSerif.ttf'})\n"
      "doc.styles.new('FAMILY', dxfattribs={'font': 'elsewhere.ttf'}).set_extended_font_data('DejaVu Serif')\n"
      "doc.styles.new('STROKES', dxfattribs={'font': 'romans'})\n"
      "msp = doc.modelspace()\n"
      "for i, style in enumerate(['SERIF', 'FAMILY', 'STROKES', 'Standard']):\n"
      "    msp.add_text('Rag', dxfattribs={'style': style, 'height': 2, 'insert': (0, 4 * i)})\n"
      "doc.saveas(sys.argv[1])\n";
  std::filesystem::path py = s.root() / "styles.py";
  std::ofstream(py) << script;
  ASSERT_EQ(std::system((std::string(CORVANE_PYTHON) + " " + py.string() + " " + dxf.string()).c_str()), 0);
  s.startFrom(dxf);
  const host::Drawing& db = s.host().drawing();
  EXPECT_EQ(db.textStyleFont("SERIF"), "DejaVuSerif.ttf");
  EXPECT_EQ(db.textStyleFont("family"), "DejaVu Serif") << "the family, style names in any case";
  EXPECT_EQ(db.textStyleFont("STROKES"), "romans.shx");
  EXPECT_FALSE(db.textStyleFont("NOSUCH"));

  std::vector<host::ObjectId> ids;
  for (const host::Entity& e : s.entities()) ids.push_back(e.id);
  ASSERT_EQ(ids.size(), 4u);
  std::vector<std::vector<standalone::Outline>> each;
  for (host::ObjectId id : ids) each.push_back(rendererOutlines(db, {id}));
  auto shapeOf = [](std::vector<standalone::Outline> v, double dy) {  // moved onto the first text's baseline
    for (auto& o : v)
      for (auto& p : o.points) p.y -= dy;
    return v;
  };
  EXPECT_LT(farthest(shapeOf(each[1], 4), each[0]), 1e-6) << "the family and the file give the same face";
  EXPECT_LT(farthest(shapeOf(each[3], 12), shapeOf(each[2], 8)), 1e-6) << "SHX falls back to the default family";
  EXPECT_GT(farthest(shapeOf(each[3], 12), each[0]), 0.05) << "a serif face is not the default one";

  std::vector<standalone::Outline> want;
  for (const auto& v : each) want.insert(want.end(), v.begin(), v.end());
  s.run("txt2PL\nALL\n\n");
  int references = 0;
  std::vector<standalone::Outline> got = placedBlockPolylines(s, references);
  EXPECT_EQ(got.size(), want.size());
  EXPECT_LT(farthest(got, want), 0.01);
  EXPECT_LT(farthest(want, got), 0.01);
}

}  // namespace
}  // namespace commands_test
