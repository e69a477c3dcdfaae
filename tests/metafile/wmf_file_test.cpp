#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>

#include <gtest/gtest.h>

#include "standalone/metafile/view_frame.h"
#include "standalone/metafile/wmf_file.h"
#include "tests/support/temp_dir.h"

namespace standalone {
namespace {

std::vector<WmfPoint> ring(int x, int y, int size) {
  return {{static_cast<std::int16_t>(x), static_cast<std::int16_t>(y)},
          {static_cast<std::int16_t>(x + size), static_cast<std::int16_t>(y)},
          {static_cast<std::int16_t>(x + size), static_cast<std::int16_t>(y + size)},
          {static_cast<std::int16_t>(x), static_cast<std::int16_t>(y + size)}};
}

WmfPicture sample() {
  WmfPicture p;
  p.frame = {-16000, -10000, 16000, 10000};
  p.figures.push_back({{ring(-15000, -9000, 3000)}, true});                     // POLYGON
  p.figures.push_back({{ring(0, 0, 5000), ring(1000, 1000, 2000)}, true});      // POLYPOLYGON with a hole
  p.figures.push_back({{{{-100, 50}, {200, -300}, {32767, -32768}}}, false});  // POLYLINE to the limits
  return p;
}

std::string bytesOf(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

TEST(WmfFile, WhatWeWriteReadsBackTheSame) {
  test_support::TempDir dir("wmf");
  WmfPicture p = sample();
  // A polyline longer than one record holds goes out in pieces that share their joints.
  WmfFigure longLine{{{}}, false};
  for (int i = 0; i < 40000; ++i) longLine.parts[0].push_back({static_cast<std::int16_t>(i % 30000 - 15000), 7});
  p.figures.push_back(longLine);
  writeWmf(dir.file("a.wmf"), p);
  WmfPicture back = readWmf(dir.file("a.wmf"));
  EXPECT_EQ(back.frame, p.frame);
  EXPECT_EQ(back.unitsPerInch, 1440);
  ASSERT_EQ(back.figures.size(), 5u);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(back.figures[i], p.figures[i]) << i;
  std::vector<WmfPoint> joined = back.figures[3].parts[0];
  joined.insert(joined.end(), back.figures[4].parts[0].begin() + 1, back.figures[4].parts[0].end());
  EXPECT_EQ(joined, longLine.parts[0]);
}

// libwmf's converter, an independent reader, draws what we write.
TEST(WmfFile, Wmf2svgReadsOurMetafiles) {
  std::string wmf2svg = CORVANE_WMF2SVG;
  ASSERT_FALSE(wmf2svg.empty() || wmf2svg.ends_with("NOTFOUND")) << "wmf2svg (Debian's libwmf-bin) is not installed";
  test_support::TempDir dir("wmf");
  writeWmf(dir.file("a.wmf"), sample());
  std::string cmd = wmf2svg + " -o " + dir.file("a.svg") + " " + dir.file("a.wmf") + " 2>" + dir.file("err.txt");
  ASSERT_EQ(std::system(cmd.c_str()), 0) << bytesOf(dir.file("err.txt"));
  std::string svg = bytesOf(dir.file("a.svg"));
  auto count = [&svg](const char* pattern) {
    std::regex re(pattern);
    return std::distance(std::sregex_iterator(svg.begin(), svg.end(), re), std::sregex_iterator());
  };
  EXPECT_EQ(count("<polygon "), 1) << "the polygon\n" << svg;
  EXPECT_EQ(count("<path "), 1) << "the polygon with a hole, one path of two closed rings\n" << svg;
  EXPECT_EQ(count(" Z"), 2) << svg;
  EXPECT_EQ(count("<polyline "), 1) << svg;
  EXPECT_EQ(count("fill:none"), 2) << "closed figures are outlines, not filled\n" << svg;
}

TEST(WmfFile, DamagedFilesAreRefusedWithAReason) {
  test_support::TempDir dir("wmf");
  writeWmf(dir.file("good.wmf"), sample());
  const std::string good = bytesOf(dir.file("good.wmf"));
  auto patched = [&good](std::size_t at, std::string bytes) {
    std::string s = good;
    s.replace(at, bytes.size(), bytes);
    return s;
  };
  // Placeable header 22 bytes, header 18, window origin and extent 10 each,
  // brush 14, select 8: the first polygon record starts at byte 82.
  const std::size_t polygon = 82;
  struct Case {
    const char* name;
    std::string bytes;
    const char* reason;
  };
  const Case cases[] = {
      {"Empty", "", "too short"},
      {"Text", "this is not a metafile at all, only words", "not a Windows metafile"},
      {"CutInARecord", good.substr(0, good.size() - 20), "damaged"},
      {"NoEndRecord", good.substr(0, good.size() - 6), "ends without its end record"},
      {"RecordSizeBeyondTheFile", patched(polygon, std::string("\xFF\xFF\x00\x00", 4)), "damaged"},
      {"PointCountBeyondTheRecord", patched(polygon + 6, std::string("\xFF\x7F", 2)), "damaged"},
      {"ZeroSizedRecord", patched(polygon, std::string("\x00\x00\x00\x00", 4)), "damaged"},
  };
  for (const Case& c : cases) {
    try {
      parseWmf(c.bytes);
      ADD_FAILURE() << c.name << ": accepted";
    } catch (const WmfError& e) {
      EXPECT_NE(std::string(e.what()).find(c.reason), std::string::npos) << c.name << ": " << e.what();
    }
  }
  EXPECT_THROW(readWmf(dir.file("missing.wmf")), WmfError);
}

TEST(WmfFile, AFailedWriteLeavesTheOldFile) {
  test_support::TempDir dir("wmf");
  std::ofstream(dir.file("old.wmf")) << "old";
  WmfPicture p = sample();
  p.frame = {};  // nothing to frame
  EXPECT_THROW(writeWmf(dir.file("old.wmf"), p), WmfError);
  EXPECT_EQ(bytesOf(dir.file("old.wmf")), "old");
  EXPECT_THROW(writeWmf(dir.file("no/such/folder/a.wmf"), sample()), WmfError);
}

// A point written under a view and read back under the same view, placed at
// the view centre at scale 2, is the point itself (the txt2PL round trip).
TEST(ViewFrame, ExportThenImportAtTheViewCentreAtScaleTwoIsTheIdentity) {
  const View views[] = {{{10, 20}, 15, 1600, 1000}, {{-3000, 1e5}, 0.02, 800, 1200}, {{0, 0}, 5e4, 1000, 1000}};
  for (const View& v : views) {
    ViewFrame f = viewFrame(v);
    EXPECT_LE(f.frame.width(), kViewSpan);
    EXPECT_LE(f.frame.height(), kViewSpan);
    EXPECT_EQ(f.frame.left, -f.frame.right);
    double unit = importUnit(v, f.frame);
    for (ge::Point2d p : {ge::Point2d{v.center.x + v.width() / 3, v.center.y - v.height / 4},
                          ge::Point2d{v.center.x - v.width() / 2, v.center.y + v.height / 2}}) {
      const PlaneMap& m = f.toLogical;
      double lx = m.xx * p.x + m.xy * p.y + m.x0, ly = m.yx * p.x + m.yy * p.y + m.y0;
      EXPECT_LE(std::abs(lx), kViewSpan / 2 + 1);
      ge::Point2d back{v.center.x + 2 * lx * unit, v.center.y - 2 * ly * unit};  // y runs down in the metafile
      EXPECT_NEAR(back.x, p.x, 1e-9 * v.height);
      EXPECT_NEAR(back.y, p.y, 1e-9 * v.height);
    }
  }
}

}  // namespace
}  // namespace standalone
