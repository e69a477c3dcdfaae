// The generators fed with any row and any typed parameter values, forced into
// the row's ranges as a drawing forces them: every sample must be finite.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "formula/draw.h"
#include "formula/generators.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1 + 4 * formula::kParamCount) return 0;
  const int row = data[0] % formula::kCurveCount;
  std::array<int, formula::kParamCount> typed;
  std::memcpy(typed.data(), data + 1, sizeof typed);
  const int surftab1 = size > 17 ? 2 + data[17] % 200 : 6;
  formula::GeneratorInput input{ge::Point3d{1, -2, 3}, formula::generatorParams(row, typed), surftab1};
  for (const auto& curve : formula::generateFormulaCurve(row, input))
    for (const auto& p : curve.points)
      if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z)) std::abort();
  return 0;
}
