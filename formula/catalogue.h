#pragma once
// The catalogue of formula curves: one row per curve, in list order, with the
// captions, ranges and defaults of its four integer parameters. Two tables of
// identical shape exist, one per language.
#include <array>
#include <string>

namespace formula {

inline constexpr int kCurveCount = 71;
inline constexpr int kParamCount = 4;

// One parameter slot of a curve. An empty caption means the dialog hides the
// slot; the range and default are still kept because some generators read them.
struct FormulaParamDef {
  std::string caption;  // UTF-8
  int minValue = 0;
  int defaultValue = 0;
  int maxValue = 0;

  bool shown() const { return !caption.empty(); }
  // The value forced into [minValue, maxValue].
  int clamp(int value) const { return value < minValue ? minValue : (value > maxValue ? maxValue : value); }
};

struct FormulaCurveDef {
  std::string name;   // list text, numbered ("1. Heart")
  int pictureId = 0;  // resource number of the preview picture
  std::array<FormulaParamDef, kParamCount> params;
};

using Catalogue = std::array<FormulaCurveDef, kCurveCount>;

// The English table.
const Catalogue& englishCatalogue();
// The Chinese table.
const Catalogue& chineseCatalogue();
// The table of the given language (true: Chinese).
const Catalogue& catalogueFor(bool chinese);
// The parameter defaults of a row, in slot order.
std::array<int, kParamCount> defaultParams(int row);

}  // namespace formula
