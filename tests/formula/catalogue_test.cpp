// The catalogue rows as the list shows them, in both languages, and their preview pictures.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "formula/catalogue.h"
#include "formula/preview_pictures.h"

namespace formula {
namespace {

TEST(FormulaCatalogue, NamesInBothLanguagesNumberedInListOrder) {
  const auto& en = englishCatalogue();
  const auto& zh = chineseCatalogue();
  // Row, English name, Chinese name (null where only the other is checked).
  const std::tuple<int, const char*, const char*> names[] = {
      {0, "1. Heart", "1. 心形曲线"}, {25, "26.Epicycloid", "26.外摆线"}, {42, "43.TSpring", nullptr},
      {47, "48.Vinelaine", nullptr}, {49, "50. 8 Number", nullptr}, {67, "68.Lamé Curve(XiaoMi_LOGO)", nullptr},
      {20, nullptr, "21.Talbot鱼尾曲线 "},  // the trailing blank belongs to the name
      {17, nullptr, "18.心脏线（肾形线）"}, {70, "71.........", "71........."}};
  for (const auto& [row, english, chinese] : names) {
    if (english) { EXPECT_EQ(en[row].name, english); }
    if (chinese) { EXPECT_EQ(zh[row].name, chinese); }
  }
  EXPECT_EQ(&catalogueFor(true), &zh);
  EXPECT_EQ(&catalogueFor(false), &en);
  for (bool chinese : {false, true}) {
    const auto& table = catalogueFor(chinese);
    for (int row = 0; row < kCurveCount; ++row) {
      std::string number = std::to_string(row + 1);
      EXPECT_EQ(table[row].name.substr(0, number.size()), number) << table[row].name;
      EXPECT_EQ(table[row].name[number.size()], '.') << table[row].name;
    }
  }
}

TEST(FormulaCatalogue, CaptionsAreTranslatedWordsOnly) {
  const auto& en = englishCatalogue();
  const auto& zh = chineseCatalogue();
  EXPECT_EQ(en[1].params[1].caption, "Hight");
  EXPECT_EQ(en[4].params[0].caption, "HightTimes");
  // Row, slot, Chinese caption; one-letter and symbol captions stay as they are.
  const std::tuple<int, int, const char*> captions[] = {
      {1, 1, "高度"}, {4, 0, "高度倍数"}, {7, 0, "弹簧半径"}, {11, 1, "N尖"}, {14, 2, "螺距"}, {14, 3, "半径"},
      {12, 1, "方向"}, {68, 1, "N*10"}, {62, 0, "R0"}, {17, 1, "TYPE"}};
  for (const auto& [row, slot, caption] : captions) EXPECT_EQ(zh[row].params[slot].caption, caption) << row;
  for (int row = 0; row < kCurveCount; ++row)
    for (int k = 0; k < kParamCount; ++k) {
      const auto& a = en[row].params[k];
      const auto& b = zh[row].params[k];
      EXPECT_EQ(a.shown(), b.shown());
      EXPECT_EQ(std::tie(a.minValue, a.defaultValue, a.maxValue), std::tie(b.minValue, b.defaultValue, b.maxValue));
    }
}

// How many slots each row shows and their ranges; hidden slots that still
// carry a range, by list number: the generators read them.
TEST(FormulaCatalogue, ShownAndHiddenSlotsWithTheirRanges) {
  struct Hidden {
    int row, slot, min, def, max;
  };
  const Hidden cases[] = {{4, 1, 1, 10, 10000}, {10, 2, 1, 30, 36}, {24, 2, 1, 1, 10}, {29, 3, 1, 12, 36},
                          {39, 2, 1, 30, 36},  {40, 2, 1, 30, 36}, {44, 2, 1, 30, 36}, {45, 2, 1, 30, 36},
                          {46, 2, 1, 30, 36},  {51, 3, 3, 5, 36},  {54, 2, 1, 30, 36}, {55, 2, 1, 30, 36},
                          {56, 2, 1, 30, 36},  {59, 2, 1, 30, 36}, {60, 2, 1, 30, 36}, {69, 3, 1, 5, 36},
                          {70, 2, 1, 31, 100}};
  for (const auto& h : cases) {
    const auto& p = englishCatalogue()[h.row].params[h.slot];
    EXPECT_EQ(std::make_tuple(p.shown(), p.minValue, p.defaultValue, p.maxValue),
              std::make_tuple(false, h.min, h.def, h.max))
        << h.row;
  }
  auto shown = [](int row) {
    int n = 0;
    for (const auto& p : englishCatalogue()[row].params) n += p.shown();
    return n;
  };
  EXPECT_EQ(shown(0), 1);
  EXPECT_EQ(shown(5), 3);   // a, b, N
  EXPECT_EQ(shown(14), 4);  // Loops, Direction, Dist, Radius
  EXPECT_EQ(shown(70), 2);
  const auto& ecg = englishCatalogue()[8].params[0];
  EXPECT_EQ(std::tie(ecg.minValue, ecg.defaultValue, ecg.maxValue), std::make_tuple(50, 200, 200));
  const auto& tips = englishCatalogue()[11].params[1];
  EXPECT_EQ(std::tie(tips.caption, tips.minValue, tips.defaultValue, tips.maxValue),
            std::make_tuple(std::string("Tips"), 3, 3, 36));
  EXPECT_EQ(defaultParams(48), (std::array<int, 4>{3, 10, 100, 12}));
  EXPECT_EQ(englishCatalogue()[12].params[1].clamp(-4), 0);
  EXPECT_EQ(englishCatalogue()[12].params[1].clamp(7), 1);
}

// Picture ids rise by row and skip one for the last; every row's preview
// picture is in the resources, as a PNG file.
TEST(FormulaPictures, EveryRowHasItsPicture) {
  const auto& en = englishCatalogue();
  for (int row = 0; row < 70; ++row) EXPECT_EQ(en[row].pictureId, 407 + row);  // 407 .. 476
  EXPECT_EQ(en[70].pictureId, 478);
  EXPECT_EQ(chineseCatalogue()[70].pictureId, 478);
  for (const auto& row : en) {
    std::filesystem::path file =
        std::filesystem::path(CORVANE_FORMULA_PICTURES) / previewPictureFileName(row.pictureId);
    std::ifstream in(file, std::ios::binary);
    ASSERT_TRUE(in) << file;
    char signature[8] = {};
    in.read(signature, 8);
    EXPECT_EQ(std::string(signature + 1, 3), "PNG") << file;
  }
  EXPECT_EQ(previewPicturePath("/opt/corvane/", 478), "/opt/corvane/formula/formula_478.png");
}

}  // namespace
}  // namespace formula
