// Loading pictures of every format and depth the hole net reads, and refusing
// what is not one; the tone formulas at their jumps; the hole grid.
#include <cerrno>
#include <cmath>
#include <fstream>
#include <functional>

#include <gtest/gtest.h>
#include <stb_image_write.h>

#include "image/hole_grid.h"
#include "image/picture.h"
#include "image/tone.h"
#include "tests/support/temp_dir.h"

namespace {

using image::LoadFailure;
using image::Picture;
using image::Rgb;

// A 4 x 2 picture: black, red, green, blue on top; white, grey 128, dark, yellow below.
Picture sample() {
  Picture p = image::blankPicture(4, 2, {});
  const Rgb colours[8] = {{0, 0, 0}, {255, 0, 0}, {0, 255, 0}, {0, 0, 255},
                          {255, 255, 255}, {128, 128, 128}, {10, 20, 30}, {255, 255, 0}};
  for (int i = 0; i < 8; ++i) p.set(i % 4, i / 4, colours[i]);
  return p;
}

std::string readAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

void writeAll(const std::string& path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// A 1 x 1 GIF whose one palette colour is (255, 204, 0).
constexpr unsigned char kTinyGif[] = {'G', 'I', 'F', '8', '9', 'a', 1, 0, 1, 0, 0x80, 0, 0, 0xFF, 0xCC, 0x00,
                                      0, 0, 0, 0x2C, 0, 0, 0, 0, 1, 0, 1, 0, 0, 2, 2, 0x44, 1, 0, 0x3B};

struct Encoded {
  const char* name;
  std::function<void(const std::string&, const Picture&)> write;
  int sourceBits;
  int tolerance;  // per channel: JPEG is lossy
};

TEST(PictureLoader, ReadsEachFormatAndDepthAndRefusesWhatIsNotAPicture) {
  test_support::TempDir dir("picture");
  Picture p = sample();
  std::vector<std::uint8_t> rgba, grey;
  for (std::size_t i = 0; i < p.rgb.size(); i += 3) {
    rgba.insert(rgba.end(), {p.rgb[i], p.rgb[i + 1], p.rgb[i + 2], 200});
    grey.push_back(p.rgb[i]);
  }
  const Encoded cases[] = {
      {"rgb.png", [](auto& f, auto& q) { image::savePng(q, f); }, 24, 0},
      {"rgb.bmp", [](auto& f, auto& q) { image::saveBmp(q, f); }, 24, 0},
      {"rgba.png", [&](auto& f, auto& q) { stbi_write_png(f.c_str(), q.width, q.height, 4, rgba.data(), q.width * 4); }, 32, 0},
      {"rgba.bmp", [&](auto& f, auto& q) { stbi_write_bmp(f.c_str(), q.width, q.height, 4, rgba.data()); }, 32, 0},
      {"grey.png", [&](auto& f, auto& q) { stbi_write_png(f.c_str(), q.width, q.height, 1, grey.data(), q.width); }, 8, 0},
      {"rgb.jpg", [](auto& f, auto& q) { stbi_write_jpg(f.c_str(), q.width, q.height, 3, q.rgb.data(), 100); }, 24, 60},
  };
  for (const Encoded& c : cases) {
    SCOPED_TRACE(c.name);
    std::string file = dir.file(c.name);
    c.write(file, p);
    image::LoadResult r = image::loadPicture(file);
    ASSERT_TRUE(std::holds_alternative<Picture>(r));
    const Picture& got = std::get<Picture>(r);
    ASSERT_EQ(got.width, 4);
    ASSERT_EQ(got.height, 2);
    if (c.tolerance == 0) {
      EXPECT_EQ(got.sourceBits, c.sourceBits);
    }
    for (int y = 0; y < 2; ++y)
      for (int x = 0; x < 4; ++x) {
        Rgb want = p.at(x, y), have = got.at(x, y);
        if (c.sourceBits == 8) want = {want.r, want.r, want.r};
        EXPECT_LE(std::abs(want.r - have.r) + std::abs(want.g - have.g) + std::abs(want.b - have.b), c.tolerance * 3)
            << x << "," << y;
      }
  }
  image::LoadResult gif = image::decodePicture({reinterpret_cast<const char*>(kTinyGif), sizeof kTinyGif});
  ASSERT_TRUE(std::holds_alternative<Picture>(gif));
  EXPECT_EQ(std::get<Picture>(gif).at(0, 0), (Rgb{255, 204, 0}));
  // What is not a readable picture is refused, with the reason; the PNG above spoilt.
  std::string bytes = readAll(dir.file("rgb.png"));
  // The IHDR width and height (big-endian, bytes 16..23) claiming 8,000 x 6,000.
  std::string huge = bytes;
  huge.replace(16, 8, std::string("\x00\x00\x1F\x40\x00\x00\x17\x70", 8));
  struct Bad {
    const char* name;
    std::string content;
    LoadFailure failure;
  };
  const Bad bad[] = {
      {"text.png", "this is not a picture\n", LoadFailure::kNotAPicture},
      {"empty.bmp", "", LoadFailure::kNotAPicture},
      {"truncated.png", bytes.substr(0, bytes.size() / 2), LoadFailure::kNotAPicture},
      {"header-only.gif", std::string(reinterpret_cast<const char*>(kTinyGif), 13), LoadFailure::kNotAPicture},
      {"huge.png", huge, LoadFailure::kTooLarge},
  };
  for (const Bad& c : bad) {
    SCOPED_TRACE(c.name);
    writeAll(dir.file(c.name), c.content);
    image::LoadResult r = image::loadPicture(dir.file(c.name));
    ASSERT_TRUE(std::holds_alternative<image::LoadError>(r));
    EXPECT_EQ(std::get<image::LoadError>(r).failure, c.failure);
  }
  auto missing = std::get<image::LoadError>(image::loadPicture(dir.file("missing.png")));
  EXPECT_EQ(missing.failure, LoadFailure::kCannotOpen);
  EXPECT_EQ(missing.systemError, ENOENT);
  EXPECT_EQ(std::get<image::LoadError>(image::loadPicture("")).failure, LoadFailure::kNoFile);
}

TEST(Tone, FactorsJumpAtTheMiddleAndChannelsTruncateAndClamp) {
  struct Case {
    int slider;
    double contrast, brightness;
  };
  for (Case c : {Case{0, 0.5, 0.0}, Case{49, 49.5, 0.49}, Case{50, 1.5, 1.0}, Case{100, 3.0, 2.0}}) {
    EXPECT_DOUBLE_EQ(image::contrastFactor(c.slider), c.contrast) << c.slider;
    EXPECT_DOUBLE_EQ(image::brightnessFactor(c.slider), c.brightness) << c.slider;
  }
  // (v − 128)·k + 128 truncated toward zero: 100 at k 1.5 gives 86, 129 gives 129 (128 + 1.5 truncated).
  EXPECT_EQ(image::contrastChannel(100, 1.5), 86);
  EXPECT_EQ(image::contrastChannel(129, 1.5), 129);
  EXPECT_EQ(image::contrastChannel(0, 49.5), 0) << "clamped below";
  EXPECT_EQ(image::contrastChannel(200, 49.5), 255) << "clamped above";
  EXPECT_EQ(image::brightnessChannel(101, 0.49), 49);
  EXPECT_EQ(image::brightnessChannel(200, 2.0), 255);
  Picture p = sample();
  Picture plain = image::adjustTone(p, 100, 50);  // k = 3, m = 1
  EXPECT_EQ(plain.at(1, 1), (Rgb{128, 128, 128}));
  EXPECT_EQ(plain.at(2, 1), (Rgb{0, 0, 0}));
  EXPECT_EQ(image::adjustTone(p, 0, 50).at(0, 0), (Rgb{64, 64, 64})) << "k = 0.5 halves the distance to 128";
  EXPECT_EQ(image::adjustTone(p, 0, 49).at(0, 0), (Rgb{31, 31, 31})) << "then brightness 0.49";
}

TEST(HoleGrid, CellsRowsColumnsAndDarkness) {
  // 10 x 6: black left of x = 5, white right of it, one grey pixel row at the bottom.
  Picture p = image::blankPicture(10, 6, {255, 255, 255});
  for (int y = 0; y < 6; ++y)
    for (int x = 0; x < 5; ++x) p.set(x, y, {0, 0, 0});
  struct Case {
    int rows;
    bool invert;
    int cell, gridRows, columns;
  };
  for (Case c : {Case{3, false, 2, 3, 5}, Case{2, true, 3, 2, 3}, Case{4, false, 1, 6, 10}, Case{600, false, 1, 6, 10},
                 Case{1, false, 6, 1, 1}}) {
    SCOPED_TRACE(c.rows);
    image::HoleGrid g = image::holeGrid(p, c.rows, c.invert);
    EXPECT_EQ(g.cell, c.cell);
    EXPECT_EQ(g.rows, c.gridRows);
    EXPECT_EQ(g.columns, c.columns);
    ASSERT_EQ(g.holes.size(), static_cast<std::size_t>(c.gridRows * c.columns));
    for (int i = 0; i < static_cast<int>(g.holes.size()); ++i) {
      const image::Hole& h = g.holes[i];
      int row = i / c.columns, col = i % c.columns;
      EXPECT_DOUBLE_EQ(h.x, col * c.cell + c.cell / 2.0);
      EXPECT_DOUBLE_EQ(h.y, row * c.cell + c.cell / 2.0);
      // The share of black pixels in the cell, counted here pixel by pixel.
      int black = 0;
      for (int y = row * c.cell; y < (row + 1) * c.cell; ++y)
        for (int x = col * c.cell; x < (col + 1) * c.cell; ++x) black += x < 5;
      double d = black / double(c.cell * c.cell);
      EXPECT_NEAR(h.size, (c.invert ? 1 - d : d) * c.cell, 1e-12);
    }
  }
  EXPECT_TRUE(image::holeGrid(Picture{}, 5, false).holes.empty());
}

}  // namespace
