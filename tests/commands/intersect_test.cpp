// PLJD and PLJD1 end to end: the pairing and merge, the order along the
// picked curve, and the four ways of marking the points.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "command_session.h"
#include "expected_page.h"

namespace commands_test {
namespace {

class Intersect : public CommandTest {
 protected:
  const char* modePrompt() {
    return s.pick(
        "\n1.Add marked points; 2.Mark point + number; 3.Mark point + number + output coordinate list; 4.Insert the "
        "block. (2):",
        "\n在交点处：1、添加标记点; 2、标记点+编号; 3、标记点+编号+输出坐标列表; 4、插入图块。 (2):");
  }
  ge::PointList points() {
    ge::PointList out;
    for (auto& e : s.entitiesOf<host::PointEntity>()) out.push_back(std::get<host::PointEntity>(e.data).position);
    return out;
  }
  std::vector<std::string> numbers() {
    std::vector<std::string> out;
    for (auto& e : s.entitiesOf<host::Text>()) out.push_back(std::get<host::Text>(e.data).text);
    return out;
  }
};

INSTANTIATE_TEST_SUITE_P(Languages, Intersect, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

TEST_P(Intersect, SelectionPointsAreMergedAndMarkedByMode) {
  host::ObjectId a = s.add(host::Line{{0, 0, 0}, {10, 10, 0}});
  host::ObjectId b = s.add(host::Line{{0, 10, 0}, {10, 0, 0}});
  host::ObjectId c = s.add(host::Line{{5, 0, 0}, {5, 10, 0}});  // through the same point
  host::ObjectId circle = s.add(host::Circle{{20, 0, 0}, 2});
  host::ObjectId across = s.add(host::Line{{15, 0, 0}, {25, 0, 0}});
  s.start();
  // Mode 1: points only.
  std::string out = s.run("PLJD\n" + selectionOf({a, b, c}) + "1\n");
  EXPECT_TRUE(s.says(out, "Please select Curves >\n", "\n请选择多根曲线>"));
  EXPECT_TRUE(s.says(out, modePrompt()));
  expectPoints(points(), {{5, 5, 0}});
  EXPECT_TRUE(numbers().empty());
  EXPECT_EQ(std::get<std::int16_t>(s.sysvar("PDMODE").value), 35);
  // 5 and Enter give mode 2: numbered points, half the height asked for. The
  // host refuses 0 under the no-zero input bit and asks again; Enter then gives 2.
  for (const char* mode : {"0\n", "5", ""}) s.run("PLJD\n" + selectionOf({circle, across}) + mode + "\n4\n");
  auto texts = s.entitiesOf<host::Text>();
  ASSERT_EQ(texts.size(), 6u);
  const auto& t = std::get<host::Text>(texts[0].data);
  EXPECT_EQ(t.text, "1");
  EXPECT_DOUBLE_EQ(t.height, 2);
  EXPECT_NEAR(std::abs(t.position.x - 22), 2, 1e-9) << "at 18 or 22, moved by half the height";
  EXPECT_NEAR(t.position.y, 0 + 2, 1e-9);
  EXPECT_EQ(std::get<host::Text>(texts[1].data).text, "2");
  // A height of 0 uses VIEWSIZE / 30, drawn at half.
  double viewSize = std::get<double>(s.sysvar("VIEWSIZE").value);
  s.run("PLJD\n" + selectionOf({a, b}) + "2\n0\n");
  EXPECT_NEAR(std::get<host::Text>(s.entitiesOf<host::Text>().back().data).height, viewSize / 60, 1e-9);
  out = s.run("PLJD\n" + selectionOf({a, circle}) + "\n");
  EXPECT_TRUE(s.says(out, "\nNo intersection found.", "\n没有找到交点。"));
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump[5], "POINT points 5.000000,5.000000,0.000000");
}

TEST_P(Intersect, ModeThreeWritesTheCoordinateListFirst) {
  host::ObjectId circle = s.add(host::Circle{{0, 0, 0}, 5});
  host::ObjectId line = s.add(host::Line{{-10, 3, 1.5}, {10, 3, 1.5}});
  host::ObjectId flat = s.add(host::Line{{-10, 3, 0}, {10, 3, 0}});
  s.start();
  std::string html = (s.root() / "points.html").string();
  s.run("PLJD\n" + selectionOf({circle, flat, line}) + "3\n" + (s.root() / "points.xls").string() + "\n2\n");
  ge::PointList marked = points();
  ASSERT_EQ(marked.size(), 2u);
  EXPECT_NEAR(marked[0].x + marked[1].x, 0, 1e-9);
  EXPECT_NEAR(std::abs(marked[0].x), 4, 1e-9);
  ExpectedPage page(html, "交点坐标");
  page.row({ExpectedPage::word(10, "序号"), ExpectedPage::word(30, "X坐标"), ExpectedPage::word(30, "Y坐标"),
            ExpectedPage::word(30, "Z坐标")});
  for (std::size_t i = 0; i < marked.size(); ++i)
    page.row({ExpectedPage::index(10, int(i + 1)), ExpectedPage::measure(30, marked[i].x),
              ExpectedPage::measure(20, marked[i].y), ExpectedPage::measure(20, marked[i].z)});
  std::ifstream in(html, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  EXPECT_EQ(bytes.str(), page.bytes());
  EXPECT_EQ(numbers(), (std::vector<std::string>{"1", "2"}));
}

TEST_P(Intersect, ModeFourInsertsTheNamedBlock) {
  std::filesystem::path dxf = s.root() / "blocks.dxf";
  std::string make = std::string(CORVANE_PYTHON) +
                     " -c \"import ezdxf,sys; d=ezdxf.new('R2010'); b=d.blocks.new('TICK'); b.add_circle((0,0),0.5);"
                     " m=d.modelspace(); m.add_line((0,0),(4,4)); m.add_line((0,4),(4,0)); m.add_line((0,1),(4,1));"
                     " d.saveas(sys.argv[1])\" " +
                     dxf.string();
  ASSERT_EQ(std::system(make.c_str()), 0);
  s.startFrom(dxf);
  std::string out = s.run("PLJD\nALL\n\n4\nNOSUCH\n");
  EXPECT_TRUE(s.says(out, "\nPlease enter the block name：", "\n请输入图块名称："));
  EXPECT_TRUE(s.says(out, "\nBlock name error！", "\n图块名错误！"));
  EXPECT_TRUE(s.entitiesOf<host::BlockReference>().empty());
  s.run("PLJD\nALL\n\n4\nTICK\n");
  auto refs = s.entitiesOf<host::BlockReference>();
  ASSERT_EQ(refs.size(), 3u);
  ge::PointList at;
  for (auto& r : refs) at.push_back(std::get<host::BlockReference>(r.data).position);
  expectPoints(at, {{2, 2, 0}, {1, 1, 0}, {3, 1, 0}});
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(std::count(dump.begin(), dump.end(), "INSERT"), 3);
}

TEST_P(Intersect, PickedCurveNumbersItsCrossingsFromItsStart) {
  host::ObjectId picked = s.add(host::Line{{10, 0, 0}, {0, 0, 0}});  // drawn right to left
  s.add(host::Line{{2, -1, 0}, {2, 1, 0}});
  s.add(host::Line{{7, -1, 0}, {7, 1, 0}});
  s.add(host::Circle{{4.5, 0, 0}, 1});
  s.add(host::Line{{50, -1, 0}, {50, 1, 0}});  // far away
  host::Text note;
  note.text = "label";
  host::ObjectId text = s.add(note);
  host::ObjectId far = s.add(host::Line{{50, 20, 0}, {60, 20, 0}});
  s.start();
  std::string out = s.run("PLJD1\n" + pickOf(picked) + "\n1\n");
  EXPECT_TRUE(s.says(out, "\nPlease select a curve: ", "\n请选择一根曲线: "));
  expectPoints(points(), {{7, 0, 0}, {5.5, 0, 0}, {3.5, 0, 0}, {2, 0, 0}});
  EXPECT_TRUE(s.says(out, modePrompt()));

  out = s.run("PLJD1\n" + pickOf(text) + "\n");
  EXPECT_TRUE(s.says(out, "\nError: not a curve selected.", "\n错误：选中的不是曲线。"));
  out = s.run("PLJD1\n\n");
  EXPECT_TRUE(s.says(out, "\nNothing selected")) << "English in both languages";
  out = s.run("PLJD1\n" + pickOf(far) + "\n\n");  // Enter at the mode
  EXPECT_TRUE(s.says(out, "\nNo intersection found.", "\n没有找到交点。"));
}

TEST_P(Intersect, PickedCurveListIsReversedWhenItsFirstPointLiesNearerTheEnd) {
  // A hook whose end comes back near its first crossing.
  host::ObjectId hook = s.add(lwThrough({{0, 0}, {10, 0}, {10, 3}, {5, 3}, {5, 1}}));
  s.add(host::Line{{6, -1, 0}, {6, 4, 0}});
  s.start();
  s.run("PLJD1\n" + pickOf(hook) + "\n1\n");
  expectPoints(points(), {{6, 3, 0}, {6, 0, 0}});
}

}  // namespace
}  // namespace commands_test
