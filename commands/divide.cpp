#include "commands/divide.h"

#include <cassert>
#include <cmath>

namespace commands {

namespace {
// Ends whose x differ by less than this are level for the lower-left rule.
constexpr double kLevelTolerance = 0.0001;
}  // namespace

std::vector<double> distancesForCount(double length, int count) {
  assert(count >= 2);
  double step = length / (count - 1);
  std::vector<double> d(count);
  for (int i = 0; i < count; ++i) d[i] = i * step;
  return d;
}

bool spacingTooLong(double length, double spacing) { return spacing > 0.25 * length; }

int countForSpacing(double length, double spacing) { return static_cast<int>(length / spacing + 1.0); }

std::vector<double> distancesForSpacing(double spacing, int count) {
  std::vector<double> d(count);
  for (int i = 0; i < count; ++i) d[i] = i * spacing;
  return d;
}

bool startsAtUpperRight(const ge::PointList& p) {
  if (p.empty()) return false;
  const ge::Point3d& f = p.front();
  const ge::Point3d& e = p.back();
  return f.x > e.x || (std::abs(f.x - e.x) < kLevelTolerance && f.y > e.y);
}

}  // namespace commands
