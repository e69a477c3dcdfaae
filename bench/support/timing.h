#pragma once
// Timing for the benchmarks: the best of a few runs, which is the figure
// least disturbed by whatever else the machine is doing.
#include <algorithm>
#include <chrono>
#include <functional>

namespace benchsupport {

// Seconds taken by the fastest of `runs` calls of f.
inline double bestSeconds(int runs, const std::function<void()>& f) {
  double best = 1e300;
  for (int i = 0; i < runs; ++i) {
    auto t0 = std::chrono::steady_clock::now();
    f();
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count());
  }
  return best;
}

}  // namespace benchsupport
