#include "commands/random_array.h"

#include <cmath>
#include <random>

namespace commands {

namespace {

constexpr double kPi = 3.141592653589793;

struct Weights {
  double x = 0, y = 0;
};

Weights weightsOf(ArrayMode mode, double u, double g, std::minstd_rand& random) {
  switch (mode) {
    case ArrayMode::kRandom: {
      double f = (static_cast<double>(random() % 100) + 50) / 150.0;
      return {f, f};
    }
    case ArrayMode::kHalfWave: return {std::cos(u / g * kPi * 0.5), std::sin(u / g * kPi * 0.5)};
    case ArrayMode::kFullWave: return {std::abs(std::cos(u / g * kPi)), std::abs(std::sin(u / g * kPi))};
    case ArrayMode::kExponential: {
      double f = std::exp((u - 1) * 3 / u);  // u = 0: exp(-inf), a step of length 0
      return {f, f};
    }
    case ArrayMode::kLogarithmic: {
      double f = std::log10(u + 1);
      return {f, f};
    }
  }
  return {};
}

}  // namespace

ge::PointList arrayPoints(const ArraySteps& steps, std::uint32_t seed) {
  std::minstd_rand random(seed);
  double a = steps.angleDegrees * kPi / 180;
  ge::PointList points{{0, 0, 0}};
  for (int k = 1; k < steps.total; ++k) {
    double u = k % steps.group;
    Weights w = weightsOf(steps.mode, u, steps.group, random);
    const ge::Point3d& last = points.back();
    points.push_back({last.x + w.x * std::cos(a) * steps.step, last.y + w.y * std::sin(a) * steps.step, 0});
  }
  return points;
}

}  // namespace commands
