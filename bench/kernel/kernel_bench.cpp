// Kernel benchmarks: print wall-clock figures (best of several runs) for
// equal-length sampling of a 1,000,000-vertex polyline, pairwise
// intersection of 2,000 segments with culling by extents, and offsets of a
// 10,000-vertex polyline. shapely_bench.py times shapely/GEOS on the same data.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>

#include "bench_data.h"
#include "geom/sampling.h"
#include "standalone/kernel/curve_kernel.h"
#include "bench/support/timing.h"

namespace {

using benchsupport::bestSeconds;

void benchSampling(const standalone::CurveKernel& kernel) {
  host::EntityData pl = kernelbench::longPolyline(1'000'000);
  for (int samples : {1000, 100000}) {
    ge::PointList pts;
    double t = bestSeconds(3, [&] { geom::sampleCurveByLength(kernel, &pl, samples, pts); });
    std::printf("sample 1,000,000-vertex polyline at %d equal lengths: %.4f s (last point %.6f, %.6f)\n", samples, t,
                pts.back().x, pts.back().y);
  }
}

void benchIntersections(const standalone::CurveKernel& kernel) {
  auto segs = kernelbench::randomSegments(2000);
  size_t found = 0, tested = 0;
  double t = bestSeconds(5, [&] {
    found = tested = 0;
    // Culling by extents: sort by left edge, sweep while the right edge is not passed.
    std::vector<std::pair<ge::Extents3d, size_t>> boxes;
    for (size_t i = 0; i < segs.size(); ++i) {
      ge::Extents3d e;
      kernel.getGeomExtents(segs[i], e);
      boxes.push_back({e, i});
    }
    std::sort(boxes.begin(), boxes.end(), [](const auto& a, const auto& b) { return a.first.min.x < b.first.min.x; });
    std::vector<ge::Point3d> pts;
    for (size_t i = 0; i < boxes.size(); ++i)
      for (size_t j = i + 1; j < boxes.size() && boxes[j].first.min.x <= boxes[i].first.max.x; ++j) {
        if (!boxes[i].first.intersectsXY(boxes[j].first)) continue;
        ++tested;
        pts.clear();
        kernel.intersectWith(segs[boxes[i].second], segs[boxes[j].second], host::Intersect::kOnBothOperands, pts);
        found += pts.size();
      }
  });
  std::printf("pairwise intersection of 2,000 segments: %.4f s (%zu pairs tested, %zu points)\n", t, tested, found);
}

void benchOffsets(const standalone::CurveKernel& kernel) {
  for (bool bulged : {true, false}) {
    host::EntityData star = kernelbench::wavyStar(10000, bulged);
    for (double d : {2.0, -2.0}) {
      std::vector<host::EntityData> out;
      double t = bestSeconds(3, [&] {
        out.clear();
        kernel.getOffsetCurves(star, d, out);
      });
      double area = 0;
      if (!out.empty()) kernel.getArea(out[0], area);
      std::printf("offset 10,000-vertex %s polyline by %+.1f: %.4f s (%zu curves, area %.6f)\n",
                  bulged ? "bulged" : "straight", d, t, out.size(), area);
    }
  }
}

}  // namespace

int main() {
  standalone::CurveKernel kernel;
  benchSampling(kernel);
  benchIntersections(kernel);
  benchOffsets(kernel);
  return 0;
}
