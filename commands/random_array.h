#pragma once
// The array points of the random and wave arrays.
#include <cstdint>

#include "ge/point.h"

namespace commands {

enum class ArrayMode { kRandom = 1, kHalfWave = 2, kFullWave = 3, kExponential = 4, kLogarithmic = 5 };

struct ArraySteps {
  int total = 10;        // array points, the selection's own place included
  double step = 1;       // the full step length d
  double angleDegrees = 0;
  ArrayMode mode = ArrayMode::kRandom;
  int group = 10;        // steps per repeating group of the wave and growth modes
};

// P[0] = origin and P[k] = P[k-1] + (fx cos(a) d, fy sin(a) d, 0) with u = k mod g:
// random fx = fy = ((r mod 100) + 50) / 150 for one draw r per step; half wave
// cos / sin of u/g·π/2; full wave |cos| / |sin| of u/g·π; exponential
// exp((u - 1)·3/u), a zero step where u = 0; logarithmic log10(u + 1).
// The x and y weights differ on purpose in the wave modes.
ge::PointList arrayPoints(const ArraySteps& steps, std::uint32_t seed);

}  // namespace commands
