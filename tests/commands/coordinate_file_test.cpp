// ZB2PL end to end, and the coordinate file reader's clean-up and encodings.
#include <fstream>

#include <random>

#include <gtest/gtest.h>

#include "command_session.h"
#include "commands/coordinate_file.h"
#include "commands/text_lines.h"

namespace commands_test {
namespace {

using commands::CoordinateLine;
using Kind = CoordinateLine::Kind;

struct LineCase {
  const char* line;
  Kind kind;
  ge::Point3d point;
};

TEST(CoordinateLines, CleanUpSeparatorsCommentsAndFields) {
  const LineCase cases[] = {
      {"1,2,3", Kind::kPoint, {1, 2, 3}},
      {"  1 , 2  ", Kind::kPoint, {1, 2, 0}},
      {"1，2", Kind::kPoint, {1, 2, 0}},            // full-width comma
      {"3；4", Kind::kPoint, {3, 4, 0}},            // full-width semicolon
      {"5;6|7", Kind::kPoint, {5, 6, 7}},
      {"8、9", Kind::kPoint, {8, 9, 0}},
      {"10,20 // first point", Kind::kPoint, {10, 20, 0}},
      {"1,2,", Kind::kPoint, {1, 2, 0}},            // a trailing comma makes a third, empty field
      {"1,2,3,4,5", Kind::kPoint, {1, 2, 3}},
      {"x,y", Kind::kPoint, {0, 0, 0}},             // not numbers: 0 without an error
      {"1.5e2abc,-2", Kind::kPoint, {150, -2, 0}},  // the leading number
      {"1 2", Kind::kSeparator, {}},                // blanks run the numbers together: one field
      {"", Kind::kSeparator, {}},
      {"   ", Kind::kSeparator, {}},
      {"// note", Kind::kSeparator, {}},            // a leading comment is not cut and has no comma
      {"//1,2", Kind::kPoint, {0, 2, 0}},           // not cut either, so its comma splits it
      {"END", Kind::kSeparator, {}},
      {",5,6", Kind::kError, {}},
      {"1,,3", Kind::kError, {}},
      {"1,\t", Kind::kError, {}},                   // field 2 empty once trimmed
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.line);
    CoordinateLine got = commands::parseCoordinateLine(c.line);
    EXPECT_EQ(got.kind, c.kind);
    if (c.kind == Kind::kPoint) {
      EXPECT_EQ(got.point, c.point);
    }
  }
}

TEST(CoordinateLines, OnlyASeparatorLineEndsABlock) {
  auto file = commands::readCoordinateLines({"1,2", ",x", "3,4", "", "", "5,6", "word", "7,8"});
  ASSERT_EQ(file.blocks.size(), 2u);
  EXPECT_EQ(file.blocks[0].size(), 2u) << "the error line is skipped, the block goes on";
  EXPECT_EQ(file.blocks[1].size(), 1u);
  ASSERT_EQ(file.errors.size(), 1u);
  EXPECT_EQ(file.errors[0].lineNumber, 2);
  EXPECT_EQ(file.errors[0].line, ",x");
}

// Long files are read in two halves at once; whatever lies at the middle,
// the blocks and errors are those of reading line after line.
TEST(CoordinateLines, ALongFileReadInHalvesGivesTheBlocksOfOneReading) {
  enum LineKind { kPoint, kBlank, kWord, kError };
  const std::pair<LineKind, LineKind> middles[] = {{kPoint, kPoint}, {kPoint, kBlank}, {kBlank, kPoint}, {kBlank, kBlank},
                                           {kError, kPoint}, {kPoint, kWord},  {kWord, kWord}};
  std::mt19937 rng(3);
  for (auto [before, at] : middles) {
    const std::size_t count = 100'001 + rng() % 7;
    std::vector<LineKind> kinds(count);
    for (LineKind& k : kinds) {
      unsigned r = rng() % 100;
      k = r < 90 ? kPoint : r < 95 ? kBlank : r < 98 ? kWord : kError;
    }
    kinds[count / 2 - 1] = before, kinds[count / 2] = at;
    std::vector<std::string> lines;
    std::vector<ge::PointList> blocks;
    ge::PointList open;
    std::vector<int> errorLines;
    for (std::size_t i = 0; i < count; ++i) {
      switch (kinds[i]) {
        case kPoint:
          lines.push_back(std::to_string(i) + ",2.5");
          open.push_back({static_cast<double>(i), 2.5, 0});
          break;
        case kBlank:
        case kWord:
          lines.push_back(kinds[i] == kBlank ? "" : "next");
          if (!open.empty()) blocks.push_back(open);
          open.clear();
          break;
        case kError:
          lines.push_back(",7");
          errorLines.push_back(static_cast<int>(i + 1));
          break;
      }
    }
    commands::CoordinateFile file = commands::readCoordinateLines(lines);
    ASSERT_EQ(file.blocks, blocks) << before << " " << at;
    ASSERT_EQ(file.errors.size(), errorLines.size());
    for (std::size_t e = 0; e < errorLines.size(); ++e) EXPECT_EQ(file.errors[e].lineNumber, errorLines[e]);
  }
}

struct EncodingCase {
  const char* name;
  std::string bytes;
};

TEST(TextLines, EveryEncodingGivesTheSameLines) {
  // "1，2\r\n点\n" in each encoding; GBK spells "，" A3AC and "点" B5E3.
  const std::vector<std::string> want{"1，2", "点"};
  const EncodingCase cases[] = {
      {"UTF-8", "1\xEF\xBC\x8C" "2\r\n\xE7\x82\xB9\n"},
      {"UTF-8 with mark", "\xEF\xBB\xBF" "1\xEF\xBC\x8C" "2\r\n\xE7\x82\xB9\n"},
      {"UTF-16LE", std::string("\xFF\xFE" "1\0\x0C\xFF" "2\0\r\0\n\0\xB9\x70\n\0", 16)},
      {"UTF-16BE", std::string("\xFE\xFF\0" "1\xFF\x0C\0" "2\0\r\0\n\x70\xB9\0\n", 16)},
      {"GBK", "1\xA3\xAC" "2\r\n\xB5\xE3\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    auto lines = commands::decodeTextLines(c.bytes);
    ASSERT_TRUE(lines);
    EXPECT_EQ(lines->all(), want);
  }
  EXPECT_FALSE(commands::decodeTextLines(std::string("1,2\n\0\x01\x02", 7))) << "a NUL: not text";
  EXPECT_FALSE(commands::decodeTextLines(std::string("\xFF\xFE" "1", 3))) << "an odd UTF-16 length";
  EXPECT_FALSE(commands::decodeTextLines(std::string("\xFF\xFE\x00\xD8" "a\0", 6))) << "a lone surrogate";
  EXPECT_FALSE(commands::decodeTextLines("\x80\x80\xFF")) << "neither UTF-8 nor GBK";
  EXPECT_EQ(commands::decodeTextLines("a\nb")->size(), 2u) << "a last line without a line end counts";
  EXPECT_EQ(commands::decodeTextLines("")->size(), 0u);
}

class CoordinateFile : public CommandTest {
 protected:
  std::string fileWith(const std::string& name, const std::string& bytes) {
    std::filesystem::path p = s.root() / name;
    std::ofstream(p, std::ios::binary) << bytes;
    return p.string();
  }
  std::string draw(const std::string& path) { return s.run("ZB2PL\n" + path + "\n"); }
  std::string added(int n) { return "\nAdded < " + std::to_string(n) + "> polylines."; }
};

INSTANTIATE_TEST_SUITE_P(Languages, CoordinateFile, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

TEST_P(CoordinateFile, BlocksBecomeLightweightOr3dPolylinesAndErrorLinesAreReported) {
  s.start();
  std::string path = fileWith("points.txt",
                              ",5,6\n"
                              "1,2,3\n4,5,6\n\n"          // z differs: 3D
                              "1,2,3\n4,5,3\n\n"          // z agrees: lightweight at elevation 3
                              "1，2\n3；4\n10,20 // c\n1 2\n"  // "1 2" is a separator
                              "7,7\n"                     // a single point makes nothing
                              "END\n"
                              "8,8\n9,9\n");              // no separator after it: not drawn
  std::string out = draw(path);
  EXPECT_TRUE(s.says(out, "请选择一个坐标列表文件"));
  EXPECT_TRUE(s.says(out, "\nError in line 1, data discarded, please check: [,5,6]",
                     "\n第 1 行错误，数据被抛弃，请检查: 【,5,6】"));
  EXPECT_TRUE(s.says(out, added(3)));
  auto p3 = s.entitiesOf<host::Polyline3d>();
  auto lws = s.entitiesOf<host::LwPolyline>();
  ASSERT_EQ(p3.size(), 1u);
  ASSERT_EQ(lws.size(), 2u);
  expectPoints(verticesOf(p3[0]), {{1, 2, 3}, {4, 5, 6}});
  expectPoints(verticesOf(lws[0]), {{1, 2, 3}, {4, 5, 3}});
  expectPoints(verticesOf(lws[1]), {{1, 2, 0}, {3, 4, 0}, {10, 20, 0}});
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump[0], "POLYLINE3d closed=0 splinefit=0 points 1.000000,2.000000,3.000000;4.000000,5.000000,6.000000 "
                     "flags 32,32");
  EXPECT_EQ(dump[1], "LWPOLYLINE closed=0 width=0 points 1.000000,2.000000,3.000000;4.000000,5.000000,3.000000");
}

TEST_P(CoordinateFile, UnreadableShortOrBinaryFilesDrawNothing) {
  s.start();
  std::string out = draw(fileWith("one.txt", "1,2\n"));
  EXPECT_TRUE(s.says(out, "\nToo few lines in file！", "\n文件中行数太少！"));
  std::string missing = (s.root() / "missing.txt").string();
  out = draw(missing);
  EXPECT_TRUE(s.says(out, "\nRead File <" + missing + "> Error."));
  std::string binary = fileWith("picture.txt", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16));
  out = draw(binary);
  EXPECT_TRUE(s.says(out, "\nRead File <" + binary + "> Error."));
  out = s.run("ZB2PL\n^C\n");
  EXPECT_EQ(out.find("Added"), std::string::npos) << "a cancelled file question ends silently";
  EXPECT_TRUE(s.entities().empty());
}

TEST_P(CoordinateFile, Utf16AndGbkFilesDrawLikeUtf8) {
  s.start();
  // "1；2\n3，4\n\n" as UTF-16LE with its mark, and as GBK.
  draw(fileWith("wide.txt", std::string("\xFF\xFE" "1\0\x1B\xFF" "2\0\n\0" "3\0\x0C\xFF" "4\0\n\0\n\0", 20)));
  draw(fileWith("gbk.txt", "1\xA3\xBB" "2\n3\xA3\xAC" "4\n\n"));
  auto lws = s.entitiesOf<host::LwPolyline>();
  ASSERT_EQ(lws.size(), 2u);
  for (auto& lw : lws) expectPoints(verticesOf(lw), {{1, 2, 0}, {3, 4, 0}});
}

}  // namespace
}  // namespace commands_test
