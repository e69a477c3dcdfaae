// Figures for the formula curves: generating every row's samples, and drawing
// every row into the embedded drawing as fitted splines and as polylines
// (what a live preview does on each slider step). Prints; never fails on time.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "formula/draw.h"
#include "formula/generators.h"
#include "geom/curve_kind.h"
#include "standalone/db/database.h"
#include "standalone/kernel/curve_kernel.h"
#include "tests/frame/fake_host.h"

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

std::array<int, formula::kParamCount> maximumParams(int row) {
  std::array<int, formula::kParamCount> values{};
  for (int k = 0; k < formula::kParamCount; ++k) values[k] = formula::englishCatalogue()[row].params[k].maxValue;
  return values;
}

void benchGenerate(const char* label, bool atMaximum) {
  std::size_t points = 0;
  const int rounds = atMaximum ? 3 : 50;
  auto start = Clock::now();
  for (int r = 0; r < rounds; ++r)
    for (int row = 0; row < formula::kCurveCount; ++row) {
      auto params = atMaximum ? maximumParams(row) : formula::defaultParams(row);
      for (const auto& c : formula::generateFormulaCurve(row, {ge::Point3d{}, params, 6})) points += c.points.size();
    }
  double ms = millisecondsSince(start) / rounds;
  std::printf("generate all 71 rows at %-8s %9.3f ms per pass, %8zu points per pass, %6.1f ns per point\n", label,
              ms, points / rounds, ms * 1e6 / (points / rounds));
}

void benchDraw(bool spline) {
  frame_test::FakeEditor editor;
  standalone::DrawingDatabase drawing = standalone::DrawingDatabase::createEmpty();
  standalone::CurveKernel curves;
  frame_test::FakeSystemVariables sysvars;
  frame_test::FakeCommandStack commandStack;
  frame_test::FakeHostCommands hostCommands;
  frame_test::FakeDemandLoad demandLoad;
  frame_test::FakeSettingsStore store;
  frame_test::FakePlatform platform;
  host::Host host{editor, drawing, curves, sysvars, commandStack, hostCommands, demandLoad, store, platform};
  geom::setCurveKindIsSpline(spline);
  std::vector<double> perRow;
  formula::DrawnIds drawn;
  for (int row = 0; row < formula::kCurveCount; ++row) {
    auto start = Clock::now();
    constexpr int kRedraws = 5;  // as five slider steps of a live preview
    for (int i = 0; i < kRedraws; ++i)
      formula::drawFormulaCurve(host, row, {0, 0, 0}, formula::defaultParams(row), drawn);
    perRow.push_back(millisecondsSince(start) / kRedraws);
  }
  std::vector<double> sorted = perRow;
  std::sort(sorted.begin(), sorted.end());
  auto slowest = std::max_element(perRow.begin(), perRow.end()) - perRow.begin();
  double total = 0;
  for (double ms : perRow) total += ms;
  std::printf("redraw one row as %-9s median %7.3f ms, slowest %7.3f ms (row %ld, %s), all rows %8.2f ms\n",
              spline ? "spline:" : "polyline:", sorted[sorted.size() / 2], sorted.back(), static_cast<long>(slowest),
              formula::englishCatalogue()[slowest].name.c_str(), total);
  geom::setCurveKindIsSpline(true);
}

}  // namespace

int main() {
  benchGenerate("defaults", false);
  benchGenerate("maximum", true);
  benchDraw(true);
  benchDraw(false);
  return 0;
}
