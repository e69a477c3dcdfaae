// PLLIST, CLIST, ELLLIST and ARCLIST end to end: the page's bytes against a
// page built from the format's templates, the marks in the drawing, and what
// happens when no page can be written.
#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <sstream>
#include <thread>

#include <gtest/gtest.h>

#include "command_session.h"
#include "expected_page.h"

namespace commands_test {
namespace {

using Page = ExpectedPage;
constexpr double kPi = std::numbers::pi;

std::string fileBytes(const std::filesystem::path& p) {
  std::ifstream in(p, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

class Reports : public CommandTest {
 protected:
  std::string path(const std::string& name) { return (s.root() / name).string(); }
  // The caption row of a layout: widths and the two captions of each column.
  std::vector<Page::Cell> captions(const std::vector<std::tuple<int, const char*, const char*>>& columns) {
    std::vector<Page::Cell> out;
    for (auto [w, en, zh] : columns) out.push_back(Page::word(w, s.pick(en, zh)));
    return out;
  }
};

INSTANTIATE_TEST_SUITE_P(Languages, Reports, ::testing::Values(Language::kEnglish, Language::kChinese), languageName);

TEST_P(Reports, CircleListWritesThePageItsMarksAndOpensIt) {
  host::ObjectId a = s.add(host::Circle{{10, 20, 0}, 5});
  host::ObjectId b = s.add(host::Circle{{-3.5, 0.25, 2}, 1});
  s.start();
  std::string out = s.run("CLIST\n" + selectionOf({a, b}) + path("circles.xls") + "\nY\n3\n");
  EXPECT_TRUE(s.says(out, "Please select circle >\n", "请选择圆>\n"));
  EXPECT_TRUE(s.says(out, "EXCEL File(*.xls)", "圆心坐标和半径文件 (*.xls)"));
  EXPECT_TRUE(s.says(out, "\nMarks and numbers[Y/N](Y): ", "\n是否绘制标记和编号[Y/N](Y): "));
  EXPECT_TRUE(s.says(out, "Opening " + path("circles.html") + " (no display: not opened)"));
  EXPECT_FALSE(std::filesystem::exists(path("circles.xls")));

  Page page(path("circles.html"), s.pick("Center coordinates and radius", "圆心坐标和半径"));
  page.row(captions({{5, "Index", "序号"}, {15, "X", "X坐标"}, {15, "Y", "Y坐标"}, {15, "Z", "Z坐标"},
                     {20, "Radius", "半径"}, {15, "Perimeter", "周长"}, {15, "Area", "面积"}}));
  page.row({Page::index(5, 1), Page::measure(15, 10), Page::measure(15, 20), Page::measure(15, 0),
            Page::measure(20, 5), Page::measure(15, 10 * kPi), Page::measure(15, 25 * kPi)});
  page.row({Page::index(5, 2), Page::measure(15, -3.5), Page::measure(15, 0.25), Page::measure(15, 2),
            Page::measure(20, 1), Page::measure(15, 2 * kPi), Page::measure(15, kPi)});
  EXPECT_EQ(fileBytes(path("circles.html")), page.bytes());

  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump[2], "POINT points 10.000000,20.000000,0.000000");
  EXPECT_EQ(dump[3], "TEXT height=1.5 text=1 points 11.500000,21.500000,0.000000");
  EXPECT_EQ(dump[5], "TEXT height=1.5 text=2 points -2.000000,1.750000,2.000000");
  EXPECT_EQ(dump.back(), "HEADER PDMODE=35");
}

TEST_P(Reports, EllipseAndArcListsWriteTheirColumns) {
  host::Ellipse full;
  full.center = {1, 2, 0};
  full.majorAxis = {4, 0, 0};
  full.ratio = 0.5;
  host::ObjectId e = s.add(full);
  host::ObjectId quarter = s.add(host::Arc{{0, 0, 0}, 10, 0, kPi / 2});
  host::ObjectId across = s.add(host::Arc{{5, 5, 0}, 2, 350 * kPi / 180, 10 * kPi / 180});
  s.start();
  s.run("ELLLIST\n" + selectionOf({e}) + path("e.xls") + "\nN\n");
  s.run("ARCLIST\n" + selectionOf({quarter, across}) + path("a.xls") + "\nNo\n");
  EXPECT_TRUE(s.entitiesOf<host::PointEntity>().empty()) << "no marks asked for";

  // The perimeter of the 8 by 4 ellipse, by Simpson's rule.
  double perimeter = 0;
  const int n = 20000;
  for (int i = 0; i <= n; ++i) {
    double t = 2 * kPi * i / n, w = (i == 0 || i == n) ? 1 : (i % 2 ? 4 : 2);
    perimeter += w * std::hypot(4 * std::sin(t), 2 * std::cos(t));
  }
  perimeter *= 2 * kPi / n / 3;
  Page ellipses(path("e.html"), s.pick("Ellipse center coordinates and radius", "椭圆圆心坐标和半径"));
  ellipses.row(captions({{4, "Index", "序号"}, {16, "X", "X坐标"}, {16, "Y", "Y坐标"}, {16, "Z", "Z坐标"},
                         {12, "Major axis", "长轴"}, {12, "Minor axis", "短轴"}, {12, "Perimeter", "周长"},
                         {12, "Area", "面积"}}));
  ellipses.row({Page::index(4, 1), Page::measure(16, 1), Page::measure(16, 2), Page::measure(16, 0),
                Page::measure(12, 8), Page::measure(12, 4), Page::measure(12, perimeter), Page::measure(12, 8 * kPi)});
  EXPECT_EQ(fileBytes(path("e.html")), ellipses.bytes());

  Page arcs(path("a.html"), s.pick("Arc center coordinates and radius", "圆弧圆心坐标和半径"));
  arcs.row(captions({{4, "Index", "序号"}, {16, "X", "X坐标"}, {16, "Y", "Y坐标"}, {16, "Z", "Z坐标"},
                     {12, "Radius", "半径"}, {12, "StartAngle", "起点角度"}, {12, "EndAngle", "终点角度"},
                     {12, "Perimiter", "周长"}}));
  arcs.row({Page::index(4, 1), Page::measure(16, 0), Page::measure(16, 0), Page::measure(16, 0),
            Page::measure(12, 10), Page::measure(12, 0), Page::measure(12, 90), Page::measure(12, 5 * kPi)});
  arcs.row({Page::index(4, 2), Page::measure(16, 5), Page::measure(16, 5), Page::measure(16, 0),
            Page::measure(12, 2), Page::measure(12, 350), Page::measure(12, 10), Page::measure(12, 2 * 20 * kPi / 180)});
  EXPECT_EQ(fileBytes(path("a.html")), arcs.bytes());
}

TEST_P(Reports, PolylineListFollowsTheLowerLeftRuleAndWritesGreenSummaries) {
  host::ObjectId down = s.add(lwThrough({{0, 10}, {0, 0}}));
  host::Ellipse full;
  full.majorAxis = {3, 0, 0};
  host::ObjectId ellipse = s.add(full);
  host::Spline bare;
  bare.degree = 1;
  bare.knots = {0, 0, 5, 5};
  bare.controlPoints = {{0, 0, 0}, {3, 4, 0}};
  host::ObjectId spline = s.add(bare);
  host::ObjectId line = s.add(host::Line{{5, 5, 1}, {1, 1, 1}});
  host::ObjectId square = s.add(lwThrough({{0, 0}, {2, 0}, {2, 2}, {0, 2}}, true));
  host::ObjectId arc = s.add(host::Arc{{0, 0, 0}, 2, 0, kPi});
  host::Text note;
  note.text = "not listed";
  host::ObjectId text = s.add(note);
  s.start();
  std::string out = s.run("PLLIST\n" + selectionOf({down, ellipse, spline, line, square, arc, text}) +
                          path("p.xls") + "\n\n4\n\n");
  EXPECT_TRUE(s.says(out, "Lower Left default?[Y/N](Y):", "是否把默认起点设在左下角[Y/N](Y):"));
  EXPECT_TRUE(s.says(out, "\nPlease enter the mark text height(", "\n请输入标记文字高度("));

  Page page(path("p.html"), s.pick("Lines、Arcs、Polylines、Splines", "直线、圆弧、多段线、样条曲线坐标"));
  page.row(captions({{5, "Index", "序号"}, {5, "VertexNumber", "顶点序号"}, {20, "X", "X坐标"}, {20, "Y", "Y坐标"},
                     {20, "Z", "Z坐标"}, {15, "Length", "长度"}, {15, "Area", "面积"}}));
  auto points = [&](int number, const ge::PointList& pts, double length, double area) {
    for (std::size_t i = 0; i < pts.size(); ++i)
      page.row({i == 0 ? Page::index(5, number) : Page::blank(5), Page::index(5, int(i + 1)),
                Page::measure(20, pts[i].x), Page::measure(20, pts[i].y), Page::measure(20, pts[i].z), Page::blank(15),
                Page::blank(15)});
    page.row({Page::blank(5), Page::blank(5), Page::blank(20), Page::blank(20), Page::blank(20),
              Page::measure(15, length), Page::measure(15, area)},
             "#99FF99");
  };
  points(1, {{0, 0, 0}, {0, 10, 0}}, 10, 0);  // drawn downwards, listed upwards
  // 2: the full ellipse takes its number and writes nothing.
  points(3, {}, 5, 0);  // no fit points: the summary alone
  points(4, {{1, 1, 1}, {5, 5, 1}}, 4 * std::sqrt(2.0), 0);
  points(5, {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}, 8, 4);
  points(6, {{-2, 0, 0}, {2, 0, 0}}, 2 * kPi, 2 * kPi);
  EXPECT_EQ(fileBytes(path("p.html")), page.bytes());

  EXPECT_EQ(s.entitiesOf<host::PointEntity>().size(), 10u);
  auto texts = s.entitiesOf<host::Text>();
  ASSERT_EQ(texts.size(), 11u);  // the unlisted text and ten numbers
  const auto& first = std::get<host::Text>(texts[1].data);
  EXPECT_EQ(first.text, "1");
  EXPECT_DOUBLE_EQ(first.height, 2);
  EXPECT_DOUBLE_EQ(first.position.x, 2);
  EXPECT_DOUBLE_EQ(first.position.y, 2);
}

TEST_P(Reports, NamesUnwritableFoldersAndEmptySelectionsLeaveNoFile) {
  host::ObjectId c = s.add(host::Circle{{0, 0, 0}, 1});
  s.start();
  // A name without ".xls" is used as it stands; ".xls" anywhere becomes ".html".
  s.run("CLIST\n" + selectionOf({c}) + path("plain.txt") + "\nN\n");
  EXPECT_TRUE(std::filesystem::exists(path("plain.txt")));
  s.run("CLIST\n" + selectionOf({c}) + path("x.xls.xls") + "\nN\n");
  EXPECT_TRUE(std::filesystem::exists(path("x.html.html")));

  std::string missing = path("no-such-folder") + "/r.xls";
  std::string out = s.run("CLIST\n" + selectionOf({c}) + missing + "\n");
  EXPECT_TRUE(s.says(out, "Create file <" + path("no-such-folder") + "/r.html> Error！"));
  EXPECT_EQ(out.find("Marks and numbers"), std::string::npos) << "nothing is asked after the failure";

  out = s.run("CLIST\n\n");
  EXPECT_TRUE(s.says(out, "No circle selected.\n", "未选中圆。\n"));
  out = s.run("CLIST\n" + selectionOf({c}) + "\n");
  EXPECT_TRUE(s.says(out, "\nNo file name asigned.\n", "\n未设定文件名。\n"));
  out = s.run("ARCLIST\n" + selectionOf({c}));
  EXPECT_TRUE(s.says(out, "No ARC selected.\n", "未选中圆弧。\n")) << "the filter keeps the circle out";

  std::size_t files = 0;
  for (auto& entry : std::filesystem::directory_iterator(s.root()))
    if (entry.path().filename().string().find("report") != std::string::npos) ++files;
  EXPECT_EQ(files, 0u) << "no page left aside";
  EXPECT_TRUE(s.entitiesOf<host::PointEntity>().empty());
}

TEST_P(Reports, TheViewerOfThePluginFolderOpensThePageWithoutWaiting) {
  std::filesystem::path folder = s.root() / "plugin";
  std::filesystem::create_directories(folder);
  std::filesystem::path seen = s.root() / "seen.txt";
  {
    std::ofstream viewer(folder / "openExcel.exe");
    viewer << "#!/bin/sh\nprintf '%s' \"$1\" > " << seen.string() << ".part && mv " << seen.string() << ".part "
           << seen.string() << "\n";
  }
  std::filesystem::permissions(folder / "openExcel.exe", std::filesystem::perms::owner_all);
  std::ofstream(s.settingsPath(), std::ios::app) << "\"Location\"=\"" << folder.string() << "/\"\n";
  host::ObjectId c = s.add(host::Circle{{0, 0, 0}, 1});
  s.start();
  std::string out = s.run("CLIST\n" + selectionOf({c}) + path("v.xls") + "\nN\n");
  std::string said = s.chinese() ? "\n列表已输出为<" + path("v.html") + ">, 马上会自动打开。"
                                 : "\nThe list has been output as <" + path("v.html") + ">, and will be automatically opened soon.";
  EXPECT_TRUE(s.says(out, said));
  EXPECT_EQ(out.find("Opening"), std::string::npos);
  for (int i = 0; i < 100 && !std::filesystem::exists(seen); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ(fileBytes(seen), path("v.html"));
}

}  // namespace
}  // namespace commands_test
