// PLARR and PLRNDArray end to end.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "command_session.h"
#include "standalone/db/dxf_writer.h"

namespace commands_test {
namespace {

class InterArray : public CommandTest {
 protected:
  // A straight open A and an arced closed B, or the other way round.
  void addPair(bool firstClosed) {
    host::LwPolyline a = lwThrough({{0, 0}, {10, 0}, {10, 5}}, firstClosed);
    host::LwPolyline b = lwThrough({{100, 200}, {120, 200}, {120, 220}}, !firstClosed);
    b.vertices[0].bulge = 1;
    first = s.add(a);
    second = s.add(b);
  }
  std::string arrayOf(const std::string& answers) {
    return s.run("PLARR\n" + pickOf(first) + "\n" + pickOf(second) + "\n" + answers);
  }
  std::vector<host::LwPolyline> made() {
    std::vector<host::LwPolyline> out;
    for (auto& e : s.entitiesOf<host::LwPolyline>())
      if (e.id != first && e.id != second) out.push_back(std::get<host::LwPolyline>(e.data));
    return out;
  }
  host::ObjectId first, second;
};

INSTANTIATE_TEST_SUITE_P(Languages, InterArray, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

TEST_P(InterArray, TwoByTwoCrossesXAndYAndBlendsBulgesByTheMeanWeight) {
  addPair(true);
  s.start();
  std::string out = arrayOf("2\n2\n\n");
  EXPECT_TRUE(s.says(out, "\nPlease select the first LWPolyline: ", "\n请选择第一根多段线： "));
  EXPECT_TRUE(s.says(out, "\nPlease select the second LWPolyline: ", "\n请选择第二根多段线： "));
  EXPECT_TRUE(s.says(out, "\nPlease input the array rows[2--1000](9):", "\n请阵列行数[2--1000](9):"));
  EXPECT_TRUE(s.says(out, "\nPlease input the array columns[2--1000](12):", "\n请阵列列数[2--1000](12):"));
  EXPECT_TRUE(s.says(out, "(deceleration) ~ 100 (acceleration), the default value is 0:", "（减速） ~ 100（加速），默认值0:"));
  auto cells = made();
  ASSERT_EQ(cells.size(), 2u);
  // Column 0 first: row 1 has A's x and B's y; then column 1, row 0: B's x and A's y.
  EXPECT_EQ(cells[0].vertices[1].x, 10);
  EXPECT_EQ(cells[0].vertices[1].y, 200);
  EXPECT_EQ(cells[1].vertices[1].x, 120);
  EXPECT_EQ(cells[1].vertices[1].y, 0);
  for (const auto& c : cells) {
    EXPECT_DOUBLE_EQ(c.vertices[0].bulge, 0.5) << "(u + w) / 2 of a straight and a semicircle";
    EXPECT_TRUE(c.closed) << "closed like the first";
  }
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(std::count_if(dump.begin(), dump.end(), [](auto& l) { return l.starts_with("LWPOLYLINE closed=1"); }), 3);
}

TEST_P(InterArray, DefaultsMakeAHundredAndSixAndRowsAndColumnsAreClamped) {
  addPair(false);
  s.start();
  arrayOf("\n\n\n");
  EXPECT_EQ(made().size(), 106u) << "9 x 12 less the two sources";
  EXPECT_FALSE(made().front().closed) << "open like the first, whatever the second";
  arrayOf("1\n3\n\n");
  EXPECT_EQ(made().size(), 106u + 4u) << "1 row becomes 2";
  arrayOf("1500\n2\n\n");
  EXPECT_EQ(made().size(), 110u + 1998u) << "1500 rows become 1000";
}

TEST_P(InterArray, AccelerationCrowdsTheCopiesTowardsOneEnd) {
  addPair(false);
  s.start();
  arrayOf("3\n2\n100\n");   // u = 0.5^3
  arrayOf("3\n2\n-250\n");  // clamped to -100: u = 1 - 0.5^3
  auto cells = made();
  ASSERT_EQ(cells.size(), 8u);
  EXPECT_DOUBLE_EQ(cells[0].vertices[0].y, 200 * 0.125) << "row 1 of column 0";
  EXPECT_DOUBLE_EQ(cells[0].vertices[0].x, 0);
  EXPECT_DOUBLE_EQ(cells[4].vertices[0].y, 200 * 0.875);
}

TEST_P(InterArray, NothingPickedOrUnequalVertexCountsDrawNothing) {
  first = s.add(lwThrough({{0, 0}, {10, 0}}));
  second = s.add(lwThrough({{0, 5}, {5, 5}, {10, 5}}));
  s.start();
  std::string out = s.run("PLARR\n\n");
  EXPECT_TRUE(s.says(out, "\nSelected nothing.", "\n未选中。"));
  out = arrayOf("\n\n");
  EXPECT_TRUE(s.says(out, "\nThe number of vertices of two polylines is different and cannot be interpolated.",
                     "\n两根多段线顶点数量不同，不能间插。"));
  EXPECT_EQ(out.find("acceleration"), std::string::npos) << "asked only once both are checked";
  out = s.run("PLARR\n" + pickOf(first) + "\n\n\n\n");
  EXPECT_TRUE(made().empty()) << "an empty second pick ends silently";
}

class RandomArray : public CommandTest {
 protected:
  std::vector<double> copyStartsX() {
    std::vector<double> xs;
    for (auto& e : s.entitiesOf<host::Line>()) xs.push_back(std::get<host::Line>(e.data).start.x);
    return xs;
  }
};

INSTANTIATE_TEST_SUITE_P(Languages, RandomArray, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

TEST_P(RandomArray, HalfWaveStepsFollowTheCosineAndRestartEveryGroup) {
  host::ObjectId line = s.add(host::Line{{0, 0, 0}, {0, 1, 0}});
  s.start();
  std::string out = s.run("PLRNDArray\n" + selectionOf({line}) + "12\n1\n0\n2\n\n");
  EXPECT_TRUE(s.says(out, "\nPlease enter the array total number(1~1000)[10]:", "\n请输入阵列数量(1~1000)[10]:"));
  EXPECT_TRUE(s.says(out, "\nPlease enter the equal distance:", "\n请输入最大间距:"));
  EXPECT_TRUE(s.says(out, "\nPlease enter the angle[0]:", "\n请输入阵列方向角度 0~360 [0]:"));
  EXPECT_TRUE(s.says(out, "HalfWave(2), FullWave(3), Exponential(4), Logarithmic(5)]<1>:",
                     "对数阵列(5)]<默认1>:"));
  EXPECT_TRUE(s.says(out, "\nPlease enter the number in a group(10~100)[10]:", "\n请输入每组数量(10~100)[10]:"));
  std::vector<double> xs = copyStartsX();
  ASSERT_EQ(xs.size(), 12u);
  double x = 0;
  for (int k = 1; k < 12; ++k) {
    x += std::cos((k % 10) / 10.0 * std::numbers::pi * 0.5);
    EXPECT_NEAR(xs[k], x, 1e-9) << k;
  }
  EXPECT_DOUBLE_EQ(xs[10] - xs[9], 1.0) << "cos(0) at k = 10";
  auto dump = s.readBackWithEzdxf();
  char last[96];
  std::snprintf(last, sizeof last, "LINE points %.6f,0.000000,0.000000;%.6f,1.000000,0.000000", xs[11], xs[11]);
  EXPECT_EQ(std::count_if(dump.begin(), dump.end(), [](auto& l) { return l.starts_with("LINE"); }), 12);
  EXPECT_EQ(dump[11], last);
}

TEST_P(RandomArray, GrowthModesStandStillAtEveryGroupEndAndModesAreClamped) {
  host::ObjectId line = s.add(host::Line{{0, 0, 0}, {0, 1, 0}});
  s.start();
  s.run("PLRNDArray\n" + selectionOf({line}) + "12\n2\n0\n7\n\n");  // 7 is logarithmic
  std::vector<double> xs = copyStartsX();
  ASSERT_EQ(xs.size(), 12u);
  EXPECT_NEAR(xs[1] - xs[0], 2 * std::log10(2.0), 1e-9);
  EXPECT_DOUBLE_EQ(xs[10], xs[9]) << "log10(1) = 0 at k = 10";
  s.run("PLRNDArray\n" + selectionOf({line}) + "12\n2\n0\n4\n\n");
  xs = copyStartsX();
  ASSERT_EQ(xs.size(), 23u);
  EXPECT_DOUBLE_EQ(xs[12 + 9], xs[12 + 8]) << "exp(-inf) = 0 at k = 10";
  EXPECT_NEAR(xs[12] - xs[0], 2 * std::exp(0.0), 1e-9) << "u = 1: exp(0)";
  s.run("PLRNDArray\n" + selectionOf({line}) + "1\n2\n\n\n");
  EXPECT_EQ(copyStartsX().size(), 23u) << "a total of 1 makes no copies";
  s.run("PLRNDArray\n" + selectionOf({line}) + "\n1\n90\n0\n");
  auto lines = s.entitiesOf<host::Line>();
  ASSERT_EQ(lines.size(), 23u + 9u) << "Enter gives 10, mode 0 is random";
  for (std::size_t k = 24; k < lines.size(); ++k) {
    double step = std::get<host::Line>(lines[k].data).start.y - std::get<host::Line>(lines[k - 1].data).start.y;
    EXPECT_GE(step, 50 / 150.0 - 1e-12);
    EXPECT_LE(step, 149 / 150.0 + 1e-12);
  }
  std::string out = s.run("PLRNDArray\n" + selectionOf({line}) + "5\n0.00001\n");
  EXPECT_EQ(s.entitiesOf<host::Line>().size(), 32u) << "a step below 0.0001 ends the command";
  out = s.run("PLRNDArray\n\n");
  EXPECT_TRUE(s.says(out, "No Curve selected.\n", "未选中任何线条。\n"));
}

// The whole saved drawing after a random array, with the seed fixed by the stored setting.
std::string randomDrawing(const std::string& seedLine) {
  CommandSession s(Language::kEnglish);
  std::ofstream(s.settingsPath(), std::ios::app) << seedLine;
  host::ObjectId circle = s.add(host::Circle{{0, 0, 0}, 1});
  s.start();
  s.run("PLRNDArray\n" + selectionOf({circle}) + "50\n3\n30\n1\n");
  std::filesystem::path out = s.root() / "random.dxf";
  standalone::saveDxf(s.host().drawing(), out);
  std::ifstream in(out, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

TEST(RandomArraySeed, AStoredSeedGivesTheSameDrawingTwice) {
  std::string a = randomDrawing("\"RandomSeed\"=dword:0000002a\n");
  std::string b = randomDrawing("\"RandomSeed\"=dword:0000002a\n");
  EXPECT_FALSE(a.empty());
  EXPECT_EQ(a, b);
  EXPECT_NE(a, randomDrawing("\"RandomSeed\"=dword:0000002b\n")) << "another seed, another drawing";
}

}  // namespace
}  // namespace commands_test
