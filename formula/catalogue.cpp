// Rows of the formula-curve list. Each row is written once with both names;
// the English and Chinese tables are built from it, translating only the
// captions that are words (one-letter captions are the same in both).
#include "formula/catalogue.h"

#include <cassert>
#include <string_view>

namespace formula {
namespace {

struct Slot {
  std::string_view caption;  // English; "" for a hidden slot
  int min = 0, def = 0, max = 0;
};

struct Row {
  std::string_view english;
  std::string_view chinese;
  std::array<Slot, kParamCount> slots;
};

// clang-format off
constexpr std::array<Row, kCurveCount> kRows{{
  {"1. Heart", "1. 心形曲线", {{{"Width", 1, 10, 1000}}}},
  {"2. Wave", "2. 波浪曲线", {{{"Waves", 1, 10, 100}, {"Hight", 1, 10, 1000}}}},
  {"3. Sin Wave", "3. Sin波浪曲线", {{{"Waves", 1, 10, 100}, {"Hight", 1, 10, 1000}}}},
  {"4. Sin Widening Curve", "4. Sin渐宽曲线", {{{"Waves", 1, 10, 100}, {"Hight", 1, 10, 1000}}}},
  {"5. LOG Curve", "5. LOG曲线", {{{"HightTimes", 1, 1, 100}, {"", 1, 10, 10000}}}},
  {"6. Hyperbola", "6. 双曲线", {{{"a", 1, 4, 10}, {"b", 1, 3, 10}, {"N", 1, 1, 10}}}},
  {"7. Parabola", "7. 抛物线", {{{"a", 1, 8, 100}, {"N", 1, 1, 100}}}},
  {"8. Disk Spring", "8. 碟形弹簧", {{{"Spring Radius", 1, 20, 100}, {"Dist", 1, 10, 100}, {"Loops", 1, 5, 100}}}},
  {"9. Electrocardiogram", "9. 心电图", {{{"A", 50, 200, 200}, {"B", 100, 498, 1000}, {"Precision", 1, 7, 36}}}},
  {"10.GoldenIngot", "10.双元宝线", {{{"A", 1, 10, 1000}, {"B", 100, 498, 1000}, {"Precision", 1, 7, 36}}}},
  {"11.Mushroom", "11.蘑菇曲线", {{{"R", 1, 10, 1000}, {"Precision", 1, 20, 100}, {"", 1, 30, 36}}}},
  {"12.Tricuspid", "12.三尖瓣线", {{{"Spring Radius", 1, 20, 100}, {"Tips", 3, 3, 36}}}},
  {"13.Involute", "13.渐开线", {{{"Loops", 1, 10, 100}, {"Direction", 0, 1, 1}, {"Radius", 1, 1, 100}}}},
  {"14.Archimedes Spiral", "14.阿基米德螺线(等径)", {{{"Loops", 1, 10, 100}, {"Direction", 0, 1, 1}, {"Radius", 1, 1, 100}}}},
  {"15.Logarithmic Spiral", "15.对数螺线(等角)", {{{"Loops", 1, 10, 100}, {"Direction", 0, 1, 1}, {"Dist", 1, 5, 1000}, {"Radius", 1, 1, 100}}}},
  {"16.Hyperbolic Spiral", "16.双曲螺线", {{{"Loops", 1, 10, 100}, {"Direction", 0, 1, 1}, {"Radius", 1, 10, 1000}}}},
  {"17.Interlocking Spiral", "17.连锁螺线", {{{"Loops", 1, 10, 100}, {"Direction", 0, 1, 1}, {"Radius", 1, 10, 1000}}}},
  {"18.Kidney line", "18.心脏线（肾形线）", {{{"A", 1, 10, 1000}, {"TYPE", 0, 0, 1}}}},
  {"19.Epicycloid", "19.双弧外摆线", {{{"A", 1, 10, 1000}, {"B", 1, 10, 1000}}}},
  {"20.Kidney line2", "20.肾脏线", {{{"A", 1, 10, 1000}}}},
  {"21.Talbot Fish", "21.Talbot鱼尾曲线 ", {{{"A", 1, 11, 36}, {"B", 1, 6, 10}, {"C", 1, 1, 10}}}},
  {"22.Tetraphylla Rose", "22.四叶玫瑰线", {{{"A", 1, 10, 1000}}}},
  {"23.Trefoil Rose", "23.三叶玫瑰线", {{{"A", 1, 10, 1000}}}},
  {"24.Rhodonea", "24.Rhodonea曲线", {{{"A", 1, 7, 100}, {"B", 1, 10, 100}, {"C", 1, 1, 10}}}},
  {"25.Rhodonea 2", "25.Rhodonea曲线2", {{{"A", 1, 4, 100}, {"B", 1, 10, 100}, {"", 1, 1, 10}}}},
  {"26.Epicycloid", "26.外摆线", {{{"A", 1, 5, 100}, {"B", 1, 8, 16}, {"C", 1, 8, 10}, {"Precision", 1, 12, 36}}}},
  {"27.Hypocycloid", "27.内摆线", {{{"A", 1, 5, 100}, {"B", 1, 8, 16}, {"C", 1, 8, 10}, {"Precision", 1, 12, 36}}}},
  {"28.Long-short Inner Circle", "28.长短幅圆内旋轮线", {{{"A", 1, 5, 100}, {"B", 1, 8, 16}, {"C", 1, 2, 10}, {"Precision", 1, 12, 36}}}},
  {"29.Long-short Out Circle", "29.长短幅圆外旋轮线", {{{"A", 1, 5, 100}, {"B", 1, 8, 16}, {"C", 1, 5, 10}, {"Precision", 1, 12, 36}}}},
  {"30.Spherical Curve", "30.封闭球形环绕曲线", {{{"A", 1, 5, 12}, {"Radius", 1, 10, 1000}, {"Precision", 1, 8, 36}, {"", 1, 12, 36}}}},
  {"31.Fermat Curve", "31.费马螺纹线", {{{"R", 1, 10, 1000}, {"Precision", 1, 6, 36}}}},
  {"32.Spherical Helix", "32.球面螺旋线", {{{"R", 1, 10, 1000}, {"B", 0, 1, 1}, {"Precision", 1, 6, 12}}}},
  {"33.Spiral in Circle", "33.圆内螺旋线", {{{"R", 1, 10, 1000}, {"Precision", 1, 3, 12}}}},
  {"34.Butterfly Curve", "34.蝴蝶曲线", {{{"R", 1, 10, 1000}, {"Precision", 1, 3, 6}}}},
  {"35.Sun", "35.太阳线", {{{"R", 1, 10, 1000}, {"Precision", 1, 6, 100}}}},
  {"36.Nine Petal flower", "36.九瓣花", {{{"R", 1, 10, 1000}, {"Precision", 1, 6, 16}}}},
  {"37.Butterfly Curve2", "37.蝶线", {{{"R", 1, 10, 1000}, {"Precision", 1, 16, 36}}}},
  {"38.Bottomless Basket Curve", "38.无底篮子曲线", {{{"R", 1, 10, 1000}, {"Precision", 1, 16, 100}}}},
  {"39.UFO Vortex", "39.UFO漩涡线", {{{"R", 1, 10, 1000}, {"B", 0, 1, 1}, {"Precision", 1, 30, 100}}}},
  {"40.Conical Hat", "40.锥形斗笠曲线", {{{"R", 1, 10, 1000}, {"Precision", 1, 20, 100}, {"", 1, 30, 36}}}},
  {"41.Leaf Curve", "41.叶形线", {{{"R", 1, 10, 1000}, {"Precision", 1, 20, 36}, {"", 1, 30, 36}}}},
  {"42.Probability Curve", "42.概率曲线", {{{"A", 1, 10, 1000}, {"B", 1, 10, 100}, {"Precision", 1, 5, 10}}}},
  {"43.TSpring", "43.箕舌线(魔线)", {{{"A", 1, 10, 1000}, {"B", 1, 10, 1000}, {"Precision", 1, 5, 10}}}},
  {"44.Tangent Curve", "44.正切曲线", {{{"A", 1, 10, 1000}, {"B", 1, 10, 1000}, {"Precision", 1, 5, 10}}}},
  {"45.Hyperbolic Sine", "45.双曲正弦曲线", {{{"A", 1, 10, 1000}, {"Precision", 1, 2, 10}, {"", 1, 30, 36}}}},
  {"46.Hyperbolic Cosine", "46.双曲余弦曲线", {{{"A", 1, 10, 1000}, {"Precision", 1, 2, 10}, {"", 1, 30, 36}}}},
  {"47.Hyperbolic Tangent", "47.双曲正切曲线", {{{"A", 1, 10, 1000}, {"Precision", 1, 2, 10}, {"", 1, 30, 36}}}},
  {"48.Vinelaine", "48.蔓叶线", {{{"A", 1, 10, 1000}, {"Precision", 1, 2, 10}}}},
  {"49.Lissajous", "49.Lissajous曲线", {{{"A", 2, 3, 18}, {"B", 1, 10, 100}, {"C", 1, 100, 1000}, {"Precision", 1, 12, 36}}}},
  {"50. 8 Number", "50. 8字线", {{{"A", 1, 20, 1000}, {"B", 1, 30, 1000}, {"Precision", 1, 5, 10}}}},
  {"51.OnePeak", "51.一峰三驻点曲线", {{{"A", 1, 20, 1000}, {"B", 1, 10, 100}, {"Precision", 1, 5, 10}}}},
  {"52.Snake", "52.蛇形线", {{{"A", 1, 10, 1000}, {"B", 1, 5, 10}, {"Precision", 1, 18, 36}, {"", 3, 5, 36}}}},
  {"53.Plum", "53.梅花线(圆角五星)", {{{"A", 1, 10, 1000}, {"B", 1, 3, 9}, {"C", 1, 5, 36}, {"Precision", 1, 6, 36}}}},
  {"54.Hand", "54.手掌", {{{"A", 1, 10, 1000}, {"Precision", 1, 3, 12}}}},
  {"55.Hexaphylla Rectangulata", "55.直叶六叶线", {{{"R", 1, 10, 1000}, {"Precision", 1, 20, 36}, {"", 1, 30, 36}}}},
  {"56.Curvilinear Hexaphylla", "56.弯叶六叶线", {{{"R", 1, 10, 1000}, {"Precision", 1, 20, 36}, {"", 1, 30, 36}}}},
  {"57.Hexaphyllum", "57.六叶花形", {{{"R", 1, 10, 1000}, {"Precision", 1, 20, 36}, {"", 1, 30, 36}}}},
  {"58.Peach", "58.桃形线", {{{"R", 1, 10, 1000}, {"Precision", 1, 20, 36}}}},
  {"59.LongevityLock", "59.长命锁曲线", {{{"R", 1, 10, 1000}, {"S", 1, 10, 36}, {"T", 1, 5, 10}, {"Precision", 1, 16, 36}}}},
  {"60.Drum", "60.鼓形线（灯笼形）", {{{"R", 1, 10, 1000}, {"Precision", 1, 20, 100}, {"", 1, 30, 36}}}},
  {"61.Peanut", "61.鼓鼓形线(花生)", {{{"R", 1, 10, 1000}, {"Precision", 1, 20, 100}, {"", 1, 30, 36}}}},
  {"62.Bow Curve", "62.蝴蝶结曲线(簪形线)", {{{"R", 1, 10, 1000}, {"B", 1, 1, 10}, {"Precision", 1, 20, 36}}}},
  {"63.Handlebar", "63.手把曲线", {{{"R0", 1, 10, 100}, {"R1", 1, 1, 10}, {"Precision", 1, 5, 36}}}},
  {"64.Circular Conic", "64.环形二次曲线", {{{"R", 1, 10, 100}, {"B", 2, 8, 36}, {"Precision", 1, 5, 36}}}},
  {"65.Cylindrical Sine Wave", "65.柱面正弦波线", {{{"R", 1, 10, 100}, {"B", 2, 8, 36}, {"Precision", 1, 5, 36}}}},
  {"66.Catenary", "66.悬链线", {{{"R", 1, 10, 1000}, {"B", 1, 50, 100}, {"Precision", 1, 1, 12}}}},
  {"67.Bell", "67.铃铛形线", {{{"R", 1, 10, 1000}, {"Precision", 1, 18, 100}}}},
  {"68.Lamé Curve(XiaoMi_LOGO)", "68.拉梅超椭圆(小米LOGO)", {{{"R", 1, 10, 1000}, {"n", 1, 31, 100}, {"Precision", 1, 5, 36}}}},
  {"69.Mussel", "69.蚌线", {{{"R", 1, 10, 100}, {"N*10", 1, 31, 1000}, {"Precision", 1, 5, 36}}}},
  {"70.Watt", "70.瓦特曲线(臀形)", {{{"A", 1, 3, 5}, {"R", 1, 10, 1000}, {"Precision", 1, 5, 12}, {"", 1, 5, 36}}}},
  {"71.........", "71.........", {{{"R", 1, 10, 1000}, {"Precision", 1, 12, 36}, {"", 1, 31, 100}}}},
}};
// clang-format on

struct CaptionPair {
  std::string_view english, chinese;
};

// Captions that are words; all others are the same in both tables.
constexpr std::array<CaptionPair, 11> kWordCaptions{{
    {"Width", "宽度"},
    {"Waves", "波浪数"},
    {"Hight", "高度"},
    {"HightTimes", "高度倍数"},
    {"Spring Radius", "弹簧半径"},
    {"Dist", "螺距"},
    {"Loops", "圈数"},
    {"Precision", "精度"},
    {"Tips", "N尖"},
    {"Direction", "方向"},
    {"Radius", "半径"},
}};

std::string_view chineseCaption(std::string_view english) {
  for (const auto& pair : kWordCaptions)
    if (pair.english == english) return pair.chinese;
  return english;
}

// Row 0 has picture 407, each row one more; the last (placeholder) row skips 477.
constexpr int pictureIdOf(int row) { return row == kCurveCount - 1 ? 478 : 407 + row; }

Catalogue buildTable(bool chinese) {
  Catalogue table;
  for (int row = 0; row < kCurveCount; ++row) {
    const Row& source = kRows[row];
    FormulaCurveDef& def = table[row];
    def.name = std::string(chinese ? source.chinese : source.english);
    def.pictureId = pictureIdOf(row);
    for (int k = 0; k < kParamCount; ++k) {
      const Slot& slot = source.slots[k];
      assert(slot.min <= slot.def && slot.def <= slot.max);
      def.params[k] = {std::string(chinese ? chineseCaption(slot.caption) : slot.caption), slot.min, slot.def,
                       slot.max};
    }
  }
  return table;
}

}  // namespace

const Catalogue& englishCatalogue() {
  static const Catalogue table = buildTable(false);
  return table;
}

const Catalogue& chineseCatalogue() {
  static const Catalogue table = buildTable(true);
  return table;
}

const Catalogue& catalogueFor(bool chinese) { return chinese ? chineseCatalogue() : englishCatalogue(); }

std::array<int, kParamCount> defaultParams(int row) {
  assert(row >= 0 && row < kCurveCount);
  std::array<int, kParamCount> values{};
  for (int k = 0; k < kParamCount; ++k) values[k] = englishCatalogue()[row].params[k].defaultValue;
  return values;
}

}  // namespace formula
