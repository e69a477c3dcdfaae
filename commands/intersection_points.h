#pragma once
// Gathering the intersection points of many curves and merging the repeats.
#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "ge/extents.h"
#include "ge/point.h"
#include "host/curves.h"

namespace commands {

// Points closer than this are one intersection point.
inline constexpr double kMergeDistance = 0.0001;

// Walks the list in order and keeps a point only when its distance to every
// point kept before it is at least kMergeDistance. A hash grid of the kept
// points makes each test look at the neighbouring cells only, so the walk is
// near-linear instead of quadratic, and keeps the same points in the same order.
ge::PointList mergeIntersections(const ge::PointList& raw);

// The same walk fed a piece at a time, for points that arrive in order.
class IntersectionMerger {
 public:
  IntersectionMerger();
  ~IntersectionMerger();
  IntersectionMerger(const IntersectionMerger&) = delete;
  IntersectionMerger& operator=(const IntersectionMerger&) = delete;

  void add(const ge::PointList& next);
  // The kept points; the merger starts afresh.
  ge::PointList take();

 private:
  class KeptGrid;
  std::unique_ptr<KeptGrid> grid_;
  ge::PointList kept_;
};

// Called now and then with the work done and the work in all; false stops the walk.
using ProgressFn = std::function<bool(std::size_t done, std::size_t total)>;

// The pairs (i, j), i < j, of curves whose extents overlap, in the order
// i, then j ascending. A curve without extents pairs with every other.
std::vector<std::vector<std::size_t>> overlappingPairs(const std::vector<ge::Extents3d>& boxes);

// PLJD's collection: every curve with every later one, in the order of the
// selection. The selection walk meets curve 0 with each other curve once and
// every other pair twice, and each later curve with itself. The second
// meeting of a pair gives the same points again, which the merge can never
// keep, so it is left out; a curve met with itself is left out too, since
// its overlap with itself is no crossing (two crossing lines give one point,
// not their ends as well). Pairs whose extents do not overlap give no points.
ge::PointList collectAmongCurves(const host::CurveServices& curves, const std::vector<host::EntityData>& data,
                                 const ProgressFn& progress = {});

// PLJD's collection merged as it goes: the same points as mergeIntersections
// of collectAmongCurves, in the same order. Where the curve services allow
// it, a worker thread collects the next curves' points while this thread
// merges the ones already collected; progress is called on this thread.
ge::PointList collectAndMergeAmongCurves(const host::CurveServices& curves, const std::vector<host::EntityData>& data,
                                         const ProgressFn& progress = {});

// PLJD1's collection: the picked curve with each of the others, in their order.
ge::PointList collectWithCurve(const host::CurveServices& curves, const host::EntityData& picked,
                               const std::vector<host::EntityData>& others);

// Orders points along the picked curve: by distance along it, nearest the
// start first; then the list is reversed when its first point is farther
// from the curve's start point than from its end point.
void orderAlongCurve(const host::CurveServices& curves, const host::EntityData& picked, ge::PointList& points);

}  // namespace commands
