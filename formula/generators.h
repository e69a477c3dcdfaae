#pragma once
// Formula-curve generators: pure geometry that turns a catalogue row, an
// origin and the row's four integer parameters into sampled point lists.
// Every point is the formula value plus the origin; planar curves lie at the
// origin's z.
#include <array>
#include <vector>

#include "formula/catalogue.h"
#include "ge/point.h"

namespace formula {

// What a generator reads.
struct GeneratorInput {
  ge::Point3d origin;
  std::array<int, kParamCount> params{};  // parm1..parm4 as typed
  int surftab1 = 6;                       // the host's SURFTAB1 (only the parabola reads it)

  double real(int slot) const { return static_cast<double>(params[slot]); }
  int whole(int slot) const { return params[slot]; }
};

// Colour number of the curve maker that means "the drawing's current colour".
inline constexpr int kCurrentColor = -1;

// One curve to hand to the curve maker, with the maker's colour and closed flag.
struct GeneratedCurve {
  ge::PointList points;
  int color = kCurrentColor;
  bool closed = false;
};

using CurveList = std::vector<GeneratedCurve>;
using Generator = CurveList (*)(const GeneratorInput&);

// The generator of a catalogue row; nullptr outside 0..70.
Generator generatorFor(int row);
// The curves of a row; empty for an index outside 0..70.
CurveList generateFormulaCurve(int row, const GeneratorInput& input);

}  // namespace formula
