// The font a text style names, as the outlines of its glyphs use it.
#include <gtest/gtest.h>

#include "standalone/render/font_choice.h"
#include "standalone/render/outlines.h"

namespace standalone {
namespace {

TEST(TextFonts, StyleFontsMapToFamilies) {
  struct Case {
    const char* font;
    const char* family;
  };
  const Case cases[] = {
      {"", kFontFamily},                   {"txt.shx", kFontFamily},
      {"ROMANS.SHX", kFontFamily},         {"gbcbig.shx", kFontFamily},
      {"arial.ttf", "Arial"},              {"SimSun.ttc", "SimSun"},
      {"C:\\Windows\\Fonts\\simhei.ttf", "SimHei"}, {"DejaVuSerif.ttf", "DejaVuSerif"},
      {"Arial", "Arial"},                  {"/usr/share/fonts/x.otf", "x"},
  };
  for (const Case& c : cases) EXPECT_EQ(familyForFont(c.font), c.family) << c.font;
}

std::vector<Outline> glyphs(const std::string& text, const std::string& font) {
  OutlineTracer tracer(PlaneMap{100, 0, 0, 100, 0, 0}, 0.1);
  TextRun run;
  run.utf8 = text;
  run.font = font;
  run.height = 2;
  return tracer.outlinesOf(SceneItem{kBlack, 1, run});
}

TEST(TextFonts, OutlinesComeFromTheStyleFontAndShxFallsBack) {
  auto sans = glyphs("Serif 中文", ""), shx = glyphs("Serif 中文", "romans.shx"),
       serif = glyphs("Serif", "DejaVuSerif.ttf");
  ASSERT_GT(sans.size(), 10u) << "Latin and Chinese glyphs both have outlines";
  ASSERT_EQ(shx.size(), sans.size());
  for (std::size_t i = 0; i < sans.size(); ++i) EXPECT_EQ(shx[i].points, sans[i].points) << "SHX: the default family";
  // A run with Chinese takes one face covering all of it; Latin alone shows the style's face.
  auto latin = glyphs("Serif", "");
  bool differs = serif.size() != latin.size();
  for (std::size_t i = 0; !differs && i < latin.size(); ++i) differs = serif[i].points != latin[i].points;
  EXPECT_TRUE(differs) << "a TrueType style draws in its own face";
}

}  // namespace
}  // namespace standalone
